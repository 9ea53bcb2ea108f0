#include <cmath>

#include "core/angle.h"
#include "core/face.h"
#include "core/point.h"
#include "qstdlib/measure.h"

namespace qstdlib {

namespace {

struct RemoteElevationBase
{
    int16_t isSet;
    AngleUnit horizontalAngle;
    double heightDifference; // prism above the trunnion axis
    double horizontalDistance;
};

RemoteElevationBase stored;

// To the nearest multiple of 32 units (2"), a remainder of exactly 16 downwards.
AngleUnit RoundToTwoSeconds(AngleUnit angle)
{
    return WrapAdd(angle, 15) & ~31;
}

// Of the angle as read, not as turned into face one: the rounding is not symmetric.
bool IsVerticalToTwoSeconds(AngleUnit zenith)
{
    return RoundToTwoSeconds(ReduceToCircle(zenith) + ANGLE_FULL_CIRCLE) % ANGLE_HALF_CIRCLE == 0;
}

double ElevationTangent(AngleUnit zenith)
{
    return std::tan(AngleToRadians(WrapSubtract(ANGLE_QUARTER_CIRCLE, zenith)));
}

} // namespace

} // namespace qstdlib

using namespace qstdlib;

int32_t QREMSetBase(const SightRecord* base)
{
    stored.isSet = 0;
    const SightAngles sight = ReduceToFaceOne({base->horizontalAngle, base->zenithAngle});
    stored.horizontalAngle = sight.horizontalAngle;
    if (IsVerticalToTwoSeconds(base->zenithAngle))
    {
        return QSTD_VERTICAL_SIGHT;
    }
    stored.horizontalDistance = base->distance * std::sin(AngleToRadians(sight.zenithAngle));
    stored.heightDifference = stored.horizontalDistance * ElevationTangent(sight.zenithAngle);
    stored.isSet = 1;
    return QSTD_OK;
}

int32_t QREMCalc(AngleUnit horizontalAngle, AngleUnit zenithAngle, PointRecord* result)
{
    result->easting = 0.0;
    result->flags = FLAGS_PLAN_AND_HEIGHT;
    if (stored.isSet == 0)
    {
        result->northing = UNDEFINED_REAL;
        result->height = UNDEFINED_REAL;
        return QSTD_NOT_DEFINED;
    }
    if (IsVerticalToTwoSeconds(zenithAngle))
    {
        result->height = UNDEFINED_REAL;
        return QSTD_VERTICAL_SIGHT;
    }
    const SightAngles sight = ReduceToFaceOne({horizontalAngle, zenithAngle});
    result->height = stored.horizontalDistance * ElevationTangent(sight.zenithAngle) - stored.heightDifference;

    const AngleUnit turned = ReduceToCircle(WrapSubtract(sight.horizontalAngle, stored.horizontalAngle));
    const AngleUnit away = turned <= ANGLE_HALF_CIRCLE ? turned : ANGLE_FULL_CIRCLE - turned;
    if (RoundToTwoSeconds(away) >= ANGLE_QUARTER_CIRCLE)
    {
        result->northing = UNDEFINED_REAL;
        return QSTD_SIGHT_TURNED_AWAY;
    }
    result->northing = stored.horizontalDistance * std::tan(AngleToRadians(turned));
    return QSTD_OK;
}
