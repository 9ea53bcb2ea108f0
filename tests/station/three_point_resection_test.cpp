#include "station/three_point_resection.h"

#include <cmath>
#include <cstdint>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "qstdlib.h"
#include "station/height.h"
#include "tests/support/angle.h"
#include "tests/support/fake_instrument.h"
#include "tests/support/record.h"

using qstdlib::AccumulateStationHeight;
using qstdlib::StationHeightByZenith;
using support::DegreesToUnits;
using support::FakeInstrument;
using support::FullPoint;
using support::IntRead;
using support::Patterned;
using support::PlanPoint;
using support::RealRead;
using support::SameBits;
using support::Untouched;

namespace {

constexpr double TOLERANCE = 1e-9;
constexpr AngleUnit THREE_QUARTERS = 15552000;

struct Sights
{
    ThreePointTarget targets[3];

    int32_t Resect(TwoPointStation& station) const
    {
        return QSTN3PtResect(&targets[0], &targets[1], &targets[2], &station);
    }
};

ThreePointTarget Sighted(const PointRecord& known, AngleUnit reading)
{
    return {known, reading, ANGLE_QUARTER_CIRCLE, 0.0};
}

// Station at the origin; targets due north, north-east and east: azimuths 0, 45 and 90 degrees. The centres are
// (50, 0) and (-50, 100), the station mirrors (50, 50) in their line.
Sights OctantSights()
{
    return {{Sighted(PlanPoint(100.0, 0.0), 0), Sighted(PlanPoint(50.0, 50.0), DegreesToUnits(45)),
             Sighted(PlanPoint(0.0, 200.0), DegreesToUnits(90))}};
}

// Station (-10^6, 0); targets at azimuths 315, 45 and 135 degrees, the two chords diameters of their circles. With the
// centres in the chords' midpoints everything is exact; through a tangent of 10^16 the last bits would differ.
Sights RightAngledSights(AngleUnit firstAngle, AngleUnit secondAngle)
{
    return {{Sighted(PlanPoint(0.0, -1e6), 0), Sighted(PlanPoint(0.0, 1e6), firstAngle),
             Sighted(PlanPoint(-2e6, 1e6), firstAngle + secondAngle)}};
}

} // namespace

TEST(ThreePointResection, RejectsATargetWithoutPlanCoordinates)
{
    for (ptrdiff_t lacking = 0; lacking < 3; ++lacking)
    {
        Sights sights = OctantSights();
        sights.targets[lacking].known.flags = 0xFFFE;
        sights.targets[1].horizontalAngle = 0; // a second fault, found later
        auto station = Patterned<TwoPointStation>();
        EXPECT_EQ(QSTD_MISSING_COORDINATES, sights.Resect(station));
        EXPECT_TRUE(Untouched(station));
    }
}

TEST(ThreePointResection, RejectsEqualDirections)
{
    const AngleUnit readings[][3] = {{7, 7, 900000}, {7, 900000, 7}, {900000, 7, 7}};
    for (const auto& reading : readings)
    {
        Sights sights = OctantSights();
        for (int i = 0; i < 3; ++i)
        {
            sights.targets[i].horizontalAngle = reading[i];
        }
        auto station = Patterned<TwoPointStation>();
        EXPECT_EQ(QSTD_EQUAL_DIRECTIONS, sights.Resect(station));
        EXPECT_TRUE(Untouched(station));
    }
}

// 900,007 in face two is 11,268,007 in face one.
TEST(ThreePointResection, ComparesTheDirectionsAfterTheirFaceReduction)
{
    Sights sights = OctantSights();
    sights.targets[0].horizontalAngle = 900007;
    sights.targets[0].zenithAngle = ANGLE_HALF_CIRCLE;
    sights.targets[2].horizontalAngle = 900007 + ANGLE_HALF_CIRCLE;
    auto station = Patterned<TwoPointStation>();
    EXPECT_EQ(QSTD_EQUAL_DIRECTIONS, sights.Resect(station));
    sights.targets[2].horizontalAngle = 900007;
    EXPECT_EQ(QSTD_OK, sights.Resect(station));
}

