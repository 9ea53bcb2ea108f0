#include "plan/figure_drawing.h"

#include "plan/figure_geometry.h"
#include "plan/figure_panel.h"
#include "plan/figure_symbols.h"
#include "plan/plan_frame.h"
#include "plan/svg_writer.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace qstd {

using namespace plan;

namespace {

constexpr double PI = 3.14159265358979323846;
constexpr double NAME_CLEARANCE = 1.0;  // from a symbol to its name
constexpr double LABEL_CLEARANCE = 1.1; // from a line to its label
constexpr double TICK_CLEARANCE = 0.8;  // from a stroke to its label
constexpr double SAME_PLACE = 0.02;     // on the sheet
constexpr size_t MOST_NAMES = 300;      // more are no help on a sheet of A4

/** Where along a line its label is tried, in parts of its length. */
constexpr std::array<double, 9> ALONG = {0.5, 0.4, 0.6, 0.3, 0.7, 0.2, 0.8, 0.1, 0.9};

/** A place on a line and the direction of the line there. */
struct Spot
{
    SheetPoint place;
    SheetPoint along;
};

double Distance(SheetPoint from, SheetPoint to)
{
    return std::hypot(to.x - from.x, to.y - from.y);
}

/** The direction from one place to another; nothing in particular between two that are the same. */
SheetPoint Direction(SheetPoint from, SheetPoint to)
{
    const double length = Distance(from, to);
    return length > 0.0 ? SheetPoint{(to.x - from.x) / length, (to.y - from.y) / length} : SheetPoint{};
}

/** The angle of text along a direction that reads from below or, where it is upright, from the right. */
double ReadableTurn(SheetPoint along)
{
    const double turn = std::atan2(along.y, along.x);
    if (turn >= PI / 2.0 - 1e-9)
    {
        return turn - PI;
    }
    return turn < -PI / 2.0 - 1e-9 ? turn + PI : turn;
}

TurnedBox Level(const SheetBox& box)
{
    return {
        {(box.left + box.right) / 2.0, (box.top + box.bottom) / 2.0}, box.right - box.left, box.bottom - box.top, 0.0};
}

/** The place at a fraction of a chain of chords. */
Spot SpotOn(const std::vector<SheetPoint>& chain, double fraction)
{
    double length = 0.0;
    for (size_t i = 1; i < chain.size(); ++i)
    {
        length += Distance(chain[i - 1], chain[i]);
    }
    double rest = length * fraction;
    for (size_t i = 1; i < chain.size(); ++i)
    {
        const double step = Distance(chain[i - 1], chain[i]);
        if (rest <= step || i + 1 == chain.size())
        {
            const SheetPoint along = Direction(chain[i - 1], chain[i]);
            return {{chain[i - 1].x + along.x * rest, chain[i - 1].y + along.y * rest}, along};
        }
        rest -= step;
    }
    return {};
}

/** Draws one figure, from the ground up. */
class FigureDrawing
{
public:
    FigureDrawing(const Figure& figureToDraw, LinearUnit unit)
        : figure(figureToDraw), layout(LayOut(figureToDraw, unit, FigurePanelHeight(figureToDraw))),
          svg(layout.sheet.width, layout.sheet.height, figureToDraw.view.title), labels(layout.sheet.frame),
          surround(layout.sheet, svg, {unit, figureToDraw.view.kind == FigureView::Kind::ELEVATION})
    {
    }

    std::string Draw()
    {
        surround.DrawGrid();
        for (const LineRole role : LINE_ROLES)
        {
            DrawLines(role);
            DrawArcs(role);
        }
        DrawTicks();
        for (const PointRole role : POINT_ROLES)
        {
            DrawPoints(role);
        }
        LabelTicks();
        NamePoints();
        LabelLines();
        surround.DrawFrame();
        DrawFigurePanel(figure, layout, leftOut, svg, surround);
        return svg.Finish();
    }

private:
    // --- parts -----------------------------------------------------------------------------------------------------

    void DrawLines(LineRole role)
    {
        for (const LaidLine& line : layout.lines)
        {
            if (line.role == role)
            {
                svg.Line(line.line, PenLook(role));
                labels.AddObstacle(line.line);
            }
        }
    }

