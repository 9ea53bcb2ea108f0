/**
 * @file closed_solution.h
 * Stations from as few sights as there must be: two-point, three-point, known line.
 */
#ifndef QSTD_CLOSED_SOLUTION_H
#define QSTD_CLOSED_SOLUTION_H

#include "station/station_solution.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace qstd {

/** What the library makes of the sights of a closed method, in the unit of the job. */
struct ClosedResult
{
    int32_t status = QSTD_OK;
    ResectStation station = {};
    ClosedChecks checks;
    size_t heightTargets = 0;
};

/**
 * The sights that a closed method takes, in the order in which the library gets them; fewer than it needs where the
 * set-up does not hold them. One sight to each target, in the order of the request, else of the field book.
 *
 * Two-point: the first two with a distance, else the first one with a distance and the first other. Three-point: the
 * first three. Known line: the first one with a distance to a known point begins the line, the first other one with a
 * distance gives its direction; with an azimuth its target need not be known.
 */
std::vector<size_t> ChooseSights(const std::vector<PreparedSight>& sights, const SetUp& setUp, StationMethod method,
                                 const StationRequest& request);

/** Computes the station of chosen sights, all that the method needs. */
ClosedResult SolveClosed(StationMethod method, const std::vector<PreparedSight>& chosen, const StationRequest& request);

} // namespace qstd

#endif
