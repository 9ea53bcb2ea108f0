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
using support::IntRead;
using support::Patterned;
using support::PlanPoint;
using support::SameBits;
using support::UndefinedPoint;
using support::WithFlags;

namespace {

constexpr AngleUnit FULL = 20736000;
constexpr AngleUnit HALF = 10368000;
constexpr AngleUnit QUARTER = 5184000;
constexpr double UNDEFINED = 134217728.0;
constexpr double NEAR = 1e-12;

struct Outcome
{
    int32_t status;
    PointRecord point;
    double along;
    double above;
};

Outcome Sight(AngleUnit horizontalAngle, AngleUnit zenithAngle, const PointRecord& station, double instrumentHeight)
{
    Outcome outcome = {0, Patterned<PointRecord>(), Patterned<double>(), Patterned<double>()};
    outcome.status = QREFCalc2PtPlane(horizontalAngle, zenithAngle, &station, instrumentHeight, &outcome.point,
                                      &outcome.along, &outcome.above);
    return outcome;
}

// The station at the origin; its flags are not tested.
const PointRecord STATION = WithFlags(FullPoint(0.0, 0.0, 0.0), 0);

Outcome Sight(double azimuth, double zenith)
{
    return Sight(DegreesToUnits(azimuth), DegreesToUnits(zenith), STATION, 1.5);
}

int32_t SetPlane(const PointRecord& first, const PointRecord& second)
{
    return QREFSet2PtBasePlane(&first, &second);
}

// A wall along northing 10 that runs east.
const PointRecord FIRST = FullPoint(10.0, 0.0, 0.0);
const PointRecord SECOND = FullPoint(10.0, 10.0, 77.0);

void SetWall()
{
    ASSERT_EQ(0, SetPlane(FIRST, SECOND));
}

void SetWallWithoutHeight()
{
    ASSERT_EQ(-1208, SetPlane(PlanPoint(10.0, 0.0, 55.0), SECOND));
}

void ExpectSighted(const PointRecord& point, double along, double above, const Outcome& actual, int32_t status = 0,
                   double tolerance = NEAR)
{
    EXPECT_EQ(status, actual.status);
    ExpectNear(point, actual.point, tolerance);
    EXPECT_NEAR(along, actual.along, tolerance);
    EXPECT_NEAR(above, actual.above, tolerance);
}

void ExpectPreset(int32_t status, const Outcome& actual)
{
    EXPECT_EQ(status, actual.status);
    ExpectSameFields(UndefinedPoint(), actual.point);
    EXPECT_TRUE(SameBits(UNDEFINED, actual.along));
    EXPECT_TRUE(SameBits(UNDEFINED, actual.above));
}

const double DIAGONAL = std::sqrt(200.0);

// Taken before any test runs: what a freshly loaded library answers.
const Outcome AT_LOAD = Sight(45.0, 90.0);

} // namespace

TEST(TwoPointPlane, IsNotDefinedAtLoad)
{
    ExpectPreset(-5, AT_LOAD);
}

TEST(TwoPointPlane, IsMetByALevelSight)
{
    SetWall();
    ExpectSighted(FullPoint(10.0, 10.0, 1.5), 10.0, 1.5, Sight(45.0, 90.0));
    ExpectSighted(FullPoint(10.0, -10.0, 1.5), -10.0, 1.5, Sight(315.0, 90.0));
    ExpectSighted(FullPoint(10.0, 0.0, 1.5), 0.0, 1.5, Sight(0.0, 90.0));
}

TEST(TwoPointPlane, IsMetByASteepSight)
{
    SetWall();
    ExpectSighted(FullPoint(10.0, 10.0, 1.5 + DIAGONAL), 10.0, 1.5 + DIAGONAL, Sight(45.0, 45.0));
    ExpectSighted(FullPoint(10.0, 10.0, 1.5 - DIAGONAL), 10.0, 1.5 - DIAGONAL, Sight(45.0, 135.0));
    const double rise = 10.0 / std::tan(support::PI / 6.0);
    ExpectSighted(FullPoint(10.0, 0.0, 1.5 + rise), 0.0, 1.5 + rise, Sight(0.0, 30.0));
}

