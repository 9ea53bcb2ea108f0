#include <cmath>

#include "core/point.h"
#include "measure/hand_off.h"
#include "qstdlib/reference.h"

namespace qstdlib {

namespace {

// Distance in plan from `second` to `point`, negative unless `point` lies beyond `second` as seen from `first`.
double SignedPlanDistance(const PointRecord& first, const PointRecord& second, const PointRecord& point)
{
    const double dN = point.northing - second.northing;
    const double dE = point.easting - second.easting;
    const double distance = std::sqrt(std::pow(dE, 2.0) + std::pow(dN, 2.0));
    const bool beyond = (second.northing - first.northing) * dN >= 0.0 && (second.easting - first.easting) * dE >= 0.0;
    return beyond ? distance : -distance;
}

} // namespace

} // namespace qstdlib

using namespace qstdlib;

int32_t QCalcOfsLineHA(const PointRecord* first, const PointRecord* second, AngleUnit horizontalAngle,
                       AngleUnit zenithAngle, const PointRecord* station, double instrumentHeight,
                       SightRecord* observation, PointRecord* target, double passthrough)
{
    if (!HasPlan(*first) || !HasPlan(*second))
    {
        return QSTD_MISSING_COORDINATES;
    }
    if (CoincideInPlan(*first, *second))
    {
        return QSTD_COINCIDENT_POINTS;
    }
    if (!HasHeight(*second))
    {
        return QSTD_MISSING_COORDINATES;
    }
    const double dN = second->northing - first->northing;
    const double dE = second->easting - first->easting;
    const double dH = second->height - first->height;
    const double length = std::sqrt(std::pow(dH, 2.0) + std::pow(dE, 2.0) + std::pow(dN, 2.0));
    const double cN = dN / length;
    const double cE = dE / length;
    const double cH = dH / length;
    const double squaredPlanPart = std::pow(cN, 2.0) + std::pow(cE, 2.0);
    if (squaredPlanPart == 0.0)
    {
        return QSTD_DEGENERATE;
    }

    int32_t status = QREFSet2PtBasePlane(first, second);
    if (status != QSTD_OK && status != QSTD_HEIGHT_UNDETERMINED)
    {
        return status;
    }
    PointRecord sighted;
    double alongPlane = 0.0;
    double heightAboveFirst = 0.0;
    status = QREFCalc2PtPlane(horizontalAngle, zenithAngle, station, instrumentHeight, &sighted, &alongPlane,
                              &heightAboveFirst);
    if (status == QSTD_NOT_DEFINED || status == QSTD_DEGENERATE)
    {
        return QSTD_DEGENERATE;
    }
    // A sight that misses the plane leaves undefined coordinates; they go on as they are.
    const double s = SignedPlanDistance(*first, *second, sighted) / std::sqrt(squaredPlanPart);
    *target = {second->northing + s * cN, second->easting + s * cE, second->height + s * cH, FLAGS_PLAN_AND_HEIGHT};
    return HandOff(target, passthrough, observation);
}
