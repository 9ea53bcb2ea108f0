/**
 * @file figure_svg.h
 * A figure as a plan on a sheet of A4.
 */
#ifndef QSTD_FIGURE_SVG_H
#define QSTD_FIGURE_SVG_H

#include "plan/figure.h"
#include "plan/figure_layout.h"
#include "text/unit.h"

#include <cstddef>
#include <string>

namespace qstd {

/** What a sheet can show; many more are black paper. */
constexpr size_t MOST_FIGURE_PARTS = 2000;

/**
 * Keeps a figure until it is complete, then draws it: scale, grid and legend, names where nothing is covered.
 *
 * At most MOST_FIGURE_PARTS points, lines, arcs and ticks are kept. When one more comes, IsFull becomes true and the
 * plan would not be that of the figure: the caller should refuse to write it.
 */
class FigureSvg : public FigureWriter
{
public:
    explicit FigureSvg(LinearUnit unitOfFigure = LinearUnit::METRE);

    void Begin(const FigureView& view) override;
    void Add(const FigurePoint& point) override;
    void Add(const FigureLine& line) override;
    void Add(const FigureArc& arc) override;
    void Add(const FigureTick& tick) override;
    void Note(const std::string& text) override;

    /** True once more was added than is kept. */
    [[nodiscard]] bool IsFull() const;

    /** The document. A figure without parts gives a sheet that says so. */
    [[nodiscard]] std::string Finish() const;

    /** Scale of the sheet, such as 1:500. */
    [[nodiscard]] std::string Scale() const;

private:
    bool HasRoom();

    LinearUnit unit;
    Figure figure;
    size_t parts = 0;
    bool isFull = false;
};

} // namespace qstd

#endif
