#include "core/point.h"
#include "qstdlib/measure.h"

namespace qstdlib {

namespace {

struct Slope
{
    int16_t isSet;
    int16_t status; // handed back by every calculation
    int16_t isNegativeSide;
    double height1;
    double distance1;
    double height2;
    double distance2;
};

Slope stored;

} // namespace

} // namespace qstdlib

using namespace qstdlib;

int32_t QBRSetSlope(double height1, double distance1, double height2, double distance2)
{
    stored.isSet = 0;
    const bool sameHeight = height1 == height2;
    const bool sameDistance = distance1 == distance2;
    if (sameHeight && sameDistance)
    {
        return QSTD_REJECTED; // the same point twice
    }
    int16_t status = QSTD_OK;
    if (sameHeight)
    {
        status = QSTD_DISTANCE_UNDETERMINED;
    }
    else if (sameDistance)
    {
        status = QSTD_HEIGHT_UNDETERMINED;
    }
    int16_t isNegativeSide = 0;
    if (distance1 < 0.0 || distance2 < 0.0)
    {
        if (distance1 > 0.0 || distance2 > 0.0)
        {
            return QSTD_REJECTED; // on opposite sides of the base
        }
        isNegativeSide = 1;
    }
    stored = {1, status, isNegativeSide, height1, distance1, height2, distance2};
    return status;
}

int32_t QBRCalc(const PointRecord* base, const PointRecord* point, SlopeCheckResult* result)
{
    if (stored.isSet == 0)
    {
        return QSTD_NOT_DEFINED;
    }
    if (!HasPlan(*base) || !HasPlanAndHeight(*point))
    {
        return QSTD_MISSING_COORDINATES;
    }
    if (CoincideInPlan(*base, *point))
    {
        return QSTD_COINCIDENT_POINTS;
    }
    double slopeDistance = 0.0;
    double horizontal = 0.0;
    double heightDifference = 0.0;
    PointDistances(&slopeDistance, &horizontal, &heightDifference, base, point);

    // The section: height over signed distance, through (b, a) and (d, c).
    const double a = stored.height1;
    const double b = stored.distance1;
    const double c = stored.height2;
    const double d = stored.distance2;
    const bool negative = stored.isNegativeSide != 0;
    const double s = negative ? -horizontal : horizontal;

    result->distanceFromBase = horizontal;
    result->heightAboveSlope =
        stored.status == QSTD_HEIGHT_UNDETERMINED ? UNDEFINED_REAL : point->height - (c - a) * (s - b) / (d - b) - a;
    if (stored.status == QSTD_DISTANCE_UNDETERMINED)
    {
        result->offsetBeyondSlope = UNDEFINED_REAL;
        return stored.status;
    }
    const double towardsSlope = (d - b) / (c - a) * (point->height - a) - s + b;
    result->offsetBeyondSlope = negative ? towardsSlope : -towardsSlope;
    return stored.status;
}
