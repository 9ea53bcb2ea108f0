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

// To the last bit, but that NaN has neither sign nor payload.
void ExpectSameElements(const std::vector<double>& expected, const std::vector<double>& actual)
{
    ASSERT_EQ(expected.size(), actual.size());
    for (size_t i = 0; i < expected.size(); ++i)
    {
        EXPECT_TRUE(SameBits(expected[i], actual[i]) || (std::isnan(expected[i]) && std::isnan(actual[i])))
            << expected[i] << " and " << actual[i] << " at " << i;
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

// A^T (P l), and l^T (P l).
std::vector<double> AbsoluteTermsByProducts(Equations& e)
{
    TestMatrix misclosures(e.count, 1, std::vector<double>(e.misclosures.begin() + 1, e.misclosures.end()));
    TestMatrix weighted(e.count, 1, NOT_A_NUMBER);
    TestMatrix terms(3, 1, NOT_A_NUMBER);
    TestMatrix square(1, 1, NOT_A_NUMBER);
    MultiplyMatrices(e.weights, misclosures, weighted, e.count, e.count, 1);
    TransposeMultiply(e.design, weighted, terms, 3, e.count, 1);
    TransposeMultiply(misclosures, weighted, square, 1, e.count, 1);
    std::vector<double> all = terms.Elements();
    all.push_back(square.Elements()[0]);
    return all;
}

std::vector<double> NormalMatrixByRows(Equations& e)
{
    TestMatrix normal(3, 3, NOT_A_NUMBER);
    SumNormalEquations(e.design, e.weights, e.misclosures.data(), e.count, 3, normal);
    return normal.Elements();
}

// With the absolute terms beside it.
void ExpectTheNormalEquations(Equations& e)
{
    const std::vector<double> expected = NormalMatrixByProducts(e);
    ExpectSameElements(expected, NormalMatrixByRows(e));

    TestMatrix normal(NORMAL_COLUMNS, NORMAL_COLUMNS, NOT_A_NUMBER);
    SumNormalEquations(e.design, e.weights, e.misclosures.data(), e.count, NORMAL_COLUMNS, normal);
    const Matrix n = normal;
    std::vector<double> square;
    std::vector<double> terms;
    for (int32_t i = 1; i <= 3; ++i)
    {
        square.insert(square.end(), n[i] + 1, n[i] + 4);
        terms.push_back(n[i][NORMAL_COLUMNS]);
    }
    terms.push_back(n[NORMAL_COLUMNS][NORMAL_COLUMNS]);
    ExpectSameElements(expected, square);
    ExpectSameElements(AbsoluteTermsByProducts(e), terms);
}

std::vector<double> CorrectionsByRows(Equations& e, TestMatrix& cofactors)
{
    std::vector<double> corrections(4, UNWRITTEN);
    EXPECT_TRUE(SumCorrections(cofactors, e.design, e.weights, e.misclosures.data(), e.count, corrections.data()));
    EXPECT_EQ(UNWRITTEN, corrections[0]);
    return corrections;
}

// All sums on the same rows.
void ExpectTheProducts(const std::vector<Row>& rows, const std::vector<double>& cofactorElements)
{
    Equations e(rows);
    TestMatrix cofactors(3, 3, cofactorElements);
    ExpectTheNormalEquations(e);
    ExpectSameElements(CorrectionsByProducts(e, cofactors), CorrectionsByRows(e, cofactors));
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

// By hand: a direction (2, 3, 1), a distance (4, 5, 0) of weight 0.5: n11 = 4 + 8, n12 = 6 + 10, n22 = 9 + 12.5.
TEST(PlanRows, FormTheNormalMatrix)
{
    Equations e({Direction(2.0, 3.0, 0.0), Distance(4.0, 5.0, 0.5, 0.0)});
    EXPECT_EQ((std::vector<double>{12, 16, 2, 16, 21.5, 3, 2, 3, 1}), NormalMatrixByRows(e));
}

// The same with l = (7, 2): 14 + 4, 21 + 5, 7; 49 + 2. The rest of the fourth row is zero.
TEST(PlanRows, FormTheAbsoluteTerms)
{
    Equations e({Direction(2.0, 3.0, 7.0), Distance(4.0, 5.0, 0.5, 2.0)});
    TestMatrix normal(NORMAL_COLUMNS, NORMAL_COLUMNS, NOT_A_NUMBER);
    SumNormalEquations(e.design, e.weights, e.misclosures.data(), e.count, NORMAL_COLUMNS, normal);
    EXPECT_EQ((std::vector<double>{12, 16, 2, 18, 16, 21.5, 3, 26, 2, 3, 1, 7, 0, 0, 0, 51}), normal.Elements());
}

// The same with l = (1, 2), Q = (1 0 1; 0 1 0; 0 0 2): Q A^T P = (3 2; 3 2.5; 2 0), dx = (-7, -8, -2).
TEST(PlanRows, FormCorrections)
{
    Equations e({Direction(2.0, 3.0, 1.0), Distance(4.0, 5.0, 0.5, 2.0)});
    TestMatrix cofactors(3, 3, {1, 0, 1, 0, 1, 0, 0, 0, 2});
    EXPECT_EQ((std::vector<double>{UNWRITTEN, -7, -8, -2}), CorrectionsByRows(e, cofactors));
}

// Infinite and NaN elements and weights, products and sums that overflow: what a factor of zero does to them is up to
// the toolkit.
TEST(SumNormalEquations, TreatsZeroFactorsAsTheToolkit)
{
    for (const double poison : {INFINITE, -INFINITE, NOT_A_NUMBER, 1e200})
    {
        for (const Row& row :
             {Direction(poison, 0.0, 0.0), Direction(0.0, poison, 0.0), Direction(poison, poison, 0.0),
              Direction(0.0, 0.0, poison), Distance(poison, 0.0, 1.0, 0.0), Distance(0.0, poison, 1.0, 0.0),
              Distance(0.0, 1e200, poison, 0.0), Distance(1e200, 0.0, poison, 0.0), Distance(0.0, 0.0, poison, 1.0),
              Distance(poison, 1.0, 0.0, poison), Distance(0.0, 1.0, 1.0, poison), Distance(1.0, 1.0, poison, 0.0)})
        {
            Equations e({Direction(0.5, 0.25, 0.0), row, Distance(0.5, 0.25, 1.0, 0.0)});
            ExpectTheNormalEquations(e);
        }
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
