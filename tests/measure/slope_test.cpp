#include <cmath>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "qstdlib.h"
#include "tests/support/fake_instrument.h"
#include "tests/support/geometry.h"
#include "tests/support/record.h"

using support::ExpectSameFields;
using support::FullPoint;
using support::Patterned;
using support::PlanPoint;
using support::Untouched;
using support::WithFlags;

namespace {

constexpr double UNDEFINED = 134217728.0;

struct Outcome
{
    int32_t status;
    SlopeCheckResult result;
};

const PointRecord BASE = PlanPoint(100.0, 200.0);

// A point at a distance east of the base.
PointRecord At(double distance, double height)
{
    return FullPoint(100.0, 200.0 + distance, height);
}

Outcome Check(const PointRecord& base, const PointRecord& point)
{
    Outcome outcome = {0, Patterned<SlopeCheckResult>()};
    outcome.status = QBRCalc(&base, &point, &outcome.result);
    return outcome;
}

void ExpectCheck(const SlopeCheckResult& expected, const PointRecord& point, int32_t status = 0)
{
    const Outcome outcome = Check(BASE, point);
    EXPECT_EQ(status, outcome.status);
    ExpectSameFields(expected, outcome.result);
}

void ExpectFailure(int32_t status, const PointRecord& base, const PointRecord& point)
{
    const Outcome outcome = Check(base, point);
    EXPECT_EQ(status, outcome.status);
    EXPECT_TRUE(Untouched(outcome.result));
}

// Taken before any test runs: what a freshly loaded library answers.
const Outcome AT_LOAD = Check(PlanPoint(0.0, 0.0), FullPoint(0.0, 1.0, 0.0));

} // namespace

TEST(Slope, IsNotDefinedAtLoad)
{
    EXPECT_EQ(-5, AT_LOAD.status);
    EXPECT_TRUE(Untouched(AT_LOAD.result));
}

TEST(Slope, TellsHowFarAPointLiesBeyondAndAbove)
{
    // Falls 1 in 2: 9 high at distance 2, 9.5 high at distance 1.
    ASSERT_EQ(0, QBRSetSlope(10.0, 0.0, 8.0, 4.0));
    ExpectCheck({1.0, 0.5, 2.0}, At(2.0, 9.5));
    ExpectCheck({1.0, 0.5, 2.0}, At(-2.0, 9.5));
    // Below, nearer to the base than where the slope is 8.5 high, distance 3.
    ExpectCheck({-2.0, -1.0, 1.0}, At(1.0, 8.5));
    // On it: the offset is the negative of 0.
    ExpectCheck({-0.0, 0.0, 4.0}, At(4.0, 8.0));
}

TEST(Slope, RisesAwayFromTheBaseToo)
{
    // 2 up on 1 out, from height 5 at distance 1: at distance 4 it is 11 high; 8 high it is at distance 2.5.
    ASSERT_EQ(0, QBRSetSlope(5.0, 1.0, 9.0, 3.0));
    ExpectCheck({1.5, -3.0, 4.0}, At(4.0, 8.0));
    ASSERT_EQ(0, QBRSetSlope(9.0, 3.0, 5.0, 1.0));
    ExpectCheck({1.5, -3.0, 4.0}, At(4.0, 8.0));
}

TEST(Slope, IsMirroredOnTheNegativeSide)
{
    ASSERT_EQ(0, QBRSetSlope(10.0, 0.0, 8.0, -4.0));
    ExpectCheck({1.0, 0.5, 2.0}, At(2.0, 9.5));
    ExpectCheck({1.0, 0.5, 2.0}, At(-2.0, 9.5));
    ASSERT_EQ(0, QBRSetSlope(8.0, -4.0, 10.0, 0.0));
    ExpectCheck({1.0, 0.5, 2.0}, At(2.0, 9.5));
    ASSERT_EQ(0, QBRSetSlope(8.0, -4.0, 10.0, -0.0));
    ExpectCheck({1.0, 0.5, 2.0}, At(2.0, 9.5));
    ASSERT_EQ(0, QBRSetSlope(5.0, -1.0, 9.0, -3.0));
    ExpectCheck({1.5, -3.0, 4.0}, At(4.0, 8.0));
}

TEST(Slope, WarnsOfALevelSlope)
{
    EXPECT_EQ(-1209, QBRSetSlope(5.0, 1.0, 5.0, 3.0));
    ExpectCheck({UNDEFINED, 2.5, 4.0}, At(4.0, 7.5), -1209);
    ExpectCheck({UNDEFINED, -1.0, 2.0}, At(2.0, 4.0), -1209);
    EXPECT_EQ(-1209, QBRSetSlope(5.0, 0.0, 5.0, -3.0));
    ExpectCheck({UNDEFINED, 2.5, 4.0}, At(4.0, 7.5), -1209);
}

