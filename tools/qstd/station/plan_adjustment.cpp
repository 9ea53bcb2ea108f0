#include "station/plan_adjustment.h"

#include <cmath>

namespace qstd {

namespace {

constexpr double PI = 3.14159265358979323846;

// A step below these no longer moves the station: a ten-thousandth of a millimetre, 2e-6 of a second.
constexpr double SMALLEST_SHIFT = 1e-7;
constexpr double SMALLEST_TURN = 1e-11;

using Row = std::array<double, 3>;

double Squared(double value)
{
    return value * value;
}

/** A' P A. */
Matrix3 NormalMatrix(const std::vector<PlanObservation>& observations, const PlanPosition& position)
{
    Matrix3 normal = {};
    for (const PlanObservation& observation : observations)
    {
        const Row row = DesignRow(observation, position);
        for (size_t i = 0; i < 3; ++i)
        {
            for (size_t j = 0; j < 3; ++j)
            {
                normal[i][j] += row[i] * observation.weight * row[j];
            }
        }
    }
    return normal;
}

/** A' P v. */
Row RightHandSide(const std::vector<PlanObservation>& observations, const PlanPosition& position)
{
    Row sum = {};
    for (const PlanObservation& observation : observations)
    {
        const Row row = DesignRow(observation, position);
        const double weighted = observation.weight * PlanResidual(observation, position);
        for (size_t i = 0; i < 3; ++i)
        {
            sum[i] += row[i] * weighted;
        }
    }
    return sum;
}

/** Inverse by cofactors of the determinant, after each unknown has been scaled to a unit diagonal. */
std::optional<Matrix3> Inverse(const Matrix3& normal)
{
    constexpr double SMALLEST_DETERMINANT = 1e-14;
    Row scale = {};
    Matrix3 m = {};
    for (size_t i = 0; i < 3; ++i)
    {
        scale[i] = 1.0 / std::sqrt(normal[i][i]);
        if (!std::isfinite(scale[i]))
        {
            return std::nullopt;
        }
    }
    for (size_t i = 0; i < 3; ++i)
    {
        for (size_t j = 0; j < 3; ++j)
        {
            m[i][j] = normal[i][j] * scale[i] * scale[j];
        }
    }
    Matrix3 inverse = {};
    for (size_t i = 0; i < 3; ++i)
    {
        for (size_t j = 0; j < 3; ++j)
        {
            const size_t i1 = (i + 1) % 3, i2 = (i + 2) % 3, j1 = (j + 1) % 3, j2 = (j + 2) % 3;
            inverse[j][i] = m[i1][j1] * m[i2][j2] - m[i1][j2] * m[i2][j1];
        }
    }
    const double determinant = m[0][0] * inverse[0][0] + m[0][1] * inverse[1][0] + m[0][2] * inverse[2][0];
    if (!(determinant > SMALLEST_DETERMINANT))
    {
        return std::nullopt;
    }
    for (size_t i = 0; i < 3; ++i)
    {
        for (size_t j = 0; j < 3; ++j)
        {
            inverse[i][j] *= scale[i] * scale[j] / determinant;
        }
    }
    return inverse;
}

PlanPosition Moved(const PlanPosition& position, const PlanPosition& change, double share)
{
    return {position.northing + share * change.northing, position.easting + share * change.easting,
            position.orientation + share * change.orientation};
}

bool IsSmall(const PlanPosition& change)
{
    return std::fabs(change.northing) <= SMALLEST_SHIFT && std::fabs(change.easting) <= SMALLEST_SHIFT &&
           std::fabs(change.orientation) <= SMALLEST_TURN;
}

/** The step, halved until the square sum does not grow; the position itself where no part of it helps. */
PlanPosition Shortened(const std::vector<PlanObservation>& observations, const PlanPosition& position,
                       const PlanPosition& change)
{
    constexpr int MOST_HALVINGS = 20;
    const double before = PlanSquareSum(observations, position);
    double share = 1.0;
    for (int halving = 0; halving < MOST_HALVINGS; ++halving)
    {
        const PlanPosition trial = Moved(position, change, share);
        if (PlanSquareSum(observations, trial) <= before)
        {
            return trial;
        }
        share *= 0.5;
    }
    return position;
}

} // namespace

double WrapToHalfCircle(double radians)
{
    return radians - 2.0 * PI * std::floor(radians / (2.0 * PI) + 0.5);
}

std::array<double, 3> DesignRow(const PlanObservation& observation, const PlanPosition& position)
{
    const double dN = observation.northing - position.northing;
    const double dE = observation.easting - position.easting;
    const double squared = dN * dN + dE * dE;
    if (observation.kind == ObservationKind::DIRECTION)
    {
        return {dE / squared, -dN / squared, -1.0};
    }
    const double distance = std::sqrt(squared);
    return {-dN / distance, -dE / distance, 0.0};
}

double PlanResidual(const PlanObservation& observation, const PlanPosition& position)
{
    const double dN = observation.northing - position.northing;
    const double dE = observation.easting - position.easting;
    if (observation.kind == ObservationKind::DIRECTION)
    {
        return WrapToHalfCircle(std::atan2(dE, dN) - position.orientation - observation.value);
    }
    return std::hypot(dN, dE) - observation.value;
}

double PlanSquareSum(const std::vector<PlanObservation>& observations, const PlanPosition& position)
{
    double sum = 0.0;
    for (const PlanObservation& observation : observations)
    {
        sum += observation.weight * Squared(PlanResidual(observation, position));
    }
    return sum;
}

std::optional<Matrix3> PlanCofactors(const std::vector<PlanObservation>& observations, const PlanPosition& position)
{
    return Inverse(NormalMatrix(observations, position));
}

std::optional<PlanStep> StepFrom(const std::vector<PlanObservation>& observations, const PlanPosition& position)
{
    const std::optional<Matrix3> cofactors = PlanCofactors(observations, position);
    if (!cofactors)
    {
        return std::nullopt;
    }
    const Row sum = RightHandSide(observations, position);
    Row change = {};
    for (size_t i = 0; i < 3; ++i)
    {
        for (size_t j = 0; j < 3; ++j)
        {
            change[i] -= (*cofactors)[i][j] * sum[j];
        }
    }
    return PlanStep{{change[0], change[1], change[2]}, *cofactors};
}

std::optional<PlanAdjustment> AdjustPlan(const std::vector<PlanObservation>& observations, PlanPosition start)
{
    constexpr int MOST_STEPS = 50;
    PlanPosition position = start;
    for (int i = 0; i < MOST_STEPS; ++i)
    {
        const std::optional<PlanStep> step = StepFrom(observations, position);
        if (!step)
        {
            return std::nullopt;
        }
        if (IsSmall(step->change))
        {
            position.orientation = WrapToHalfCircle(position.orientation);
            return PlanAdjustment{position, step->cofactors, PlanSquareSum(observations, position)};
        }
        const PlanPosition next = Shortened(observations, position, step->change);
        const bool isStill = next.northing == position.northing && next.easting == position.easting &&
                             next.orientation == position.orientation;
        if (isStill)
        {
            // No part of the step helps: at the bottom but for rounding, or nowhere.
            constexpr double ROUNDING = 1e-5;
            const bool isBottom = std::hypot(step->change.northing, step->change.easting) < ROUNDING;
            return isBottom
                       ? std::optional(PlanAdjustment{position, step->cofactors, PlanSquareSum(observations, position)})
                       : std::nullopt;
        }
        position = next;
    }
    return std::nullopt;
}

std::vector<PlanObservation> PlanObservations(const std::vector<PreparedSight>& sights, LinearUnit unit,
                                              const Expectation& expectation)
{
    std::vector<PlanObservation> observations;
    for (size_t i = 0; i < sights.size(); ++i)
    {
        if (!sights[i].isUsed)
        {
            continue;
        }
        const PointRecord target = PointInMetres(sights[i].target->point, unit);
        PlanObservation observation;
        observation.sight = i;
        observation.northing = target.northing;
        observation.easting = target.easting;
        observation.value = RadiansOf(sights[i].circle);
        observation.sigma = expectation.direction;
        observations.push_back(observation);
        if (sights[i].horizontalDistance)
        {
            const double distance = ToMetres(*sights[i].horizontalDistance, unit);
            observation.kind = ObservationKind::DISTANCE;
            observation.value = distance;
            observation.weight =
                Squared(WEIGHT_DIRECTION) / (Squared(WEIGHT_DISTANCE) + Squared(WEIGHT_PROPORTION * distance));
            observation.sigma = expectation.distance + expectation.distanceProportion * distance;
            if (sights[i].sight->slopeDistance)
            {
                // The zenith angle that reduces a steep slope distance has its share.
                observation.sigma +=
                    std::fabs(ToMetres(sights[i].verticalDifference.value_or(0.0), unit)) * expectation.zenith;
            }
            observations.push_back(observation);
        }
    }
    return observations;
}

EllipseAxes AxesOf(const Matrix3& cofactors)
{
    const Matrix3& q = cofactors;
    // The eigenvalues of the 2 x 2 part, mean and radius of Mohr's circle.
    const double mean = (q[0][0] + q[1][1]) / 2.0;
    const double radius = std::hypot((q[0][0] - q[1][1]) / 2.0, q[0][1]);
    const double azimuth = 0.5 * std::atan2(2.0 * q[0][1], q[0][0] - q[1][1]);
    return {std::sqrt(mean + radius), std::sqrt(std::fmax(mean - radius, 0.0)), azimuth < 0.0 ? azimuth + PI : azimuth};
}

} // namespace qstd
