#include "proof/plan_geometry.h"

#include "verbs/own_axes.h"

#include <gtest/gtest.h>

using namespace qstd;

namespace {

constexpr AngleUnit DEGREE = 57600;

} // namespace

TEST(PlanGeometry, CountsToTheRightOfADirection)
{
    // Direction (0.8, 0.6): (30, 45) goes 24 + 27 = 51 along and 36 - 18 = 18 to the right.
    const Course course = CourseThrough({100.0, 200.0}, {104.0, 203.0});
    EXPECT_NEAR(course.Along({130.0, 245.0}), 51.0, 1e-12);
    EXPECT_NEAR(course.Right({130.0, 245.0}), 18.0, 1e-12);
    EXPECT_EQ(TurnedRight({3.0, 4.0}).north, -4.0);
    EXPECT_EQ(TurnedRight({3.0, 4.0}).east, 3.0);
}

TEST(PlanGeometry, TakesAnAzimuthOfAnySizeFromEitherEnd)
{
    // 3-4-5: 53.13010 degrees.
    const AngleUnit azimuth = 3060294; // 53.130104 * 57600
    for (const AngleUnit turned : {azimuth, azimuth - ANGLE_FULL_CIRCLE, azimuth + ANGLE_FULL_CIRCLE})
    {
        EXPECT_NEAR(DirectionOfAzimuth(turned, false).north, 0.6, 3e-7);
        EXPECT_NEAR(DirectionOfAzimuth(turned, false).east, 0.8, 3e-7);
        EXPECT_NEAR(DirectionOfAzimuth(turned, true).north, -0.6, 3e-7);
        EXPECT_NEAR(DirectionOfAzimuth(turned, true).east, -0.8, 3e-7);
    }
}

TEST(PlanGeometry, TakesALineByPointsOrByAzimuth)
{
    const PointRecord first = {10.0, 20.0, 0.0, POINT_HAS_PLAN};
    const LineDef byPoints = {first, {14.0, 17.0, 0.0, POINT_HAS_PLAN}, 5 * DEGREE, LINE_BY_POINTS};
    EXPECT_NEAR(CourseOf(byPoints, true).direction.north, 0.8, 1e-12);
    EXPECT_NEAR(CourseOf(byPoints, true).direction.east, -0.6, 1e-12);
    const LineDef byAzimuth = {first, {}, 30 * DEGREE, LINE_BY_AZIMUTH};
    EXPECT_NEAR(CourseOf(byAzimuth, false).direction.east, 0.5, 1e-12);
    EXPECT_NEAR(CourseOf(byAzimuth, true).direction.east, -0.5, 1e-12);
}

TEST(OwnAxes, LeadInAndOut)
{
    const OwnAxes axes({100.0, 200.0}, {0.8, 0.6});
    const PointRecord point = {130.0, 245.0, 7.0, POINT_HAS_PLAN | POINT_HAS_HEIGHT};
    const PointRecord own = axes.In(point);
    EXPECT_NEAR(own.northing, 51.0, 1e-12);
    EXPECT_NEAR(own.easting, 18.0, 1e-12);
    EXPECT_EQ(own.height, 7.0);
    EXPECT_EQ(own.flags, point.flags);
    const PointRecord back = axes.Out(own);
    EXPECT_NEAR(back.northing, 130.0, 1e-12);
    EXPECT_NEAR(back.easting, 245.0, 1e-12);
}
