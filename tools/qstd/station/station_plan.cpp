#include "station/station_plan.h"

#include "plan/plan_frame.h"
#include "plan/plan_sheet.h"
#include "plan/svg_writer.h"
#include "station/small_length.h"
#include "text/text.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <set>

namespace qstd {

using namespace plan;

namespace {

constexpr double PI = 3.14159265358979323846;
constexpr double LONGEST_RESIDUAL = 9.0;  // on the sheet
constexpr double SHORTEST_RESIDUAL = 1.2; // a shorter arrow would be a speck
constexpr double LONGEST_HALF_AXIS = 7.0; // on the sheet
constexpr double SMALLEST_DRAWN = 1e-5;   // residuals and axes below a hundredth of a millimetre are not drawn
constexpr double TARGET_SIZE = 1.7;       // from the middle of a target's triangle to its corners
constexpr double STATION_SIZE = 1.3;
constexpr double MARK_SIZE = 2.9; // radius of the ring around what exceeds its limit
constexpr size_t MOST_NAMES = 150;

constexpr const char* WITH_DISTANCE = "stroke=\"#444\" stroke-width=\"0.3\"";
constexpr const char* DIRECTION_ONLY = "stroke=\"#444\" stroke-width=\"0.25\" stroke-dasharray=\"2.4 1.2\"";
constexpr const char* NOT_USED = "stroke=\"#666\" stroke-width=\"0.3\" stroke-dasharray=\"0.4 1\"";
constexpr const char* RESIDUAL = "stroke=\"#000\" stroke-width=\"0.5\"";
constexpr const char* MARK = "fill=\"none\" stroke=\"#000\" stroke-width=\"0.5\"";
constexpr const char* ELLIPSE = "stroke=\"#000\" stroke-width=\"0.4\"";

/** Draws one plan, from the ground up. */
class PlanDrawing
{
public:
    PlanDrawing(const StationSolution& solutionToDraw, const ReportStyle& styleOfFigures)
        : solution(solutionToDraw), style(styleOfFigures),
          sheet(ChooseSheet(Extent(solutionToDraw), Needs(solutionToDraw))),
          svg(sheet.width, sheet.height, "Station " + SetUpName(*solutionToDraw.setUp)), labels(sheet.frame),
          surround(sheet, svg, {solutionToDraw.unit})
    {
        station = sheet.Place(solution.station.position.northing, solution.station.position.easting);
        residualFactor = FactorFor(LargestResidual(), LONGEST_RESIDUAL);
        ellipseFactor = solution.ellipse ? FactorFor(solution.ellipse->major, LONGEST_HALF_AXIS) : 0.0;
    }

    Plan Draw()
    {
        surround.DrawGrid();
        DrawSights();
        DrawResiduals();
        DrawEllipse();
        DrawTargets();
        DrawMarks();
        svg.Circle(station, STATION_SIZE, OPEN);
        svg.Circle(station, 0.4, BLACK);
        NameAll();
        surround.DrawFrame();
        DrawPanel();
        return {svg.Finish(), ScaleText(sheet.scale)};
    }

private:
    static SheetNeeds Needs(const StationSolution& solution)
    {
        SheetNeeds needs;
        needs.metresPerUnit = ToMetres(1.0, solution.unit);
        return needs;
    }

    static GroundExtent Extent(const StationSolution& solution)
    {
        const PointRecord& position = solution.station.position;
        GroundExtent extent = {position.northing, position.northing, position.easting, position.easting};
        for (const PreparedSight& sight : solution.sights)
        {
            if (sight.target != nullptr)
            {
                extent.Include(sight.target->point.northing, sight.target->point.easting);
            }
        }
        return extent;
    }

    /** The factor that brings a length on the ground near to, not above, a length on the sheet; 0: not drawn. */
    [[nodiscard]] double FactorFor(double metres, double onSheet) const
    {
        return metres > SMALLEST_DRAWN ? NiceBelow(onSheet / sheet.OnSheet(metres)) : 0.0;
    }

    /** Of directions and distances: both are drawn at the same factor. */
    [[nodiscard]] double LargestResidual() const
    {
        double largest = 0.0;
        // Without redundancy all residuals are rounding.
        for (size_t i = 0; i < solution.sights.size() && solution.Redundancy() > 0; ++i)
        {
            if (solution.sights[i].isUsed)
            {
                const SightResidual& residual = solution.residuals[i];
                largest = std::max(
                    {largest, std::fabs(residual.across.value_or(0.0)), std::fabs(residual.distance.value_or(0.0))});
            }
        }
        return largest;
    }

