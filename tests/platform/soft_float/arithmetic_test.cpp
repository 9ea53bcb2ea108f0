// What arithmetic must do at known places; same_arithmetic compares it with the host's everywhere else.
#include <gtest/gtest.h>

#include <cerrno>
#include <cmath>
#include <limits>

#include "real.h"

namespace {

using soft_float::BitsOf;
using soft_float::FromBits;
using soft_float::INFINITE;
using soft_float::QUIET_NAN;
using soft_float::SIGN;
using soft_float::SIGNALLING_NAN;
using soft_float::SIGNALLING_NAN_QUIETED;
using soft_float::Unknown;

constexpr double MOST = std::numeric_limits<double>::max();
constexpr double LEAST_NORMAL = std::numeric_limits<double>::min();
constexpr double LEAST = std::numeric_limits<double>::denorm_min();

uint64_t Sum(double a, double b)
{
    return BitsOf(Unknown(a) + Unknown(b));
}

uint64_t Difference(double a, double b)
{
    return BitsOf(Unknown(a) - Unknown(b));
}

uint64_t Product(double a, double b)
{
    return BitsOf(Unknown(a) * Unknown(b));
}

uint64_t Quotient(double a, double b)
{
    return BitsOf(Unknown(a) / Unknown(b));
}

uint64_t Root(double a)
{
    return BitsOf(std::sqrt(Unknown(a)));
}

// Where the exponents are 33 apart and the difference falls below the first number's leading bit, the compiler's
// library loses a bit.
TEST(Difference, LosesNoBitWhereExponentsAre33Apart)
{
    EXPECT_EQ(BitsOf(0x1.fffffffe83f32p-1), Difference(1.0, 1.7282690293887698e-10));
    EXPECT_EQ(BitsOf(-0x1.fffffffe83f32p-1), Difference(1.7282690293887698e-10, 1.0));
    // In units of 2^-53: 2^57 - 0x1726775 = 0x1fffffffe8d988b. 53 bits of it are 0x1fffffffe8d988, the rest is b / 16.
    EXPECT_EQ(BitsOf(0x1.fffffffe8d989p3), Difference(16.0, 0x1.726775p-29));
    EXPECT_EQ(BitsOf(0x1.fffffffe8d989p3), Sum(16.0, -0x1.726775p-29));
    EXPECT_EQ(BitsOf(-0x1.fffffffe8d989p3), Sum(0x1.726775p-29, -16.0));
}

// The last bit of 1 counts 2^-52, that of the number before it 2^-53.
TEST(Sum, RoundsATieToEven)
{
    EXPECT_EQ(BitsOf(1.0), Sum(1.0, 0x1p-53));
    EXPECT_EQ(BitsOf(0x1.0000000000001p0), Sum(1.0, 0x1.0000000000001p-53));
    EXPECT_EQ(BitsOf(0x1.0000000000002p0), Sum(0x1.0000000000001p0, 0x1p-53));
    EXPECT_EQ(BitsOf(1.0), Difference(1.0, 0x1p-54));
    EXPECT_EQ(BitsOf(0x1.fffffffffffffp-1), Difference(1.0, 0x1.0000000000001p-54));
    EXPECT_EQ(BitsOf(0x1.ffffffffffffep0), Difference(0x1.fffffffffffffp0, 0x1p-53));
}

TEST(Sum, CarriesIntoTheNextExponentAndToInfinity)
{
    EXPECT_EQ(BitsOf(2.0), Sum(0x1.fffffffffffffp0, 0x1p-53));
    EXPECT_EQ(INFINITE, Sum(MOST, 0x1p970)); // half of the last bit, 2^971
    EXPECT_EQ(BitsOf(MOST), Sum(MOST, 0x1.fffffffffffffp969));
    EXPECT_EQ(SIGN | INFINITE, Sum(-MOST, -MOST));
}

TEST(Sum, IsExactAmongSubnormalNumbers)
{
    EXPECT_EQ(BitsOf(LEAST_NORMAL), Sum(LEAST_NORMAL - LEAST, LEAST));
    EXPECT_EQ(BitsOf(LEAST), Difference(LEAST_NORMAL, FromBits(0x000FFFFFFFFFFFFF)));
}

TEST(Sum, GivesAZeroItsSign)
{
    EXPECT_EQ(0U, Sum(0.0, -0.0));
    EXPECT_EQ(SIGN, Sum(-0.0, -0.0));
    EXPECT_EQ(0U, Difference(-0.0, -0.0));
    EXPECT_EQ(SIGN, Difference(-0.0, 0.0));
    EXPECT_EQ(0U, Difference(5.25, 5.25));
    EXPECT_EQ(0U, Sum(-5.25, 5.25));
}

// (1 + 2^-26) (1 + 2^-27) = 1 + 2^-26 + 2^-27 + 2^-53: half of the last bit. (1 + 2^-26) (1 + 3 2^-27) ends in 3 2^-53.
TEST(Product, RoundsATieToEven)
{
    EXPECT_EQ(BitsOf(0x1.0000006p0), Product(0x1.0000004p0, 0x1.0000002p0));
    EXPECT_EQ(BitsOf(0x1.000000a000002p0), Product(0x1.0000004p0, 0x1.0000006p0));
}

TEST(Product, RoundsASubnormalNumberOnce)
{
    EXPECT_EQ(0U, Product(LEAST, 0.5)); // a tie
    EXPECT_EQ(BitsOf(LEAST), Product(LEAST, 0x1.0000000000001p-1));
    // (2^53 - 1) 2^-1075, half-way between 2^52 - 1 and 2^52 times the least number
    EXPECT_EQ(BitsOf(LEAST_NORMAL), Product(0x1.fffffffffffffp-512, 0x1p-511));
}

TEST(Product, OverflowsToInfinity)
{
    EXPECT_EQ(INFINITE, Product(0x1p512, 0x1p512));
    EXPECT_EQ(BitsOf(MOST), Product(0x1.fffffffffffffp511, 0x1p512));
    EXPECT_EQ(SIGN | INFINITE, Product(-0x1.8p1023, 0x1.8p0));
}

TEST(Product, OfZeroHasASign)
{
    EXPECT_EQ(SIGN, Product(0.0, -7.5));
    EXPECT_EQ(0U, Product(-0.0, -7.5));
    EXPECT_EQ(SIGN, Product(MOST, -0.0));
}

// In binary, 1/3 is 0.010101...: of 53 bits the last ones are 01, and 0101 follows.
TEST(Quotient, RoundsToNearest)
{
    EXPECT_EQ(BitsOf(0x1.5555555555555p-2), Quotient(1.0, 3.0));
    EXPECT_EQ(BitsOf(0x1.5555555555555p-1), Quotient(2.0, 3.0));
    EXPECT_EQ(BitsOf(-0x1.8p1), Quotient(-7.5, 2.5));
}

// Exponents as far apart as the quick way takes them, and one farther.
TEST(Quotient, ReachesSubnormalNumbersAndInfinity)
{
    EXPECT_EQ(BitsOf(0x1p-1023), Quotient(0x1p-511, 0x1p512));
    EXPECT_EQ(BitsOf(-0x1.8p-1022), Quotient(0x1.8p-511, -0x1p511));
    EXPECT_EQ(BitsOf(0x1p1023), Quotient(0x1p512, 0x1p-511));
    EXPECT_EQ(INFINITE, Quotient(0x1p513, 0x1p-511));
    EXPECT_EQ(0U, Quotient(LEAST, 2.0)); // a tie
    EXPECT_EQ(BitsOf(LEAST), Quotient(LEAST, 0x1.fffffffffffffp0));
}

TEST(Quotient, ByZeroIsInfinite)
{
    EXPECT_EQ(SIGN | INFINITE, Quotient(2.5, -0.0));
    EXPECT_EQ(SIGN, Quotient(-2.5, FromBits(INFINITE)));
}

// (1 + 2^-53)^2 = 1 + 2^-52 + 2^-106 is just above 1 + 2^-52, whose root is so just below half-way between two doubles.
TEST(Root, OfTheNumberAfterOneIsOne)
{
    EXPECT_EQ(BitsOf(1.0), Root(0x1.0000000000001p0));
    EXPECT_EQ(BitsOf(0x1.fffffffffffffp-1), Root(0x1.fffffffffffffp-1)); // (1 - 2^-54)^2 is above 1 - 2^-53
}

// 94906265^2 = 9007199136250225, an integer of 53 bits; 1.125 2^-1039 = 2.25 2^-1040.
TEST(Root, OfASquareIsExact)
{
    EXPECT_EQ(BitsOf(94906265.0), Root(94906265.0 * 94906265.0));
    EXPECT_EQ(BitsOf(0x1.8p-520), Root(0x1.2p-1039));
    EXPECT_EQ(BitsOf(0x1p-537), Root(LEAST));
    EXPECT_EQ(BitsOf(0x1.8p511), Root(0x1.2p1023));
}

TEST(Root, OfANegativeNumberIsNaNAndLeavesErrnoAlone)
{
    errno = 0;
    EXPECT_EQ(QUIET_NAN, Root(-2.25));
    EXPECT_EQ(QUIET_NAN, Root(FromBits(SIGN | INFINITE)));
    EXPECT_EQ(0, errno);
    EXPECT_EQ(SIGN, Root(-0.0));
    EXPECT_EQ(INFINITE, Root(FromBits(INFINITE)));
}

TEST(Invalid, OperationsGiveTheNaNOfTheProcessorFamily)
{
    const double infinity = FromBits(INFINITE);
    EXPECT_EQ(QUIET_NAN, Difference(infinity, infinity));
    EXPECT_EQ(QUIET_NAN, Product(0.0, -infinity));
    EXPECT_EQ(QUIET_NAN, Quotient(infinity, -infinity));
    EXPECT_EQ(QUIET_NAN, Quotient(-0.0, 0.0));
}

TEST(Nan, OfTheOperandsIsTheResultMadeQuiet)
{
    const double signalling = FromBits(SIGNALLING_NAN);
    const double other = FromBits(0xFFF8000000C0FFEE);
    EXPECT_EQ(SIGNALLING_NAN_QUIETED, Sum(signalling, 2.5));
    EXPECT_EQ(SIGNALLING_NAN_QUIETED, Product(2.5, signalling));
    EXPECT_EQ(SIGNALLING_NAN_QUIETED, Quotient(signalling, 0.0));
    EXPECT_EQ(SIGNALLING_NAN_QUIETED, Quotient(FromBits(INFINITE), signalling));
    EXPECT_EQ(SIGNALLING_NAN_QUIETED, Root(signalling));
    // Of two the first one; a quotient's operands are not exchanged by the compiler.
    EXPECT_EQ(SIGNALLING_NAN_QUIETED, Quotient(signalling, other));
    EXPECT_EQ(0xFFF8000000C0FFEE, Quotient(other, signalling));
    // What is subtracted comes out with its sign turned.
    EXPECT_EQ(SIGN | SIGNALLING_NAN_QUIETED, Difference(2.5, signalling));
}

} // namespace
