#include "station/station_solution.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

namespace qstd {

namespace {

constexpr double PI = 3.14159265358979323846;

double WrapToHalfCircle(double radians)
{
    return radians - 2.0 * PI * std::floor(radians / (2.0 * PI) + 0.5);
}

void CountObservations(StationSolution& solution)
{
    for (const PreparedSight& sight : solution.sights)
    {
        solution.faceTwo += sight.isFaceTwo ? 1U : 0U;
        if (sight.isUsed)
        {
            ++solution.used;
            ++solution.directions;
            solution.distances += sight.horizontalDistance ? 1U : 0U;
        }
    }
}

/** A position farther off than this is none: the adjustment has run away. */
constexpr double FARTHEST_POSITION = 1e9;

bool IsPosition(const ResectStation& station)
{
    return std::fabs(station.position.northing) < FARTHEST_POSITION &&
           std::fabs(station.position.easting) < FARTHEST_POSITION && std::isfinite(station.position.height) &&
           std::isfinite(station.northingPrecision) && std::isfinite(station.eastingPrecision) &&
           std::isfinite(station.heightSpread);
}

/** Which targets the library takes the station height from: those with a distance, else those with a zenith reading. */
void CountHeightTargets(StationSolution& solution, const std::vector<ResectObservation>& observations)
{
    size_t withDistance = 0;
    size_t withHeight = 0;
    for (const ResectObservation& observation : observations)
    {
        const bool hasHeight = (observation.target.flags & POINT_HAS_HEIGHT) != 0;
        withHeight += hasHeight ? 1U : 0U;
        withDistance += hasHeight && observation.slopeDistance != 0.0 ? 1U : 0U;
    }
    solution.isHeightByDistance = withDistance > 0;
    solution.heightTargets = withDistance > 0 ? withDistance : withHeight;
}

/** Residuals of any sight with a target, whether it took part or not, in the library's sense: adjusted less observed. */
SightResidual ComputeResidual(const PreparedSight& sight, const ResectStation& station)
{
    SightResidual residual;
    const PointRecord& target = sight.target->point;
    const double dN = target.northing - station.position.northing;
    const double dE = target.easting - station.position.easting;
    const double distance = std::hypot(dN, dE);
    const double azimuth = std::atan2(dE, dN);
    residual.direction = WrapToHalfCircle(azimuth - RadiansOf(station.orientation) - RadiansOf(sight.circle));
    residual.across = *residual.direction * distance;
    if (sight.horizontalDistance)
    {
        residual.distance = distance - *sight.horizontalDistance;
    }
    const bool hasHeights = (target.flags & POINT_HAS_HEIGHT) != 0 && (station.position.flags & POINT_HAS_HEIGHT) != 0;
    if (hasHeights && sight.zenith)
    {
        const double rise = sight.verticalDifference.value_or(distance / std::tan(RadiansOf(*sight.zenith)));
        residual.height = target.height + sight.sight->targetHeight - rise - station.position.height;
    }
    return residual;
}

/** The library's own residuals go before computed ones where it reports them. */
void TakeLibraryResidual(SightResidual& residual, const PreparedSight& sight, const ResectObservation& observation,
                         const ResectStation& station, const ResectResidual& fromLibrary)
{
    const PointRecord& target = sight.target->point;
    residual.direction = RadiansOf(fromLibrary.angleResidual);
    residual.across = *residual.direction * std::hypot(target.northing - station.position.northing,
                                                       target.easting - station.position.easting);
    if ((observation.target.flags & POINT_HAS_HEIGHT) != 0 && observation.slopeDistance != 0.0)
    {
        residual.distance = fromLibrary.distanceResidual;
        residual.height = fromLibrary.heightResidual;
    }
}

/** The used sights as the library takes them, and what it makes of them. */
struct Adjustment
{
    std::vector<size_t> order; /**< which sight each observation is */
    std::vector<ResectObservation> observations;
    std::vector<ResectResidual> residuals;
};

/**
 * The used sights, the first one to each place before all second ones, and so on: the library takes its first
 * approximation from the first sights that seem to fit, which two faces to one target do not.
 */
std::vector<size_t> SpreadOrder(const std::vector<PreparedSight>& sights)
{
    std::map<std::pair<double, double>, size_t> visits;
    std::vector<std::pair<size_t, size_t>> visitAndSight;
    for (size_t i = 0; i < sights.size(); ++i)
    {
        if (sights[i].isUsed)
        {
            const PointRecord& target = sights[i].target->point;
            visitAndSight.emplace_back(visits[{target.northing, target.easting}]++, i);
        }
    }
    std::sort(visitAndSight.begin(), visitAndSight.end());
    std::vector<size_t> order;
    order.reserve(visitAndSight.size());
    for (const auto& [visit, sight] : visitAndSight)
    {
        order.push_back(sight);
    }
    return order;
}

int32_t Adjust(StationSolution& solution, Adjustment& adjustment)
{
    adjustment.observations.clear();
    for (const size_t sight : adjustment.order)
    {
        adjustment.observations.push_back(ToObservation(solution.sights[sight]));
    }
    const auto count = static_cast<int16_t>(adjustment.observations.size());
    // One record more than counted: the library takes no null pointer, not even for no sights.
    adjustment.observations.emplace_back();
    adjustment.residuals.resize(adjustment.observations.size());
    const int32_t status =
        QSTNMultiResect(count, adjustment.observations.data(), &solution.station, adjustment.residuals.data());
    adjustment.observations.pop_back();
    return status;
}

/**
 * Calls the library, again with another sight first where its first approximation fails or leads nowhere: that rests on
 * a few sights, which may be degenerate although the set-up as a whole is not. The status is that of the first call.
 */
bool AdjustInSomeOrder(StationSolution& solution, Adjustment& adjustment)
{
    constexpr size_t MOST_ATTEMPTS = 10;
    adjustment.order = SpreadOrder(solution.sights);
    solution.status = Adjust(solution, adjustment);
    const size_t attempts = std::min(adjustment.order.size(), MOST_ATTEMPTS);
    const bool isWorthwhile = solution.status == QSTD_REJECTED || solution.status == QSTD_DEGENERATE;
    for (size_t attempt = 1; isWorthwhile && attempt < attempts; ++attempt)
    {
        std::rotate(adjustment.order.begin(), adjustment.order.begin() + 1, adjustment.order.end());
        if (Adjust(solution, adjustment) == QSTD_OK)
        {
            solution.status = QSTD_OK;
            break;
        }
    }
    return solution.status == QSTD_OK;
}

void FillResiduals(StationSolution& solution, const Adjustment& adjustment)
{
    for (size_t i = 0; i < solution.sights.size(); ++i)
    {
        if (solution.sights[i].target != nullptr)
        {
            solution.residuals[i] = ComputeResidual(solution.sights[i], solution.station);
        }
    }
    for (size_t i = 0; i < adjustment.order.size(); ++i)
    {
        const size_t sight = adjustment.order[i];
        TakeLibraryResidual(solution.residuals[sight], solution.sights[sight], adjustment.observations[i],
                            solution.station, adjustment.residuals[i]);
    }
}

} // namespace

StationSolution SolveStation(const SetUp& setUp, const PointList& points)
{
    StationSolution solution;
    solution.setUp = &setUp;
    solution.known = points.Find(setUp.station);
    solution.sights = PrepareSights(setUp, points);
    solution.residuals.resize(solution.sights.size());
    CountObservations(solution);
    if (solution.used > MOST_SIGHTS)
    {
        solution.outcome = Outcome::TOO_MANY;
        return solution;
    }

    Adjustment adjustment;
    if (!AdjustInSomeOrder(solution, adjustment))
    {
        return solution;
    }
    if (!IsPosition(solution.station))
    {
        solution.outcome = Outcome::NOT_A_POSITION;
        return solution;
    }

    solution.outcome = Outcome::SOLVED;
    solution.station.orientation = WithinCircle(solution.station.orientation);
    CountHeightTargets(solution, adjustment.observations);
    if (solution.HasHeight() && setUp.instrumentHeight)
    {
        solution.markHeight = solution.station.position.height - *setUp.instrumentHeight;
    }
    FillResiduals(solution, adjustment);
    if (solution.Redundancy() > 0)
    {
        solution.ellipse = FormErrorEllipse(solution.sights, solution.station);
    }
    return solution;
}

} // namespace qstd
