#include <cmath>
#include <cstdlib>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "qstdlib.h"
#include "reference/arc_state.h"
#include "tests/support/angle.h"
#include "tests/support/fake_instrument.h"
#include "tests/support/geometry.h"
#include "tests/support/record.h"

using qstdlib::ArcState;
using qstdlib::ReferenceArc;
using support::DegreesToUnits;
using support::ExpectNear;
using support::ExpectSameFields;
using support::FakeInstrument;
using support::FullPoint;
using support::IntRead;
using support::Patterned;
using support::PlanPoint;
using support::WithFlags;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr AngleUnit FULL = 20736000;
constexpr AngleUnit HALF = 10368000;
constexpr AngleUnit QUARTER = 5184000;
constexpr double PI = support::PI;

// Lengths of some hundred: rounding of coordinates and of the tangents' slopes.
constexpr double NEAR = 1e-10;

ArcParams Params()
{
    auto params = Patterned<ArcParams>();
    EXPECT_EQ(0, QREFGetArcParams(&params));
    return params;
}

int32_t SetByCoord(const PointRecord& start, const PointRecord& end, AngleUnit startAzimuth, AngleUnit endAzimuth)
{
    return QREFSetArcByCoord(&start, &end, startAzimuth, endAzimuth);
}

int32_t SetByAngle(const PointRecord& start, AngleUnit startAzimuth, double radius, AngleUnit endAzimuth)
{
    return QREFSetArcByRadiusHAngle(&start, startAzimuth, radius, endAzimuth);
}

int32_t SetByLength(const PointRecord& start, AngleUnit startAzimuth, double radius, double length)
{
    return QREFSetArcByRadiusArcLen(&start, startAzimuth, radius, length);
}

const PointRecord ORIGIN = PlanPoint(0.0, 0.0);

// Parameters as far as they follow from geometry: the central angle may be cut off to a unit less.
void ExpectArc(double radius, double length, AngleUnit centralAngle, const PointRecord& centre, double tolerance = NEAR)
{
    const ArcParams params = Params();
    EXPECT_NEAR(radius, params.radius, tolerance);
    EXPECT_NEAR(length, params.length, tolerance);
    EXPECT_GE(1, std::abs(centralAngle) - std::abs(params.centralAngle));
    EXPECT_LE(0, std::abs(centralAngle) - std::abs(params.centralAngle));
    EXPECT_EQ(radius < 0.0, params.centralAngle < 0);
    ExpectNear(centre, ReferenceArc().centre, tolerance);
}

// A right arc, 60 degrees of radius 100, whose state differs from 0 in every field.
void SetFormerArc()
{
    ASSERT_EQ(0,
              SetByCoord(FullPoint(0.0, 0.0, 5.0), FullPoint(86.60254037844386, 50.0, 6.0), 0, DegreesToUnits(60.0)));
    ASSERT_EQ(1, ReferenceArc().endCheck);
}

// A failed definition leaves all but the flag.
void ExpectFormerArcButUndefined(const ArcState& former)
{
    EXPECT_EQ(0, ReferenceArc().isDefined);
    ArcState expected = ReferenceArc();
    expected.isDefined = former.isDefined;
    EXPECT_TRUE(support::SameBytes(former, expected));
}

// Taken before any test runs: what a freshly loaded library answers.
struct AtLoad
{
    ArcParams fromNorth;
    ArcParams fromSouth;
    int16_t isDefined;
};

AtLoad TakeAtLoad()
{
    AtLoad atLoad = {Params(), Patterned<ArcParams>(), ReferenceArc().isDefined};
    InstrumentSettings fromSouth = {};
    fromSouth.GetIntSetting = [](uint32_t identifier) -> int32_t { return identifier == 49411 ? 1 : 0; };
    ConnectInstrumentSettings(&fromSouth);
    QREFGetArcParams(&atLoad.fromSouth);
    ConnectInstrumentSettings(nullptr);
    return atLoad;
}

const AtLoad AT_LOAD = TakeAtLoad();

} // namespace

// --- before the first definition ---

TEST(ArcParams, AreZeroAtLoad)
{
    ExpectSameFields(ArcParams{0, 0, 0.0, 0.0, 0}, AT_LOAD.fromNorth);
    ExpectSameFields(ArcParams{HALF, HALF, 0.0, 0.0, 0}, AT_LOAD.fromSouth);
    EXPECT_EQ(0, AT_LOAD.isDefined);
}

