// What the routines in assembly hand on: their operands as they came, and where they return to.
#ifndef QSTDLIB_PLATFORM_SOFT_FLOAT_RARE_H
#define QSTDLIB_PLATFORM_SOFT_FLOAT_RARE_H

#include <stdint.h>

// Doubles by their bits: in registers they are passed like integers of the same size.
extern "C" {
uint64_t SoftFloatRareSum(uint64_t a, uint64_t b);
uint64_t SoftFloatRareProduct(uint64_t a, uint64_t b);
uint64_t SoftFloatRareQuotient(uint64_t a, uint64_t b);
uint64_t SoftFloatRareRoot(uint64_t a);

// The routine in assembly.
uint64_t SoftFloatSquareRoot(uint64_t a);
}

#endif
