#include "station/station_files.h"

#include "plan/figure_dxf.h"
#include "plan/figure_geojson.h"
#include "plan/plan_names.h"
#include "station/station_figure.h"
#include "station/station_plan.h"

#include <fmt/format.h>

#include <cmath>
#include <functional>

namespace qstd {

namespace {

/** A file's content and what the notes say behind its name. */
struct Drawing
{
    std::string content;
    std::string remark;
};

/** Names are a hundredth as high as the longest sight is long. */
double TextHeight(const StationSolution& solution)
{
    constexpr double SHARE = 100.0;
    double longest = 0.0;
    for (const PreparedSight& sight : solution.sights)
    {
        if (sight.target != nullptr)
        {
            longest = std::fmax(longest, std::hypot(sight.target->point.northing - solution.station.position.northing,
                                                    sight.target->point.easting - solution.station.position.easting));
        }
    }
    return longest / SHARE;
}

Drawing DrawSvg(const StationSolution& solution, const ReportStyle& style)
{
    Plan plan = DrawPlan(solution, style);
    return {std::move(plan.svg), ", scale " + plan.scale};
}

Drawing DrawDxf(const StationSolution& solution, const ReportStyle& style)
{
    Drawing drawing;
    FigureDxf figure([&drawing](std::string_view text) { drawing.content += text; }, style.unit, TextHeight(solution));
    DrawStation(solution, figure);
    figure.Finish();
    return drawing;
}

Drawing DrawGeoJson(const StationSolution& solution, const ReportStyle& style)
{
    Drawing drawing;
    FigureGeoJson figure([&drawing](std::string_view text) { drawing.content += text; }, style.unit);
    DrawStation(solution, figure);
    figure.Finish();
    return drawing;
}

} // namespace

void DrawFiles(const std::vector<StationSolution>& solutions, const OutputOptions& options, const ReportStyle& style,
               std::vector<OutputFile>& files, std::string& notes)
{
    struct Kind
    {
        const std::string& path;
        const char* name;
        std::function<Drawing(const StationSolution&, const ReportStyle&)> draw;
    };
    std::vector<const SetUp*> setUps;
    setUps.reserve(solutions.size());
    for (const StationSolution& solution : solutions)
    {
        setUps.push_back(solution.setUp);
    }
    for (const Kind& kind : {Kind{options.svg, "Plan", DrawSvg}, Kind{options.dxf, "DXF", DrawDxf},
                             Kind{options.geoJson, "GeoJSON", DrawGeoJson}})
    {
        const std::vector<std::string> names =
            kind.path.empty() ? std::vector<std::string>() : PlanNames(kind.path, setUps);
        for (size_t i = 0; i < names.size(); ++i)
        {
            const std::string station = SetUpName(*solutions[i].setUp);
            if (!solutions[i].IsSolved())
            {
                notes += fmt::format("No {} of station {}: not solved\n", kind.path == options.svg ? "plan" : kind.name,
                                     station);
                continue;
            }
            Drawing drawing = kind.draw(solutions[i], style);
            notes += fmt::format("{} of station {}: {}{}\n", kind.name, station, names[i], drawing.remark);
            files.push_back({names[i], std::move(drawing.content)});
        }
    }
}

} // namespace qstd
