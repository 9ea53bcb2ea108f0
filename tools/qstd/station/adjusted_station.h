/**
 * @file adjusted_station.h
 * A station from all used sights by least squares: the library's result where it stands the proof, else the tool's own.
 */
#ifndef QSTD_ADJUSTED_STATION_H
#define QSTD_ADJUSTED_STATION_H

#include "station/station_solution.h"

namespace qstd {

/** Solves a set-up whose observations are counted. */
void SolveByAdjustment(StationSolution& solution, const StationRequest& request);

} // namespace qstd

#endif
