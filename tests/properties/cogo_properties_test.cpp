// Whatever the figures: intersections lie on both, a foot is on its line and perpendicular, an area does not depend on
// where and how the polygon lies.
#include <algorithm>
#include <cmath>
#include <vector>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "qstdlib.h"
#include "tests/support/angle.h"
#include "tests/support/random_geometry.h"

using support::AheadOf;
using support::AnyPoint;
using support::Degrees;
using support::IsNear;
using support::Millimetres;
using support::Moved;
using support::PlanDistance;
using support::RightOf;

namespace {

// Coordinates of a kilometre, slopes of some hundred: 2^-52 of a million, and some margin.
constexpr double ROUNDING = 1e-7;

struct Line
{
    PointRecord through;
    double direction; // radians

    double DistanceOf(const PointRecord& point) const
    {
        return RightOf(through, direction, point);
    }

    // By two points up to a kilometre apart, or by the azimuth.
    LineDef Definition() const
    {
        const PointRecord second = Moved(through, direction, support::Sign() * Millimetres(10, 1000));
        const auto azimuth = static_cast<AngleUnit>(std::lround(support::RadiansToUnits(direction)));
        return {through, second, azimuth, *rc::gen::element<uint16_t>(LINE_BY_AZIMUTH, LINE_BY_POINTS)};
    }
};

// A direction in tenths of a degree: a whole number of units, and a slope of 573 at most where it is not infinite.
double AnyDirection()
{
    return *rc::gen::inRange(0, 3600) / 1800.0 * support::PI;
}

Line AnyLine()
{
    return {AnyPoint(1000), AnyDirection()};
}

} // namespace

RC_GTEST_PROP(CogoProperties, LinesCrossOnBoth, ())
{
    const Line first = AnyLine();
    // At an angle of 5 degrees at least.
    const Line second = {AnyPoint(1000), first.direction + *rc::gen::inRange(50, 1750) / 1800.0 * support::PI};
    const LineDef line1 = first.Definition();
    const LineDef line2 = second.Definition();
    PointRecord point;
    RC_ASSERT(QCogoCalcCrossLine(&line1, &line2, &point) == 0);
    // Up to 16 km away: the error of a direction counts from there.
    const double bound = ROUNDING + 1e-10 * PlanDistance(first.through, point);
    RC_ASSERT(IsNear(0.0, first.DistanceOf(point), bound));
    RC_ASSERT(IsNear(0.0, second.DistanceOf(point), bound));
}

RC_GTEST_PROP(CogoProperties, CirclesCrossOnBoth, ())
{
    const double radius1 = Millimetres(1, 500);
    const double radius2 = Millimetres(1, 500);
    // A tenth of the smaller radius off touching.
    const double margin = 0.1 * std::min(radius1, radius2);
    const double nearest = std::fabs(radius1 - radius2) + margin;
    const double farthest = radius1 + radius2 - margin;
    const double distance = nearest + (farthest - nearest) * *rc::gen::inRange(0, 1001) / 1000.0;
    const PointRecord centre1 = AnyPoint(1000);
    const double direction = AnyDirection();
    const PointRecord centre2 = Moved(centre1, direction, distance);
    PointRecord pair[2];
    RC_ASSERT(QCogoCalcCrossCircle(&centre1, radius1, &centre2, radius2, pair) == 2);
    for (const PointRecord& point : pair)
    {
        RC_ASSERT(IsNear(radius1, PlanDistance(centre1, point), ROUNDING));
        RC_ASSERT(IsNear(radius2, PlanDistance(centre2, point), ROUNDING));
        RC_ASSERT(point.flags == 1);
    }
    RC_ASSERT(RightOf(centre1, direction, pair[0]) > 0.0);
    RC_ASSERT(RightOf(centre1, direction, pair[1]) < 0.0);
}

RC_GTEST_PROP(CogoProperties, CirclesApartDoNotCross, ())
{
    const double radius1 = Millimetres(1, 500);
    const double radius2 = Millimetres(1, 500);
    const double gap = Millimetres(0, 100) + 0.001;
    const bool within = std::fabs(radius1 - radius2) > gap && *rc::gen::arbitrary<bool>();
    const double distance = within ? std::fabs(radius1 - radius2) - gap : radius1 + radius2 + gap;
    const PointRecord centre1 = AnyPoint(1000);
    const PointRecord centre2 = Moved(centre1, AnyDirection(), distance);
    PointRecord pair[2];
    RC_ASSERT(QCogoCalcCrossCircle(&centre1, radius1, &centre2, radius2, pair) == 0);
    RC_ASSERT(pair[0].northing == UNDEFINED_REAL);
    RC_ASSERT(pair[1].easting == UNDEFINED_REAL);
}

