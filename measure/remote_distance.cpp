#include "core/point.h"
#include "qstdlib/measure.h"

using namespace qstdlib;

int32_t QRDMCalcByCoord(const PointRecord* first, const PointRecord* second, RemoteDistanceResult* result)
{
    if (!HasPlan(*first) || !HasPlan(*second))
    {
        return QSTD_MISSING_COORDINATES;
    }
    PointRecord from = *first;
    PointRecord to = *second;
    if (!HasHeight(from) || !HasHeight(to))
    {
        from.height = 0.0;
        from.flags = FLAGS_PLAN;
        to.height = 0.0;
        to.flags = FLAGS_PLAN;
    }
    const int32_t status = CoincideInPlan(from, to) ? QSTD_COINCIDENT_POINTS : QSTD_OK;

    PointDistances(&result->slopeDistance, &result->horizontalDistance, &result->heightDifference, &from, &to);
    // The distance decides, not the coordinates: it can vanish by underflow where they differ.
    result->azimuth = result->horizontalDistance == 0.0 ? ANGLE_UNDEFINED : AzimuthBetween(&from, &to);
    return status;
}
