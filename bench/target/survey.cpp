#include "survey.h"

#include <cmath>

namespace target {

namespace {

constexpr double PI = 3.141592653589793;
constexpr double UNITS_PER_DEGREE = ANGLE_FULL_CIRCLE / 360.0;
constexpr AngleUnit UNITS_PER_SECOND = 16;
constexpr double REFLECTOR_HEIGHT = 1.5;

AngleUnit OnCircle(AngleUnit angle)
{
    return (angle % ANGLE_FULL_CIRCLE + ANGLE_FULL_CIRCLE) % ANGLE_FULL_CIRCLE;
}

} // namespace

double Radians(AngleUnit angle)
{
    return angle * (PI / ANGLE_HALF_CIRCLE);
}

AngleUnit Units(double radians)
{
    return OnCircle(static_cast<AngleUnit>(std::lround(radians * (ANGLE_HALF_CIRCLE / PI))));
}

double Survey::Between(double lowest, double highest)
{
    state = state * 1664525U + 1013904223U;
    return lowest + (highest - lowest) * (state >> 8U) / 16777216.0;
}

double Survey::Length(double lowest, double highest)
{
    return std::round(Between(lowest, highest) * 1000.0) / 1000.0;
}

AngleUnit Survey::Angle(double lowest, double highest)
{
    const auto seconds = static_cast<AngleUnit>(Between(lowest, highest) * UNITS_PER_DEGREE) / UNITS_PER_SECOND;
    return OnCircle(seconds * UNITS_PER_SECOND);
}

PointRecord Survey::Point()
{
    PointRecord point{};
    point.northing = Length(1000.0, 1400.0);
    point.easting = Length(5000.0, 5400.0);
    point.height = Length(100.0, 120.0);
    point.flags = POINT_HAS_PLAN | POINT_HAS_HEIGHT;
    return point;
}

PointRecord Survey::PointFrom(const PointRecord& from, double nearest, double farthest, double lowest, double highest)
{
    const double distance = Between(nearest, farthest);
    const double azimuth = Radians(Angle(lowest, highest));
    PointRecord point = from;
    point.northing = std::round((from.northing + distance * std::cos(azimuth)) * 1000.0) / 1000.0;
    point.easting = std::round((from.easting + distance * std::sin(azimuth)) * 1000.0) / 1000.0;
    point.height = std::round((from.height + Between(-0.05, 0.05) * distance) * 1000.0) / 1000.0;
    return point;
}

LineDef Survey::Line()
{
    LineDef line{};
    line.first = Point();
    byAzimuth = !byAzimuth;
    if (byAzimuth)
    {
        line.azimuth = Angle(0.0, 360.0);
        line.mode = LINE_BY_AZIMUTH;
    }
    else
    {
        line.second = PointFrom(line.first, 20.0, 200.0);
        line.mode = LINE_BY_POINTS;
    }
    return line;
}

ResectObservation Survey::Sight(const PointRecord& station, AngleUnit orientation, const PointRecord& target)
{
    const double dN = target.northing - station.northing;
    const double dE = target.easting - station.easting;
    const double rise = target.height + REFLECTOR_HEIGHT - station.height;
    const double distance = std::hypot(dN, dE);
    const double zenith = std::atan2(distance, rise) + Between(-1e-5, 1e-5);
    const double slope = std::round((std::hypot(distance, rise) + Between(-0.003, 0.003)) * 1000.0) / 1000.0;
    ResectObservation sight{};
    sight.target = target;
    sight.horizontalAngle = OnCircle(Units(std::atan2(dE, dN) + Between(-1e-5, 1e-5)) - orientation);
    sight.zenithAngle = Units(zenith);
    sight.slopeDistance = slope;
    sight.horizontalDistance = slope * std::sin(zenith);
    sight.verticalDifference = slope * std::cos(zenith);
    sight.reflectorHeight = REFLECTOR_HEIGHT;
    return sight;
}

} // namespace target
