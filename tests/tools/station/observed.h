/**
 * @file observed.h
 * Observations in plan as they are at a known place, for tests of the tool's own least squares.
 */
#ifndef QSTDLIB_TESTS_TOOLS_STATION_OBSERVED_H
#define QSTDLIB_TESTS_TOOLS_STATION_OBSERVED_H

#include "station/plan_adjustment.h"

#include <cmath>
#include <vector>

namespace survey {

/** Exact observations from a place, one after the other. */
struct Observed
{
    qstd::PlanPosition place;
    std::vector<qstd::PlanObservation> observations;

    Observed& Direction(double northing, double easting, double error = 0.0)
    {
        const double azimuth = std::atan2(easting - place.easting, northing - place.northing);
        Add(qstd::ObservationKind::DIRECTION, northing, easting, azimuth - place.orientation + error);
        return *this;
    }

    /** @param sigma  metres; the weight follows from it and that of a direction */
    Observed& Distance(double northing, double easting, double error = 0.0, double sigma = 0.002)
    {
        Add(qstd::ObservationKind::DISTANCE, northing, easting,
            std::hypot(northing - place.northing, easting - place.easting) + error);
        qstd::PlanObservation& last = observations.back();
        last.weight = std::pow(qstd::WEIGHT_DIRECTION / sigma, 2.0);
        last.sigma = sigma;
        return *this;
    }

    Observed& Both(double northing, double easting)
    {
        return Direction(northing, easting).Distance(northing, easting);
    }

private:
    void Add(qstd::ObservationKind kind, double northing, double easting, double value)
    {
        qstd::PlanObservation observation;
        observation.sight = observations.size();
        observation.kind = kind;
        observation.northing = northing;
        observation.easting = easting;
        observation.value = value;
        observation.sigma = qstd::WEIGHT_DIRECTION;
        observations.push_back(observation);
    }
};

} // namespace survey

#endif
