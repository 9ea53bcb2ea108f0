#include "station/two_point_resection.h"

#include <cmath>
#include <cstdint>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "qstdlib.h"
#include "tests/support/angle.h"
#include "tests/support/fake_instrument.h"
#include "tests/support/record.h"

using qstdlib::SolveOneDistance;
using qstdlib::SolveTwoDistances;
using support::DegreesToUnits;
using support::FakeInstrument;
using support::FullPoint;
using support::Patterned;
using support::PlanPoint;
using support::SameBits;
using support::Untouched;

namespace {

constexpr double TOLERANCE = 1e-9;
constexpr AngleUnit FACE_TWO_ZENITH = 20000000;

TwoPointTarget Sighted(const PointRecord& known, double localNorthing, double localEasting, AngleUnit reading,
                       double distance)
{
    TwoPointTarget target = {};
    target.known = known;
    target.localNorthing = localNorthing;
    target.localEasting = localEasting;
    target.unused[0] = std::nan(""); // must not enter anything
    target.unused[1] = std::nan("");
    target.horizontalAngle = reading;
    target.zenithAngle = ANGLE_QUARTER_CIRCLE;
    target.horizontalDistance = distance;
    return target;
}

// Station (1000, 2000), targets 128 m north and 128 m east of it, local frame parallel to the known one. Differences
// of 128 make q = 2^15, so that the fit is exact in binary.
struct ParallelFrame
{
    TwoPointTarget first = Sighted(PlanPoint(1128.0, 2000.0), 128.0, 0.0, 1000000, 128.0);
    TwoPointTarget second = Sighted(PlanPoint(1000.0, 2128.0), 0.0, 128.0, 6184000, 128.0);
};

// Triangle 300-400-500: A north of the station (1000, 2000), B east of it, a right angle between the sights.
struct RightTriangle
{
    TwoPointTarget first = Sighted(PlanPoint(1300.0, 2000.0), std::nan(""), std::nan(""), 1000000, 300.0);
    TwoPointTarget second = Sighted(PlanPoint(1000.0, 2400.0), std::nan(""), std::nan(""), 6184000, 0.0);
};

// Known points on the easting axis: A at the origin, measured, B at 100.
struct EastingAxis
{
    TwoPointTarget a = Sighted(PlanPoint(0.0, 0.0), 0.0, 0.0, 0, 30.0);
    TwoPointTarget b = Sighted(PlanPoint(0.0, 100.0), 0.0, 0.0, 0, 0.0);
};

void ExpectPlan(double northing, double easting, const TwoPointStation& station)
{
    EXPECT_NEAR(northing, station.station.northing, TOLERANCE);
    EXPECT_NEAR(easting, station.station.easting, TOLERANCE);
}

// What a solution leaves to its caller.
void ExpectChecksUntouched(const TwoPointStation& station)
{
    const auto pattern = Patterned<TwoPointStation>();
    EXPECT_TRUE(SameBits(pattern.baselineCheck, station.baselineCheck));
    EXPECT_TRUE(SameBits(pattern.firstDistanceResidual, station.firstDistanceResidual));
    EXPECT_TRUE(SameBits(pattern.secondDistanceResidual, station.secondDistanceResidual));
    EXPECT_TRUE(SameBits(pattern.heightDifference, station.heightDifference));
}

} // namespace

TEST(TwoPointResection, RejectsATargetWithoutPlanCoordinates)
{
    for (const bool firstLacks : {true, false})
    {
        ParallelFrame sights;
        (firstLacks ? sights.first : sights.second).known.flags = 0xFFFE;
        auto station = Patterned<TwoPointStation>();
        EXPECT_EQ(QSTD_MISSING_COORDINATES, QSTN2PtResect(&sights.first, &sights.second, &station));
        EXPECT_TRUE(Untouched(station));
    }
}

