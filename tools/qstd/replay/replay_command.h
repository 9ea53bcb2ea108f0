/**
 * @file replay_command.h
 * The command `qstd replay`: a file of calls, made on the library in order, and recorded or compared with a recording.
 */
#ifndef QSTD_REPLAY_COMMAND_H
#define QSTD_REPLAY_COMMAND_H

#include <cstdint>
#include <string>

namespace qstd {

struct ReplayOptions
{
    std::string calls;             /**< a file, or "-" for standard input */
    std::string expect;            /**< a recording to compare with in place of writing one; empty: none */
    uint64_t unitsInLastPlace = 0; /**< by which a double may differ from the recorded one */
    std::string output = "-";      /**< a file, or "-" for standard output */
};

struct ReplayResult
{
    int exitCode = 0;     /**< an ExitCode; EXIT_NOT_COMPUTED where something differs from the recording */
    std::string messages; /**< for standard error */
};

/**
 * Reads all lines and, when every one is a call, makes the calls.
 *
 * The library starts as it is after loading: nothing defined, no instrument connected, as far as that is in its hands;
 * definitions that the process has made before stay. Afterwards no instrument is connected.
 */
ReplayResult RunReplay(const ReplayOptions& options);

} // namespace qstd

#endif
