#include <cmath>
#include <cstdlib>
#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "qstdlib.h"
#include "reference/arc_state.h"
#include "tests/support/angle.h"
#include "tests/support/fake_instrument.h"
#include "tests/support/geometry.h"
#include "tests/support/record.h"

using qstdlib::ReferenceArc;
using support::DegreesToUnits;
using support::FullPoint;
using support::OnCircle;
using support::Patterned;
using support::PlanPoint;
using support::SameBits;
using support::UnitsToRadians;
using support::Untouched;
using support::WithFlags;

namespace {

constexpr AngleUnit HALF = 10368000;
constexpr AngleUnit QUARTER = 5184000;
constexpr double PI = support::PI;
constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();

// Rounding of lengths of some hundred.
constexpr double NEAR = 1e-9;

struct Outcome
{
    int32_t status;
    ArcCalcResult result;
};

Outcome Refer(const PointRecord& measured)
{
    Outcome outcome = {0, Patterned<ArcCalcResult>()};
    outcome.status = QREFCalcArc(&measured, &outcome.result);
    return outcome;
}

void ExpectZeroPoint(const PointRecord& point)
{
    support::ExpectSameFields(PointRecord{0.0, 0.0, 0.0, 0}, point);
}

ArcCalcResult Referred(const PointRecord& measured)
{
    const Outcome outcome = Refer(measured);
    EXPECT_EQ(0, outcome.status);
    ExpectZeroPoint(outcome.result.point);
    return outcome.result;
}

void ExpectPlace(double along, double offset, const PointRecord& measured)
{
    const ArcCalcResult result = Referred(measured);
    EXPECT_NEAR(along, result.along, NEAR);
    EXPECT_NEAR(offset, result.offset, NEAR);
}

constexpr double RADIUS = 100.0;

// An arc of radius 100 to the right or left, that begins at the radial of 30 degrees from the centre, or another one.
void SetArc(double radius, AngleUnit turn, AngleUnit radial = DegreesToUnits(30.0))
{
    const AngleUnit tangent = OnCircle(radius > 0.0 ? radial + QUARTER : radial - QUARTER);
    const double rho = UnitsToRadians(radial);
    const PointRecord start = PlanPoint(500.0 + RADIUS * std::cos(rho), 700.0 + RADIUS * std::sin(rho));
    // Half a unit more in length, so that the central angle is the turn for certain.
    ASSERT_EQ(0, QREFSetArcByRadiusArcLen(&start, tangent, radius, RADIUS * UnitsToRadians(turn + 0.5)));
    ASSERT_EQ(radius > 0.0 ? turn : -turn, ReferenceArc().centralAngle);
    ASSERT_EQ(radial, ReferenceArc().startRadialAzimuth);
}

double ArcLength()
{
    return ReferenceArc().length;
}

// A point whose direction from the centre the calculation takes for `turn` from the start radial. An azimuth is cut off
// towards north, so half a unit is put on, east of north clockwise and west of it anticlockwise.
PointRecord AtTurn(AngleUnit turn, double distance)
{
    const AngleUnit azimuth = OnCircle(static_cast<int64_t>(ReferenceArc().startRadialAzimuth) + turn);
    const PointRecord& centre = ReferenceArc().centre;
    const double direction = UnitsToRadians(azimuth < HALF ? azimuth + 0.5 : azimuth - 0.5);
    return PlanPoint(centre.northing + distance * std::cos(direction), centre.easting + distance * std::sin(direction));
}

// A place relative to a tangent at a turn from the start radial: on the circle at `turn`, `ahead` along the direction
// of travel, `right` to its right.
PointRecord FromTangent(double turn, double ahead, double right)
{
    const bool isRight = ReferenceArc().radius > 0.0;
    const double radial = UnitsToRadians(ReferenceArc().startRadialAzimuth) + turn;
    const double direction = isRight ? radial + PI / 2.0 : radial - PI / 2.0;
    const PointRecord& centre = ReferenceArc().centre;
    return PlanPoint(
        centre.northing + RADIUS * std::cos(radial) + ahead * std::cos(direction) - right * std::sin(direction),
        centre.easting + RADIUS * std::sin(radial) + ahead * std::sin(direction) + right * std::cos(direction));
}

// A direction is cut off to a unit, 3e-7: over some hundred, this much.
constexpr double UNIT = 1e-4;

void ExpectPlaceToAUnit(double along, double offset, const PointRecord& measured)
{
    const ArcCalcResult result = Referred(measured);
    EXPECT_NEAR(along, result.along, UNIT);
    EXPECT_NEAR(offset, result.offset, UNIT);
}

// Taken before any test runs: what a freshly loaded library answers, with an arc of zeros around the origin.
struct AtLoad
{
    Outcome centre;
    Outcome north;
    Outcome east;
    Outcome behind;
    Outcome withoutPlan;
};

const AtLoad AT_LOAD = {Refer(PlanPoint(0.0, 0.0)), Refer(PlanPoint(10.0, 0.0)), Refer(FullPoint(0.0, 10.0, 5.0)),
                        Refer(PlanPoint(3.0, -4.0)), Refer(WithFlags(PlanPoint(1.0, 1.0), 2))};

} // namespace

