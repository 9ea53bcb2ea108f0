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

namespace {

class MeasureCalls : public testing::Test
{
protected:
    ~MeasureCalls() override
    {
        ConnectInstrumentSettings(nullptr);
    }

    /** Stands on a point with its circle oriented to the north. */
    static void SetUp(const std::string& station, double instrumentHeight)
    {
        Made("ConnectInstrumentSettings", R"("settings":{"simulatedInstrument":{"station":)" + station +
                                              R"(,"orientation":0,"instrumentHeight":)" +
                                              std::to_string(instrumentHeight) + "}}");
    }
};

} // namespace

TEST_F(MeasureCalls, RemoteElevation)
{
    const Json base = Made("QREMSetBase", R"("base":{"horizontalAngle":0,"zenithAngle":5184000,"distance":100})");
    EXPECT_EQ(base.dump(), R"({"call":"QREMSetBase","status":0,"status_name":"QSTD_OK"})");
    // Half a right angle up over 100.
    const Json line = Made("QREMCalc", R"("horizontalAngle":0,"zenithAngle":2592000)");
    EXPECT_EQ(At(line, "/status"), 0);
    ExpectPoint(0.0, 0.0, 100.0, 3, line, "/result");
}

TEST_F(MeasureCalls, ShowWhatAPartlyWrittenRecordKeeps)
{
    Made("QREMSetBase", R"("base":{"horizontalAngle":0,"zenithAngle":5184000,"distance":100})");
    // A vertical sight leaves the offset to the side alone.
    const Json line = Made("QREMCalc", R"("horizontalAngle":0,"zenithAngle":0)");
    EXPECT_EQ(At(line, "/status_name"), "QSTD_VERTICAL_SIGHT");
    EXPECT_EQ(At(line, "/result").dump(), R"({"northing":"untouched","easting":0.0,"height":134217728.0,"flags":3})");
}

TEST_F(MeasureCalls, RemoteDistance)
{
    const Json line = Made("QRDMCalcByCoord", R"("first":{"northing":0,"easting":0,"height":0},
        "second":{"northing":30,"easting":40,"height":120})");
    EXPECT_EQ(At(line, "/status"), 0);
    ExpectReal(130.0, line, "/result/slopeDistance");
    ExpectReal(50.0, line, "/result/horizontalDistance");
    ExpectReal(120.0, line, "/result/heightDifference");
    ExpectAngle(3060294, line, "/result/azimuth"); // atan(40 / 30) = 53.1301024 degrees = 3060293.9 units
}

TEST_F(MeasureCalls, TwoPointTarget)
{
    // An upright rod, prisms 2 apart, its end 3 beyond the upper one.
    const Json line = Made("QCalc2PtTarget", R"("first":{"northing":1,"easting":2,"height":0},
        "second":{"northing":1,"easting":2,"height":2},"spacing":2,"extension":3)");
    EXPECT_EQ(At(line, "/status"), 0);
    ExpectReal(2.0, line, "/measuredSpacing");
    ExpectPoint(1.0, 2.0, 5.0, 3, line, "/target");
}

TEST_F(MeasureCalls, SlopeReference)
{
    // Height = distance - 10.
    EXPECT_EQ(At(Made("QBRSetSlope", R"("height1":0,"distance1":10,"height2":10,"distance2":20)"), "/status"), 0);
    // At distance 25 the slope is 15 high, and 12 high at distance 22.
    const Json line = Made("QBRCalc", R"("base":{"northing":0,"easting":0},
        "point":{"northing":25,"easting":0,"height":12})");
    EXPECT_EQ(At(line, "/status"), 0);
    ExpectReal(3.0, line, "/result/offsetBeyondSlope");
    ExpectReal(-3.0, line, "/result/heightAboveSlope");
    ExpectReal(25.0, line, "/result/distanceFromBase");
}

