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
using support::ExpectSameFields;
using support::FullPoint;
using support::Patterned;
using support::SameBits;

namespace {

constexpr AngleUnit FULL = 20736000;
constexpr AngleUnit HALF = 10368000;
constexpr AngleUnit QUARTER = 5184000;
constexpr AngleUnit GREATEST = std::numeric_limits<AngleUnit>::max();
constexpr AngleUnit LEAST = std::numeric_limits<AngleUnit>::min();
constexpr double UNDEFINED = 134217728.0;

struct Outcome
{
    int32_t status;
    PointRecord result;
};

Outcome Calculate(AngleUnit horizontalAngle, AngleUnit zenithAngle)
{
    Outcome outcome = {0, Patterned<PointRecord>()};
    outcome.status = QREMCalc(horizontalAngle, zenithAngle, &outcome.result);
    return outcome;
}

PointRecord Sighted(AngleUnit horizontalAngle, AngleUnit zenithAngle)
{
    const Outcome outcome = Calculate(horizontalAngle, zenithAngle);
    EXPECT_EQ(0, outcome.status);
    EXPECT_TRUE(SameBits(0.0, outcome.result.easting));
    EXPECT_EQ(3, outcome.result.flags);
    return outcome.result;
}

int32_t SetBase(AngleUnit horizontalAngle, AngleUnit zenithAngle, double distance)
{
    const SightRecord base = {horizontalAngle, zenithAngle, distance};
    return QREMSetBase(&base);
}

// A level sight over 100 to the north: 100 away, no height difference.
void SetLevelBase(AngleUnit horizontalAngle = 0)
{
    ASSERT_EQ(0, SetBase(horizontalAngle, QUARTER, 100.0));
}

void ExpectNothingDefined(const Outcome& outcome)
{
    EXPECT_EQ(-5, outcome.status);
    ExpectSameFields(FullPoint(UNDEFINED, 0.0, UNDEFINED), outcome.result);
}

// Taken before any test runs: what a freshly loaded library answers.
const Outcome AT_LOAD = Calculate(0, QUARTER);

// Zenith angles around 0, a half and a full circle that count as vertical, and the nearest that do not.
constexpr AngleUnit VERTICAL[] = {0,         1,    15,       16,        HALF - 15, HALF - 1,  HALF,  HALF + 15,
                                  HALF + 16, FULL, FULL - 1, FULL - 15, -15,       FULL + 16, -HALF, -HALF - 15};
constexpr AngleUnit NOT_VERTICAL[] = {17, HALF - 16, HALF + 17, FULL - 16, -16, FULL + 17, -HALF - 16, -HALF + 17};

} // namespace

TEST(RemoteElevation, HasNoBaseAtLoad)
{
    ExpectNothingDefined(AT_LOAD);
}

TEST(RemoteElevation, IsZeroAtTheZenithOfTheBase)
{
    SetLevelBase();
    ExpectSameFields(FullPoint(0.0, 0.0, 0.0), Sighted(0, QUARTER));
    ASSERT_EQ(0, SetBase(1234567, DegreesToUnits(60.0), 200.0));
    ExpectSameFields(FullPoint(0.0, 0.0, 0.0), Sighted(1234567, DegreesToUnits(60.0)));
}

TEST(RemoteElevation, IsTheHeightAboveTheBase)
{
    SetLevelBase();
    EXPECT_NEAR(100.0, Sighted(0, DegreesToUnits(45.0)).height, 1e-12);
    EXPECT_NEAR(-100.0, Sighted(0, DegreesToUnits(135.0)).height, 1e-12);
    EXPECT_NEAR(100.0 * std::tan(support::PI / 6.0), Sighted(0, DegreesToUnits(60.0)).height, 1e-12);
    // 200 at zenith 60 degrees: 200 sin 60 = 173.205 away, 200 cos 60 = 100 above the axis.
    ASSERT_EQ(0, SetBase(0, DegreesToUnits(60.0), 200.0));
    EXPECT_NEAR(-100.0, Sighted(0, QUARTER).height, 1e-12);
    EXPECT_NEAR(100.0 * std::sqrt(3.0) - 100.0, Sighted(0, DegreesToUnits(45.0)).height, 1e-12);
    EXPECT_NEAR(-200.0, Sighted(0, DegreesToUnits(120.0)).height, 1e-12);
}