    void DrawArcs(LineRole role)
    {
        for (const LaidArc& arc : layout.arcs)
        {
            if (arc.role != role)
            {
                continue;
            }
            DrawArc(arc);
            for (const std::vector<SheetPoint>& run : arc.runs)
            {
                for (size_t i = 1; i < run.size(); ++i)
                {
                    labels.AddObstacle(SheetLine{run[i - 1], run[i]});
                }
            }
        }
    }

    void DrawArc(const LaidArc& arc)
    {
        if (!arc.isWhole)
        {
            for (const std::vector<SheetPoint>& run : arc.runs)
            {
                svg.Polyline(run, PenLook(arc.role));
            }
        }
        else if (IsFullTurn(arc.arc.sweep))
        {
            svg.Circle(arc.arc.centre, arc.arc.radius, PenLook(arc.role));
        }
        else
        {
            // In quarters of its sweep: a renderer has no choice between the two ways around.
            svg.Arcs({arc.arc.At(0.0), arc.arc.At(0.25), arc.arc.At(0.5), arc.arc.At(0.75), arc.arc.At(1.0)},
                     arc.arc.radius, arc.arc.sweep > 0.0, PenLook(arc.role));
        }
    }

    void DrawTicks()
    {
        for (const LaidTick& tick : layout.ticks)
        {
            const SheetLine stroke = {{tick.place.x + tick.left.x * TICK_HALF, tick.place.y + tick.left.y * TICK_HALF},
                                      {tick.place.x - tick.left.x * TICK_HALF, tick.place.y - tick.left.y * TICK_HALF}};
            svg.Line(stroke, TICK_LOOK);
            labels.AddObstacle(stroke);
        }
    }

    void DrawPoints(PointRole role)
    {
        for (const LaidPoint& point : layout.points)
        {
            if (point.role == role)
            {
                DrawSymbol(svg, point.place, role);
                labels.AddObstacle(Around(point.place, SymbolSize(role)));
            }
        }
    }

    // --- names and labels ------------------------------------------------------------------------------------------

    void NamePoints()
    {
        size_t named = 0;
        for (auto role = POINT_ROLES.rbegin(); role != POINT_ROLES.rend() && *role != PointRole::FOOT; ++role)
        {
            for (const LaidPoint& point : layout.points)
            {
                if (point.role == *role && !point.name.empty())
                {
                    leftOut.names += named < MOST_NAMES && Name(point) ? 0U : 1U;
                    ++named;
                }
            }
        }
    }

    bool Name(const LaidPoint& point)
    {
        const bool isBold = point.role == PointRole::COMPUTED || point.role == PointRole::STATION;
        const std::string text = FittedText(point.name, NAME_SIZE, WIDEST_NAME);
        const double width = TextWidth(text, NAME_SIZE) * (isBold ? BOLD_WIDTH : 1.0);
        const std::optional<LabelPlace> label =
            labels.Place(point.place, width, NAME_SIZE, SymbolSize(point.role) + NAME_CLEARANCE, Outward(point.place));
        if (label)
        {
            surround.DrawName(*label, text, isBold);
        }
        return label.has_value();
    }

    /** Away from the lines that end at a point; else to the upper right. */
    [[nodiscard]] SheetPoint Outward(SheetPoint point) const
    {
        SheetPoint sum;
        const auto add = [&sum, point](SheetPoint end, SheetPoint other) {
            if (Distance(point, end) < SAME_PLACE)
            {
                const SheetPoint away = Direction(other, point);
                sum = {sum.x + away.x, sum.y + away.y};
            }
        };
        for (const LaidLine& line : layout.lines)
        {
            add(line.line.from, line.line.to);
            add(line.line.to, line.line.from);
        }
        return std::hypot(sum.x, sum.y) > 0.1 ? sum : SheetPoint{1.0, -1.0};
    }

    /** Beside the stroke, to the left of the reference or, where that is taken, to its right. */
    void LabelTicks()
    {
        for (const LaidTick& tick : layout.ticks)
        {
            if (!tick.label.empty())
            {
                const std::string text = FittedText(tick.label, SMALL_SIZE, WIDEST_NAME);
                Label(BesideTick(tick, TextWidth(text, SMALL_SIZE)), text);
            }
        }
    }

