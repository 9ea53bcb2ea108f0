#include "verbs/stationing.h"

#include "text/text.h"

#include <algorithm>
#include <cmath>

namespace qstd {

namespace {

constexpr double MOST_STEPS = 14.0;
constexpr double SHORTEST = 1e-6; // below it there is nothing to mark
constexpr double ROUNDING = 1e-9; // of a step: the end itself gets its tick
constexpr int FINEST = 9;         // decimals of a label

/** A step as it is written, so that its multiples can be formed without adding up its rounding. */
struct Step
{
    double digit = 1.0;
    int exponent = 0;

    [[nodiscard]] double Times(double count) const
    {
        // A power of ten below 1 is not exact, dividing by its inverse is correct to the last bit.
        return exponent < 0 ? count * digit / std::pow(10.0, -exponent) : count * digit * std::pow(10.0, exponent);
    }
};

Step StepFor(double length)
{
    Step step;
    step.exponent = static_cast<int>(std::floor(std::log10(length / MOST_STEPS)));
    for (const double digit : {1.0, 2.0, 5.0})
    {
        step.digit = digit;
        if (length <= step.Times(MOST_STEPS))
        {
            return step;
        }
    }
    return {1.0, step.exponent + 1};
}

} // namespace

std::vector<RoundStation> RoundStations(double from, double to)
{
    std::vector<RoundStation> stations;
    const double length = to - from;
    if (!std::isfinite(length) || length < SHORTEST)
    {
        return stations;
    }
    const Step step = StepFor(length);
    const int decimals = step.exponent < 0 ? std::min(-step.exponent, FINEST) : 0;
    const double first = std::ceil(from / step.Times(1.0) - ROUNDING);
    const double last = std::floor(to / step.Times(1.0) + ROUNDING);
    for (int i = 0; i <= static_cast<int>(last - first); ++i)
    {
        const double chainage = step.Times(first + i);
        stations.push_back({chainage, FormatFixed(chainage, decimals)});
    }
    return stations;
}

} // namespace qstd
