/**
 * @file verb_text.h
 * What the help and the manual say about a verb.
 */
#ifndef QSTD_VERB_TEXT_H
#define QSTD_VERB_TEXT_H

#include <string>
#include <vector>

namespace qstd {

/** A command that works when pasted into a shell anywhere, and what it prints. */
struct Example
{
    std::string purpose; /**< such as: The point 20 m along and 3 m to the right */
    std::string command;
    std::string output;
};

struct VerbText
{
    std::string name;
    std::string group;       /**< heading in the list of verbs */
    std::string summary;     /**< one line, no full stop */
    std::string description; /**< paragraphs, an empty line between two */
    std::vector<Example> examples;
};

} // namespace qstd

#endif
