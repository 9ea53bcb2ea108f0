/**
 * @file plan_shapes.h
 * Points and circles of a computation as parts of its figure.
 */
#ifndef QSTD_PLAN_SHAPES_H
#define QSTD_PLAN_SHAPES_H

#include "input/field_book.h"
#include "plan/figure.h"

#include <qstdlib.h>

#include <string>

namespace qstd {

/** With the height where the point has one. */
FigurePlace PlaceOf(const PointRecord& point);

FigurePoint GivenPoint(const KnownPoint& point);

FigurePoint ComputedPoint(const std::string& name, const PointRecord& point);

/** A whole circle. */
FigureArc CircleAround(const PointRecord& centre, double radius, const std::string& label);

} // namespace qstd

#endif
