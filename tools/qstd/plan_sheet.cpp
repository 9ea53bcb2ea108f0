#include "plan_sheet.h"

#include "text.h"

#include <algorithm>
#include <cmath>

namespace qstd {

namespace {

constexpr double LONG_EDGE = 297.0;
constexpr double SHORT_EDGE = 210.0;
constexpr double MARGIN = 10.0;
constexpr double GRID_LABELS = 6.0; // room for coordinates at the left and below the frame
constexpr double PANEL_WIDTH = 66.0;
constexpr double PANEL_HEIGHT = 62.0;
constexpr double GAP = 4.0;
constexpr double INSET = 14.0; // from the frame to the outermost point, for names and residuals
constexpr double SMALLEST_EXTENT = 0.01;

/** The smallest usual scale denominator that is not below `needed`. */
double UsualScale(double needed)
{
    double power = 10.0;
    while (power * 10.0 <= needed)
    {
        power *= 10.0;
    }
    for (const double step : {1.0, 2.0, 2.5, 5.0})
    {
        if (step * power >= needed)
        {
            return step * power;
        }
    }
    return 10.0 * power;
}

PlanSheet MakeSheet(bool isLandscape, const GroundExtent& extent)
{
    PlanSheet sheet;
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
        sheet.frame.bottom -= PANEL_HEIGHT + GAP;
        sheet.panel.top = bottom - PANEL_HEIGHT;
    }
    const double groundHeight = std::max(extent.north - extent.south, SMALLEST_EXTENT);
    const double groundWidth = std::max(extent.east - extent.west, SMALLEST_EXTENT);
    const double roomHeight = sheet.frame.bottom - sheet.frame.top - 2.0 * INSET;
    const double roomWidth = sheet.frame.right - sheet.frame.left - 2.0 * INSET;
    sheet.scale = UsualScale(1000.0 * std::max(groundHeight / roomHeight, groundWidth / roomWidth));
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

double PlanSheet::OnSheet(double metres) const
{
    return metres * 1000.0 / scale;
}

PlanSheet ChooseSheet(const GroundExtent& extent)
{
    const PlanSheet landscape = MakeSheet(true, extent);
    const PlanSheet portrait = MakeSheet(false, extent);
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
    return "1:" + GroupedText(scale);
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
