#include "station/set_up.h"

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

/** Why a sight cannot be brought together with a target, or nothing. */
std::string ReasonAgainst(const PreparedSight& prepared, const SetUp& setUp)
{
    if (prepared.sight->target == setUp.station)
    {
        return "the station itself";
    }
    if (prepared.target == nullptr)
    {
        return "not a known point";
    }
    if ((prepared.target->point.flags & POINT_HAS_PLAN) == 0)
    {
        return "known point without n and e";
    }
    if (IsVertical(prepared))
    {
        return "vertical sight: no direction";
    }
    return "";
}

PreparedSight PrepareSight(const Sight& sight, const SetUp& setUp, const PointList& points)
{
    PreparedSight prepared;
    prepared.sight = &sight;
    prepared.target = points.Find(sight.target);
    ReduceFace(prepared);
    prepared.remark = ReasonAgainst(prepared, setUp);
    if (!prepared.remark.empty())
    {
        prepared.target = nullptr;
        return prepared;
    }
    ReduceDistance(prepared);
    prepared.isUsed = sight.isWanted;
    if (!sight.isWanted)
    {
        prepared.remark = "kept out (use 0)";
    }
    return prepared;
}

} // namespace

/** A slope distance needs the zenith reading; a horizontal one stands alone, but then without a height difference. */
void ReduceDistance(PreparedSight& prepared)
{
    const Sight& sight = *prepared.sight;
    if (prepared.zenith)
    {
        const double zenith = RadiansOf(*prepared.zenith);
        if (sight.slopeDistance)
        {
            prepared.horizontalDistance = *sight.slopeDistance * std::sin(zenith);
            prepared.verticalDifference = *sight.slopeDistance * std::cos(zenith);
        }
        else if (sight.horizontalDistance)
        {
            prepared.horizontalDistance = sight.horizontalDistance;
            prepared.verticalDifference = *sight.horizontalDistance / std::tan(zenith);
        }
    }
    else if (sight.slopeDistance)
    {
        prepared.remark = "sd without v: distance not used";
    }
    else
    {
        prepared.horizontalDistance = sight.horizontalDistance;
    }
}

std::vector<PreparedSight> PrepareSights(const SetUp& setUp, const PointList& points)
{
    std::vector<PreparedSight> all;
    all.reserve(setUp.sights.size());
    for (const Sight& sight : setUp.sights)
    {
        all.push_back(PrepareSight(sight, setUp, points));
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
