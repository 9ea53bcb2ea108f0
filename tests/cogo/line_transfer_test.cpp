#include <cmath>
#include <limits>

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
using support::FakeInstrument;
using support::FullPoint;
using support::IntRead;
using support::LineByAzimuth;
using support::LineByPoints;
using support::Patterned;
using support::PlanPoint;
using support::Untouched;
using support::WithFlags;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr AngleUnit FULL = 20736000;
constexpr AngleUnit HALF = 10368000;
constexpr AngleUnit QUARTER = 5184000;

// 2^32 modulo a full circle: how far off a normalised angle is that is converted as it stands.
constexpr AngleUnit OFF = 2615296;

// What normalising makes of an angle, step by step as it is defined.
AngleUnit Normalized(int64_t angle)
{
    constexpr int64_t TWO_TO_32 = INT64_C(4294967296);
    constexpr int64_t LEAST = -INT64_C(2147483648);
    while (angle < 0)
    {
        angle += FULL;
    }
    while (angle <= FULL)
    {
        angle -= FULL;
        angle = angle < LEAST ? angle + TWO_TO_32 : angle;
    }
    return static_cast<AngleUnit>(angle);
}

LineDef Transfer(const LineDef& line, AngleUnit rotation, double offset, int32_t status = 0)
{
    auto result = Patterned<LineDef>();
    EXPECT_EQ(status, QCogoCalcTransLine(&line, rotation, offset, &result));
    return result;
}

// Runs north, 10 long.
LineDef NorthLine(int firstFlags = 1, int secondFlags = 1)
{
    return LineByPoints(WithFlags(FullPoint(0.0, 0.0, 100.0), firstFlags),
                        WithFlags(FullPoint(10.0, 0.0, 104.0), secondFlags));
}

// `distance` in a direction given in units.
PointRecord Polar(const PointRecord& from, double direction, double distance)
{
    PointRecord point = from;
    point.northing += distance * std::cos(support::UnitsToRadians(direction));
    point.easting += distance * std::sin(support::UnitsToRadians(direction));
    return point;
}

} // namespace

// --- lines by points ---

TEST(LineTransfer, ShiftsALineByPointsToTheRight)
{
    const LineDef result = Transfer(NorthLine(), 0, 2.0);
    ExpectSameFields(PlanPoint(0.0, 2.0), result.first);
    ExpectSameFields(PlanPoint(10.0, 2.0), result.second);
    EXPECT_EQ(2138423296, result.azimuth);
    EXPECT_EQ(2, result.mode);
    const LineDef left = Transfer(NorthLine(), 0, -2.0);
    ExpectSameFields(PlanPoint(0.0, -2.0), left.first);
    ExpectSameFields(PlanPoint(10.0, -2.0), left.second);
}

TEST(LineTransfer, TurnsALineByPointsClockwise)
{
    const LineDef result = Transfer(NorthLine(), QUARTER, 0.0);
    ExpectSameFields(PlanPoint(0.0, 0.0, 100.0), result.first);
    ExpectNear(PlanPoint(0.0, 10.0, 104.0), result.second, 1e-14);
    EXPECT_EQ(2138423296 + QUARTER, result.azimuth);
    ExpectNear(PlanPoint(0.0, -10.0, 104.0), Transfer(NorthLine(), -QUARTER, 0.0).second, 1e-14);
    ExpectNear(PlanPoint(0.0, 10.0, 104.0), Transfer(NorthLine(), 5 * QUARTER, 0.0).second, 1e-13);
}

TEST(LineTransfer, TurnsAboutTheFirstPoint)
{
    // (3, 4) from (1, 2), turned by 30 degrees.
    const LineDef line = LineByPoints(PlanPoint(1.0, 2.0), PlanPoint(4.0, 6.0));
    const double c = std::cos(support::PI / 6.0);
    const double s = std::sin(support::PI / 6.0);
    const LineDef result = Transfer(line, DegreesToUnits(30.0), 0.0);
    ExpectSameFields(PlanPoint(1.0, 2.0), result.first);
    ExpectNear(PlanPoint(1.0 + 3.0 * c - 4.0 * s, 2.0 + 4.0 * c + 3.0 * s), result.second, 1e-14);
    // atan(4 / 3) is 53.13010235 degrees, 3,060,293.9 units; 30 degrees more.
    EXPECT_EQ(Normalized(3060294 + 1728000), result.azimuth);
}

