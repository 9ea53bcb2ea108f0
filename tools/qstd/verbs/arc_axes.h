/**
 * @file arc_axes.h
 * The axes in which an arc is handed to the library.
 */
#ifndef QSTD_ARC_AXES_H
#define QSTD_ARC_AXES_H

#include "proof/plan_geometry.h"
#include "verbs/arc_definition.h"

namespace qstd {

/** The site's own axes, or others, in which the library's formulas for arcs are sound. */
struct ArcAxes
{
    PlanVector origin;
    PlanVector north = {1.0, 0.0};
    AngleUnit turn = 0;      /**< azimuth of that north in the site's axes */
    bool isMirrored = false; /**< east and west exchanged, so that an arc to the left turns right */

    [[nodiscard]] PointRecord In(const PointRecord& point) const;
    [[nodiscard]] AngleUnit In(AngleUnit azimuth) const;
    [[nodiscard]] AngleUnit Out(AngleUnit azimuth) const;
    [[nodiscard]] ArcDefinition In(const ArcDefinition& arc) const;
};

/** From the start of an arc, turned so that neither tangent runs nearly along constant northing. */
ArcAxes AxesFor(const ArcDefinition& arc);

} // namespace qstd

#endif
