/**
 * @file multi_solution.h
 * The multi-point resection of prepared sights, each result held against the equations that it came from.
 */
#ifndef QSTD_MULTI_SOLUTION_H
#define QSTD_MULTI_SOLUTION_H

#include "station/plan_adjustment.h"
#include "station/set_up.h"
#include "text/unit.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace qstd {

/** The used sights as the library takes them, and what it makes of them, in the unit of the job. */
struct Adjustment
{
    int32_t status = QSTD_REJECTED;
    bool isProven = false; /**< one more step of the full model leaves the station where it is */
    ResectStation station = {};
    std::vector<size_t> order; /**< which sight each observation is */
    std::vector<ResectResidual> residuals;
};

/**
 * True where a step of the full model moves a station by no more than rounding does: by 0.05 mm or, where that is more,
 * a five-hundredth of its standard deviation as expected.
 */
bool IsProven(const std::vector<PlanObservation>& observations, const PlanPosition& position);

/**
 * Adjusts the used sights. The library begins with a first approximation from a few of them, in the order in which it
 * gets them, and from a poor one it may end without a station or, status 0, at a wrong one. So each result is proven,
 * and other orders are tried until one passes: the first sight to each target before second ones, then with another
 * sight first, then the sights that fix an approximation best.
 *
 * The status is that of the first call.
 */
Adjustment AdjustSights(const std::vector<PreparedSight>& sights, const std::vector<PlanObservation>& observations,
                        LinearUnit unit);

/** The station in metres and radians. */
PlanPosition PositionOf(const ResectStation& station, LinearUnit unit);

} // namespace qstd

#endif
