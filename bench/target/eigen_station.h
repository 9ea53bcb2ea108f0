// A free station by Eigen: what a good matrix library makes of the same adjustment, for comparison.
#ifndef QSTDLIB_BENCH_TARGET_EIGEN_STATION_H
#define QSTDLIB_BENCH_TARGET_EIGEN_STATION_H

#include <vector>

#include <qstdlib.h>

namespace target {

// The station from sights with directions and distances, by the model and the stopping rule of QSTNMultiResect:
// Gauss-Newton with diagonal weights, normal equations of three unknowns solved by LDLT. False when it does not
// converge.
bool AdjustByEigen(const std::vector<ResectObservation>& sights, ResectStation* station,
                   std::vector<ResectResidual>* residuals);

// The same source once more, with the arithmetic of doubles and the mathematics of the compiler's own libraries.
bool AdjustByEigenAsCompiled(const std::vector<ResectObservation>& sights, ResectStation* station,
                             std::vector<ResectResidual>* residuals);

} // namespace target

#endif
