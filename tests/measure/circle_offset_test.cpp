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
using support::FakeInstrument;
using support::FullPoint;
using support::IntRead;
using support::Operation;
using support::Patterned;
using support::Read;
using support::SameBits;
using support::Untouched;

namespace {

constexpr AngleUnit FULL = 20736000;
constexpr AngleUnit HALF = 10368000;
constexpr AngleUnit QUARTER = 5184000;
constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
constexpr double CENTRE_HEIGHT = 42.5;

struct Sight
{
    AngleUnit azimuth;
    AngleUnit zenith = QUARTER;
};

struct Outcome
{
    int32_t status;
    SightRecord observation;
    PointRecord centre;
    double radius;
};

const PointRecord STATION = FullPoint(100.0, 200.0, 300.0);

// The centre record holds a height beforehand, all else of the outputs the pattern.
PointRecord CentreBefore()
{
    auto centre = Patterned<PointRecord>();
    centre.height = CENTRE_HEIGHT;
    return centre;
}

Outcome Offset(const Sight& face, double horizontalDistance, const Sight& edge1, const Sight& edge2,
               double passthrough = 0.0)
{
    // What the function does not read is not a number.
    const ObservationRecord faceSighting = {face.azimuth, face.zenith,  NOT_A_NUMBER, horizontalDistance,
                                            NOT_A_NUMBER, NOT_A_NUMBER, NOT_A_NUMBER, NOT_A_NUMBER};
    const PointRecord station = {STATION.northing, STATION.easting, NOT_A_NUMBER, 0};
    Outcome outcome = {0, Patterned<SightRecord>(), CentreBefore(), Patterned<double>()};
    outcome.status =
        QCalcOfsCircle(&faceSighting, passthrough, edge1.azimuth, edge1.zenith, edge2.azimuth, edge2.zenith, &station,
                       NOT_A_NUMBER, &outcome.observation, &outcome.centre, &outcome.radius);
    return outcome;
}

struct Column
{
    double northing;
    double easting;
    double radius;
};

// The column as triangles have it: its centre lies on the bisector of the edges at D, its radius is D sin(phi) with
// half the opening phi; the face at psi from the bisector is met at D cos(psi) - sqrt(r^2 - D^2 sin^2(psi)).
Column ColumnBehind(double face, double horizontalDistance, double leftEdge, double rightEdge)
{
    const double phi = support::UnitsToRadians((rightEdge - leftEdge) / 2.0);
    const double bisector = support::UnitsToRadians((rightEdge + leftEdge) / 2.0);
    const double psi = support::UnitsToRadians(face) - bisector;
    const double root = std::sqrt(std::pow(std::sin(phi), 2.0) - std::pow(std::sin(psi), 2.0));
    const double distance = horizontalDistance / (std::cos(psi) - root);
    return {STATION.northing + distance * std::cos(bisector), STATION.easting + distance * std::sin(bisector),
            distance * std::sin(phi)};
}

void ExpectColumn(const Column& expected, const Outcome& outcome, const FakeInstrument& instrument)
{
    EXPECT_EQ(0, outcome.status);
    EXPECT_NEAR(expected.radius, outcome.radius, 1e-9);
    ASSERT_FALSE(instrument.observedTargets.empty());
    EXPECT_NEAR(expected.northing, instrument.observedTargets.back().northing, 1e-9);
    EXPECT_NEAR(expected.easting, instrument.observedTargets.back().easting, 1e-9);
    EXPECT_EQ(CENTRE_HEIGHT, instrument.observedTargets.back().height);
}

void ExpectFailure(int32_t status, const Outcome& outcome)
{
    EXPECT_EQ(status, outcome.status);
    EXPECT_TRUE(Untouched(outcome.observation));
    EXPECT_TRUE(support::SameBytes(outcome.centre, CentreBefore()));
    EXPECT_TRUE(Untouched(outcome.radius));
}

// A column 12 degrees wide in the direction of 60.
constexpr AngleUnit FACE = 3456000;
constexpr AngleUnit LEFT = FACE - 345600;
constexpr AngleUnit RIGHT = FACE + 345600;

} // namespace

TEST(CircleOffset, FindsAColumnOfRadiusOne)
{
    // Centre 11 north, face 10 away: edges at asin(1 / 11). Rounded to half a unit, 1.5e-7, at a sensitivity of
    // 10 cos / (1 - sin)^2, about 12.
    FakeInstrument instrument;
    const auto edge = static_cast<AngleUnit>(std::lround(support::RadiansToUnits(std::asin(1.0 / 11.0))));
    const Outcome outcome = Offset({0}, 10.0, {-edge}, {edge});
    EXPECT_EQ(0, outcome.status);
    EXPECT_NEAR(1.0, outcome.radius, 2e-6);
    EXPECT_NEAR(111.0, instrument.observedTargets.back().northing, 2e-6);
    EXPECT_NEAR(200.0, instrument.observedTargets.back().easting, 2e-6);
}

