#include "station/matrix.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <random>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/station/allocation_watch.h"
#include "tests/station/reference_solution.h"
#include "tests/station/test_matrix.h"
#include "tests/support/record.h"

using namespace qstdlib;
using support::SameBits;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr double EPSILON = 2.220446049250313e-16;
const double NOT_A_NUMBER = std::nan("");
const double INFINITE = std::numeric_limits<double>::infinity();

// Blocks of a matrix: the row table with one spare entry, and the data with one spare element.
std::vector<size_t> MatrixBlocks(size_t rows, size_t columns)
{
    return {(rows + 1) * sizeof(double*), (rows * columns + 1) * sizeof(double)};
}

// What LUDecompose makes of a matrix: the row exchanges, and 1.0 divided by each pivot's divisor.
struct Decomposition
{
    int32_t result;
    double parity;
    std::vector<int32_t> index;
    std::vector<double> reciprocals;
};

Decomposition Decompose(TestMatrix& a, int32_t order)
{
    Decomposition d = {-1, 0.0, {}, {}};
    std::vector<Pivot> pivots(static_cast<size_t>(order) + 1, {Divisor(4711.0), -1});
    d.result = LUDecompose(a, order, pivots.data(), &d.parity);
    EXPECT_EQ(-1, pivots[0].row) << "the spare element is nobody's";
    for (size_t i = 1; i < pivots.size(); ++i)
    {
        d.index.push_back(pivots[i].row);
        d.reciprocals.push_back(pivots[i].divisor.Into(1.0));
    }
    return d;
}

// The pivots on the diagonal of the factors, with these exchanges of rows.
std::vector<Pivot> PivotsOf(TestMatrix& lu, const std::vector<int32_t>& rows)
{
    std::vector<Pivot> pivots = {{Divisor(NOT_A_NUMBER), -1}};
    for (const int32_t row : rows)
    {
        const auto i = static_cast<int32_t>(pivots.size());
        pivots.push_back({Divisor(static_cast<Matrix>(lu)[i][i]), row});
    }
    return pivots;
}

// NaN is NaN: the sign that an operation gives it is not defined.
void ExpectSameElements(const std::vector<double>& expected, const std::vector<double>& actual)
{
    ASSERT_EQ(expected.size(), actual.size());
    for (size_t i = 0; i < expected.size(); ++i)
    {
        if (!std::isnan(expected[i]) || !std::isnan(actual[i]))
        {
            EXPECT_TRUE(SameBits(expected[i], actual[i])) << i;
        }
    }
}

// Solution and factors are those of the reference, to the last bit.
ReferenceSolution ExpectReferenceSolution(size_t order, const std::vector<double>& n, size_t columns,
                                          const std::vector<double>& b)
{
    ReferenceSolution reference = SolveByReference(order, n, columns, b);
    const auto rows = static_cast<int32_t>(order);
    TestMatrix matrix(rows, rows, n);
    TestMatrix x(rows, static_cast<int32_t>(columns), b);
    EXPECT_EQ(0, SolveLinearSystem(matrix, x, rows, static_cast<int32_t>(columns)));
    ExpectSameElements(reference.passes.back(), x.Elements());
    ExpectSameElements(reference.factors, matrix.Elements());
    return reference;
}

std::vector<double> Column(const std::vector<double>& elements, size_t columns, size_t column)
{
    std::vector<double> elementsOfColumn;
    for (size_t i = column; i < elements.size(); i += columns)
    {
        elementsOfColumn.push_back(elements[i]);
    }
    return elementsOfColumn;
}

// The pass after which a column of the solution is for the first time what it was one or two passes before, if any.
struct Repetition
{
    size_t period; // 0 for none
    size_t pass;
};

Repetition RepetitionOf(const ReferenceSolution& solution, size_t columns, size_t column)
{
    for (size_t pass = 1; pass < solution.passes.size(); ++pass)
    {
        for (size_t period = 1; period <= 2 && period <= pass; ++period)
        {
            if (Column(solution.passes[pass], columns, column) ==
                Column(solution.passes[pass - period], columns, column))
            {
                return {period, pass};
            }
        }
    }
    return {0, 0};
}

// A single right-hand side whose solution repeats itself as given, while no correction is negligible.
void ExpectRepetition(const Repetition& expected, const std::vector<double>& n, const std::vector<double>& b)
{
    const ReferenceSolution solution = ExpectReferenceSolution(b.size(), n, 1, b);
    const Repetition r = RepetitionOf(solution, 1, 0);
    EXPECT_EQ(expected.period, r.period);
    EXPECT_EQ(expected.pass, r.pass);
    EXPECT_EQ(6U, solution.passes.size()) << "five passes";
}

// Uniform in [-1, 1), the same on every platform.
double Uniform(std::mt19937& random)
{
    return static_cast<double>(random()) / 2147483648.0 - 1.0;
}

// G^T G for a G of five rows, each of them of a size from 1/1000 to 1000.
std::vector<double> NormalMatrix(size_t order, std::mt19937& random)
{
    std::vector<double> n(order * order, 0.0);
    for (int32_t row = 0; row < 5; ++row)
    {
        std::vector<double> g;
        const double size = std::pow(10.0, static_cast<double>(random() % 7) - 3.0);
        for (size_t i = 0; i < order; ++i)
        {
            g.push_back(size * Uniform(random));
        }
        for (size_t i = 0; i < n.size(); ++i)
        {
            n[i] += g[i / order] * g[i % order];
        }
    }
    return n;
}

std::vector<double> UnitMatrix(size_t order)
{
    std::vector<double> unit(order * order, 0.0);
    for (size_t i = 0; i < order; ++i)
    {
        unit[i * order + i] = 1.0;
    }
    return unit;
}

// How often the passes of a refinement went which way.
struct Ways
{
    int32_t settled;         // period one, with passes left
    int32_t alternatedOdd;   // period two, with an odd number of passes left
    int32_t alternatedEven;  // the same, even, some
    int32_t endedEarly;      // several right-hand sides, after the second pass or later
    int32_t endedRepetition; // the same, when one of them repeated itself before
};

void Count(const ReferenceSolution& solution, size_t columns, Ways& ways)
{
    const size_t last = solution.passes.size() - 1;
    bool repeatedBefore = false;
    for (size_t column = 0; column < columns; ++column)
    {
        const Repetition r = RepetitionOf(solution, columns, column);
        const size_t left = last - r.pass;
        ways.settled += r.period == 1 && last == 5 && left > 0 ? 1 : 0;
        ways.alternatedOdd += r.period == 2 && last == 5 && left % 2 == 1 ? 1 : 0;
        ways.alternatedEven += r.period == 2 && last == 5 && left == 2 ? 1 : 0;
        repeatedBefore = repeatedBefore || (r.period != 0 && left > 0);
    }
    const bool endedEarly = columns > 1 && last > 1 && last < 5;
    ways.endedEarly += endedEarly ? 1 : 0;
    ways.endedRepetition += endedEarly && repeatedBefore ? 1 : 0;
}

} // namespace