TEST(TwoPointResection, RejectsCoincidentTargetsWhateverTheirHeights)
{
    ParallelFrame sights;
    sights.second.known = FullPoint(1128.0, 2000.0, 55.0);
    auto station = Patterned<TwoPointStation>();
    EXPECT_EQ(QSTD_COINCIDENT_POINTS, QSTN2PtResect(&sights.first, &sights.second, &station));
    EXPECT_TRUE(Untouched(station));
}

TEST(TwoPointResection, AcceptsTargetsThatDifferInOneCoordinate)
{
    auto station = Patterned<TwoPointStation>();
    ParallelFrame sights;
    sights.second.known = PlanPoint(1128.0, 2000.0 + 1e-9);
    EXPECT_EQ(QSTD_OK, QSTN2PtResect(&sights.first, &sights.second, &station));
    sights.second.known = PlanPoint(1128.0 + 1e-9, 2000.0);
    EXPECT_EQ(QSTD_OK, QSTN2PtResect(&sights.first, &sights.second, &station));
}

TEST(TwoPointResection, RejectsSightsWithoutAnyDistance)
{
    ParallelFrame sights;
    sights.first.horizontalDistance = 0.0;
    sights.second.horizontalDistance = -0.0;
    auto station = Patterned<TwoPointStation>();
    EXPECT_EQ(QSTD_NO_DISTANCE, QSTN2PtResect(&sights.first, &sights.second, &station));
    EXPECT_TRUE(Untouched(station));
}

TEST(TwoPointResection, ReportsTheFirstOfSeveralFaults)
{
    ParallelFrame sights;
    sights.first.horizontalDistance = 0.0;
    sights.second.horizontalDistance = 0.0;
    sights.second.known = sights.first.known;
    TwoPointStation station = {};
    EXPECT_EQ(QSTD_COINCIDENT_POINTS, QSTN2PtResect(&sights.first, &sights.second, &station));
    sights.second.known.flags = 0;
    EXPECT_EQ(QSTD_MISSING_COORDINATES, QSTN2PtResect(&sights.first, &sights.second, &station));
}

// a = 1, b = 0: the station is the origin of the local frame; orientation = azimuth 0 - reading 1,000,000.
TEST(TwoPointResection, FitsAShiftedFrameWithoutTurningIt)
{
    const ParallelFrame sights;
    auto station = Patterned<TwoPointStation>();
    ASSERT_EQ(QSTD_OK, QSTN2PtResect(&sights.first, &sights.second, &station));
    EXPECT_EQ(1000.0, station.station.northing);
    EXPECT_EQ(2000.0, station.station.easting);
    EXPECT_TRUE(SameBits(0.0, station.station.height));
    EXPECT_EQ(POINT_HAS_PLAN, station.station.flags);
    EXPECT_EQ(-1000000, station.orientation);
    EXPECT_EQ(0.0, station.baselineCheck);
    EXPECT_EQ(0.0, station.firstDistanceResidual);
    EXPECT_EQ(0.0, station.secondDistanceResidual);
    EXPECT_TRUE(SameBits(0.0, station.heightDifference));
}

// The circle's zero points east: local = (128 cos 270, 128 sin 270) and (128, 0), so a = 0 and b = -1.
TEST(TwoPointResection, FitsAFrameTurnedByAQuarterCircle)
{
    ParallelFrame sights;
    sights.first = Sighted(sights.first.known, 0.0, -128.0, 15552000, 128.0);
    sights.second = Sighted(sights.second.known, 128.0, 0.0, 0, 128.0);
    TwoPointStation station = {};
    ASSERT_EQ(QSTD_OK, QSTN2PtResect(&sights.first, &sights.second, &station));
    EXPECT_EQ(1000.0, station.station.northing);
    EXPECT_EQ(2000.0, station.station.easting);
    EXPECT_EQ(5184000, station.orientation);
}