TEST(LineTransfer, TurnsByTheAngleAsItStands)
{
    // 2^31 - 1 units are 103 circles and 11,675,647 more.
    const double a = support::UnitsToRadians(11675647.0);
    ExpectNear(PlanPoint(10.0 * std::cos(a), 10.0 * std::sin(a), 104.0),
               Transfer(NorthLine(), std::numeric_limits<AngleUnit>::max(), 0.0).second, 1e-10);
}

TEST(LineTransfer, LeavesTheSecondPointToTheLastBitWithoutARotation)
{
    // There and back again would not do: (0.9 - 0.2) + 0.2 is not 0.9.
    const LineDef line = LineByPoints(PlanPoint(0.1, 0.2), PlanPoint(0.3, 0.9));
    ExpectSameFields(line.second, Transfer(line, 0, 0.0).second);
}

TEST(LineTransfer, TurnsFirstAndShiftsThen)
{
    // Turned to the east, the right is south.
    const LineDef result = Transfer(NorthLine(), QUARTER, 2.0);
    ExpectNear(PlanPoint(-2.0, 0.0), result.first, 1e-14);
    ExpectNear(PlanPoint(-2.0, 10.0), result.second, 1e-14);
    EXPECT_EQ(2138423296 + QUARTER, result.azimuth);
}

TEST(LineTransfer, KeepsHeightsAndFlagsWithoutAnOffset)
{
    for (const AngleUnit rotation : std::initializer_list<AngleUnit>{0, DegreesToUnits(90.0)})
    {
        for (const double offset : {0.0, -0.0})
        {
            const LineDef result = Transfer(NorthLine(0xFFFD, 0xFFFF), rotation, offset);
            EXPECT_EQ(100.0, result.first.height);
            EXPECT_EQ(0xFFFD, result.first.flags);
            EXPECT_EQ(104.0, result.second.height);
            EXPECT_EQ(0xFFFF, result.second.flags);
        }
    }
    ExpectSameFields(NorthLine().second, Transfer(NorthLine(), 0, 0.0).second);
}

TEST(LineTransfer, GivesAShiftedLineHeightsByItsEnds)
{
    // Both, only the first, only the second, none.
    LineDef result = Transfer(NorthLine(3, 3), 0, 2.0);
    ExpectSameFields(FullPoint(0.0, 2.0, 100.0), result.first);
    ExpectSameFields(FullPoint(10.0, 2.0, 104.0), result.second);
    result = Transfer(NorthLine(0xFFFF, 0xFFFD), 0, 2.0);
    ExpectSameFields(FullPoint(0.0, 2.0, 100.0), result.first);
    ExpectSameFields(FullPoint(10.0, 2.0, 100.0), result.second);
    result = Transfer(NorthLine(0xFFFD, 0xFFFF), 0, 2.0);
    ExpectSameFields(FullPoint(0.0, 2.0, 104.0), result.first);
    ExpectSameFields(FullPoint(10.0, 2.0, 104.0), result.second);
    result = Transfer(NorthLine(0xFFFD, 1), 0, 2.0);
    ExpectSameFields(PlanPoint(0.0, 2.0), result.first);
    ExpectSameFields(PlanPoint(10.0, 2.0), result.second);
}

TEST(LineTransfer, NormalizesTheAzimuthOfALineByPoints)
{
    EXPECT_EQ(Normalized(-1), Transfer(NorthLine(), -1, 0.0).azimuth);
    EXPECT_EQ(Normalized(FULL), Transfer(NorthLine(), FULL, 0.0).azimuth);
    EXPECT_EQ(FULL + 1, Transfer(NorthLine(), FULL + 1, 0.0).azimuth);
    // From the east the greatest rotation wraps: 5,184,000 + 2^31 - 1 - 2^32.
    const LineDef east = LineByPoints(PlanPoint(0.0, 0.0), PlanPoint(0.0, 10.0));
    EXPECT_EQ(Normalized(INT64_C(5184000) - INT64_C(2147483649)),
              Transfer(east, std::numeric_limits<AngleUnit>::max(), 0.0).azimuth);
}

TEST(LineTransfer, IgnoresTheAzimuthOfALineByPoints)
{
    for (const AngleUnit azimuth : std::initializer_list<AngleUnit>{0, 12345, ANGLE_UNDEFINED})
    {
        LineDef line = NorthLine();
        line.azimuth = azimuth;
        EXPECT_EQ(2138423296 + 7, Transfer(line, 7, 0.0).azimuth);
    }
}

