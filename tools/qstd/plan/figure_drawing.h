/**
 * @file figure_drawing.h
 * Draws a figure as SVG.
 */
#ifndef QSTD_FIGURE_DRAWING_H
#define QSTD_FIGURE_DRAWING_H

#include "plan/figure_layout.h"

#include <string>

namespace qstd {

/** The document. Names and labels for which there is no free place are left out, and counted in the legend. */
std::string DrawFigure(const Figure& figure, LinearUnit unit);

} // namespace qstd

#endif
