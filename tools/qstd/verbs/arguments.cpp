#include "verbs/arguments.h"

#include "input/row_reader.h"
#include "text/outcome.h"
#include "text/text.h"

#include <fmt/format.h>

#include <cmath>
#include <optional>

namespace qstd {

namespace {

/** False for what is no number, too. */
bool IsLengthOnEarth(double value)
{
    return std::fabs(value) <= LONGEST_LENGTH;
}

} // namespace

double LengthArgument(const std::string& text, const std::string& what)
{
    const std::optional<double> value = ParseReal(Trim(text));
    if (!value)
    {
        throw WrongUse(
            fmt::format("{} {}: not a number; write it with a decimal point, such as 12.345", what, Quoted(text)));
    }
    if (!IsLengthOnEarth(*value))
    {
        throw WrongUse(fmt::format("{} {}: beyond 100 000 km; no length on the earth is longer", what, Quoted(text)));
    }
    return *value;
}

bool IsRefusedForPlan(const PointReferences& points, Row& row)
{
    for (const KnownPoint& point : points)
    {
        if ((point.point.flags & POINT_HAS_PLAN) == 0)
        {
            row.status = QSTD_MISSING_COORDINATES;
            row.isComputed = false;
            row.remark = fmt::format("point {} has no northing and easting", point.id);
            return true;
        }
    }
    return false;
}

bool IsOnEarth(const PointRecord& point)
{
    const bool hasHeight = (point.flags & POINT_HAS_HEIGHT) != 0;
    return IsLengthOnEarth(point.northing) && IsLengthOnEarth(point.easting) &&
           (!hasHeight || IsLengthOnEarth(point.height));
}

std::string SideText(double offset, const Sink& sink, const std::string& reference)
{
    // Formatting is needed only for what may be printed as 0; a long list asks for every line.
    if (std::fabs(offset) < 1.0 && sink.LengthText(std::fabs(offset)) == sink.LengthText(0.0))
    {
        return "on the " + reference;
    }
    return offset > 0.0 ? "to the right" : "to the left";
}

} // namespace qstd
