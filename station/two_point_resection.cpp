#include "station/two_point_resection.h"

#include <cmath>

#include "core/angle.h"
#include "core/point.h"
#include "station/circle.h"

namespace qstdlib {

namespace {

AngleUnit Reading(const TwoPointTarget& target)
{
    return FaceReducedReading(target.horizontalAngle, target.zenithAngle);
}

bool HasDistance(const TwoPointTarget& target)
{
    return target.horizontalDistance != 0.0;
}

void SetPlanPosition(PointRecord& station, double northing, double easting)
{
    station.northing = northing;
    station.easting = easting;
    station.height = 0.0;
    station.flags = FLAGS_PLAN;
}

// Angle at the target with the distance, between the baseline and the sight to the station. The triangle is flat where
// the sights coincide or oppose each other.
double AngleAtMeasuredTarget(AngleUnit angleAtStation, double sine, double cosine, double measured, double computed)
{
    if (angleAtStation == 0)
    {
        return PI;
    }
    if (angleAtStation == ANGLE_HALF_CIRCLE)
    {
        return 0.0;
    }
    return std::atan2(computed * sine, measured - computed * cosine);
}

bool GivesHeight(const TwoPointTarget& target)
{
    return HasDistance(target) && HasHeight(target.known);
}

// Station height from one target; 0.0 where it gives none.
double StationHeight(const TwoPointTarget& target)
{
    return GivesHeight(target) ? (target.known.height - target.verticalDifference) + target.reflectorHeight : 0.0;
}

void SetHeight(const TwoPointTarget& first, const TwoPointTarget& second, TwoPointStation& station)
{
    const double firstHeight = StationHeight(first);
    const double secondHeight = StationHeight(second);
    const int32_t count = (GivesHeight(first) ? 1 : 0) + (GivesHeight(second) ? 1 : 0);
    station.station.height = count > 0 ? (secondHeight + firstHeight) / count : 0.0;
    station.station.flags = count > 0 ? FLAGS_PLAN_AND_HEIGHT : FLAGS_PLAN;
    station.heightDifference = count == 2 ? firstHeight - secondHeight : 0.0;
}

double DistanceResidual(const TwoPointTarget& target, const PointRecord& station)
{
    if (!HasDistance(target))
    {
        return 0.0;
    }
    return target.horizontalDistance - PlanDistance(station, target.known);
}

void SetChecks(const TwoPointTarget& first, const TwoPointTarget& second, TwoPointStation& station)
{
    station.baselineCheck = 0.0;
    if (HasDistance(first) && HasDistance(second))
    {
        const double measured =
            std::hypot(second.localNorthing - first.localNorthing, second.localEasting - first.localEasting);
        station.baselineCheck = PlanDistance(first.known, second.known) - measured;
    }
    station.firstDistanceResidual = DistanceResidual(first, station.station);
    station.secondDistanceResidual = DistanceResidual(second, station.station);
}

} // namespace

int32_t SolveTwoDistances(const TwoPointTarget* first, const TwoPointTarget* second, TwoPointStation* station)
{
    const double dx = second->localNorthing - first->localNorthing;
    const double dy = second->localEasting - first->localEasting;
    const double dN = second->known.northing - first->known.northing;
    const double dE = second->known.easting - first->known.easting;
    const double squaredLength = std::pow(dy, 2.0) + std::pow(dx, 2.0);
    if (squaredLength == 0.0)
    {
        return QSTD_COINCIDENT_POINTS;
    }
    // Rotation and scale in one: a = m cos o, b = -m sin o for the orientation o and a scale m that is whatever the two
    // baselines make it.
    const double inverse = 1.0 / squaredLength;
    const double a = (dE * dy + dN * dx) * inverse;
    const double b = (dy * dN - dE * dx) * inverse;
    const double northing = first->known.northing - a * first->localNorthing - b * first->localEasting;
    const double easting = b * first->localNorthing + first->known.easting - a * first->localEasting;
    SetPlanPosition(station->station, northing, easting);
    station->orientation = CircleOrientation(&station->station, &first->known, Reading(*first));
    return QSTD_OK;
}

int32_t SolveOneDistance(const TwoPointTarget* first, const TwoPointTarget* second, TwoPointStation* station)
{
    const bool swapped = !HasDistance(*first);
    const TwoPointTarget& measured = swapped ? *second : *first;
    const TwoPointTarget& other = swapped ? *first : *second;

    const AngleUnit gamma = WrapSubtract(Reading(other), Reading(measured));
    const double gammaRadians = AngleToRadians(gamma);
    const double sinGamma = std::sin(gammaRadians);
    const double cosGamma = std::cos(gammaRadians);

    const double dN = other.known.northing - measured.known.northing;
    const double dE = other.known.easting - measured.known.easting;
    const double baseline = std::hypot(dN, dE);
    const double distance = measured.horizontalDistance;
    if (distance > baseline)
    {
        return QSTD_DEGENERATE;
    }
    // Sine rule for the angle at the other target, acute because it lies opposite the shorter side; then that target's
    // distance as the sum of the projections onto its sight.
    const double sinOther = (distance / baseline) * sinGamma;
    const double cosOther = std::sqrt(1.0 - std::pow(sinOther, 2.0));
    const double otherDistance = baseline * cosOther + distance * cosGamma;

    const double phi = AngleAtMeasuredTarget(gamma, sinGamma, cosGamma, distance, otherDistance);
    const double theta = std::atan2(dN, dE); // baseline, from the easting axis towards the northing axis
    const double psi = phi - theta;
    const double northing = measured.known.northing - distance * std::sin(psi);
    const double easting = measured.known.easting + distance * std::cos(psi);
    SetPlanPosition(station->station, northing, easting);
    station->orientation = CircleOrientation(&station->station, &first->known, Reading(*first));
    return QSTD_OK;
}

} // namespace qstdlib

using namespace qstdlib;

int32_t QSTN2PtResect(const TwoPointTarget* first, const TwoPointTarget* second, TwoPointStation* station)
{
    if (!HasPlan(first->known) || !HasPlan(second->known))
    {
        return QSTD_MISSING_COORDINATES;
    }
    if (CoincideInPlan(first->known, second->known))
    {
        return QSTD_COINCIDENT_POINTS;
    }
    const bool firstMeasured = HasDistance(*first);
    const bool secondMeasured = HasDistance(*second);
    if (!firstMeasured && !secondMeasured)
    {
        return QSTD_NO_DISTANCE;
    }
    const int32_t status = firstMeasured && secondMeasured ? SolveTwoDistances(first, second, station)
                                                           : SolveOneDistance(first, second, station);

    // Heights and checks follow a failed solution too, from the plan position that the record already held.
    SetHeight(*first, *second, *station);
    SetChecks(*first, *second, *station);
    return status;
}
