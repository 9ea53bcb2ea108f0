#include "plan/figure_geojson.h"

#include "plan/figure_geometry.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <utility>

namespace qstd {

namespace {

using nlohmann::ordered_json;

constexpr double SAGITTA = 0.001; // of a chord, in the unit of the job
constexpr int MOST_CHORDS = 719;
constexpr double WIDEST_CHORD = 0.2; // radians: a small circle remains one
constexpr size_t MOST_NOTES = 100;

std::string Dumped(const ordered_json& value)
{
    return value.dump(-1, ' ', false, ordered_json::error_handler_t::replace);
}

ordered_json Position(const FigurePlace& place, bool hasHeight = true)
{
    ordered_json position = {PlainZero(place.easting), PlainZero(place.northing)};
    if (hasHeight && place.height)
    {
        position.push_back(PlainZero(*place.height));
    }
    return position;
}

ordered_json Height(const std::optional<double>& height)
{
    return height ? ordered_json(PlainZero(*height)) : ordered_json(nullptr);
}

ordered_json Properties(std::string_view name, std::string_view role, std::string_view kind, std::string_view label,
                        const std::optional<double>& height)
{
    return {{"name", name}, {"role", role}, {"kind", kind}, {"label", label}, {"height", Height(height)}};
}

std::string Feature(std::string_view type, ordered_json coordinates, ordered_json properties)
{
    return Dumped({{"type", "Feature"},
                   {"geometry", {{"type", type}, {"coordinates", std::move(coordinates)}}},
                   {"properties", std::move(properties)}});
}

ordered_json Vertices(const FigureArc& arc)
{
    // A chord that spans the angle a leaves its arc by r (1 - cos(a / 2)) = 2 r sin(a / 4) squared.
    const double sweep = SweepOf(arc);
    const double step = 4.0 * std::asin(std::min(std::sqrt(SAGITTA / 2.0 / arc.radius), 1.0));
    const double chords = std::ceil(std::fabs(sweep) / std::min(step, WIDEST_CHORD));
    const int count = static_cast<int>(std::clamp(chords, 1.0, static_cast<double>(MOST_CHORDS)));
    ordered_json vertices = ordered_json::array();
    for (int i = 0; i < count; ++i)
    {
        vertices.push_back(Position(PlaceOnCircle(arc, AzimuthAt(arc, static_cast<double>(i) / count))));
    }
    // A circle is closed to the last digit.
    vertices.push_back(IsFullTurn(arc.sweep) ? vertices.front() : Position(PlaceOnCircle(arc, AzimuthAt(arc, 1.0))));
    return vertices;
}

} // namespace

FigureGeoJson::FigureGeoJson(std::function<void(std::string_view)> sinkOfText, LinearUnit unitOfFigure)
    : sink(std::move(sinkOfText)), unit(unitOfFigure)
{
}

void FigureGeoJson::BeginOnce(std::string_view title)
{
    if (!hasBegun)
    {
        hasBegun = true;
        const std::string note = fmt::format("site coordinates in {}: [easting, northing, height]; not longitude and "
                                             "latitude",
                                             UnitSymbol(unit));
        sink(fmt::format("{{\"type\":\"FeatureCollection\",\"name\":{},\"note\":{},\"features\":[", Dumped(title),
                         Dumped(note)));
    }
}

void FigureGeoJson::Begin(const FigureView& view)
{
    BeginOnce(view.title);
}

void FigureGeoJson::Write(std::string_view feature)
{
    BeginOnce("");
    sink(hasFeatures ? ",\n" : "\n");
    sink(feature);
    hasFeatures = true;
}

void FigureGeoJson::Add(const FigurePoint& point)
{
    if (IsDrawable(point))
    {
        Write(Feature("Point", Position(point.place),
                      Properties(point.name, RoleWord(point.role), "point", "", point.place.height)));
    }
}

void FigureGeoJson::Add(const FigureLine& line)
{
    if (IsDrawable(line))
    {
        // All vertices of a line have the same number of coordinates.
        const bool hasHeights = line.from.height && line.to.height;
        const bool isLevel = hasHeights && *line.from.height == *line.to.height;
        Write(Feature(
            "LineString", ordered_json::array({Position(line.from, hasHeights), Position(line.to, hasHeights)}),
            Properties("", RoleWord(line.role), "line", line.label, isLevel ? line.from.height : std::nullopt)));
    }
}

void FigureGeoJson::Add(const FigureArc& arc)
{
    if (!IsDrawable(arc))
    {
        return;
    }
    ordered_json properties =
        Properties("", RoleWord(arc.role), IsFullTurn(arc.sweep) ? "circle" : "arc", arc.label, arc.centre.height);
    properties["centre"] = Position(arc.centre);
    properties["radius"] = arc.radius;
    properties["start"] = PlainZero(arc.start);
    properties["sweep"] = arc.sweep;
    Write(Feature("LineString", Vertices(arc), std::move(properties)));
}

void FigureGeoJson::Add(const FigureTick& tick)
{
    if (IsDrawable(tick))
    {
        ordered_json properties = Properties("", "stationing", "tick", tick.label, tick.place.height);
        properties["azimuth"] = PlainZero(tick.azimuth);
        Write(Feature("Point", Position(tick.place), std::move(properties)));
    }
}

void FigureGeoJson::Note(const std::string& text)
{
    if (notes.size() < MOST_NOTES)
    {
        notes.push_back(text);
    }
}

void FigureGeoJson::Finish()
{
    BeginOnce("");
    sink(fmt::format("\n],\"notes\":{}}}\n", Dumped(notes)));
}

} // namespace qstd
