// The two closed-form solutions of the two-point resection. Each writes northing, easting, height 0.0, flags 1 and the
// orientation, or nothing when it fails.
#ifndef QSTDLIB_STATION_TWO_POINT_RESECTION_H
#define QSTDLIB_STATION_TWO_POINT_RESECTION_H

#include "qstdlib/station.h"

namespace qstdlib {

// Similarity fit; QSTD_COINCIDENT_POINTS when the local coordinates coincide.
int32_t SolveTwoDistances(const TwoPointTarget* first, const TwoPointTarget* second, TwoPointStation* station);

// Triangle; QSTD_DEGENERATE when the distance exceeds the baseline.
int32_t SolveOneDistance(const TwoPointTarget* first, const TwoPointTarget* second, TwoPointStation* station);

} // namespace qstdlib

#endif
