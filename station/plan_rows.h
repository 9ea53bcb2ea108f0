// The sums of a plan adjustment, taken row by row. A direction's row is (a, b, 1) with weight 1, a distance's (a, b, 0)
// with a weight of its own; no two rows are correlated. So the products of the matrix toolkit come down to a few terms
// a row, and these sums add the same terms in the same order: the results agree to the last bit.
#ifndef QSTDLIB_STATION_PLAN_ROWS_H
#define QSTDLIB_STATION_PLAN_ROWS_H

#include <cstdint>

#include "station/matrix.h"

namespace qstdlib {

// Columns, and rows, of normal equations with their absolute terms, which are the last.
constexpr int32_t NORMAL_COLUMNS = 4;

// N = A^T P A, in three columns; in NORMAL_COLUMNS also A^T P l, and l^T P l at the end of the diagonal. Before that
// the last row is zero.
void SumNormalEquations(Matrix design, Matrix weights, const double* misclosures, int32_t rows, int32_t columns,
                        Matrix normal);

// dx = -((Q A^T) P) l. False when a correction is not finite: then the toolkit's rule for zero factors decides what it
// is, and it has to be formed by the toolkit.
bool SumCorrections(Matrix cofactors, Matrix design, Matrix weights, const double* misclosures, int32_t rows,
                    double* corrections);

} // namespace qstdlib

#endif
