#include "station/report.h"

#include "station/status_text.h"
#include "text/text.h"
#include "text/text_table.h"

#include <fmt/format.h>

#include <cmath>

namespace qstd {

namespace {

constexpr double SECONDS_PER_RADIAN = 648000.0 / 3.14159265358979323846;
constexpr double DEGREES_PER_RADIAN = 180.0 / 3.14159265358979323846;

/** A line of the station block: a name, a figure set right, a remark. */
std::string FigureLine(std::string_view name, std::string_view figure, std::string_view remark)
{
    const std::string line = fmt::format("  {:<13}{:>14}  {}", name, figure, remark);
    return line.substr(0, line.find_last_not_of(' ') + 1) + "\n";
}

std::string Millimetres(double metres)
{
    return FormatFixed(metres * 1000.0, 1);
}

std::string SignedMillimetres(std::optional<double> metres)
{
    return metres ? FormatSigned(*metres * 1000.0, 1) : "";
}

std::string Heading(const StationSolution& solution, const ReportStyle& style)
{
    const SetUp& setUp = *solution.setUp;
    std::string line = fmt::format("Station {}  {}:{}", SetUpName(setUp), style.sightsFile, setUp.sights.front().line);
    line += setUp.sights.size() > 1 ? fmt::format("-{}\n", setUp.sights.back().line) : "\n";
    std::string text = fmt::format("  {}, {} used: {}, {}", Counted(setUp.sights.size(), "sight", "sights"),
                                   solution.used, Counted(solution.directions, "direction", "directions"),
                                   Counted(solution.distances, "distance", "distances"));
    if (solution.IsSolved())
    {
        text += fmt::format("; redundancy {}", solution.Redundancy());
    }
    if (solution.faceTwo > 0)
    {
        text += fmt::format("; {} reduced from face two", solution.faceTwo);
    }
    return line + text + "\n";
}

std::string PrecisionText(const StationSolution& solution, double precision)
{
    return solution.Redundancy() > 0 ? fmt::format("m  ± {} mm", Millimetres(precision)) : "m";
}

std::string HeightLines(const StationSolution& solution, const ReportStyle& style)
{
    if (!solution.HasHeight())
    {
        return FigureLine("height", "none", "no target of known height with a zenith reading");
    }
    const std::string origin = fmt::format(
        "m  instrument axis, from {} by {}{}", Counted(solution.heightTargets, "target", "targets"),
        solution.isHeightByDistance ? "distance" : "zenith angle",
        solution.heightTargets > 1 ? fmt::format(", spread {} mm", Millimetres(solution.station.heightSpread)) : "");
    std::string lines = FigureLine("height", FormatFixed(solution.station.position.height, style.decimals), origin);
    if (solution.markHeight)
    {
        lines += FigureLine("", FormatFixed(*solution.markHeight, style.decimals),
                            fmt::format("m  ground mark, ih {}", FormatFixed(*solution.setUp->instrumentHeight, 3)));
    }
    return lines;
}

std::string EllipseLines(const StationSolution& solution)
{
    if (solution.Redundancy() == 0)
    {
        return "  No redundancy: the sights fit exactly, and the precision is unknown.\n";
    }
    if (!solution.ellipse)
    {
        return "";
    }
    const ErrorEllipse& ellipse = *solution.ellipse;
    return FigureLine("error ellipse", fmt::format("{} x {}", Millimetres(ellipse.major), Millimetres(ellipse.minor)),
                      fmt::format("mm  semi-axes, the longer at {} degrees; one direction ± {}\"",
                                  FormatFixed(ellipse.azimuth * DEGREES_PER_RADIAN, 0),
                                  FormatFixed(ellipse.unitDirectionSigma * SECONDS_PER_RADIAN, 1)));
}

std::string KnownLine(const StationSolution& solution)
{
    if (solution.known == nullptr)
    {
        return "";
    }
    const PointRecord& known = solution.known->point;
    std::string text;
    if ((known.flags & POINT_HAS_PLAN) != 0)
    {
        text = fmt::format("n {} mm, e {} mm", SignedMillimetres(solution.station.position.northing - known.northing),
                           SignedMillimetres(solution.station.position.easting - known.easting));
    }
    if ((known.flags & POINT_HAS_HEIGHT) != 0 && solution.markHeight)
    {
        text +=
            fmt::format("{}h {} mm", text.empty() ? "" : ", ", SignedMillimetres(*solution.markHeight - known.height));
    }
    return text.empty() ? "" : fmt::format("  computed less known point: {}\n", text);
}

std::string StationBlock(const StationSolution& solution, const ReportStyle& style)
{
    const ResectStation& station = solution.station;
    std::string text = FigureLine("northing", FormatFixed(station.position.northing, style.decimals),
                                  PrecisionText(solution, station.northingPrecision));
    text += FigureLine("easting", FormatFixed(station.position.easting, style.decimals),
                       PrecisionText(solution, station.eastingPrecision));
    text += HeightLines(solution, style);
    text += FigureLine(
        "orientation", FormatAngle(station.orientation, style.angles),
        solution.ellipse
            ? fmt::format("   ± {}\"", FormatFixed(solution.ellipse->orientationSigma * SECONDS_PER_RADIAN, 1))
            : "");
    return text + EllipseLines(solution) + KnownLine(solution);
}

/** A line with a title, broken between words where it grows long, what follows below its text. */
std::string WrappedLine(std::string_view title, std::string_view text)
{
    constexpr size_t WIDEST = 100;
    constexpr size_t INDENT = 16;
    std::string lines = fmt::format("  {:<{}}", title, INDENT - 2);
    while (text.size() > WIDEST - INDENT)
    {
        const size_t blank = text.rfind(' ', WIDEST - INDENT);
        if (blank == std::string_view::npos)
        {
            break;
        }
        lines += fmt::format("{}\n{:{}}", text.substr(0, blank), "", INDENT);
        text.remove_prefix(blank + 1);
    }
    return lines + std::string(text) + "\n";
}

std::string FailureBlock(const StationSolution& solution)
{
    const StatusText words = DescribeFailure(solution);
    return WrappedLine("NOT SOLVED:", fmt::format("{} ({})", words.reason, OutcomeName(solution))) +
           WrappedLine("usual cause:", words.usualCause) + WrappedLine("what to do:", words.remedy);
}

std::vector<std::string> SightRow(const PreparedSight& prepared, const SightResidual& residual,
                                  const ReportStyle& style)
{
    const Sight& sight = *prepared.sight;
    return {sight.target,
            FormatAngle(sight.circle, style.angles),
            sight.zenith ? FormatAngle(*sight.zenith, style.angles) : "",
            prepared.horizontalDistance ? FormatFixed(*prepared.horizontalDistance, 3) : "",
            prepared.isUsed ? "yes" : "no",
            residual.direction ? FormatSigned(*residual.direction * SECONDS_PER_RADIAN, 1) : "",
            SignedMillimetres(residual.across),
            SignedMillimetres(residual.distance),
            SignedMillimetres(residual.height),
            prepared.remark};
}

std::string SightTable(const StationSolution& solution, const ReportStyle& style)
{
    const std::vector<TextColumn> columns = {{"target", Alignment::LEFT},
                                             {"hz", Alignment::RIGHT},
                                             {"v", Alignment::RIGHT},
                                             {"hor. dist.", Alignment::RIGHT},
                                             {solution.IsSolved() ? "used" : "usable", Alignment::LEFT},
                                             {"res \"", Alignment::RIGHT},
                                             {"across mm", Alignment::RIGHT},
                                             {"dist mm", Alignment::RIGHT},
                                             {"height mm", Alignment::RIGHT},
                                             {"remark", Alignment::LEFT}};
    std::vector<std::vector<std::string>> rows;
    for (size_t i = 0; i < solution.sights.size(); ++i)
    {
        rows.push_back(SightRow(solution.sights[i], solution.residuals[i], style));
    }
    return FormatTable(columns, rows, "  ");
}

} // namespace

std::string SetUpName(const SetUp& setUp)
{
    return setUp.siblings > 1 ? fmt::format("{} ({} of {})", setUp.station, setUp.number, setUp.siblings)
                              : setUp.station;
}

std::string TextReport(const StationSolution& solution, const ReportStyle& style)
{
    const std::string result = solution.IsSolved() ? StationBlock(solution, style) : FailureBlock(solution);
    return Heading(solution, style) + "\n" + result + "\n" + SightTable(solution, style);
}

} // namespace qstd
