#include "core/point.h"

#include <cmath>
#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/angle.h"
#include "tests/support/fake_instrument.h"
#include "tests/support/record.h"

using support::FullPoint;
using support::PlanPoint;
using support::SameBits;
using support::Untouched;
using support::WithFlags;

namespace {

constexpr AngleUnit FULL = 20736000;
constexpr AngleUnit HALF = 10368000;
constexpr AngleUnit QUARTER = 5184000;
constexpr double INFINITE = std::numeric_limits<double>::infinity();

// The smallest normal double's square vanishes, the largest's overflows: where squares are formed they show.
constexpr double TINY = 1e-200;
constexpr double HUGE_LENGTH = 1e200;

AngleUnit Azimuth(const PointRecord& from, const PointRecord& to)
{
    return qstdlib::AzimuthBetween(&from, &to);
}

AngleUnit Zenith(const PointRecord& from, const PointRecord& to)
{
    return qstdlib::ZenithBetween(&from, &to);
}

struct Distances
{
    double slope;
    double horizontal;
    double heightDifference;
};

// Filled with the pattern before the call, so that what is not written shows.
int32_t Measure(const PointRecord& first, const PointRecord& second, Distances& distances)
{
    support::FillWithPattern(distances);
    return qstdlib::PointDistances(&distances.slope, &distances.horizontal, &distances.heightDifference, &first,
                                   &second);
}

} // namespace

// --- flags ---

TEST(PointFlags, AreTestedBitByBit)
{
    const PointRecord point = FullPoint(0.0, 0.0, 0.0);
    for (const int others : {0x0000, 0x0004, 0x8000, 0xFFFC})
    {
        const auto withBits = [&point, others](int bits) { return WithFlags(point, others + bits); };
        EXPECT_FALSE(qstdlib::HasPlan(withBits(0)));
        EXPECT_TRUE(qstdlib::HasPlan(withBits(1)));
        EXPECT_FALSE(qstdlib::HasPlan(withBits(2)));
        EXPECT_TRUE(qstdlib::HasPlan(withBits(3)));
        EXPECT_FALSE(qstdlib::HasHeight(withBits(0)));
        EXPECT_FALSE(qstdlib::HasHeight(withBits(1)));
        EXPECT_TRUE(qstdlib::HasHeight(withBits(2)));
        EXPECT_TRUE(qstdlib::HasHeight(withBits(3)));
        EXPECT_FALSE(qstdlib::HasPlanAndHeight(withBits(0)));
        EXPECT_FALSE(qstdlib::HasPlanAndHeight(withBits(1)));
        EXPECT_FALSE(qstdlib::HasPlanAndHeight(withBits(2)));
        EXPECT_TRUE(qstdlib::HasPlanAndHeight(withBits(3)));
    }
}

TEST(CoincideInPlan, ComparesExactly)
{
    EXPECT_TRUE(qstdlib::CoincideInPlan(FullPoint(1.0, 2.0, 3.0), FullPoint(1.0, 2.0, 4.0)));
    EXPECT_TRUE(qstdlib::CoincideInPlan(PlanPoint(0.0, 2.0), PlanPoint(-0.0, 2.0)));
    EXPECT_FALSE(qstdlib::CoincideInPlan(PlanPoint(1.0, 2.0), PlanPoint(std::nextafter(1.0, 2.0), 2.0)));
    EXPECT_FALSE(qstdlib::CoincideInPlan(PlanPoint(1.0, 2.0), PlanPoint(1.0, std::nextafter(2.0, 3.0))));
}

// --- azimuth ---

TEST(AzimuthBetween, RunsClockwiseFromNorth)
{
    const PointRecord origin = PlanPoint(0.0, 0.0);
    EXPECT_EQ(0, Azimuth(origin, PlanPoint(1.0, 0.0)));
    EXPECT_EQ(FULL / 8, Azimuth(origin, PlanPoint(1.0, 1.0)));
    EXPECT_EQ(QUARTER, Azimuth(origin, PlanPoint(0.0, 1.0)));
    EXPECT_EQ(HALF - FULL / 8, Azimuth(origin, PlanPoint(-1.0, 1.0)));
    EXPECT_EQ(HALF, Azimuth(origin, PlanPoint(-1.0, 0.0)));
    EXPECT_EQ(15552000, Azimuth(origin, PlanPoint(0.0, -1.0)));
    EXPECT_EQ(FULL - FULL / 8, Azimuth(origin, PlanPoint(1.0, -1.0)));
}

