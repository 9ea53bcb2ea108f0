#include "station/plan_step.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "station/plan_rows.h"
#include "tests/station/full_adjustment.h"
#include "tests/station/test_matrix.h"
#include "tests/support/record.h"

using namespace qstdlib;
using support::SameBits;

namespace {

const double INFINITE = std::numeric_limits<double>::infinity();
const double NOT_A_NUMBER = std::nan("");
constexpr double UNWRITTEN = -4711.0;
constexpr double EPSILON = 0x1p-52;
constexpr int32_t ROWS = 6;

struct Step
{
    bool taken;
    std::vector<double> unknowns; // northing, easting, orientation
    double squareSum;
};

// Elements are the upper triangle of N with the absolute terms as fourth column, in row order: ten of them.
Step StepBy(const std::vector<double>& elements, const std::vector<double>& unknowns, int32_t rows = ROWS)
{
    TestMatrix normal(NORMAL_COLUMNS, NORMAL_COLUMNS, NOT_A_NUMBER);
    const Matrix n = normal;
    auto element = elements.begin();
    for (int32_t i = 1; i <= NORMAL_COLUMNS; ++i)
    {
        for (int32_t j = i; j <= NORMAL_COLUMNS; ++j)
        {
            n[i][j] = *element++;
        }
    }
    double x[] = {UNWRITTEN, unknowns[0], unknowns[1], unknowns[2]};
    Step step = {false, {}, UNWRITTEN};
    step.taken = StepInPlan(normal, rows, x, &step.squareSum);
    EXPECT_EQ(UNWRITTEN, x[0]);
    step.unknowns.assign(x + 1, x + 4);
    return step;
}

// Nothing is written.
void ExpectNoStep(const std::vector<double>& elements, const std::vector<double>& unknowns = {1000.0, 2000.0, 1.0})
{
    const Step step = StepBy(elements, unknowns);
    EXPECT_FALSE(step.taken);
    EXPECT_EQ(unknowns, step.unknowns);
    EXPECT_EQ(UNWRITTEN, step.squareSum);
}

// N = (4 2 -2; 2 3 -0.5; -2 -0.5 2.125) is, without rounding, the product of the factors (1 0.5 -0.5; 0 1 0.25; 0 0 1)
// and the pivots 4, 2, 1. For dx = (-2, 1, -1) a, a = 2^-24, the absolute terms are -N dx = (4, 0.5, -1.375) a, and
// l^T P l = 30 a^2 less -dx^T g = (8 - 0.5 - 1.375) a^2 leaves a square sum of 23.875 a^2.
const double A = 0x1p-24;
const std::vector<double> FACTORED = {4.0, 2.0, -2.0, 4.0 * A, 3.0, -0.5, 0.5 * A, 2.125, -1.375 * A, 30.0 * A* A};

// Three unknowns without correlation and weights of 1: corrections (-g, 0, 0).
std::vector<double> Uncorrelated(double g, double misclosures)
{
    return {1.0, 0.0, 0.0, g, 1.0, 0.0, 0.0, 1.0, 0.0, misclosures};
}

// What the step allows for, from its derivation: 4 epsilon J (12 J + n + 20) sqrt(J L / p).
double Tolerance(double j, int32_t rows, double misclosures, double pivot)
{
    return 4.0 * EPSILON * j * (12.0 * j + rows + 20.0) * std::sqrt(j * misclosures / pivot);
}

} // namespace

TEST(StepInPlan, SolvesTheNormalEquations)
{
    const Step step = StepBy(FACTORED, {1000.0, 2000.0, 1.0});
    EXPECT_TRUE(step.taken);
    EXPECT_EQ((std::vector<double>{1000.0 - 2.0 * A, 2000.0 + A, 1.0 - A}), step.unknowns);
    EXPECT_EQ(23.875 * A * A, step.squareSum);
}

// A correction of half a unit in the last place of an unknown of 1, and a little more: at which of the two neighbours
// the sum ends is certain only when that little is beyond the tolerance. The tolerance of the others is the same.
TEST(StepInPlan, AllowsForTheRoundingOfAFullIteration)
{
    constexpr double MISCLOSURES = 0x1p-40;
    for (const int32_t rows : {6, 20, 200})
    {
        const double tolerance = Tolerance(1.0, rows, MISCLOSURES, 1.0);
        EXPECT_LT(tolerance, 0x1p-60);
        for (const double part : {-1.001, -0.999, 0.0, 0.999, 1.001})
        {
            const double correction = 0x1p-53 + part * tolerance;
            const Step step = StepBy(Uncorrelated(-correction, MISCLOSURES), {1.0, 2000.0, 1.0}, rows);
            EXPECT_EQ(std::fabs(part) > 1.0, step.taken) << part;
            EXPECT_EQ(part > 1.0 ? 1.0 + EPSILON : 1.0, step.unknowns[0]) << part;
            EXPECT_EQ(2000.0, step.unknowns[1]);
        }
    }
}

