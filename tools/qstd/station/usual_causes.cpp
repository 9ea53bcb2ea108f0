#include "station/usual_causes.h"

#include "station/plan_search.h"
#include "station/small_length.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

namespace qstd {

namespace {

constexpr double PI = 3.14159265358979323846;
constexpr double FOOT = 0.3048;

/** More targets than these are not exchanged in pairs: each pair costs an adjustment. */
constexpr size_t MOST_TARGETS = 30;

using Observations = std::vector<PlanObservation>;

const std::string& NameOf(const StationSolution& solution, const PlanObservation& observation)
{
    return solution.sights[observation.sight].sight->target;
}

/** One observation to each target. */
Observations OneATarget(const StationSolution& solution)
{
    Observations targets;
    for (const PlanObservation& observation : solution.observations)
    {
        const bool isNew = std::none_of(targets.begin(), targets.end(), [&](const PlanObservation& other) {
            return NameOf(solution, other) == NameOf(solution, observation);
        });
        if (isNew && targets.size() < MOST_TARGETS)
        {
            targets.push_back(observation);
        }
    }
    return targets;
}

void ScaleDistances(Observations& observations, double factor)
{
    for (PlanObservation& observation : observations)
    {
        observation.value *= observation.kind == ObservationKind::DISTANCE ? factor : 1.0;
    }
}

size_t CountDistances(const Observations& observations)
{
    return static_cast<size_t>(std::count_if(observations.begin(), observations.end(), [](const PlanObservation& o) {
        return o.kind == ObservationKind::DISTANCE;
    }));
}

/** What one distance would be in the other unit, feet for metres or metres for feet. */
double OtherUnit(LinearUnit unit)
{
    return unit == LinearUnit::METRE ? FOOT : 1.0 / FOOT;
}

const char* OtherUnitName(LinearUnit unit)
{
    return unit == LinearUnit::METRE ? "feet" : "metres";
}

double SquareSumWithConstant(Observations observations, double constant)
{
    for (PlanObservation& observation : observations)
    {
        observation.value += observation.kind == ObservationKind::DISTANCE ? constant : 0.0;
    }
    const std::vector<PlanAdjustment> found = FindStations(observations);
    return found.empty() ? std::numeric_limits<double>::infinity() : found.front().squareSum;
}

/** The constant on all distances with which the sights fit best: the vertex of the parabola of the square sums. */
double BestConstant(const Observations& observations)
{
    constexpr int ROUNDS = 3;
    double constant = 0.0;
    double reach = 0.05;
    for (int round = 0; round < ROUNDS; ++round)
    {
        const double less = SquareSumWithConstant(observations, constant - reach);
        const double here = SquareSumWithConstant(observations, constant);
        const double more = SquareSumWithConstant(observations, constant + reach);
        const double bend = less - 2.0 * here + more;
        if (!std::isfinite(bend) || bend <= 0.0)
        {
            return 0.0;
        }
        constant += reach * (less - more) / (2.0 * bend);
        reach /= 5.0;
    }
    return constant;
}

/** Two targets have each other's names. */
void OfPairs(const StationSolution& solution, const Observations& targets, const CauseTaker& take)
{
    for (size_t i = 0; i < targets.size(); ++i)
    {
        for (size_t j = i + 1; j < targets.size(); ++j)
        {
            const std::string& one = NameOf(solution, targets[i]);
            const std::string& other = NameOf(solution, targets[j]);
            Observations changed = solution.observations;
            for (PlanObservation& observation : changed)
            {
                const std::string& name = NameOf(solution, observation);
                const PlanObservation& place = name == one ? targets[j] : name == other ? targets[i] : observation;
                observation.northing = place.northing;
                observation.easting = place.easting;
            }
            take({fmt::format("with {} and {} exchanged", one, other), changed});
        }
    }
}

void OfTargets(const StationSolution& solution, const Observations& targets, const CauseTaker& take)
{
    for (const PlanObservation& target : targets)
    {
        const std::string& name = NameOf(solution, target);
        Observations changed = solution.observations;
        for (PlanObservation& observation : changed)
        {
            if (NameOf(solution, observation) == name)
            {
                std::swap(observation.northing, observation.easting);
            }
        }
        take({fmt::format("with north and east of {} exchanged", name), changed});
    }
}

struct Turn
{
    double radians;
    const char* text;
};

/** A single reading. */
void OfSights(const StationSolution& solution, const CauseTaker& take)
{
    constexpr std::array<Turn, 5> TURNS = {{{PI, "turned by 180 degrees"},
                                            {PI / 200.0, "1 gon larger"},
                                            {-PI / 200.0, "1 gon smaller"},
                                            {PI / 180.0, "1 degree larger"},
                                            {-PI / 180.0, "1 degree smaller"}}};
    constexpr size_t MOST_OBSERVATIONS = 60;
    const size_t count = std::min(solution.observations.size(), MOST_OBSERVATIONS);
    for (size_t i = 0; i < count; ++i)
    {
        Observations changed = solution.observations;
        const std::string& name = NameOf(solution, changed[i]);
        const double value = changed[i].value;
        if (changed[i].kind == ObservationKind::DISTANCE)
        {
            changed[i].value = value * OtherUnit(solution.unit);
            take({fmt::format("with the distance to {} taken as {}", name, OtherUnitName(solution.unit)), changed});
            continue;
        }
        for (const Turn& turn : TURNS)
        {
            changed[i].value = value + turn.radians;
            take({fmt::format("with the direction to {} {}", name, turn.text), changed});
        }
    }
}

} // namespace

void ForEachCauseOfTheSet(const StationSolution& solution, const CauseTaker& take)
{
    Observations changed = solution.observations;
    for (PlanObservation& observation : changed)
    {
        std::swap(observation.northing, observation.easting);
    }
    take({"with north and east exchanged in the points", changed});

    changed = solution.observations;
    for (PlanObservation& observation : changed)
    {
        observation.value *= observation.kind == ObservationKind::DIRECTION ? -1.0 : 1.0;
    }
    take({"with the circle read anticlockwise", changed});

    if (CountDistances(solution.observations) == 0)
    {
        return;
    }
    changed = solution.observations;
    ScaleDistances(changed, OtherUnit(solution.unit));
    take({fmt::format("with the distances taken as {}", OtherUnitName(solution.unit)), changed});

    if (CountDistances(solution.observations) < 2)
    {
        return;
    }
    constexpr double LARGEST_CONSTANT = 0.3;
    const double constant = BestConstant(solution.observations);
    if (constant != 0.0 && std::fabs(constant) < LARGEST_CONSTANT)
    {
        changed = solution.observations;
        for (PlanObservation& observation : changed)
        {
            observation.value += observation.kind == ObservationKind::DISTANCE ? constant : 0.0;
        }
        take({fmt::format("with a prism constant of {} {} on all distances",
                          SignedSmallLength(FromMetres(constant, solution.unit), solution.unit),
                          SmallLengthSymbol(solution.unit)),
              changed, 1});
    }
}

void ForEachCauseOfTargets(const StationSolution& solution, const CauseTaker& take)
{
    const Observations targets = OneATarget(solution);
    OfPairs(solution, targets, take);
    OfTargets(solution, targets, take);
    OfSights(solution, take);
}

} // namespace qstd