TEST(AllocVector, TakesOneSpareElement)
{
    const AllocationWatch watch;
    double* const vector = AllocVector(3);
    EXPECT_THAT(watch.Sizes(), ElementsAre(4 * sizeof(double)));
    vector[3] = 1.0;
    std::free(vector);
    EXPECT_THAT(watch.Outstanding(), IsEmpty());
}

TEST(AllocVector, AnswersNullWithoutMemory)
{
    const AllocationWatch watch(1);
    EXPECT_EQ(nullptr, AllocVector(3));
}

TEST(AllocMatrix, TakesARowTableAndOneContiguousDataBlock)
{
    const AllocationWatch watch;
    const Matrix m = AllocMatrix(1, 3, 1, 4);
    ASSERT_NE(nullptr, m);
    EXPECT_EQ(MatrixBlocks(3, 4), watch.Sizes());
    EXPECT_EQ(m[1] + 4, m[2]);
    EXPECT_EQ(m[2] + 4, m[3]);
    for (int32_t i = 1; i <= 3; ++i)
    {
        for (int32_t j = 1; j <= 4; ++j)
        {
            m[i][j] = 10.0 * i + j;
        }
    }
    EXPECT_EQ(14.0, m[1][4]);
    EXPECT_EQ(21.0, m[2][1]);
    EXPECT_EQ(34.0, m[3][4]);
    FreeMatrix(m, 1, 1);
    EXPECT_THAT(watch.Outstanding(), IsEmpty());
}

TEST(AllocMatrix, CountsRowsAndColumnsFromAnyLowestIndex)
{
    const AllocationWatch watch;
    const Matrix m = AllocMatrix(3, 4, 0, 2);
    ASSERT_NE(nullptr, m);
    EXPECT_EQ(MatrixBlocks(2, 3), watch.Sizes());
    EXPECT_EQ(m[3] + 3, m[4]);
    m[3][0] = 1.0;
    m[4][2] = 2.0;
    EXPECT_EQ(1.0, m[3][0]);
    FreeMatrix(m, 3, 0);
    EXPECT_THAT(watch.Outstanding(), IsEmpty());
}

TEST(AllocMatrix, AnswersNullWithoutARowTable)
{
    const AllocationWatch watch(1);
    EXPECT_EQ(nullptr, AllocMatrix(1, 2, 1, 5));
    EXPECT_THAT(watch.Sizes(), ElementsAre(3 * sizeof(double*)));
    EXPECT_THAT(watch.Outstanding(), IsEmpty());
}

TEST(AllocMatrix, LeavesTheRowTableAllocatedWithoutADataBlock)
{
    const AllocationWatch watch(2);
    EXPECT_EQ(nullptr, AllocMatrix(1, 2, 1, 5));
    EXPECT_THAT(watch.Outstanding(), ElementsAre(3 * sizeof(double*)));
}

// By hand: (1 2; 3 4; 5 6) (7 8 9; 10 11 12) = (27 30 33; 61 68 75; 95 106 117).
TEST(MatrixProducts, MultiplyRowsByColumns)
{
    TestMatrix a(3, 2, {1, 2, 3, 4, 5, 6});
    TestMatrix b(2, 3, {7, 8, 9, 10, 11, 12});
    TestMatrix product(3, 3, NOT_A_NUMBER);
    MultiplyMatrices(a, b, product, 3, 2, 3);
    EXPECT_THAT(product.Elements(), ElementsAre(27, 30, 33, 61, 68, 75, 95, 106, 117));
}

// (1 3 5; 2 4 6)^T (rows 1 3 5 are columns here): a^T b with a = (1 2; 3 4; 5 6), b = (1 0 2 1; 0 1 1 1; 1 1 0 1):
// row 1: 1+5, 3+5, 2+3, 9; row 2: 2+6, 4+6, 4+4, 12.
TEST(MatrixProducts, MultiplyTheTransposeFromTheLeft)
{
    TestMatrix a(3, 2, {1, 2, 3, 4, 5, 6});
    TestMatrix b(3, 4, {1, 0, 2, 1, 0, 1, 1, 1, 1, 1, 0, 1});
    TestMatrix product(2, 4, NOT_A_NUMBER);
    TransposeMultiply(a, b, product, 2, 3, 4);
    EXPECT_THAT(product.Elements(), ElementsAre(6, 8, 5, 9, 8, 10, 8, 12));
}

// a b^T: scalar products of the rows of (1 2 3; 4 5 6) with those of (1 0 2; 0 1 1; 2 2 2; 1 1 0).
TEST(MatrixProducts, MultiplyTheTransposeFromTheRight)
{
    TestMatrix a(2, 3, {1, 2, 3, 4, 5, 6});
    TestMatrix b(4, 3, {1, 0, 2, 0, 1, 1, 2, 2, 2, 1, 1, 0});
    TestMatrix product(2, 4, NOT_A_NUMBER);
    MultiplyByTranspose(a, b, product, 2, 3, 4);
    EXPECT_THAT(product.Elements(), ElementsAre(7, 5, 12, 3, 16, 11, 30, 9));
}

// A zero, of either sign and on either side, keeps NaN and infinity out of the sum: only 2 x 3 is left.
TEST(MatrixProducts, SkipTermsWithAZeroFactor)
{
    for (const double zero : {0.0, -0.0})
    {
        for (const double poison : {NOT_A_NUMBER, INFINITE})
        {
            TestMatrix left(1, 3, {zero, poison, 2});
            TestMatrix right(3, 1, {poison, zero, 3});
            TestMatrix product(1, 1, NOT_A_NUMBER);
            MultiplyMatrices(left, right, product, 1, 3, 1);
            EXPECT_THAT(product.Elements(), ElementsAre(6));

            TestMatrix leftColumn(3, 1, {zero, poison, 2});
            TransposeMultiply(leftColumn, right, product, 1, 3, 1);
            EXPECT_THAT(product.Elements(), ElementsAre(6));

            TestMatrix rightRow(1, 3, {poison, zero, 3});
            MultiplyByTranspose(left, rightRow, product, 1, 3, 1);
            EXPECT_THAT(product.Elements(), ElementsAre(6));
        }
    }
}