// J is 1 / (1 - c^2) for one correlation c; the pivots are 1, 1 - c^2, 1. The corrections of northing and easting that
// belong to g = (g1, g2) are J (c g2 - g1) and J (c g1 - g2).
TEST(StepInPlan, AllowsForMoreWithCorrelation)
{
    constexpr double MISCLOSURES = 0x1p-48;
    for (const double c : {0.5, -0.75, 0.984375})
    {
        const double j = 1.0 / (1.0 - c * c);
        for (const double part : {-1.001, -0.999, 0.999, 1.001})
        {
            const double northing = 0x1p-53 + part * Tolerance(j, ROWS, MISCLOSURES, 1.0);
            const Step first =
                StepBy({1.0, c, 0.0, -northing, 1.0, 0.0, -c * northing, 1.0, 0.0, MISCLOSURES}, {1.0, 2000.0, 1.0});
            EXPECT_EQ(std::fabs(part) > 1.0, first.taken) << c << ", " << part;
            const double easting = 0x1p-53 + part * Tolerance(j, ROWS, MISCLOSURES, 1.0 / j);
            const Step second =
                StepBy({1.0, c, 0.0, -c * easting, 1.0, 0.0, -easting, 1.0, 0.0, MISCLOSURES}, {2000.0, 1.0, 1.0});
            EXPECT_EQ(std::fabs(part) > 1.0, second.taken) << c << ", " << part;
        }
    }
}

// With unknowns of zero a sum has all digits of the correction, the uncertain ones among them.
TEST(StepInPlan, LeavesLargeCorrectionsToAFullIteration)
{
    ExpectNoStep(FACTORED, {0.0, 2000.0, 1.0});
    ExpectNoStep(FACTORED, {1000.0, 0.0, 1.0});
    ExpectNoStep(FACTORED, {1000.0, 2000.0, 0.0});
}

// The iteration might be the last: its square sum must be above the epsilon for certain, by a factor of 2.
TEST(StepInPlan, IsForIterationsThatAreNotTheLast)
{
    const std::vector<double> unknowns = {1e6, 1e6, 1e6};
    EXPECT_TRUE(StepBy(Uncorrelated(0.0, 2.0 * EPSILON), unknowns).taken);
    ExpectNoStep(Uncorrelated(0.0, 1.99 * EPSILON), unknowns);
    ExpectNoStep(Uncorrelated(0.0, 0.0), unknowns);
    // l^T P l = 4 epsilon, of which the correction explains 1.9 and 2.1.
    EXPECT_TRUE(StepBy(Uncorrelated(std::sqrt(1.9 * EPSILON), 4.0 * EPSILON), unknowns).taken);
    ExpectNoStep(Uncorrelated(std::sqrt(2.1 * EPSILON), 4.0 * EPSILON), unknowns);
}

// The square sum is what the corrections leave of l^T P l = L = 2^-10: a small rest. It is given when 16 J L times the
// tolerance's 4 epsilon (12 + 6 + 20) = 2^-44.75 is not above 2^-20 of that rest: from 2^-10 2^4 2^-44.75 2^20 =
// 2^-30.75 on.
TEST(StepInPlan, WantsASquareSumThatIsCertain)
{
    const auto explained = [](double rest) {
        const double g = std::sqrt(0x1p-10 - rest);
        return std::vector<double>{1.0, 0.0, 0.0, g, 1.0, 0.0, 0.0, 1.0, 0.0, g * g + rest};
    };
    const std::vector<double> unknowns = {1e12, 1e12, 1e12};
    EXPECT_TRUE(StepBy(explained(0x1.3p-31), unknowns).taken); // 2^-30.75
    ExpectNoStep(explained(0x1.2p-31), unknowns);              // 2^-30.83
    ExpectNoStep(explained(0.0), unknowns);
}

TEST(StepInPlan, WantsAPositiveDefiniteMatrix)
{
    for (const size_t pivot : {0U, 4U, 7U})
    {
        for (const double value : {0.0, -0.0, -1.0, -INFINITE})
        {
            std::vector<double> elements = Uncorrelated(0.0, 1e-6);
            elements[pivot] = value;
            ExpectNoStep(elements);
        }
    }
    ExpectNoStep({1.0, 2.0, 0.0, 0.0, 1.0, 0.0, 0.0, 1.0, 0.0, 1e-6});
}

