#include "station/report.h"

#include "station/status_text.h"
#include "text/text.h"

#include <fmt/format.h>

namespace qstd {

namespace {

constexpr double SECONDS_PER_RADIAN = 648000.0 / 3.14159265358979323846;

constexpr const char* TITLES =
    "station,setup,status,northing,easting,height,mark_height,orientation,northing_precision,easting_precision,"
    "height_spread,redundancy,line,target,hz,v,horizontal_distance,face,used,direction_residual_seconds,"
    "across_residual_mm,distance_residual_mm,height_residual_mm,remark\n";

/** In quotes where it holds what a reader would take for structure; leading blanks would be lost elsewhere too. */
std::string CsvText(const std::string& text)
{
    if (text.find_first_of(",;\t \"#") == std::string::npos)
    {
        return text;
    }
    std::string quoted = "\"";
    for (const char letter : text)
    {
        quoted += letter;
        if (letter == '"')
        {
            quoted += letter;
        }
    }
    return quoted + "\"";
}

std::string OptionalFixed(std::optional<double> value, double factor, int decimals)
{
    return value ? FormatFixed(*value * factor, decimals) : "";
}

std::string StationCells(const StationSolution& solution, const ReportStyle& style)
{
    const std::string name =
        fmt::format("{},{},{}", CsvText(solution.setUp->station), solution.setUp->number, OutcomeName(solution));
    if (!solution.IsSolved())
    {
        return name + ",,,,,,,,,";
    }
    const ResectStation& station = solution.station;
    const bool hasPrecision = solution.Redundancy() > 0;
    return fmt::format(
        "{},{},{},{},{},{},{},{},{},{}", name, FormatFixed(station.position.northing, style.decimals),
        FormatFixed(station.position.easting, style.decimals),
        solution.HasHeight() ? FormatFixed(station.position.height, style.decimals) : "",
        OptionalFixed(solution.markHeight, 1.0, style.decimals), FormatAngle(station.orientation, style.angles),
        hasPrecision ? FormatFixed(station.northingPrecision, style.decimals) : "",
        hasPrecision ? FormatFixed(station.eastingPrecision, style.decimals) : "",
        solution.HasHeight() ? FormatFixed(station.heightSpread, style.decimals) : "", solution.Redundancy());
}

std::string SightCells(const PreparedSight& prepared, const SightResidual& residual, const ReportStyle& style)
{
    const Sight& sight = *prepared.sight;
    return fmt::format("{},{},{},{},{},{},{},{},{},{},{},{}", sight.line, CsvText(sight.target),
                       FormatAngle(sight.circle, style.angles),
                       sight.zenith ? FormatAngle(*sight.zenith, style.angles) : "",
                       OptionalFixed(prepared.horizontalDistance, 1.0, style.decimals), prepared.isFaceTwo ? 2 : 1,
                       prepared.isUsed ? 1 : 0, OptionalFixed(residual.direction, SECONDS_PER_RADIAN, 1),
                       OptionalFixed(residual.across, 1000.0, 1), OptionalFixed(residual.distance, 1000.0, 1),
                       OptionalFixed(residual.height, 1000.0, 1), CsvText(prepared.remark));
}

} // namespace

std::string CsvReport(const std::vector<StationSolution>& solutions, const ReportStyle& style)
{
    std::string text = TITLES;
    for (const StationSolution& solution : solutions)
    {
        const std::string stationCells = StationCells(solution, style);
        for (size_t i = 0; i < solution.sights.size(); ++i)
        {
            text += stationCells + "," + SightCells(solution.sights[i], solution.residuals[i], style) + "\n";
        }
    }
    return text;
}

} // namespace qstd
