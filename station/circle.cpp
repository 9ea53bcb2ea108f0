#include "station/circle.h"

#include "core/angle.h"
#include "core/face.h"
#include "core/point.h"

namespace qstdlib {

AngleUnit FaceReducedReading(AngleUnit horizontalAngle, AngleUnit zenithAngle)
{
    return ReduceToFaceOne({horizontalAngle, zenithAngle}).horizontalAngle;
}

AngleUnit FaceNormalizedReading(AngleUnit horizontalAngle, AngleUnit zenithAngle)
{
    if (!IsFaceTwo(zenithAngle))
    {
        return horizontalAngle;
    }
    AngleUnit reading = WrapSubtract(horizontalAngle, ANGLE_HALF_CIRCLE);
    NormalizeAngle(&reading);
    return reading;
}

AngleUnit CircleOrientation(const PointRecord* station, const PointRecord* sighted, AngleUnit reading)
{
    const AngleUnit orientation = ReduceToCircle(WrapSubtract(AzimuthBetween(station, sighted), reading));
    return orientation >= ANGLE_HALF_CIRCLE ? orientation - ANGLE_FULL_CIRCLE : orientation;
}

} // namespace qstdlib
