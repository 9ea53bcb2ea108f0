#include "station/adjusted_station.h"

#include "station/height_solution.h"
#include "station/multi_solution.h"
#include "station/plan_search.h"
#include "station/station_completion.h"
#include "station/station_doubts.h"

#include <algorithm>
#include <cmath>

namespace qstd {

namespace {

std::vector<PreparedSight> UsedSights(const std::vector<PreparedSight>& sights)
{
    std::vector<PreparedSight> used;
    std::copy_if(sights.begin(), sights.end(), std::back_inserter(used),
                 [](const PreparedSight& sight) { return sight.isUsed; });
    return used;
}

/** The library's own residuals go before computed ones where it reports them. */
void TakeLibraryResidual(SightResidual& residual, const PreparedSight& sight, const PointRecord& station,
                         const ResectResidual& fromLibrary)
{
    const PointRecord& target = sight.target->point;
    residual.direction = RadiansOf(fromLibrary.angleResidual);
    residual.across =
        *residual.direction * std::hypot(target.northing - station.northing, target.easting - station.easting);
    if ((target.flags & POINT_HAS_HEIGHT) != 0 && sight.zenith && sight.horizontalDistance)
    {
        residual.distance = fromLibrary.distanceResidual;
    }
}

/** The tool's own adjustment as the library would report it. */
ResectStation StationFrom(const PlanAdjustment& plan, size_t redundancy, LinearUnit unit)
{
    ResectStation station = {};
    station.position.northing = FromMetres(plan.position.northing, unit);
    station.position.easting = FromMetres(plan.position.easting, unit);
    station.position.flags = POINT_HAS_PLAN;
    station.orientation = UnitsOf(plan.position.orientation);
    const double variance = redundancy > 0 ? plan.squareSum / static_cast<double>(redundancy) : plan.squareSum;
    station.northingPrecision = FromMetres(std::sqrt(variance * plan.cofactors[0][0]), unit);
    station.eastingPrecision = FromMetres(std::sqrt(variance * plan.cofactors[1][1]), unit);
    return station;
}

void TakeOwnStation(StationSolution& solution, const StationRequest& request, const PlanAdjustment& plan)
{
    solution.isByTool = true;
    solution.status = QSTD_OK;
    solution.plan = plan;
    solution.station = StationFrom(plan, solution.Redundancy(), request.unit);
    solution.outcome = IsPosition(solution.station) ? Outcome::SOLVED : Outcome::NOT_A_POSITION;
    if (solution.IsSolved())
    {
        Complete(solution, request, false);
    }
}

/** The stations that the heights leave of several: one at which they agree, where they do not at the others. */
std::vector<PlanAdjustment> AgreeingInHeight(const StationSolution& solution, const StationRequest& request,
                                             const std::vector<PlanAdjustment>& found)
{
    constexpr double AGREES = 5.0;
    std::vector<PlanAdjustment> agreeing;
    for (const PlanAdjustment& plan : found)
    {
        const ResectStation station = StationFrom(plan, 0, request.unit);
        if (HeightMisfitAt(solution.sights, station.position, request) < AGREES)
        {
            agreeing.push_back(plan);
        }
    }
    return agreeing.size() == 1 ? agreeing : found;
}

/** Looks for the station without the library, and takes it where there is one and only one. */
void SolveByTool(StationSolution& solution, const StationRequest& request)
{
    const std::vector<PlanAdjustment> all = FindStations(solution.observations);
    const std::vector<PlanAdjustment> found = AgreeingInHeight(solution, request, all);
    if (found.empty())
    {
        solution.outcome = solution.status == QSTD_OK ? Outcome::NO_SOLUTION : Outcome::REFUSED;
        return;
    }
    // Of several that do not fit one is as bad as the other; that they do not fit is then what matters.
    if (found.size() > 1 && !FitOfPlan(solution.observations, found.front()).IsStrong())
    {
        solution.outcome = Outcome::AMBIGUOUS;
        for (const PlanAdjustment& plan : found)
        {
            solution.candidates.push_back(StationFrom(plan, 0, request.unit).position);
        }
        return;
    }
    for (const PlanAdjustment& plan : all)
    {
        const bool isTaken = plan.position.northing == found.front().position.northing &&
                             plan.position.easting == found.front().position.easting;
        if (!isTaken && found.size() == 1)
        {
            solution.candidates.push_back(StationFrom(plan, 0, request.unit).position);
        }
    }
    TakeOwnStation(solution, request, found.front());
}

void TakeLibraryStation(StationSolution& solution, const StationRequest& request, const Adjustment& adjustment)
{
    solution.status = QSTD_OK;
    solution.station = adjustment.station;
    solution.outcome = IsPosition(solution.station) ? Outcome::SOLVED : Outcome::NOT_A_POSITION;
    if (!solution.IsSolved())
    {
        return;
    }
    Complete(solution, request, true);
    for (size_t i = 0; i < adjustment.order.size(); ++i)
    {
        const size_t sight = adjustment.order[i];
        TakeLibraryResidual(solution.residuals[sight], solution.sights[sight], solution.station.position,
                            adjustment.residuals[i]);
    }
}

/** A better station than the library's, which may have ended in a side valley of sights that do not fit. */
std::optional<PlanAdjustment> BetterThan(const PlanAdjustment& plan, const StationSolution& solution)
{
    constexpr double DOUBTFUL = 3.0;
    constexpr double MUCH_BETTER = 0.99;
    if (FitOfPlan(solution.observations, plan).ratio < DOUBTFUL)
    {
        return std::nullopt;
    }
    const std::vector<PlanAdjustment> found = FindStations(solution.observations);
    const bool isBetter = !found.empty() && found.front().squareSum < MUCH_BETTER * plan.squareSum;
    return isBetter ? std::optional(found.front()) : std::nullopt;
}

/** True where the library's precisions, formed before its last step, are those of the station that it ended at. */
bool HasPrecisionOf(const PlanAdjustment& plan, const ResectStation& library, const StationSolution& solution)
{
    constexpr double SHARE = 5e-5;
    constexpr double ROUNDING = 1e-7;
    const ResectStation own = StationFrom(plan, solution.Redundancy(), solution.unit);
    const auto isSame = [](double one, double other) { return std::fabs(one - other) <= SHARE * other + ROUNDING; };
    return solution.Redundancy() == 0 || (isSame(library.northingPrecision, own.northingPrecision) &&
                                          isSame(library.eastingPrecision, own.eastingPrecision));
}

/**
 * True where the sights may allow two stations: few places, and no distances to two of them apart from each other. The
 * library would take one of these without a word.
 */
bool MayBeAmbiguous(const StationSolution& solution, const PlaceCount& count)
{
    constexpr size_t FEW_PLACES = 4;
    return count.places <= FEW_PLACES && count.measured > 0 && AreDistancesScarce(solution.observations);
}

void SolvePlan(StationSolution& solution, const StationRequest& request)
{
    solution.observations = PlanObservations(solution.sights, request.unit, request.expectation);
    const PlaceCount count = CountPlaces(solution.observations);
    if (!CanDetermine(count))
    {
        solution.status = QSTD_REJECTED;
        solution.outcome = Outcome::TOO_FEW;
        return;
    }
    Adjustment adjustment;
    const bool mayBeAmbiguous = MayBeAmbiguous(solution, count) && FindStations(solution.observations).size() > 1;
    if (solution.used <= MOST_SIGHTS && !mayBeAmbiguous)
    {
        adjustment = AdjustSights(solution.sights, solution.observations, request.unit);
    }
    solution.status = adjustment.status;
    if (!adjustment.isProven)
    {
        SolveByTool(solution, request);
        return;
    }
    solution.plan = AdjustPlan(solution.observations, PositionOf(adjustment.station, request.unit));
    if (!solution.plan)
    {
        solution.outcome = Outcome::UNDETERMINED;
        return;
    }
    const std::optional<PlanAdjustment> better = BetterThan(*solution.plan, solution);
    if (better || !HasPrecisionOf(*solution.plan, adjustment.station, solution))
    {
        TakeOwnStation(solution, request, better.value_or(*solution.plan));
        return;
    }
    TakeLibraryStation(solution, request, adjustment);
}

/** What is left to say of a station from all sights: precision, and what makes it doubtful. */
void JudgeAdjustment(StationSolution& solution, const StationRequest& request)
{
    if (solution.Redundancy() > 0)
    {
        solution.ellipse = FormErrorEllipse(*solution.plan, solution.Redundancy(), request.unit);
    }
    const auto solve = [&](const std::vector<PreparedSight>& changed) -> std::optional<PointRecord> {
        const std::optional<PlanAdjustment> moved =
            AdjustPlan(PlanObservations(changed, request.unit), solution.plan->position);
        return moved ? std::optional(StationFrom(*moved, 0, request.unit).position) : std::nullopt;
    };
    solution.doubts = FindDoubts(solution, UsedSights(solution.sights), solve);
}

} // namespace

void SolveByAdjustment(StationSolution& solution, const StationRequest& request)
{
    SolvePlan(solution, request);
    if (solution.IsSolved())
    {
        JudgeAdjustment(solution, request);
    }
}

} // namespace qstd