// --- before the first definition ---

TEST(ArcCalculation, ComputesAgainstZerosAtLoad)
{
    EXPECT_EQ(-1200, AT_LOAD.centre.status);
    EXPECT_TRUE(Untouched(AT_LOAD.centre.result));
    EXPECT_EQ(-1201, AT_LOAD.withoutPlan.status);
    EXPECT_TRUE(Untouched(AT_LOAD.withoutPlan.result));
    // On the radial: 0 - 10.
    EXPECT_EQ(0, AT_LOAD.north.status);
    EXPECT_EQ(0.0, AT_LOAD.north.result.along);
    EXPECT_EQ(-10.0, AT_LOAD.north.result.offset);
    // Beyond the end by a quarter circle: 10 ahead, 0 aside.
    EXPECT_EQ(0, AT_LOAD.east.status);
    EXPECT_NEAR(10.0, AT_LOAD.east.result.along, 1e-14);
    EXPECT_NEAR(0.0, AT_LOAD.east.result.offset, 1e-14);
    EXPECT_EQ(0.0, AT_LOAD.east.result.heightDifference);
    // Before the start: 4 behind; 3 to the left.
    EXPECT_EQ(0, AT_LOAD.behind.status);
    EXPECT_NEAR(-4.0, AT_LOAD.behind.result.along, 1e-5);
    EXPECT_NEAR(-3.0, AT_LOAD.behind.result.offset, 1e-5);
    ExpectZeroPoint(AT_LOAD.behind.result.point);
}

// --- right arcs ---

TEST(RightArc, CountsAlongTheArcAndOffsetsFromIt)
{
    SetArc(RADIUS, DegreesToUnits(60.0));
    for (const AngleUnit turn :
         std::initializer_list<AngleUnit>{1, 1000000, DegreesToUnits(60.0) - 1, DegreesToUnits(60.0)})
    {
        for (const double distance : {60.0, 100.0, 130.0})
        {
            ExpectPlace(RADIUS * UnitsToRadians(turn), RADIUS - distance, AtTurn(turn, distance));
        }
    }
}

TEST(RightArc, BeginsOnTheStartRadial)
{
    SetArc(RADIUS, DegreesToUnits(60.0));
    const ArcCalcResult result = Referred(AtTurn(0, 60.0));
    EXPECT_TRUE(SameBits(0.0, result.along));
    EXPECT_NEAR(40.0, result.offset, NEAR);
}

TEST(RightArc, RefersAPointBeforeTheStartToTheTangent)
{
    SetArc(RADIUS, DegreesToUnits(60.0));
    ExpectPlaceToAUnit(-25.0, 0.0, FromTangent(0.0, -25.0, 0.0));
    ExpectPlaceToAUnit(-25.0, 10.0, FromTangent(0.0, -25.0, 10.0));
    ExpectPlaceToAUnit(-250.0, -10.0, FromTangent(0.0, -250.0, -10.0));
    ExpectPlaceToAUnit(-25.0, 99.0, FromTangent(0.0, -25.0, 99.0));
    // From a unit to nearly a quarter circle back.
    for (const AngleUnit back : std::initializer_list<AngleUnit>{1, 1000000, QUARTER - 1})
    {
        const double a = UnitsToRadians(back);
        ExpectPlace(-120.0 * std::sin(a), RADIUS - 120.0 * std::cos(a), AtTurn(-back, 120.0));
    }
}

