/**
 * @file crossing_sides.h
 * Where the boundary of a polygon crosses itself.
 */
#ifndef QSTD_CROSSING_SIDES_H
#define QSTD_CROSSING_SIDES_H

#include "proof/plan_geometry.h"

#include <cstddef>
#include <vector>

namespace qstd {

/** Two sides of a polygon that cross, each by the place of the corner that it starts from. */
struct Crossing
{
    size_t first = 0;
    size_t second = 0;
    PlanVector place;
};

/**
 * Crossings of the sides of a closed polygon, at most so many.
 *
 * Sides that only touch do not cross: a corner on another side or corner from where the boundary goes back to the side
 * that it came from, and a way that is gone there and back, such as the bridge to a hole. Touching is to within a
 * millimetre, or a ten-thousandth of a figure below 10 m: coordinates are rounded to that.
 *
 * The sides are sorted along a direction and compared with those that overlap them there; of four directions the one is
 * taken in which the fewest do. Where sides are short beside the figure, this takes n log n steps; a figure of n spikes
 * in all directions takes n * n / 8 comparisons, about a second for 32,767.
 */
std::vector<Crossing> FindCrossings(const std::vector<PlanVector>& corners, size_t most);

} // namespace qstd

#endif