TEST(TwoPointPlane, TellsALevelSightFromOneAUnitOff)
{
    SetWall();
    for (const AngleUnit off : {-1, 1})
    {
        const double rise = -10.0 * std::tan(support::UnitsToRadians(off));
        ExpectSighted(FullPoint(10.0, 0.0, 1.5 + rise), 0.0, 1.5 + rise, Sight(0, QUARTER + off, STATION, 1.5));
    }
}

TEST(TwoPointPlane, MeasuresFromItsFirstPoint)
{
    // From (3, 4, 100) along (0.6, 0.8); the station 5 to its right at (-1, 7). The point 20 along is (15, 20): from
    // the station 16 north, 13 east.
    ASSERT_EQ(0, SetPlane(FullPoint(3.0, 4.0, 100.0), FullPoint(6.0, 8.0, 0.0)));
    const PointRecord station = FullPoint(-1.0, 7.0, 103.0);
    const auto azimuth = static_cast<AngleUnit>(std::lround(support::RadiansToUnits(std::atan2(13.0, 16.0))));
    const double rise = std::hypot(16.0, 13.0) / std::tan(support::PI * 80.0 / 180.0);
    // Half a unit of azimuth over 20.6, at 14 degrees to the plane: 1.3e-5.
    ExpectSighted(FullPoint(15.0, 20.0, 104.5 + rise), 20.0, 4.5 + rise,
                  Sight(azimuth, DegreesToUnits(80.0), station, 1.5), 0, 1.5e-5);
}

TEST(TwoPointPlane, IsMetFromBothSides)
{
    SetWall();
    const PointRecord beyond = FullPoint(30.0, 5.0, 2.0);
    ExpectSighted(FullPoint(10.0, 5.0, 3.0), 5.0, 3.0, Sight(HALF, QUARTER, beyond, 1.0));
    ExpectSighted(FullPoint(10.0, 5.0, 23.0), 5.0, 23.0, Sight(HALF, DegreesToUnits(45.0), beyond, 1.0));
}

TEST(TwoPointPlane, IsMetBehindTheInstrumentToo)
{
    SetWall();
    ExpectSighted(FullPoint(10.0, 10.0, 1.5), 10.0, 1.5, Sight(225.0, 90.0));
    // Rising to the front, the line falls to the back.
    ExpectSighted(FullPoint(10.0, 10.0, 1.5 - DIAGONAL), 10.0, 1.5 - DIAGONAL, Sight(225.0, 45.0));
    ExpectSighted(FullPoint(10.0, 10.0, 1.5 + DIAGONAL), 10.0, 1.5 + DIAGONAL, Sight(225.0, 135.0));
}

TEST(TwoPointPlane, IsTheSameFromBothFaces)
{
    SetWall();
    const Outcome expected = Sight(45.0, 45.0);
    ExpectSighted(expected.point, expected.along, expected.above, Sight(225.0, 315.0));
    ExpectSighted(expected.point, expected.along, expected.above, Sight(225.0, -45.0));
    ExpectSighted(expected.point, expected.along, expected.above, Sight(45.0, 405.0));
    ExpectSighted(FullPoint(10.0, 10.0, 1.5), 10.0, 1.5, Sight(225.0, 270.0));
}

TEST(TwoPointPlane, FollowsTheAzimuthReference)
{
    SetWall();
    support::FakeInstrument instrument;
    for (const int32_t reference : support::AZIMUTH_REFERENCES)
    {
        instrument.azimuthReference = reference;
        instrument.reads.clear();
        ExpectSighted(FullPoint(10.0, 10.0, 1.5 + DIAGONAL), 10.0, 1.5 + DIAGONAL,
                      Sight(reference == 1 ? 225.0 : 45.0, 45.0));
        EXPECT_THAT(instrument.reads, testing::ElementsAre(IntRead(49411)));
    }
    // Defining reads nothing.
    instrument.reads.clear();
    SetWall();
    EXPECT_THAT(instrument.reads, testing::IsEmpty());
}

// --- a first point without height ---

