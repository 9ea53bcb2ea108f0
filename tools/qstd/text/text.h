/**
 * @file text.h
 * Text in and out, the same in every locale: numbers, UTF-8, what fits into a message.
 */
#ifndef QSTD_TEXT_H
#define QSTD_TEXT_H

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qstd {

/** Without blanks and tabs at both ends. */
std::string_view Trim(std::string_view text);

/** The parts between commas, each as Trim leaves it; at least one. */
std::vector<std::string_view> SplitAtCommas(std::string_view text);

/** ASCII letters in lower case, all else as it stands. */
std::string LowerCase(std::string_view text);

/** A finite decimal number that takes up the whole text; "inf", "nan", hexadecimal and overflow are none. */
std::optional<double> ParseReal(std::string_view text);

/** With a fixed number of decimals; what rounds to zero has no sign. */
std::string FormatFixed(double value, int decimals);

/** As FormatFixed, with a plus sign on what rounds to more than zero. */
std::string FormatSigned(double value, int decimals);

/** 1 target, 2 targets. */
std::string Counted(size_t count, std::string_view singular, std::string_view plural);

/** The length in bytes of the UTF-8 sequence at the front of `text`; 0 when there is no valid one. */
size_t Utf8Length(std::string_view text);

bool IsUtf8(std::string_view text);

/** Number of code points of a valid UTF-8 text, combining marks apart. */
size_t DisplayWidth(std::string_view text);

/** At most `width` code points; what is longer has an ellipsis in its last third. */
std::string ShortenedInside(std::string_view text, size_t width);

/** As a message shows foreign text: in quotes, shortened, bytes that are not printable UTF-8 as \xNN. */
std::string Quoted(std::string_view text);

/** The names nearest to `name` by edit distance, at most `limit`, nearest first; none that has little in common. */
std::vector<std::string> NearestNames(std::string_view name, const std::vector<std::string>& candidates, size_t limit);

} // namespace qstd

#endif
