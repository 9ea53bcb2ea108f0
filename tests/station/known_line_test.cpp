#include <cmath>
#include <cstdint>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "qstdlib.h"
#include "tests/station/allocation_watch.h"
#include "tests/station/observations.h"
#include "tests/support/fake_instrument.h"

using support::FakeInstrument;
using support::FullPoint;
using support::Patterned;
using support::PlanPoint;
using support::SameBits;
using support::TurnFrom;
using support::Untouched;

namespace {

constexpr double PI = 3.141592653589793;
constexpr AngleUnit FACE_TWO_SHIFT = 2615296; // 2^32 remainder 20,736,000

// Station (1000, 2000), circle zero due north; start 128 m north of it, second point 96 m east of it: a line of 160 m
// from (1128, 2000) to (1000, 2096), azimuth 180 degrees less atan(96 / 128).
struct Line
{
    ResectObservation start = Sighted(PlanPoint(1128.0, 2000.0), 0, 128.0, 2.0);
    ResectObservation second = Sighted(PlanPoint(1000.0, 2096.0), ANGLE_QUARTER_CIRCLE, 96.0, 5.0);

    static ResectObservation Sighted(const PointRecord& target, AngleUnit reading, double distance, double rise)
    {
        ResectObservation observation = {};
        observation.target = target;
        observation.horizontalAngle = reading;
        observation.zenithAngle = ANGLE_QUARTER_CIRCLE;
        observation.slopeDistance = std::hypot(distance, rise);
        observation.horizontalDistance = distance;
        observation.verticalDifference = rise;
        observation.reflectorHeight = 1.5;
        return observation;
    }
};

const AngleUnit LINE_AZIMUTH = static_cast<AngleUnit>(std::lround(support::RadiansToUnits(std::atan2(96.0, -128.0))));

// Station and three residuals, the last of which belongs to nobody.
struct KnownLine
{
    int32_t status = 0;
    ResectStation station = Patterned<ResectStation>();
    ResectResidual residuals[3] = {Patterned<ResectResidual>(), Patterned<ResectResidual>(),
                                   Patterned<ResectResidual>()};
};

KnownLine Establish(const Line& line, AngleUnit azimuth)
{
    KnownLine k;
    k.status = QSTNKnownLine(&line.start, &line.second, azimuth, &k.station, k.residuals);
    EXPECT_TRUE(Untouched(k.residuals[2]));
    return k;
}

void ExpectRejected(int32_t status, const Line& line, AngleUnit azimuth)
{
    const KnownLine k = Establish(line, azimuth);
    EXPECT_EQ(status, k.status);
    EXPECT_TRUE(Untouched(k.station));
    EXPECT_TRUE(Untouched(k.residuals[0]));
    EXPECT_TRUE(Untouched(k.residuals[1]));
}

// Local place of an observation without any reduction of its reading.
struct Place
{
    double northing, easting;
};

Place Local(const ResectObservation& observation, AngleUnit reading)
{
    const double direction = static_cast<double>(reading) * PI * 9.645061728395061e-8;
    return {observation.horizontalDistance * std::cos(direction), observation.horizontalDistance * std::sin(direction)};
}

double LengthBetween(const Place& a, const Place& b)
{
    return std::sqrt(std::pow(b.easting - a.easting, 2.0) + std::pow(b.northing - a.northing, 2.0));
}

// Circles up as far as the integer goes: where a normalised reading lies. The adjustment wraps by one circle only, so
// that a reading in face one has to be read there to go with one in face two.
AngleUnit Raised(AngleUnit reading)
{
    int64_t raised = reading;
    while (raised < 2126747648)
    {
        raised += ANGLE_FULL_CIRCLE;
    }
    return static_cast<AngleUnit>(raised);
}

void SetFace(ResectObservation& observation, bool faceTwo)
{
    if (faceTwo)
    {
        observation.horizontalAngle += ANGLE_HALF_CIRCLE;
        observation.zenithAngle = ANGLE_HALF_CIRCLE + ANGLE_QUARTER_CIRCLE;
    }
    else
    {
        observation.horizontalAngle = Raised(observation.horizontalAngle);
    }
}

// The multi-point resection over the start and a second target put on the line.
KnownLine Placed(const Line& line, double length, AngleUnit azimuth)
{
    const double direction = static_cast<double>(azimuth) * PI * 9.645061728395061e-8;
    ResectObservation observations[2] = {line.start, line.second};
    observations[1].target.northing = line.start.target.northing + length * std::cos(direction);
    observations[1].target.easting = line.start.target.easting + length * std::sin(direction);
    KnownLine k;
    k.status = QSTNMultiResect(2, observations, &k.station, k.residuals);
    return k;
}

} // namespace

