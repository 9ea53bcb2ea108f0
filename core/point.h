// Points: flags, azimuth, zenith angle and distances between two points. Differences are second minus first.
#ifndef QSTDLIB_CORE_POINT_H
#define QSTDLIB_CORE_POINT_H

#include <cmath>

#include "qstdlib/types.h"

namespace qstdlib {

constexpr uint16_t FLAGS_PLAN = POINT_HAS_PLAN;
constexpr uint16_t FLAGS_PLAN_AND_HEIGHT = POINT_HAS_PLAN | POINT_HAS_HEIGHT;

// Points that are not determined: in plan, in plan and height. One copy of each for all that hand them out.
extern const PointRecord UNDEFINED_PLAN_POINT;
extern const PointRecord UNDEFINED_SPATIAL_POINT;

inline bool HasPlan(const PointRecord& point)
{
    return (point.flags & POINT_HAS_PLAN) != 0;
}

inline bool HasHeight(const PointRecord& point)
{
    return (point.flags & POINT_HAS_HEIGHT) != 0;
}

inline bool HasPlanAndHeight(const PointRecord& point)
{
    return (point.flags & FLAGS_PLAN_AND_HEIGHT) == FLAGS_PLAN_AND_HEIGHT;
}

// Equal northing and equal easting, exactly.
inline bool CoincideInPlan(const PointRecord& first, const PointRecord& second)
{
    return first.northing == second.northing && first.easting == second.easting;
}

inline double PlanDistance(const PointRecord& from, const PointRecord& to)
{
    return std::hypot(to.northing - from.northing, to.easting - from.easting);
}

// Azimuth in the instrument's reference; ANGLE_UNDEFINED without plan coordinates or when they are equal.
AngleUnit AzimuthBetween(const PointRecord* from, const PointRecord* to);

// Zenith angle from the coordinates as they stand: no flag is tested. ANGLE_UNDEFINED when all three are equal.
AngleUnit ZenithBetween(const PointRecord* from, const PointRecord* to);

// The three distances. Returns QSTD_MISSING_COORDINATES and writes nothing without plan coordinates. The height of the
// first point decides whether heights take part; that of the second is then used as it stands.
int32_t PointDistances(double* slope, double* horizontal, double* heightDifference, const PointRecord* first,
                       const PointRecord* second);

} // namespace qstdlib

#endif
