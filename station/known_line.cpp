#include <cmath>

#include "core/angle.h"
#include "core/point.h"
#include "qstdlib/cogo.h"
#include "qstdlib/measure.h"
#include "qstdlib/station.h"
#include "station/circle.h"

namespace qstdlib {

namespace {

// The observed point in the instrument's own frame, circle zero as north.
PointRecord LocalPoint(const ResectObservation& observation, AngleUnit reading)
{
    const double direction = UnreducedRadians(reading);
    return {observation.horizontalDistance * std::cos(direction), observation.horizontalDistance * std::sin(direction),
            observation.verticalDifference, FLAGS_PLAN_AND_HEIGHT};
}

// The azimuth as given or, if it is not, from the coordinates of the two targets.
int32_t LineAzimuth(const PointRecord& start, const PointRecord& second, AngleUnit* azimuth)
{
    if (*azimuth != AZIMUTH_NOT_GIVEN)
    {
        return QSTD_OK;
    }
    AngDistRecord line;
    const int32_t status = QCogoCoordToAngDist(&start, &second, &line);
    if (status == QSTD_OK)
    {
        *azimuth = line.azimuth;
    }
    return status;
}

// Not QSTNSeaLevelCalcByBM: the order of the sum differs, and with it the last bit.
double StationHeight(const ResectObservation& start)
{
    if (!HasHeight(start.target))
    {
        return NO_STATION_HEIGHT;
    }
    return (start.target.height - start.verticalDifference) + start.reflectorHeight;
}

} // namespace

} // namespace qstdlib

using namespace qstdlib;

int32_t QSTNKnownLine(const ResectObservation* startObservation, const ResectObservation* directionObservation,
                      AngleUnit lineAzimuth, ResectStation* station, ResectResidual* residuals)
{
    // The face is looked at for the second observation only: kept, stored set-ups depend on it.
    const PointRecord startLocal = LocalPoint(*startObservation, startObservation->horizontalAngle);
    const PointRecord secondLocal =
        LocalPoint(*directionObservation,
                   FaceNormalizedReading(directionObservation->horizontalAngle, directionObservation->zenithAngle));
    RemoteDistanceResult measured;
    int32_t status = QRDMCalcByCoord(&startLocal, &secondLocal, &measured);
    if (status != QSTD_OK)
    {
        return status;
    }
    AngleUnit azimuth = lineAzimuth;
    status = LineAzimuth(startObservation->target, directionObservation->target, &azimuth);
    if (status != QSTD_OK)
    {
        return status;
    }

    // The second target is placed on the line, at the measured distance from the first.
    const double direction = UnreducedRadians(ApplyAzimuthReference(azimuth));
    ResectObservation observations[2] = {*startObservation, *directionObservation};
    PointRecord& placed = observations[1].target;
    placed.northing = startObservation->target.northing + measured.horizontalDistance * std::cos(direction);
    placed.easting = startObservation->target.easting + measured.horizontalDistance * std::sin(direction);
    status = QSTNMultiResect(2, observations, station, residuals);
    if (status != QSTD_OK)
    {
        return status;
    }
    station->position.height = StationHeight(*startObservation);
    if (lineAzimuth != AZIMUTH_NOT_GIVEN)
    {
        return QSTD_OK;
    }

    RemoteDistanceResult known;
    status = QRDMCalcByCoord(&startObservation->target, &directionObservation->target, &known);
    if (status != QSTD_OK)
    {
        return status;
    }
    residuals[0].distanceResidual = measured.horizontalDistance - known.horizontalDistance;
    station->heightSpread = measured.heightDifference - known.heightDifference;
    return QSTD_OK;
}