TEST(AzimuthBetween, IsSecondMinusFirst)
{
    // From (100, 200) to (100 + 3, 200 + 4): atan(4/3) = 53.130102354 degrees = 3,060,293.9 units.
    EXPECT_EQ(3060294, Azimuth(PlanPoint(100.0, 200.0), PlanPoint(103.0, 204.0)));
    EXPECT_EQ(3060294 + HALF, Azimuth(PlanPoint(103.0, 204.0), PlanPoint(100.0, 200.0)));
}

TEST(AzimuthBetween, IsUndefinedForEqualPlanCoordinates)
{
    EXPECT_EQ(ANGLE_UNDEFINED, Azimuth(PlanPoint(0.0, 0.0), PlanPoint(0.0, 0.0)));
    EXPECT_EQ(ANGLE_UNDEFINED, Azimuth(FullPoint(5.0, 6.0, 7.0), FullPoint(5.0, 6.0, 8.0)));
    EXPECT_EQ(ANGLE_UNDEFINED, Azimuth(PlanPoint(0.0, -0.0), PlanPoint(-0.0, 0.0)));
}

TEST(AzimuthBetween, NeedsNoMoreThanTheSmallestDifference)
{
    const double nearOne = std::nextafter(1.0, 2.0);
    EXPECT_EQ(0, Azimuth(PlanPoint(1.0, 1.0), PlanPoint(nearOne, 1.0)));
    EXPECT_EQ(QUARTER, Azimuth(PlanPoint(1.0, 1.0), PlanPoint(1.0, nearOne)));
    EXPECT_EQ(QUARTER, Azimuth(PlanPoint(0.0, 0.0), PlanPoint(0.0, TINY)));
}

TEST(AzimuthBetween, IsUndefinedWithoutPlanCoordinates)
{
    const PointRecord origin = FullPoint(0.0, 0.0, 0.0);
    const PointRecord east = FullPoint(0.0, 1.0, 0.0);
    for (const int flags : {0, 2, 0xFFFE})
    {
        EXPECT_EQ(ANGLE_UNDEFINED, Azimuth(WithFlags(origin, flags), east)) << flags;
        EXPECT_EQ(ANGLE_UNDEFINED, Azimuth(origin, WithFlags(east, flags))) << flags;
        EXPECT_EQ(ANGLE_UNDEFINED, Azimuth(WithFlags(origin, flags), WithFlags(east, flags))) << flags;
    }
}

TEST(AzimuthBetween, FollowsTheAzimuthReference)
{
    support::FakeInstrument instrument;
    instrument.azimuthReference = 1;
    const PointRecord origin = PlanPoint(0.0, 0.0);
    EXPECT_EQ(HALF, Azimuth(origin, PlanPoint(1.0, 0.0)));
    EXPECT_EQ(15552000, Azimuth(origin, PlanPoint(0.0, 1.0)));
    EXPECT_EQ(0, Azimuth(origin, PlanPoint(-1.0, 0.0)));
    EXPECT_EQ(QUARTER, Azimuth(origin, PlanPoint(0.0, -1.0)));
    instrument.azimuthReference = 2;
    EXPECT_EQ(QUARTER, Azimuth(origin, PlanPoint(0.0, 1.0)));
}

TEST(AzimuthBetween, DoesNotTurnTheUndefinedAngle)
{
    support::FakeInstrument instrument;
    instrument.azimuthReference = 1;
    EXPECT_EQ(ANGLE_UNDEFINED, Azimuth(PlanPoint(0.0, 0.0), PlanPoint(0.0, 0.0)));
    EXPECT_EQ(ANGLE_UNDEFINED, Azimuth(PlanPoint(0.0, 0.0), WithFlags(PlanPoint(0.0, 1.0), 2)));
    EXPECT_TRUE(instrument.reads.empty());
}

TEST(AzimuthBetween, AsksTheReferenceOnceACall)
{
    support::FakeInstrument instrument;
    Azimuth(PlanPoint(0.0, 0.0), PlanPoint(0.0, 1.0));
    EXPECT_THAT(instrument.reads, testing::ElementsAre(support::IntRead(49411)));
}

// --- zenith angle ---

TEST(ZenithBetween, CountsFromStraightUp)
{
    const PointRecord origin = FullPoint(0.0, 0.0, 0.0);
    EXPECT_EQ(0, Zenith(origin, FullPoint(0.0, 0.0, 10.0)));
    EXPECT_EQ(QUARTER / 2, Zenith(origin, FullPoint(0.0, 1.0, 1.0)));
    EXPECT_EQ(QUARTER, Zenith(origin, FullPoint(1.0, 0.0, 0.0)));
    EXPECT_EQ(7776000, Zenith(origin, FullPoint(-1.0, 0.0, -1.0)));
    EXPECT_EQ(HALF, Zenith(origin, FullPoint(0.0, 0.0, -10.0)));
}

