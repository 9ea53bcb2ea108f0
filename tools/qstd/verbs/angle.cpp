#include "verbs/angle.h"

#include "text/text.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>

namespace qstd {

namespace {

constexpr double PI = 3.14159265358979323846;
constexpr int64_t TWO_TO_32 = int64_t{1} << 32;

const Section SECTION = {"angle",
                         Layout::TABLE,
                         true,
                         {{"angle", "angle", Quantity::TEXT, ""},
                          {"dms", "dms", Quantity::TEXT, ""},
                          {"deg", "deg", Quantity::TEXT, ""},
                          {"gon", "gon", Quantity::TEXT, ""},
                          {"rad", "rad", Quantity::TEXT, ""},
                          {"units", "units", Quantity::COUNT, ""}}};

/** Exact: a unit is 1/16 of a second, 0.0625. */
std::string ExactDms(AngleUnit units)
{
    constexpr int TEN_THOUSANDTHS = 10000 / 16;
    const AngleUnit seconds = units / 16;
    return fmt::format("{}-{:02}-{:02}.{:04}", seconds / 3600, seconds / 60 % 60, seconds % 60,
                       units % 16 * TEN_THOUSANDTHS);
}

/** With as many decimals as it takes to read the same unit again. */
std::vector<Value> Forms(AngleUnit units)
{
    return {ExactDms(units), FormatFixed(units / 57600.0, 6) + "d", FormatFixed(units / 51840.0, 6) + "g",
            FormatFixed(units * (PI / ANGLE_HALF_CIRCLE), 8) + "rad", int64_t{units}};
}

/** Each form, read again, gives the angle. */
bool AreReadAgain(const std::vector<Value>& forms, AngleUnit units)
{
    return std::all_of(forms.begin(), forms.end(), [units](const Value& form) {
        const auto* text = std::get_if<std::string>(&form);
        return text == nullptr || ParseAngle(*text, std::nullopt).units == units;
    });
}

Row RowOf(const std::string& text, const Inputs& inputs)
{
    Row row;
    row.values = {text};
    const std::optional<AngleUnit> given = ParseUnits(text);
    if (given == ANGLE_UNDEFINED)
    {
        row.isComputed = false;
        row.remark = "the library's mark for an angle that could not be computed";
        return row;
    }
    const AngleUnit units = given ? DirectionOfUnits(*given) : inputs.Angle(text, "angle");
    const std::vector<Value> forms = Forms(units);
    row.values.insert(row.values.end(), forms.begin(), forms.end());
    if (!AreReadAgain(forms, units))
    {
        row.isProven = false;
        row.warnings.emplace_back("not what was asked for: a form, read again, gives another angle");
    }
    if (given && *given != units)
    {
        row.remark = "brought within the circle";
    }
    return row;
}

} // namespace

std::optional<AngleUnit> ParseUnits(std::string_view text)
{
    const std::string plain = LowerCase(Trim(text));
    if (plain.size() < 2 || plain.back() != 'u')
    {
        return std::nullopt;
    }
    AngleUnit units = 0;
    const char* const end = plain.data() + plain.size() - 1;
    const auto [stop, error] = std::from_chars(plain.data(), end, units);
    return error == std::errc() && stop == end ? std::optional<AngleUnit>(units) : std::nullopt;
}

AngleUnit DirectionOfUnits(AngleUnit units)
{
    constexpr AngleUnit LAST_WITHOUT_WRAP = std::numeric_limits<AngleUnit>::max() - ANGLE_FULL_CIRCLE;
    const int64_t counted = units > LAST_WITHOUT_WRAP ? units - TWO_TO_32 : int64_t{units};
    const int64_t remainder = counted % ANGLE_FULL_CIRCLE;
    return static_cast<AngleUnit>(remainder < 0 ? remainder + ANGLE_FULL_CIRCLE : remainder);
}

void RunAngle(const AngleOptions& options, Inputs& inputs, Sink& sink)
{
    sink.Title("Angles");
    sink.Begin(SECTION);
    for (const std::string& angle : options.angles)
    {
        sink.Add(RowOf(angle, inputs));
    }
}

} // namespace qstd