// A circle turned by 30 degrees and unequal distances, so that no two terms of the fit agree: local = D (cos, sin) of
// (azimuth - 30).
TEST(TwoPointResection, FitsAFrameTurnedByAnyAngle)
{
    const double turn = DegreesToUnits(30) * support::PI / ANGLE_HALF_CIRCLE;
    const PointRecord known[] = {PlanPoint(1300.0, 2040.0), PlanPoint(950.0, 2210.0)};
    TwoPointTarget targets[2];
    for (int i = 0; i < 2; ++i)
    {
        const double dN = known[i].northing - 1000.0;
        const double dE = known[i].easting - 2000.0;
        const double reading = std::atan2(dE, dN) - turn;
        const double distance = std::hypot(dN, dE);
        targets[i] = Sighted(known[i], distance * std::cos(reading), distance * std::sin(reading),
                             static_cast<AngleUnit>(std::lround(support::RadiansToUnits(reading))), distance);
    }
    TwoPointStation station = {};
    ASSERT_EQ(QSTD_OK, QSTN2PtResect(&targets[0], &targets[1], &station));
    ExpectPlan(1000.0, 2000.0, station);
    EXPECT_NEAR(DegreesToUnits(30), station.orientation, 1);
    EXPECT_NEAR(0.0, station.baselineCheck, TOLERANCE);
}

// Local coordinates at half the size: a = 2, the station stays; the known baseline is 128 sqrt 2, the local one half.
TEST(TwoPointResection, LeavesTheScaleFree)
{
    ParallelFrame sights;
    sights.first.localNorthing = 64.0;
    sights.second.localEasting = 64.0;
    TwoPointStation station = {};
    ASSERT_EQ(QSTD_OK, QSTN2PtResect(&sights.first, &sights.second, &station));
    EXPECT_EQ(1000.0, station.station.northing);
    EXPECT_EQ(2000.0, station.station.easting);
    EXPECT_NEAR(64.0 * std::sqrt(2.0), station.baselineCheck, TOLERANCE);
}

// dx = 1, dy = 2, dN = dE = 1: q = 5, a = 3 (1/5) = 0.6000000000000001 (3/5 would be 0.6), b = 1/5. First local
// point (1, 0) at the origin: northing -a, easting b.
TEST(TwoPointResection, MultipliesByTheReciprocalOfTheSquaredLength)
{
    const TwoPointTarget first = Sighted(PlanPoint(0.0, 0.0), 1.0, 0.0, 0, 1.0);
    const TwoPointTarget second = Sighted(PlanPoint(1.0, 1.0), 2.0, 2.0, 0, 1.0);
    TwoPointStation station = {};
    ASSERT_EQ(QSTD_OK, QSTN2PtResect(&first, &second, &station));
    EXPECT_TRUE(SameBits(-0.6000000000000001, station.station.northing));
    EXPECT_TRUE(SameBits(0.2, station.station.easting));
}

// 128.25 - 128 and 127.5 - 128, the computed distances being exact.
TEST(TwoPointResection, ReportsMeasuredLessComputedDistances)
{
    ParallelFrame sights;
    sights.first.horizontalDistance = 128.25;
    sights.second.horizontalDistance = 127.5;
    TwoPointStation station = {};
    ASSERT_EQ(QSTD_OK, QSTN2PtResect(&sights.first, &sights.second, &station));
    EXPECT_EQ(0.25, station.firstDistanceResidual);
    EXPECT_EQ(-0.5, station.secondDistanceResidual);
}

// Only the first target's face and reading count, for the orientation alone: 1,000,000 + 10,368,000 gives -11,368,000
// + 20,736,000 = 9,368,000.
TEST(TwoPointResection, ReducesTheFirstReadingWithTwoDistances)
{
    ParallelFrame sights;
    sights.second.zenithAngle = FACE_TWO_ZENITH;
    TwoPointStation station = {};
    ASSERT_EQ(QSTD_OK, QSTN2PtResect(&sights.first, &sights.second, &station));
    EXPECT_EQ(-1000000, station.orientation);
    sights.first.zenithAngle = FACE_TWO_ZENITH;
    ASSERT_EQ(QSTD_OK, QSTN2PtResect(&sights.first, &sights.second, &station));
    EXPECT_EQ(9368000, station.orientation);
    EXPECT_EQ(1000.0, station.station.northing);
}