TEST(KnownLine, SetsUpTheStationByAGivenAzimuth)
{
    const KnownLine k = Establish(Line(), LINE_AZIMUTH);
    ASSERT_EQ(QSTD_OK, k.status);
    // Half a unit of the azimuth is 1.5e-7 rad, over 160 m 0.02 mm.
    EXPECT_NEAR(1000.0, k.station.position.northing, 3e-5);
    EXPECT_NEAR(2000.0, k.station.position.easting, 3e-5);
    EXPECT_NEAR(0, TurnFrom(0, k.station.orientation), 1);
}

TEST(KnownLine, SetsUpTheStationByTheCoordinates)
{
    const KnownLine k = Establish(Line(), AZIMUTH_NOT_GIVEN);
    ASSERT_EQ(QSTD_OK, k.status);
    EXPECT_NEAR(1000.0, k.station.position.northing, 3e-5);
    EXPECT_NEAR(2000.0, k.station.position.easting, 3e-5);
    EXPECT_NEAR(0, TurnFrom(0, k.station.orientation), 1);
}

// Given an azimuth, the second target's coordinates are those on the line; its height and flags remain its own.
TEST(KnownLine, NeverReadsTheSecondTargetsCoordinatesWhenTheAzimuthIsGiven)
{
    Line line;
    const KnownLine expected = Establish(line, LINE_AZIMUTH);
    line.second.target.northing = std::nan("");
    line.second.target.easting = std::nan("");
    line.second.target.flags = 0;
    line.start.target.flags = 0;
    const KnownLine k = Establish(line, LINE_AZIMUTH);
    ASSERT_EQ(QSTD_OK, k.status);
    support::ExpectSameFields(expected.station, k.station);
}

// Everything but the height is what the multi-point resection makes of start and placed target, to the last bit: 48 m
// instead of 96 put the second target elsewhere, and readings off the quarter circle leave residuals.
TEST(KnownLine, LeavesTheAdjustmentAsItIsWhenTheAzimuthIsGiven)
{
    Line line;
    line.start.target = FullPoint(1128.0, 2000.0, 40.0);
    line.second.target = FullPoint(1000.0, 2096.0, 45.0);
    line.second.horizontalAngle += 31234;
    line.second.horizontalDistance = 48.0;
    const double length =
        LengthBetween(Local(line.start, line.start.horizontalAngle), Local(line.second, line.second.horizontalAngle));
    KnownLine expected = Placed(line, length, LINE_AZIMUTH);
    ASSERT_EQ(QSTD_OK, expected.status);
    EXPECT_GT(expected.station.heightSpread, 1.0);
    expected.station.position.height = 40.0 - 2.0 + 1.5;
    const KnownLine k = Establish(line, LINE_AZIMUTH);
    ASSERT_EQ(QSTD_OK, k.status);
    support::ExpectSameFields(expected.station, k.station);
    support::ExpectSameFields(expected.residuals[0], k.residuals[0]);
    support::ExpectSameFields(expected.residuals[1], k.residuals[1]);
}

// Measured less known: the length by sqrt(128^2 + 96.5^2) - 160, the rise by (5 - 2) - (45 - 40.5) = -1.5.
TEST(KnownLine, ReportsLengthAndRiseOfTheLineWhenTheCoordinatesGiveTheAzimuth)
{
    Line line;
    line.start.target = FullPoint(1128.0, 2000.0, 40.5);
    line.second.target = FullPoint(1000.0, 2096.0, 45.0);
    line.second.horizontalDistance = 96.5;
    const KnownLine adjusted = Establish(line, LINE_AZIMUTH);
    const KnownLine k = Establish(line, AZIMUTH_NOT_GIVEN);
    ASSERT_EQ(QSTD_OK, k.status);
    EXPECT_NEAR(std::hypot(128.0, 96.5) - 160.0, k.residuals[0].distanceResidual, 1e-12);
    EXPECT_EQ(-1.5, k.station.heightSpread);
    // Coordinates and azimuth agree, so that all the rest is the same.
    EXPECT_TRUE(SameBits(adjusted.station.position.northing, k.station.position.northing));
    EXPECT_TRUE(SameBits(adjusted.station.northingPrecision, k.station.northingPrecision));
    EXPECT_TRUE(SameBits(adjusted.residuals[0].heightResidual, k.residuals[0].heightResidual));
    EXPECT_EQ(adjusted.residuals[0].angleResidual, k.residuals[0].angleResidual);
    support::ExpectSameFields(adjusted.residuals[1], k.residuals[1]);
}

