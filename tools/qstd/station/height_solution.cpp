#include "station/height_solution.h"

#include "instrument/earth.h"
#include "station/fit.h"
#include "station/station_residuals.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace qstd {

namespace {

bool HasHeight(const PointRecord& point)
{
    return (point.flags & POINT_HAS_HEIGHT) != 0;
}

bool CanGiveHeight(const PreparedSight& sight)
{
    const KnownPoint* const point = HeightPoint(sight);
    return point != nullptr && HasHeight(point->point) && sight.zenith && (sight.isUsed || sight.benchmark != nullptr);
}

/** True where the method takes heights by distance at all. */
bool TakesDistances(StationMethod method)
{
    return method != StationMethod::THREE_POINT;
}

/** The sights that the height is the mean of. */
std::vector<size_t> HeightSights(const StationSolution& solution, bool isByDistance)
{
    std::vector<size_t> chosen;
    for (size_t i = 0; i < solution.sights.size(); ++i)
    {
        const PreparedSight& sight = solution.sights[i];
        const bool isMeasured =
            sight.verticalDifference && (sight.benchmark != nullptr || TakesDistances(solution.method));
        const bool isTaken = isByDistance ? isMeasured : sight.benchmark == nullptr;
        if (CanGiveHeight(sight) && isTaken)
        {
            chosen.push_back(i);
        }
    }
    return chosen;
}

double Squared(double value)
{
    return value * value;
}

/** The standard deviation of a height from one sight, in the unit of the job. @param ground  horizontal distance */
double HeightSigma(const PreparedSight& sight, double ground, bool isByDistance, double planSigma,
                   const StationRequest& request)
{
    const Expectation& expected = request.expectation;
    const double zenith = RadiansOf(*sight.zenith);
    const double mark = FromMetres(expected.mark, request.unit);
    if (isByDistance)
    {
        const double slope = std::hypot(ground, *sight.verticalDifference);
        const double distance = FromMetres(expected.distance, request.unit) + expected.distanceProportion * slope;
        return std::sqrt(Squared(ground * expected.zenith) + Squared(distance * std::cos(zenith)) + Squared(mark));
    }
    const double rise = ground / std::tan(zenith);
    return std::sqrt(Squared(std::hypot(ground, rise) * expected.zenith / std::sin(zenith)) +
                     Squared(planSigma / std::tan(zenith)) + Squared(mark));
}

/** How far the plan position is uncertain, in the unit of the job. */
double PlanSigma(const StationSolution& solution, const StationRequest& request)
{
    return solution.plan ? FromMetres(WEIGHT_DIRECTION * AxesOf(solution.plan->cofactors).major, request.unit) : 0.0;
}

void TakeMean(ResectStation& station, const std::vector<double>& heights)
{
    double sum = 0.0;
    for (const double height : heights)
    {
        sum += height;
    }
    const auto [lowest, highest] = std::minmax_element(heights.begin(), heights.end());
    station.position.height = sum / static_cast<double>(heights.size());
    station.position.flags = POINT_HAS_PLAN | POINT_HAS_HEIGHT;
    station.heightSpread = *highest - *lowest;
}

/** The points that the heights come from, each once, and where each of them stands in the list. */
void ListHeightPoints(StationSolution& solution)
{
    for (const size_t sight : solution.heightSights)
    {
        const KnownPoint* const point = HeightPoint(solution.sights[sight]);
        if (solution.heightPlaces.emplace(point, solution.heightPoints.size()).second)
        {
            solution.heightPoints.push_back(point);
        }
    }
}

} // namespace

const KnownPoint* HeightPoint(const PreparedSight& sight)
{
    return sight.benchmark != nullptr ? sight.benchmark : sight.target;
}

Fit FitOfTargetHeights(const StationSolution& solution, const std::vector<HeightValue>& values, double mark)
{
    struct Sum
    {
        double height = 0.0;
        double variance = 0.0;
        double count = 0.0;
    };
    std::vector<Sum> sums(solution.heightPoints.size());
    for (size_t i = 0; i < values.size(); ++i)
    {
        Sum& sum = sums[solution.heightPlaces.at(HeightPoint(solution.sights[solution.heightSights[i]]))];
        sum.height += values[i].height - values.front().height;
        sum.variance += Squared(values[i].sigma) - Squared(mark);
        sum.count += 1.0;
    }
    std::vector<HeightValue> ofTargets;
    ofTargets.reserve(sums.size());
    for (const Sum& sum : sums)
    {
        ofTargets.push_back({values.front().height + sum.height / sum.count,
                             std::sqrt(sum.variance / Squared(sum.count) + Squared(mark))});
    }
    return FitOfHeights(ofTargets);
}