TEST(MatrixProducts, LetNaNThroughAgainstANonZeroFactor)
{
    TestMatrix left(1, 1, {NOT_A_NUMBER});
    TestMatrix right(1, 1, {2});
    TestMatrix product(1, 1, {0});
    MultiplyMatrices(left, right, product, 1, 1, 1);
    EXPECT_TRUE(std::isnan(product.Elements()[0]));
    TransposeMultiply(right, left, product, 1, 1, 1);
    EXPECT_TRUE(std::isnan(product.Elements()[0]));
    MultiplyByTranspose(left, right, product, 1, 1, 1);
    EXPECT_TRUE(std::isnan(product.Elements()[0]));
}

TEST(MatrixProducts, AnswerZeroWhereEveryTermIsSkipped)
{
    TestMatrix zero(2, 2, -0.0);
    TestMatrix other(2, 2, {1, 2, 3, 4});
    TestMatrix product(2, 2, NOT_A_NUMBER);
    MultiplyMatrices(zero, other, product, 2, 2, 2);
    for (const double element : product.Elements())
    {
        EXPECT_TRUE(SameBits(0.0, element));
    }
}

// Elements beyond a band are NaN here, and would show: a reaches one beside the diagonal, b has its diagonal only.
// (1 2 .; 3 4 5; . 6 7; . . 8) diag(10 100 1000): each column times its factor.
TEST(MatrixProducts, LookNoFartherThanTheBands)
{
    constexpr int32_t NEXT = 1;
    constexpr int32_t DIAGONAL = 0;
    const double x = NOT_A_NUMBER;
    TestMatrix a(4, 3, {1, 2, x, 3, 4, 5, x, 6, 7, x, x, 8});
    TestMatrix b(3, 3, {10, x, x, x, 100, x, x, x, 1000});
    TestMatrix product(4, 3, NOT_A_NUMBER);
    MultiplyMatrices(a, b, product, 4, 3, 3, NEXT, DIAGONAL);
    EXPECT_THAT(product.Elements(), ElementsAre(10, 200, 0, 30, 400, 5000, 0, 600, 7000, 0, 0, 8000));
}

// The band of a factor is its own: (1 .; . 2) (3 4; 5 6) = (3 4; 10 12), (3 4; 5 6) (1 .; . 2) = (3 8; 5 12).
TEST(MatrixProducts, TakeTheBandOfEachFactorForItself)
{
    TestMatrix diagonal(2, 2, {1, NOT_A_NUMBER, NOT_A_NUMBER, 2});
    TestMatrix full(2, 2, {3, 4, 5, 6});
    TestMatrix product(2, 2, NOT_A_NUMBER);
    MultiplyMatrices(diagonal, full, product, 2, 2, 2, 0);
    EXPECT_THAT(product.Elements(), ElementsAre(3, 4, 10, 12));
    MultiplyMatrices(full, diagonal, product, 2, 2, 2, FULL_BAND, 0);
    EXPECT_THAT(product.Elements(), ElementsAre(3, 8, 5, 12));
}

// Nine columns away from the diagonal: 2 x 5 in the corner.
TEST(MatrixProducts, WalkTheWholeOfAMatrixWithoutABand)
{
    std::vector<double> elements(100, 0.0);
    elements[9] = 2.0;
    TestMatrix a(10, 10, elements);
    elements[9] = 0.0;
    elements[90] = 5.0;
    TestMatrix b(10, 10, elements);
    TestMatrix product(10, 10, NOT_A_NUMBER);
    MultiplyMatrices(a, b, product, 10, 10, 10);
    EXPECT_EQ(10.0, product.Elements()[0]);
    MultiplyMatrices(a, b, product, 10, 10, 10, 8);
    EXPECT_EQ(0.0, product.Elements()[0]);
    MultiplyMatrices(a, b, product, 10, 10, 10, FULL_BAND, 8);
    EXPECT_EQ(0.0, product.Elements()[0]);
}

TEST(ClearRow, LeavesTheSpareElementAndWhatFollows)
{
    double row[] = {1.0, 2.0, 3.0, 4.0};
    ClearRow(row, 2);
    EXPECT_THAT(row, ElementsAre(1.0, 0.0, 0.0, 4.0));
}

TEST(AddMultiple, AddsToTheGivenElements)
{
    double target[] = {1.0, 2.0, 3.0, 4.0, 5.0};
    const double row[] = {NOT_A_NUMBER, NOT_A_NUMBER, 10.0, 100.0, NOT_A_NUMBER};
    AddMultiple(target, 0.5, row, 2, 3);
    EXPECT_THAT(target, ElementsAre(1.0, 2.0, 8.0, 54.0, 5.0));
    AddMultiple(target, 0.5, row, 3, 2);
    EXPECT_THAT(target, ElementsAre(1.0, 2.0, 8.0, 54.0, 5.0));
}

TEST(AddMultiple, SkipsFactorsOfZero)
{
    double target[] = {0.0, 1.0, 2.0};
    const double poison[] = {0.0, INFINITE, NOT_A_NUMBER};
    AddMultiple(target, 0.0, poison, 1, 2);
    AddMultiple(target, -0.0, poison, 1, 2);
    EXPECT_THAT(target, ElementsAre(0.0, 1.0, 2.0));
    const double zeros[] = {0.0, 0.0, -0.0};
    AddMultiple(target, INFINITE, zeros, 1, 2);
    EXPECT_THAT(target, ElementsAre(0.0, 1.0, 2.0));
}

TEST(CopyMatrix, CopiesTheGivenRowsAndColumnsOnly)
{
    TestMatrix source(2, 3, {1, 2, 3, 4, 5, 6});
    TestMatrix destination(2, 3, -1.0);
    CopyMatrix(source, destination, 1, 2);
    EXPECT_THAT(destination.Elements(), ElementsAre(1, 2, -1, -1, -1, -1));
    CopyMatrix(source, destination, 2, 3);
    EXPECT_THAT(destination.Elements(), ElementsAre(1, 2, 3, 4, 5, 6));
}

TEST(MatrixTimesVector, AddsTheTermsOfEachRow)
{
    TestMatrix m(2, 3, {1, 2, 3, 4, 5, 6});
    const double x[] = {NOT_A_NUMBER, 10.0, 100.0, 1000.0};
    double y[] = {-1.0, NOT_A_NUMBER, NOT_A_NUMBER};
    MatrixTimesVector(m, x, y, 2, 3);
    EXPECT_EQ(3210.0, y[1]);
    EXPECT_EQ(6540.0, y[2]);
    EXPECT_EQ(-1.0, y[0]) << "the spare element is nobody's";
}

TEST(MatrixTimesVector, MultipliesZerosLikeAnyFactor)
{
    TestMatrix m(2, 2, {0.0, 2.0, INFINITE, 2.0});
    const double x[] = {0.0, NOT_A_NUMBER, 1.0};
    double y[3] = {};
    MatrixTimesVector(m, x, y, 1, 2);
    EXPECT_TRUE(std::isnan(y[1]));
    const double zero[] = {0.0, 0.0, 1.0};
    MatrixTimesVector(m, zero, y, 2, 2);
    EXPECT_EQ(2.0, y[1]);
    EXPECT_TRUE(std::isnan(y[2]));
}

