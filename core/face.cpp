#include "core/face.h"

#include "core/angle.h"

namespace qstdlib {

SightAngles ReduceToFaceOne(SightAngles sight)
{
    const AngleUnit zenith = ReduceToCircle(sight.zenithAngle);
    if (zenith >= ANGLE_HALF_CIRCLE)
    {
        return {CircleRemainder(WrapAdd(sight.horizontalAngle, ANGLE_HALF_CIRCLE)), ANGLE_FULL_CIRCLE - zenith};
    }
    return {sight.horizontalAngle, zenith};
}

bool IsVertical(AngleUnit zenithAngle)
{
    const AngleUnit zenith = ReduceToCircle(zenithAngle);
    return zenith == 0 || zenith == ANGLE_HALF_CIRCLE;
}

SightAngles TurnToFaceTwo(SightAngles sight)
{
    return {CircleRemainder(WrapAdd(sight.horizontalAngle, ANGLE_HALF_CIRCLE)),
            WrapSubtract(ANGLE_FULL_CIRCLE, sight.zenithAngle)};
}

} // namespace qstdlib
