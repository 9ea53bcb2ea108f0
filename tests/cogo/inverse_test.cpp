#include <cmath>
#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "qstdlib.h"
#include "tests/support/angle.h"
#include "tests/support/fake_instrument.h"
#include "tests/support/record.h"

using support::DegreesToUnits;
using support::ExpectSameFields;
using support::FullPoint;
using support::Patterned;
using support::PlanPoint;
using support::SameBits;
using support::Untouched;
using support::WithFlags;

namespace {

constexpr AngleUnit HALF = 10368000;
constexpr AngleUnit QUARTER = 5184000;
constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();

// Flag words without the plan bit.
constexpr int WITHOUT_PLAN[] = {0, 2, 0xFFFE};

// An observation whose zenith and slope distance, which the forward computation does not use, hold the pattern.
AngDistRecord Observation(AngleUnit azimuth, double horizontalDistance, double heightDifference = 0.0)
{
    auto observation = Patterned<AngDistRecord>();
    observation.azimuth = azimuth;
    observation.horizontalDistance = horizontalDistance;
    observation.heightDifference = heightDifference;
    return observation;
}

PointRecord Forward(const PointRecord& from, const AngDistRecord& observation)
{
    auto result = Patterned<PointRecord>();
    EXPECT_EQ(0, QCogoAngDistToCoord(&from, &observation, &result));
    return result;
}

PointRecord OnLine(const PointRecord& start, const PointRecord& end, double chainage, double offset)
{
    auto result = Patterned<PointRecord>();
    EXPECT_EQ(0, QCogoOffsetToCoord(&start, &end, chainage, offset, &result));
    return result;
}

SlopeResult Slope(double horizontal, double vertical)
{
    auto slope = Patterned<SlopeResult>();
    QCogoCalcSlopeByDist(horizontal, vertical, &slope);
    return slope;
}

} // namespace

// --- inverse ---

TEST(CoordToAngDist, GivesDirectionAndDistances)
{
    // 100 north, 100 east, 10 up: 45 degrees; plan distance 100 * sqrt(2), spatial sqrt(20,100); zenith angle
    // acot(10 / 141.421) = 85.955309 degrees = 4,951,025.8 units.
    const PointRecord from = FullPoint(100.0, 100.0, 10.0);
    const PointRecord to = FullPoint(200.0, 200.0, 20.0);
    auto result = Patterned<AngDistRecord>();
    EXPECT_EQ(0, QCogoCoordToAngDist(&from, &to, &result));
    ExpectSameFields({2592000, 4951026, std::sqrt(20100.0), 141.42135623730951, 10.0}, result);
}

TEST(CoordToAngDist, IsSecondMinusFirst)
{
    const PointRecord from = FullPoint(200.0, 200.0, 20.0);
    const PointRecord to = FullPoint(100.0, 100.0, 10.0);
    AngDistRecord result;
    EXPECT_EQ(0, QCogoCoordToAngDist(&from, &to, &result));
    ExpectSameFields({2592000 + HALF, HALF - 4951026, std::sqrt(20100.0), 141.42135623730951, -10.0}, result);
}

TEST(CoordToAngDist, IsPlaneButForTheZenithFromAPointWithoutHeight)
{
    const PointRecord from = PlanPoint(100.0, 100.0, 10.0);
    const PointRecord to = FullPoint(200.0, 200.0, 20.0);
    AngDistRecord result;
    EXPECT_EQ(0, QCogoCoordToAngDist(&from, &to, &result));
    ExpectSameFields({2592000, 4951026, 141.42135623730951, 141.42135623730951, 0.0}, result);
}

TEST(CoordToAngDist, UsesTheHeightFieldOfASecondPointWithoutHeight)
{
    const PointRecord from = FullPoint(100.0, 100.0, 10.0);
    const PointRecord to = PlanPoint(200.0, 200.0, 20.0);
    AngDistRecord result;
    EXPECT_EQ(0, QCogoCoordToAngDist(&from, &to, &result));
    ExpectSameFields({2592000, 4951026, std::sqrt(20100.0), 141.42135623730951, 10.0}, result);
}