TEST(LineTransfer, AppliesTheReferenceToALineByPointsTwice)
{
    FakeInstrument instrument;
    for (const int32_t reference : support::AZIMUTH_REFERENCES)
    {
        instrument.azimuthReference = reference;
        for (const double offset : {0.0, 2.0})
        {
            instrument.reads.clear();
            const LineDef result = Transfer(NorthLine(), 0, offset);
            // From south: a half circle normalised is 2,138,423,296 + 10,368,000 less a full circle; another half
            // circle and the remainder by a full circle leave 2,615,296.
            EXPECT_EQ(reference == 1 ? OFF : 2138423296, result.azimuth);
            ExpectNear(PlanPoint(10.0, offset, offset == 0.0 ? 104.0 : 0.0), result.second, 1e-14);
            EXPECT_THAT(instrument.reads, ElementsAre(IntRead(49411), IntRead(49411)));
        }
    }
}

// --- lines by azimuth ---

TEST(LineTransfer, ShiftsALineByAzimuthByTheNormalizedAngleAsItStands)
{
    const LineDef line = LineByAzimuth(FullPoint(50.0, 60.0, 70.0), 0);
    const LineDef result = Transfer(line, 0, 2.0);
    ExpectNear(Polar(line.first, OFF + QUARTER, 2.0), result.first, 1e-10);
    EXPECT_EQ(2138423296, result.azimuth);
    ExpectSameFields(line.second, result.second);
    EXPECT_EQ(1, result.mode);
    // An azimuth above a full circle stays what it is, and the shift goes to its right.
    const LineDef above = LineByAzimuth(line.first, 3 * QUARTER);
    ExpectNear(Polar(line.first, 1000000.0 + QUARTER, 2.0), Transfer(above, QUARTER + 1000000, 2.0).first, 1e-12);
    EXPECT_EQ(FULL + 1000000, Transfer(above, QUARTER + 1000000, 2.0).azimuth);
}

TEST(LineTransfer, WrapsWhereTheQuarterCircleIsAddedToTheNormalizedAngle)
{
    // 3,876,351 normalised and a quarter circle are 2^31 - 1, a unit more wraps, and wrapping back sets the direction
    // right.
    const PointRecord first = PlanPoint(0.0, 0.0);
    ExpectNear(Polar(first, 3876351.0 + OFF + QUARTER, 2.0), Transfer(LineByAzimuth(first, 3876351), 0, 2.0).first,
               1e-10);
    ExpectNear(Polar(first, 3876352.0 + QUARTER, 2.0), Transfer(LineByAzimuth(first, 3876352), 0, 2.0).first, 1e-10);
    ExpectNear(PlanPoint(-2.0, 0.0), Transfer(LineByAzimuth(first, QUARTER), 0, 2.0).first, 1e-10);
}

TEST(LineTransfer, OnlyChangesTheAzimuthWithoutAnOffset)
{
    const LineDef line = LineByAzimuth(WithFlags(FullPoint(1.0, 2.0, 3.0), 0xFFFF), 1000);
    for (const AngleUnit rotation : std::initializer_list<AngleUnit>{0, 234, -1001, QUARTER})
    {
        LineDef expected = line;
        expected.azimuth = Normalized(1000 + rotation);
        ExpectSameFields(expected, Transfer(line, rotation, 0.0));
    }
}

TEST(LineTransfer, PassesAnUndefinedAzimuthThrough)
{
    FakeInstrument instrument;
    for (const int32_t reference : support::AZIMUTH_REFERENCES)
    {
        instrument.azimuthReference = reference;
        const LineDef line = LineByAzimuth(PlanPoint(1.0, 2.0), ANGLE_UNDEFINED);
        ExpectSameFields(line, Transfer(line, 0, 0.0));
        ExpectSameFields(line, Transfer(line, 12345, 0.0));
        // The shift takes it for a number: 134,217,728 + 5,184,000 is 14,985,728 beyond six circles.
        const LineDef shifted = Transfer(line, 12345, 2.0);
        ExpectNear(Polar(line.first, 14985728.0, 2.0), shifted.first, 1e-12);
        EXPECT_EQ(ANGLE_UNDEFINED, shifted.azimuth);
        EXPECT_THAT(instrument.reads, IsEmpty());
    }
}

