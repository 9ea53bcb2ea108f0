#include "station/misfit_text.h"

#include "station/small_length.h"
#include "text/text.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace qstd {

namespace {

std::string Seconds(double radians)
{
    return FormatFixed(radians / ARC_SECOND, 1) + "\"";
}

/** A length as people say it, without its sign. */
std::string LengthText(double length, LinearUnit unit)
{
    return SmallLengthText(std::fabs(length), unit);
}

std::string PlanMisfit(const StationSolution& solution, AngleForm angles)
{
    const double sigma = std::sqrt(solution.plan->squareSum / static_cast<double>(solution.fit.redundancy));
    return fmt::format("{}: one direction ± {}; directions and distances miss by {} times what is expected of them",
                       solution.fit.IsStrong() ? "the sights do not fit" : "the sights fit badly",
                       AngleSizeText(sigma, angles),
                       FormatFixed(solution.fit.ratio, solution.fit.ratio < 10.0 ? 1 : 0));
}

std::string HeightMisfit(const StationSolution& solution)
{
    const double ratio = std::max(solution.heightFit.ratio, solution.targetHeightFit.ratio);
    return fmt::format("the heights {}: they lie {} apart, {} times what is expected",
                       ratio >= STRONG_MISFIT ? "do not agree" : "agree badly",
                       LengthText(solution.station.heightSpread, solution.unit),
                       FormatFixed(ratio, ratio < 10.0 ? 1 : 0));
}

/** The target of a suspect, with the line of the field book where it was sighted more than once. */
std::string SightName(const Suspect& suspect, const StationSolution& solution)
{
    const Sight& sight = *solution.sights[suspect.sight].sight;
    size_t sights = 0;
    for (const PreparedSight& other : solution.sights)
    {
        sights += other.sight->target == sight.target ? 1U : 0U;
    }
    const bool isOneOfMany = sights > 1 && suspect.kind != SuspectKind::POINT && !suspect.isWholeTarget;
    return isOneOfMany ? fmt::format("{} in line {}", sight.target, sight.line) : sight.target;
}

/** Where the residual is marked but no sight stands out when it is left out. */
bool HasUnexplainedMark(const StationSolution& solution)
{
    return solution.fit.HasMarked() && !solution.fit.IsMild() &&
           std::all_of(solution.suspects.begin(), solution.suspects.end(),
                       [](const Suspect& suspect) { return suspect.kind == SuspectKind::HEIGHT; });
}

} // namespace

std::string AngleSizeText(double radians, AngleForm angles)
{
    constexpr double LARGE = 1000.0 * ARC_SECOND;
    const double size = std::fabs(radians);
    return size < LARGE ? Seconds(size) : FormatAngle(UnitsOf(size), angles);
}

const char* SuspectName(SuspectKind kind)
{
    switch (kind)
    {
    case SuspectKind::DISTANCE:
        return "distance";
    case SuspectKind::HEIGHT:
        return "height";
    case SuspectKind::POINT:
        return "point";
    case SuspectKind::DIRECTION:
        break;
    }
    return "direction";
}

std::string SuspectText(const Suspect& suspect, const StationSolution& solution, AngleForm angles)
{
    const std::string target = SightName(suspect, solution);
    const double error = suspect.error.value_or(0.0);
    std::string text;
    switch (suspect.kind)
    {
    case SuspectKind::DIRECTION:
        text = fmt::format("{}: direction {} too {}", target, AngleSizeText(error, angles),
                           error > 0.0 ? "large" : "small");
        break;
    case SuspectKind::DISTANCE:
        text = fmt::format("{}: distance {} too {}", target, LengthText(error, solution.unit),
                           error > 0.0 ? "long" : "short");
        break;
    case SuspectKind::HEIGHT:
        return fmt::format("{}: its height or reflector height {} too {}; the others agree", target,
                           LengthText(error, solution.unit), error > 0.0 ? "large" : "small");
    case SuspectKind::POINT:
        text = fmt::format("{}: its coordinates or its name do not fit the other sights", target);
        break;
    }
    return suspect.fit ? fmt::format("{}; without {} the sights fit to {}", text,
                                     suspect.isOneOfSeveral ? "these" : "it", Seconds(*suspect.fit))
                       : text;
}

std::string UncheckedText(const StationSolution& solution)
{
    // Of sights that do not fit that is not what matters; without redundancy it goes without saying.
    if (solution.fit.redundancy == 0 || solution.fit.IsStrong())
    {
        return "";
    }
    constexpr size_t MOST_NAMED = 3;
    std::string names;
    size_t count = 0;
    for (size_t i = 0; i < solution.fit.checks.size(); ++i)
    {
        if (!solution.fit.checks[i].isUnchecked)
        {
            continue;
        }
        if (++count <= MOST_NAMED)
        {
            const PlanObservation& observation = solution.observations[i];
            names += fmt::format("{}the {} to {}", names.empty() ? "" : ", ",
                                 observation.kind == ObservationKind::DIRECTION ? "direction" : "distance",
                                 solution.sights[observation.sight].sight->target);
        }
    }
    const std::string more = count > MOST_NAMED ? fmt::format(" and {} more", count - MOST_NAMED) : "";
    return count == 0 ? "" : fmt::format("hardly anything checks {}{}: an error there would not show", names, more);
}

std::vector<std::string> MisfitTexts(const StationSolution& solution, AngleForm angles)
{
    std::vector<std::string> texts;
    if (!solution.IsSolved())
    {
        return texts;
    }
    if (solution.fit.IsMild())
    {
        texts.push_back(PlanMisfit(solution, angles));
    }
    const bool isHeightMisfit = solution.heightFit.IsMild() || solution.targetHeightFit.IsMild();
    if (isHeightMisfit)
    {
        texts.push_back(HeightMisfit(solution));
    }
    for (const Suspect& suspect : solution.suspects)
    {
        const bool isOther =
            &suspect != &solution.suspects.front() && !suspect.isOneOfSeveral && suspect.kind != SuspectKind::HEIGHT;
        texts.push_back((isOther ? "or " : "") + SuspectText(suspect, solution, angles));
    }
    if (solution.fit.IsMild() && solution.suspects.empty() && solution.causes.empty())
    {
        texts.emplace_back(
            "no single sight and no usual mistake explains it: check names, coordinates, the units of angles "
            "and distances, and that the circle was not moved");
    }
    for (const std::string& cause : solution.causes)
    {
        texts.push_back(cause);
    }
    if (solution.AreHeightsDoubtful() && !isHeightMisfit && solution.suspects.empty())
    {
        texts.emplace_back("the heights differ by more than chance makes them (*), but no single one explains it");
    }
    if (HasUnexplainedMark(solution))
    {
        texts.emplace_back("a residual is larger than chance makes it (*), but no single sight explains it");
    }
    return texts;
}

} // namespace qstd
