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
    double across;
};

Outcome Sight(AngleUnit horizontalAngle, AngleUnit zenithAngle, const PointRecord& station,
              double instrumentHeight = 0.0)
{
    Outcome outcome = {0, Patterned<PointRecord>(), Patterned<double>(), Patterned<double>()};
    outcome.status = QREFCalc3PtPlane(horizontalAngle, zenithAngle, &station, instrumentHeight, &outcome.point,
                                      &outcome.along, &outcome.across);
    return outcome;
}

int32_t SetPlane(const PointRecord& first, const PointRecord& second, const PointRecord& third)
{
    return QREFSet3PtBasePlane(&first, &second, &third);
}

int32_t SetVerticalPlane(const PointRecord& first, const PointRecord& second)
{
    return QREFSet3PtBasePlane(&first, &second, nullptr);
}

// A wall along northing 0 that runs east; a station south and one north of it.
const PointRecord WALL_FIRST = FullPoint(0.0, 0.0, 0.0);
const PointRecord WALL_SECOND = FullPoint(0.0, 10.0, 0.0);
const PointRecord SOUTH = FullPoint(-10.0, 5.0, 0.0);
const PointRecord NORTH = FullPoint(10.0, 5.0, 0.0);

void SetWall()
{
    ASSERT_EQ(0, SetVerticalPlane(WALL_FIRST, WALL_SECOND));
}

Outcome SightFromSouth(AngleUnit zenith = QUARTER)
{
    return Sight(0, zenith, SOUTH, 1.5);
}

Outcome SightFromNorth(AngleUnit zenith = QUARTER)
{
    return Sight(HALF, zenith, NORTH, 1.5);
}

// The ground at height 0, baseline to the north.
void SetGround()
{
    ASSERT_EQ(0, SetPlane(FullPoint(0.0, 0.0, 0.0), FullPoint(10.0, 0.0, 0.0), FullPoint(0.0, 10.0, 0.0)));
}

void ExpectSighted(const PointRecord& point, double along, double across, const Outcome& actual,
                   double tolerance = NEAR)
{
    EXPECT_EQ(0, actual.status);
    ExpectNear(point, actual.point, tolerance);
    EXPECT_NEAR(along, actual.along, tolerance);
    EXPECT_NEAR(across, actual.across, tolerance);
}

void ExpectPreset(int32_t status, const Outcome& actual)
{
    EXPECT_EQ(status, actual.status);
    ExpectSameFields(UndefinedPoint(), actual.point);
    EXPECT_TRUE(SameBits(UNDEFINED, actual.along));
    EXPECT_TRUE(SameBits(UNDEFINED, actual.across));
}

void ExpectSameOutcome(const Outcome& expected, const Outcome& actual)
{
    EXPECT_EQ(expected.status, actual.status);
    ExpectSameFields(expected.point, actual.point);
    EXPECT_TRUE(SameBits(expected.along, actual.along));
    EXPECT_TRUE(SameBits(expected.across, actual.across));
}

// Taken before any test runs: what a freshly loaded library answers.
const Outcome AT_LOAD = SightFromSouth();

} // namespace

TEST(ThreePointPlane, IsNotDefinedAtLoad)
{
    ExpectPreset(-5, AT_LOAD);
}

TEST(ThreePointPlane, IsTheVerticalPlaneThroughTwoPoints)
{
    SetWall();
    // From the south the normal across the baseline points down, from the north up.
    ExpectSighted(FullPoint(0.0, 5.0, 1.5), 5.0, -1.5, SightFromSouth());
    ExpectSighted(FullPoint(0.0, 5.0, 1.5), 5.0, 1.5, SightFromNorth());
    ExpectSighted(FullPoint(0.0, 5.0, 11.5), 5.0, -11.5, SightFromSouth(DegreesToUnits(45.0)));
    ExpectSighted(FullPoint(0.0, 5.0, -8.5), 5.0, -8.5, SightFromNorth(DegreesToUnits(135.0)));
}

