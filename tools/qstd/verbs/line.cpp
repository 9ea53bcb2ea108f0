#include "verbs/line.h"

#include "proof/judgement.h"
#include "proof/stake_proof.h"
#include "text/outcome.h"
#include "text/status_name.h"
#include "verbs/arguments.h"
#include "verbs/plan_shapes.h"
#include "verbs/stake_figure.h"
#include "verbs/standing.h"

#include <qstdlib.h>

#include <fmt/format.h>

#include <cmath>

namespace qstd {

namespace {

const Section LINE_SECTION = {"line",
                              Layout::RECORD,
                              false,
                              {{"from", "", Quantity::TEXT, ""},
                               {"to", "", Quantity::TEXT, ""},
                               {"length", "length", Quantity::LENGTH, ""},
                               {"grade", "grade", Quantity::PERCENT, ""},
                               {"start_chainage", "start chainage", Quantity::LENGTH, ""},
                               {"end_chainage", "end chainage", Quantity::LENGTH, ""}}};

const Section POINT_SECTION = {"point",
                               Layout::TABLE,
                               true,
                               {{"id", "point", Quantity::TEXT, ""},
                                {"chainage", "chainage", Quantity::LENGTH, ""},
                                {"offset", "offset", Quantity::LENGTH, ""},
                                {"side", "side", Quantity::TEXT, ""},
                                {"height_difference", "above grade", Quantity::LENGTH, ""},
                                {"foot_northing", "foot northing", Quantity::LENGTH, ""},
                                {"foot_easting", "foot easting", Quantity::LENGTH, ""},
                                {"foot_height", "grade height", Quantity::LENGTH, ""}}};

/** Defines the line. False where the library refuses it; the row then says why. */
bool Define(const KnownPoint& first, const KnownPoint& second, Row& row)
{
    row.status = QREFSetBaseLine(&first.point, &second.point);
    row.isComputed = HasResult(row.status);
    if (row.status == QSTD_COINCIDENT_POINTS)
    {
        row.remark = fmt::format("{} and {} coincide in plan, which gives no line", first.id, second.id);
    }
    IsRefusedForPlan({first, second}, row);
    return row.isComputed;
}

/** A point of the line itself, referred to it: tells its station and the grade height there. */
ReferenceLineResult OnLine(const KnownPoint& point)
{
    PointRecord record = point.point;
    record.flags = POINT_HAS_PLAN | POINT_HAS_HEIGHT;
    ReferenceLineResult result{};
    QREFCalc(&record, &result);
    return result;
}

/** Shows the line's own data. @return its length */
double ShowLine(const KnownPoint& first, const KnownPoint& second, const StakeOptions& stakes, Sink& sink)
{
    const ReferenceLineResult start = OnLine(first);
    const ReferenceLineResult end = OnLine(second);
    const double rise = end.foot.height - start.foot.height;
    const bool hasGrade = (end.foot.flags & POINT_HAS_HEIGHT) != 0;
    const bool hasChainage = !stakes.chainage.empty();
    Row row;
    row.values = {first.id,
                  second.id,
                  end.station,
                  hasGrade ? RealValue(rise / end.station * 100.0) : Value(),
                  hasChainage ? Value(StartChainage(stakes)) : Value(),
                  hasChainage ? Value(StartChainage(stakes) + end.station) : Value()};
    sink.Begin(LINE_SECTION);
    sink.Add(row);
    return end.station;
}

/** Refers a point to the line. */
void Compute(const KnownPoint& point, double startChainage, const Sink& sink, Row& row, ReferenceLineResult& result)
{
    row.status = QREFCalc(&point.point, &result);
    row.isComputed = HasResult(row.status);
    row.remark.clear();
    row.warnings.clear();
    row.isProven = true;
    row.values.clear();
    row.values.emplace_back(point.id);
    if (!row.isComputed)
    {
        IsRefusedForPlan({point}, row);
        return;
    }
    const bool hasHeight = (result.foot.flags & POINT_HAS_HEIGHT) != 0;
    row.values.emplace_back(startChainage + result.station);
    row.values.emplace_back(result.offset);
    row.values.emplace_back(SideText(result.offset, sink));
    row.values.emplace_back(hasHeight ? Value(result.heightDifference) : Value());
    row.values.emplace_back(result.foot.northing);
    row.values.emplace_back(result.foot.easting);
    row.values.emplace_back(HeightOf(result.foot));
}

void DrawLine(FigureWriter& figure, const KnownPoint& first, const KnownPoint& second, double length, const Sink& sink)
{
    figure.Add(FigureLine{PlaceOf(first.point), PlaceOf(second.point), LineRole::REFERENCE, ""});
    const std::string from = FigureName(first, "A");
    const std::string to = FigureName(second, "B");
    figure.Add(FigurePoint{from, PlaceOf(first.point), PointRole::GIVEN});
    figure.Add(FigurePoint{to, PlaceOf(second.point), PointRole::GIVEN});
    figure.Note(fmt::format("from {} to {}: {}", from, to, sink.LengthText(length)));
    figure.Note("offsets to the right of this direction count positive");
}

} // namespace

void RunLine(const LineOptions& options, Inputs& inputs, Sink& sink)
{
    const KnownPoint first = inputs.Point(options.first);
    const KnownPoint second = inputs.Point(options.second);
    const double startChainage = StartChainage(options.stakes);
    if (options.stakes.table.empty() && options.stakes.points.empty())
    {
        throw WrongUse("no points to stake out; name their table behind the two points of the line, - for standard "
                       "input, or give --point");
    }
    StakeList stakes(options.stakes, inputs);
    sink.Title(fmt::format("Stake-out along the line {} - {}", first.id, second.id));
    Row row;
    if (!Define(first, second, row))
    {
        AddRefusal(POINT_SECTION, row, sink);
        return;
    }
    const double length = ShowLine(first, second, options.stakes, sink);
    const StakeLine stakeLine(first.point, second.point);
    const double azimuth =
        std::atan2(second.point.easting - first.point.easting, second.point.northing - first.point.northing);
    const Alignment alignment(first.point, azimuth, length);
    StakeFigure stakeFigure(sink, alignment, startChainage);
    if (FigureWriter* const figure = stakeFigure.Begin("Stake-out along a line"))
    {
        DrawLine(*figure, first, second, length, sink);
    }
    sink.Begin(POINT_SECTION);
    KnownPoint point;
    ReferenceLineResult result{};
    while (stakes.Next(point))
    {
        Compute(point, startChainage, sink, row, result);
        if (row.isComputed)
        {
            Judge(stakeLine.Prove(point.point, result), sink, row);
            QuestionFar("it", std::fmax(std::fabs(result.station), std::fabs(result.offset)), length, sink, row);
        }
        sink.Add(row);
        if (row.isComputed)
        {
            stakeFigure.Add(point, result.station, result.offset, PlaceOf(result.foot).height);
        }
    }
    stakeFigure.Finish();
}

} // namespace qstd
