/**
 * @file figure_layout.h
 * Brings a figure onto a sheet: what is shown, at which scale, where on the paper.
 */
#ifndef QSTD_FIGURE_LAYOUT_H
#define QSTD_FIGURE_LAYOUT_H

#include "plan/figure.h"
#include "plan/plan_sheet.h"
#include "plan/sheet_arc.h"
#include "text/unit.h"

#include <string>
#include <vector>

namespace qstd {

/** A figure as it was given. */
struct Figure
{
    FigureView view;
    std::vector<FigurePoint> points;
    std::vector<FigureLine> lines;
    std::vector<FigureArc> arcs;
    std::vector<FigureTick> ticks;
    std::vector<std::string> notes;
};

struct LaidPoint
{
    SheetPoint place;
    PointRole role = PointRole::GIVEN;
    std::string name;
};

struct LaidLine
{
    SheetLine line;
    LineRole role = LineRole::REFERENCE;
    std::string label;
};

struct LaidArc
{
    SheetArc arc;
    bool isWhole = true;                       /**< all of it lies within the frame */
    std::vector<std::vector<SheetPoint>> runs; /**< what lies within the frame, as chords */
    LineRole role = LineRole::REFERENCE;
    std::string label;
};

struct LaidTick
{
    SheetPoint place;
    SheetPoint left; /**< of unit length, to the left of the reference */
    std::string label;
};

/** A figure on its sheet, and how many of its parts are not there. */
struct FigureLayout
{
    PlanSheet sheet;
    std::vector<LaidPoint> points;
    std::vector<LaidLine> lines;
    std::vector<LaidArc> arcs;
    std::vector<LaidTick> ticks;
    size_t withoutHeight = 0; /**< in an elevation */
    size_t unusable = 0;      /**< not finite, or too far off for any map */
    size_t tooSmall = 0;      /**< for this scale; a line of sight straight up, too */
    size_t outOfView = 0;     /**< arcs that miss the frame */
};

/**
 * Lays a figure out. The sheet shows all points, lines and ticks, and all arcs but those whose bounding box is more
 * than 20 times the extent of all else: of them it shows what passes through.
 *
 * @param panelHeight that the legend needs on an upright sheet, millimetres
 */
FigureLayout LayOut(const Figure& figure, LinearUnit unit, double panelHeight);

} // namespace qstd

#endif
