// Ends in the way that its first argument names.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

#include "platform/versatile/instruction_counter.h"
#include "platform/versatile/leave.h"

namespace {

// The volatile address keeps the compiler from knowing what is wrong with the access.
void Fault(const char* kind)
{
    volatile uintptr_t address = 0;
    if (std::strcmp(kind, "wild") == 0)
    {
        address = 0xF0000000;
    }
    if (std::strcmp(kind, "jump") == 0)
    {
        reinterpret_cast<void (*)()>(address)();
    }
    if (std::strcmp(kind, "undefined") == 0)
    {
        asm volatile(".word 0xe7f000f0");
    }
    std::printf("%d\n", *reinterpret_cast<volatile int*>(address));
}

// 200 instructions count 200 more than none.
int CountInstructions()
{
    const uint32_t from = board::Ticks();
    asm volatile(".rept 200\n nop\n .endr");
    const uint32_t to = board::Ticks();
    std::printf("%lu\n", static_cast<unsigned long>(board::Instructions(from, to) - board::EmptyPair()));
    return 0;
}

// Exceptions need the unwinding tables in their place.
int CatchException()
{
    try
    {
        throw std::runtime_error("caught");
    }
    catch (const std::exception& e)
    {
        std::printf("%s\n", e.what());
    }
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    const char* const way = argc > 1 ? argv[1] : "";
    if (std::strcmp(way, "return") == 0)
    {
        std::printf("%d %s\n", argc, argv[argc - 1]);
        return 3;
    }
    if (std::strcmp(way, "exit") == 0)
    {
        std::exit(4);
    }
    if (std::strcmp(way, "leave") == 0)
    {
        Leave(5);
    }
    if (std::strcmp(way, "abort") == 0)
    {
        std::abort();
    }
    if (std::strcmp(way, "hang") == 0)
    {
        for (volatile bool forever = true; forever;)
        {
        }
    }
    if (std::strcmp(way, "count") == 0)
    {
        return CountInstructions();
    }
    if (std::strcmp(way, "throw") == 0)
    {
        return CatchException();
    }
    Fault(way);
    return 0;
}
