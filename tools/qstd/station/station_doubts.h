/**
 * @file station_doubts.h
 * Weak geometry that the library does not tell of: danger circle, targets in line, no redundancy.
 */
#ifndef QSTD_STATION_DOUBTS_H
#define QSTD_STATION_DOUBTS_H

#include "station/station_solution.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace qstd {

/** Computes the plan position of sights again, or nothing where there is none. */
using PositionSolver = std::function<std::optional<PointRecord>(const std::vector<PreparedSight>&)>;

/** Two directions within this angle of each other, or of opposite, are nearly in line: 5 gon. */
constexpr AngleUnit IN_LINE_LIMIT = ANGLE_FULL_CIRCLE / 80;

/**
 * Directions alone are weak where an error in them moves the station by more than this times what it moves the line of
 * sight at the targets' mean distance. Between well spread targets it is about once.
 */
constexpr double WEAK_FACTOR = 5.0;

/** From this factor on the result is as good as none. */
constexpr double HOPELESS_FACTOR = 200.0;

/** @param taken  the sights that took part */
StationDoubts FindDoubts(const StationSolution& solution, const std::vector<PreparedSight>& taken,
                         const PositionSolver& solve);

/** Each doubt in words, with what it means for the station. Text reports say the lack of redundancy themselves. */
std::vector<std::string> DoubtTexts(const StationSolution& solution, AngleForm angles, bool withRedundancy);

} // namespace qstd

#endif
