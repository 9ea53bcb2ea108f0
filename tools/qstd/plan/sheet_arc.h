/**
 * @file sheet_arc.h
 * Circular arcs on the sheet: how far they reach, and what a frame shows of them.
 */
#ifndef QSTD_SHEET_ARC_H
#define QSTD_SHEET_ARC_H

#include "plan/plan_labels.h"

#include <vector>

namespace qstd {

/** As a FigureArc, in millimetres of the sheet: azimuths clockwise from the sheet's up. A full turn at most. */
struct SheetArc
{
    SheetPoint centre;
    double radius = 0.0;
    double start = 0.0;
    double sweep = 0.0;

    /** The point at a fraction of the sweep. */
    [[nodiscard]] SheetPoint At(double fraction) const;
};

/** The smallest box around an arc. */
SheetBox BoundingBox(const SheetArc& arc);

/** Points on an arc, both ends among them, from chord to chord no farther off it than `sagitta`. */
std::vector<SheetPoint> Chords(const SheetArc& arc, double sagitta);

/** What lies within a box, as chords; in as many runs as the box shows parts of the arc. */
std::vector<std::vector<SheetPoint>> VisibleChords(const SheetArc& arc, const SheetBox& box, double sagitta);

} // namespace qstd

#endif
