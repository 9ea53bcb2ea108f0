#include "replay/replay.h"

#include <gtest/gtest.h>

#include "qstdlib.h"

using replay::At;
using replay::ExpectAngle;
using replay::ExpectPoint;
using replay::ExpectReal;
using replay::Json;
using replay::Made;

namespace {

constexpr double PI = 3.14159265358979323846;

constexpr const char* SET_OK_TAIL = R"("status":0,"status_name":"QSTD_OK"})";

void ExpectSet(const std::string& function, const std::string& arguments)
{
    EXPECT_EQ(Made(function, arguments).dump(), R"({"call":")" + function + "\"," + SET_OK_TAIL);
}

} // namespace

TEST(ReferenceCalls, Line)
{
    ExpectSet("QREFSetBaseLine", R"("first":{"northing":0,"easting":0,"height":10},
        "second":{"northing":100,"easting":0,"height":20})");
    // A quarter of the way, where the grade is 12.5.
    const Json line = Made("QREFCalc", R"("point":{"northing":25,"easting":3,"height":14})");
    EXPECT_EQ(At(line, "/status"), 0);
    ExpectPoint(25.0, 0.0, 12.5, 3, line, "/result/foot");
    ExpectReal(25.0, line, "/result/station");
    ExpectReal(3.0, line, "/result/offset");
    ExpectReal(1.5, line, "/result/heightDifference");
}

TEST(ReferenceCalls, ArcByItsEnds)
{
    // A quarter circle of radius 100, from north-east to south-east: a chord of 100 sqrt(2) to the east.
    ExpectSet("QREFSetArcByCoord", R"("start":{"northing":0,"easting":0},
        "end":{"northing":0,"easting":141.4213562373095},"startAzimuth":2592000,"endAzimuth":7776000)");
    const Json line = Made("QREFGetArcParams", "");
    EXPECT_EQ(At(line, "/status"), 0);
    ExpectAngle(2592000, line, "/params/startAzimuth");
    ExpectAngle(7776000, line, "/params/endAzimuth");
    ExpectReal(100.0, line, "/params/radius", 1e-6);
    ExpectReal(50.0 * PI, line, "/params/length", 1e-6);
    ExpectAngle(ANGLE_QUARTER_CIRCLE, line, "/params/centralAngle");
}

TEST(ReferenceCalls, ArcByRadiusAndAzimuths)
{
    ExpectSet("QREFSetArcByRadiusHAngle",
              R"("start":{"northing":0,"easting":0,"height":5},"startAzimuth":0,"radius":100,"endAzimuth":5184000)");
    ExpectReal(50.0 * PI, Made("QREFGetArcParams", ""), "/params/length", 1e-4);
    // On the radius 45 degrees from the start, 90 from the centre (0, 100): 10 inside, which is to the right.
    const double part = 90.0 * std::sqrt(0.5);
    const Json point = {{"northing", part}, {"easting", 100.0 - part}, {"height", 7.0}};
    const Json line = Made("QREFCalcArc", "\"measured\":" + point.dump());
    EXPECT_EQ(At(line, "/status"), 0);
    ExpectReal(25.0 * PI, line, "/result/along", 1e-6);
    ExpectReal(10.0, line, "/result/offset", 1e-6);
    ExpectReal(2.0, line, "/result/heightDifference");
    ExpectPoint(0.0, 0.0, 0.0, 0, line, "/result/point");
}

TEST(ReferenceCalls, ArcByRadiusAndLength)
{
    // Half a circle to the left.
    const Json length = 50.0 * PI;
    ExpectSet("QREFSetArcByRadiusArcLen", R"("start":{"northing":0,"easting":0},"startAzimuth":5184000,"radius":-50,
        "length":)" + length.dump());
    const Json line = Made("QREFGetArcParams", "");
    ExpectReal(-50.0, line, "/params/radius");
    ExpectReal(50.0 * PI, line, "/params/length");
    ExpectAngle(-ANGLE_HALF_CIRCLE, line, "/params/centralAngle");
    ExpectAngle(ANGLE_QUARTER_CIRCLE, line, "/params/startAzimuth");
}

TEST(ReferenceCalls, PlaneThroughTwoPoints)
{
    ExpectSet("QREFSet2PtBasePlane", R"("first":{"northing":0,"easting":0,"height":5},
        "second":{"northing":0,"easting":10,"height":0})");
    // From 10 south of the plane, half a right angle up from an axis at 1.5: 11.5, 6.5 above the first point.
    const Json line = Made("QREFCalc2PtPlane", R"("horizontalAngle":0,"zenithAngle":2592000,
        "station":{"northing":-10,"easting":2,"height":0},"instrumentHeight":1.5)");
    EXPECT_EQ(At(line, "/status"), 0);
    ExpectPoint(0.0, 2.0, 11.5, 3, line, "/point");
    ExpectReal(2.0, line, "/alongPlane");
    ExpectReal(6.5, line, "/heightAboveFirst");
}

TEST(ReferenceCalls, PlaneThroughThreePoints)
{
    ExpectSet("QREFSet3PtBasePlane", R"("first":{"northing":0,"easting":0,"height":0},
        "second":{"northing":0,"easting":10,"height":0},"third":{"northing":10,"easting":0,"height":0})");
    // Half a right angle down from 10 above the level plane: 10 further north.
    const Json line = Made("QREFCalc3PtPlane", R"("horizontalAngle":0,"zenithAngle":7776000,
        "station":{"northing":-5,"easting":3,"height":8.5},"instrumentHeight":1.5)");
    EXPECT_EQ(At(line, "/status"), 0);
    ExpectPoint(5.0, 3.0, 0.0, 3, line, "/point");
    ExpectReal(3.0, line, "/alongBaseline");
    EXPECT_NEAR(5.0, std::fabs(At(line, "/acrossBaseline").get<double>()), 1e-9);
}

TEST(ReferenceCalls, VerticalPlaneWithoutThirdPoint)
{
    ExpectSet("QREFSet3PtBasePlane", R"("first":{"northing":0,"easting":0,"height":5},
        "second":{"northing":0,"easting":10,"height":5},"third":null)");
    // Seen from the south, above an east-running baseline: 11.5 - 5, counted negative.
    const Json line = Made("QREFCalc3PtPlane", R"("horizontalAngle":0,"zenithAngle":2592000,
        "station":{"northing":-10,"easting":2,"height":0},"instrumentHeight":1.5)");
    EXPECT_EQ(At(line, "/status"), 0);
    ExpectPoint(0.0, 2.0, 11.5, 3, line, "/point");
    ExpectReal(2.0, line, "/alongBaseline");
    ExpectReal(-6.5, line, "/acrossBaseline");
    EXPECT_EQ(replay::Problem("QREFSet3PtBasePlane", R"("first":{"northing":0,"easting":0,"height":5},
        "second":{"northing":0,"easting":10,"height":5})"),
              "QREFSet3PtBasePlane: missing \"third\"");
}
