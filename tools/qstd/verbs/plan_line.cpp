#include "verbs/plan_line.h"

#include "text/angle_text.h"
#include "text/outcome.h"
#include "text/text.h"
#include "verbs/arguments.h"
#include "verbs/typed_sight.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace qstd {

namespace {

/** Of the piece that carries the points: so much is drawn beyond either end. */
constexpr double OVERHANG = 0.08;

/** A text that looks like a name is taken for one: the reader of points knows the names that are near. */
[[noreturn]] void RejectEnd(const std::string& text, const std::string& azimuthProblem, Inputs& inputs)
{
    if (text.find_first_of("0123456789") != 0)
    {
        inputs.Point(text);
    }
    throw WrongUse(fmt::format("line to {}: no known point, and no azimuth: {}", Quoted(text), azimuthProblem));
}

/** A number that is the name of a point is an azimuth, too, where bare angles have a form. */
void RequireNoAzimuth(const std::string& text, const Inputs& inputs)
{
    const std::optional<AngleForm> form = inputs.BareAngles();
    if (form && ParseReal(text) && ParseAngle(text, form).problem.empty())
    {
        throw WrongUse(fmt::format("line to {}: the name of a point and, with --angle, an azimuth; write {} for the "
                                   "azimuth, or id={} for the point",
                                   Quoted(text), WithForm(text, *form), text));
    }
}

} // namespace

bool PlanLine::IsByPoints() const
{
    return definition.mode == LINE_BY_POINTS;
}

PlanLine ReadLine(const LineArgument& argument, Inputs& inputs)
{
    PlanLine line;
    line.first = inputs.Point(argument.first);
    line.definition.first = line.first.point;
    const std::optional<KnownPoint> second = inputs.FindPoint(argument.second);
    if (second)
    {
        RequireNoAzimuth(argument.second, inputs);
        line.second = *second;
        line.definition.second = second->point;
        line.definition.mode = LINE_BY_POINTS;
        return line;
    }
    const ParsedAngle azimuth = ParseAngle(argument.second, inputs.BareAngles());
    if (!azimuth.problem.empty())
    {
        RejectEnd(argument.second, azimuth.problem, inputs);
    }
    line.definition.azimuth = azimuth.units;
    line.definition.mode = LINE_BY_AZIMUTH;
    return line;
}

std::string LineName(const PlanLine& line, const Sink& sink)
{
    return line.IsByPoints() ? fmt::format("{} - {}", line.first.id, line.second.id)
                             : fmt::format("{} at {}", line.first.id, sink.AngleText(line.definition.azimuth));
}

bool IsRefusedLine(const PlanLine& line, Row& row)
{
    PointReferences points = {line.first};
    if (line.IsByPoints())
    {
        points.emplace_back(line.second);
    }
    if (IsRefusedForPlan(points, row))
    {
        return true;
    }
    const LineDef& ends = line.definition;
    if (line.IsByPoints() && ends.first.northing == ends.second.northing && ends.first.easting == ends.second.easting)
    {
        row.status = QSTD_COINCIDENT_POINTS;
        row.isComputed = false;
        row.remark = fmt::format("{} and {} coincide in plan, which gives no line", line.first.id, line.second.id);
        return true;
    }
    return false;
}

double DirectionOf(const LineDef& line, bool isSouth)
{
    if (line.mode == LINE_BY_POINTS)
    {
        return std::atan2(line.second.easting - line.first.easting, line.second.northing - line.first.northing);
    }
    return RadiansOf(line.azimuth) + (isSouth ? RadiansOf(ANGLE_HALF_CIRCLE) : 0.0);
}

LinePlace PlaceOnLine(const LineDef& line, const PointRecord& point, bool isSouth)
{
    const double direction = DirectionOf(line, isSouth);
    const double northing = point.northing - line.first.northing;
    const double easting = point.easting - line.first.easting;
    return {northing * std::cos(direction) + easting * std::sin(direction),
            easting * std::cos(direction) - northing * std::sin(direction)};
}

FigureLine DrawnLine(const LineDef& line, const std::vector<PointRecord>& carried, bool isSouth)
{
    double from = 0.0;
    double to = line.mode == LINE_BY_POINTS ? PlaceOnLine(line, line.second, isSouth).chainage : 0.0;
    for (const PointRecord& point : carried)
    {
        const double chainage = PlaceOnLine(line, point, isSouth).chainage;
        from = std::min(from, chainage);
        to = std::max(to, chainage);
    }
    const double overhang = (to - from) * OVERHANG;
    const double direction = DirectionOf(line, isSouth);
    const auto place = [&line, direction](double chainage) {
        return FigurePlace{line.first.northing + chainage * std::cos(direction),
                           line.first.easting + chainage * std::sin(direction), std::nullopt};
    };
    return {place(from - overhang), place(to + overhang), LineRole::REFERENCE, ""};
}

} // namespace qstd
