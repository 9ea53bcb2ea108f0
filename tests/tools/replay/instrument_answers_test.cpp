#include "replay/replay.h"

#include <cmath>
#include <string>

#include <gtest/gtest.h>

#include "qstdlib.h"

using replay::At;
using replay::ExpectAngle;
using replay::ExpectPoint;
using replay::ExpectReal;
using replay::Json;
using replay::Made;
using replay::Problem;

namespace {

class InstrumentAnswers : public testing::Test
{
protected:
    ~InstrumentAnswers() override
    {
        ConnectInstrumentSettings(nullptr);
    }

    static void Connect(const std::string& settings)
    {
        EXPECT_EQ(Made("ConnectInstrumentSettings", "\"settings\":" + settings).dump(),
                  R"({"call":"ConnectInstrumentSettings"})");
    }

    static int64_t AzimuthToTheNorth()
    {
        const Json line =
            Made("QCogoCoordToAngDist", R"("from":{"northing":0,"easting":0},"to":{"northing":1,"easting":0})");
        return At(line, "/result/azimuth").get<int64_t>();
    }

    /** Station height from a level sight, of zenith angle 90 degrees, to a point of height 100, 1000 away. */
    static double HeightOverAKilometre()
    {
        const auto target = [](const std::string& point, int reading) {
            return R"({"known":)" + point + R"(,"horizontalAngle":)" + std::to_string(reading) +
                   R"(,"zenithAngle":5184000,"reflectorHeight":0})";
        };
        const Json line =
            Made("QSTN3PtResect", R"("first":)" + target(R"({"northing":1000,"easting":0,"height":100})", 0) +
                                      R"(,"second":)" + target(R"({"northing":0,"easting":1000})", 5184000) +
                                      R"(,"third":)" + target(R"({"northing":-1000,"easting":0})", 10368000));
        return At(line, "/station/station/height").get<double>();
    }

    /** The corner (6, 0, 3) as the observation service hands it back. */
    static Json Corner(double passthrough = 0.0)
    {
        return Made("QCalcOfsCorner3Pt",
                    R"("first":{"northing":0,"easting":0},"second":{"northing":8,"easting":0},
                       "third":{"northing":6,"easting":5,"height":3},"passthrough":)" +
                        std::to_string(passthrough));
    }
};

// Rounding over a kilometre stays far below this. A radius that is wrong by 2 km would not: it changes the rise over
// 1000 by 0.0681 * 2 / 6370 = 0.00002.
constexpr double TOLERANCE = 1e-9;

/** Rise of a level sight above the level surface, (1 - k) D^2 / (2 R) for the earth's radius R = 6,370,000 m. */
double RiseOfALevelSight(double distance, double refractionCoefficient)
{
    constexpr double EARTH_RADIUS = 6370000.0;
    return (1.0 - refractionCoefficient) * distance * distance / (2.0 * EARTH_RADIUS);
}

constexpr const char* STANDING_WEST =
    R"("simulatedInstrument":{"station":{"northing":6,"easting":-10,"height":3},"orientation":0,"instrumentHeight":0})";

} // namespace

TEST_F(InstrumentAnswers, CountAzimuthsFromSouth)
{
    EXPECT_EQ(AzimuthToTheNorth(), 0);
    Connect(R"({"azimuthReference":1})");
    EXPECT_EQ(AzimuthToTheNorth(), ANGLE_HALF_CIRCLE);
    Connect(R"({"azimuthReference":2})");
    EXPECT_EQ(AzimuthToTheNorth(), 0);
}

TEST_F(InstrumentAnswers, AreForgottenByTheNextConnection)
{
    Connect(R"({"azimuthReference":1})");
    Connect(R"({"scaleFactor":1})");
    EXPECT_EQ(AzimuthToTheNorth(), 0);
    Connect(R"({"azimuthReference":1})");
    Connect("null");
    EXPECT_EQ(AzimuthToTheNorth(), 0);
    Connect(R"({"azimuthReference":1})");
    Connect("{}");
    EXPECT_EQ(AzimuthToTheNorth(), 0);
}

TEST_F(InstrumentAnswers, CorrectHeightsForCurvatureAndRefraction)
{
    // The axis lies below the target by what a level sight rises above the target's level, with k = 0.132 by
    // 0.868 * 1e6 / 12740000 = 0.0681318681, with k = 0.20 by 0.8 * 1e6 / 12740000 = 0.0627943485.
    EXPECT_NEAR(HeightOverAKilometre(), 100.0, TOLERANCE);
    Connect(R"({"curvatureRefraction":1})");
    EXPECT_NEAR(HeightOverAKilometre(), 100.0 - RiseOfALevelSight(1000.0, 0.132), TOLERANCE);
    Connect(R"({"curvatureRefraction":1,"refractionSelector":2})");
    EXPECT_NEAR(HeightOverAKilometre(), 100.0 - RiseOfALevelSight(1000.0, 0.20), TOLERANCE);
}

