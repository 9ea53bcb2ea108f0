#include "station/plan_rows.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "tests/station/test_matrix.h"
#include "tests/support/record.h"

using namespace qstdlib;
using support::SameBits;

namespace {

const double INFINITE = std::numeric_limits<double>::infinity();
const double NOT_A_NUMBER = std::nan("");
constexpr double UNWRITTEN = -4711.0;

// A row of the design with its weight and its misclosure; a direction has the third element 1 and the weight 1.
struct Row
{
    double a;
    double b;
    double isDirection;
    double weight;
    double misclosure;
};

Row Direction(double a, double b, double misclosure)
{
    return {a, b, 1.0, 1.0, misclosure};
}

Row Distance(double a, double b, double weight, double misclosure)
{
    return {a, b, 0.0, weight, misclosure};
}

// The rows as the matrices A and P and the vector l.
class Equations
{
public:
    explicit Equations(const std::vector<Row>& rows)
        : count(static_cast<int32_t>(rows.size())), design(count, 3, 0.0), weights(count, count, 0.0),
          misclosures(rows.size() + 1, NOT_A_NUMBER)
    {
        for (int32_t k = 1; k <= count; ++k)
        {
            const Row& row = rows[static_cast<size_t>(k) - 1];
            const Matrix a = design;
            const Matrix p = weights;
            a[k][1] = row.a;
            a[k][2] = row.b;
            a[k][3] = row.isDirection;
            p[k][k] = row.weight;
            misclosures[static_cast<size_t>(k)] = row.misclosure;
        }
    }

    int32_t count;
    TestMatrix design;
    TestMatrix weights;
    std::vector<double> misclosures;
};

// Vectors have a spare first element.
void ExpectSameElements(const std::vector<double>& expected, const std::vector<double>& actual, size_t first = 0)
{
    ASSERT_EQ(expected.size(), actual.size());
    for (size_t i = first; i < expected.size(); ++i)
    {
        EXPECT_TRUE(SameBits(expected[i], actual[i])) << i;
    }
}

// A^T (P A)
std::vector<double> NormalMatrixByProducts(Equations& e)
{
    TestMatrix weighted(e.count, 3, NOT_A_NUMBER);
    TestMatrix normal(3, 3, NOT_A_NUMBER);
    MultiplyMatrices(e.weights, e.design, weighted, e.count, e.count, 3);
    TransposeMultiply(e.design, weighted, normal, 3, e.count, 3);
    return normal.Elements();
}

// -((Q A^T) P) l
std::vector<double> CorrectionsByProducts(Equations& e, TestMatrix& cofactors)
{
    TestMatrix cofactorsByDesign(3, e.count, NOT_A_NUMBER);
    TestMatrix weighted(3, e.count, NOT_A_NUMBER);
    MultiplyByTranspose(cofactors, e.design, cofactorsByDesign, 3, 3, e.count);
    MultiplyMatrices(cofactorsByDesign, e.weights, weighted, 3, e.count, e.count);
    std::vector<double> corrections(4, UNWRITTEN);
    MatrixTimesVector(weighted, e.misclosures.data(), corrections.data(), 3, e.count);
    for (size_t i = 1; i <= 3; ++i)
    {
        corrections[i] = -corrections[i];
    }
    return corrections;
}

// A dx + l
std::vector<double> ResidualsByProducts(Equations& e, const std::vector<double>& corrections)
{
    std::vector<double> residuals(e.misclosures.size(), UNWRITTEN);
    MatrixTimesVector(e.design, corrections.data(), residuals.data(), e.count, 3);
    for (size_t k = 1; k < residuals.size(); ++k)
    {
        residuals[k] += e.misclosures[k];
    }
    return residuals;
}

// v^T (P v)
double SquareSumByProducts(Equations& e, const std::vector<double>& residuals)
{
    std::vector<double> weighted(residuals.size());
    MatrixTimesVector(e.weights, residuals.data(), weighted.data(), e.count, e.count);
    double sum = 0.0;
    for (size_t k = 1; k < residuals.size(); ++k)
    {
        sum += weighted[k] * residuals[k];
    }
    return sum;
}

std::vector<double> NormalMatrixByRows(Equations& e)
{
    TestMatrix normal(3, 3, NOT_A_NUMBER);
    EXPECT_TRUE(SumNormalMatrix(e.design, e.weights, e.count, normal));
    return normal.Elements();
}

std::vector<double> CorrectionsByRows(Equations& e, TestMatrix& cofactors)
{
    std::vector<double> corrections(4, UNWRITTEN);
    EXPECT_TRUE(SumCorrections(cofactors, e.design, e.weights, e.misclosures.data(), e.count, corrections.data()));
    EXPECT_EQ(UNWRITTEN, corrections[0]);
    return corrections;
}

// All three sums on the same rows.
void ExpectTheProducts(const std::vector<Row>& rows, const std::vector<double>& cofactorElements)
{
    Equations e(rows);
    TestMatrix cofactors(3, 3, cofactorElements);
    ExpectSameElements(NormalMatrixByProducts(e), NormalMatrixByRows(e));

    const std::vector<double> corrections = CorrectionsByProducts(e, cofactors);
    ExpectSameElements(corrections, CorrectionsByRows(e, cofactors));

    std::vector<double> residuals(rows.size() + 1, UNWRITTEN);
    double omega = NOT_A_NUMBER;
    EXPECT_TRUE(
        SumResiduals(e.design, e.weights, e.misclosures.data(), corrections.data(), e.count, residuals.data(), &omega));
    const std::vector<double> expected = ResidualsByProducts(e, corrections);
    ExpectSameElements(expected, residuals);
    EXPECT_TRUE(SameBits(SquareSumByProducts(e, expected), omega));
}

// The inverse of the normal matrix of these rows, as an adjustment takes it.
std::vector<double> CofactorsOf(const std::vector<Row>& rows)
{
    Equations e(rows);
    TestMatrix cofactors(3, 3, 0.0);
    EXPECT_EQ(0, InvertNormalMatrix(e.design, e.weights, cofactors, e.count, 3));
    return cofactors.Elements();
}

// Uniform in [-1, 1), the same on every platform.
double Uniform(std::mt19937& random)
{
    return static_cast<double>(random()) / 2147483648.0 - 1.0;
}

// Now and then a zero of either sign.
double UniformOrZero(std::mt19937& random)
{
    const uint32_t choice = static_cast<uint32_t>(random() % 16);
    return choice < 2 ? std::copysign(0.0, choice == 0 ? 1.0 : -1.0) : Uniform(random);
}

Row RandomDirection(std::mt19937& random)
{
    return Direction(0.01 * UniformOrZero(random), 0.01 * UniformOrZero(random), 1e-4 * UniformOrZero(random));
}

// Weights of distances are about 1e-5.
Row RandomDistance(std::mt19937& random)
{
    return Distance(UniformOrZero(random), UniformOrZero(random), 1e-5 * (2.0 + Uniform(random)),
                    0.1 * UniformOrZero(random));
}

// Cofactors of any kind, zeros among them.
std::vector<double> RandomCofactors(std::mt19937& random)
{
    std::vector<double> cofactors;
    for (size_t i = 0; i < 9; ++i)
    {
        cofactors.push_back(UniformOrZero(random));
    }
    return cofactors;
}

constexpr int32_t RUNS = 1000;

} // namespace

