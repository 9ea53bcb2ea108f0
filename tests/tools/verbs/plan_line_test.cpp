#include "verbs/plan_line.h"

#include "text/outcome.h"

#include <gtest/gtest.h>

#include <cmath>

using qstd::DrawnLine;
using qstd::FigureLine;
using qstd::Inputs;
using qstd::LinePlace;
using qstd::Messages;
using qstd::PlaceOnLine;
using qstd::PlanLine;
using qstd::ReadLine;
using qstd::WrongUse;

namespace {

PointRecord Plan(double northing, double easting)
{
    return {northing, easting, 0.0, POINT_HAS_PLAN};
}

LineDef ByAzimuth(double northing, double easting, AngleUnit azimuth)
{
    return {Plan(northing, easting), {}, azimuth, LINE_BY_AZIMUTH};
}

LineDef ByPoints(const PointRecord& first, const PointRecord& second)
{
    return {first, second, 0, LINE_BY_POINTS};
}

} // namespace

TEST(PlaceOnLine, CountsAlongAndToTheRight)
{
    // Direction (0.8, 0.6): (30, 45) lies 30 * 0.8 + 45 * 0.6 = 51 along, 45 * 0.8 - 30 * 0.6 = 18 to the right.
    const LinePlace place = PlaceOnLine(ByPoints(Plan(100.0, 200.0), Plan(104.0, 203.0)), Plan(130.0, 245.0), false);
    EXPECT_NEAR(place.chainage, 51.0, 1e-12);
    EXPECT_NEAR(place.offset, 18.0, 1e-12);
}

TEST(PlaceOnLine, FollowsTheAzimuthReference)
{
    const LineDef east = ByAzimuth(0.0, 0.0, ANGLE_QUARTER_CIRCLE);
    const LinePlace north = PlaceOnLine(east, Plan(7.0, 3.0), false);
    EXPECT_NEAR(north.chainage, 3.0, 1e-12);
    EXPECT_NEAR(north.offset, -7.0, 1e-12);
    const LinePlace south = PlaceOnLine(east, Plan(7.0, 3.0), true);
    EXPECT_NEAR(south.chainage, -3.0, 1e-12);
    EXPECT_NEAR(south.offset, 7.0, 1e-12);
}

TEST(DrawnLine, CarriesItsPointsAndGoesBeyondThem)
{
    // To the north from 0 to 10; points beside it at -20 and 5: from -20 to 10, a little more at either end.
    const FigureLine line =
        DrawnLine(ByPoints(Plan(0.0, 0.0), Plan(10.0, 0.0)), {Plan(-20.0, 3.0), Plan(5.0, 9.0)}, false);
    EXPECT_LT(line.from.northing, -20.0);
    EXPECT_GT(line.from.northing, -26.0);
    EXPECT_GT(line.to.northing, 10.0);
    EXPECT_LT(line.to.northing, 16.0);
    EXPECT_EQ(line.from.easting, 0.0);
    EXPECT_EQ(line.to.easting, 0.0);
}

TEST(ReadLine, TakesAPointBeforeAnAzimuth)
{
    Messages messages;
    Inputs inputs("", std::nullopt, messages);
    const PlanLine points = ReadLine({"1,2", "3,4"}, inputs);
    EXPECT_TRUE(points.IsByPoints());
    EXPECT_EQ(points.definition.second.easting, 4.0);
    const PlanLine azimuth = ReadLine({"1,2", "100g"}, inputs);
    EXPECT_FALSE(azimuth.IsByPoints());
    EXPECT_EQ(azimuth.definition.azimuth, ANGLE_QUARTER_CIRCLE);
    EXPECT_THROW(ReadLine({"1,2", "B"}, inputs), WrongUse);
    EXPECT_THROW(ReadLine({"1,2", "77"}, inputs), WrongUse);
}
