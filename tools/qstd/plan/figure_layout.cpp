#include "plan/figure_layout.h"

#include "plan/figure_geometry.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace qstd {

namespace {

constexpr double PI = 3.14159265358979323846;
constexpr double FARTHEST = 1e12;             // beyond it, doubles do not resolve what a map shows
constexpr double SMALLEST_EXTENT = 1e-4;      // what is smaller is a single point
constexpr double NOISE = 1e-11;               // of coordinates, relative
constexpr double AROUND_A_POINT = 5.0;        // metres to each side
constexpr double HUGE_ARC = 20.0;             // times the extent of all else
constexpr double SMALLEST_ON_SHEET = 0.05;    // lines and radii, millimetres
constexpr double SAGITTA = 0.005;             // of chords, below what print resolves
constexpr double INSET = 10.0;                // room for a name at the edge
constexpr double SMALLEST_DENOMINATOR = 0.01; // 100:1

/** A place in the plane of the view, in the unit of the job. */
struct Flat
{
    double up = 0.0;
    double right = 0.0;
};

struct Extent
{
    GroundExtent box = {HUGE_VAL, -HUGE_VAL, HUGE_VAL, -HUGE_VAL};

    [[nodiscard]] bool IsEmpty() const
    {
        return box.south > box.north;
    }

    [[nodiscard]] double Size() const
    {
        return IsEmpty() ? 0.0 : std::max(box.north - box.south, box.east - box.west);
    }

    /** True when there is no more to it than a single point. */
    [[nodiscard]] bool IsPoint() const
    {
        const double farthest =
            std::max({std::fabs(box.south), std::fabs(box.north), std::fabs(box.west), std::fabs(box.east)});
        return IsEmpty() || Size() < std::max(SMALLEST_EXTENT, NOISE * farthest);
    }

    void Include(const GroundExtent& other)
    {
        box.Include(other.south, other.west);
        box.Include(other.north, other.east);
    }
};

bool IsNear(const FigurePlace& place)
{
    return IsDrawable(place) && std::fabs(place.northing) <= FARTHEST && std::fabs(place.easting) <= FARTHEST &&
           std::fabs(place.height.value_or(0.0)) <= FARTHEST;
}

/** How a view sees the ground. */
class Projection
{
public:
    explicit Projection(const FigureView& view)
        : isElevation(view.kind == FigureView::Kind::ELEVATION),
          origin(IsNear(view.origin) ? view.origin : FigurePlace{}),
          azimuth(std::isfinite(view.azimuth) ? view.azimuth : 0.0)
    {
    }

    [[nodiscard]] bool IsElevation() const
    {
        return isElevation;
    }

    /** Nothing for a place without height that is looked at from the side. */
    [[nodiscard]] std::optional<Flat> Of(const FigurePlace& place) const
    {
        if (!isElevation)
        {
            return Flat{place.northing, place.easting};
        }
        if (!place.height)
        {
            return std::nullopt;
        }
        return Flat{*place.height, (place.northing - origin.northing) * std::cos(azimuth) +
                                       (place.easting - origin.easting) * std::sin(azimuth)};
    }

    /** What an arc covers; from the side it is level. */
    [[nodiscard]] GroundExtent Box(const FigureArc& arc, Flat centre) const
    {
        // Turned by the azimuth of the view, the arc's way up is the way to the right.
        const double start = AzimuthAt(arc, 0.0) - (isElevation ? azimuth : 0.0);
        const SheetBox box = BoundingBox({{0.0, 0.0}, arc.radius, start, SweepOf(arc)});
        if (isElevation)
        {
            return {centre.up, centre.up, centre.right - box.bottom, centre.right - box.top};
        }
        return {centre.up - box.bottom, centre.up - box.top, centre.right + box.left, centre.right + box.right};
    }

private:
    bool isElevation;
    FigurePlace origin;
    double azimuth;
};

/** Lays one figure out. */
class Layouter
{
public:
    Layouter(const Figure& figureToLayOut, LinearUnit unitOfFigure)
        : figure(figureToLayOut), unit(unitOfFigure), projection(figureToLayOut.view)
    {
    }

    FigureLayout LayOut(double panelHeight)
    {
        Collect();
        ChooseExtent();
        SheetNeeds needs;
        needs.metresPerUnit = ToMetres(1.0, unit);
        needs.smallestDenominator = SMALLEST_DENOMINATOR;
        needs.hasQuarterScales = false;
        needs.inset = INSET;
        needs.panelHeight = panelHeight;
        layout.sheet = ChooseSheet(extent.box, needs);
        PlaceAll();
        return std::move(layout);
    }

private:
    template <typename Part>
    struct Seen
    {
        const Part* part = nullptr;
        Flat place;
        Flat end; // of a line
    };

    /** Counts a place that cannot be shown. */
    std::optional<Flat> Project(const FigurePlace& place, bool isUsable)
    {
        if (!isUsable || !IsNear(place))
        {
            ++layout.unusable;
            return std::nullopt;
        }
        std::optional<Flat> flat = projection.Of(place);
        layout.withoutHeight += flat ? 0U : 1U;
        return flat;
    }