// --- by coordinates ---

TEST(ArcByCoord, TurnsRightThroughAQuarterCircle)
{
    ASSERT_EQ(0, SetByCoord(ORIGIN, PlanPoint(100.0, 100.0), 0, QUARTER));
    ExpectArc(100.0, 50.0 * PI, QUARTER, PlanPoint(0.0, 100.0));
    EXPECT_EQ(QUARTER, Params().centralAngle);
    EXPECT_EQ(0, Params().startAzimuth);
    EXPECT_EQ(QUARTER, Params().endAzimuth);
    EXPECT_EQ(3 * QUARTER, ReferenceArc().startRadialAzimuth);
    EXPECT_EQ(1, ReferenceArc().isDefined);
}

TEST(ArcByCoord, TurnsLeftThroughAQuarterCircle)
{
    ASSERT_EQ(0, SetByCoord(ORIGIN, PlanPoint(100.0, -100.0), 0, 3 * QUARTER));
    ExpectArc(-100.0, 50.0 * PI, -QUARTER, PlanPoint(0.0, -100.0));
    EXPECT_EQ(-QUARTER, Params().centralAngle);
    EXPECT_EQ(QUARTER, ReferenceArc().startRadialAzimuth);
}

// Arcs in all directions: start, end and centre from the sine and cosine of the tangents' azimuths.
TEST(ArcByCoord, FindsRadiusLengthAndCentre)
{
    for (int start = 3; start < 360; start += 37)
    {
        for (const double turn : {-150.0, -91.0, -45.0, -7.0, 7.0, 45.0, 91.0, 150.0})
        {
            SCOPED_TRACE(testing::Message() << start << " by " << turn);
            const double radius = turn < 0.0 ? -80.0 : 80.0;
            // The centre lies to the right of the start by the radius, the end to the left of it in the end direction.
            const double a = start * PI / 180.0;
            const double e = (start + turn) * PI / 180.0;
            const PointRecord from = PlanPoint(300.0, 500.0);
            const PointRecord centre = PlanPoint(300.0 - radius * std::sin(a), 500.0 + radius * std::cos(a));
            const PointRecord to =
                PlanPoint(centre.northing + radius * std::sin(e), centre.easting - radius * std::cos(e));
            const AngleUnit endAzimuth = support::OnCircle(DegreesToUnits(start + turn));
            ASSERT_EQ(0, SetByCoord(from, to, DegreesToUnits(start), endAzimuth));
            ExpectArc(radius, std::fabs(radius * turn) * PI / 180.0, DegreesToUnits(turn), centre, 1e-8);
            EXPECT_EQ(DegreesToUnits(start), Params().startAzimuth);
            EXPECT_EQ(endAzimuth, Params().endAzimuth);
            EXPECT_EQ(support::OnCircle(DegreesToUnits(start) + (turn < 0.0 ? QUARTER : -QUARTER)),
                      ReferenceArc().startRadialAzimuth);
            EXPECT_EQ(1, ReferenceArc().centre.flags);
            EXPECT_EQ(0.0, ReferenceArc().centre.height);
        }
    }
}

// The radius is the tangent's length T times tan((half circle - turn) / 2), of which the half unit is cut off.
TEST(ArcByCoord, CutsHalfTheVertexAngleToAWholeUnit)
{
    constexpr double FAR = 1e6; // where half a unit of angle makes 0.15 of the radius
    for (const AngleUnit turn : {-3000001, -3000000, -2999999, 2999999, 3000000, 3000001})
    {
        const double e = support::UnitsToRadians(turn);
        const PointRecord end = PlanPoint(FAR + FAR * std::cos(e), FAR * std::sin(e));
        ASSERT_EQ(0, SetByCoord(ORIGIN, end, 0, support::OnCircle(turn)));
        // Towards zero, in both senses: the vertex angle has the sign of the turn.
        const AngleUnit vertexAngle = HALF - support::OnCircle(turn);
        const double half = vertexAngle > 0 ? std::floor(vertexAngle / 2.0) : std::ceil(vertexAngle / 2.0);
        EXPECT_NEAR(FAR * std::tan(support::UnitsToRadians(half)), Params().radius, 1e-3) << turn;
    }
}

