/**
 * @file height_suspects.h
 * Which height of a station does not agree with the others, and whether the earth's curvature explains it.
 */
#ifndef QSTD_HEIGHT_SUSPECTS_H
#define QSTD_HEIGHT_SUSPECTS_H

#include "station/station_solution.h"

namespace qstd {

/** Adds a suspect and a cause of heights that differ by more than they should. */
void FindHeightSuspects(StationSolution& solution, const StationRequest& request);

} // namespace qstd

#endif
