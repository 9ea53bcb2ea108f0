#include <cmath>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "qstdlib.h"
#include "tests/support/angle.h"
#include "tests/support/fake_instrument.h"
#include "tests/support/geometry.h"
#include "tests/support/record.h"

using support::DegreesToUnits;
using support::ExpectNear;
using support::ExpectSameFields;
using support::FullPoint;
using support::LineByAzimuth;
using support::LineByPoints;
using support::Patterned;
using support::PlanPoint;
using support::UndefinedPlan;
using support::WithFlags;

namespace {

PointRecord Foot(const LineDef& line, const PointRecord& point, int32_t status = 0)
{
    auto foot = Patterned<PointRecord>();
    EXPECT_EQ(status, QCogoCalcPtLine(&line, &point, &foot));
    return foot;
}

LineDef Line(double n1, double e1, double n2, double e2)
{
    return LineByPoints(PlanPoint(n1, e1), PlanPoint(n2, e2));
}

// The diagonal (0, 0) to (10, 10) with heights 10 and 20, flags as given.
LineDef Diagonal(int firstFlags, int secondFlags)
{
    return LineByPoints(WithFlags(FullPoint(0.0, 0.0, 10.0), firstFlags),
                        WithFlags(FullPoint(10.0, 10.0, 20.0), secondFlags));
}

const PointRecord POINT = PlanPoint(7.0, 3.0); // foot on the diagonal: (5, 5)

} // namespace

TEST(PointToLine, DropsAPerpendicular)
{
    ExpectSameFields(PlanPoint(5.0, 5.0), Foot(Line(0.0, 0.0, 10.0, 10.0), PlanPoint(5.0, 5.0)));
    ExpectSameFields(PlanPoint(5.0, 5.0), Foot(Line(0.0, 0.0, 10.0, 10.0), POINT));
    // easting = n + 2: the perpendicular through (7, 5) is easting = -n + 12.
    ExpectSameFields(PlanPoint(5.0, 7.0), Foot(Line(0.0, 2.0, 2.0, 4.0), PlanPoint(7.0, 5.0)));
    // easting = 2 n + 1, perpendicular direction (2, -1): from (3, 7) on the line to (5, 6).
    ExpectNear(PlanPoint(3.0, 7.0), Foot(Line(0.0, 1.0, 1.0, 3.0), PlanPoint(5.0, 6.0)), 1e-14);
}

TEST(PointToLine, IsExactOnLinesAlongAnAxis)
{
    ExpectSameFields(PlanPoint(5.0, 0.0), Foot(Line(0.0, 0.0, 10.0, 0.0), PlanPoint(5.0, 5.0)));
    ExpectSameFields(PlanPoint(5.1, 0.3), Foot(Line(0.7, 0.3, 10.0, 0.3), PlanPoint(5.1, 1e9)));
    ExpectSameFields(PlanPoint(0.0, 5.0), Foot(Line(0.0, 0.0, 0.0, 10.0), PlanPoint(5.0, 5.0)));
    ExpectSameFields(PlanPoint(0.7, 5.1), Foot(Line(0.7, 0.3, 0.7, 10.0), PlanPoint(1e9, 5.1)));
}

TEST(PointToLine, TakesAClampedSlopeForConstantNorthing)
{
    ExpectSameFields(PlanPoint(3.0, 9.0), Foot(Line(3.0, 0.0, 3.0 + 0x1p-40, 1.0), PlanPoint(50.0, 9.0)));
}

TEST(PointToLine, LeavesASteepNegativeSlopeToTheFormula)
{
    // Slope -2^28 through (3, 0), point (3, 1): the foot is the point of the line next to easting 1, 2^-28 south.
    const PointRecord foot = Foot(Line(3.0, 0.0, 3.0 - 0x1p-28, 1.0), PlanPoint(3.0, 1.0));
    EXPECT_NEAR(3.0 - 0x1p-28, foot.northing, 1e-14);
    EXPECT_NEAR(1.0, foot.easting, 1e-14);
}

TEST(PointToLine, InterpolatesTheHeightAlongALineByPoints)
{
    ExpectSameFields(FullPoint(5.0, 5.0, 15.0), Foot(Diagonal(3, 3), POINT));
    // Beyond the ends: the foot of (20, 10) is (15, 15), that of (0, -20) is (-10, -10).
    ExpectSameFields(FullPoint(15.0, 15.0, 25.0), Foot(Diagonal(3, 3), PlanPoint(20.0, 10.0)));
    ExpectSameFields(FullPoint(-10.0, -10.0, 0.0), Foot(Diagonal(3, 3), PlanPoint(0.0, -20.0)));
    // Along the northing from a first point off the origin: (4 - 2) * (30 - 10) / (10 - 2) + 10.
    const LineDef line = LineByPoints(FullPoint(2.0, 1.0, 10.0), FullPoint(10.0, 1.0, 30.0));
    ExpectSameFields(FullPoint(4.0, 1.0, 15.0), Foot(line, PlanPoint(4.0, 8.0)));
}

TEST(PointToLine, TakesTheOneHeightThatThereIs)
{
    ExpectSameFields(FullPoint(5.0, 5.0, 10.0), Foot(Diagonal(3, 1), POINT));
    ExpectSameFields(FullPoint(5.0, 5.0, 20.0), Foot(Diagonal(1, 3), POINT));
    ExpectSameFields(PlanPoint(5.0, 5.0), Foot(Diagonal(1, 1), POINT));
}

