#include "tests/cases/plan_adjustment.h"

#include <array>
#include <cmath>

#include "tests/support/angle.h"

namespace cases {

namespace {

using Vector = std::array<double, 3>; // northing, easting, orientation
using Square = std::array<Vector, 3>;

struct Equation
{
    Vector coefficients;
    double misclosure; // observed less computed
    double weight;
};

double WrappedRadians(double radians)
{
    return std::remainder(radians, 2.0 * support::PI);
}

double DirectionWeight()
{
    const double sigma = support::UnitsToRadians(2.0 * support::UNITS_PER_SECOND);
    return 1.0 / (sigma * sigma);
}

double DistanceWeight(double distance)
{
    const double proportional = 2e-6 * distance;
    return 1.0 / (0.002 * 0.002 + proportional * proportional);
}

Equation DirectionEquation(const PlanSight& sight, const Vector& unknowns)
{
    const double dN = sight.northing - unknowns[0];
    const double dE = sight.easting - unknowns[1];
    const double square = dN * dN + dE * dE;
    // azimuth - orientation = reading
    const double computed = std::atan2(dE, dN) - unknowns[2];
    const double misclosure = WrappedRadians(support::UnitsToRadians(sight.directionUnits) - computed);
    return {{dE / square, -dN / square, -1.0}, misclosure, DirectionWeight()};
}

Equation DistanceEquation(const PlanSight& sight, const Vector& unknowns)
{
    const double dN = sight.northing - unknowns[0];
    const double dE = sight.easting - unknowns[1];
    const double computed = std::hypot(dN, dE);
    return {{-dN / computed, -dE / computed, 0.0}, sight.distance - computed, DistanceWeight(sight.distance)};
}

std::vector<Equation> Equations(const std::vector<PlanSight>& sights, const Vector& unknowns)
{
    std::vector<Equation> equations;
    for (const PlanSight& sight : sights)
    {
        equations.push_back(DirectionEquation(sight, unknowns));
        if (sight.distance != 0.0)
        {
            equations.push_back(DistanceEquation(sight, unknowns));
        }
    }
    return equations;
}

Square Normals(const std::vector<Equation>& equations)
{
    Square normals = {};
    for (const Equation& equation : equations)
    {
        for (size_t row = 0; row < 3; ++row)
        {
            for (size_t column = 0; column < 3; ++column)
            {
                normals[row][column] += equation.weight * equation.coefficients[row] * equation.coefficients[column];
            }
        }
    }
    return normals;
}

// Of a symmetric matrix, by cofactors.
Square Inverse(const Square& m)
{
    Square inverse = {};
    const auto minorOf = [&m](size_t row, size_t column) {
        const size_t r1 = (row + 1) % 3;
        const size_t r2 = (row + 2) % 3;
        const size_t c1 = (column + 1) % 3;
        const size_t c2 = (column + 2) % 3;
        return m[r1][c1] * m[r2][c2] - m[r1][c2] * m[r2][c1]; // cyclic, so the sign is in it
    };
    const double determinant = m[0][0] * minorOf(0, 0) + m[0][1] * minorOf(0, 1) + m[0][2] * minorOf(0, 2);
    for (size_t row = 0; row < 3; ++row)
    {
        for (size_t column = 0; column < 3; ++column)
        {
            inverse[row][column] = minorOf(row, column) / determinant; // symmetric, so not transposed
        }
    }
    return inverse;
}

Vector Correction(const std::vector<Equation>& equations, const Square& cofactors)
{
    Vector rightSide = {};
    for (const Equation& equation : equations)
    {
        for (size_t row = 0; row < 3; ++row)
        {
            rightSide[row] += equation.weight * equation.coefficients[row] * equation.misclosure;
        }
    }
    Vector correction = {};
    for (size_t row = 0; row < 3; ++row)
    {
        for (size_t column = 0; column < 3; ++column)
        {
            correction[row] += cofactors[row][column] * rightSide[column];
        }
    }
    return correction;
}

void StoreResiduals(const std::vector<PlanSight>& sights, const std::vector<Equation>& equations, PlanStation& station)
{
    size_t row = 0;
    for (const PlanSight& sight : sights)
    {
        station.directionResidualUnits.push_back(support::RadiansToUnits(-equations[row++].misclosure));
        station.distanceResiduals.push_back(sight.distance != 0.0 ? -equations[row++].misclosure : 0.0);
    }
}

} // namespace

PlanStation AdjustPlan(const std::vector<PlanSight>& sights, double nearNorthing, double nearEasting)
{
    constexpr int ENOUGH = 20; // convergence is quadratic for small residuals
    Vector unknowns = {nearNorthing, nearEasting, 0.0};
    // Any direction gives the first orientation.
    unknowns[2] = std::atan2(sights[0].easting - nearEasting, sights[0].northing - nearNorthing) -
                  support::UnitsToRadians(sights[0].directionUnits);
    for (int iteration = 0; iteration < ENOUGH; ++iteration)
    {
        const std::vector<Equation> equations = Equations(sights, unknowns);
        const Vector correction = Correction(equations, Inverse(Normals(equations)));
        for (size_t row = 0; row < 3; ++row)
        {
            unknowns[row] += correction[row];
        }
    }

    const std::vector<Equation> equations = Equations(sights, unknowns);
    const Square cofactors = Inverse(Normals(equations));
    double squareSum = 0.0;
    for (const Equation& equation : equations)
    {
        squareSum += equation.weight * equation.misclosure * equation.misclosure;
    }
    const int redundancy = static_cast<int>(equations.size()) - 3;
    const double variance = redundancy > 0 ? squareSum / redundancy : squareSum;
    double orientation = std::fmod(support::RadiansToUnits(unknowns[2]), ANGLE_FULL_CIRCLE);
    orientation += orientation < 0.0 ? ANGLE_FULL_CIRCLE : 0.0;
    PlanStation station = {unknowns[0],
                           unknowns[1],
                           orientation,
                           std::sqrt(variance * cofactors[0][0]),
                           std::sqrt(variance * cofactors[1][1]),
                           redundancy,
                           {},
                           {}};
    StoreResiduals(sights, equations, station);
    return station;
}

} // namespace cases
