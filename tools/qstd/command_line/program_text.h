/**
 * @file program_text.h
 * What help and manual say about the program as a whole.
 */
#ifndef QSTD_PROGRAM_TEXT_H
#define QSTD_PROGRAM_TEXT_H

#include <string>
#include <vector>

namespace qstd {

/** A heading of the program's manual page and its paragraphs, an empty line between two. */
struct Chapter
{
    std::string title;
    std::string text;
};

struct ExitCodeText
{
    int code;
    std::string meaning;
};

/** One line, no full stop. */
extern const char* const PROGRAM_SUMMARY;

/** One paragraph. */
extern const char* const PROGRAM_DESCRIPTION;

const std::vector<Chapter>& Chapters();

const std::vector<ExitCodeText>& ExitCodeTexts();

} // namespace qstd

#endif
