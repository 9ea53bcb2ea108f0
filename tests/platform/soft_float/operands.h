// Pairs of doubles, by their bits, at which arithmetic goes wrong if anywhere. In blocks, each of which is made from
// its number alone; by integer arithmetic, so that every platform makes the same.
#ifndef QSTDLIB_TESTS_PLATFORM_SOFT_FLOAT_OPERANDS_H
#define QSTDLIB_TESTS_PLATFORM_SOFT_FLOAT_OPERANDS_H

#include <cstdint>

namespace soft_float {

struct Pair
{
    uint64_t a;
    uint64_t b;
};

constexpr uint32_t BLOCK_SIZE = 4096;

// The first blocks hold the directed pairs, all others random ones.
void MakeBlock(uint32_t number, Pair* pairs);

} // namespace soft_float

#endif