TEST(CoordToAngDist, WritesTheRecordForPointsAboveEachOther)
{
    const PointRecord low = FullPoint(5.0, 6.0, 7.0);
    const PointRecord high = FullPoint(5.0, 6.0, 10.0);
    auto result = Patterned<AngDistRecord>();
    EXPECT_EQ(-1200, QCogoCoordToAngDist(&low, &high, &result));
    ExpectSameFields({ANGLE_UNDEFINED, 0, 3.0, 0.0, 3.0}, result);
    EXPECT_EQ(-1200, QCogoCoordToAngDist(&high, &low, &result));
    ExpectSameFields({ANGLE_UNDEFINED, HALF, 3.0, 0.0, -3.0}, result);
}

TEST(CoordToAngDist, WritesTheRecordForEqualPoints)
{
    const PointRecord point = FullPoint(5.0, 6.0, 7.0);
    const PointRecord same = point;
    auto result = Patterned<AngDistRecord>();
    EXPECT_EQ(-1200, QCogoCoordToAngDist(&point, &same, &result));
    ExpectSameFields({ANGLE_UNDEFINED, ANGLE_UNDEFINED, 0.0, 0.0, 0.0}, result);
}

TEST(CoordToAngDist, TakesOnePointForBoth)
{
    const PointRecord point = FullPoint(5.0, 6.0, 7.0);
    auto result = Patterned<AngDistRecord>();
    EXPECT_EQ(-1200, QCogoCoordToAngDist(&point, &point, &result));
    ExpectSameFields({ANGLE_UNDEFINED, ANGLE_UNDEFINED, 0.0, 0.0, 0.0}, result);
}

TEST(CoordToAngDist, LeavesTheRecordWithoutPlanCoordinates)
{
    const PointRecord from = FullPoint(100.0, 100.0, 10.0);
    const PointRecord to = FullPoint(200.0, 200.0, 20.0);
    for (const int flags : WITHOUT_PLAN)
    {
        const PointRecord fromWithout = WithFlags(from, flags);
        const PointRecord toWithout = WithFlags(to, flags);
        auto result = Patterned<AngDistRecord>();
        EXPECT_EQ(-1201, QCogoCoordToAngDist(&fromWithout, &to, &result)) << flags;
        EXPECT_EQ(-1201, QCogoCoordToAngDist(&from, &toWithout, &result)) << flags;
        EXPECT_EQ(-1201, QCogoCoordToAngDist(&fromWithout, &toWithout, &result)) << flags;
        EXPECT_TRUE(Untouched(result)) << flags;
    }
}

TEST(CoordToAngDist, FollowsTheAzimuthReference)
{
    support::FakeInstrument instrument;
    instrument.azimuthReference = 1;
    const PointRecord from = FullPoint(100.0, 100.0, 10.0);
    const PointRecord to = FullPoint(200.0, 200.0, 20.0);
    AngDistRecord result;
    EXPECT_EQ(0, QCogoCoordToAngDist(&from, &to, &result));
    ExpectSameFields({2592000 + HALF, 4951026, std::sqrt(20100.0), 141.42135623730951, 10.0}, result);
    EXPECT_THAT(instrument.reads, testing::ElementsAre(support::IntRead(49411)));
    instrument.azimuthReference = 2;
    EXPECT_EQ(0, QCogoCoordToAngDist(&from, &to, &result));
    EXPECT_EQ(2592000, result.azimuth);
}

TEST(CoordToAngDist, DoesNotTurnTheUndefinedAzimuth)
{
    support::FakeInstrument instrument;
    instrument.azimuthReference = 1;
    const PointRecord point = FullPoint(5.0, 6.0, 7.0);
    AngDistRecord result;
    EXPECT_EQ(-1200, QCogoCoordToAngDist(&point, &point, &result));
    EXPECT_EQ(ANGLE_UNDEFINED, result.azimuth);
}

// --- forward ---

