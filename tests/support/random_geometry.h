// What the property tests draw at random, the same in every run, and how they compare.
#ifndef QSTDLIB_TESTS_SUPPORT_RANDOM_GEOMETRY_H
#define QSTDLIB_TESTS_SUPPORT_RANDOM_GEOMETRY_H

#include <cmath>
#include <cstdint>
#include <cstdlib>

#include <rapidcheck.h>

#include "qstdlib.h"
#include "tests/support/angle.h"

namespace support {

// The same cases in every run; RC_PARAMS in the environment overrides.
inline const int REPRODUCIBLE = setenv("RC_PARAMS", "seed=20261121 max_success=1000", 0);

// What rounding an angle to a unit, or cutting it off, can do.
constexpr double UNIT = PI / ANGLE_HALF_CIRCLE;

// To the millimetre, in [from, to).
inline double Millimetres(int32_t from, int32_t to)
{
    return *rc::gen::inRange(from * 1000, to * 1000) / 1000.0;
}

// To a thousandth of a degree, in [from, to).
inline double Degrees(int32_t from, int32_t to)
{
    return *rc::gen::inRange(from * 1000, to * 1000) / 1000.0 * PI / 180.0;
}

inline AngleUnit AnyAzimuth()
{
    return *rc::gen::inRange(0, ANGLE_FULL_CIRCLE);
}

inline double Sign()
{
    return *rc::gen::arbitrary<bool>() ? 1.0 : -1.0;
}

inline PointRecord AnyPoint(int32_t size)
{
    return {Millimetres(-size, size), Millimetres(-size, size), Millimetres(-size / 10, size / 10),
            POINT_HAS_PLAN | POINT_HAS_HEIGHT};
}

// `ahead` in a direction in radians and `right` to the right of it, in plan; height and flags stay.
inline PointRecord Moved(PointRecord from, double direction, double ahead, double right = 0.0)
{
    from.northing += ahead * std::cos(direction) - right * std::sin(direction);
    from.easting += ahead * std::sin(direction) + right * std::cos(direction);
    return from;
}

inline PointRecord Raised(PointRecord from, double height)
{
    from.height += height;
    return from;
}

inline double PlanDistance(const PointRecord& a, const PointRecord& b)
{
    return std::hypot(b.northing - a.northing, b.easting - a.easting);
}

// How far a point lies ahead, and to the right, of another along a direction.
inline double AheadOf(const PointRecord& origin, double direction, const PointRecord& place)
{
    return (place.northing - origin.northing) * std::cos(direction) +
           (place.easting - origin.easting) * std::sin(direction);
}

inline double RightOf(const PointRecord& origin, double direction, const PointRecord& place)
{
    return (place.easting - origin.easting) * std::cos(direction) -
           (place.northing - origin.northing) * std::sin(direction);
}

// Within the bound; a NaN is not.
inline bool IsNear(double expected, double actual, double bound)
{
    return std::fabs(actual - expected) <= bound;
}

inline bool IsNear(const PointRecord& expected, const PointRecord& actual, double bound)
{
    return IsNear(expected.northing, actual.northing, bound) && IsNear(expected.easting, actual.easting, bound) &&
           IsNear(expected.height, actual.height, bound);
}

} // namespace support

#endif
