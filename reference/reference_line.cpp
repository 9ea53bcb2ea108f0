#include <cmath>

#include "core/point.h"
#include "qstdlib/reference.h"

namespace qstdlib {

namespace {

struct ReferenceLine
{
    int16_t isSet;
    PointRecord first; // heights completed: both points have one, or none has
    PointRecord second;
    double length;
    double directionNorth;
    double directionEast;
};

ReferenceLine stored;

void SetHeight(PointRecord& point, double height, uint16_t flags)
{
    point.height = height;
    point.flags = flags;
}

// One height alone holds for both points.
void CompleteHeights(PointRecord& first, PointRecord& second)
{
    const bool firstHasHeight = HasHeight(first);
    const bool secondHasHeight = HasHeight(second);
    if (!firstHasHeight && !secondHasHeight)
    {
        SetHeight(first, 0.0, FLAGS_PLAN);
        SetHeight(second, 0.0, FLAGS_PLAN);
        return;
    }
    const double firstHeight = firstHasHeight ? first.height : second.height;
    const double secondHeight = secondHasHeight ? second.height : first.height;
    SetHeight(first, firstHeight, FLAGS_PLAN_AND_HEIGHT);
    SetHeight(second, secondHeight, FLAGS_PLAN_AND_HEIGHT);
}

} // namespace

} // namespace qstdlib

using namespace qstdlib;

int32_t QREFSetBaseLine(const PointRecord* first, const PointRecord* second)
{
    stored.isSet = 0;
    if (!HasPlan(*first) || !HasPlan(*second))
    {
        return QSTD_MISSING_COORDINATES;
    }
    if (CoincideInPlan(*first, *second))
    {
        return QSTD_COINCIDENT_POINTS;
    }
    stored.first = *first;
    stored.second = *second;
    CompleteHeights(stored.first, stored.second);
    const double dN = second->northing - first->northing;
    const double dE = second->easting - first->easting;
    stored.length = std::hypot(dN, dE);
    const double inverse = 1.0 / stored.length;
    stored.directionNorth = inverse * dN;
    stored.directionEast = inverse * dE;
    stored.isSet = 1;
    return QSTD_OK;
}

int32_t QREFCalc(const PointRecord* point, ReferenceLineResult* result)
{
    if (stored.isSet == 0)
    {
        return QSTD_NOT_DEFINED;
    }
    if (!HasPlan(*point))
    {
        return QSTD_MISSING_COORDINATES;
    }
    const double dN = point->northing - stored.first.northing;
    const double dE = point->easting - stored.first.easting;
    const double station = stored.directionEast * dE + stored.directionNorth * dN;
    const double offset = -(stored.directionEast * dN - stored.directionNorth * dE);

    PointRecord foot = {station * stored.directionNorth + stored.first.northing,
                        station * stored.directionEast + stored.first.easting, 0.0, FLAGS_PLAN};
    double heightDifference = 0.0;
    if (HasHeight(*point) && HasHeight(stored.first))
    {
        foot.height = (stored.second.height - stored.first.height) / stored.length * station + stored.first.height;
        foot.flags = FLAGS_PLAN_AND_HEIGHT;
        heightDifference = point->height - foot.height;
    }
    *result = {foot, station, offset, heightDifference};
    return QSTD_OK;
}
