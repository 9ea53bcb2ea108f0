// The records that the adjustment works on.
#ifndef QSTDLIB_STATION_ADJUSTMENT_RESECT_WORK_H
#define QSTDLIB_STATION_ADJUSTMENT_RESECT_WORK_H

#include <cstdint>

#include "qstdlib/types.h"
#include "station/adjustment/adjust_result.h"

namespace qstdlib {

// Modes, by their number of coordinates: unknowns northing, easting, (height,) orientation.
constexpr int32_t ADJUST_MODE_PLAN = 2;
constexpr int32_t ADJUST_MODE_SPATIAL = 3;

// Angles in radians; MISSING_VALUE where a component is absent.
struct ResectWorkRecord
{
    double northing;
    double easting;
    double height;
    double reflectorHeight;
    double direction;
    double zenith;
    double slopeDistance;
    double horizontalDistance;
    double verticalDifference;
    double angleResidual;
    double distanceResidual;
    double heightValue; // height residual of a spatial adjustment, later this target's station height
};

// What the instrument measures to, before any adjustment.
struct AdjustmentPrecision
{
    double angleSigma;           // arc-seconds
    double distanceConstant;     // distance units
    double distanceProportional; // per unit of distance
};

inline bool IsPresent(double component)
{
    return component != MISSING_VALUE;
}

} // namespace qstdlib

#endif
