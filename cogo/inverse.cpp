#include <cmath>

#include "cogo/baseline.h"
#include "core/angle.h"
#include "core/point.h"
#include "qstdlib/cogo.h"

using namespace qstdlib;

int32_t QCogoCoordToAngDist(const PointRecord* from, const PointRecord* to, AngDistRecord* result)
{
    const int32_t status =
        PointDistances(&result->slopeDistance, &result->horizontalDistance, &result->heightDifference, from, to);
    if (status != QSTD_OK)
    {
        return status;
    }
    result->zenith = ZenithBetween(from, to);
    result->azimuth = AzimuthBetween(from, to);
    const bool undefined = result->azimuth == ANGLE_UNDEFINED || result->zenith == ANGLE_UNDEFINED;
    return undefined ? QSTD_COINCIDENT_POINTS : QSTD_OK;
}

int32_t QCogoAngDistToCoord(const PointRecord* from, const AngDistRecord* observation, PointRecord* result)
{
    if (!HasPlan(*from))
    {
        return QSTD_MISSING_COORDINATES;
    }
    AngleUnit azimuth = ApplyAzimuthReference(observation->azimuth);
    double distance = observation->horizontalDistance;
    if (distance < 0.0)
    {
        distance = -distance;
        azimuth = WrapAdd(azimuth, ANGLE_HALF_CIRCLE);
    }
    const double direction = AngleToRadians(azimuth);
    const bool hasHeight = HasHeight(*from);
    const double height = hasHeight ? from->height + observation->heightDifference : 0.0;

    result->northing = std::cos(direction) * distance + from->northing;
    result->easting = std::sin(direction) * distance + from->easting;
    result->height = height;
    result->flags = hasHeight ? FLAGS_PLAN_AND_HEIGHT : FLAGS_PLAN;
    return QSTD_OK;
}

int32_t QCogoOffsetToCoord(const PointRecord* start, const PointRecord* end, double chainage, double offset,
                           PointRecord* result)
{
    if (!HasPlan(*start) || !HasPlan(*end))
    {
        return QSTD_MISSING_COORDINATES;
    }
    if (CoincideInPlan(*start, *end))
    {
        return QSTD_COINCIDENT_POINTS;
    }
    *result = PointBeside(BaselineThrough(*start, *end), chainage, offset);
    return QSTD_OK;
}

void QCogoCalcSlopeByDist(double horizontal, double vertical, SlopeResult* slope)
{
    slope->grade = horizontal == 0.0 ? UNDEFINED_REAL : (vertical / horizontal) * 100.0;
    slope->ratio = vertical == 0.0 ? UNDEFINED_REAL : horizontal / vertical;
}
