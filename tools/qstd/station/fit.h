/**
 * @file fit.h
 * How well observations fit: redundancy numbers, standardised residuals and estimated errors, after W. Baarda's data
 * snooping.
 */
#ifndef QSTD_FIT_H
#define QSTD_FIT_H

#include "station/plan_adjustment.h"

#include <cstddef>
#include <vector>

namespace qstd {

/** What the other observations say of one. Lengths in metres, angles in radians. */
struct ObservationCheck
{
    double redundancy = 0.0;     /**< its redundancy number, 0 to 1: the share of an error that shows in its residual */
    double residual = 0.0;       /**< adjusted less observed */
    double standardised = 0.0;   /**< the residual over its own standard deviation as expected beforehand */
    double studentised = 0.0;    /**< the same over the standard deviation that the adjustment found */
    double estimatedError = 0.0; /**< what is to be added to the observation to agree with the others */
    bool isMarked = false;       /**< the standardised residual exceeds its critical value */
    bool isUnchecked = false;    /**< hardly any error in it would show */
};

/** Below this redundancy number an observation counts as unchecked. */
constexpr double LEAST_REDUNDANCY = 0.02;

/** From this share of the expected standard deviation on a misfit is told, and from the second the result is none. */
constexpr double MILD_MISFIT = 7.5;
constexpr double STRONG_MISFIT = 30.0;

/** The whole set of observations, and each. */
struct Fit
{
    size_t redundancy = 0;
    double ratio = 0.0; /**< standard deviation found over the one expected; meaningful with redundancy only */
    std::vector<ObservationCheck> checks;

    /** Not finite is no fit either. */
    [[nodiscard]] bool IsMild() const
    {
        return redundancy > 0 && !(ratio < MILD_MISFIT);
    }

    [[nodiscard]] bool IsStrong() const
    {
        return redundancy > 0 && !(ratio < STRONG_MISFIT);
    }

    [[nodiscard]] bool HasMarked() const;
};

/** The fit of a plan adjustment; checks in the order of the observations. */
Fit FitOfPlan(const std::vector<PlanObservation>& observations, const PlanAdjustment& adjustment);

/** A measured height of the station. */
struct HeightValue
{
    double height = 0.0;
    double sigma = 0.0;
};

/** The fit of several heights to their weighted mean. */
Fit FitOfHeights(const std::vector<HeightValue>& heights);

} // namespace qstd

#endif
