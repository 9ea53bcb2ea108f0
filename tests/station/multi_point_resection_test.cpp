#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "qstdlib.h"
#include "station/adjustment/general.h"
#include "station/height.h"
#include "station/multi_point_resection.h"
#include "tests/station/adjustment/reference_adjustment.h"
#include "tests/station/allocation_watch.h"
#include "tests/station/observations.h"
#include "tests/support/fake_instrument.h"

using support::DegreesToUnits;
using support::FakeInstrument;
using support::FullPoint;
using support::IntRead;
using support::PlanPoint;
using support::RealRead;
using support::SameBits;
using support::TurnFrom;
using support::Untouched;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr double NORTHING = 1000.0;
constexpr double EASTING = 2000.0;
constexpr AngleUnit ORIENTATION = 4000000;
constexpr AngleUnit FACE_TWO_SHIFT = 2615296; // 2^32 remainder 20,736,000

// A unit of angle (3e-7 rad) is 0.03 mm at the 100 m of these tests; the geometry multiplies it by less than 5.
constexpr double ANGLE_ROUNDING = 2e-4;

const PointRecord TARGETS[] = {PlanPoint(1100.0, 2010.0), PlanPoint(1020.0, 2090.0), PlanPoint(930.0, 1980.0),
                               PlanPoint(1040.0, 1910.0)};

Observations Directions()
{
    Observations observations;
    for (const PointRecord& target : TARGETS)
    {
        observations.push_back(DirectionTo(target, NORTHING, EASTING, ORIENTATION));
    }
    return observations;
}

Observations Distances()
{
    Observations observations;
    for (const PointRecord& target : TARGETS)
    {
        observations.push_back(DistanceTo(target, NORTHING, EASTING, ORIENTATION));
    }
    return observations;
}

// Distances a few millimetres and readings a few seconds off.
Observations NoisyDistances()
{
    Observations observations = Distances();
    const double distanceErrors[] = {0.004, -0.003, 0.002, 0.005};
    const AngleUnit readingErrors[] = {90, -60, 40, -110};
    for (size_t i = 0; i < observations.size(); ++i)
    {
        observations[i].horizontalDistance += distanceErrors[i];
        observations[i].horizontalAngle += readingErrors[i];
    }
    return observations;
}

void GiveHeight(ResectObservation& observation, double height)
{
    observation.target.height = height;
    observation.target.flags |= POINT_HAS_HEIGHT;
}

void TurnToFaceTwo(ResectObservation& observation)
{
    observation.horizontalAngle =
        support::OnCircle(static_cast<int64_t>(observation.horizontalAngle) + ANGLE_HALF_CIRCLE);
    observation.zenithAngle = ANGLE_FULL_CIRCLE - observation.zenithAngle;
}

void ExpectPlace(const Resection& r, double tolerance = ANGLE_ROUNDING)
{
    ASSERT_EQ(QSTD_OK, r.status);
    EXPECT_NEAR(NORTHING, r.station.position.northing, tolerance);
    EXPECT_NEAR(EASTING, r.station.position.easting, tolerance);
}

// Radians without reduction, as the adjustment gets them.
double Radians(AngleUnit angle)
{
    return static_cast<double>(angle) * 3.141592653589793 * 9.645061728395061e-8;
}

// The working records that belong to observations in face one.
WorkRecords WorkFor(const Observations& observations)
{
    WorkRecords work;
    for (const ResectObservation& o : observations)
    {
        ResectWorkRecord record = Sighted(o.target.northing, o.target.easting, Radians(o.horizontalAngle));
        record.zenith = Radians(o.zenithAngle);
        record.reflectorHeight = o.reflectorHeight;
        record.height = (o.target.flags & POINT_HAS_HEIGHT) != 0 ? o.target.height : MISSING_VALUE;
        if (o.slopeDistance != 0.0)
        {
            record.slopeDistance = o.slopeDistance;
            record.horizontalDistance = o.horizontalDistance;
            record.verticalDifference = o.verticalDifference;
        }
        work.push_back(record);
    }
    return work;
}

struct Adjusted
{
    double northing, easting, orientation, northingSigma, eastingSigma;
};

