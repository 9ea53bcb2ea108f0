// Doubles whose bits count, and which the compiler must not compute with.
#ifndef QSTDLIB_TESTS_PLATFORM_SOFT_FLOAT_REAL_H
#define QSTDLIB_TESTS_PLATFORM_SOFT_FLOAT_REAL_H

#include <cstdint>
#include <cstring>

namespace soft_float {

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

// The same value, of which the compiler knows nothing.
template <typename Value>
Value Unknown(Value value)
{
    volatile Value kept = value;
    return kept;
}

constexpr uint64_t QUIET_NAN = 0x7FF8000000000000;
constexpr uint64_t SIGNALLING_NAN = 0x7FF0000000000B0B;
constexpr uint64_t SIGNALLING_NAN_QUIETED = 0x7FF8000000000B0B;
constexpr uint64_t INFINITE = 0x7FF0000000000000;
constexpr uint64_t SIGN = 0x8000000000000000;

} // namespace soft_float

#endif
