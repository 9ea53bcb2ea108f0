// The horizontal circle of a station: face-reduced readings and the orientation that they give.
#ifndef QSTDLIB_STATION_CIRCLE_H
#define QSTDLIB_STATION_CIRCLE_H

#include "qstdlib/types.h"

namespace qstdlib {

// The reading as face one would give it: turned by a half circle when the zenith angle, reduced into one circle, is a
// half circle or more; otherwise as it stands.
AngleUnit FaceReducedReading(AngleUnit horizontalAngle, AngleUnit zenithAngle);

// Whether a zenith angle, as it stands, denotes face two.
inline bool IsFaceTwo(AngleUnit zenithAngle)
{
    return zenithAngle < 0 || zenithAngle >= ANGLE_HALF_CIRCLE;
}

// The reading of a face-two sight turned by a half circle and normalised, that of any other as it stands. Meant to be
// converted without reduction, which leaves a normalised reading from within the circle 2,615,296 units (45.4 degrees)
// off. Kept: stored set-ups depend on it.
AngleUnit FaceNormalizedReading(AngleUnit horizontalAngle, AngleUnit zenithAngle);

// Azimuth of the circle's zero from one sighted point and its face-reduced reading, -half to below +half circle.
AngleUnit CircleOrientation(const PointRecord* station, const PointRecord* sighted, AngleUnit reading);

} // namespace qstdlib

#endif
