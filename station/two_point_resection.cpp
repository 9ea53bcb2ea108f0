#include "station/two_point_resection.h"

#include <cmath>

#include "core/angle.h"
#include "core/point.h"
#include "station/circle.h"

namespace qstdlib {

namespace {

AngleUnit FaceReducedReading(const TwoPointTarget& target)
{
    return qstdlib::FaceReducedReading(target.horizontalAngle, target.zenithAngle);
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

void SetHeight(const TwoPointTarget& first, const TwoPointTarget& second, TwoPointStation& station)
{
    double heights[2] = {0.0, 0.0};
    const TwoPointTarget* const targets[2] = {&first, &second};
    int count = 0;
    for (int i = 0; i < 2; ++i)
    {
        const TwoPointTarget& target = *targets[i];
        if (HasDistance(target) && HasHeight(target.known))
        {
            heights[i] = (target.known.height - target.verticalDifference) + target.reflectorHeight;
            ++count;
        }
    }
    station.station.height = count > 0 ? (heights[1] + heights[0]) / count : 0.0;
    station.station.flags = count > 0 ? FLAGS_PLAN_AND_HEIGHT : FLAGS_PLAN;
    station.heightDifference = count == 2 ? heights[0] - heights[1] : 0.0;
}

double DistanceResidual(const TwoPointTarget& target, const PointRecord& station)
{
    if (!HasDistance(target))
    {
        return 0.0;
    }
    return target.horizontalDistance -
           std::hypot(target.known.northing - station.northing, target.known.easting - station.easting);
}

void SetChecks(const TwoPointTarget& first, const TwoPointTarget& second, TwoPointStation& station)
{
    station.baselineCheck = 0.0;
    if (HasDistance(first) && HasDistance(second))
    {
        const double known = std::hypot(second.known.northing - first.known.northing, //
                                        second.known.easting - first.known.easting);
        const double measured = std::hypot(second.localNorthing - first.localNorthing, //
                                           second.localEasting - first.localEasting);
        station.baselineCheck = known - measured;
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
    // Rotation and scale in one: a = m cos, b = m sin. The scale m is whatever the two baselines make it.
    const double inverse = 1.0 / squaredLength;
    const double a = (dE * dy + dN * dx) * inverse;
    const double b = (dy * dN - dE * dx) * inverse;

    SetPlanPosition(station->station,
                    first->known.northing - a * first->localNorthing - b * first->localEasting, //
                    b * first->localNorthing + first->known.easting - a * first->localEasting);
    station->orientation = CircleOrientation(&station->station, &first->known, FaceReducedReading(*first));
    return QSTD_OK;
}

int32_t SolveOneDistance(const TwoPointTarget* first, const TwoPointTarget* second, TwoPointStation* station)
{
    const bool swapped = !HasDistance(*first);
    const TwoPointTarget& a = swapped ? *second : *first; // with the distance
    const TwoPointTarget& b = swapped ? *first : *second;

    const AngleUnit gamma = WrapSubtract(FaceReducedReading(b), FaceReducedReading(a));
    const double gammaRadians = AngleToRadians(gamma);
    const double sinGamma = std::sin(gammaRadians);
    const double cosGamma = std::cos(gammaRadians);

    const double dN = b.known.northing - a.known.northing;
    const double dE = b.known.easting - a.known.easting;
    const double baseline = std::hypot(dN, dE);
    const double distanceA = a.horizontalDistance;
    if (distanceA > baseline)
    {
        return QSTD_DEGENERATE;
    }
    // Sine rule for the angle at B, always acute; then B's distance as the sum of the projections onto its sight.
    const double sinB = (distanceA / baseline) * sinGamma;
    const double cosB = std::sqrt(1.0 - std::pow(sinB, 2.0));
    const double distanceB = baseline * cosB + distanceA * cosGamma;

    const double phi = AngleAtMeasuredTarget(gamma, sinGamma, cosGamma, distanceA, distanceB);
    const double theta = std::atan2(dN, dE); // baseline, from the easting axis towards the northing axis
    const double psi = phi - theta;

    SetPlanPosition(station->station, a.known.northing - distanceA * std::sin(psi), //
                    a.known.easting + distanceA * std::cos(psi));
    station->orientation = CircleOrientation(&station->station, &first->known, FaceReducedReading(*first));
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
    const auto solve = firstMeasured && secondMeasured ? SolveTwoDistances : SolveOneDistance;
    const int32_t status = solve(first, second, station);

    // Heights and checks follow a failed solution too, from the plan position that the record already held.
    SetHeight(*first, *second, *station);
    SetChecks(*first, *second, *station);
    return status;
}
