/**
 * @file completion.h
 * Completion of command lines in bash.
 */
#ifndef QSTD_COMPLETION_H
#define QSTD_COMPLETION_H

#include "command_line/command_line.h"

#include <string>

namespace qstd {

/** A script for bash that completes verbs, their options, the values of options where they are few, and file names. */
std::string CompletionScript(const CommandLine& commandLine);

} // namespace qstd

#endif
