#include "proof/space_proof.h"

#include "text/angle_text.h"

namespace qstd {

namespace {

constexpr const char* OFF_THE_SIGHT = "the point lies aside of the sight by";
constexpr const char* OFF_THE_PLANE = "the point lies off the plane by";
constexpr const char* WRONG_ALONG = "the distance along is off by";

PlanVector PlanOf(const Space& place)
{
    return {place[0], place[1]};
}

double SizeOf(const Space& place)
{
    return std::fmax(std::fabs(place[0]), std::fmax(std::fabs(place[1]), std::fabs(place[2])));
}

Space Scaled(double factor, const Space& vector)
{
    return {factor * vector[0], factor * vector[1], factor * vector[2]};
}

/** Rounding at a place that was reached from others. */
double RoundingAt(const Space& place, const Space& from)
{
    return RoundingOf(SizeOf(place) + SizeOf(from) + LengthOf(Less(place, from)));
}

/** How far a place lies off a line in space. */
double OffLine(const Space& first, const Space& second, const Space& place)
{
    const Space way = Less(second, first);
    return LengthOf(Cross(Scaled(1.0 / LengthOf(way), way), Less(place, first)));
}

/**
 * The point lies in the sight from the axis. Where the sight meets the plane under a small angle, whose sine is
 * `crossing`, rounding moves the point along the plane by that much more.
 */
void RequireInSight(const SpaceSight& sight, const Space& place, double crossing, Proof& proof)
{
    const Space way = Less(place, sight.axis);
    const double reach = LengthOf(way);
    const double allowed =
        RoundingAt(place, sight.axis) + ROUNDINGS * EPSILON * reach / std::fmax(std::fabs(crossing), EPSILON);
    const Space aside = Cross(sight.Direction(), way);
    proof.Require(OFF_THE_SIGHT, LengthOf(aside), allowed);
}

/** The same in the plan. */
void RequireInDirection(const SpaceSight& sight, const PlanVector& place, double crossing, Proof& proof)
{
    const PlanVector axis = PlanOf(sight.axis);
    const double reach = Length(place - axis);
    const double allowed = RoundingOf(qstd::SizeOf({place, axis}) + reach) +
                           ROUNDINGS * EPSILON * reach / std::fmax(std::fabs(crossing), EPSILON);
    proof.Require(OFF_THE_SIGHT, Right(sight.direction, place - axis), allowed);
}

} // namespace

Space SpaceOf(const PointRecord& point)
{
    return {point.northing, point.easting, point.height};
}

double Dot(const Space& one, const Space& other)
{
    return one[0] * other[0] + one[1] * other[1] + one[2] * other[2];
}

Space Cross(const Space& one, const Space& other)
{
    return {one[1] * other[2] - one[2] * other[1], one[2] * other[0] - one[0] * other[2],
            one[0] * other[1] - one[1] * other[0]};
}

Space Less(const Space& one, const Space& other)
{
    return {one[0] - other[0], one[1] - other[1], one[2] - other[2]};
}

Space Plus(const Space& one, double factor, const Space& other)
{
    return {one[0] + factor * other[0], one[1] + factor * other[1], one[2] + factor * other[2]};
}

double LengthOf(const Space& vector)
{
    return std::hypot(vector[0], vector[1], vector[2]);
}

Space SpaceSight::Direction() const
{
    const double level = std::sin(zenith);
    return {level * direction.north, level * direction.east, std::cos(zenith)};
}

Proof ProveRod(const PointRecord& far, const PointRecord& near, double spacing, double extension,
               const PointRecord& hidden, double measuredSpacing)
{
    Proof proof;
    const Space rod = Less(SpaceOf(near), SpaceOf(far));
    const double measured = LengthOf(rod);
    const double asked = spacing == 0.0 ? extension : extension * (measured / spacing);
    const Space beyond = Less(SpaceOf(hidden), SpaceOf(near));
    const double allowed = RoundingAt(SpaceOf(hidden), SpaceOf(near)) + RoundingOf(asked);
    proof.Require("the measured spacing is off by", measuredSpacing - measured, RoundingOf(SizeOf(SpaceOf(near))));
    const Space direction = Scaled(1.0 / measured, rod);
    proof.Require("the point lies off the line of the prisms by", LengthOf(Cross(direction, beyond)), allowed);
    proof.Require("the point lies at another distance from the near prism, by", Dot(direction, beyond) - asked,
                  allowed);
    return proof;
}

Proof ProveSlope(const SectionSlope& slope, const PointRecord& base, const PointRecord& point,
                 const SlopeCheckResult& result)
{
    Proof proof;
    const double distance = PlanDistance(base, point);
    proof.Require("the distance from the base is off by", result.distanceFromBase - distance,
                  RoundingOf(qstd::SizeOf({qstd::PlanOf(base), qstd::PlanOf(point)})));
    // On the negative side all distances count the other way.
    const double side = slope.firstDistance < 0.0 || slope.secondDistance < 0.0 ? -1.0 : 1.0;
    const double firstDistance = side * slope.firstDistance;
    const double run = side * slope.secondDistance - firstDistance;
    const double rise = slope.secondHeight - slope.firstHeight;
    const double across = distance - firstDistance;
    const double up = point.height - slope.firstHeight;
    const double size = std::fabs(point.height) + std::fabs(slope.firstHeight) + std::fabs(slope.secondHeight) +
                        distance + std::fabs(slope.firstDistance) + std::fabs(slope.secondDistance);
    if (result.heightAboveSlope != UNDEFINED_REAL)
    {
        const double gradient = rise / run;
        proof.Require("the height above the slope is off by", result.heightAboveSlope - (up - gradient * across),
                      RoundingOf(size + std::fabs(gradient) * size));
    }
    if (result.offsetBeyondSlope != UNDEFINED_REAL)
    {
        const double reach = run / rise;
        proof.Require("the distance beyond the slope is off by", result.offsetBeyondSlope - (across - reach * up),
                      RoundingOf(size + std::fabs(reach) * size));
    }
    return proof;
}

Proof ProveCorner(const PointRecord& first, const PointRecord& second, const PointRecord& third,
                  const PointRecord& corner)
{
    Proof proof;
    const Course wall = CourseThrough(qstd::PlanOf(first), qstd::PlanOf(second));
    const PlanVector place = qstd::PlanOf(corner);
    const double allowed = RoundingOf(qstd::SizeOf({place, wall.origin, qstd::PlanOf(third)}));
    proof.Require("the corner lies off the wall by", wall.Right(place), allowed);
    proof.Require("the walls do not meet at a right angle, by", wall.Along(place) - wall.Along(qstd::PlanOf(third)),
                  allowed);
    return proof;
}

Proof ProveCorner(const std::array<PointRecord, 4>& points, const PointRecord& corner)
{
    Proof proof;
    const PlanVector place = qstd::PlanOf(corner);
    for (const size_t i : {size_t{0}, size_t{2}})
    {
        const Course wall = CourseThrough(qstd::PlanOf(points.at(i)), qstd::PlanOf(points.at(i + 1)));
        const double reach = Length(place - wall.origin);
        proof.Require("the corner lies off a wall by", wall.Right(place),
                      RoundingOf(qstd::SizeOf({place, wall.origin}) + reach));
    }
    return proof;
}

void RequireExpectedSight(const SpaceSight& sight, double distance, bool hasHeight, const PointRecord& target,
                          Proof& proof)
{
    const Space place = SpaceOf(target);
    const double plan = Length(PlanOf(place) - PlanOf(sight.axis));
    // Half a unit each in both angles, and the rounding of sines that are read at any azimuth.
    const double allowed = RoundingAt(place, sight.axis) + UnitsOver(LengthOf(Less(place, sight.axis)));
    if (!hasHeight)
    {
        const PlanVector reached = PlanOf(sight.axis) + plan * sight.direction;
        proof.Require("the expected sight leads past the point by", Length(reached - PlanOf(place)), allowed);
        return;
    }
    const Space reached = Plus(sight.axis, distance, sight.Direction());
    proof.Require("the expected sight leads past the point by", LengthOf(Less(reached, place)), allowed);
}

Proof ProveColumn(const PlanVector& station, const std::array<PlanVector, 2>& edges, const PlanVector& face,
                  double faceDistance, const PlanVector& centre, double radius)
{
    Proof proof;
    const PlanVector toCentre = centre - station;
    // The rounding of an angle moves the face as much more along its sight as the circle is small in the view, and once
    // more as the face was sighted near the rim: the half chord there is the root of a difference.
    const double opening = std::fabs(Right(edges[0], edges[1]));
    const double reach = Length(toCentre) + radius;
    const double aside = Right(face, toCentre);
    const double halfChord = std::sqrt(std::fmax(0.0, (radius - aside) * (radius + aside))) / reach;
    const double allowed = RoundingOf(qstd::SizeOf({station, centre}) + reach) +
                           ROUNDINGS * EPSILON * reach / std::fmax(opening * halfChord, EPSILON);
    for (const PlanVector& edge : edges)
    {
        proof.Require("the circle does not touch an edge, by", std::fabs(Right(edge, toCentre)) - radius, allowed);
        proof.Require("the circle lies behind an edge by", std::fmin(0.0, Along(edge, toCentre)), allowed);
    }
    const PlanVector sighted = station + faceDistance * face;
    proof.Require("the face lies off the circle by", Length(sighted - centre) - radius, allowed);
    proof.Require("the face is the far side of the circle, by", std::fmin(0.0, Along(face, toCentre) - faceDistance),
                  allowed);
    return proof;
}

Proof ProveEdge(const PointRecord& first, const PointRecord& second, const SpaceSight& sight, const PointRecord& target)
{
    Proof proof;
    const Space place = SpaceOf(target);
    const Space from = SpaceOf(first);
    const Space to = SpaceOf(second);
    const double plan = PlanDistance(first, second);
    const double steep = LengthOf(Less(to, from)) / plan;
    proof.Require("the point lies off the edge by", OffLine(from, to, place),
                  RoundingAt(place, from) + RoundingAt(place, to) +
                      ROUNDINGS * EPSILON * steep * LengthOf(Less(place, from)));
    const Course trace = CourseThrough(PlanOf(from), PlanOf(to));
    RequireInDirection(sight, PlanOf(place), Right(trace.direction, sight.direction), proof);
    return proof;
}

Proof ProveVerticalPlane(const PointRecord& first, const PointRecord& second, const SpaceSight& sight,
                         const PointRecord& point, double along, std::optional<double> above)
{
    Proof proof;
    const Space place = SpaceOf(point);
    const Course trace = CourseThrough(qstd::PlanOf(first), qstd::PlanOf(second));
    const double crossing = Right(trace.direction, sight.direction);
    const double reach = Length(PlanOf(place) - PlanOf(sight.axis));
    const double size = qstd::SizeOf({PlanOf(place), trace.origin, PlanOf(sight.axis)}) + reach;
    proof.Require(OFF_THE_PLANE, trace.Right(PlanOf(place)), RoundingOf(size));
    proof.Require(WRONG_ALONG, trace.Along(PlanOf(place)) - along, RoundingOf(size + std::fabs(along)));
    RequireInDirection(sight, PlanOf(place), crossing, proof);
    if (!above)
    {
        return proof;
    }
    // The way forward; behind the instrument the line of sight goes on.
    const double forward = Along(sight.direction, PlanOf(place) - PlanOf(sight.axis));
    const double climb = std::cos(sight.zenith) / std::sin(sight.zenith);
    const double amplified = ROUNDINGS * EPSILON * reach / std::fmax(std::fabs(crossing), EPSILON);
    const double allowed = RoundingOf(std::fabs(sight.axis[2]) + std::fabs(place[2]) + std::fabs(first.height)) +
                           std::fabs(climb) * (RoundingOf(size) + amplified);
    proof.Require("the height is not where the sight meets the plane, by", place[2] - (sight.axis[2] + forward * climb),
                  allowed);
    proof.Require("the height above the first point is off by", place[2] - first.height - *above, allowed);
    return proof;
}

Proof ProveSpacePlane(const SpacePlane& plane, const SpaceSight& sight, const PointRecord& point, double along,
                      double across)
{
    Proof proof;
    const Space place = SpaceOf(point);
    const Space baseline = Less(plane.second, plane.first);
    const double length = LengthOf(baseline);
    const Space direction = Scaled(1.0 / length, baseline);
    const Space other = Less(plane.third, plane.second);
    const Space upright = Cross(direction, other);
    const double height = LengthOf(upright);
    const Space normal = Scaled(1.0 / height, upright);
    const Space way = Less(place, plane.first);
    // A narrow triangle turns its plane by the rounding of its sides over its height.
    const double narrow = (length + LengthOf(other)) / height;
    const double reach = LengthOf(way) + LengthOf(Less(place, sight.axis));
    const double allowed = RoundingAt(place, plane.first) + ROUNDINGS * EPSILON * reach * (1.0 + narrow);
    proof.Require(OFF_THE_PLANE, Dot(normal, way), allowed);
    RequireInSight(sight, place, Dot(normal, sight.Direction()) / (1.0 + narrow), proof);
    proof.Require(WRONG_ALONG, along - Dot(direction, way), allowed);
    // Across is told of both senses: which one is up depends on the side that the instrument stands on.
    proof.Require("the distance across is off by", std::fabs(across) - std::fabs(Dot(Cross(normal, direction), way)),
                  allowed);
    return proof;
}

Proof ProveRemoteElevation(const RemoteBase& base, AngleUnit circle, double zenith, double height, double offset)
{
    Proof proof;
    const double distance = base.slopeDistance * std::sin(base.zenith);
    const double up = base.slopeDistance * std::cos(base.zenith) + height;
    // Under the zenith angle the height is seen at the distance of the base: aside of the sight, in a section.
    proof.Require("the height is not in the sight, by", up * std::sin(zenith) - distance * std::cos(zenith),
                  RoundingOf(base.slopeDistance + std::fabs(up)));
    const double turn = RadiansOf(WithinCircle(circle)) - RadiansOf(WithinCircle(base.circle));
    proof.Require("the offset is not in the sight, by", offset * std::cos(turn) - distance * std::sin(turn),
                  RoundingOf(distance + std::fabs(offset)));
    return proof;
}

double HeightMissedAside(const RemoteBase& base, AngleUnit circle, double zenith)
{
    const double distance = base.slopeDistance * std::sin(base.zenith);
    const double turn = RadiansOf(WithinCircle(circle)) - RadiansOf(WithinCircle(base.circle));
    return distance * (1.0 / std::cos(turn) - 1.0) * std::cos(zenith) / std::sin(zenith);
}

} // namespace qstd
