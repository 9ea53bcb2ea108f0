/**
 * @file arguments.h
 * What verbs take from the command line besides points and angles, and what they say of it.
 */
#ifndef QSTD_ARGUMENTS_H
#define QSTD_ARGUMENTS_H

#include "input/field_book.h"
#include "results/result.h"
#include "results/sink.h"

#include <functional>
#include <string>
#include <vector>

namespace qstd {

/** A length of any sign. Throws WrongUse. @param what  for the message, such as chainage */
double LengthArgument(const std::string& text, const std::string& what);

using PointReferences = std::vector<std::reference_wrapper<const KnownPoint>>;

/** Where a point has no coordinates in the plan: marks the row as not computed for that reason and returns true. */
bool IsRefusedForPlan(const PointReferences& points, Row& row);

/** False for a computed point that is no place on the earth: a coordinate not finite, or beyond LONGEST_LENGTH. */
bool IsOnEarth(const PointRecord& point);

/** In words: to the right, to the left, or on the reference, such as a line or an arc, where it is printed as 0. */
std::string SideText(double offset, const Sink& sink, const std::string& reference = "line");

} // namespace qstd

#endif