Adjusted AdjustByMatrices(WorkRecords& work)
{
    Adjusted a = {};
    double ignored[4] = {};
    EXPECT_EQ(0, qstdlib::AdjustResection(qstdlib::ADJUST_MODE_PLAN, CountOf(work), work.data(), {2.0, 0.002, 0.000002},
                                          &a.northing, &a.easting, &ignored[0], &a.orientation, &a.northingSigma,
                                          &a.eastingSigma, &ignored[1], &ignored[2], &ignored[3]));
    return a;
}

AngleUnit Truncated(double radians)
{
    return static_cast<AngleUnit>(radians * 10368000.0 * 0.3183098861837907);
}

} // namespace

TEST(MultiPointResection, FindsTheStationFromDirectionsOnly)
{
    const Resection r = Resect(Directions());
    ExpectPlace(r);
    EXPECT_NEAR(0, TurnFrom(ORIENTATION, r.station.orientation), 4);
    EXPECT_TRUE(SameBits(0.0, r.station.position.height));
    EXPECT_EQ(POINT_HAS_PLAN, r.station.position.flags);
    EXPECT_TRUE(SameBits(0.0, r.station.heightSpread));
    for (size_t i = 0; i < 4; ++i)
    {
        EXPECT_NEAR(0, r.residuals[i].angleResidual, 2);
        EXPECT_TRUE(SameBits(0.0, r.residuals[i].distanceResidual));
        EXPECT_TRUE(SameBits(0.0, r.residuals[i].heightResidual));
    }
    EXPECT_TRUE(Untouched(r.residuals[4])) << "as many residuals as observations";
}

TEST(MultiPointResection, FindsTheStationFromThreeDirections)
{
    Observations observations = Directions();
    observations.pop_back();
    ExpectPlace(Resect(observations));
}

TEST(MultiPointResection, FindsTheStationFromDistances)
{
    const Resection r = Resect(Distances());
    ExpectPlace(r);
    EXPECT_NEAR(0, TurnFrom(ORIENTATION, r.station.orientation), 4);
}

TEST(MultiPointResection, FindsTheStationFromTwoDistances)
{
    Observations observations = Distances();
    observations.resize(2);
    ExpectPlace(Resect(observations));
}

// The horizontal distance is adjusted; the slope distance only says that there is one, and that of 0.0, of either sign,
// that there is none, whatever the other fields hold.
TEST(MultiPointResection, TakesASlopeDistanceOfZeroForNone)
{
    Observations observations = Directions();
    for (ResectObservation& observation : observations)
    {
        observation.horizontalDistance = 5000.0;
        observation.verticalDifference = std::nan("");
    }
    observations[1].slopeDistance = -0.0;
    ExpectPlace(Resect(observations));
    observations = Distances();
    for (ResectObservation& observation : observations)
    {
        observation.slopeDistance = 1e-3;
    }
    ExpectPlace(Resect(observations));
}

// A horizontal distance of exactly 1e20 says that it is absent; the height is still taken from such a target.
TEST(MultiPointResection, TakesAHorizontalDistanceOfTheMarkersValueForAbsent)
{
    Observations observations = Directions();
    GiveHeight(observations[2], 40.0);
    observations[2].slopeDistance = 1.0;
    observations[2].horizontalDistance = MISSING_VALUE;
    observations[2].verticalDifference = 3.0;
    const Resection r = Resect(observations);
    ExpectPlace(r);
    EXPECT_EQ(37.0, r.station.position.height);
    EXPECT_TRUE(SameBits(0.0, r.residuals[2].distanceResidual));
}

