#include "verbs/alignment.h"

#include <algorithm>
#include <cmath>

namespace qstd {

namespace {

constexpr double QUARTER_TURN = 3.14159265358979323846 / 2.0;

FigurePlace Moved(const FigurePlace& place, double azimuth, double distance)
{
    return {place.northing + distance * std::cos(azimuth), place.easting + distance * std::sin(azimuth), std::nullopt};
}

} // namespace

Alignment::Alignment(const PointRecord& start, double azimuth, double lengthOfWay)
    : origin{start.northing, start.easting, std::nullopt}, startAzimuth(azimuth), length(lengthOfWay)
{
}

Alignment::Alignment(const PointRecord& start, double azimuth, double lengthOfWay, double radiusOfArc)
    : Alignment(start, azimuth, lengthOfWay)
{
    radius = radiusOfArc;
}

FigurePlace Alignment::At(double along, double offset) const
{
    const double azimuth = AzimuthAt(along);
    if (radius == 0.0)
    {
        return Moved(Moved(origin, startAzimuth, along), azimuth + QUARTER_TURN, offset);
    }
    const double within = std::clamp(along, 0.0, length);
    const FigurePlace onArc = Moved(Centre(), azimuth - QUARTER_TURN, radius);
    return Moved(Moved(onArc, azimuth, along - within), azimuth + QUARTER_TURN, offset);
}

double Alignment::AzimuthAt(double along) const
{
    return radius == 0.0 ? startAzimuth : startAzimuth + std::clamp(along, 0.0, length) / radius;
}

double Alignment::Length() const
{
    return length;
}

double Alignment::Sweep() const
{
    return radius == 0.0 ? 0.0 : length / radius;
}

FigurePlace Alignment::Centre() const
{
    return Moved(origin, startAzimuth + QUARTER_TURN, radius);
}

} // namespace qstd
