/**
 * @file json_line.h
 * One line of JSON, read with limits.
 */
#ifndef QSTD_JSON_LINE_H
#define QSTD_JSON_LINE_H

#include <nlohmann/json.hpp>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace qstd {

/** Members keep their order. */
using Json = nlohmann::ordered_json;

/** Limits of a line. No call comes near them; what exceeds them is refused before it takes memory or time. */
constexpr size_t DEEPEST_NESTING = 16;
constexpr size_t MOST_MEMBERS = 64;

/** The value of a line, or what is wrong with it. */
struct ParsedLine
{
    Json value;
    std::string problem; /**< empty when the line is JSON */
};

/** Reads a line that holds one JSON value, in which no object has the same key twice. */
ParsedLine ParseJsonLine(std::string_view line);

/** True for a line that holds no value: blanks alone, or a comment that # begins. */
bool IsBlankOrComment(std::string_view line);

/** The double that a JSON value stands for: a number, or one of the strings "nan", "inf", "-inf". */
std::optional<double> RealOf(const Json& value);

/** A double as RealOf reads it: to the last bit, the sign of zero included; every NaN is "nan". */
Json JsonOfReal(double value);

/** A value as a message shows it: short, on one line, printable. */
std::string ShortText(const Json& value);

} // namespace qstd

#endif
