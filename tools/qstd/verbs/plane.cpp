#include "verbs/plane.h"

#include "text/outcome.h"
#include "verbs/arguments.h"
#include "verbs/plan_shapes.h"
#include "verbs/plane_figure.h"
#include "verbs/reference_plane.h"
#include "verbs/sight_list.h"
#include "verbs/standing.h"

#include <fmt/format.h>

#include <cmath>

namespace qstd {

namespace {

ReferencePlane ReadPlane(const PlaneOptions& options, Inputs& inputs)
{
    if (options.isInclined && !options.third.empty())
    {
        throw WrongUse("--inclined is for a plane of two points; one of three is measured that way in any case");
    }
    if (options.instrument.station.empty())
    {
        throw WrongUse("where the instrument stands is missing; give --station, a name or N,E,H");
    }
    if (options.sightsTable.empty() && options.sights.empty())
    {
        throw WrongUse("no sights; give their table with --sights, - for standard input, or --sight HZ,V");
    }
    ReferencePlane plane;
    plane.first = inputs.Point(options.first);
    plane.second = inputs.Point(options.second);
    if (!options.third.empty())
    {
        plane.third = inputs.Point(options.third);
    }
    plane.isInclined = options.isInclined;
    plane.station = inputs.Point(options.instrument.station);
    plane.instrumentHeight = options.instrument.instrumentHeight;
    if (!options.instrument.orientation.empty())
    {
        plane.orientation = inputs.Angle(options.instrument.orientation, "orientation");
    }
    plane.isSouth = options.instrument.isSouthAzimuth;
    return plane;
}

Section PointSection(const ReferencePlane& plane)
{
    Section section = {"point",
                       Layout::TABLE,
                       true,
                       {{"target", "target", Quantity::TEXT, ""},
                        {"northing", "northing", Quantity::LENGTH, ""},
                        {"easting", "easting", Quantity::LENGTH, ""},
                        {"height", "height", Quantity::LENGTH, ""},
                        {"along", fmt::format("along from {}", plane.first.id), Quantity::LENGTH, ""}}};
    if (plane.IsInSpace())
    {
        section.columns.push_back({"across", "across", Quantity::LENGTH, ""});
        section.columns.push_back({"side", "side", Quantity::TEXT, ""});
    }
    else
    {
        section.columns.push_back(
            {"height_above_first", fmt::format("above {}", plane.first.id), Quantity::LENGTH, ""});
    }
    section.columns.push_back({"slope_distance", "slope distance", Quantity::LENGTH, ""});
    section.columns.push_back({"beyond_plane", "beyond plane", Quantity::LENGTH, ""});
    return section;
}

/** Which way across the baseline: up or down the plane, or, on a level one, to a side of the baseline. */
std::string SideAcross(const ReferencePlane& plane, const PlanePlace& place, const Sink& sink)
{
    if (sink.LengthText(std::fabs(place.across)) == sink.LengthText(0.0))
    {
        return "on the baseline";
    }
    const SpaceVector along = plane.Baseline();
    const PointRecord& first = plane.first.point;
    const double north = place.point.northing - first.northing - place.along * along[0];
    const double east = place.point.easting - first.easting - place.along * along[1];
    const double up = place.point.height - first.height - place.along * along[2];
    // A thousandth of the way across: what rises less is level for an instrument.
    if (std::fabs(up) > std::fabs(place.across) * 1e-3)
    {
        return up > 0.0 ? "above" : "below";
    }
    return along[0] * east - along[1] * north > 0.0 ? "to the right" : "to the left";
}

void FillRow(const ReferencePlane& plane, const AngleSight& sight, const PlanePlace& place, const Sink& sink, Row& row)
{
    row.values.clear();
    row.values.emplace_back(sight.target);
    if (!row.isComputed)
    {
        return;
    }
    const bool hasHeight = (place.point.flags & POINT_HAS_HEIGHT) != 0;
    row.values.emplace_back(place.point.northing);
    row.values.emplace_back(place.point.easting);
    row.values.emplace_back(HeightOf(place.point));
    row.values.emplace_back(place.along);
    if (plane.IsInSpace())
    {
        row.values.emplace_back(place.across);
        row.values.emplace_back(SideAcross(plane, place, sink));
    }
    else
    {
        row.values.emplace_back(hasHeight && row.status == QSTD_OK ? RealValue(place.across) : Value());
    }
    row.values.emplace_back(place.slopeDistance ? RealValue(*place.slopeDistance) : Value());
    const bool hasBoth = sight.slopeDistance && place.slopeDistance;
    row.values.emplace_back(hasBoth ? RealValue(*sight.slopeDistance - *place.slopeDistance) : Value());
}

std::string TitleOf(const ReferencePlane& plane)
{
    const std::string points = plane.third
                                   ? fmt::format("{}, {} and {}", plane.first.id, plane.second.id, plane.third->id)
                                   : fmt::format("{} and {}", plane.first.id, plane.second.id);
    return fmt::format("Sights from {} onto the {}plane through {}", plane.station.id, plane.third ? "" : "vertical ",
                       points);
}

} // namespace

void RunPlane(const PlaneOptions& options, Inputs& inputs, Sink& sink)
{
    const SimulatedInstrument instrument = InstrumentFrom(options.instrument, sink.Options().unit);
    const InstrumentConnection connection(instrument);
    const ReferencePlane plane = ReadPlane(options, inputs);
    SightList sights(options.sightsTable, options.sights, options.instrument.station, inputs);
    sink.Title(TitleOf(plane));
    Section section = PointSection(plane);
    Row row;
    if (!DefinePlane(plane, row))
    {
        section.layout = Layout::RECORD;
        sink.Begin(section);
        sink.Add(row);
        return;
    }
    PlaneFigure figure(plane, sink);
    figure.Begin("Sights onto a plane");
    sink.Begin(section);
    AngleSight sight;
    while (sights.Next(sight))
    {
        const PlanePlace place = MeetPlane(plane, sight, sink, row);
        FillRow(plane, sight, place, sink, row);
        sink.Add(row);
        if (row.isComputed)
        {
            figure.Add(sight.target, place);
        }
    }
    RequireOwnSights(sights, options.instrument.station);
}

} // namespace qstd
