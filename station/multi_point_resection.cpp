#include "station/multi_point_resection.h"

#include <algorithm>
#include <cstdlib>

#include "core/angle.h"
#include "core/point.h"
#include "station/adjustment/plan.h"
#include "station/circle.h"
#include "station/height.h"

namespace qstdlib {

namespace {

// What the instrument measures to: 2", 2 mm + 2 ppm.
constexpr AdjustmentPrecision DEFAULT_ADJUSTMENT_PRECISION = {2.0, 0.002, 0.000002};

bool HasDistance(const ResectObservation& observation)
{
    return observation.slopeDistance != 0.0;
}

bool IsHeightAndDistanceTarget(const ResectObservation& observation)
{
    return HasHeight(observation.target) && HasDistance(observation);
}

// Station heights, one a target, gathered.
struct HeightStatistics
{
    double maximum = -1e20;
    double minimum = 1e20;
    double sum = 0.0;
    int32_t count = 0;
};

void Gather(HeightStatistics& statistics, double height)
{
    statistics.maximum = std::max(statistics.maximum, height);
    statistics.minimum = std::min(statistics.minimum, height);
    statistics.sum += height;
    ++statistics.count;
}

// From the targets with a distance and a known height, each height being kept in its work record; if there are none,
// from all targets of known height by zenith angle.
HeightStatistics GatherStationHeights(int16_t count, const ResectObservation* observations, const PointRecord& station,
                                      ResectWorkRecord* work)
{
    HeightStatistics statistics;
    for (int16_t i = 0; i < count; ++i)
    {
        const ResectObservation& observation = observations[i];
        if (IsHeightAndDistanceTarget(observation))
        {
            work[i].heightValue = QSTNSeaLevelCalcByBM(observation.target.height, observation.reflectorHeight,
                                                       observation.verticalDifference);
            Gather(statistics, work[i].heightValue);
        }
    }
    if (statistics.count > 0)
    {
        return statistics;
    }
    for (int16_t i = 0; i < count; ++i)
    {
        const ResectObservation& observation = observations[i];
        if (HasHeight(observation.target))
        {
            Gather(statistics, StationHeightByZenith(station.northing, station.easting, &observation.target,
                                                     observation.zenithAngle, observation.reflectorHeight));
        }
    }
    return statistics;
}

void SetHeight(const HeightStatistics& statistics, ResectStation& station)
{
    const bool known = statistics.count > 0;
    station.position.height = known ? statistics.sum / statistics.count : 0.0;
    station.position.flags = known ? FLAGS_PLAN_AND_HEIGHT : FLAGS_PLAN;
    station.heightSpread = known ? statistics.maximum - statistics.minimum : 0.0;
}

// The distance residual of a target without height is dropped on purpose, although the distance took part.
void SetResidual(const ResectObservation& observation, const ResectWorkRecord& record, double stationHeight,
                 ResectResidual& residual)
{
    const bool reported = IsHeightAndDistanceTarget(observation);
    residual.angleResidual = TruncateRadiansToAngle(record.angleResidual);
    residual.distanceResidual = reported ? record.distanceResidual : 0.0;
    residual.heightResidual = reported ? record.heightValue - stationHeight : 0.0;
}

int32_t Resect(int16_t count, const ResectObservation* observations, ResectWorkRecord* work, ResectStation* station,
               ResectResidual* residuals)
{
    for (int16_t i = 0; i < count; ++i)
    {
        FillWorkRecord(observations[i], work[i]);
    }
    PlanStation adjusted;
    const int32_t result = AdjustInPlan(count, work, DEFAULT_ADJUSTMENT_PRECISION, &adjusted);
    if (result == ADJUST_NO_MEMORY || result == ADJUST_DEGENERATE)
    {
        return QSTD_REJECTED;
    }
    if (result == ADJUST_NOT_CONVERGED)
    {
        return QSTD_DEGENERATE;
    }

    station->position.northing = adjusted.northing;
    station->position.easting = adjusted.easting;
    station->orientation = TruncateRadiansToAngle(adjusted.orientation);
    station->northingPrecision = adjusted.northingSigma;
    station->eastingPrecision = adjusted.eastingSigma;
    SetHeight(GatherStationHeights(count, observations, station->position, work), *station);
    for (int16_t i = 0; i < count; ++i)
    {
        SetResidual(observations[i], work[i], station->position.height, residuals[i]);
    }
    return QSTD_OK;
}

} // namespace

void FillWorkRecord(const ResectObservation& observation, ResectWorkRecord& record)
{
    record.northing = observation.target.northing;
    record.easting = observation.target.easting;
    record.height = HasHeight(observation.target) ? observation.target.height : MISSING_VALUE;
    record.reflectorHeight = observation.reflectorHeight;
    const AngleUnit zenith = observation.zenithAngle;
    const AngleUnit faceOneZenith = IsFaceTwo(zenith) ? WrapSubtract(ANGLE_FULL_CIRCLE, zenith) : zenith;
    record.direction = UnreducedRadians(FaceNormalizedReading(observation.horizontalAngle, zenith));
    record.zenith = UnreducedRadians(faceOneZenith);
    const bool measured = HasDistance(observation);
    record.slopeDistance = measured ? observation.slopeDistance : MISSING_VALUE;
    record.horizontalDistance = measured ? observation.horizontalDistance : MISSING_VALUE;
    record.verticalDifference = measured ? observation.verticalDifference : MISSING_VALUE;
}

} // namespace qstdlib

using namespace qstdlib;

int32_t QSTNMultiResect(int16_t count, const ResectObservation* observations, ResectStation* station,
                        ResectResidual* residuals)
{
    if (count < 1)
    {
        return QSTD_REJECTED; // an empty set cannot be adjusted
    }
    auto* const work =
        static_cast<ResectWorkRecord*>(std::malloc(static_cast<size_t>(count) * sizeof(ResectWorkRecord)));
    if (work == nullptr)
    {
        return QSTD_NO_MEMORY;
    }
    const int32_t status = Resect(count, observations, work, station, residuals);
    std::free(work);
    return status;
}
