#include "proof/plan_geometry.h"

#include "text/angle_text.h"

namespace qstd {

PlanVector DirectionOfAzimuth(AngleUnit azimuth, bool isSouth)
{
    const double radians = RadiansOf(WithinCircle(azimuth));
    const double sign = isSouth ? -1.0 : 1.0;
    return {sign * std::cos(radians), sign * std::sin(radians)};
}

Course CourseThrough(const PlanVector& from, const PlanVector& to)
{
    const PlanVector way = to - from;
    return {from, 1.0 / Length(way) * way};
}

Course CourseOf(const LineDef& line, bool isSouth)
{
    return line.mode == LINE_BY_POINTS ? CourseThrough(PlanOf(line.first), PlanOf(line.second))
                                       : Course{PlanOf(line.first), DirectionOfAzimuth(line.azimuth, isSouth)};
}

} // namespace qstd