TEST(AngDistToCoord, LaysOffInEveryQuarter)
{
    // 100 along azimuth a: north 100 cos a, east 100 sin a; 60 degrees: 50 and 86.60254037844386.
    constexpr double TOLERANCE = 1e-11; // the sine of an angle of some radians, rounded, times 100
    const double shorter = 50.0;
    const double longer = 86.60254037844386;
    struct Case
    {
        double degrees;
        double northing;
        double easting;
    };
    const Case cases[] = {{0, 100, 0},    {60, shorter, longer},    {90, 0, 100},   {150, -longer, shorter},
                          {180, -100, 0}, {240, -shorter, -longer}, {270, 0, -100}, {330, longer, -shorter}};
    for (const Case& each : cases)
    {
        const PointRecord result =
            Forward(FullPoint(1000.0, 2000.0, 300.0), Observation(DegreesToUnits(each.degrees), 100.0, -7.5));
        EXPECT_NEAR(1000.0 + each.northing, result.northing, TOLERANCE) << each.degrees;
        EXPECT_NEAR(2000.0 + each.easting, result.easting, TOLERANCE) << each.degrees;
        EXPECT_TRUE(SameBits(292.5, result.height)) << each.degrees;
        EXPECT_EQ(3, result.flags) << each.degrees;
    }
}

TEST(AngDistToCoord, TakesAzimuthZeroExactly)
{
    // The cosine of 0 is 1 and its sine 0.
    ExpectSameFields(FullPoint(14.5, 20.0, 33.0), Forward(FullPoint(10.0, 20.0, 30.0), Observation(0, 4.5, 3.0)));
}

TEST(AngDistToCoord, ConvertsTheAzimuthReducedIntoTheCircle)
{
    // -1 unit is converted as 20,735,999 units. Volatile, so that the platform's sine is called and not the compiler's.
    const volatile double radians = 20735999.0 * 3.0300855069346e-7;
    const PointRecord result = Forward(PlanPoint(0.0, 0.0), Observation(-1, 1e6));
    EXPECT_TRUE(SameBits(std::cos(radians) * 1e6, result.northing));
    EXPECT_TRUE(SameBits(std::sin(radians) * 1e6, result.easting));
}

TEST(AngDistToCoord, TurnsANegativeDistanceRound)
{
    // Azimuth 0, distance -10: 10 along 180 degrees, where the sine of pi is 1.2e-16.
    const PointRecord south = Forward(PlanPoint(0.0, 0.0), Observation(0, -10.0));
    EXPECT_NEAR(-10.0, south.northing, 1e-12);
    EXPECT_NEAR(0.0, south.easting, 1e-12);
    const PointRecord west = Forward(PlanPoint(0.0, 0.0), Observation(QUARTER, -10.0));
    EXPECT_NEAR(0.0, west.northing, 1e-12);
    EXPECT_NEAR(-10.0, west.easting, 1e-12);
}

TEST(AngDistToCoord, TurnsByAddingAHalfCircle)
{
    // 250 degrees and 180 are 70: converted from 4,032,000 units after reduction, not by changing signs.
    const double radians = DegreesToUnits(70.0) * 3.0300855069346e-7;
    const PointRecord result = Forward(PlanPoint(0.0, 0.0), Observation(DegreesToUnits(250.0), -123.25));
    EXPECT_TRUE(SameBits(std::cos(radians) * 123.25, result.northing));
    EXPECT_TRUE(SameBits(std::sin(radians) * 123.25, result.easting));
}

TEST(AngDistToCoord, WrapsTheTurnedAzimuth)
{
    // 2^31 - 1 + 10,368,000 - 2^32 = -2,137,115,649; a circle more: -2,116,379,649 = -102 * 20,736,000 - 1,307,649.
    const double radians = -1307649.0 * 3.0300855069346e-7;
    const PointRecord result = Forward(PlanPoint(0.0, 0.0), Observation(std::numeric_limits<int32_t>::max(), -1000.0));
    EXPECT_TRUE(SameBits(std::cos(radians) * 1000.0, result.northing));
    EXPECT_TRUE(SameBits(std::sin(radians) * 1000.0, result.easting));
}

