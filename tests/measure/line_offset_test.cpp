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
using support::FakeInstrument;
using support::FullPoint;
using support::IntRead;
using support::Operation;
using support::Patterned;
using support::PlanPoint;
using support::Read;
using support::Untouched;
using support::WithFlags;

namespace {

constexpr AngleUnit QUARTER = 5184000;
constexpr double UNDEFINED = 134217728.0;

struct Outcome
{
    int32_t status;
    SightRecord observation;
    PointRecord target;
};

// An edge that rises 5 over 10 to the north, seen from its right.
const PointRecord FIRST = FullPoint(0.0, 0.0, 0.0);
const PointRecord SECOND = FullPoint(10.0, 0.0, 5.0);
const PointRecord STATION = FullPoint(5.0, 10.0, 0.0);

// On top of the arithmetic: cosines of directions along an axis are not quite 0.
constexpr double NEAR = 1e-12;

struct Sight
{
    AngleUnit azimuth;
    AngleUnit zenith = QUARTER;
};

Outcome Offset(const PointRecord& p1, const PointRecord& p2, const Sight& sight, const PointRecord& station = STATION,
               double instrumentHeight = 1.5, double passthrough = 0.0)
{
    Outcome outcome = {0, Patterned<SightRecord>(), Patterned<PointRecord>()};
    outcome.status = QCalcOfsLineHA(&p1, &p2, sight.azimuth, sight.zenith, &station, instrumentHeight,
                                    &outcome.observation, &outcome.target, passthrough);
    return outcome;
}

const Sight WEST = {DegreesToUnits(270.0)};
const Sight NORTH_WEST = {DegreesToUnits(315.0)};
const Sight SOUTH_WEST = {DegreesToUnits(225.0)};

// The point that the instrument is asked for.
PointRecord Asked(FakeInstrument& instrument, const PointRecord& p1, const PointRecord& p2, const Sight& sight,
                  const PointRecord& station = STATION)
{
    instrument.observedTargets.clear();
    EXPECT_EQ(instrument.observationStatus, Offset(p1, p2, sight, station).status);
    EXPECT_EQ(1U, instrument.observedTargets.size());
    const support::ObservedTarget target = instrument.observedTargets.back();
    return FullPoint(target.northing, target.easting, target.height);
}

void ExpectFailure(int32_t status, const Outcome& outcome)
{
    EXPECT_EQ(status, outcome.status);
    EXPECT_TRUE(Untouched(outcome.observation));
    EXPECT_TRUE(Untouched(outcome.target));
}

// Whether the stored two-point plane is the wall along easting 100, as a level sight to the east shows.
void DefineWallAtEasting100()
{
    const PointRecord first = FullPoint(0.0, 100.0, 0.0);
    const PointRecord second = FullPoint(1.0, 100.0, 0.0);
    ASSERT_EQ(0, QREFSet2PtBasePlane(&first, &second));
}

double EastingOnStoredPlane()
{
    PointRecord point;
    double along = 0.0;
    double above = 0.0;
    const PointRecord station = FullPoint(5.0, 10.0, 0.0);
    EXPECT_EQ(0, QREFCalc2PtPlane(DegreesToUnits(80.0), QUARTER, &station, 0.0, &point, &along, &above));
    return point.easting;
}

} // namespace

TEST(LineOffset, FindsThePointOfTheEdgeUnderTheSight)
{
    FakeInstrument instrument;
    ExpectNear(FullPoint(5.0, 0.0, 2.5), Asked(instrument, FIRST, SECOND, WEST), NEAR);
    // Beyond the second point, and before the first.
    ExpectNear(FullPoint(15.0, 0.0, 7.5), Asked(instrument, FIRST, SECOND, NORTH_WEST), NEAR);
    ExpectNear(FullPoint(-5.0, 0.0, -2.5), Asked(instrument, FIRST, SECOND, SOUTH_WEST), NEAR);
}

TEST(LineOffset, FollowsTheHorizontalAngleAlone)
{
    FakeInstrument instrument;
    for (const double zenith : {30.0, 89.0, 150.0})
    {
        ExpectNear(FullPoint(5.0, 0.0, 2.5), Asked(instrument, FIRST, SECOND, {WEST.azimuth, DegreesToUnits(zenith)}),
                   NEAR);
    }
}