// Every field against the adjustment itself, to the last bit, the angles cut off to whole units.
TEST(MultiPointResection, HandsTheAdjustmentsFiguresOn)
{
    Observations observations = NoisyDistances();
    for (size_t i = 0; i < observations.size(); ++i)
    {
        observations[i].horizontalAngle += 40000000; // beyond the circle, and converted as it stands
        GiveHeight(observations[i], 50.0 + static_cast<double>(i));
    }
    WorkRecords work = WorkFor(observations);
    const Adjusted expected = AdjustByMatrices(work);
    const Resection r = Resect(observations);
    ASSERT_EQ(QSTD_OK, r.status);
    EXPECT_TRUE(SameBits(expected.northing, r.station.position.northing));
    EXPECT_TRUE(SameBits(expected.easting, r.station.position.easting));
    EXPECT_TRUE(SameBits(expected.northingSigma, r.station.northingPrecision));
    EXPECT_TRUE(SameBits(expected.eastingSigma, r.station.eastingPrecision));
    EXPECT_EQ(Truncated(expected.orientation), r.station.orientation);
    for (size_t i = 0; i < work.size(); ++i)
    {
        EXPECT_EQ(Truncated(work[i].angleResidual), r.residuals[i].angleResidual);
        EXPECT_TRUE(SameBits(work[i].distanceResidual, r.residuals[i].distanceResidual));
    }
}

// The same against the reference: 2" for a direction, 2 mm + 2 ppm for a distance. Distances of 500 to 800 m, so that
// the proportional part counts.
TEST(MultiPointResection, WeighsForTwoSecondsAndTwoMillimetresWithTwoPartsPerMillion)
{
    Observations observations;
    for (const PointRecord& target : {PlanPoint(1700.0, 2100.0), PlanPoint(900.0, 2800.0), PlanPoint(500.0, 1900.0)})
    {
        observations.push_back(DistanceTo(target, NORTHING, EASTING, ORIENTATION));
    }
    observations[0].horizontalDistance += 0.006;
    observations[1].horizontalDistance -= 0.004;
    observations[2].horizontalAngle += 100;
    const WorkRecords work = WorkFor(observations);
    const ReferenceAdjustment expected =
        AdjustByReference(false, work, {2.0, 0.002, 2e-6}, {NORTHING, EASTING, support::UnitsToRadians(ORIENTATION)});
    const double variance = expected.squareSum / 3.0;
    const Resection r = Resect(observations);
    ASSERT_EQ(QSTD_OK, r.status);
    EXPECT_NEAR(expected.unknowns[0], r.station.position.northing, 1e-8);
    EXPECT_NEAR(expected.unknowns[1], r.station.position.easting, 1e-8);
    EXPECT_NEAR(std::sqrt(variance * expected.cofactors[0]), r.station.northingPrecision, 1e-8);
    EXPECT_NEAR(std::sqrt(variance * expected.cofactors[1]), r.station.eastingPrecision, 1e-8);
    EXPECT_GT(r.station.northingPrecision, 1e-3);
}

// Adjusted less observed, from the outputs: the angle cut off to a whole unit, the orientation too.
TEST(MultiPointResection, ReportsAdjustedLessObserved)
{
    Observations observations = NoisyDistances();
    for (ResectObservation& observation : observations)
    {
        GiveHeight(observation, 10.0);
    }
    const Resection r = Resect(observations);
    ASSERT_EQ(QSTD_OK, r.status);
    for (size_t i = 0; i < observations.size(); ++i)
    {
        const double dN = observations[i].target.northing - r.station.position.northing;
        const double dE = observations[i].target.easting - r.station.position.easting;
        const double adjusted = support::RadiansToUnits(std::atan2(dE, dN)) - r.station.orientation;
        const double residual = std::remainder(adjusted - observations[i].horizontalAngle, ANGLE_FULL_CIRCLE);
        EXPECT_GT(std::fabs(residual), 3.0) << "large enough to have a sign";
        EXPECT_NEAR(residual, r.residuals[i].angleResidual, 2.0);
        EXPECT_NEAR(std::hypot(dN, dE) - observations[i].horizontalDistance, r.residuals[i].distanceResidual, 1e-6);
    }
}

// In face two every direction is 2,615,296 units too great, so that the station stays where it is and the orientation
// becomes that much smaller. The normalised directions are those near 2^31, the orientation lies as far below zero.
TEST(MultiPointResection, ShiftsEveryFaceTwoDirectionByTheSameAngle)
{
    Observations observations = Directions();
    for (ResectObservation& observation : observations)
    {
        TurnToFaceTwo(observation);
    }
    const Resection r = Resect(observations);
    ExpectPlace(r);
    EXPECT_NEAR(0, TurnFrom(ORIENTATION - FACE_TWO_SHIFT, r.station.orientation), 4);
    EXPECT_LT(r.station.orientation, -2000000000);
}

