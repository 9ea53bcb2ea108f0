/**
 * @file station_completion.h
 * What every solved station has, whichever method it came from: counts, residuals, height, fit.
 */
#ifndef QSTD_STATION_COMPLETION_H
#define QSTD_STATION_COMPLETION_H

#include "station/station_solution.h"

namespace qstd {

/** True for finite figures within reach of any survey. */
bool IsPosition(const ResectStation& station);

/** Counts what takes part, by the method. */
void CountObservations(StationSolution& solution);

/**
 * Fills in what follows from a station in plan: residuals, height, fit.
 *
 * @param isLibraryHeight  true where station.position holds the height that the library made of the used sights
 */
void Complete(StationSolution& solution, const StationRequest& request, bool isLibraryHeight);

} // namespace qstd

#endif