RC_GTEST_PROP(CogoProperties, ALineCrossesACircleOnBoth, ())
{
    // Up to a slope of 5.7, and of constant northing; steeper, the equation's coefficients lose digits.
    const double direction = *rc::gen::arbitrary<bool>() ? Degrees(-80, 80) : support::PI / 2.0;
    const PointRecord centre = AnyPoint(1000);
    const double radius = Millimetres(1, 500);
    const double aside = 0.9 * radius * *rc::gen::inRange(-1000, 1001) / 1000.0;
    PointRecord through = Moved(centre, direction, Millimetres(-500, 500), aside);
    PointRecord second = Moved(through, direction, Millimetres(10, 1000));
    if (direction == support::PI / 2.0)
    {
        second.northing = through.northing;
    }
    const LineDef line = {through, second, 0, LINE_BY_POINTS};
    PointRecord pair[2];
    RC_ASSERT(QCogoCalcCrossLineCircle(&line, &centre, radius, pair) == 2);
    // The discriminant's error is 2^-52 of the fourth power of slope and coordinates, over the chord: at least 0.8.
    constexpr double BOUND = 1e-4;
    for (const PointRecord& point : pair)
    {
        RC_ASSERT(IsNear(radius, PlanDistance(centre, point), BOUND));
        RC_ASSERT(IsNear(0.0, RightOf(through, direction, point), BOUND));
    }
    RC_ASSERT(IsNear(2.0 * std::sqrt(radius * radius - aside * aside), PlanDistance(pair[0], pair[1]), BOUND));
    RC_ASSERT(AheadOf(pair[0], direction, pair[1]) > 0.0);
}

RC_GTEST_PROP(CogoProperties, AFootIsOnItsLineAndPerpendicular, ())
{
    const Line line = AnyLine();
    const LineDef definition = line.Definition();
    const PointRecord point = AnyPoint(1000);
    PointRecord foot;
    RC_ASSERT(QCogoCalcPtLine(&definition, &point, &foot) == 0);
    RC_ASSERT(IsNear(0.0, line.DistanceOf(foot), ROUNDING));
    RC_ASSERT(IsNear(0.0, AheadOf(point, line.direction, foot), ROUNDING));
}

RC_GTEST_PROP(CogoProperties, ATransferredLineKeepsLengthAngleAndOffset, ())
{
    const PointRecord first = AnyPoint(1000);
    const double direction = AnyDirection();
    const double length = Millimetres(1, 500);
    const LineDef line = {first, Moved(first, direction, length), 0, LINE_BY_POINTS};
    const AngleUnit rotation = *rc::gen::inRange(-ANGLE_FULL_CIRCLE, ANGLE_FULL_CIRCLE);
    const double offset = Millimetres(-100, 100);
    LineDef result;
    RC_ASSERT(QCogoCalcTransLine(&line, rotation, offset, &result) == 0);
    const double turned = direction + support::UnitsToRadians(rotation);
    RC_ASSERT(IsNear(0.0, AheadOf(first, turned, result.first), ROUNDING));
    RC_ASSERT(IsNear(offset, RightOf(first, turned, result.first), ROUNDING));
    RC_ASSERT(IsNear(length, AheadOf(first, turned, result.second), ROUNDING));
    RC_ASSERT(IsNear(offset, RightOf(first, turned, result.second), ROUNDING));
}

namespace {

// A polygon that is seen whole from its centre, its corners by direction and distance.
struct Polygon
{
    std::vector<double> directions; // increasing, less than a full circle in all
    std::vector<double> distances;

    std::vector<PointRecord> Corners(const PointRecord& centre, double turn) const
    {
        std::vector<PointRecord> corners;
        for (size_t i = 0; i < directions.size(); ++i)
        {
            corners.push_back(Moved(centre, directions[i] + turn, distances[i]));
        }
        return corners;
    }

    // As a fan of triangles around the centre.
    double Area() const
    {
        double area = 0.0;
        for (size_t i = 0; i < directions.size(); ++i)
        {
            const size_t next = (i + 1) % directions.size();
            area += 0.5 * distances[i] * distances[next] * std::sin(directions[next] - directions[i]);
        }
        return area;
    }
};

Polygon AnyPolygon()
{
    const int count = *rc::gen::inRange(3, 60);
    Polygon polygon;
    for (int i = 0; i < count; ++i)
    {
        // Less than half a sector off its middle: below half a circle from corner to corner.
        const double within = *rc::gen::inRange(-200, 201) / 1000.0;
        polygon.directions.push_back((i + within) * 2.0 * support::PI / count);
        polygon.distances.push_back(Millimetres(10, 500));
    }
    return polygon;
}

double AreaOf(const std::vector<PointRecord>& corners)
{
    return QCogoCalcArea(corners.data(), static_cast<int32_t>(corners.size()));
}

} // namespace

RC_GTEST_PROP(CogoProperties, AnAreaDependsOnTheShapeAlone, ())
{
    const Polygon polygon = AnyPolygon();
    constexpr int32_t FAR = 200000;
    const PointRecord centre = AnyPoint(FAR);
    std::vector<PointRecord> corners = polygon.Corners(centre, support::UnitsToRadians(support::AnyAzimuth()));
    // Two products a corner, each rounded by half of 2^-52 at most, and corners rounded by as much of the coordinate,
    // which move an area by that times two sides of 1 km at most. The sum itself loses nothing that counts.
    const double largest = FAR + 500.0;
    const double bound = static_cast<double>(corners.size()) * 0x1p-52 * (largest * largest + largest * 2000.0);
    RC_ASSERT(IsNear(polygon.Area(), AreaOf(corners), bound));
    const double area = AreaOf(corners);
    std::reverse(corners.begin(), corners.end());
    RC_ASSERT(IsNear(area, AreaOf(corners), bound));
    std::rotate(corners.begin(), corners.begin() + 1, corners.end());
    RC_ASSERT(IsNear(area, AreaOf(corners), bound));
}
