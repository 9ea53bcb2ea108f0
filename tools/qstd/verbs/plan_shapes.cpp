#include "verbs/plan_shapes.h"

#include "text/angle_text.h"

namespace qstd {

FigurePlace PlaceOf(const PointRecord& point)
{
    const bool hasHeight = (point.flags & POINT_HAS_HEIGHT) != 0;
    return {point.northing, point.easting, hasHeight ? std::optional<double>(point.height) : std::nullopt};
}

FigurePoint GivenPoint(const KnownPoint& point)
{
    return {point.id, PlaceOf(point.point), PointRole::GIVEN};
}

FigurePoint ComputedPoint(const std::string& name, const PointRecord& point)
{
    return {name, PlaceOf(point), PointRole::COMPUTED};
}

FigureArc CircleAround(const PointRecord& centre, double radius, const std::string& label)
{
    return {PlaceOf(centre), radius, 0.0, RadiansOf(ANGLE_FULL_CIRCLE), LineRole::REFERENCE, label};
}

} // namespace qstd
