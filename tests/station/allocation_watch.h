// Watches the library's heap blocks, and lets a chosen allocation fail. The test program is linked so that malloc and
// free of the static library come by here.
#ifndef QSTDLIB_TESTS_STATION_ALLOCATION_WATCH_H
#define QSTDLIB_TESTS_STATION_ALLOCATION_WATCH_H

#include <cstddef>
#include <vector>

// Watches from its construction to its destruction, which releases what was left over. One at a time.
class AllocationWatch
{
public:
    // `failing` is the number, from 1, of the allocation that fails; 0 for none.
    explicit AllocationWatch(size_t failing = 0);
    ~AllocationWatch();

    AllocationWatch(const AllocationWatch&) = delete;
    AllocationWatch& operator=(const AllocationWatch&) = delete;

    // Sizes asked for so far, in order, the failing one included.
    const std::vector<size_t>& Sizes() const;

    // The greatest sum of sizes that was taken and not given back at one time.
    size_t MostBytes() const;

    // Sizes of the blocks that were taken and not given back.
    std::vector<size_t> Outstanding() const;
};

#endif