// Targets in both faces: the same as if those in face two had been read 2,615,296 units further.
TEST(MultiPointResection, TurnsAFaceTwoSightAgainstTheOthers)
{
    for (const size_t turned : {size_t(1), size_t(3)})
    {
        Observations shifted = Distances();
        shifted[turned].horizontalAngle += FACE_TWO_SHIFT;
        Observations observations = Distances();
        TurnToFaceTwo(observations[turned]);
        // The normalised direction lies 102 circles and a rest above the shifted one; misclosures are wrapped once, so
        // that the other directions have to lie there, too: the reading as it stands is not reduced.
        for (size_t i = 0; i < observations.size(); ++i)
        {
            if (i != turned)
            {
                int64_t reading = observations[i].horizontalAngle;
                while (reading < 2126747648)
                {
                    reading += ANGLE_FULL_CIRCLE;
                }
                observations[i].horizontalAngle = static_cast<AngleUnit>(reading);
            }
        }
        const Resection expected = Resect(shifted);
        const Resection r = Resect(observations);
        ASSERT_EQ(expected.status, r.status);
        ASSERT_EQ(QSTD_OK, r.status);
        EXPECT_NEAR(expected.station.position.northing, r.station.position.northing, 1e-5);
        EXPECT_NEAR(expected.station.position.easting, r.station.position.easting, 1e-5);
        EXPECT_GT(std::fabs(r.station.position.northing - NORTHING), 0.1) << "45.4 degrees do not go unnoticed";
    }
}

// From a half circle on, or below 0, a sight is in face two; the reading less a half circle is normalised unless it
// already exceeds a circle, in which case it stays and no shift arises.
TEST(MultiPointResection, TellsTheFaceByTheZenith)
{
    const auto orientationWith = [](AngleUnit zenith, AngleUnit addition) {
        Observations observations = Directions();
        for (ResectObservation& observation : observations)
        {
            observation.zenithAngle = zenith;
            observation.horizontalAngle += addition;
        }
        const Resection r = Resect(observations);
        EXPECT_EQ(QSTD_OK, r.status);
        EXPECT_NEAR(NORTHING, r.station.position.northing, ANGLE_ROUNDING);
        return r.station.orientation;
    };
    for (const AngleUnit faceOne : {0, 10367999})
    {
        EXPECT_NEAR(0, TurnFrom(ORIENTATION, orientationWith(faceOne, 0)), 4) << faceOne;
    }
    for (const AngleUnit faceTwo :
         std::initializer_list<AngleUnit>{10368000, 20735999, 20736000, 30000000, -1, INT32_MIN})
    {
        EXPECT_NEAR(0, TurnFrom(ORIENTATION - FACE_TWO_SHIFT, orientationWith(faceTwo, ANGLE_HALF_CIRCLE)), 4)
            << faceTwo;
        // A circle and a half more: what is left after the half circle exceeds a circle and is not touched.
        EXPECT_NEAR(0, TurnFrom(ORIENTATION, orientationWith(faceTwo, ANGLE_HALF_CIRCLE + ANGLE_FULL_CIRCLE)), 4)
            << faceTwo;
    }
}

// Readings 3 circles up are converted as they stand: the orientation comes out 3 circles down, less the one added.
TEST(MultiPointResection, DoesNotReduceAFaceOneReading)
{
    Observations observations = Directions();
    for (ResectObservation& observation : observations)
    {
        observation.horizontalAngle += 3 * ANGLE_FULL_CIRCLE;
    }
    const Resection r = Resect(observations);
    ExpectPlace(r);
    EXPECT_NEAR(0, TurnFrom(ORIENTATION, r.station.orientation), 4);
    EXPECT_LT(r.station.orientation, -ANGLE_FULL_CIRCLE);
    // One of four a circle off is wrapped, two circles off is not.
    observations = Directions();
    observations[3].horizontalAngle += ANGLE_FULL_CIRCLE;
    const Resection plain = Resect(Directions());
    const Resection once = Resect(observations);
    EXPECT_NEAR(plain.station.position.northing, once.station.position.northing, 1e-9);
    observations[3].horizontalAngle += 3 * ANGLE_FULL_CIRCLE;
    const Resection far = Resect(observations);
    EXPECT_FALSE(std::fabs(plain.station.position.northing - far.station.position.northing) <= 1.0);
}

