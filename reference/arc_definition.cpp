#include <cmath>

#include "cogo/line.h"
#include "core/angle.h"
#include "core/point.h"
#include "qstdlib/reference.h"
#include "reference/arc_state.h"

namespace qstdlib {

namespace {

ArcState arc;

constexpr double END_TOLERANCE = 0.05;

// An azimuth as given, in the circle and north-based.
AngleUnit NorthBased(AngleUnit azimuth)
{
    return ApplyAzimuthReference(ReduceToCircle(azimuth));
}

// Only a negative radius turns left; not-a-number does not.
bool TurnsLeft(double radius)
{
    return radius < 0.0;
}

// The line through a point in the direction of an azimuth.
TwoPointLine LineThrough(const PointRecord& point, AngleUnit azimuth)
{
    const double radians = UnreducedRadians(azimuth);
    return {point.northing, point.easting, point.northing + std::cos(radians), point.easting + std::sin(radians)};
}

PointRecord PlanPoint(double northing, double easting)
{
    return {northing, easting, 0.0, FLAGS_PLAN};
}

double Circumference(double radius)
{
    return std::fabs(radius) * TWO_PI;
}

double LengthByAzimuths(AngleUnit start, AngleUnit end, double radius)
{
    const AngleUnit turned = ReduceToCircle(TurnsLeft(radius) ? WrapSubtract(start, end) : WrapSubtract(end, start));
    return turned * Circumference(radius) * INVERSE_FULL_CIRCLE;
}

AngleUnit CentralAngleByLength(double length, double radius)
{
    return TruncateRadiansToAngle(length / radius);
}

AngleUnit RadialAzimuth(AngleUnit startAzimuth, double radius)
{
    return ReduceToCircle(TurnsLeft(radius) ? WrapAdd(startAzimuth, ANGLE_QUARTER_CIRCLE)
                                            : WrapSubtract(startAzimuth, ANGLE_QUARTER_CIRCLE));
}

PointRecord CentreFromStart(const PointRecord& start, double radius, AngleUnit radialAzimuth)
{
    const double rho = UnreducedRadians(radialAzimuth);
    return PlanPoint(start.northing - std::fabs(radius) * std::cos(rho),
                     start.easting - std::fabs(radius) * std::sin(rho));
}

// What follows from start point, start azimuth, radius and length.
void CompleteByRadius()
{
    arc.centralAngle = CentralAngleByLength(arc.length, arc.radius);
    arc.startRadialAzimuth = RadialAzimuth(arc.startAzimuth, arc.radius);
    arc.centre = CentreFromStart(arc.start, arc.radius, arc.startRadialAzimuth);
}

// Begins a definition by radius, which has no end point.
void StoreStart(const PointRecord& start, AngleUnit startAzimuth, double radius)
{
    arc.start = start;
    arc.end.flags = 0;
    arc.endCheck = 0;
    arc.startAzimuth = startAzimuth;
    arc.radius = radius;
}

// Radius, length, central angle and centre from tangents that meet; returns the computed end of the arc.
PointRecord CompleteByTangents()
{
    const TwoPointLine startTangent = LineThrough(arc.start, arc.startAzimuth);
    const TwoPointLine endTangent = LineThrough(arc.end, arc.endAzimuth);
    PointRecord vertex;
    IntersectLines(&startTangent, &endTangent, &vertex); // undefined coordinates go on as they are
    const double tangentLength = PlanDistance(arc.start, vertex);
    const AngleUnit delta = ReduceToCircle(WrapSubtract(arc.endAzimuth, arc.startAzimuth));

    // Half the angle at the vertex, cut to a whole unit: kept, stored radii depend on it.
    arc.radius = std::tan(UnreducedRadians((ANGLE_HALF_CIRCLE - delta) / 2)) * tangentLength;
    arc.length = LengthByAzimuths(arc.startAzimuth, arc.endAzimuth, arc.radius);
    CompleteByRadius();
    const double endRadial = UnreducedRadians(WrapAdd(arc.startRadialAzimuth, arc.centralAngle));
    return PlanPoint(arc.centre.northing + std::fabs(arc.radius) * std::cos(endRadial),
                     arc.centre.easting + std::fabs(arc.radius) * std::sin(endRadial));
}

// The same from opposite tangents, which make a half circle.
PointRecord CompleteHalfCircle()
{
    const AngleUnit normalAzimuth = arc.startAzimuth + ANGLE_QUARTER_CIRCLE;
    const TwoPointLine startNormal = LineThrough(arc.start, normalAzimuth);
    const TwoPointLine endTangent = LineThrough(arc.end, arc.endAzimuth);
    PointRecord farEnd;
    IntersectLines(&startNormal, &endTangent, &farEnd);

    // The side on which the end point lies gives the sign.
    const double radians = UnreducedRadians(normalAzimuth);
    const double x = (arc.end.easting - arc.start.easting) * std::sin(radians) +
                     (arc.end.northing - arc.start.northing) * std::cos(radians);
    arc.radius = (x / std::fabs(x)) * (PlanDistance(arc.start, farEnd) * 0.5);
    arc.centre = PlanPoint((arc.start.northing + farEnd.northing) * 0.5, (arc.start.easting + farEnd.easting) * 0.5);
    arc.length = std::fabs(arc.radius * PI);
    arc.centralAngle = TurnsLeft(arc.radius) ? -ANGLE_HALF_CIRCLE : ANGLE_HALF_CIRCLE;
    arc.startRadialAzimuth = RadialAzimuth(arc.startAzimuth, arc.radius);
    return farEnd;
}

} // namespace

const ArcState& ReferenceArc()
{
    return arc;
}

} // namespace qstdlib

