/**
 * @file help.h
 * What --help prints.
 */
#ifndef QSTD_HELP_H
#define QSTD_HELP_H

#include "command_line/command_line.h"

#include <cstddef>
#include <string>

namespace qstd {

/** The program: its verbs by group. */
std::string ProgramHelp(const CommandLine& commandLine);

/** A verb: usage, what it computes, arguments, options, examples. */
std::string VerbHelp(const Verb& verb);

/** Paragraphs in lines of at most `width`, but for longer words. Lines that begin with a blank stay as they are. */
std::string Wrapped(const std::string& text, size_t width);

/** A command in lines of at most `width`, continued before its options, as a shell reads it. */
std::string WrappedCommand(const std::string& command, size_t width);

} // namespace qstd

#endif