// Two targets due north but for 1e-14 m to the west, read at 0: the orientation is -1e-16, plus a circle a circle.
TEST(MultiPointResection, ConvertsAnOrientationOfAWholeCircleToAWholeCircle)
{
    Observations observations(2);
    for (size_t i = 0; i < 2; ++i)
    {
        const double distance = 100.0 * static_cast<double>(i + 1);
        observations[i].target = PlanPoint(distance, -1e-16 * distance);
        observations[i].zenithAngle = ANGLE_QUARTER_CIRCLE;
        observations[i].slopeDistance = distance;
        observations[i].horizontalDistance = distance;
    }
    const Resection r = Resect(observations);
    ASSERT_EQ(QSTD_OK, r.status);
    EXPECT_EQ(ANGLE_FULL_CIRCLE, r.station.orientation);
}

// Three heights by distance: 50 + 1.5 - 2 = 49.5, 60 + 1.25 - 11 = 50.25, 48 + 2 - (-1) = 51; mean 50.25, spread 1.5.
// A fourth target of known height without distance stays out.
TEST(MultiPointResection, AveragesTheHeightsOfTargetsWithHeightAndDistance)
{
    const FakeInstrument instrument;
    Observations observations = Distances();
    const double heights[] = {50.0, 60.0, 48.0};
    const double reflectors[] = {1.5, 1.25, 2.0};
    const double differences[] = {2.0, 11.0, -1.0};
    for (size_t i = 0; i < 3; ++i)
    {
        GiveHeight(observations[i], heights[i]);
        observations[i].reflectorHeight = reflectors[i];
        observations[i].verticalDifference = differences[i];
    }
    GiveHeight(observations[3], 1000.0);
    observations[3].slopeDistance = 0.0;
    const Resection r = Resect(observations);
    ASSERT_EQ(QSTD_OK, r.status);
    EXPECT_EQ(50.25, r.station.position.height);
    EXPECT_EQ(1.5, r.station.heightSpread);
    EXPECT_EQ(3, r.station.position.flags);
    EXPECT_EQ(-0.75, r.residuals[0].heightResidual);
    EXPECT_EQ(0.0, r.residuals[1].heightResidual);
    EXPECT_EQ(0.75, r.residuals[2].heightResidual);
    EXPECT_TRUE(SameBits(0.0, r.residuals[3].heightResidual));
    EXPECT_THAT(instrument.reads, IsEmpty()) << "no reduction, and azimuths are not asked for";
}

// One target with height and distance beside others with height only, and a plan-only target with a distance: its
// distance takes part, its residual is dropped.
TEST(MultiPointResection, ReportsDistanceAndHeightResidualsOfTargetsWithBothOnly)
{
    Observations observations = NoisyDistances();
    GiveHeight(observations[0], 50.0);
    GiveHeight(observations[1], 70.0);
    observations[1].slopeDistance = 0.0;
    const Resection r = Resect(observations);
    ASSERT_EQ(QSTD_OK, r.status);
    EXPECT_EQ(50.0, r.station.position.height);
    EXPECT_EQ(0.0, r.station.heightSpread);
    EXPECT_NE(0.0, r.residuals[0].distanceResidual);
    for (size_t i = 1; i < 4; ++i)
    {
        EXPECT_TRUE(SameBits(0.0, r.residuals[i].distanceResidual)) << i;
        EXPECT_TRUE(SameBits(0.0, r.residuals[i].heightResidual)) << i;
    }
    WorkRecords work = WorkFor(observations);
    AdjustByMatrices(work);
    EXPECT_NE(0.0, work[2].distanceResidual) << "it did take part";
}

