#include "math_watch.h"

#include <cmath>
#include <cstring>

#include "plain_math.h"

extern "C" {
double __real_sin(double angle);         // NOLINT: the linker gives the name
double __real_cos(double angle);         // NOLINT
double __real_tan(double angle);         // NOLINT
double __real_atan2(double y, double x); // NOLINT
double __real_hypot(double x, double y); // NOLINT
double __wrap_sin(double angle);         // NOLINT
double __wrap_cos(double angle);         // NOLINT
double __wrap_tan(double angle);         // NOLINT
double __wrap_atan2(double y, double x); // NOLINT
double __wrap_hypot(double x, double y); // NOLINT
}

namespace digest {

namespace {

constexpr uint32_t HASH_START = 0x811C9DC5U;

Math chosen = Math::PLATFORM;
uint32_t shakingSeed = 0;
MathUse use = {};

uint64_t BitsOf(double value)
{
    uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

// FNV-1a over the bytes of a value; all NaN count as one.
uint32_t Mix(uint32_t hash, double value)
{
    constexpr uint64_t ANY_NAN = 0x7FF8000000000000U;
    const uint64_t bits = value == value ? BitsOf(value) : ANY_NAN;
    for (uint32_t i = 0; i < 64; i += 8)
    {
        hash = (hash ^ static_cast<uint32_t>((bits >> i) & 0xFFU)) * 0x01000193U;
    }
    return hash;
}

// What any library gives exactly stays.
bool IsExact(double result)
{
    return !std::isfinite(result) || result == 0.0 || result == 1.0 || result == -1.0;
}

double Shake(double result, double argument1, double argument2)
{
    if (IsExact(result) || result == argument1 || result == -argument1 || result == argument2 || result == -argument2)
    {
        return result;
    }
    const uint32_t mixed = Mix(Mix(Mix(HASH_START ^ shakingSeed, argument1), argument2), result);
    switch ((mixed >> 8) % 3U)
    {
    case 0:
        return std::nextafter(result, -2.0 * std::fabs(result));
    case 1:
        return std::nextafter(result, 2.0 * std::fabs(result));
    default:
        return result;
    }
}

double Note(double result, double argument1, double argument2)
{
    ++use.calls;
    use.hash += Mix(Mix(Mix(HASH_START, argument1), argument2), result);
    return result;
}

template <typename Own, typename Plain>
double Answer(Own own, Plain plain, double argument1, double argument2 = 0.0)
{
    const double answer = chosen == Math::PLAIN ? plain(argument1, argument2) : own(argument1, argument2);
    return Note(shakingSeed == 0 ? answer : Shake(answer, argument1, argument2), argument1, argument2);
}

} // namespace

void ChooseMath(Math math, uint32_t seed)
{
    chosen = math;
    shakingSeed = seed;
}

void ForgetMathUse()
{
    use = {};
}

MathUse CurrentMathUse()
{
    return use;
}

} // namespace digest

extern "C" {

double __wrap_sin(double angle) // NOLINT
{
    return digest::Answer([](double a, double) { return __real_sin(a); },
                          [](double a, double) { return digest::PlainSine(a); }, angle);
}

double __wrap_cos(double angle) // NOLINT
{
    return digest::Answer([](double a, double) { return __real_cos(a); },
                          [](double a, double) { return digest::PlainCosine(a); }, angle);
}

double __wrap_tan(double angle) // NOLINT
{
    return digest::Answer([](double a, double) { return __real_tan(a); },
                          [](double a, double) { return digest::PlainSine(a) / digest::PlainCosine(a); }, angle);
}

double __wrap_atan2(double y, double x) // NOLINT
{
    return digest::Answer(__real_atan2, digest::PlainArcTangent, y, x);
}

double __wrap_hypot(double x, double y) // NOLINT
{
    return digest::Answer(__real_hypot, digest::PlainHypotenuse, x, y);
}

} // extern "C"