TEST(RightArc, TakesAQuarterCircleBackForAPointOnTheArc)
{
    SetArc(RADIUS, DegreesToUnits(60.0));
    ExpectPlace(-RADIUS * PI / 2.0, RADIUS - 120.0, AtTurn(-QUARTER, 120.0));
}

TEST(RightArc, RefersAPointBeyondTheEndToTheTangent)
{
    const double turn = PI / 3.0;
    SetArc(RADIUS, DegreesToUnits(60.0));
    ExpectPlaceToAUnit(ArcLength() + 25.0, 0.0, FromTangent(turn, 25.0, 0.0));
    ExpectPlaceToAUnit(ArcLength() + 25.0, 10.0, FromTangent(turn, 25.0, 10.0));
    ExpectPlaceToAUnit(ArcLength() + 250.0, -10.0, FromTangent(turn, 250.0, -10.0));
    // More than a quarter circle back, around the other side of the centre.
    for (const AngleUnit x : {DegreesToUnits(60.0) + 1, DegreesToUnits(100.0), HALF, -HALF + 1, -QUARTER - 1})
    {
        const double a = UnitsToRadians(x) - turn;
        ExpectPlace(ArcLength() + 120.0 * std::sin(a < 0.0 ? a + 2.0 * PI : a), RADIUS - 120.0 * std::cos(a),
                    AtTurn(x, 120.0));
    }
}

TEST(RightArc, TakesAHalfCircleBackForOneAhead)
{
    // -180 degrees is +180, which of an arc of 200 degrees is on the arc.
    for (const double radial : {30.0, 180.0, 300.0})
    {
        SetArc(RADIUS, DegreesToUnits(200.0), DegreesToUnits(radial));
        ExpectPlace(RADIUS * PI, RADIUS - 120.0, AtTurn(HALF, 120.0));
    }
}

TEST(RightArc, CountsTurnsFromARadialInTheWestToo)
{
    SetArc(RADIUS, DegreesToUnits(60.0), DegreesToUnits(300.0));
    for (const AngleUnit turn :
         std::initializer_list<AngleUnit>{1, 1000000, DegreesToUnits(60.0) - 1, DegreesToUnits(60.0)})
    {
        ExpectPlace(RADIUS * UnitsToRadians(turn), RADIUS - 130.0, AtTurn(turn, 130.0));
    }
    ExpectPlaceToAUnit(-25.0, 10.0, FromTangent(0.0, -25.0, 10.0));
    ExpectPlaceToAUnit(ArcLength() + 25.0, 10.0, FromTangent(PI / 3.0, 25.0, 10.0));
}

TEST(RightArc, CountsAnAngleShortOfItsEndAsPastIt)
{
    // 270 degrees of arc, and a point at 260: seen as 100 back, and 10 from the end, which side does not count.
    SetArc(RADIUS, DegreesToUnits(270.0));
    const double a = PI / 18.0;
    ExpectPlace(ArcLength() + 120.0 * std::sin(a), RADIUS - 120.0 * std::cos(a), AtTurn(-DegreesToUnits(100.0), 120.0));
    // At 280, 80 back: before the start.
    const double b = 4.0 * PI / 9.0;
    ExpectPlace(-120.0 * std::sin(b), RADIUS - 120.0 * std::cos(b), AtTurn(-DegreesToUnits(80.0), 120.0));
}

// --- left arcs ---

TEST(LeftArc, CountsAlongTheArcAndOffsetsFromIt)
{
    SetArc(-RADIUS, DegreesToUnits(60.0));
    for (const AngleUnit turn :
         std::initializer_list<AngleUnit>{1, 1000000, DegreesToUnits(60.0) - 1, DegreesToUnits(60.0)})
    {
        for (const double distance : {60.0, 100.0, 130.0})
        {
            ExpectPlace(RADIUS * UnitsToRadians(turn), distance - RADIUS, AtTurn(-turn, distance));
        }
    }
}

TEST(LeftArc, BeginsOnTheStartRadial)
{
    SetArc(-RADIUS, DegreesToUnits(60.0));
    const ArcCalcResult result = Referred(AtTurn(0, 60.0));
    EXPECT_TRUE(SameBits(0.0, result.along));
    EXPECT_NEAR(-40.0, result.offset, NEAR);
}

