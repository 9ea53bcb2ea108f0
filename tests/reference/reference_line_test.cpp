#include <cmath>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "qstdlib.h"
#include "tests/support/fake_instrument.h"
#include "tests/support/geometry.h"
#include "tests/support/record.h"

using support::ExpectNear;
using support::ExpectSameFields;
using support::FullPoint;
using support::Patterned;
using support::PlanPoint;
using support::Untouched;
using support::WithFlags;

namespace {

struct Outcome
{
    int32_t status;
    ReferenceLineResult result;
};

Outcome Refer(const PointRecord& point)
{
    Outcome outcome = {0, Patterned<ReferenceLineResult>()};
    outcome.status = QREFCalc(&point, &outcome.result);
    return outcome;
}

ReferenceLineResult Referred(const PointRecord& point)
{
    const Outcome outcome = Refer(point);
    EXPECT_EQ(0, outcome.status);
    return outcome.result;
}

// Offset of a point ahead on a line that runs north: the difference 0 - 0 with its sign changed.
constexpr double ON_LINE = -0.0;

int32_t SetLine(const PointRecord& first, const PointRecord& second)
{
    return QREFSetBaseLine(&first, &second);
}

// Runs north, 10 long, without heights.
void SetNorthLine()
{
    ASSERT_EQ(0, SetLine(PlanPoint(0.0, 0.0), PlanPoint(10.0, 0.0)));
}

void ExpectFailure(int32_t status, const PointRecord& point)
{
    const Outcome outcome = Refer(point);
    EXPECT_EQ(status, outcome.status);
    EXPECT_TRUE(Untouched(outcome.result));
}

// Taken before any test runs: what a freshly loaded library answers.
const Outcome AT_LOAD = Refer(PlanPoint(1.0, 2.0));

} // namespace

TEST(ReferenceLine, IsNotDefinedAtLoad)
{
    EXPECT_EQ(-5, AT_LOAD.status);
    EXPECT_TRUE(Untouched(AT_LOAD.result));
}

TEST(ReferenceLine, GivesStationAndOffset)
{
    SetNorthLine();
    ExpectSameFields({PlanPoint(4.0, 0.0), 4.0, 3.0, 0.0}, Referred(PlanPoint(4.0, 3.0)));
    ExpectSameFields({PlanPoint(4.0, 0.0), 4.0, -3.0, 0.0}, Referred(PlanPoint(4.0, -3.0)));
    // Before the first point and beyond the second.
    ExpectSameFields({PlanPoint(-2.0, 0.0), -2.0, 1.0, 0.0}, Referred(PlanPoint(-2.0, 1.0)));
    ExpectSameFields({PlanPoint(25.0, 0.0), 25.0, 1.0, 0.0}, Referred(PlanPoint(25.0, 1.0)));
}

TEST(ReferenceLine, TakesAnyDirection)
{
    // Along (0.6, 0.8) from (100, 200); its right is (-0.8, 0.6). A point at station 20, offset 10.
    ASSERT_EQ(0, SetLine(PlanPoint(100.0, 200.0), PlanPoint(103.0, 204.0)));
    const ReferenceLineResult right = Referred(PlanPoint(100.0 + 12.0 - 8.0, 200.0 + 16.0 + 6.0));
    EXPECT_NEAR(20.0, right.station, 1e-13);
    EXPECT_NEAR(10.0, right.offset, 1e-13);
    ExpectNear(PlanPoint(112.0, 216.0), right.foot, 1e-13);
    const ReferenceLineResult left = Referred(PlanPoint(100.0 - 6.0 + 16.0, 200.0 - 8.0 - 12.0));
    EXPECT_NEAR(-10.0, left.station, 1e-13);
    EXPECT_NEAR(-20.0, left.offset, 1e-13);
    ExpectNear(PlanPoint(94.0, 192.0), left.foot, 1e-13);
}

TEST(ReferenceLine, ComparesWithTheGrade)
{
    // 1 higher over 8: all exact.
    ASSERT_EQ(0, SetLine(FullPoint(2.0, 5.0, 100.0), FullPoint(10.0, 5.0, 101.0)));
    ExpectSameFields({FullPoint(6.0, 5.0, 100.5), 4.0, 2.0, 0.5}, Referred(FullPoint(6.0, 7.0, 101.0)));
    // With the same grade beyond both ends.
    ExpectSameFields({FullPoint(26.0, 5.0, 103.0), 24.0, ON_LINE, -3.0}, Referred(FullPoint(26.0, 5.0, 100.0)));
    ExpectSameFields({FullPoint(-6.0, 5.0, 99.0), -8.0, 0.0, 1.0}, Referred(FullPoint(-6.0, 5.0, 100.0)));
    // 1 higher over 10.
    ASSERT_EQ(0, SetLine(FullPoint(0.0, 0.0, 100.0), FullPoint(10.0, 0.0, 101.0)));
    const ReferenceLineResult middle = Referred(FullPoint(5.0, 0.0, 101.0));
    EXPECT_NEAR(100.5, middle.foot.height, 1e-13);
    EXPECT_NEAR(0.5, middle.heightDifference, 1e-13);
}

