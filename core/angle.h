// Angles: wrap-around arithmetic on the integer unit, conversions to and from radians, circle reductions.
#ifndef QSTDLIB_CORE_ANGLE_H
#define QSTDLIB_CORE_ANGLE_H

#include <cstdint>

#include "core/wraps.h"
#include "qstdlib/types.h"

namespace qstdlib {

constexpr double PI = 3.141592653589793;
constexpr double TWO_PI = 6.283185307179586;

// 1 / 10,368,000: for conversions without reduction into the circle.
constexpr double INVERSE_HALF_CIRCLE = 9.645061728395061e-8;

// 1 / PI.
constexpr double INVERSE_PI = 0.3183098861837907;

// Sum and difference in 32-bit two's-complement arithmetic. All angle sums that can leave the int32 range go this way.
QSTD_WRAPS constexpr AngleUnit WrapAdd(AngleUnit a, AngleUnit b)
{
    return static_cast<AngleUnit>(static_cast<uint32_t>(a) + static_cast<uint32_t>(b));
}

QSTD_WRAPS constexpr AngleUnit WrapSubtract(AngleUnit a, AngleUnit b)
{
    return static_cast<AngleUnit>(static_cast<uint32_t>(a) - static_cast<uint32_t>(b));
}

// Remainder by a full circle of a division truncated toward zero: it takes the sign of the angle.
constexpr AngleUnit CircleRemainder(AngleUnit angle)
{
    return angle % ANGLE_FULL_CIRCLE;
}

// Adds a full circle, wrapping, and takes the remainder: into the circle for every angle from -1 circle up to the wrap.
constexpr AngleUnit ReduceToCircle(AngleUnit angle)
{
    return CircleRemainder(WrapAdd(angle, ANGLE_FULL_CIRCLE));
}

// Double to integer as the target's soft-float conversion does it: truncated toward zero, saturated, 0 for NaN. Every
// conversion of the library goes through here, so that all platforms agree.
int32_t TruncateToInt32(double value);

// Radians of the angle reduced into the circle. The remainder keeps its sign, so an angle below minus a full circle, or
// one whose sum with a full circle wraps, gives a negative value or zero.
double AngleToRadians(AngleUnit angle);

// Radians of the angle as it stands, without reduction.
constexpr double UnreducedRadians(AngleUnit angle)
{
    return static_cast<double>(angle) * PI * INVERSE_HALF_CIRCLE;
}

// Nearest unit, halves away from zero, reduced into the circle.
AngleUnit RadiansToAngle(double radians);

// The unit that radians are cut off to, without reduction.
AngleUnit TruncateRadiansToAngle(double radians);

// Not a reduction: leaves an angle above a full circle as it is and turns any other into the one congruent (modulo a
// full circle, after adding 2^32) among the last 20,736,000 values below 2^31. AngleToRadians turns the result back
// into the direction; UnreducedRadians, into one 2,615,296 units off. Kept: stored set-ups depend on it. Returns 0.
int32_t NormalizeAngle(AngleUnit* angle);

// Turns an azimuth by a half circle when the instrument counts azimuths from south. The remainder keeps its sign;
// within the circle it is its own inverse.
AngleUnit ApplyAzimuthReference(AngleUnit azimuth);

} // namespace qstdlib

#endif