// (1 2; 3 4): scales 1/2 and 1/4; 0.5 against 0.75, so row 2 leads. Factors 3, 4, 1/3 and 2 - 4/3.
// (1 2 3) (2 1 0; 1 4 -1; 0 -1 8) (1 2 3)^T = (4 6 22) (1 2 3)^T.
TEST(QuadraticForm, TakesTheMatrixBetweenTheVector)
{
    TestMatrix m(3, 3, {2, 1, 0, 1, 4, -1, 0, -1, 8});
    const double x[] = {NOT_A_NUMBER, 1.0, 2.0, 3.0};
    EXPECT_EQ(82.0, QuadraticForm(m, x, 3));
    EXPECT_EQ(82.0, QuadraticForm(m, x, 3, 1));
}

// What stands beyond the band, contrary to the promise, shows how far it looked: 2 + 16 + 72.
TEST(QuadraticForm, LooksNoFartherThanTheBand)
{
    TestMatrix m(3, 3, {2, 1, 5, 1, 4, -1, 5, -1, 8});
    const double x[] = {NOT_A_NUMBER, 1.0, 2.0, 3.0};
    EXPECT_EQ(90.0, QuadraticForm(m, x, 3, 0));
    EXPECT_EQ(82.0, QuadraticForm(m, x, 3, 1));
    EXPECT_EQ(112.0, QuadraticForm(m, x, 3));
}

TEST(QuadraticForm, TakesTheWholeMatrixForWhatIsNotFinite)
{
    TestMatrix m(2, 2, {1, 0, 0, 1});
    const double infinite[] = {NOT_A_NUMBER, INFINITE, 1.0};
    EXPECT_TRUE(std::isnan(QuadraticForm(m, infinite, 2, 0)));
    const double large[] = {NOT_A_NUMBER, 1e200, 1.0};
    EXPECT_EQ(INFINITE, QuadraticForm(m, large, 2, 0));
}

TEST(LUDecompose, FactorsWithTheRowOfGreatestScaledMagnitudeFirst)
{
    TestMatrix a(2, 2, {1, 2, 3, 4});
    const Decomposition d = Decompose(a, 2);
    EXPECT_EQ(0, d.result);
    EXPECT_EQ(-1.0, d.parity);
    EXPECT_THAT(d.index, ElementsAre(2, 2));
    EXPECT_THAT(a.Elements(), ElementsAre(3.0, 4.0, 1.0 / 3.0, 2.0 - (1.0 / 3.0) * 4.0));
    EXPECT_THAT(d.reciprocals, ElementsAre(1.0 / 3.0, 1.0 / (2.0 - (1.0 / 3.0) * 4.0)));
}

TEST(LUDecompose, LeavesAMatrixInOrderUnpermuted)
{
    TestMatrix a(2, 2, {-3, 1, 1, 3}); // magnitudes 1 and 1/3, the sign does not count
    const Decomposition d = Decompose(a, 2);
    EXPECT_EQ(1.0, d.parity);
    EXPECT_THAT(d.index, ElementsAre(1, 2));
    EXPECT_THAT(a.Elements(), ElementsAre(-3.0, 1.0, -1.0 / 3.0, 3.0 + (1.0 / 3.0)));
}

// 1 of 1000 is little of its row, 0.5 of 1 is half of it.
TEST(LUDecompose, ComparesMagnitudesRelativeToTheirRows)
{
    TestMatrix a(2, 2, {1, 1000, 0.5, 1});
    EXPECT_THAT(Decompose(a, 2).index, ElementsAre(2, 2));
}

// The largest element of a row is its largest magnitude: -1000 scales like 1000.
TEST(LUDecompose, ScalesByTheLargestMagnitude)
{
    TestMatrix a(2, 2, {1, -1000, 0.5, 1});
    EXPECT_THAT(Decompose(a, 2).index, ElementsAre(2, 2));
}

// Each row is its own largest element away from 1; of equals the last is taken.
TEST(LUDecompose, TakesTheLaterRowOfATie)
{
    TestMatrix two(2, 2, {2, 1, 4, 3});
    EXPECT_THAT(Decompose(two, 2).index, ElementsAre(2, 2));
    TestMatrix three(3, 3, {1, 2, 3, 4, 2, 1, 8, 1, 5});
    EXPECT_EQ(3, Decompose(three, 3).index[0]);
}

// Row 3 leads (1 against 0 and 0). Row 1 goes to its place and takes its scale, 1/1000, along: in column 2 row 2 with
// 1/2 beats it. With row 3's own scale, 1, it would win.
TEST(LUDecompose, GivesTheExchangedRowItsOwnScale)
{
    TestMatrix a(3, 3, {0, 1, 1000, 0, 1, 2, 1, 0.1, 0.1});
    const Decomposition d = Decompose(a, 3);
    EXPECT_THAT(d.index, ElementsAre(3, 2, 3));
    EXPECT_EQ(-1.0, d.parity);
}

// 3/5 = 0.6 by division; 3 (1/5) would be 0.6000000000000001.
TEST(LUDecompose, DividesByThePivot)
{
    TestMatrix a(2, 2, {5, 1, 3, 100});
    Decompose(a, 2);
    EXPECT_TRUE(SameBits(0.6, a.Elements()[2]));
}

// Two equal rows are singular without a row of zeros: the last pivot, 1 - 1, becomes 1e-20.
TEST(LUDecompose, ReplacesAPivotOfZero)
{
    TestMatrix equalRows(2, 2, {1, 1, 1, 1});
    const Decomposition d = Decompose(equalRows, 2);
    EXPECT_EQ(0, d.result);
    EXPECT_THAT(d.index, ElementsAre(2, 2));
    EXPECT_THAT(equalRows.Elements(), ElementsAre(1.0, 1.0, 1.0, 1e-20));
    EXPECT_THAT(d.reciprocals, ElementsAre(1.0, 1.0 / 1e-20));

    // A column of zeros: both magnitudes are 0, equal to the best so far.
    TestMatrix zeroColumn(2, 2, {0, 1, 0, 2});
    EXPECT_THAT(Decompose(zeroColumn, 2).index, ElementsAre(2, 2));
    EXPECT_THAT(zeroColumn.Elements(), ElementsAre(1e-20, 2.0, 0.0, 1.0));
}