    void Collect()
    {
        for (const FigurePoint& point : figure.points)
        {
            if (const std::optional<Flat> place = Project(point.place, IsDrawable(point)))
            {
                points.push_back({&point, *place, {}});
                Include(*place);
            }
        }
        for (const FigureLine& line : figure.lines)
        {
            if (const std::optional<Flat> from = Project(line.from, IsDrawable(line) && IsNear(line.to)))
            {
                if (const std::optional<Flat> to = Project(line.to, true))
                {
                    lines.push_back({&line, *from, *to});
                    Include(*from);
                    Include(*to);
                }
            }
        }
        for (const FigureArc& arc : figure.arcs)
        {
            if (const std::optional<Flat> centre = Project(arc.centre, IsDrawable(arc) && arc.radius <= FARTHEST))
            {
                arcs.push_back({&arc, *centre, {}});
            }
        }
        for (const FigureTick& tick : figure.ticks)
        {
            if (const std::optional<Flat> place = Project(tick.place, IsDrawable(tick)))
            {
                ticks.push_back({&tick, *place, {}});
                Include(*place);
            }
        }
    }

    void Include(Flat place)
    {
        extent.box.Include(place.up, place.right);
    }

    /** From the smallest arc to the largest, so that one of them may make room for the next. */
    void ChooseExtent()
    {
        std::vector<Extent> boxes;
        for (const Seen<FigureArc>& arc : arcs)
        {
            boxes.push_back({projection.Box(*arc.part, arc.place)});
        }
        std::stable_sort(boxes.begin(), boxes.end(),
                         [](const Extent& one, const Extent& other) { return one.Size() < other.Size(); });
        for (const Extent& box : boxes)
        {
            if (extent.IsPoint() || box.Size() <= HUGE_ARC * extent.Size())
            {
                extent.Include(box.box);
            }
        }
        if (extent.IsEmpty())
        {
            Include({0.0, 0.0});
        }
        if (extent.IsPoint())
        {
            const double wide = FromMetres(AROUND_A_POINT, unit);
            extent.box = {extent.box.south - wide, extent.box.north + wide, extent.box.west - wide,
                          extent.box.east + wide};
        }
    }

    [[nodiscard]] SheetPoint Place(Flat flat) const
    {
        return layout.sheet.Place(flat.up, flat.right);
    }

    void PlaceAll()
    {
        for (const Seen<FigurePoint>& point : points)
        {
            layout.points.push_back({Place(point.place), point.part->role, point.part->name});
        }
        for (const Seen<FigureLine>& line : lines)
        {
            PlaceLine({Place(line.place), Place(line.end)}, line.part->role, line.part->label);
        }
        for (const Seen<FigureArc>& arc : arcs)
        {
            PlaceArc(*arc.part, arc.place);
        }
        for (const Seen<FigureTick>& tick : ticks)
        {
            const double azimuth = tick.part->azimuth;
            const SheetPoint left =
                projection.IsElevation() ? SheetPoint{0.0, -1.0} : SheetPoint{-std::cos(azimuth), -std::sin(azimuth)};
            layout.ticks.push_back({Place(tick.place), left, tick.part->label});
        }
    }

    void PlaceLine(const SheetLine& line, LineRole role, const std::string& label)
    {
        if (std::hypot(line.to.x - line.from.x, line.to.y - line.from.y) < SMALLEST_ON_SHEET)
        {
            ++layout.tooSmall;
            return;
        }
        layout.lines.push_back({line, role, label});
    }

    void PlaceArc(const FigureArc& arc, Flat centre)
    {
        if (projection.IsElevation())
        {
            PlaceArcFromSide(arc, centre);
            return;
        }
        LaidArc laid = {{Place(centre), layout.sheet.OnSheet(arc.radius), AzimuthAt(arc, 0.0), SweepOf(arc)},
                        true,
                        {},
                        arc.role,
                        arc.label};
        if (laid.arc.radius * std::min(std::fabs(laid.arc.sweep), PI) < SMALLEST_ON_SHEET)
        {
            ++layout.tooSmall;
            return;
        }
        const SheetBox& frame = layout.sheet.frame;
        const SheetBox box = BoundingBox(laid.arc);
        laid.isWhole =
            box.left >= frame.left && box.right <= frame.right && box.top >= frame.top && box.bottom <= frame.bottom;
        if (laid.isWhole)
        {
            laid.runs.push_back(Chords(laid.arc, SAGITTA));
        }
        else
        {
            laid.runs = VisibleChords(laid.arc, frame, SAGITTA);
        }
        if (laid.runs.empty())
        {
            ++layout.outOfView;
            return;
        }
        layout.arcs.push_back(std::move(laid));
    }

    void PlaceArcFromSide(const FigureArc& arc, Flat centre)
    {
        const GroundExtent box = projection.Box(arc, centre);
        const SheetBox& frame = layout.sheet.frame;
        const SheetPoint from = Place({box.south, box.west});
        const SheetPoint to = Place({box.south, box.east});
        if (from.y < frame.top || from.y > frame.bottom || from.x > frame.right || to.x < frame.left)
        {
            ++layout.outOfView;
            return;
        }
        PlaceLine({{std::max(from.x, frame.left), from.y}, {std::min(to.x, frame.right), to.y}}, arc.role, arc.label);
    }

    const Figure& figure;
    LinearUnit unit;
    Projection projection;
    Extent extent;
    FigureLayout layout;
    std::vector<Seen<FigurePoint>> points;
    std::vector<Seen<FigureLine>> lines;
    std::vector<Seen<FigureArc>> arcs;
    std::vector<Seen<FigureTick>> ticks;
};

} // namespace

FigureLayout LayOut(const Figure& figure, LinearUnit unit, double panelHeight)
{
    return Layouter(figure, unit).LayOut(panelHeight);
}

} // namespace qstd