TEST(ArcByCoord, ReducesTheAzimuthsOnce)
{
    const PointRecord end = PlanPoint(86.60254037844386, 50.0); // 60 degrees from the north of radius 100
    const AngleUnit turn = DegreesToUnits(60.0);
    for (const AngleUnit circles : {-FULL, FULL, 5 * FULL})
    {
        ASSERT_EQ(0, SetByCoord(ORIGIN, end, circles, turn + circles));
        EXPECT_EQ(0, Params().startAzimuth);
        EXPECT_EQ(turn, Params().endAzimuth);
        EXPECT_NEAR(100.0, Params().radius, NEAR);
    }
    // Below minus one circle the remainder stays negative.
    ASSERT_EQ(0, SetByCoord(ORIGIN, end, 0, turn - 2 * FULL));
    EXPECT_EQ(turn - FULL, Params().endAzimuth);
    EXPECT_NEAR(100.0, Params().radius, NEAR);
}

TEST(ArcByCoord, GoesOnWithTangentsThatHaveNoIntersection)
{
    // At 1e17 a step of one is lost: the start tangent has no direction, and the vertex stays undefined.
    constexpr double FAR = 1e17;
    ASSERT_EQ(0, SetByCoord(PlanPoint(FAR, 0.0), PlanPoint(100.0, 100.0), 0, QUARTER));
    const double tangent = std::hypot(134217728.0 - FAR, 134217728.0);
    EXPECT_NEAR(tangent, Params().radius, tangent * 1e-12);
}

TEST(ArcByCoord, GivesARadiusOfZeroForTangentsThatMeetInTheStart)
{
    // The end tangent runs east through the start (1, 0): at northing 1 its step north is lost to rounding.
    ASSERT_EQ(0, SetByCoord(PlanPoint(1.0, 0.0), PlanPoint(1.0, 50.0), 0, QUARTER));
    ExpectSameFields(ArcParams{0, QUARTER, 0.0, 0.0, 0}, Params());
}

// --- half circles ---

TEST(ArcByCoord, MakesAHalfCircleOfOppositeTangents)
{
    // From (8, 0) north, turning right to (8, 200), and left to (8, -200); and southwards likewise. At northing 8 the
    // normal runs exactly east or west: its step north is lost to rounding.
    const PointRecord start = PlanPoint(8.0, 0.0);
    struct HalfCircle
    {
        AngleUnit startAzimuth;
        double easting;
        double radius;
        AngleUnit startRadial;
    };
    for (const HalfCircle& h : {HalfCircle{0, 200.0, 100.0, 3 * QUARTER}, HalfCircle{0, -200.0, -100.0, QUARTER},
                                HalfCircle{HALF, 200.0, -100.0, 3 * QUARTER}, HalfCircle{HALF, -200.0, 100.0, QUARTER}})
    {
        ASSERT_EQ(0, SetByCoord(start, PlanPoint(8.0, h.easting), h.startAzimuth, HALF - h.startAzimuth));
        EXPECT_NEAR(h.radius, Params().radius, NEAR);
        EXPECT_NEAR(100.0 * PI, Params().length, NEAR);
        EXPECT_EQ(h.radius < 0.0 ? -HALF : HALF, Params().centralAngle);
        ExpectNear(PlanPoint(8.0, h.easting / 2.0), ReferenceArc().centre, NEAR);
        EXPECT_EQ(h.startRadial, ReferenceArc().startRadialAzimuth);
        EXPECT_EQ(h.startAzimuth, Params().startAzimuth);
        EXPECT_EQ(HALF - h.startAzimuth, Params().endAzimuth);
        EXPECT_EQ(1, ReferenceArc().isDefined);
    }
}

TEST(ArcByCoord, MeetsTheNormalByItsClampedSlope)
{
    // At northing 0 the normal's step north, the cosine of a quarter circle, stays: its slope is clamped to 2^27 and
    // the far end lies 200 / 2^27 north of where it should.
    ASSERT_EQ(0, SetByCoord(ORIGIN, PlanPoint(0.0, 200.0), 0, HALF));
    ExpectNear(PlanPoint(100.0 * 0x1p-27, 100.0), ReferenceArc().centre, 1e-14);
}

