#include "output/progress.h"

#include "output/redirection.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <string>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using qstd::Progress;
using qstd::ProgressBar;
using qstd::ProgressPace;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

namespace {

/** A terminal without a person: what is written to its far end can be read at the near one. */
class PseudoTerminal
{
public:
    explicit PseudoTerminal(unsigned short columns) : nearEnd(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC))
    {
        grantpt(nearEnd);
        unlockpt(nearEnd);
        farEnd = open(ptsname(nearEnd), O_RDWR | O_NOCTTY | O_CLOEXEC);
        winsize size = {};
        size.ws_col = columns;
        ioctl(farEnd, TIOCSWINSZ, &size);
        fcntl(nearEnd, F_SETFL, O_NONBLOCK);
    }

    ~PseudoTerminal()
    {
        close(farEnd);
        close(nearEnd);
    }

    PseudoTerminal(const PseudoTerminal&) = delete;
    PseudoTerminal& operator=(const PseudoTerminal&) = delete;
    PseudoTerminal(PseudoTerminal&&) = delete;
    PseudoTerminal& operator=(PseudoTerminal&&) = delete;

    [[nodiscard]] int FarEnd() const
    {
        return farEnd;
    }

    /** All that was written to it so far. */
    [[nodiscard]] std::string Shown() const
    {
        std::string shown;
        std::array<char, 4096> block{};
        for (ssize_t count = read(nearEnd, block.data(), block.size()); count > 0;
             count = read(nearEnd, block.data(), block.size()))
        {
            shown.append(block.data(), static_cast<size_t>(count));
        }
        return shown;
    }

private:
    int nearEnd;
    int farEnd = -1;
};

/** Tells of progress, half of it done, for some time. */
void ShowFor(milliseconds time, Progress& progress)
{
    const auto stop = steady_clock::now() + time;
    while (steady_clock::now() < stop)
    {
        progress.Show(1, 2);
    }
}

} // namespace

TEST(ProgressBar, ShowsTheShareDone)
{
    // 27 columns leave 20 for the bar: a percentage takes 4, a blank and two brackets 3.
    EXPECT_EQ(ProgressBar(0, 200, 27), "  0% [                    ]");
    EXPECT_EQ(ProgressBar(50, 200, 27), " 25% [#####               ]");
    EXPECT_EQ(ProgressBar(200, 200, 27), "100% [####################]");
}

TEST(ProgressBar, SaysAllOnlyOfAll)
{
    constexpr uint64_t HUGE_TOTAL = std::numeric_limits<uint64_t>::max();
    EXPECT_EQ(ProgressBar(999, 1000, 27).substr(0, 4), " 99%");
    EXPECT_EQ(ProgressBar(HUGE_TOTAL - 1, HUGE_TOTAL, 27).substr(0, 4), " 99%");
    EXPECT_EQ(ProgressBar(HUGE_TOTAL, HUGE_TOTAL, 27).substr(0, 4), "100%");
    EXPECT_EQ(ProgressBar(5, 3, 27).substr(0, 4), "100%"); // the file has grown
}

TEST(ProgressBar, FitsTheWidth)
{
    for (size_t width = 0; width < 300; ++width)
    {
        EXPECT_LE(ProgressBar(1, 3, width).size(), width);
    }
    EXPECT_EQ(ProgressBar(1, 2, 3), "");
    EXPECT_EQ(ProgressBar(1, 2, 4), " 50%");
    EXPECT_EQ(ProgressBar(1, 2, 16), " 50%");
    EXPECT_EQ(ProgressBar(1, 2, 17), " 50% [#####     ]");
    EXPECT_EQ(ProgressBar(1, 2, 300).size(), 57U); // a bar of 50 is enough
}

TEST(ProgressBar, IsEmptyWhereTheTotalIsNotKnown)
{
    EXPECT_EQ(ProgressBar(0, 0, 80), "");
    EXPECT_EQ(ProgressBar(7, 0, 80), "");
}

TEST(ProgressPace, WaitsHalfASecondAndThenATenth)
{
    const ProgressPace::Time start;
    ProgressPace pace(start);
    EXPECT_FALSE(pace.IsDue(start));
    EXPECT_FALSE(pace.IsDue(start + milliseconds(499)));
    EXPECT_TRUE(pace.IsDue(start + milliseconds(500)));
    EXPECT_FALSE(pace.IsDue(start + milliseconds(599)));
    EXPECT_TRUE(pace.IsDue(start + milliseconds(650)));
    EXPECT_FALSE(pace.IsDue(start + milliseconds(749)));
    EXPECT_TRUE(pace.IsDue(start + milliseconds(750)));
}

TEST(Progress, IsShownOnATerminalAndRemoved)
{
    const PseudoTerminal terminal(28);
    std::string during;
    int64_t elapsed = 0;
    {
        const Redirection redirection(STDERR_FILENO, terminal.FarEnd());
        const auto start = steady_clock::now();
        Progress progress;
        ShowFor(milliseconds(400), progress);
        EXPECT_EQ(steady_clock::now() - start < milliseconds(500) ? terminal.Shown() : "", "");
        ShowFor(milliseconds(500), progress);
        elapsed = std::chrono::duration_cast<milliseconds>(steady_clock::now() - start).count();
        during = terminal.Shown();
    }
    // The last of 28 columns stays free: 27 leave a bar of 20.
    const std::string bar = "\r 50% [##########          ]";
    EXPECT_EQ(during.substr(0, bar.size()), bar);
    // At 0.5 s, 0.6 s and so on: five times in 0.9 s.
    EXPECT_LE(std::count(during.begin(), during.end(), '\r'), (elapsed - 500) / 100 + 1);
    EXPECT_EQ(terminal.Shown(), "\r" + std::string(27, ' ') + "\r");
}

TEST(Progress, IsNotShownInShortRuns)
{
    const PseudoTerminal terminal(28);
    {
        const Redirection redirection(STDERR_FILENO, terminal.FarEnd());
        Progress progress;
        for (int i = 0; i < 1000; ++i)
        {
            progress.Show(1, 2);
        }
    }
    EXPECT_EQ(terminal.Shown(), "");
}

TEST(Progress, IsNotShownInAPipe)
{
    Pipe pipe;
    {
        const Redirection redirection(STDERR_FILENO, pipe.Writer());
        Progress progress;
        ShowFor(milliseconds(600), progress);
    }
    pipe.CloseWriter();
    char byte = 0;
    EXPECT_EQ(read(pipe.Reader(), &byte, 1), 0);
}