TEST(PlanRows, SumTheProductsOfDirections)
{
    std::mt19937 random(51);
    for (int32_t run = 0; run < RUNS && !testing::Test::HasFailure(); ++run)
    {
        std::vector<Row> rows(1 + random() % 8);
        for (Row& row : rows)
        {
            row = RandomDirection(random);
        }
        ExpectTheProducts(rows, RandomCofactors(random));
    }
}

TEST(PlanRows, SumTheProductsOfDistances)
{
    std::mt19937 random(52);
    for (int32_t run = 0; run < RUNS && !testing::Test::HasFailure(); ++run)
    {
        std::vector<Row> rows(1 + random() % 8);
        for (Row& row : rows)
        {
            row = RandomDistance(random);
        }
        ExpectTheProducts(rows, RandomCofactors(random));
    }
}

TEST(PlanRows, SumTheProductsOfMixtures)
{
    std::mt19937 random(53);
    for (int32_t run = 0; run < RUNS && !testing::Test::HasFailure(); ++run)
    {
        std::vector<Row> rows;
        const size_t count = 2 + random() % 20;
        while (rows.size() < count)
        {
            rows.push_back(random() % 2 == 0 ? RandomDirection(random) : RandomDistance(random));
        }
        ExpectTheProducts(rows, RandomCofactors(random));
    }
}

