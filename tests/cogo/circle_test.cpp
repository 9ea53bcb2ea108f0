#include <cmath>
#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "qstdlib.h"
#include "tests/support/angle.h"
#include "tests/support/fake_instrument.h"
#include "tests/support/geometry.h"
#include "tests/support/record.h"

using support::ExpectNear;
using support::ExpectSameFields;
using support::FakeInstrument;
using support::LineByAzimuth;
using support::LineByPoints;
using support::Patterned;
using support::PlanPoint;
using support::UndefinedPlan;
using support::Untouched;
using support::WithFlags;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();

struct Pair
{
    PointRecord points[2];
};

Pair CrossCircles(const PointRecord& centre1, double radius1, const PointRecord& centre2, double radius2,
                  int32_t expectedCount)
{
    auto pair = Patterned<Pair>();
    EXPECT_EQ(expectedCount, QCogoCalcCrossCircle(&centre1, radius1, &centre2, radius2, pair.points));
    return pair;
}

Pair CrossLine(const LineDef& line, const PointRecord& centre, double radius, int32_t expectedCount)
{
    auto pair = Patterned<Pair>();
    EXPECT_EQ(expectedCount, QCogoCalcCrossLineCircle(&line, &centre, radius, pair.points));
    return pair;
}

LineDef Line(double n1, double e1, double n2, double e2)
{
    return LineByPoints(PlanPoint(n1, e1), PlanPoint(n2, e2));
}

void ExpectPair(const PointRecord& first, const PointRecord& second, const Pair& actual)
{
    ExpectSameFields(first, actual.points[0]);
    ExpectSameFields(second, actual.points[1]);
}

void ExpectPreset(const Pair& actual)
{
    ExpectPair(UndefinedPlan(), UndefinedPlan(), actual);
}

const PointRecord ORIGIN = PlanPoint(0.0, 0.0);

} // namespace

// --- circle and circle ---

TEST(CrossCircle, GivesThePointToTheRightFirst)
{
    // Eastward: a = (25 + 64 - 25) / 8 / 2 = 4, h = 3; the right is south.
    ExpectPair(PlanPoint(-3.0, 4.0), PlanPoint(3.0, 4.0), CrossCircles(ORIGIN, 5.0, PlanPoint(0.0, 8.0), 5.0, 2));
    // Westward the other way round.
    ExpectPair(PlanPoint(3.0, -4.0), PlanPoint(-3.0, -4.0), CrossCircles(ORIGIN, 5.0, PlanPoint(0.0, -8.0), 5.0, 2));
}

TEST(CrossCircle, CountsTwoPointsOfEqualNorthing)
{
    // Northward from (1, 2): 4 on, 3 to the right and left.
    ExpectPair(PlanPoint(5.0, 5.0), PlanPoint(5.0, -1.0),
               CrossCircles(PlanPoint(1.0, 2.0), 5.0, PlanPoint(9.0, 2.0), 5.0, 2));
}

TEST(CrossCircle, TellsTheRadiiApart)
{
    // 15 and 13 over a distance of 4: a = (225 + 16 - 169) / 4 / 2 = 9, h = 12.
    ExpectPair(PlanPoint(-12.0, 9.0), PlanPoint(12.0, 9.0), CrossCircles(ORIGIN, 15.0, PlanPoint(0.0, 4.0), 13.0, 2));
    // From the other side: a = (169 + 16 - 225) / 8 = -5, behind.
    ExpectPair(PlanPoint(-12.0, -5.0), PlanPoint(12.0, -5.0), CrossCircles(ORIGIN, 13.0, PlanPoint(0.0, 4.0), 15.0, 2));
}

TEST(CrossCircle, WorksInAnyDirection)
{
    // Centres 10 apart along (0.6, 0.8), the same 3-4-5 triangle twice: a = 5, h = 12 with radii 13. Right of
    // (0.6, 0.8) is (-0.8, 0.6).
    const Pair pair = CrossCircles(PlanPoint(100.0, 200.0), 13.0, PlanPoint(106.0, 208.0), 13.0, 2);
    ExpectNear(PlanPoint(100.0 + 3.0 - 9.6, 200.0 + 4.0 + 7.2), pair.points[0], 1e-12);
    ExpectNear(PlanPoint(100.0 + 3.0 + 9.6, 200.0 + 4.0 - 7.2), pair.points[1], 1e-12);
}