// R - along / tan(x) with along = -d sin(x) is R + d cos(x): for a point on the tangent R + |R| = 0.
TEST(LeftArc, RefersAPointBeforeTheStartToTheTangent)
{
    SetArc(-RADIUS, DegreesToUnits(60.0));
    ExpectPlaceToAUnit(-25.0, 0.0, FromTangent(0.0, -25.0, 0.0));
    ExpectPlaceToAUnit(-25.0, -10.0, FromTangent(0.0, -25.0, -10.0));
    ExpectPlaceToAUnit(-250.0, 10.0, FromTangent(0.0, -250.0, 10.0));
    for (const AngleUnit back : std::initializer_list<AngleUnit>{1, 1000000, QUARTER - 1})
    {
        const double a = UnitsToRadians(back);
        ExpectPlace(-120.0 * std::sin(a), 120.0 * std::cos(a) - RADIUS, AtTurn(back, 120.0));
    }
}

TEST(LeftArc, TakesAQuarterCircleBackForAPointOnTheArc)
{
    SetArc(-RADIUS, DegreesToUnits(60.0));
    ExpectPlace(-RADIUS * PI / 2.0, 120.0 - RADIUS, AtTurn(QUARTER, 120.0));
}

TEST(LeftArc, RefersAPointBeyondTheEndToTheTangent)
{
    const double turn = PI / 3.0;
    SetArc(-RADIUS, DegreesToUnits(60.0));
    ExpectPlaceToAUnit(ArcLength() + 25.0, 0.0, FromTangent(-turn, 25.0, 0.0));
    ExpectPlaceToAUnit(ArcLength() + 25.0, 10.0, FromTangent(-turn, 25.0, 10.0));
    ExpectPlaceToAUnit(ArcLength() + 250.0, -10.0, FromTangent(-turn, 250.0, -10.0));
    for (const AngleUnit x : {DegreesToUnits(60.0) + 1, DegreesToUnits(100.0), HALF - 1})
    {
        const double a = UnitsToRadians(x) - turn;
        ExpectPlace(ArcLength() + 120.0 * std::sin(a), 120.0 * std::cos(a) - RADIUS, AtTurn(-x, 120.0));
    }
}

// More than a quarter circle back the angle past the end is a full circle plus the arc's turn less x, where the mirror
// image of a right arc would have the turn taken off.
TEST(LeftArc, IsNoMirrorImageMoreThanAQuarterCircleBack)
{
    const AngleUnit turn = DegreesToUnits(60.0);
    SetArc(-RADIUS, turn);
    for (const AngleUnit x : {QUARTER + 1, DegreesToUnits(100.0), DegreesToUnits(140.0), HALF - 1})
    {
        const double a = UnitsToRadians(turn) - UnitsToRadians(x);
        ExpectPlace(ArcLength() + 120.0 * std::sin(a), 120.0 * std::cos(a) - RADIUS, AtTurn(x, 120.0));
    }
    // 60 degrees of turn and 100 back make -40, where the mirror image has 200.
    ExpectPlace(ArcLength() - 120.0 * std::sin(PI / 4.5), 120.0 * std::cos(PI / 4.5) - RADIUS,
                AtTurn(DegreesToUnits(100.0), 120.0));
}

TEST(LeftArc, TakesAHalfCircleForAPointOnTheArc)
{
    // Of an arc of 60 degrees, with an along of minus half the circumference.
    for (const double radial : {30.0, 180.0, 300.0})
    {
        SetArc(-RADIUS, DegreesToUnits(60.0), DegreesToUnits(radial));
        ExpectPlace(-RADIUS * PI, 120.0 - RADIUS, AtTurn(HALF, 120.0));
    }
}

TEST(LeftArc, CountsLongArcsToAHalfCircle)
{
    SetArc(-RADIUS, DegreesToUnits(270.0));
    ExpectPlace(RADIUS * UnitsToRadians(HALF - 1), 120.0 - RADIUS, AtTurn(-HALF + 1, 120.0));
    // 260 degrees on is 100 back: 270 + 360 - 100 = 530 = 170 past the end.
    const double a = 17.0 * PI / 18.0;
    ExpectPlace(ArcLength() + 120.0 * std::sin(a), 120.0 * std::cos(a) - RADIUS, AtTurn(DegreesToUnits(100.0), 120.0));
}

// --- directions from the centre ---

// An arc of radius 1000 around the origin that begins north of it; a unit is 3 mm along it.
class AroundTheOrigin : public testing::Test
{
protected:
    static constexpr double WIDE = 1000.0;