TEST(CircleOffset, FindsAColumnFromAnySightToItsFace)
{
    FakeInstrument instrument;
    for (const AngleUnit within : {0, 1000, -1000, 200000, -200000, 340000, -340000})
    {
        ExpectColumn(ColumnBehind(FACE + within, 25.0, LEFT, RIGHT), Offset({FACE + within}, 25.0, {LEFT}, {RIGHT}),
                     instrument);
    }
}

TEST(CircleOffset, TakesTheEdgesInEitherOrder)
{
    FakeInstrument instrument;
    const Outcome expected = Offset({FACE + 1000}, 25.0, {LEFT}, {RIGHT});
    const Outcome swapped = Offset({FACE + 1000}, 25.0, {RIGHT}, {LEFT});
    EXPECT_EQ(0, swapped.status);
    EXPECT_TRUE(SameBits(expected.radius, swapped.radius));
    EXPECT_TRUE(SameBits(instrument.observedTargets[0].northing, instrument.observedTargets[1].northing));
    EXPECT_TRUE(SameBits(instrument.observedTargets[0].easting, instrument.observedTargets[1].easting));
}

TEST(CircleOffset, FindsAColumnAcrossNorth)
{
    FakeInstrument instrument;
    const Column expected = ColumnBehind(1000.0, 25.0, -400000.0, 300000.0);
    ExpectColumn(expected, Offset({1000}, 25.0, {FULL - 400000}, {300000}), instrument);
    ExpectColumn(expected, Offset({1000}, 25.0, {300000}, {FULL - 400000}), instrument);
    ExpectColumn(expected, Offset({1000}, 25.0, {-400000}, {300000}), instrument);
    ExpectColumn(expected, Offset({FULL + 1000}, 25.0, {300000 + 2 * FULL}, {-2 * FULL - 400000}), instrument);
}

TEST(CircleOffset, FindsAColumnInAllDirections)
{
    FakeInstrument instrument;
    for (AngleUnit direction = 0; direction < FULL; direction += 1500000)
    {
        ExpectColumn(ColumnBehind(direction, 8.0, direction - 1000000.0, direction + 1200000.0),
                     Offset({direction}, 8.0, {direction - 1000000}, {direction + 1200000}), instrument);
    }
}

TEST(CircleOffset, ReducesEachSightInFaceTwo)
{
    FakeInstrument instrument;
    const Column expected = ColumnBehind(FACE, 25.0, LEFT, RIGHT);
    constexpr AngleUnit FACE_TWO = 3 * QUARTER;
    ExpectColumn(expected, Offset({FACE + HALF, FACE_TWO}, 25.0, {LEFT}, {RIGHT}), instrument);
    ExpectColumn(expected, Offset({FACE}, 25.0, {LEFT - HALF, HALF + 1}, {RIGHT}), instrument);
    ExpectColumn(expected, Offset({FACE}, 25.0, {LEFT}, {RIGHT + HALF, FULL - 1}), instrument);
    ExpectColumn(expected, Offset({FACE + HALF, -QUARTER}, 25.0, {LEFT + HALF, -1}, {RIGHT + HALF, FACE_TWO}),
                 instrument);
}

TEST(CircleOffset, TakesSteepSightsInFaceOneAsTheyAre)
{
    FakeInstrument instrument;
    ExpectColumn(ColumnBehind(FACE, 25.0, LEFT, RIGHT), Offset({FACE, 1}, 25.0, {LEFT, HALF - 1}, {RIGHT, FULL + 5}),
                 instrument);
}

TEST(CircleOffset, FollowsTheAzimuthReference)
{
    FakeInstrument instrument;
    const Column expected = ColumnBehind(FACE, 25.0, LEFT, RIGHT);
    for (const int32_t reference : support::AZIMUTH_REFERENCES)
    {
        instrument.azimuthReference = reference;
        instrument.reads.clear();
        const AngleUnit turn = reference == 1 ? HALF : 0;
        ExpectColumn(expected, Offset({FACE + turn}, 25.0, {LEFT - turn}, {RIGHT + turn}), instrument);
        EXPECT_THAT(instrument.reads,
                    testing::ElementsAre(IntRead(49411), IntRead(49411), IntRead(49411),
                                         Read{Operation::OBSERVATION, 0}, Read{Operation::FACE_TWO, 0}));
    }
}

TEST(CircleOffset, SeesAWideObject)
{
    // Edges 176 degrees apart.
    FakeInstrument instrument;
    const AngleUnit halfOpening = DegreesToUnits(88.0);
    const Column expected = ColumnBehind(HALF, 2.0, HALF - halfOpening, HALF + halfOpening);
    const Outcome outcome = Offset({HALF}, 2.0, {HALF - halfOpening}, {HALF + halfOpening});
    EXPECT_EQ(0, outcome.status);
    // 2 sin(88) / (1 - sin(88)) is 3,281; the condition of 1 - sin leaves some 1e-12 of it.
    EXPECT_NEAR(expected.radius, outcome.radius, 1e-8);
    EXPECT_NEAR(2.0 * std::sin(support::UnitsToRadians(halfOpening)) /
                    (1.0 - std::sin(support::UnitsToRadians(halfOpening))),
                outcome.radius, 1e-7);
}

