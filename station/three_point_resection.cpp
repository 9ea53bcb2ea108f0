#include "station/three_point_resection.h"

#include <cmath>

#include "core/angle.h"
#include "core/point.h"
#include "station/circle.h"
#include "station/height.h"

namespace qstdlib {

namespace {

struct Centre
{
    double northing;
    double easting;
};

// Centre of the circle on which the chord from `first` to `second` is seen under the angle. Under a right angle it is
// the chord's midpoint; a negative right angle goes through its very large tangent.
Centre CircleCentre(const PointRecord& first, const PointRecord& second, AngleUnit angle)
{
    Centre centre = {(second.northing + first.northing) * 0.5, (second.easting + first.easting) * 0.5};
    if (angle != ANGLE_QUARTER_CIRCLE && angle != ANGLE_HALF_CIRCLE + ANGLE_QUARTER_CIRCLE)
    {
        const double t = 2.0 * std::tan(AngleToRadians(angle));
        centre.northing -= (second.easting - first.easting) / t;
        centre.easting += (second.northing - first.northing) / t;
    }
    return centre;
}

} // namespace

void AccumulateStationHeight(double* sum, int16_t* count, const TwoPointStation* station,
                             const ThreePointTarget* target)
{
    if (!HasHeight(target->known))
    {
        return;
    }
    *sum += StationHeightByZenith(station->station.northing, station->station.easting, &target->known,
                                  target->zenithAngle, target->reflectorHeight);
    ++*count;
}

} // namespace qstdlib

using namespace qstdlib;

int32_t QSTN3PtResect(const ThreePointTarget* first, const ThreePointTarget* second, const ThreePointTarget* third,
                      TwoPointStation* station)
{
    if (!HasPlan(first->known) || !HasPlan(second->known) || !HasPlan(third->known))
    {
        return QSTD_MISSING_COORDINATES;
    }
    const AngleUnit h1 = FaceReducedReading(first->horizontalAngle, first->zenithAngle);
    const AngleUnit h2 = FaceReducedReading(second->horizontalAngle, second->zenithAngle);
    const AngleUnit h3 = FaceReducedReading(third->horizontalAngle, third->zenithAngle);
    if (h2 == h1 || h3 == h1 || h3 == h2)
    {
        return QSTD_EQUAL_DIRECTIONS;
    }

    const Centre c1 = CircleCentre(first->known, second->known, WrapSubtract(h2, h1));
    const Centre c2 = CircleCentre(second->known, third->known, WrapSubtract(h3, h2));
    const double dN = c2.northing - c1.northing;
    const double dE = c2.easting - c1.easting;
    const double squaredLength = std::pow(dN, 2.0) + std::pow(dE, 2.0);
    if (squaredLength == 0.0)
    {
        return QSTD_DEGENERATE;
    }

    // The circles meet in the second point and in its mirror image in the line of centres: the station.
    const PointRecord& mirrored = second->known;
    const double k =
        2.0 * ((mirrored.easting - c1.easting) * dN - (mirrored.northing - c1.northing) * dE) / squaredLength;
    PointRecord& position = station->station;
    position.northing = k * dE + mirrored.northing;
    position.easting = mirrored.easting - k * dN;

    double sum = 0.0;
    int16_t count = 0;
    AccumulateStationHeight(&sum, &count, station, first);
    AccumulateStationHeight(&sum, &count, station, second);
    AccumulateStationHeight(&sum, &count, station, third);
    position.height = count > 0 ? sum / count : 0.0;
    position.flags = count > 0 ? FLAGS_PLAN_AND_HEIGHT : FLAGS_PLAN;
    station->orientation = CircleOrientation(&position, &first->known, h1);
    return QSTD_OK;
}
