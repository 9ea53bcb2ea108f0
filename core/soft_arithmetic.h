// Division and square root in integer arithmetic, for the adjustment. Where there is no floating-point unit, a division
// costs ten multiplications and a square root twenty, bit by bit as they are worked out; by Newton's iteration on
// integers they cost two or three. The results are those of the operator / and of sqrt, to the last bit.
#ifndef QSTDLIB_CORE_SOFT_ARITHMETIC_H
#define QSTDLIB_CORE_SOFT_ARITHMETIC_H

#include <cmath>
#include <cstdint>

namespace qstdlib {

// Divides by the same number, once or more often, by its reciprocal. Numbers that are not normal, zero among them, are
// left to the operator, and so are quotients outside the range of normal numbers.
class SoftDivisor
{
public:
    explicit SoftDivisor(double divisor);

    // The dividend divided by the divisor.
    double Into(double dividend) const;

private:
    double value;
    uint64_t significand;    // with its leading bit, as an integer
    uint64_t reciprocal;     // 2^127 / (significand * 2^11), not above it and within 2^-56 of itself
    uint32_t exponentChange; // from the dividend's to the quotient's; out of range for a divisor that is not normal
};

// The same where division is an instruction.
class HardDivisor
{
public:
    explicit HardDivisor(double divisor) : value(divisor)
    {
    }

    double Into(double dividend) const
    {
        return dividend / value;
    }

private:
    double value;
};

// Zero, negative numbers and all that are not normal are left to sqrt.
double SoftSquareRoot(double value);

#if defined(__SOFTFP__)
using Divisor = SoftDivisor;

inline double SquareRoot(double value)
{
    return SoftSquareRoot(value);
}
#else
using Divisor = HardDivisor;

inline double SquareRoot(double value)
{
    return std::sqrt(value);
}
#endif

} // namespace qstdlib

#endif
