// Angles and numbers as people write them, of any bytes: either a problem, or a value that survives being printed and
// read again.
#include "require.h"
#include "text/angle_text.h"
#include "text/text.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

using qstd::AngleForm;
using qstd::FormatAngle;
using qstd::ParseAngle;
using qstd::ParsedAngle;
using qstd::ParseReal;

namespace {

/** The last decimal of a printed form in units of 1/16", halved: what printing may change. Reading rounds once more. */
double PrintingError(AngleForm form)
{
    constexpr double UNITS_PER_DEGREE = 57600.0;
    constexpr double UNITS_PER_GON = 51840.0;
    constexpr double UNITS_PER_RADIAN = UNITS_PER_DEGREE * 57.295779513082321;
    switch (form)
    {
    case AngleForm::DEGREES:
        return 0.5e-4 * UNITS_PER_DEGREE;
    case AngleForm::GON:
        return 0.5e-4 * UNITS_PER_GON;
    case AngleForm::RADIANS:
        return 0.5e-6 * UNITS_PER_RADIAN;
    case AngleForm::DMS:
        break;
    }
    return 0.5 * 1.6; // of a tenth of a second
}

int32_t DistanceOnCircle(int32_t one, int32_t other)
{
    const int32_t difference = std::abs(one - other);
    return std::min(difference, ANGLE_FULL_CIRCLE - difference);
}

void CheckPrinted(int32_t units, AngleForm form)
{
    const std::string printed = FormatAngle(units, form);
    const ParsedAngle again = ParseAngle(printed, std::nullopt);
    Require(again.problem.empty(), "a printed angle can be read");
    Require(DistanceOnCircle(again.units, units) <= PrintingError(form) + 0.5, "a printed angle is the same angle");
    Require(FormatAngle(again.units, form) == printed, "a printed angle is printed alike once read");
}

void CheckAngle(std::string_view text, std::optional<AngleForm> bare)
{
    const ParsedAngle angle = ParseAngle(text, bare);
    if (!angle.problem.empty())
    {
        return;
    }
    Require(angle.units >= 0 && angle.units < ANGLE_FULL_CIRCLE, "an angle lies on the circle");
    for (const AngleForm form : {AngleForm::DMS, AngleForm::DEGREES, AngleForm::GON, AngleForm::RADIANS})
    {
        CheckPrinted(angle.units, form);
    }
    const std::string blanksAround = "\t " + std::string(text) + " ";
    Require(ParseAngle(blanksAround, bare).units == angle.units, "blanks around an angle do not matter");
}

/** An angle that says its unit has one value, whatever bare numbers are. */
void CheckUnits(std::string_view text)
{
    const ParsedAngle alone = ParseAngle(text, std::nullopt);
    if (!alone.problem.empty())
    {
        return;
    }
    for (const AngleForm form : {AngleForm::DMS, AngleForm::DEGREES, AngleForm::GON, AngleForm::RADIANS})
    {
        const ParsedAngle angle = ParseAngle(text, form);
        Require(angle.problem.empty() && angle.units == alone.units, "an angle with its unit needs no other");
    }
}

/** The C library's reading of the same text. */
void CheckReal(std::string_view text)
{
    const std::optional<double> value = ParseReal(text);
    if (!value)
    {
        return;
    }
    Require(std::isfinite(*value), "a number is finite");
    Require(text.find_first_not_of("+-.0123456789eE") == std::string_view::npos, "a number is decimal");
    const std::string copy(text);
    char* end = nullptr;
    Require(std::strtod(copy.c_str(), &end) == *value && *end == '\0', "a number is what the C library reads");
    Require(ParseReal(fmt::format("{}", *value)) == value, "a number survives being printed");
    const std::string fixed = qstd::FormatFixed(*value, 4);
    const std::optional<double> again = ParseReal(fixed);
    Require(again && std::abs(*again - *value) <= 0.5001e-4 + std::abs(*value) * 1e-15, "four decimals are kept");
    Require(fixed != "-0.0000" && qstd::FormatSigned(*value, 4).find("-0.0000") == std::string::npos,
            "zero has no sign");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string_view text = TextOf(data, size);
    CheckReal(text);
    CheckUnits(text);
    CheckAngle(text, std::nullopt);
    for (const AngleForm form : {AngleForm::DMS, AngleForm::DEGREES, AngleForm::GON, AngleForm::RADIANS})
    {
        CheckAngle(text, form);
    }
    return 0;
}