TEST(ArcByCoord, EndsAHalfCircleOppositeTheStart)
{
    // 30 degrees, 160 to the right; the end point stands another 25 back along the end tangent.
    const double c = std::cos(PI / 6.0);
    const double s = std::sin(PI / 6.0);
    const PointRecord start = FullPoint(50.0, 60.0, 1.0);
    const PointRecord end = FullPoint(50.0 - 160.0 * s + 25.0 * c, 60.0 + 160.0 * c + 25.0 * s, 2.0);
    ASSERT_EQ(0, SetByCoord(start, end, DegreesToUnits(30.0), DegreesToUnits(210.0)));
    EXPECT_NEAR(80.0, Params().radius, NEAR);
    EXPECT_NEAR(80.0 * PI, Params().length, NEAR);
    EXPECT_EQ(HALF, Params().centralAngle);
    ExpectNear(PlanPoint(50.0 - 80.0 * s, 60.0 + 80.0 * c), ReferenceArc().centre, NEAR);
    EXPECT_EQ(0, ReferenceArc().endCheck);
}

TEST(ArcByCoord, TakesTheSideOfTheEndPointWhateverLiesBetween)
{
    // 10 to the left, 1000 ahead: still a left arc.
    ASSERT_EQ(0, SetByCoord(PlanPoint(1.0, 0.0), PlanPoint(1001.0, -10.0), 0, HALF));
    EXPECT_NEAR(-5.0, Params().radius, 1e-9);
    EXPECT_EQ(-HALF, Params().centralAngle);
}

TEST(ArcByCoord, IsNotFiniteForAHalfCircleWithoutWidth)
{
    // So short that the product with the cosine of a quarter circle vanishes: neither side.
    ASSERT_EQ(0, SetByCoord(ORIGIN, PlanPoint(1e-320, 0.0), 0, HALF));
    EXPECT_TRUE(std::isnan(Params().radius));
    EXPECT_TRUE(std::isnan(Params().length));
    EXPECT_EQ(HALF, Params().centralAngle);
    EXPECT_EQ(3 * QUARTER, ReferenceArc().startRadialAzimuth);
}

TEST(ArcByCoord, TakesTheHalfCircleForOppositeTangentsOnly)
{
    // A unit less or more than a half circle: tangents of a turn of nearly 180 degrees, the radius by the vertex.
    for (const AngleUnit turn : {HALF - 2, HALF + 2})
    {
        ASSERT_EQ(0, SetByCoord(PlanPoint(1.0, 0.0), PlanPoint(1.0, 200.0), 0, turn));
        EXPECT_NE(HALF, std::abs(Params().centralAngle));
        EXPECT_EQ(turn > HALF, Params().radius < 0.0);
    }
}

// --- the end check ---

TEST(ArcByCoord, ChecksTheEndOfAnArc)
{
    const AngleUnit turn = DegreesToUnits(60.0);
    const PointRecord start = FullPoint(0.0, 0.0, 5.0);
    const double n = 86.60254037844386;
    ASSERT_EQ(0, SetByCoord(start, FullPoint(n, 50.0, 6.0), 0, turn));
    EXPECT_EQ(1, ReferenceArc().endCheck);
    // Its own height is not needed.
    ASSERT_EQ(0, SetByCoord(start, PlanPoint(n, 50.0), 0, turn));
    EXPECT_EQ(1, ReferenceArc().endCheck);
    // The end moved by x along its tangent: the vertex, and with it the radius, stays; the arc ends where it did.
    const double dN = std::cos(PI / 3.0);
    const double dE = std::sin(PI / 3.0);
    for (const double x : {0.0499, -0.0499})
    {
        ASSERT_EQ(0, SetByCoord(start, PlanPoint(n + x * dN, 50.0 + x * dE), 0, turn));
        EXPECT_EQ(1, ReferenceArc().endCheck) << x;
    }
    for (const double x : {0.0501, -0.0501, 30.0})
    {
        ASSERT_EQ(0, SetByCoord(start, PlanPoint(n + x * dN, 50.0 + x * dE), 0, turn));
        EXPECT_EQ(0, ReferenceArc().endCheck) << x;
    }
}

TEST(ArcByCoord, ChecksTheEndOfALeftArc)
{
    ASSERT_EQ(0,
              SetByCoord(FullPoint(0.0, 0.0, 5.0), FullPoint(86.60254037844386, -50.0, 6.0), 0, DegreesToUnits(300.0)));
    EXPECT_EQ(1, ReferenceArc().endCheck);
}