TEST(RemoteElevation, GivesTheOffsetClockwiseOfTheBasePositive)
{
    const AngleUnit direction = DegreesToUnits(350.0);
    SetLevelBase(direction);
    EXPECT_NEAR(100.0, Sighted(DegreesToUnits(35.0), QUARTER).northing, 1e-12);
    EXPECT_NEAR(-100.0, Sighted(DegreesToUnits(305.0), QUARTER).northing, 1e-12);
    EXPECT_NEAR(100.0 * std::tan(support::PI / 9.0), Sighted(DegreesToUnits(10.0), QUARTER).northing, 1e-12);
}

TEST(RemoteElevation, KeepsTheDistanceOfTheBaseHoweverFarTheSightIsTurned)
{
    SetLevelBase();
    const double straight = Sighted(0, DegreesToUnits(70.0)).height;
    EXPECT_TRUE(SameBits(straight, Sighted(DegreesToUnits(60.0), DegreesToUnits(70.0)).height));
}

TEST(RemoteElevation, IsTheSameFromBothFaces)
{
    const AngleUnit direction = DegreesToUnits(250.0);
    const AngleUnit zenith = DegreesToUnits(80.0);
    ASSERT_EQ(0, SetBase(direction, zenith, 50.0));
    const PointRecord expected = Sighted(direction + 5000, DegreesToUnits(70.0));
    ExpectSameFields(expected, Sighted(direction + 5000 - HALF, DegreesToUnits(290.0)));
    ExpectSameFields(expected, Sighted(direction + 5000 - HALF, -DegreesToUnits(70.0)));
    ASSERT_EQ(0, SetBase(direction - HALF, FULL - zenith, 50.0));
    ExpectSameFields(expected, Sighted(direction + 5000, DegreesToUnits(70.0)));
    ExpectSameFields(expected, Sighted(direction + 5000 - HALF, DegreesToUnits(290.0)));
    // Level in face two.
    ASSERT_EQ(0, SetBase(HALF, 3 * QUARTER, 100.0));
    ExpectSameFields(FullPoint(0.0, 0.0, 0.0), Sighted(0, QUARTER));
}

TEST(RemoteElevation, RejectsAVerticalSight)
{
    SetLevelBase();
    for (const AngleUnit zenith : VERTICAL)
    {
        const Outcome outcome = Calculate(0, zenith);
        EXPECT_EQ(-1202, outcome.status) << zenith;
        // The offset stays untouched.
        ExpectSameFields(FullPoint(Patterned<PointRecord>().northing, 0.0, UNDEFINED), outcome.result);
    }
    for (const AngleUnit zenith : NOT_VERTICAL)
    {
        const bool faceTwo = zenith < 0 || (zenith >= HALF && zenith < FULL);
        EXPECT_EQ(0, Calculate(faceTwo && zenith != -HALF - 16 ? HALF : 0, zenith).status) << zenith;
    }
}

TEST(RemoteElevation, RejectsAVerticalBaseAndForgetsTheFormerOne)
{
    for (const AngleUnit zenith : VERTICAL)
    {
        SetLevelBase();
        EXPECT_EQ(-1202, SetBase(0, zenith, 100.0)) << zenith;
        ExpectNothingDefined(Calculate(0, QUARTER));
    }
    for (const AngleUnit zenith : NOT_VERTICAL)
    {
        EXPECT_EQ(0, SetBase(0, zenith, 100.0)) << zenith;
        EXPECT_NE(-5, Calculate(0, QUARTER).status) << zenith;
    }
}

TEST(RemoteElevation, SaysThatNothingIsDefinedBeforeAllElse)
{
    EXPECT_EQ(-1202, SetBase(0, 0, 100.0));
    ExpectNothingDefined(Calculate(0, 0));
    ExpectNothingDefined(Calculate(HALF, QUARTER));
}