TEST(AngDistToCoord, DoesNotTurnADistanceOfZero)
{
    for (const double distance : {0.0, -0.0})
    {
        ExpectSameFields(FullPoint(10.0, 20.0, 31.5),
                         Forward(FullPoint(10.0, 20.0, 30.0), Observation(QUARTER, distance, 1.5)));
    }
    // North of (-0.0, -0.0) by -0.0: cos(0) * -0.0 and sin(0) * -0.0 are -0.0, and so are the sums. Turned, the
    // distance 0.0 would give sin(pi) * 0.0 = 0.0 for the easting.
    const PointRecord result = Forward(PlanPoint(-0.0, -0.0), Observation(0, -0.0));
    EXPECT_TRUE(SameBits(-0.0, result.northing));
    EXPECT_TRUE(SameBits(-0.0, result.easting));
}

TEST(AngDistToCoord, BringsTheAzimuthBackFromTheInstrumentsReference)
{
    support::FakeInstrument instrument;
    instrument.azimuthReference = 1;
    const PointRecord south = Forward(PlanPoint(0.0, 0.0), Observation(0, 10.0));
    EXPECT_NEAR(-10.0, south.northing, 1e-12);
    EXPECT_NEAR(0.0, south.easting, 1e-12);
    EXPECT_THAT(instrument.reads, testing::ElementsAre(support::IntRead(49411)));
    // Turned twice: (180 degrees + 180) modulo 360 is taken before the second turn of the negative distance.
    const PointRecord north = Forward(PlanPoint(0.0, 0.0), Observation(0, -10.0));
    ExpectSameFields(PlanPoint(10.0, 0.0), north);
    instrument.azimuthReference = 2;
    ExpectSameFields(PlanPoint(10.0, 0.0), Forward(PlanPoint(0.0, 0.0), Observation(0, 10.0)));
}

TEST(AngDistToCoord, KeepsAPlanPointPlane)
{
    ExpectSameFields(PlanPoint(13.0, 20.0),
                     Forward(PlanPoint(10.0, 20.0, 77.0), Observation(0, 3.0, 5.0))); // height 0.0, flags 1
}

TEST(AngDistToCoord, WritesOnlyTheTwoFlagBits)
{
    EXPECT_EQ(3, Forward(WithFlags(FullPoint(10.0, 20.0, 30.0), 0xFFFF), Observation(0, 3.0)).flags);
    EXPECT_EQ(1, Forward(WithFlags(FullPoint(10.0, 20.0, 30.0), 0xFFFD), Observation(0, 3.0)).flags);
}

TEST(AngDistToCoord, LeavesTheResultWithoutPlanCoordinates)
{
    const AngDistRecord observation = Observation(0, 3.0, 5.0);
    for (const int flags : WITHOUT_PLAN)
    {
        const PointRecord from = WithFlags(FullPoint(10.0, 20.0, 30.0), flags);
        auto result = Patterned<PointRecord>();
        EXPECT_EQ(-1201, QCogoAngDistToCoord(&from, &observation, &result)) << flags;
        EXPECT_TRUE(Untouched(result)) << flags;
    }
}

TEST(AngDistToCoord, WritesOverItsOwnStart)
{
    const AngDistRecord observation = Observation(DegreesToUnits(30.0), 100.0, 2.0);
    const PointRecord expected = Forward(FullPoint(10.0, 20.0, 30.0), observation);
    PointRecord point = FullPoint(10.0, 20.0, 30.0);
    EXPECT_EQ(0, QCogoAngDistToCoord(&point, &observation, &point));
    ExpectSameFields(expected, point);
}

TEST(AngDistToCoord, CarriesANotANumberDistanceIntoTheCoordinates)
{
    const PointRecord result = Forward(FullPoint(10.0, 20.0, 30.0), Observation(0, NOT_A_NUMBER, 1.0));
    EXPECT_TRUE(std::isnan(result.northing));
    EXPECT_TRUE(std::isnan(result.easting));
    EXPECT_TRUE(SameBits(31.0, result.height));
}

