#include "results/result.h"

#include <limits>

#include <gtest/gtest.h>

using qstd::AngleOf;
using qstd::AngleValue;
using qstd::HeightOf;
using qstd::RealValue;

TEST(Value, OfALengthIsNothingWhereItIsUndetermined)
{
    EXPECT_EQ(std::get<double>(RealValue(-12.5)), -12.5);
    EXPECT_EQ(RealValue(UNDEFINED_REAL).index(), 0U);
    EXPECT_EQ(RealValue(std::numeric_limits<double>::infinity()).index(), 0U);
    EXPECT_EQ(RealValue(std::numeric_limits<double>::quiet_NaN()).index(), 0U);
}

TEST(Value, OfAnAngleIsNothingWhereItIsUndefined)
{
    EXPECT_EQ(std::get<AngleValue>(AngleOf(-16)).units, -16);
    EXPECT_EQ(AngleOf(ANGLE_UNDEFINED).index(), 0U);
}

TEST(Value, OfAHeightNeedsItsFlag)
{
    EXPECT_EQ(std::get<double>(HeightOf({1.0, 2.0, 3.0, 3})), 3.0);
    EXPECT_EQ(HeightOf({1.0, 2.0, 3.0, POINT_HAS_PLAN}).index(), 0U);
}
