/**
 * @file station_figure.h
 * A computed station as a figure in site coordinates, for drawing programs.
 */
#ifndef QSTD_STATION_FIGURE_H
#define QSTD_STATION_FIGURE_H

#include "plan/figure.h"
#include "station/station_solution.h"

namespace qstd {

/** Station, targets and sights of a solved station; a sight that was not used is a construction line. */
void DrawStation(const StationSolution& solution, FigureWriter& figure);

} // namespace qstd

#endif