TEST(CrossCircle, FindsOnePointWhereCirclesTouch)
{
    ExpectPair(PlanPoint(0.0, 5.0), PlanPoint(0.0, 5.0), CrossCircles(ORIGIN, 5.0, PlanPoint(0.0, 10.0), 5.0, 1));
    // From within: a = (64 + 16 - 16) / 4 / 2 = 8.
    ExpectPair(PlanPoint(8.0, 0.0), PlanPoint(8.0, 0.0), CrossCircles(ORIGIN, 8.0, PlanPoint(4.0, 0.0), 4.0, 1));
}

TEST(CrossCircle, CountsAnInexactTouchAsTwo)
{
    // Radii 1 and 1 + 2^-52, 2 apart. r2^2 rounds to 1 + 2^-51, 5 - r2^2 = 4 - 2^-51 is exact, a = 1 - 2^-53, its
    // square rounds to 1 - 2^-52; h^2 = 2^-52, h = 2^-26.
    ExpectPair(PlanPoint(-0x1p-26, 1.0 - 0x1p-53), PlanPoint(0x1p-26, 1.0 - 0x1p-53),
               CrossCircles(ORIGIN, 1.0, PlanPoint(0.0, 2.0), 1.0 + 0x1p-52, 2));
}

TEST(CrossCircle, KeepsThePresetForCirclesApart)
{
    ExpectPreset(CrossCircles(ORIGIN, 5.0, PlanPoint(0.0, 10.5), 5.0, 0));
    ExpectPreset(CrossCircles(ORIGIN, 5.0, PlanPoint(1.0, 0.0), 3.0, 0));
    ExpectPreset(CrossCircles(ORIGIN, 3.0, PlanPoint(1.0, 0.0), 5.0, 0));
}

TEST(CrossCircle, LeavesThePairForConcentricCircles)
{
    EXPECT_TRUE(Untouched(CrossCircles(PlanPoint(1.0, 2.0), 5.0, PlanPoint(1.0, 2.0), 5.0, -1)));
    EXPECT_TRUE(Untouched(CrossCircles(PlanPoint(1.0, 2.0), 5.0, PlanPoint(1.0, 2.0), 6.0, 0)));
}

TEST(CrossCircle, RejectsARadiusNotAboveZero)
{
    const PointRecord other = PlanPoint(0.0, 8.0);
    for (const double radius : {0.0, -0.0, -1.0, -std::numeric_limits<double>::denorm_min()})
    {
        EXPECT_TRUE(Untouched(CrossCircles(ORIGIN, radius, other, 5.0, -1))) << radius;
        EXPECT_TRUE(Untouched(CrossCircles(ORIGIN, 5.0, other, radius, -1))) << radius;
        // The radius comes before the centres.
        EXPECT_TRUE(Untouched(CrossCircles(ORIGIN, radius, ORIGIN, 5.0, -1))) << radius;
    }
}

TEST(CrossCircle, TestsNoFlagAndReadsNoHeight)
{
    PointRecord first = WithFlags(ORIGIN, 0);
    first.height = NOT_A_NUMBER;
    const PointRecord second = WithFlags(PlanPoint(0.0, 8.0, NOT_A_NUMBER), 0);
    ExpectPair(PlanPoint(-3.0, 4.0), PlanPoint(3.0, 4.0), CrossCircles(first, 5.0, second, 5.0, 2));
}

TEST(CrossCircle, ReadsNoSetting)
{
    FakeInstrument instrument;
    instrument.azimuthReference = 1;
    ExpectPair(PlanPoint(-3.0, 4.0), PlanPoint(3.0, 4.0), CrossCircles(ORIGIN, 5.0, PlanPoint(0.0, 8.0), 5.0, 2));
    EXPECT_THAT(instrument.reads, IsEmpty());
}

// --- line and circle ---