TEST(AngDistToCoord, ReversesTheInverse)
{
    const PointRecord from = FullPoint(5321.5, 1234.25, 88.0);
    for (int step = 0; step < 36; ++step)
    {
        const double radians = step * support::PI / 18.0 + 0.03;
        const PointRecord to =
            FullPoint(from.northing + 750.0 * std::cos(radians), from.easting + 750.0 * std::sin(radians), 91.0);
        AngDistRecord inverse;
        ASSERT_EQ(0, QCogoCoordToAngDist(&from, &to, &inverse));
        const PointRecord back = Forward(from, inverse);
        // Half a unit of direction (1/32") over 750 is 1.14e-4.
        EXPECT_NEAR(to.northing, back.northing, 1.15e-4);
        EXPECT_NEAR(to.easting, back.easting, 1.15e-4);
        EXPECT_NEAR(to.height, back.height, 1e-12);
    }
}

// --- chainage and offset ---

TEST(OffsetToCoord, LaysTheOffsetToTheRight)
{
    // A line running east from (0, 0, 10) to (0, 100, 20): right of it is south.
    const PointRecord start = FullPoint(0.0, 0.0, 10.0);
    const PointRecord end = FullPoint(0.0, 100.0, 20.0);
    ExpectSameFields(FullPoint(-5.0, 50.0, 15.0), OnLine(start, end, 50.0, 5.0));
    ExpectSameFields(FullPoint(5.0, 50.0, 15.0), OnLine(start, end, 50.0, -5.0));
}

TEST(OffsetToCoord, RunsFromStartTowardsEnd)
{
    // A 3-4-5 triangle doubled: from (100, 200) to (106, 208), length 10, unit vector (0.6, 0.8), right (-0.8, 0.6).
    // Chainage 5, offset 10: (100 + 3 - 8, 200 + 4 + 6).
    const PointRecord result = OnLine(PlanPoint(100.0, 200.0), PlanPoint(106.0, 208.0), 5.0, 10.0);
    EXPECT_NEAR(95.0, result.northing, 1e-12);
    EXPECT_NEAR(210.0, result.easting, 1e-12);
    // Chainage -5, offset -10: (100 - 3 + 8, 200 - 4 - 6).
    const PointRecord before = OnLine(PlanPoint(100.0, 200.0), PlanPoint(106.0, 208.0), -5.0, -10.0);
    EXPECT_NEAR(105.0, before.northing, 1e-12);
    EXPECT_NEAR(190.0, before.easting, 1e-12);
}

TEST(OffsetToCoord, InterpolatesTheHeightBeyondBothEnds)
{
    // A line of length 100 rising 10, exact in binary: 1 / 64 in length 64, rise 16.
    const PointRecord start = FullPoint(0.0, 0.0, 10.0);
    const PointRecord end = FullPoint(64.0, 0.0, 26.0);
    ExpectSameFields(FullPoint(0.0, 0.0, 10.0), OnLine(start, end, 0.0, 0.0));
    ExpectSameFields(FullPoint(64.0, 0.0, 26.0), OnLine(start, end, 64.0, 0.0));
    ExpectSameFields(FullPoint(128.0, 0.0, 42.0), OnLine(start, end, 128.0, 0.0));
    ExpectSameFields(FullPoint(-64.0, 0.0, -6.0), OnLine(start, end, -64.0, 0.0));
}

TEST(OffsetToCoord, IgnoresTheOffsetInTheHeight)
{
    const PointRecord start = FullPoint(0.0, 0.0, 10.0);
    const PointRecord end = FullPoint(64.0, 0.0, 26.0);
    for (const double offset : {-1000.0, 0.0, 1000.0})
    {
        EXPECT_TRUE(SameBits(18.0, OnLine(start, end, 32.0, offset).height));
    }
}

