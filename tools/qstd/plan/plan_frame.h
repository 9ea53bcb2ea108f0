/**
 * @file plan_frame.h
 * What all plans have alike: grid, frame, panel, scale, symbols and the look of their lines.
 */
#ifndef QSTD_PLAN_FRAME_H
#define QSTD_PLAN_FRAME_H

#include "plan/plan_labels.h"
#include "plan/plan_sheet.h"
#include "plan/svg_writer.h"
#include "text/unit.h"

#include <string_view>
#include <vector>

namespace qstd {

namespace plan {

constexpr double NAME_SIZE = 2.8;
constexpr double SMALL_SIZE = 2.5;
constexpr double TITLE_SIZE = 4.0;
constexpr double LINE_STEP = 4.6;   // from line to line of the panel
constexpr double BOLD_WIDTH = 1.1;  // of bold text, in widths of plain text
constexpr double PANEL_TEXT = 60.0; // room for a line of the panel
constexpr double WIDEST_NAME = 50.0;

constexpr const char* GRID = "stroke=\"#ccc\" stroke-width=\"0.12\"";
constexpr const char* FRAME = "stroke=\"#000\" stroke-width=\"0.35\"";
constexpr const char* LEADER = "stroke=\"#777\" stroke-width=\"0.12\"";
constexpr const char* BLACK = "fill=\"#000\"";
constexpr const char* OPEN = "fill=\"#fff\" stroke=\"#000\" stroke-width=\"0.3\"";
constexpr const char* BEHIND_NAME = "fill=\"#fff\" fill-opacity=\"0.85\"";

/** Corners of a triangle that stands on its base; `size` from its middle to each. */
std::vector<SheetPoint> Triangle(SheetPoint middle, double size);

SheetBox Around(SheetPoint middle, double size);

} // namespace plan

/** How the coordinates of a plan read. */
struct FrameStyle
{
    LinearUnit unit = LinearUnit::METRE;
    bool isElevation = false; /**< distance to the right, height up */
};

/** Draws what surrounds a map. */
class PlanFrame
{
public:
    PlanFrame(const PlanSheet& sheetToFrame, SvgWriter& writer, FrameStyle styleOfFrame = {});

    /** Grid lines with their coordinates at the left and below. */
    void DrawGrid();

    /** The frame around the map, which covers the ends of what it holds. */
    void DrawFrame();
    void DrawPanel();

    /** Denominator, bar, and which way up. */
    void DrawScale(SheetPoint base);

    void PanelText(SheetPoint base, std::string_view text, bool isBold = false, double size = plan::NAME_SIZE);

    /** A line of the legend; moves `base` to the next one. `drawSymbol` is called with the symbol's middle. */
    template <typename Symbol>
    void LegendLine(SheetPoint& base, std::string_view text, Symbol drawSymbol)
    {
        drawSymbol(SheetPoint{base.x + 5.0, base.y - plan::NAME_SIZE * 0.35});
        svg.Text({base.x + 12.0, base.y}, text, {plan::NAME_SIZE});
        base.y += plan::LINE_STEP;
    }

    /** A line of the legend for a pen. */
    void LegendPen(SheetPoint& base, std::string_view text, const char* look);

    /** A name in its place, with its leader. */
    void DrawName(const LabelPlace& label, std::string_view text, bool isBold);

private:
    void DrawLineAcross(double northing, int decimals);
    void DrawLineUp(double easting, int decimals);
    void DrawAxisTitles();
    void DrawNorthArrow(SheetPoint top);

    const PlanSheet& sheet;
    SvgWriter& svg;
    FrameStyle style;
};

} // namespace qstd

#endif
