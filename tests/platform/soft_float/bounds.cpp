// bounds STEP: the bounds on which the last steps of division and square root rest, for every STEP-th first word that
// operands can have: the same integer steps as in divide.S and square_root.S, held against exact quotients and squares.
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

#define ROW(...) __VA_ARGS__,
constexpr uint8_t RECIPROCALS[128] = {
#include "platform/soft_float/reciprocals.inc"
};
constexpr uint8_t RECIPROCAL_ROOTS[192] = {
#include "platform/soft_float/reciprocal_roots.inc"
};
#undef ROW

uint32_t High(uint64_t value)
{
    return static_cast<uint32_t>(value >> 32U);
}

uint64_t Product(uint32_t a, uint32_t b)
{
    return static_cast<uint64_t>(a) * b;
}

uint32_t Reciprocal(uint32_t d)
{
    const uint32_t first = 256U + RECIPROCALS[(d >> 24U) - 128];
    const auto second =
        static_cast<uint32_t>((static_cast<uint64_t>(first) << 24U) - (Product(first * first, d) >> 17U));
    return static_cast<uint32_t>(Product(second, ~High(Product(second, d))) >> 31U) - 2;
}

uint32_t ReciprocalRoot(uint32_t v)
{
    constexpr uint32_t THREE = 3U << 30U;
    const uint32_t first = 256U + RECIPROCAL_ROOTS[(v >> 24U) - 64];
    const uint32_t second = ((THREE - High(Product(v, first * first << 14U))) >> 8U) * first;
    const uint32_t square = High(Product(second, second)) + 1;
    return static_cast<uint32_t>(Product(second, THREE - High(Product(v, square)) - 1) >> 31U) - 2;
}

// 2^84 / Y lies above 2^63 / (d + 1) and up to 2^63 / d. True if L is at most the former, and less than 7 below the
// latter.
bool DivisionHolds(uint64_t step)
{
    constexpr uint64_t ONE = uint64_t{1} << 63U;
    for (uint64_t d = uint64_t{1} << 31U; d < uint64_t{1} << 32U; d += step)
    {
        const uint64_t l = Reciprocal(static_cast<uint32_t>(d));
        if (l * (d + 1) > ONE || (l + 7) * d <= ONE)
        {
            std::printf("division: %llx\n", static_cast<unsigned long long>(d));
            return false;
        }
    }
    return true;
}

// 2^63 / S lies above 2^47 / root(v + 1) and up to 2^47 / root(v): the same with squares, which fill 96 bits.
bool RootHolds(uint64_t step)
{
    using Wide = unsigned __int128;
    constexpr Wide ONE = Wide{1} << 94U;
    for (uint64_t v = uint64_t{1} << 30U; v < uint64_t{1} << 32U; v += step)
    {
        const uint64_t l = ReciprocalRoot(static_cast<uint32_t>(v));
        const uint64_t above = l + 14;
        if (Wide{l} * l * (v + 1) > ONE || Wide{above} * above * v <= ONE)
        {
            std::printf("square root: %llx\n", static_cast<unsigned long long>(v));
            return false;
        }
    }
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    const uint64_t step = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : 1;
    const bool division = DivisionHolds(step);
    const bool root = RootHolds(step);
    return division && root ? 0 : 1;
}
