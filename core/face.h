// The two faces of the telescope.
#ifndef QSTDLIB_CORE_FACE_H
#define QSTDLIB_CORE_FACE_H

#include "qstdlib/types.h"

namespace qstdlib {

// A pair of circle readings.
struct SightAngles
{
    AngleUnit horizontalAngle;
    AngleUnit zenithAngle;
};

// The readings as face one gives them. The zenith angle is reduced into one circle; when it is then a half circle or
// more the horizontal angle is turned by a half circle and the zenith angle mirrored, otherwise the horizontal angle
// stays as it is.
SightAngles ReduceToFaceOne(SightAngles sight);

// The sight is exactly vertical, once its zenith angle is reduced into one circle.
bool IsVertical(AngleUnit zenithAngle);

// Face-one readings as face two shows them.
SightAngles TurnToFaceTwo(SightAngles sight);

} // namespace qstdlib

#endif
