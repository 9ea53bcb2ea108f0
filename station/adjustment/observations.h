// The observations of an adjustment: which there are, what they weigh, and the equations v = A dx + l that they give.
#ifndef QSTDLIB_STATION_ADJUSTMENT_OBSERVATIONS_H
#define QSTDLIB_STATION_ADJUSTMENT_OBSERVATIONS_H

#include "station/adjustment/resect_work.h"

namespace qstdlib {

// Zenith angle and all three distances.
bool HasDistances(const ResectWorkRecord& record);

// A distance that the mode can use: a spatial adjustment needs the target's height too.
bool HasUsableDistance(int32_t mode, const ResectWorkRecord& record);

// Counts the rows of directions, distances and (spatial only) vertical differences, and the records with a height;
// lowers the mode to plan when no record has a height, or none a distance.
void CountObservations(int32_t* mode, int16_t count, const ResectWorkRecord* work, int32_t* directions,
                       int32_t* heights, int32_t* distances, int32_t* withHeight);

// All weights are relative to the variance of one direction.
constexpr double DIRECTION_WEIGHT = 1.0;

double DistanceWeight(const AdjustmentPrecision& precision, double distance);

// A target as seen from the station.
struct TargetOffset
{
    double northing;
    double easting;
    double squaredDistance;
};

TargetOffset OffsetFrom(double northing, double easting, const ResectWorkRecord& target);

// A row: its coefficients for the corrections of northing and easting, and its misclosure, observed less computed. The
// coefficient for the orientation is 1 in a direction's row and 0 in a distance's.
struct ObservationEquation
{
    double byNorthing;
    double byEasting;
    double misclosure;
};

ObservationEquation DirectionEquation(const TargetOffset& target, double orientation, double direction);
ObservationEquation DistanceEquation(const TargetOffset& target, double horizontalDistance);

// Writes the residuals, adjusted less observed, into the records. They are indexed from 1 in the order of the rows.
void StoreResiduals(int32_t mode, int16_t count, ResectWorkRecord* work, const double* residuals);

} // namespace qstdlib

#endif
