#include "plan/plan_frame.h"

#include "text/text.h"

#include <fmt/format.h>

#include <cmath>

namespace qstd {

using namespace plan;

namespace {

constexpr std::string_view DISTANCE_AXIS = "distance";
constexpr std::string_view HEIGHT_AXIS = "height";

/** Room at the end of an axis for its title. */
double RoomForTitle(const FrameStyle& style, std::string_view title)
{
    return style.isElevation ? TextWidth(title, SMALL_SIZE) + 2.0 : 0.0;
}

/** 5 km, 200 m, 2 mm; feet as they are. */
std::string LengthText(double length, LinearUnit unit)
{
    if (unit == LinearUnit::METRE && length >= 2000.0)
    {
        return GroupedText(length / 1000.0) + " km";
    }
    if (unit == LinearUnit::METRE && length < 0.01)
    {
        return GroupedText(length * 1000.0) + " mm";
    }
    return fmt::format("{} {}", GroupedText(length), UnitSymbol(unit));
}

std::string_view UnitName(LinearUnit unit)
{
    return unit == LinearUnit::METRE ? "metres" : unit == LinearUnit::FOOT ? "feet" : "US survey feet";
}

} // namespace

std::vector<SheetPoint> plan::Triangle(SheetPoint middle, double size)
{
    return {{middle.x, middle.y - size},
            {middle.x + size * 0.87, middle.y + size / 2.0},
            {middle.x - size * 0.87, middle.y + size / 2.0}};
}

SheetBox plan::Around(SheetPoint middle, double size)
{
    return {middle.x - size, middle.y - size, middle.x + size, middle.y + size};
}

PlanFrame::PlanFrame(const PlanSheet& sheetToFrame, SvgWriter& writer, FrameStyle styleOfFrame)
    : sheet(sheetToFrame), svg(writer), style(styleOfFrame)
{
}

void PlanFrame::DrawGrid()
{
    // At least 25 mm from line to line: the next nice number above that length on the ground.
    const double interval = NiceBelow(sheet.scale * 0.025 * 2.5 / sheet.metresPerUnit);
    const int decimals = interval >= 1.0 ? 0 : static_cast<int>(std::ceil(-std::log10(interval) - 1e-9));
    const double halfHeight = sheet.OnGround((sheet.frame.bottom - sheet.frame.top) / 2.0);
    const double halfWidth = sheet.OnGround((sheet.frame.right - sheet.frame.left) / 2.0);
    const double firstNorthing = std::ceil((sheet.northing - halfHeight) / interval);
    const double firstEasting = std::ceil((sheet.easting - halfWidth) / interval);
    for (int i = 0; (firstNorthing + i) * interval <= sheet.northing + halfHeight; ++i)
    {
        DrawLineAcross((firstNorthing + i) * interval, decimals);
    }
    for (int i = 0; (firstEasting + i) * interval <= sheet.easting + halfWidth; ++i)
    {
        DrawLineUp((firstEasting + i) * interval, decimals);
    }
    if (style.isElevation)
    {
        DrawAxisTitles();
    }
}

void PlanFrame::DrawLineAcross(double northing, int decimals)
{
    const double y = sheet.Place(northing, sheet.easting).y;
    const std::string text = FormatFixed(northing, decimals);
    const double half = TextWidth(text, SMALL_SIZE) / 2.0;
    svg.Line({{sheet.frame.left, y}, {sheet.frame.right, y}}, GRID);
    if (y - half > sheet.frame.top + RoomForTitle(style, HEIGHT_AXIS) && y + half < sheet.frame.bottom)
    {
        svg.Text({sheet.frame.left - 1.5, y}, text, {SMALL_SIZE, TextAnchor::MIDDLE, false, true});
    }
}

void PlanFrame::DrawLineUp(double easting, int decimals)
{
    const double x = sheet.Place(sheet.northing, easting).x;
    const std::string text = FormatFixed(easting, decimals);
    const double half = TextWidth(text, SMALL_SIZE) / 2.0;
    svg.Line({{x, sheet.frame.top}, {x, sheet.frame.bottom}}, GRID);
    if (x - half > sheet.frame.left && x + half < sheet.frame.right - RoomForTitle(style, DISTANCE_AXIS))
    {
        svg.Text({x, sheet.frame.bottom + 3.6}, text, {SMALL_SIZE, TextAnchor::MIDDLE});
    }
}

void PlanFrame::DrawAxisTitles()
{
    svg.Text({sheet.frame.left - 1.5, sheet.frame.top}, HEIGHT_AXIS, {SMALL_SIZE, TextAnchor::END, false, true});
    svg.Text({sheet.frame.right, sheet.frame.bottom + 3.6}, DISTANCE_AXIS, {SMALL_SIZE, TextAnchor::END});
}

void PlanFrame::DrawFrame()
{
    svg.Box(sheet.frame, FRAME);
}

void PlanFrame::DrawPanel()
{
    svg.Box(sheet.panel, FRAME);
}

void PlanFrame::PanelText(SheetPoint base, std::string_view text, bool isBold, double size)
{
    const double room = PANEL_TEXT / (isBold ? BOLD_WIDTH : 1.0);
    svg.Text(base, FittedText(text, size, room), {size, TextAnchor::START, isBold});
}

void PlanFrame::LegendPen(SheetPoint& base, std::string_view text, const char* look)
{
    LegendLine(base, text, [this, look](SheetPoint middle) {
        svg.Line({{middle.x - 5.0, middle.y}, {middle.x + 5.0, middle.y}}, look);
    });
}

void PlanFrame::DrawName(const LabelPlace& label, std::string_view text, bool isBold)
{
    if (label.leader)
    {
        svg.Line(*label.leader, LEADER);
    }
    svg.Box(label.box, BEHIND_NAME);
    svg.Text({(label.box.left + label.box.right) / 2.0, label.box.bottom - NAME_SIZE * 0.15}, text,
             {NAME_SIZE, TextAnchor::MIDDLE, isBold});
}

void PlanFrame::DrawScale(SheetPoint base)
{
    PanelText(base, ScaleText(sheet.scale), true, TITLE_SIZE);
    const double length = NiceBelow(45.0 * sheet.scale / 1000.0 / sheet.metresPerUnit);
    const double bar = sheet.OnSheet(length);
    const double y = base.y + 8.0;
    svg.Box({base.x, y, base.x + bar, y + 1.6}, OPEN);
    svg.Box({base.x, y, base.x + bar / 2.0, y + 1.6}, BLACK);
    svg.Text({base.x, y - 1.2}, "0", {SMALL_SIZE});
    svg.Text({base.x + bar, y - 1.2}, LengthText(length, style.unit), {SMALL_SIZE, TextAnchor::MIDDLE});
    if (style.isElevation)
    {
        svg.Text({base.x, y + 9.0}, fmt::format("grid in {},", UnitName(style.unit)), {SMALL_SIZE});
        svg.Text({base.x, y + 13.0}, "height is up, both axes", {SMALL_SIZE});
        svg.Text({base.x, y + 17.0}, "to the same scale", {SMALL_SIZE});
        return;
    }
    DrawNorthArrow({base.x + 6.0, y + 9.0});
    svg.Text({base.x + 16.0, y + 14.0}, fmt::format("grid in {},", UnitName(style.unit)), {SMALL_SIZE});
    svg.Text({base.x + 16.0, y + 18.0}, "north is up", {SMALL_SIZE});
}

void PlanFrame::DrawNorthArrow(SheetPoint top)
{
    svg.Polygon({{top.x, top.y}, {top.x + 3.0, top.y + 14.0}, {top.x, top.y + 11.5}}, OPEN);
    svg.Polygon({{top.x, top.y}, {top.x - 3.0, top.y + 14.0}, {top.x, top.y + 11.5}},
                "fill=\"#000\" stroke=\"#000\" stroke-width=\"0.3\"");
    svg.Text({top.x, top.y + 18.5}, "N", {NAME_SIZE + 0.7, TextAnchor::MIDDLE, true});
}

} // namespace qstd
