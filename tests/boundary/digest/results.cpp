#include "results.h"

#include <cstdio>
#include <cstring>

#include "math_watch.h"

namespace digest {

namespace {

// In two halves: small C libraries print no 64-bit integers.
void PrintBits(const char* separator, uint64_t bits)
{
    std::printf("%s%08lx%08lx", separator, static_cast<unsigned long>(bits >> 32),
                static_cast<unsigned long>(bits & 0xFFFFFFFFU));
}

} // namespace

// FNV-1a, lowest byte first on every platform.
void Results::HashBytes(uint64_t value, int bytes)
{
    for (int i = 0; i < bytes; ++i)
    {
        hash = (hash ^ ((value >> (8 * i)) & 0xFFU)) * 0x100000001B3U;
    }
}

void Results::BeginCall(int32_t number)
{
    ForgetMathUse();
    if (full)
    {
        std::printf("%s %ld", name, static_cast<long>(number));
    }
}

void Results::AddStatus(int32_t status)
{
    if (status == QSTD_OK)
    {
        ++succeeded;
    }
    Add(status);
}

void Results::AddSolutions(int32_t solutions)
{
    if (solutions > 0)
    {
        ++succeeded;
    }
    Add(solutions);
}

// Platforms differ in the sign and payload of a NaN; all count as one.
void Results::Add(double value)
{
    constexpr uint64_t ANY_NAN = 0x7FF8000000000000U;
    uint64_t bits = ANY_NAN;
    if (value == value)
    {
        std::memcpy(&bits, &value, sizeof bits);
    }
    HashBytes(bits, 8);
    if (full)
    {
        PrintBits(" ", bits);
    }
}

void Results::Add(int32_t value)
{
    HashBytes(static_cast<uint32_t>(value), 4);
    if (full)
    {
        std::printf(" %ld", static_cast<long>(value));
    }
}

void Results::AddAngle(AngleUnit angle)
{
    HashBytes(static_cast<uint32_t>(angle), 4);
    if (full)
    {
        std::printf(" a%ld", static_cast<long>(angle));
    }
}

void Results::Add(const PointRecord& point)
{
    Add(point.northing);
    Add(point.easting);
    Add(point.height);
    Add(static_cast<int32_t>(point.flags));
}

void Results::EndCall(double largestInput) const
{
    if (full)
    {
        const MathUse use = CurrentMathUse();
        uint64_t bits = 0;
        std::memcpy(&bits, &largestInput, sizeof bits);
        PrintBits(" | ", bits);
        std::printf(" %lu %08lx\n", static_cast<unsigned long>(use.calls), static_cast<unsigned long>(use.hash));
    }
}

void Results::PrintTotal(int32_t calls) const
{
    std::printf("%-24s %7ld calls %7ld succeeded ", name, static_cast<long>(calls), static_cast<long>(succeeded));
    PrintBits("", hash);
    std::printf("\n");
}

} // namespace digest
