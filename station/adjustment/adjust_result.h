// Results of the adjustment and its parts, which the exported functions turn into statuses, and what every adjustment
// ends with: the stopping rule, the variance, the orientation in the circle.
#ifndef QSTDLIB_STATION_ADJUSTMENT_ADJUST_RESULT_H
#define QSTDLIB_STATION_ADJUSTMENT_ADJUST_RESULT_H

#include <cstdint>

namespace qstdlib {

constexpr int32_t ADJUST_CONVERGED = 0;
constexpr int32_t ADJUST_NOT_CONVERGED = 1;
constexpr int32_t ADJUST_NO_MEMORY = 2;
constexpr int32_t ADJUST_DEGENERATE = 3;

constexpr double MACHINE_EPSILON = 2.220446049250313e-16;

// Whether an iteration, counted from 1, is the last: the weighted square sum is next to nothing, or it is what it was
// after the iteration before but for a thousandth.
bool IsLastIteration(int32_t iteration, double squareSum, double previousSquareSum);

// The variance of unit weight; without redundancy the square sum itself.
double VarianceFactor(double squareSum, int32_t redundancy);

// Brought back by one circle at most; exactly a full circle stays.
double ReduceOnce(double orientation);

} // namespace qstdlib

#endif
