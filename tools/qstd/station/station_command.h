/**
 * @file station_command.h
 * The command `qstd station`: from options to output, messages and exit code.
 */
#ifndef QSTD_STATION_COMMAND_H
#define QSTD_STATION_COMMAND_H

#include "instrument/instrument_options.h"
#include "results/output_options.h"
#include "station/station_method.h"

#include <string>
#include <vector>

namespace qstd {

struct StationOptions
{
    std::vector<std::string> names; /**< none: all stations that are no known points */
    std::string points;
    std::string sights;
    StationMethod method = StationMethod::MULTI;
    std::vector<std::string> targets; /**< none: all */
    std::string lineAzimuth;          /**< an angle, as typed; empty: none */
    bool isLeaveOneOut = false;
    OutputOptions output;
    InstrumentOptions instrument; /**< its corrections */
};

struct CommandResult
{
    int exitCode = EXIT_ALL_DONE;
    std::string messages; /**< for standard error */
};

/** Runs the command and writes its report and files. */
CommandResult RunStation(const StationOptions& options);

} // namespace qstd

#endif
