// Results of the adjustment and its parts, which the exported functions turn into statuses, and its numeric floor.
#ifndef QSTDLIB_STATION_ADJUST_RESULT_H
#define QSTDLIB_STATION_ADJUST_RESULT_H

#include <cstdint>

namespace qstdlib {

constexpr int32_t ADJUST_CONVERGED = 0;
constexpr int32_t ADJUST_NOT_CONVERGED = 1;
constexpr int32_t ADJUST_NO_MEMORY = 2;
constexpr int32_t ADJUST_DEGENERATE = 3;

constexpr double MACHINE_EPSILON = 2.220446049250313e-16;

} // namespace qstdlib

#endif