TEST(ThreePointPlane, CountsAlongTheBaselineFromItsFirstPoint)
{
    // A wall along northing 0 that runs west from easting 20.
    ASSERT_EQ(0, SetVerticalPlane(FullPoint(0.0, 20.0, 3.0), FullPoint(0.0, 10.0, 3.0)));
    ExpectSighted(FullPoint(0.0, 5.0, 1.5), 15.0, -1.5, SightFromSouth());
    ExpectSighted(FullPoint(0.0, 25.0, 1.5), -5.0, -1.5, Sight(0, QUARTER, FullPoint(-8.0, 25.0, 0.0), 1.5));
    ExpectSighted(FullPoint(0.0, 5.0, 1.5), 15.0, 1.5, SightFromNorth());
}

TEST(ThreePointPlane, MayLieLevel)
{
    SetGround();
    // From 10 above, 135 degrees down: 10 away. The surface faces up, the normal across the baseline north is H x N,
    // east.
    const PointRecord above = FullPoint(0.0, 0.0, 8.5);
    ExpectSighted(FullPoint(10.0, 0.0, 0.0), 10.0, 0.0, Sight(0, DegreesToUnits(135.0), above, 1.5));
    ExpectSighted(FullPoint(0.0, 10.0, 0.0), 0.0, 10.0, Sight(QUARTER, DegreesToUnits(135.0), above, 1.5));
    ExpectSighted(FullPoint(0.0, -10.0, 0.0), 0.0, -10.0, Sight(3 * QUARTER, DegreesToUnits(135.0), above, 1.5));
    // From below it faces down.
    const PointRecord below = FullPoint(0.0, 0.0, -11.5);
    ExpectSighted(FullPoint(0.0, 10.0, 0.0), 0.0, -10.0, Sight(QUARTER, DegreesToUnits(45.0), below, 1.5));
}

// A roof through (1, 2, 3) whose baseline runs along (2, 2, 1) / 3 and whose other direction is (-2, 1, 2) / 3: its
// normal is their product N x E to H, (1, -2, 2) / 3.
TEST(ThreePointPlane, MayLieAnyWay)
{
    const PointRecord first = FullPoint(1.0, 2.0, 3.0);
    const PointRecord second = FullPoint(7.0, 8.0, 6.0);
    // 6 along and 12 across.
    const PointRecord third = FullPoint(1.0 + 4.0 - 8.0, 2.0 + 4.0 + 4.0, 3.0 + 2.0 + 8.0);
    ASSERT_EQ(0, SetPlane(first, second, third));
    // The station 30 before the point at 15 along, -9 across, straight off the plane and 12 along it.
    for (const double side : {1.0, -1.0})
    {
        const PointRecord target = FullPoint(1.0 + 10.0 + 6.0, 2.0 + 10.0 - 3.0, 3.0 + 5.0 - 6.0);
        const PointRecord station = FullPoint(target.northing + side * 10.0 + 8.0, target.easting - side * 20.0 + 8.0,
                                              target.height + side * 20.0 + 4.0 - 1.5);
        const double dN = target.northing - station.northing;
        const double dE = target.easting - station.easting;
        const double dH = target.height - (station.height + 1.5);
        const auto azimuth = static_cast<AngleUnit>(std::lround(support::RadiansToUnits(std::atan2(dE, dN))));
        const auto zenith =
            static_cast<AngleUnit>(std::lround(support::RadiansToUnits(std::atan2(std::hypot(dN, dE), dH))));
        // Seen from the side that (1, -2, 2) points to, the surface normal times the baseline is the other direction.
        // Half a unit over 33, at 22 degrees from the normal: 1e-5.
        ExpectSighted(target, 15.0, side * -9.0, Sight(azimuth, zenith, station, 1.5), 1e-5);
    }
}

TEST(ThreePointPlane, IsTheSameFromBothFaces)
{
    SetWall();
    const Outcome expected = Sight(DegreesToUnits(20.0), DegreesToUnits(70.0), SOUTH, 1.5);
    const double rise = 10.0 / std::cos(support::PI / 9.0) / std::tan(support::PI * 70.0 / 180.0);
    ExpectSighted(FullPoint(0.0, 5.0 + 10.0 * std::tan(support::PI / 9.0), 1.5 + rise),
                  5.0 + 10.0 * std::tan(support::PI / 9.0), -1.5 - rise, expected);
    ExpectSameOutcome(expected, Sight(DegreesToUnits(200.0), DegreesToUnits(290.0), SOUTH, 1.5));
    ExpectSameOutcome(expected, Sight(DegreesToUnits(200.0), DegreesToUnits(-70.0), SOUTH, 1.5));
    ExpectSameOutcome(expected, Sight(DegreesToUnits(20.0), DegreesToUnits(430.0), SOUTH, 1.5));
}

