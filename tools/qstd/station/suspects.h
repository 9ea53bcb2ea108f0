/**
 * @file suspects.h
 * Which observation of a set-up that does not fit is to blame, and which usual mistake would explain it.
 */
#ifndef QSTD_SUSPECTS_H
#define QSTD_SUSPECTS_H

#include "station/station_solution.h"

namespace qstd {

/**
 * Fills suspects and causes where sights or heights do not fit, or where sights that should determine a station give
 * none. Each observation is left out in turn; then the usual mistakes are tried on the set and on single targets.
 */
void FindSuspects(StationSolution& solution, const StationRequest& request);

} // namespace qstd

#endif
