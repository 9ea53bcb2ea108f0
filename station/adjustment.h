// Iterated weighted least-squares adjustment of a station from directions and distances.
#ifndef QSTDLIB_STATION_ADJUSTMENT_H
#define QSTDLIB_STATION_ADJUSTMENT_H

#include "station/matrix.h"
#include "station/resect_work.h"

namespace qstdlib {

struct OrientingSight;

// What the instrument measures to, before any adjustment.
struct AdjustmentPrecision
{
    double angleSigma;           // arc-seconds
    double distanceConstant;     // distance units
    double distanceProportional; // per unit of distance
};

// Adjusts the station in ADJUST_MODE_PLAN or ADJUST_MODE_SPATIAL. Returns ADJUST_CONVERGED, ADJUST_NOT_CONVERGED,
// ADJUST_NO_MEMORY or ADJUST_DEGENERATE; the outputs and the residual fields of the records are written on the first
// two only. A spatial adjustment without any target height or distance is carried out in plan; height and heightSigma
// are then MISSING_VALUE.
int32_t AdjustResection(int32_t mode, int16_t count, ResectWorkRecord* work, AdjustmentPrecision precision,
                        double* northing, double* easting, double* height, double* orientation, double* northingSigma,
                        double* eastingSigma, double* heightSigma, double* orientationSigma, double* unitWeightSigma);

// The steps of the adjustment, in their order.

// Counts the rows of directions, distances and (spatial only) vertical differences, and the records with a height;
// lowers the mode to plan when no record has a height, or none a distance.
void CountObservations(int32_t* mode, int16_t count, const ResectWorkRecord* work, int32_t* directions,
                       int32_t* heights, int32_t* distances, int32_t* withHeight);

// Allocates and fills the observation vector and the weight matrix. ADJUST_NO_MEMORY, or ADJUST_DEGENERATE for an empty
// set or a vanishing slope distance, leave nothing allocated.
int32_t BuildObservationVector(int32_t* mode, int16_t count, const ResectWorkRecord* work,
                               AdjustmentPrecision precision, double** observations, Matrix* weights, int32_t* rows,
                               int32_t* distances);

// Fills the design matrix and the misclosures at the current unknowns. At the approximate ones `sight` spares the arc
// tangent of its target; at others it must be null.
void BuildObservationEquations(int32_t mode, int16_t count, const ResectWorkRecord* work, const double* unknowns,
                               const double* observations, Matrix design, double* misclosures,
                               const OrientingSight* sight = nullptr);

// Writes the residuals, adjusted less observed, into the records.
void StoreResiduals(int32_t mode, int16_t count, ResectWorkRecord* work, const double* residuals);

} // namespace qstdlib

#endif
