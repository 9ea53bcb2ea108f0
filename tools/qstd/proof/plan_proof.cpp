#include "proof/plan_proof.h"

#include "text/angle_text.h"

#include <array>

namespace qstd {

namespace {

constexpr const char* OFF_THE_LINE = "the point lies off the line by";
constexpr const char* OFF_THE_CIRCLE = "the point lies off the circle by";
constexpr const char* OFF_THE_HEIGHT = "the height differs from that of the line by";

bool HasHeight(const PointRecord& point)
{
    return (point.flags & POINT_HAS_HEIGHT) != 0;
}

/** Rounding at a place, for lengths that were carried so far to it. */
double RoundingAt(const PlanVector& place, const Course& course)
{
    return RoundingOf(SizeOf({place, course.origin}) + Length(place - course.origin));
}

/** The height of a line at a distance from its first point: of both ends, or of the one that has it. */
std::optional<double> HeightOn(const PointRecord& first, const PointRecord& second, double along)
{
    if (HasHeight(first) && HasHeight(second))
    {
        return first.height + (second.height - first.height) * (along / PlanDistance(first, second));
    }
    return HasHeight(first)    ? std::optional(first.height)
           : HasHeight(second) ? std::optional(second.height)
                               : std::nullopt;
}

/** @param size  of the coordinates, whose rounding the gradient carries into the height */
void RequireHeight(const PointRecord& first, const PointRecord& second, double along, double size,
                   const PointRecord& result, Proof& proof)
{
    const std::optional<double> height = HeightOn(first, second, along);
    if (height && HasHeight(result))
    {
        const double rise = HasHeight(first) && HasHeight(second) ? std::fabs(second.height - first.height) : 0.0;
        const double gradient = rise > 0.0 ? rise / PlanDistance(first, second) : 0.0;
        proof.Require(OFF_THE_HEIGHT, result.height - *height,
                      RoundingOf(std::fabs(*height) + std::fabs(first.height) + gradient * std::fabs(along)) +
                          gradient * RoundingOf(size));
    }
}

void RequireOnCircle(const PlanCircle& circle, const PlanVector& place, Proof& proof)
{
    proof.Require(OFF_THE_CIRCLE, Length(place - circle.centre) - circle.radius,
                  RoundingOf(SizeOf({place, circle.centre}) + circle.radius));
}

} // namespace

Proof ProveInverse(const PointRecord& from, const PointRecord& to, const FoundWay& way, bool isSouth)
{
    Proof proof;
    const PlanVector start = PlanOf(from);
    const PlanVector end = PlanOf(to);
    const double allowed = RoundingOf(SizeOf({start, end}));
    const double horizontal = way.horizontalDistance;
    if (way.azimuth)
    {
        const PlanVector reached = start + horizontal * DirectionOfAzimuth(*way.azimuth, isSouth);
        proof.Require("azimuth and distance lead past the point by", Length(reached - end),
                      allowed + UnitsOver(horizontal));
    }
    proof.Require("the horizontal distance is off by", horizontal - Length(end - start), allowed);
    if (way.heightDifference && way.slopeDistance)
    {
        const double up = *way.heightDifference;
        const double inSpace = allowed + RoundingOf(std::fabs(from.height) + std::fabs(to.height));
        proof.Require("the height difference is off by", up - (to.height - from.height), inSpace);
        proof.Require("the slope distance is off by", *way.slopeDistance - std::hypot(horizontal, up), inSpace);
        if (way.zenith)
        {
            const double zenith = RadiansOf(*way.zenith);
            const double slope = *way.slopeDistance;
            proof.Require("the zenith angle leads past the point by",
                          std::hypot(slope * std::cos(zenith) - up, slope * std::sin(zenith) - horizontal),
                          inSpace + UnitsOver(slope));
        }
    }
    return proof;
}

Proof ProveForward(const PointRecord& from, const AngDistRecord& asked, const PointRecord& result, bool isSouth)
{
    Proof proof;
    const PlanVector way = PlanOf(result) - PlanOf(from);
    const PlanVector wanted = asked.horizontalDistance * DirectionOfAzimuth(asked.azimuth, isSouth);
    proof.Require("the way back misses the known point by", Length(way - wanted),
                  RoundingOf(SizeOf({PlanOf(from), PlanOf(result)})));
    if (HasHeight(result))
    {
        proof.Require("the height difference is off by", result.height - from.height - asked.heightDifference,
                      RoundingOf(std::fabs(from.height) + std::fabs(asked.heightDifference)));
    }
    return proof;
}

Proof ProveOffset(const PointRecord& start, const PointRecord& end, double chainage, double offset,
                  const PointRecord& result)
{
    Proof proof;
    const Course course = CourseThrough(PlanOf(start), PlanOf(end));
    const double size = SizeOf({course.origin, PlanOf(result)}) + std::fabs(chainage) + std::fabs(offset);
    proof.Require("the point has another chainage, by", course.Along(PlanOf(result)) - chainage, RoundingOf(size));
    proof.Require("the point has another offset, by", course.Right(PlanOf(result)) - offset, RoundingOf(size));
    RequireHeight(start, end, chainage, 0.0, result, proof);
    return proof;
}

Proof ProveGrade(double horizontal, double vertical, const SlopeResult& slope)
{
    Proof proof;
    const double allowed = RoundingOf(std::fabs(horizontal) + std::fabs(vertical));
    if (horizontal != 0.0)
    {
        proof.Require("the grade leads to another height, by", slope.grade / 100.0 * horizontal - vertical, allowed);
    }
    if (vertical != 0.0)
    {
        proof.Require("the ratio leads to another distance, by", slope.ratio * vertical - horizontal, allowed);
    }
    return proof;
}

Proof ProveCrossing(const Course& first, const Course& second, const PointRecord& result)
{
    Proof proof;
    const PlanVector place = PlanOf(result);
    for (const Course& course : {first, second})
    {
        proof.Require(OFF_THE_LINE, course.Right(place), RoundingAt(place, course));
    }
    return proof;
}

Proof ProveCrossing(const Course& line, const PlanCircle& circle, const std::vector<PointRecord>& results)
{
    Proof proof;
    const double distance = std::fabs(line.Right(circle.centre));
    if (results.empty())
    {
        const double allowed = RoundingAt(circle.centre, line) + RoundingOf(circle.radius);
        const double within = circle.radius - distance;
        proof.Require("no intersection, although the line runs inside the circle by", std::fmax(0.0, within), allowed);
    }
    for (const PointRecord& result : results)
    {
        proof.Require(OFF_THE_LINE, line.Right(PlanOf(result)), RoundingAt(PlanOf(result), line));
        RequireOnCircle(circle, PlanOf(result), proof);
    }
    if (results.size() == 2)
    {
        // The chord lies on either side of the foot of the centre.
        const PlanVector middle = 0.5 * (PlanOf(results[0]) + PlanOf(results[1]));
        proof.Require("the intersections are not those on either side, by",
                      line.Along(middle) - line.Along(circle.centre),
                      RoundingAt(middle, line) + RoundingAt(circle.centre, line));
        const double chord = PlanDistance(results[0], results[1]);
        const double squared = (circle.radius - distance) * (circle.radius + distance);
        // Near to touching, the half chord is the root of what rounding leaves.
        const double half = std::sqrt(std::fmax(0.0, squared));
        const double rounding = RoundingAt(circle.centre, line) + RoundingOf(circle.radius);
        const double slack = std::fmin(rounding * (circle.radius + distance) / std::fmax(half, FINEST),
                                       std::sqrt(rounding * (circle.radius + distance)));
        proof.Require("the intersections lie apart by another chord, by", chord - 2.0 * half, rounding + 2.0 * slack);
    }
    return proof;
}

Proof ProveCrossing(const PlanCircle& first, const PlanCircle& second, const std::vector<PointRecord>& results)
{
    Proof proof;
    const double apart = Length(second.centre - first.centre);
    if (results.empty())
    {
        const double within =
            std::fmin(first.radius + second.radius - apart, apart - std::fabs(first.radius - second.radius));
        proof.Require("no intersection, although the circles reach over each other by", std::fmax(0.0, within),
                      RoundingOf(SizeOf({first.centre, second.centre}) + first.radius + second.radius));
    }
    for (const PointRecord& result : results)
    {
        RequireOnCircle(first, PlanOf(result), proof);
        RequireOnCircle(second, PlanOf(result), proof);
    }
    if (results.size() == 2)
    {
        const Course centres = CourseThrough(first.centre, second.centre);
        const double right = centres.Right(PlanOf(results[0]));
        const double left = centres.Right(PlanOf(results[1]));
        proof.Require("the intersections are not one on either side, by", right + left,
                      2.0 * RoundingOf(SizeOf({first.centre, second.centre}) + first.radius + second.radius));
    }
    return proof;
}

Proof ProveFoot(const LineDef& line, const PointRecord& point, const PointRecord& foot, bool isSouth)
{
    Proof proof;
    const Course course = CourseOf(line, isSouth);
    const PlanVector place = PlanOf(foot);
    const double allowed = RoundingAt(place, course) + RoundingAt(PlanOf(point), course);
    proof.Require("the foot lies off the line by", course.Right(place), allowed);
    proof.Require("the foot lies before or beyond the perpendicular by",
                  course.Along(place) - course.Along(PlanOf(point)), allowed);
    // A line by azimuth is level.
    const PointRecord second = line.mode == LINE_BY_POINTS ? line.second : PointRecord{};
    RequireHeight(line.first, second, course.Along(PlanOf(point)), SizeOf({course.origin, place}), foot, proof);
    return proof;
}

void RequireWayToFoot(const PointRecord& point, const PointRecord& foot, double distance,
                      std::optional<AngleUnit> azimuth, bool isSouth, Proof& proof)
{
    const double allowed = RoundingOf(SizeOf({PlanOf(point), PlanOf(foot)}));
    proof.Require("the distance to the foot is off by", distance - PlanDistance(point, foot), allowed);
    if (azimuth)
    {
        const PlanVector reached = PlanOf(point) + distance * DirectionOfAzimuth(*azimuth, isSouth);
        proof.Require("the azimuth leads past the foot by", Length(reached - PlanOf(foot)),
                      allowed + UnitsOver(distance));
    }
}

Proof ProveTransfer(const LineDef& line, AngleUnit rotation, double offset, const LineDef& result, AngleUnit azimuth,
                    bool isSouth)
{
    Proof proof;
    const Course before = CourseOf(line, isSouth);
    const double turn = (rotation < 0 ? -1.0 : 1.0) * RadiansOf(rotation < 0 ? -rotation : rotation);
    const PlanVector direction = std::cos(turn) * before.direction + std::sin(turn) * TurnedRight(before.direction);
    const Course after = {before.origin, direction};
    const PlanVector first = PlanOf(result.first);
    const double allowed = RoundingOf(SizeOf({before.origin, first}) + std::fabs(offset));
    proof.Require("the line runs at another offset, by", after.Right(first) - offset, allowed);
    proof.Require("its first point lies before or beyond the old one by", after.Along(first), allowed);
    double length = 0.0;
    if (line.mode == LINE_BY_POINTS)
    {
        const PlanVector second = PlanOf(result.second);
        length = PlanDistance(line.first, line.second);
        const double alike = RoundingOf(SizeOf({before.origin, first, second}) + std::fabs(offset) + length);
        proof.Require("the line is not parallel to what was asked for, by", after.Right(second) - offset, alike);
        proof.Require("the line has another length, by", after.Along(second) - length, alike);
    }
    // The azimuth leads along the line, so far as it or its shift goes.
    const double reach = std::fmax(length, std::fabs(offset));
    const PlanVector told = DirectionOfAzimuth(azimuth, isSouth);
    proof.Require("its azimuth leads aside by", reach * Length(told - direction), UnitsOver(reach) + FINEST);
    return proof;
}

CountedArea AreaOf(const std::vector<PlanVector>& corners)
{
    // Counted from the first corner the products are no larger than the figure.
    CountedArea counted;
    double twice = 0.0;
    double lost = 0.0; // of the sum, by rounding
    double products = 0.0;
    double size = 0.0;
    double around = 0.0;
    PlanVector previous = corners.back() - corners.front();
    for (const PlanVector& corner : corners)
    {
        const PlanVector place = corner - corners.front();
        const double term = previous.north * place.east - place.north * previous.east;
        const double sum = twice + term;
        lost += std::fabs(twice) >= std::fabs(term) ? (twice - sum) + term : (term - sum) + twice;
        twice = sum;
        products += std::fabs(previous.north * place.east) + std::fabs(place.north * previous.east);
        size = std::fmax(size, SizeOf({corner}));
        around += Length(place - previous);
        previous = place;
    }
    constexpr double FINEST_AREA = 1e-5;
    counted.area = std::fabs(twice + lost) * 0.5;
    counted.allowed = FINEST_AREA + ROUNDINGS * EPSILON * products + EPSILON * size * around;
    return counted;
}

} // namespace qstd
