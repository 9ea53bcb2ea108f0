#include <gtest/gtest.h>

#include <vector>

#include "real.h"

namespace {

using soft_float::FromBits;
using soft_float::INFINITE;
using soft_float::QUIET_NAN;
using soft_float::SIGN;
using soft_float::SIGNALLING_NAN;
using soft_float::Unknown;

// <, <=, ==, >=, >, != and unordered, of the bits 1, 2, 4 and so on.
unsigned Relations(double first, double second)
{
    const double a = Unknown(first);
    const double b = Unknown(second);
    return (a < b ? 1U : 0U) | (a <= b ? 2U : 0U) | (a == b ? 4U : 0U) | (a >= b ? 8U : 0U) | (a > b ? 16U : 0U) |
           (a != b ? 32U : 0U) | (__builtin_isunordered(a, b) != 0 ? 64U : 0U);
}

constexpr unsigned LESS = 1 + 2 + 32;
constexpr unsigned EQUAL = 2 + 4 + 8;
constexpr unsigned GREATER = 8 + 16 + 32;
constexpr unsigned UNORDERED = 32 + 64;

TEST(Comparison, FollowsTheOrderOfTheNumbers)
{
    const std::vector<double> ascending = {FromBits(SIGN | INFINITE),
                                           -1e300,
                                           -3.5,
                                           -0x1.0000000000001p1,
                                           -2.0,
                                           -5e-324,
                                           0.0,
                                           5e-324,
                                           2.5e-308,
                                           0.75,
                                           0x1.0000000000001p1,
                                           1e300,
                                           FromBits(INFINITE)};
    for (size_t i = 0; i < ascending.size(); ++i)
    {
        for (size_t k = 0; k < ascending.size(); ++k)
        {
            EXPECT_EQ(i < k ? LESS : (i == k ? EQUAL : GREATER), Relations(ascending[i], ascending[k]))
                << i << ' ' << k;
        }
    }
}

TEST(Comparison, TakesBothZerosForTheSame)
{
    EXPECT_EQ(EQUAL, Relations(0.0, -0.0));
    EXPECT_EQ(EQUAL, Relations(-0.0, 0.0));
    EXPECT_EQ(EQUAL, Relations(-0.0, -0.0));
}

TEST(Comparison, WithANaNOnlyIsUnequal)
{
    for (const uint64_t nan : {QUIET_NAN, SIGNALLING_NAN, SIGN | QUIET_NAN, SIGN | SIGNALLING_NAN})
    {
        for (const double other : {-2.5, -0.0, 0.0, 2.5, FromBits(INFINITE), FromBits(SIGN | INFINITE), FromBits(nan)})
        {
            EXPECT_EQ(UNORDERED, Relations(FromBits(nan), other));
            EXPECT_EQ(UNORDERED, Relations(other, FromBits(nan)));
        }
    }
}

} // namespace
