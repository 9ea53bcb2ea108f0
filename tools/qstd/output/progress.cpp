#include "output/progress.h"

#include "output/descriptor.h"

#include <sys/ioctl.h>
#include <unistd.h>

namespace qstd {

namespace {

/** Asking the time for every line would cost more than reading the line. */
constexpr unsigned CALLS_PER_LOOK = 64;

constexpr size_t USUAL_WIDTH = 80;

size_t TerminalWidth()
{
    struct winsize size = {};
    const bool isKnown = ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return isKnown ? size.ws_col : USUAL_WIDTH;
}

} // namespace

Progress::Progress() : isTerminal(isatty(STDERR_FILENO) == 1), pace(std::chrono::steady_clock::now())
{
}

Progress::~Progress()
{
    if (shownWidth > 0)
    {
        Draw("");
        WriteAll(STDERR_FILENO, "\r");
    }
}

void Progress::Show(uint64_t done, uint64_t total)
{
    if (!isTerminal || ++calls < CALLS_PER_LOOK)
    {
        return;
    }
    calls = 0;
    if (pace.IsDue(std::chrono::steady_clock::now()))
    {
        // The last column stays free: a full line would wrap.
        Draw(ProgressBar(done, total, TerminalWidth() - 1));
    }
}

/** Over what is shown, in one piece, with blanks where the old text was longer; every terminal can do that. */
void Progress::Draw(const std::string& bar)
{
    const size_t rest = shownWidth > bar.size() ? shownWidth - bar.size() : 0;
    WriteAll(STDERR_FILENO, "\r" + bar + std::string(rest, ' '));
    shownWidth = bar.size();
}

} // namespace qstd
