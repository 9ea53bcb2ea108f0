#include "text/angle_text.h"

#include "text/text.h"

#include <fmt/format.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

namespace qstd {

namespace {

/** No angle is written in more bytes; what goes on is not searched for signs. */
constexpr size_t LONGEST_ANGLE = 256;

constexpr double PI = 3.14159265358979323846;
constexpr double UNITS_PER_DEGREE = 3600.0 * 16.0;
constexpr double UNITS_PER_MINUTE = 60.0 * 16.0;
constexpr double UNITS_PER_SECOND = 16.0;
constexpr double UNITS_PER_GON = ANGLE_FULL_CIRCLE / 400.0;
constexpr double UNITS_PER_RADIAN = ANGLE_HALF_CIRCLE / PI;

constexpr const char* NO_UNIT = "no unit; write 99-10-24, 99.1733d or 110.19g, or give --angle";
constexpr const char* NOT_AN_ANGLE = "not an angle; write 99-10-24, 99.1733d or 110.19g";
constexpr const char* OFF_CIRCLE = "not on the circle; readings go from 0 to 360 degrees (400 gon)";

ParsedAngle Problem(const char* text)
{
    return {0, text};
}

/** The nearest unit, halves upwards; a full circle is 0. */
ParsedAngle FromUnits(double units)
{
    const double rounded = std::floor(units + 0.5);
    if (!(rounded >= 0.0 && rounded <= ANGLE_FULL_CIRCLE) || units < 0.0)
    {
        return Problem(OFF_CIRCLE);
    }
    return {static_cast<AngleUnit>(rounded) % ANGLE_FULL_CIRCLE, ""};
}

/** Digits with at most one point; no sign and no exponent, which a sexagesimal part never has. */
std::optional<double> ParsePart(std::string_view text)
{
    if (text.find_first_not_of("0123456789.") != std::string_view::npos)
    {
        return std::nullopt;
    }
    return ParseReal(text);
}

/** Degrees, minutes and, where given, seconds; only the last part may have decimals. */
ParsedAngle FromSexagesimal(const std::vector<std::string_view>& parts)
{
    constexpr std::array<double, 3> UNITS = {UNITS_PER_DEGREE, UNITS_PER_MINUTE, UNITS_PER_SECOND};
    double units = 0.0;
    for (size_t i = 0; i < parts.size(); ++i)
    {
        const std::optional<double> part = ParsePart(parts[i]);
        const bool isLast = i + 1 == parts.size();
        if (!part || (!isLast && parts[i].find('.') != std::string_view::npos))
        {
            return Problem(NOT_AN_ANGLE);
        }
        if (i > 0 && *part >= 60.0)
        {
            return Problem("minutes and seconds must be below 60");
        }
        units += *part * UNITS[i];
    }
    return FromUnits(units);
}

/** 99.10245 for 99-10-24.5, as many instruments pack it; taken apart as text, so that no digit is lost. */
ParsedAngle FromPacked(std::string_view text)
{
    const size_t point = text.find('.');
    const std::string degrees(text.substr(0, point));
    std::string fraction = point == std::string_view::npos ? "" : std::string(text.substr(point + 1));
    if (degrees.empty() || !ParsePart(degrees) || fraction.find_first_not_of("0123456789") != std::string::npos)
    {
        return Problem("not a packed angle; with --angle dms a bare number is d.mmss");
    }
    while (fraction.size() < 4)
    {
        fraction += '0';
    }
    const std::string minutes = fraction.substr(0, 2);
    const std::string seconds = fraction.substr(2, 2) + "." + fraction.substr(4) + "0";
    return FromSexagesimal({degrees, minutes, seconds});
}

ParsedAngle FromBare(std::string_view text, std::optional<AngleForm> bare)
{
    const std::optional<double> value = ParseReal(text);
    if (!value)
    {
        return Problem(NOT_AN_ANGLE);
    }
    if (!bare)
    {
        return Problem(NO_UNIT);
    }
    switch (*bare)
    {
    case AngleForm::DMS:
        return *value < 0.0 ? Problem(OFF_CIRCLE) : FromPacked(text);
    case AngleForm::DEGREES:
        return FromUnits(*value * UNITS_PER_DEGREE);
    case AngleForm::GON:
        return FromUnits(*value * UNITS_PER_GON);
    case AngleForm::RADIANS:
        return FromUnits(*value * UNITS_PER_RADIAN);
    }
    return Problem(NOT_AN_ANGLE);
}

std::vector<std::string_view> SplitAt(std::string_view text, char separator)
{
    std::vector<std::string_view> parts;
    for (size_t next = text.find(separator); next != std::string_view::npos; next = text.find(separator))
    {
        parts.push_back(text.substr(0, next));
        text.remove_prefix(next + 1);
    }
    parts.push_back(text);
    return parts;
}

bool RemoveSuffix(std::string_view& text, std::string_view suffix)
{
    if (text.size() <= suffix.size() || text.substr(text.size() - suffix.size()) != suffix)
    {
        return false;
    }
    text.remove_suffix(suffix.size());
    return true;
}

/** Signs that look alike become one letter each: d, ' and ". */
std::string PlainSigns(std::string_view text)
{
    constexpr std::array<std::array<std::string_view, 2>, 6> SIGNS = {
        {{"°", "d"}, {"′", "'"}, {"’", "'"}, {"″", "\""}, {"”", "\""}, {"''", "\""}}};
    std::string plain = LowerCase(text);
    for (const auto& [sign, letter] : SIGNS)
    {
        for (size_t at = plain.find(sign); at != std::string::npos; at = plain.find(sign))
        {
            plain.replace(at, sign.size(), letter);
        }
    }
    return plain;
}

/** What follows the d of 99d10'24.5": minutes with their sign, then perhaps seconds with theirs. */
ParsedAngle FromSigns(std::string_view degrees, std::string_view rest)
{
    const size_t minuteSign = rest.find('\'');
    if (minuteSign == std::string_view::npos)
    {
        return Problem("not an angle; write 99d10'24.5\" or 99-10-24.5");
    }
    const std::string_view minutes = Trim(rest.substr(0, minuteSign));
    std::string_view seconds = Trim(rest.substr(minuteSign + 1));
    if (seconds.empty())
    {
        return FromSexagesimal({degrees, minutes});
    }
    RemoveSuffix(seconds, "\"");
    return FromSexagesimal({degrees, minutes, Trim(seconds)});
}

/** A number with a suffix that names its unit. */
ParsedAngle FromSuffixed(std::string_view number, double unitsPerOne)
{
    const std::optional<double> value = ParseReal(Trim(number));
    return value ? FromUnits(*value * unitsPerOne) : Problem(NOT_AN_ANGLE);
}

std::string FormatDms(AngleUnit units)
{
    // Tenths of a second, halves upwards: (units / 16) * 10 = units * 5 / 8.
    const int32_t tenths = (units * 5 + 4) / 8 % (360 * 36000);
    return fmt::format("{}-{:02}-{:02}.{}", tenths / 36000, tenths / 600 % 60, tenths / 10 % 60, tenths % 10);
}

/** A fixed number of decimals; what rounds up to the full circle starts again at 0. */
std::string FormatDecimal(AngleUnit angle, double divisor, double fullCircle, int decimals)
{
    const double value = angle / divisor;
    const double steps = std::pow(10.0, decimals);
    const bool roundsToFull = std::round(value * steps) / steps >= fullCircle;
    return FormatFixed(roundsToFull ? 0.0 : value, decimals);
}

} // namespace

ParsedAngle ParseAngle(std::string_view text, std::optional<AngleForm> bare)
{
    const std::string_view trimmed = Trim(text);
    if (trimmed.size() > LONGEST_ANGLE)
    {
        return Problem(NOT_AN_ANGLE);
    }
    const std::string plain = PlainSigns(trimmed);
    std::string_view angle = plain;
    if (!angle.empty() && angle.front() == '-' && angle.find_first_of("0123456789") == 1)
    {
        return Problem(OFF_CIRCLE);
    }
    // Radians first: "rad" ends in a d.
    if (RemoveSuffix(angle, "rad"))
    {
        return FromSuffixed(angle, UNITS_PER_RADIAN);
    }
    if (RemoveSuffix(angle, "gon") || RemoveSuffix(angle, "g"))
    {
        return FromSuffixed(angle, UNITS_PER_GON);
    }
    const size_t degreeSign = angle.find('d');
    if (degreeSign != std::string_view::npos)
    {
        const std::string_view degrees = Trim(angle.substr(0, degreeSign));
        const std::string_view rest = Trim(angle.substr(degreeSign + 1));
        return rest.empty() ? FromSuffixed(degrees, UNITS_PER_DEGREE) : FromSigns(degrees, rest);
    }
    for (const char separator : {':', '-'})
    {
        const std::vector<std::string_view> parts = SplitAt(angle, separator);
        const bool isExponent = separator == '-' && ParseReal(angle).has_value();
        if (parts.size() > 1 && !isExponent)
        {
            return parts.size() <= 3 ? FromSexagesimal(parts) : Problem(NOT_AN_ANGLE);
        }
    }
    return FromBare(angle, bare);
}

std::string FormatAngle(AngleUnit units, AngleForm form)
{
    const AngleUnit circle = WithinCircle(units);
    switch (form)
    {
    case AngleForm::DEGREES:
        return FormatDecimal(circle, UNITS_PER_DEGREE, 360.0, 4) + "d";
    case AngleForm::GON:
        return FormatDecimal(circle, UNITS_PER_GON, 400.0, 4) + "g";
    case AngleForm::RADIANS:
        return FormatDecimal(circle, UNITS_PER_RADIAN, 2.0 * PI, 6) + "rad";
    case AngleForm::DMS:
        break;
    }
    return FormatDms(circle);
}

double DegreesOf(AngleUnit units)
{
    return units / UNITS_PER_DEGREE;
}

double RadiansOf(AngleUnit units)
{
    return units / UNITS_PER_RADIAN;
}

AngleUnit UnitsOf(double radians)
{
    const double turns = radians / (2.0 * PI);
    const long long units = std::llround((turns - std::floor(turns)) * ANGLE_FULL_CIRCLE);
    return WithinCircle(static_cast<AngleUnit>(units));
}

AngleUnit WithinCircle(AngleUnit units)
{
    const AngleUnit remainder = units % ANGLE_FULL_CIRCLE;
    return remainder < 0 ? remainder + ANGLE_FULL_CIRCLE : remainder;
}

} // namespace qstd
