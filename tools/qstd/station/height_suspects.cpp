#include "station/height_suspects.h"

#include "instrument/earth.h"
#include "station/height_solution.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace qstd {

namespace {

/** The heights of the station, metres. */
std::vector<HeightValue> HeightValues(const StationSolution& solution)
{
    std::vector<HeightValue> values;
    for (size_t i = 0; i < solution.heightSights.size(); ++i)
    {
        const double height = *solution.residuals[solution.heightSights[i]].height;
        values.push_back({ToMetres(height, solution.unit), solution.heightSigmas[i]});
    }
    return values;
}

/** The check with the largest standardised residual. */
size_t LargestOf(const Fit& fit)
{
    const auto largest = std::max_element(fit.checks.begin(), fit.checks.end(),
                                          [](const ObservationCheck& one, const ObservationCheck& other) {
                                              return std::fabs(one.standardised) < std::fabs(other.standardised);
                                          });
    return static_cast<size_t>(largest - fit.checks.begin());
}

/** Heights without those that a condition holds for. */
template <class Condition>
Fit WithoutHeights(const std::vector<HeightValue>& values, Condition isLeft)
{
    std::vector<HeightValue> others;
    for (size_t i = 0; i < values.size(); ++i)
    {
        if (!isLeft(i))
        {
            others.push_back(values[i]);
        }
    }
    return FitOfHeights(others);
}

/** The heights of a sight or of all sights to a target, and how the others fit without them. */
struct HeightTrial
{
    Suspect suspect;
    Fit others;
};

Suspect HeightSuspect(size_t sight, const Fit& fit, bool isWholeTarget, LinearUnit unit)
{
    Suspect suspect;
    suspect.kind = SuspectKind::HEIGHT;
    suspect.sight = sight;
    suspect.isWholeTarget = isWholeTarget;
    suspect.error = FromMetres(-fit.checks[LargestOf(fit)].estimatedError, unit);
    return suspect;
}

HeightTrial WithoutSight(const StationSolution& solution, const std::vector<HeightValue>& values)
{
    const size_t place = LargestOf(solution.heightFit);
    return {HeightSuspect(solution.heightSights[place], solution.heightFit, false, solution.unit),
            WithoutHeights(values, [place](size_t i) { return i == place; })};
}

HeightTrial WithoutTarget(const StationSolution& solution, const std::vector<HeightValue>& values)
{
    const KnownPoint* const point = solution.heightPoints[LargestOf(solution.targetHeightFit)];
    const auto isOfPoint = [&](size_t i) { return HeightPoint(solution.sights[solution.heightSights[i]]) == point; };
    size_t first = 0;
    while (!isOfPoint(first))
    {
        ++first;
    }
    return {HeightSuspect(solution.heightSights[first], solution.targetHeightFit, true, solution.unit),
            WithoutHeights(values, isOfPoint)};
}

/** One sight's height or, where the others agree better without it, one target's. */
void FindHeightSuspect(StationSolution& solution, const std::vector<HeightValue>& values)
{
    constexpr double TIMES = 2.0;
    if (solution.heightFit.redundancy < 2)
    {
        return;
    }
    HeightTrial best = WithoutSight(solution, values);
    if (solution.targetHeightFit.redundancy > 1)
    {
        const HeightTrial target = WithoutTarget(solution, values);
        best = target.others.ratio < best.others.ratio ? target : best;
    }
    const double whole = std::max(solution.heightFit.ratio, solution.targetHeightFit.ratio);
    const bool isMarked = solution.heightFit.HasMarked() || solution.targetHeightFit.HasMarked();
    const bool mends = best.others.redundancy > 0 && best.others.ratio < MILD_MISFIT &&
                       best.others.ratio * (isMarked ? 1.0 : TIMES) < whole;
    // A wrong distance makes its height wrong, too.
    const bool isKnown = std::any_of(solution.suspects.begin(), solution.suspects.end(),
                                     [&best](const Suspect& other) { return other.sight == best.suspect.sight; });
    if (mends && !isKnown)
    {
        solution.suspects.push_back(best.suspect);
    }
}

/** Heights over long sights that disagree by what the earth's curvature makes of them. */
void TryCurvature(StationSolution& solution, const StationRequest& request, std::vector<HeightValue> values)
{
    if (request.instrument.curvatureRefraction == 1)
    {
        return;
    }
    for (size_t i = 0; i < values.size(); ++i)
    {
        const PreparedSight& sight = solution.sights[solution.heightSights[i]];
        const double metres = ToMetres(DistanceTo(sight, solution.station.position), solution.unit);
        values[i].height -= (1.0 - REFRACTION_COEFFICIENTS[0]) * metres * metres / (2.0 * EARTH_RADIUS);
    }
    constexpr double TIMES = 2.0;
    const Fit fit = FitOfHeights(values);
    const Fit ofTargets = FitOfTargetHeights(solution, values, request.expectation.mark);
    const double before = std::max(solution.heightFit.ratio, solution.targetHeightFit.ratio);
    const bool fits = !fit.IsMild() && !fit.HasMarked() && !ofTargets.IsMild() && !ofTargets.HasMarked();
    if (fits && std::max(fit.ratio, ofTargets.ratio) * TIMES < before)
    {
        solution.causes.push_back(fmt::format("with --refraction {} the heights fit", REFRACTION_COEFFICIENTS[0]));
    }
}

} // namespace

void FindHeightSuspects(StationSolution& solution, const StationRequest& request)
{
    const std::vector<HeightValue> values = HeightValues(solution);
    FindHeightSuspect(solution, values);
    TryCurvature(solution, request, values);
}

} // namespace qstd
