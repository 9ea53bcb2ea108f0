// Dense matrices for the adjustment. Rows and columns, and the elements of vectors, are indexed from 1.
#ifndef QSTDLIB_STATION_ADJUSTMENT_MATRIX_H
#define QSTDLIB_STATION_ADJUSTMENT_MATRIX_H

#include <cstdint>

#include "station/adjustment/adjust_result.h"

namespace qstdlib {

// A table of row pointers over one contiguous data block, both with a spare first entry.
using Matrix = double**;

// Stands for a pivot of zero, so that an elimination goes on; the solution is then very large.
constexpr double TINY_PIVOT = 1e-20;

// A solution is refined this often at most.
constexpr int32_t REFINEMENT_PASSES = 5;

// A vector of `length` elements indexed from 1 (element 0 is spare), or null. Released with free.
double* AllocVector(int32_t length);

// A matrix, uninitialised, or null. When the data block cannot be had, the row table stays allocated: callers treat
// that failure as final.
Matrix AllocMatrix(int32_t lowestRow, int32_t highestRow, int32_t lowestColumn, int32_t highestColumn);

// Releases a matrix by the lowest row and column that it was allocated with.
void FreeMatrix(Matrix matrix, int32_t lowestRow, int32_t lowestColumn);

void ClearRow(double* row, int32_t columns);
void ClearMatrix(Matrix matrix, int32_t rows, int32_t columns);

// Products. Only terms whose two factors differ from 0.0 are added; `product` must be neither factor.
void MultiplyMatrices(Matrix a, Matrix b, Matrix product, int32_t rows, int32_t inner, int32_t columns);
void TransposeMultiply(Matrix a, Matrix b, Matrix product, int32_t rows, int32_t inner, int32_t columns);
void MultiplyByTranspose(Matrix a, Matrix b, Matrix product, int32_t rows, int32_t inner, int32_t columns);

// difference = a - b, and may be either.
void SubtractMatrices(Matrix a, Matrix b, Matrix difference, int32_t rows, int32_t columns);

void CopyMatrix(Matrix source, Matrix destination, int32_t rows, int32_t columns);

// y = m x, every term added.
void MatrixTimesVector(Matrix m, const double* x, double* y, int32_t rows, int32_t columns);

// Crout's decomposition with implicit scaling and partial pivoting; the later row wins a tie. `a` becomes its factors,
// `index` holds the row exchanges, `parity` their sign. A zero pivot becomes 1e-20. ADJUST_DEGENERATE for a row of
// zeros (the scaling vector then stays allocated), ADJUST_NO_MEMORY.
int32_t LUDecompose(Matrix a, int32_t order, int32_t* index, double* parity);

// Replaces each column of `b`, a right-hand side, by its solution.
void LUBackSubstitute(Matrix lu, Matrix b, int32_t order, int32_t columns, const int32_t* index);

// 1 when no element's magnitude exceeds the machine epsilon, else 0.
int32_t IsNegligible(Matrix m, int32_t rows, int32_t columns);

// Solves n x = b, refined in at most five passes; `b` becomes x and `n` its factors. Both stay as they are on failure:
// ADJUST_NO_MEMORY, ADJUST_DEGENERATE.
int32_t SolveLinearSystem(Matrix n, Matrix b, int32_t order, int32_t columns);

// cofactors = inverse of (design^T weights design). On failure, ADJUST_NO_MEMORY or ADJUST_DEGENERATE, they hold
// nothing of use.
int32_t InvertNormalMatrix(Matrix design, Matrix weights, Matrix cofactors, int32_t observations, int32_t unknowns);

} // namespace qstdlib

#endif
