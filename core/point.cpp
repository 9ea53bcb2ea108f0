#include "core/point.h"

#include <cmath>

#include "core/angle.h"

namespace qstdlib {

const PointRecord UNDEFINED_PLAN_POINT = {UNDEFINED_REAL, UNDEFINED_REAL, 0.0, FLAGS_PLAN};
const PointRecord UNDEFINED_SPATIAL_POINT = {UNDEFINED_REAL, UNDEFINED_REAL, UNDEFINED_REAL, FLAGS_PLAN_AND_HEIGHT};

AngleUnit AzimuthBetween(const PointRecord* from, const PointRecord* to)
{
    if (!HasPlan(*from) || !HasPlan(*to))
    {
        return ANGLE_UNDEFINED;
    }
    const double dN = to->northing - from->northing;
    const double dE = to->easting - from->easting;
    if (dN == 0.0 && dE == 0.0)
    {
        return ANGLE_UNDEFINED;
    }
    return ApplyAzimuthReference(RadiansToAngle(std::atan2(dE, dN)));
}

AngleUnit ZenithBetween(const PointRecord* from, const PointRecord* to)
{
    const double dN = to->northing - from->northing;
    const double dE = to->easting - from->easting;
    const double dH = to->height - from->height;
    const double horizontal = std::hypot(dE, dN);
    if (horizontal == 0.0 && dH == 0.0)
    {
        return ANGLE_UNDEFINED;
    }
    const AngleUnit elevation = RadiansToAngle(std::atan2(dH, horizontal));
    return CircleRemainder(WrapSubtract(ANGLE_FULL_CIRCLE + ANGLE_QUARTER_CIRCLE, elevation));
}

int32_t PointDistances(double* slope, double* horizontal, double* heightDifference, const PointRecord* first,
                       const PointRecord* second)
{
    if (!HasPlan(*first) || !HasPlan(*second))
    {
        return QSTD_MISSING_COORDINATES;
    }
    const double dN = second->northing - first->northing;
    const double dE = second->easting - first->easting;
    const double dNSquared = std::pow(dN, 2.0);
    const double dESquared = std::pow(dE, 2.0);
    const double plan = std::sqrt(dESquared + dNSquared);
    *horizontal = plan;
    // The height of the second point is used as it stands, valid or not: callers depend on it.
    if (HasHeight(*first))
    {
        const double dH = second->height - first->height;
        *slope = std::sqrt((std::pow(dH, 2.0) + dESquared) + dNSquared);
        *heightDifference = dH;
    }
    else
    {
        *slope = plan;
        *heightDifference = 0.0;
    }
    return QSTD_OK;
}

} // namespace qstdlib
