/**
 * @file report.h
 * The computed stations in three forms: text for people, CSV for spreadsheets, JSON Lines for programs.
 */
#ifndef QSTD_REPORT_H
#define QSTD_REPORT_H

#include "station/station_solution.h"
#include "text/angle_text.h"

#include <string>
#include <vector>

namespace qstd {

/** How figures are printed. */
struct ReportStyle
{
    AngleForm angles = AngleForm::DMS;
    int decimals = 4;       /**< of coordinates and heights */
    std::string sightsFile; /**< as messages name it, for line references */
    LinearUnit unit = LinearUnit::METRE;
    bool isLeaveOneOut = false;
    std::vector<std::string> columns; /**< of CSV; none: all */
};

/** The name of a set-up: its station, numbered where the field book has several of it. */
std::string SetUpName(const SetUp& setUp);

/** One set-up: station, precisions, and a table of all its sights; or why it could not be solved. */
std::string TextReport(const StationSolution& solution, const ReportStyle& style);

/** The names of the columns of CSV, in order. */
std::vector<std::string> CsvColumns(const ReportStyle& style);

/** A title line and one line a sight, with the columns of its station repeated. The columns asked for must exist. */
std::string CsvReport(const std::vector<StationSolution>& solutions, const ReportStyle& style);

/** One object a line and set-up, in full precision. */
std::string JsonReport(const std::vector<StationSolution>& solutions, const ReportStyle& style);

} // namespace qstd

#endif
