/**
 * @file figure_geometry.h
 * What the writers of figures ask of its parts.
 */
#ifndef QSTD_FIGURE_GEOMETRY_H
#define QSTD_FIGURE_GEOMETRY_H

#include "plan/figure.h"

#include <string_view>

namespace qstd {

/** True when all numbers of a part are finite and, for an arc, when there is something to draw of it. */
bool IsDrawable(const FigurePlace& place);
bool IsDrawable(const FigurePoint& point);
bool IsDrawable(const FigureLine& line);
bool IsDrawable(const FigureArc& arc);
bool IsDrawable(const FigureTick& tick);

/** A full circle, also when its sweep lacks no more than rounding. */
bool IsFullTurn(double sweep);

/** The sweep of an arc, no more than a full turn to either side. */
double SweepOf(const FigureArc& arc);

/** The azimuth of a point of an arc, from 0 at its start to 1 at its end. */
double AzimuthAt(const FigureArc& arc, double fraction);

/** The place on the circle of an arc in the direction of an azimuth from its centre, at the centre's height. */
FigurePlace PlaceOnCircle(const FigureArc& arc, double azimuth);

/** The value; a negative zero is zero. */
double PlainZero(double value);

/** given, computed and so on, as programs read it. */
std::string_view RoleWord(PointRole role);
std::string_view RoleWord(LineRole role);

} // namespace qstd

#endif
