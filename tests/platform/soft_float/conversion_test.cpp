#include <gtest/gtest.h>

#include <cstring>
#include <limits>

#include "real.h"

// Out of range the language gives these conversions no value: asked for by the names of the ABI.
extern "C" {
int32_t __aeabi_d2iz(double value);   // NOLINT
uint32_t __aeabi_d2uiz(double value); // NOLINT
int64_t __aeabi_d2lz(double value);   // NOLINT
uint64_t __aeabi_d2ulz(double value); // NOLINT
}

namespace {

using soft_float::BitsOf;
using soft_float::FromBits;
using soft_float::INFINITE;
using soft_float::QUIET_NAN;
using soft_float::SIGN;
using soft_float::SIGNALLING_NAN;
using soft_float::Unknown;

constexpr double INT64_RANGE = 0x1p63;
const double INFINITY_ITSELF = FromBits(INFINITE);
const double NAN_ITSELF = FromBits(QUIET_NAN);

uint32_t BitsOfSingle(float value)
{
    uint32_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

float SingleFromBits(uint32_t bits)
{
    float value = 0.0F;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

TEST(ToInt32, CutsOffAndEndsAtTheRange)
{
    EXPECT_EQ(-7, __aeabi_d2iz(-7.999));
    EXPECT_EQ(0, __aeabi_d2iz(-0.999));
    EXPECT_EQ(2147483647, __aeabi_d2iz(2147483647.5));
    EXPECT_EQ(2147483647, __aeabi_d2iz(2147483648.0));
    EXPECT_EQ(std::numeric_limits<int32_t>::min(), __aeabi_d2iz(-2147483648.5));
    EXPECT_EQ(std::numeric_limits<int32_t>::min(), __aeabi_d2iz(-1e300));
    EXPECT_EQ(2147483647, __aeabi_d2iz(INFINITY_ITSELF));
    EXPECT_EQ(0, __aeabi_d2iz(NAN_ITSELF));
}

TEST(ToUint32, CutsOffAndEndsAtTheRange)
{
    EXPECT_EQ(4000000000U, __aeabi_d2uiz(4000000000.75));
    EXPECT_EQ(0xFFFFFFFFU, __aeabi_d2uiz(4294967296.0));
    EXPECT_EQ(0xFFFFFFFFU, __aeabi_d2uiz(INFINITY_ITSELF));
    EXPECT_EQ(0U, __aeabi_d2uiz(-7.5));
    EXPECT_EQ(0U, __aeabi_d2uiz(-NAN_ITSELF));
}

// As the compiler's library has it: the magnitude as an unsigned integer, with its sign.
TEST(ToInt64, CutsOffAndWrapsBeyondTheRange)
{
    EXPECT_EQ(-9007199254740991, __aeabi_d2lz(-9007199254740991.0));
    EXPECT_EQ(5, __aeabi_d2lz(5.999));
    EXPECT_EQ(0, __aeabi_d2lz(-0.5));
    EXPECT_EQ(std::numeric_limits<int64_t>::min(), __aeabi_d2lz(-INT64_RANGE));
    EXPECT_EQ(std::numeric_limits<int64_t>::min(), __aeabi_d2lz(INT64_RANGE));
    EXPECT_EQ(-1, __aeabi_d2lz(1e300));
    EXPECT_EQ(1, __aeabi_d2lz(-INFINITY_ITSELF));
    EXPECT_EQ(0, __aeabi_d2lz(NAN_ITSELF));
}

TEST(ToUint64, CutsOffAndEndsAtTheRange)
{
    EXPECT_EQ(0x8000000000000800U, __aeabi_d2ulz(INT64_RANGE + 2048.0));
    EXPECT_EQ(4294967296U, __aeabi_d2ulz(4294967296.5));
    EXPECT_EQ(~uint64_t{0}, __aeabi_d2ulz(0x1p64));
    EXPECT_EQ(0U, __aeabi_d2ulz(-3.5));
    EXPECT_EQ(0U, __aeabi_d2ulz(NAN_ITSELF));
}

// 2^53 + 1 lies between 2^53 and 2^53 + 2; 2^53 + 3 between 2^53 + 2 and 2^53 + 4.
TEST(FromInt64, RoundsATieToEven)
{
    constexpr int64_t TWO_53 = int64_t{1} << 53U;
    EXPECT_EQ(BitsOf(0x1p53), BitsOf(static_cast<double>(Unknown(TWO_53 + 1))));
    EXPECT_EQ(BitsOf(0x1.0000000000002p53), BitsOf(static_cast<double>(Unknown(TWO_53 + 3))));
    EXPECT_EQ(BitsOf(-0x1.0000000000002p53), BitsOf(static_cast<double>(Unknown(-TWO_53 - 3))));
    EXPECT_EQ(BitsOf(-0x1p63), BitsOf(static_cast<double>(Unknown(std::numeric_limits<int64_t>::min()))));
    EXPECT_EQ(BitsOf(0x1p64), BitsOf(static_cast<double>(Unknown(~uint64_t{0}))));
    EXPECT_EQ(0U, BitsOf(static_cast<double>(Unknown(int64_t{0}))));
}

TEST(FromInt32, IsExact)
{
    EXPECT_EQ(BitsOf(-0x1p31), BitsOf(static_cast<double>(Unknown(std::numeric_limits<int32_t>::min()))));
    EXPECT_EQ(BitsOf(20735999.0), BitsOf(static_cast<double>(Unknown(int32_t{20735999}))));
    EXPECT_EQ(BitsOf(4294967295.0), BitsOf(static_cast<double>(Unknown(uint32_t{4294967295U}))));
}

// Single precision has 24 bits: 2^24 + 1 is a tie. Its least number is 2^-149, the greatest below 2^128.
TEST(ToSingle, RoundsOnceToSubnormalNumbersAndInfinity)
{
    EXPECT_EQ(BitsOfSingle(0x1p24F), BitsOfSingle(static_cast<float>(Unknown(16777217.0))));
    EXPECT_EQ(BitsOfSingle(0x1.000004p24F), BitsOfSingle(static_cast<float>(Unknown(16777219.0))));
    EXPECT_EQ(0U, BitsOfSingle(static_cast<float>(Unknown(0x1p-150))));
    EXPECT_EQ(1U, BitsOfSingle(static_cast<float>(Unknown(0x1.0000000000001p-150))));
    EXPECT_EQ(0x80000002U, BitsOfSingle(static_cast<float>(Unknown(-0x1.8p-149))));
    EXPECT_EQ(0x00800000U, BitsOfSingle(static_cast<float>(Unknown(0x1.ffffffp-127))));
    EXPECT_EQ(0x7F800000U, BitsOfSingle(static_cast<float>(Unknown(0x1.ffffffp127))));
    EXPECT_EQ(0x7F7FFFFFU, BitsOfSingle(static_cast<float>(Unknown(0x1.fffffefffffffp127))));
}

TEST(Nan, KeepsWhatFitsOfItsPayload)
{
    EXPECT_EQ(0xFFC12345U, BitsOfSingle(static_cast<float>(Unknown(FromBits(0xFFF02468A0000000)))));
    EXPECT_EQ(0xFFF82468A0000000U, BitsOf(static_cast<double>(Unknown(SingleFromBits(0xFF812345)))));
    EXPECT_EQ(0x7FC00000U, BitsOfSingle(static_cast<float>(Unknown(FromBits(SIGNALLING_NAN)))));
    EXPECT_EQ(SIGN | INFINITE, BitsOf(static_cast<double>(Unknown(SingleFromBits(0xFF800000)))));
}

} // namespace
