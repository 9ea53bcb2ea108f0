// The floor of a call: what its arithmetic costs and nothing else.
//
// A second copy of the library is linked in whose outgoing calls, to the maths library and to the compiler's routines
// for floating point, are renamed to traced_…: each makes the same call and measures it. The floor is the sum over the
// different operations of one call of the library, an operation being a routine with its operands: what is computed
// twice from the same operands is needed once.
#ifndef QSTDLIB_BENCH_TARGET_FLOOR_H
#define QSTDLIB_BENCH_TARGET_FLOOR_H

#include <cstdint>

namespace target::floor {

struct Cost
{
    uint32_t functions;  // of the maths library, divisions and conversions
    uint32_t arithmetic; // additions, multiplications and comparisons
};

// The costs are those of the calls between Begin and End.
void Begin();
void End();
Cost Latest();

// Without comparing operands, for calls that make too many of them.
void CountRepetitions(bool wanted);

} // namespace target::floor

#endif
