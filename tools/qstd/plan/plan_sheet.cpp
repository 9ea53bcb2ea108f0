#include "plan/plan_sheet.h"

#include "text/text.h"

#include <algorithm>
#include <cmath>

namespace qstd {

namespace {

constexpr double LONG_EDGE = 297.0;
constexpr double SHORT_EDGE = 210.0;
constexpr double MARGIN = 10.0;
constexpr double GRID_LABELS = 6.0; // room for coordinates at the left and below the frame
constexpr double PANEL_WIDTH = 66.0;
constexpr double GAP = 4.0;

/** The smallest usual scale denominator that is not below `needed`. */
double UsualScale(double needed, const SheetNeeds& needs)
{
    double power = needs.smallestDenominator;
    while (power * 10.0 <= needed)
    {
        power *= 10.0;
    }
    for (const double step : {1.0, 2.0, 2.5, 5.0})
    {
        if (step * power >= needed && (step != 2.5 || needs.hasQuarterScales))
        {
            return step * power;
        }
    }
    return 10.0 * power;
}

PlanSheet MakeSheet(bool isLandscape, const GroundExtent& extent, const SheetNeeds& needs)
{
    PlanSheet sheet;
    sheet.metresPerUnit = needs.metresPerUnit;
    sheet.isLandscape = isLandscape;
    sheet.width = isLandscape ? LONG_EDGE : SHORT_EDGE;
    sheet.height = isLandscape ? SHORT_EDGE : LONG_EDGE;
    const double right = sheet.width - MARGIN;
    const double bottom = sheet.height - MARGIN;
    sheet.frame = {MARGIN + GRID_LABELS, MARGIN, right, bottom - GRID_LABELS};
    sheet.panel = {MARGIN, MARGIN, right, bottom};
    if (isLandscape)
    {
        sheet.frame.right -= PANEL_WIDTH + GAP;
        sheet.panel.left = right - PANEL_WIDTH;
    }
    else
    {
        sheet.frame.bottom -= needs.panelHeight + GAP;
        sheet.panel.top = bottom - needs.panelHeight;
    }
    const double groundHeight = (extent.north - extent.south) * needs.metresPerUnit;
    const double groundWidth = (extent.east - extent.west) * needs.metresPerUnit;
    const double roomHeight = sheet.frame.bottom - sheet.frame.top - 2.0 * needs.inset;
    const double roomWidth = sheet.frame.right - sheet.frame.left - 2.0 * needs.inset;
    sheet.scale = UsualScale(1000.0 * std::max(groundHeight / roomHeight, groundWidth / roomWidth), needs);
    sheet.northing = (extent.north + extent.south) / 2.0;
    sheet.easting = (extent.east + extent.west) / 2.0;
    return sheet;
}

} // namespace

void GroundExtent::Include(double northing, double easting)
{
    south = std::min(south, northing);
    north = std::max(north, northing);
    west = std::min(west, easting);
    east = std::max(east, easting);
}

SheetPoint PlanSheet::Place(double groundNorthing, double groundEasting) const
{
    return {(frame.left + frame.right) / 2.0 + OnSheet(groundEasting - easting),
            (frame.top + frame.bottom) / 2.0 - OnSheet(groundNorthing - northing)};
}

double PlanSheet::OnSheet(double length) const
{
    return length * metresPerUnit * 1000.0 / scale;
}

double PlanSheet::OnGround(double millimetres) const
{
    return millimetres * scale / 1000.0 / metresPerUnit;
}

PlanSheet ChooseSheet(const GroundExtent& extent, const SheetNeeds& needs)
{
    const PlanSheet landscape = MakeSheet(true, extent, needs);
    const PlanSheet portrait = MakeSheet(false, extent, needs);
    return portrait.scale < landscape.scale ? portrait : landscape;
}

double NiceBelow(double limit)
{
    const double power = std::pow(10.0, std::floor(std::log10(limit)));
    for (const double step : {5.0, 2.0})
    {
        if (step * power <= limit)
        {
            return step * power;
        }
    }
    return power;
}

std::string ScaleText(double scale)
{
    return scale < 1.0 ? GroupedText(1.0 / scale) + ":1" : "1:" + GroupedText(scale);
}

std::string GroupedText(double value)
{
    int decimals = 0;
    while (decimals < 9 &&
           std::fabs(value * std::pow(10.0, decimals) - std::round(value * std::pow(10.0, decimals))) > 1e-6)
    {
        ++decimals;
    }
    std::string digits = FormatFixed(value, decimals);
    const size_t point = std::min(digits.find('.'), digits.size());
    for (size_t at = point; at > 3 && point > 4; at -= 3)
    {
        digits.insert(at - 3, at - 3 > 0 ? " " : "");
    }
    return digits;
}

} // namespace qstd