TEST(OffsetToCoord, HoldsTheOnlyHeightEverywhere)
{
    // The other end's height field holds 999, which must not enter.
    for (const double chainage : {-30.0, 0.0, 30.0, 64.0, 200.0})
    {
        const PointRecord endOnly = OnLine(PlanPoint(0.0, 0.0, 999.0), FullPoint(64.0, 0.0, 26.0), chainage, 3.0);
        ExpectSameFields(FullPoint(chainage, 3.0, 26.0), endOnly);
        const PointRecord startOnly = OnLine(FullPoint(0.0, 0.0, 10.0), PlanPoint(64.0, 0.0, 999.0), chainage, 3.0);
        ExpectSameFields(FullPoint(chainage, 3.0, 10.0), startOnly);
    }
}

TEST(OffsetToCoord, IsPlaneWithoutHeights)
{
    ExpectSameFields(PlanPoint(32.0, 3.0), OnLine(PlanPoint(0.0, 0.0, 7.0), PlanPoint(64.0, 0.0, 8.0), 32.0, 3.0));
}

TEST(OffsetToCoord, WritesOnlyTheTwoFlagBits)
{
    const PointRecord start = FullPoint(0.0, 0.0, 10.0);
    const PointRecord end = FullPoint(64.0, 0.0, 26.0);
    EXPECT_EQ(3, OnLine(WithFlags(start, 0xFFFF), WithFlags(end, 0xFFFF), 1.0, 0.0).flags);
    EXPECT_EQ(3, OnLine(WithFlags(start, 0xFFFD), WithFlags(end, 0xFFFF), 1.0, 0.0).flags);
    EXPECT_EQ(3, OnLine(WithFlags(start, 0xFFFF), WithFlags(end, 0xFFFD), 1.0, 0.0).flags);
    EXPECT_EQ(1, OnLine(WithFlags(start, 0xFFFD), WithFlags(end, 0xFFFD), 1.0, 0.0).flags);
}

TEST(OffsetToCoord, LeavesTheResultForCoincidentPoints)
{
    // Heights do not make them differ.
    const PointRecord start = FullPoint(5.0, 6.0, 7.0);
    const PointRecord end = FullPoint(5.0, 6.0, 8.0);
    auto result = Patterned<PointRecord>();
    EXPECT_EQ(-1200, QCogoOffsetToCoord(&start, &end, 1.0, 2.0, &result));
    EXPECT_TRUE(Untouched(result));
}

TEST(OffsetToCoord, ComparesThePointsWithoutTolerance)
{
    // Lines shorter than any measurement: 2^-52 north or east of (1, 1), a unit vector of (1, 0) or (0, 1).
    const double nearOne = std::nextafter(1.0, 2.0);
    ExpectSameFields(PlanPoint(4.0, 3.0), OnLine(PlanPoint(1.0, 1.0), PlanPoint(nearOne, 1.0), 3.0, 2.0));
    ExpectSameFields(PlanPoint(-1.0, 4.0), OnLine(PlanPoint(1.0, 1.0), PlanPoint(1.0, nearOne), 3.0, 2.0));
}

TEST(OffsetToCoord, LeavesTheResultWithoutPlanCoordinates)
{
    const PointRecord start = FullPoint(0.0, 0.0, 10.0);
    const PointRecord end = FullPoint(64.0, 0.0, 26.0);
    for (const int flags : WITHOUT_PLAN)
    {
        const PointRecord startWithout = WithFlags(start, flags);
        const PointRecord endWithout = WithFlags(end, flags);
        auto result = Patterned<PointRecord>();
        EXPECT_EQ(-1201, QCogoOffsetToCoord(&startWithout, &end, 1.0, 2.0, &result)) << flags;
        EXPECT_EQ(-1201, QCogoOffsetToCoord(&start, &endWithout, 1.0, 2.0, &result)) << flags;
        // Without plan coordinates the points are not compared.
        EXPECT_EQ(-1201, QCogoOffsetToCoord(&startWithout, &startWithout, 1.0, 2.0, &result)) << flags;
        EXPECT_TRUE(Untouched(result)) << flags;
    }
}