// First: 50 - 2 + 1.5 = 49.5; second: 60 - 11 + 1.25 = 50.25. Mean 49.875, difference -0.75; all exact in binary.
TEST(TwoPointResection, AveragesTheStationHeights)
{
    ParallelFrame sights;
    sights.first.known = FullPoint(1128.0, 2000.0, 50.0);
    sights.first.verticalDifference = 2.0;
    sights.first.reflectorHeight = 1.5;
    sights.second.known = FullPoint(1000.0, 2128.0, 60.0);
    sights.second.verticalDifference = 11.0;
    sights.second.reflectorHeight = 1.25;
    TwoPointStation station = {};
    ASSERT_EQ(QSTD_OK, QSTN2PtResect(&sights.first, &sights.second, &station));
    EXPECT_EQ(49.875, station.station.height);
    EXPECT_EQ(3, station.station.flags);
    EXPECT_EQ(-0.75, station.heightDifference);

    sights.second.known.flags = POINT_HAS_PLAN;
    ASSERT_EQ(QSTD_OK, QSTN2PtResect(&sights.first, &sights.second, &station));
    EXPECT_EQ(49.5, station.station.height);
    EXPECT_EQ(3, station.station.flags);
    EXPECT_TRUE(SameBits(0.0, station.heightDifference));

    sights.second.known.flags = 3;
    sights.first.known.flags = POINT_HAS_PLAN;
    ASSERT_EQ(QSTD_OK, QSTN2PtResect(&sights.first, &sights.second, &station));
    EXPECT_EQ(50.25, station.station.height);
    EXPECT_EQ(3, station.station.flags);
    EXPECT_TRUE(SameBits(0.0, station.heightDifference));
}

// (1 + 2^53) rounds to 2^53, less 2^53 is 0; with the reflector's height first, 1 would be left.
TEST(TwoPointResection, FormsTheHeightDifferenceBeforeItAddsTheReflector)
{
    ParallelFrame sights;
    sights.first.known = FullPoint(1128.0, 2000.0, 1.0);
    sights.first.verticalDifference = -9007199254740992.0;
    sights.first.reflectorHeight = -9007199254740992.0;
    TwoPointStation station = {};
    ASSERT_EQ(QSTD_OK, QSTN2PtResect(&sights.first, &sights.second, &station));
    EXPECT_EQ(0.0, station.station.height);
    EXPECT_EQ(3, station.station.flags);
}

TEST(TwoPointResection, TakesNoHeightFromATargetWithoutDistance)
{
    RightTriangle sights;
    sights.second.known = FullPoint(1000.0, 2400.0, 60.0);
    auto station = Patterned<TwoPointStation>();
    ASSERT_EQ(QSTD_OK, QSTN2PtResect(&sights.first, &sights.second, &station));
    EXPECT_TRUE(SameBits(0.0, station.station.height));
    EXPECT_EQ(POINT_HAS_PLAN, station.station.flags);

    sights.first.known = FullPoint(1300.0, 2000.0, 50.0);
    ASSERT_EQ(QSTD_OK, QSTN2PtResect(&sights.first, &sights.second, &station));
    EXPECT_EQ(50.0, station.station.height);
    EXPECT_TRUE(SameBits(0.0, station.heightDifference));
}

