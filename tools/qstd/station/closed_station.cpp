#include "station/closed_station.h"

#include "station/closed_solution.h"
#include "station/multi_solution.h"
#include "station/station_completion.h"
#include "station/station_doubts.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace qstd {

namespace {

/** The spread of the heights that the library has averaged without telling. */
double SpreadOfHeights(const StationSolution& solution)
{
    std::vector<double> heights;
    for (const size_t sight : solution.heightSights)
    {
        heights.push_back(*solution.residuals[sight].height);
    }
    const auto [lowest, highest] = std::minmax_element(heights.begin(), heights.end());
    return heights.empty() ? 0.0 : *highest - *lowest;
}

/** A closed solution takes what it needs; the other sights stay to check it. */
void TakeChosen(StationSolution& solution, const std::vector<size_t>& chosen)
{
    for (size_t i = 0; i < solution.sights.size(); ++i)
    {
        PreparedSight& sight = solution.sights[i];
        const bool isChosen = std::find(chosen.begin(), chosen.end(), i) != chosen.end();
        if (isChosen && solution.method == StationMethod::THREE_POINT && sight.horizontalDistance)
        {
            sight.remark = "distance not used";
        }
        else if (!isChosen && sight.isUsed)
        {
            sight.isUsed = false;
            sight.remark = "not needed";
        }
    }
}

/** The length between two targets as measured. */
double MeasuredLength(const PreparedSight& one, const PreparedSight& other)
{
    const double d1 = *one.horizontalDistance, d2 = *other.horizontalDistance;
    const double r1 = RadiansOf(one.circle), r2 = RadiansOf(other.circle);
    return std::hypot(d2 * std::cos(r2) - d1 * std::cos(r1), d2 * std::sin(r2) - d1 * std::sin(r1));
}

/** The second point of a line whose azimuth is given has no coordinates that count: it lies on the line as measured. */
void PlaceLinePoint(StationSolution& solution, PreparedSight& sight, const PreparedSight& start,
                    const StationRequest& request)
{
    ReduceDistance(sight, {request.instrument, request.unit});
    const double length = MeasuredLength(start, sight);
    const double azimuth =
        RadiansOf(*request.lineAzimuth) + (solution.isSouthAzimuth ? RadiansOf(ANGLE_HALF_CIRCLE) : 0.0);
    KnownPoint point;
    point.id = sight.sight->target;
    point.point = {start.target->point.northing + length * std::cos(azimuth),
                   start.target->point.easting + length * std::sin(azimuth), 0.0, POINT_HAS_PLAN};
    solution.linePoint = std::make_shared<const KnownPoint>(std::move(point));
    sight.target = solution.linePoint.get();
    sight.isUsed = true;
    sight.remark = "placed on the line";
}

/** The sights that go into a closed solution, marked so; none where there are too few. */
std::vector<PreparedSight> TakeSights(StationSolution& solution, const StationRequest& request)
{
    const std::vector<size_t> chosen = ChooseSights(solution.sights, *solution.setUp, solution.method, request);
    const size_t needed = solution.method == StationMethod::THREE_POINT ? 3 : 2;
    if (chosen.size() < needed)
    {
        CountObservations(solution);
        return {};
    }
    TakeChosen(solution, chosen);
    if (solution.method == StationMethod::KNOWN_LINE && request.lineAzimuth)
    {
        solution.isLineByAzimuth = true;
        PreparedSight& direction = solution.sights[chosen[1]];
        if (direction.target == nullptr)
        {
            PlaceLinePoint(solution, direction, solution.sights[chosen[0]], request);
        }
    }
    CountObservations(solution);
    std::vector<PreparedSight> taken;
    taken.reserve(chosen.size());
    for (const size_t sight : chosen)
    {
        taken.push_back(solution.sights[sight]);
    }
    return taken;
}

/** The largest residuals that rounding leaves of a solution without redundancy. */
bool FitsExactly(const std::vector<PlanObservation>& observations, const PlanPosition& position)
{
    constexpr double ROUNDED_DIRECTION = 0.2 * ARC_SECOND;
    constexpr double ROUNDED_DISTANCE = 1e-4;
    return std::all_of(observations.begin(), observations.end(), [&](const PlanObservation& observation) {
        const bool isDirection = observation.kind == ObservationKind::DIRECTION;
        // Near a target rounding of the position turns the direction; a hundredth of a millimetre may.
        const double near =
            std::hypot(observation.northing - position.northing, observation.easting - position.easting);
        const double limit = isDirection ? ROUNDED_DIRECTION + 1e-5 / near : ROUNDED_DISTANCE;
        return std::fabs(PlanResidual(observation, position)) <= limit;
    });
}

/** A measured length brought to the scale of the known one, which two points with two distances leave free. */
void BringToScale(std::vector<PlanObservation>& observations, double scale)
{
    for (PlanObservation& observation : observations)
    {
        observation.value *= observation.kind == ObservationKind::DISTANCE ? scale : 1.0;
    }
}

/** The observations of a closed solution as that takes them. */
std::vector<PlanObservation> ClosedObservations(const StationSolution& solution,
                                                const std::vector<PreparedSight>& taken, const StationRequest& request)
{
    std::vector<PreparedSight> sights = taken;
    KnownPoint end;
    if (solution.method == StationMethod::THREE_POINT)
    {
        for (PreparedSight& sight : sights)
        {
            sight.horizontalDistance.reset();
        }
    }
    if (solution.method == StationMethod::KNOWN_LINE)
    {
        const PointRecord& from = sights[0].target->point;
        const PointRecord& to = sights[1].target->point;
        const double reference = solution.isSouthAzimuth ? RadiansOf(ANGLE_HALF_CIRCLE) : 0.0;
        const double azimuth = request.lineAzimuth ? RadiansOf(*request.lineAzimuth) + reference
                                                   : std::atan2(to.easting - from.easting, to.northing - from.northing);
        const double length = MeasuredLength(sights[0], sights[1]);
        end.point = {from.northing + length * std::cos(azimuth), from.easting + length * std::sin(azimuth), 0.0,
                     POINT_HAS_PLAN};
        sights[1].target = &end;
    }
    std::vector<PlanObservation> observations = PlanObservations(sights, request.unit, request.expectation);
    if (solution.method == StationMethod::TWO_POINT && sights[0].horizontalDistance && sights[1].horizontalDistance)
    {
        const PointRecord& from = sights[0].target->point;
        const PointRecord& to = sights[1].target->point;
        BringToScale(observations, std::hypot(to.northing - from.northing, to.easting - from.easting) /
                                       MeasuredLength(sights[0], sights[1]));
    }
    return observations;
}

void WithoutDistances(std::vector<PlanObservation>& observations)
{
    observations.erase(std::remove_if(observations.begin(), observations.end(),
                                      [](const PlanObservation& o) { return o.kind == ObservationKind::DISTANCE; }),
                       observations.end());
}

/** The position of a closed solution with its orientation from north, metres and radians. */
PlanPosition ClosedPosition(const StationSolution& solution, LinearUnit unit)
{
    PlanPosition position = PositionOf(solution.station, unit);
    position.orientation += solution.IsOrientationFromSouth() ? RadiansOf(ANGLE_HALF_CIRCLE) : 0.0;
    return position;
}

} // namespace