    void SetUp() override
    {
        const PointRecord start = PlanPoint(WIDE, 0.0);
        ASSERT_EQ(0, QREFSetArcByRadiusHAngle(&start, QUARTER, WIDE, QUARTER - 1000));
        ASSERT_EQ(0, ReferenceArc().startRadialAzimuth);
        support::ExpectSameFields(PlanPoint(0.0, 0.0), ReferenceArc().centre);
    }

    static PointRecord InDirection(double units)
    {
        return PlanPoint(WIDE * std::cos(UnitsToRadians(units)), WIDE * std::sin(UnitsToRadians(units)));
    }
};

TEST_F(AroundTheOrigin, AzimuthsAreCutOffTowardsNorth)
{
    for (const double units : {5000.2, 5000.9, 8000000.3, 8000000.7})
    {
        ExpectPlace(WIDE * UnitsToRadians(std::floor(units)), 0.0, InDirection(units));
    }
    // West of north they are negative, and cut off clockwise. Seen as before the start: a sine.
    for (const double units : {5000.2, 5000.9})
    {
        const double a = UnitsToRadians(5000.0);
        ExpectPlace(-WIDE * std::sin(a), WIDE - WIDE * std::cos(a), InDirection(-units));
    }
}

TEST_F(AroundTheOrigin, AzimuthsAreExactOnTheAxes)
{
    ExpectPlace(0.0, -5.0, PlanPoint(WIDE + 5.0, 0.0));
    ExpectPlace(WIDE * PI / 2.0, -5.0, PlanPoint(0.0, WIDE + 5.0));
    ExpectPlace(WIDE * PI, -5.0, PlanPoint(-WIDE - 5.0, 0.0));
    // West: a quarter circle back, on the arc.
    ExpectPlace(-WIDE * PI / 2.0, -5.0, PlanPoint(0.0, -WIDE - 5.0));
}

// --- heights ---

namespace {

const PointRecord END = FullPoint(86.60254037844386, 50.0, 116.0);

// 60 degrees of radius 100 from (0, 0, 100) north to the east.
void SetArcWithHeights(int startFlags = 3, const PointRecord& end = END)
{
    const PointRecord start = WithFlags(FullPoint(0.0, 0.0, 100.0), startFlags);
    ASSERT_EQ(0, QREFSetArcByCoord(&start, &end, 0, DegreesToUnits(60.0)));
}

// The point at half the arc, 103 high.
PointRecord HalfWay(int flags = 3)
{
    return WithFlags(FullPoint(100.0 * std::sin(PI / 6.0), 100.0 - 100.0 * std::cos(PI / 6.0), 103.0), flags);
}

} // namespace

TEST(ArcHeight, IsComparedWithAGradeAlongTheArc)
{
    SetArcWithHeights();
    ASSERT_EQ(1, ReferenceArc().endCheck);
    EXPECT_NEAR(103.0 - 108.0, Referred(HalfWay()).heightDifference, 1e-5);
    EXPECT_NEAR(103.0 - 116.0, Referred(FullPoint(END.northing, END.easting, 103.0)).heightDifference, 1e-5);
    // Beyond both ends too: the arc is 104.72 long.
    EXPECT_NEAR(103.0 - (100.0 - 16.0 * 25.0 / (100.0 * PI / 3.0)),
                Referred(FullPoint(-25.0, 0.0, 103.0)).heightDifference, 1e-5);
    EXPECT_NEAR(
        103.0 - (116.0 + 16.0 * 30.0 / (100.0 * PI / 3.0)),
        Referred(FullPoint(END.northing + 15.0, END.easting + 30.0 * std::sin(PI / 3.0), 103.0)).heightDifference,
        1e-5);
}

TEST(ArcHeight, TakesTheHeightFieldOfTheEndAsItIs)
{
    SetArcWithHeights(3, WithFlags(END, 1));
    EXPECT_NEAR(103.0 - 108.0, Referred(HalfWay()).heightDifference, 1e-5);
}

TEST(ArcHeight, IsComparedWithTheStartWhereTheArcMissesTheEnd)
{
    SetArcWithHeights(3, FullPoint(END.northing + 10.0, END.easting, END.height));
    ASSERT_EQ(0, ReferenceArc().endCheck);
    for (const PointRecord& measured : {HalfWay(), FullPoint(-25.0, 0.0, 103.0), FullPoint(150.0, 300.0, 103.0)})
    {
        EXPECT_TRUE(SameBits(3.0, Referred(measured).heightDifference));
    }
}