TEST(LineOffset, TakesASightInFaceTwo)
{
    FakeInstrument instrument;
    ExpectNear(FullPoint(15.0, 0.0, 7.5),
               Asked(instrument, FIRST, SECOND, {DegreesToUnits(135.0), DegreesToUnits(290.0)}), NEAR);
}

TEST(LineOffset, FollowsTheAzimuthReference)
{
    FakeInstrument instrument;
    for (const int32_t reference : support::AZIMUTH_REFERENCES)
    {
        instrument.azimuthReference = reference;
        instrument.reads.clear();
        const Sight sight = {DegreesToUnits(reference == 1 ? 135.0 : 315.0)};
        ExpectNear(FullPoint(15.0, 0.0, 7.5), Asked(instrument, FIRST, SECOND, sight), NEAR);
        EXPECT_THAT(instrument.reads, testing::ElementsAre(IntRead(49411), Read{Operation::OBSERVATION, 0},
                                                           Read{Operation::FACE_TWO, 0}));
    }
}

// Edges in all directions, from the station (0, 0): p is the point given, before or beyond the second one.
TEST(LineOffset, TellsBeforeFromBeyondInAllDirections)
{
    FakeInstrument instrument;
    const PointRecord station = FullPoint(0.0, 0.0, 0.0);
    for (const double dN : {-3.0, 0.0, 3.0})
    {
        for (const double dE : {-4.0, 0.0, 4.0})
        {
            const double length = std::hypot(dN, dE);
            for (const double t : {-2.0, 0.5, 3.0})
            {
                if (length == 0.0)
                {
                    continue;
                }
                // The edge starts 50 to its left of the station.
                const double startN = 50.0 * dE / length;
                const double startE = -50.0 * dN / length;
                const PointRecord first = FullPoint(startN, startE, 7.0);
                const PointRecord second = FullPoint(startN + dN, startE + dE, 8.0);
                const PointRecord expected = FullPoint(startN + t * dN, startE + t * dE, 7.0 + t);
                const double azimuth = std::atan2(expected.easting, expected.northing);
                const auto units = static_cast<AngleUnit>(std::lround(support::RadiansToUnits(azimuth)));
                // Half a unit over some 50 is 8e-6; the height runs a fifth or a third of that.
                ExpectNear(expected, Asked(instrument, first, second, {units}, station), 1e-5);
            }
        }
    }
}

TEST(LineOffset, TakesTheHeightFieldOfAFirstPointWithoutHeight)
{
    FakeInstrument instrument;
    ExpectNear(FullPoint(5.0, 0.0, 2.5), Asked(instrument, WithFlags(FIRST, 1), SECOND, WEST), NEAR);
    ExpectNear(FullPoint(5.0, 0.0, 6.0), Asked(instrument, PlanPoint(0.0, 0.0, 7.0), SECOND, WEST), NEAR);
}

TEST(LineOffset, ReturnsWhatTheInstrumentAnswers)
{
    FakeInstrument instrument;
    instrument.observation = {DegreesToUnits(30.0), DegreesToUnits(80.0), 12.5, 0.0, 0.0, 1.5, 2.5, 3.5};
    for (const int32_t status : {0, -1, 7})
    {
        instrument.observationStatus = status;
        const Outcome outcome = Offset(FIRST, SECOND, WEST, STATION, 1.5, 1.75);
        EXPECT_EQ(status, outcome.status);
        ExpectSameFields(SightRecord{DegreesToUnits(30.0), DegreesToUnits(80.0), 12.5}, outcome.observation);
        ExpectSameFields(FullPoint(1.5, 2.5, 3.5), outcome.target);
        EXPECT_EQ(1.75, instrument.observedTargets.back().passthrough);
    }
    instrument.faceTwo = 1;
    ExpectSameFields(SightRecord{DegreesToUnits(210.0), DegreesToUnits(280.0), 12.5},
                     Offset(FIRST, SECOND, WEST).observation);
}

TEST(LineOffset, IsLostWithoutAnInstrument)
{
    const Outcome outcome = Offset(FIRST, SECOND, WEST);
    EXPECT_EQ(-1, outcome.status);
    ExpectSameFields(SightRecord{0, 0, 0.0}, outcome.observation);
    ExpectSameFields(FullPoint(0.0, 0.0, 0.0), outcome.target);
}

