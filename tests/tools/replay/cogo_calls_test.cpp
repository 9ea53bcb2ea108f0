#include "replay/replay.h"

#include <gtest/gtest.h>

using replay::At;
using replay::ExpectAngle;
using replay::ExpectPoint;
using replay::ExpectReal;
using replay::Json;
using replay::Made;

TEST(CogoCalls, ComputeAzimuthZenithAndDistances)
{
    // 30 north, 40 east, 120 up: 50 in plan, 130 in space; azimuth atan(40 / 30) = 53.1301024 degrees = 3060293.9
    // units, zenith atan(50 / 120) = 22.6198650 degrees = 1302904.2 units.
    const Json line = Made("QCogoCoordToAngDist", R"("from":{"northing":100,"easting":200,"height":10},
                                                     "to":{"northing":130,"easting":240,"height":130})");
    EXPECT_EQ(At(line, "/status"), 0);
    ExpectAngle(3060294, line, "/result/azimuth");
    ExpectAngle(1302904, line, "/result/zenith");
    ExpectReal(130.0, line, "/result/slopeDistance");
    ExpectReal(50.0, line, "/result/horizontalDistance");
    ExpectReal(120.0, line, "/result/heightDifference");
}

TEST(CogoCalls, ComputeAPointFromAzimuthAndDistance)
{
    // 50 to the east and 2 down.
    const Json line = Made("QCogoAngDistToCoord", R"("from":{"northing":100,"easting":200,"height":10},
        "observation":{"azimuth":5184000,"horizontalDistance":50,"heightDifference":-2})");
    EXPECT_EQ(At(line, "/status"), 0);
    ExpectPoint(100.0, 250.0, 8.0, 3, line, "/result");
}

TEST(CogoCalls, ComputeAPointByChainageAndOffset)
{
    // A quarter of the way north, so a quarter of the way up; 3 to the right is 3 east.
    const Json line = Made("QCogoOffsetToCoord", R"("start":{"northing":0,"easting":0,"height":10},
        "end":{"northing":100,"easting":0,"height":20},"chainage":25,"offset":3)");
    EXPECT_EQ(At(line, "/status"), 0);
    ExpectPoint(25.0, 3.0, 12.5, 3, line, "/result");
}

TEST(CogoCalls, ComputeGradeAndRatioWithoutStatus)
{
    // 2 in 50 is 4 in 100, 1 in 25.
    const Json line = Made("QCogoCalcSlopeByDist", R"("horizontal":50,"vertical":2)");
    EXPECT_FALSE(line.contains("status"));
    EXPECT_FALSE(line.contains("value"));
    ExpectReal(4.0, line, "/slope/grade");
    ExpectReal(25.0, line, "/slope/ratio");
}

TEST(CogoCalls, ComputeAnAreaAsValue)
{
    // A triangle of 3 by 4.
    const std::string corners = R"("points":[{"northing":0,"easting":0},{"northing":3,"easting":0},
                                             {"northing":3,"easting":4}])";
    const Json line = Made("QCogoCalcArea", corners);
    EXPECT_FALSE(line.contains("status"));
    ExpectReal(6.0, line, "/value");
    ExpectReal(6.0, Made("QCogoCalcArea", corners + R"(,"n":3)"), "/value");
    // Two corners, or a number of them that is none, have no area.
    ExpectReal(0.0, Made("QCogoCalcArea", corners + R"(,"n":2)"), "/value");
    ExpectReal(0.0, Made("QCogoCalcArea", corners + R"(,"n":-1)"), "/value");
    ExpectReal(0.0, Made("QCogoCalcArea", R"("points":[])"), "/value");
}

TEST(CogoCalls, IntersectTwoLines)
{
    // Northing = easting, and northing + easting = 10.
    const Json line = Made("QCogoCalcCrossLine", R"("line1":{"first":{"northing":0,"easting":0},"azimuth":2592000},
        "line2":{"first":{"northing":10,"easting":0},"second":{"northing":0,"easting":10}})");
    EXPECT_EQ(At(line, "/status"), 0);
    ExpectPoint(5.0, 5.0, 0.0, 1, line, "/result");
}

