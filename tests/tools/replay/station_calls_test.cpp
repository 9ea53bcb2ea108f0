#include "replay/replay.h"

#include <string>

#include <fmt/format.h>
#include <gtest/gtest.h>

using replay::At;
using replay::ExpectAngle;
using replay::ExpectPoint;
using replay::ExpectReal;
using replay::Json;
using replay::Made;
using replay::Problem;

namespace {

/** A level sight to a point at height 10, from the origin with the circle's zero to the north. */
std::string LevelSight(double northing, double easting, int32_t reading, double distance)
{
    return fmt::format(R"({{"target":{{"northing":{},"easting":{},"height":10}},"horizontalAngle":{},)"
                       R"("zenithAngle":5184000,"slopeDistance":{},"horizontalDistance":{},"verticalDifference":0,)"
                       R"("reflectorHeight":0}})",
                       northing, easting, reading, distance, distance);
}

const std::string NORTH = LevelSight(100, 0, 0, 100);
const std::string EAST = LevelSight(0, 100, 5184000, 100);
const std::string SOUTH = LevelSight(-100, 0, 10368000, 0);
const std::string WEST = LevelSight(0, -100, 15552000, 0);

std::string TwoPointTarget(double northing, double easting, int32_t reading)
{
    return fmt::format(R"({{"known":{{"northing":{0},"easting":{1},"height":10}},"localNorthing":{0},)"
                       R"("localEasting":{1},"horizontalAngle":{2},"zenithAngle":5184000,"horizontalDistance":100,)"
                       R"("verticalDifference":0,"reflectorHeight":0}})",
                       northing, easting, reading);
}

std::string ThreePointTarget(double northing, double easting, int32_t reading)
{
    return fmt::format(R"({{"known":{{"northing":{},"easting":{},"height":10}},"horizontalAngle":{},)"
                       R"("zenithAngle":5184000,"reflectorHeight":1}})",
                       northing, easting, reading);
}

const std::string FIRST = R"("first":)" + TwoPointTarget(100, 0, 0);
const std::string SECOND = R"(,"second":)" + TwoPointTarget(0, 100, 5184000);

} // namespace

TEST(StationCalls, HeightFromABenchmark)
{
    // 756.31 + 5.64 - 11.15046.
    const Json line = Made("QSTNSeaLevelCalcByBM",
                           R"("benchmarkHeight":756.31,"reflectorHeight":5.64,"verticalDifference":11.15046)");
    EXPECT_FALSE(line.contains("status"));
    ExpectReal(750.79954, line, "/value");
}

TEST(StationCalls, TwoPoints)
{
    const Json line = Made("QSTN2PtResect", FIRST + SECOND);
    EXPECT_EQ(At(line, "/status"), 0);
    ExpectPoint(0.0, 0.0, 10.0, 3, line, "/station/station");
    ExpectAngle(0, line, "/station/orientation");
    ExpectReal(0.0, line, "/station/baselineCheck");
    ExpectReal(0.0, line, "/station/firstDistanceResidual");
    ExpectReal(0.0, line, "/station/secondDistanceResidual");
    ExpectReal(0.0, line, "/station/heightDifference");
}

TEST(StationCalls, TwoPointsShowAStationHandedInOrNone)
{
    const std::string planOnly = R"("first":{"known":{"northing":0,"easting":0,"flags":0},"localNorthing":0,
        "localEasting":0,"unused":[1,2],"horizontalAngle":0,"zenithAngle":0,"horizontalDistance":0,
        "verticalDifference":0,"reflectorHeight":0})";
    const Json without = Made("QSTN2PtResect", planOnly + SECOND);
    EXPECT_EQ(At(without, "/status_name"), "QSTD_MISSING_COORDINATES");
    EXPECT_EQ(At(without, "/station"), "untouched");
    const std::string station = R"({"station":{"northing":1.0,"easting":2.0,"height":3.0,"flags":3},"orientation":4,)"
                                R"("baselineCheck":5.0,"firstDistanceResidual":6.0,"secondDistanceResidual":7.0,)"
                                R"("heightDifference":8.0})";
    const Json with = Made("QSTN2PtResect", planOnly + SECOND + R"(,"station":)" + station);
    EXPECT_EQ(At(with, "/station").dump(), station);
}

TEST(StationCalls, ThreePoints)
{
    const Json line = Made("QSTN3PtResect", R"("first":)" + ThreePointTarget(100, 0, 0) + R"(,"second":)" +
                                                ThreePointTarget(0, 100, 5184000) + R"(,"third":)" +
                                                ThreePointTarget(-100, 0, 10368000));
    EXPECT_EQ(At(line, "/status"), 0);
    // Level sights to reflectors 1 above height 10.
    ExpectPoint(0.0, 0.0, 11.0, 3, line, "/station/station", 1e-6);
    ExpectAngle(0, line, "/station/orientation");
    EXPECT_EQ(At(line, "/station/baselineCheck"), "untouched") << "the three-point resection does not write it";
}

TEST(StationCalls, ManySights)
{
    const std::string sights = R"("observations":[)" + NORTH + "," + EAST + "," + SOUTH + "," + WEST + "]";
    for (const char* count : {"", R"(,"count":4)", R"(,"count":3)"})
    {
        const Json line = Made("QSTNMultiResect", sights + count);
        EXPECT_EQ(At(line, "/status"), 0) << count;
        ExpectPoint(0.0, 0.0, 10.0, 3, line, "/station/position", 1e-6);
        ExpectReal(0.0, line, "/station/northingPrecision", 1e-6);
        ASSERT_EQ(At(line, "/residuals").size(), 4U);
        ExpectReal(0.0, line, "/residuals/1/distanceResidual", 1e-6);
        ExpectAngle(0, line, "/residuals/2/angleResidual");
        EXPECT_EQ(At(line, "/residuals/3") == "untouched", std::string(count) == R"(,"count":3)");
    }
}

TEST(StationCalls, NoSights)
{
    for (const std::string& arguments :
         {std::string(R"("observations":[])"), R"("count":0,"observations":[)" + NORTH + "]",
          R"("count":-32768,"observations":[)" + NORTH + "]"})
    {
        const Json line = Made("QSTNMultiResect", arguments);
        EXPECT_EQ(At(line, "/status_name"), "QSTD_REJECTED");
        EXPECT_EQ(At(line, "/station"), "untouched");
    }
}

TEST(StationCalls, RefuseMoreSightsThanTheAdjustmentHasRoomFor)
{
    std::string sights = "1";
    for (size_t i = 0; i < qstd::MOST_OBSERVATIONS; ++i)
    {
        sights += ",1";
    }
    EXPECT_EQ(Problem("QSTNMultiResect", R"("observations":[)" + sights + "]"),
              "QSTNMultiResect: observations: 2501 elements, at most 2500 can be handed in");
}

TEST(StationCalls, KnownLine)
{
    // From 100 north to 100 east of the station: an azimuth of 135 degrees.
    const std::string sights = R"("startObservation":)" + NORTH + R"(,"directionObservation":)" + EAST;
    for (const char* azimuth : {"7776000", "2147483647"})
    {
        const Json line = Made("QSTNKnownLine", sights + R"(,"lineAzimuth":)" + azimuth);
        EXPECT_EQ(At(line, "/status"), 0) << azimuth;
        ExpectPoint(0.0, 0.0, 10.0, 3, line, "/station/position", 1e-6);
        ExpectReal(0.0, line, "/residuals/0/distanceResidual", 1e-6);
        ExpectAngle(0, line, "/residuals/1/angleResidual");
    }
}
