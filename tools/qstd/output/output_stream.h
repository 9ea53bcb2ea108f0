/**
 * @file output_stream.h
 * Output of any length, to standard output or to a file that appears complete or not at all.
 */
#ifndef QSTD_OUTPUT_STREAM_H
#define QSTD_OUTPUT_STREAM_H

#include "output/temporary_file.h"

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

namespace qstd {

/**
 * A file is written under a temporary name beside its own and renamed by Commit. Without Commit, also when the program
 * is interrupted (SIGINT, SIGTERM, SIGHUP), the temporary file is removed and what stood there before stays.
 */
class OutputStream
{
public:
    OutputStream() = default;
    OutputStream(const OutputStream&) = delete;
    OutputStream& operator=(const OutputStream&) = delete;
    ~OutputStream();

    /** Opens a file, or standard output for "-". @return empty, or why it cannot be written, naming the file */
    std::string Open(const std::string& path);

    /** Adds to the output. A failure is kept and told by Commit; further writes do nothing. */
    void Write(std::string_view text);

    /** True once a write has failed: going on is of no use. */
    [[nodiscard]] bool HasFailed() const;

    /**
     * Writes what is left; a file is then complete on the disk, but has not got its name. Of several outputs all are
     * completed before the first is committed: what can go wrong has gone wrong by then.
     *
     * @return empty, or what went wrong, naming the file
     */
    std::string Complete();

    /** Completes the output and gives a file its name. @return empty, or what went wrong, naming the file */
    std::string Commit();

private:
    void Flush();
    [[nodiscard]] std::string ProblemText() const;

    std::string displayPath;
    std::unique_ptr<TemporaryFile> file; /**< nothing for standard output */
    std::string buffer;
    int error = 0;
};

} // namespace qstd

#endif
