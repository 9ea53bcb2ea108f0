/**
 * @file station_command.h
 * The command `qstd station`: from options to output, messages and exit code.
 */
#ifndef QSTD_STATION_COMMAND_H
#define QSTD_STATION_COMMAND_H

#include "results/output_options.h"
#include "text/angle_text.h"

#include <optional>
#include <string>
#include <vector>

namespace qstd {

struct StationOptions
{
    std::vector<std::string> names; /**< none: all stations that are no known points */
    std::string points;
    std::string sights;
    std::string svg; /**< empty: no plan */
    OutputFormat format = OutputFormat::TEXT;
    std::optional<AngleForm> angle;
    int decimals = 4;
};

struct CommandResult
{
    int exitCode = EXIT_ALL_DONE;
    std::string output;   /**< for standard output */
    std::string messages; /**< for standard error */
};

/** Runs the command. Plans are written by it; the texts are handed back. */
CommandResult RunStation(const StationOptions& options);

} // namespace qstd

#endif