// sin B = 0.6, cos B = 0.8, the distance to B 400; phi = atan2(400, 300), theta = atan2(-300, 400), psi a right angle.
TEST(TwoPointResection, SolvesTheTriangleFromTheFirstDistance)
{
    const RightTriangle sights;
    auto station = Patterned<TwoPointStation>();
    ASSERT_EQ(QSTD_OK, QSTN2PtResect(&sights.first, &sights.second, &station));
    ExpectPlan(1000.0, 2000.0, station);
    EXPECT_EQ(-1000000, station.orientation);
    EXPECT_TRUE(SameBits(0.0, station.baselineCheck));
    EXPECT_NEAR(0.0, station.firstDistanceResidual, TOLERANCE);
    EXPECT_TRUE(SameBits(0.0, station.secondDistanceResidual));
}

// The distance now belongs to the second target; the orientation still is the first's: 5,184,000 - 6,184,000.
TEST(TwoPointResection, SolvesTheTriangleFromTheSecondDistanceAndOrientsByTheFirst)
{
    RightTriangle sights;
    const TwoPointTarget first = Sighted(sights.second.known, std::nan(""), std::nan(""), 6184000 + 77, 0.0);
    auto station = Patterned<TwoPointStation>();
    ASSERT_EQ(QSTD_OK, QSTN2PtResect(&first, &sights.first, &station));
    // 77 units of 1/16" more between the sights: the circle zero turns by about as much around the first target.
    EXPECT_NEAR(1000.0, station.station.northing, 0.2);
    EXPECT_NEAR(2000.0, station.station.easting, 0.2);
    const double azimuth = std::atan2(2400.0 - station.station.easting, 1000.0 - station.station.northing);
    EXPECT_NEAR(support::RadiansToUnits(azimuth) - (6184000 + 77), station.orientation, 0.6);
    EXPECT_TRUE(SameBits(0.0, station.baselineCheck));
    EXPECT_TRUE(SameBits(0.0, station.firstDistanceResidual));
    EXPECT_NEAR(0.0, station.secondDistanceResidual, TOLERANCE);

    sights.first.horizontalDistance = 0.0;
    sights.second.horizontalDistance = 400.0;
    ASSERT_EQ(QSTD_OK, QSTN2PtResect(&sights.first, &sights.second, &station));
    ExpectPlan(1000.0, 2000.0, station);
    EXPECT_EQ(-1000000, station.orientation);
}

// A station anywhere: the distance it has to A lies on a circle, the angle is the one taken from coordinates. Readings
// that grow from A to B and readings that fall give the two sides of the baseline.
TEST(TwoPointResection, FindsTheStationOnEitherSideOfTheBaseline)
{
    for (const double side : {1.0, -1.0})
    {
        // A (0, 0), B (40, 300), station 120 m off A.
        const double northing = -side * 113.0;
        const double easting = 40.0;
        const double toA = std::atan2(-easting, -northing);
        const double toB = std::atan2(300.0 - easting, 40.0 - northing);
        const auto readingA = static_cast<AngleUnit>(std::lround(support::RadiansToUnits(toA)));
        const auto readingB = static_cast<AngleUnit>(std::lround(support::RadiansToUnits(toB)));
        const TwoPointTarget a = Sighted(PlanPoint(0.0, 0.0), 0.0, 0.0, readingA, std::hypot(northing, easting));
        const TwoPointTarget b = Sighted(PlanPoint(40.0, 300.0), 0.0, 0.0, readingB, 0.0);
        TwoPointStation station = {};
        ASSERT_EQ(QSTD_OK, QSTN2PtResect(&a, &b, &station));
        // A unit of angle is 3.0e-7; over 300 m about 0.1 mm.
        EXPECT_NEAR(northing, station.station.northing, 2e-4);
        EXPECT_NEAR(easting, station.station.easting, 2e-4);
        EXPECT_NEAR(0.0, station.orientation, 3);
    }
}

// Sights in one direction: the station lies on the line through B and A, beyond A: (0, -30).
TEST(TwoPointResection, PutsTheStationBeyondTheNearerTarget)
{
    const EastingAxis sights;
    TwoPointStation station = {};
    ASSERT_EQ(QSTD_OK, QSTN2PtResect(&sights.a, &sights.b, &station));
    ExpectPlan(0.0, -30.0, station);
    EXPECT_EQ(5184000, station.orientation);
}