TEST(Slope, WarnsOfAVerticalSlope)
{
    EXPECT_EQ(-1208, QBRSetSlope(2.0, 3.0, 6.0, 3.0));
    ExpectCheck({2.0, UNDEFINED, 5.0}, At(5.0, 100.0), -1208);
    ExpectCheck({-1.0, UNDEFINED, 2.0}, At(2.0, -100.0), -1208);
    EXPECT_EQ(-1208, QBRSetSlope(2.0, -3.0, 6.0, -3.0));
    ExpectCheck({2.0, UNDEFINED, 5.0}, At(5.0, 100.0), -1208);
    EXPECT_EQ(-1208, QBRSetSlope(2.0, 0.0, 6.0, -0.0));
    ExpectCheck({5.0, UNDEFINED, 5.0}, At(5.0, 100.0), -1208);
}

TEST(Slope, ComparesExactly)
{
    EXPECT_EQ(0, QBRSetSlope(5.0, 1.0, std::nextafter(5.0, 6.0), std::nextafter(1.0, 2.0)));
    EXPECT_EQ(-1208, QBRSetSlope(5.0, 1.0, std::nextafter(5.0, 6.0), 1.0));
    EXPECT_EQ(-1209, QBRSetSlope(5.0, 1.0, 5.0, std::nextafter(1.0, 2.0)));
}

TEST(Slope, IsLostByARejectedDefinition)
{
    constexpr double REJECTED[][4] = {{1.0, 2.0, 1.0, 2.0},         // one point twice
                                      {1.0, 0.0, 1.0, -0.0},        // the same
                                      {5.0, 1.0, 6.0, -1.0},        // opposite sides
                                      {5.0, -1.0, 6.0, 1.0},        //
                                      {5.0, -1.0, 5.0, 1.0},        // and level
                                      {5.0, -1e-300, 6.0, 1e-300}}; // however little
    for (const auto& r : REJECTED)
    {
        ASSERT_EQ(0, QBRSetSlope(10.0, 0.0, 8.0, 4.0));
        ExpectCheck({1.0, 0.5, 2.0}, At(2.0, 9.5));
        EXPECT_EQ(-1, QBRSetSlope(r[0], r[1], r[2], r[3]));
        ExpectFailure(-5, BASE, At(2.0, 9.5));
        // Nothing else is looked at.
        ExpectFailure(-5, WithFlags(BASE, 0), At(0.0, 0.0));
    }
}

TEST(Slope, LeavesTheResultWithoutCoordinates)
{
    ASSERT_EQ(0, QBRSetSlope(10.0, 0.0, 8.0, 4.0));
    for (const int flags : support::WITHOUT_PLAN)
    {
        ExpectFailure(-1201, WithFlags(BASE, flags), At(2.0, 9.5));
    }
    for (const int flags : support::NOT_FULL)
    {
        ExpectFailure(-1201, BASE, WithFlags(At(2.0, 9.5), flags));
        ExpectFailure(-1201, BASE, WithFlags(At(0.0, 9.5), flags));
    }
}

TEST(Slope, LeavesTheResultForAPointOverTheBase)
{
    ASSERT_EQ(0, QBRSetSlope(10.0, 0.0, 8.0, 4.0));
    ExpectFailure(-1200, BASE, At(0.0, 9.5));
    EXPECT_EQ(0, Check(BASE, FullPoint(100.0, std::nextafter(200.0, 0.0), 9.5)).status);
    EXPECT_EQ(0, Check(BASE, FullPoint(std::nextafter(100.0, 0.0), 200.0, 9.5)).status);
}

TEST(Slope, TakesTheDistanceInPlan)
{
    ASSERT_EQ(0, QBRSetSlope(10.0, 0.0, 8.0, 4.0));
    // 3 north, 4 east: 5 away, where the slope is 7.5 high; 9 high it is at distance 2.
    const PointRecord point = WithFlags(FullPoint(103.0, 204.0, 9.0), 0xFFFF);
    ExpectCheck({3.0, 1.5, 5.0}, point);
    // A height of the base does not take part.
    const Outcome outcome = Check(FullPoint(100.0, 200.0, 1e6), point);
    EXPECT_EQ(0, outcome.status);
    ExpectSameFields({3.0, 1.5, 5.0}, outcome.result);
}

TEST(Slope, KeepsItsDefinitionUntilTheNext)
{
    EXPECT_EQ(-1209, QBRSetSlope(5.0, 1.0, 5.0, 3.0));
    Check(BASE, At(0.0, 0.0));
    Check(WithFlags(BASE, 0), At(1.0, 0.0));
    ExpectCheck({UNDEFINED, 2.5, 4.0}, At(4.0, 7.5), -1209);
    ExpectCheck({UNDEFINED, 2.5, 4.0}, At(4.0, 7.5), -1209);
    // The negative side goes with the definition.
    ASSERT_EQ(0, QBRSetSlope(10.0, 0.0, 8.0, -4.0));
    ASSERT_EQ(0, QBRSetSlope(10.0, 0.0, 8.0, 4.0));
    ExpectCheck({1.0, 0.5, 2.0}, At(2.0, 9.5));
}

TEST(Slope, ReadsNoSetting)
{
    support::FakeInstrument instrument;
    instrument.scaleFactor = 2.0;
    ASSERT_EQ(0, QBRSetSlope(10.0, 0.0, 8.0, 4.0));
    ExpectCheck({1.0, 0.5, 2.0}, At(2.0, 9.5));
    EXPECT_THAT(instrument.reads, testing::IsEmpty());
}