TEST(LineTransfer, TakesASumThatIsTheUndefinedAngleForUndefined)
{
    FakeInstrument instrument;
    const PointRecord first = PlanPoint(1.0, 2.0);
    EXPECT_EQ(ANGLE_UNDEFINED, Transfer(LineByAzimuth(first, 28), ANGLE_UNDEFINED - 28, 0.0).azimuth);
    instrument.azimuthReference = 1;
    instrument.reads.clear();
    // A half circle becomes 0. Applied again, the reference would leave (134,217,728 + 10,368,000) modulo a circle.
    EXPECT_EQ(ANGLE_UNDEFINED, Transfer(LineByAzimuth(first, HALF), ANGLE_UNDEFINED, 0.0).azimuth);
    EXPECT_THAT(instrument.reads, ElementsAre(IntRead(49411)));
    EXPECT_EQ((134217729 + 10368000) % FULL, Transfer(LineByAzimuth(first, HALF), ANGLE_UNDEFINED + 1, 0.0).azimuth);
    EXPECT_EQ(ANGLE_UNDEFINED, Transfer(NorthLine(), ANGLE_UNDEFINED - HALF, 0.0).azimuth);
}

TEST(LineTransfer, AppliesTheReferenceToALineByAzimuthTwice)
{
    FakeInstrument instrument;
    for (const int32_t reference : support::AZIMUTH_REFERENCES)
    {
        instrument.azimuthReference = reference;
        instrument.reads.clear();
        // 20 degrees from north are 1,152,000; from south they stand for 200 degrees.
        const LineDef line = LineByAzimuth(PlanPoint(0.0, 0.0), 1152000);
        const LineDef result = Transfer(line, 1000, 2.0);
        EXPECT_THAT(instrument.reads, ElementsAre(IntRead(49411), IntRead(49411)));
        if (reference != 1)
        {
            EXPECT_EQ(Normalized(1153000), result.azimuth);
            ExpectNear(Polar(line.first, 1153000.0 + OFF + QUARTER, 2.0), result.first, 1e-10);
            continue;
        }
        // 11,521,000 normalised is 2,129,208,296; with a quarter circle still below 2^31. Another half circle:
        // 2,139,576,296, which is 3,768,296 beyond 103 circles.
        EXPECT_EQ(3768296, result.azimuth);
        ExpectNear(Polar(line.first, 11521000.0 + OFF + QUARTER, 2.0), result.first, 1e-10);
    }
}

TEST(LineTransfer, TakesAnyOtherModeForAnAzimuth)
{
    for (const int mode : {0, 1, 3, 258, 65535})
    {
        LineDef line = LineByPoints(PlanPoint(3.0, 5.0), WithFlags(PlanPoint(3.0, 5.0), 0));
        line.azimuth = 1000;
        line.mode = static_cast<uint16_t>(mode);
        const LineDef result = Transfer(line, QUARTER, 0.0);
        ExpectSameFields(line.second, result.second);
        EXPECT_EQ(Normalized(QUARTER + 1000), result.azimuth);
        EXPECT_EQ(mode, result.mode);
    }
}

// --- both ---

TEST(LineTransfer, LeavesTheResultOnFailure)
{
    for (const int flags : support::WITHOUT_PLAN)
    {
        EXPECT_TRUE(Untouched(Transfer(NorthLine(flags, 1), QUARTER, 2.0, -1201)));
        EXPECT_TRUE(Untouched(Transfer(NorthLine(1, flags), QUARTER, 2.0, -1201)));
        EXPECT_TRUE(Untouched(Transfer(LineByAzimuth(WithFlags(PlanPoint(0.0, 0.0), flags), 0), 0, 2.0, -1201)));
    }
    LineDef coincident = LineByPoints(FullPoint(1.0, 2.0, 3.0), FullPoint(1.0, 2.0, 4.0));
    EXPECT_TRUE(Untouched(Transfer(coincident, QUARTER, 2.0, -1200)));
    coincident.second.flags = 2;
    EXPECT_TRUE(Untouched(Transfer(coincident, QUARTER, 2.0, -1201)));
}

TEST(LineTransfer, MayReplaceItsInput)
{
    for (const LineDef& original : {NorthLine(3, 3), LineByAzimuth(FullPoint(1.0, 2.0, 3.0), 77)})
    {
        const LineDef expected = Transfer(original, QUARTER, 2.0);
        LineDef line = original;
        EXPECT_EQ(0, QCogoCalcTransLine(&line, QUARTER, 2.0, &line));
        ExpectSameFields(expected, line);
    }
}