TEST(CogoCalls, IntersectTwoCircles)
{
    // Centres 6 apart, radii 5: halfway, 4 to the right and to the left of the way north.
    const Json line = Made("QCogoCalcCrossCircle", R"("centre1":{"northing":0,"easting":0},"radius1":5,
        "centre2":{"northing":6,"easting":0},"radius2":5)");
    EXPECT_EQ(At(line, "/status"), 2);
    EXPECT_FALSE(line.contains("status_name")) << "2 is a number of points";
    ExpectPoint(3.0, 4.0, 0.0, 1, line, "/pair/0");
    ExpectPoint(3.0, -4.0, 0.0, 1, line, "/pair/1");
}

TEST(CogoCalls, NameTheStatusOfCirclesWhereItIsOne)
{
    const Json none = Made("QCogoCalcCrossCircle", R"("centre1":{"northing":0,"easting":0},"radius1":1,
        "centre2":{"northing":6,"easting":0},"radius2":1)");
    EXPECT_EQ(At(none, "/status"), 0);
    EXPECT_FALSE(none.contains("status_name")) << "0 is a number of points";
    const Json identical = Made("QCogoCalcCrossCircle", R"("centre1":{"northing":0,"easting":0},"radius1":1,
        "centre2":{"northing":0,"easting":0},"radius2":1)");
    EXPECT_EQ(At(identical, "/status"), -1);
    EXPECT_EQ(At(identical, "/status_name"), "QSTD_REJECTED");
    EXPECT_EQ(At(identical, "/pair"), "untouched");
}

TEST(CogoCalls, IntersectALineAndACircle)
{
    // Along easting 0, 3 from the centre of a circle of radius 5: 4 south and 4 north of the foot.
    const Json line = Made("QCogoCalcCrossLineCircle", R"("line":{"first":{"northing":-10,"easting":0},
        "second":{"northing":10,"easting":0}},"centre":{"northing":0,"easting":3},"radius":5)");
    EXPECT_EQ(At(line, "/status"), 2);
    EXPECT_FALSE(line.contains("status_name"));
    ExpectPoint(-4.0, 0.0, 0.0, 1, line, "/pair/0");
    ExpectPoint(4.0, 0.0, 0.0, 1, line, "/pair/1");
}

TEST(CogoCalls, DropAPerpendicular)
{
    // Onto the diagonal, from (10, 0): (5, 5), halfway between the heights 10 and 20.
    const Json line = Made("QCogoCalcPtLine", R"("line":{"first":{"northing":0,"easting":0,"height":10},
        "second":{"northing":10,"easting":10,"height":20}},"point":{"northing":10,"easting":0})");
    EXPECT_EQ(At(line, "/status"), 0);
    ExpectPoint(5.0, 5.0, 15.0, 3, line, "/foot");
}

TEST(CogoCalls, TransferALine)
{
    // North turned by a quarter circle runs east; 2 to the right of that is 2 south.
    const Json line = Made("QCogoCalcTransLine", R"("line":{"first":{"northing":0,"easting":0},
        "second":{"northing":10,"easting":0}},"rotation":5184000,"offset":2)");
    EXPECT_EQ(At(line, "/status"), 0);
    ExpectPoint(-2.0, 0.0, 0.0, 1, line, "/result/first");
    ExpectPoint(-2.0, 10.0, 0.0, 1, line, "/result/second");
    EXPECT_EQ(At(line, "/result/mode"), 2);
}

TEST(CogoCalls, TakeTheModeOfALineFromWhatIsGiven)
{
    const std::string first = R"("line":{"first":{"northing":0,"easting":0})";
    const std::string second = R"(,"second":{"northing":10,"easting":0})";
    const std::string azimuth = R"(,"azimuth":5184000)";
    const std::string point = R"(},"point":{"northing":4,"easting":7})";
    // Onto the north axis through both points, or onto the east axis by azimuth.
    ExpectPoint(4.0, 0.0, 0.0, 1, Made("QCogoCalcPtLine", first + second + point), "/foot");
    ExpectPoint(0.0, 7.0, 0.0, 1, Made("QCogoCalcPtLine", first + azimuth + point), "/foot");
    ExpectPoint(4.0, 0.0, 0.0, 1, Made("QCogoCalcPtLine", first + second + azimuth + R"(,"mode":2)" + point), "/foot");
    ExpectPoint(0.0, 7.0, 0.0, 1, Made("QCogoCalcPtLine", first + second + azimuth + R"(,"mode":1)" + point), "/foot");
}