// With the inverse of their own normal matrix, as an adjustment has it.
TEST(PlanRows, SumTheProductsOfAnAdjustment)
{
    std::mt19937 random(54);
    for (int32_t run = 0; run < RUNS && !testing::Test::HasFailure(); ++run)
    {
        std::vector<Row> rows = {Direction(0.01, 0.0, 1e-5), Direction(-0.002, 0.007, -2e-5),
                                 Direction(0.0, -0.004, 3e-5)};
        const size_t count = 3 + random() % 10;
        while (rows.size() < count)
        {
            rows.push_back(random() % 2 == 0 ? RandomDirection(random) : RandomDistance(random));
        }
        ExpectTheProducts(rows, CofactorsOf(rows));
    }
}

// Everything in sight is a zero of one sign or the other: sums of such terms are 0.0, but for the corrections, -0.0.
TEST(PlanRows, SumZerosOfEitherSign)
{
    for (uint32_t signs = 0; signs < 256; ++signs)
    {
        const auto zero = [signs](uint32_t bit) { return ((signs >> bit) & 1U) != 0 ? -0.0 : 0.0; };
        const std::vector<double> cofactors = {zero(6), 1.0, -1.0, -1.0, zero(7), zero(6), zero(7), -1.0, zero(6)};
        ExpectTheProducts({Direction(zero(0), zero(1), zero(2)), Distance(zero(3), zero(4), 0.5, zero(5))}, cofactors);
    }
}

// Opposite rows cancel: n13 = 0.5 - 0.5, n12 = 0.125 - 0.125; corrections of 0.25 - 0.25.
TEST(PlanRows, SumTermsThatCancel)
{
    const std::vector<Row> rows = {Direction(0.5, 0.25, 1.0), Direction(-0.5, 0.25, 1.0),
                                   Distance(0.5, -0.25, 2.0, -0.5), Distance(-0.5, -0.25, 2.0, -0.5)};
    Equations e(rows);
    TestMatrix diagonal(3, 3, {1, 0, 0, 0, 1, 0, 0, 0, 1});
    const std::vector<double> normal = NormalMatrixByRows(e);
    EXPECT_TRUE(SameBits(0.0, normal[1]));
    EXPECT_TRUE(SameBits(0.0, normal[2]));
    EXPECT_TRUE(SameBits(-0.0, CorrectionsByRows(e, diagonal)[1]));
    ExpectTheProducts(rows, diagonal.Elements());
}

// A change of -0.0 - 0.0 is -0.0, and the residual of a misclosure of -0.0 is 0.0 nevertheless.
TEST(PlanRows, BeginTheResidualsAtZero)
{
    Equations e({Direction(1.0, 1.0, -0.0), Distance(1.0, 1.0, 2.0, -0.0)});
    const double corrections[] = {NOT_A_NUMBER, -0.0, -0.0, -0.0};
    double residuals[] = {NOT_A_NUMBER, NOT_A_NUMBER, NOT_A_NUMBER};
    double omega = NOT_A_NUMBER;
    EXPECT_TRUE(SumResiduals(e.design, e.weights, e.misclosures.data(), corrections, e.count, residuals, &omega));
    EXPECT_TRUE(SameBits(0.0, residuals[1]));
    EXPECT_TRUE(SameBits(0.0, residuals[2]));
    EXPECT_TRUE(SameBits(0.0, omega));
}

// By hand: a direction (2, 3, 1), a distance (4, 5, 0) of weight 0.5: n11 = 4 + 8, n12 = 6 + 10, n22 = 9 + 12.5.
TEST(PlanRows, FormTheNormalMatrix)
{
    Equations e({Direction(2.0, 3.0, 0.0), Distance(4.0, 5.0, 0.5, 0.0)});
    EXPECT_EQ((std::vector<double>{12, 16, 2, 16, 21.5, 3, 2, 3, 1}), NormalMatrixByRows(e));
}

// The same with l = (1, 2), Q = (1 0 1; 0 1 0; 0 0 2): Q A^T P = (3 2; 3 2.5; 2 0), dx = (-7, -8, -2);
// v = (-14 - 24 - 2 + 1, -28 - 40 + 2) = (-39, -66), v^T P v = 1521 + 2178.
TEST(PlanRows, FormCorrectionsResidualsAndTheirSquareSum)
{
    Equations e({Direction(2.0, 3.0, 1.0), Distance(4.0, 5.0, 0.5, 2.0)});
    TestMatrix cofactors(3, 3, {1, 0, 1, 0, 1, 0, 0, 0, 2});
    const std::vector<double> corrections = CorrectionsByRows(e, cofactors);
    EXPECT_EQ((std::vector<double>{UNWRITTEN, -7, -8, -2}), corrections);
    double residuals[] = {UNWRITTEN, UNWRITTEN, UNWRITTEN};
    double omega = NOT_A_NUMBER;
    EXPECT_TRUE(
        SumResiduals(e.design, e.weights, e.misclosures.data(), corrections.data(), e.count, residuals, &omega));
    EXPECT_EQ(UNWRITTEN, residuals[0]);
    EXPECT_EQ(-39.0, residuals[1]);
    EXPECT_EQ(-66.0, residuals[2]);
    EXPECT_EQ(3699.0, omega);
}