// J^2 times the sum of the diagonal times that of the pivots' reciprocals may be 2^36. With J = 1 and elements of 1, 1
// and v that is (2 + v) (2 + 1 / v), about 2 v or 2 / v. With one correlation of c^2 = 1 - 2^-6 between the first two,
// J is 2^6 and the reciprocals are 1, 2^6 and 1 / v: about 2^12 65 v for a large v, 2^18.02 v.
TEST(StepInPlan, WantsADiagonalOfOneRange)
{
    const std::vector<double> unknowns = {1e12, 1e12, 1e12};
    for (const double exponent : {34.9, 35.1})
    {
        for (const double value : {std::pow(2.0, exponent), std::pow(2.0, -exponent)})
        {
            for (const size_t place : {0U, 4U, 7U})
            {
                std::vector<double> elements = Uncorrelated(0.0, 1e-6);
                elements[place] = value;
                EXPECT_EQ(exponent < 35.0, StepBy(elements, unknowns).taken) << place << ", " << value;
            }
        }
    }
    const double c = std::sqrt(1.0 - 0x1p-6);
    for (const double exponent : {17.9, 18.1})
    {
        const std::vector<double> elements = {1.0, c, 0.0, 0.0, 1.0, 0.0, 0.0, std::pow(2.0, exponent), 0.0, 1e-6};
        EXPECT_EQ(exponent < 18.0, StepBy(elements, unknowns).taken) << exponent;
    }
}

TEST(StepInPlan, WantsFiniteNumbers)
{
    for (size_t place = 0; place < FACTORED.size(); ++place)
    {
        for (const double poison : {INFINITE, -INFINITE, NOT_A_NUMBER, -NOT_A_NUMBER})
        {
            std::vector<double> elements = FACTORED;
            elements[place] = poison;
            ExpectNoStep(elements);
        }
    }
}

// Three to eight targets, all around or close together, near and far, with errors of tenths of millimetres to metres:
// where a step is taken, a full iteration gives the same.
TEST(StepInPlan, AgreesWithAFullIteration)
{
    std::mt19937 random(60);
    const auto uniform = [&](double from, double to) {
        return from + (to - from) * (static_cast<double>(random()) / 4294967296.0);
    };
    int32_t taken = 0;
    int32_t refused = 0;
    for (int32_t run = 0; run < 4000 && !testing::Test::HasFailure(); ++run)
    {
        const auto targets = static_cast<int32_t>(3 + random() % 6);
        const int32_t rows = 2 * targets;
        const double opening = std::pow(10.0, uniform(-2.0, 0.7));
        const double error = std::pow(10.0, uniform(-4.0, 0.0));
        TestMatrix design(rows, 3, 0.0);
        TestMatrix weights(rows, rows, 0.0);
        std::vector<double> misclosures(static_cast<size_t>(rows) + 1, 0.0);
        const Matrix a = design;
        const Matrix p = weights;
        for (int32_t k = 1; k < rows; k += 2)
        {
            const double azimuth = uniform(0.0, opening);
            const double distance = uniform(20.0, 500.0);
            a[k][1] = -std::sin(azimuth) / distance;
            a[k][2] = std::cos(azimuth) / distance;
            a[k][3] = 1.0;
            a[k + 1][1] = std::cos(azimuth);
            a[k + 1][2] = std::sin(azimuth);
            p[k][k] = 1.0;
            p[k + 1][k + 1] = uniform(1e-6, 2e-5);
            misclosures[static_cast<size_t>(k)] = uniform(-0.01, 0.01) * error;
            misclosures[static_cast<size_t>(k) + 1] = uniform(-1.0, 1.0) * error;
        }
        double unknowns[] = {UNWRITTEN, uniform(-5000.0, 5000.0), uniform(-5000.0, 5000.0), uniform(-3.0, 3.0)};
        const std::vector<double> before(unknowns, unknowns + 4);
        TestMatrix normal(NORMAL_COLUMNS, NORMAL_COLUMNS, 0.0);
        SumNormalEquations(design, weights, misclosures.data(), rows, NORMAL_COLUMNS, normal);
        double squareSum = UNWRITTEN;
        if (!StepInPlan(normal, rows, unknowns, &squareSum))
        {
            ++refused;
            continue;
        }
        ++taken;
        const FullIteration full = IterateInFull(design, weights, misclosures.data(), rows);
        ASSERT_EQ(0, full.result);
        for (size_t i = 1; i <= 3; ++i)
        {
            EXPECT_TRUE(SameBits(before[i] + full.corrections[i], unknowns[i])) << run;
        }
        EXPECT_NEAR(full.squareSum, squareSum, STEP_ACCURACY * full.squareSum);
        EXPECT_GT(full.squareSum, EPSILON);
    }
    EXPECT_GT(taken, 1000);
    EXPECT_GT(refused, 100);
}
