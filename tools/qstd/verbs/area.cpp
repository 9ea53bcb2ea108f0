#include "verbs/area.h"

#include "input/table_points.h"
#include "text/outcome.h"
#include "text/text.h"
#include "verbs/arguments.h"
#include "verbs/plan_shapes.h"

#include <qstdlib.h>

#include <fmt/format.h>

#include <cmath>
#include <cstdint>
#include <optional>
#include <utility>

namespace qstd {

namespace {

/** The library counts corners in 16 bits. */
constexpr size_t MOST_CORNERS = 32767;
constexpr size_t FEWEST_CORNERS = 3;

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

double Area(const std::vector<KnownPoint>& corners)
{
    std::vector<PointRecord> records;
    records.reserve(corners.size());
    for (const KnownPoint& corner : corners)
    {
        records.push_back(corner.point);
    }
    return QCogoCalcArea(records.data(), static_cast<int32_t>(records.size()));
}

Row Compute(const Corners& corners)
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
    row.values.insert(row.values.end(), {Area(corners.points), Perimeter(corners.points)});
    return row;
}

bool IsSamePlace(const PointRecord& one, const PointRecord& other)
{
    return one.northing == other.northing && one.easting == other.easting;
}

void Draw(const Corners& corners, const Row& row, const Sink& sink)
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
    figure->Note(fmt::format("area {} {}", sink.LengthText(std::get<double>(row.values[1])), AreaSymbol(unit)));
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
    const Row row = Compute(corners);
    sink.Title(Title(corners.points));
    sink.Begin(SECTION);
    sink.Add(row);
    if (sink.Figure() != nullptr && row.isComputed)
    {
        Draw(corners, row, sink);
    }
}

} // namespace qstd