TEST(ThreePointPlane, TakesAHalfCircleForFaceTwoWhichLooksStraightDown)
{
    SetGround();
    for (const AngleUnit zenith : {HALF, -HALF, FULL + HALF})
    {
        ExpectSighted(FullPoint(3.0, 4.0, 0.0), 3.0, 4.0, Sight(1234567, zenith, FullPoint(3.0, 4.0, 10.0)));
    }
    for (const AngleUnit zenith : std::initializer_list<AngleUnit>{0, FULL, -FULL})
    {
        ExpectPreset(0, Sight(1234567, zenith, FullPoint(3.0, 4.0, 10.0)));
        ExpectSighted(FullPoint(3.0, 4.0, 0.0), 3.0, -4.0, Sight(1234567, zenith, FullPoint(3.0, 4.0, -10.0)));
    }
}

TEST(ThreePointPlane, FollowsTheAzimuthReference)
{
    SetWall();
    support::FakeInstrument instrument;
    for (const int32_t reference : support::AZIMUTH_REFERENCES)
    {
        instrument.azimuthReference = reference;
        instrument.reads.clear();
        ExpectSighted(FullPoint(0.0, 15.0, 1.5), 15.0, -1.5,
                      Sight(DegreesToUnits(reference == 1 ? 225.0 : 45.0), QUARTER, SOUTH, 1.5));
        EXPECT_THAT(instrument.reads, testing::ElementsAre(IntRead(49411)));
    }
    instrument.reads.clear();
    SetWall();
    EXPECT_THAT(instrument.reads, testing::IsEmpty());
}

TEST(ThreePointPlane, TestsNoFlagOfTheStation)
{
    SetWall();
    ExpectSighted(FullPoint(0.0, 5.0, 1.5), 5.0, -1.5, Sight(0, QUARTER, WithFlags(SOUTH, 0), 1.5));
}

// --- the stored normal ---

TEST(ThreePointPlane, IsTurnedToWhereTheInstrumentStands)
{
    SetWall();
    const Outcome fromSouth = SightFromSouth();
    const Outcome fromNorth = SightFromNorth();
    // However often it was turned before, by sights that meet it or not.
    SightFromSouth();
    ExpectSameOutcome(fromSouth, SightFromSouth());
    Sight(0, QUARTER, NORTH, 1.5); // away from it
    ExpectSameOutcome(fromNorth, SightFromNorth());
    Sight(HALF, QUARTER, SOUTH, 1.5);
    ExpectSameOutcome(fromNorth, SightFromNorth());
    ExpectSameOutcome(fromSouth, SightFromSouth());
}

TEST(ThreePointPlane, IsNotTurnedByAStationOnIt)
{
    SetWall();
    const Outcome fromNorth = SightFromNorth();
    ExpectPreset(-1205, Sight(0, QUARTER, FullPoint(0.0, 3.0, 0.0), 1.5));
    ExpectSameOutcome(fromNorth, SightFromNorth());
}

TEST(ThreePointPlane, FacesTheSameWayWhicheverWayItWasDefined)
{
    // A third point below instead of above turns the normal that is defined, not the one that is used.
    for (const double third : {20.0, -20.0})
    {
        ASSERT_EQ(0, SetPlane(WALL_FIRST, WALL_SECOND, FullPoint(0.0, 4.0, third)));
        ExpectSighted(FullPoint(0.0, 5.0, 1.5), 5.0, -1.5, SightFromSouth());
        ExpectSighted(FullPoint(0.0, 5.0, 1.5), 5.0, 1.5, SightFromNorth());
    }
}

// --- sights that miss ---

TEST(ThreePointPlane, LeavesThePresetForASightThatRunsAway)
{
    SetGround();
    const PointRecord above = FullPoint(0.0, 0.0, 10.0);
    ExpectPreset(0, Sight(0, DegreesToUnits(45.0), above));
    ExpectPreset(0, Sight(0, DegreesToUnits(315.0), above));
    SetWall();
    ExpectPreset(0, Sight(HALF, QUARTER, SOUTH, 1.5));
    ExpectPreset(0, Sight(0, QUARTER, NORTH, 1.5));
}

