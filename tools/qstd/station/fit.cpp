#include "station/fit.h"

#include <algorithm>
#include <cmath>

namespace qstd {

namespace {

// Residuals so small are rounding, not errors: of readings to 1/16", of lengths to 0.01 mm.
constexpr double ROUNDING_OF_DIRECTION = ARC_SECOND / 16.0;
constexpr double ROUNDING_OF_LENGTH = 1e-5;

/** Chance brings a marked residual into fewer than one of this many sound set-ups. */
constexpr double SET_UPS = 200.0;

/** Where the others fit worse than this share of what is expected, the instrument is taken for one of 5", not 2". */
constexpr double AS_EXPECTED = 1.3;
constexpr double COARSER = 2.5;

/** The chance that a normally distributed value of standard deviation 1 is larger, to either side. */
double ChanceOfMore(double value)
{
    return std::erfc(std::fabs(value) / std::sqrt(2.0));
}

/**
 * The standard deviation of a residual that is to be judged, over the one expected. Where the others fit as expected it
 * is that; else that of a coarser instrument, or what the others show: readings of 5" or in the heat do not make each
 * of them a blunder.
 */
double SigmaByOthers(double squareSum, double redundancy, double coarser)
{
    const double found = redundancy > 0.0 ? std::sqrt(std::max(0.0, squareSum) / redundancy) : 0.0;
    return found <= AS_EXPECTED ? 1.0 : std::max(coarser, found);
}

/** Marks residuals that are too large. @param squareSums  of the others without each, in variances as expected */
void MarkLarge(Fit& fit, const std::vector<double>& squareSums, double coarser)
{
    const auto count = static_cast<double>(fit.checks.size());
    for (size_t i = 0; i < fit.checks.size(); ++i)
    {
        ObservationCheck& check = fit.checks[i];
        if (!check.isUnchecked && fit.redundancy > 0)
        {
            const double sigma = SigmaByOthers(squareSums[i], static_cast<double>(fit.redundancy - 1), coarser);
            check.isMarked = ChanceOfMore(check.standardised / sigma) * count * SET_UPS < 1.0;
        }
    }
}

/** Takes the mark from an observation whose error is small enough to be borne. */
void SpareSmall(ObservationCheck& check, double limit)
{
    check.isMarked = check.isMarked && std::fabs(check.estimatedError) >= limit;
}

/** Fills in what follows from residual, redundancy number and standard deviation of an observation. */
void Standardise(ObservationCheck& check, double sigma, double sigmaFound, double rounding)
{
    check.redundancy = std::clamp(check.redundancy, 0.0, 1.0);
    check.isUnchecked = check.redundancy < LEAST_REDUNDANCY;
    constexpr double NO_REDUNDANCY = 1e-9;
    if (check.redundancy < NO_REDUNDANCY)
    {
        return;
    }
    const double share = std::sqrt(check.redundancy);
    check.standardised = std::fabs(check.residual) < rounding ? 0.0 : check.residual / (sigma * share);
    check.studentised = sigmaFound > 0.0 ? check.residual / (sigmaFound * share) : 0.0;
    check.estimatedError = check.residual / check.redundancy;
}

/** a Q a' p: the share of an observation that it determines itself. */
double OwnShare(const PlanObservation& observation, const PlanPosition& position, const Matrix3& q)
{
    const std::array<double, 3> row = DesignRow(observation, position);
    double sum = 0.0;
    for (size_t i = 0; i < 3; ++i)
    {
        for (size_t j = 0; j < 3; ++j)
        {
            sum += row[i] * q[i][j] * row[j];
        }
    }
    return sum * observation.weight;
}

} // namespace

bool Fit::HasMarked() const
{
    return std::any_of(checks.begin(), checks.end(), [](const ObservationCheck& check) { return check.isMarked; });
}

Fit FitOfPlan(const std::vector<PlanObservation>& observations, const PlanAdjustment& adjustment)
{
    constexpr size_t UNKNOWNS = 3;
    Fit fit;
    fit.redundancy = observations.size() > UNKNOWNS ? observations.size() - UNKNOWNS : 0;
    const auto redundancy = static_cast<double>(fit.redundancy);
    const double unitSigma = fit.redundancy > 0 ? std::sqrt(adjustment.squareSum / redundancy) : 0.0;
    double squareSum = 0.0;
    std::vector<double> without;
    fit.checks.reserve(observations.size());
    for (const PlanObservation& observation : observations)
    {
        ObservationCheck check;
        check.residual = PlanResidual(observation, adjustment.position);
        check.redundancy = 1.0 - OwnShare(observation, adjustment.position, adjustment.cofactors);
        const bool isDirection = observation.kind == ObservationKind::DIRECTION;
        Standardise(check, observation.sigma, unitSigma / std::sqrt(observation.weight),
                    isDirection ? ROUNDING_OF_DIRECTION : ROUNDING_OF_LENGTH);
        squareSum += std::pow(check.residual / observation.sigma, 2.0);
        without.push_back(adjustment.squareSum - observation.weight * check.residual * check.estimatedError);
        fit.checks.push_back(check);
    }
    fit.ratio = fit.redundancy > 0 ? std::sqrt(squareSum / redundancy) : 0.0;
    for (double& sum : without)
    {
        sum *= adjustment.squareSum > 0.0 ? squareSum / adjustment.squareSum : 0.0;
    }
    MarkLarge(fit, without, COARSER);
    // A coarser instrument errs by less than this now and then, and few stations suffer.
    constexpr double HARMLESS = 8.0;
    for (size_t i = 0; i < fit.checks.size(); ++i)
    {
        SpareSmall(fit.checks[i], HARMLESS * observations[i].sigma);
    }
    return fit;
}

Fit FitOfHeights(const std::vector<HeightValue>& heights)
{
    Fit fit;
    fit.redundancy = heights.empty() ? 0 : heights.size() - 1;
    double weights = 0.0;
    double sum = 0.0;
    for (const HeightValue& value : heights)
    {
        weights += 1.0 / (value.sigma * value.sigma);
        // Differences to the first keep the digits of heights far above the datum.
        sum += (value.height - heights.front().height) / (value.sigma * value.sigma);
    }
    const double mean = heights.empty() ? 0.0 : heights.front().height + sum / weights;
    double squareSum = 0.0;
    for (const HeightValue& value : heights)
    {
        squareSum += std::pow((mean - value.height) / value.sigma, 2.0);
    }
    fit.ratio = fit.redundancy > 0 ? std::sqrt(squareSum / static_cast<double>(fit.redundancy)) : 0.0;
    std::vector<double> without;
    for (const HeightValue& value : heights)
    {
        ObservationCheck check;
        check.residual = mean - value.height;
        check.redundancy = 1.0 - 1.0 / (value.sigma * value.sigma * weights);
        Standardise(check, value.sigma, fit.ratio * value.sigma, ROUNDING_OF_LENGTH);
        without.push_back(squareSum - check.standardised * check.standardised);
        fit.checks.push_back(check);
    }
    // Of few heights each counts.
    MarkLarge(fit, without, 1.0);
    constexpr double HARMLESS = 4.0;
    for (size_t i = 0; i < fit.checks.size(); ++i)
    {
        SpareSmall(fit.checks[i], HARMLESS * heights[i].sigma);
    }
    return fit;
}

} // namespace qstd
