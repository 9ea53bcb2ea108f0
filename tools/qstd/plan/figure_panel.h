/**
 * @file figure_panel.h
 * The panel beside or below a figure: title, notes, legend and scale.
 */
#ifndef QSTD_FIGURE_PANEL_H
#define QSTD_FIGURE_PANEL_H

#include "plan/figure_layout.h"
#include "plan/plan_frame.h"
#include "plan/svg_writer.h"

#include <cstddef>

namespace qstd {

/** What found no place among the rest. */
struct LeftOut
{
    size_t names = 0;
    size_t labels = 0;
};

/** Millimetres that the panel of a figure needs below an upright map. */
double FigurePanelHeight(const Figure& figure);

void DrawFigurePanel(const Figure& figure, const FigureLayout& layout, const LeftOut& leftOut, SvgWriter& svg,
                     PlanFrame& surround);

} // namespace qstd

#endif
