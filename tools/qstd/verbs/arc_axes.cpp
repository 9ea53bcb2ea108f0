#include "verbs/arc_axes.h"

#include "text/angle_text.h"
#include "verbs/own_axes.h"

#include <algorithm>
#include <cmath>

namespace qstd {

PointRecord ArcAxes::In(const PointRecord& point) const
{
    PointRecord own = OwnAxes(origin, north).In(point);
    own.easting = isMirrored ? -own.easting : own.easting;
    return own;
}

AngleUnit ArcAxes::In(AngleUnit azimuth) const
{
    const AngleUnit turned = WithinCircle(azimuth) - turn;
    return WithinCircle(isMirrored ? -turned : turned);
}

AngleUnit ArcAxes::Out(AngleUnit azimuth) const
{
    const AngleUnit turned = WithinCircle(azimuth);
    return WithinCircle((isMirrored ? -turned : turned) + turn);
}

ArcDefinition ArcAxes::In(const ArcDefinition& arc) const
{
    ArcDefinition own = arc;
    own.from.point = In(arc.from.point);
    own.to.point = In(arc.to.point);
    if (own.via)
    {
        own.via->point = In(arc.via->point);
    }
    own.startAzimuth = In(arc.startAzimuth);
    own.endAzimuth = In(arc.endAzimuth);
    own.radius = isMirrored ? -arc.radius : arc.radius;
    return own;
}

ArcAxes AxesFor(const ArcDefinition& arc)
{
    // Of the turns by half a right angle, the one in which the tangents stay farthest from east and west.
    constexpr AngleUnit STEP = ANGLE_QUARTER_CIRCLE / 2;
    ArcAxes best;
    double steepest = -1.0;
    for (AngleUnit turn = 0; turn < ANGLE_HALF_CIRCLE; turn += STEP)
    {
        ArcAxes axes;
        axes.origin = PlanOf(arc.from.point);
        axes.north = DirectionOfAzimuth(turn, false);
        axes.turn = turn;
        const double steep = std::min(std::fabs(std::cos(RadiansOf(axes.In(arc.startAzimuth)))),
                                      std::fabs(std::cos(RadiansOf(axes.In(arc.endAzimuth)))));
        if (steep > steepest)
        {
            steepest = steep;
            best = axes;
        }
    }
    return best;
}

} // namespace qstd
