#include "verbs/area.h"

#include "input/table_points.h"
#include "proof/crossing_sides.h"
#include "proof/judgement.h"
#include "proof/plan_proof.h"
#include "text/outcome.h"
#include "text/text.h"
#include "verbs/arguments.h"
#include "verbs/own_axes.h"
#include "verbs/plan_shapes.h"

#include <qstdlib.h>

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <optional>
#include <utility>

namespace qstd {

namespace {

/** The library counts corners in 16 bits. */
constexpr size_t MOST_CORNERS = 32767;
constexpr size_t FEWEST_CORNERS = 3;

/** So many crossings are looked for, and so many told; a list in no order at all has any number. */
constexpr size_t MOST_CROSSINGS = 100;
constexpr size_t MOST_NAMED_CROSSINGS = 3;

const Section SECTION = {"area",
                         Layout::RECORD,
                         true,
                         {{"corners", "corners", Quantity::COUNT, ""},
                          {"area", "area", Quantity::AREA, ""},
                          {"perimeter", "perimeter", Quantity::LENGTH, ""}}};

/** The corners, with plan coordinates; beyond what the library takes they are only counted. */
struct Corners
{
    std::vector<KnownPoint> points;
    size_t count = 0;
    size_t withoutPlan = 0;             /**< left out of a table */
    std::optional<KnownPoint> unusable; /**< a corner that was named, without plan coordinates */
};

void Add(KnownPoint point, Corners& corners)
{
    if ((point.point.flags & POINT_HAS_PLAN) == 0)
    {
        ++corners.withoutPlan;
        return;
    }
    ++corners.count;
    if (corners.count <= MOST_CORNERS)
    {
        corners.points.push_back(std::move(point));
    }
}

Corners FromTable(const std::string& path, Inputs& inputs)
{
    Corners corners;
    TablePoints table(path, inputs);
    KnownPoint point;
    while (table.Next(point))
    {
        Add(point, corners);
    }
    return corners;
}

/** Who names a corner wants it in the polygon: one without plan coordinates is not left out. */
Corners Named(const std::vector<std::string>& names, Inputs& inputs)
{
    Corners corners;
    for (const std::string& name : names)
    {
        KnownPoint corner = inputs.Point(name);
        if ((corner.point.flags & POINT_HAS_PLAN) == 0)
        {
            Corners refused;
            refused.unusable = std::move(corner);
            return refused;
        }
        Add(std::move(corner), corners);
    }
    return corners;
}

Corners Read(const AreaOptions& options, Inputs& inputs)
{
    if (options.corners.empty() && options.table.empty())
    {
        throw WrongUse("no corners; name them in order, or give --points FILE for all points of a table");
    }
    return options.corners.empty() ? FromTable(options.table, inputs) : Named(options.corners, inputs);
}

double Perimeter(const std::vector<KnownPoint>& corners)
{
    double sum = 0.0;
    const PointRecord* previous = &corners.back().point;
    for (const KnownPoint& corner : corners)
    {
        sum += std::hypot(corner.point.northing - previous->northing, corner.point.easting - previous->easting);
        previous = &corner.point;
    }
    return sum;
}

/** @param origin  that coordinates count from */
double Area(const std::vector<KnownPoint>& corners, const PlanVector& origin)
{
    const OwnAxes axes(origin);
    std::vector<PointRecord> records;
    records.reserve(corners.size());
    for (const KnownPoint& corner : corners)
    {
        records.push_back(axes.In(corner.point));
    }
    return QCogoCalcArea(records.data(), static_cast<int32_t>(records.size()));
}

std::vector<PlanVector> PlacesOf(const std::vector<KnownPoint>& corners)
{
    std::vector<PlanVector> places;
    places.reserve(corners.size());
    for (const KnownPoint& corner : corners)
    {
        places.push_back(PlanOf(corner.point));
    }
    return places;
}

/** The area as the library gives it or, where that misses, with coordinates from the first corner. */
double ProvenArea(const std::vector<KnownPoint>& corners, const Sink& sink, Row& row)
{
    const CountedArea counted = AreaOf(PlacesOf(corners));
    const double asGiven = Area(corners, {});
    if (std::fabs(asGiven - counted.area) <= counted.allowed)
    {
        return asGiven;
    }
    const std::string miss =
        fmt::format("{:.6g} {}", std::fabs(asGiven - counted.area), AreaSymbol(sink.Options().unit));
    const double fromFirst = Area(corners, PlanOf(corners.front().point));
    if (std::fabs(fromFirst - counted.area) <= counted.allowed)
    {
        AddRemark(
            fmt::format("computed with coordinates from the first corner; without that the library's area is off by {}",
                        miss),
            row);
        return fromFirst;
    }
    row.isProven = false;
    row.warnings.push_back("not what was asked for: the area is off by " + miss);
    return asGiven;
}

std::string SideName(const std::vector<KnownPoint>& corners, size_t from)
{
    // A corner that is repeated is no end of the side.
    size_t to = from;
    for (size_t i = 1; i < corners.size() && PlanDistance(corners[from].point, corners[to].point) == 0.0; ++i)
    {
        to = (from + i) % corners.size();
    }
    return fmt::format("{} - {}", corners[from].id, corners[to].id);
}

/** Which sides cross, and where. */
std::string CrossingText(const std::vector<KnownPoint>& corners, const std::vector<Crossing>& crossings,
                         const Sink& sink)
{
    std::string text = "the boundary crosses itself: ";
    const size_t named = std::min(crossings.size(), MOST_NAMED_CROSSINGS);
    for (size_t i = 0; i < named; ++i)
    {
        const Crossing& crossing = crossings[i];
        text += fmt::format("{}side {} crosses side {} at {}, {}", i == 0 ? "" : "; ",
                            SideName(corners, crossing.first), SideName(corners, crossing.second),
                            sink.LengthText(crossing.place.north), sink.LengthText(crossing.place.east));
    }
    if (crossings.size() > named)
    {
        text += fmt::format("; and {}{} more", crossings.size() == MOST_CROSSINGS ? "at least " : "",
                            crossings.size() - named);
    }
    return text + "; give the corners in the order of the boundary";
}

Row Compute(const Corners& corners, const std::vector<Crossing>& crossings, const Sink& sink)
{
    Row row;
    if (corners.unusable)
    {
        IsRefusedForPlan({*corners.unusable}, row);
        return row;
    }
    row.values = {static_cast<int64_t>(corners.count)};
    row.isComputed = corners.count >= FEWEST_CORNERS && corners.count <= MOST_CORNERS;
    if (corners.count > MOST_CORNERS)
    {
        row.remark =
            fmt::format("{} corners are more than the library takes, {}; divide the area", corners.count, MOST_CORNERS);
        return row;
    }
    if (corners.withoutPlan > 0)
    {
        row.remark = Counted(corners.withoutPlan, "point", "points") + " without northing and easting left out";
    }
    if (!row.isComputed)
    {
        row.remark +=
            fmt::format("{}{} {} no area; it takes three", row.remark.empty() ? "" : "; ",
                        Counted(corners.count, "corner", "corners"), corners.count == 1 ? "encloses" : "enclose");
        return row;
    }
    if (!crossings.empty())
    {
        row.isComputed = false;
        AddRemark(CrossingText(corners.points, crossings, sink), row);
        row.values.insert(row.values.end(), {Value(), Perimeter(corners.points)});
        return row;
    }
    const double area = ProvenArea(corners.points, sink, row);
    if (area == 0.0)
    {
        row.warnings.emplace_back(
            "the corners lie on one line, or the boundary goes there and back: nothing is enclosed");
    }
    row.values.insert(row.values.end(), {area, Perimeter(corners.points)});
    return row;
}

bool IsSamePlace(const PointRecord& one, const PointRecord& other)
{
    return one.northing == other.northing && one.easting == other.easting;
}

void Draw(const Corners& corners, const std::vector<Crossing>& crossings, const Row& row, const Sink& sink)
{
    FigureWriter* const figure = sink.Figure();
    figure->Begin({FigureView::Kind::PLAN, "Area", {}, 0.0});
    const KnownPoint* previous = &corners.points.back();
    for (const KnownPoint& corner : corners.points)
    {
        // A corner named twice in a row, such as the first one at the end, is drawn once.
        if (!IsSamePlace(previous->point, corner.point))
        {
            figure->Add(GivenPoint(corner));
            figure->Add(FigureLine{PlaceOf(previous->point), PlaceOf(corner.point), LineRole::RESULT, ""});
        }
        previous = &corner;
    }
    const LinearUnit unit = sink.Options().unit;
    for (const Crossing& crossing : crossings)
    {
        figure->Add(FigurePoint{"", {crossing.place.north, crossing.place.east, std::nullopt}, PointRole::COMPUTED});
    }
    const auto* area = std::get_if<double>(&row.values[1]);
    figure->Note(area == nullptr ? "no area: sides cross where circles are"
                                 : fmt::format("area {} {}", sink.LengthText(*area), AreaSymbol(unit)));
    figure->Note(fmt::format("perimeter {} {}", sink.LengthText(std::get<double>(row.values[2])), UnitSymbol(unit)));
}

std::string Title(const std::vector<KnownPoint>& corners)
{
    constexpr size_t MOST_NAMED = 12;
    std::string names;
    for (const KnownPoint& corner : corners)
    {
        names += (names.empty() ? "" : " - ") + corner.id;
    }
    return corners.empty() || corners.size() > MOST_NAMED ? "Area" : "Area " + names;
}

} // namespace

void RunArea(const AreaOptions& options, Inputs& inputs, Sink& sink)
{
    const Corners corners = Read(options, inputs);
    const bool hasBoundary = corners.points.size() >= FEWEST_CORNERS && corners.count <= MOST_CORNERS;
    const std::vector<Crossing> crossings =
        hasBoundary ? FindCrossings(PlacesOf(corners.points), MOST_CROSSINGS) : std::vector<Crossing>();
    const Row row = Compute(corners, crossings, sink);
    sink.Title(Title(corners.points));
    sink.Begin(SECTION);
    sink.Add(row);
    if (sink.Figure() != nullptr && (row.isComputed || !crossings.empty()))
    {
        Draw(corners, crossings, row, sink);
    }
}

} // namespace qstd
