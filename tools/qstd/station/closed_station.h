/**
 * @file closed_station.h
 * A station from as few sights as a closed method takes, put back into them before it counts.
 */
#ifndef QSTD_CLOSED_STATION_H
#define QSTD_CLOSED_STATION_H

#include "station/station_solution.h"

namespace qstd {

/** Solves a set-up by its method, which is two-point, three-point or known line. */
void SolveByClosedMethod(StationSolution& solution, const StationRequest& request);

} // namespace qstd

#endif