    [[nodiscard]] SheetPoint TargetPlace(const PreparedSight& sight) const
    {
        return sheet.Place(sight.target->point.northing, sight.target->point.easting);
    }

    // --- map -------------------------------------------------------------------------------------------------------

    void DrawSights()
    {
        for (const PreparedSight& sight : solution.sights)
        {
            if (sight.target != nullptr)
            {
                const SheetLine line = {station, TargetPlace(sight)};
                svg.Line(line, !sight.isUsed ? NOT_USED : sight.horizontalDistance ? WITH_DISTANCE : DIRECTION_ONLY);
                labels.AddObstacle(line);
            }
        }
    }

    /**
     * The residual of each direction as an arrow across the sight, clockwise where it is positive; that of a distance
     * along the sight, away from the station where it is.
     */
    void DrawResiduals()
    {
        if (residualFactor == 0.0)
        {
            return;
        }
        for (size_t i = 0; i < solution.sights.size(); ++i)
        {
            const PreparedSight& sight = solution.sights[i];
            const SheetPoint target = sight.isUsed ? TargetPlace(sight) : station;
            const double distance = std::hypot(target.x - station.x, target.y - station.y);
            if (distance == 0.0)
            {
                continue;
            }
            const SheetPoint along = {(target.x - station.x) / distance, (target.y - station.y) / distance};
            // Turned by a quarter circle clockwise; y runs down the sheet.
            const SheetPoint across = {-along.y, along.x};
            // An arrow begins beside the symbol, which would hide a short one.
            const double clear = IsMarked(i) ? MARK_SIZE + 0.4 : TARGET_SIZE + 0.2;
            DrawResidual(target, across, solution.residuals[i].across, clear);
            DrawResidual(target, along, solution.residuals[i].distance, clear);
        }
    }

    void DrawResidual(SheetPoint target, SheetPoint unit, std::optional<double> residual, double clear)
    {
        const double length = sheet.OnSheet(residual.value_or(0.0)) * residualFactor;
        if (std::fabs(length) < SHORTEST_RESIDUAL)
        {
            return;
        }
        const double start = std::copysign(clear, length);
        const double end = start + length;
        DrawArrow({target.x + unit.x * start, target.y + unit.y * start},
                  {target.x + unit.x * end, target.y + unit.y * end});
    }

    /** A ring around each target that is marked. */
    void DrawMarks()
    {
        for (size_t i = 0; i < solution.sights.size(); ++i)
        {
            if (IsMarked(i))
            {
                hasMarks = true;
                svg.Circle(TargetPlace(solution.sights[i]), MARK_SIZE, MARK);
                labels.AddObstacle(Around(TargetPlace(solution.sights[i]), MARK_SIZE));
            }
        }
    }

    /** The suspects of a set-up or, where it has none, the observations that are larger than chance makes them. */
    [[nodiscard]] bool IsMarked(size_t sight) const
    {
        if (!solution.sights[sight].isUsed)
        {
            return false;
        }
        if (!solution.suspects.empty())
        {
            return std::any_of(solution.suspects.begin(), solution.suspects.end(),
                               [sight](const Suspect& suspect) { return suspect.sight == sight; });
        }
        const auto isMarked = [](const ObservationCheck* check) { return check != nullptr && check->isMarked; };
        return isMarked(CheckOf(solution, sight, ObservationKind::DIRECTION)) ||
               isMarked(CheckOf(solution, sight, ObservationKind::DISTANCE)) ||
               isMarked(HeightCheckOf(solution, sight)) || isMarked(TargetHeightCheckOf(solution, sight));
    }

    void DrawArrow(SheetPoint from, SheetPoint to)
    {
        const double length = std::hypot(to.x - from.x, to.y - from.y);
        const double head = std::min(1.6, length * 0.6);
        const SheetPoint unit = {(to.x - from.x) / length, (to.y - from.y) / length};
        const SheetPoint neck = {to.x - unit.x * head, to.y - unit.y * head};
        const double half = head * 0.4;
        svg.Line({from, neck}, RESIDUAL);
        svg.Polygon(
            {to, {neck.x - unit.y * half, neck.y + unit.x * half}, {neck.x + unit.y * half, neck.y - unit.x * half}},
            BLACK);
        labels.AddObstacle(SheetLine{from, to});
    }

