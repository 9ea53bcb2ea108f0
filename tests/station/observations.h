// Sights of a multi-point resection as tests write them.
#ifndef QSTDLIB_TESTS_STATION_OBSERVATIONS_H
#define QSTDLIB_TESTS_STATION_OBSERVATIONS_H

#include <cmath>
#include <cstdint>
#include <vector>

#include "qstdlib.h"
#include "tests/support/angle.h"
#include "tests/support/record.h"

using Observations = std::vector<ResectObservation>;

// Of a target, to the nearest unit of angle, face one, level; the circle's zero points to `orientation`.
inline ResectObservation DirectionTo(const PointRecord& target, double northing, double easting, AngleUnit orientation)
{
    ResectObservation observation = {};
    observation.target = target;
    const double azimuth = std::atan2(target.easting - easting, target.northing - northing);
    const auto units = static_cast<AngleUnit>(std::lround(support::RadiansToUnits(azimuth)));
    observation.horizontalAngle = support::OnCircle(static_cast<int64_t>(units) - orientation);
    observation.zenithAngle = ANGLE_QUARTER_CIRCLE;
    return observation;
}

inline ResectObservation DistanceTo(const PointRecord& target, double northing, double easting, AngleUnit orientation)
{
    ResectObservation observation = DirectionTo(target, northing, easting, orientation);
    observation.horizontalDistance = std::hypot(target.northing - northing, target.easting - easting);
    observation.slopeDistance = observation.horizontalDistance;
    return observation;
}

// So many distances of 50 to 68 m in all directions from the origin, a millimetre or two and some units of angle off.
inline Observations DistancesAllAround(int16_t count)
{
    Observations observations;
    for (int16_t i = 0; i < count; ++i)
    {
        const double azimuth = support::UnitsToRadians(static_cast<double>(ANGLE_FULL_CIRCLE) * i / count);
        const double distance = 50.0 + 3.0 * (i % 7);
        ResectObservation observation = DistanceTo(
            support::FullPoint(distance * std::cos(azimuth), distance * std::sin(azimuth), 10.0), 0.0, 0.0, 0);
        observation.horizontalAngle += i % 5;
        observation.horizontalDistance += 0.001 * (i % 3);
        observations.push_back(observation);
    }
    return observations;
}

// Result of QSTNMultiResect on outputs filled with the pattern.
struct Resection
{
    int32_t status;
    ResectStation station;
    std::vector<ResectResidual> residuals;
};

inline Resection Resect(int16_t count, const Observations& observations)
{
    Resection r = {0, support::Patterned<ResectStation>(),
                   std::vector<ResectResidual>(observations.size() + 1, support::Patterned<ResectResidual>())};
    r.status = QSTNMultiResect(count, observations.data(), &r.station, r.residuals.data());
    return r;
}

inline Resection Resect(const Observations& observations)
{
    return Resect(static_cast<int16_t>(observations.size()), observations);
}

inline void ExpectNothingWritten(const Resection& r)
{
    EXPECT_TRUE(support::Untouched(r.station));
    for (const ResectResidual& residual : r.residuals)
    {
        EXPECT_TRUE(support::Untouched(residual));
    }
}

#endif