TEST(OffsetToCoord, WritesOverEitherEnd)
{
    const PointRecord start = FullPoint(10.0, 20.0, 30.0);
    const PointRecord end = FullPoint(13.0, 24.0, 35.0);
    const PointRecord expected = OnLine(start, end, 1.75, -0.5);
    PointRecord overStart = start;
    EXPECT_EQ(0, QCogoOffsetToCoord(&overStart, &end, 1.75, -0.5, &overStart));
    ExpectSameFields(expected, overStart);
    PointRecord overEnd = end;
    EXPECT_EQ(0, QCogoOffsetToCoord(&start, &overEnd, 1.75, -0.5, &overEnd));
    ExpectSameFields(expected, overEnd);
}

TEST(OffsetToCoord, WritesOverAnEndThatAloneHasAHeight)
{
    PointRecord overStart = FullPoint(0.0, 0.0, 10.0);
    const PointRecord end = PlanPoint(64.0, 0.0, 999.0);
    EXPECT_EQ(0, QCogoOffsetToCoord(&overStart, &end, 32.0, 3.0, &overStart));
    ExpectSameFields(FullPoint(32.0, 3.0, 10.0), overStart);
    const PointRecord start = PlanPoint(0.0, 0.0, 999.0);
    PointRecord overEnd = FullPoint(64.0, 0.0, 26.0);
    EXPECT_EQ(0, QCogoOffsetToCoord(&start, &overEnd, 32.0, 3.0, &overEnd));
    ExpectSameFields(FullPoint(32.0, 3.0, 26.0), overEnd);
}

TEST(OffsetToCoord, FormsTheCoordinatesInTheOrderOfTheDefinition)
{
    // Northing: along, plus start, less offset; easting: along, plus offset, plus start. Other orders, or a quotient
    // for the unit vector, give another last bit here.
    constexpr double N = 498.5;
    constexpr double E = 920.0;
    constexpr double D_N = 773.25;
    constexpr double D_E = 563.0;
    constexpr double CHAINAGE = 577.75;
    constexpr double OFFSET = 440.0;
    const double length = std::hypot(D_N, D_E);
    const double unitN = (1.0 / length) * D_N;
    const double unitE = (1.0 / length) * D_E;
    const double northing = (unitN * CHAINAGE + N) - unitE * OFFSET;
    const double easting = (unitE * CHAINAGE + unitN * OFFSET) + E;
    ASSERT_FALSE(SameBits(northing, (unitN * CHAINAGE - unitE * OFFSET) + N));
    ASSERT_FALSE(SameBits(northing, ((D_N / length) * CHAINAGE + N) - (D_E / length) * OFFSET));
    ASSERT_FALSE(SameBits(northing, unitN * CHAINAGE + (N - unitE * OFFSET)));
    ASSERT_FALSE(SameBits(easting, (unitE * CHAINAGE + E) + unitN * OFFSET));
    ASSERT_FALSE(SameBits(easting, unitE * CHAINAGE + (unitN * OFFSET + E)));
    ASSERT_FALSE(SameBits(easting, ((D_E / length) * CHAINAGE + (D_N / length) * OFFSET) + E));
    ExpectSameFields(PlanPoint(northing, easting),
                     OnLine(PlanPoint(N, E), PlanPoint(N + D_N, E + D_E), CHAINAGE, OFFSET));
}

TEST(OffsetToCoord, FormsTheHeightFromLeftToRight)
{
    const double inverseLength = 1.0 / std::hypot(889.25, 232.0);
    const double expected = (267.5 - 29.0) * inverseLength * 636.75 + 29.0;
    ASSERT_FALSE(SameBits(expected, (267.5 - 29.0) * (inverseLength * 636.75) + 29.0));
    ASSERT_FALSE(SameBits(expected, (267.5 - 29.0) / std::hypot(889.25, 232.0) * 636.75 + 29.0));
    const PointRecord result = OnLine(FullPoint(0.0, 0.0, 29.0), FullPoint(889.25, 232.0, 267.5), 636.75, 0.0);
    EXPECT_TRUE(SameBits(expected, result.height));
}

