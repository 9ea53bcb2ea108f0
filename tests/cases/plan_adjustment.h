// A second road to an adjusted station: Gauss-Newton on the normal equations of directions and distances, started from
// a position that is nearly right. It shares nothing with the library.
#ifndef QSTDLIB_TESTS_CASES_PLAN_ADJUSTMENT_H
#define QSTDLIB_TESTS_CASES_PLAN_ADJUSTMENT_H

#include <vector>

namespace cases {

struct PlanSight
{
    double northing;
    double easting;
    double directionUnits; // circle reading in 1/16", not necessarily whole
    double distance;       // 0.0: none measured
};

struct PlanStation
{
    double northing;
    double easting;
    double orientationUnits; // in [0, full circle)
    double northingSigma;
    double eastingSigma;
    int redundancy;
    std::vector<double> directionResidualUnits; // adjusted less observed
    std::vector<double> distanceResiduals;      // adjusted less observed, 0.0 where none was measured
};

// Weights: 2" a direction, 2 mm and 2 ppm (as independent parts) a distance.
PlanStation AdjustPlan(const std::vector<PlanSight>& sights, double nearNorthing, double nearEasting);

} // namespace cases

#endif
