#include "station/suspects.h"

#include "station/height_suspects.h"
#include "station/plan_search.h"
#include "station/usual_causes.h"
#include "text/text.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace qstd {

namespace {

/** A set-up with some of it changed: how it fits. */
struct Trial
{
    PlanAdjustment plan;
    double squareSum = 0.0; /**< in variances as expected */
    size_t redundancy = 0;

    [[nodiscard]] double Ratio() const
    {
        return std::sqrt(squareSum / static_cast<double>(redundancy));
    }
};

using Observations = std::vector<PlanObservation>;

/** From this share of the expected standard deviation on mistakes of the whole set are looked for. */
constexpr double DOUBTFUL = 2.5;

/** Beyond these observations only those with the largest residuals are left out, and no new start is looked for. */
constexpr size_t MOST_SEARCHED = 60;
constexpr size_t MOST_TRIED = 30;

double JudgedSquareSum(const Observations& observations, const PlanPosition& position)
{
    double sum = 0.0;
    for (const PlanObservation& observation : observations)
    {
        sum += std::pow(PlanResidual(observation, position) / observation.sigma, 2.0);
    }
    return sum;
}

/** The best station of changed observations: from where it was, and from anywhere. Only where redundancy is left. */
std::optional<Trial> Try(const Observations& observations, const StationSolution& solution, size_t fitted = 0)
{
    const size_t unknowns = 3 + fitted;
    if (observations.size() <= unknowns || !CanDetermine(CountPlaces(observations)))
    {
        return std::nullopt;
    }
    std::optional<PlanAdjustment> best;
    if (solution.plan)
    {
        best = AdjustPlan(observations, solution.plan->position);
    }
    // Where nothing is grossly wrong the station is where it was.
    const bool isNear = best && solution.IsSolved() && solution.fit.ratio < DOUBTFUL;
    if (!isNear && (observations.size() <= MOST_SEARCHED || !best))
    {
        const std::vector<PlanAdjustment> found = FindStations(observations);
        if (!found.empty() && (!best || found.front().squareSum < best->squareSum))
        {
            best = found.front();
        }
    }
    if (!best)
    {
        return std::nullopt;
    }
    return Trial{*best, JudgedSquareSum(observations, best->position), observations.size() - unknowns};
}

/** The square sum of the set-up as it is; without a station any would be better. */
double SquareSumOf(const StationSolution& solution)
{
    return solution.plan ? JudgedSquareSum(solution.observations, solution.plan->position)
                         : std::numeric_limits<double>::infinity();
}

/** One direction as the trial has it, radians. */
double DirectionSigma(const Trial& trial)
{
    return std::sqrt(trial.plan.squareSum / static_cast<double>(trial.redundancy));
}

/** True for a square sum as good as the best but for chance. */
bool IsAsGood(double squareSum, const Trial& best)
{
    constexpr double CHANCE = 9.0;
    const double variance = std::max(1.0, best.squareSum / static_cast<double>(best.redundancy));
    return squareSum <= best.squareSum + CHANCE * variance;
}

/** True where a trial fits, and clearly better than the whole. */
bool Mends(const Trial& trial, double whole, double times)
{
    return trial.Ratio() < MILD_MISFIT && trial.squareSum * times < whole;
}

/**
 * True where what was left out had brought in far more than its share: the quotient of variances of Fisher's test.
 * Needed where nothing is told but that the sights fit somewhat worse than expected.
 */
bool IsFarBetter(const Trial& trial, const StationSolution& solution)
{
    constexpr double SMALLEST_QUOTIENT = 50.0;
    constexpr size_t SMALLEST_REDUNDANCY = 3;
    if (!solution.IsSolved())
    {
        // With less redundancy left almost anything fits.
        return trial.redundancy > 1;
    }
    if (solution.fit.IsMild() || solution.fit.HasMarked())
    {
        return true;
    }
    const auto left = static_cast<double>(solution.fit.redundancy - trial.redundancy);
    const double variance = std::max(1.0, trial.squareSum / static_cast<double>(trial.redundancy));
    const double whole = JudgedSquareSum(solution.observations, solution.plan->position);
    return trial.redundancy >= SMALLEST_REDUNDANCY && (whole - trial.squareSum) / left > SMALLEST_QUOTIENT * variance;
}

struct RankedSuspect
{
    Suspect suspect;
    Trial trial;
};

/** The places of the observations to leave out: all, or those with the largest residuals. */
std::vector<size_t> ToLeaveOut(const StationSolution& solution)
{
    std::vector<size_t> order(solution.observations.size());
    for (size_t i = 0; i < order.size(); ++i)
    {
        order[i] = i;
    }
    if (order.size() <= MOST_SEARCHED || solution.fit.checks.empty())
    {
        return order;
    }
    std::stable_sort(order.begin(), order.end(), [&checks = solution.fit.checks](size_t one, size_t other) {
        return std::fabs(checks[one].standardised) > std::fabs(checks[other].standardised);
    });
    order.resize(MOST_TRIED);
    return order;
}

Suspect SingleSuspect(const PlanObservation& left, const Trial& trial, LinearUnit unit)
{
    Suspect suspect;
    suspect.kind = left.kind == ObservationKind::DIRECTION ? SuspectKind::DIRECTION : SuspectKind::DISTANCE;
    suspect.sight = left.sight;
    const double error = -PlanResidual(left, trial.plan.position);
    suspect.error = suspect.kind == SuspectKind::DIRECTION ? error : FromMetres(error, unit);
    suspect.fit = DirectionSigma(trial);
    return suspect;
}

std::vector<RankedSuspect> SingleSuspects(const StationSolution& solution)
{
    constexpr double TIMES = 4.0;
    const double whole = SquareSumOf(solution);
    std::vector<RankedSuspect> ranked;
    for (const size_t i : ToLeaveOut(solution))
    {
        Observations others = solution.observations;
        const PlanObservation left = others[i];
        others.erase(others.begin() + static_cast<std::ptrdiff_t>(i));
        const std::optional<Trial> trial = Try(others, solution);
        const bool isMarked = !solution.fit.checks.empty() && solution.fit.checks[i].isMarked;
        if (!trial || !Mends(*trial, whole, isMarked ? 1.0 : TIMES) || !IsFarBetter(*trial, solution))
        {
            continue;
        }
        ranked.push_back({SingleSuspect(left, *trial, solution.unit), *trial});
    }
    return ranked;
}

std::vector<RankedSuspect> PointSuspects(const StationSolution& solution)
{
    constexpr double TIMES = 4.0;
    const double whole = SquareSumOf(solution);
    std::vector<RankedSuspect> ranked;
    std::vector<const KnownPoint*> seen;
    for (const PlanObservation& observation : solution.observations)
    {
        const KnownPoint* const target = solution.sights[observation.sight].target;
        if (std::find(seen.begin(), seen.end(), target) != seen.end() || seen.size() >= MOST_TRIED)
        {
            continue;
        }
        seen.push_back(target);
        Observations others;
        std::copy_if(solution.observations.begin(), solution.observations.end(), std::back_inserter(others),
                     [&](const PlanObservation& other) { return solution.sights[other.sight].target != target; });
        const std::optional<Trial> trial = Try(others, solution);
        const bool isSingle = others.size() + 1 == solution.observations.size();
        if (!isSingle && trial && Mends(*trial, whole, TIMES) && IsFarBetter(*trial, solution))
        {
            Suspect suspect;
            suspect.kind = SuspectKind::POINT;
            suspect.sight = observation.sight;
            suspect.fit = DirectionSigma(*trial);
            ranked.push_back({suspect, *trial});
        }
    }
    return ranked;
}

/** The best ones, most likely first. */
std::vector<Suspect> BestOf(std::vector<RankedSuspect> ranked)
{
    constexpr size_t MOST_NAMED = 3;
    std::stable_sort(ranked.begin(), ranked.end(), [](const RankedSuspect& one, const RankedSuspect& other) {
        return one.trial.squareSum < other.trial.squareSum;
    });
    std::vector<Suspect> suspects;
    for (const RankedSuspect& candidate : ranked)
    {
        if (suspects.size() < MOST_NAMED && IsAsGood(candidate.trial.squareSum, ranked.front().trial))
        {
            suspects.push_back(candidate.suspect);
        }
    }
    return suspects;
}

/** The observation without which the others fit best, where redundancy is left. */
struct BestLeft
{
    size_t place = 0;
    Trial trial;
};

std::optional<BestLeft> LeaveTheWorst(const Observations& observations, const StationSolution& solution)
{
    std::optional<BestLeft> best;
    for (size_t i = 0; i < observations.size(); ++i)
    {
        Observations fewer = observations;
        fewer.erase(fewer.begin() + static_cast<std::ptrdiff_t>(i));
        const std::optional<Trial> trial = Try(fewer, solution);
        if (trial && trial->redundancy > 1 && (!best || trial->squareSum < best->trial.squareSum))
        {
            best = BestLeft{i, *trial};
        }
    }
    return best;
}

/** Two or three mistakes at once: the observation that helps most is left out, and again, until the others fit. */
std::vector<Suspect> SeveralSuspects(const StationSolution& solution)
{
    constexpr size_t MOST_MISTAKES = 3;
    constexpr double TIMES = 4.0;
    std::vector<Suspect> suspects;
    if (!solution.IsSolved() || solution.observations.size() > MOST_SEARCHED ||
        !(solution.fit.IsMild() || solution.fit.HasMarked()))
    {
        return suspects;
    }
    Observations others = solution.observations;
    std::vector<PlanObservation> left;
    std::optional<BestLeft> best = LeaveTheWorst(others, solution);
    while (best && left.size() < MOST_MISTAKES)
    {
        left.push_back(others[best->place]);
        others.erase(others.begin() + static_cast<std::ptrdiff_t>(best->place));
        if (Mends(best->trial, SquareSumOf(solution), TIMES * static_cast<double>(left.size())))
        {
            for (const PlanObservation& observation : left)
            {
                suspects.push_back(SingleSuspect(observation, best->trial, solution.unit));
                suspects.back().isOneOfSeveral = left.size() > 1;
            }
            break;
        }
        best = LeaveTheWorst(others, solution);
    }
    return suspects;
}

/** Usual mistakes that explain the misfit: the best, and those as good. */
std::vector<std::string> CausesOf(const StationSolution& solution)
{
    constexpr double TIMES = 10.0;
    constexpr size_t MOST_NAMED = 3;
    const double whole = SquareSumOf(solution);
    std::vector<std::pair<Trial, std::string>> ranked;
    const auto tryCause = [&](const UsualCause& cause) {
        const std::optional<Trial> trial = Try(cause.observations, solution, cause.fitted);
        // What is fitted always brings something down.
        const bool isGood = trial && Mends(*trial, whole, TIMES) && (cause.fitted == 0 || trial->Ratio() < DOUBTFUL);
        if (isGood)
        {
            ranked.emplace_back(*trial, fmt::format("{} the sights fit to {}\"", cause.text,
                                                    FormatFixed(DirectionSigma(*trial) / ARC_SECOND, 1)));
        }
    };
    ForEachCauseOfTheSet(solution, tryCause);
    if (!solution.IsSolved() || solution.fit.IsMild())
    {
        ForEachCauseOfTargets(solution, tryCause);
    }
    const auto best = std::min_element(ranked.begin(), ranked.end(), [](const auto& one, const auto& other) {
        return one.first.squareSum < other.first.squareSum;
    });
    // As good as the best but for chance: in the order in which they are usual.
    std::vector<std::string> causes;
    for (const auto& [trial, text] : ranked)
    {
        if (causes.size() < MOST_NAMED && IsAsGood(trial.squareSum, best->first))
        {
            causes.push_back(causes.empty() ? text : "or " + text);
        }
    }
    return causes;
}

void FindPlanSuspects(StationSolution& solution)
{
    std::vector<Suspect> suspects = BestOf(SingleSuspects(solution));
    if (suspects.empty())
    {
        suspects = BestOf(PointSuspects(solution));
    }
    if (suspects.empty())
    {
        suspects = SeveralSuspects(solution);
    }
    solution.suspects.insert(solution.suspects.end(), suspects.begin(), suspects.end());
    if (!solution.IsSolved() || solution.fit.ratio > DOUBTFUL)
    {
        const std::vector<std::string> causes = CausesOf(solution);
        solution.causes.insert(solution.causes.end(), causes.begin(), causes.end());
    }
}

bool NeedsSearch(const StationSolution& solution)
{
    if (solution.observations.empty() || solution.outcome == Outcome::AMBIGUOUS ||
        solution.outcome == Outcome::TOO_FEW || solution.method == StationMethod::KNOWN_LINE)
    {
        return false;
    }
    return !solution.IsSolved() || solution.fit.ratio > DOUBTFUL || solution.fit.HasMarked();
}

} // namespace

void FindSuspects(StationSolution& solution, const StationRequest& request)
{
    if (NeedsSearch(solution))
    {
        FindPlanSuspects(solution);
    }
    if (solution.IsSolved() && solution.AreHeightsDoubtful())
    {
        FindHeightSuspects(solution, request);
    }
}

} // namespace qstd
