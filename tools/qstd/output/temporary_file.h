/**
 * @file temporary_file.h
 * A file that gets its name when it is complete.
 */
#ifndef QSTD_TEMPORARY_FILE_H
#define QSTD_TEMPORARY_FILE_H

#include "output/interruption.h"

#include <string>
#include <string_view>

namespace qstd {

/** Where a path leads: a symbolic link is written through, not replaced. */
std::string LinkTarget(const std::string& path);

/** Why a path cannot be renamed to (a directory, a pipe, a device), or empty. */
std::string TargetProblem(const std::string& path);

/**
 * A file under a name of its own, beside its target, until it is renamed. It is removed when that never happens, also
 * when a signal ends the program. What can fail returns 0 or the error number.
 */
class TemporaryFile
{
public:
    explicit TemporaryFile(std::string targetPath);
    ~TemporaryFile();

    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    TemporaryFile(TemporaryFile&&) = delete;
    TemporaryFile& operator=(TemporaryFile&&) = delete;

    int Create();

    [[nodiscard]] int Write(std::string_view text) const;

    /** Gives the file its permissions, brings it to the disk and closes it; does nothing the second time. */
    int Complete();

    int Rename();

private:
    std::string target;
    std::string name;
    int descriptor = -1;
    bool exists = false;
    RemovedOnInterruption interruption;
};

} // namespace qstd

#endif
