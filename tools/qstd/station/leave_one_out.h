/**
 * @file leave_one_out.h
 * The adjustment repeated without each sight in turn: which one does not fit the others.
 */
#ifndef QSTD_LEAVE_ONE_OUT_H
#define QSTD_LEAVE_ONE_OUT_H

#include "station/station_solution.h"

#include <cstddef>

namespace qstd {

/** Set-ups with more used sights are not repeated: the work grows with the cube of their number. */
constexpr size_t MOST_LEFT_OUT = 300;

/**
 * Fills leftOut and bestLeftOut of an adjusted station. The best is the sight without which one direction is most
 * precise, where that is more precise than with all.
 */
void LeaveOneOut(StationSolution& solution);

} // namespace qstd

#endif
