/**
 * @file plan_svg.h
 * A plan of a solved station on a sheet of A4, as SVG.
 */
#ifndef QSTD_PLAN_SVG_H
#define QSTD_PLAN_SVG_H

#include "report.h"
#include "station_solution.h"

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
