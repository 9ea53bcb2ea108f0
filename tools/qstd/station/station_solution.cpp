#include "station/station_solution.h"

#include "station/closed_solution.h"
#include "station/height_solution.h"
#include "station/leave_one_out.h"
#include "station/multi_solution.h"
#include "station/plan_search.h"
#include "station/station_doubts.h"
#include "station/station_residuals.h"
#include "station/suspects.h"

#include <algorithm>
#include <cmath>
#include <unordered_set>
#include <utility>

namespace qstd {

namespace {

/** A position farther off than this is none: the adjustment has run away. */
constexpr double FARTHEST_POSITION = 1e9;

bool IsPosition(const ResectStation& station)
{
    return std::fabs(station.position.northing) < FARTHEST_POSITION &&
           std::fabs(station.position.easting) < FARTHEST_POSITION && std::isfinite(station.position.height) &&
           std::isfinite(station.northingPrecision) && std::isfinite(station.eastingPrecision) &&
           std::isfinite(station.heightSpread);
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
            const bool isDistanceUsed = sight.horizontalDistance && solution.method != StationMethod::THREE_POINT;
            solution.distances += isDistanceUsed ? 1U : 0U;
        }
    }
}

/** Keeps sights out whose targets are not asked for. */
void KeepAskedTargets(std::vector<PreparedSight>& sights, const std::vector<std::string>& targets)
{
    for (PreparedSight& sight : sights)
    {
        if (sight.isUsed && !targets.empty() &&
            std::find(targets.begin(), targets.end(), sight.sight->target) == targets.end())
        {
            sight.isUsed = false;
            sight.remark = "not among the targets named";
        }
        if (sight.benchmark != nullptr && !targets.empty() &&
            std::find(targets.begin(), targets.end(), sight.sight->target) == targets.end())
        {
            sight.benchmark = nullptr;
            sight.remark = "not among the targets named";
        }
    }
}

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

std::vector<PreparedSight> UsedSights(const std::vector<PreparedSight>& sights)
{
    std::vector<PreparedSight> used;
    std::copy_if(sights.begin(), sights.end(), std::back_inserter(used),
                 [](const PreparedSight& sight) { return sight.isUsed; });
    return used;
}

// --- least squares ---------------------------------------------------------------------------------------------------

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

