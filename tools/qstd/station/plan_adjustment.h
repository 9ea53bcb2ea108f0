/**
 * @file plan_adjustment.h
 * The tool's own least squares in plan: what the library's result is held against, and what solves a set-up that the
 * library cannot begin.
 */
#ifndef QSTD_PLAN_ADJUSTMENT_H
#define QSTD_PLAN_ADJUSTMENT_H

#include "station/expectation.h"
#include "station/set_up.h"
#include "text/unit.h"

#include <array>
#include <cstddef>
#include <optional>
#include <vector>

namespace qstd {

enum class ObservationKind
{
    DIRECTION,
    DISTANCE
};

/** One observation of the adjustment, in metres and radians. */
struct PlanObservation
{
    size_t sight = 0; /**< its place in the set-up */
    ObservationKind kind = ObservationKind::DIRECTION;
    double northing = 0.0; /**< of the target */
    double easting = 0.0;
    double value = 0.0;  /**< circle reading, or horizontal distance */
    double weight = 1.0; /**< that of a direction is 1 */
    double sigma = 0.0;  /**< the standard deviation that it is judged by */
};

/** Station and orientation of the circle's zero: metres, radians. */
struct PlanPosition
{
    double northing = 0.0;
    double easting = 0.0;
    double orientation = 0.0;
};

/** Symmetric, in the order northing, easting, orientation. */
using Matrix3 = std::array<std::array<double, 3>, 3>;

/** How the adjusted observation changes with northing, easting and orientation: its row of the design matrix. */
std::array<double, 3> DesignRow(const PlanObservation& observation, const PlanPosition& position);

/** The inverse of the normal equations, or nothing where they are singular. */
std::optional<Matrix3> PlanCofactors(const std::vector<PlanObservation>& observations, const PlanPosition& position);

/** One Gauss-Newton step of the full model. */
struct PlanStep
{
    PlanPosition change;
    Matrix3 cofactors = {};
};

/** The step from a position, or nothing where the normal equations are singular. */
std::optional<PlanStep> StepFrom(const std::vector<PlanObservation>& observations, const PlanPosition& position);

/** Adjusted less observed, in metres or radians. */
double PlanResidual(const PlanObservation& observation, const PlanPosition& position);

/** Sum of the weighted squares of the residuals. */
double PlanSquareSum(const std::vector<PlanObservation>& observations, const PlanPosition& position);

struct PlanAdjustment
{
    PlanPosition position;
    Matrix3 cofactors = {};
    double squareSum = 0.0; /**< radians squared */
};

/**
 * Gauss-Newton steps from a starting position until they no longer move the station, each halved where the square sum
 * would grow.
 *
 * @return nothing where the normal equations become singular or the steps do not end
 */
std::optional<PlanAdjustment> AdjustPlan(const std::vector<PlanObservation>& observations, PlanPosition start);

/** The observations of the used sights with the library's weights. @param unit  of the set-up */
std::vector<PlanObservation> PlanObservations(const std::vector<PreparedSight>& sights, LinearUnit unit,
                                              const Expectation& expectation = {});

/** An angle brought into -pi to pi. */
double WrapToHalfCircle(double radians);

/** Half-axes of the ellipse of a position for unit weight, from its cofactors, and the azimuth of the longer one. */
struct EllipseAxes
{
    double major = 0.0;
    double minor = 0.0;
    double azimuth = 0.0; /**< radians, 0 to below a half circle */
};

EllipseAxes AxesOf(const Matrix3& cofactors);

} // namespace qstd

#endif
