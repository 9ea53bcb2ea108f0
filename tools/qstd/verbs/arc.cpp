#include "verbs/arc.h"

#include "proof/judgement.h"
#include "proof/stake_proof.h"
#include "text/status_name.h"
#include "verbs/arc_axes.h"
#include "verbs/arc_definition.h"
#include "verbs/arguments.h"
#include "verbs/plan_shapes.h"
#include "verbs/stake_figure.h"
#include "verbs/standing.h"

#include <qstdlib.h>

#include <fmt/format.h>

#include <cmath>

namespace qstd {

namespace {

constexpr double PI = 3.14159265358979323846;

/** Within it the library takes the given end for the end of the arc, and its height for the design height there. */
constexpr double END_TOLERANCE = 0.05;

/** So near to the centre a direction from there is rounding. */
constexpr double AT_CENTRE = 1e-5;

/** What lies farther than this many lengths of the arc away would leave no room for the arc on a plan. */
constexpr double FAR = 2.0;

const Section POINT_SECTION = {"point",
                               Layout::TABLE,
                               true,
                               {{"id", "point", Quantity::TEXT, ""},
                                {"along", "along", Quantity::LENGTH, ""},
                                {"offset", "offset", Quantity::LENGTH, ""},
                                {"side", "side", Quantity::TEXT, ""},
                                {"height_difference", "above design", Quantity::LENGTH, ""}}};

/** The arc in the plan, with what follows from its parameters. */
struct Arc
{
    ArcDefinition definition;
    ArcParams params;
    double startAzimuth; /**< radians from north */
    Alignment alignment;
    ArcAxes axes;    /**< in which the library keeps the arc */
    StakeArc proven; /**< the same for the proofs */
    bool isSouth;

    [[nodiscard]] bool TurnsRight() const
    {
        return params.radius > 0.0;
    }

    /** From either end to where the tangents meet; nothing for a half circle and more. */
    [[nodiscard]] std::optional<double> TangentLength() const
    {
        // The last unit of the angle is rounding.
        const bool isBelowHalf = std::fabs(alignment.Sweep()) < RadiansOf(ANGLE_HALF_CIRCLE - 1);
        return isBelowHalf ? std::optional<double>(params.radius * std::tan(alignment.Sweep() / 2.0)) : std::nullopt;
    }

    [[nodiscard]] std::optional<FigurePlace> TangentPoint() const
    {
        const std::optional<double> tangent = TangentLength();
        const Alignment startTangent(definition.from.point, startAzimuth, 0.0);
        return tangent ? std::optional<FigurePlace>(startTangent.At(*tangent)) : std::nullopt;
    }

    [[nodiscard]] FigurePlace End() const
    {
        return alignment.At(params.length);
    }