TEST(ArcByCoord, ChecksTheEndOfAHalfCircle)
{
    // At northing 1 the normal runs exactly east: the arc ends in (1, 200).
    const PointRecord start = FullPoint(1.0, 0.0, 5.0);
    ASSERT_EQ(0, SetByCoord(start, PlanPoint(1.046875, 200.0), 0, HALF));
    EXPECT_EQ(1, ReferenceArc().endCheck);
    ASSERT_EQ(0, SetByCoord(start, PlanPoint(1.0546875, 200.0), 0, HALF));
    EXPECT_EQ(0, ReferenceArc().endCheck);
    ASSERT_EQ(0, SetByCoord(start, PlanPoint(1.0, -200.0), 0, HALF));
    EXPECT_EQ(1, ReferenceArc().endCheck);
}

TEST(ArcByCoord, ChecksNoEndWithoutAStartHeight)
{
    const PointRecord start = FullPoint(0.0, 0.0, 5.0);
    const PointRecord end = FullPoint(86.60254037844386, 50.0, 6.0);
    for (const int flags : {1, 0xFFFD})
    {
        SetFormerArc();
        ASSERT_EQ(0, SetByCoord(WithFlags(start, flags), end, 0, DegreesToUnits(60.0)));
        EXPECT_EQ(0, ReferenceArc().endCheck);
        SetFormerArc();
        ASSERT_EQ(0, SetByCoord(WithFlags(FullPoint(1.0, 0.0, 5.0), flags), FullPoint(1.0, 200.0, 1.0), 0, HALF));
        EXPECT_EQ(0, ReferenceArc().endCheck);
    }
}

// --- by radius and azimuths ---

TEST(ArcByRadiusHAngle, TurnsRight)
{
    ASSERT_EQ(0, SetByAngle(PlanPoint(10.0, 20.0), 0, 100.0, QUARTER));
    ExpectArc(100.0, 50.0 * PI, QUARTER, PlanPoint(10.0, 120.0));
    EXPECT_EQ(0, Params().startAzimuth);
    EXPECT_EQ(QUARTER, Params().endAzimuth);
    EXPECT_EQ(3 * QUARTER, ReferenceArc().startRadialAzimuth);
    // The long way.
    ASSERT_EQ(0, SetByAngle(PlanPoint(10.0, 20.0), QUARTER, 100.0, 0));
    ExpectArc(100.0, 150.0 * PI, 3 * QUARTER, PlanPoint(-90.0, 20.0));
}

TEST(ArcByRadiusHAngle, TurnsLeft)
{
    ASSERT_EQ(0, SetByAngle(PlanPoint(10.0, 20.0), QUARTER, -100.0, 0));
    ExpectArc(-100.0, 50.0 * PI, -QUARTER, PlanPoint(110.0, 20.0));
    EXPECT_EQ(HALF, ReferenceArc().startRadialAzimuth);
    ASSERT_EQ(0, SetByAngle(PlanPoint(10.0, 20.0), 0, -100.0, QUARTER));
    ExpectArc(-100.0, 150.0 * PI, -3 * QUARTER, PlanPoint(10.0, -80.0));
    EXPECT_EQ(QUARTER, ReferenceArc().startRadialAzimuth);
}

TEST(ArcByRadiusHAngle, PutsTheRadialIntoTheCircle)
{
    ASSERT_EQ(0, SetByAngle(ORIGIN, 3 * QUARTER + 5, -100.0, 0));
    EXPECT_EQ(5, ReferenceArc().startRadialAzimuth);
    ASSERT_EQ(0, SetByAngle(ORIGIN, 5, 100.0, 0));
    EXPECT_EQ(3 * QUARTER + 5, ReferenceArc().startRadialAzimuth);
}

TEST(ArcByRadiusHAngle, CutsTheCentralAngleOff)
{
    // By the chain of products as it is written, to the last bit: length from the turn, central angle from the length.
    for (const AngleUnit turn : std::initializer_list<AngleUnit>{1, 2, 3, 1000003, 7654321, 13000001, FULL - 1})
    {
        for (const double radius : {0.1, 33.3, 1234.567, -0.1, -33.3, -1234.567})
        {
            ASSERT_EQ(0, SetByAngle(ORIGIN, radius < 0.0 ? turn : 0, radius, radius < 0.0 ? 0 : turn));
            const double length = turn * (std::fabs(radius) * 6.283185307179586) * 4.8225308641975306e-8;
            EXPECT_TRUE(support::SameBits(length, Params().length));
            const double central = length / radius * 1.0368e7 * 0.3183098861837907;
            EXPECT_EQ(static_cast<AngleUnit>(central), Params().centralAngle) << turn << " of " << radius;
        }
    }
}

