#include "core/real_bits.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

using namespace qstdlib;

namespace {

using Limits = std::numeric_limits<double>;

// A positive number and the fields that the format gives it: exponent biased by 1023, 52 bits of significand.
struct Pattern
{
    double value;
    uint64_t exponent;
    uint64_t significand;
};

constexpr uint64_t ALL_ONES = UINT64_C(0xFFFFFFFFFFFFF);

const std::vector<Pattern> PATTERNS = {
    {0.0, 0, 0},
    {4.9406564584124654e-324, 0, 1},          // 2^-1074, the least subnormal
    {2.225073858507201e-308, 0, ALL_ONES},    // the greatest subnormal
    {2.2250738585072014e-308, 1, 0},          // 2^-1022
    {1.0, 1023, 0},                           //
    {1.9999999999999998, 1023, ALL_ONES},     // 2 - 2^-52
    {2.5, 1024, UINT64_C(1) << 50U},          // 2 (1 + 1/4)
    {1.7976931348623157e308, 2046, ALL_ONES}, // the greatest finite number
    {Limits::infinity(), 2047, 0},            //
    {Limits::quiet_NaN(), 2047, UINT64_C(1) << 51U},
};

uint64_t Bits(const Pattern& pattern)
{
    return (pattern.exponent << 52U) | pattern.significand;
}

} // namespace

TEST(RealBits, AreThoseOfTheFormat)
{
    for (const Pattern& p : PATTERNS)
    {
        EXPECT_EQ(Bits(p), BitsOf(p.value)) << p.value;
        EXPECT_EQ(Bits(p) + (UINT64_C(1) << 63U), BitsOf(std::copysign(p.value, -1.0))) << p.value;
    }
}

TEST(RealBits, MakeTheNumberThatTheyCameFrom)
{
    for (const Pattern& p : PATTERNS)
    {
        for (const uint64_t sign : {UINT64_C(0), UINT64_C(1) << 63U})
        {
            EXPECT_EQ(sign + Bits(p), BitsOf(FromBits(sign + Bits(p)))) << p.value;
        }
    }
    EXPECT_EQ(-2.5, FromBits(UINT64_C(0xC004000000000000)));
}

TEST(MagnitudeBits, LeaveOutTheSign)
{
    for (const Pattern& p : PATTERNS)
    {
        EXPECT_EQ(Bits(p), MagnitudeBits(p.value)) << p.value;
        EXPECT_EQ(Bits(p), MagnitudeBits(std::copysign(p.value, -1.0))) << p.value;
    }
}

// The table rises, and ends with infinity and NaN.
TEST(MagnitudeBits, SortAsMagnitudesDo)
{
    for (size_t i = 0; i < PATTERNS.size(); ++i)
    {
        for (size_t j = 0; j < i; ++j)
        {
            const double smaller = std::copysign(PATTERNS[j].value, -1.0);
            EXPECT_LT(MagnitudeBits(smaller), MagnitudeBits(PATTERNS[i].value)) << smaller << ' ' << PATTERNS[i].value;
        }
    }
}

// NaN has many patterns, and signals or does not.
TEST(RealBits, PlaceEveryNaNAboveInfinity)
{
    for (const uint64_t bits : {UINT64_C(0x7FF0000000000001), UINT64_C(0x7FF7FFFFFFFFFFFF),
                                UINT64_C(0x7FF8000000000000), UINT64_C(0x7FFFFFFFFFFFFFFF)})
    {
        EXPECT_GT(MagnitudeBits(FromBits(bits | SIGN_BIT)), INFINITY_BITS);
        EXPECT_GT(MagnitudeBits(FromBits(bits)), INFINITY_BITS);
        EXPECT_FALSE(IsFinite(FromBits(bits)));
        EXPECT_FALSE(IsZero(FromBits(bits)));
    }
    EXPECT_EQ(INFINITY_BITS, MagnitudeBits(-Limits::infinity()));
}

TEST(IsZero, HoldsForZeroOfEitherSignOnly)
{
    EXPECT_TRUE(IsZero(0.0));
    EXPECT_TRUE(IsZero(-0.0));
    for (size_t i = 1; i < PATTERNS.size(); ++i)
    {
        EXPECT_FALSE(IsZero(PATTERNS[i].value)) << PATTERNS[i].value;
        EXPECT_FALSE(IsZero(std::copysign(PATTERNS[i].value, -1.0))) << PATTERNS[i].value;
    }
}

TEST(IsNegative, LooksAtTheSignBit)
{
    for (const Pattern& p : PATTERNS)
    {
        EXPECT_FALSE(IsNegative(p.value)) << p.value;
        EXPECT_TRUE(IsNegative(std::copysign(p.value, -1.0))) << p.value;
    }
}

TEST(IsFinite, ExcludesInfinityAndNaN)
{
    for (const Pattern& p : PATTERNS)
    {
        const bool expected = p.exponent != 2047;
        EXPECT_EQ(expected, IsFinite(p.value)) << p.value;
        EXPECT_EQ(expected, IsFinite(std::copysign(p.value, -1.0))) << p.value;
    }
}

// Against the operator, on all pairs of values of either sign.
TEST(AreEqual, IsTheOperatorWithoutItsCall)
{
    std::vector<double> values;
    for (const Pattern& p : PATTERNS)
    {
        values.push_back(p.value);
        values.push_back(std::copysign(p.value, -1.0));
    }
    for (const double a : values)
    {
        for (const double b : values)
        {
            EXPECT_EQ(a == b, AreEqual(a, b)) << a << ' ' << b;
        }
    }
    EXPECT_TRUE(AreEqual(0.0, -0.0));
    EXPECT_FALSE(AreEqual(Limits::quiet_NaN(), Limits::quiet_NaN()));
}

TEST(IsWithin, ComparesTheMagnitudeWithALimit)
{
    for (const Pattern& limit : PATTERNS)
    {
        if (limit.value > 0.0) // neither zero nor NaN
        {
            for (const Pattern& p : PATTERNS)
            {
                EXPECT_EQ(p.value < limit.value, IsWithin(p.value, limit.value)) << p.value << ' ' << limit.value;
                EXPECT_EQ(p.value < limit.value, IsWithin(std::copysign(p.value, -1.0), limit.value)) << p.value;
            }
        }
    }
}
