#include "station/height.h"

#include <cmath>

#include "core/angle.h"
#include "core/point.h"
#include "core/settings.h"
#include "qstdlib/station.h"

namespace qstdlib {

namespace {

// Steeper sights are taken for one arc-minute off the vertical, so that the divisions by sine and tangent stay finite.
constexpr double SMALLEST_ZENITH = 0.0002908882086657216;
constexpr double LARGEST_ZENITH = 3.1413017653811273;

// The earth's radius is 6,370,000 m.
constexpr double INVERSE_RADIUS = 1.5698587127158556e-7;
constexpr double INVERSE_DIAMETER = 7.849293563579278e-8;

double FaceOneZenithRadians(AngleUnit zenith)
{
    const double radians = UnreducedRadians(zenith >= ANGLE_HALF_CIRCLE ? ANGLE_FULL_CIRCLE - zenith : zenith);
    if (radians < SMALLEST_ZENITH)
    {
        return SMALLEST_ZENITH;
    }
    return radians > LARGEST_ZENITH ? LARGEST_ZENITH : radians;
}

// From the plane of the coordinates to the ground.
double GroundDistance(double distance)
{
    if (IsScaleFactorApplied() == 1)
    {
        const double scale = GetScaleFactor();
        if (scale != 0.0)
        {
            distance = distance / scale;
        }
    }
    if (IsSeaLevelCorrectionOn() == SETTING_ON)
    {
        distance = (GetMeanElevation() * INVERSE_RADIUS + 1.0) * distance;
    }
    return distance;
}

} // namespace

double StationHeightByZenith(double stationNorthing, double stationEasting, const PointRecord* target, AngleUnit zenith,
                             double reflectorHeight)
{
    if (!HasHeight(*target))
    {
        return 0.0;
    }
    const double z = FaceOneZenithRadians(zenith);
    double distance = GroundDistance(std::hypot(target->northing - stationNorthing, target->easting - stationEasting));

    // Switch and coefficient are read afresh for each half of the correction. The first half is added, as the way goes
    // from the plane distance to the slope; reductions of slopes subtract it. Derivation: docs/formulas.md.
    if (IsCurvRefrCorrectionOn() == SETTING_ON)
    {
        const double slope = distance / std::sin(z);
        const double k = GetRefractionCoefficient();
        distance = (1.0 - k * 0.5) * (slope * slope * std::sin(2.0 * z)) * INVERSE_DIAMETER + distance;
    }
    double vertical = distance / std::tan(z);
    if (IsCurvRefrCorrectionOn() == SETTING_ON)
    {
        const double k = GetRefractionCoefficient();
        vertical = distance * distance * (1.0 - k) * INVERSE_DIAMETER + vertical;
    }
    return (target->height + reflectorHeight) - vertical;
}

} // namespace qstdlib

double QSTNSeaLevelCalcByBM(double benchmarkHeight, double reflectorHeight, double verticalDifference)
{
    return (benchmarkHeight + reflectorHeight) - verticalDifference;
}
