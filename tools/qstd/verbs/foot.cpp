#include "verbs/foot.h"

#include "text/status_name.h"
#include "verbs/arguments.h"
#include "verbs/plan_shapes.h"

#include <qstdlib.h>

#include <fmt/format.h>

#include <cmath>

namespace qstd {

namespace {

/** A point nearer to the line than any instrument can tell lies on it: the azimuth to its foot would be rounding. */
constexpr double ON_THE_LINE = 1e-6;

Section SectionWith(const std::string& side)
{
    return {"foot",
            Layout::RECORD,
            true,
            {{"point", "", Quantity::TEXT, ""},
             {"northing", "northing", Quantity::LENGTH, ""},
             {"easting", "easting", Quantity::LENGTH, ""},
             {"height", "height", Quantity::LENGTH, ""},
             {"chainage", "chainage", Quantity::LENGTH, ""},
             {"offset", "offset", Quantity::LENGTH, side},
             {"distance", "point to foot", Quantity::LENGTH, ""},
             {"azimuth", "azimuth to foot", Quantity::ANGLE, ""}}};
}

struct Perpendicular
{
    PointRecord foot = {};
    LinePlace place; /**< of the point */
    AngDistRecord toFoot = {};
};

/** Why the foot has no height although both ends of the line have one. */
std::string HeightRemark(const PlanLine& line, const PointRecord& foot)
{
    const bool isFlagged = (foot.flags & POINT_HAS_HEIGHT) != 0;
    if (!isFlagged || std::isfinite(foot.height))
    {
        return "";
    }
    return fmt::format("no height: the library interpolates it along the northing, which is the same at {} and {}",
                       line.first.id, line.second.id);
}

Row Compute(const PlanLine& line, const KnownPoint& point, bool isSouth, Perpendicular& result)
{
    Row row;
    row.values = {point.id};
    if (IsRefusedLine(line, row) || IsRefusedForPlan({point}, row))
    {
        return row;
    }
    row.status = QCogoCalcPtLine(&line.definition, &point.point, &result.foot);
    row.isComputed = HasResult(row.status);
    if (!row.isComputed)
    {
        return row;
    }
    result.place = PlaceOnLine(line.definition, point.point, isSouth);
    QCogoCoordToAngDist(&point.point, &result.foot, &result.toFoot);
    const double distance = result.toFoot.horizontalDistance;
    row.values.insert(row.values.end(), {RealValue(result.foot.northing), RealValue(result.foot.easting),
                                         HeightOf(result.foot), result.place.chainage, result.place.offset, distance,
                                         distance < ON_THE_LINE ? Value() : AngleOf(result.toFoot.azimuth)});
    row.remark = HeightRemark(line, result.foot);
    if (!std::isfinite(result.foot.height))
    {
        // No figure draws a place whose height is no number.
        result.foot.flags = POINT_HAS_PLAN;
    }
    return row;
}

void Draw(const PlanLine& line, const KnownPoint& point, const Perpendicular& result, bool isSouth, const Sink& sink)
{
    FigureWriter* const figure = sink.Figure();
    figure->Begin({FigureView::Kind::PLAN, "Foot of the perpendicular", {}, 0.0});
    figure->Add(DrawnLine(line.definition, {result.foot}, isSouth));
    figure->Add(FigureLine{PlaceOf(result.foot), PlaceOf(point.point), LineRole::OFFSET,
                           sink.LengthText(result.toFoot.horizontalDistance)});
    figure->Add(GivenPoint(line.first));
    if (line.IsByPoints())
    {
        figure->Add(GivenPoint(line.second));
    }
    figure->Add(GivenPoint(point));
    figure->Add(ComputedPoint("foot", result.foot));
    const double offset = result.place.offset;
    figure->Note("chainage " + sink.LengthText(result.place.chainage));
    figure->Note(fmt::format("offset {} {}", sink.LengthText(std::fabs(offset)), SideText(offset, sink)));
}

} // namespace

void RunFoot(const FootOptions& options, Inputs& inputs, Sink& sink)
{
    const KnownPoint point = inputs.Point(options.point);
    const PlanLine line = ReadLine(options.line, inputs);
    const SimulatedInstrument instrument = InstrumentFrom(options.instrument, sink.Options().unit);
    const InstrumentConnection connection(instrument);

    Perpendicular result;
    const bool isSouth = options.instrument.isSouthAzimuth;
    const Row row = Compute(line, point, isSouth, result);
    sink.Title(fmt::format("Foot of {} on {}", point.id, LineName(line, sink)));
    sink.Begin(SectionWith(SideText(result.place.offset, sink)));
    sink.Add(row);
    if (sink.Figure() != nullptr && row.isComputed)
    {
        Draw(line, point, result, isSouth, sink);
    }
}

} // namespace qstd
