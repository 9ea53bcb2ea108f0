/**
 * @file manual.h
 * The manual pages, as troff reads them, and the examples they show.
 */
#ifndef QSTD_MANUAL_H
#define QSTD_MANUAL_H

#include "command_line/command_line.h"

#include <string>
#include <string_view>

namespace qstd {

/** Page qstd(1). */
std::string ProgramPage(const CommandLine& commandLine);

/** Page qstd-VERB(1). */
std::string VerbPage(const CommandLine& commandLine, const Verb& verb);

/** All examples as a JSON array of objects: verb, purpose, command, output. */
std::string ExamplesJson(const CommandLine& commandLine);

/** Text in which troff finds nothing to obey, as a reader may copy it: all hyphens are minus signs. */
std::string RoffLiteral(std::string_view text);

/** As RoffLiteral, but hyphens within words stay hyphens. */
std::string RoffProse(std::string_view text);

} // namespace qstd

#endif
