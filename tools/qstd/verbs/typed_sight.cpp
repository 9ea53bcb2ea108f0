#include "verbs/typed_sight.h"

#include "input/row_reader.h"
#include "text/outcome.h"
#include "text/text.h"
#include "verbs/arguments.h"

#include <fmt/format.h>

#include <algorithm>

namespace qstd {

namespace {

/** What to write, by SightParts. */
const std::vector<std::string> FORMS = {"HZ or HZ,V such as 123-45-10,88-30-00", "HZ,V such as 123-45-10,88-30-00",
                                        "HZ,V,SD such as 123-45-10,88-30-00,25.480"};

double ParseDistance(const std::string& text, const std::string& what)
{
    const double distance = LengthArgument(text, what);
    if (distance <= 0.0)
    {
        throw WrongUse(fmt::format("{} {}: not above 0; give the measured slope distance", what, Quoted(text)));
    }
    return distance;
}

} // namespace

std::vector<std::string> PartsOf(const std::string& text)
{
    const std::vector<std::string_view> parts = SplitAtCommas(text);
    return {parts.begin(), parts.end()};
}

std::string WithForm(const std::string& angle, AngleForm form)
{
    switch (form)
    {
    case AngleForm::DEGREES:
        return angle + "d";
    case AngleForm::GON:
        return angle + "g";
    case AngleForm::RADIANS:
        return angle + "rad";
    case AngleForm::DMS:
        break;
    }
    return FormatAngle(ParseAngle(angle, form).units, form);
}

void RequireOneMeaning(const std::string& text, const Inputs& inputs)
{
    constexpr size_t PARTS = 3;
    const std::optional<AngleForm> form = inputs.BareAngles();
    const std::vector<std::string> parts = PartsOf(text);
    if (!form || parts.size() != PARTS)
    {
        return;
    }
    const std::optional<double> distance = ParseReal(parts[2]);
    const auto isBareAngle = [form](const std::string& part) {
        return ParseReal(part) && ParseAngle(part, form).problem.empty();
    };
    if (isBareAngle(parts[0]) && isBareAngle(parts[1]) && distance && *distance > 0.0)
    {
        throw WrongUse(
            fmt::format("{}: with --angle, a sight HZ,V,SD as well as coordinates N,E,H; write {},{},{} for the "
                        "sight, or N={},E={},H={} for the coordinates",
                        Quoted(text), WithForm(parts[0], *form), WithForm(parts[1], *form), parts[2], parts[0],
                        parts[1], parts[2]));
    }
}

bool LooksLikeSight(const std::string& text)
{
    const std::vector<std::string> parts = PartsOf(text);
    const bool isMarked = text.find('=') != std::string::npos;
    return !isMarked && parts.size() > 1 &&
           !std::all_of(parts.begin(), parts.end(), [](const std::string& part) { return ParseReal(part); });
}

TypedSight ParseSight(const std::string& text, const std::string& what, SightParts least, const Inputs& inputs)
{
    const std::vector<std::string> parts = PartsOf(text);
    const auto form = static_cast<size_t>(least);
    if (parts.size() < form + 1 || parts.size() > 3)
    {
        throw WrongUse(fmt::format("{} {}: write the sight as {}", what, Quoted(text), FORMS[form]));
    }
    TypedSight sight;
    sight.circle = inputs.Angle(parts[0], what + ": circle reading");
    if (parts.size() > 1)
    {
        sight.zenith = inputs.Angle(parts[1], what + ": zenith reading");
    }
    if (parts.size() > 2)
    {
        sight.slopeDistance = ParseDistance(parts[2], what + ": slope distance");
    }
    return sight;
}

FaceOneSight InFaceOne(AngleUnit circle, AngleUnit zenith)
{
    if (zenith < ANGLE_HALF_CIRCLE)
    {
        return {circle, zenith};
    }
    return {WithinCircle(circle + ANGLE_HALF_CIRCLE), ANGLE_FULL_CIRCLE - zenith};
}

} // namespace qstd