TEST(ArcByRadiusHAngle, RejectsEqualAzimuthsBeforeTheRadius)
{
    SetFormerArc();
    const ArcState former = ReferenceArc();
    for (const double radius : {0.0, 100.0})
    {
        EXPECT_EQ(-1205, SetByAngle(ORIGIN, 1000, radius, 1000));
        EXPECT_EQ(-1205, SetByAngle(ORIGIN, 1000, radius, FULL + 1000));
        EXPECT_EQ(-1205, SetByAngle(ORIGIN, 1000 - FULL, radius, 1000));
        ExpectFormerArcButUndefined(former);
    }
    EXPECT_EQ(-1, SetByAngle(ORIGIN, 0, 0.0, QUARTER));
    EXPECT_EQ(-1, SetByAngle(ORIGIN, 0, -0.0, QUARTER));
    ExpectFormerArcButUndefined(former);
    for (const int flags : support::WITHOUT_PLAN)
    {
        EXPECT_EQ(-1201, SetByAngle(WithFlags(ORIGIN, flags), 0, 100.0, QUARTER));
        EXPECT_EQ(-1201, SetByAngle(WithFlags(ORIGIN, flags), 0, 0.0, 0));
    }
    ExpectFormerArcButUndefined(former);
}

TEST(ArcByRadiusHAngle, TakesTheDirectionOfARadiusThatIsNotANumberForRight)
{
    ASSERT_EQ(0, SetByAngle(ORIGIN, 0, std::nan(""), QUARTER));
    EXPECT_EQ(3 * QUARTER, ReferenceArc().startRadialAzimuth);
    EXPECT_TRUE(std::isnan(Params().length));
}

// --- by radius and length ---

TEST(ArcByRadiusArcLen, TurnsByItsLength)
{
    ASSERT_EQ(0, SetByLength(PlanPoint(10.0, 20.0), 0, 100.0, 50.0 * PI));
    ExpectArc(100.0, 50.0 * PI, QUARTER, PlanPoint(10.0, 120.0));
    EXPECT_EQ(Params().centralAngle, Params().endAzimuth);
    ASSERT_EQ(0, SetByLength(PlanPoint(10.0, 20.0), HALF, -100.0, 50.0 * PI));
    ExpectArc(-100.0, 50.0 * PI, -QUARTER, PlanPoint(10.0, 120.0));
    EXPECT_EQ(HALF + Params().centralAngle, Params().endAzimuth);
    EXPECT_EQ(3 * QUARTER, ReferenceArc().startRadialAzimuth);
}

TEST(ArcByRadiusArcLen, CutsTheCentralAngleOffTowardsZero)
{
    // Of radius 1, k + 0.9 units long.
    for (const AngleUnit k : {0, 1, 1000, 7654321})
    {
        const double length = support::UnitsToRadians(k + 0.9);
        ASSERT_EQ(0, SetByLength(ORIGIN, 0, 1.0, length));
        EXPECT_EQ(k, Params().centralAngle);
        ASSERT_EQ(0, SetByLength(ORIGIN, 0, -1.0, length));
        EXPECT_EQ(-k, Params().centralAngle);
    }
}

TEST(ArcByRadiusArcLen, LeavesTheEndAzimuthUnreduced)
{
    // 200 degrees on from 270, and back from 10.
    ASSERT_EQ(0, SetByLength(ORIGIN, DegreesToUnits(270.0), 90.0, 100.0 * PI));
    EXPECT_NEAR(DegreesToUnits(470.0), Params().endAzimuth, 1);
    ASSERT_EQ(0, SetByLength(ORIGIN, DegreesToUnits(10.0), -90.0, 100.0 * PI));
    EXPECT_NEAR(DegreesToUnits(-190.0), Params().endAzimuth, 1);
}

