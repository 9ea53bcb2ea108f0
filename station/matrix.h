// Dense matrices for the adjustment. Rows and columns, and the elements of vectors, are indexed from 1.
#ifndef QSTDLIB_STATION_MATRIX_H
#define QSTDLIB_STATION_MATRIX_H

#include <cstdint>

#include "core/soft_arithmetic.h"
#include "station/adjust_result.h"

namespace qstdlib {

// A table of row pointers over one contiguous data block, both with a spare first entry.
using Matrix = double**;

// A vector of `length` elements indexed from 1 (element 0 is spare), or null. Released with free.
double* AllocVector(int32_t length);

// A matrix, uninitialised, or null. When the data block cannot be had, the row table stays allocated: callers treat
// that failure as final.
Matrix AllocMatrix(int32_t lowestRow, int32_t highestRow, int32_t lowestColumn, int32_t highestColumn);

// Releases a matrix by the lowest row and column that it was allocated with.
void FreeMatrix(Matrix matrix, int32_t lowestRow, int32_t lowestColumn);

// The band of a matrix that may have elements anywhere.
constexpr int32_t FULL_BAND = 0x3FFFFFFF;

// Products. Only terms whose two factors differ from 0.0 are added; `product` must be neither factor.
// MultiplyMatrices walks no farther from the diagonal of a factor than its band, beyond which it is known to be zero.
void MultiplyMatrices(Matrix a, Matrix b, Matrix product, int32_t rows, int32_t inner, int32_t columns,
                      int32_t aBand = FULL_BAND, int32_t bBand = FULL_BAND);
void TransposeMultiply(Matrix a, Matrix b, Matrix product, int32_t rows, int32_t inner, int32_t columns);
void MultiplyByTranspose(Matrix a, Matrix b, Matrix product, int32_t rows, int32_t inner, int32_t columns);

void ClearRow(double* row, int32_t columns);

// Adds the multiple of a row from its element `first` to its element `last`. A factor of zero on either side adds
// nothing, whatever it would be multiplied with.
void AddMultiple(double* target, double factor, const double* row, int32_t first, int32_t last);

void CopyMatrix(Matrix source, Matrix destination, int32_t rows, int32_t columns);

// y = m x, every term added.
void MatrixTimesVector(Matrix m, const double* x, double* y, int32_t rows, int32_t columns);

// x^T m x, every term added, for a symmetric m of this band. Zeros beyond the band count only where the sum is not
// finite: zero times infinity is NaN.
double QuadraticForm(Matrix m, const double* x, int32_t order, int32_t band = FULL_BAND);

// A pivot of a decomposition: what its column is divided by, and the row that it was exchanged with.
struct Pivot
{
    Divisor divisor;
    int32_t row;
};

// Crout's decomposition with implicit scaling and partial pivoting; the later row wins a tie. `a` becomes its factors,
// `pivots` hold the row exchanges, `parity` their sign. A zero pivot becomes 1e-20. ADJUST_DEGENERATE for a row of
// zeros (the scaling vector then stays allocated), ADJUST_NO_MEMORY.
int32_t LUDecompose(Matrix a, int32_t order, Pivot* pivots, double* parity);

// Replaces each row of `b`, a right-hand side, by its solution: rows, not columns as in SolveLinearSystem.
void LUBackSubstitute(Matrix lu, Matrix b, int32_t order, int32_t rightSides, const Pivot* pivots);

// 1 when no element's magnitude exceeds the machine epsilon, else 0.
int32_t IsNegligible(Matrix m, int32_t rows, int32_t columns);

// Solves n x = b, refined in at most five passes; `b` becomes x and `n` its factors. Both stay as they are on failure:
// ADJUST_NO_MEMORY, ADJUST_DEGENERATE.
int32_t SolveLinearSystem(Matrix n, Matrix b, int32_t order, int32_t columns);

// The inverse of n, which becomes its factors. Fails as SolveLinearSystem does; the inverse then holds nothing of use.
int32_t Invert(Matrix n, Matrix inverse, int32_t order);

// cofactors = inverse of (design^T weights design). On failure, ADJUST_NO_MEMORY or ADJUST_DEGENERATE, they hold
// nothing of use.
int32_t InvertNormalMatrix(Matrix design, Matrix weights, Matrix cofactors, int32_t rows, int32_t unknownCount,
                           int32_t weightBand = FULL_BAND);

} // namespace qstdlib

#endif