// Without both heights the known rise counts as 0; the measured one always counts.
TEST(KnownLine, TakesTheKnownRiseForZeroWithoutBothHeights)
{
    for (const bool startHasHeight : {true, false})
    {
        Line line;
        (startHasHeight ? line.start : line.second).target.flags = 3;
        line.start.target.height = 40.5;
        line.second.target.height = 45.0;
        const KnownLine k = Establish(line, AZIMUTH_NOT_GIVEN);
        ASSERT_EQ(QSTD_OK, k.status);
        EXPECT_EQ(3.0, k.station.heightSpread);
    }
}

// (40 - 2) + 1.5; (1 + 2^53) rounds to 2^53, less 2^53 is 0, with the reflector's height first it would be 1.
TEST(KnownLine, TakesTheHeightFromTheStartPoint)
{
    Line line;
    line.start.target = FullPoint(1128.0, 2000.0, 40.0);
    line.second.target = FullPoint(1000.0, 2096.0, 90.0);
    for (const AngleUnit azimuth : {LINE_AZIMUTH, AZIMUTH_NOT_GIVEN})
    {
        const KnownLine k = Establish(line, azimuth);
        ASSERT_EQ(QSTD_OK, k.status);
        EXPECT_EQ(39.5, k.station.position.height);
        EXPECT_EQ(3, k.station.position.flags);
    }
    line.start.target.height = 1.0;
    line.start.verticalDifference = -9007199254740992.0;
    line.start.reflectorHeight = -9007199254740992.0;
    EXPECT_EQ(0.0, Establish(line, LINE_AZIMUTH).station.position.height);
}

// 1e-37, neither 0 nor the marker of a missing value. The flags stay those of the adjustment: 3 when the second target
// gave it a height, though that height is gone.
TEST(KnownLine, MarksAMissingStartHeight)
{
    Line line;
    for (const uint16_t flags : {uint16_t(1), uint16_t(3)})
    {
        line.second.target.flags = flags;
        for (const AngleUnit azimuth : {LINE_AZIMUTH, AZIMUTH_NOT_GIVEN})
        {
            const KnownLine k = Establish(line, azimuth);
            ASSERT_EQ(QSTD_OK, k.status);
            EXPECT_EQ(0x3841039D428A8B8FU, support::BitsOf(k.station.position.height));
            EXPECT_EQ(flags, k.station.position.flags);
        }
    }
}

TEST(KnownLine, RejectsObservedPointsThatCoincide)
{
    Line line;
    line.second.horizontalAngle = line.start.horizontalAngle;
    line.second.horizontalDistance = 128.0;
    ExpectRejected(QSTD_COINCIDENT_POINTS, line, LINE_AZIMUTH);
    ExpectRejected(QSTD_COINCIDENT_POINTS, line, AZIMUTH_NOT_GIVEN);
}

TEST(KnownLine, RejectsKnownPointsThatCoincideWhenNoAzimuthIsGiven)
{
    Line line;
    line.second.target = FullPoint(1128.0, 2000.0, 70.0);
    ExpectRejected(QSTD_COINCIDENT_POINTS, line, AZIMUTH_NOT_GIVEN);
    EXPECT_EQ(QSTD_OK, Establish(line, LINE_AZIMUTH).status);
}

TEST(KnownLine, RejectsKnownPointsWithoutCoordinatesWhenNoAzimuthIsGiven)
{
    for (const bool startLacks : {true, false})
    {
        Line line;
        (startLacks ? line.start : line.second).target.flags = POINT_HAS_HEIGHT;
        ExpectRejected(QSTD_MISSING_COORDINATES, line, AZIMUTH_NOT_GIVEN);
    }
}

// The observed points are looked at before the known ones.
TEST(KnownLine, ReportsTheObservedPointsFirst)
{
    Line line;
    line.second.horizontalAngle = line.start.horizontalAngle;
    line.second.horizontalDistance = 128.0;
    line.second.target.flags = 0;
    ExpectRejected(QSTD_COINCIDENT_POINTS, line, AZIMUTH_NOT_GIVEN);
}

// Without slope distances there is nothing to adjust; nothing is written.
TEST(KnownLine, ReportsAFailedAdjustment)
{
    Line line;
    line.start.slopeDistance = 0.0;
    ExpectRejected(QSTD_REJECTED, line, LINE_AZIMUTH);
    ExpectRejected(QSTD_REJECTED, line, AZIMUTH_NOT_GIVEN);
    const AllocationWatch watch(1);
    ExpectRejected(QSTD_NO_MEMORY, Line(), AZIMUTH_NOT_GIVEN);
}

