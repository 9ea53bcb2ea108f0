// Counts the instructions of one call.
#ifndef QSTDLIB_BENCH_TARGET_METER_H
#define QSTDLIB_BENCH_TARGET_METER_H

#include <cstdint>

#include "floor.h"
#include "instruction_counter.h"

namespace target {

class Meter
{
public:
    // Makes the call between two readings of the counter, and returns what it returns.
    template <typename Call>
    auto Count(Call call)
    {
        floor::Begin();
        const uint32_t before = board::Ticks();
        const auto result = call();
        const uint32_t after = board::Ticks();
        floor::End();
        instructions = board::Instructions(before, after) - board::EmptyPair();
        ++calls;
        return result;
    }

    // A trial whose call does not do what it is there for measures nothing.
    void Require(bool succeeded)
    {
        failures += succeeded ? 0 : 1;
    }

    // Of the latest call.
    uint32_t Instructions() const
    {
        return instructions;
    }

    int32_t Calls() const
    {
        return calls;
    }

    int32_t Failures() const
    {
        return failures;
    }

private:
    uint32_t instructions = 0;
    int32_t calls = 0;
    int32_t failures = 0;
};

} // namespace target

#endif
