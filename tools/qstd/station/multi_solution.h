/**
 * @file multi_solution.h
 * The multi-point resection of prepared sights.
 */
#ifndef QSTD_MULTI_SOLUTION_H
#define QSTD_MULTI_SOLUTION_H

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
    ResectStation station = {};
    std::vector<size_t> order; /**< which sight each observation is */
    std::vector<ResectResidual> residuals;
    size_t withHeight = 0;            /**< observations to targets of known height */
    size_t withHeightAndDistance = 0; /**< those of them with a distance */
};

/**
 * Adjusts the used sights, again with another sight first where the library's first approximation fails or leads
 * nowhere: that rests on a few sights, which may be degenerate although the set-up as a whole is not. The status is
 * that of the first call.
 */
Adjustment AdjustSights(const std::vector<PreparedSight>& sights, LinearUnit unit);

} // namespace qstd

#endif
