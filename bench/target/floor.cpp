#include "floor.h"

#include <cmath>
#include <cstdlib>
#include <cstring>

#include "instruction_counter.h"

extern "C" {
double __aeabi_dadd(double, double);
double __aeabi_dsub(double, double);
double __aeabi_dmul(double, double);
double __aeabi_ddiv(double, double);
int __aeabi_dcmpeq(double, double);
int __aeabi_dcmpge(double, double);
int __aeabi_dcmpgt(double, double);
int __aeabi_dcmple(double, double);
int __aeabi_dcmplt(double, double);
int __aeabi_dcmpun(double, double);
double __aeabi_i2d(int);
int __aeabi_d2iz(double);
}

namespace target::floor {

namespace {

enum class Kind
{
    FUNCTION,
    ARITHMETIC,
};

constexpr size_t MOST_OPERATIONS = 4096;

struct Operation
{
    const void* routine;
    uint64_t operands[2];
};

Operation operations[MOST_OPERATIONS];
size_t operationCount = 0;
bool watching = false;
bool comparing = true;
Cost cost = {};

uint64_t Bits(double value)
{
    uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

uint64_t Bits(int value)
{
    return static_cast<uint32_t>(value);
}

bool IsRepeated(const Operation& operation)
{
    if (!comparing)
    {
        return false;
    }
    for (size_t i = 0; i < operationCount; ++i)
    {
        const Operation& earlier = operations[i];
        if (earlier.routine == operation.routine && earlier.operands[0] == operation.operands[0] &&
            earlier.operands[1] == operation.operands[1])
        {
            return true;
        }
    }
    if (operationCount < MOST_OPERATIONS)
    {
        operations[operationCount++] = operation;
    }
    return false;
}

void Add(Kind kind, uint32_t instructions, const Operation& operation)
{
    if (watching && !IsRepeated(operation))
    {
        (kind == Kind::FUNCTION ? cost.functions : cost.arithmetic) += instructions;
    }
}

// The operands wait in registers when the first reading is taken, as they do between two operations of a formula.
template <Kind KIND, auto ROUTINE>
auto Watch(double first, double second)
{
    asm volatile("" : "+r"(first), "+r"(second));
    const uint32_t before = board::Ticks();
    auto result = ROUTINE(first, second);
    asm volatile("" : "+r"(result));
    const uint32_t after = board::Ticks();
    Add(KIND, board::Instructions(before, after) - board::EmptyPair(),
        {reinterpret_cast<const void*>(ROUTINE), {Bits(first), Bits(second)}});
    return result;
}

template <Kind KIND, auto ROUTINE, typename Operand>
auto Watch(Operand operand)
{
    asm volatile("" : "+r"(operand));
    const uint32_t before = board::Ticks();
    auto result = ROUTINE(operand);
    asm volatile("" : "+r"(result));
    const uint32_t after = board::Ticks();
    Add(KIND, board::Instructions(before, after) - board::EmptyPair(),
        {reinterpret_cast<const void*>(ROUTINE), {Bits(operand), 0}});
    return result;
}

} // namespace

void Begin()
{
    operationCount = 0;
    cost = {};
    watching = true;
}

void End()
{
    watching = false;
}

Cost Latest()
{
    return cost;
}

void CountRepetitions(bool wanted)
{
    comparing = wanted;
}

} // namespace target::floor

using target::floor::Kind;
using target::floor::Watch;

extern "C" {

#define QSTD_TRACE_TWO(kind, type, routine)                                                                            \
    type traced_##routine(double first, double second)                                                                 \
    {                                                                                                                  \
        return Watch<kind, routine>(first, second);                                                                    \
    }

#define QSTD_TRACE_ONE(kind, type, routine, operand)                                                                   \
    type traced_##routine(operand value)                                                                               \
    {                                                                                                                  \
        return Watch<kind, static_cast<type (*)(operand)>(routine)>(value);                                            \
    }

QSTD_TRACE_TWO(Kind::ARITHMETIC, double, __aeabi_dadd)
QSTD_TRACE_TWO(Kind::ARITHMETIC, double, __aeabi_dsub)
QSTD_TRACE_TWO(Kind::ARITHMETIC, double, __aeabi_dmul)
QSTD_TRACE_TWO(Kind::FUNCTION, double, __aeabi_ddiv)
QSTD_TRACE_TWO(Kind::ARITHMETIC, int, __aeabi_dcmpeq)
QSTD_TRACE_TWO(Kind::ARITHMETIC, int, __aeabi_dcmpge)
QSTD_TRACE_TWO(Kind::ARITHMETIC, int, __aeabi_dcmpgt)
QSTD_TRACE_TWO(Kind::ARITHMETIC, int, __aeabi_dcmple)
QSTD_TRACE_TWO(Kind::ARITHMETIC, int, __aeabi_dcmplt)
QSTD_TRACE_TWO(Kind::ARITHMETIC, int, __aeabi_dcmpun)
QSTD_TRACE_ONE(Kind::FUNCTION, double, __aeabi_i2d, int)
QSTD_TRACE_ONE(Kind::FUNCTION, int, __aeabi_d2iz, double)
QSTD_TRACE_ONE(Kind::FUNCTION, double, sin, double)
QSTD_TRACE_ONE(Kind::FUNCTION, double, cos, double)
QSTD_TRACE_ONE(Kind::FUNCTION, double, tan, double)
QSTD_TRACE_ONE(Kind::FUNCTION, double, atan, double)
QSTD_TRACE_ONE(Kind::FUNCTION, double, asin, double)
QSTD_TRACE_ONE(Kind::FUNCTION, double, acos, double)
QSTD_TRACE_ONE(Kind::FUNCTION, double, sqrt, double)

double traced_atan2(double first, double second)
{
    return Watch<Kind::FUNCTION, static_cast<double (*)(double, double)>(atan2)>(first, second);
}

double traced_hypot(double first, double second)
{
    return Watch<Kind::FUNCTION, static_cast<double (*)(double, double)>(hypot)>(first, second);
}

void* traced_memcpy(void* to, const void* from, size_t size)
{
    return memcpy(to, from, size);
}

void* traced_memset(void* to, int value, size_t size)
{
    return memset(to, value, size);
}

int traced_memcmp(const void* first, const void* second, size_t size)
{
    return memcmp(first, second, size);
}

void* traced_malloc(size_t size)
{
    return malloc(size);
}

void traced_free(void* block)
{
    free(block);
}

} // extern "C"
