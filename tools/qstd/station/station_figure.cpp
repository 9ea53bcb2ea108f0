#include "station/station_figure.h"

#include "station/report.h"

#include <set>

namespace qstd {

namespace {

FigurePlace PlaceOf(const PointRecord& point)
{
    const bool hasHeight = (point.flags & POINT_HAS_HEIGHT) != 0;
    return {point.northing, point.easting, hasHeight ? std::optional(point.height) : std::nullopt};
}

} // namespace

void DrawStation(const StationSolution& solution, FigureWriter& figure)
{
    const std::string name = SetUpName(*solution.setUp);
    FigureView view;
    view.title = "Station " + name;
    figure.Begin(view);
    // Sights end at the targets, which may be on the ground below the reflectors: they are lines of the plan.
    const PointRecord& position = solution.station.position;
    const FigurePlace station = {position.northing, position.easting, solution.markHeight};
    std::set<const KnownPoint*> drawn;
    for (const PreparedSight& sight : solution.sights)
    {
        if (sight.target == nullptr)
        {
            continue;
        }
        const FigurePlace target = {sight.target->point.northing, sight.target->point.easting, std::nullopt};
        figure.Add(FigureLine{{position.northing, position.easting, std::nullopt},
                              target,
                              sight.isUsed ? LineRole::SIGHT : LineRole::CONSTRUCTION,
                              ""});
        if (drawn.insert(sight.target).second)
        {
            const bool isPlaced = sight.target == solution.linePoint.get();
            figure.Add(FigurePoint{sight.target->id, PlaceOf(sight.target->point),
                                   isPlaced ? PointRole::SIGHTED : PointRole::GIVEN});
        }
    }
    figure.Add(FigurePoint{name, station, PointRole::STATION});
}

} // namespace qstd