TEST(CircleOffset, TakesAFaceOnAnEdgeForTheTangentPoint)
{
    // The tangent is 25 long, the radius 25 tan(6 degrees).
    FakeInstrument instrument;
    const Outcome outcome = Offset({LEFT}, 25.0, {LEFT}, {RIGHT});
    EXPECT_EQ(0, outcome.status);
    EXPECT_NEAR(25.0 * std::tan(support::PI / 30.0), outcome.radius, 1e-6);
}

TEST(CircleOffset, RejectsAFaceOutsideTheEdges)
{
    FakeInstrument instrument;
    for (const AngleUnit outside : {LEFT - 1000, RIGHT + 1000, LEFT - QUARTER, RIGHT + QUARTER})
    {
        ExpectFailure(-1201, Offset({outside}, 25.0, {LEFT}, {RIGHT}));
        ExpectFailure(-1201, Offset({outside}, 25.0, {RIGHT}, {LEFT}));
    }
    EXPECT_TRUE(instrument.observedTargets.empty());
}

// The equation knows the line of sight, not its direction: opposite to the face both lengths come out negative.
TEST(CircleOffset, AcceptsAFaceOppositeTheEdges)
{
    FakeInstrument instrument;
    const double phi = support::UnitsToRadians(RIGHT - FACE);
    const Outcome outcome = Offset({FACE + HALF}, 25.0, {LEFT}, {RIGHT});
    EXPECT_EQ(0, outcome.status);
    EXPECT_NEAR(-25.0 * std::sin(phi) / (1.0 + std::sin(phi)), outcome.radius, 1e-9);
}

TEST(CircleOffset, RejectsAVerticalSight)
{
    FakeInstrument instrument;
    for (const AngleUnit zenith : std::initializer_list<AngleUnit>{0, HALF, FULL, -HALF, -FULL, FULL + HALF})
    {
        ExpectFailure(-1201, Offset({FACE, zenith}, 25.0, {LEFT}, {RIGHT}));
        ExpectFailure(-1201, Offset({FACE}, 25.0, {LEFT, zenith}, {RIGHT}));
        ExpectFailure(-1201, Offset({FACE}, 25.0, {LEFT}, {RIGHT, zenith}));
        // Before the edges are looked at.
        ExpectFailure(-1201, Offset({FACE}, 25.0, {LEFT}, {LEFT, zenith}));
    }
    EXPECT_TRUE(instrument.observedTargets.empty());
}

TEST(CircleOffset, RejectsEdgesThatCoincideOrOppose)
{
    FakeInstrument instrument;
    for (const AngleUnit between :
         std::initializer_list<AngleUnit>{0, HALF, -HALF, FULL, -FULL, 2 * FULL + HALF, -3 * FULL})
    {
        ExpectFailure(-1205, Offset({FACE}, 25.0, {LEFT}, {LEFT + between}));
        ExpectFailure(-1205, Offset({FACE}, 25.0, {LEFT + between}, {LEFT}));
        ExpectFailure(-1205, Offset({FACE}, 25.0, {LEFT + HALF, 3 * QUARTER}, {LEFT + between}));
    }
    EXPECT_TRUE(instrument.observedTargets.empty());
    // One unit is an opening.
    EXPECT_EQ(0, Offset({LEFT}, 25.0, {LEFT}, {LEFT + 1}).status);
}

TEST(CircleOffset, ReturnsWhatTheInstrumentAnswers)
{
    FakeInstrument instrument;
    instrument.observation = {DegreesToUnits(30.0), DegreesToUnits(80.0), 12.5, 0.0, 0.0, 1.5, 2.5, 3.5};
    for (const int32_t ignored : {0, -1, 7})
    {
        instrument.observationStatus = ignored;
        const Outcome outcome = Offset({FACE}, 25.0, {LEFT}, {RIGHT}, 1.75);
        EXPECT_EQ(0, outcome.status);
        ExpectSameFields(SightRecord{DegreesToUnits(30.0), DegreesToUnits(80.0), 12.5}, outcome.observation);
        ExpectSameFields(FullPoint(1.5, 2.5, 3.5), outcome.centre);
        EXPECT_EQ(1.75, instrument.observedTargets.back().passthrough);
    }
    instrument.faceTwo = 1;
    ExpectSameFields(SightRecord{DegreesToUnits(210.0), DegreesToUnits(280.0), 12.5},
                     Offset({FACE}, 25.0, {LEFT}, {RIGHT}).observation);
}

TEST(CircleOffset, LosesTheCentreButNotTheRadiusWithoutAnInstrument)
{
    const Outcome outcome = Offset({FACE}, 25.0, {LEFT}, {RIGHT});
    EXPECT_EQ(0, outcome.status);
    ExpectSameFields(SightRecord{0, 0, 0.0}, outcome.observation);
    ExpectSameFields(FullPoint(0.0, 0.0, 0.0), outcome.centre);
    EXPECT_NEAR(ColumnBehind(FACE, 25.0, LEFT, RIGHT).radius, outcome.radius, 1e-9);
}
