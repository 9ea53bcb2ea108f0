/**
 * @file plan_line.h
 * A line in the plan as the command line gives it: by two points, or by a point and an azimuth.
 */
#ifndef QSTD_PLAN_LINE_H
#define QSTD_PLAN_LINE_H

#include "input/inputs.h"
#include "plan/figure.h"
#include "results/result.h"
#include "results/sink.h"

#include <qstdlib.h>

#include <string>
#include <utility>
#include <vector>

namespace qstd {

/** As typed: a point, then another point or an azimuth. */
using LineArgument = std::pair<std::string, std::string>;

struct PlanLine
{
    LineDef definition = {};
    KnownPoint first;
    KnownPoint second; /**< of a line by two points */

    [[nodiscard]] bool IsByPoints() const;
};

/** Throws WrongUse where the second part is neither a point nor an angle. */
PlanLine ReadLine(const LineArgument& argument, Inputs& inputs);

/** A - B, or A at 50-12-30.0. */
std::string LineName(const PlanLine& line, const Sink& sink);

/** Marks the row as not computed where the line's points have no plan coordinates or coincide, and returns true. */
bool IsRefusedLine(const PlanLine& line, Row& row);

/** Where the line runs, clockwise from north, radians. @param isSouth  azimuths count from south */
double DirectionOf(const LineDef& line, bool isSouth);

/** Distance along the line from its first point, and to the right of it. */
struct LinePlace
{
    double chainage = 0.0;
    double offset = 0.0;
};

LinePlace PlaceOnLine(const LineDef& line, const PointRecord& point, bool isSouth);

/** The piece of a line that carries its own and some other points, and a little more, to be drawn. */
FigureLine DrawnLine(const LineDef& line, const std::vector<PointRecord>& carried, bool isSouth);

} // namespace qstd

#endif
