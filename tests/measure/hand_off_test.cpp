#include "measure/hand_off.h"

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
using support::Operation;
using support::Patterned;
using support::Read;
using support::WithFlags;

namespace {

struct Outcome
{
    int32_t status;
    PointRecord point;
    SightRecord observation;
};

Outcome HandOff(const PointRecord& point, double passthrough)
{
    Outcome outcome = {0, point, Patterned<SightRecord>()};
    outcome.status = qstdlib::HandOff(&outcome.point, passthrough, &outcome.observation);
    return outcome;
}

ObservationRecord Answer()
{
    auto answer = Patterned<ObservationRecord>();
    answer.horizontalAngle = DegreesToUnits(30.0);
    answer.zenithAngle = DegreesToUnits(80.0);
    answer.distance = 12.5;
    answer.northing = 1.5;
    answer.easting = 2.5;
    answer.height = 3.5;
    return answer;
}

} // namespace

TEST(HandOff, GivesThePointToTheInstrument)
{
    FakeInstrument instrument;
    HandOff(FullPoint(10.0, 20.0, 30.0), 1.75);
    ASSERT_EQ(1U, instrument.observedTargets.size());
    EXPECT_EQ(10.0, instrument.observedTargets[0].northing);
    EXPECT_EQ(20.0, instrument.observedTargets[0].easting);
    EXPECT_EQ(30.0, instrument.observedTargets[0].height);
    EXPECT_EQ(1.75, instrument.observedTargets[0].passthrough);
    EXPECT_THAT(instrument.reads, testing::ElementsAre(Read{Operation::OBSERVATION, 0}, Read{Operation::FACE_TWO, 0}));
}

TEST(HandOff, ReturnsWhatTheInstrumentAnswers)
{
    FakeInstrument instrument;
    instrument.observation = Answer();
    for (const int32_t status : {0, -1, 7})
    {
        instrument.observationStatus = status;
        const Outcome outcome = HandOff(WithFlags(FullPoint(10.0, 20.0, 30.0), 0xABCD), 0.0);
        EXPECT_EQ(status, outcome.status);
        ExpectSameFields(SightRecord{DegreesToUnits(30.0), DegreesToUnits(80.0), 12.5}, outcome.observation);
        ExpectSameFields(WithFlags(FullPoint(1.5, 2.5, 3.5), 0xABCD), outcome.point);
    }
}

TEST(HandOff, TurnsTheSightInFaceTwo)
{
    FakeInstrument instrument;
    instrument.observation = Answer();
    instrument.faceTwo = 1;
    ExpectSameFields(SightRecord{DegreesToUnits(210.0), DegreesToUnits(280.0), 12.5},
                     HandOff(FullPoint(0.0, 0.0, 0.0), 0.0).observation);
    instrument.observation.horizontalAngle = DegreesToUnits(200.0);
    instrument.observation.zenithAngle = DegreesToUnits(100.0);
    ExpectSameFields(SightRecord{DegreesToUnits(20.0), DegreesToUnits(260.0), 12.5},
                     HandOff(FullPoint(0.0, 0.0, 0.0), 0.0).observation);
}

TEST(HandOff, TakesAnyAnswerButOneForFaceOne)
{
    FakeInstrument instrument;
    instrument.observation = Answer();
    for (const int32_t face : {0, 2, -1, 256})
    {
        instrument.faceTwo = face;
        ExpectSameFields(SightRecord{DegreesToUnits(30.0), DegreesToUnits(80.0), 12.5},
                         HandOff(FullPoint(0.0, 0.0, 0.0), 0.0).observation);
    }
}

TEST(HandOff, LeavesZerosWithoutAnInstrument)
{
    const Outcome outcome = HandOff(FullPoint(10.0, 20.0, 30.0), 1.75);
    EXPECT_EQ(-1, outcome.status);
    ExpectSameFields(SightRecord{0, 0, 0.0}, outcome.observation);
    ExpectSameFields(FullPoint(0.0, 0.0, 0.0), outcome.point);
}

TEST(HandOff, TurnsZerosInFaceTwoToo)
{
    FakeInstrument instrument;
    instrument.faceTwo = 1;
    ExpectSameFields(SightRecord{10368000, 20736000, 0.0}, HandOff(FullPoint(1.0, 2.0, 3.0), 0.0).observation);
}
