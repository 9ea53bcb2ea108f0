#include "tests/station/allocation_watch.h"

#include <algorithm>
#include <cstdlib>
#include <new>

#include <gtest/gtest.h>

extern "C" {
void* __real_malloc(size_t size); // NOLINT: the linker gives the name
void __real_free(void* block);    // NOLINT
void* __wrap_malloc(size_t size); // NOLINT
void __wrap_free(void* block);    // NOLINT
}

namespace {

struct Block
{
    void* address;
    size_t size;
};

bool watching = false;
size_t failingNumber = 0;
std::vector<size_t> sizes;
std::vector<Block> blocks;
size_t bytes = 0;
size_t mostBytes = 0;

} // namespace

extern "C" {
void* __wrap_malloc(size_t size) // NOLINT
{
    if (!watching)
    {
        return __real_malloc(size);
    }
    sizes.push_back(size);
    void* const block = sizes.size() == failingNumber ? nullptr : __real_malloc(size);
    if (block != nullptr)
    {
        blocks.push_back({block, size});
        bytes += size;
        mostBytes = std::max(mostBytes, bytes);
    }
    return block;
}

void __wrap_free(void* block) // NOLINT
{
    const auto known =
        std::find_if(blocks.begin(), blocks.end(), [block](const Block& b) { return b.address == block; });
    if (known != blocks.end())
    {
        bytes -= known->size;
        blocks.erase(known);
    }
    __real_free(block);
}
}

// Blocks of C++ go past the watch, its own among them, even where the run-time library is linked statically.
void* operator new(size_t size)
{
    void* const block = __real_malloc(size);
    if (block == nullptr)
    {
        std::abort();
    }
    return block;
}

void operator delete(void* block) noexcept
{
    __real_free(block);
}

void operator delete(void* block, size_t size) noexcept
{
    static_cast<void>(size);
    __real_free(block);
}

AllocationWatch::AllocationWatch(size_t failing)
{
    EXPECT_FALSE(watching) << "one watch at a time";
    sizes.clear();
    blocks.clear();
    bytes = 0;
    mostBytes = 0;
    failingNumber = failing;
    watching = true;
}

AllocationWatch::~AllocationWatch()
{
    watching = false;
    for (const Block& block : blocks)
    {
        __real_free(block.address);
    }
    blocks.clear();
}

// The watch is one for the whole program; its state is reached through an object so that it is on while one lives.
// NOLINTBEGIN(readability-convert-member-functions-to-static)
const std::vector<size_t>& AllocationWatch::Sizes() const
{
    return sizes;
}

size_t AllocationWatch::MostBytes() const
{
    return mostBytes;
}

std::vector<size_t> AllocationWatch::Outstanding() const
{
    std::vector<size_t> outstanding;
    outstanding.reserve(blocks.size());
    for (const Block& block : blocks)
    {
        outstanding.push_back(block.size);
    }
    return outstanding;
}
// NOLINTEND(readability-convert-member-functions-to-static)
