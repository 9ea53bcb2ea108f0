// Station height from a target of known height, sighted by angle only.
#ifndef QSTDLIB_STATION_HEIGHT_H
#define QSTDLIB_STATION_HEIGHT_H

#include "qstdlib/types.h"

namespace qstdlib {

// Height of the instrument axis; 0.0 when the target has no height. The plan distance comes from the coordinates and is
// reduced by the instrument's scale, sea-level and curvature-and-refraction settings.
double StationHeightByZenith(double stationNorthing, double stationEasting, const PointRecord* target, AngleUnit zenith,
                             double reflectorHeight);

} // namespace qstdlib

#endif
