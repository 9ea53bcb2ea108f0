#include "verbs/arc_definition.h"

#include "text/outcome.h"
#include "text/status_name.h"
#include "text/text.h"
#include "verbs/arguments.h"

#include <fmt/format.h>

#include <cmath>

namespace qstd {

namespace {

/** No arc in the field is smaller; what is comes from tangents that meet in the start point, and rounding. */
constexpr double SMALLEST_RADIUS = 1e-4;

/** By so much a length may exceed the full circle: its circumference is typed as it is printed. */
constexpr double CIRCLE_TOLERANCE = 1e-3;

constexpr double FULL_TURN = 2.0 * 3.14159265358979323846;

const char* const THREE_WAYS = "an arc is given by --to B with --via P, or with --tangent and --end-tangent; by "
                               "--tangent, --radius and --deflection or --end-tangent; or by --tangent, --radius "
                               "and --length";

void Refuse(bool isWrong, const std::string& what)
{
    if (isWrong)
    {
        throw WrongUse(fmt::format("{}; {}", what, THREE_WAYS));
    }
}

void CheckCoordinates(const ArcOptions& options)
{
    Refuse(!options.radius.empty() || !options.length.empty() || !options.deflection.empty(),
           "with --to the radius follows from the two tangents: no --radius, --length or --deflection");
    const bool hasAzimuths = !options.tangent.empty() || !options.endTangent.empty();
    Refuse(!options.via.empty() && hasAzimuths, "--via gives both tangents: no --tangent or --end-tangent beside it");
    Refuse(options.via.empty() && (options.tangent.empty() || options.endTangent.empty()),
           "--to alone gives no direction of the arc");
}

void CheckRadius(const ArcOptions& options)
{
    Refuse(!options.via.empty(), "--via needs the end of the arc, --to");
    Refuse(options.tangent.empty(), "the direction in which the arc starts is missing, --tangent");
    Refuse(options.radius.empty(), "the radius is missing");
    const int ends =
        (options.endTangent.empty() ? 0 : 1) + (options.deflection.empty() ? 0 : 1) + (options.length.empty() ? 0 : 1);
    Refuse(ends == 0, "where the arc ends is missing");
    Refuse(ends > 1, "one of --end-tangent, --deflection and --length says where the arc ends, not several");
}

/** Nothing where a point lacks coordinates or the two coincide; the library then refuses the arc, too. */
AngleUnit AzimuthBetween(const KnownPoint& from, const KnownPoint& to)
{
    AngDistRecord result{};
    QCogoCoordToAngDist(&from.point, &to.point, &result);
    return result.azimuth;
}

void ReadCoordinates(const ArcOptions& options, Inputs& inputs, ArcDefinition& arc)
{
    arc.to = inputs.Point(options.to);
    if (options.via.empty())
    {
        arc.startAzimuth = inputs.Angle(options.tangent, "start tangent");
        arc.endAzimuth = inputs.Angle(options.endTangent, "end tangent");
        return;
    }
    arc.via = inputs.Point(options.via);
    arc.startAzimuth = AzimuthBetween(arc.from, *arc.via);
    arc.endAzimuth = AzimuthBetween(*arc.via, arc.to);
}

/** The library cuts a longer arc to the full circle without a word. */
void CheckLength(const ArcDefinition& arc, const std::string& text)
{
    const double circumference = FULL_TURN * std::fabs(arc.radius);
    if (arc.radius != 0.0 && arc.length > circumference + CIRCLE_TOLERANCE)
    {
        throw WrongUse(fmt::format("length {}: more than the full circle, {:.3f}; give at most that", Quoted(text),
                                   circumference));
    }
}

void ReadRadius(const ArcOptions& options, Inputs& inputs, ArcDefinition& arc)
{
    arc.startAzimuth = inputs.Angle(options.tangent, "start tangent");
    arc.radius = LengthArgument(options.radius, "radius");
    if (!options.length.empty())
    {
        arc.kind = ArcDefinition::Kind::RADIUS_AND_LENGTH;
        arc.length = LengthArgument(options.length, "length");
        CheckLength(arc, options.length);
        return;
    }
    arc.kind = ArcDefinition::Kind::RADIUS_AND_TANGENT;
    if (!options.endTangent.empty())
    {
        arc.endAzimuth = inputs.Angle(options.endTangent, "end tangent");
        return;
    }
    const AngleUnit deflection = inputs.Angle(options.deflection, "deflection");
    arc.endAzimuth = WithinCircle(arc.radius < 0.0 ? arc.startAzimuth - deflection : arc.startAzimuth + deflection);
}

/** True where the tangents meet in a point that has coordinates and is neither end. */
bool HasTangents(const ArcDefinition& arc, Row& row)
{
    if (!arc.via || IsRefusedForPlan({arc.from, *arc.via, arc.to}, row))
    {
        return row.isComputed;
    }
    if (arc.startAzimuth == ANGLE_UNDEFINED || arc.endAzimuth == ANGLE_UNDEFINED)
    {
        row.status = QSTD_COINCIDENT_POINTS;
        row.isComputed = false;
        row.remark = fmt::format("{} coincides with an end of the arc, which gives no tangent", arc.via->id);
    }
    return row.isComputed;
}

int32_t Set(const ArcDefinition& arc)
{
    switch (arc.kind)
    {
    case ArcDefinition::Kind::RADIUS_AND_TANGENT:
        return QREFSetArcByRadiusHAngle(&arc.from.point, arc.startAzimuth, arc.radius, arc.endAzimuth);
    case ArcDefinition::Kind::RADIUS_AND_LENGTH:
        return QREFSetArcByRadiusArcLen(&arc.from.point, arc.startAzimuth, arc.radius, arc.length);
    case ArcDefinition::Kind::COORDINATES:
        break;
    }
    // The height of the end counts as it stands: without one of its own the design height is level.
    PointRecord end = arc.to.point;
    end.height = (end.flags & POINT_HAS_HEIGHT) != 0 ? end.height : arc.from.point.height;
    return QREFSetArcByCoord(&arc.from.point, &end, arc.startAzimuth, arc.endAzimuth);
}

std::string WhyRefused(const ArcDefinition& arc, int32_t status)
{
    switch (status)
    {
    case QSTD_COINCIDENT_POINTS:
        return fmt::format("{} and {} coincide in plan, which gives no arc", arc.from.id, arc.to.id);
    case QSTD_DEGENERATE:
        return "the tangents have the same azimuth, which gives a straight line and no arc";
    case QSTD_REJECTED:
        return arc.radius == 0.0 ? "the radius is 0; it is positive to turn right, negative to turn left"
                                 : "the length of the arc is not above 0";
    default:
        return "";
    }
}

/** Why an arc that the library takes with success is none. */
std::string WhyUseless(const ArcDefinition& arc)
{
    if (arc.kind != ArcDefinition::Kind::COORDINATES)
    {
        return fmt::format("a radius below {} leaves no arc", SMALLEST_RADIUS);
    }
    if (arc.via)
    {
        return fmt::format("over {} the tangents turn back on themselves, which leaves no arc; look at the coordinates "
                           "of {}",
                           arc.via->id, arc.via->id);
    }
    return fmt::format("the tangents meet in {}, which leaves no arc; look at the two azimuths", arc.from.id);
}

} // namespace

ArcDefinition ReadArc(const ArcOptions& options, Inputs& inputs)
{
    Refuse(options.from.empty(), "the start of the arc is missing, --from");
    const bool isByCoordinates = !options.to.empty();
    isByCoordinates ? CheckCoordinates(options) : CheckRadius(options);
    ArcDefinition arc;
    arc.from = inputs.Point(options.from);
    isByCoordinates ? ReadCoordinates(options, inputs, arc) : ReadRadius(options, inputs, arc);
    return arc;
}

std::optional<ArcParams> DefineArc(const ArcDefinition& arc, Row& row)
{
    if (!HasTangents(arc, row))
    {
        return std::nullopt;
    }
    row.status = Set(arc);
    row.isComputed = HasResult(row.status);
    row.remark = WhyRefused(arc, row.status);
    PointReferences points = {arc.from};
    if (arc.kind == ArcDefinition::Kind::COORDINATES)
    {
        points.emplace_back(arc.to);
    }
    if (!row.isComputed)
    {
        IsRefusedForPlan(points, row);
        return std::nullopt;
    }
    ArcParams params{};
    QREFGetArcParams(&params);
    if (!std::isfinite(params.radius) || std::fabs(params.radius) < SMALLEST_RADIUS || !std::isfinite(params.length))
    {
        row.isComputed = false;
        row.remark = WhyUseless(arc);
        return std::nullopt;
    }
    return params;
}

void DefineArcAgain(const ArcDefinition& arc)
{
    static_cast<void>(Set(arc));
}

} // namespace qstd
