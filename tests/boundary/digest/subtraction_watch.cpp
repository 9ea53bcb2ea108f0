#include "subtraction_watch.h"

#include <cstring>

namespace digest {

namespace {

uint32_t wrongSums = 0;

} // namespace

void ForgetWrongSums()
{
    wrongSums = 0;
}

uint32_t WrongSums()
{
    return wrongSums;
}

} // namespace digest

#if defined(__arm__) && defined(__SOFTFP__)

namespace {

constexpr int32_t MANTISSA_BITS = 52;
constexpr uint64_t LEADING_BIT = uint64_t{1} << MANTISSA_BITS;
constexpr int32_t SUSPECT_SHIFT = 33;

uint64_t BitsOf(double value)
{
    uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

int32_t ExponentOf(uint64_t bits)
{
    return static_cast<int32_t>((bits >> MANTISSA_BITS) & 0x7FFU);
}

uint64_t MantissaOf(uint64_t bits)
{
    return (bits & (LEADING_BIT - 1)) | LEADING_BIT;
}

// The magnitude of `larger` less that of `smaller`, whose exponent is less by SUSPECT_SHIFT, in integers: ten bits more
// than a double has, the last of which says whether anything was cut off behind it. Rounded to nearest, ties to even.
uint64_t DifferenceOf(uint64_t larger, uint64_t smaller)
{
    constexpr int32_t MORE_BITS = 10;
    const uint64_t subtrahend = MantissaOf(smaller) << MORE_BITS;
    const bool isCut = (subtrahend & ((uint64_t{1} << SUSPECT_SHIFT) - 1)) != 0;
    uint64_t difference = (MantissaOf(larger) << MORE_BITS) - (subtrahend >> SUSPECT_SHIFT) - (isCut ? 1 : 0);
    uint64_t exponent = static_cast<uint64_t>(ExponentOf(larger));
    if (difference < LEADING_BIT << MORE_BITS)
    {
        difference <<= 1;
        --exponent;
    }
    difference |= isCut ? 1U : 0U;
    const uint64_t rest = difference & ((uint64_t{1} << MORE_BITS) - 1);
    constexpr uint64_t HALF = uint64_t{1} << (MORE_BITS - 1);
    difference >>= MORE_BITS;
    difference += rest > HALF || (rest == HALF && (difference & 1U) != 0) ? 1 : 0;
    // Rounded up to a power of two, the mantissa carries into the exponent.
    return (larger & (uint64_t{1} << 63)) | ((exponent << MANTISSA_BITS) + (difference - LEADING_BIT));
}

// No arithmetic with doubles here: it would come back.
void CheckSum(uint64_t a, uint64_t b, double sum)
{
    constexpr int32_t NO_NUMBER = 0x7FF;
    const int32_t apart = ExponentOf(a) - ExponentOf(b);
    const bool isSuspect = (apart == SUSPECT_SHIFT || apart == -SUSPECT_SHIFT) && ((a ^ b) >> 63) != 0;
    const uint64_t larger = apart > 0 ? a : b;
    const uint64_t smaller = apart > 0 ? b : a;
    if (isSuspect && ExponentOf(smaller) != 0 && ExponentOf(larger) != NO_NUMBER &&
        BitsOf(sum) != DifferenceOf(larger, smaller))
    {
        ++digest::wrongSums;
    }
}

constexpr uint64_t SIGN = uint64_t{1} << 63;

} // namespace

extern "C" {

double __real___aeabi_dadd(double a, double b);  // NOLINT: the linker gives the name
double __real___aeabi_dsub(double a, double b);  // NOLINT
double __real___aeabi_drsub(double a, double b); // NOLINT
double __wrap___aeabi_dadd(double a, double b);  // NOLINT
double __wrap___aeabi_dsub(double a, double b);  // NOLINT
double __wrap___aeabi_drsub(double a, double b); // NOLINT

double __wrap___aeabi_dadd(double a, double b) // NOLINT
{
    const double sum = __real___aeabi_dadd(a, b);
    CheckSum(BitsOf(a), BitsOf(b), sum);
    return sum;
}

double __wrap___aeabi_dsub(double a, double b) // NOLINT
{
    const double difference = __real___aeabi_dsub(a, b);
    CheckSum(BitsOf(a), BitsOf(b) ^ SIGN, difference);
    return difference;
}

// b - a
double __wrap___aeabi_drsub(double a, double b) // NOLINT
{
    const double difference = __real___aeabi_drsub(a, b);
    CheckSum(BitsOf(b), BitsOf(a) ^ SIGN, difference);
    return difference;
}

} // extern "C"

#endif
