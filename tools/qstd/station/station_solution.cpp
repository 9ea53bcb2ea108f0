#include "station/station_solution.h"

#include "station/closed_solution.h"
#include "station/leave_one_out.h"
#include "station/multi_solution.h"
#include "station/station_doubts.h"
#include "station/station_residuals.h"

#include <algorithm>
#include <cmath>

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
    }
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
        residual.height = fromLibrary.heightResidual;
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

std::optional<PointRecord> AdjustedPosition(const std::vector<PreparedSight>& sights, LinearUnit unit)
{
    const Adjustment adjustment = AdjustSights(sights, unit);
    return adjustment.status == QSTD_OK ? std::optional(adjustment.station.position) : std::nullopt;
}

void SolveByAdjustment(StationSolution& solution, const StationRequest& request)
{
    if (solution.used > MOST_SIGHTS)
    {
        solution.outcome = Outcome::TOO_MANY;
        return;
    }
    const Adjustment adjustment = AdjustSights(solution.sights, request.unit);
    solution.status = adjustment.status;
    if (adjustment.status != QSTD_OK)
    {
        return;
    }
    solution.station = adjustment.station;
    solution.outcome = IsPosition(solution.station) ? Outcome::SOLVED : Outcome::NOT_A_POSITION;
    if (!solution.IsSolved())
    {
        return;
    }
    solution.station.orientation = WithinCircle(solution.station.orientation);
    solution.isHeightByDistance = adjustment.withHeightAndDistance > 0;
    solution.heightTargets = solution.isHeightByDistance ? adjustment.withHeightAndDistance : adjustment.withHeight;
    ComputeResiduals(solution, request.instrument);
    for (size_t i = 0; i < adjustment.order.size(); ++i)
    {
        const size_t sight = adjustment.order[i];
        TakeLibraryResidual(solution.residuals[sight], solution.sights[sight], solution.station.position,
                            adjustment.residuals[i]);
    }
    if (solution.Redundancy() > 0)
    {
        solution.ellipse = FormErrorEllipse(solution.sights, solution.station, request.unit);
    }
    solution.doubts = FindDoubts(solution, UsedSights(solution.sights), [&](const std::vector<PreparedSight>& changed) {
        return AdjustedPosition(changed, request.unit);
    });
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

/** The second point of a line whose azimuth is given has no coordinates that count: it lies on the line as measured. */
void PlaceLinePoint(StationSolution& solution, PreparedSight& sight, const PreparedSight& start,
                    const StationRequest& request)
{
    ReduceDistance(sight);
    const double startDirection = RadiansOf(start.circle);
    const double direction = RadiansOf(sight.circle);
    const double length = std::hypot(
        *sight.horizontalDistance * std::cos(direction) - *start.horizontalDistance * std::cos(startDirection),
        *sight.horizontalDistance * std::sin(direction) - *start.horizontalDistance * std::sin(startDirection));
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

/** The spread of the heights that the library has averaged without telling. */
double SpreadOfHeights(const StationSolution& solution)
{
    double smallest = 0.0;
    double largest = 0.0;
    bool isFirst = true;
    for (size_t i = 0; i < solution.sights.size(); ++i)
    {
        if (solution.sights[i].isUsed && solution.residuals[i].height)
        {
            const double height = *solution.residuals[i].height;
            smallest = isFirst ? height : std::min(smallest, height);
            largest = isFirst ? height : std::max(largest, height);
            isFirst = false;
        }
    }
    return largest - smallest;
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
    if (!solution.IsSolved())
    {
        return;
    }
    solution.checks = result.checks;
    solution.heightTargets = result.heightTargets;
    solution.isHeightByDistance = solution.method != StationMethod::THREE_POINT;
    ComputeResiduals(solution, request.instrument);
    if (solution.method == StationMethod::THREE_POINT)
    {
        solution.station.heightSpread = SpreadOfHeights(solution);
    }
    solution.doubts = FindDoubts(solution, taken, [&](const std::vector<PreparedSight>& changed) {
        const ClosedResult moved = SolveClosed(solution.method, changed, request);
        return moved.status == QSTD_OK ? std::optional(moved.station.position) : std::nullopt;
    });
}

} // namespace

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
    solution.sights = PrepareSights(setUp, points);
    solution.residuals.resize(solution.sights.size());
    KeepAskedTargets(solution.sights, request.targets);
    solution.method = request.method;
    if (request.method == StationMethod::AUTO)
    {
        MethodChoice choice = ChooseMethod(solution.sights, request.lineAzimuth.has_value());
        solution.method = choice.method;
        solution.choice = std::move(choice.reason);
    }
    if (solution.method == StationMethod::MULTI)
    {
        CountObservations(solution);
        SolveByAdjustment(solution, request);
    }
    else
    {
        SolveByClosedMethod(solution, request);
    }
    if (solution.IsSolved() && solution.HasHeight() && setUp.instrumentHeight)
    {
        solution.markHeight = solution.station.position.height - *setUp.instrumentHeight;
    }
    if (request.isLeaveOneOut && solution.IsSolved() && solution.method == StationMethod::MULTI)
    {
        LeaveOneOut(solution);
    }
    return solution;
}

} // namespace qstd