    void DrawEllipse()
    {
        if (ellipseFactor > 0.0)
        {
            const ErrorEllipse& ellipse = *solution.ellipse;
            const double major = sheet.OnSheet(ellipse.major) * ellipseFactor;
            const double minor = sheet.OnSheet(ellipse.minor) * ellipseFactor;
            // An azimuth counts clockwise from up, a rotation clockwise from the right.
            svg.Ellipse(station, major, minor, ellipse.azimuth * 180.0 / PI - 90.0, ELLIPSE);
            const double halfWidth = std::hypot(major * std::sin(ellipse.azimuth), minor * std::cos(ellipse.azimuth));
            const double halfHeight = std::hypot(major * std::cos(ellipse.azimuth), minor * std::sin(ellipse.azimuth));
            labels.AddObstacle(
                SheetBox{station.x - halfWidth, station.y - halfHeight, station.x + halfWidth, station.y + halfHeight});
        }
        labels.AddObstacle(Around(station, STATION_SIZE));
    }

    /** True when some sight to the target is used. */
    [[nodiscard]] bool IsTargetUsed(const KnownPoint* target) const
    {
        return std::any_of(solution.sights.begin(), solution.sights.end(),
                           [target](const PreparedSight& sight) { return sight.target == target && sight.isUsed; });
    }

    void DrawTargets()
    {
        std::set<const KnownPoint*> drawn;
        for (const PreparedSight& sight : solution.sights)
        {
            if (sight.target != nullptr && drawn.insert(sight.target).second)
            {
                svg.Polygon(Triangle(TargetPlace(sight), TARGET_SIZE), IsTargetUsed(sight.target) ? BLACK : OPEN);
                labels.AddObstacle(Around(TargetPlace(sight), TARGET_SIZE * 0.9));
                targets.push_back(&sight);
            }
        }
    }

    void NameAll()
    {
        Name(station, SetUpName(*solution.setUp), STATION_SIZE, {1.0, 1.0}, true);
        for (size_t i = 0; i < targets.size() && i < MOST_NAMES; ++i)
        {
            const SheetPoint place = TargetPlace(*targets[i]);
            Name(place, targets[i]->target->id, TARGET_SIZE, {place.x - station.x, place.y - station.y}, false);
        }
        namesLeftOut += targets.size() > MOST_NAMES ? targets.size() - MOST_NAMES : 0;
    }

    void Name(SheetPoint place, const std::string& name, double symbolSize, SheetPoint outward, bool isBold)
    {
        const std::string text = FittedText(name, NAME_SIZE, WIDEST_NAME);
        const double width = TextWidth(text, NAME_SIZE) * (isBold ? BOLD_WIDTH : 1.0);
        const std::optional<LabelPlace> label = labels.Place(place, width, NAME_SIZE, symbolSize + 1.0, outward);
        if (!label)
        {
            ++namesLeftOut;
            return;
        }
        surround.DrawName(*label, text, isBold);
    }

    // --- panel -----------------------------------------------------------------------------------------------------

    void DrawPanel()
    {
        surround.DrawPanel();
        if (sheet.isLandscape)
        {
            const double left = sheet.panel.left + 4.0;
            DrawFigures({left, sheet.panel.top + 7.0});
            DrawLegend({left, sheet.panel.top + 56.0});
            surround.DrawScale({left, sheet.panel.bottom - 44.0});
            return;
        }
        const double top = sheet.panel.top + 7.0;
        DrawFigures({sheet.panel.left + 4.0, top});
        DrawLegend({sheet.panel.left + 72.0, top});
        surround.DrawScale({sheet.panel.left + 133.0, top});
    }

    void DrawFigures(SheetPoint base)
    {
        const ResectStation& result = solution.station;
        const std::string_view unit = UnitSymbol(solution.unit);
        const auto precision = [this](double length) {
            return solution.HasPrecision() ? "  ± " + SmallLengthText(length, solution.unit) : std::string();
        };
        std::vector<std::string> lines = {
            fmt::format("N  {} {}{}", FormatFixed(result.position.northing, style.decimals), unit,
                        precision(result.northingPrecision)),
            fmt::format("E  {} {}{}", FormatFixed(result.position.easting, style.decimals), unit,
                        precision(result.eastingPrecision)),
            solution.HasHeight()
                ? fmt::format("H  {} {}  instrument axis", FormatFixed(result.position.height, style.decimals), unit)
                : "no height"};
        if (solution.markHeight)
        {
            lines.push_back(
                fmt::format("H  {} {}  ground mark", FormatFixed(*solution.markHeight, style.decimals), unit));
        }
        lines.push_back(fmt::format("orientation  {}", FormatAngle(result.orientation, style.angles)));
        if (solution.isSouthAzimuth)
        {
            lines.push_back(OrientationReference(solution));
        }
        lines.push_back(fmt::format("{}, {}", Counted(solution.directions, "direction", "directions"),
                                    Counted(solution.distances, "distance", "distances")));
        lines.push_back(solution.Redundancy() > 0 ? fmt::format("redundancy {}", solution.Redundancy())
                                                  : "no redundancy: precision unknown");
        if (solution.method != StationMethod::MULTI)
        {
            lines.emplace_back(MethodTitle(solution.method));
        }
        if (!solution.IsSound())
        {
            lines.emplace_back(solution.Fits() ? "WEAKER THAN IT LOOKS" : "DOES NOT FIT");
        }
        surround.PanelText(base, "Station " + SetUpName(*solution.setUp), true, TITLE_SIZE);
        base.y += 1.5;
        for (const std::string& line : lines)
        {
            base.y += LINE_STEP;
            surround.PanelText(base, line);
        }
    }

