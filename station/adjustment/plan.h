// The adjustment in plan that the exported functions use: AdjustResection in ADJUST_MODE_PLAN, to the last bit, in
// memory that grows with the sights and not with their square.
#ifndef QSTDLIB_STATION_ADJUSTMENT_PLAN_H
#define QSTDLIB_STATION_ADJUSTMENT_PLAN_H

#include "station/adjustment/resect_work.h"

namespace qstdlib {

struct PlanStation
{
    double northing;
    double easting;
    double orientation; // radians
    double northingSigma;
    double eastingSigma;
    double orientationSigma;
    double unitWeightSigma;
};

// Results, outputs and residual fields are those of AdjustResection in plan, which carries out the adjustment where a
// number is not finite.
int32_t AdjustInPlan(int16_t count, ResectWorkRecord* work, AdjustmentPrecision precision, PlanStation* station);

} // namespace qstdlib

#endif
