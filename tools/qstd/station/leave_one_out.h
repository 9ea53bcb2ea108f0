/**
 * @file leave_one_out.h
 * The adjustment repeated without each observation in turn: which one does not fit the others.
 */
#ifndef QSTD_LEAVE_ONE_OUT_H
#define QSTD_LEAVE_ONE_OUT_H

#include "station/station_solution.h"

#include <cstddef>

namespace qstd {

/** Set-ups with more observations are not repeated: the work grows with the square of their number. */
constexpr size_t MOST_LEFT_OUT = 2000;

/**
 * Fills leftOut of an adjusted station, and bestLeftOut where the set-up has a suspect: the observation without which
 * one direction is most precise.
 */
void LeaveOneOut(StationSolution& solution);

} // namespace qstd

#endif
