#include "station/adjustment/adjust_result.h"

#include <cmath>

#include <gtest/gtest.h>

#include "tests/support/record.h"

using namespace qstdlib;
using support::SameBits;

namespace {

constexpr double EPSILON = 2.220446049250313e-16;
constexpr double CIRCLE = 6.283185307179586;
const double NOT_A_NUMBER = std::nan("");

} // namespace

TEST(IsLastIteration, SaysSoOfASquareSumBelowTheMachineEpsilon)
{
    for (const int32_t iteration : {1, 2, 7})
    {
        EXPECT_TRUE(IsLastIteration(iteration, std::nextafter(EPSILON, 0.0), 3.0)) << iteration;
        EXPECT_FALSE(IsLastIteration(iteration, EPSILON, 3.0)) << iteration;
    }
}

// 0.00390625 is 2^-10 of 4, less than a thousandth; 0.0041 is more.
TEST(IsLastIteration, SaysSoOfAChangeBelowAThousandth)
{
    for (const double sign : {1.0, -1.0})
    {
        EXPECT_TRUE(IsLastIteration(2, 4.0 + sign * 0.00390625, 4.0));
        EXPECT_FALSE(IsLastIteration(2, 4.0 + sign * 0.0041, 4.0));
    }
}

TEST(IsLastIteration, ComparesNothingInTheFirst)
{
    EXPECT_FALSE(IsLastIteration(1, 4.0, 4.0));
    EXPECT_TRUE(IsLastIteration(2, 4.0, 4.0));
}

// By the former square sum, not the new one: 1 of 1001 is less than a thousandth, 1 of 1000 is not.
TEST(IsLastIteration, TakesTheChangeAsAPartOfTheFormerSquareSum)
{
    EXPECT_TRUE(IsLastIteration(2, 1000.0, 1001.0));
    EXPECT_FALSE(IsLastIteration(2, 1001.0, 1000.0));
}

TEST(IsLastIteration, GoesOnWhereASquareSumIsNoNumber)
{
    EXPECT_FALSE(IsLastIteration(2, NOT_A_NUMBER, 1.0));
    EXPECT_FALSE(IsLastIteration(2, 1.0, NOT_A_NUMBER));
}

TEST(VarianceFactor, IsTheSquareSumByTheRedundancy)
{
    EXPECT_EQ(2.5, VarianceFactor(7.5, 3));
    EXPECT_EQ(7.5, VarianceFactor(7.5, 1));
}

TEST(VarianceFactor, IsTheSquareSumWithoutRedundancy)
{
    EXPECT_EQ(7.5, VarianceFactor(7.5, 0));
    EXPECT_EQ(7.5, VarianceFactor(7.5, -1));
}

TEST(ReduceOnce, TurnsByOneCircleAtMost)
{
    EXPECT_EQ(CIRCLE - 1.0, ReduceOnce(-1.0));
    EXPECT_EQ(10.0 - CIRCLE, ReduceOnce(10.0));
    EXPECT_EQ(CIRCLE - 20.0, ReduceOnce(-20.0));
    EXPECT_EQ(20.0 - CIRCLE, ReduceOnce(20.0));
    EXPECT_EQ(3.0, ReduceOnce(3.0));
}

TEST(ReduceOnce, LeavesAWholeCircleAndZero)
{
    EXPECT_TRUE(SameBits(CIRCLE, ReduceOnce(CIRCLE)));
    EXPECT_TRUE(SameBits(CIRCLE, ReduceOnce(-1e-16))) << "rounded up to a whole circle, which stays";
    EXPECT_TRUE(SameBits(-0.0, ReduceOnce(-0.0)));
}
