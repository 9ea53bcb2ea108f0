/**
 * @file stationing.h
 * Round stations along a reference, for the ticks of a plan.
 */
#ifndef QSTD_STATIONING_H
#define QSTD_STATIONING_H

#include <string>
#include <vector>

namespace qstd {

struct RoundStation
{
    double chainage = 0.0;
    std::string label; /**< with no more decimals than the step needs */
};

/** Multiples of 1, 2 or 5 times a power of ten between two chainages, 5 to 15 of them; none without a length. */
std::vector<RoundStation> RoundStations(double from, double to);

} // namespace qstd

#endif
