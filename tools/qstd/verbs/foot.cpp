#include "verbs/foot.h"

#include "proof/judgement.h"
#include "proof/plan_proof.h"
#include "text/status_name.h"
#include "verbs/arguments.h"
#include "verbs/own_axes.h"
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

/** In axes along the line, which then runs due north: the library interpolates heights along the northing. */
PointRecord FootInOwnAxes(const LineDef& line, const PointRecord& point, bool isSouth)
{
    const Course course = CourseOf(line, isSouth);
    const OwnAxes axes(course.origin, course.direction);
    LineDef own = line;
    own.mode = LINE_BY_POINTS;
    own.first = axes.In(line.first);
    own.second = line.mode == LINE_BY_POINTS ? line.second : PointRecord{0.0, 0.0, 0.0, POINT_HAS_PLAN};
    own.second.northing = line.mode == LINE_BY_POINTS ? PlanDistance(line.first, line.second) : 1.0;
    own.second.easting = 0.0;
    const PointRecord ownPoint = axes.In(point);
    PointRecord foot{};
    QCogoCalcPtLine(&own, &ownPoint, &foot);
    return axes.Out(foot);
}

/** The foot as the library gives it or, where that misses, in other axes. */
void ProveFootOfLine(const PlanLine& line, const PointRecord& point, bool isSouth, const Sink& sink, PointRecord& foot,
                     Row& row)
{
    const Proof asGiven = ProveFoot(line.definition, point, foot, isSouth);
    if (asGiven.Holds())
    {
        return;
    }
    const PointRecord other = FootInOwnAxes(line.definition, point, isSouth);
    const Proof inOwnAxes = ProveFoot(line.definition, point, other, isSouth);
    if (inOwnAxes.Holds())
    {
        foot = other;
        RemarkOtherForm(asGiven, "in axes along the line", sink, row);
        return;
    }
    Judge(asGiven, sink, row);
}

Row Compute(const PlanLine& line, const KnownPoint& point, bool isSouth, const Sink& sink, Perpendicular& result)
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
    ProveFootOfLine(line, point.point, isSouth, sink, result.foot, row);
    result.place = PlaceOnLine(line.definition, point.point, isSouth);
    QCogoCoordToAngDist(&point.point, &result.foot, &result.toFoot);
    const double distance = result.toFoot.horizontalDistance;
    const bool hasAzimuth = !(distance < ON_THE_LINE);
    Proof way;
    RequireWayToFoot(point.point, result.foot, distance,
                     hasAzimuth ? std::optional(result.toFoot.azimuth) : std::nullopt, isSouth, way);
    Judge(way, sink, row);
    if (line.IsByPoints())
    {
        QuestionFar("the foot", PlanDistance(line.first.point, result.foot),
                    PlanDistance(line.first.point, line.second.point), sink, row);
    }
    row.values.insert(row.values.end(), {RealValue(result.foot.northing), RealValue(result.foot.easting),
                                         HeightOf(result.foot), result.place.chainage, result.place.offset, distance,
                                         hasAzimuth ? AngleOf(result.toFoot.azimuth) : Value()});
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
    const Row row = Compute(line, point, isSouth, sink, result);
    sink.Title(fmt::format("Foot of {} on {}", point.id, LineName(line, sink)));
    sink.Begin(SectionWith(SideText(result.place.offset, sink)));
    sink.Add(row);
    if (sink.Figure() != nullptr && row.isComputed)
    {
        Draw(line, point, result, isSouth, sink);
    }
}

} // namespace qstd