TEST(RemoteElevation, RejectsASightTurnedAwayAfterWritingTheHeight)
{
    SetLevelBase(FULL - 1000);
    for (const AngleUnit turned : {QUARTER - 15, QUARTER, QUARTER + 1, HALF - 1, HALF, -HALF, -QUARTER, -QUARTER + 15})
    {
        const Outcome outcome = Calculate(FULL - 1000 + turned, DegreesToUnits(45.0));
        EXPECT_EQ(-1203, outcome.status) << turned;
        EXPECT_TRUE(SameBits(UNDEFINED, outcome.result.northing)) << turned;
        EXPECT_TRUE(SameBits(0.0, outcome.result.easting)) << turned;
        EXPECT_NEAR(100.0, outcome.result.height, 1e-12) << turned;
        EXPECT_EQ(3, outcome.result.flags) << turned;
    }
}

TEST(RemoteElevation, AcceptsASightTurnedToTheRoundedQuarterCircle)
{
    SetLevelBase();
    // tan of 89-59-59: one over the tangent of 16 units.
    const double offset = 100.0 / std::tan(support::UnitsToRadians(16.0));
    EXPECT_NEAR(offset, Sighted(QUARTER - 16, QUARTER).northing, 1e-6 * offset);
    EXPECT_NEAR(-offset, Sighted(FULL - QUARTER + 16, QUARTER).northing, 1e-6 * offset);
}

// The difference goes into the circle by one full circle and a remainder that keeps its sign; a negative one never
// counts as turned away.
TEST(RemoteElevation, TakesADifferenceThatStaysNegativeForAccepted)
{
    SetLevelBase();
    EXPECT_NEAR(100.0, Sighted(FULL + DegreesToUnits(45.0), QUARTER).northing, 1e-10);
    EXPECT_NEAR(-100.0, Sighted(-FULL - DegreesToUnits(45.0), QUARTER).northing, 1e-10);
    EXPECT_NEAR(-100.0 * std::tan(5.0 * support::PI / 9.0), Sighted(-FULL - DegreesToUnits(100.0), QUARTER).northing,
                1e-9);
    // 2^31 - 1 and a full circle wrap to -2,126,747,649, of which -11,675,649 is left.
    EXPECT_NEAR(100.0 * std::tan(support::UnitsToRadians(-11675649.0)), Sighted(GREATEST, QUARTER).northing, 1e-10);
    // -2^31 and a full circle are -2,126,747,648 as well, but for one unit.
    EXPECT_NEAR(100.0 * std::tan(support::UnitsToRadians(-11675648.0)), Sighted(LEAST, QUARTER).northing, 1e-10);
}

TEST(RemoteElevation, DoesNotReduceTheHorizontalAngleInFaceOne)
{
    // Base at -2 circles - 10 degrees: to a sight at 0 it is 2 circles and 10 degrees; one more circle, remainder 10.
    SetLevelBase(-2 * FULL - DegreesToUnits(10.0));
    EXPECT_NEAR(100.0 * std::tan(support::PI / 18.0), Sighted(0, QUARTER).northing, 1e-12);
    // Base at 2 circles + 100 degrees: -100 degrees are left of -1 circle - 100 degrees, and accepted.
    SetLevelBase(2 * FULL + DegreesToUnits(100.0));
    EXPECT_NEAR(100.0 * std::tan(-5.0 * support::PI / 9.0), Sighted(0, QUARTER).northing, 1e-9);
}

TEST(RemoteElevation, KeepsTheBaseUntilTheNext)
{
    SetLevelBase();
    Calculate(HALF, QUARTER);
    Calculate(0, 0);
    EXPECT_NEAR(100.0, Sighted(0, DegreesToUnits(45.0)).height, 1e-12);
    EXPECT_NEAR(100.0, Sighted(0, DegreesToUnits(45.0)).height, 1e-12);
    ASSERT_EQ(0, SetBase(0, QUARTER, 30.0));
    EXPECT_NEAR(30.0, Sighted(0, DegreesToUnits(45.0)).height, 1e-12);
}

TEST(RemoteElevation, ReadsNoSetting)
{
    support::FakeInstrument instrument;
    instrument.azimuthReference = 1;
    instrument.faceTwo = 1;
    SetLevelBase();
    EXPECT_NEAR(100.0, Sighted(DegreesToUnits(45.0), DegreesToUnits(45.0)).northing, 1e-12);
    EXPECT_THAT(instrument.reads, testing::IsEmpty());
}
