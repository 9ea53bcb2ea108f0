// An iteration of the adjustment in plan of which only the corrections are wanted: one that another is sure to follow.
#ifndef QSTDLIB_STATION_PLAN_STEP_H
#define QSTDLIB_STATION_PLAN_STEP_H

#include <cstdint>

#include "station/matrix.h"

namespace qstdlib {

// A square sum as a step has it agrees with that of a full iteration to this part of itself.
constexpr double STEP_ACCURACY = 0x1p-20;

// Solves the normal equations of so many rows, given with their absolute terms (see plan_rows.h), once, where a full
// iteration inverts them and refines the inverse. Corrects the unknowns, and gives the weighted square sum of the
// residuals, which is above MACHINE_EPSILON.
//
// The unknowns then are those of a full iteration to the last bit. False, with nothing written, where that is not
// certain: when the unknowns are not well determined, when corrections are large for what they correct, when there is
// next to nothing to correct, or when a number is not finite. Every row must have a weight: a number that is not finite
// does not show in the normal equations when it weighs nothing.
bool StepInPlan(Matrix normal, int32_t rows, double* unknowns, double* squareSum);

} // namespace qstdlib

#endif
