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
using support::ExpectNear;
using support::ExpectSameFields;
using support::FakeInstrument;
using support::FullPoint;
using support::Operation;
using support::Patterned;
using support::PlanPoint;
using support::Read;
using support::UndefinedPlan;
using support::Untouched;
using support::WithFlags;

namespace {

constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();

struct Outcome
{
    int32_t status;
    SightRecord observation;
    PointRecord corner;
};

Outcome ThreePoints(const PointRecord& first, const PointRecord& second, const PointRecord& third,
                    double passthrough = 0.0)
{
    Outcome outcome = {0, Patterned<SightRecord>(), Patterned<PointRecord>()};
    outcome.status =
        QCalcOfsCorner3Pt(&first, &second, &third, NOT_A_NUMBER, &outcome.observation, &outcome.corner, passthrough);
    return outcome;
}

Outcome FourPoints(const PointRecord& p1, const PointRecord& p2, const PointRecord& p3, const PointRecord& p4,
                   double passthrough = 0.0)
{
    Outcome outcome = {0, Patterned<SightRecord>(), Patterned<PointRecord>()};
    outcome.status =
        QCalcOfsCorner4Pt(&p1, &p2, &p3, &p4, NOT_A_NUMBER, &outcome.observation, &outcome.corner, passthrough);
    return outcome;
}

// The one target that the instrument was asked for.
PointRecord Asked(const FakeInstrument& instrument)
{
    EXPECT_EQ(1U, instrument.observedTargets.size());
    const support::ObservedTarget target = instrument.observedTargets.back();
    return FullPoint(target.northing, target.easting, target.height);
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

// Points 10 apart to the north; flags are not tested.
const PointRecord FIRST = WithFlags(PlanPoint(0.0, 0.0, NOT_A_NUMBER), 0);
const PointRecord SECOND = WithFlags(PlanPoint(10.0, 0.0, NOT_A_NUMBER), 0);
const PointRecord THIRD = FullPoint(4.0, 7.0, 2.0);

// A second face along northing 5.
const PointRecord FACE_FIRST = WithFlags(PlanPoint(5.0, 5.0, NOT_A_NUMBER), 0);
const PointRecord FACE_SECOND = FullPoint(5.0, 8.0, 2.0);

// A face along northing 3 that is turned by 2^-28: too steep for the slope of the intersection of lines.
const PointRecord STEEP_FIRST = PlanPoint(3.0, 0.0);
const PointRecord STEEP_SECOND = FullPoint(3.0 + 0x1p-28, 1.0, 2.0);

} // namespace

// --- three points ---

TEST(CornerOffset3Pt, IsTheFootOfThePerpendicular)
{
    FakeInstrument instrument;
    EXPECT_EQ(0, ThreePoints(FIRST, SECOND, THIRD).status);
    ExpectSameFields(FullPoint(4.0, 0.0, 2.0), Asked(instrument));
}

TEST(CornerOffset3Pt, WorksInAnyDirection)
{
    // Face along (0.6, 0.8) from (1, 2); the third point 15 along it and 2 to its left (0.8, -0.6).
    FakeInstrument instrument;
    EXPECT_EQ(0, ThreePoints(PlanPoint(1.0, 2.0), PlanPoint(4.0, 6.0), FullPoint(11.6, 12.8, 9.0)).status);
    ExpectNear(FullPoint(10.0, 14.0, 9.0), Asked(instrument), 1e-13);
    // The other way round and behind the face.
    instrument.observedTargets.clear();
    EXPECT_EQ(0, ThreePoints(PlanPoint(4.0, 6.0), PlanPoint(1.0, 2.0), FullPoint(11.6, 12.8, 9.0)).status);
    ExpectNear(FullPoint(10.0, 14.0, 9.0), Asked(instrument), 1e-13);
}

TEST(CornerOffset3Pt, IsTheThirdPointWhereThatLiesOnTheFace)
{
    FakeInstrument instrument;
    EXPECT_EQ(0, ThreePoints(FIRST, SECOND, FullPoint(25.0, 0.0, 2.0)).status);
    ExpectSameFields(FullPoint(25.0, 0.0, 2.0), Asked(instrument));
}

TEST(CornerOffset3Pt, ReturnsWhatTheInstrumentAnswers)
{
    FakeInstrument instrument;
    instrument.observation = Answer();
    for (const int32_t ignored : {0, -1, 5})
    {
        instrument.observationStatus = ignored;
        instrument.reads.clear();
        const Outcome outcome = ThreePoints(FIRST, SECOND, THIRD, 1.75);
        EXPECT_EQ(0, outcome.status);
        ExpectSameFields(SightRecord{DegreesToUnits(30.0), DegreesToUnits(80.0), 12.5}, outcome.observation);
        ExpectSameFields(FullPoint(1.5, 2.5, 3.5), outcome.corner);
        EXPECT_EQ(1.75, instrument.observedTargets.back().passthrough);
        EXPECT_THAT(instrument.reads,
                    testing::ElementsAre(Read{Operation::OBSERVATION, 0}, Read{Operation::FACE_TWO, 0}));
    }
    instrument.faceTwo = 1;
    ExpectSameFields(SightRecord{DegreesToUnits(210.0), DegreesToUnits(280.0), 12.5},
                     ThreePoints(FIRST, SECOND, THIRD).observation);
}

TEST(CornerOffset3Pt, IsLostWithoutAnInstrument)
{
    const Outcome outcome = ThreePoints(FIRST, SECOND, THIRD);
    EXPECT_EQ(0, outcome.status);
    ExpectSameFields(SightRecord{0, 0, 0.0}, outcome.observation);
    ExpectSameFields(FullPoint(0.0, 0.0, 0.0), outcome.corner);
}

TEST(CornerOffset3Pt, LeavesTheOutputsOnFailure)
{
    FakeInstrument instrument;
    for (const int flags : support::NOT_FULL)
    {
        const Outcome outcome = ThreePoints(FIRST, SECOND, WithFlags(THIRD, flags));
        EXPECT_EQ(-1201, outcome.status) << flags;
        EXPECT_TRUE(Untouched(outcome.observation));
        EXPECT_TRUE(Untouched(outcome.corner));
        EXPECT_EQ(-1201, ThreePoints(FIRST, FIRST, WithFlags(THIRD, flags)).status) << "before the face";
    }
    // Equal, or so close that the squares vanish.
    for (const PointRecord& second : {FIRST, PlanPoint(1e-200, 1e-200)})
    {
        const Outcome outcome = ThreePoints(FIRST, second, THIRD);
        EXPECT_EQ(-1200, outcome.status);
        EXPECT_TRUE(Untouched(outcome.observation));
        EXPECT_TRUE(Untouched(outcome.corner));
    }
    EXPECT_THAT(instrument.reads, testing::IsEmpty());
}

TEST(CornerOffset3Pt, TestsTheFlagBitsAlone)
{
    FakeInstrument instrument;
    EXPECT_EQ(0, ThreePoints(FIRST, SECOND, WithFlags(THIRD, 0xFFFF)).status);
    ExpectSameFields(FullPoint(4.0, 0.0, 2.0), Asked(instrument));
}

// --- four points ---

TEST(CornerOffset4Pt, IsTheIntersectionOfTheFaces)
{
    FakeInstrument instrument;
    EXPECT_EQ(0, FourPoints(FIRST, SECOND, FACE_FIRST, FACE_SECOND).status);
    ExpectSameFields(FullPoint(5.0, 0.0, 2.0), Asked(instrument));
}

TEST(CornerOffset4Pt, TakesFacesAtAnyAngle)
{
    // easting = 2 n + 3 and easting = -n + 9 meet in (2, 7).
    FakeInstrument instrument;
    EXPECT_EQ(
        0, FourPoints(PlanPoint(0.0, 3.0), PlanPoint(1.0, 5.0), PlanPoint(9.0, 0.0), FullPoint(8.0, 1.0, 6.0)).status);
    ExpectNear(FullPoint(2.0, 7.0, 6.0), Asked(instrument), 1e-14);
    instrument.observedTargets.clear();
    EXPECT_EQ(
        0, FourPoints(PlanPoint(9.0, 0.0), PlanPoint(8.0, 1.0), PlanPoint(0.0, 3.0), FullPoint(1.0, 5.0, 6.0)).status);
    ExpectNear(FullPoint(2.0, 7.0, 6.0), Asked(instrument), 1e-14);
}

TEST(CornerOffset4Pt, IsComputedAlongTheFacesNotBySlopes)
{
    // The intersection of lines clamps the steep face and would give northing 6. The corner at easting 7 is 7 / 2^28
    // north of 3.
    FakeInstrument instrument;
    EXPECT_EQ(0, FourPoints(STEEP_FIRST, STEEP_SECOND, PlanPoint(0.0, 7.0), FullPoint(10.0, 7.0, 2.0)).status);
    ExpectNear(FullPoint(3.0 + 7.0 * 0x1p-28, 7.0, 2.0), Asked(instrument), 1e-14);
    instrument.observedTargets.clear();
    EXPECT_EQ(0, FourPoints(PlanPoint(0.0, 7.0), PlanPoint(10.0, 7.0), STEEP_FIRST, STEEP_SECOND).status);
    ExpectNear(FullPoint(3.0 + 7.0 * 0x1p-28, 7.0, 2.0), Asked(instrument), 1e-14);
}

TEST(CornerOffset4Pt, ReturnsWhatTheInstrumentAnswers)
{
    FakeInstrument instrument;
    instrument.observation = Answer();
    for (const int32_t ignored : {0, -1, 5})
    {
        instrument.observationStatus = ignored;
        instrument.reads.clear();
        const Outcome outcome = FourPoints(FIRST, SECOND, FACE_FIRST, FACE_SECOND, 1.75);
        EXPECT_EQ(0, outcome.status);
        ExpectSameFields(SightRecord{DegreesToUnits(30.0), DegreesToUnits(80.0), 12.5}, outcome.observation);
        ExpectSameFields(FullPoint(1.5, 2.5, 3.5), outcome.corner);
        EXPECT_EQ(1.75, instrument.observedTargets.back().passthrough);
        EXPECT_THAT(instrument.reads,
                    testing::ElementsAre(Read{Operation::OBSERVATION, 0}, Read{Operation::FACE_TWO, 0}));
    }
    instrument.faceTwo = 1;
    ExpectSameFields(SightRecord{DegreesToUnits(210.0), DegreesToUnits(280.0), 12.5},
                     FourPoints(FIRST, SECOND, FACE_FIRST, FACE_SECOND).observation);
}

TEST(CornerOffset4Pt, IsLostWithoutAnInstrument)
{
    const Outcome outcome = FourPoints(FIRST, SECOND, FACE_FIRST, FACE_SECOND);
    EXPECT_EQ(0, outcome.status);
    ExpectSameFields(SightRecord{0, 0, 0.0}, outcome.observation);
    ExpectSameFields(FullPoint(0.0, 0.0, 0.0), outcome.corner);
}

TEST(CornerOffset4Pt, LeavesThePresetWithoutAnIntersection)
{
    FakeInstrument instrument;
    const Outcome outcomes[] = {
        FourPoints(FIRST, SECOND, PlanPoint(0.0, 1.0), FullPoint(10.0, 1.0, 2.0)), // parallel
        FourPoints(FIRST, SECOND, FIRST, FullPoint(10.0, 0.0, 2.0)),               // one line
        FourPoints(FIRST, FIRST, FACE_FIRST, FACE_SECOND),                         // no first face
        FourPoints(FIRST, SECOND, FACE_SECOND, FACE_SECOND),                       // no second face
        FourPoints(FIRST, SECOND, PlanPoint(0.0, 1.0), PlanPoint(10.0, 1.0)),      // parallel before the flags
    };
    for (const Outcome& outcome : outcomes)
    {
        EXPECT_EQ(-1205, outcome.status);
        EXPECT_TRUE(Untouched(outcome.observation));
        ExpectSameFields(UndefinedPlan(), outcome.corner);
    }
    EXPECT_THAT(instrument.reads, testing::IsEmpty());
}

TEST(CornerOffset4Pt, LeavesTheIntersectionWhereTheFourthPointLacksCoordinates)
{
    FakeInstrument instrument;
    for (const int flags : support::NOT_FULL)
    {
        const Outcome outcome = FourPoints(FIRST, SECOND, FACE_FIRST, WithFlags(FACE_SECOND, flags));
        EXPECT_EQ(-1201, outcome.status) << flags;
        EXPECT_TRUE(Untouched(outcome.observation));
        ExpectSameFields(PlanPoint(5.0, 0.0), outcome.corner);
    }
    EXPECT_THAT(instrument.reads, testing::IsEmpty());
}

TEST(CornerOffset4Pt, LeavesTheIntersectionWhereALengthVanishes)
{
    // (0, 0) and (1e-200, 1e-200) have a slope but no length; easting = -n + 10 is crossed in (5, 5).
    FakeInstrument instrument;
    const PointRecord origin = PlanPoint(0.0, 0.0);
    const PointRecord near = FullPoint(1e-200, 1e-200, 1.0);
    const PointRecord east = PlanPoint(0.0, 10.0);
    const PointRecord north = FullPoint(10.0, 0.0, 1.0);
    for (const Outcome& outcome : {FourPoints(origin, near, east, north), FourPoints(east, north, origin, near)})
    {
        EXPECT_EQ(-1200, outcome.status);
        EXPECT_TRUE(Untouched(outcome.observation));
        ExpectSameFields(PlanPoint(5.0, 5.0), outcome.corner);
    }
    // The flags come first.
    EXPECT_EQ(-1201, FourPoints(east, north, origin, WithFlags(near, 1)).status);
    EXPECT_THAT(instrument.reads, testing::IsEmpty());
}
