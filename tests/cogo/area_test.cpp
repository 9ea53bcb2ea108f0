#include "cogo/area.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "qstdlib.h"
#include "tests/support/geometry.h"
#include "tests/support/record.h"

using support::FullPoint;
using support::PlanPoint;
using support::WithFlags;

namespace {

using Corners = std::vector<PointRecord>;

double Area(const Corners& corners)
{
    return QCogoCalcArea(corners.data(), static_cast<int32_t>(corners.size()));
}

Corners Reversed(const Corners& corners)
{
    return {corners.rbegin(), corners.rend()};
}

PointRecord Invalid()
{
    return WithFlags(PlanPoint(1e6, -1e6), 2);
}

const Corners UNIT_SQUARE = {PlanPoint(0.0, 0.0), PlanPoint(0.0, 1.0), PlanPoint(1.0, 1.0), PlanPoint(1.0, 0.0)};

// A triangle (2^27, 0), (0, 2^27), (-count / 2^27, 2^27) whose third side carries `count` corners. Its first cross
// product is 2^54, each one along the third side is 1, and the closing one -2^54: all exact, twice the area is `count`.
// At 2^54 doubles lie 4 apart, so a plain sum would lose each 1.
Corners LongTriangle(int count)
{
    const double far = std::ldexp(1.0, 27);
    Corners corners = {PlanPoint(far, 0.0), PlanPoint(0.0, far)};
    for (int i = 1; i <= count; ++i)
    {
        corners.push_back(PlanPoint(-i / far, far));
    }
    return corners;
}

// Corners (0, 0), (0, 1) ... (0, count - 2) and (1, 0): half of the base count - 2.
Corners Fan(size_t count)
{
    Corners corners;
    for (size_t i = 0; i + 1 < count; ++i)
    {
        corners.push_back(PlanPoint(0.0, static_cast<double>(i)));
    }
    corners.push_back(PlanPoint(1.0, 0.0));
    return corners;
}

} // namespace

TEST(Area, IsTheSameInBothSenses)
{
    EXPECT_EQ(1.0, Area(UNIT_SQUARE));
    EXPECT_EQ(1.0, Area(Reversed(UNIT_SQUARE)));
}

TEST(Area, FollowsTheShoelaceFormula)
{
    // (2, 1), (4, 5), (-3, 7): cross products 5 * 2 - 4 * 1 = 6, 7 * 4 + 3 * 5 = 43, closing -3 * 1 - 2 * 7 = -17; the
    // closing one is first.easting * last.northing - first.northing * last.easting. 32 / 2 = 16.
    const Corners triangle = {PlanPoint(2.0, 1.0), PlanPoint(4.0, 5.0), PlanPoint(-3.0, 7.0)};
    EXPECT_EQ(16.0, Area(triangle));
    EXPECT_EQ(16.0, Area(Reversed(triangle)));
}

TEST(Area, TakesAnyCornerForTheFirst)
{
    // Cross products from (0, 0) on: 0, 6 * 1 - 5 * 4 = -14, 3 * 5 - 7 * 6 = -27, -1 * 7 - 4 * 3 = -19, 0; 60 / 2 = 30.
    Corners pentagon = {PlanPoint(0.0, 0.0), PlanPoint(1.0, 4.0), PlanPoint(5.0, 6.0), PlanPoint(7.0, 3.0),
                        PlanPoint(4.0, -1.0)};
    for (size_t i = 0; i < pentagon.size(); ++i)
    {
        EXPECT_EQ(30.0, Area(pentagon)) << i;
        pentagon.push_back(pentagon.front());
        pentagon.erase(pentagon.begin());
    }
}

TEST(Area, IsZeroForFewerThanThreeCorners)
{
    EXPECT_EQ(0.0, QCogoCalcArea(UNIT_SQUARE.data(), 0));
    EXPECT_EQ(0.0, QCogoCalcArea(UNIT_SQUARE.data(), 1));
    EXPECT_EQ(0.0, QCogoCalcArea(UNIT_SQUARE.data(), 2));
    // Even where the products are not finite.
    EXPECT_EQ(0.0, Area({PlanPoint(1e200, 1e200), PlanPoint(1e200, -1e200)}));
    // Three corners of the unit square: half of it.
    EXPECT_EQ(0.5, QCogoCalcArea(UNIT_SQUARE.data(), 3));
}

TEST(Area, VisitsNothingForANegativeCount)
{
    EXPECT_EQ(0.0, QCogoCalcArea(UNIT_SQUARE.data(), -1));
    EXPECT_EQ(0.0, QCogoCalcArea(UNIT_SQUARE.data(), std::numeric_limits<int32_t>::min()));
}

TEST(Area, IsZeroForCornersOnALine)
{
    EXPECT_EQ(0.0, Area({PlanPoint(0.0, 0.0), PlanPoint(1.0, 2.0), PlanPoint(3.0, 6.0)}));
    EXPECT_EQ(0.0, Area({PlanPoint(4.0, 7.0), PlanPoint(4.0, 7.0), PlanPoint(4.0, 7.0)}));
}

