#include <cmath>

#include "core/angle.h"
#include "core/point.h"
#include "qstdlib/reference.h"
#include "reference/arc_state.h"

namespace qstdlib {

namespace {

struct AlongOffset
{
    double along;
    double offset;
};

// Azimuth from the arc's centre to the point, exact on the axes.
AngleUnit CentralAzimuth(const PointRecord& centre, const PointRecord& point)
{
    if (point.northing == centre.northing)
    {
        return point.easting >= centre.easting ? ANGLE_QUARTER_CIRCLE : ANGLE_HALF_CIRCLE + ANGLE_QUARTER_CIRCLE;
    }
    if (point.easting == centre.easting)
    {
        return point.northing >= centre.northing ? 0 : ANGLE_HALF_CIRCLE;
    }
    const double azimuth = std::atan2(point.easting - centre.easting, point.northing - centre.northing);
    return CircleRemainder(WrapSubtract(ANGLE_FULL_CIRCLE, TruncateToInt32(azimuth * ANGLE_HALF_CIRCLE * -INVERSE_PI)));
}

// From the start radial to the point, above -half circle up to +half circle.
AngleUnit TurnFromStart(AngleUnit azimuth, AngleUnit startRadial)
{
    const AngleUnit x = WrapSubtract(azimuth, startRadial);
    if (x <= -ANGLE_HALF_CIRCLE)
    {
        return x + ANGLE_FULL_CIRCLE;
    }
    return x > ANGLE_HALF_CIRCLE ? x - ANGLE_FULL_CIRCLE : x;
}

AngleUnit Magnitude(AngleUnit angle)
{
    return angle < 0 ? WrapSubtract(0, angle) : angle;
}

double AlongArc(AngleUnit turn, double radius)
{
    return turn * INVERSE_FULL_CIRCLE * std::fabs(radius) * TWO_PI;
}

// Right-turning arc; x is the turn from the start radial, d the distance from the centre.
AlongOffset ReferToRightArc(const ArcState& arc, AngleUnit x, double d)
{
    if (x > -ANGLE_QUARTER_CIRCLE && x < 0)
    {
        const double along = d * std::sin(UnreducedRadians(x));
        return {along, arc.radius - along / std::tan(UnreducedRadians(x))};
    }
    const AngleUnit pastEnd = WrapSubtract(x, arc.centralAngle);
    if (x > arc.centralAngle || x < -ANGLE_QUARTER_CIRCLE)
    {
        const bool beyond = x > arc.centralAngle;
        const double a = UnreducedRadians(Magnitude(beyond ? pastEnd : WrapAdd(pastEnd, ANGLE_FULL_CIRCLE)));
        return {d * std::sin(a) + arc.length, arc.radius - d * std::cos(a)};
    }
    return {AlongArc(x, arc.radius), arc.radius - d};
}

// Left-turning arc. The angle past the end is not the mirror image of the right-turning case where the point lies more
// than a quarter circle on: kept, stored stake-outs depend on it.
AlongOffset ReferToLeftArc(const ArcState& arc, AngleUnit x, double d)
{
    if (x > 0 && x < ANGLE_QUARTER_CIRCLE)
    {
        const double along = -(d * std::sin(UnreducedRadians(x)));
        return {along, arc.radius - along / std::tan(UnreducedRadians(x))};
    }
    if (x < arc.centralAngle || (x > ANGLE_QUARTER_CIRCLE && x < ANGLE_HALF_CIRCLE))
    {
        const AngleUnit pastEnd = x <= ANGLE_QUARTER_CIRCLE
                                      ? WrapSubtract(x, arc.centralAngle)
                                      : WrapSubtract(WrapSubtract(ANGLE_FULL_CIRCLE, arc.centralAngle), x);
        const double a = UnreducedRadians(Magnitude(pastEnd));
        return {d * std::sin(a) + arc.length, d * std::cos(a) + arc.radius};
    }
    return {AlongArc(-x, arc.radius), arc.radius + d};
}

// Measured less design height. The height flag of the measured point is not tested.
double HeightDifference(const ArcState& arc, const PointRecord& measured, double along)
{
    if (!HasHeight(arc.start))
    {
        return 0.0;
    }
    double design = arc.start.height;
    if (arc.endCheck == 1)
    {
        design = arc.start.height + (along / arc.length) * (arc.end.height - arc.start.height);
    }
    return measured.height - design;
}

} // namespace

} // namespace qstdlib

using namespace qstdlib;

int32_t QREFCalcArc(const PointRecord* measured, ArcCalcResult* result)
{
    const ArcState& arc = ReferenceArc();
    if (!HasPlan(*measured))
    {
        return QSTD_MISSING_COORDINATES;
    }
    if (CoincideInPlan(*measured, arc.centre))
    {
        return QSTD_COINCIDENT_POINTS;
    }
    result->point = PointRecord{}; // first: a measured point within the result is at the origin from here on
    const double d = PlanDistance(arc.centre, *measured);
    const AngleUnit x = TurnFromStart(CentralAzimuth(arc.centre, *measured), arc.startRadialAzimuth);
    const AlongOffset place = arc.radius < 0.0 ? ReferToLeftArc(arc, x, d) : ReferToRightArc(arc, x, d);
    result->along = place.along;
    result->offset = place.offset;
    result->heightDifference = HeightDifference(arc, *measured, place.along);
    return QSTD_OK;
}
