#include "station/station_solution.h"

#include "station/adjusted_station.h"
#include "station/closed_station.h"
#include "station/height_solution.h"
#include "station/leave_one_out.h"
#include "station/station_completion.h"
#include "station/suspects.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

namespace qstd {

namespace {

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
