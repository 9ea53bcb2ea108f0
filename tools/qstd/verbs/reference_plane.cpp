#include "verbs/reference_plane.h"

#include "proof/judgement.h"
#include "text/angle_text.h"
#include "text/status_name.h"
#include "verbs/arguments.h"
#include "verbs/standing.h"

#include <fmt/format.h>

#include <cmath>

namespace qstd {

namespace {

SpaceVector Difference(const PointRecord& from, const PointRecord& to)
{
    return {to.northing - from.northing, to.easting - from.easting, to.height - from.height};
}

/** Marks the row where a point lacks what a plane in space needs. */
bool IsRefusedForHeight(const PointReferences& points, Row& row)
{
    for (const KnownPoint& point : points)
    {
        if (!HasHeight(point))
        {
            row.status = QSTD_MISSING_COORDINATES;
            row.isComputed = false;
            row.remark = fmt::format("point {} has no height, which a plane in space needs", point.id);
            return true;
        }
    }
    return false;
}

std::string WhyRefused(const ReferencePlane& plane, int32_t status)
{
    if (status == QSTD_COINCIDENT_POINTS)
    {
        return plane.third ? "two of the three points coincide, which gives no plane"
                           : fmt::format("{} and {} coincide{}, which gives no plane", plane.first.id, plane.second.id,
                                         plane.isInclined ? "" : " in plan");
    }
    if (status == QSTD_DEGENERATE)
    {
        return plane.third ? "the three points lie on one line, which gives no plane"
                           : fmt::format("{} and {} lie one above the other, which gives no plane", plane.first.id,
                                         plane.second.id);
    }
    return "";
}

/** Why the library gave no point although its status tells of nothing. */
std::string WhyMissed(const ReferencePlane& plane, AngleUnit zenith)
{
    if (plane.IsInSpace())
    {
        return "the sight does not run towards the plane";
    }
    return zenith % ANGLE_HALF_CIRCLE == 0 ? "the sight is vertical, as the plane is"
                                           : "the sight runs parallel to the plane";
}

/** Plan azimuth from north in face one, radians. */
double DirectionOf(const ReferencePlane& plane, const AngleSight& sight)
{
    const bool isTurned = plane.isSouth != (sight.zenith > ANGLE_HALF_CIRCLE);
    return RadiansOf(WithinCircle(sight.circle + plane.orientation)) + (isTurned ? RadiansOf(ANGLE_HALF_CIRCLE) : 0.0);
}

/** What is known of a point only with the height of the station, and what to say of it. */
void Complete(const ReferencePlane& plane, const AngleSight& sight, PlanePlace& place, Row& row)
{
    // The two-point plane takes a sight for a line without ends.
    const bool isBehind = !plane.IsInSpace() && IsBehind(plane.station.point, DirectionOf(plane, sight), place.point);
    if (!HasHeight(plane.station))
    {
        place.point.flags = POINT_HAS_PLAN;
        row.remark = fmt::format("no height: station {} has none", plane.station.id);
    }
    else
    {
        const SpaceVector way = Difference(plane.station.point, place.point);
        const double slope = std::hypot(way[0], way[1], way[2] - plane.instrumentHeight);
        place.slopeDistance = isBehind ? std::nullopt : std::optional<double>(slope);
        row.remark = row.status == QSTD_HEIGHT_UNDETERMINED
                         ? fmt::format("height by the station alone: {} has none", plane.first.id)
                         : "";
    }
    if (isBehind)
    {
        row.remark = "behind the instrument: the sight runs away from the plane";
    }
}

SpaceSight ProvenSight(const ReferencePlane& plane, const AngleSight& sight)
{
    const double direction = DirectionOf(plane, sight);
    SpaceSight proven;
    proven.axis = SpaceOf(plane.station.point);
    proven.axis[2] += plane.instrumentHeight;
    proven.direction = {std::cos(direction), std::sin(direction)};
    const AngleUnit zenith = sight.zenith < ANGLE_HALF_CIRCLE ? sight.zenith : ANGLE_FULL_CIRCLE - sight.zenith;
    proven.zenith = RadiansOf(zenith);
    return proven;
}

Proof Prove(const ReferencePlane& plane, const AngleSight& sight, const PlanePlace& place, int32_t status)
{
    const SpaceSight proven = ProvenSight(plane, sight);
    if (plane.IsInSpace())
    {
        SpacePlane space = {SpaceOf(plane.first.point), SpaceOf(plane.second.point), SpaceOf(plane.second.point)};
        space.third[2] += 1.0;
        space.third = plane.third ? SpaceOf(plane.third->point) : space.third;
        return ProveSpacePlane(space, proven, place.point, place.along, place.across);
    }
    const bool isHeightKnown = status == QSTD_OK && HasHeight(plane.station);
    return ProveVerticalPlane(plane.first.point, plane.second.point, proven, place.point, place.along,
                              isHeightKnown ? std::optional(place.across) : std::nullopt);
}

int32_t Define(const ReferencePlane& plane)
{
    return plane.IsInSpace() ? QREFSet3PtBasePlane(&plane.first.point, &plane.second.point,
                                                   plane.third ? &plane.third->point : nullptr)
                             : QREFSet2PtBasePlane(&plane.first.point, &plane.second.point);
}

int32_t Meet(const ReferencePlane& plane, const AngleSight& sight, PlanePlace& place)
{
    const AngleUnit azimuth = WithinCircle(sight.circle + plane.orientation);
    return (plane.IsInSpace() ? QREFCalc3PtPlane : QREFCalc2PtPlane)(
        azimuth, sight.zenith, &plane.station.point, plane.instrumentHeight, &place.point, &place.along, &place.across);
}

/** The farthest that two of the points, and the instrument, lie apart. */
double ExtentOf(const ReferencePlane& plane)
{
    std::vector<PointRecord> points = {plane.first.point, plane.second.point, plane.station.point};
    if (plane.third)
    {
        points.push_back(plane.third->point);
    }
    return ExtentOf(points, Standing());
}

} // namespace

SpaceVector ReferencePlane::Baseline() const
{
    SpaceVector way = Difference(first.point, second.point);
    way[2] = IsInSpace() ? way[2] : 0.0;
    const double length = std::hypot(way[0], way[1], way[2]);
    return {way[0] / length, way[1] / length, way[2] / length};
}

SpaceVector ReferencePlane::Normal() const
{
    const SpaceVector one = Difference(first.point, second.point);
    const SpaceVector other = third ? Difference(first.point, third->point) : SpaceVector{0.0, 0.0, 1.0};
    return {one[1] * other[2] - one[2] * other[1], one[2] * other[0] - one[0] * other[2],
            one[0] * other[1] - one[1] * other[0]};
}

bool DefinePlane(const ReferencePlane& plane, Row& row)
{
    PointReferences points = {plane.first, plane.second};
    if (plane.third)
    {
        points.emplace_back(*plane.third);
    }
    points.emplace_back(plane.station);
    row.status = Define(plane);
    row.isComputed = HasResult(row.status);
    row.remark = WhyRefused(plane, row.status);
    if (!IsRefusedForPlan(points, row) && plane.IsInSpace())
    {
        IsRefusedForHeight(points, row);
    }
    return row.isComputed;
}

PlanePlace MeetPlane(const ReferencePlane& plane, const AngleSight& sight, const Sink& sink, Row& row)
{
    PlanePlace place;
    row = Row();
    row.status = Meet(plane, sight, place);
    row.isComputed = HasResult(row.status) && place.along != UNDEFINED_REAL;
    if (row.isComputed)
    {
        Complete(plane, sight, place, row);
        Judge(Prove(plane, sight, place, row.status), sink, row);
        const bool isUpKnown = HasHeight(plane.station) && HasHeight(plane.first);
        const double up = isUpKnown ? place.point.height - plane.first.point.height : 0.0;
        QuestionFar("the point", std::hypot(PlanDistance(plane.first.point, place.point), up), ExtentOf(plane), sink,
                    row);
        return place;
    }
    row.remark = row.status == QSTD_DEGENERATE
                     ? fmt::format("the instrument on {} stands in the plane", plane.station.id)
                     : WhyMissed(plane, sight.zenith);
    return place;
}

} // namespace qstd
