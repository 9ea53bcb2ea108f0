#include "station/adjustment/observations.h"

#include <cmath>

#include "core/angle.h"

namespace qstdlib {

namespace {

constexpr double ARC_SECOND = 4.84813681109536e-6;

double Square(double value)
{
    return value * value;
}

double WrapOnce(double radians)
{
    if (radians > PI)
    {
        radians -= TWO_PI;
    }
    if (radians < -PI)
    {
        radians += TWO_PI;
    }
    return radians;
}

} // namespace

bool HasDistances(const ResectWorkRecord& record)
{
    return IsPresent(record.zenith) && IsPresent(record.slopeDistance) && IsPresent(record.horizontalDistance) &&
           IsPresent(record.verticalDifference);
}

bool HasUsableDistance(int32_t mode, const ResectWorkRecord& record)
{
    return HasDistances(record) && (mode != ADJUST_MODE_SPATIAL || IsPresent(record.height));
}

void CountObservations(int32_t* mode, int16_t count, const ResectWorkRecord* work, int32_t* directions,
                       int32_t* heights, int32_t* distances, int32_t* withHeight)
{
    *directions = 0;
    *heights = 0;
    *distances = 0;
    *withHeight = 0;
    int32_t withDistances = 0;
    for (int16_t i = 0; i < count; ++i)
    {
        *withHeight += IsPresent(work[i].height) ? 1 : 0;
        withDistances += HasDistances(work[i]) ? 1 : 0;
    }
    if (*withHeight == 0 || withDistances == 0)
    {
        *mode = ADJUST_MODE_PLAN;
    }
    for (int16_t i = 0; i < count; ++i)
    {
        *directions += IsPresent(work[i].direction) ? 1 : 0;
        if (HasUsableDistance(*mode, work[i]))
        {
            ++*distances;
            *heights += *mode == ADJUST_MODE_SPATIAL ? 1 : 0;
        }
    }
}

double DistanceWeight(const AdjustmentPrecision& precision, double distance)
{
    const double distanceVariance =
        Square(precision.distanceConstant) + Square(precision.distanceProportional * distance);
    return Square(precision.angleSigma * ARC_SECOND) / distanceVariance;
}

TargetOffset OffsetFrom(double northing, double easting, const ResectWorkRecord& target)
{
    const double dN = target.northing - northing;
    const double dE = target.easting - easting;
    return {dN, dE, dN * dN + dE * dE};
}

ObservationEquation DirectionEquation(const TargetOffset& target, double orientation, double direction)
{
    const double azimuth = std::atan2(target.easting, target.northing);
    return {-target.easting / target.squaredDistance, target.northing / target.squaredDistance,
            WrapOnce((orientation + direction) - azimuth)};
}

ObservationEquation DistanceEquation(const TargetOffset& target, double horizontalDistance)
{
    const double distance = std::sqrt(target.squaredDistance);
    return {target.northing / distance, target.easting / distance, horizontalDistance - distance};
}

void StoreResiduals(int32_t mode, int16_t count, ResectWorkRecord* work, const double* residuals)
{
    int32_t k = 1;
    for (int16_t i = 0; i < count; ++i)
    {
        ResectWorkRecord& record = work[i];
        record.angleResidual = 0.0;
        record.distanceResidual = 0.0;
        record.heightValue = 0.0;
        if (IsPresent(record.direction))
        {
            record.angleResidual = -residuals[k++];
        }
        if (HasUsableDistance(mode, record))
        {
            record.distanceResidual = -residuals[k++];
            if (mode == ADJUST_MODE_SPATIAL)
            {
                record.heightValue = -residuals[k++];
            }
        }
    }
}

} // namespace qstdlib