// The rows of P A, by the exchanges in order, equal L U.
TEST(LUDecompose, GivesFactorsWhoseProductIsThePermutedMatrix)
{
    const std::vector<double> elements = {2, -1, 4, 3, 8, 5, -7, 1, 0.5, 3, 9, -6, 4, 4, 1, 2};
    TestMatrix a(4, 4, elements);
    const Decomposition d = Decompose(a, 4);
    ASSERT_EQ(0, d.result);
    std::vector<double> permuted = elements;
    double parity = 1.0;
    for (size_t i = 0; i < 4; ++i)
    {
        const size_t exchanged = static_cast<size_t>(d.index[i]) - 1;
        parity = exchanged == i ? parity : -parity;
        for (size_t j = 0; exchanged != i && j < 4; ++j)
        {
            std::swap(permuted[4 * i + j], permuted[4 * exchanged + j]);
        }
    }
    EXPECT_EQ(parity, d.parity);
    const std::vector<double> lu = a.Elements();
    for (size_t i = 0; i < 4; ++i)
    {
        for (size_t j = 0; j < 4; ++j)
        {
            double sum = i <= j ? lu[4 * i + j] : 0.0;
            for (size_t k = 0; k < i && k <= j; ++k)
            {
                sum += lu[4 * i + k] * lu[4 * k + j];
            }
            EXPECT_NEAR(permuted[4 * i + j], sum, 1e-14) << i << ' ' << j;
        }
    }
}

TEST(LUDecompose, AnswersTwoWithoutMemoryAndChangesNothing)
{
    TestMatrix a(2, 2, {1, 2, 3, 4});
    const AllocationWatch watch(1);
    EXPECT_EQ(2, Decompose(a, 2).result);
    EXPECT_THAT(a.Elements(), ElementsAre(1, 2, 3, 4));
    EXPECT_THAT(watch.Sizes(), ElementsAre(3 * sizeof(double)));
}

TEST(LUDecompose, ReleasesItsScalesOnSuccess)
{
    TestMatrix a(2, 2, {1, 2, 3, 4});
    const AllocationWatch watch;
    EXPECT_EQ(0, Decompose(a, 2).result);
    EXPECT_THAT(watch.Outstanding(), IsEmpty());
}

TEST(LUDecompose, ReportsARowOfZerosAndLeavesItsScalesAllocated)
{
    TestMatrix a(3, 3, {1, 2, 3, 0, -0.0, 0, 4, 5, 6});
    const AllocationWatch watch;
    EXPECT_EQ(3, Decompose(a, 3).result);
    EXPECT_THAT(watch.Outstanding(), ElementsAre(4 * sizeof(double)));
}

// NaN is never greater, so that a row of nothing else has no magnitude; beside a number it does not matter.
TEST(LUDecompose, TakesARowOfNaNForARowOfZeros)
{
    TestMatrix all(2, 2, {1, 2, NOT_A_NUMBER, NOT_A_NUMBER});
    TestMatrix some(2, 2, {1, 2, NOT_A_NUMBER, 4});
    const AllocationWatch watch;
    EXPECT_EQ(3, Decompose(all, 2).result);
    EXPECT_EQ(0, Decompose(some, 2).result);
}

// L = (1; 2 1), U = (4 1; 5): the exchange makes (b2, b1) of b. For b = (9, 5): y = (5, 9 - 10), x2 = -1/5,
// x1 = (5 + 0.2) / 4. For b = (20, 4): y = (4, 12), x2 = 2.4, x1 = 0.4.
TEST(LUBackSubstitute, SolvesForEveryRowInPlace)
{
    TestMatrix lu(2, 2, {4, 1, 2, 5});
    TestMatrix b(2, 2, {9, 5, 20, 4});
    LUBackSubstitute(lu, b, 2, 2, PivotsOf(lu, {2, 2}).data());
    EXPECT_THAT(b.Elements(), ElementsAre(testing::DoubleEq(1.3), testing::DoubleEq(-0.2), testing::DoubleEq(0.4),
                                          testing::DoubleEq(2.4)));
}

TEST(LUBackSubstitute, SolvesForTheGivenRowsOnly)
{
    TestMatrix lu(2, 2, {4, 0, 0, 5});
    TestMatrix b(2, 2, {8, 15, 8, 15});
    LUBackSubstitute(lu, b, 2, 1, PivotsOf(lu, {1, 2}).data());
    EXPECT_THAT(b.Elements(), ElementsAre(2, 3, 8, 15));
}

TEST(LUBackSubstitute, DividesByThePivots)
{
    TestMatrix lu(2, 2, {4, 0, 0, 5});
    TestMatrix b(1, 2, {8, 3});
    const std::vector<Pivot> pivots = {{Divisor(NOT_A_NUMBER), -1}, {Divisor(16.0), 1}, {Divisor(5.0), 2}};
    LUBackSubstitute(lu, b, 2, 1, pivots.data());
    EXPECT_THAT(b.Elements(), ElementsAre(0.5, 0.6)); // 3 (1/5) would be 0.6000000000000001
}

TEST(LUBackSubstitute, AppliesTheExchangesInOrder)
{
    TestMatrix identity(3, 3, {1, 0, 0, 0, 1, 0, 0, 0, 1});
    TestMatrix b(1, 3, {10, 20, 30});
    // (30, 20, 10), then (30, 10, 20)
    LUBackSubstitute(identity, b, 3, 1, PivotsOf(identity, {3, 3, 3}).data());
    EXPECT_THAT(b.Elements(), ElementsAre(30, 10, 20));
}

// Column 1 of L is NaN below the diagonal: with a leading zero it is never looked at, with a leading one it is.
TEST(LUBackSubstitute, SkipsTheZerosInFront)
{
    TestMatrix lu(3, 3, {1, 0, 0, NOT_A_NUMBER, 1, 0, NOT_A_NUMBER, 2, 1});
    TestMatrix b(3, 3, {0, 5, 7, -0.0, 5, 7, 1, 0, 0});
    LUBackSubstitute(lu, b, 3, 3, PivotsOf(lu, {1, 2, 3}).data());
    for (size_t row = 0; row < 6; row += 3)
    {
        EXPECT_EQ(0.0, b.Elements()[row]);
        EXPECT_EQ(5.0, b.Elements()[row + 1]);
        EXPECT_EQ(-3.0, b.Elements()[row + 2]); // 7 - 2 x 5
    }
    EXPECT_TRUE(std::isnan(b.Elements()[7]));
}

// The zero is in front only after the exchange: b = (5, 0) with the rows exchanged begins with 0.
TEST(LUBackSubstitute, LooksForTheFirstNonZeroAfterItsExchange)
{
    TestMatrix lu(2, 2, {1, 0, NOT_A_NUMBER, 1});
    TestMatrix b(1, 2, {5, 0});
    LUBackSubstitute(lu, b, 2, 1, PivotsOf(lu, {2, 2}).data());
    EXPECT_THAT(b.Elements(), ElementsAre(0, 5));
}

