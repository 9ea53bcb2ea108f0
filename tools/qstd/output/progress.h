/**
 * @file progress.h
 * How far a long run has come, for somebody who watches.
 */
#ifndef QSTD_PROGRESS_H
#define QSTD_PROGRESS_H

#include "output/progress_bar.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace qstd {

/** A bar on standard error, where that is a terminal; nothing elsewhere. Appears only in runs of more than a moment. */
class Progress
{
public:
    Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /** Removes the bar. */
    ~Progress();

    /** Tells how much is done; cheap enough to be called for every line. */
    void Show(uint64_t done, uint64_t total);

private:
    void Draw(const std::string& bar);

    bool isTerminal;
    ProgressPace pace;
    unsigned calls = 0;
    size_t shownWidth = 0;
};

} // namespace qstd

#endif