    /** Legend lines for what occurs on this plan only. */
    void DrawLegend(SheetPoint base)
    {
        const auto has = [this](auto condition) {
            return std::any_of(solution.sights.begin(), solution.sights.end(), condition);
        };
        surround.PanelText(base, "Legend", true);
        base.y += LINE_STEP;
        surround.LegendLine(base, "station", [this](SheetPoint middle) {
            svg.Circle(middle, STATION_SIZE, OPEN);
            svg.Circle(middle, 0.4, BLACK);
        });
        surround.LegendLine(base, "known point, used",
                            [this](SheetPoint middle) { svg.Polygon(Triangle(middle, TARGET_SIZE), BLACK); });
        if (has([this](const PreparedSight& sight) { return sight.target != nullptr && !IsTargetUsed(sight.target); }))
        {
            surround.LegendLine(base, "known point, not used",
                                [this](SheetPoint middle) { svg.Polygon(Triangle(middle, TARGET_SIZE), OPEN); });
        }
        if (has([](const PreparedSight& sight) { return sight.isUsed && sight.horizontalDistance; }))
        {
            surround.LegendPen(base, "direction and distance", WITH_DISTANCE);
        }
        if (has([](const PreparedSight& sight) { return sight.isUsed && !sight.horizontalDistance; }))
        {
            surround.LegendPen(base, "direction only", DIRECTION_ONLY);
        }
        if (has([](const PreparedSight& sight) { return sight.target != nullptr && !sight.isUsed; }))
        {
            surround.LegendPen(base, "sight not used", NOT_USED);
        }
        LegendExaggerated(base);
        if (namesLeftOut > 0)
        {
            surround.PanelText(base,
                               fmt::format("{} left out for want of room", Counted(namesLeftOut, "name", "names")));
        }
    }

    void LegendExaggerated(SheetPoint& base)
    {
        if (residualFactor > 0.0)
        {
            surround.LegendLine(base, fmt::format("residual × {}", GroupedText(residualFactor)),
                                [this](SheetPoint middle) {
                                    DrawArrow({middle.x - 4.0, middle.y}, {middle.x + 4.0, middle.y});
                                });
            surround.PanelText({base.x + 12.0, base.y - 0.8}, "across: direction; along: distance", false, SMALL_SIZE);
            base.y += LINE_STEP - 0.8;
        }
        if (hasMarks)
        {
            surround.LegendLine(base, solution.suspects.empty() ? "exceeds its limit" : "suspected",
                                [this](SheetPoint middle) { svg.Circle(middle, MARK_SIZE * 0.7, MARK); });
        }
        if (ellipseFactor > 0.0)
        {
            surround.LegendLine(base, fmt::format("error ellipse × {}", GroupedText(ellipseFactor)),
                                [this](SheetPoint middle) { svg.Ellipse(middle, 4.0, 1.5, 0.0, ELLIPSE); });
            surround.PanelText({base.x + 12.0, base.y - 0.8},
                               fmt::format("{} × {} {}", SmallLengthFigure(solution.ellipse->major, solution.unit),
                                           SmallLengthFigure(solution.ellipse->minor, solution.unit),
                                           SmallLengthSymbol(solution.unit)),
                               false, SMALL_SIZE);
            base.y += LINE_STEP - 0.8;
        }
    }

    const StationSolution& solution;
    const ReportStyle& style;
    PlanSheet sheet;
    SvgWriter svg;
    LabelPlacer labels;
    PlanFrame surround;
    SheetPoint station;
    double residualFactor = 0.0;
    double ellipseFactor = 0.0;
    bool hasMarks = false;
    size_t namesLeftOut = 0;
    std::vector<const PreparedSight*> targets; /**< one sight for each target */
};

} // namespace

Plan DrawPlan(const StationSolution& solution, const ReportStyle& style)
{
    return PlanDrawing(solution, style).Draw();
}

} // namespace qstd
