#include "plan/figure_panel.h"

#include "plan/figure_symbols.h"
#include "text/text.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace qstd {

using namespace plan;

namespace {

constexpr double TITLE_STEP = 5.2;
constexpr double TOP = 7.0; // from the edge to the first line
constexpr double GAP = 6.0; // from the notes to the legend
constexpr double SCALE_HEIGHT = 44.0;
constexpr double SIDE_PANEL = 190.0; // height of the panel beside a map that lies
constexpr double LOWEST_PANEL = 62.0;
constexpr size_t MOST_TITLE_LINES = 3;
constexpr size_t MOST_COUNTS = 6; // lines below the legend's symbols that tell what is left out
constexpr size_t MOST_NOTE_LINES = 12;

template <typename Part, typename Role>
bool Has(const std::vector<Part>& parts, Role role)
{
    return std::any_of(parts.begin(), parts.end(), [role](const Part& part) { return part.role == role; });
}

/** Lines that the legend may take at most, its heading among them. */
size_t LegendLines(const Figure& figure)
{
    size_t lines = 1 + MOST_COUNTS + (figure.ticks.empty() ? 0 : 1);
    for (const PointRole role : POINT_ROLES)
    {
        lines += Has(figure.points, role) ? 1U : 0U;
    }
    for (const LineRole role : LINE_ROLES)
    {
        lines += Has(figure.lines, role) || Has(figure.arcs, role) ? 1U : 0U;
    }
    return lines;
}

std::vector<std::string> TitleLines(const Figure& figure)
{
    std::vector<std::string> lines = WrappedText(figure.view.title, TITLE_SIZE, PANEL_TEXT / BOLD_WIDTH);
    lines.resize(std::min(lines.size(), MOST_TITLE_LINES));
    return lines;
}

/** Of notes that would run into the legend the last ones are left out. */
std::vector<std::string> NoteLines(const Figure& figure)
{
    std::vector<std::string> lines;
    for (const std::string& note : figure.notes)
    {
        const std::vector<std::string> wrapped = WrappedText(note, NAME_SIZE, PANEL_TEXT);
        lines.insert(lines.end(), wrapped.begin(), wrapped.end());
    }
    const double others = TOP + static_cast<double>(TitleLines(figure).size()) * TITLE_STEP + GAP +
                          static_cast<double>(LegendLines(figure)) * LINE_STEP + SCALE_HEIGHT;
    const auto most = std::min(static_cast<size_t>(std::max((SIDE_PANEL - others) / LINE_STEP, 1.0)), MOST_NOTE_LINES);
    if (lines.size() > most)
    {
        const size_t hidden = lines.size() - (most - 1);
        lines.resize(most - 1);
        lines.push_back(fmt::format("… {}", Counted(hidden, "more line", "more lines")));
    }
    return lines;
}

/** Draws the panel of one figure. */
class Panel
{
public:
    Panel(const Figure& figureOfPanel, const FigureLayout& layoutOfFigure, SvgWriter& writer, PlanFrame& frame)
        : figure(figureOfPanel), layout(layoutOfFigure), svg(writer), surround(frame)
    {
    }

    void Draw(const LeftOut& leftOut)
    {
        surround.DrawPanel();
        const SheetBox& panel = layout.sheet.panel;
        SheetPoint base = {panel.left + 4.0, panel.top + TOP};
        DrawHeading(base);
        if (layout.sheet.isLandscape)
        {
            base.y += GAP;
            DrawLegend(base, leftOut);
            surround.DrawScale({base.x, panel.bottom - SCALE_HEIGHT});
            return;
        }
        SheetPoint second = {panel.left + 72.0, panel.top + TOP};
        DrawLegend(second, leftOut);
        surround.DrawScale({panel.left + 133.0, panel.top + TOP});
    }

private:
    void DrawHeading(SheetPoint& base)
    {
        for (const std::string& line : TitleLines(figure))
        {
            surround.PanelText(base, line, true, TITLE_SIZE);
            base.y += TITLE_STEP;
        }
        base.y += 1.0;
        for (const std::string& line : NoteLines(figure))
        {
            surround.PanelText(base, line);
            base.y += LINE_STEP;
        }
    }

    /** What occurs on this plan, and nothing else. */
    void DrawLegend(SheetPoint& base, const LeftOut& leftOut)
    {
        surround.PanelText(base, "Legend", true);
        base.y += LINE_STEP;
        for (auto role = POINT_ROLES.rbegin(); role != POINT_ROLES.rend(); ++role)
        {
            if (Has(layout.points, *role))
            {
                surround.LegendLine(base, SymbolMeaning(*role),
                                    [this, role](SheetPoint middle) { DrawSymbol(svg, middle, *role); });
            }
        }
        for (const LineRole role : LINE_ROLES)
        {
            if (Has(layout.lines, role) || Has(layout.arcs, role))
            {
                surround.LegendPen(base, PenMeaning(role), PenLook(role));
            }
        }
        if (!layout.ticks.empty())
        {
            surround.LegendLine(base, "stationing", [this](SheetPoint middle) {
                svg.Line({{middle.x, middle.y - TICK_HALF}, {middle.x, middle.y + TICK_HALF}}, TICK_LOOK);
            });
        }
        DrawCounts(base, leftOut);
    }

    void DrawCounts(SheetPoint& base, const LeftOut& leftOut)
    {
        if (layout.points.empty() && layout.lines.empty() && layout.arcs.empty() && layout.ticks.empty())
        {
            surround.PanelText(base, "nothing to show");
            base.y += LINE_STEP;
        }
        DrawCount(base, leftOut.names, "name", "names", "without room");
        DrawCount(base, leftOut.labels, "label", "labels", "without room");
        DrawCount(base, layout.withoutHeight, "part", "parts", "without height");
        DrawCount(base, layout.tooSmall, "part", "parts", "too small to show");
        DrawCount(base, layout.outOfView + layout.unusable, "part", "parts", "beyond the sheet");
    }

    void DrawCount(SheetPoint& base, size_t count, std::string_view one, std::string_view many, std::string_view why)
    {
        if (count > 0)
        {
            surround.PanelText(base, fmt::format("{} {}", Counted(count, one, many), why));
            base.y += LINE_STEP;
        }
    }

    const Figure& figure;
    const FigureLayout& layout;
    SvgWriter& svg;
    PlanFrame& surround;
};

} // namespace

double FigurePanelHeight(const Figure& figure)
{
    const double notes = static_cast<double>(TitleLines(figure).size()) * TITLE_STEP +
                         static_cast<double>(NoteLines(figure).size()) * LINE_STEP;
    const double legend = static_cast<double>(LegendLines(figure)) * LINE_STEP;
    return std::max(LOWEST_PANEL, TOP + std::max(notes, legend));
}

void DrawFigurePanel(const Figure& figure, const FigureLayout& layout, const LeftOut& leftOut, SvgWriter& svg,
                     PlanFrame& surround)
{
    Panel(figure, layout, svg, surround).Draw(leftOut);
}

} // namespace qstd
