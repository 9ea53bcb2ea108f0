// The quotients and roots that the platform forms by itself are the expectation: they are correctly rounded.
#include "core/soft_arithmetic.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/record.h"

using namespace qstdlib;
using support::BitsOf;
using support::SameBits;

namespace {

using Limits = std::numeric_limits<double>;

constexpr uint64_t LEADING = UINT64_C(1) << 52U;
constexpr uint64_t SIGN = UINT64_C(1) << 63U;
constexpr uint64_t ONE = UINT64_C(1023) << 52U; // the bits of 1.0

// Without a floating-point unit an operation takes many times as long.
#if defined(__SOFTFP__)
constexpr int32_t DRAWS = 100000;
#else
constexpr int32_t DRAWS = 1000000;
#endif

double Real(uint64_t bits)
{
    double value = 0.0;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

// Which NaN is left to the platform.
testing::AssertionResult Same(double expected, double actual)
{
    if (std::isnan(expected) && std::isnan(actual))
    {
        return testing::AssertionSuccess();
    }
    return SameBits(expected, actual);
}

void ExpectQuotient(double dividend, double divisor)
{
    EXPECT_TRUE(Same(dividend / divisor, SoftDivisor(divisor).Into(dividend)))
        << std::hexfloat << dividend << " / " << divisor;
}

void ExpectQuotients(const std::vector<double>& dividends, const std::vector<double>& divisors)
{
    for (const double divisor : divisors)
    {
        for (const double dividend : dividends)
        {
            for (const double sign : {1.0, -1.0})
            {
                ExpectQuotient(dividend, std::copysign(divisor, sign));
                ExpectQuotient(-dividend, std::copysign(divisor, sign));
            }
        }
    }
}

void ExpectRoot(double value)
{
    EXPECT_TRUE(Same(std::sqrt(value), SoftSquareRoot(value))) << std::hexfloat << value;
}

// Numbers from 1 to 2 at the edges of the significand: its ends, what lies next to every power of two in it, and runs
// of ones and zeros.
std::vector<double> EdgesFromOneToTwo()
{
    std::vector<double> edges = {Real(ONE), Real(ONE + LEADING - 1)};
    for (uint32_t bit = 0; bit < 52; ++bit)
    {
        const uint64_t power = UINT64_C(1) << bit;
        for (const uint64_t significand : {power - 1, power, power + 1, LEADING - power, LEADING - power - 1})
        {
            edges.push_back(Real(ONE + significand % LEADING));
        }
    }
    return edges;
}

std::vector<double> Scaled(std::vector<double> values, int exponent)
{
    for (double& value : values)
    {
        value = std::ldexp(value, exponent);
    }
    return values;
}

// Zero, subnormal, infinite, NaN, and the ends of the normal numbers.
const std::vector<double> SPECIAL_VALUES = {0.0,
                                            Limits::denorm_min(),
                                            std::ldexp(3.0, -1074),
                                            Limits::min() - Limits::denorm_min(),
                                            Limits::min(),
                                            1.0,
                                            1.5,
                                            Limits::max() / 2.0,
                                            Limits::max(),
                                            Limits::infinity(),
                                            Limits::quiet_NaN()};

} // namespace

TEST(SoftDivisor, DividesAtTheEdgesOfTheSignificand)
{
    const std::vector<double> edges = EdgesFromOneToTwo();
    for (const double divisor : edges)
    {
        const SoftDivisor soft(divisor);
        for (const double dividend : edges)
        {
            ASSERT_TRUE(SameBits(dividend / divisor, soft.Into(dividend)))
                << std::hexfloat << dividend << " / " << divisor;
        }
    }
}

// n / d with n = d + u, in units of the last place: 1 from either side; and 2 with n = 2 d + u.
TEST(SoftDivisor, DividesNextToOneAndTwo)
{
    for (const double divisor : EdgesFromOneToTwo())
    {
        const uint64_t bits = BitsOf(divisor);
        for (uint64_t units = 0; units <= 3; ++units)
        {
            ExpectQuotients(
                {Real(bits + units), Real(bits - units), 2.0 * Real(bits + units), 2.0 * Real(bits - units)},
                {divisor});
        }
    }
}

// 26 bits times 27 are a product that a number holds.
TEST(SoftDivisor, DividesWithoutRemainder)
{
    std::mt19937_64 random(41);
    for (int32_t i = 0; i < 10000; ++i)
    {
        const auto divisor = static_cast<double>(random() >> 38U);
        const auto quotient = static_cast<double>(random() >> 37U);
        if (divisor != 0.0)
        {
            const SoftDivisor soft(divisor);
            ASSERT_TRUE(SameBits(quotient, soft.Into(divisor * quotient))) << divisor << ' ' << quotient;
            ASSERT_TRUE(SameBits(-quotient, soft.Into(-(divisor * quotient)))) << divisor << ' ' << quotient;
        }
    }
    ExpectQuotients({0.0, 1.0, 3.0, 9.0, 12.0, 1e22}, {1.0, 2.0, 3.0, 4.0, 0.125});
}

TEST(SoftDivisor, DividesSpecialValues)
{
    ExpectQuotients(SPECIAL_VALUES, SPECIAL_VALUES);
}

// Quotients from 2^-1080 to 2^-1016 and from 2^1016 to beyond the greatest number.
TEST(SoftDivisor, DividesWhereTheQuotientLeavesTheNormalNumbers)
{
    const std::vector<double> some = {1.0, Real(ONE + 1), 4.0 / 3.0, 1.5, Real(ONE + LEADING - 1)};
    for (int exponent = 502; exponent <= 568; ++exponent)
    {
        ExpectQuotients(Scaled(some, -512), Scaled(some, exponent));
        ExpectQuotients(Scaled(some, 512), Scaled(some, -exponent));
    }
}

TEST(SoftDivisor, DividesNumbersByChance)
{
    std::mt19937_64 random(42);
    for (int32_t i = 0; i < DRAWS; ++i)
    {
        // Any bits at all one time, any significands the other.
        const uint64_t first = random();
        const uint64_t second = random();
        const bool isAny = i % 2 == 0;
        const double dividend = Real(isAny ? first : ONE + (first >> 12U));
        const double divisor = Real(isAny ? second : ONE + (second >> 12U));
        ASSERT_TRUE(Same(dividend / divisor, SoftDivisor(divisor).Into(dividend)))
            << std::hexfloat << dividend << " / " << divisor;
    }
}

TEST(SoftSquareRoot, ExtractsAtTheEdgesOfTheSignificand)
{
    for (const double edge : EdgesFromOneToTwo())
    {
        for (const int exponent : {0, 1, 2, -1, -2, 51, 52, 53, -1021, -1022, 1022, 1023})
        {
            ExpectRoot(std::ldexp(edge, exponent));
        }
    }
}

// 26 bits squared are exact; the numbers next to a square have roots next to its root.
TEST(SoftSquareRoot, ExtractsFromSquaresAndTheirNeighbours)
{
    std::mt19937_64 random(43);
    for (int32_t i = 0; i < 10000; ++i)
    {
        const auto root = static_cast<double>((random() >> 38U) + 1);
        const double square = root * root;
        ASSERT_TRUE(SameBits(root, SoftSquareRoot(square))) << root;
        ExpectRoot(std::nextafter(square, 0.0));
        ExpectRoot(std::nextafter(square, Limits::max()));
    }
}

// The square of a number of 53 bits, rounded, and of what lies half-way to the next one.
TEST(SoftSquareRoot, ExtractsFromRoundedSquares)
{
    std::mt19937_64 random(44);
    for (int32_t i = 0; i < 10000; ++i)
    {
        const double root = Real(ONE + (random() >> 12U));
        const double unit = std::ldexp(1.0, -52);
        for (const double square : {root * root, root * root + root * unit})
        {
            ExpectRoot(square);
            ExpectRoot(2.0 * square);
            ExpectRoot(std::nextafter(square, 0.0));
            ExpectRoot(std::nextafter(square, 8.0));
        }
    }
}

TEST(SoftSquareRoot, ExtractsFromSpecialValues)
{
    for (const double value : SPECIAL_VALUES)
    {
        ExpectRoot(value);
        ExpectRoot(-value);
    }
    EXPECT_TRUE(SameBits(-0.0, SoftSquareRoot(-0.0)));
    EXPECT_TRUE(std::isnan(SoftSquareRoot(-4.0)));
}

TEST(SoftSquareRoot, ExtractsFromNumbersByChance)
{
    std::mt19937_64 random(45);
    for (int32_t i = 0; i < DRAWS; ++i)
    {
        // Any positive bits one time, any significand from 1 to 4 the other.
        const uint64_t bits = random();
        const double value = i % 2 == 0 ? Real(bits & ~SIGN) : Real(ONE + (bits >> 11U));
        ASSERT_TRUE(Same(std::sqrt(value), SoftSquareRoot(value))) << std::hexfloat << value;
    }
}

// Whichever the platform takes.
TEST(Divisor, DividesLikeTheOperator)
{
    for (const double divisor : SPECIAL_VALUES)
    {
        const Divisor chosen(divisor);
        const HardDivisor hard(divisor);
        for (const double dividend : SPECIAL_VALUES)
        {
            EXPECT_TRUE(Same(dividend / divisor, chosen.Into(dividend))) << dividend << " / " << divisor;
            EXPECT_TRUE(Same(-dividend / divisor, hard.Into(-dividend))) << dividend << " / " << divisor;
        }
    }
    EXPECT_TRUE(SameBits(0.6, Divisor(5.0).Into(3.0)));
}

TEST(SquareRoot, ExtractsLikeTheLibrary)
{
    for (const double value : SPECIAL_VALUES)
    {
        EXPECT_TRUE(Same(std::sqrt(value), SquareRoot(value))) << value;
    }
    EXPECT_TRUE(SameBits(1.25, SquareRoot(1.5625)));
    EXPECT_TRUE(std::isnan(SquareRoot(-1.0)));
}
