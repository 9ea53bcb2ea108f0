/**
 * @file stake_figure.h
 * The figure of a stake-out: the reference with its stations, each point with the offset to its foot.
 */
#ifndef QSTD_STAKE_FIGURE_H
#define QSTD_STAKE_FIGURE_H

#include "input/field_book.h"
#include "plan/figure.h"
#include "results/sink.h"
#include "verbs/alignment.h"

#include <optional>
#include <string>

namespace qstd {

/** Draws while the list is computed; keeps no point. All does nothing where no figure is wanted. */
class StakeFigure
{
public:
    /** @param chainage  of the start, added to the stations of the ticks. All must outlive the object */
    StakeFigure(const Sink& sinkOfVerb, const Alignment& alignment, double chainage);

    /** The plan and its ticks; null where no figure is wanted. */
    FigureWriter* Begin(const std::string& title);

    /** A staked point. @param footHeight  where it is known */
    void Add(const KnownPoint& point, double along, double offset, std::optional<double> footHeight = std::nullopt);

    /** The tangents as far as points were referred to them. */
    void Finish();

private:
    void AddTicks();
    void AddExtension(double from, double to);

    const Sink& sink;
    const Alignment& reference;
    double startChainage;
    FigureWriter* figure;
    double first = 0.0; /**< stations of the feet */
    double last;
};

} // namespace qstd

#endif
