#include "station/station_residuals.h"

#include "instrument/earth.h"
#include "station/plan_adjustment.h"

#include <algorithm>
#include <cmath>

namespace qstd {

namespace {

constexpr double PI = 3.14159265358979323846;
constexpr double ZENITH_LIMIT = PI / 10800.0; // the library takes no angle nearer to the vertical than 1'

bool HasHeight(const PointRecord& point)
{
    return (point.flags & POINT_HAS_HEIGHT) != 0;
}

} // namespace

double RiseByZenith(double planDistance, AngleUnit zenith, const SimulatedInstrument& instrument)
{
    const double z = std::clamp(RadiansOf(zenith), ZENITH_LIMIT, PI - ZENITH_LIMIT);
    double distance = planDistance;
    if (instrument.scaleFactor != 0.0)
    {
        distance /= instrument.scaleFactor;
    }
    if (instrument.seaLevel == 1)
    {
        distance *= 1.0 + instrument.meanElevation / EARTH_RADIUS;
    }
    if (instrument.curvatureRefraction != 1)
    {
        return distance / std::tan(z);
    }
    const double k = RefractionCoefficient(instrument);
    const double slope = distance / std::sin(z);
    distance += (1.0 - k / 2.0) * slope * slope * std::sin(2.0 * z) / (2.0 * EARTH_RADIUS);
    return distance / std::tan(z) + (1.0 - k) * distance * distance / (2.0 * EARTH_RADIUS);
}

SightResidual ComputeResidual(const PreparedSight& sight, const StationSolution& solution,
                              const SimulatedInstrument& instrument)
{
    SightResidual residual;
    const ResectStation& station = solution.station;
    const PointRecord& target = sight.target->point;
    const double dN = target.northing - station.position.northing;
    const double dE = target.easting - station.position.easting;
    const double distance = std::hypot(dN, dE);
    const double azimuth = std::atan2(dE, dN) - (solution.IsOrientationFromSouth() ? PI : 0.0);
    residual.direction = WrapToHalfCircle(azimuth - RadiansOf(station.orientation) - RadiansOf(sight.circle));
    residual.across = *residual.direction * distance;
    if (sight.horizontalDistance)
    {
        residual.distance = distance - *sight.horizontalDistance;
    }
    if (HasHeight(target) && HasHeight(station.position) && sight.zenith)
    {
        const bool isByDistance = sight.verticalDifference && solution.method != StationMethod::THREE_POINT;
        const double rise =
            isByDistance
                ? *sight.verticalDifference
                : FromMetres(RiseByZenith(ToMetres(distance, solution.unit), *sight.zenith, instrument), solution.unit);
        residual.height = target.height + sight.sight->targetHeight - rise - station.position.height;
    }
    return residual;
}

} // namespace qstd
