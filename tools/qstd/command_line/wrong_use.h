/**
 * @file wrong_use.h
 * What is said about a command line that cannot be understood.
 */
#ifndef QSTD_WRONG_USE_H
#define QSTD_WRONG_USE_H

#include "command_line/command_line.h"

#include <string>

namespace CLI {
class ParseError;
}

namespace qstd {

/** What is wrong with the word that should be a verb, or empty. */
std::string VerbProblem(const CommandLine& commandLine, const std::string& word);

/** What a parser's error means; after the parsing, while the program still knows which words it did not understand. */
std::string ParseProblem(const CommandLine& commandLine, const CLI::ParseError& error);

} // namespace qstd

#endif
