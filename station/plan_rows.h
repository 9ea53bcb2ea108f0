// The sums of a plan adjustment, taken row by row. A direction's row is (a, b, 1) with weight 1, a distance's (a, b, 0)
// with a weight of its own; no two rows are correlated. So the products of the matrix toolkit come down to a few terms
// a row, and these sums add the same terms in the same order: the results agree to the last bit.
//
// They do so where all numbers are finite. Where they are not, the toolkit's rule for zero factors decides what becomes
// of them; a result that is not finite therefore has to be formed by the toolkit.
#ifndef QSTDLIB_STATION_PLAN_ROWS_H
#define QSTDLIB_STATION_PLAN_ROWS_H

#include <cstdint>

#include "station/matrix.h"

namespace qstdlib {

// N = A^T P A. False when an element is not finite.
bool SumNormalMatrix(Matrix design, Matrix weights, int32_t rows, Matrix normal);

// dx = -((Q A^T) P) l. False when a correction is not finite.
bool SumCorrections(Matrix cofactors, Matrix design, Matrix weights, const double* misclosures, int32_t rows,
                    double* corrections);

// v = A dx + l, for finite corrections, and v^T P v. False when the latter is not finite; the residuals hold either
// way.
bool SumResiduals(Matrix design, Matrix weights, const double* misclosures, const double* corrections, int32_t rows,
                  double* residuals, double* omega);

} // namespace qstdlib

#endif
