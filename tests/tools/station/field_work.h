/**
 * @file field_work.h
 * Set-ups as an instrument at a known place would read them, for tests of the station.
 */
#ifndef QSTDLIB_TESTS_TOOLS_STATION_FIELD_WORK_H
#define QSTDLIB_TESTS_TOOLS_STATION_FIELD_WORK_H

#include "station/station_solution.h"

#include <cmath>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace survey {

constexpr double PI = 3.14159265358979323846;

inline double Radians(double degrees)
{
    return degrees * PI / 180.0;
}

/** What is read of a target. */
enum class Reading
{
    DIRECTION,
    LEVEL_DISTANCE, /**< direction and horizontal distance */
    ZENITH,         /**< direction and zenith angle */
    SLOPE_DISTANCE  /**< direction, zenith angle and slope distance */
};

/** Errors of one sight: radians, metres. */
struct SightErrors
{
    double circle = 0.0;
    double zenith = 0.0;
    double distance = 0.0;
};

/** A set-up with what its solution points into. */
struct SolvedWork
{
    qstd::SetUp setUp;
    qstd::PointList points;
    qstd::StationSolution solution;
};

/** A place, the points around it and what is read there. Points and sights may be spoilt before it is solved. */
struct FieldWork
{
    double northing = 0.0; /**< of the place */
    double easting = 0.0;
    double axis = 0.0;        /**< height of the instrument axis */
    double orientation = 0.0; /**< azimuth of the circle's zero, radians */
    std::vector<qstd::KnownPoint> points;
    qstd::SetUp setUp;

    /** Adds a point at an azimuth (radians) and distance; coordinates to the millimetre, as tables hold them. */
    void AddPoint(const std::string& name, double azimuth, double distance, double rise = 0.0)
    {
        qstd::KnownPoint point;
        point.id = name;
        point.point = {ToMillimetre(northing + distance * std::cos(azimuth)),
                       ToMillimetre(easting + distance * std::sin(azimuth)), ToMillimetre(axis + rise),
                       POINT_HAS_PLAN | POINT_HAS_HEIGHT};
        points.push_back(std::move(point));
    }

    qstd::KnownPoint& Point(const std::string& name)
    {
        size_t place = 0;
        while (points.at(place).id != name)
        {
            ++place;
        }
        return points[place];
    }

    /** Adds a sight as the instrument reads it, with its errors. The reference holds until the next one is added. */
    qstd::Sight& Read(const std::string& name, Reading reading, const SightErrors& errors = {},
                      double targetHeight = 0.0, bool isFaceTwo = false)
    {
        const PointRecord& target = Point(name).point;
        const double dN = target.northing - northing;
        const double dE = target.easting - easting;
        const double ground = std::hypot(dN, dE);
        const double rise = target.height + targetHeight - axis;
        const double halfCircle = isFaceTwo ? PI : 0.0;
        qstd::Sight sight;
        sight.line = setUp.sights.size() + 2;
        sight.target = name;
        sight.targetHeight = targetHeight;
        sight.circle = qstd::UnitsOf(std::atan2(dE, dN) - orientation + errors.circle + halfCircle);
        if (reading == Reading::ZENITH || reading == Reading::SLOPE_DISTANCE)
        {
            const double zenith = std::atan2(ground, rise) + errors.zenith;
            sight.zenith = qstd::UnitsOf(isFaceTwo ? 2.0 * PI - zenith : zenith);
        }
        if (reading == Reading::SLOPE_DISTANCE)
        {
            sight.slopeDistance = std::hypot(ground, rise) + errors.distance;
        }
        if (reading == Reading::LEVEL_DISTANCE)
        {
            sight.horizontalDistance = ground + errors.distance;
        }
        setUp.sights.push_back(sight);
        return setUp.sights.back();
    }

    [[nodiscard]] std::unique_ptr<const SolvedWork> Solve(const qstd::StationRequest& request = {}) const
    {
        auto work = std::make_unique<SolvedWork>();
        work->setUp = setUp;
        work->setUp.station = "A";
        for (const qstd::KnownPoint& point : points)
        {
            work->points.Add(point);
        }
        work->solution = SolveStation(work->setUp, work->points, request);
        return work;
    }

private:
    static double ToMillimetre(double length)
    {
        return std::round(length * 1000.0) / 1000.0;
    }
};

/** The horizontal distance of a place from the solved station. */
inline double DistanceFrom(const qstd::StationSolution& solution, const FieldWork& work)
{
    const PointRecord& found = solution.station.position;
    return std::hypot(found.northing - work.northing, found.easting - work.easting);
}

} // namespace survey

#endif