TEST(TwoPointPlane, TakesHeightsFromTheStationWhereItHasNone)
{
    SetWallWithoutHeight();
    ExpectSighted(FullPoint(10.0, 10.0, 1.5), 10.0, 0.0, Sight(45.0, 90.0), -1208);
    ExpectSighted(FullPoint(10.0, 10.0, 1.5 + DIAGONAL), 10.0, 0.0, Sight(45.0, 45.0), -1208);
    ExpectSighted(FullPoint(10.0, -10.0, 1.5 - DIAGONAL), -10.0, 0.0, Sight(315.0, 135.0), -1208);
    // Behind the instrument.
    ExpectSighted(FullPoint(10.0, 10.0, 1.5 - DIAGONAL), 10.0, 0.0, Sight(225.0, 45.0), -1208);
    ExpectSighted(FullPoint(10.0, 10.0, 1.5 + DIAGONAL), 10.0, 0.0, Sight(225.0, 135.0), -1208);
    // Face two.
    ExpectSighted(FullPoint(10.0, 10.0, 1.5 + DIAGONAL), 10.0, 0.0, Sight(225.0, 315.0), -1208);
    // From a station off the origin: 20 away and 20 up.
    ExpectSighted(FullPoint(10.0, 5.0, 28.0), 5.0, 0.0,
                  Sight(HALF, DegreesToUnits(45.0), FullPoint(30.0, 5.0, 7.0), 1.0), -1208);
    ExpectSighted(FullPoint(10.0, 5.0, 8.0), 5.0, 0.0, Sight(HALF, QUARTER, FullPoint(30.0, 5.0, 7.0), 1.0), -1208);
}

TEST(TwoPointPlane, TestsTheHeightBitOfTheFirstPointAlone)
{
    EXPECT_EQ(-1208, SetPlane(WithFlags(FIRST, 0xFFFD), SECOND));
    EXPECT_EQ(0.0, Sight(45.0, 90.0).above);
    EXPECT_EQ(0, SetPlane(WithFlags(FIRST, 0xFFFF), WithFlags(SECOND, 1)));
    EXPECT_NEAR(1.5, Sight(45.0, 90.0).above, NEAR);
}

// --- sights that miss ---

TEST(TwoPointPlane, LeavesThePresetForASightAlongThePlane)
{
    SetWall();
    ExpectPreset(0, Sight(90.0, 90.0));
    ExpectPreset(0, Sight(270.0, 45.0));
    SetWallWithoutHeight();
    ExpectPreset(-1208, Sight(90.0, 90.0));
}

TEST(TwoPointPlane, ResolvesASightOfTwoUnitsToThePlane)
{
    // One unit is 3.03e-7, two are 6.06e-7; the limit lies at 5e-7.
    ASSERT_EQ(0, SetPlane(FullPoint(0.0, 0.0, 0.0), FullPoint(5.0, 0.0, 0.0)));
    const PointRecord station = FullPoint(0.0, -1.0, 0.0);
    for (const AngleUnit direction : std::initializer_list<AngleUnit>{0, HALF})
    {
        ExpectPreset(0, Sight(direction, QUARTER, station, 0.0));
        ExpectPreset(0, Sight(direction + 1, QUARTER, station, 0.0));
        ExpectPreset(0, Sight(direction - 1, QUARTER, station, 0.0));
        // 1 aside at two units: 1,650,120 along.
        const double along = 1.0 / std::tan(support::UnitsToRadians(2.0));
        EXPECT_NEAR(along, Sight(direction + 2, QUARTER, station, 0.0).along, 1e-3);
        EXPECT_NEAR(-along, Sight(direction - 2, QUARTER, station, 0.0).along, 1e-3);
    }
}

TEST(TwoPointPlane, LeavesThePresetForAVerticalSight)
{
    for (const AngleUnit zenith : std::initializer_list<AngleUnit>{0, HALF, FULL, -HALF, -FULL, FULL + HALF})
    {
        SetWall();
        ExpectPreset(0, Sight(0, zenith, STATION, 1.5));
        SetWallWithoutHeight();
        ExpectPreset(-1208, Sight(0, zenith, STATION, 1.5));
    }
    // A unit off it is a sight: 10 away at 3.03e-7 from the vertical.
    SetWall();
    const double rise = 10.0 / std::tan(support::UnitsToRadians(1.0));
    EXPECT_NEAR(rise, Sight(0, 1, STATION, 0.0).point.height, 1e-5 * rise);
    EXPECT_NEAR(-rise, Sight(0, HALF - 1, STATION, 0.0).point.height, 1e-5 * rise);
    EXPECT_NEAR(-rise, Sight(HALF, HALF + 1, STATION, 0.0).point.height, 1e-5 * rise);
    EXPECT_NEAR(rise, Sight(HALF, -1, STATION, 0.0).point.height, 1e-5 * rise);
}