// A full circle apart is another number: no test catches it, and the tangent of 0 makes the position meaningless.
TEST(ThreePointResection, DoesNotReduceTheReadingsBeforeItComparesThem)
{
    Sights sights = OctantSights();
    sights.targets[1].horizontalAngle = ANGLE_FULL_CIRCLE;
    TwoPointStation station = {};
    EXPECT_EQ(QSTD_OK, sights.Resect(station));
    EXPECT_FALSE(std::isfinite(station.station.northing));
}

TEST(ThreePointResection, MirrorsTheSecondTargetInTheLineOfCentres)
{
    auto station = Patterned<TwoPointStation>();
    ASSERT_EQ(QSTD_OK, OctantSights().Resect(station));
    EXPECT_NEAR(0.0, station.station.northing, TOLERANCE);
    EXPECT_NEAR(0.0, station.station.easting, TOLERANCE);
    EXPECT_EQ(0, support::TurnFrom(0, station.orientation));
}

TEST(ThreePointResection, WritesStationAndOrientationOnly)
{
    const auto pattern = Patterned<TwoPointStation>();
    auto station = pattern;
    ASSERT_EQ(QSTD_OK, OctantSights().Resect(station));
    EXPECT_TRUE(SameBits(pattern.baselineCheck, station.baselineCheck));
    EXPECT_TRUE(SameBits(pattern.firstDistanceResidual, station.firstDistanceResidual));
    EXPECT_TRUE(SameBits(pattern.secondDistanceResidual, station.secondDistanceResidual));
    EXPECT_TRUE(SameBits(pattern.heightDifference, station.heightDifference));
    EXPECT_TRUE(SameBits(0.0, station.station.height));
    EXPECT_EQ(POINT_HAS_PLAN, station.station.flags);
}

// Stations all around three targets; the readings are the azimuths less 77.7 degrees. One unit (3e-7 rad) over 150 m is
// 0.05 mm, and the geometry multiplies it by less than 10.
TEST(ThreePointResection, FindsStationsOnEverySide)
{
    const PointRecord known[] = {PlanPoint(1100.0, 2000.0), PlanPoint(1000.0, 2080.0), PlanPoint(930.0, 1960.0)};
    const double places[][2] = {
        {1000.0, 2010.0}, {1200.0, 2150.0}, {1010.0, 2200.0}, {800.0, 2050.0}, {1050.0, 1900.0}};
    for (const auto& place : places)
    {
        Sights sights = {};
        for (int i = 0; i < 3; ++i)
        {
            const double azimuth = std::atan2(known[i].easting - place[1], known[i].northing - place[0]);
            const auto units = static_cast<AngleUnit>(std::lround(support::RadiansToUnits(azimuth)));
            sights.targets[i] = Sighted(known[i], support::OnCircle(units - DegreesToUnits(77.7)));
        }
        TwoPointStation station = {};
        ASSERT_EQ(QSTD_OK, sights.Resect(station));
        EXPECT_NEAR(place[0], station.station.northing, 5e-4);
        EXPECT_NEAR(place[1], station.station.easting, 5e-4);
        EXPECT_NEAR(0, support::TurnFrom(DegreesToUnits(77.7), station.orientation), 12);
    }
}

TEST(ThreePointResection, PutsTheCentreOfARightAngleAtTheChordsMidpoint)
{
    const AngleUnit right[] = {ANGLE_QUARTER_CIRCLE, THREE_QUARTERS};
    for (const AngleUnit first : right)
    {
        for (const AngleUnit second : right)
        {
            TwoPointStation station = {};
            ASSERT_EQ(QSTD_OK, RightAngledSights(first, second).Resect(station));
            EXPECT_EQ(-1e6, station.station.northing) << first << ' ' << second;
            EXPECT_EQ(0.0, station.station.easting) << first << ' ' << second;
            EXPECT_EQ(-2592000, station.orientation);
        }
    }
}