TEST_F(InstrumentAnswers, ScaleDistancesAndBringThemToSeaLevel)
{
    // The distance on the ground is 2000 by the scale 0.5, which makes 1000 in the plan of it.
    Connect(R"({"curvatureRefraction":1,"scaleFactor":0.5})");
    EXPECT_NEAR(HeightOverAKilometre(), 100.0 - RiseOfALevelSight(2000.0, 0.132), TOLERANCE);
    // At the height of the earth's radius above the sea, distances on the ground are twice those at sea level.
    Connect(R"({"curvatureRefraction":1,"seaLevel":1,"meanElevation":6370000})");
    EXPECT_NEAR(HeightOverAKilometre(), 100.0 - RiseOfALevelSight(2000.0, 0.132), TOLERANCE);
    Connect(R"({"curvatureRefraction":1,"meanElevation":6370000})");
    EXPECT_NEAR(HeightOverAKilometre(), 100.0 - RiseOfALevelSight(1000.0, 0.132), TOLERANCE);
}

TEST_F(InstrumentAnswers, ObserveByAnInstrumentThatStandsSomewhere)
{
    Connect("{" + std::string(STANDING_WEST) + "}");
    // 10 to the east, level; the prism passed through as 10 above the point: half a right angle up.
    const Json line = Corner(10.0);
    ExpectPoint(6.0, 0.0, 3.0, 3, line, "/corner");
    ExpectAngle(ANGLE_QUARTER_CIRCLE, line, "/observation/horizontalAngle");
    ExpectAngle(ANGLE_QUARTER_CIRCLE / 2, line, "/observation/zenithAngle");
    ExpectReal(10.0 * std::sqrt(2.0), line, "/observation/distance");
}

TEST_F(InstrumentAnswers, ObserveInTheReferenceAndFaceThatAreSet)
{
    Connect(R"({"azimuthReference":1,)" + std::string(STANDING_WEST) + "}");
    ExpectAngle(int64_t{3} * ANGLE_QUARTER_CIRCLE, Corner(), "/observation/horizontalAngle");
    Connect(R"({"faceTwo":1,)" + std::string(STANDING_WEST) + "}");
    ExpectAngle(int64_t{3} * ANGLE_QUARTER_CIRCLE, Corner(), "/observation/horizontalAngle");
    ExpectAngle(int64_t{3} * ANGLE_QUARTER_CIRCLE, Corner(), "/observation/zenithAngle");
    Connect(R"({"faceTwo":2,)" + std::string(STANDING_WEST) + "}");
    ExpectAngle(ANGLE_QUARTER_CIRCLE, Corner(), "/observation/zenithAngle");
}

TEST_F(InstrumentAnswers, ObserveWhatIsLaidDown)
{
    Connect(R"({"observation":{"status":7,"record":{"horizontalAngle":1,"zenithAngle":2,"distance":3,
        "secondDistance":4,"thirdDistance":5,"northing":6,"easting":7,"height":8}}})");
    const Json line = Corner();
    ExpectPoint(6.0, 7.0, 8.0, 3, line, "/corner");
    EXPECT_EQ(At(line, "/observation").dump(), R"({"horizontalAngle":1,"zenithAngle":2,"distance":3.0})");
    // The line offset passes the status of the service on.
    const Json edge = Made("QCalcOfsLineHA", R"("first":{"northing":0,"easting":0,"height":0},
        "second":{"northing":10,"easting":0,"height":5},"horizontalAngle":15552000,"zenithAngle":5184000,
        "station":{"northing":5,"easting":10,"height":0},"instrumentHeight":0,"passthrough":0)");
    EXPECT_EQ(At(edge, "/status"), 7);
}

TEST_F(InstrumentAnswers, TakeSmallDiscriminantsForZero)
{
    // A line that misses a circle of radius 1 by 1e-9.
    const std::string arguments = R"("line":{"first":{"northing":-1,"easting":0},"second":{"northing":1,"easting":0}},
        "centre":{"northing":0,"easting":1.000000001},"radius":1)";
    EXPECT_EQ(At(Made("QCogoCalcCrossLineCircle", arguments), "/status"), 0);
    Connect(R"({"discriminantTolerance":1e-6})");
    const Json line = Made("QCogoCalcCrossLineCircle", arguments);
    EXPECT_EQ(At(line, "/status"), 1);
    ExpectPoint(0.0, 0.0, 0.0, 1, line, "/pair/0");
}

TEST_F(InstrumentAnswers, AreRefusedWithTheirPlace)
{
    const auto problem = [](const std::string& settings) {
        return Problem("ConnectInstrumentSettings", "\"settings\":" + settings);
    };
    const std::string where = "ConnectInstrumentSettings: settings";
    EXPECT_EQ(Problem(R"({"call":"ConnectInstrumentSettings"})"), R"(ConnectInstrumentSettings: missing "settings")");
    EXPECT_EQ(problem(R"({"scale":1})"), where + R"(: no member is called "scale"; did you mean "seaLevel"?)");
    EXPECT_EQ(problem(R"({"seaLevel":true})"),
              where + ".seaLevel: expected an integer from -2147483648 to 2147483647, got true");
    EXPECT_EQ(problem(R"({"observation":{"status":0}})"), where + R"(.observation: missing "record")");
    EXPECT_EQ(problem(R"({"simulatedInstrument":{"station":{"northing":0,"easting":0}}})"),
              where + R"(.simulatedInstrument: missing "instrumentHeight", "orientation")");
    EXPECT_EQ(
        problem(R"({"observation":{"status":0,"record":{"horizontalAngle":0,"zenithAngle":0,"secondDistance":0}},)" +
                std::string(STANDING_WEST) + "}"),
        where + R"(: "observation" and "simulatedInstrument" exclude each other)");
}
