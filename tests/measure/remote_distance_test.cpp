#include <cmath>
#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "qstdlib.h"
#include "tests/support/fake_instrument.h"
#include "tests/support/record.h"

using support::ExpectSameFields;
using support::FullPoint;
using support::Patterned;
using support::PlanPoint;
using support::Untouched;
using support::WithFlags;

namespace {

constexpr AngleUnit HALF = 10368000;
constexpr AngleUnit QUARTER = 5184000;

// The azimuth of 3 north, 4 east: atan(4/3) = 53.130102354 degrees = 3,060,293.9 units.
constexpr AngleUnit AZIMUTH_3_4 = 3060294;

RemoteDistanceResult Measure(const PointRecord& first, const PointRecord& second, int32_t expectedStatus = 0)
{
    auto result = Patterned<RemoteDistanceResult>();
    EXPECT_EQ(expectedStatus, QRDMCalcByCoord(&first, &second, &result));
    return result;
}

} // namespace

TEST(RemoteDistance, MeasuresBetweenFullPoints)
{
    // 3, 4, 12: 5 in plan, 13 in space.
    ExpectSameFields({13.0, 5.0, 12.0, AZIMUTH_3_4}, Measure(FullPoint(10.0, 20.0, 30.0), FullPoint(13.0, 24.0, 42.0)));
}

TEST(RemoteDistance, IsSecondMinusFirst)
{
    ExpectSameFields({13.0, 5.0, -12.0, AZIMUTH_3_4 + HALF},
                     Measure(FullPoint(13.0, 24.0, 42.0), FullPoint(10.0, 20.0, 30.0)));
}

TEST(RemoteDistance, IsPlaneUnlessBothPointsHaveAHeight)
{
    const PointRecord first = FullPoint(10.0, 20.0, 30.0);
    const PointRecord second = FullPoint(13.0, 24.0, 42.0);
    for (const auto& [firstFlags, secondFlags] : {std::pair(1, 3), std::pair(3, 1), std::pair(1, 1)})
    {
        SCOPED_TRACE(testing::Message() << firstFlags << " and " << secondFlags);
        ExpectSameFields({5.0, 5.0, 0.0, AZIMUTH_3_4},
                         Measure(WithFlags(first, firstFlags), WithFlags(second, secondFlags)));
    }
}

TEST(RemoteDistance, TestsTheFlagBitsOnly)
{
    const PointRecord first = FullPoint(10.0, 20.0, 30.0);
    const PointRecord second = FullPoint(13.0, 24.0, 42.0);
    ExpectSameFields({13.0, 5.0, 12.0, AZIMUTH_3_4}, Measure(WithFlags(first, 0xFFFF), WithFlags(second, 0x8003)));
    ExpectSameFields({5.0, 5.0, 0.0, AZIMUTH_3_4}, Measure(WithFlags(first, 0xFFFF), WithFlags(second, 0xFFFD)));
}

TEST(RemoteDistance, FillsTheResultForPointsAboveEachOther)
{
    ExpectSameFields({3.0, 0.0, -3.0, ANGLE_UNDEFINED},
                     Measure(FullPoint(5.0, 6.0, 10.0), FullPoint(5.0, 6.0, 7.0), -1200));
    ExpectSameFields({3.0, 0.0, 3.0, ANGLE_UNDEFINED},
                     Measure(FullPoint(5.0, 6.0, 7.0), FullPoint(5.0, 6.0, 10.0), -1200));
}

TEST(RemoteDistance, FillsTheResultForCoincidentPlanPoints)
{
    ExpectSameFields({0.0, 0.0, 0.0, ANGLE_UNDEFINED},
                     Measure(PlanPoint(5.0, 6.0, 10.0), FullPoint(5.0, 6.0, 7.0), -1200));
}

TEST(RemoteDistance, TakesOnePointForBoth)
{
    const PointRecord point = FullPoint(5.0, 6.0, 7.0);
    ExpectSameFields({0.0, 0.0, 0.0, ANGLE_UNDEFINED}, Measure(point, point, -1200));
    RemoteDistanceResult result;
    EXPECT_EQ(-1200, QRDMCalcByCoord(&point, &point, &result));
    ExpectSameFields({0.0, 0.0, 0.0, ANGLE_UNDEFINED}, result);
}