// Infinite and NaN elements and weights, products and sums that overflow; the zeros beside them do not hide them.
TEST(SumNormalMatrix, RefusesWhatIsNotFinite)
{
    for (const double poison : {INFINITE, -INFINITE, NOT_A_NUMBER, 1e200})
    {
        for (const Row& row : {Direction(poison, 0.0, 0.0), Direction(0.0, poison, 0.0), Direction(poison, poison, 0.0),
                               Distance(poison, 0.0, 1.0, 0.0), Distance(0.0, poison, 1.0, 0.0),
                               Distance(0.0, 1e200, poison, 0.0), Distance(1e200, 0.0, poison, 0.0)})
        {
            Equations e({Direction(0.5, 0.25, 0.0), row, Distance(0.5, 0.25, 1.0, 0.0)});
            TestMatrix normal(3, 3, 0.0);
            EXPECT_FALSE(SumNormalMatrix(e.design, e.weights, e.count, normal)) << poison;
        }
    }
    for (const double poison : {INFINITE, NOT_A_NUMBER})
    {
        Equations e({Direction(0.5, 0.25, 0.0), Distance(0.0, 0.0, poison, 0.0)});
        TestMatrix normal(3, 3, 0.0);
        EXPECT_FALSE(SumNormalMatrix(e.design, e.weights, e.count, normal)) << poison;
    }
}

TEST(SumCorrections, RefusesWhatIsNotFinite)
{
    const std::vector<double> unit = {1, 0, 0, 0, 1, 0, 0, 0, 1};
    for (const double poison : {INFINITE, -INFINITE, NOT_A_NUMBER})
    {
        std::vector<double> corrections(4, UNWRITTEN);
        for (const Row& row :
             {Direction(poison, 1.0, 1.0), Direction(1.0, poison, 1.0), Direction(0.0, 0.0, poison),
              Distance(poison, 1.0, 1.0, 1.0), Distance(1.0, poison, 1.0, 1.0), Distance(1.0, 0.0, poison, 1.0),
              Distance(0.0, 0.0, 1.0, poison), Distance(1.0, 1.0, 0.0, poison)})
        {
            Equations e({Direction(0.5, 0.25, 1.0), row});
            TestMatrix cofactors(3, 3, unit);
            EXPECT_FALSE(
                SumCorrections(cofactors, e.design, e.weights, e.misclosures.data(), e.count, corrections.data()))
                << poison;
        }
        for (size_t place = 0; place < 9; ++place)
        {
            Equations e({Direction(0.0, 0.0, 1.0), Distance(0.0, 0.0, 2.0, 1.0)});
            std::vector<double> elements = unit;
            elements[place] = poison;
            TestMatrix cofactors(3, 3, elements);
            EXPECT_FALSE(
                SumCorrections(cofactors, e.design, e.weights, e.misclosures.data(), e.count, corrections.data()))
                << poison << " at " << place;
        }
    }
}

// The residuals are those of the products even so.
TEST(SumResiduals, RefusesASquareSumThatIsNotFinite)
{
    const std::vector<double> corrections = {NOT_A_NUMBER, 1.0, 2.0, 3.0};
    for (const double poison : {INFINITE, -INFINITE, NOT_A_NUMBER, 1e200})
    {
        for (const Row& row : {Direction(1.0, 1.0, poison), Distance(1.0, 1.0, 1.0, poison)})
        {
            Equations e({Direction(0.5, 0.25, 1.0), row});
            std::vector<double> residuals(3, UNWRITTEN);
            double omega = 0.0;
            EXPECT_FALSE(SumResiduals(e.design, e.weights, e.misclosures.data(), corrections.data(), e.count,
                                      residuals.data(), &omega))
                << poison;
            EXPECT_EQ(0.5 + 0.25 * 2.0 + 3.0 + 1.0, residuals[1]);
            const double second = ResidualsByProducts(e, corrections)[2];
            EXPECT_TRUE(SameBits(second, residuals[2]) || std::isnan(second)) << poison;
            EXPECT_EQ(std::isnan(second), std::isnan(residuals[2]));
        }
    }
}
