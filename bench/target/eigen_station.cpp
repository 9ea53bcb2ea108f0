#include "eigen_station.h"

#include <cmath>

#include <Eigen/Dense>

#include "survey.h"

namespace target {

namespace {

constexpr double PI = 3.141592653589793;
constexpr double ANGLE_SIGMA = 2.0 * PI / 648000.0;
constexpr double DISTANCE_SIGMA = 0.002;
constexpr double DISTANCE_PROPORTIONAL = 2e-6;
constexpr int ITERATION_LIMIT = 10;

using Design = Eigen::Matrix<double, Eigen::Dynamic, 3>;

// Observed minus computed, and the derivatives: a direction's row, then a distance's, for each sight.
struct Equations
{
    Design design;
    Eigen::VectorXd misclosures;
};

double Wrapped(double angle)
{
    return angle > PI ? angle - 2.0 * PI : angle < -PI ? angle + 2.0 * PI : angle;
}

// Northing, easting and orientation from the first two sights, by similarity.
Eigen::Vector3d Approximate(const std::vector<ResectObservation>& sights)
{
    const ResectObservation& first = sights[0];
    const ResectObservation& second = sights[1];
    const double direction1 = Radians(first.horizontalAngle);
    const double direction2 = Radians(second.horizontalAngle);
    const Eigen::Vector2d local1 =
        first.horizontalDistance * Eigen::Vector2d(std::cos(direction1), std::sin(direction1));
    const Eigen::Vector2d local2 =
        second.horizontalDistance * Eigen::Vector2d(std::cos(direction2), std::sin(direction2));
    const Eigen::Vector2d known1(first.target.northing, first.target.easting);
    const Eigen::Vector2d known2(second.target.northing, second.target.easting);
    const Eigen::Vector2d local = local2 - local1;
    const Eigen::Vector2d known = known2 - known1;
    const double squared = local.squaredNorm();
    const double c = local.dot(known) / squared;
    const double s = (local.x() * known.y() - local.y() * known.x()) / squared;
    const double northing = known1.x() - c * local1.x() + s * local1.y();
    const double easting = known1.y() - s * local1.x() - c * local1.y();
    return {northing, easting, std::atan2(known1.y() - easting, known1.x() - northing) - direction1};
}

void Build(const std::vector<ResectObservation>& sights, const Eigen::VectorXd& directions,
           const Eigen::Vector3d& unknowns, Equations& equations)
{
    for (Eigen::Index i = 0; i < directions.size(); ++i)
    {
        const ResectObservation& sight = sights[static_cast<size_t>(i)];
        const double dN = sight.target.northing - unknowns(0);
        const double dE = sight.target.easting - unknowns(1);
        const double squared = dN * dN + dE * dE;
        const double distance = std::sqrt(squared);
        equations.design.row(2 * i) << -dE / squared, dN / squared, 1.0;
        equations.misclosures(2 * i) = Wrapped(unknowns(2) + directions(i) - std::atan2(dE, dN));
        equations.design.row(2 * i + 1) << dN / distance, dE / distance, 0.0;
        equations.misclosures(2 * i + 1) = sight.horizontalDistance - distance;
    }
}

// Mean, spread and residuals of the heights that the targets give.
void SetHeights(const std::vector<ResectObservation>& sights, ResectStation& station,
                std::vector<ResectResidual>& residuals)
{
    const auto count = static_cast<Eigen::Index>(sights.size());
    Eigen::VectorXd heights(count);
    for (Eigen::Index i = 0; i < count; ++i)
    {
        const ResectObservation& sight = sights[static_cast<size_t>(i)];
        heights(i) = sight.target.height + sight.reflectorHeight - sight.verticalDifference;
    }
    station.position.height = heights.mean();
    station.position.flags = POINT_HAS_PLAN | POINT_HAS_HEIGHT;
    station.heightSpread = heights.maxCoeff() - heights.minCoeff();
    for (Eigen::Index i = 0; i < count; ++i)
    {
        residuals[static_cast<size_t>(i)].heightResidual = heights(i) - station.position.height;
    }
}

} // namespace

bool AdjustByEigen(const std::vector<ResectObservation>& sights, ResectStation* station,
                   std::vector<ResectResidual>* residuals)
{
    const auto count = static_cast<Eigen::Index>(sights.size());
    Eigen::VectorXd directions(count);
    Eigen::VectorXd weights(2 * count);
    for (Eigen::Index i = 0; i < count; ++i)
    {
        const ResectObservation& sight = sights[static_cast<size_t>(i)];
        const double proportional = DISTANCE_PROPORTIONAL * sight.horizontalDistance;
        directions(i) = Radians(sight.horizontalAngle);
        weights(2 * i) = 1.0;
        weights(2 * i + 1) =
            ANGLE_SIGMA * ANGLE_SIGMA / (DISTANCE_SIGMA * DISTANCE_SIGMA + proportional * proportional);
    }
    Eigen::Vector3d unknowns = Approximate(sights);
    Equations equations = {Design(2 * count, 3), Eigen::VectorXd(2 * count)};
    Eigen::Matrix3d cofactors;
    Eigen::VectorXd v;
    double previous = 0.0;
    double squares = 0.0;
    for (int iteration = 1;; ++iteration)
    {
        if (iteration > ITERATION_LIMIT)
        {
            return false;
        }
        Build(sights, directions, unknowns, equations);
        const Design weighted = weights.asDiagonal() * equations.design;
        const Eigen::Matrix3d normal = equations.design.transpose() * weighted;
        const Eigen::LDLT<Eigen::Matrix3d> factors(normal);
        const Eigen::Vector3d corrections = -factors.solve(weighted.transpose() * equations.misclosures);
        unknowns += corrections;
        v = equations.design * corrections + equations.misclosures;
        squares = v.dot(weights.cwiseProduct(v));
        if (squares < 2.220446049250313e-16 || (iteration > 1 && std::fabs((squares - previous) / previous) < 0.001))
        {
            cofactors = factors.solve(Eigen::Matrix3d::Identity());
            break;
        }
        previous = squares;
    }
    const double variance = squares / static_cast<double>(2 * count - 3);
    station->position.northing = unknowns(0);
    station->position.easting = unknowns(1);
    station->orientation = Units(unknowns(2));
    station->northingPrecision = std::sqrt(cofactors(0, 0) * variance);
    station->eastingPrecision = std::sqrt(cofactors(1, 1) * variance);
    for (Eigen::Index i = 0; i < count; ++i)
    {
        ResectResidual& residual = (*residuals)[static_cast<size_t>(i)];
        residual.angleResidual = static_cast<AngleUnit>(-v(2 * i) * (ANGLE_HALF_CIRCLE / PI));
        residual.distanceResidual = -v(2 * i + 1);
    }
    SetHeights(sights, *station, *residuals);
    return true;
}

} // namespace target