TEST(ThreePointPlane, ResolvesASightOfTwoUnitsToThePlane)
{
    // One unit is 3.03e-7, two are 6.06e-7; the limit lies at 5e-7.
    SetGround();
    const PointRecord above = FullPoint(0.0, 0.0, 10.0);
    ExpectPreset(0, Sight(0, QUARTER, above));
    ExpectPreset(0, Sight(0, QUARTER + 1, above));
    ExpectPreset(0, Sight(0, QUARTER - 2, above));
    const double far = 10.0 / std::tan(support::UnitsToRadians(2.0));
    EXPECT_NEAR(far, Sight(0, QUARTER + 2, above).along, 1e-3 * far);
}

TEST(ThreePointPlane, FailsForAnInstrumentOnIt)
{
    SetGround();
    for (const double side : {-1.0, 1.0})
    {
        ExpectPreset(-1205, Sight(0, HALF, FullPoint(3.0, 4.0, side * std::nextafter(5e-7, 0.0))));
        EXPECT_EQ(0, Sight(0, HALF, FullPoint(3.0, 4.0, side * 5e-7)).status);
        EXPECT_NEAR(3.0, Sight(0, side > 0.0 ? HALF : 0, FullPoint(3.0, 4.0, side * 5e-7)).along, NEAR);
    }
    // It is the axis that counts.
    ExpectPreset(-1205, Sight(0, HALF, FullPoint(3.0, 4.0, -1.5), 1.5));
    EXPECT_EQ(0, Sight(0, HALF, FullPoint(3.0, 4.0, 0.0), 1.5).status);
}

// --- definition ---

TEST(ThreePointPlane, IsLostByARejectedDefinition)
{
    const PointRecord third = FullPoint(5.0, 5.0, 5.0);
    for (const int flags : support::NOT_FULL)
    {
        SetWall();
        EXPECT_EQ(-1201, SetPlane(WithFlags(WALL_FIRST, flags), WALL_SECOND, third));
        ExpectPreset(-5, SightFromSouth());
        SetWall();
        EXPECT_EQ(-1201, SetPlane(WALL_FIRST, WithFlags(WALL_SECOND, flags), third));
        ExpectPreset(-5, SightFromSouth());
        SetWall();
        EXPECT_EQ(-1201, SetPlane(WALL_FIRST, WALL_SECOND, WithFlags(third, flags)));
        ExpectPreset(-5, SightFromSouth());
        EXPECT_EQ(-1201, SetVerticalPlane(WithFlags(WALL_FIRST, flags), WALL_SECOND));
        EXPECT_EQ(-1201, SetVerticalPlane(WALL_FIRST, WithFlags(WALL_SECOND, flags)));
        // Before the coordinates are compared.
        EXPECT_EQ(-1201, SetPlane(WALL_FIRST, WALL_FIRST, WithFlags(third, flags)));
    }
}

TEST(ThreePointPlane, RejectsEqualPoints)
{
    const PointRecord third = FullPoint(5.0, 5.0, 5.0);
    SetWall();
    EXPECT_EQ(-1200, SetPlane(WALL_FIRST, WALL_FIRST, third));
    ExpectPreset(-5, SightFromSouth());
    SetWall();
    EXPECT_EQ(-1200, SetPlane(WALL_FIRST, WALL_SECOND, WALL_SECOND));
    ExpectPreset(-5, SightFromSouth());
    SetWall();
    EXPECT_EQ(-1200, SetPlane(WALL_FIRST, WALL_SECOND, WALL_FIRST));
    ExpectPreset(-5, SightFromSouth());
    // The heights count.
    EXPECT_EQ(0, SetPlane(WALL_FIRST, FullPoint(0.0, 0.0, 1.0), third));
    EXPECT_EQ(0, SetPlane(WALL_FIRST, WALL_SECOND, FullPoint(0.0, 10.0, 1.0)));
    EXPECT_EQ(0, SetPlane(WALL_FIRST, WALL_SECOND, FullPoint(0.0, 0.0, 1.0)));
}