TEST(CrossLineCircle, GivesThePointOfSmallerNorthingFirst)
{
    // easting = northing against (n - 2)^2 + (e - 1)^2 = 25: n^2 - 3 n - 10 = 0.
    const Pair pair = CrossLine(Line(0.0, 0.0, 10.0, 10.0), PlanPoint(2.0, 1.0), 5.0, 2);
    ExpectPair(PlanPoint(-2.0, -2.0), PlanPoint(5.0, 5.0), pair);
    // The same moved 3 east, with an intercept.
    ExpectPair(PlanPoint(-2.0, 1.0), PlanPoint(5.0, 8.0),
               CrossLine(Line(0.0, 3.0, 1.0, 4.0), PlanPoint(2.0, 4.0), 5.0, 2));
    // The direction in which the line is given does not matter.
    ExpectPair(PlanPoint(-2.0, 1.0), PlanPoint(5.0, 8.0),
               CrossLine(Line(1.0, 4.0, 0.0, 3.0), PlanPoint(2.0, 4.0), 5.0, 2));
}

TEST(CrossLineCircle, CrossesAnySlope)
{
    // easting = n / 2 + 1 through the centre (4, 3): radius sqrt(5) is one step of (2, 1).
    const Pair pair = CrossLine(Line(0.0, 1.0, 2.0, 2.0), PlanPoint(4.0, 3.0), std::sqrt(5.0), 2);
    ExpectNear(PlanPoint(2.0, 2.0), pair.points[0], 1e-14);
    ExpectNear(PlanPoint(6.0, 4.0), pair.points[1], 1e-14);
    const Pair diagonal = CrossLine(Line(0.0, 0.0, 10.0, 10.0), ORIGIN, std::sqrt(2.0), 2);
    ExpectNear(PlanPoint(-1.0, -1.0), diagonal.points[0], 1e-15);
    ExpectNear(PlanPoint(1.0, 1.0), diagonal.points[1], 1e-15);
}

TEST(CrossLineCircle, CrossesALineOfConstantEasting)
{
    ExpectPair(PlanPoint(-4.0, 3.0), PlanPoint(4.0, 3.0), CrossLine(Line(0.0, 3.0, 10.0, 3.0), ORIGIN, 5.0, 2));
    // 3 east of the centre (2, 1): 4 south and north of it.
    ExpectPair(PlanPoint(-2.0, 4.0), PlanPoint(6.0, 4.0),
               CrossLine(Line(0.0, 4.0, 10.0, 4.0), PlanPoint(2.0, 1.0), 5.0, 2));
}

TEST(CrossLineCircle, CrossesALineOfConstantNorthing)
{
    ExpectPair(PlanPoint(3.0, -4.0), PlanPoint(3.0, 4.0), CrossLine(Line(3.0, 0.0, 3.0, 10.0), ORIGIN, 5.0, 2));
    // 3 north of the centre (1, 2): 4 west and east of it.
    ExpectPair(PlanPoint(4.0, -2.0), PlanPoint(4.0, 6.0),
               CrossLine(Line(4.0, 0.0, 4.0, 10.0), PlanPoint(1.0, 2.0), 5.0, 2));
}

TEST(CrossLineCircle, FindsOnePointWhereTheLineTouches)
{
    ExpectPair(PlanPoint(5.0, 0.0), PlanPoint(5.0, 0.0), CrossLine(Line(5.0, 0.0, 5.0, 10.0), ORIGIN, 5.0, 1));
    ExpectPair(PlanPoint(0.0, 5.0), PlanPoint(0.0, 5.0), CrossLine(Line(0.0, 5.0, 10.0, 5.0), ORIGIN, 5.0, 1));
}

TEST(CrossLineCircle, KeepsThePresetWhereTheLineMisses)
{
    ExpectPreset(CrossLine(Line(6.0, 0.0, 6.0, 10.0), ORIGIN, 5.0, 0));
    ExpectPreset(CrossLine(Line(0.0, 6.0, 10.0, 6.0), ORIGIN, 5.0, 0));
    ExpectPreset(CrossLine(Line(0.0, 8.0, 8.0, 0.0), ORIGIN, 5.0, 0));
}

TEST(CrossLineCircle, AcceptsARadiusOfZero)
{
    for (const double radius : {0.0, -0.0})
    {
        ExpectPair(PlanPoint(3.0, 3.0), PlanPoint(3.0, 3.0),
                   CrossLine(Line(0.0, 0.0, 10.0, 10.0), PlanPoint(3.0, 3.0), radius, 1));
        ExpectPair(PlanPoint(3.0, 7.0), PlanPoint(3.0, 7.0),
                   CrossLine(Line(3.0, 0.0, 3.0, 10.0), PlanPoint(3.0, 7.0), radius, 1));
        ExpectPreset(CrossLine(Line(0.0, 0.0, 10.0, 10.0), PlanPoint(3.0, 4.0), radius, 0));
    }
}

