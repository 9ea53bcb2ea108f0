// Counts executed instructions, exactly. The board is emulated so that each instruction takes 128 ns of its time; its
// counter of 24 MHz then advances by 3.072 an instruction, and the difference of two readings, rounded, is a number of
// instructions. It wraps after 1.398e9 of them.
#ifndef QSTDLIB_PLATFORM_VERSATILE_INSTRUCTION_COUNTER_H
#define QSTDLIB_PLATFORM_VERSATILE_INSTRUCTION_COUNTER_H

#include <cstdint>

namespace board {

// A reading of the counter; nothing in memory is moved across it.
inline std::uint32_t Ticks()
{
    constexpr std::uintptr_t COUNTER_24MHZ = 0x1000005C;
    asm volatile("" ::: "memory");
    const std::uint32_t value = *reinterpret_cast<volatile std::uint32_t*>(COUNTER_24MHZ);
    asm volatile("" ::: "memory");
    return value;
}

// Instructions from one reading to the next, that of the second reading itself among them.
inline std::uint32_t Instructions(std::uint32_t from, std::uint32_t to)
{
    constexpr std::uint32_t TICKS_PER_1000 = 3072;
    const std::uint64_t ticks = to - from;
    return static_cast<std::uint32_t>((ticks * 1000 + TICKS_PER_1000 / 2) / TICKS_PER_1000);
}

// What two readings count with nothing between them.
inline std::uint32_t EmptyPair()
{
    const std::uint32_t from = Ticks();
    const std::uint32_t to = Ticks();
    return Instructions(from, to);
}

} // namespace board

#endif
