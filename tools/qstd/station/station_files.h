/**
 * @file station_files.h
 * Plans and drawings of computed stations.
 */
#ifndef QSTD_STATION_FILES_H
#define QSTD_STATION_FILES_H

#include "output/files.h"
#include "results/output_options.h"
#include "station/report.h"
#include "station/station_solution.h"

#include <string>
#include <vector>

namespace qstd {

/**
 * The files that the output options ask for, one a solved station: adds them to `files`, and a line about each, or
 * about a station without one, to `notes`.
 */
void DrawFiles(const std::vector<StationSolution>& solutions, const OutputOptions& options, const ReportStyle& style,
               std::vector<OutputFile>& files, std::string& notes);

} // namespace qstd

#endif
