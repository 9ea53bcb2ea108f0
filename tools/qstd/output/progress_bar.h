/**
 * @file progress_bar.h
 * What a progress bar says, and when it is worth saying.
 */
#ifndef QSTD_PROGRESS_BAR_H
#define QSTD_PROGRESS_BAR_H

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>

namespace qstd {

/**
 * A bar and the percentage, such as " 45% [#########           ]", in ASCII and at most `width` columns wide.
 *
 * The percentage is rounded down, so that 100 stands only for all. Empty when nothing fits or the total is not known.
 */
std::string ProgressBar(uint64_t done, uint64_t total, size_t width);

/** Says when to show the bar: not in the first moment of a run, and then not more often than anybody reads. */
class ProgressPace
{
public:
    using Time = std::chrono::steady_clock::time_point;

    static constexpr std::chrono::milliseconds FIRST_AFTER{500};
    static constexpr std::chrono::milliseconds AGAIN_AFTER{100};

    explicit ProgressPace(Time start);

    /** True when the bar is to be shown now; the next time is reckoned from here. */
    bool IsDue(Time now);

private:
    Time next;
};

} // namespace qstd

#endif
