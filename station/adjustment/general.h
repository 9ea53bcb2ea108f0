// The iterated weighted least-squares adjustment of a station from directions and distances, by the matrix toolkit, as
// its formulas are printed.
#ifndef QSTDLIB_STATION_ADJUSTMENT_GENERAL_H
#define QSTDLIB_STATION_ADJUSTMENT_GENERAL_H

#include "station/adjustment/matrix.h"
#include "station/adjustment/resect_work.h"

namespace qstdlib {

// Adjusts the station in ADJUST_MODE_PLAN or ADJUST_MODE_SPATIAL. Returns ADJUST_CONVERGED, ADJUST_NOT_CONVERGED,
// ADJUST_NO_MEMORY or ADJUST_DEGENERATE; the outputs and the residual fields of the records are written on the first
// two only. A spatial adjustment without any target height or distance is carried out in plan; height and heightSigma
// are then MISSING_VALUE.
int32_t AdjustResection(int32_t mode, int16_t count, ResectWorkRecord* work, AdjustmentPrecision precision,
                        double* northing, double* easting, double* height, double* orientation, double* northingSigma,
                        double* eastingSigma, double* heightSigma, double* orientationSigma, double* unitWeightSigma);

// Steps of the adjustment, in their order.

// Allocates and fills the observation vector and the weight matrix. ADJUST_NO_MEMORY, or ADJUST_DEGENERATE for an empty
// set or a vanishing slope distance, leave nothing allocated.
int32_t BuildObservationVector(int32_t* mode, int16_t count, const ResectWorkRecord* work,
                               AdjustmentPrecision precision, double** observations, Matrix* weights, int32_t* rows,
                               int32_t* distances);

// Fills the design matrix and the misclosures at the current unknowns.
void BuildObservationEquations(int32_t mode, int16_t count, const ResectWorkRecord* work, const double* unknowns,
                               const double* observations, Matrix design, double* misclosures);

} // namespace qstdlib

#endif