TEST(TwoPointPlane, FailsForAStationOnIt)
{
    SetWall();
    ExpectPreset(-1205, Sight(0, QUARTER, FullPoint(10.0, 3.0, 0.0), 1.5));
    // Before the sight is looked at, whatever the heights.
    ExpectPreset(-1205, Sight(0, 0, FullPoint(10.0, 3.0, 0.0), 1.5));
    ExpectPreset(-1205, Sight(QUARTER, QUARTER, FullPoint(10.0, 3.0, 0.0), 1.5));
    SetWallWithoutHeight();
    ExpectPreset(-1205, Sight(0, QUARTER, FullPoint(10.0, 3.0, 0.0), 1.5));
}

TEST(TwoPointPlane, TakesAStationForOnItByAreaNotDistance)
{
    // Twice the area of points and station: the distance from the trace times the length, below 5e-7 on either side.
    ASSERT_EQ(0, SetPlane(FullPoint(0.0, 0.0, 0.0), FullPoint(0.0, 1.0, 0.0)));
    for (const double side : {-1.0, 1.0})
    {
        ExpectPreset(-1205, Sight(0, QUARTER, FullPoint(side * std::nextafter(5e-7, 0.0), 0.5, 0.0), 0.0));
        ExpectSighted(FullPoint(0.0, 0.5, 0.0), 0.5, 0.0, Sight(0, QUARTER, FullPoint(side * 5e-7, 0.5, 0.0), 0.0));
    }
    ASSERT_EQ(0, SetPlane(FullPoint(0.0, 0.0, 0.0), FullPoint(1000.0, 0.0, 0.0)));
    ExpectPreset(-1205, Sight(QUARTER, QUARTER, FullPoint(300.0, -4.9e-10, 0.0), 0.0));
    ExpectSighted(FullPoint(300.0, 0.0, 0.0), 300.0, 0.0,
                  Sight(QUARTER, QUARTER, FullPoint(300.0, -5.1e-10, 0.0), 0.0));
}

// --- definition ---

TEST(TwoPointPlane, IsLostByARejectedDefinition)
{
    for (const int flags : support::WITHOUT_PLAN)
    {
        SetWall();
        EXPECT_EQ(-1201, SetPlane(WithFlags(FIRST, flags), SECOND));
        ExpectPreset(-5, Sight(45.0, 90.0));
        SetWall();
        EXPECT_EQ(-1201, SetPlane(FIRST, WithFlags(SECOND, flags)));
        ExpectPreset(-5, Sight(45.0, 90.0));
        EXPECT_EQ(-1201, SetPlane(FIRST, WithFlags(FIRST, flags)));
    }
    SetWallWithoutHeight();
    EXPECT_EQ(-1200, SetPlane(FIRST, FullPoint(10.0, 0.0, 77.0)));
    ExpectPreset(-5, Sight(45.0, 90.0));
    // Nothing else is looked at.
    ExpectPreset(-5, Sight(0, 0, FullPoint(10.0, 0.0, 0.0), 0.0));
    EXPECT_EQ(0, SetPlane(FIRST, FullPoint(10.0, 1e-300, 0.0)));
}

TEST(TwoPointPlane, IsKeptUntilTheNext)
{
    PointRecord first = FIRST;
    PointRecord second = SECOND;
    ASSERT_EQ(0, QREFSet2PtBasePlane(&first, &second));
    first.northing = 20.0;
    second.northing = 30.0;
    Sight(0.0, 0.0);
    Sight(0, QUARTER, FullPoint(10.0, 3.0, 0.0), 1.5);
    ExpectSighted(FullPoint(10.0, 10.0, 1.5), 10.0, 1.5, Sight(45.0, 90.0));
    ASSERT_EQ(0, SetPlane(FullPoint(0.0, 20.0, 5.0), FullPoint(1.0, 20.0, 5.0)));
    ExpectSighted(FullPoint(20.0, 20.0, 1.5), 20.0, -3.5, Sight(45.0, 90.0));
}
