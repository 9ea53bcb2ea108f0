// Results of the operations on blocks of operands, to be compared between platforms.
//
// results FIRST COUNT OPERATION...: a line for each operation and each of COUNT blocks from FIRST on: name, number of
// the block, hash of its results. Without names, of all operations.
//
// results --show NUMBER OPERATION: the operands of a block, and each result.
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "operations.h"

namespace {

using soft_float::BLOCK_SIZE;
using soft_float::Operation;
using soft_float::Pair;

Pair block[BLOCK_SIZE];

uint64_t Hash(const Operation& operation)
{
    uint64_t hash = 0;
    for (const Pair& operands : block)
    {
        hash = (hash ^ operation.result(operands)) * 0x9E3779B97F4A7C15U;
        hash ^= hash >> 32U;
    }
    return hash;
}

bool IsWanted(const Operation& operation, int nameCount, char** names)
{
    for (int i = 0; i < nameCount; ++i)
    {
        if (std::strcmp(names[i], operation.name) == 0)
        {
            return true;
        }
    }
    return nameCount == 0;
}

uint32_t Number(const char* text)
{
    return static_cast<uint32_t>(std::strtoul(text, nullptr, 10));
}

int Show(uint32_t number, char** name)
{
    soft_float::MakeBlock(number, block);
    for (uint32_t i = 0; i < soft_float::OPERATION_COUNT; ++i)
    {
        for (const Pair& operands : block)
        {
            if (IsWanted(soft_float::OPERATIONS[i], 1, name))
            {
                std::printf("%016" PRIx64 " %016" PRIx64 "  %016" PRIx64 "\n", operands.a, operands.b,
                            soft_float::OPERATIONS[i].result(operands));
            }
        }
    }
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc == 4 && std::strcmp(argv[1], "--show") == 0)
    {
        return Show(Number(argv[2]), argv + 3);
    }
    if (argc < 3)
    {
        return 2;
    }
    const uint32_t first = Number(argv[1]);
    const uint32_t count = Number(argv[2]);
    for (uint32_t number = first; number < first + count; ++number)
    {
        soft_float::MakeBlock(number, block);
        for (uint32_t i = 0; i < soft_float::OPERATION_COUNT; ++i)
        {
            const Operation& operation = soft_float::OPERATIONS[i];
            if (IsWanted(operation, argc - 3, argv + 3))
            {
                std::printf("%s %" PRIu32 " %016" PRIx64 "\n", operation.name, number, Hash(operation));
            }
        }
    }
    return 0;
}