// Without a distance to a target of known height the heights come by zenith angle from the adjusted place. Distances to
// plan-only targets do not matter.
TEST(MultiPointResection, DerivesTheHeightsByZenithWhenNoTargetHasHeightAndDistance)
{
    Observations observations = Distances();
    const AngleUnit zeniths[] = {DegreesToUnits(80), DegreesToUnits(265), DegreesToUnits(91)};
    double expected[3] = {};
    for (size_t i = 0; i < 3; ++i)
    {
        GiveHeight(observations[i], 50.0 + 3.0 * static_cast<double>(i));
        observations[i].slopeDistance = 0.0;
        observations[i].reflectorHeight = 1.5;
        observations[i].zenithAngle = zeniths[i];
    }
    observations[1].horizontalAngle += ANGLE_HALF_CIRCLE - FACE_TWO_SHIFT; // in face two, its shift taken off
    for (size_t i = 0; i < observations.size(); ++i)
    {
        int64_t reading = observations[i].horizontalAngle;
        while (i != 1 && reading < 2126747648)
        {
            reading += ANGLE_FULL_CIRCLE;
        }
        observations[i].horizontalAngle = static_cast<AngleUnit>(reading);
    }
    FakeInstrument instrument;
    instrument.azimuthReference = 1;
    const Resection r = Resect(observations);
    ExpectPlace(r);
    const support::Read off[] = {RealRead(SETTING_SCALE_FACTOR), IntRead(SETTING_SEA_LEVEL),
                                 IntRead(SETTING_CURVATURE_REFRACTION), IntRead(SETTING_CURVATURE_REFRACTION)};
    EXPECT_THAT(instrument.reads, ElementsAre(off[0], off[1], off[2], off[3], off[0], off[1], off[2], off[3], off[0],
                                              off[1], off[2], off[3]));
    for (size_t i = 0; i < 3; ++i)
    {
        expected[i] = qstdlib::StationHeightByZenith(r.station.position.northing, r.station.position.easting,
                                                     &observations[i].target, zeniths[i], 1.5);
    }
    EXPECT_EQ((expected[0] + expected[1] + expected[2]) / 3, r.station.position.height);
    EXPECT_EQ(std::max({expected[0], expected[1], expected[2]}) - std::min({expected[0], expected[1], expected[2]}),
              r.station.heightSpread);
    EXPECT_GT(r.station.heightSpread, 1.0);
    EXPECT_EQ(3, r.station.position.flags);
    for (size_t i = 0; i < 4; ++i)
    {
        EXPECT_TRUE(SameBits(0.0, r.residuals[i].heightResidual));
        EXPECT_TRUE(SameBits(0.0, r.residuals[i].distanceResidual));
    }
    // 50 + 1.5 - D / tan 80, with D to the first target from the place itself.
    EXPECT_NEAR(51.5 - std::hypot(100.0, 10.0) / std::tan(80.0 * support::PI / 180.0), expected[0], 1e-3);
}

TEST(MultiPointResection, DoesNotTestThePlanFlag)
{
    Observations observations = Directions();
    for (ResectObservation& observation : observations)
    {
        observation.target.flags = 0;
    }
    ExpectPlace(Resect(observations));
}

// The adjusted orientation counts from north whatever the instrument's azimuths do.
TEST(MultiPointResection, AsksForNoAzimuthReference)
{
    FakeInstrument instrument;
    instrument.azimuthReference = 1;
    const Resection r = Resect(Directions());
    EXPECT_NEAR(0, TurnFrom(ORIENTATION, r.station.orientation), 4);
    EXPECT_THAT(instrument.reads, IsEmpty());
}

// In face two the full circle less the reading: 360 - 260 = 100 degrees. Below zero is face two as well.
TEST(WorkRecord, HoldsTheZenithAngleInFaceOne)
{
    ResectObservation observation = {};
    qstdlib::ResectWorkRecord record = {};
    for (const double degrees : {83.0, 179.5, 0.0})
    {
        observation.zenithAngle = DegreesToUnits(degrees);
        qstdlib::FillWorkRecord(observation, record);
        EXPECT_NEAR(degrees, record.zenith * 180.0 / 3.141592653589793, 1e-12);
    }
    const double faceTwo[][2] = {{260.0, 100.0}, {277.5, 82.5}, {180.0, 180.0}, {-10.0, 370.0}};
    for (const auto& [reading, zenith] : faceTwo)
    {
        observation.zenithAngle = DegreesToUnits(reading);
        qstdlib::FillWorkRecord(observation, record);
        EXPECT_NEAR(zenith, record.zenith * 180.0 / 3.141592653589793, 1e-12);
    }
}