using namespace qstdlib;

int32_t QREFSetArcByCoord(const PointRecord* start, const PointRecord* end, AngleUnit startAzimuth,
                          AngleUnit endAzimuth)
{
    arc.isDefined = 0;
    if (!HasPlan(*start) || !HasPlan(*end))
    {
        return QSTD_MISSING_COORDINATES;
    }
    if (CoincideInPlan(*start, *end))
    {
        return QSTD_COINCIDENT_POINTS;
    }
    if (ReduceToCircle(startAzimuth) == ReduceToCircle(endAzimuth))
    {
        return QSTD_DEGENERATE;
    }
    arc.start = *start;
    arc.end = *end;
    arc.startAzimuth = NorthBased(startAzimuth);
    arc.endAzimuth = NorthBased(endAzimuth);

    const AngleUnit between = arc.startAzimuth - arc.endAzimuth;
    const bool opposite = between == ANGLE_HALF_CIRCLE || between == -ANGLE_HALF_CIRCLE;
    const PointRecord computedEnd = opposite ? CompleteHalfCircle() : CompleteByTangents();

    // Only with a start height: kept, the design heights of stored arcs depend on it.
    arc.endCheck = HasHeight(arc.start) && PlanDistance(computedEnd, arc.end) < END_TOLERANCE ? 1 : 0;
    arc.isDefined = 1;
    return QSTD_OK;
}

int32_t QREFSetArcByRadiusHAngle(const PointRecord* start, AngleUnit startAzimuth, double radius, AngleUnit endAzimuth)
{
    arc.isDefined = 0;
    if (!HasPlan(*start))
    {
        return QSTD_MISSING_COORDINATES;
    }
    if (ReduceToCircle(startAzimuth) == ReduceToCircle(endAzimuth))
    {
        return QSTD_DEGENERATE;
    }
    if (radius == 0.0)
    {
        return QSTD_REJECTED;
    }
    StoreStart(*start, NorthBased(startAzimuth), radius);
    arc.endAzimuth = NorthBased(endAzimuth);
    arc.length = LengthByAzimuths(arc.startAzimuth, arc.endAzimuth, radius);
    CompleteByRadius();
    arc.isDefined = 1;
    return QSTD_OK;
}

int32_t QREFSetArcByRadiusArcLen(const PointRecord* start, AngleUnit startAzimuth, double radius, double length)
{
    arc.isDefined = 0;
    if (!HasPlan(*start))
    {
        return QSTD_MISSING_COORDINATES;
    }
    if (radius == 0.0 || length <= 0.0)
    {
        return QSTD_REJECTED;
    }
    StoreStart(*start, NorthBased(startAzimuth), radius);
    const double circumference = Circumference(radius);
    arc.length = length > circumference ? circumference : length;
    CompleteByRadius();
    arc.endAzimuth = WrapAdd(arc.startAzimuth, arc.centralAngle); // not reduced
    arc.isDefined = 1;
    return QSTD_OK;
}

int32_t QREFGetArcParams(ArcParams* params)
{
    // The reference is applied once more to azimuths that passed it when they were stored.
    params->startAzimuth = ApplyAzimuthReference(arc.startAzimuth);
    params->endAzimuth = ApplyAzimuthReference(arc.endAzimuth);
    params->radius = arc.radius;
    params->length = arc.length;
    params->centralAngle = arc.centralAngle;
    return QSTD_OK;
}
