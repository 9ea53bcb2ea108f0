#include "verbs/offset.h"

#include "proof/judgement.h"
#include "proof/plan_proof.h"
#include "verbs/arguments.h"
#include "verbs/plan_line.h"
#include "verbs/plan_shapes.h"

#include <qstdlib.h>

#include <fmt/format.h>

#include <cmath>

namespace qstd {

namespace {

const Section SECTION = {"point",
                         Layout::RECORD,
                         true,
                         {{"start", "", Quantity::TEXT, ""},
                          {"end", "", Quantity::TEXT, ""},
                          {"chainage", "", Quantity::LENGTH, ""},
                          {"offset", "", Quantity::LENGTH, ""},
                          {"northing", "northing", Quantity::LENGTH, ""},
                          {"easting", "easting", Quantity::LENGTH, ""},
                          {"height", "height", Quantity::LENGTH, ""}}};

Row Compute(const PlanLine& line, const LinePlace& place, PointRecord& result)
{
    Row row;
    row.values = {line.first.id, line.second.id, place.chainage, place.offset};
    if (!IsRefusedLine(line, row))
    {
        row.status = QCogoOffsetToCoord(&line.first.point, &line.second.point, place.chainage, place.offset, &result);
        row.isComputed = row.status == QSTD_OK;
    }
    if (row.isComputed)
    {
        row.values.insert(row.values.end(), {RealValue(result.northing), RealValue(result.easting), HeightOf(result)});
    }
    return row;
}

void Draw(const PlanLine& line, const LinePlace& place, const PointRecord& result, const Sink& sink)
{
    FigureWriter* const figure = sink.Figure();
    PointRecord foot{};
    QCogoOffsetToCoord(&line.first.point, &line.second.point, place.chainage, 0.0, &foot);
    figure->Begin({FigureView::Kind::PLAN, "Point by chainage and offset", {}, 0.0});
    figure->Add(DrawnLine(line.definition, {foot}, false));
    figure->Add(GivenPoint(line.first));
    figure->Add(GivenPoint(line.second));
    figure->Add(FigureTick{PlaceOf(foot), DirectionOf(line.definition, false), sink.LengthText(place.chainage)});
    figure->Add(FigureLine{PlaceOf(foot), PlaceOf(result), LineRole::OFFSET, sink.LengthText(std::fabs(place.offset))});
    figure->Add(ComputedPoint("new", result));
    figure->Note("chainage " + sink.LengthText(place.chainage));
    figure->Note(fmt::format("offset {} {}", sink.LengthText(std::fabs(place.offset)), SideText(place.offset, sink)));
}

} // namespace

void RunOffset(const OffsetOptions& options, Inputs& inputs, Sink& sink)
{
    PlanLine line;
    line.first = inputs.Point(options.start);
    line.second = inputs.Point(options.end);
    line.definition = {line.first.point, line.second.point, 0, LINE_BY_POINTS};
    const LinePlace place = {LengthArgument(options.chainage, "chainage"), LengthArgument(options.offset, "offset")};

    PointRecord result{};
    Row row = Compute(line, place, result);
    if (row.isComputed)
    {
        Judge(ProveOffset(line.first.point, line.second.point, place.chainage, place.offset, result), sink, row);
        QuestionFar("the new point", PlanDistance(line.first.point, result),
                    PlanDistance(line.first.point, line.second.point), sink, row);
    }
    sink.Title(fmt::format("Point along {} - {}: chainage {}, offset {} {}", line.first.id, line.second.id,
                           sink.LengthText(place.chainage), sink.LengthText(std::fabs(place.offset)),
                           SideText(place.offset, sink)));
    sink.Begin(SECTION);
    sink.Add(row);
    if (sink.Figure() != nullptr && row.isComputed)
    {
        Draw(line, place, result, sink);
    }
}

} // namespace qstd