TEST(ThreePointPlane, RejectsPointsOnALine)
{
    SetWall();
    EXPECT_EQ(-1205, SetPlane(FullPoint(0.0, 0.0, 0.0), FullPoint(1.0, 2.0, 3.0), FullPoint(3.0, 6.0, 9.0)));
    ExpectPreset(-5, SightFromSouth());
    // Twice the area of the triangle: 1e-3 times 4e-4 is below 5e-7, times 6e-4 above.
    const PointRecord second = FullPoint(0.0, 1e-3, 0.0);
    EXPECT_EQ(-1205, SetPlane(WALL_FIRST, second, FullPoint(4e-4, 0.0, 0.0)));
    EXPECT_EQ(-1205, SetPlane(WALL_FIRST, second, FullPoint(-4e-4, 0.0, 0.0)));
    EXPECT_EQ(0, SetPlane(WALL_FIRST, second, FullPoint(6e-4, 0.0, 0.0)));
    EXPECT_EQ(0, SetPlane(WALL_FIRST, second, FullPoint(0.0, 0.0, 6e-4)));
    EXPECT_EQ(0, SetPlane(WALL_FIRST, FullPoint(0.0, 0.0, 1e-3), FullPoint(0.0, 6e-4, 0.0)));
}

TEST(ThreePointPlane, RejectsAVerticalBaselineWithoutAThirdPoint)
{
    SetWall();
    EXPECT_EQ(-1205, SetVerticalPlane(WALL_FIRST, FullPoint(0.0, 0.0, 5.0)));
    ExpectPreset(-5, SightFromSouth());
    EXPECT_EQ(-1200, SetVerticalPlane(WALL_FIRST, WALL_FIRST));
    // The third point is the second raised by 1: the first here, and the second itself where 1 is lost to rounding.
    EXPECT_EQ(-1200, SetVerticalPlane(FullPoint(0.0, 0.0, 6.0), FullPoint(0.0, 0.0, 5.0)));
    EXPECT_EQ(-1200, SetVerticalPlane(WALL_FIRST, FullPoint(0.0, 10.0, 1e17)));
}

TEST(ThreePointPlane, TestsTheFlagBitsAlone)
{
    EXPECT_EQ(0, SetPlane(WithFlags(WALL_FIRST, 0xFFFF), WithFlags(WALL_SECOND, 0xFFFF),
                          WithFlags(FullPoint(0.0, 0.0, 1.0), 0xFFFF)));
    ExpectSighted(FullPoint(0.0, 5.0, 1.5), 5.0, -1.5, SightFromSouth());
}

// A baseline shorter than 5e-7 can still span a plane with a far third point; the planes along and across are then
// formed with normals that are not of length 1.
TEST(ThreePointPlane, LeavesShortNormalsOfAShortBaselineAsTheyAre)
{
    // Baseline 4e-7 to the east, the third point 10 up: the surface normal is unit, -N or N, across is 4e-7 long in the
    // height, along 4e-7 in the easting.
    ASSERT_EQ(0, SetPlane(WALL_FIRST, FullPoint(0.0, 4e-7, 0.0), FullPoint(0.0, 0.0, 10.0)));
    const Outcome fromSouth = SightFromSouth();
    ExpectNear(FullPoint(0.0, 5.0, 1.5), fromSouth.point, NEAR);
    EXPECT_NEAR(5.0 * 4e-7, fromSouth.along, 1e-15);
    EXPECT_NEAR(-1.5 * 4e-7, fromSouth.across, 1e-15);
    const Outcome fromNorth = SightFromNorth();
    EXPECT_NEAR(5.0 * 4e-7, fromNorth.along, 1e-15);
    EXPECT_NEAR(1.5 * 4e-7, fromNorth.across, 1e-15);
}

TEST(ThreePointPlane, IsKeptUntilTheNext)
{
    PointRecord first = WALL_FIRST;
    PointRecord second = WALL_SECOND;
    PointRecord third = FullPoint(0.0, 0.0, 5.0);
    ASSERT_EQ(0, QREFSet3PtBasePlane(&first, &second, &third));
    first.northing = 3.0;
    second.northing = 4.0;
    third.northing = 5.0;
    ExpectSighted(FullPoint(0.0, 5.0, 1.5), 5.0, -1.5, SightFromSouth());
    ExpectSighted(FullPoint(0.0, 5.0, 1.5), 5.0, 1.5, SightFromNorth());
    ASSERT_EQ(0, SetVerticalPlane(FullPoint(-4.0, 0.0, 1.0), FullPoint(-4.0, 10.0, 1.0)));
    ExpectSighted(FullPoint(-4.0, 5.0, 1.5), 5.0, -0.5, SightFromSouth());
}