TEST(ZenithBetween, IsSecondMinusFirst)
{
    // Plan distance 5, rise 12: the zenith angle is atan(5/12) = 22.619864948 degrees = 1,302,904.2 units; falling, its
    // supplement.
    EXPECT_EQ(1302904, Zenith(FullPoint(10.0, 20.0, 30.0), FullPoint(13.0, 24.0, 42.0)));
    EXPECT_EQ(HALF - 1302904, Zenith(FullPoint(13.0, 24.0, 42.0), FullPoint(10.0, 20.0, 30.0)));
}

TEST(ZenithBetween, TakesNorthingAndEastingAlike)
{
    // The same plan distance of 5 in other directions.
    for (const PointRecord& to : {FullPoint(5.0, 0.0, 12.0), FullPoint(0.0, -5.0, 12.0), FullPoint(-4.0, 3.0, 12.0)})
    {
        EXPECT_EQ(1302904, Zenith(FullPoint(0.0, 0.0, 0.0), to));
    }
}

TEST(ZenithBetween, IsUndefinedForEqualCoordinatesOnly)
{
    EXPECT_EQ(ANGLE_UNDEFINED, Zenith(FullPoint(1.0, 2.0, 3.0), FullPoint(1.0, 2.0, 3.0)));
    EXPECT_EQ(0, Zenith(FullPoint(1.0, 2.0, 1.0), FullPoint(1.0, 2.0, std::nextafter(1.0, 2.0))));
    EXPECT_EQ(QUARTER, Zenith(FullPoint(0.0, 0.0, 3.0), FullPoint(TINY, 0.0, 3.0)));
    EXPECT_EQ(QUARTER, Zenith(FullPoint(0.0, 0.0, 3.0), FullPoint(0.0, TINY, 3.0)));
}

TEST(ZenithBetween, TestsNoFlags)
{
    for (const int fromFlags : {0, 1, 2, 3})
    {
        for (const int toFlags : {0, 1, 2, 3})
        {
            const PointRecord from = WithFlags(FullPoint(0.0, 0.0, 0.0), fromFlags);
            EXPECT_EQ(1302904, Zenith(from, WithFlags(FullPoint(3.0, 4.0, 12.0), toFlags)));
            EXPECT_EQ(ANGLE_UNDEFINED, Zenith(from, WithFlags(FullPoint(0.0, 0.0, 0.0), toFlags)));
        }
    }
}

TEST(ZenithBetween, FormsNoSquares)
{
    // The plan distance neither overflows nor vanishes.
    const PointRecord origin = FullPoint(0.0, 0.0, 0.0);
    EXPECT_EQ(QUARTER / 2, Zenith(origin, FullPoint(HUGE_LENGTH, 0.0, HUGE_LENGTH)));
    EXPECT_EQ(QUARTER / 2, Zenith(origin, FullPoint(0.0, TINY, TINY)));
}

TEST(ZenithBetween, ReadsNoSetting)
{
    support::FakeInstrument instrument;
    instrument.azimuthReference = 1;
    EXPECT_EQ(1302904, Zenith(FullPoint(0.0, 0.0, 0.0), FullPoint(3.0, 4.0, 12.0)));
    EXPECT_TRUE(instrument.reads.empty());
}

// --- distances ---

TEST(PointDistances, MeasuresBetweenFullPoints)
{
    // 3, 4, 12: 5 in plan, 13 in space, all exact.
    Distances distances;
    EXPECT_EQ(0, Measure(FullPoint(10.0, 20.0, 30.0), FullPoint(13.0, 24.0, 42.0), distances));
    EXPECT_TRUE(SameBits(13.0, distances.slope));
    EXPECT_TRUE(SameBits(5.0, distances.horizontal));
    EXPECT_TRUE(SameBits(12.0, distances.heightDifference));
}

TEST(PointDistances, IsSecondMinusFirst)
{
    Distances distances;
    EXPECT_EQ(0, Measure(FullPoint(13.0, 24.0, 42.0), FullPoint(10.0, 20.0, 30.0), distances));
    EXPECT_TRUE(SameBits(13.0, distances.slope));
    EXPECT_TRUE(SameBits(5.0, distances.horizontal));
    EXPECT_TRUE(SameBits(-12.0, distances.heightDifference));
}