void SetHeightResiduals(StationSolution& solution, const StationRequest& request)
{
    for (const size_t i : solution.heightSights)
    {
        const std::optional<double> height =
            HeightFrom(solution.sights[i], solution.station.position, solution.isHeightByDistance, request);
        solution.residuals[i].height = *height - solution.station.position.height;
    }
}

double DistanceTo(const PreparedSight& sight, const PointRecord& station)
{
    if (sight.target == nullptr)
    {
        return sight.horizontalDistance.value_or(0.0);
    }
    return std::hypot(sight.target->point.northing - station.northing, sight.target->point.easting - station.easting);
}

double UncorrectedCurvature(const StationSolution& solution, const SimulatedInstrument& instrument)
{
    if (instrument.curvatureRefraction == 1)
    {
        return 0.0;
    }
    double longest = 0.0;
    for (const size_t i : solution.heightSights)
    {
        longest = std::max(longest, DistanceTo(solution.sights[i], solution.station.position));
    }
    const double radius = FromMetres(EARTH_RADIUS, solution.unit);
    return (1.0 - REFRACTION_COEFFICIENTS[0]) * longest * longest / (2.0 * radius);
}

std::optional<double> HeightFrom(const PreparedSight& sight, const PointRecord& station, bool isByDistance,
                                 const StationRequest& request)
{
    const KnownPoint* const point = HeightPoint(sight);
    if (point == nullptr || !HasHeight(point->point) || !sight.zenith || (isByDistance && !sight.verticalDifference))
    {
        return std::nullopt;
    }
    const double distance = ToMetres(DistanceTo(sight, station), request.unit);
    const double rise = isByDistance
                            ? *sight.verticalDifference
                            : FromMetres(RiseByZenith(distance, *sight.zenith, request.instrument), request.unit);
    return point->point.height + sight.sight->targetHeight - rise;
}

void SolveHeight(StationSolution& solution, const StationRequest& request, bool isLibraryHeight)
{
    const bool isByDistance = !HeightSights(solution, true).empty();
    std::vector<size_t> chosen = HeightSights(solution, isByDistance);
    const bool isLine = solution.method == StationMethod::KNOWN_LINE;
    if (chosen.empty() || (solution.method == StationMethod::TWO_POINT && !isByDistance) || (isLine && !isByDistance))
    {
        return;
    }
    ResectStation& station = solution.station;
    const double planSigma = PlanSigma(solution, request);
    std::vector<double> heights;
    std::vector<HeightValue> values;
    for (const size_t i : chosen)
    {
        const PreparedSight& sight = solution.sights[i];
        const double height = *HeightFrom(sight, station.position, isByDistance, request);
        heights.push_back(height);
        const double sigma = HeightSigma(sight, DistanceTo(sight, station.position), isByDistance, planSigma, request);
        values.push_back({ToMetres(height, request.unit), ToMetres(sigma, request.unit)});
        solution.heightSigmas.push_back(values.back().sigma);
    }
    const bool hasBenchmark = std::any_of(chosen.begin(), chosen.end(), [&solution](size_t sight) {
        return solution.sights[sight].benchmark != nullptr;
    });
    // The height of a known line is that from the point where it begins; the other only checks it.
    if ((!isLibraryHeight || hasBenchmark) && !isLine)
    {
        TakeMean(station, heights);
    }
    solution.isHeightByDistance = isByDistance;
    solution.heightSights = std::move(chosen);
    ListHeightPoints(solution);
    solution.heightTargets = isLine ? solution.heightTargets : solution.heightPoints.size();
    solution.heightFit = FitOfHeights(values);
    solution.uncorrectedCurvature = UncorrectedCurvature(solution, request.instrument);
    solution.targetHeightFit = FitOfTargetHeights(solution, values, request.expectation.mark);
}

double HeightMisfitAt(const std::vector<PreparedSight>& sights, const PointRecord& station,
                      const StationRequest& request)
{
    std::vector<HeightValue> values;
    for (const PreparedSight& sight : sights)
    {
        if (!CanGiveHeight(sight) || sight.benchmark != nullptr)
        {
            continue;
        }
        const bool isByDistance = sight.verticalDifference.has_value();
        const double height = *HeightFrom(sight, station, isByDistance, request);
        const double sigma = HeightSigma(sight, DistanceTo(sight, station), isByDistance, 0.0, request);
        values.push_back({ToMetres(height, request.unit), ToMetres(sigma, request.unit)});
    }
    return FitOfHeights(values).ratio;
}

} // namespace qstd