TEST(RemoteDistance, NeedsBothCoordinatesEqualToCoincide)
{
    ExpectSameFields({1.0, 1.0, 0.0, 0}, Measure(PlanPoint(5.0, 6.0), PlanPoint(6.0, 6.0)));
    ExpectSameFields({1.0, 1.0, 0.0, QUARTER}, Measure(PlanPoint(5.0, 6.0), PlanPoint(5.0, 7.0)));
}

TEST(RemoteDistance, ComparesThePointsWithoutTolerance)
{
    const double nearOne = std::nextafter(1.0, 2.0);
    constexpr double STEP = std::numeric_limits<double>::epsilon();
    ExpectSameFields({STEP, STEP, 0.0, QUARTER}, Measure(PlanPoint(1.0, 1.0), PlanPoint(1.0, nearOne)));
}

TEST(RemoteDistance, HasNoAzimuthWhenTheDistanceVanishes)
{
    // The points differ, so they do not coincide, but the squares of their difference are 0.0.
    ExpectSameFields({0.0, 0.0, 0.0, ANGLE_UNDEFINED}, Measure(PlanPoint(0.0, 0.0), PlanPoint(1e-200, 0.0)));
    ExpectSameFields({2.0, 0.0, 2.0, ANGLE_UNDEFINED}, Measure(FullPoint(0.0, 0.0, 0.0), FullPoint(0.0, 1e-200, 2.0)));
}

TEST(RemoteDistance, LeavesTheResultWithoutPlanCoordinates)
{
    const PointRecord first = FullPoint(10.0, 20.0, 30.0);
    const PointRecord second = FullPoint(13.0, 24.0, 42.0);
    for (const int flags : {0, 2, 0xFFFE})
    {
        EXPECT_TRUE(Untouched(Measure(WithFlags(first, flags), second, -1201))) << flags;
        EXPECT_TRUE(Untouched(Measure(first, WithFlags(second, flags), -1201))) << flags;
        EXPECT_TRUE(Untouched(Measure(WithFlags(first, flags), WithFlags(first, flags), -1201))) << flags;
    }
}

TEST(RemoteDistance, LeavesThePointsAsTheyAre)
{
    // It computes on copies: the heights of plan points are set to 0.0 there, not in the caller's records.
    const PointRecord first = PlanPoint(10.0, 20.0, 30.0);
    const PointRecord second = FullPoint(13.0, 24.0, 42.0);
    PointRecord firstGiven = first;
    PointRecord secondGiven = second;
    RemoteDistanceResult result;
    EXPECT_EQ(0, QRDMCalcByCoord(&firstGiven, &secondGiven, &result));
    ExpectSameFields(first, firstGiven);
    ExpectSameFields(second, secondGiven);
}

TEST(RemoteDistance, FollowsTheAzimuthReference)
{
    support::FakeInstrument instrument;
    instrument.azimuthReference = 1;
    ExpectSameFields({13.0, 5.0, 12.0, AZIMUTH_3_4 + HALF},
                     Measure(FullPoint(10.0, 20.0, 30.0), FullPoint(13.0, 24.0, 42.0)));
    EXPECT_THAT(instrument.reads, testing::ElementsAre(support::IntRead(49411)));
    instrument.azimuthReference = 2;
    ExpectSameFields({13.0, 5.0, 12.0, AZIMUTH_3_4}, Measure(FullPoint(10.0, 20.0, 30.0), FullPoint(13.0, 24.0, 42.0)));
}

TEST(RemoteDistance, DoesNotTurnTheUndefinedAzimuth)
{
    support::FakeInstrument instrument;
    instrument.azimuthReference = 1;
    const PointRecord point = FullPoint(5.0, 6.0, 7.0);
    EXPECT_EQ(ANGLE_UNDEFINED, Measure(point, point, -1200).azimuth);
}