TEST(CrossLineCircle, RejectsANegativeRadiusBeforeTheLine)
{
    const LineDef unusable = Line(1.0, 1.0, 1.0, 1.0);
    for (const double radius : {-1.0, -std::numeric_limits<double>::denorm_min()})
    {
        EXPECT_TRUE(Untouched(CrossLine(Line(0.0, 0.0, 10.0, 10.0), ORIGIN, radius, -1)));
        EXPECT_TRUE(Untouched(CrossLine(unusable, ORIGIN, radius, -1)));
    }
}

TEST(CrossLineCircle, KeepsThePresetForAnUnusableLine)
{
    ExpectPreset(CrossLine(Line(1.0, 1.0, 1.0, 1.0), ORIGIN, 5.0, -1200));
    LineDef line = Line(0.0, 0.0, 10.0, 10.0);
    line.second.flags = 0;
    ExpectPreset(CrossLine(line, ORIGIN, 5.0, -1201));
    line.first.flags = 2;
    ExpectPreset(CrossLine(line, ORIGIN, 5.0, -1201));
}

TEST(CrossLineCircle, TakesAClampedSlopeForConstantNorthing)
{
    ExpectPair(PlanPoint(3.0, -4.0), PlanPoint(3.0, 4.0),
               CrossLine(Line(3.0, 0.0, 3.0 + 0x1p-40, 1.0), ORIGIN, 5.0, 2));
}

TEST(CrossLineCircle, CrossesALineByAzimuthInAnyReference)
{
    FakeInstrument instrument;
    const LineDef line = LineByAzimuth(PlanPoint(1.0, 1.0), support::DegreesToUnits(45.0));
    for (const int32_t reference : support::AZIMUTH_REFERENCES)
    {
        instrument.azimuthReference = reference;
        const Pair pair = CrossLine(line, PlanPoint(2.0, 1.0), 5.0, 2);
        ExpectNear(PlanPoint(-2.0, -2.0), pair.points[0], 1e-13);
        ExpectNear(PlanPoint(5.0, 5.0), pair.points[1], 1e-13);
    }
}

TEST(CrossLineCircle, TestsNoFlagOfTheCentre)
{
    const PointRecord centre = WithFlags(PlanPoint(0.0, 0.0, NOT_A_NUMBER), 0);
    ExpectPair(PlanPoint(3.0, -4.0), PlanPoint(3.0, 4.0), CrossLine(Line(3.0, 0.0, 3.0, 10.0), centre, 5.0, 2));
}

// The discriminant of a line 6 from the centre of a circle of radius 5 is (25 - 36) * 4 = -44, 3 from it 64.
TEST(CrossLineCircle, LetsTheInstrumentAdjustTheDiscriminant)
{
    FakeInstrument instrument;
    const support::Read adjusted = {support::Operation::DISCRIMINANT, 0};
    instrument.discriminantOffset = 44.0;
    ExpectPair(PlanPoint(6.0, 0.0), PlanPoint(6.0, 0.0), CrossLine(Line(6.0, 0.0, 6.0, 10.0), ORIGIN, 5.0, 1));
    ExpectPair(PlanPoint(0.0, 6.0), PlanPoint(0.0, 6.0), CrossLine(Line(0.0, 6.0, 10.0, 6.0), ORIGIN, 5.0, 1));
    instrument.discriminantOffset = -64.0;
    ExpectPair(PlanPoint(3.0, 0.0), PlanPoint(3.0, 0.0), CrossLine(Line(3.0, 0.0, 3.0, 10.0), ORIGIN, 5.0, 1));
    ExpectPair(PlanPoint(0.0, 3.0), PlanPoint(0.0, 3.0), CrossLine(Line(0.0, 3.0, 10.0, 3.0), ORIGIN, 5.0, 1));
    instrument.discriminantOffset = -65.0;
    ExpectPreset(CrossLine(Line(3.0, 0.0, 3.0, 10.0), ORIGIN, 5.0, 0));
    ExpectPreset(CrossLine(Line(0.0, 3.0, 10.0, 3.0), ORIGIN, 5.0, 0));
    EXPECT_THAT(instrument.reads, ElementsAre(adjusted, adjusted, adjusted, adjusted, adjusted, adjusted));
}