void ComputeResiduals(StationSolution& solution, const SimulatedInstrument& instrument)
{
    for (size_t i = 0; i < solution.sights.size(); ++i)
    {
        if (solution.sights[i].target != nullptr)
        {
            solution.residuals[i] = ComputeResidual(solution.sights[i], solution, instrument);
        }
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

/** What follows from a station in plan: residuals, height, fit, precision. */
void Complete(StationSolution& solution, const StationRequest& request, bool isLibraryHeight)
{
    solution.station.orientation = WithinCircle(solution.station.orientation);
    SolveHeight(solution, request, isLibraryHeight);
    ComputeResiduals(solution, request.instrument);
    SetHeightResiduals(solution, request);
    if (solution.plan)
    {
        solution.fit = FitOfPlan(solution.observations, *solution.plan);
    }
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

void SolveByAdjustment(StationSolution& solution, const StationRequest& request)
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

// --- closed solutions ------------------------------------------------------------------------------------------------

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

/** A closed solution that the tool chose itself and that gave nothing is no last word. */
void SolveByChosenMethod(StationSolution& solution, const StationRequest& request)
{
    const StationSolution before = solution;
    if (solution.method != StationMethod::MULTI)
    {
        SolveByClosedMethod(solution, request);
        if (solution.IsSolved() || solution.method == StationMethod::KNOWN_LINE)
        {
            return;
        }
        solution = before;
        solution.method = StationMethod::MULTI;
        solution.choice.clear();
    }
    CountObservations(solution);
    SolveByAdjustment(solution, request);
    if (solution.IsSolved())
    {
        JudgeAdjustment(solution, request);
    }
}

} // namespace

const ObservationCheck* CheckOf(const StationSolution& solution, size_t sight, ObservationKind kind)
{
    if (solution.fit.checks.empty())
    {
        return nullptr;
    }
    const auto found = std::lower_bound(
        solution.observations.begin(), solution.observations.end(), std::pair(sight, kind),
        [](const PlanObservation& one, const auto& other) { return std::pair(one.sight, one.kind) < other; });
    const bool isThere = found != solution.observations.end() && found->sight == sight && found->kind == kind;
    return isThere ? &solution.fit.checks[static_cast<size_t>(found - solution.observations.begin())] : nullptr;
}

const ObservationCheck* TargetHeightCheckOf(const StationSolution& solution, size_t sight)
{
    const auto found = solution.heightPlaces.find(HeightPoint(solution.sights[sight]));
    return found == solution.heightPlaces.end() ? nullptr : &solution.targetHeightFit.checks[found->second];
}

const ObservationCheck* HeightCheckOf(const StationSolution& solution, size_t sight)
{
    const auto found = std::lower_bound(solution.heightSights.begin(), solution.heightSights.end(), sight);
    const bool isThere = found != solution.heightSights.end() && *found == sight && !solution.heightFit.checks.empty();
    return isThere ? &solution.heightFit.checks[static_cast<size_t>(found - solution.heightSights.begin())] : nullptr;
}

std::vector<std::string> TargetNames(const StationSolution& solution)
{
    std::vector<std::string> names;
    std::unordered_set<std::string> seen;
    for (const PreparedSight& sight : solution.sights)
    {
        if (sight.isUsed && seen.insert(sight.sight->target).second)
        {
            names.push_back(sight.sight->target);
        }
    }
    return names;
}

KnownDifference DifferenceToKnown(const StationSolution& solution)
{
    KnownDifference difference;
    if (solution.known == nullptr || !solution.IsSolved())
    {
        return difference;
    }
    const PointRecord& known = solution.known->point;
    if ((known.flags & POINT_HAS_PLAN) != 0)
    {
        difference.northing = solution.station.position.northing - known.northing;
        difference.easting = solution.station.position.easting - known.easting;
    }
    if ((known.flags & POINT_HAS_HEIGHT) != 0 && solution.markHeight)
    {
        difference.height = *solution.markHeight - known.height;
    }
    return difference;
}

std::string OrientationReference(const StationSolution& solution)
{
    if (!solution.isSouthAzimuth)
    {
        return "";
    }
    return solution.IsOrientationFromSouth() ? "from south" : "from north (adjusted)";
}

StationSolution SolveStation(const SetUp& setUp, const PointList& points, const StationRequest& request)
{
    const InstrumentConnection connection(request.instrument);
    StationSolution solution;
    solution.setUp = &setUp;
    solution.unit = request.unit;
    solution.isSouthAzimuth = request.instrument.azimuthReference == 1;
    solution.known = points.Find(setUp.station);
    solution.sights = PrepareSights(setUp, points, {request.instrument, request.unit});
    solution.residuals.resize(solution.sights.size());
    KeepAskedTargets(solution.sights, request.targets);
    solution.method = request.method;
    if (request.method == StationMethod::AUTO)
    {
        MethodChoice choice = ChooseMethod(solution.sights, request.lineAzimuth.has_value());
        solution.method = choice.method;
        solution.choice = std::move(choice.reason);
    }
    const bool isClosedAsked = request.method != StationMethod::AUTO && request.method != StationMethod::MULTI;
    if (isClosedAsked)
    {
        SolveByClosedMethod(solution, request);
    }
    else
    {
        SolveByChosenMethod(solution, request);
    }
    if (solution.IsSolved() && solution.HasHeight() && setUp.instrumentHeight)
    {
        solution.markHeight = solution.station.position.height - *setUp.instrumentHeight;
    }
    FindSuspects(solution, request);
    if (request.isLeaveOneOut && solution.IsSolved() && solution.method == StationMethod::MULTI)
    {
        LeaveOneOut(solution);
    }
    return solution;
}

} // namespace qstd
