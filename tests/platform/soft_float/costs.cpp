// Instructions of each routine on ordinary operands: a line with name, least, median and greatest count of 201 calls.
// The call counts, and so do the moves of operands and result that it takes.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>

#include "platform/versatile/instruction_counter.h"
#include "platform/versatile/leave.h"

extern "C" {
double __aeabi_l2d(int64_t value);  // NOLINT
int64_t __aeabi_d2lz(double value); // NOLINT
}

namespace {

constexpr size_t CALLS = 201;

uint32_t seed = 12345;

uint32_t Next()
{
    seed = seed * 1664525U + 1013904223U;
    return seed;
}

// From -1000 to 1000, in all its bits.
double Ordinary()
{
    const uint32_t high = Next() >> 5U;
    const uint32_t low = Next() >> 6U;
    return (high * 67108864.0 + low) / 9007199254740992.0 * 2000.0 - 1000.0;
}

struct Operands
{
    double a = Ordinary();
    double b = Ordinary();
    double positive = std::fabs(Ordinary());
    int32_t integer = static_cast<int32_t>(Next() % 20736000U);
};

template <typename Operation>
void Count(const char* name, Operation operation)
{
    static std::array<uint32_t, CALLS> counts;
    for (uint32_t& count : counts)
    {
        Operands operands;
        asm volatile("" : "+r"(operands.a), "+r"(operands.b), "+r"(operands.positive), "+r"(operands.integer));
        const uint32_t from = board::Ticks();
        auto result = operation(operands);
        asm volatile("" : "+r"(result));
        const uint32_t to = board::Ticks();
        count = board::Instructions(from, to) - board::EmptyPair();
    }
    std::sort(counts.begin(), counts.end());
    std::printf("%s %lu %lu %lu\n", name, static_cast<unsigned long>(counts.front()),
                static_cast<unsigned long>(counts[CALLS / 2]), static_cast<unsigned long>(counts.back()));
}

} // namespace

int main()
{
    Count("__aeabi_dadd", [](const Operands& o) { return o.a + o.b; });
    Count("__aeabi_dsub", [](const Operands& o) { return o.a - o.b; });
    Count("__aeabi_dmul", [](const Operands& o) { return o.a * o.b; });
    Count("__aeabi_ddiv", [](const Operands& o) { return o.a / o.b; });
    Count("sqrt", [](const Operands& o) { return std::sqrt(o.positive); });
    Count("__aeabi_dcmplt", [](const Operands& o) { return o.a < o.b ? 1 : 0; });
    Count("__aeabi_dcmple", [](const Operands& o) { return o.a <= o.b ? 1 : 0; });
    Count("__aeabi_dcmpeq", [](const Operands& o) { return o.a == o.b ? 1 : 0; });
    Count("__aeabi_dcmpge", [](const Operands& o) { return o.a >= o.b ? 1 : 0; });
    Count("__aeabi_dcmpgt", [](const Operands& o) { return o.a > o.b ? 1 : 0; });
    Count("__aeabi_dcmpun", [](const Operands& o) { return __builtin_isunordered(o.a, o.b) != 0 ? 1 : 0; });
    Count("__aeabi_i2d", [](const Operands& o) { return static_cast<double>(o.integer); });
    Count("__aeabi_ui2d", [](const Operands& o) { return static_cast<double>(static_cast<uint32_t>(o.integer)); });
    Count("__aeabi_l2d", [](const Operands& o) { return __aeabi_l2d(o.integer); });
    Count("__aeabi_d2iz", [](const Operands& o) { return static_cast<int32_t>(o.a); });
    Count("__aeabi_d2uiz", [](const Operands& o) { return static_cast<uint32_t>(o.positive); });
    Count("__aeabi_d2lz", [](const Operands& o) { return __aeabi_d2lz(o.a); });
    Count("__aeabi_d2f", [](const Operands& o) { return static_cast<float>(o.a); });
    Count("__aeabi_dmul/zero", [](const Operands& o) { return o.a * 0.0; });
    std::fflush(stdout);
    Leave(0);
}