// A zero after the first non-zero element is multiplied like any other.
TEST(LUBackSubstitute, DoesNotSkipLaterZeros)
{
    TestMatrix lu(3, 3, {1, 0, 0, 0, 1, 0, 0, NOT_A_NUMBER, 1});
    TestMatrix b(1, 3, {5, 0, 7});
    LUBackSubstitute(lu, b, 3, 1, PivotsOf(lu, {1, 2, 3}).data());
    EXPECT_TRUE(std::isnan(b.Elements()[2]));
}

TEST(IsNegligible, AcceptsMagnitudesUpToTheMachineEpsilon)
{
    TestMatrix small(2, 2, {EPSILON, -EPSILON, 0.0, -0.0});
    EXPECT_EQ(1, IsNegligible(small, 2, 2));
}

TEST(IsNegligible, RejectsAnyGreaterElement)
{
    const double greater = std::nextafter(EPSILON, 1.0);
    for (size_t place = 0; place < 4; ++place)
    {
        for (const double element : {greater, -greater, -1.0, NOT_A_NUMBER})
        {
            std::vector<double> elements(4, 0.0);
            elements[place] = element;
            TestMatrix m(2, 2, elements);
            EXPECT_EQ(0, IsNegligible(m, 2, 2)) << element << " at " << place;
        }
    }
}

TEST(IsNegligible, LooksAtTheGivenRowsAndColumnsOnly)
{
    TestMatrix m(2, 2, {0, 1, 1, 1});
    EXPECT_EQ(1, IsNegligible(m, 1, 1));
}

// (2 1 0; 1 3 1; 0 1 2) (1, -2, 3) = (0, -2, 4); (1, 1, 1) gives (3, 5, 3).
TEST(SolveLinearSystem, ReplacesTheRightHandSidesByTheSolutions)
{
    TestMatrix n(3, 3, {2, 1, 0, 1, 3, 1, 0, 1, 2});
    TestMatrix b(3, 2, {0, 3, -2, 5, 4, 3});
    const AllocationWatch watch;
    ASSERT_EQ(0, SolveLinearSystem(n, b, 3, 2));
    const double expected[] = {1, 1, -2, 1, 3, 1};
    for (size_t i = 0; i < 6; ++i)
    {
        EXPECT_NEAR(expected[i], b.Elements()[i], 1e-15);
    }
    EXPECT_THAT(watch.Outstanding(), IsEmpty());
}

TEST(SolveLinearSystem, LeavesTheFactorsInTheMatrix)
{
    TestMatrix n(2, 2, {1, 2, 3, 4});
    TestMatrix b(2, 1, {1, 1});
    ASSERT_EQ(0, SolveLinearSystem(n, b, 2, 1));
    EXPECT_THAT(n.Elements(), ElementsAre(3.0, 4.0, 1.0 / 3.0, 2.0 - (1.0 / 3.0) * 4.0));
}

// Two equal rows, right-hand side (1, 0): with the pivot 1e-20 the solution is (-1e20, 1e20), whose product with the
// matrix is 0, so that each pass finds the residual (-1, 0) and adds the same solution once more: 1 + 5 of them.
TEST(SolveLinearSystem, StopsAfterFivePasses)
{
    TestMatrix n(2, 2, {1, 1, 1, 1});
    TestMatrix b(2, 1, {1, 0});
    ASSERT_EQ(0, SolveLinearSystem(n, b, 2, 1));
    EXPECT_DOUBLE_EQ(-6e20, b.Elements()[0]);
    EXPECT_DOUBLE_EQ(6e20, b.Elements()[1]);
}

// The same with 1e-37: each correction is 1e-17, negligible, so that one pass is made and applied.
TEST(SolveLinearSystem, StopsAfterANegligibleCorrection)
{
    TestMatrix n(2, 2, {1, 1, 1, 1});
    TestMatrix b(2, 1, {1e-37, 0});
    ASSERT_EQ(0, SolveLinearSystem(n, b, 2, 1));
    EXPECT_DOUBLE_EQ(-2e-17, b.Elements()[0]);
    EXPECT_DOUBLE_EQ(2e-17, b.Elements()[1]);
}

// A correction of 1e-15 is not negligible: all five passes.
TEST(SolveLinearSystem, GoesOnAfterACorrectionThatIsNotNegligible)
{
    TestMatrix n(2, 2, {1, 1, 1, 1});
    TestMatrix b(2, 1, {1e-35, 0});
    ASSERT_EQ(0, SolveLinearSystem(n, b, 2, 1));
    EXPECT_DOUBLE_EQ(6e-15, b.Elements()[1]);
}

// Systems found by search, whose corrections stay above the epsilon and yet no longer change the solution.
TEST(SolveLinearSystem, StaysWithASolutionThatSettles)
{
    ExpectRepetition({1, 1}, {19, -9, -9, 42}, {-338, -984});
    ExpectRepetition({1, 2}, {45, -14, -14, 35}, {-106, -120});
    ExpectRepetition({1, 4}, {17, -9, -5, -9, 35, -4, -5, -4, 40}, {906, 951, 74});
}

// Found by search: the last bits go to and fro from one pass to the next, so that the number of passes left decides.
TEST(SolveLinearSystem, FollowsASolutionThatAlternates)
{
    ExpectRepetition({2, 2}, {16, -7, -7, 37}, {264, 104});
    ExpectRepetition({2, 3}, {17, 3, 3, 30}, {434, -872});
    ExpectRepetition({2, 4}, {17, 13, 13, 44}, {564, -321});
    ExpectRepetition({2, 5}, {25, -12, -12, 38}, {-885, -310});
    ExpectRepetition({2, 2}, {29, 10, -9, 10, 22, 2, -9, 2, 21}, {916, -45, -446});
    ExpectRepetition({2, 3}, {34, -9, -10, -9, 26, 6, -10, 6, 44}, {-47, -83, 738});
}

// Alone, the first right-hand side ends after one pass, from which its solution alternates; the second needs four, and
// four are then made of the first.
TEST(SolveLinearSystem, EndsWhenAllCorrectionsAreNegligibleInTheSamePass)
{
    const std::vector<double> n = {40, -13, -13, 23};
    const ReferenceSolution first = ExpectReferenceSolution(2, n, 1, {-5, -59});
    const ReferenceSolution second = ExpectReferenceSolution(2, n, 1, {42, 73});
    const ReferenceSolution both = ExpectReferenceSolution(2, n, 2, {-5, 42, -59, 73});
    EXPECT_EQ(1U + 1U, first.passes.size());
    EXPECT_EQ(1U + 4U, second.passes.size());
    EXPECT_EQ(1U + 4U, both.passes.size());
    EXPECT_EQ(2U, RepetitionOf(both, 2, 0).period);
    EXPECT_NE(first.passes.back(), Column(both.passes.back(), 2, 0));
    EXPECT_EQ(second.passes.back(), Column(both.passes.back(), 2, 1));
}