TEST(OffsetToCoord, FormsNoSquares)
{
    // The length of a tiny line does not vanish.
    ExpectSameFields(PlanPoint(7.0, 0.0), OnLine(PlanPoint(0.0, 0.0), PlanPoint(0x1p-700, 0.0), 7.0, 0.0));
}

TEST(OffsetToCoord, ReadsNoSetting)
{
    support::FakeInstrument instrument;
    instrument.azimuthReference = 1;
    ExpectSameFields(FullPoint(-5.0, 50.0, 15.0),
                     OnLine(FullPoint(0.0, 0.0, 10.0), FullPoint(0.0, 100.0, 20.0), 50.0, 5.0));
    EXPECT_TRUE(instrument.reads.empty());
}

// --- slope ---

TEST(CalcSlopeByDist, GivesPercentAndRatio)
{
    // 5 / 50 * 100 = 10 percent, 50 / 5 = 1 in 10.
    EXPECT_TRUE(SameBits(10.0, Slope(50.0, 5.0).grade));
    EXPECT_TRUE(SameBits(10.0, Slope(50.0, 5.0).ratio));
    // 8 / 4 * 100 = 200 percent, 4 / 8.
    EXPECT_TRUE(SameBits(200.0, Slope(4.0, 8.0).grade));
    EXPECT_TRUE(SameBits(0.5, Slope(4.0, 8.0).ratio));
}

TEST(CalcSlopeByDist, CarriesSignsIntoBoth)
{
    for (const double sign : {-1.0, 1.0})
    {
        EXPECT_TRUE(SameBits(-200.0, Slope(sign * 4.0, -sign * 8.0).grade));
        EXPECT_TRUE(SameBits(-0.5, Slope(sign * 4.0, -sign * 8.0).ratio));
        EXPECT_TRUE(SameBits(200.0, Slope(sign * 4.0, sign * 8.0).grade));
        EXPECT_TRUE(SameBits(0.5, Slope(sign * 4.0, sign * 8.0).ratio));
    }
}

TEST(CalcSlopeByDist, LeavesTheGradeUndefinedForNoHorizontalDistance)
{
    for (const double zero : {0.0, -0.0})
    {
        EXPECT_TRUE(SameBits(134217728.0, Slope(zero, 5.0).grade));
        EXPECT_TRUE(SameBits(zero, Slope(zero, 5.0).ratio));
    }
}

TEST(CalcSlopeByDist, LeavesTheRatioUndefinedForNoVerticalDistance)
{
    for (const double zero : {0.0, -0.0})
    {
        EXPECT_TRUE(SameBits(zero, Slope(5.0, zero).grade));
        EXPECT_TRUE(SameBits(134217728.0, Slope(5.0, zero).ratio));
    }
}

TEST(CalcSlopeByDist, LeavesBothUndefinedForNoDistanceAtAll)
{
    const SlopeResult slope = Slope(0.0, 0.0);
    EXPECT_TRUE(SameBits(134217728.0, slope.grade));
    EXPECT_TRUE(SameBits(134217728.0, slope.ratio));
}

TEST(CalcSlopeByDist, TestsForExactZero)
{
    constexpr double SMALLEST = std::numeric_limits<double>::denorm_min();
    EXPECT_TRUE(SameBits(100.0, Slope(SMALLEST, SMALLEST).grade));
    EXPECT_TRUE(SameBits(1.0, Slope(SMALLEST, SMALLEST).ratio));
    EXPECT_TRUE(std::isnan(Slope(NOT_A_NUMBER, 1.0).grade));
    EXPECT_TRUE(std::isnan(Slope(1.0, NOT_A_NUMBER).ratio));
}

TEST(CalcSlopeByDist, DividesBeforeItTakesPercent)
{
    // (1 / 3) * 100 and 100 / 3 differ in the last bit.
    const double expected = (1.0 / 3.0) * 100.0;
    const double other = (1.0 * 100.0) / 3.0;
    ASSERT_FALSE(SameBits(expected, other));
    EXPECT_TRUE(SameBits(expected, Slope(3.0, 1.0).grade));
}