// Minus a quarter circle is the same geometry as three quarters, but goes through tan(3 pi / 2) = 5.4e15.
TEST(ThreePointResection, TakesANegativeRightAngleThroughTheTangent)
{
    const Sights both = RightAngledSights(-ANGLE_QUARTER_CIRCLE, -ANGLE_QUARTER_CIRCLE);
    TwoPointStation station = {};
    ASSERT_EQ(QSTD_OK, both.Resect(station));
    EXPECT_NE(0.0, station.station.easting);
    EXPECT_NEAR(-1e6, station.station.northing, 1e-6);
    EXPECT_NEAR(0.0, station.station.easting, 1e-6);
}

// First and third target in one place, opposite each other on the circle: both centres are the midpoint of the chord.
TEST(ThreePointResection, ReportsCentresThatCoincideExactly)
{
    const Sights sights = {{Sighted(PlanPoint(0.0, 0.0), 0), Sighted(PlanPoint(0.0, 100.0), ANGLE_QUARTER_CIRCLE),
                            Sighted(PlanPoint(0.0, 0.0), ANGLE_HALF_CIRCLE)}};
    auto station = Patterned<TwoPointStation>();
    EXPECT_EQ(QSTD_DEGENERATE, sights.Resect(station));
    EXPECT_TRUE(Untouched(station));
}

// The danger circle missed by the last bit of a coordinate: the centres differ, a position comes out.
TEST(ThreePointResection, DoesNotReportCentresThatNearlyCoincide)
{
    const Sights sights = {{Sighted(PlanPoint(0.0, 0.0), 0), Sighted(PlanPoint(0.0, 100.0), ANGLE_QUARTER_CIRCLE),
                            Sighted(PlanPoint(1e-150, 0.0), ANGLE_HALF_CIRCLE)}};
    TwoPointStation station = {};
    EXPECT_EQ(QSTD_OK, sights.Resect(station));
}

TEST(ThreePointResection, TakesAFaceTwoSightForOneWithItsReadingTurned)
{
    TwoPointStation faceOne = {};
    ASSERT_EQ(QSTD_OK, OctantSights().Resect(faceOne));
    for (int turned = 0; turned < 3; ++turned)
    {
        Sights sights = OctantSights();
        sights.targets[turned].horizontalAngle += ANGLE_HALF_CIRCLE;
        sights.targets[turned].zenithAngle = ANGLE_HALF_CIRCLE + ANGLE_QUARTER_CIRCLE;
        TwoPointStation faceTwo = {};
        ASSERT_EQ(QSTD_OK, sights.Resect(faceTwo));
        support::ExpectSameFields(faceOne, faceTwo);
    }
}

// Level sights from three heights: 10, 20 and 60 plus reflectors of 1, 2 and 3 m: 11, 22 and 63. Mean 32; without the
// second 37; the third alone 63.
TEST(ThreePointResection, AveragesTheHeightsOfTheTargetsThatHaveOne)
{
    Sights sights = OctantSights();
    const double heights[] = {10.0, 20.0, 60.0};
    for (int i = 0; i < 3; ++i)
    {
        sights.targets[i].known.height = heights[i];
        sights.targets[i].known.flags = 3;
        sights.targets[i].reflectorHeight = i + 1.0;
    }
    TwoPointStation station = {};
    ASSERT_EQ(QSTD_OK, sights.Resect(station));
    EXPECT_NEAR(32.0, station.station.height, TOLERANCE);
    EXPECT_EQ(3, station.station.flags);
    sights.targets[1].known.flags = POINT_HAS_PLAN;
    ASSERT_EQ(QSTD_OK, sights.Resect(station));
    EXPECT_NEAR(37.0, station.station.height, TOLERANCE);
    EXPECT_EQ(3, station.station.flags);
    sights.targets[0].known.flags = POINT_HAS_PLAN;
    ASSERT_EQ(QSTD_OK, sights.Resect(station));
    EXPECT_NEAR(63.0, station.station.height, TOLERANCE);
    EXPECT_EQ(3, station.station.flags);
}

// The distances are those from the new station: 100, 50 sqrt 2 and 200 m; under 45 degrees each takes its own distance
// off, under 135 degrees it adds it.
TEST(ThreePointResection, DerivesTheHeightsFromTheNewStation)
{
    Sights sights = OctantSights();
    for (ThreePointTarget& target : sights.targets)
    {
        target.known.flags = 3;
        target.known.height = 500.0;
        target.zenithAngle = DegreesToUnits(45);
    }
    sights.targets[2].zenithAngle = DegreesToUnits(135);
    TwoPointStation station = {};
    ASSERT_EQ(QSTD_OK, sights.Resect(station));
    EXPECT_NEAR((400.0 + (500.0 - 50.0 * std::sqrt(2.0)) + 700.0) / 3.0, station.station.height, 1e-8);
}