// Found by search: a solution alternates between a correction that is negligible and one that is not, so that only
// every other pass can be the last.
TEST(SolveLinearSystem, EndsInAPassWhoseCorrectionIsNegligibleEveryOtherTime)
{
    const auto passes = [](const std::vector<double>& n, const std::vector<double>& b) {
        return ExpectReferenceSolution(2, n, b.size() / 2, b).passes.size() - 1;
    };
    EXPECT_EQ(1U, passes({43, 13, 13, 22}, {-30, 16}));
    EXPECT_EQ(4U, passes({43, 13, 13, 22}, {44, 27}));
    EXPECT_EQ(4U, passes({43, 13, 13, 22}, {-30, 44, 16, 27}));
    EXPECT_EQ(1U, passes({22, -13, -13, 24}, {14, 2}));
    EXPECT_EQ(3U, passes({22, -13, -13, 24}, {9, -88}));
    EXPECT_EQ(4U, passes({22, -13, -13, 24}, {14, 9, 2, -88}));
    EXPECT_EQ(3U, passes({33, 14, 14, 35}, {-1, -66}));
    EXPECT_EQ(2U, passes({33, 14, 14, 35}, {31, -44}));
    EXPECT_EQ(5U, passes({33, 14, 14, 35}, {-1, 31, -66, -44}));
}

TEST(SolveLinearSystem, AgreesWithAllItsPassesForAnyRightHandSides)
{
    std::mt19937 random(20260301);
    Ways ways = {};
    for (int32_t run = 0; run < 6000 && !testing::Test::HasFailure(); ++run)
    {
        const size_t order = 3 + random() % 2;
        const size_t columns = 1 + random() % 4;
        const std::vector<double> n = NormalMatrix(order, random);
        const double size = std::pow(10.0, static_cast<double>(random() % 7) - 3.0);
        std::vector<double> b;
        for (size_t i = 0; i < order * columns; ++i)
        {
            b.push_back(random() % 8 == 0 ? 0.0 : size * Uniform(random));
        }
        Count(ExpectReferenceSolution(order, n, columns, b), columns, ways);
    }
    for (const int32_t count :
         {ways.settled, ways.alternatedOdd, ways.alternatedEven, ways.endedEarly, ways.endedRepetition})
    {
        EXPECT_GT(count, 20);
    }
}

// Zeros beside infinity and NaN: what the sums leave out decides what becomes of the solution.
TEST(SolveLinearSystem, AgreesWithAllItsPassesWhereNumbersAreNotFinite)
{
    const double values[] = {0.0, -0.0, 0.0, -0.0, 1.0, -2.0, 1e308, 0.0, -0.0, 0.0, INFINITE, NOT_A_NUMBER};
    std::mt19937 random(20261121);
    int32_t withFiniteElements = 0;
    for (int32_t run = 0; run < 20000 && !testing::Test::HasFailure(); ++run)
    {
        const size_t order = 2 + random() % 2;
        std::vector<double> n;
        std::vector<double> b;
        for (size_t i = 0; i < order * order; ++i)
        {
            const bool onDiagonal = i % (order + 1) == 0; // no row without magnitude
            n.push_back(onDiagonal ? (random() % 2 == 0 ? 4.0 : -4.0) : values[random() % 12]);
        }
        for (size_t i = 0; i < order; ++i)
        {
            b.push_back(values[random() % 12]);
        }
        const ReferenceSolution solution = ExpectReferenceSolution(order, n, 1, b);
        const std::vector<double>& x = solution.passes.back();
        const bool hasFinite = std::any_of(x.begin(), x.end(), [](double element) { return std::isfinite(element); });
        withFiniteElements += hasFinite ? 1 : 0;
    }
    EXPECT_GT(withFiniteElements, 2000);
}

TEST(SolveLinearSystem, ReportsARowOfZerosAndKeepsBothSides)
{
    TestMatrix n(2, 2, {1, 2, 0, 0});
    TestMatrix b(2, 1, {5, 6});
    const AllocationWatch watch;
    EXPECT_EQ(3, SolveLinearSystem(n, b, 2, 1));
    EXPECT_THAT(n.Elements(), ElementsAre(1, 2, 0, 0));
    EXPECT_THAT(b.Elements(), ElementsAre(5, 6));
    EXPECT_THAT(watch.Outstanding(), ElementsAre(3 * sizeof(double))) << "the scales of the decomposition";
}

// Scratch (a table and a data block), pivots, scales: four allocations, any of which may fail. A data block that fails
// leaves its row table.
TEST(SolveLinearSystem, AnswersTwoWhereverMemoryFails)
{
    for (size_t failing = 1; failing <= 4; ++failing)
    {
        TestMatrix n(2, 2, {1, 2, 3, 4});
        TestMatrix b(2, 1, {5, 6});
        const AllocationWatch watch(failing);
        EXPECT_EQ(2, SolveLinearSystem(n, b, 2, 1)) << failing;
        EXPECT_THAT(n.Elements(), ElementsAre(1, 2, 3, 4));
        EXPECT_THAT(b.Elements(), ElementsAre(5, 6));
        const bool isDataBlock = failing == 2;
        EXPECT_EQ(isDataBlock ? 1U : 0U, watch.Outstanding().size()) << failing;
    }
    TestMatrix n(2, 2, {1, 2, 3, 4});
    TestMatrix b(2, 1, {5, 6});
    const AllocationWatch watch(5);
    EXPECT_EQ(0, SolveLinearSystem(n, b, 2, 1));
    EXPECT_EQ(4U, watch.Sizes().size());
}

// (2 1; 1 1) and (1 -1; -1 2).
TEST(Invert, FormsTheInverse)
{
    TestMatrix n(2, 2, {2, 1, 1, 1});
    TestMatrix inverse(2, 2, NOT_A_NUMBER);
    const AllocationWatch watch;
    ASSERT_EQ(0, Invert(n, inverse, 2));
    EXPECT_THAT(inverse.Elements(), ElementsAre(1, -1, -1, 2));
    EXPECT_EQ(4U, watch.Sizes().size()) << "those of the solution, no others";
    EXPECT_THAT(watch.Outstanding(), IsEmpty());
}

// (0 4; 2 0): rows exchanged; the inverse (0 1/2; 1/4 0) is not symmetric.
TEST(Invert, LeavesTheFactorsInTheMatrix)
{
    TestMatrix n(2, 2, {0, 4, 2, 0});
    TestMatrix inverse(2, 2, NOT_A_NUMBER);
    ASSERT_EQ(0, Invert(n, inverse, 2));
    EXPECT_THAT(n.Elements(), ElementsAre(2, 0, 0, 4));
    EXPECT_THAT(inverse.Elements(), ElementsAre(0, 0.5, 0.25, 0));
}

