// Angles in tests: written in degrees, compared on the circle.
#ifndef QSTDLIB_TESTS_SUPPORT_ANGLE_H
#define QSTDLIB_TESTS_SUPPORT_ANGLE_H

#include <cmath>
#include <cstdint>

#include "qstdlib.h"

namespace support {

constexpr double UNITS_PER_SECOND = 16.0;
constexpr double UNITS_PER_DEGREE = 57600.0;
constexpr double PI = 3.14159265358979323846;

// Nearest unit; exact where the degrees are a multiple of 1/57,600.
inline AngleUnit DegreesToUnits(double degrees)
{
    return static_cast<AngleUnit>(std::llround(degrees * UNITS_PER_DEGREE));
}

// Degrees, minutes and seconds to the nearest unit. A negative angle is written as -Dms(...).
inline AngleUnit Dms(int32_t degrees, int32_t minutes = 0, double seconds = 0.0)
{
    const double wholeSeconds = degrees * 3600.0 + minutes * 60.0;
    return static_cast<AngleUnit>(std::llround((wholeSeconds + seconds) * UNITS_PER_SECOND));
}

inline double UnitsToDegrees(double units)
{
    return units / UNITS_PER_DEGREE;
}

inline double UnitsToSeconds(double units)
{
    return units / UNITS_PER_SECOND;
}

// Radians of a reading, without any reduction.
inline double UnitsToRadians(double units)
{
    return units * PI / ANGLE_HALF_CIRCLE;
}

inline double RadiansToUnits(double radians)
{
    return radians * ANGLE_HALF_CIRCLE / PI;
}

// The same direction in [0, full circle), for any integer.
inline AngleUnit OnCircle(int64_t angle)
{
    const int64_t remainder = angle % ANGLE_FULL_CIRCLE;
    return static_cast<AngleUnit>(remainder < 0 ? remainder + ANGLE_FULL_CIRCLE : remainder);
}

// How far `actual` is turned from `expected`, clockwise positive, in [-half circle, half circle).
inline AngleUnit TurnFrom(int64_t expected, int64_t actual)
{
    return OnCircle(actual - expected + ANGLE_HALF_CIRCLE) - ANGLE_HALF_CIRCLE;
}

} // namespace support

#endif
