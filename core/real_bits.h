// Tests of a double by its bits. Without a floating-point unit a comparison of two doubles is a call that costs as much
// as a multiplication; these cost a few instructions, and answer as it does for every value, IsNegative excepted.
#ifndef QSTDLIB_CORE_REAL_BITS_H
#define QSTDLIB_CORE_REAL_BITS_H

#include <cstdint>
#include <cstring>

namespace qstdlib {

constexpr uint64_t SIGN_BIT = UINT64_C(0x8000000000000000);
constexpr uint64_t INFINITY_BITS = UINT64_C(0x7FF0000000000000);

inline uint64_t BitsOf(double value)
{
    uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

inline double FromBits(uint64_t bits)
{
    double value = 0.0;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

// Bits of the magnitude: they sort as magnitudes do, and those of NaN lie above INFINITY_BITS.
inline uint64_t MagnitudeBits(double value)
{
    return BitsOf(value) & ~SIGN_BIT;
}

// Zero of either sign.
inline bool IsZero(double value)
{
    return MagnitudeBits(value) == 0;
}

// By its sign bit, so that -0.0 is negative, and NaN may be.
inline bool IsNegative(double value)
{
    return (BitsOf(value) & SIGN_BIT) != 0;
}

// Neither infinite nor NaN.
inline bool IsFinite(double value)
{
    return MagnitudeBits(value) < INFINITY_BITS;
}

// As fabs(value) < limit has it, for a limit above zero.
inline bool IsWithin(double value, double limit)
{
    return MagnitudeBits(value) < BitsOf(limit);
}

// As the operator == has it: zeros of either sign are equal, and NaN equals nothing.
inline bool AreEqual(double a, double b)
{
    return IsZero(a) ? IsZero(b) : BitsOf(a) == BitsOf(b) && MagnitudeBits(a) <= INFINITY_BITS;
}

} // namespace qstdlib

#endif
