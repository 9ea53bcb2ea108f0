// The operations under test, on operands given by their bits and with results as bits.
#ifndef QSTDLIB_TESTS_PLATFORM_SOFT_FLOAT_OPERATIONS_H
#define QSTDLIB_TESTS_PLATFORM_SOFT_FLOAT_OPERATIONS_H

#include "operands.h"

namespace soft_float {

struct Operation
{
    const char* name;
    uint64_t (*result)(const Pair& operands);
};

extern const Operation OPERATIONS[];
extern const uint32_t OPERATION_COUNT;

} // namespace soft_float

#endif
