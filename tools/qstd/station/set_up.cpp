#include "station/set_up.h"

#include "station/distance_reduction.h"
#include "text/text.h"

#include <fmt/format.h>

#include <cmath>

namespace qstd {

namespace {

/**
 * Nearer to the vertical than one minute of arc a sight has no direction; the library takes it for one of one minute
 * where it reduces a height by zenith angle.
 */
constexpr AngleUnit VERTICAL_LIMIT = 60 * 16;

/** A zenith reading of a half circle or more is of face two: the circle turns by a half, the zenith is mirrored. */
void ReduceFace(PreparedSight& prepared)
{
    prepared.circle = prepared.sight->circle;
    prepared.zenith = prepared.sight->zenith;
    if (prepared.zenith && *prepared.zenith >= ANGLE_HALF_CIRCLE)
    {
        prepared.isFaceTwo = true;
        prepared.circle = WithinCircle(prepared.circle + ANGLE_HALF_CIRCLE);
        prepared.zenith = ANGLE_FULL_CIRCLE - *prepared.zenith;
    }
}

/** A name in which only letters' case, separators or a letter differ from that of a point. */
std::string NotKnown(const std::string& name, const PointList& points)
{
    const std::string near = points.NearestTo(name);
    return near.empty() ? "not a known point" : fmt::format("not a known point; {}?", near);
}

/** Why a sight cannot be brought together with a target, or nothing. */
std::string ReasonAgainst(const PreparedSight& prepared, const SetUp& setUp, const PointList& points)
{
    if (prepared.sight->target == setUp.station)
    {
        return "the station itself";
    }
    if (prepared.target == nullptr)
    {
        return NotKnown(prepared.sight->target, points);
    }
    if ((prepared.target->point.flags & POINT_HAS_PLAN) == 0 && !prepared.sight->isWanted)
    {
        return "kept out (use 0)";
    }
    if ((prepared.target->point.flags & POINT_HAS_PLAN) == 0)
    {
        return (prepared.target->point.flags & POINT_HAS_HEIGHT) != 0 ? "height only, but no distance and zenith"
                                                                      : "known point without n and e";
    }
    if (IsVertical(prepared))
    {
        return "vertical sight: no direction";
    }
    return "";
}

/** A point of which only the height is known gives the station's height, where distance and zenith were measured. */
bool IsBenchmark(const PreparedSight& prepared)
{
    return prepared.sight->isWanted && prepared.target != nullptr && prepared.verticalDifference &&
           (prepared.target->point.flags & (POINT_HAS_PLAN | POINT_HAS_HEIGHT)) == POINT_HAS_HEIGHT;
}

PreparedSight PrepareSight(const Sight& sight, const SetUp& setUp, const PointList& points, const Reduction& reduction)
{
    PreparedSight prepared;
    prepared.sight = &sight;
    prepared.target = points.Find(sight.target);
    ReduceFace(prepared);
    prepared.remark = ReasonAgainst(prepared, setUp, points);
    if (!prepared.remark.empty())
    {
        PreparedSight reduced = prepared;
        ReduceDistance(reduced, reduction);
        if (prepared.sight->target != setUp.station && IsBenchmark(reduced))
        {
            prepared = reduced;
            prepared.benchmark = prepared.target;
            prepared.remark = "for the height only";
        }
        prepared.target = nullptr;
        return prepared;
    }
    ReduceDistance(prepared, reduction);
    prepared.isUsed = sight.isWanted;
    if (!sight.isWanted)
    {
        prepared.remark = "kept out (use 0)";
    }
    return prepared;
}

} // namespace

/** A slope distance needs the zenith reading; a horizontal one stands alone, but then without a height difference. */
void ReduceDistance(PreparedSight& prepared, const Reduction& reduction)
{
    const Sight& sight = *prepared.sight;
    if (!prepared.zenith)
    {
        if (sight.slopeDistance)
        {
            prepared.remark = "sd without v: distance not used";
        }
        else if (sight.horizontalDistance)
        {
            prepared.horizontalDistance = PlanDistance(*sight.horizontalDistance, reduction);
        }
        return;
    }
    const double zenith = RadiansOf(*prepared.zenith);
    std::optional<GroundDistance> ground;
    if (sight.slopeDistance)
    {
        ground = {*sight.slopeDistance * std::sin(zenith), *sight.slopeDistance * std::cos(zenith)};
    }
    else if (sight.horizontalDistance)
    {
        ground = {*sight.horizontalDistance, *sight.horizontalDistance / std::tan(zenith)};
    }
    if (ground)
    {
        const GroundDistance level = LevelDistance(*ground, reduction);
        prepared.horizontalDistance = PlanDistance(level.horizontal, reduction);
        prepared.verticalDifference = level.vertical;
    }
}

std::vector<PreparedSight> PrepareSights(const SetUp& setUp, const PointList& points, const Reduction& reduction)
{
    std::vector<PreparedSight> all;
    all.reserve(setUp.sights.size());
    for (const Sight& sight : setUp.sights)
    {
        all.push_back(PrepareSight(sight, setUp, points, reduction));
    }
    return all;
}

bool IsVertical(AngleUnit zenith)
{
    return zenith < VERTICAL_LIMIT || zenith > ANGLE_HALF_CIRCLE - VERTICAL_LIMIT;
}

bool IsVertical(const PreparedSight& prepared)
{
    return prepared.zenith && IsVertical(*prepared.zenith);
}

PointRecord PointInMetres(const PointRecord& point, LinearUnit unit)
{
    return {ToMetres(point.northing, unit), ToMetres(point.easting, unit), ToMetres(point.height, unit), point.flags};
}

ResectObservation ToObservation(const PreparedSight& prepared, LinearUnit unit)
{
    ResectObservation observation = {};
    observation.target = PointInMetres(prepared.target->point, unit);
    observation.horizontalAngle = prepared.circle;
    observation.zenithAngle = prepared.zenith.value_or(ANGLE_QUARTER_CIRCLE);
    observation.reflectorHeight = ToMetres(prepared.sight->targetHeight, unit);
    if (!prepared.zenith)
    {
        observation.target.flags = POINT_HAS_PLAN;
    }
    if (prepared.horizontalDistance)
    {
        const double horizontal = *prepared.horizontalDistance;
        const double vertical = prepared.verticalDifference.value_or(0.0);
        observation.horizontalDistance = ToMetres(horizontal, unit);
        observation.verticalDifference = ToMetres(vertical, unit);
        // The library tells a measured distance by its slope distance, which must not be 0.
        observation.slopeDistance =
            ToMetres(prepared.sight->slopeDistance.value_or(std::hypot(horizontal, vertical)), unit);
    }
    return observation;
}

} // namespace qstd