// The most sights that a count can give, all around the origin. Their errors go round with them and cancel; a station
// from n sights of 2 mm is good to sqrt(2 / n) of that.
TEST(MultiPointResection, FindsTheStationFromTheMostSights)
{
    const int16_t count = std::numeric_limits<int16_t>::max();
    const Resection r = Resect(count, DistancesAllAround(count));
    ASSERT_EQ(QSTD_OK, r.status);
    EXPECT_NEAR(0.0, r.station.position.northing, 1e-4);
    EXPECT_NEAR(0.0, r.station.position.easting, 1e-4);
    EXPECT_NEAR(0, TurnFrom(0, r.station.orientation), 3);
    EXPECT_LT(r.station.northingPrecision, 5e-5);
    EXPECT_EQ(10.0, r.station.position.height);
}

TEST(MultiPointResection, RejectsACountBelowOne)
{
    for (const int16_t count : {int16_t(0), int16_t(-1), std::numeric_limits<int16_t>::min()})
    {
        const AllocationWatch watch;
        const Resection r = Resect(count, Directions());
        EXPECT_EQ(QSTD_REJECTED, r.status);
        ExpectNothingWritten(r);
        EXPECT_THAT(watch.Outstanding(), IsEmpty());
        for (const size_t size : watch.Sizes())
        {
            EXPECT_LT(size, 1000U) << "no size comes from a negative count";
        }
    }
}

TEST(MultiPointResection, RejectsDataWithoutAFirstApproximation)
{
    Observations two = Directions();
    two.resize(2);
    Observations sameDirection = Directions();
    for (ResectObservation& observation : sameDirection)
    {
        observation.horizontalAngle = 7;
    }
    Observations samePlace = Distances();
    samePlace.resize(2);
    samePlace[1].target = samePlace[0].target;
    for (const Observations& observations : {two, sameDirection, samePlace})
    {
        const AllocationWatch watch;
        const Resection r = Resect(observations);
        EXPECT_EQ(QSTD_REJECTED, r.status);
        ExpectNothingWritten(r);
        EXPECT_THAT(watch.Outstanding(), IsEmpty());
    }
}

// A coordinate that is no number makes a row of the normal matrix that is none: singular. The scales of the
// decomposition, three elements and a spare one, stay allocated.
TEST(MultiPointResection, RejectsASingularNormalMatrix)
{
    Observations observations = Directions();
    observations[0].target.northing = std::nan("");
    const AllocationWatch watch;
    const Resection r = Resect(observations);
    EXPECT_EQ(QSTD_REJECTED, r.status);
    ExpectNothingWritten(r);
    EXPECT_THAT(watch.Outstanding(), ElementsAre(4 * sizeof(double)));
}

// Whole degrees and metres that contradict each other so that the square sum goes up and down by its own size from one
// iteration to the next.
TEST(MultiPointResection, ReportsAnAdjustmentThatDoesNotConverge)
{
    const double sights[][4] = {{60, 100, 27, 80}, {50, -100, 81, 120}, {90, -70, 72, 20}, {-40, -30, 343, 140}};
    Observations observations;
    for (const auto& s : sights)
    {
        ResectObservation observation = {};
        observation.target = FullPoint(s[0], s[1], 5.0);
        observation.horizontalAngle = DegreesToUnits(s[2]);
        observation.zenithAngle = ANGLE_QUARTER_CIRCLE;
        observation.slopeDistance = s[3];
        observation.horizontalDistance = s[3];
        observations.push_back(observation);
    }
    const AllocationWatch watch;
    const Resection r = Resect(observations);
    EXPECT_EQ(QSTD_DEGENERATE, r.status);
    ExpectNothingWritten(r);
    EXPECT_THAT(watch.Outstanding(), IsEmpty());
}
