#include "station/status_text.h"

#include "text/status_name.h"
#include "text/text.h"

#include <fmt/format.h>

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

} // namespace

std::string OutcomeName(const StationSolution& solution)
{
    switch (solution.outcome)
    {
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
