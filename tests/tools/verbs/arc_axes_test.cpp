#include "verbs/arc_axes.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace qstd;

namespace {

constexpr AngleUnit DEGREE = 57600;

ArcDefinition Definition(AngleUnit start, AngleUnit end)
{
    ArcDefinition arc;
    arc.from.point = {1000.0, 2000.0, 7.0, POINT_HAS_PLAN | POINT_HAS_HEIGHT};
    arc.startAzimuth = start;
    arc.endAzimuth = end;
    arc.radius = -120.0;
    return arc;
}

} // namespace

TEST(ArcAxes, OfTheSiteChangeNothing)
{
    const ArcAxes axes;
    const PointRecord point = {123.456, -789.012, 3.0, POINT_HAS_PLAN};
    EXPECT_EQ(axes.In(point).northing, point.northing);
    EXPECT_EQ(axes.In(point).easting, point.easting);
    EXPECT_EQ(axes.In(350 * DEGREE), 350 * DEGREE);
}

TEST(ArcAxes, MirroredExchangeEastAndWest)
{
    ArcAxes axes;
    axes.origin = {1000.0, 2000.0};
    axes.isMirrored = true;
    const ArcDefinition own = axes.In(Definition(62 * DEGREE, 12 * DEGREE));
    EXPECT_EQ(own.startAzimuth, 298 * DEGREE);
    EXPECT_EQ(own.radius, 120.0);
    EXPECT_EQ(axes.In(PointRecord{1003.0, 2004.0, 0.0, POINT_HAS_PLAN}).easting, -4.0);
    EXPECT_EQ(axes.Out(own.endAzimuth), 12 * DEGREE);
}

TEST(ArcAxes, LeadAzimuthsInAndOut)
{
    ArcAxes axes;
    axes.turn = 45 * DEGREE;
    EXPECT_EQ(axes.In(30 * DEGREE), 345 * DEGREE);
    EXPECT_EQ(axes.Out(345 * DEGREE), 30 * DEGREE);
}

TEST(ArcAxes, KeepBothTangentsFromEastAndWest)
{
    // A right angle between them leaves 45 degrees at best, 22.5 at worst.
    for (AngleUnit start = 0; start < 360; start += 7)
    {
        for (const AngleUnit turn : {10, 50, 90, 130, 200, 300})
        {
            const ArcDefinition arc = Definition(start * DEGREE, (start + turn) % 360 * DEGREE);
            const ArcAxes axes = AxesFor(arc);
            const ArcDefinition own = axes.In(arc);
            for (const AngleUnit azimuth : {own.startAzimuth, own.endAzimuth})
            {
                const double fromNorth = std::fabs(std::remainder(azimuth / double{DEGREE}, 180.0));
                EXPECT_LE(fromNorth, 67.6) << start << ' ' << turn;
            }
            EXPECT_NEAR(own.from.point.northing, 0.0, 1e-9);
            EXPECT_EQ(own.from.point.height, 7.0);
        }
    }
}
