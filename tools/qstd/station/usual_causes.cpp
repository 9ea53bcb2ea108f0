#include "station/usual_causes.h"

#include "station/plan_search.h"
#include "station/small_length.h"
#include "text/text.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

namespace qstd {

namespace {

constexpr double PI = 3.14159265358979323846;

/** More targets than these are not exchanged in pairs, nor more readings changed: each trial is an adjustment. */
constexpr size_t MOST_TARGETS = 12;
constexpr size_t MOST_READINGS = 12;
constexpr size_t MOST_FOR_TURNS = 80;

using Observations = std::vector<PlanObservation>;

const KnownPoint* TargetOf(const StationSolution& solution, const PlanObservation& observation)
{
    return solution.sights[observation.sight].target;
}

const std::string& NameOf(const StationSolution& solution, const PlanObservation& observation)
{
    return solution.sights[observation.sight].sight->target;
}

/** The observations whose residuals are largest, most of them first; as they come where there are none. */
std::vector<size_t> ByResidual(const StationSolution& solution)
{
    std::vector<size_t> order(solution.observations.size());
    for (size_t i = 0; i < order.size(); ++i)
    {
        order[i] = i;
    }
    if (!solution.fit.checks.empty())
    {
        std::stable_sort(order.begin(), order.end(), [&checks = solution.fit.checks](size_t one, size_t other) {
            return std::fabs(checks[one].standardised) > std::fabs(checks[other].standardised);
        });
    }
    return order;
}

/** One observation to each target, those with the largest residuals. */
Observations OneATarget(const StationSolution& solution)
{
    Observations targets;
    for (const size_t i : ByResidual(solution))
    {
        const PlanObservation& observation = solution.observations[i];
        const bool isNew = std::none_of(targets.begin(), targets.end(), [&](const PlanObservation& other) {
            return TargetOf(solution, other) == TargetOf(solution, observation);
        });
        if (isNew)
        {
            targets.push_back(observation);
        }
        if (targets.size() == MOST_TARGETS)
        {
            break;
        }
    }
    std::sort(targets.begin(), targets.end(),
              [](const PlanObservation& one, const PlanObservation& other) { return one.sight < other.sight; });
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
    return unit == LinearUnit::METRE ? ToMetres(1.0, LinearUnit::FOOT) : 1.0 / ToMetres(1.0, unit);
}

const char* OtherUnitName(LinearUnit unit)
{
    return unit == LinearUnit::METRE ? "feet" : "metres";
}

using Change = std::function<void(PlanObservation&, double)>;

/** All distances changed by an amount. */
Observations ChangedBy(Observations observations, const Change& change, double amount)
{
    for (PlanObservation& observation : observations)
    {
        if (observation.kind == ObservationKind::DISTANCE)
        {
            change(observation, amount);
        }
    }
    return observations;
}

double SquareSumWith(const Observations& observations, const Change& change, double amount)
{
    const std::vector<PlanAdjustment> found = FindStations(ChangedBy(observations, change, amount));
    return found.empty() ? std::numeric_limits<double>::infinity() : found.front().squareSum;
}

/** The change of all distances with which the sights fit best: the vertex of the parabola of the square sums. */
double BestAmount(const Observations& observations, const Change& change, double reach)
{
    constexpr int ROUNDS = 3;
    double amount = 0.0;
    for (int round = 0; round < ROUNDS; ++round)
    {
        const double less = SquareSumWith(observations, change, amount - reach);
        const double here = SquareSumWith(observations, change, amount);
        const double more = SquareSumWith(observations, change, amount + reach);
        const double bend = less - 2.0 * here + more;
        if (!std::isfinite(bend) || bend <= 0.0)
        {
            return 0.0;
        }
        amount += reach * (less - more) / (2.0 * bend);
        reach /= 5.0;
    }
    return amount;
}

void TakeConstant(const StationSolution& solution, const CauseTaker& take)
{
    constexpr double LARGEST = 0.3;
    constexpr double REACH = 0.05;
    const Change add = [](PlanObservation& observation, double amount) { observation.value += amount; };
    const double constant = BestAmount(solution.observations, add, REACH);
    if (constant != 0.0 && std::fabs(constant) < LARGEST)
    {
        take({fmt::format("with a prism constant of {} {} on all distances",
                          SignedSmallLength(FromMetres(constant, solution.unit), solution.unit),
                          SmallLengthSymbol(solution.unit)),
              ChangedBy(solution.observations, add, constant), 1});
    }
}

void TakeScale(const StationSolution& solution, const CauseTaker& take)
{
    constexpr double LARGEST = 0.003;
    constexpr double REACH = 0.0005;
    const Change stretch = [](PlanObservation& observation, double amount) { observation.value *= 1.0 + amount; };
    const double part = BestAmount(solution.observations, stretch, REACH);
    if (part != 0.0 && std::fabs(part) < LARGEST)
    {
        take({fmt::format("with a scale factor of {} on all distances", FormatFixed(1.0 + part, 6)),
              ChangedBy(solution.observations, stretch, part), 1});
    }
}

/** The directions from a place in the list on, turned by what the station of those before asks for in the middle. */
std::optional<double> TurnFrom(const Observations& all, size_t first)
{
    const Observations before(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(first));
    if (!CanDetermine(CountPlaces(before)))
    {
        return std::nullopt;
    }
    const std::vector<PlanAdjustment> found = FindStations(before);
    std::vector<double> turns;
    for (size_t i = first; i < all.size() && !found.empty(); ++i)
    {
        if (all[i].kind == ObservationKind::DIRECTION)
        {
            turns.push_back(PlanResidual(all[i], found.front().position));
        }
    }
    // One direction alone is turned by its own error.
    if (turns.size() < 2)
    {
        return std::nullopt;
    }
    std::sort(turns.begin(), turns.end());
    return turns[turns.size() / 2];
}

/** The circle was moved during the set-up, or set anew for a round: all directions from a sight on are turned alike. */
void TakeTurns(const StationSolution& solution, const CauseTaker& take)
{
    const Observations& all = solution.observations;
    for (size_t first = 1; first < all.size() && all.size() <= MOST_FOR_TURNS; ++first)
    {
        const bool isNewSight = all[first].kind == ObservationKind::DIRECTION;
        const std::optional<double> turn = isNewSight ? TurnFrom(all, first) : std::nullopt;
        if (!turn)
        {
            continue;
        }
        Observations changed = all;
        for (size_t i = first; i < all.size(); ++i)
        {
            changed[i].value += all[i].kind == ObservationKind::DIRECTION ? *turn : 0.0;
        }
        take({fmt::format("with the directions from line {} on turned by {} degrees",
                          solution.sights[all[first].sight].sight->line, FormatFixed(*turn * 180.0 / PI, 4)),
              changed, 1});
    }
}

/** Two targets have each other's names. */
void OfPairs(const StationSolution& solution, const Observations& targets, const CauseTaker& take)
{
    for (size_t i = 0; i < targets.size(); ++i)
    {
        for (size_t j = i + 1; j < targets.size(); ++j)
        {
            const KnownPoint* const one = TargetOf(solution, targets[i]);
            const KnownPoint* const other = TargetOf(solution, targets[j]);
            Observations changed = solution.observations;
            for (PlanObservation& observation : changed)
            {
                const KnownPoint* const target = TargetOf(solution, observation);
                const PlanObservation& place = target == one ? targets[j] : target == other ? targets[i] : observation;
                observation.northing = place.northing;
                observation.easting = place.easting;
            }
            take({fmt::format("with {} and {} exchanged", one->id, other->id), changed});
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
            if (TargetOf(solution, observation) == TargetOf(solution, target))
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

/** The readings of the suspects or, where there are none, those with the largest residuals. */
std::vector<size_t> ReadingsToChange(const StationSolution& solution)
{
    std::vector<size_t> readings;
    for (const size_t i : ByResidual(solution))
    {
        const bool isSuspect =
            std::any_of(solution.suspects.begin(), solution.suspects.end(),
                        [&](const Suspect& suspect) { return suspect.sight == solution.observations[i].sight; });
        if ((isSuspect || solution.suspects.empty()) && readings.size() < MOST_READINGS)
        {
            readings.push_back(i);
        }
    }
    return readings;
}

/** A single reading. */
void OfSights(const StationSolution& solution, const CauseTaker& take)
{
    constexpr std::array<Turn, 5> TURNS = {{{PI, "turned by 180 degrees"},
                                            {PI / 200.0, "1 gon larger"},
                                            {-PI / 200.0, "1 gon smaller"},
                                            {PI / 180.0, "1 degree larger"},
                                            {-PI / 180.0, "1 degree smaller"}}};
    for (const size_t i : ReadingsToChange(solution))
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

    TakeTurns(solution, take);
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
    TakeScale(solution, take);
    TakeConstant(solution, take);
}

void ForEachCauseOfTargets(const StationSolution& solution, const CauseTaker& take)
{
    const Observations targets = OneATarget(solution);
    OfPairs(solution, targets, take);
    OfTargets(solution, targets, take);
    OfSights(solution, take);
}

} // namespace qstd
