/**
 * @file own_axes.h
 * Axes in which a computation is sound: near what is computed, and turned so that no line runs along constant northing.
 *
 * The library keeps a line as slope and intercept over the northing. Where it runs nearly along constant northing, or
 * coordinates are large beside it, rounding carries the results off; in axes along the line it does not.
 */
#ifndef QSTD_OWN_AXES_H
#define QSTD_OWN_AXES_H

#include "proof/plan_geometry.h"

#include <qstdlib.h>

namespace qstd {

class OwnAxes
{
public:
    /** @param axisNorth  of length 1; the site's own north where only the origin moves */
    explicit OwnAxes(const PlanVector& axisOrigin, const PlanVector& axisNorth = {1.0, 0.0})
        : origin(axisOrigin), north(axisNorth)
    {
    }

    [[nodiscard]] PlanVector In(const PlanVector& place) const
    {
        return {Along(north, place - origin), Right(north, place - origin)};
    }

    [[nodiscard]] PlanVector Out(const PlanVector& place) const
    {
        return origin + place.north * north + place.east * TurnedRight(north);
    }

    /** Height and flags stay. */
    [[nodiscard]] PointRecord In(const PointRecord& point) const
    {
        const PlanVector place = In(PlanOf(point));
        return {place.north, place.east, point.height, point.flags};
    }

    [[nodiscard]] PointRecord Out(const PointRecord& point) const
    {
        const PlanVector place = Out(PlanOf(point));
        return {place.north, place.east, point.height, point.flags};
    }

private:
    PlanVector origin;
    PlanVector north;
};

} // namespace qstd

#endif
