// The operands that the routines in assembly leave aside: subnormal numbers, infinities, NaN, and numbers so great or
// small that a result may overflow or become subnormal. On integers alone, and short rather than fast: an arithmetic
// operator on doubles here would come back here.
#include "rare.h"

namespace {

constexpr uint64_t SIGN = UINT64_C(1) << 63U;
constexpr uint64_t LEADING_BIT = UINT64_C(1) << 52U;
constexpr uint64_t QUIET = UINT64_C(1) << 51U;
constexpr uint64_t INFINITE = UINT64_C(0x7FF) << 52U;
constexpr uint64_t INVALID = INFINITE | QUIET;
constexpr int32_t BIAS = 1023;
constexpr int32_t GREATEST_EXPONENT = 0x7FE;
constexpr uint32_t MORE_BITS = 10; // than a double has, while a result is formed

bool IsNan(uint64_t a)
{
    return (a & ~SIGN) > INFINITE;
}

bool IsInfinite(uint64_t a)
{
    return (a & ~SIGN) == INFINITE;
}

bool IsZero(uint64_t a)
{
    return (a & ~SIGN) == 0;
}

// An exponent in its place; a negative one to be added.
uint64_t Bits(int32_t exponent)
{
    return static_cast<uint64_t>(static_cast<uint32_t>(exponent)) << 52U;
}

// The first operand that is a NaN, quiet.
uint64_t FirstNan(uint64_t a, uint64_t b)
{
    return (IsNan(a) ? a : b) | QUIET;
}

struct Parts
{
    int32_t exponent;
    uint64_t significand; // with its leading bit
};

// Of a finite number other than zero. A subnormal one gets an exponent below 1.
Parts Split(uint64_t a)
{
    Parts parts = {static_cast<int32_t>(static_cast<uint32_t>(a >> 52U) & 0x7FFU), a & (LEADING_BIT - 1)};
    if (parts.exponent != 0)
    {
        parts.significand |= LEADING_BIT;
        return parts;
    }
    for (parts.exponent = 1; parts.significand < LEADING_BIT; --parts.exponent)
    {
        parts.significand <<= 1U;
    }
    return parts;
}

// The last bit is 1 when anything was cut off: enough to round by, as long as it is not the bit behind the last one
// kept.
uint64_t Halved(uint64_t significand)
{
    return (significand >> 1U) | (significand & 1U);
}

// The double next to significand * 2^(exponent - 1075 - MORE_BITS), ties to even. The significand is not zero.
uint64_t Rounded(uint64_t sign, int32_t exponent, uint64_t significand)
{
    constexpr uint64_t TOP = LEADING_BIT << MORE_BITS;
    constexpr uint32_t HALF = 1U << (MORE_BITS - 1);
    if (significand >= 2 * TOP)
    {
        significand = Halved(significand);
        ++exponent;
    }
    for (; significand < TOP; --exponent)
    {
        significand <<= 1U;
    }
    if (exponent > GREATEST_EXPONENT)
    {
        return sign | INFINITE;
    }
    for (; exponent < 1 && significand > 1; ++exponent) // ends with the bit that says there was something
    {
        significand = Halved(significand);
    }
    // The leading bit adds one to the exponent, a subnormal number has none; a carry is right in the exponent, too.
    const uint64_t cut = (exponent < 1 ? 0 : Bits(exponent - 1)) + (significand >> MORE_BITS);
    const uint32_t rest = static_cast<uint32_t>(significand) & (2 * HALF - 1);
    return sign | (cut + (rest + (static_cast<uint32_t>(cut) & 1U) > HALF ? 1 : 0));
}

} // namespace

// One of them is not zero.
uint64_t SoftFloatRareSum(uint64_t a, uint64_t b)
{
    if (IsNan(a) || IsNan(b))
    {
        return FirstNan(a, b);
    }
    if (IsInfinite(a))
    {
        return IsInfinite(b) && a != b ? INVALID : a;
    }
    if (IsInfinite(b) || IsZero(a))
    {
        return b;
    }
    if (IsZero(b))
    {
        return a;
    }
    if ((a & ~SIGN) < (b & ~SIGN))
    {
        const uint64_t lesser = a;
        a = b;
        b = lesser;
    }
    const Parts x = Split(a);
    const Parts y = Split(b);
    const uint64_t significand = x.significand << MORE_BITS;
    uint64_t other = y.significand << MORE_BITS;
    for (int32_t distance = x.exponent - y.exponent; distance > 0 && other > 1; --distance)
    {
        other = Halved(other);
    }
    const uint64_t sum = (a ^ b) >> 63U == 0 ? significand + other : significand - other;
    return sum == 0 ? 0 : Rounded(a & SIGN, x.exponent, sum);
}

uint64_t SoftFloatRareProduct(uint64_t a, uint64_t b)
{
    const uint64_t sign = (a ^ b) & SIGN;
    if (IsNan(a) || IsNan(b))
    {
        return FirstNan(a, b);
    }
    if (IsInfinite(a) || IsInfinite(b))
    {
        return IsZero(a) || IsZero(b) ? INVALID : sign | INFINITE;
    }
    if (IsZero(a) || IsZero(b))
    {
        return sign;
    }
    const Parts x = Split(a);
    const Parts y = Split(b);
    // The product, which has 105 or 106 bits, divided by 2^42: bit by bit of y, the last one first. As x begins with
    // zeros, what has left the product keeps the last bit for itself.
    uint64_t product = 0;
    uint64_t rest = y.significand;
    for (; rest != 0; rest >>= 1U)
    {
        product = Halved(product);
        if ((rest & 1U) != 0)
        {
            product += x.significand << MORE_BITS;
        }
    }
    return Rounded(sign, x.exponent + y.exponent - BIAS, product);
}

uint64_t SoftFloatRareQuotient(uint64_t a, uint64_t b)
{
    const uint64_t sign = (a ^ b) & SIGN;
    if (IsNan(a) || IsNan(b))
    {
        return FirstNan(a, b);
    }
    if (IsInfinite(a) || IsZero(b))
    {
        return IsInfinite(b) || IsZero(a) ? INVALID : sign | INFINITE;
    }
    if (IsZero(a) || IsInfinite(b))
    {
        return sign;
    }
    const Parts x = Split(a);
    const Parts y = Split(b);
    // Digit by digit, to 62 or 63 bits; the last one says whether a remainder is left.
    uint64_t quotient = 0;
    uint64_t remainder = x.significand;
    for (uint32_t digits = 0; digits < 52 + MORE_BITS + 1; ++digits)
    {
        quotient <<= 1U;
        if (remainder >= y.significand)
        {
            remainder -= y.significand;
            quotient |= 1U;
        }
        remainder <<= 1U;
    }
    return Rounded(sign, x.exponent - y.exponent + BIAS, quotient | (remainder != 0 ? 1U : 0U));
}

// The root of m * 4^n is that of m times 2^n.
uint64_t SoftFloatRareRoot(uint64_t a)
{
    if (IsNan(a))
    {
        return FirstNan(a, a);
    }
    if (IsZero(a) || a == INFINITE)
    {
        return a;
    }
    if ((a & SIGN) != 0)
    {
        return INVALID;
    }
    const Parts x = Split(a);
    const int32_t exponent = BIAS - 1 + (x.exponent & 1); // of m, from 1/2 to 2
    const int32_t n = (x.exponent - exponent) / 2;        // no remainder
    const uint64_t m = Bits(exponent - 1) + x.significand;
    return SoftFloatSquareRoot(m) + Bits(n);
}
