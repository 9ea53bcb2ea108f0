#include "station/status_text.h"

#include "text/status_name.h"
#include "text/text.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>
#include <utility>

namespace qstd {

namespace {

/** The used sights: 3 directions and 0 distances to 2 places. Targets of equal coordinates are one place. */
std::string Holdings(const StationSolution& solution)
{
    std::set<std::pair<double, double>> places;
    for (const PreparedSight& sight : solution.sights)
    {
        if (sight.isUsed)
        {
            places.emplace(sight.target->point.northing, sight.target->point.easting);
        }
    }
    return fmt::format("{} and {} to {}", Counted(solution.directions, "direction", "directions"),
                       Counted(solution.distances, "distance", "distances"), Counted(places.size(), "place", "places"));
}

size_t CountUsedPlaces(const StationSolution& solution)
{
    std::set<std::pair<double, double>> places;
    for (const PreparedSight& sight : solution.sights)
    {
        if (sight.isUsed)
        {
            places.emplace(sight.target->point.northing, sight.target->point.easting);
        }
    }
    return places.size();
}

/** Targets of the set-up that are not known, the first ones of many. */
std::string UnknownTargets(const StationSolution& solution)
{
    constexpr size_t MOST_NAMED = 5;
    std::vector<std::string> names;
    std::set<std::string> seen;
    for (const PreparedSight& sight : solution.sights)
    {
        const std::string& name = sight.sight->target;
        const bool isUnknown =
            sight.target == nullptr && sight.benchmark == nullptr && sight.sight->isWanted && !IsVertical(sight);
        if (isUnknown && name != solution.setUp->station && seen.insert(name).second)
        {
            names.push_back(name);
        }
    }
    std::string text;
    for (size_t i = 0; i < names.size() && i < MOST_NAMED; ++i)
    {
        text += (i == 0 ? "" : ", ") + names[i];
    }
    return names.size() > MOST_NAMED ? fmt::format("{} and {} more", text, names.size() - MOST_NAMED) : text;
}

/** True where every sight that could take part has no direction. */
bool AreAllVertical(const StationSolution& solution)
{
    return std::any_of(solution.sights.begin(), solution.sights.end(),
                       [](const PreparedSight& sight) { return IsVertical(sight); });
}

/** Sights that cannot determine a station by any method. */
StatusText DescribeUndetermined(const StationSolution& solution)
{
    const std::string unknown = UnknownTargets(solution);
    const std::string cause =
        !unknown.empty()
            ? fmt::format("targets without coordinates in the points table: {}", unknown)
            : "sights kept out with use 0, a distance that was not measured, or repeated sights to one target";
    switch (CountUsedPlaces(solution))
    {
    case 0:
        if (AreAllVertical(solution))
        {
            return {"all sights to known points are vertical: their zenith readings are 0 or 180 degrees",
                    "a zenith reading that was not taken, written as 0", "leave v empty where it was not read"};
        }
        return {"no sight to a known point", cause, "add the targets' coordinates, or sight known points"};
    case 1:
        return {fmt::format("all sights go to one target, {}; a station needs two and a distance, or three",
                            TargetNames(solution).front()),
                cause, "sight another known point"};
    default:
        return {fmt::format("{}: two targets fix a station only with a distance", Holdings(solution)), cause,
                "measure the distance to one of them, or sight a third known point"};
    }
}

/** Sights that should determine a station, and give none. */
StatusText DescribeNoStation(const StationSolution& solution)
{
    switch (solution.outcome)
    {
    case Outcome::AMBIGUOUS:
        return {"two positions fit these sights equally well",
                "one distance, longer than the line between the two targets",
                "measure the distance to the other target, or sight a third one"};
    case Outcome::UNDETERMINED:
        return {"any place on a circle would fit these sights",
                "the station lies on the circle through its targets (danger circle), or all targets lie in one line "
                "of sight",
                "sight a known point off that circle, or measure the distances to two targets"};
    case Outcome::NOT_A_POSITION:
    case Outcome::NO_SOLUTION:
        return {"no position fulfils these sights: what the computation ended in is not a solution",
                "a target mistaken for another, a wrong coordinate or reading",
                "check names, coordinates and readings; then keep out one sight after the other with use 0"};
    default:
        if (!solution.suspects.empty() || !solution.causes.empty())
        {
            return {"these sights give no position", "what is named above",
                    "check it in the field book and in the points table"};
        }
        return {"these sights give no position",
                "the station lies on the circle through its targets (danger circle), targets stand in one line of "
                "sight, or sights and coordinates do not fit together",
                "check names, coordinates and readings; else sight a known point off that circle, or measure the "
                "distances to two targets"};
    }
}

/** What a closed method was given too little of. */
StatusText DescribeTooFewForMethod(const StationSolution& solution)
{
    const std::string holds = Holdings(solution);
    const char* const causes = "targets missing from the points table, names written differently there, sights kept "
                               "out with use 0, or several sights to one target or to targets of equal coordinates";
    switch (solution.method)
    {
    case StationMethod::THREE_POINT:
        return {fmt::format("a three-point resection needs directions to three known points; here are {}", holds),
                causes, "sight three known points, or take --method auto"};
    case StationMethod::KNOWN_LINE:
        return {"a known line needs a sight with distance to a known point and one to another point of the line",
                "a distance not measured, or a second point without coordinates and no --line-azimuth",
                "measure distances to both points; give --line-azimuth, or the coordinates of both"};
    default:
        return {fmt::format("a two-point resection needs sights to two known points; here are {}", holds), causes,
                "sight two known points, at least one with its distance"};
    }
}

/** What the library refuses of a closed method, by its status. */
StatusText DescribeRefusedClosed(const StationSolution& solution)
{
    switch (solution.status)
    {
    case QSTD_NO_DISTANCE:
        return {"a two-point resection needs a distance to at least one of the two targets",
                "only directions were measured, or a slope distance without zenith reading",
                "measure a distance, or sight a third known point"};
    case QSTD_COINCIDENT_POINTS:
        return {"the two targets coincide", "one point under two names, or both readings are of one target",
                "check names, coordinates and readings"};
    case QSTD_EQUAL_DIRECTIONS:
        return {"two of the three directions are equal", "two targets stand in one line of sight",
                "sight another known point"};
    case QSTD_DEGENERATE:
        if (solution.method == StationMethod::TWO_POINT)
        {
            return {"the measured distance is longer than the line between the two targets",
                    "a target mistaken for another, or a station farther off than one distance can fix",
                    "measure the distance to the other target, or to both"};
        }
        return {"the station and its targets lie on one circle (danger circle), so that any place on it would do",
                "targets all around on the circle through the station", "sight a known point off that circle"};
    default:
        return {StatusMeaning(solution.status), "sights or coordinates that do not fit together",
                "check names, coordinates and readings"};
    }
}

} // namespace

std::string OutcomeName(const StationSolution& solution)
{
    switch (solution.outcome)
    {
    case Outcome::TOO_FEW:
        return "TOO_FEW_SIGHTS";
    case Outcome::NOT_A_POSITION:
        return "NOT_A_POSITION";
    case Outcome::NO_SOLUTION:
        return "NO_SOLUTION";
    case Outcome::UNDETERMINED:
        return "UNDETERMINED";
    case Outcome::AMBIGUOUS:
        return "AMBIGUOUS";
    case Outcome::SOLVED:
    case Outcome::REFUSED:
        break;
    }
    return StatusName(solution.status);
}

StatusText DescribeFailure(const StationSolution& solution)
{
    const bool isOfAdjustment = solution.method == StationMethod::MULTI;
    if (solution.outcome == Outcome::TOO_FEW)
    {
        return isOfAdjustment ? DescribeUndetermined(solution) : DescribeTooFewForMethod(solution);
    }
    if (solution.status == QSTD_NO_MEMORY)
    {
        return {"no memory for the adjustment", "very many sights in one set-up", "split the set-up"};
    }
    return solution.outcome == Outcome::REFUSED && !isOfAdjustment ? DescribeRefusedClosed(solution)
                                                                   : DescribeNoStation(solution);
}

} // namespace qstd