TEST(PointDistances, UsesTheHeightFieldOfASecondPointWithoutHeight)
{
    // 0, 0, 10 above (0, 0, 0) and a plan difference of 24: 26 in space.
    Distances distances;
    EXPECT_EQ(0, Measure(FullPoint(0.0, 0.0, 0.0), PlanPoint(24.0, 0.0, 10.0), distances));
    EXPECT_TRUE(SameBits(26.0, distances.slope));
    EXPECT_TRUE(SameBits(24.0, distances.horizontal));
    EXPECT_TRUE(SameBits(10.0, distances.heightDifference));
}

TEST(PointDistances, IsPlaneForAFirstPointWithoutHeight)
{
    Distances distances;
    EXPECT_EQ(0, Measure(PlanPoint(0.0, 0.0, 7.0), FullPoint(3.0, 4.0, 12.0), distances));
    EXPECT_TRUE(SameBits(5.0, distances.slope));
    EXPECT_TRUE(SameBits(5.0, distances.horizontal));
    EXPECT_TRUE(SameBits(0.0, distances.heightDifference));
    EXPECT_EQ(0, Measure(PlanPoint(0.0, 0.0, 7.0), PlanPoint(3.0, 4.0, 12.0), distances));
    EXPECT_TRUE(SameBits(5.0, distances.slope));
    EXPECT_TRUE(SameBits(0.0, distances.heightDifference));
}

TEST(PointDistances, WritesNothingWithoutPlanCoordinates)
{
    const PointRecord first = FullPoint(0.0, 0.0, 0.0);
    const PointRecord second = FullPoint(3.0, 4.0, 12.0);
    for (const int flags : {0, 2, 0xFFFE})
    {
        Distances distances;
        EXPECT_EQ(-1201, Measure(WithFlags(first, flags), second, distances)) << flags;
        EXPECT_TRUE(Untouched(distances));
        EXPECT_EQ(-1201, Measure(first, WithFlags(second, flags), distances)) << flags;
        EXPECT_TRUE(Untouched(distances));
    }
}

TEST(PointDistances, IsZeroForEqualPoints)
{
    Distances distances;
    EXPECT_EQ(0, Measure(FullPoint(3.0, 4.0, 5.0), FullPoint(3.0, 4.0, 5.0), distances));
    EXPECT_TRUE(SameBits(0.0, distances.slope));
    EXPECT_TRUE(SameBits(0.0, distances.horizontal));
    EXPECT_TRUE(SameBits(0.0, distances.heightDifference));
}

TEST(PointDistances, AddsTheSquaresOfHeightAndEastingFirst)
{
    // The squares of these differences are exact; added in another order they give another last bit.
    constexpr double N = 14756.8125;
    constexpr double E = 744.1812133789062;
    constexpr double H = 2033.2171630859375;
    const double expected = std::sqrt((H * H + E * E) + N * N);
    ASSERT_FALSE(SameBits(expected, std::sqrt(H * H + (E * E + N * N))));
    ASSERT_FALSE(SameBits(expected, std::sqrt((H * H + N * N) + E * E)));
    Distances distances;
    EXPECT_EQ(0, Measure(FullPoint(0.0, 0.0, 0.0), FullPoint(N, E, H), distances));
    EXPECT_TRUE(SameBits(expected, distances.slope));
}

TEST(PointDistances, FormsSquares)
{
    // sqrt(E * E + N * N) differs in the last bit from the hypotenuse function here; and squares vanish and overflow.
    constexpr double N = 426.24879455566406;
    constexpr double E = 3669.3543701171875;
    ASSERT_FALSE(SameBits(std::hypot(N, E), std::sqrt(E * E + N * N)));
    Distances distances;
    EXPECT_EQ(0, Measure(PlanPoint(0.0, 0.0), PlanPoint(N, E), distances));
    EXPECT_TRUE(SameBits(std::sqrt(E * E + N * N), distances.horizontal));
    EXPECT_EQ(0, Measure(FullPoint(0.0, 0.0, 0.0), FullPoint(0.0, TINY, TINY), distances));
    EXPECT_TRUE(SameBits(0.0, distances.horizontal));
    EXPECT_TRUE(SameBits(0.0, distances.slope));
    EXPECT_TRUE(SameBits(TINY, distances.heightDifference));
    EXPECT_EQ(0, Measure(FullPoint(0.0, 0.0, 0.0), FullPoint(HUGE_LENGTH, 0.0, 0.0), distances));
    EXPECT_TRUE(SameBits(INFINITE, distances.horizontal));
    EXPECT_TRUE(SameBits(INFINITE, distances.slope));
}
