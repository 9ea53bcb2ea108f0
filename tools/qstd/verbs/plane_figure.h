/**
 * @file plane_figure.h
 * The figure of a plane: seen from the side, or from above where it is flat.
 */
#ifndef QSTD_PLANE_FIGURE_H
#define QSTD_PLANE_FIGURE_H

#include "plan/figure.h"
#include "results/sink.h"
#include "verbs/reference_plane.h"

#include <string>

namespace qstd {

/** Draws while the sights are computed; keeps none. Does nothing where no figure is wanted. */
class PlaneFigure
{
public:
    /** Both must outlive the object. */
    PlaneFigure(const ReferencePlane& planeToDraw, const Sink& sink);

    void Begin(const std::string& title);

    void Add(const std::string& target, const PlanePlace& place);

private:
    [[nodiscard]] FigurePlace OnBaseline(double along) const;
    void AddBaseline();
    void AddPoints();

    const ReferencePlane& plane;
    const Sink& sink;
    FigureWriter* figure;
    SpaceVector baseline = {};
    bool isFlat = false;
};

} // namespace qstd

#endif