TEST(ReferenceLine, IsLevelWhereOneHeightIsGiven)
{
    const PointRecord first = FullPoint(0.0, 0.0, 100.0);
    const PointRecord second = FullPoint(10.0, 0.0, 200.0);
    for (const int without : {1, 0xFFFD})
    {
        ASSERT_EQ(0, SetLine(WithFlags(first, without), second));
        ExpectSameFields({FullPoint(5.0, 0.0, 200.0), 5.0, ON_LINE, 1.0}, Referred(FullPoint(5.0, 0.0, 201.0)));
        ASSERT_EQ(0, SetLine(first, WithFlags(second, without)));
        ExpectSameFields({FullPoint(5.0, 0.0, 100.0), 5.0, ON_LINE, 1.0}, Referred(FullPoint(5.0, 0.0, 101.0)));
    }
}

TEST(ReferenceLine, HasNoGradeWithoutHeights)
{
    ASSERT_EQ(0, SetLine(PlanPoint(0.0, 0.0, 100.0), PlanPoint(10.0, 0.0, 200.0)));
    ExpectSameFields({PlanPoint(5.0, 0.0), 5.0, ON_LINE, 0.0}, Referred(FullPoint(5.0, 0.0, 201.0)));
}

TEST(ReferenceLine, GivesNoHeightForAPointWithoutOne)
{
    ASSERT_EQ(0, SetLine(FullPoint(0.0, 0.0, 100.0), FullPoint(10.0, 0.0, 200.0)));
    for (const int without : {1, 0xFFFD})
    {
        ExpectSameFields({PlanPoint(5.0, 0.0), 5.0, ON_LINE, 0.0},
                         Referred(WithFlags(FullPoint(5.0, 0.0, 7.0), without)));
    }
}

TEST(ReferenceLine, TestsTheFlagBitsAlone)
{
    ASSERT_EQ(0, SetLine(WithFlags(FullPoint(0.0, 0.0, 100.0), 0xFFFF), WithFlags(FullPoint(8.0, 0.0, 101.0), 0xFFFF)));
    ExpectSameFields({FullPoint(4.0, 0.0, 100.5), 4.0, ON_LINE, 0.5},
                     Referred(WithFlags(FullPoint(4.0, 0.0, 101.0), 0xFFFF)));
}

TEST(ReferenceLine, IsLostByARejectedDefinition)
{
    const PointRecord first = FullPoint(0.0, 0.0, 1.0);
    const PointRecord second = FullPoint(10.0, 0.0, 2.0);
    for (const int flags : support::WITHOUT_PLAN)
    {
        SetNorthLine();
        EXPECT_EQ(-1201, SetLine(WithFlags(first, flags), second));
        ExpectFailure(-5, PlanPoint(1.0, 2.0));
        SetNorthLine();
        EXPECT_EQ(-1201, SetLine(first, WithFlags(second, flags)));
        ExpectFailure(-5, PlanPoint(1.0, 2.0));
        // Before the coordinates are compared, and before the point is looked at.
        EXPECT_EQ(-1201, SetLine(first, WithFlags(first, flags)));
        ExpectFailure(-5, WithFlags(PlanPoint(1.0, 2.0), flags));
    }
    SetNorthLine();
    EXPECT_EQ(-1200, SetLine(first, FullPoint(0.0, 0.0, 2.0)));
    ExpectFailure(-5, PlanPoint(1.0, 2.0));
    EXPECT_EQ(0, SetLine(first, FullPoint(0.0, 1e-300, 1.0)));
}

TEST(ReferenceLine, LeavesTheResultWithoutPlanCoordinates)
{
    SetNorthLine();
    for (const int flags : support::WITHOUT_PLAN)
    {
        ExpectFailure(-1201, WithFlags(FullPoint(4.0, 3.0, 0.0), flags));
    }
    // The line stays.
    ExpectSameFields({PlanPoint(4.0, 0.0), 4.0, 3.0, 0.0}, Referred(PlanPoint(4.0, 3.0)));
}

TEST(ReferenceLine, IsReplacedWhole)
{
    ASSERT_EQ(0, SetLine(FullPoint(0.0, 0.0, 100.0), FullPoint(10.0, 0.0, 200.0)));
    SetNorthLine();
    ExpectSameFields({PlanPoint(5.0, 0.0), 5.0, ON_LINE, 0.0}, Referred(FullPoint(5.0, 0.0, 7.0)));
    ASSERT_EQ(0, SetLine(PlanPoint(0.0, 0.0), PlanPoint(0.0, 8.0)));
    ExpectSameFields({PlanPoint(0.0, 3.0), 3.0, -4.0, 0.0}, Referred(PlanPoint(4.0, 3.0)));
}

TEST(ReferenceLine, KeepsItsOwnCopyOfThePoints)
{
    PointRecord first = PlanPoint(0.0, 0.0);
    PointRecord second = PlanPoint(10.0, 0.0);
    ASSERT_EQ(0, QREFSetBaseLine(&first, &second));
    EXPECT_EQ(1, first.flags);
    first.easting = 50.0;
    second.easting = 90.0;
    ExpectSameFields({PlanPoint(4.0, 0.0), 4.0, 3.0, 0.0}, Referred(PlanPoint(4.0, 3.0)));
}

TEST(ReferenceLine, ReadsNoSetting)
{
    support::FakeInstrument instrument;
    instrument.azimuthReference = 1;
    SetNorthLine();
    ExpectSameFields({PlanPoint(4.0, 0.0), 4.0, 3.0, 0.0}, Referred(PlanPoint(4.0, 3.0)));
    EXPECT_THAT(instrument.reads, testing::IsEmpty());
}
