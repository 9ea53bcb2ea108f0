#include "verbs/forward.h"

#include "proof/judgement.h"
#include "proof/plan_proof.h"
#include "text/status_name.h"
#include "verbs/arguments.h"
#include "verbs/plan_shapes.h"

#include <qstdlib.h>

#include <fmt/format.h>

namespace qstd {

namespace {

const Section SECTION = {"point",
                         Layout::RECORD,
                         true,
                         {{"from", "", Quantity::TEXT, ""},
                          {"azimuth", "", Quantity::ANGLE, ""},
                          {"horizontal_distance", "", Quantity::LENGTH, ""},
                          {"height_difference", "", Quantity::LENGTH, ""},
                          {"northing", "northing", Quantity::LENGTH, ""},
                          {"easting", "easting", Quantity::LENGTH, ""},
                          {"height", "height", Quantity::LENGTH, ""}}};

struct Polar
{
    KnownPoint from;
    AngDistRecord observation = {};
    bool hasHeightDifference = false;
};

Polar Read(const ForwardOptions& options, const Inputs& inputs, const KnownPoint& from)
{
    Polar polar;
    polar.from = from;
    polar.observation.azimuth = inputs.Angle(options.azimuth, "azimuth");
    polar.observation.horizontalDistance = LengthArgument(options.distance, "distance");
    polar.hasHeightDifference = !options.heightDifference.empty();
    if (polar.hasHeightDifference)
    {
        polar.observation.heightDifference = LengthArgument(options.heightDifference, "height difference");
    }
    return polar;
}

Row Compute(const Polar& polar, PointRecord& result)
{
    Row row;
    const AngDistRecord& observation = polar.observation;
    row.values = {polar.from.id, AngleOf(observation.azimuth), observation.horizontalDistance,
                  polar.hasHeightDifference ? Value(observation.heightDifference) : Value()};
    if (IsRefusedForPlan({polar.from}, row))
    {
        return row;
    }
    PointRecord from = polar.from.point;
    const bool hasHeight = (from.flags & POINT_HAS_HEIGHT) != 0;
    if (!polar.hasHeightDifference)
    {
        // Nobody said that the ground is level.
        from.flags = POINT_HAS_PLAN;
    }
    row.status = QCogoAngDistToCoord(&from, &observation, &result);
    row.isComputed = HasResult(row.status);
    if (row.isComputed)
    {
        row.values.insert(row.values.end(), {RealValue(result.northing), RealValue(result.easting), HeightOf(result)});
    }
    if (polar.hasHeightDifference && !hasHeight)
    {
        row.remark = fmt::format("{} has no height, so the new point has none", polar.from.id);
    }
    return row;
}

void Draw(const Polar& polar, const PointRecord& result, const Sink& sink)
{
    FigureWriter* const figure = sink.Figure();
    figure->Begin({FigureView::Kind::PLAN, "Point by azimuth and distance", {}, 0.0});
    figure->Add(GivenPoint(polar.from));
    figure->Add(ComputedPoint("new", result));
    figure->Add(FigureLine{PlaceOf(polar.from.point), PlaceOf(result), LineRole::RESULT,
                           sink.LengthText(polar.observation.horizontalDistance)});
    figure->Note("azimuth " + sink.AngleText(polar.observation.azimuth));
}

} // namespace

void RunForward(const ForwardOptions& options, Inputs& inputs, Sink& sink)
{
    const Polar polar = Read(options, inputs, inputs.Point(options.from));
    const SimulatedInstrument instrument = InstrumentFrom(options.instrument, sink.Options().unit);
    const InstrumentConnection connection(instrument);

    PointRecord result{};
    Row row = Compute(polar, result);
    if (row.isComputed)
    {
        Judge(ProveForward(polar.from.point, polar.observation, result, options.instrument.isSouthAzimuth), sink, row);
    }
    const AngDistRecord& observation = polar.observation;
    std::string title =
        fmt::format("Forward from {}, azimuth {}, distance {}", polar.from.id, sink.AngleText(observation.azimuth),
                    sink.LengthText(observation.horizontalDistance));
    if (polar.hasHeightDifference)
    {
        title += ", height difference " + sink.LengthText(observation.heightDifference);
    }
    sink.Title(title);
    sink.Begin(SECTION);
    sink.Add(row);
    if (sink.Figure() != nullptr && row.isComputed)
    {
        Draw(polar, result, sink);
    }
}

} // namespace qstd
