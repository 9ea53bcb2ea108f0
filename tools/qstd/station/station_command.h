/**
 * @file station_command.h
 * The command `qstd station`: from options to output, messages and exit code.
 */
#ifndef QSTD_STATION_COMMAND_H
#define QSTD_STATION_COMMAND_H

#include "instrument/instrument_options.h"
#include "results/output_options.h"
#include "station/station_method.h"

#include <optional>
#include <string>
#include <vector>

namespace qstd {

struct StationOptions
{
    std::vector<std::string> names; /**< none: all stations that are no known points */
    std::string points;
    std::string sights;
    StationMethod method = StationMethod::AUTO;
    std::vector<std::string> targets; /**< none: all */
    std::string lineAzimuth;          /**< an angle, as typed; empty: none */
    bool isLeaveOneOut = false;
    std::optional<double> sigmaDirection; /**< that sights are judged by: seconds */
    std::optional<double> sigmaZenith;    /**< seconds; none: as sigmaDirection */
    std::optional<double> sigmaDistance;  /**< in the unit of the job */
    std::optional<double> sigmaPpm;       /**< of the distance */
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
