/**
 * @file comparison.h
 * A result against the one that was recorded.
 */
#ifndef QSTD_COMPARISON_H
#define QSTD_COMPARISON_H

#include "replay/json_line.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace qstd {

/** How many doubles lie between two, plus one; 0 for the same bits, 1 for the two zeros. Neither may be NaN. */
uint64_t UnitsApart(double first, double second);

struct Difference
{
    std::string path;              /**< such as result.pair[1].northing; empty for the line as a whole */
    std::string expected;          /**< as JSON, shortened; or "nothing" */
    std::string got;               /**< as `expected` */
    std::optional<uint64_t> units; /**< in the last place, of two finite doubles */
};

/**
 * Compares value by value. The order of members does not count.
 *
 * @param units  doubles that lie so many units in the last place apart, or fewer, count as equal: 0 for the same bits
 */
std::vector<Difference> Compare(const Json& expected, const Json& got, uint64_t units);

/** A difference in words. */
std::string Describe(const Difference& difference);

} // namespace qstd

#endif
