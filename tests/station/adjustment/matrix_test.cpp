#include "station/adjustment/matrix.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/station/adjustment/test_matrix.h"
#include "tests/station/allocation_watch.h"
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

// What LUDecompose makes of a matrix.
struct Decomposition
{
    int32_t result;
    double parity;
    std::vector<int32_t> index;
};

Decomposition Decompose(TestMatrix& a, int32_t order)
{
    Decomposition d = {-1, 0.0, std::vector<int32_t>(static_cast<size_t>(order) + 1, -1)};
    d.result = LUDecompose(a, order, d.index.data(), &d.parity);
    d.index.erase(d.index.begin());
    return d;
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

TEST(SubtractMatrices, MayWriteIntoEitherOperand)
{
    TestMatrix a(2, 3, {1, 2, 3, 4, 5, 6});
    TestMatrix b(2, 3, {6, 4, 2, 1, 3, 5});
    TestMatrix difference(2, 3, NOT_A_NUMBER);
    SubtractMatrices(a, b, difference, 2, 3);
    EXPECT_THAT(difference.Elements(), ElementsAre(-5, -2, 1, 3, 2, 1));
    SubtractMatrices(a, b, b, 2, 3);
    EXPECT_THAT(b.Elements(), ElementsAre(-5, -2, 1, 3, 2, 1));
    SubtractMatrices(a, b, a, 2, 3);
    EXPECT_THAT(a.Elements(), ElementsAre(6, 4, 2, 1, 3, 5));
}

TEST(ClearRow, LeavesTheSpareElementAndWhatFollows)
{
    double row[] = {1.0, 2.0, 3.0, 4.0};
    ClearRow(row, 2);
    EXPECT_THAT(row, ElementsAre(1.0, 0.0, 0.0, 4.0));
}

TEST(ClearMatrix, ClearsTheGivenRowsAndColumnsOnly)
{
    TestMatrix m(3, 3, {1, 2, 3, 4, 5, 6, 7, 8, 9});
    ClearMatrix(m, 2, 1);
    EXPECT_THAT(m.Elements(), ElementsAre(0, 2, 3, 0, 5, 6, 7, 8, 9));
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
TEST(LUDecompose, FactorsWithTheRowOfGreatestScaledMagnitudeFirst)
{
    TestMatrix a(2, 2, {1, 2, 3, 4});
    const Decomposition d = Decompose(a, 2);
    EXPECT_EQ(0, d.result);
    EXPECT_EQ(-1.0, d.parity);
    EXPECT_THAT(d.index, ElementsAre(2, 2));
    EXPECT_THAT(a.Elements(), ElementsAre(3.0, 4.0, 1.0 / 3.0, 2.0 - (1.0 / 3.0) * 4.0));
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
TEST(LUBackSubstitute, SolvesEveryColumnInPlace)
{
    TestMatrix lu(2, 2, {4, 1, 2, 5});
    TestMatrix b(2, 2, {9, 20, 5, 4});
    const int32_t index[] = {0, 2, 2};
    LUBackSubstitute(lu, b, 2, 2, index);
    EXPECT_THAT(b.Elements(), ElementsAre(testing::DoubleEq(1.3), testing::DoubleEq(0.4), testing::DoubleEq(-0.2),
                                          testing::DoubleEq(2.4)));
}

TEST(LUBackSubstitute, AppliesTheExchangesInOrder)
{
    TestMatrix identity(3, 3, {1, 0, 0, 0, 1, 0, 0, 0, 1});
    TestMatrix b(3, 1, {10, 20, 30});
    const int32_t index[] = {0, 3, 3, 3}; // (30, 20, 10), then (30, 10, 20)
    LUBackSubstitute(identity, b, 3, 1, index);
    EXPECT_THAT(b.Elements(), ElementsAre(30, 10, 20));
}

// Column 1 of L is NaN below the diagonal: with a leading zero it is never looked at, with a leading one it is.
TEST(LUBackSubstitute, SkipsTheZerosInFront)
{
    TestMatrix lu(3, 3, {1, 0, 0, NOT_A_NUMBER, 1, 0, NOT_A_NUMBER, 2, 1});
    TestMatrix b(3, 2, {0, 1, 5, 0, 7, 0});
    const int32_t index[] = {0, 1, 2, 3};
    LUBackSubstitute(lu, b, 3, 2, index);
    EXPECT_EQ(0.0, b.Elements()[0]);
    EXPECT_EQ(5.0, b.Elements()[2]);
    EXPECT_EQ(-3.0, b.Elements()[4]); // 7 - 2 x 5
    EXPECT_TRUE(std::isnan(b.Elements()[3]));
}

// The zero is in front only after the exchange: b = (5, 0) with the rows exchanged begins with 0.
TEST(LUBackSubstitute, LooksForTheFirstNonZeroAfterItsExchange)
{
    TestMatrix lu(2, 2, {1, 0, NOT_A_NUMBER, 1});
    TestMatrix b(2, 1, {5, 0});
    const int32_t index[] = {0, 2, 2};
    LUBackSubstitute(lu, b, 2, 1, index);
    EXPECT_THAT(b.Elements(), ElementsAre(0, 5));
}

// A zero after the first non-zero element is multiplied like any other.
TEST(LUBackSubstitute, DoesNotSkipLaterZeros)
{
    TestMatrix lu(3, 3, {1, 0, 0, 0, 1, 0, 0, NOT_A_NUMBER, 1});
    TestMatrix b(3, 1, {5, 0, 7});
    const int32_t index[] = {0, 1, 2, 3};
    LUBackSubstitute(lu, b, 3, 1, index);
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

// Both together: alone, the first right-hand side would end after one pass, with 2e-17; the second needs all five.
TEST(SolveLinearSystem, EndsWhenAllCorrectionsAreNegligible)
{
    TestMatrix n(2, 2, {1, 1, 1, 1});
    TestMatrix b(2, 2, {1e-37, 1e-35, 0, 0});
    ASSERT_EQ(0, SolveLinearSystem(n, b, 2, 2));
    EXPECT_DOUBLE_EQ(6e-17, b.Elements()[2]);
    EXPECT_DOUBLE_EQ(6e-15, b.Elements()[3]);
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

// Factors, solution, residual (a table and a data block each), index vector, scales: eight allocations, any of which
// may fail. A data block that fails leaves its row table.
TEST(SolveLinearSystem, AnswersTwoWhereverMemoryFails)
{
    for (size_t failing = 1; failing <= 8; ++failing)
    {
        TestMatrix n(2, 2, {1, 2, 3, 4});
        TestMatrix b(2, 1, {5, 6});
        const AllocationWatch watch(failing);
        EXPECT_EQ(2, SolveLinearSystem(n, b, 2, 1)) << failing;
        EXPECT_THAT(n.Elements(), ElementsAre(1, 2, 3, 4));
        EXPECT_THAT(b.Elements(), ElementsAre(5, 6));
        const bool isDataBlock = failing == 2 || failing == 4 || failing == 6;
        EXPECT_EQ(isDataBlock ? 1U : 0U, watch.Outstanding().size()) << failing;
    }
    TestMatrix n(2, 2, {1, 2, 3, 4});
    TestMatrix b(2, 1, {5, 6});
    const AllocationWatch watch(9);
    EXPECT_EQ(0, SolveLinearSystem(n, b, 2, 1));
    EXPECT_EQ(8U, watch.Sizes().size());
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

TEST(InvertNormalMatrix, ReportsAnUnknownThatNothingDetermines)
{
    TestMatrix design(2, 2, {1, 0, 1, 0});
    TestMatrix weights(2, 2, {1, 0, 0, 1});
    TestMatrix cofactors(2, 2, NOT_A_NUMBER);
    const AllocationWatch watch;
    EXPECT_EQ(3, InvertNormalMatrix(design, weights, cofactors, 2, 2));
    EXPECT_THAT(watch.Outstanding(), ElementsAre(3 * sizeof(double))) << "the scales of the decomposition";
}

// Two matrices of its own before the eight allocations of the solution.
TEST(InvertNormalMatrix, AnswersTwoWhereverMemoryFails)
{
    for (size_t failing = 1; failing <= 12; ++failing)
    {
        TestMatrix design(3, 2, {1, 0, 0, 1, 1, 1});
        TestMatrix weights(3, 3, {2, 1, 0, 1, 3, 0, 0, 0, 1});
        TestMatrix cofactors(2, 2, 0.0);
        const AllocationWatch watch(failing);
        EXPECT_EQ(2, InvertNormalMatrix(design, weights, cofactors, 3, 2)) << failing;
        const bool isDataBlock = failing % 2 == 0 && failing <= 10;
        EXPECT_EQ(isDataBlock ? 1U : 0U, watch.Outstanding().size()) << failing;
    }
}
