#include "core/soft_arithmetic.h"

#include "core/real_bits.h"
#include "core/wraps.h"

namespace qstdlib {

namespace {

constexpr int SIGNIFICAND_BITS = 52; // stored ones
constexpr uint64_t LEADING_BIT = UINT64_C(1) << SIGNIFICAND_BITS;
constexpr uint32_t EXPONENT_MASK = 0x7FF;
constexpr uint32_t EXPONENT_BIAS = 1023;
constexpr uint32_t OUT_OF_RANGE = 2 * EXPONENT_MASK; // a change that leads out of range from any exponent

uint32_t ExponentOf(uint64_t bits)
{
    return static_cast<uint32_t>(bits >> SIGNIFICAND_BITS) & EXPONENT_MASK;
}

uint64_t SignificandOf(uint64_t bits)
{
    return (bits & (LEADING_BIT - 1)) | LEADING_BIT;
}

QSTD_WRAPS bool IsNormalExponent(uint32_t exponent)
{
    return exponent - 1 < EXPONENT_MASK - 1;
}

uint32_t High(uint64_t value)
{
    return static_cast<uint32_t>(value >> 32U);
}

uint32_t Low(uint64_t value)
{
    return static_cast<uint32_t>(value);
}

uint64_t Product(uint32_t a, uint32_t b)
{
    return static_cast<uint64_t>(a) * b;
}

// 2^63 / d for d from 2^31 on, from below, to about 29 bits: Newton's iteration from the best straight line.
QSTD_WRAPS uint32_t ShortReciprocal(uint32_t d)
{
    constexpr uint32_t LINE_AT_ZERO = 3031741620U;  // 48/17 * 2^30
    constexpr uint32_t LINE_GRADIENT = 2021161080U; // 32/17 * 2^30
    uint32_t x = (LINE_AT_ZERO - High(Product(d, LINE_GRADIENT))) << 1U;
    for (int step = 0; step < 3; ++step)
    {
        // x (2 - d x), with the remainder of d x rounded up so that x never exceeds the reciprocal.
        const uint32_t twoLess = ~High(Product(d, x));
        x = static_cast<uint32_t>(Product(x, twoLess) >> 31U);
    }
    return x;
}

// 2^127 / d for d from 2^63 on, from below: one more step of the iteration.
QSTD_WRAPS uint64_t Reciprocal(uint64_t d)
{
    constexpr uint64_t ONE = UINT64_C(1) << 63U;
    const uint32_t x = ShortReciprocal(High(d)) - 3; // d may be larger than its high half by 1 part in 2^31
    const uint64_t product = Product(High(d), x) + High(Product(Low(d), x)) + 1;
    const uint64_t remainder = ONE - product; // below 2^35
    return (static_cast<uint64_t>(x) << 32U) + (Product(x, Low(remainder >> 3U)) >> 28U);
}

// The high half of the product, or up to two less.
uint64_t HighProduct(uint64_t a, uint64_t b)
{
    return Product(High(a), High(b)) + High(Product(High(a), Low(b))) + High(Product(Low(a), High(b)));
}

// 2^47 / sqrt(d) for d from 2^30 on, from below, to about 29 bits: Newton's iteration from a straight line.
QSTD_WRAPS uint32_t ShortReciprocalRoot(uint32_t d)
{
    // With v = d / 2^30, from 1 to 4, and y / 2^32 the reciprocal of its root: y = 1.08 - 0.155 v to begin with.
    constexpr uint32_t LINE_AT_ZERO = 2319282339U;  // 1.08 * 2^31
    constexpr uint32_t LINE_GRADIENT = 1331439862U; // 0.155 * 2^33
    uint32_t y = (LINE_AT_ZERO - High(Product(d, LINE_GRADIENT))) << 1U;
    for (int step = 0; step < 4; ++step)
    {
        // y (3 - v y^2) / 2, with the remainders rounded up so that y never exceeds the reciprocal.
        const uint32_t square = High(Product(y, y)) + 1;
        const uint32_t vSquare = High(Product(d, square)) + 1; // v y^2 * 2^30
        y = static_cast<uint32_t>(Product(y, 3221225472U - vSquare) >> 31U);
    }
    return y;
}

} // namespace

QSTD_WRAPS SoftDivisor::SoftDivisor(double divisor)
    : value(divisor), significand(SignificandOf(BitsOf(divisor))), reciprocal(0), exponentChange(OUT_OF_RANGE)
{
    const uint32_t exponent = ExponentOf(BitsOf(divisor));
    if (IsNormalExponent(exponent))
    {
        reciprocal = Reciprocal(significand << 11U);
        exponentChange = EXPONENT_BIAS - exponent;
    }
}

QSTD_WRAPS double SoftDivisor::Into(double dividend) const
{
    const uint64_t bits = BitsOf(dividend);
    uint64_t numerator = SignificandOf(bits);
    uint32_t exponent = ExponentOf(bits) + exponentChange;
    if (numerator < significand) // so that the quotient lies from 1 to 2
    {
        numerator += numerator;
        --exponent;
    }
    if (!IsNormalExponent(ExponentOf(bits)) || !IsNormalExponent(exponent))
    {
        return dividend / value;
    }
    // 54 bits, one more than are kept, or one less than that integer: the remainder tells.
    uint64_t quotient = HighProduct(numerator << 10U, reciprocal) >> 9U;
    const uint64_t remainder = (numerator << 53U) - quotient * significand;
    if (remainder >= significand)
    {
        ++quotient;
    }
    // The quotient of two numbers of 53 bits never lies half-way between two others: the 54th bit alone decides.
    const uint64_t rounded = (quotient + 1) >> 1U;
    const uint64_t sign = (bits ^ BitsOf(value)) & SIGN_BIT;
    return FromBits(sign | ((static_cast<uint64_t>(exponent) << SIGNIFICAND_BITS) + (rounded - LEADING_BIT)));
}

QSTD_WRAPS double SoftSquareRoot(double value)
{
    const uint64_t bits = BitsOf(value);
    const uint32_t exponent = ExponentOf(bits);
    if (!IsNormalExponent(exponent) || IsNegative(value))
    {
        return std::sqrt(value);
    }
    // The number as v * 4^n with v from 1 to 4, held as v * 2^62.
    const uint64_t v = SignificandOf(bits) << ((exponent & 1U) != 0 ? 10U : 11U);
    const uint32_t reciprocal = ShortReciprocalRoot(High(v));
    const uint32_t shortRoot = High(Product(High(v), reciprocal));    // 31 bits, from below
    const uint64_t remainder = v - 4 * Product(shortRoot, shortRoot); // below 2^38
    uint64_t root = (static_cast<uint64_t>(shortRoot) << 23U) + (Product(Low(remainder >> 6U), reciprocal) >> 36U);
    // 54 bits, one more than are kept, or one off: the remainder tells.
    const auto rest = static_cast<int64_t>((v << 44U) - root * root);
    if (rest < 0)
    {
        --root;
    }
    else if (static_cast<uint64_t>(rest) > 2 * root)
    {
        ++root;
    }
    // A root is never half-way between two numbers of 53 bits: the 54th bit alone decides.
    const uint64_t rounded = (root + 1) >> 1U;
    const uint64_t rootExponent = (exponent + EXPONENT_BIAS) >> 1U;
    return FromBits((rootExponent << SIGNIFICAND_BITS) + (rounded - LEADING_BIT));
}

} // namespace qstdlib