// An angle of exactly 0 makes phi pi, whatever the distances. A distance of -200 (not above the baseline) would make
// the arc tangent -pi: the sine of pi, 1.2e-16, shows the sign in the northing, 0 + 200 sin pi.
TEST(TwoPointResection, TakesAnAngleOfZeroForAFlatTriangle)
{
    EastingAxis sights;
    sights.a.horizontalDistance = -200.0;
    TwoPointStation station = {};
    ASSERT_EQ(QSTD_OK, QSTN2PtResect(&sights.a, &sights.b, &station));
    EXPECT_GT(station.station.northing, 0.0);
    ExpectPlan(0.0, 200.0, station);
}

// Sights in opposite directions: between A and B, at 30 m from A, and exactly on the easting axis, since phi = 0.
TEST(TwoPointResection, PutsTheStationBetweenOpposedTargets)
{
    EastingAxis sights;
    sights.b.horizontalAngle = ANGLE_HALF_CIRCLE;
    TwoPointStation station = {};
    ASSERT_EQ(QSTD_OK, QSTN2PtResect(&sights.a, &sights.b, &station));
    EXPECT_EQ(0.0, station.station.northing);
    EXPECT_EQ(30.0, station.station.easting);
    EXPECT_EQ(-5184000, station.orientation);
}

// The measured target's distance is the baseline, the sights oppose each other: the station falls on the other target,
// which is the first. Its azimuth is undefined and goes into the orientation as the number that it is:
// 134,217,728 - 10,368,000 + 20,736,000 = 6 x 20,736,000 + 20,169,728, less a circle -566,272.
TEST(TwoPointResection, OrientsByTheFirstTargetEvenFromItsPlace)
{
    EastingAxis sights;
    sights.a.horizontalDistance = 100.0;
    sights.b.horizontalAngle = ANGLE_HALF_CIRCLE;
    TwoPointStation station = {};
    ASSERT_EQ(QSTD_OK, QSTN2PtResect(&sights.b, &sights.a, &station));
    EXPECT_EQ(0.0, station.station.northing);
    EXPECT_EQ(100.0, station.station.easting);
    EXPECT_EQ(-566272, station.orientation);
}

// Minus a half circle is the same geometry but not the same number: it takes the general way, whose sine of pi is
// 1.2e-16.
TEST(TwoPointResection, ComparesTheAngleAsItStands)
{
    EastingAxis sights;
    sights.a.horizontalAngle = ANGLE_HALF_CIRCLE;
    TwoPointStation station = {};
    ASSERT_EQ(QSTD_OK, QSTN2PtResect(&sights.a, &sights.b, &station));
    EXPECT_NE(0.0, station.station.northing);
    ExpectPlan(0.0, 30.0, station);
}

// The readings' difference wraps: 0 - (-2^31) = -2^31, whose remainder (after one circle) is -11,675,648 or, in the
// circle, 9,060,352.
TEST(TwoPointResection, WrapsTheDifferenceOfTheReadings)
{
    EastingAxis sights;
    sights.a.horizontalAngle = INT32_MIN;
    TwoPointStation wrapped = {};
    ASSERT_EQ(QSTD_OK, QSTN2PtResect(&sights.a, &sights.b, &wrapped));
    sights.a.horizontalAngle = -9060352;
    TwoPointStation plain = {};
    ASSERT_EQ(QSTD_OK, QSTN2PtResect(&sights.a, &sights.b, &plain));
    EXPECT_GT(std::fabs(plain.station.northing), 1.0);
    ExpectPlan(plain.station.northing, plain.station.easting, wrapped);
}