TEST(ArcByRadiusArcLen, IsCutToTheFullCircumference)
{
    for (const double radius : {100.0, -100.0})
    {
        const double circumference = 100.0 * 6.283185307179586;
        for (const double length : {circumference, std::nextafter(circumference, 1e9), 1e9})
        {
            ASSERT_EQ(0, SetByLength(ORIGIN, 0, radius, length));
            EXPECT_TRUE(support::SameBits(circumference, Params().length));
            EXPECT_NEAR(radius < 0.0 ? -FULL : FULL, Params().centralAngle, 1);
        }
        ASSERT_EQ(0, SetByLength(ORIGIN, 0, radius, 628.0));
        EXPECT_EQ(628.0, Params().length);
    }
}

TEST(ArcByRadiusArcLen, ReducesTheStartAzimuth)
{
    ASSERT_EQ(0, SetByLength(ORIGIN, -1000, 100.0, 10.0));
    EXPECT_EQ(FULL - 1000, Params().startAzimuth);
    ASSERT_EQ(0, SetByLength(ORIGIN, 3 * FULL + 1000, 100.0, 10.0));
    EXPECT_EQ(1000, Params().startAzimuth);
}

TEST(ArcByRadiusArcLen, RejectsWhatMakesNoArc)
{
    SetFormerArc();
    const ArcState former = ReferenceArc();
    EXPECT_EQ(-1, SetByLength(ORIGIN, 0, 0.0, 10.0));
    EXPECT_EQ(-1, SetByLength(ORIGIN, 0, -0.0, 10.0));
    EXPECT_EQ(-1, SetByLength(ORIGIN, 0, 100.0, 0.0));
    EXPECT_EQ(-1, SetByLength(ORIGIN, 0, 100.0, -1.0));
    ExpectFormerArcButUndefined(former);
    for (const int flags : support::WITHOUT_PLAN)
    {
        EXPECT_EQ(-1201, SetByLength(WithFlags(ORIGIN, flags), 0, 0.0, 0.0));
    }
    ExpectFormerArcButUndefined(former);
}

// --- what a definition keeps ---

TEST(ArcDefinition, CopiesTheEndsAsGiven)
{
    const PointRecord start = WithFlags(FullPoint(1.0, 2.0, 3.0), 0xFFFF);
    const PointRecord end = WithFlags(FullPoint(100.0, 90.0, 4.0), 0xFFF1);
    ASSERT_EQ(0, SetByCoord(start, end, 0, QUARTER));
    ExpectSameFields(start, ReferenceArc().start);
    ExpectSameFields(end, ReferenceArc().end);
    const PointRecord other = WithFlags(FullPoint(5.0, 6.0, 7.0), 0xFFF3);
    ASSERT_EQ(0, SetByAngle(other, 0, 100.0, QUARTER));
    ExpectSameFields(other, ReferenceArc().start);
    ExpectSameFields(WithFlags(end, 0), ReferenceArc().end);
}

TEST(ArcDefinition, ByRadiusHasNoEndToCheck)
{
    SetFormerArc();
    ASSERT_EQ(0, SetByAngle(FullPoint(0.0, 0.0, 5.0), 0, 100.0, DegreesToUnits(60.0)));
    EXPECT_EQ(0, ReferenceArc().endCheck);
    EXPECT_EQ(0, ReferenceArc().end.flags);
    EXPECT_EQ(1, ReferenceArc().isDefined);
    SetFormerArc();
    ASSERT_EQ(0, SetByLength(FullPoint(0.0, 0.0, 5.0), 0, 100.0, 50.0));
    EXPECT_EQ(0, ReferenceArc().endCheck);
    EXPECT_EQ(0, ReferenceArc().end.flags);
    EXPECT_EQ(1, ReferenceArc().isDefined);
}

