/**
 * @file usual_causes.h
 * Mistakes that surveys often have, as changes of the observations: what a set-up would be without them.
 */
#ifndef QSTD_USUAL_CAUSES_H
#define QSTD_USUAL_CAUSES_H

#include "station/plan_adjustment.h"
#include "station/station_solution.h"

#include <functional>
#include <string>
#include <vector>

namespace qstd {

/** A mistake undone: the observations as they would be, and how a sentence about it begins. */
struct UsualCause
{
    std::string text; /**< such as "with A and B exchanged" */
    std::vector<PlanObservation> observations;
    size_t fitted = 0; /**< unknowns that were made to fit, such as a constant */
};

using CauseTaker = std::function<void(const UsualCause&)>;

/** Hands over in turn each usual cause that concerns the whole set. */
void ForEachCauseOfTheSet(const StationSolution& solution, const CauseTaker& take);

/** Hands over in turn each usual cause that concerns single targets and sights. */
void ForEachCauseOfTargets(const StationSolution& solution, const CauseTaker& take);

} // namespace qstd

#endif