// The start reading is used as it was read, in whatever face; the second one less a half circle, normalised, which
// leaves it 2,615,296 units off. The measured length is that between the two places. The adjustment reduces both, so
// that with a start in face two the angle between the sights is another one; chosen here are readings for which it has
// the other sign and nearly the same size, 200,000 units (3.5 degrees) apart, so that the adjustment still converges.
TEST(KnownLine, ReducesTheSecondReadingOnly)
{
    struct Case
    {
        bool startInFaceTwo, secondInFaceTwo;
        AngleUnit reading; // of the second sight, in face one
        AngleUnit angle;   // between the two places
    };
    constexpr AngleUnit MIRRORED = (ANGLE_HALF_CIRCLE - FACE_TWO_SHIFT) / 2;
    const Case cases[] = {
        {false, false, 4000000, 4000000},
        {true, true, MIRRORED + 100000, -MIRRORED + 100000},
        {false, true, 4000000, 4000000 + FACE_TWO_SHIFT},
        {true, false, FACE_TWO_SHIFT + MIRRORED + 100000, -MIRRORED + 100000},
    };
    for (const Case& c : cases)
    {
        Line line;
        line.second.horizontalAngle = c.reading;
        SetFace(line.start, c.startInFaceTwo);
        SetFace(line.second, c.secondInFaceTwo);
        // Cosine rule for the length between the two places.
        const double length =
            std::sqrt(128.0 * 128.0 + 96.0 * 96.0 - 2.0 * 128.0 * 96.0 * std::cos(support::UnitsToRadians(c.angle)));
        const KnownLine k = Establish(line, AZIMUTH_NOT_GIVEN);
        ASSERT_EQ(QSTD_OK, k.status) << c.startInFaceTwo << c.secondInFaceTwo;
        EXPECT_NEAR(length - 160.0, k.residuals[0].distanceResidual, 1e-9) << c.startInFaceTwo << c.secondInFaceTwo;
    }
}

// Face two begins at a half circle and below 0. A raised reading less a half circle exceeds a circle, so that the
// normalisation leaves it: the angle between the two places is the one between the readings, or a half circle less.
TEST(KnownLine, TellsTheFaceOfTheSecondReadingByItsZenith)
{
    const auto lengthCheck = [](AngleUnit zenith) {
        Line line;
        line.start.horizontalAngle = Raised(0);
        line.second.horizontalAngle = Raised(4000000);
        line.second.zenithAngle = zenith;
        const KnownLine k = Establish(line, AZIMUTH_NOT_GIVEN);
        EXPECT_EQ(QSTD_OK, k.status) << zenith;
        return k.residuals[0].distanceResidual + 160.0;
    };
    const double product = 2.0 * 128.0 * 96.0 * std::cos(support::UnitsToRadians(4000000));
    for (const AngleUnit faceOne : {0, 10367999})
    {
        EXPECT_NEAR(std::sqrt(128.0 * 128.0 + 96.0 * 96.0 - product), lengthCheck(faceOne), 1e-9) << faceOne;
    }
    for (const AngleUnit faceTwo : std::initializer_list<AngleUnit>{10368000, 20736000, INT32_MAX, -1, INT32_MIN})
    {
        EXPECT_NEAR(std::sqrt(128.0 * 128.0 + 96.0 * 96.0 + product), lengthCheck(faceTwo), 1e-9) << faceTwo;
    }
}

// In the instrument's reference, here south: a given azimuth is turned before it is used, one from coordinates was
// turned when it was formed and is turned back.
TEST(KnownLine, AppliesTheAzimuthReference)
{
    const KnownLine north = Establish(Line(), LINE_AZIMUTH);
    FakeInstrument instrument;
    instrument.azimuthReference = 1;
    const KnownLine given = Establish(Line(), LINE_AZIMUTH + ANGLE_HALF_CIRCLE);
    ASSERT_EQ(QSTD_OK, given.status);
    support::ExpectSameFields(north.station, given.station);
    const KnownLine fromCoordinates = Establish(Line(), AZIMUTH_NOT_GIVEN);
    EXPECT_NEAR(1000.0, fromCoordinates.station.position.northing, 3e-5);
    EXPECT_NEAR(0, TurnFrom(0, fromCoordinates.station.orientation), 1);
    const KnownLine turned = Establish(Line(), LINE_AZIMUTH);
    EXPECT_NEAR(1256.0, turned.station.position.northing, 3e-5) << "the line led the other way";
}

// Once for each azimuth formed between two points, once for the line's own: the observed points, (the known ones,) the
// line, (the known ones again).
TEST(KnownLine, ReadsTheAzimuthReferenceForEveryAzimuth)
{
    const FakeInstrument instrument;
    Establish(Line(), LINE_AZIMUTH);
    EXPECT_EQ(std::vector<support::Read>(2, support::IntRead(SETTING_AZIMUTH_REFERENCE)), instrument.reads);
    Establish(Line(), AZIMUTH_NOT_GIVEN);
    EXPECT_EQ(std::vector<support::Read>(6, support::IntRead(SETTING_AZIMUTH_REFERENCE)), instrument.reads);
}