TEST(ArcDefinition, StaysInUseAfterARejectedOne)
{
    SetFormerArc();
    const ArcState former = ReferenceArc();
    const ArcParams params = Params();
    const PointRecord end = PlanPoint(100.0, 100.0);
    for (const int flags : support::WITHOUT_PLAN)
    {
        EXPECT_EQ(-1201, SetByCoord(WithFlags(ORIGIN, flags), end, 0, QUARTER));
        EXPECT_EQ(-1201, SetByCoord(ORIGIN, WithFlags(end, flags), 0, QUARTER));
        EXPECT_EQ(-1201, SetByCoord(ORIGIN, WithFlags(ORIGIN, flags), 0, 0));
    }
    EXPECT_EQ(-1200, SetByCoord(FullPoint(1.0, 2.0, 3.0), FullPoint(1.0, 2.0, 4.0), 0, 0));
    EXPECT_EQ(-1205, SetByCoord(ORIGIN, end, QUARTER, QUARTER));
    EXPECT_EQ(-1205, SetByCoord(ORIGIN, end, QUARTER - FULL, QUARTER + FULL));
    ExpectFormerArcButUndefined(former);
    ExpectSameFields(params, Params());
    // A point at its end.
    ArcCalcResult result;
    const PointRecord measured = PlanPoint(86.60254037844386, 50.0);
    EXPECT_EQ(0, QREFCalcArc(&measured, &result));
    EXPECT_NEAR(100.0 * PI / 3.0, result.along, 1e-4);
}

// --- the azimuth reference ---

TEST(ArcDefinition, StoresAzimuthsFromNorthAndReadsThemBackAsGiven)
{
    FakeInstrument instrument;
    for (const int32_t reference : support::AZIMUTH_REFERENCES)
    {
        instrument.azimuthReference = reference;
        // The same arc, north to 60 degrees, by azimuths as the reference counts them.
        const AngleUnit turn = reference == 1 ? HALF : 0;
        const AngleUnit end = DegreesToUnits(60.0);
        for (int how = 0; how < 3; ++how)
        {
            instrument.reads.clear();
            const int32_t status =
                how == 0   ? SetByCoord(ORIGIN, PlanPoint(86.60254037844386, 50.0), turn, end + turn)
                : how == 1 ? SetByAngle(ORIGIN, turn, 100.0, end + turn - FULL)
                           : SetByLength(ORIGIN, turn + FULL, 100.0, support::UnitsToRadians(end + 0.5) * 100.0);
            EXPECT_EQ(0, status);
            EXPECT_EQ(how == 2 ? 1U : 2U, instrument.reads.size());
            EXPECT_EQ(0, ReferenceArc().startAzimuth);
            EXPECT_EQ(end, ReferenceArc().endAzimuth);
            EXPECT_NEAR(100.0, ReferenceArc().radius, NEAR);
            EXPECT_EQ(3 * QUARTER, ReferenceArc().startRadialAzimuth);
            instrument.reads.clear();
            const ArcParams params = Params();
            EXPECT_EQ(turn, params.startAzimuth);
            EXPECT_EQ(end + turn, params.endAzimuth);
            EXPECT_THAT(instrument.reads, ElementsAre(IntRead(49411), IntRead(49411)));
        }
    }
}

TEST(ArcDefinition, IsReadBackInTheReferenceOfTheMoment)
{
    FakeInstrument instrument;
    ASSERT_EQ(0, SetByAngle(ORIGIN, 1000, 100.0, QUARTER));
    instrument.azimuthReference = 1;
    EXPECT_EQ(HALF + 1000, Params().startAzimuth);
    EXPECT_EQ(HALF + QUARTER, Params().endAzimuth);
    ASSERT_EQ(0, SetByAngle(ORIGIN, HALF + 1000, 100.0, 3 * QUARTER));
    instrument.azimuthReference = 0;
    EXPECT_EQ(1000, Params().startAzimuth);
    EXPECT_EQ(QUARTER, Params().endAzimuth);
    // An end azimuth below 0 keeps the sign of the remainder: -10,368,000 - 1000 becomes -1000.
    ASSERT_EQ(0, SetByLength(ORIGIN, 0, -1.0, support::UnitsToRadians(HALF + 1000.5)));
    instrument.azimuthReference = 1;
    EXPECT_EQ(-1000, Params().endAzimuth);
}

TEST(ArcDefinition, ComparesAzimuthsBeforeTheReference)
{
    FakeInstrument instrument;
    instrument.azimuthReference = 1;
    EXPECT_EQ(-1205, SetByCoord(ORIGIN, PlanPoint(100.0, 100.0), QUARTER, QUARTER));
    EXPECT_EQ(-1205, SetByAngle(ORIGIN, QUARTER, 100.0, QUARTER));
    EXPECT_EQ(-1, SetByAngle(ORIGIN, QUARTER, 0.0, 0));
    EXPECT_THAT(instrument.reads, IsEmpty());
}
