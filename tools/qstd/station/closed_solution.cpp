#include "station/closed_solution.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <utility>

namespace qstd {

namespace {

size_t PlaceInRequest(const std::string& target, const StationRequest& request)
{
    return static_cast<size_t>(std::find(request.targets.begin(), request.targets.end(), target) -
                               request.targets.begin());
}

/** True for a sight that can give the direction of a known line although its target has no coordinates. */
bool IsToUnknownPoint(const PreparedSight& prepared, const SetUp& setUp, const StationRequest& request)
{
    const Sight& sight = *prepared.sight;
    const bool isAsked = request.targets.empty() || PlaceInRequest(sight.target, request) < request.targets.size();
    return prepared.target == nullptr && sight.isWanted && isAsked && sight.target != setUp.station &&
           !IsVertical(prepared);
}

/** True where a horizontal distance was measured, or can be reduced. */
bool HasDistance(const PreparedSight& sight)
{
    const Sight& read = *sight.sight;
    return read.horizontalDistance || (read.slopeDistance && sight.zenith);
}

/** The first sight to each target, or the first one with a distance where there is one; in the order of the request. */
std::vector<size_t> Candidates(const std::vector<PreparedSight>& sights, const SetUp& setUp, bool withUnknown,
                               const StationRequest& request)
{
    std::vector<size_t> candidates;
    std::map<std::pair<double, double>, size_t> places;
    std::set<std::string> unknown;
    for (size_t i = 0; i < sights.size(); ++i)
    {
        const PreparedSight& sight = sights[i];
        if (sight.isUsed)
        {
            const PointRecord& point = sight.target->point;
            const auto [place, isNew] = places.emplace(std::pair(point.northing, point.easting), candidates.size());
            if (isNew)
            {
                candidates.push_back(i);
            }
            else if (HasDistance(sight) && !HasDistance(sights[candidates[place->second]]))
            {
                candidates[place->second] = i;
            }
        }
        else if (withUnknown && IsToUnknownPoint(sight, setUp, request) && unknown.insert(sight.sight->target).second)
        {
            candidates.push_back(i);
        }
    }
    std::stable_sort(candidates.begin(), candidates.end(), [&](size_t one, size_t other) {
        return PlaceInRequest(sights[one].sight->target, request) <
               PlaceInRequest(sights[other].sight->target, request);
    });
    return candidates;
}

std::vector<size_t> ChooseTwo(const std::vector<PreparedSight>& sights, const std::vector<size_t>& candidates)
{
    std::vector<size_t> chosen;
    size_t withDistance = 0;
    for (const size_t candidate : candidates)
    {
        withDistance += HasDistance(sights[candidate]) ? 1U : 0U;
    }
    // Two distances where there are two, else the one, and a sight without.
    size_t places = withDistance == 1 ? 1 : withDistance == 0 ? 2 : 0;
    for (const size_t candidate : candidates)
    {
        const bool isMeasured = HasDistance(sights[candidate]);
        if (chosen.size() < 2 && (isMeasured || places > 0))
        {
            places -= isMeasured ? 0U : 1U;
            chosen.push_back(candidate);
        }
    }
    return chosen;
}

std::vector<size_t> ChooseLine(const std::vector<PreparedSight>& sights, const std::vector<size_t>& candidates)
{
    std::vector<size_t> measured;
    std::copy_if(candidates.begin(), candidates.end(), std::back_inserter(measured),
                 [&sights](size_t candidate) { return HasDistance(sights[candidate]); });
    const auto start = std::find_if(measured.begin(), measured.end(),
                                    [&sights](size_t candidate) { return sights[candidate].target != nullptr; });
    if (start == measured.end())
    {
        return {};
    }
    std::vector<size_t> chosen = {*start};
    measured.erase(start);
    if (!measured.empty())
    {
        chosen.push_back(measured.front());
    }
    return chosen;
}

bool HasHeight(const PointRecord& point)
{
    return (point.flags & POINT_HAS_HEIGHT) != 0;
}

TwoPointTarget ToTwoPointTarget(const PreparedSight& sight, LinearUnit unit)
{
    const ResectObservation observation = ToObservation(sight, unit);
    const double direction = RadiansOf(sight.circle);
    TwoPointTarget target = {};
    target.known = observation.target;
    target.localNorthing = observation.horizontalDistance * std::cos(direction);
    target.localEasting = observation.horizontalDistance * std::sin(direction);
    target.horizontalAngle = observation.horizontalAngle;
    target.zenithAngle = observation.zenithAngle;
    target.horizontalDistance = observation.horizontalDistance;
    target.verticalDifference = observation.verticalDifference;
    target.reflectorHeight = observation.reflectorHeight;
    return target;
}

ThreePointTarget ToThreePointTarget(const PreparedSight& sight, LinearUnit unit)
{
    const ResectObservation observation = ToObservation(sight, unit);
    return {observation.target, observation.horizontalAngle, observation.zenithAngle, observation.reflectorHeight};
}

ClosedResult SolveTwoPoint(const std::vector<PreparedSight>& chosen, LinearUnit unit)
{
    const TwoPointTarget first = ToTwoPointTarget(chosen[0], unit);
    const TwoPointTarget second = ToTwoPointTarget(chosen[1], unit);
    TwoPointStation station = {};
    ClosedResult result;
    result.status = QSTN2PtResect(&first, &second, &station);
    result.station.position = station.station;
    result.station.orientation = station.orientation;
    result.station.heightSpread = std::fabs(station.heightDifference);
    for (const TwoPointTarget& target : {first, second})
    {
        result.heightTargets += HasHeight(target.known) && target.horizontalDistance != 0.0 ? 1U : 0U;
    }
    if (first.horizontalDistance != 0.0 && second.horizontalDistance != 0.0)
    {
        result.checks.baseline = station.baselineCheck;
    }
    return result;
}

ClosedResult SolveThreePoint(const std::vector<PreparedSight>& chosen, LinearUnit unit)
{
    const ThreePointTarget first = ToThreePointTarget(chosen[0], unit);
    const ThreePointTarget second = ToThreePointTarget(chosen[1], unit);
    const ThreePointTarget third = ToThreePointTarget(chosen[2], unit);
    TwoPointStation station = {};
    ClosedResult result;
    result.status = QSTN3PtResect(&first, &second, &third, &station);
    result.station.position = station.station;
    result.station.orientation = station.orientation;
    for (const ThreePointTarget& target : {first, second, third})
    {
        result.heightTargets += HasHeight(target.known) ? 1U : 0U;
    }
    return result;
}

/** The observation of the second point, whose coordinates the library does not read where an azimuth is given. */
ResectObservation DirectionObservation(const PreparedSight& sight, const StationRequest& request)
{
    if (sight.target != nullptr)
    {
        return ToObservation(sight, request.unit);
    }
    KnownPoint nowhere;
    nowhere.point.flags = POINT_HAS_PLAN;
    PreparedSight placed = sight;
    placed.target = &nowhere;
    if (!placed.horizontalDistance)
    {
        ReduceDistance(placed, {request.instrument, request.unit});
    }
    return ToObservation(placed, request.unit);
}

ClosedResult SolveKnownLine(const std::vector<PreparedSight>& chosen, const StationRequest& request)
{
    const ResectObservation start = ToObservation(chosen[0], request.unit);
    const ResectObservation direction = DirectionObservation(chosen[1], request);
    ResectResidual residuals[2] = {};
    ClosedResult result;
    result.status =
        QSTNKnownLine(&start, &direction, request.lineAzimuth.value_or(AZIMUTH_NOT_GIVEN), &result.station, residuals);
    if (!request.lineAzimuth)
    {
        result.checks.lineLength = residuals[0].distanceResidual;
        if (HasHeight(start.target) && HasHeight(direction.target))
        {
            result.checks.lineRise = result.station.heightSpread;
        }
    }
    result.station.heightSpread = 0.0;
    // The height is that from the start point; without one the flags tell of an adjustment that does not count here.
    result.heightTargets = HasHeight(start.target) ? 1 : 0;
    if (result.heightTargets == 0)
    {
        result.station.position.height = 0.0;
        result.station.position.flags = POINT_HAS_PLAN;
    }
    return result;
}

void ToUnit(std::optional<double>& length, LinearUnit unit)
{
    if (length)
    {
        length = FromMetres(*length, unit);
    }
}

} // namespace

std::vector<size_t> ChooseSights(const std::vector<PreparedSight>& sights, const SetUp& setUp, StationMethod method,
                                 const StationRequest& request)
{
    const bool isLine = method == StationMethod::KNOWN_LINE;
    std::vector<size_t> candidates = Candidates(sights, setUp, isLine && request.lineAzimuth, request);
    if (isLine)
    {
        return ChooseLine(sights, candidates);
    }
    if (method == StationMethod::TWO_POINT)
    {
        return ChooseTwo(sights, candidates);
    }
    candidates.resize(std::min<size_t>(candidates.size(), 3));
    return candidates;
}

ClosedResult SolveClosed(StationMethod method, const std::vector<PreparedSight>& chosen, const StationRequest& request)
{
    ClosedResult result = method == StationMethod::TWO_POINT     ? SolveTwoPoint(chosen, request.unit)
                          : method == StationMethod::THREE_POINT ? SolveThreePoint(chosen, request.unit)
                                                                 : SolveKnownLine(chosen, request);
    PointRecord& position = result.station.position;
    position.northing = FromMetres(position.northing, request.unit);
    position.easting = FromMetres(position.easting, request.unit);
    position.height = FromMetres(position.height, request.unit);
    result.station.orientation = WithinCircle(result.station.orientation);
    result.station.heightSpread = FromMetres(result.station.heightSpread, request.unit);
    ToUnit(result.checks.baseline, request.unit);
    ToUnit(result.checks.lineLength, request.unit);
    ToUnit(result.checks.lineRise, request.unit);
    return result;
}

} // namespace qstd
