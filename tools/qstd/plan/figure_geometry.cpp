#include "plan/figure_geometry.h"

#include <algorithm>
#include <cmath>

namespace qstd {

namespace {

constexpr double FULL_TURN = 6.283185307179586476925;
constexpr double TURN_TOLERANCE = 1e-9; // a sweep that lacks less of a full turn comes from rounding

} // namespace

bool IsDrawable(const FigurePlace& place)
{
    return std::isfinite(place.northing) && std::isfinite(place.easting) && std::isfinite(place.height.value_or(0.0));
}

bool IsDrawable(const FigurePoint& point)
{
    return IsDrawable(point.place);
}

bool IsDrawable(const FigureLine& line)
{
    return IsDrawable(line.from) && IsDrawable(line.to);
}

bool IsDrawable(const FigureArc& arc)
{
    const double farthest = std::max(std::fabs(arc.centre.northing), std::fabs(arc.centre.easting)) + arc.radius;
    return IsDrawable(arc.centre) && std::isfinite(farthest) && arc.radius > 0.0 && std::isfinite(arc.start) &&
           std::isfinite(arc.sweep) && arc.sweep != 0.0;
}

bool IsDrawable(const FigureTick& tick)
{
    return IsDrawable(tick.place) && std::isfinite(tick.azimuth);
}

bool IsFullTurn(double sweep)
{
    return std::fabs(sweep) >= FULL_TURN - TURN_TOLERANCE;
}

double SweepOf(const FigureArc& arc)
{
    return IsFullTurn(arc.sweep) ? std::copysign(FULL_TURN, arc.sweep) : arc.sweep;
}

double AzimuthAt(const FigureArc& arc, double fraction)
{
    return std::fmod(arc.start, FULL_TURN) + SweepOf(arc) * fraction;
}

FigurePlace PlaceOnCircle(const FigureArc& arc, double azimuth)
{
    return {arc.centre.northing + arc.radius * std::cos(azimuth), arc.centre.easting + arc.radius * std::sin(azimuth),
            arc.centre.height};
}

double PlainZero(double value)
{
    return value == 0.0 ? 0.0 : value;
}

std::string_view RoleWord(PointRole role)
{
    switch (role)
    {
    case PointRole::GIVEN:
        return "given";
    case PointRole::COMPUTED:
        return "computed";
    case PointRole::OTHER:
        return "other";
    case PointRole::STATION:
        return "station";
    case PointRole::SIGHTED:
        return "sighted";
    case PointRole::FOOT:
        break;
    }
    return "foot";
}

std::string_view RoleWord(LineRole role)
{
    switch (role)
    {
    case LineRole::REFERENCE:
        return "reference";
    case LineRole::RESULT:
        return "result";
    case LineRole::SIGHT:
        return "sight";
    case LineRole::OFFSET:
        return "offset";
    case LineRole::CONSTRUCTION:
        break;
    }
    return "construction";
}

} // namespace qstd