TEST(ThreePointResection, OrientsByTheFirstTargetOnly)
{
    Sights sights = OctantSights();
    for (ThreePointTarget& target : sights.targets)
    {
        target.horizontalAngle += 1234567;
    }
    TwoPointStation station = {};
    ASSERT_EQ(QSTD_OK, sights.Resect(station));
    EXPECT_EQ(-1234567, station.orientation);
    sights.targets[2].horizontalAngle += ANGLE_FULL_CIRCLE;
    ASSERT_EQ(QSTD_OK, sights.Resect(station));
    EXPECT_EQ(-1234567, station.orientation);
}

TEST(ThreePointResection, ReadsTheHeightSettingsOfEachTargetAndThenTheAzimuthReference)
{
    FakeInstrument instrument;
    instrument.azimuthReference = 1;
    Sights sights = OctantSights();
    sights.targets[0].known.flags = 3;
    sights.targets[2].known.flags = 3;
    TwoPointStation station = {};
    ASSERT_EQ(QSTD_OK, sights.Resect(station));
    EXPECT_THAT(instrument.reads,
                testing::ElementsAre(RealRead(SETTING_SCALE_FACTOR), IntRead(SETTING_SEA_LEVEL),
                                     IntRead(SETTING_CURVATURE_REFRACTION), IntRead(SETTING_CURVATURE_REFRACTION),
                                     RealRead(SETTING_SCALE_FACTOR), IntRead(SETTING_SEA_LEVEL),
                                     IntRead(SETTING_CURVATURE_REFRACTION), IntRead(SETTING_CURVATURE_REFRACTION),
                                     IntRead(SETTING_AZIMUTH_REFERENCE)));
    EXPECT_EQ(-ANGLE_HALF_CIRCLE, station.orientation);
}

TEST(AccumulateStationHeight, AddsAndCountsATargetOfKnownHeight)
{
    TwoPointStation station = {};
    station.station = PlanPoint(30.0, -40.0);
    const ThreePointTarget target = {FullPoint(330.0, 360.0, 80.0), 0, DegreesToUnits(70), 1.5};
    double sum = 1000.0;
    int16_t count = 4;
    AccumulateStationHeight(&sum, &count, &station, &target);
    // 80 + 1.5 - 500 / tan 70
    EXPECT_NEAR(1081.5 - 500.0 / std::tan(70.0 * support::PI / 180.0), sum, TOLERANCE);
    EXPECT_EQ(5, count);
    EXPECT_EQ(1000.0 + StationHeightByZenith(30.0, -40.0, &target.known, DegreesToUnits(70), 1.5), sum);
}

TEST(AccumulateStationHeight, PassesTheZenithAsItWasRead)
{
    TwoPointStation station = {};
    station.station = PlanPoint(30.0, -40.0);
    ThreePointTarget target = {FullPoint(330.0, 360.0, 80.0), 0, DegreesToUnits(290), 1.5};
    double faceTwo = 0.0;
    double faceOne = 0.0;
    int16_t count = 0;
    AccumulateStationHeight(&faceTwo, &count, &station, &target);
    target.zenithAngle = DegreesToUnits(70);
    AccumulateStationHeight(&faceOne, &count, &station, &target);
    EXPECT_TRUE(SameBits(faceOne, faceTwo));
}

TEST(AccumulateStationHeight, PassesOverATargetWithoutHeight)
{
    TwoPointStation station = {};
    const ThreePointTarget target = {PlanPoint(330.0, 360.0, 80.0), 0, DegreesToUnits(70), 1.5};
    double sum = 1000.0;
    int16_t count = 4;
    AccumulateStationHeight(&sum, &count, &station, &target);
    EXPECT_EQ(1000.0, sum);
    EXPECT_EQ(4, count);
}