TEST(ArcHeight, IsComparedWithTheStartOfAnArcByRadius)
{
    const PointRecord start = FullPoint(0.0, 0.0, 100.0);
    ASSERT_EQ(0, QREFSetArcByRadiusHAngle(&start, 0, 100.0, DegreesToUnits(60.0)));
    EXPECT_TRUE(SameBits(3.0, Referred(HalfWay()).heightDifference));
    ASSERT_EQ(0, QREFSetArcByRadiusArcLen(&start, 0, 100.0, 50.0));
    EXPECT_TRUE(SameBits(3.0, Referred(HalfWay()).heightDifference));
}

TEST(ArcHeight, DoesNotTestTheFlagOfTheMeasuredPoint)
{
    SetArcWithHeights();
    for (const int flags : {1, 0xFFFD})
    {
        EXPECT_NEAR(103.0 - 108.0, Referred(HalfWay(flags)).heightDifference, 1e-5);
    }
}

TEST(ArcHeight, IsZeroWithoutAStartHeight)
{
    for (const int flags : {1, 0xFFFD})
    {
        SetArcWithHeights(flags);
        EXPECT_TRUE(SameBits(0.0, Referred(HalfWay()).heightDifference));
        EXPECT_TRUE(SameBits(0.0, Referred(WithFlags(PlanPoint(50.0, 10.0, NOT_A_NUMBER), 3)).heightDifference));
    }
}

TEST(ArcHeight, IsNotFiniteOnAnArcWithoutLength)
{
    // Tangents that meet in the start; the end is the start of a zero radius, 0.04 away.
    const PointRecord start = FullPoint(1.0, 0.0, 5.0);
    const PointRecord end = FullPoint(1.0, 0.04, 6.0);
    ASSERT_EQ(0, QREFSetArcByCoord(&start, &end, 0, QUARTER));
    ASSERT_EQ(1, ReferenceArc().endCheck);
    ASSERT_EQ(0.0, ReferenceArc().length);
    EXPECT_FALSE(std::isfinite(Referred(FullPoint(3.0, 3.0, 7.0)).heightDifference));
}

// --- failures ---

TEST(ArcCalculation, LeavesTheResultWithoutPlanCoordinatesOrDirection)
{
    SetArcWithHeights();
    const PointRecord centre = ReferenceArc().centre;
    for (const int flags : support::WITHOUT_PLAN)
    {
        for (const PointRecord& measured : {HalfWay(flags), WithFlags(centre, flags)})
        {
            const Outcome outcome = Refer(measured);
            EXPECT_EQ(-1201, outcome.status);
            EXPECT_TRUE(Untouched(outcome.result));
        }
    }
    const Outcome outcome = Refer(WithFlags(centre, 3));
    EXPECT_EQ(-1200, outcome.status);
    EXPECT_TRUE(Untouched(outcome.result));
}

// The result's point becomes zeros before the measured one is read.
TEST(ArcCalculation, TakesThePointOfItsOwnResultForTheOrigin)
{
    SetArcWithHeights();
    const ArcCalcResult expected = Referred(FullPoint(0.0, 0.0, 0.0));
    ArcCalcResult result{};
    result.point = HalfWay();
    ASSERT_NE(expected.along, Referred(result.point).along);
    EXPECT_EQ(0, QREFCalcArc(&result.point, &result));
    EXPECT_EQ(0.0, result.point.northing);
    EXPECT_EQ(0, result.point.flags);
    EXPECT_TRUE(SameBits(expected.along, result.along));
    EXPECT_TRUE(SameBits(expected.offset, result.offset));
    EXPECT_TRUE(SameBits(expected.heightDifference, result.heightDifference));
}

TEST(ArcCalculation, ReadsNoSetting)
{
    SetArcWithHeights();
    const ArcCalcResult expected = Referred(HalfWay());
    support::FakeInstrument instrument;
    instrument.azimuthReference = 1;
    EXPECT_TRUE(SameBits(expected.along, Referred(HalfWay()).along));
    EXPECT_TRUE(SameBits(expected.offset, Referred(HalfWay()).offset));
    EXPECT_THAT(instrument.reads, testing::IsEmpty());
}
