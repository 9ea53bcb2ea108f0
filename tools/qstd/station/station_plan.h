/**
 * @file station_plan.h
 * A plan of a solved station on a sheet of A4, as SVG.
 */
#ifndef QSTD_STATION_PLAN_H
#define QSTD_STATION_PLAN_H

#include "station/report.h"
#include "station/station_solution.h"

#include <string>

namespace qstd {

struct Plan
{
    std::string svg;
    std::string scale; /**< such as 1:25 000 */
};

/** Draws a solved station. */
Plan DrawPlan(const StationSolution& solution, const ReportStyle& style);

} // namespace qstd

#endif