// A distance of the baseline's length under 60 degrees: equilateral, so the station is (-100 sin 60, 50).
TEST(TwoPointResection, AcceptsADistanceOfTheBaselinesLength)
{
    EastingAxis sights;
    sights.a.horizontalDistance = 100.0;
    sights.b.horizontalAngle = DegreesToUnits(60);
    TwoPointStation station = {};
    ASSERT_EQ(QSTD_OK, QSTN2PtResect(&sights.a, &sights.b, &station));
    ExpectPlan(-50.0 * std::sqrt(3.0), 50.0, station);
}

// The plan position and the orientation that the record held stay; from it (3, 4), 5 m off A, come the residuals, and
// the height comes from the target: 12 - 2 + 0.5.
TEST(TwoPointResection, ContinuesAfterADistanceLongerThanTheBaseline)
{
    EastingAxis sights;
    sights.a.horizontalDistance = std::nextafter(100.0, 200.0);
    sights.b.horizontalAngle = DegreesToUnits(60);
    sights.a.known = FullPoint(0.0, 0.0, 12.0);
    sights.a.verticalDifference = 2.0;
    sights.a.reflectorHeight = 0.5;
    auto station = Patterned<TwoPointStation>();
    station.station.northing = 3.0;
    station.station.easting = 4.0;
    station.orientation = 4711;
    EXPECT_EQ(QSTD_DEGENERATE, QSTN2PtResect(&sights.a, &sights.b, &station));
    EXPECT_EQ(3.0, station.station.northing);
    EXPECT_EQ(4.0, station.station.easting);
    EXPECT_EQ(4711, station.orientation);
    EXPECT_EQ(10.5, station.station.height);
    EXPECT_EQ(3, station.station.flags);
    EXPECT_TRUE(SameBits(0.0, station.baselineCheck));
    EXPECT_EQ(sights.a.horizontalDistance - 5.0, station.firstDistanceResidual);
    EXPECT_TRUE(SameBits(0.0, station.secondDistanceResidual));
    EXPECT_TRUE(SameBits(0.0, station.heightDifference));
}

// Held position (1128, 1984), 16 m west of the first and hypot(128, 144) = 16 hypot(8, 9) off the second. Baseline
// check: the known baseline less 0.
TEST(TwoPointResection, ContinuesAfterCoincidentLocalCoordinates)
{
    ParallelFrame sights;
    sights.second.localNorthing = 128.0;
    sights.second.localEasting = 0.0;
    auto station = Patterned<TwoPointStation>();
    station.station.northing = 1128.0;
    station.station.easting = 1984.0;
    station.orientation = 4711;
    EXPECT_EQ(QSTD_COINCIDENT_POINTS, QSTN2PtResect(&sights.first, &sights.second, &station));
    EXPECT_EQ(1128.0, station.station.northing);
    EXPECT_EQ(1984.0, station.station.easting);
    EXPECT_EQ(4711, station.orientation);
    EXPECT_TRUE(SameBits(0.0, station.station.height));
    EXPECT_EQ(POINT_HAS_PLAN, station.station.flags);
    EXPECT_NEAR(128.0 * std::sqrt(2.0), station.baselineCheck, TOLERANCE);
    EXPECT_EQ(128.0 - 16.0, station.firstDistanceResidual);
    EXPECT_NEAR(128.0 - 16.0 * std::sqrt(145.0), station.secondDistanceResidual, TOLERANCE);
    EXPECT_TRUE(SameBits(0.0, station.heightDifference));
}

TEST(TwoPointResection, TakesAFaceTwoSightForOneWithItsReadingTurned)
{
    const RightTriangle sights;
    TwoPointStation faceOne = {};
    ASSERT_EQ(QSTD_OK, QSTN2PtResect(&sights.first, &sights.second, &faceOne));
    for (const bool turnFirst : {true, false})
    {
        RightTriangle turned;
        TwoPointTarget& target = turnFirst ? turned.first : turned.second;
        target.horizontalAngle += ANGLE_HALF_CIRCLE;
        target.zenithAngle = FACE_TWO_ZENITH;
        TwoPointStation faceTwo = {};
        ASSERT_EQ(QSTD_OK, QSTN2PtResect(&turned.first, &turned.second, &faceTwo));
        support::ExpectSameFields(faceOne, faceTwo);
    }
}