    /** How far the given end lies from the end of the arc. */
    [[nodiscard]] std::optional<double> Misclosure() const
    {
        if (definition.kind != ArcDefinition::Kind::COORDINATES)
        {
            return std::nullopt;
        }
        const FigurePlace end = End();
        const PointRecord& given = definition.to.point;
        return std::hypot(given.northing - end.northing, given.easting - end.easting);
    }
};

Arc ArcOf(const ArcDefinition& definition, const ArcParams& params, const ArcAxes& axes, bool isSouth)
{
    const double azimuth = RadiansOf(WithinCircle(params.startAzimuth)) + (isSouth ? PI : 0.0);
    return {definition, params,
            azimuth,    Alignment(definition.from.point, azimuth, params.length, params.radius),
            axes,       {PlanOf(definition.from.point), azimuth, params.radius, params.length},
            isSouth};
}

Proof Prove(const Arc& arc)
{
    const ArcDefinition& definition = arc.definition;
    ArcWish wish;
    wish.startAzimuth = definition.startAzimuth;
    wish.isSouth = arc.isSouth;
    if (definition.kind != ArcDefinition::Kind::RADIUS_AND_LENGTH)
    {
        wish.endAzimuth = definition.endAzimuth;
    }
    if (definition.kind == ArcDefinition::Kind::COORDINATES)
    {
        wish.end = PlanOf(definition.to.point);
    }
    else
    {
        wish.radius = definition.radius;
    }
    if (definition.kind == ArcDefinition::Kind::RADIUS_AND_LENGTH)
    {
        wish.length = definition.length;
    }
    return ProveArc(arc.proven, arc.params, wish);
}

/** The arc as the library takes it or, where that misses, in axes of its own. */
Arc ProvenOrInOwnAxes(const Arc& asGiven, const Sink& sink, Row& row)
{
    const Proof proof = Prove(asGiven);
    if (proof.Holds())
    {
        return asGiven;
    }
    const ArcAxes axes = AxesFor(asGiven.definition);
    Row ownRow;
    std::optional<ArcParams> params = DefineArc(axes.In(asGiven.definition), ownRow);
    if (params)
    {
        params->startAzimuth = axes.Out(params->startAzimuth);
        params->endAzimuth = axes.Out(params->endAzimuth);
        Arc own = ArcOf(asGiven.definition, *params, axes, asGiven.isSouth);
        if (Prove(own).Holds())
        {
            RemarkOtherForm(proof, "in axes from the start of the arc", sink, row);
            return own;
        }
    }
    DefineArcAgain(asGiven.definition);
    Judge(proof, sink, row);
    return asGiven;
}

/** So large an arc that the library's angles are coarse on it. */
void RemarkCoarseAngles(const Arc& arc, const Sink& sink, Row& row)
{
    constexpr double COARSE = 1e-3;
    const double step = UnitsOver(arc.params.radius);
    if (step > COARSE)
    {
        AddRemark(fmt::format("distances along it are in steps of {} {}, the library's angle unit of 1/16\" at this "
                              "radius",
                              sink.LengthText(step), UnitSymbol(sink.Options().unit)),
                  row);
    }
}

std::string DesignHeight(const Arc& arc, const Sink& sink)
{
    const PointRecord& from = arc.definition.from.point;
    const PointRecord& to = arc.definition.to.point;
    if ((from.flags & POINT_HAS_HEIGHT) == 0)
    {
        return "";
    }
    const bool isGraded = (to.flags & POINT_HAS_HEIGHT) != 0 && arc.Misclosure().value_or(HUGE_VAL) < END_TOLERANCE;
    return isGraded ? fmt::format("from {} to {}", sink.LengthText(from.height), sink.LengthText(to.height))
                    : fmt::format("{} all along", sink.LengthText(from.height));
}

Section ArcSection(const Arc& arc, bool isMain)
{
    const std::string turn = arc.TurnsRight() ? "turns right" : "turns left";
    return {"arc",
            Layout::RECORD,
            isMain,
            {{"from", "", Quantity::TEXT, ""},
             {"to", "", Quantity::TEXT, ""},
             {"radius", "radius", Quantity::LENGTH, turn},
             {"turn", "", Quantity::TEXT, ""},
             {"length", "arc length", Quantity::LENGTH, ""},
             {"central_angle", "central angle", Quantity::ANGLE, ""},
             {"start_azimuth", "start tangent", Quantity::ANGLE, ""},
             {"end_azimuth", "end tangent", Quantity::ANGLE, ""},
             {"tangent_length", "tangent length", Quantity::LENGTH, ""},
             {"chord", "chord", Quantity::LENGTH, "from start to end"},
             {"centre_northing", "centre northing", Quantity::LENGTH, ""},
             {"centre_easting", "centre easting", Quantity::LENGTH, ""},
             {"tangent_point_northing", "tangents meet, northing", Quantity::LENGTH, ""},
             {"tangent_point_easting", "tangents meet, easting", Quantity::LENGTH, ""},
             {"end_northing", "end northing", Quantity::LENGTH, ""},
             {"end_easting", "end easting", Quantity::LENGTH, ""},
             {"misclosure", "misclosure", Quantity::LENGTH,
              fmt::format("from the end of the arc to {}", arc.definition.to.id)},
             {"design_height", "design height", Quantity::TEXT, ""},
             {"start_chainage", "start chainage", Quantity::LENGTH, ""},
             {"end_chainage", "end chainage", Quantity::LENGTH, ""}}};
}

void ShowArc(const Arc& arc, const StakeOptions& stakes, bool isMain, Row& row, Sink& sink)
{
    const std::optional<double> tangent = arc.TangentLength();
    const std::optional<FigurePlace> meeting = arc.TangentPoint();
    const std::optional<double> misclosure = arc.Misclosure();
    const bool hasChainage = !stakes.chainage.empty();
    const double chainage = StartChainage(stakes);
    const FigurePlace centre = arc.alignment.Centre();
    const FigurePlace end = arc.End();
    const auto real = [](const std::optional<double>& value) { return value ? RealValue(*value) : Value(); };
    row.values = {arc.definition.from.id,
                  arc.definition.to.id,
                  arc.params.radius,
                  arc.TurnsRight() ? "right" : "left",
                  arc.params.length,
                  AngleOf(std::abs(arc.params.centralAngle)),
                  AngleOf(WithinCircle(arc.params.startAzimuth)),
                  AngleOf(WithinCircle(arc.params.endAzimuth)),
                  real(tangent),
                  2.0 * std::fabs(arc.params.radius * std::sin(arc.alignment.Sweep() / 2.0)),
                  centre.northing,
                  centre.easting,
                  meeting ? Value(meeting->northing) : Value(),
                  meeting ? Value(meeting->easting) : Value(),
                  end.northing,
                  end.easting,
                  real(misclosure),
                  DesignHeight(arc, sink),
                  hasChainage ? Value(chainage) : Value(),
                  hasChainage ? Value(chainage + arc.params.length) : Value()};
    if (misclosure.value_or(0.0) >= END_TOLERANCE)
    {
        // Each tangent is kept to a unit; where they meet flatly, that moves the end of the arc the more.
        const double flat = std::fabs(std::sin(arc.alignment.Sweep()));
        const bool isByUnits = *misclosure < UnitsOver(tangent.value_or(0.0) / std::fmax(flat, ANGLE_UNIT), 4.0);
        row.isProven = false;
        row.warnings.push_back(fmt::format("the arc does not end in {}, by {} {}: {}", arc.definition.to.id,
                                           sink.LengthText(*misclosure), UnitSymbol(sink.Options().unit),
                                           isByUnits
                                               ? "the tangents meet so flatly that the library's angle unit of "
                                                 "1/16\" leaves that much"
                                               : "no circle touches both tangents in the points given; " +
                                                     arc.definition.to.id + " only gives the end tangent its place"));
    }
    else if (std::abs(arc.params.centralAngle) >= ANGLE_FULL_CIRCLE - 1)
    {
        AddRemark("a full circle", row);
    }
    RemarkCoarseAngles(arc, sink, row);
    sink.Begin(ArcSection(arc, isMain));
    sink.Add(row);
}

/** The design height at a distance along the arc whose start has one. */
double DesignHeightAt(const Arc& arc, double along)
{
    const PointRecord& from = arc.definition.from.point;
    const PointRecord& to = arc.definition.to.point;
    const bool isGraded = (to.flags & POINT_HAS_HEIGHT) != 0 && arc.Misclosure().value_or(HUGE_VAL) < END_TOLERANCE;
    return isGraded ? from.height + along / arc.params.length * (to.height - from.height) : from.height;
}

/** The height above the design, where the arc's start has one. */
void RequireHeight(const Arc& arc, const PointRecord& point, const ArcCalcResult& result, Proof& proof)
{
    const PointRecord& from = arc.definition.from.point;
    // Where it is a matter of rounding whether the end counts as reached, either height is right.
    constexpr double UNDECIDED = 1e-3;
    if ((point.flags & from.flags & POINT_HAS_HEIGHT) == 0 ||
        std::fabs(arc.Misclosure().value_or(HUGE_VAL) - END_TOLERANCE) < UNDECIDED)
    {
        return;
    }
    const double design = DesignHeightAt(arc, result.along);
    proof.Require("the height above the design is off by", result.heightDifference - (point.height - design),
                  RoundingOf(std::fabs(point.height) + std::fabs(design) + std::fabs(from.height)));
}

Proof Prove(const Arc& arc, const PointRecord& point, const ArcCalcResult& result)
{
    Proof proof = ProveOnArc(arc.proven, point, result.along, result.offset);
    RequireHeight(arc, point, result, proof);
    return proof;
}

int32_t Calculate(const ArcAxes& axes, const PointRecord& point, ArcCalcResult& result)
{
    const PointRecord own = axes.In(point);
    const int32_t status = QREFCalcArc(&own, &result);
    result.offset = axes.isMirrored ? -result.offset : result.offset;
    return status;
}

/** As Calculate, of another arc than the one that is staked out, which the library has again afterwards. */
int32_t CalculateOnOther(const Arc& arc, const ArcDefinition& other, const ArcAxes& axes, const PointRecord& point,
                         ArcCalcResult& result)
{
    DefineArcAgain(axes.In(other));
    const int32_t status = Calculate(axes, point, result);
    DefineArcAgain(arc.axes.In(arc.definition));
    return status;
}

int32_t CalculateMirrored(const Arc& arc, const PointRecord& point, ArcCalcResult& result)
{
    ArcAxes mirrored = arc.axes;
    mirrored.isMirrored = true;
    return CalculateOnOther(arc, arc.definition, mirrored, point, result);
}

/** From the end of the arc back to its start. */
int32_t CalculateReversed(const Arc& arc, const PointRecord& point, ArcCalcResult& result)
{
    ArcDefinition reversed;
    reversed.kind = ArcDefinition::Kind::RADIUS_AND_LENGTH;
    reversed.startAzimuth = WithinCircle(WithinCircle(arc.params.endAzimuth) + ANGLE_HALF_CIRCLE);
    reversed.radius = -arc.params.radius;
    // So that it has the same centre, although its tangent is one of whole units.
    const FigurePlace centre = arc.alignment.Centre();
    const PlanVector right = TurnedRight(DirectionOfAzimuth(reversed.startAzimuth, arc.isSouth));
    reversed.from.point = {centre.northing - reversed.radius * right.north,
                           centre.easting - reversed.radius * right.east, 0.0, POINT_HAS_PLAN};
    reversed.length = arc.params.length;
    const int32_t status = CalculateOnOther(arc, reversed, arc.axes, point, result);
    result.along = arc.params.length - result.along;
    result.offset = -result.offset;
    result.heightDifference = point.height - DesignHeightAt(arc, result.along);
    return status;
}

/**
 * Refers a point to the arc, and holds it against the point. More than a quarter circle before its start the library
 * takes a point as beyond the end, at a right arc by an angle that may lead back over the arc, at a left one by an
 * angle that is not the one between them. On the mirrored arc or the reversed one such a point is like any other.
 */
int32_t CalculateProven(const Arc& arc, const PointRecord& point, const Sink& sink, ArcCalcResult& result, Row& row)
{
    const int32_t status = Calculate(arc.axes, point, result);
    if (!HasResult(status))
    {
        return status;
    }
    const Proof asGiven = Prove(arc, point, result);
    if (asGiven.Holds())
    {
        return status;
    }
    ArcCalcResult other{};
    if (!arc.TurnsRight() && HasResult(CalculateMirrored(arc, point, other)) && Prove(arc, point, other).Holds())
    {
        result = other;
        RemarkOtherForm(asGiven, "on the mirrored arc", sink, row);
        return status;
    }
    if (HasResult(CalculateReversed(arc, point, other)) && Prove(arc, point, other).Holds())
    {
        result = other;
        RemarkOtherForm(asGiven, "on the reversed arc", sink, row);
        return status;
    }
    Judge(asGiven, sink, row);
    return status;
}

/** The library refuses the centre itself, but coordinates hardly ever meet it to the last bit. */
bool IsAtCentre(const Arc& arc, const PointRecord& point, double offset)
{
    if (std::fabs(arc.params.radius - offset) > AT_CENTRE)
    {
        return false;
    }
    const FigurePlace centre = arc.alignment.Centre();
    return std::hypot(point.northing - centre.northing, point.easting - centre.easting) < AT_CENTRE;
}

void Compute(const Arc& arc, const KnownPoint& point, double startChainage, const Sink& sink, Row& row,
             ArcCalcResult& result)
{
    row.remark.clear();
    row.warnings.clear();
    row.isProven = true;
    row.values.clear();
    row.status = CalculateProven(arc, point.point, sink, result, row);
    row.isComputed = HasResult(row.status);
    row.values.emplace_back(point.id);
    if (!row.isComputed)
    {
        row.remark = "the point is the centre of the arc: it has no place along it";
        IsRefusedForPlan({point}, row);
        return;
    }
    const bool hasHeight = (point.point.flags & arc.definition.from.point.flags & POINT_HAS_HEIGHT) != 0;
    row.values.emplace_back(startChainage + result.along);
    row.values.emplace_back(result.offset);
    row.values.emplace_back(SideText(result.offset, sink, "arc"));
    row.values.emplace_back(hasHeight ? RealValue(result.heightDifference) : Value());
    if (IsAtCentre(arc, point.point, result.offset))
    {
        AddRemark("the point is the centre of the arc but for rounding: no place along it is better than another", row);
    }
    QuestionFar("it", PlanDistance(arc.definition.from.point, point.point),
                std::fmax(arc.params.length, std::fabs(arc.params.radius)), sink, row);
}

/** What leads to the arc: its tangents, where they meet, its centre. */
void DrawConstruction(FigureWriter& figure, const Arc& arc)
{
    const FigurePlace start = arc.alignment.At(0.0);
    const FigurePlace end = arc.End();
    const std::optional<double> tangent = arc.TangentLength();
    const std::optional<FigurePlace> meeting = arc.TangentPoint();
    if (meeting && std::fabs(*tangent) < FAR * arc.params.length)
    {
        figure.Add(FigureLine{start, *meeting, LineRole::CONSTRUCTION, ""});
        figure.Add(FigureLine{*meeting, end, LineRole::CONSTRUCTION, ""});
        const std::optional<KnownPoint>& via = arc.definition.via;
        figure.Add(
            FigurePoint{via ? FigureName(*via, "PI") : "PI", *meeting, via ? PointRole::GIVEN : PointRole::COMPUTED});
    }
    if (std::fabs(arc.params.radius) < FAR * arc.params.length)
    {
        const FigurePlace centre = arc.alignment.Centre();
        figure.Add(FigureLine{centre, start, LineRole::CONSTRUCTION, ""});
        figure.Add(FigureLine{centre, end, LineRole::CONSTRUCTION, ""});
        figure.Add(FigurePoint{"centre", centre, PointRole::COMPUTED});
    }
}

void DrawArc(FigureWriter& figure, const Arc& arc, const Sink& sink)
{
    const FigurePlace start = PlaceOf(arc.definition.from.point);
    const double toStart = arc.startAzimuth - (arc.TurnsRight() ? PI / 2.0 : -PI / 2.0);
    figure.Add(FigureArc{arc.alignment.Centre(), std::fabs(arc.params.radius), toStart, arc.alignment.Sweep(),
                         LineRole::REFERENCE, ""});
    DrawConstruction(figure, arc);
    figure.Add(FigurePoint{FigureName(arc.definition.from, "A"), start, PointRole::GIVEN});
    const bool endsThere = arc.Misclosure().value_or(HUGE_VAL) < END_TOLERANCE;
    if (arc.definition.kind == ArcDefinition::Kind::COORDINATES)
    {
        figure.Add(FigurePoint{FigureName(arc.definition.to, "B"), PlaceOf(arc.definition.to.point), PointRole::GIVEN});
    }
    if (!endsThere)
    {
        figure.Add(FigurePoint{"end", arc.End(), PointRole::COMPUTED});
    }
    figure.Note(fmt::format("radius {}, turns {}", sink.LengthText(std::fabs(arc.params.radius)),
                            arc.TurnsRight() ? "right" : "left"));
    figure.Note(fmt::format("length {}", sink.LengthText(arc.params.length)));
    figure.Note(fmt::format("central angle {}", sink.AngleText(std::abs(arc.params.centralAngle))));
}

std::string TitleOf(const ArcDefinition& arc)
{
    return arc.kind == ArcDefinition::Kind::COORDINATES ? fmt::format("Arc from {} to {}", arc.from.id, arc.to.id)
                                                        : fmt::format("Arc from {}", arc.from.id);
}

/** The list of points. */
void StakeOut(const Arc& arc, const ArcOptions& options, Inputs& inputs, Sink& sink, StakeFigure& stakeFigure)
{
    const double startChainage = StartChainage(options.stakes);
    StakeList stakes(options.stakes, inputs);
    sink.Begin(POINT_SECTION);
    Row row;
    KnownPoint point;
    ArcCalcResult result{};
    while (stakes.Next(point))
    {
        Compute(arc, point, startChainage, sink, row, result);
        sink.Add(row);
        if (row.isComputed)
        {
            const bool hasHeight = std::holds_alternative<double>(row.values.back());
            stakeFigure.Add(point, result.along, result.offset,
                            hasHeight ? std::optional<double>(point.point.height - result.heightDifference)
                                      : std::nullopt);
        }
    }
}

} // namespace

void RunArc(const ArcOptions& options, Inputs& inputs, Sink& sink)
{
    const SimulatedInstrument instrument = InstrumentFrom(options.instrument, sink.Options().unit);
    const InstrumentConnection connection(instrument);
    const ArcDefinition definition = ReadArc(options, inputs);
    const double startChainage = StartChainage(options.stakes);
    const bool hasPoints = !options.stakes.table.empty() || !options.stakes.points.empty();
    sink.Title(TitleOf(definition));
    Row row;
    const std::optional<ArcParams> params = DefineArc(definition, row);
    if (!params)
    {
        AddRefusal(hasPoints ? POINT_SECTION : ArcSection(ArcOf(definition, {}, {}, false), true), row, sink);
        return;
    }
    const Arc arc =
        ProvenOrInOwnAxes(ArcOf(definition, *params, ArcAxes(), options.instrument.isSouthAzimuth), sink, row);
    ShowArc(arc, options.stakes, !hasPoints, row, sink);
    StakeFigure stakeFigure(sink, arc.alignment, startChainage);
    if (FigureWriter* const figure = stakeFigure.Begin("Stake-out along an arc"))
    {
        DrawArc(*figure, arc, sink);
    }
    if (hasPoints)
    {
        StakeOut(arc, options, inputs, sink, stakeFigure);
    }
    stakeFigure.Finish();
}

} // namespace qstd