void SolveByClosedMethod(StationSolution& solution, const StationRequest& request)
{
    const std::vector<PreparedSight> taken = TakeSights(solution, request);
    if (taken.empty())
    {
        solution.outcome = Outcome::TOO_FEW;
        return;
    }
    const ClosedResult result = SolveClosed(solution.method, taken, request);
    solution.status = result.status;
    if (result.status != QSTD_OK)
    {
        return;
    }
    solution.station = result.station;
    solution.outcome = IsPosition(solution.station) ? Outcome::SOLVED : Outcome::NOT_A_POSITION;
    const PlanPosition position = ClosedPosition(solution, request.unit);
    if (solution.IsSolved() && !FitsExactly(ClosedObservations(solution, taken, request), position))
    {
        solution.outcome = Outcome::NO_SOLUTION;
    }
    if (!solution.IsSolved())
    {
        return;
    }
    solution.checks = result.checks;
    solution.heightTargets = result.heightTargets;
    solution.isHeightByDistance = solution.method != StationMethod::THREE_POINT;
    solution.observations = PlanObservations(solution.sights, request.unit, request.expectation);
    if (solution.method == StationMethod::THREE_POINT)
    {
        WithoutDistances(solution.observations);
    }
    // A known line between known points measures its length twice, as two points with two distances do.
    if (!solution.isLineByAzimuth)
    {
        solution.plan = AdjustPlan(solution.observations, position);
    }
    Complete(solution, request, true);
    if (solution.method == StationMethod::THREE_POINT)
    {
        solution.station.heightSpread = SpreadOfHeights(solution);
    }
    solution.doubts = FindDoubts(solution, taken, [&](const std::vector<PreparedSight>& changed) {
        const ClosedResult moved = SolveClosed(solution.method, changed, request);
        return moved.status == QSTD_OK ? std::optional(moved.station.position) : std::nullopt;
    });
}

} // namespace qstd