TEST(TwoPointResection, ReadsTheAzimuthReferenceOnceAndTurnsTheOrientationByIt)
{
    FakeInstrument instrument;
    instrument.azimuthReference = 1;
    TwoPointStation station = {};
    const ParallelFrame two;
    ASSERT_EQ(QSTD_OK, QSTN2PtResect(&two.first, &two.second, &station));
    EXPECT_EQ(9368000, station.orientation);
    EXPECT_THAT(instrument.reads, testing::ElementsAre(support::IntRead(SETTING_AZIMUTH_REFERENCE)));
    const RightTriangle one;
    ASSERT_EQ(QSTD_OK, QSTN2PtResect(&one.first, &one.second, &station));
    EXPECT_EQ(9368000, station.orientation);
    EXPECT_EQ(2U, instrument.reads.size());
}

TEST(SolveTwoDistances, WritesAPlanPointAndTheOrientationOnly)
{
    ParallelFrame sights;
    sights.first.known.flags = 3;
    auto station = Patterned<TwoPointStation>();
    ASSERT_EQ(QSTD_OK, SolveTwoDistances(&sights.first, &sights.second, &station));
    support::ExpectSameFields(PlanPoint(1000.0, 2000.0), station.station);
    EXPECT_EQ(-1000000, station.orientation);
    ExpectChecksUntouched(station);
}

TEST(SolveTwoDistances, WritesNothingWhenTheLocalCoordinatesCoincide)
{
    ParallelFrame sights;
    sights.second.localNorthing = 128.0;
    sights.second.localEasting = 0.0;
    auto station = Patterned<TwoPointStation>();
    EXPECT_EQ(QSTD_COINCIDENT_POINTS, SolveTwoDistances(&sights.first, &sights.second, &station));
    EXPECT_TRUE(Untouched(station));
}

// The squares underflow to zero: exact zero is what counts, here reached by coordinates that do differ.
TEST(SolveTwoDistances, TestsTheSquaredLengthForExactZero)
{
    ParallelFrame sights;
    sights.second.localNorthing = 128.0;
    sights.first.localEasting = 0.0;
    sights.second.localEasting = 1e-170;
    TwoPointStation station = {};
    EXPECT_EQ(QSTD_COINCIDENT_POINTS, SolveTwoDistances(&sights.first, &sights.second, &station));
    sights.second.localEasting = 1e-150;
    EXPECT_EQ(QSTD_OK, SolveTwoDistances(&sights.first, &sights.second, &station));
}

TEST(SolveOneDistance, WritesAPlanPointAndTheOrientationOnly)
{
    RightTriangle sights;
    sights.first.known = FullPoint(1300.0, 2000.0, 50.0);
    auto station = Patterned<TwoPointStation>();
    ASSERT_EQ(QSTD_OK, SolveOneDistance(&sights.first, &sights.second, &station));
    ExpectPlan(1000.0, 2000.0, station);
    EXPECT_TRUE(SameBits(0.0, station.station.height));
    EXPECT_EQ(POINT_HAS_PLAN, station.station.flags);
    EXPECT_EQ(-1000000, station.orientation);
    ExpectChecksUntouched(station);
}

TEST(SolveOneDistance, WritesNothingWhenTheDistanceExceedsTheBaseline)
{
    RightTriangle sights;
    sights.first.horizontalDistance = 500.0000001;
    auto station = Patterned<TwoPointStation>();
    EXPECT_EQ(QSTD_DEGENERATE, SolveOneDistance(&sights.first, &sights.second, &station));
    EXPECT_TRUE(Untouched(station));
}