TEST(LineOffset, GoesOnWithTheUndefinedPointOfASightThatMisses)
{
    // The plan distance h from (10, 0) to (2^27, 2^27), beyond: 10 + h to the north, half of h higher.
    FakeInstrument instrument;
    const double h = std::hypot(UNDEFINED - 10.0, UNDEFINED);
    const AngleUnit half = 2 * QUARTER;
    for (const Sight& sight : {Sight{0, QUARTER}, Sight{half, QUARTER}, Sight{WEST.azimuth, 0}, Sight{0, half}})
    {
        ExpectNear(FullPoint(10.0 + h, 0.0, 5.0 + h / 2.0), Asked(instrument, FIRST, SECOND, sight), 1e-6);
    }
    // The same from a first point without height.
    ExpectNear(FullPoint(10.0 + h, 0.0, 5.0 + h / 2.0), Asked(instrument, WithFlags(FIRST, 1), SECOND, {0}), 1e-6);
    // Southwards the same point lies before the second one.
    const double hFromOrigin = std::hypot(UNDEFINED, UNDEFINED);
    ExpectNear(FullPoint(hFromOrigin, 0.0, hFromOrigin / 2.0), Asked(instrument, SECOND, FIRST, {0}), 1e-6);
}

TEST(LineOffset, LeavesTheOutputsWithoutCoordinates)
{
    FakeInstrument instrument;
    for (const int flags : support::WITHOUT_PLAN)
    {
        ExpectFailure(-1201, Offset(WithFlags(FIRST, flags), SECOND, WEST));
        ExpectFailure(-1201, Offset(FIRST, WithFlags(SECOND, flags), WEST));
        ExpectFailure(-1201, Offset(WithFlags(FIRST, flags), FIRST, WEST));
    }
    for (const int flags : {1, 0xFFFD})
    {
        ExpectFailure(-1201, Offset(FIRST, WithFlags(SECOND, flags), WEST));
        // Equal coordinates come before the height.
        ExpectFailure(-1200, Offset(FIRST, WithFlags(FIRST, flags), WEST));
    }
    ExpectFailure(-1200, Offset(FIRST, FullPoint(0.0, 0.0, 5.0), WEST));
    EXPECT_THAT(instrument.reads, testing::IsEmpty());
}

TEST(LineOffset, FailsForAnEdgeWithoutExtentInPlan)
{
    // Distinct, but the squares of the direction cosines vanish.
    FakeInstrument instrument;
    ExpectFailure(-1205, Offset(FIRST, FullPoint(1e-200, 0.0, 5.0), WEST));
    ExpectFailure(-1205, Offset(FIRST, FullPoint(0.0, 1e-200, 5.0), WEST));
    EXPECT_THAT(instrument.reads, testing::IsEmpty());
}

TEST(LineOffset, FailsForAStationOnThePlane)
{
    FakeInstrument instrument;
    ExpectFailure(-1205, Offset(FIRST, SECOND, WEST, FullPoint(3.0, 0.0, 0.0)));
    ExpectFailure(-1205, Offset(WithFlags(FIRST, 1), SECOND, WEST, FullPoint(3.0, 0.0, 0.0)));
    EXPECT_THAT(instrument.reads, testing::IsEmpty());
}

TEST(LineOffset, RedefinesTheTwoPointPlane)
{
    DefineWallAtEasting100();
    EXPECT_NEAR(100.0, EastingOnStoredPlane(), 1e-9);
    Offset(FIRST, SECOND, WEST);
    EXPECT_NEAR(0.0, EastingOnStoredPlane(), 1e-9);
    // Even where it fails afterwards.
    DefineWallAtEasting100();
    Offset(FIRST, SECOND, WEST, FullPoint(3.0, 0.0, 0.0));
    EXPECT_NEAR(0.0, EastingOnStoredPlane(), 1e-9);
}

TEST(LineOffset, LeavesTheTwoPointPlaneWhereItsInputIsRejected)
{
    DefineWallAtEasting100();
    Offset(WithFlags(FIRST, 0), SECOND, WEST);
    Offset(FIRST, WithFlags(SECOND, 1), WEST);
    Offset(FIRST, FIRST, WEST);
    Offset(FIRST, FullPoint(1e-200, 0.0, 5.0), WEST);
    EXPECT_NEAR(100.0, EastingOnStoredPlane(), 1e-9);
}
