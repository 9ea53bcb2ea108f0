#include "station/matrix.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <utility>

#include "core/real_bits.h"
#include "core/soft_arithmetic.h"

namespace qstdlib {

namespace {

// Stands for a pivot of zero, so that the elimination goes on; the solution is then very large.
constexpr double TINY_PIVOT = 1e-20;

constexpr int32_t REFINEMENT_PASSES = 5;

// Memory for `count` elements behind a spare one, or null. A size that the platform cannot express is not to be had.
template <typename Element>
Element* AllocBehindSpare(size_t count)
{
    if (count >= std::numeric_limits<size_t>::max() / sizeof(Element))
    {
        return nullptr;
    }
    return static_cast<Element*>(std::malloc((count + 1) * sizeof(Element)));
}

double* AllocBlock(size_t rows, size_t columns)
{
    if (columns != 0 && rows > std::numeric_limits<size_t>::max() / columns)
    {
        return nullptr;
    }
    return AllocBehindSpare<double>(rows * columns);
}

void SubtractRow(const double* a, const double* b, double* difference, int32_t columns)
{
    for (int32_t j = 1; j <= columns; ++j)
    {
        difference[j] = a[j] - b[j];
    }
}

// The sum of the products of two rows' elements, those with a factor of zero left out.
double SumOfNonZero(const double* a, const double* b, int32_t length)
{
    double sum = 0.0;
    for (int32_t k = 1; k <= length; ++k)
    {
        if (!IsZero(a[k]) && !IsZero(b[k]))
        {
            sum += a[k] * b[k];
        }
    }
    return sum;
}

// Reciprocal of each row's largest magnitude; false when a row has none above zero.
bool ScaleRows(Matrix a, int32_t order, double* scale)
{
    for (int32_t i = 1; i <= order; ++i)
    {
        uint64_t largest = 0;
        for (int32_t j = 1; j <= order; ++j)
        {
            const uint64_t magnitude = MagnitudeBits(a[i][j]);
            if (magnitude > largest && magnitude <= INFINITY_BITS)
            {
                largest = magnitude;
            }
        }
        if (largest == 0)
        {
            return false;
        }
        scale[i] = Divisor(FromBits(largest)).Into(1.0);
    }
    return true;
}

// a[i][j] less the products of the first `terms` factors already found in its row and column.
double ReducedElement(Matrix a, int32_t i, int32_t j, int32_t terms)
{
    double sum = a[i][j];
    for (int32_t k = 1; k <= terms; ++k)
    {
        sum -= a[i][k] * a[k][j];
    }
    return sum;
}

// Forms column j of the factors, undivided; returns the row with the greatest scaled magnitude from the diagonal down.
int32_t EliminateColumn(Matrix a, int32_t order, int32_t j, const double* scale)
{
    for (int32_t i = 1; i < j; ++i)
    {
        a[i][j] = ReducedElement(a, i, j, i - 1);
    }
    uint64_t greatest = 0;
    int32_t pivotRow = j;
    for (int32_t i = j; i <= order; ++i)
    {
        const double sum = ReducedElement(a, i, j, j - 1);
        a[i][j] = sum;
        const uint64_t magnitude = MagnitudeBits(scale[i] * sum);
        if (magnitude >= greatest && magnitude <= INFINITY_BITS)
        {
            greatest = magnitude;
            pivotRow = i;
        }
    }
    return pivotRow;
}

void SwapRows(Matrix a, int32_t order, int32_t first, int32_t second)
{
    for (int32_t k = 1; k <= order; ++k)
    {
        const double element = a[first][k];
        a[first][k] = a[second][k];
        a[second][k] = element;
    }
}

// A number less the products of the elements from `first` to `last` of two rows.
double LessProducts(double sum, const double* a, const double* b, int32_t first, int32_t last)
{
    for (int32_t j = first; j <= last; ++j)
    {
        sum -= a[j] * b[j];
    }
    return sum;
}

// Solves for one right-hand side in place. The forward sums begin at the first element that is not zero.
void Substitute(Matrix lu, double* b, int32_t order, const Pivot* pivots)
{
    int32_t first = order;
    for (int32_t i = 1; i <= order; ++i)
    {
        const int32_t exchanged = pivots[i].row;
        const double sum = b[exchanged];
        b[exchanged] = b[i];
        b[i] = sum;
        if (i > first)
        {
            b[i] = LessProducts(sum, lu[i], b, first, i - 1);
        }
        else if (!IsZero(sum))
        {
            first = i;
        }
    }
    for (int32_t i = order; i >= 1; --i)
    {
        b[i] = pivots[i].divisor.Into(LessProducts(b[i], lu[i], b, i + 1, order));
    }
}

// A linear system, decomposed.
struct System
{
    Matrix matrix;
    Matrix factors;
    Pivot* pivots;
    int32_t order;
};

// Rows of the refinement's scratch. The solutions of all right-hand sides follow, then the factors.
enum WorkRow : int32_t
{
    RIGHT_SIDE = 1,
    CORRECTION,
    SOLUTION,
    BEFORE,  // the solution before the latest correction
    EARLIER, // the one before that
    FIRST_RESULT
};

// The matrix whose first row is this one.
Matrix FromRow(Matrix m, int32_t row)
{
    return m + (row - 1);
}

bool AreSame(const double* a, const double* b, int32_t length)
{
    int32_t i = 1;
    while (i <= length && BitsOf(a[i]) == BitsOf(b[i]))
    {
        ++i;
    }
    return i > length;
}

// The solution becomes the one before, with its row free for the next.
void MakeRoomForSolution(Matrix work)
{
    double* const freeRow = work[EARLIER];
    work[EARLIER] = work[BEFORE];
    work[BEFORE] = work[SOLUTION];
    work[SOLUTION] = freeRow;
}

// The residual: the product of matrix and solution less the right-hand side.
void FormResidual(const System& system, const double* solution, const double* rightSide, double* difference)
{
    for (int32_t i = 1; i <= system.order; ++i)
    {
        difference[i] = SumOfNonZero(system.matrix[i], solution, system.order) - rightSide[i];
    }
}

// Solves for the right-hand side in the scratch, with so many passes of refinement. Returns in which of them the
// correction was negligible: bit 1 for the first.
//
// Corrections of about the last bit make the solution repeat itself, in every pass or in every other one. From then on
// the passes are known without being made.
uint32_t Refine(const System& system, int32_t passes, Matrix work)
{
    const int32_t order = system.order;
    const Matrix correction = FromRow(work, CORRECTION);
    const Matrix solution = FromRow(work, SOLUTION);
    CopyMatrix(FromRow(work, RIGHT_SIDE), solution, 1, order);
    LUBackSubstitute(system.factors, solution, order, 1, system.pivots);
    uint32_t negligible = 0;
    int32_t period = 0;
    int32_t pass = 1;
    for (; pass <= passes && period == 0; ++pass)
    {
        FormResidual(system, work[SOLUTION], work[RIGHT_SIDE], work[CORRECTION]);
        LUBackSubstitute(system.factors, correction, order, 1, system.pivots);
        MakeRoomForSolution(work);
        SubtractRow(work[BEFORE], work[CORRECTION], work[SOLUTION], order);
        negligible |= static_cast<uint32_t>(IsNegligible(correction, 1, order)) << static_cast<uint32_t>(pass);
        if (AreSame(work[SOLUTION], work[BEFORE], order))
        {
            period = 1;
        }
        else if (pass > 1 && AreSame(work[SOLUTION], work[EARLIER], order))
        {
            period = 2;
        }
    }
    if (period == 2 && (passes - pass) % 2 == 0)
    {
        std::swap(work[SOLUTION], work[BEFORE]);
    }
    for (; pass <= passes; ++pass)
    {
        negligible |= ((negligible >> static_cast<uint32_t>(pass - period)) & 1U) << static_cast<uint32_t>(pass);
    }
    return negligible;
}

// Solves for every column of b by so many passes; the solutions become rows of the scratch. Returns in which of the
// passes all corrections were negligible.
uint32_t SolveInPasses(const System& system, Matrix b, int32_t columns, int32_t passes, Matrix work)
{
    uint32_t negligible = ~0U;
    for (int32_t j = 1; j <= columns; ++j)
    {
        for (int32_t i = 1; i <= system.order; ++i)
        {
            work[RIGHT_SIDE][i] = b[i][j];
        }
        negligible &= Refine(system, passes, work);
        std::swap(work[SOLUTION], work[FIRST_RESULT + j - 1]);
    }
    return negligible;
}

// The work of SolveLinearSystem on its scratch; writes n and b on success only.
int32_t SolveRefined(Matrix n, Matrix b, int32_t columns, const System& system, Matrix work)
{
    const int32_t order = system.order;
    CopyMatrix(n, system.factors, order, order);
    double parity = 0.0;
    const int32_t result = LUDecompose(system.factors, order, system.pivots, &parity);
    if (result != 0)
    {
        return result;
    }
    // The passes end for all columns together, with the first in which all corrections are negligible.
    const uint32_t negligible = SolveInPasses(system, b, columns, REFINEMENT_PASSES, work);
    for (int32_t pass = 1; pass < REFINEMENT_PASSES; ++pass)
    {
        if (((negligible >> static_cast<uint32_t>(pass)) & 1U) != 0)
        {
            SolveInPasses(system, b, columns, pass, work);
            break;
        }
    }
    CopyMatrix(system.factors, n, order, order);
    for (int32_t i = 1; i <= order; ++i)
    {
        for (int32_t j = 1; j <= columns; ++j)
        {
            b[i][j] = work[FIRST_RESULT + j - 1][i];
        }
    }
    return 0;
}

} // namespace

// The analyser cannot follow pointers that are indexed from 1.
// NOLINTBEGIN(clang-analyzer-unix.Malloc,clang-analyzer-core.UndefinedBinaryOperatorResult)

double* AllocVector(int32_t length)
{
    return AllocBehindSpare<double>(static_cast<size_t>(length));
}

Matrix AllocMatrix(int32_t lowestRow, int32_t highestRow, int32_t lowestColumn, int32_t highestColumn)
{
    const int32_t rows = highestRow - lowestRow + 1;
    const int32_t columns = highestColumn - lowestColumn + 1;
    double** const table = AllocBehindSpare<double*>(static_cast<size_t>(rows));
    if (table == nullptr)
    {
        return nullptr;
    }
    double* const data = AllocBlock(static_cast<size_t>(rows), static_cast<size_t>(columns));
    if (data == nullptr)
    {
        return nullptr; // the table stays allocated
    }
    const Matrix matrix = table + 1 - lowestRow;
    double* row = data + 1 - lowestColumn;
    for (int32_t i = lowestRow; i <= highestRow; ++i)
    {
        matrix[i] = row;
        row += columns;
    }
    return matrix;
}

void FreeMatrix(Matrix matrix, int32_t lowestRow, int32_t lowestColumn)
{
    if (matrix != nullptr)
    {
        std::free(matrix[lowestRow] + lowestColumn - 1);
        std::free(matrix + lowestRow - 1);
    }
}

// NOLINTEND(clang-analyzer-unix.Malloc,clang-analyzer-core.UndefinedBinaryOperatorResult)

void ClearRow(double* row, int32_t columns)
{
    for (int32_t j = 1; j <= columns; ++j)
    {
        row[j] = 0.0;
    }
}

void AddMultiple(double* target, double factor, const double* row, int32_t first, int32_t last)
{
    if (IsZero(factor))
    {
        return;
    }
    for (int32_t j = first; j <= last; ++j)
    {
        if (!IsZero(row[j]))
        {
            target[j] += factor * row[j];
        }
    }
}

void MultiplyMatrices(Matrix a, Matrix b, Matrix product, int32_t rows, int32_t inner, int32_t columns, int32_t aBand,
                      int32_t bBand)
{
    for (int32_t i = 1; i <= rows; ++i)
    {
        ClearRow(product[i], columns);
        const int32_t last = std::min<int32_t>(inner, i + aBand);
        for (int32_t k = std::max<int32_t>(1, i - aBand); k <= last; ++k)
        {
            AddMultiple(product[i], a[i][k], b[k], std::max<int32_t>(1, k - bBand),
                        std::min<int32_t>(columns, k + bBand));
        }
    }
}

void TransposeMultiply(Matrix a, Matrix b, Matrix product, int32_t rows, int32_t inner, int32_t columns)
{
    for (int32_t i = 1; i <= rows; ++i)
    {
        ClearRow(product[i], columns);
        for (int32_t k = 1; k <= inner; ++k)
        {
            AddMultiple(product[i], a[k][i], b[k], 1, columns);
        }
    }
}

void MultiplyByTranspose(Matrix a, Matrix b, Matrix product, int32_t rows, int32_t inner, int32_t columns)
{
    for (int32_t i = 1; i <= rows; ++i)
    {
        for (int32_t j = 1; j <= columns; ++j)
        {
            product[i][j] = SumOfNonZero(a[i], b[j], inner);
        }
    }
}

void CopyMatrix(Matrix source, Matrix destination, int32_t rows, int32_t columns)
{
    for (int32_t i = 1; i <= rows; ++i)
    {
        for (int32_t j = 1; j <= columns; ++j)
        {
            destination[i][j] = source[i][j];
        }
    }
}

void MatrixTimesVector(Matrix m, const double* x, double* y, int32_t rows, int32_t columns)
{
    for (int32_t i = 1; i <= rows; ++i)
    {
        double sum = 0.0;
        for (int32_t j = 1; j <= columns; ++j)
        {
            sum += m[i][j] * x[j];
        }
        y[i] = sum;
    }
}

double QuadraticForm(Matrix m, const double* x, int32_t order, int32_t band)
{
    double form = 0.0;
    for (int32_t j = 1; j <= order; ++j)
    {
        double sum = 0.0;
        const int32_t last = std::min<int32_t>(order, j + band);
        for (int32_t i = std::max<int32_t>(1, j - band); i <= last; ++i)
        {
            sum += m[j][i] * x[i];
        }
        form += sum * x[j];
    }
    return IsFinite(form) || band == FULL_BAND ? form : QuadraticForm(m, x, order, FULL_BAND);
}

int32_t LUDecompose(Matrix a, int32_t order, Pivot* pivots, double* parity)
{
    double* const scale = AllocVector(order);
    if (scale == nullptr)
    {
        return ADJUST_NO_MEMORY;
    }
    *parity = 1.0;
    if (!ScaleRows(a, order, scale))
    {
        return ADJUST_DEGENERATE; // the scales stay allocated
    }
    for (int32_t j = 1; j <= order; ++j)
    {
        const int32_t pivotRow = EliminateColumn(a, order, j, scale);
        if (pivotRow != j)
        {
            SwapRows(a, order, pivotRow, j);
            *parity = -*parity;
            scale[pivotRow] = scale[j]; // row j is done with: its own scale is not needed again
        }
        if (IsZero(a[j][j]))
        {
            a[j][j] = TINY_PIVOT;
        }
        pivots[j] = {Divisor(a[j][j]), pivotRow};
        for (int32_t i = j + 1; i <= order; ++i)
        {
            a[i][j] = pivots[j].divisor.Into(a[i][j]);
        }
    }
    std::free(scale);
    return 0;
}

void LUBackSubstitute(Matrix lu, Matrix b, int32_t order, int32_t rightSides, const Pivot* pivots)
{
    for (int32_t i = 1; i <= rightSides; ++i)
    {
        Substitute(lu, b[i], order, pivots);
    }
}

int32_t IsNegligible(Matrix m, int32_t rows, int32_t columns)
{
    for (int32_t i = 1; i <= rows; ++i)
    {
        for (int32_t j = 1; j <= columns; ++j)
        {
            if (MagnitudeBits(m[i][j]) > BitsOf(MACHINE_EPSILON))
            {
                return 0;
            }
        }
    }
    return 1;
}

int32_t SolveLinearSystem(Matrix n, Matrix b, int32_t order, int32_t columns)
{
    const Matrix work = AllocMatrix(1, FIRST_RESULT - 1 + columns + order, 1, order);
    Pivot* const pivots = work != nullptr ? AllocBehindSpare<Pivot>(static_cast<size_t>(order)) : nullptr;

    int32_t result = ADJUST_NO_MEMORY;
    if (pivots != nullptr)
    {
        const System system = {n, FromRow(work, FIRST_RESULT + columns), pivots, order};
        result = SolveRefined(n, b, columns, system, work);
    }
    std::free(pivots);
    FreeMatrix(work, 1, 1);
    return result;
}

int32_t Invert(Matrix n, Matrix inverse, int32_t order)
{
    for (int32_t i = 1; i <= order; ++i)
    {
        ClearRow(inverse[i], order);
        inverse[i][i] = 1.0;
    }
    return SolveLinearSystem(n, inverse, order, order);
}

int32_t InvertNormalMatrix(Matrix design, Matrix weights, Matrix cofactors, int32_t rows, int32_t unknownCount,
                           int32_t weightBand)
{
    const Matrix weighted = AllocMatrix(1, rows, 1, unknownCount);
    const Matrix normal = weighted != nullptr ? AllocMatrix(1, unknownCount, 1, unknownCount) : nullptr;

    int32_t result = ADJUST_NO_MEMORY;
    if (normal != nullptr)
    {
        MultiplyMatrices(weights, design, weighted, rows, rows, unknownCount, weightBand);
        // NOLINTNEXTLINE(readability-suspicious-call-argument): the product has as many rows as there are unknowns
        TransposeMultiply(design, weighted, normal, unknownCount, rows, unknownCount);
        result = Invert(normal, cofactors, unknownCount);
    }
    FreeMatrix(normal, 1, 1);
    FreeMatrix(weighted, 1, 1);
    return result;
}

} // namespace qstdlib
