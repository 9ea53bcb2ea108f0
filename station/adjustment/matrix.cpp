#include "station/adjustment/matrix.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <utility>

namespace qstdlib {

namespace {

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

// Adds the multiple of a row. A factor of zero on either side adds nothing, whatever it would be multiplied with.
void AddMultiple(double* target, double factor, const double* row, int32_t columns)
{
    if (factor == 0.0)
    {
        return;
    }
    for (int32_t j = 1; j <= columns; ++j)
    {
        if (row[j] != 0.0)
        {
            target[j] += factor * row[j];
        }
    }
}

// Reciprocal of each row's largest magnitude; false when a row has none above zero.
bool ScaleRows(Matrix a, int32_t order, double* scale)
{
    for (int32_t i = 1; i <= order; ++i)
    {
        double largest = 0.0;
        for (int32_t j = 1; j <= order; ++j)
        {
            largest = std::max(largest, std::fabs(a[i][j]));
        }
        if (largest == 0.0)
        {
            return false;
        }
        scale[i] = 1.0 / largest;
    }
    return true;
}

// Forms column j of the factors, undivided; returns the row with the greatest scaled magnitude from the diagonal down.
int32_t EliminateColumn(Matrix a, int32_t order, int32_t j, const double* scale)
{
    double greatest = 0.0;
    int32_t pivotRow = j;
    for (int32_t i = 1; i <= order; ++i)
    {
        for (int32_t k = 1; k < std::min(i, j); ++k)
        {
            a[i][j] -= a[i][k] * a[k][j];
        }
        const double magnitude = scale[i] * std::fabs(a[i][j]);
        if (i >= j && magnitude >= greatest)
        {
            greatest = magnitude;
            pivotRow = i;
        }
    }
    return pivotRow;
}

// Solves for one column of b in place. The forward sums begin at the first element that is not zero.
void SubstituteColumn(Matrix lu, Matrix b, int32_t order, int32_t column, const int32_t* index)
{
    int32_t firstNonZero = order;
    for (int32_t i = 1; i <= order; ++i)
    {
        std::swap(b[i][column], b[index[i]][column]);
        if (firstNonZero == order && b[i][column] != 0.0)
        {
            firstNonZero = i;
        }
        for (int32_t j = firstNonZero; j < i; ++j)
        {
            b[i][column] -= lu[i][j] * b[j][column];
        }
    }
    for (int32_t i = order; i >= 1; --i)
    {
        for (int32_t j = i + 1; j <= order; ++j)
        {
            b[i][column] -= lu[i][j] * b[j][column];
        }
        b[i][column] /= lu[i][i];
    }
}

// The work of SolveLinearSystem on its scratch; writes n and b on success only.
int32_t SolveRefined(Matrix n, Matrix b, Matrix factors, Matrix x, Matrix residual, int32_t* index, int32_t order,
                     int32_t columns)
{
    CopyMatrix(n, factors, order, order);
    CopyMatrix(b, x, order, columns);
    double parity = 0.0;
    const int32_t result = LUDecompose(factors, order, index, &parity);
    if (result != 0)
    {
        return result;
    }
    LUBackSubstitute(factors, x, order, columns, index);
    for (int32_t pass = 1; pass <= REFINEMENT_PASSES; ++pass)
    {
        MultiplyMatrices(n, x, residual, order, order, columns);
        SubtractMatrices(residual, b, residual, order, columns);
        LUBackSubstitute(factors, residual, order, columns, index);
        SubtractMatrices(x, residual, x, order, columns);
        if (IsNegligible(residual, order, columns) != 0)
        {
            break;
        }
    }
    CopyMatrix(factors, n, order, order);
    CopyMatrix(x, b, order, columns);
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
    std::fill_n(row + 1, columns, 0.0);
}

void ClearMatrix(Matrix matrix, int32_t rows, int32_t columns)
{
    for (int32_t i = 1; i <= rows; ++i)
    {
        ClearRow(matrix[i], columns);
    }
}

void MultiplyMatrices(Matrix a, Matrix b, Matrix product, int32_t rows, int32_t inner, int32_t columns)
{
    for (int32_t i = 1; i <= rows; ++i)
    {
        ClearRow(product[i], columns);
        for (int32_t k = 1; k <= inner; ++k)
        {
            AddMultiple(product[i], a[i][k], b[k], columns);
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
            AddMultiple(product[i], a[k][i], b[k], columns);
        }
    }
}

void MultiplyByTranspose(Matrix a, Matrix b, Matrix product, int32_t rows, int32_t inner, int32_t columns)
{
    for (int32_t i = 1; i <= rows; ++i)
    {
        for (int32_t j = 1; j <= columns; ++j)
        {
            double sum = 0.0;
            for (int32_t k = 1; k <= inner; ++k)
            {
                if (a[i][k] != 0.0 && b[j][k] != 0.0)
                {
                    sum += a[i][k] * b[j][k];
                }
            }
            product[i][j] = sum;
        }
    }
}

void SubtractMatrices(Matrix a, Matrix b, Matrix difference, int32_t rows, int32_t columns)
{
    for (int32_t i = 1; i <= rows; ++i)
    {
        for (int32_t j = 1; j <= columns; ++j)
        {
            difference[i][j] = a[i][j] - b[i][j];
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

int32_t LUDecompose(Matrix a, int32_t order, int32_t* index, double* parity)
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
            std::swap_ranges(a[j] + 1, a[j] + 1 + order, a[pivotRow] + 1);
            *parity = -*parity;
            scale[pivotRow] = scale[j]; // row j is done with: its own scale is not needed again
        }
        index[j] = pivotRow;
        if (a[j][j] == 0.0)
        {
            a[j][j] = TINY_PIVOT;
        }
        for (int32_t i = j + 1; i <= order; ++i)
        {
            a[i][j] /= a[j][j];
        }
    }
    std::free(scale);
    return 0;
}

void LUBackSubstitute(Matrix lu, Matrix b, int32_t order, int32_t columns, const int32_t* index)
{
    for (int32_t column = 1; column <= columns; ++column)
    {
        SubstituteColumn(lu, b, order, column, index);
    }
}

int32_t IsNegligible(Matrix m, int32_t rows, int32_t columns)
{
    for (int32_t i = 1; i <= rows; ++i)
    {
        for (int32_t j = 1; j <= columns; ++j)
        {
            if (!(std::fabs(m[i][j]) <= MACHINE_EPSILON))
            {
                return 0;
            }
        }
    }
    return 1;
}

int32_t SolveLinearSystem(Matrix n, Matrix b, int32_t order, int32_t columns)
{
    const Matrix factors = AllocMatrix(1, order, 1, order);
    const Matrix x = factors != nullptr ? AllocMatrix(1, order, 1, columns) : nullptr;
    const Matrix residual = x != nullptr ? AllocMatrix(1, order, 1, columns) : nullptr;
    int32_t* const index = residual != nullptr ? AllocBehindSpare<int32_t>(static_cast<size_t>(order)) : nullptr;

    int32_t result = ADJUST_NO_MEMORY;
    if (index != nullptr)
    {
        result = SolveRefined(n, b, factors, x, residual, index, order, columns);
    }
    std::free(index);
    FreeMatrix(residual, 1, 1);
    FreeMatrix(x, 1, 1);
    FreeMatrix(factors, 1, 1);
    return result;
}

int32_t InvertNormalMatrix(Matrix design, Matrix weights, Matrix cofactors, int32_t observations, int32_t unknowns)
{
    const Matrix weighted = AllocMatrix(1, observations, 1, unknowns);
    const Matrix normal = weighted != nullptr ? AllocMatrix(1, unknowns, 1, unknowns) : nullptr;

    int32_t result = ADJUST_NO_MEMORY;
    if (normal != nullptr)
    {
        MultiplyMatrices(weights, design, weighted, observations, observations, unknowns);
        // NOLINTNEXTLINE(readability-suspicious-call-argument): the product has as many rows as there are unknowns
        TransposeMultiply(design, weighted, normal, unknowns, observations, unknowns);
        ClearMatrix(cofactors, unknowns, unknowns);
        for (int32_t i = 1; i <= unknowns; ++i)
        {
            cofactors[i][i] = 1.0;
        }
        result = SolveLinearSystem(normal, cofactors, unknowns, unknowns);
    }
    FreeMatrix(normal, 1, 1);
    FreeMatrix(weighted, 1, 1);
    return result;
}

} // namespace qstdlib