    static std::vector<TurnedBox> BesideTick(const LaidTick& tick, double width)
    {
        std::vector<TurnedBox> candidates;
        for (const double clearance : {TICK_CLEARANCE, TICK_CLEARANCE + 1.4})
        {
            for (const double turn : {0.0, PI / 8.0, -PI / 8.0, PI, PI * 7.0 / 8.0, PI * 9.0 / 8.0})
            {
                const SheetPoint direction = {tick.left.x * std::cos(turn) - tick.left.y * std::sin(turn),
                                              tick.left.x * std::sin(turn) + tick.left.y * std::cos(turn)};
                candidates.push_back(Level(BoxBeside(tick.place, TICK_HALF + clearance, direction, width, SMALL_SIZE)));
            }
        }
        return candidates;
    }

    void LabelLines()
    {
        for (const LaidLine& line : layout.lines)
        {
            if (!line.label.empty())
            {
                const std::string text = FittedText(line.label, SMALL_SIZE, WIDEST_NAME);
                Label(Beside({{line.line.from, line.line.to}}, text, nullptr), text);
            }
        }
        for (const LaidArc& arc : layout.arcs)
        {
            if (!arc.label.empty())
            {
                const std::string text = FittedText(arc.label, SMALL_SIZE, WIDEST_NAME);
                Label(Beside(arc.runs, text, &arc.arc), text);
            }
        }
    }

    /** Places along a line or an arc: above it, then below it, in the middle first; last beside it, but level. */
    static std::vector<TurnedBox> Beside(const std::vector<std::vector<SheetPoint>>& runs, const std::string& text,
                                         const SheetArc* arc)
    {
        const double width = TextWidth(text, SMALL_SIZE);
        std::vector<TurnedBox> candidates;
        for (const double fraction : ALONG)
        {
            for (const std::vector<SheetPoint>& run : runs)
            {
                const Spot spot = SpotOn(run, fraction);
                const double turn = ReadableTurn(spot.along);
                for (const double side : {1.0, -1.0})
                {
                    const SheetPoint off = {side * std::sin(turn), -side * std::cos(turn)};
                    const double away = LABEL_CLEARANCE + SMALL_SIZE / 2.0 + Bend(arc, spot.place, off, width);
                    candidates.push_back(
                        {{spot.place.x + off.x * away, spot.place.y + off.y * away}, width, SMALL_SIZE, turn});
                }
            }
        }
        // A label that is longer than its line may be free when it runs away from it.
        for (const std::vector<SheetPoint>& run : runs)
        {
            for (const double fraction : ALONG)
            {
                const Spot spot = SpotOn(run, fraction);
                for (const double side : {1.0, -1.0})
                {
                    const SheetPoint off = {side * spot.along.y, -side * spot.along.x};
                    candidates.push_back(Level(BoxBeside(spot.place, LABEL_CLEARANCE, off, width, SMALL_SIZE)));
                }
            }
        }
        return candidates;
    }

    /** How far an arc bends over the length of a label towards the side that the label is on. */
    static double Bend(const SheetArc* arc, SheetPoint place, SheetPoint off, double width)
    {
        if (arc == nullptr || (arc->centre.x - place.x) * off.x + (arc->centre.y - place.y) * off.y <= 0.0)
        {
            return 0.0;
        }
        const double half = std::min(width / 2.0, arc->radius);
        return half * half / (arc->radius + std::sqrt(arc->radius * arc->radius - half * half));
    }

    void Label(const std::vector<TurnedBox>& candidates, const std::string& text)
    {
        const std::optional<TurnedBox> box = labels.PlaceFirst(candidates);
        if (!box)
        {
            ++leftOut.labels;
            return;
        }
        const double down = box->height / 2.0 - SMALL_SIZE * 0.15;
        svg.Text({box->middle.x - std::sin(box->turn) * down, box->middle.y + std::cos(box->turn) * down}, text,
                 {SMALL_SIZE, TextAnchor::MIDDLE, false, false, box->turn * 180.0 / PI});
    }

    const Figure& figure;
    FigureLayout layout;
    SvgWriter svg;
    LabelPlacer labels;
    PlanFrame surround;
    LeftOut leftOut;
};

} // namespace

std::string DrawFigure(const Figure& figure, LinearUnit unit)
{
    return FigureDrawing(figure, unit).Draw();
}

} // namespace qstd
