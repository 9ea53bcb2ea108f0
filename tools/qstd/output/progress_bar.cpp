#include "output/progress_bar.h"

#include <fmt/format.h>

#include <algorithm>

namespace qstd {

namespace {

constexpr size_t PERCENTAGE_WIDTH = 4;
constexpr size_t FRAME_WIDTH = 3; // a blank and two brackets
constexpr size_t SHORTEST_BAR = 10;
constexpr size_t LONGEST_BAR = 50;

} // namespace

std::string ProgressBar(uint64_t done, uint64_t total, size_t width)
{
    if (total == 0 || width < PERCENTAGE_WIDTH)
    {
        return "";
    }
    const double share = done < total ? static_cast<double>(done) / static_cast<double>(total) : 1.0;
    // Of huge numbers the quotient may round up to 1 too early.
    const int percentage = std::min(static_cast<int>(share * 100.0), done < total ? 99 : 100);
    std::string text = fmt::format("{:3}%", percentage);
    if (width < PERCENTAGE_WIDTH + FRAME_WIDTH + SHORTEST_BAR)
    {
        return text;
    }
    const size_t length = std::min(width - PERCENTAGE_WIDTH - FRAME_WIDTH, LONGEST_BAR);
    const auto filled = static_cast<size_t>(share * static_cast<double>(length));
    return fmt::format("{} [{}{}]", text, std::string(filled, '#'), std::string(length - filled, ' '));
}

ProgressPace::ProgressPace(Time start) : next(start + FIRST_AFTER)
{
}

bool ProgressPace::IsDue(Time now)
{
    if (now < next)
    {
        return false;
    }
    next = now + AGAIN_AFTER;
    return true;
}

} // namespace qstd
