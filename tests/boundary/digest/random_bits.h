// Pseudo-random integers, the same everywhere.
#ifndef QSTDLIB_TESTS_BOUNDARY_DIGEST_RANDOM_BITS_H
#define QSTDLIB_TESTS_BOUNDARY_DIGEST_RANDOM_BITS_H

#include <cstdint>

namespace digest {

// The splitmix64 generator: a counter, mixed.
class RandomBits
{
public:
    explicit RandomBits(uint64_t seed) : state(seed)
    {
    }

    uint64_t Next()
    {
        state += 0x9E3779B97F4A7C15U;
        uint64_t mixed = state;
        mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9U;
        mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBU;
        return mixed ^ (mixed >> 31);
    }

    // 0 to bound - 1; the slight preference for small numbers does no harm here.
    int32_t Below(int32_t bound)
    {
        return static_cast<int32_t>((Next() >> 33) % static_cast<uint64_t>(bound));
    }

    int32_t Between(int32_t lowest, int32_t highest)
    {
        return lowest + Below(highest - lowest + 1);
    }

    bool OneIn(int32_t chances)
    {
        return Below(chances) == 0;
    }

private:
    uint64_t state;
};

} // namespace digest

#endif