TEST(Invert, AgreesWithAllThePassesOfTheSolution)
{
    std::mt19937 random(20260302);
    Ways ways = {};
    for (int32_t run = 0; run < 2000 && !testing::Test::HasFailure(); ++run)
    {
        const size_t order = 3 + random() % 2;
        const std::vector<double> n = NormalMatrix(order, random);
        const ReferenceSolution reference = SolveByReference(order, n, order, UnitMatrix(order));
        const auto rows = static_cast<int32_t>(order);
        TestMatrix matrix(rows, rows, n);
        TestMatrix inverse(rows, rows, NOT_A_NUMBER);
        EXPECT_EQ(0, Invert(matrix, inverse, rows));
        ExpectSameElements(reference.passes.back(), inverse.Elements());
        ExpectSameElements(reference.factors, matrix.Elements());
        Count(reference, order, ways);
    }
    for (const int32_t count :
         {ways.settled, ways.alternatedOdd, ways.alternatedEven, ways.endedEarly, ways.endedRepetition})
    {
        EXPECT_GT(count, 20);
    }
}

TEST(Invert, FailsAsTheSolutionDoes)
{
    TestMatrix inverse(2, 2, NOT_A_NUMBER);
    TestMatrix zeroRow(2, 2, {1, 2, 0, 0});
    {
        const AllocationWatch watch;
        EXPECT_EQ(3, Invert(zeroRow, inverse, 2));
        EXPECT_THAT(watch.Outstanding(), ElementsAre(3 * sizeof(double))) << "the scales of the decomposition";
    }
    EXPECT_THAT(zeroRow.Elements(), ElementsAre(1, 2, 0, 0));
    for (size_t failing = 1; failing <= 4; ++failing)
    {
        TestMatrix n(2, 2, {2, 1, 1, 1});
        const AllocationWatch watch(failing);
        EXPECT_EQ(2, Invert(n, inverse, 2)) << failing;
        EXPECT_THAT(n.Elements(), ElementsAre(2, 1, 1, 1));
    }
}

// A = (1 0; 0 1; 1 1) and P = (2 1 0; 1 3 0; 0 0 1): A^T P A = (3 2; 2 4), its inverse (4 -2; -2 3) / 8.
TEST(InvertNormalMatrix, InvertsTheWeightedNormalMatrix)
{
    TestMatrix design(3, 2, {1, 0, 0, 1, 1, 1});
    TestMatrix weights(3, 3, {2, 1, 0, 1, 3, 0, 0, 0, 1});
    TestMatrix cofactors(2, 2, NOT_A_NUMBER);
    const AllocationWatch watch;
    ASSERT_EQ(0, InvertNormalMatrix(design, weights, cofactors, 3, 2));
    const double expected[] = {0.5, -0.25, -0.25, 0.375};
    for (size_t i = 0; i < 4; ++i)
    {
        EXPECT_NEAR(expected[i], cofactors.Elements()[i], 1e-15);
    }
    EXPECT_THAT(watch.Outstanding(), IsEmpty());
    EXPECT_THAT(design.Elements(), ElementsAre(1, 0, 0, 1, 1, 1));
    EXPECT_THAT(weights.Elements(), ElementsAre(2, 1, 0, 1, 3, 0, 0, 0, 1));
}

// Weights that are not symmetric tell A^T P A from A^T P^T A: (1 2; 0 1) + (1 1; 1 1) = (2 3; 1 2), determinant 1.
TEST(InvertNormalMatrix, MultipliesTheWeightsFromTheLeft)
{
    TestMatrix design(3, 2, {1, 0, 0, 1, 1, 1});
    TestMatrix weights(3, 3, {1, 2, 0, 0, 1, 0, 0, 0, 1});
    TestMatrix cofactors(2, 2, NOT_A_NUMBER);
    ASSERT_EQ(0, InvertNormalMatrix(design, weights, cofactors, 3, 2));
    const double expected[] = {2, -3, -1, 2};
    for (size_t i = 0; i < 4; ++i)
    {
        EXPECT_NEAR(expected[i], cofactors.Elements()[i], 1e-14);
    }
}

// A = (1 0; 0 1; 1 1) and P = diag(2 3 1), beyond whose diagonal nothing is looked at: A^T P A = (3 1; 1 4), its
// inverse (4 -1; -1 3) / 11.
TEST(InvertNormalMatrix, LooksNoFartherThanTheBandOfTheWeights)
{
    const double x = NOT_A_NUMBER;
    TestMatrix design(3, 2, {1, 0, 0, 1, 1, 1});
    TestMatrix weights(3, 3, {2, x, x, x, 3, x, x, x, 1});
    TestMatrix cofactors(2, 2, NOT_A_NUMBER);
    ASSERT_EQ(0, InvertNormalMatrix(design, weights, cofactors, 3, 2, 0));
    const double expected[] = {4.0 / 11.0, -1.0 / 11.0, -1.0 / 11.0, 3.0 / 11.0};
    for (size_t i = 0; i < 4; ++i)
    {
        EXPECT_NEAR(expected[i], cofactors.Elements()[i], 1e-15);
    }
}

TEST(InvertNormalMatrix, ReportsAnUnknownThatNothingDetermines)
{
    TestMatrix design(2, 2, {1, 0, 1, 0});
    TestMatrix weights(2, 2, {1, 0, 0, 1});
    TestMatrix cofactors(2, 2, NOT_A_NUMBER);
    const AllocationWatch watch;
    EXPECT_EQ(3, InvertNormalMatrix(design, weights, cofactors, 2, 2));
    EXPECT_THAT(watch.Outstanding(), ElementsAre(3 * sizeof(double))) << "the scales of the decomposition";
}

// Two matrices of its own before the four allocations of the solution.
TEST(InvertNormalMatrix, AnswersTwoWhereverMemoryFails)
{
    for (size_t failing = 1; failing <= 8; ++failing)
    {
        TestMatrix design(3, 2, {1, 0, 0, 1, 1, 1});
        TestMatrix weights(3, 3, {2, 1, 0, 1, 3, 0, 0, 0, 1});
        TestMatrix cofactors(2, 2, 0.0);
        const AllocationWatch watch(failing);
        EXPECT_EQ(2, InvertNormalMatrix(design, weights, cofactors, 3, 2)) << failing;
        const bool isDataBlock = failing % 2 == 0 && failing <= 6;
        EXPECT_EQ(isDataBlock ? 1U : 0U, watch.Outstanding().size()) << failing;
    }
}