TEST(Area, LeavesOutCornersWithoutPlanCoordinates)
{
    for (const int flags : support::WITHOUT_PLAN)
    {
        for (size_t position = 0; position <= UNIT_SQUARE.size(); ++position)
        {
            Corners corners = UNIT_SQUARE;
            corners.insert(corners.begin() + static_cast<std::ptrdiff_t>(position), WithFlags(Invalid(), flags));
            EXPECT_EQ(1.0, Area(corners)) << "flags " << flags << " at " << position;
        }
    }
}

TEST(Area, CountsOnlyValidCorners)
{
    EXPECT_EQ(0.0, Area({Invalid(), PlanPoint(0.0, 0.0), Invalid(), PlanPoint(5.0, 5.0), Invalid(), Invalid()}));
    EXPECT_EQ(0.0, Area({Invalid(), Invalid(), Invalid()}));
    EXPECT_EQ(0.5, Area({Invalid(), PlanPoint(0.0, 0.0), Invalid(), PlanPoint(0.0, 1.0), PlanPoint(1.0, 0.0)}));
}

TEST(Area, TestsThePlanBitAlone)
{
    Corners corners = UNIT_SQUARE;
    corners[0].flags = 0xFFFF;
    corners[1].flags = 1;
    corners[2].flags = 0xFFFD;
    corners[3].flags = 3;
    EXPECT_EQ(1.0, Area(corners));
}

TEST(Area, ReadsNoHeight)
{
    Corners corners = UNIT_SQUARE;
    for (PointRecord& corner : corners)
    {
        corner = FullPoint(corner.northing, corner.easting, std::nan(""));
    }
    EXPECT_EQ(1.0, Area(corners));
}

TEST(Area, AllowsTheFirstCornerToBeRepeated)
{
    Corners corners = UNIT_SQUARE;
    corners.push_back(UNIT_SQUARE.front());
    EXPECT_EQ(1.0, Area(corners));
}

TEST(Area, KeepsWhatAPlainSumWouldLose)
{
    // The compensation is back at zero after every fourth corner.
    EXPECT_EQ(500.0, Area(LongTriangle(1000)));
    EXPECT_EQ(2.0, Area(LongTriangle(4)));
    const Corners backwards = Reversed(LongTriangle(1000));
    EXPECT_EQ(500.0, Area(backwards));
}

TEST(Area, AddsTheCompensationToTheClosingTermFirst)
{
    // With two corners the compensation is 2: -2^54 + 2 is exact, and with the sum 2^54 gives 2. Sum and compensation
    // alone would round to 2^54 and give 0.
    EXPECT_EQ(1.0, Area(LongTriangle(2)));
    // With one corner it is 1, and -2^54 + 1 lies half-way between two doubles, of which -2^54 is the even one: 0.
    EXPECT_EQ(0.0, Area(LongTriangle(1)));
}

TEST(Area, AddsTheCompensationToTheNextTerm)
{
    // Five corners: the compensation is 1, 2, -1, 0 and 1 again; 2^54 + 4 is the sum. -2^54 + 1 rounds to -2^54, and
    // 4 is left.
    EXPECT_EQ(2.0, Area(LongTriangle(5)));
    // Three: the sum is 2^54 + 4, the compensation -1. -2^54 - 1 rounds to -2^54: 4 again.
    EXPECT_EQ(2.0, Area(LongTriangle(3)));
    // Six: 2^54 + 4 and 2 is a tie that goes up to 2^54 + 8, the compensation is -2. -2^54 - 2 is a tie too and goes to
    // -2^54: 8.
    EXPECT_EQ(4.0, Area(LongTriangle(6)));
}

TEST(Area, StartsAfreshWithEachCall)
{
    EXPECT_EQ(1.0, Area(LongTriangle(2))); // leaves a compensation behind
    EXPECT_EQ(1.0, Area(UNIT_SQUARE));
    EXPECT_EQ(0.0, QCogoCalcArea(UNIT_SQUARE.data(), 2));
    EXPECT_EQ(1.0, Area(UNIT_SQUARE));
    const PointRecord stray = PlanPoint(100.0, -50.0);
    qstdlib::AddAreaVertex(&stray);
    qstdlib::AddAreaVertex(&stray);
    EXPECT_EQ(1.0, Area(UNIT_SQUARE));
}

TEST(Area, TakesAsManyCornersAsA16BitIndexReaches)
{
    EXPECT_EQ((32767 - 2) / 2.0, Area(Fan(32767)));
    EXPECT_EQ((32766 - 2) / 2.0, Area(Fan(32766)));
    EXPECT_EQ(0.0, Area(Fan(32768)));
}

TEST(Area, RejectsALongerListWhateverItHolds)
{
    Corners corners(40000, Invalid());
    std::copy(UNIT_SQUARE.begin(), UNIT_SQUARE.end(), corners.begin());
    EXPECT_EQ(1.0, QCogoCalcArea(corners.data(), 32767));
    EXPECT_EQ(0.0, QCogoCalcArea(corners.data(), 32768));
    EXPECT_EQ(0.0, QCogoCalcArea(corners.data(), 40000));
    EXPECT_EQ(0.0, QCogoCalcArea(UNIT_SQUARE.data(), std::numeric_limits<int32_t>::max()));
}
