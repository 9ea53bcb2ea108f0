#include "operations.h"

#include <cmath>
#include <cstring>

#if defined(__arm__)
// Names that no operator of the language makes the compiler call.
extern "C" {
double __aeabi_drsub(double a, double b); // NOLINT
int __cmpdf2(double a, double b);         // NOLINT
int __eqdf2(double a, double b);          // NOLINT
int __nedf2(double a, double b);          // NOLINT
int __ltdf2(double a, double b);          // NOLINT
int __ledf2(double a, double b);          // NOLINT
int __gtdf2(double a, double b);          // NOLINT
int __gedf2(double a, double b);          // NOLINT
}
#endif

namespace soft_float {

namespace {

constexpr uint64_t SIGN = uint64_t{1} << 63U;

template <typename To, typename From>
To BitsAs(From value)
{
    static_assert(sizeof(To) == sizeof(From), "the same bits");
    To result;
    std::memcpy(&result, &value, sizeof result);
    return result;
}

double Real(uint64_t bits)
{
    return BitsAs<double>(bits);
}

// Every quiet NaN is the same result: which one it is, a processor chooses.
uint64_t Result(double value)
{
    const auto bits = BitsAs<uint64_t>(value);
    constexpr uint64_t QUIET = 0x7FF8000000000000;
    return (bits & QUIET) == QUIET ? QUIET : bits;
}

uint64_t Result(float value)
{
    const auto bits = BitsAs<uint32_t>(value);
    constexpr uint32_t QUIET = 0x7FC00000;
    return (bits & QUIET) == QUIET ? QUIET : bits;
}

uint64_t Add(const Pair& operands)
{
    return Result(Real(operands.a) + Real(operands.b));
}

uint64_t Subtract(const Pair& operands)
{
    return Result(Real(operands.a) - Real(operands.b));
}

uint64_t SubtractReversed(const Pair& operands)
{
#if defined(__arm__)
    return Result(__aeabi_drsub(Real(operands.a), Real(operands.b)));
#else
    return Result(Real(operands.b) - Real(operands.a));
#endif
}

uint64_t Multiply(const Pair& operands)
{
    return Result(Real(operands.a) * Real(operands.b));
}

uint64_t Divide(const Pair& operands)
{
    return Result(Real(operands.a) / Real(operands.b));
}

// The root of a negative number is tried with one pair of 16.
uint64_t SquareRoot(const Pair& operands)
{
    const uint64_t cleared = (operands.b & 15U) == 0 ? 0 : SIGN;
    return Result(std::sqrt(Real(operands.a & ~cleared)));
}

uint64_t Relate(const Pair& operands)
{
    const double a = Real(operands.a);
    const double b = Real(operands.b);
    return (a < b ? 1U : 0U) | (a <= b ? 2U : 0U) | (a == b ? 4U : 0U) | (a >= b ? 8U : 0U) | (a > b ? 16U : 0U) |
           (a != b ? 32U : 0U) | (__builtin_isunordered(a, b) != 0 ? 64U : 0U);
}

#if defined(__arm__) && !defined(__thumb__)

// Carry and zero as a flag-setting comparison leaves them, 2 and 1. The operands must stay in their registers.
#define QSTD_DEFINE_FLAGS(function, routine)                                                                           \
    uint32_t function(uint64_t first, uint64_t second)                                                                 \
    {                                                                                                                  \
        const auto firstLow = static_cast<uint32_t>(first);                                                            \
        const auto firstHigh = static_cast<uint32_t>(first >> 32U);                                                    \
        const auto secondLow = static_cast<uint32_t>(second);                                                          \
        const auto secondHigh = static_cast<uint32_t>(second >> 32U);                                                  \
        register uint32_t r0 asm("r0") = firstLow;                                                                     \
        register uint32_t r1 asm("r1") = firstHigh;                                                                    \
        register uint32_t r2 asm("r2") = secondLow;                                                                    \
        register uint32_t r3 asm("r3") = secondHigh;                                                                   \
        uint32_t flags = 0;                                                                                            \
        asm volatile("bl " #routine "\n mrs %0, cpsr"                                                                  \
                     : "=&r"(flags), "+r"(r0), "+r"(r1), "+r"(r2), "+r"(r3)                                            \
                     :                                                                                                 \
                     : "ip", "lr", "cc");                                                                              \
        const bool kept = r0 == firstLow && r1 == firstHigh && r2 == secondLow && r3 == secondHigh;                    \
        return (flags >> 28U & 2U) | (flags >> 30U & 1U) | (kept ? 0U : 4U);                                           \
    }

QSTD_DEFINE_FLAGS(FlagsOfOrder, __aeabi_cdcmple)
QSTD_DEFINE_FLAGS(FlagsOfEquality, __aeabi_cdcmpeq)
QSTD_DEFINE_FLAGS(FlagsOfReversedOrder, __aeabi_cdrcmple)

#else

// Those comparisons are not for the language, and the flags not for Thumb code.
uint32_t FlagsOfOrder(uint64_t a, uint64_t b)
{
    return Real(a) < Real(b) ? 0U : (Real(a) == Real(b) ? 3U : 2U);
}

uint32_t FlagsOfEquality(uint64_t a, uint64_t b)
{
    return FlagsOfOrder(a, b);
}

uint32_t FlagsOfReversedOrder(uint64_t a, uint64_t b)
{
    return Real(b) < Real(a) ? 0U : (Real(a) == Real(b) ? 3U : 2U);
}

#endif

// -1, 0 and 1 as 0, 1 and 2.
uint32_t Sign(int order)
{
    return order < 0 ? 0U : (order > 0 ? 2U : 1U);
}

#if defined(__arm__)

// The orders as integers, two bits each.
uint32_t FalseIfGreater(double a, double b)
{
    return Sign(__cmpdf2(a, b)) | Sign(__eqdf2(a, b)) << 2U | Sign(__nedf2(a, b)) << 4U | Sign(__ltdf2(a, b)) << 6U |
           Sign(__ledf2(a, b)) << 8U;
}

uint32_t FalseIfLess(double a, double b)
{
    return Sign(__gtdf2(a, b)) | Sign(__gedf2(a, b)) << 2U;
}

#else

uint32_t FalseIfGreater(double a, double b)
{
    return Sign(a < b ? -1 : (a == b ? 0 : 1)) * 0x155U;
}

uint32_t FalseIfLess(double a, double b)
{
    return Sign(a > b ? 1 : (a == b ? 0 : -1)) * 5U;
}

#endif

uint64_t Order(const Pair& operands)
{
    const double a = Real(operands.a);
    const double b = Real(operands.b);
    return FlagsOfOrder(operands.a, operands.b) | FlagsOfReversedOrder(operands.a, operands.b) << 4U |
           FlagsOfEquality(operands.a, operands.b) << 8U | FalseIfGreater(a, b) << 12U | FalseIfLess(a, b) << 24U;
}

uint64_t Negate(const Pair& operands)
{
    // An operator of its own on the host, where the compiler might otherwise not need it.
    return operands.a == 0 ? SIGN : BitsAs<uint64_t>(-Real(operands.a));
}

// Integers of every length, half of them with runs of ones and zeros.
uint64_t Integer(const Pair& operands)
{
    const uint64_t mixed = operands.a + operands.b * 0x9E3779B97F4A7C15U;
    const auto shift = static_cast<uint32_t>(mixed >> 58U);
    return ((mixed & 1U) != 0 ? mixed : operands.a << 12U) >> shift;
}

uint64_t FromInt32(const Pair& operands)
{
    return Result(static_cast<double>(BitsAs<int32_t>(static_cast<uint32_t>(Integer(operands)))));
}

uint64_t FromUint32(const Pair& operands)
{
    return Result(static_cast<double>(static_cast<uint32_t>(Integer(operands))));
}

uint64_t FromInt64(const Pair& operands)
{
    const auto magnitude = BitsAs<int64_t>(Integer(operands));
    return Result(static_cast<double>((operands.b & 1U) != 0 && magnitude > 0 ? -magnitude : magnitude));
}

uint64_t FromUint64(const Pair& operands)
{
    return Result(static_cast<double>(Integer(operands)));
}

uint64_t FromFloat(const Pair& operands)
{
    return Result(static_cast<double>(BitsAs<float>(static_cast<uint32_t>(Integer(operands)))));
}

uint64_t ToFloat(const Pair& operands)
{
    return Result(static_cast<float>(Real(operands.a)));
}

// What lies out of range has no value in the language. On the host the rules of the ARM run-time ABI stand in its
// place.
uint64_t ToInt32(const Pair& operands)
{
    const double a = Real(operands.a);
#if !defined(__arm__)
    if (!(std::fabs(a) < 0x1p31))
    {
        return a < 0 ? 0x80000000U : (a > 0 ? 0x7FFFFFFFU : 0U);
    }
#endif
    return BitsAs<uint32_t>(static_cast<int32_t>(a));
}

uint64_t ToUint32(const Pair& operands)
{
    const double a = Real(operands.a);
#if !defined(__arm__)
    if (!(a >= 0 && a < 0x1p32))
    {
        return a > 0 ? 0xFFFFFFFFU : 0U;
    }
#endif
    return static_cast<uint32_t>(a);
}

uint64_t ToUint64(const Pair& operands)
{
    const double a = Real(operands.a);
#if !defined(__arm__)
    if (!(a >= 0 && a < 0x1p64))
    {
        return a > 0 ? ~uint64_t{0} : 0U;
    }
#endif
    return static_cast<uint64_t>(a);
}

uint64_t ToInt64(const Pair& operands)
{
    const double a = Real(operands.a);
#if defined(__arm__)
    return BitsAs<uint64_t>(static_cast<int64_t>(a));
#else
    const uint64_t magnitude = ToUint64({operands.a & ~SIGN, 0});
    return a < 0 ? 0 - magnitude : magnitude;
#endif
}

} // namespace

const Operation OPERATIONS[] = {
    {"add", Add},
    {"subtract", Subtract},
    {"subtract_reversed", SubtractReversed},
    {"multiply", Multiply},
    {"divide", Divide},
    {"square_root", SquareRoot},
    {"relate", Relate},
    {"order", Order},
    {"negate", Negate},
    {"from_int32", FromInt32},
    {"from_uint32", FromUint32},
    {"from_int64", FromInt64},
    {"from_uint64", FromUint64},
    {"from_float", FromFloat},
    {"to_float", ToFloat},
    {"to_int32", ToInt32},
    {"to_uint32", ToUint32},
    {"to_int64", ToInt64},
    {"to_uint64", ToUint64},
};
const uint32_t OPERATION_COUNT = sizeof OPERATIONS / sizeof OPERATIONS[0];

} // namespace soft_float
