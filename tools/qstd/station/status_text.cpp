#include "station/status_text.h"

#include "text/status_name.h"
#include "text/text.h"

#include <fmt/format.h>

#include <set>
#include <utility>

namespace qstd {

namespace {

/** An adjustment starts from three directions or from two distances. */
bool HasEnoughSights(const StationSolution& solution)
{
    return solution.directions >= 3 || solution.distances >= 2;
}

StatusText DescribeTooFew(const StationSolution& solution)
{
    return {solution.used == 0 ? "no sight to a known point"
                               : fmt::format("{} with {} cannot fix a station",
                                             Counted(solution.directions, "direction", "directions"),
                                             Counted(solution.distances, "distance", "distances")),
            "targets missing from the points table, names written differently there, or sights kept out with use 0",
            "sight known points until there are three directions or two distances, or add the targets' coordinates"};
}

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
    case Outcome::TOO_MANY:
        return "TOO_MANY_SIGHTS";
    case Outcome::NOT_A_POSITION:
        return "NOT_A_POSITION";
    case Outcome::SOLVED:
    case Outcome::REFUSED:
        break;
    }
    return StatusName(solution.status);
}

StatusText DescribeFailure(const StationSolution& solution)
{
    if (solution.outcome == Outcome::TOO_MANY)
    {
        return {fmt::format("{} sights; one adjustment takes at most {}", solution.used, MOST_SIGHTS),
                "repeated sights to a few targets, or a whole survey under one station name",
                "keep sights out with use 0, or split the set-up"};
    }
    if (solution.outcome == Outcome::TOO_FEW)
    {
        return DescribeTooFewForMethod(solution);
    }
    const bool isKnownLine = solution.method == StationMethod::KNOWN_LINE;
    const bool isOfAdjustment =
        solution.method == StationMethod::MULTI || (isKnownLine && solution.status != QSTD_COINCIDENT_POINTS);
    if (solution.outcome == Outcome::REFUSED && !isOfAdjustment)
    {
        return DescribeRefusedClosed(solution);
    }
    if (solution.status == QSTD_NO_MEMORY)
    {
        return {"no memory for the adjustment", "very many sights in one set-up", "split the set-up"};
    }
    if (!HasEnoughSights(solution))
    {
        return DescribeTooFew(solution);
    }
    if (solution.status == QSTD_REJECTED)
    {
        return {"these sights give no unique position",
                "the station lies on the circle through the targets (danger circle), targets stand in one line of "
                "sight, or two targets share their coordinates",
                "sight a known point off that circle, or measure the distances to two targets"};
    }
    return {solution.outcome == Outcome::NOT_A_POSITION ? "the computation ended in no position"
                                                        : "the adjustment did not converge",
            "a target mistaken for another, a wrong coordinate or reading, or a station near the circle through its "
            "targets",
            "check names, coordinates and readings; then keep out one sight after the other with use 0"};
}

} // namespace qstd
