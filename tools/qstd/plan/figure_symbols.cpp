#include "plan/figure_symbols.h"

#include "plan/plan_frame.h"

namespace qstd {

namespace {

constexpr const char* CROSS = "stroke=\"#000\" stroke-width=\"0.4\"";

void DrawCross(SvgWriter& svg, SheetPoint middle, double size)
{
    svg.Line({{middle.x - size, middle.y - size}, {middle.x + size, middle.y + size}}, CROSS);
    svg.Line({{middle.x - size, middle.y + size}, {middle.x + size, middle.y - size}}, CROSS);
}

} // namespace

const char* PenLook(LineRole role)
{
    switch (role)
    {
    case LineRole::REFERENCE:
        return "stroke=\"#777\" stroke-width=\"0.8\"";
    case LineRole::RESULT:
        return "stroke=\"#000\" stroke-width=\"0.4\"";
    case LineRole::SIGHT:
        return "stroke=\"#444\" stroke-width=\"0.25\" stroke-dasharray=\"2.4 1.2\"";
    case LineRole::OFFSET:
        return "stroke=\"#000\" stroke-width=\"0.2\"";
    case LineRole::CONSTRUCTION:
        break;
    }
    return "stroke=\"#444\" stroke-width=\"0.25\" stroke-dasharray=\"0.4 1\"";
}

std::string_view PenMeaning(LineRole role)
{
    switch (role)
    {
    case LineRole::REFERENCE:
        return "reference";
    case LineRole::RESULT:
        return "result";
    case LineRole::SIGHT:
        return "line of sight";
    case LineRole::OFFSET:
        return "offset";
    case LineRole::CONSTRUCTION:
        break;
    }
    return "construction";
}

void DrawSymbol(SvgWriter& svg, SheetPoint middle, PointRole role)
{
    const double size = SymbolSize(role);
    switch (role)
    {
    case PointRole::GIVEN:
        svg.Polygon(plan::Triangle(middle, size), plan::BLACK);
        return;
    case PointRole::COMPUTED:
        svg.Circle(middle, size, plan::OPEN);
        svg.Circle(middle, 0.45, plan::BLACK);
        return;
    case PointRole::OTHER:
        svg.Circle(middle, size, plan::OPEN);
        return;
    case PointRole::STATION:
        svg.Circle(middle, size, plan::OPEN);
        svg.Circle(middle, size / 2.0, plan::OPEN);
        return;
    case PointRole::SIGHTED:
        DrawCross(svg, middle, size);
        return;
    case PointRole::FOOT:
        break;
    }
    svg.Circle(middle, size, plan::BLACK);
}

std::string_view SymbolMeaning(PointRole role)
{
    switch (role)
    {
    case PointRole::GIVEN:
        return "given point";
    case PointRole::COMPUTED:
        return "computed point";
    case PointRole::OTHER:
        return "other solution";
    case PointRole::STATION:
        return "station";
    case PointRole::SIGHTED:
        return "sighted point";
    case PointRole::FOOT:
        break;
    }
    return "foot on the reference";
}

double SymbolSize(PointRole role)
{
    switch (role)
    {
    case PointRole::GIVEN:
        return 1.7;
    case PointRole::COMPUTED:
    case PointRole::OTHER:
        return 1.3;
    case PointRole::STATION:
        return 1.8;
    case PointRole::SIGHTED:
        return 1.1;
    case PointRole::FOOT:
        break;
    }
    return 0.6;
}

} // namespace qstd
