// The height part of the three-point resection.
#ifndef QSTDLIB_STATION_THREE_POINT_RESECTION_H
#define QSTDLIB_STATION_THREE_POINT_RESECTION_H

#include "qstdlib/station.h"

namespace qstdlib {

// Adds the station height from a target of known height to the sum and counts it; otherwise does nothing.
void AccumulateStationHeight(double* sum, int16_t* count, const TwoPointStation* station,
                             const ThreePointTarget* target);

} // namespace qstdlib

#endif
