#include "station/leave_one_out.h"

#include "station/plan_search.h"

#include <cmath>

namespace qstd {

namespace {

LeftOut SolveWithout(size_t left, const StationSolution& whole)
{
    std::vector<PlanObservation> others = whole.observations;
    LeftOut without;
    without.sight = others[left].sight;
    without.kind = others[left].kind;
    others.erase(others.begin() + static_cast<std::ptrdiff_t>(left));
    if (!CanDetermine(CountPlaces(others)))
    {
        return without;
    }
    const std::optional<PlanAdjustment> plan = AdjustPlan(others, whole.plan->position);
    if (!plan)
    {
        return without;
    }
    without.isSolved = true;
    without.northingShift = FromMetres(plan->position.northing - whole.plan->position.northing, whole.unit);
    without.eastingShift = FromMetres(plan->position.easting - whole.plan->position.easting, whole.unit);
    const size_t redundancy = whole.Redundancy() - 1;
    if (redundancy > 0)
    {
        const double sigma = std::sqrt(plan->squareSum / static_cast<double>(redundancy));
        without.directionSigma = sigma;
        without.northingPrecision = FromMetres(sigma * std::sqrt(plan->cofactors[0][0]), whole.unit);
        without.eastingPrecision = FromMetres(sigma * std::sqrt(plan->cofactors[1][1]), whole.unit);
    }
    return without;
}

} // namespace

void LeaveOneOut(StationSolution& solution)
{
    if (solution.observations.size() > MOST_LEFT_OUT || solution.Redundancy() == 0)
    {
        return;
    }
    for (size_t i = 0; i < solution.observations.size(); ++i)
    {
        solution.leftOut.push_back(SolveWithout(i, solution));
        const std::optional<double>& sigma = solution.leftOut.back().directionSigma;
        const bool isBest =
            sigma && (!solution.bestLeftOut || *sigma < *solution.leftOut[*solution.bestLeftOut].directionSigma);
        if (isBest && (solution.fit.IsMild() || !solution.suspects.empty()))
        {
            solution.bestLeftOut = i;
        }
    }
}

} // namespace qstd