TEST(PointToLine, TestsTheHeightBitAlone)
{
    ExpectSameFields(FullPoint(5.0, 5.0, 15.0), Foot(Diagonal(0xFFFF, 0xFFFF), POINT));
    ExpectSameFields(FullPoint(5.0, 5.0, 10.0), Foot(Diagonal(0xFFFF, 0xFFFD), POINT));
    ExpectSameFields(FullPoint(5.0, 5.0, 20.0), Foot(Diagonal(0xFFFD, 0xFFFF), POINT));
    ExpectSameFields(PlanPoint(5.0, 5.0), Foot(Diagonal(0xFFFD, 0xFFFD), POINT));
}

TEST(PointToLine, DividesZeroByZeroForTheHeightAtConstantNorthing)
{
    const LineDef line = LineByPoints(FullPoint(0.0, 0.0, 10.0), FullPoint(0.0, 10.0, 20.0));
    const PointRecord foot = Foot(line, PlanPoint(5.0, 5.0));
    EXPECT_EQ(0.0, foot.northing);
    EXPECT_EQ(5.0, foot.easting);
    EXPECT_TRUE(std::isnan(foot.height));
    EXPECT_EQ(3, foot.flags);
    // A clamped slope is not quite constant: 0 * 10 / 2^-40 + 10.
    const LineDef nearly = LineByPoints(FullPoint(0.0, 0.0, 10.0), FullPoint(0x1p-40, 10.0, 20.0));
    ExpectSameFields(FullPoint(0.0, 5.0, 10.0), Foot(nearly, PlanPoint(5.0, 5.0)));
    // With one height there is nothing to divide.
    LineDef one = line;
    one.second.flags = 1;
    ExpectSameFields(FullPoint(0.0, 5.0, 10.0), Foot(one, PlanPoint(5.0, 5.0)));
}

TEST(PointToLine, TakesTheHeightOfTheFirstPointOfALineByAzimuth)
{
    for (const int mode : {0, 1, 3, 65535})
    {
        LineDef line = LineByPoints(FullPoint(0.0, 0.0, 10.0), FullPoint(10.0, 10.0, 20.0));
        line.azimuth = DegreesToUnits(45.0);
        line.mode = static_cast<uint16_t>(mode);
        ExpectNear(FullPoint(5.0, 5.0, 10.0), Foot(line, POINT), 1e-14);
        line.first.flags = 1;
        ExpectNear(PlanPoint(5.0, 5.0), Foot(line, POINT), 1e-14);
    }
}

TEST(PointToLine, DropsOnALineByAzimuth)
{
    // The tangent of a half circle is not quite 0: the perpendicular's slope is huge, the foot within rounding.
    ExpectNear(PlanPoint(5.0, 2.0), Foot(LineByAzimuth(PlanPoint(0.0, 2.0), 0), PlanPoint(5.0, 5.0)), 1e-9);
    // A half circle below 0 the tangent is exactly 0.
    ExpectSameFields(PlanPoint(5.0, 2.0), Foot(LineByAzimuth(PlanPoint(0.0, 2.0), -10368000), PlanPoint(5.0, 5.0)));
    // 30 degrees through (1, 2), 10 along and 4 to the right.
    const double c = std::cos(support::PI / 6.0);
    const double s = std::sin(support::PI / 6.0);
    ExpectNear(PlanPoint(1.0 + 10.0 * c, 2.0 + 10.0 * s),
               Foot(LineByAzimuth(PlanPoint(1.0, 2.0), DegreesToUnits(30.0)),
                    PlanPoint(1.0 + 10.0 * c - 4.0 * s, 2.0 + 10.0 * s + 4.0 * c)),
               1e-13);
}

TEST(PointToLine, TestsNoFlagOfThePoint)
{
    ExpectSameFields(FullPoint(5.0, 5.0, 15.0), Foot(Diagonal(3, 3), WithFlags(POINT, 0)));
}

TEST(PointToLine, KeepsThePresetForAnUnusableLine)
{
    ExpectSameFields(UndefinedPlan(),
                     Foot(LineByPoints(FullPoint(1.0, 2.0, 3.0), FullPoint(1.0, 2.0, 4.0)), POINT, -1200));
    for (const int flags : support::WITHOUT_PLAN)
    {
        ExpectSameFields(UndefinedPlan(), Foot(Diagonal(flags, 3), POINT, -1201));
        ExpectSameFields(UndefinedPlan(), Foot(Diagonal(3, flags), POINT, -1201));
        ExpectSameFields(UndefinedPlan(),
                         Foot(LineByAzimuth(WithFlags(FullPoint(0.0, 0.0, 1.0), flags), 0), POINT, -1201));
    }
}

TEST(PointToLine, FollowsTheAzimuthReference)
{
    support::FakeInstrument instrument;
    const LineDef line = LineByAzimuth(PlanPoint(0.0, 0.0), DegreesToUnits(45.0));
    for (const int32_t reference : support::AZIMUTH_REFERENCES)
    {
        instrument.azimuthReference = reference;
        instrument.reads.clear();
        ExpectNear(PlanPoint(5.0, 5.0), Foot(line, POINT), 1e-13);
        EXPECT_THAT(instrument.reads, testing::ElementsAre(support::IntRead(49411)));
        instrument.reads.clear();
        ExpectSameFields(PlanPoint(5.0, 5.0), Foot(Diagonal(1, 1), POINT));
        EXPECT_THAT(instrument.reads, testing::IsEmpty());
    }
}
