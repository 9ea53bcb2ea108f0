#include "proof/stake_proof.h"

#include "text/angle_text.h"

#include <algorithm>

namespace qstd {

namespace {

bool HasHeight(const PointRecord& point)
{
    return (point.flags & POINT_HAS_HEIGHT) != 0;
}

} // namespace

StakeLine::StakeLine(const PointRecord& first, const PointRecord& second)
    : course(CourseThrough(PlanOf(first), PlanOf(second))), length(PlanDistance(first, second)),
      hasGrade(HasHeight(first) || HasHeight(second)), firstHeight(HasHeight(first) ? first.height : second.height),
      rise(HasHeight(first) && HasHeight(second) ? second.height - first.height : 0.0)
{
}

Proof StakeLine::Prove(const PointRecord& point, const ReferenceLineResult& result) const
{
    Proof proof;
    const PlanVector place = PlanOf(point);
    const double far = std::fabs(result.station) + std::fabs(result.offset);
    const double allowed = RoundingOf(SizeOf({place, course.origin}) + far);
    const PlanVector back = course.origin + result.station * course.direction;
    const PlanVector reached = back + result.offset * TurnedRight(course.direction);
    proof.Require("station and offset lead past the point by", qstd::Length(reached - place), allowed);
    proof.Require("the foot lies elsewhere on the line, by", qstd::Length(back - PlanOf(result.foot)), allowed);
    if (hasGrade && HasHeight(result.foot) && HasHeight(point))
    {
        const double grade = firstHeight + rise * (result.station / length);
        const double inHeight = RoundingOf(std::fabs(firstHeight) + std::fabs(grade) + std::fabs(point.height));
        proof.Require("the grade height is off by", result.foot.height - grade, inHeight);
        proof.Require("the height above the grade is off by", result.heightDifference - (point.height - grade),
                      inHeight);
    }
    return proof;
}

StakeArc::StakeArc(const PlanVector& startOfArc, double azimuthOfStart, double radiusOfArc, double lengthOfArc)
    : start(startOfArc), startAzimuth(azimuthOfStart), radius(radiusOfArc), length(lengthOfArc),
      centre(startOfArc + radiusOfArc * PlanVector{-std::sin(azimuthOfStart), std::cos(azimuthOfStart)})
{
}

PlanVector StakeArc::At(double along, double offset) const
{
    const double within = std::clamp(along, 0.0, length);
    const double azimuth = startAzimuth + within / radius;
    const PlanVector here = {std::cos(azimuth), std::sin(azimuth)};
    return centre + (offset - radius) * TurnedRight(here) + (along - within) * here;
}

Proof ProveOnArc(const StakeArc& arc, const PointRecord& point, double along, double offset)
{
    Proof proof;
    const PlanVector place = PlanOf(point);
    // Cut or rounded to a unit: the direction from the centre, the central angle that the end tangent starts from and,
    // where the arc is taken from its end, the end azimuth; another one stands for the tangent point itself. A point
    // off the arc turns about the centre at its own distance.
    const double reach = std::fabs(arc.Radius() - offset) + std::fabs(std::fmin(along, 0.0)) +
                         std::fmax(along - arc.Length(), 0.0) + std::fabs(arc.Radius()) * EPSILON;
    proof.Require("distance along and offset lead past the point by", Length(arc.At(along, offset) - place),
                  RoundingOf(SizeOf({place, arc.Start()}) + std::fabs(arc.Radius()) + std::fabs(offset)) +
                      UnitsOver(reach, 4.0));
    return proof;
}

Proof ProveArc(const StakeArc& arc, const ArcParams& params, const ArcWish& wish)
{
    Proof proof;
    const double size = SizeOf({arc.Start()}) + std::fabs(arc.Radius()) + arc.Length();
    const PlanVector start = DirectionOfAzimuth(params.startAzimuth, wish.isSouth);
    const PlanVector startWanted = DirectionOfAzimuth(wish.startAzimuth, wish.isSouth);
    proof.Require("the start tangent leads aside by", arc.Length() * Length(start - startWanted), RoundingOf(size));
    // The central angle is cut to a unit.
    const double sweep = arc.Length() / arc.Radius();
    const double reach = std::fabs(arc.Radius()) + arc.Length();
    proof.Require("length and central angle differ by", arc.Radius() * (sweep - params.centralAngle * ANGLE_UNIT),
                  RoundingOf(size) + UnitsOver(reach));
    if (wish.radius)
    {
        proof.Require("the radius is off by", arc.Radius() - *wish.radius, RoundingOf(arc.Radius()));
    }
    if (wish.length)
    {
        // A little more than the full circle, as it is typed, is the full circle.
        constexpr double TYPED = 1e-3;
        const double circle = 2.0 * ANGLE_UNIT * ANGLE_HALF_CIRCLE * std::fabs(arc.Radius());
        proof.Require("the length is off by", arc.Length() - std::fmin(*wish.length, circle),
                      RoundingOf(size) + (*wish.length > circle ? TYPED : 0.0));
    }
    if (wish.endAzimuth)
    {
        const double azimuth = arc.StartAzimuth() + sweep;
        const PlanVector end = {std::cos(azimuth), std::sin(azimuth)};
        const PlanVector endWanted = DirectionOfAzimuth(*wish.endAzimuth, wish.isSouth);
        const PlanVector told = DirectionOfAzimuth(params.endAzimuth, wish.isSouth);
        proof.Require("the end tangent leads aside by", arc.Length() * Length(end - endWanted),
                      RoundingOf(size) + UnitsOver(reach));
        proof.Require("the end tangent is told wrong, by", arc.Length() * Length(told - endWanted),
                      RoundingOf(size) + UnitsOver(reach));
        if (wish.end)
        {
            // The library halves the angle between the tangents in whole units, which moves the end of a tangent as
            // long as this by so much; of opposite tangents it halves nothing.
            const bool isHalfCircle = std::fabs(std::cos(sweep / 2.0)) < 2.0 * ANGLE_UNIT;
            const double tangentLength = isHalfCircle ? 0.0 : std::fabs(arc.Radius() * std::tan(sweep / 2.0));
            const Course tangent = {*wish.end, endWanted};
            const PlanVector arcEnd = arc.At(arc.Length(), 0.0);
            proof.Require("the arc ends beside its end tangent by", tangent.Right(arcEnd),
                          RoundingOf(size + SizeOf({*wish.end, arcEnd})) +
                              UnitsOver(arc.Length() + tangentLength + Length(arcEnd - *wish.end), 3.0));
        }
    }
    return proof;
}

} // namespace qstd
