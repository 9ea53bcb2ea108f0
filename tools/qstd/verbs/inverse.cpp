#include "verbs/inverse.h"

#include "proof/judgement.h"
#include "proof/plan_proof.h"
#include "text/status_name.h"
#include "verbs/arguments.h"
#include "verbs/plan_shapes.h"

#include <qstdlib.h>

#include <fmt/format.h>

namespace qstd {

namespace {

const Section SECTION = {"inverse",
                         Layout::RECORD,
                         true,
                         {{"from", "", Quantity::TEXT, ""},
                          {"to", "", Quantity::TEXT, ""},
                          {"azimuth", "azimuth", Quantity::ANGLE, ""},
                          {"zenith", "zenith angle", Quantity::ANGLE, ""},
                          {"horizontal_distance", "horizontal distance", Quantity::LENGTH, ""},
                          {"slope_distance", "slope distance", Quantity::LENGTH, ""},
                          {"height_difference", "height difference", Quantity::LENGTH, ""}}};

bool HasHeight(const KnownPoint& point)
{
    return (point.point.flags & POINT_HAS_HEIGHT) != 0;
}

/** What is known of the direction and the distances. */
std::vector<Value> Measured(const AngDistRecord& result, bool isSpatial)
{
    // Without both heights the library answers as for a level sight; there is nothing to show of it.
    return {AngleOf(result.azimuth), isSpatial ? AngleOf(result.zenith) : Value(), RealValue(result.horizontalDistance),
            isSpatial ? RealValue(result.slopeDistance) : Value(),
            isSpatial ? RealValue(result.heightDifference) : Value()};
}

/** Held against the points that it comes from. */
Proof Prove(const KnownPoint& from, const KnownPoint& to, const AngDistRecord& result, bool isSouth)
{
    FoundWay way;
    way.azimuth = result.azimuth;
    way.horizontalDistance = result.horizontalDistance;
    if (HasHeight(from) && HasHeight(to))
    {
        way.zenith = result.zenith;
        way.slopeDistance = result.slopeDistance;
        way.heightDifference = result.heightDifference;
    }
    return ProveInverse(from.point, to.point, way, isSouth);
}

void Compute(const KnownPoint& from, const KnownPoint& to, AngDistRecord& result, Row& row)
{
    row.values = {from.id, to.id};
    if (IsRefusedForPlan({from, to}, row))
    {
        return;
    }
    row.status = QCogoCoordToAngDist(&from.point, &to.point, &result);
    row.isComputed = HasResult(row.status);
    if (!row.isComputed)
    {
        row.remark = fmt::format("{} and {} coincide in plan, which gives no azimuth", from.id, to.id);
        return;
    }
    const std::vector<Value> measured = Measured(result, HasHeight(from) && HasHeight(to));
    row.values.insert(row.values.end(), measured.begin(), measured.end());
}

void Draw(const KnownPoint& from, const KnownPoint& to, const AngDistRecord& result, const Sink& sink)
{
    FigureWriter* const figure = sink.Figure();
    figure->Begin({FigureView::Kind::PLAN, "Inverse", {}, 0.0});
    figure->Add(GivenPoint(from));
    figure->Add(GivenPoint(to));
    figure->Add(FigureLine{PlaceOf(from.point), PlaceOf(to.point), LineRole::RESULT,
                           sink.LengthText(result.horizontalDistance)});
    figure->Note("azimuth " + sink.AngleText(result.azimuth));
}

} // namespace

void RunInverse(const InverseOptions& options, Inputs& inputs, Sink& sink)
{
    const KnownPoint from = inputs.Point(options.from);
    const KnownPoint to = inputs.Point(options.to);
    const SimulatedInstrument instrument = InstrumentFrom(options.instrument, sink.Options().unit);
    const InstrumentConnection connection(instrument);

    AngDistRecord result{};
    Row row;
    Compute(from, to, result, row);
    if (row.isComputed)
    {
        Judge(Prove(from, to, result, options.instrument.isSouthAzimuth), sink, row);
    }
    sink.Title(fmt::format("Inverse {} - {}", from.id, to.id));
    sink.Begin(SECTION);
    sink.Add(row);
    if (sink.Figure() != nullptr && row.isComputed)
    {
        Draw(from, to, result, sink);
    }
}

} // namespace qstd