TEST_F(MeasureCalls, CornerOfThreePoints)
{
    SetUp(R"({"northing":10,"easting":20,"height":100})", 1.5);
    // The corner (6, 0): 4 south and 20 west of the station; axis and prism at 101.5.
    const Json line =
        Made("QCalcOfsCorner3Pt", R"("first":{"northing":0,"easting":0},"second":{"northing":8,"easting":0},
        "third":{"northing":6,"easting":5,"height":100},"passthrough":1.5)");
    EXPECT_EQ(At(line, "/status"), 0);
    ExpectPoint(6.0, 0.0, 100.0, 3, line, "/corner");
    EXPECT_EQ(At(line, "/observation/zenithAngle"), ANGLE_QUARTER_CIRCLE);
    ExpectAngle(14900548, line, "/observation/horizontalAngle"); // 180 + atan(20 / 4) = 258.6900675 degrees
    ExpectReal(std::sqrt(416.0), line, "/observation/distance");
}

TEST_F(MeasureCalls, CornerOfFourPoints)
{
    SetUp(R"({"northing":1,"easting":-10,"height":98.5})", 1.5);
    // The north axis, and the line easting = northing - 1: they meet in (1, 0), 10 to the east at the axis's height.
    const Json line =
        Made("QCalcOfsCorner4Pt", R"("first":{"northing":0,"easting":0},"second":{"northing":8,"easting":0},
        "third":{"northing":5,"easting":4},"fourth":{"northing":6,"easting":5,"height":100},"reserved":7,
        "passthrough":0)");
    EXPECT_EQ(At(line, "/status"), 0);
    ExpectPoint(1.0, 0.0, 100.0, 3, line, "/corner");
    ExpectAngle(ANGLE_QUARTER_CIRCLE, line, "/observation/horizontalAngle");
    ExpectAngle(ANGLE_QUARTER_CIRCLE, line, "/observation/zenithAngle");
    ExpectReal(10.0, line, "/observation/distance");
}

TEST_F(MeasureCalls, EdgeUnderASight)
{
    SetUp(R"({"northing":5,"easting":10,"height":0})", 1.5);
    // The edge rises 5 over 10 to the north. A sight to the west meets it at northing 5, at height 2.5: 10 away and 1
    // above the axis.
    const Json line = Made("QCalcOfsLineHA", R"("first":{"northing":0,"easting":0,"height":0},
        "second":{"northing":10,"easting":0,"height":5},"horizontalAngle":15552000,"zenithAngle":5184000,
        "station":{"northing":5,"easting":10,"height":0},"instrumentHeight":1.5,"passthrough":0)");
    EXPECT_EQ(At(line, "/status"), 0);
    ExpectPoint(5.0, 0.0, 2.5, 3, line, "/target");
    ExpectAngle(15552000, line, "/observation/horizontalAngle");
    ExpectAngle(4855070, line, "/observation/zenithAngle"); // atan(10 / 1) = 84.2894069 degrees
    ExpectReal(std::sqrt(101.0), line, "/observation/distance");
}

TEST_F(MeasureCalls, CentreAndRadiusOfAColumn)
{
    SetUp(R"({"northing":0,"easting":0,"height":1})", 1.5);
    // The edges 30 degrees to both sides, so that the radius is half the distance to the centre; the face 5 away.
    const std::string sights = R"("faceSighting":{"horizontalAngle":0,"zenithAngle":5184000,"secondDistance":5},
        "passthrough":0,"leftAngle":19008000,"leftZenith":5184000,"rightAngle":1728000,"rightZenith":5184000,
        "station":{"northing":0,"easting":0,"height":1})";
    const Json line = Made("QCalcOfsCircle", sights + R"(,"centre":{"northing":0,"easting":0,"height":2.5})");
    EXPECT_EQ(At(line, "/status"), 0);
    ExpectPoint(10.0, 0.0, 2.5, 3, line, "/centre");
    ExpectReal(5.0, line, "/radius");
    ExpectReal(10.0, line, "/observation/distance");
    EXPECT_EQ(replay::Problem("QCalcOfsCircle", sights), "QCalcOfsCircle: missing \"centre\"") << "its height is read";
}
