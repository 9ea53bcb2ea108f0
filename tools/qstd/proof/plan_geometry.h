/**
 * @file plan_geometry.h
 * Points and lines of the plan as vectors, for the proofs.
 */
#ifndef QSTD_PLAN_GEOMETRY_H
#define QSTD_PLAN_GEOMETRY_H

#include <qstdlib.h>

#include <algorithm>
#include <cmath>
#include <initializer_list>

namespace qstd {

struct PlanVector
{
    double north = 0.0;
    double east = 0.0;
};

inline PlanVector operator-(const PlanVector& one, const PlanVector& other)
{
    return {one.north - other.north, one.east - other.east};
}

inline PlanVector operator+(const PlanVector& one, const PlanVector& other)
{
    return {one.north + other.north, one.east + other.east};
}

inline PlanVector operator*(double factor, const PlanVector& vector)
{
    return {factor * vector.north, factor * vector.east};
}

inline double Length(const PlanVector& vector)
{
    return std::hypot(vector.north, vector.east);
}

/** How far a vector goes along a direction of length 1. */
inline double Along(const PlanVector& direction, const PlanVector& vector)
{
    return direction.north * vector.north + direction.east * vector.east;
}

/** How far it goes to the right of it. */
inline double Right(const PlanVector& direction, const PlanVector& vector)
{
    return direction.north * vector.east - direction.east * vector.north;
}

/** A quarter circle to the right. */
inline PlanVector TurnedRight(const PlanVector& vector)
{
    return {-vector.east, vector.north};
}

inline PlanVector PlanOf(const PointRecord& point)
{
    return {point.northing, point.easting};
}

inline double PlanDistance(const PointRecord& one, const PointRecord& other)
{
    return Length(PlanOf(other) - PlanOf(one));
}

/** The largest coordinate: what rounding counts by. */
inline double SizeOf(std::initializer_list<PlanVector> places)
{
    double size = 0.0;
    for (const PlanVector& place : places)
    {
        size = std::max({size, std::fabs(place.north), std::fabs(place.east)});
    }
    return size;
}

/** The unit vector of an azimuth of any size. @param isSouth  azimuths count from south */
PlanVector DirectionOfAzimuth(AngleUnit azimuth, bool isSouth);

/** A line with a direction of length 1. */
struct Course
{
    PlanVector origin;
    PlanVector direction;

    [[nodiscard]] double Along(const PlanVector& place) const
    {
        return qstd::Along(direction, place - origin);
    }

    [[nodiscard]] double Right(const PlanVector& place) const
    {
        return qstd::Right(direction, place - origin);
    }
};

/** Through two places that differ. */
Course CourseThrough(const PlanVector& from, const PlanVector& to);

/** Of a line by two points or by azimuth. */
Course CourseOf(const LineDef& line, bool isSouth);

} // namespace qstd

#endif
