#include "station/distance_reduction.h"

#include "instrument/earth.h"

namespace qstd {

GroundDistance LevelDistance(const GroundDistance& measured, const Reduction& reduction)
{
    if (reduction.instrument.curvatureRefraction != 1)
    {
        return measured;
    }
    const double k = RefractionCoefficient(reduction.instrument);
    const double radius = FromMetres(EARTH_RADIUS, reduction.unit);
    const double distance = measured.horizontal;
    return {distance - (1.0 - k / 2.0) * distance * measured.vertical / radius,
            measured.vertical + (1.0 - k) * distance * distance / (2.0 * radius)};
}

double PlanDistance(double horizontal, const Reduction& reduction)
{
    double distance = horizontal;
    if (reduction.instrument.seaLevel == 1)
    {
        distance /= 1.0 + reduction.instrument.meanElevation / EARTH_RADIUS;
    }
    if (reduction.instrument.scaleFactor != 0.0)
    {
        distance *= reduction.instrument.scaleFactor;
    }
    return distance;
}

} // namespace qstd
