#include "verbs/transfer.h"

#include "proof/judgement.h"
#include "proof/plan_proof.h"
#include "text/angle_text.h"
#include "text/outcome.h"
#include "text/status_name.h"
#include "text/text.h"
#include "verbs/arguments.h"
#include "verbs/own_axes.h"
#include "verbs/plan_shapes.h"

#include <fmt/format.h>

#include <cmath>

namespace qstd {

namespace {

/** A line by azimuth has no end: so many offsets of it are drawn, or so much where there is no offset. */
constexpr double DRAWN_OFFSETS = 4.0;
constexpr double DRAWN_LENGTH = 10.0;

const Section SECTION = {"line",
                         Layout::RECORD,
                         true,
                         {{"line", "", Quantity::TEXT, ""},
                          {"azimuth", "azimuth", Quantity::ANGLE, ""},
                          {"library_azimuth", "", Quantity::COUNT, ""},
                          {"first_northing", "first northing", Quantity::LENGTH, ""},
                          {"first_easting", "first easting", Quantity::LENGTH, ""},
                          {"first_height", "first height", Quantity::LENGTH, ""},
                          {"second_northing", "second northing", Quantity::LENGTH, ""},
                          {"second_easting", "second easting", Quantity::LENGTH, ""},
                          {"second_height", "second height", Quantity::LENGTH, ""}}};

struct Transfer
{
    PlanLine line;
    AngleUnit rotation = 0;
    double offset = 0.0;
    bool isSouth = false;
};

/** An angle with a sign: a rotation has two senses, other angles of the command line have one. */
AngleUnit Rotation(const std::string& text, const Inputs& inputs)
{
    const std::string plain(Trim(text));
    if (plain.empty())
    {
        return 0;
    }
    const bool isNegative = plain.front() == '-';
    const ParsedAngle angle = ParseAngle(plain.substr(isNegative ? 1 : 0), inputs.BareAngles());
    if (!angle.problem.empty())
    {
        throw WrongUse(fmt::format("rotation {}: {}", Quoted(plain), angle.problem));
    }
    return isNegative ? -angle.units : angle.units;
}

/** A line as the library transferred it. */
struct Transferred
{
    LineDef line = {};
    AngleUnit azimuth = 0; /**< in the instrument's reference, within the circle */
};

/** Direction of a transferred line. */
AngleUnit Azimuth(const LineDef& given, AngleUnit rotation, const LineDef& result)
{
    if (given.mode != LINE_BY_POINTS)
    {
        return WithinCircle(given.azimuth + rotation);
    }
    AngDistRecord direction{};
    QCogoCoordToAngDist(&result.first, &result.second, &direction);
    return direction.azimuth;
}

/**
 * By two points, counted from the first. A line by azimuth gets a second one: the library shifts such a line along an
 * azimuth that is mostly 45.4 degrees off the right angle.
 */
Transferred TransferFromFirst(const Transfer& transfer)
{
    // So far that the direction to it is exact to the angle unit.
    constexpr double AHEAD = 1000.0;
    const LineDef& given = transfer.line.definition;
    const OwnAxes axes(PlanOf(given.first));
    LineDef own = given;
    own.mode = LINE_BY_POINTS;
    own.first = axes.In(given.first);
    own.second = axes.In(given.second);
    if (!transfer.line.IsByPoints())
    {
        const PlanVector direction = DirectionOfAzimuth(given.azimuth, transfer.isSouth);
        own.second = {AHEAD * direction.north, AHEAD * direction.east, 0.0, POINT_HAS_PLAN};
    }
    Transferred result;
    QCogoCalcTransLine(&own, transfer.rotation, transfer.offset, &result.line);
    result.azimuth = transfer.line.IsByPoints() ? Azimuth(own, transfer.rotation, result.line)
                                                : Azimuth(given, transfer.rotation, result.line);
    result.line.first = axes.Out(result.line.first);
    result.line.second = axes.Out(result.line.second);
    result.line.mode = given.mode;
    return result;
}

Proof Prove(const Transfer& transfer, const Transferred& result)
{
    return ProveTransfer(transfer.line.definition, transfer.rotation, transfer.offset, result.line, result.azimuth,
                         transfer.isSouth);
}

/** Where the result misses, the other form of the call is taken. */
void ProveOrTakeOtherForm(const Transfer& transfer, const Sink& sink, Transferred& result, Row& row)
{
    const Proof asGiven = Prove(transfer, result);
    if (asGiven.Holds())
    {
        return;
    }
    const Transferred other = TransferFromFirst(transfer);
    if (Prove(transfer, other).Holds())
    {
        result = other;
        RemarkOtherForm(asGiven,
                        transfer.line.IsByPoints() ? "with coordinates from the first point"
                                                   : "by a second point instead of the azimuth",
                        sink, row);
        return;
    }
    Judge(asGiven, sink, row);
}

Row Compute(const Transfer& transfer, Transferred& result, const Sink& sink)
{
    Row row;
    row.values = {LineName(transfer.line, sink)};
    if (IsRefusedLine(transfer.line, row))
    {
        return row;
    }
    const LineDef& given = transfer.line.definition;
    row.status = QCogoCalcTransLine(&given, transfer.rotation, transfer.offset, &result.line);
    row.isComputed = HasResult(row.status);
    if (!row.isComputed)
    {
        return row;
    }
    result.azimuth = Azimuth(given, transfer.rotation, result.line);
    ProveOrTakeOtherForm(transfer, sink, result, row);
    const PointRecord& first = result.line.first;
    const PointRecord& second = result.line.second;
    row.values.insert(row.values.end(), {AngleOf(result.azimuth), int64_t{result.line.azimuth},
                                         RealValue(first.northing), RealValue(first.easting), HeightOf(first)});
    if (transfer.line.IsByPoints())
    {
        row.values.insert(row.values.end(), {RealValue(second.northing), RealValue(second.easting), HeightOf(second)});
        QuestionFar("the line", std::fabs(transfer.offset), PlanDistance(given.first, given.second), sink, row);
    }
    return row;
}

/** What was done to the line: turned, shifted. */
std::vector<std::string> Steps(const Transfer& transfer, const Sink& sink)
{
    std::vector<std::string> steps;
    if (transfer.rotation != 0)
    {
        const AngleUnit turn = transfer.rotation < 0 ? -transfer.rotation : transfer.rotation;
        steps.push_back(
            fmt::format("turned {} {}", sink.AngleText(turn), transfer.rotation > 0 ? "clockwise" : "anticlockwise"));
    }
    if (transfer.offset != 0.0)
    {
        steps.push_back(fmt::format("shifted {} {}", sink.LengthText(std::fabs(transfer.offset)),
                                    transfer.offset > 0.0 ? "to the right" : "to the left"));
    }
    return steps;
}

std::string Title(const Transfer& transfer, const Sink& sink)
{
    std::string title = "Transfer of " + LineName(transfer.line, sink);
    for (const std::string& step : Steps(transfer, sink))
    {
        title += ", " + step;
    }
    return title;
}

FigureLine Drawn(const PointRecord& first, double direction, double length, LineRole role)
{
    const FigurePlace from = {first.northing, first.easting, std::nullopt};
    return {from,
            {first.northing + length * std::cos(direction), first.easting + length * std::sin(direction), std::nullopt},
            role,
            ""};
}

void DrawByAzimuth(const Transfer& transfer, const LineDef& result, FigureWriter& figure)
{
    LineDef turned = transfer.line.definition;
    turned.azimuth = WithinCircle(turned.azimuth + transfer.rotation);
    const double offset = std::fabs(transfer.offset);
    const double length = offset > 0.0 ? offset * DRAWN_OFFSETS : DRAWN_LENGTH;
    figure.Add(Drawn(transfer.line.first.point, DirectionOf(transfer.line.definition, transfer.isSouth), length,
                     LineRole::REFERENCE));
    figure.Add(Drawn(result.first, DirectionOf(turned, transfer.isSouth), length, LineRole::RESULT));
}

void DrawByPoints(const Transfer& transfer, const LineDef& result, FigureWriter& figure)
{
    const PlanLine& line = transfer.line;
    figure.Add(FigureLine{PlaceOf(line.first.point), PlaceOf(line.second.point), LineRole::REFERENCE, ""});
    figure.Add(FigureLine{PlaceOf(result.first), PlaceOf(result.second), LineRole::RESULT, ""});
    figure.Add(GivenPoint(line.second));
    figure.Add(ComputedPoint("new " + line.second.id, result.second));
}

void Draw(const Transfer& transfer, const Transferred& transferred, const Sink& sink)
{
    const LineDef& result = transferred.line;
    FigureWriter& figure = *sink.Figure();
    figure.Begin({FigureView::Kind::PLAN, "Transferred line", {}, 0.0});
    figure.Add(GivenPoint(transfer.line.first));
    if (transfer.offset != 0.0)
    {
        figure.Add(ComputedPoint("new " + transfer.line.first.id, result.first));
    }
    if (transfer.line.IsByPoints())
    {
        DrawByPoints(transfer, result, figure);
    }
    else
    {
        DrawByAzimuth(transfer, result, figure);
    }
    for (const std::string& step : Steps(transfer, sink))
    {
        figure.Note(step);
    }
    figure.Note("new azimuth " + sink.AngleText(transferred.azimuth));
}

} // namespace

void RunTransfer(const TransferOptions& options, Inputs& inputs, Sink& sink)
{
    Transfer transfer;
    transfer.line = ReadLine(options.line, inputs);
    transfer.rotation = Rotation(options.rotation, inputs);
    transfer.offset = options.offset.empty() ? 0.0 : LengthArgument(options.offset, "offset");
    transfer.isSouth = options.instrument.isSouthAzimuth;
    const SimulatedInstrument instrument = InstrumentFrom(options.instrument, sink.Options().unit);
    const InstrumentConnection connection(instrument);

    Transferred result;
    const Row row = Compute(transfer, result, sink);
    sink.Title(Title(transfer, sink));
    sink.Begin(SECTION);
    sink.Add(row);
    if (sink.Figure() != nullptr && row.isComputed)
    {
        Draw(transfer, result, sink);
    }
}

} // namespace qstd
