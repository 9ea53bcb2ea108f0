// Closed-form starting values for the adjustment of a station.
#ifndef QSTDLIB_STATION_ADJUSTMENT_APPROXIMATION_H
#define QSTDLIB_STATION_ADJUSTMENT_APPROXIMATION_H

#include "station/adjustment/resect_work.h"

namespace qstdlib {

// Chooses `how` targets: 1 the first with a distance; 2 the first pair with distances at different plan positions; 3 a
// triple with directions, wherever the targets are, ordered so that neighbours differ in direction. ADJUST_DEGENERATE,
// and `chosen` untouched, when there are none.
int32_t SelectTargets(int32_t mode, int32_t how, int16_t count, const ResectWorkRecord* work,
                      const ResectWorkRecord** chosen);

// Allocates and fills the unknowns, indexed from 1, from three directions or, given at least two distance rows, from
// two distances. ADJUST_NO_MEMORY or ADJUST_DEGENERATE leave nothing allocated. Any mode but plan and spatial returns
// 0 without allocating. `iterationLimit` is set in any case; `rows` carries nothing.
int32_t ApproximateStation(int32_t mode, int16_t count, const ResectWorkRecord* work, int32_t distances,
                           double** unknowns, int32_t* unknownCount, int32_t rows, int32_t* iterationLimit);

} // namespace qstdlib

#endif
