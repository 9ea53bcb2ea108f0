#include "station/report.h"

#include "station/leave_one_out.h"
#include "station/misfit_text.h"
#include "station/small_length.h"
#include "station/station_doubts.h"
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
    const std::string line = fmt::format("  {:<13} {:>13}  {}", name, figure, remark);
    return line.substr(0, line.find_last_not_of(' ') + 1) + "\n";
}

std::string SignedLength(std::optional<double> length, LinearUnit unit)
{
    return length ? SignedSmallLength(*length, unit) : "";
}

std::string SignedSeconds(std::optional<double> radians)
{
    return radians ? FormatSigned(*radians * SECONDS_PER_RADIAN, 1) : "";
}

/** The names of targets, the first ones where there are many. */
std::string TargetList(const std::vector<std::string>& names)
{
    constexpr size_t MOST_NAMED = 8;
    std::string list;
    for (size_t i = 0; i < names.size() && i < MOST_NAMED; ++i)
    {
        list += (i == 0 ? "" : ", ") + names[i];
    }
    return names.size() > MOST_NAMED ? fmt::format("{} and {} more", list, names.size() - MOST_NAMED) : list;
}

/** The method, the targets that the station rests on, and who has adjusted. */
std::string MethodLines(const StationSolution& solution)
{
    const std::vector<std::string> names = TargetNames(solution);
    std::string text = fmt::format("  {}", MethodTitle(solution.method));
    text += names.empty() ? "" : (solution.IsSolved() ? " from " : " of sights to ") + TargetList(names);
    text += solution.choice.empty() ? "\n" : fmt::format("; chosen for {}\n", solution.choice);
    if (solution.isByTool)
    {
        text +=
            "  adjusted by qstd itself, with the same weights: the library found no station that stands the proof\n";
    }
    return text;
}

std::string Heading(const StationSolution& solution, const ReportStyle& style)
{
    const SetUp& setUp = *solution.setUp;
    std::string line = fmt::format("Station {}  {}:{}", SetUpName(setUp), style.sightsFile, setUp.sights.front().line);
    line += setUp.sights.size() > 1 ? fmt::format("-{}\n", setUp.sights.back().line) : "\n";
    std::string text =
        fmt::format("  {}, {} {}: {}, {}", Counted(setUp.sights.size(), "sight", "sights"), solution.used,
                    solution.IsSolved() ? "used" : "usable", Counted(solution.directions, "direction", "directions"),
                    Counted(solution.distances, "distance", "distances"));
    if (solution.IsSolved())
    {
        text += fmt::format("; redundancy {}", solution.Redundancy());
    }
    if (solution.faceTwo > 0)
    {
        text += fmt::format("; {} reduced from face two", solution.faceTwo);
    }
    text += "\n";
    return line + text + MethodLines(solution);
}

std::string PrecisionText(const StationSolution& solution, double precision)
{
    std::string text(UnitSymbol(solution.unit));
    if (solution.HasPrecision())
    {
        text += "  ± " + SmallLengthText(precision, solution.unit);
    }
    return text;
}

std::string HeightLines(const StationSolution& solution, const ReportStyle& style)
{
    if (!solution.HasHeight())
    {
        return FigureLine("height", "none", "no target of known height with a zenith reading");
    }
    const std::string_view unit = UnitSymbol(solution.unit);
    const std::string origin = fmt::format(
        "{}  instrument axis, from {} by {}{}{}", unit, Counted(solution.heightTargets, "target", "targets"),
        solution.isHeightByDistance ? "distance" : "zenith angle",
        solution.heightTargets > 1 ? ", spread " + SmallLengthText(solution.station.heightSpread, solution.unit) : "",
        solution.heightPoints.size() == 1 ? ", unchecked" : "");
    std::string lines = FigureLine("height", FormatFixed(solution.station.position.height, style.decimals), origin);
    constexpr double NEGLIGIBLE = 0.01;
    if (ToMetres(solution.uncorrectedCurvature, solution.unit) >= NEGLIGIBLE)
    {
        lines += FigureLine("", "",
                            fmt::format("   up to {} too high unless the instrument corrects curvature and refraction",
                                        SmallLengthText(solution.uncorrectedCurvature, solution.unit)));
    }
    if (solution.markHeight)
    {
        lines +=
            FigureLine("", FormatFixed(*solution.markHeight, style.decimals),
                       fmt::format("{}  ground mark, ih {}", unit, FormatFixed(*solution.setUp->instrumentHeight, 3)));
    }
    return lines;
}

std::string EllipseLines(const StationSolution& solution, const ReportStyle& style)
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
    return FigureLine("error ellipse",
                      fmt::format("{} x {}", SmallLengthFigure(ellipse.major, solution.unit),
                                  SmallLengthFigure(ellipse.minor, solution.unit)),
                      fmt::format("{}  semi-axes, the longer at {} degrees; one direction ± {}",
                                  SmallLengthSymbol(solution.unit),
                                  FormatFixed(ellipse.azimuth * DEGREES_PER_RADIAN, 0),
                                  AngleSizeText(ellipse.unitDirectionSigma, style.angles)));
}

std::string KnownLine(const StationSolution& solution)
{
    const KnownDifference difference = DifferenceToKnown(solution);
    const std::string_view symbol = SmallLengthSymbol(solution.unit);
    std::string text;
    if (difference.northing)
    {
        text = fmt::format("n {} {}, e {} {}", SignedLength(difference.northing, solution.unit), symbol,
                           SignedLength(difference.easting, solution.unit), symbol);
    }
    if (difference.height)
    {
        text +=
            fmt::format("{}h {} {}", text.empty() ? "" : ", ", SignedLength(difference.height, solution.unit), symbol);
    }
    return text.empty() ? "" : fmt::format("  computed less known point: {}\n", text);
}

/** What a closed solution has to compare; an adjustment compares by its residuals. */
std::string CheckLines(const StationSolution& solution)
{
    const auto line = [&solution](std::string_view name, std::optional<double> value, std::string_view remark) {
        return value ? FigureLine(name, SignedLength(value, solution.unit),
                                  fmt::format("{}  {}", SmallLengthSymbol(solution.unit), remark))
                     : std::string();
    };
    std::string lines = line("baseline", solution.checks.baseline, "known less measured");
    lines += line("line, length", solution.checks.lineLength, "measured less known");
    lines += line("line, rise", solution.checks.lineRise, "measured less known");
    const StationDoubts& doubts = solution.doubts;
    if (solution.method == StationMethod::THREE_POINT && doubts.circleDistance && doubts.sensitivity &&
        doubts.sensitivity->perSecond)
    {
        lines += FigureLine("danger circle", FormatFixed(*doubts.circleDistance, 3),
                            fmt::format("{}  away; 1\" in a direction moves the station by up to {}",
                                        UnitSymbol(solution.unit),
                                        SmallLengthText(*doubts.sensitivity->perSecond, solution.unit)));
    }
    return lines;
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

std::string OrientationLine(const StationSolution& solution, const ReportStyle& style)
{
    std::string behind;
    if (solution.ellipse)
    {
        behind += fmt::format("   ± {}", AngleSizeText(solution.ellipse->orientationSigma, style.angles));
    }
    const std::string reference = OrientationReference(solution);
    behind += reference.empty() ? "" : (behind.empty() ? "   " : "  ") + reference;
    return FigureLine("orientation", FormatAngle(solution.station.orientation, style.angles), behind);
}

std::string StationBlock(const StationSolution& solution, const ReportStyle& style)
{
    const ResectStation& station = solution.station;
    std::string text = FigureLine("northing", FormatFixed(station.position.northing, style.decimals),
                                  PrecisionText(solution, station.northingPrecision));
    text += FigureLine("easting", FormatFixed(station.position.easting, style.decimals),
                       PrecisionText(solution, station.eastingPrecision));
    text += HeightLines(solution, style);
    text += OrientationLine(solution, style);
    text += CheckLines(solution) + EllipseLines(solution, style) + KnownLine(solution);
    for (const std::string& warning : DoubtTexts(solution, style.angles, false))
    {
        text += WrappedLine("Warning:", warning);
    }
    return text;
}

std::string FailureBlock(const StationSolution& solution, const ReportStyle& style)
{
    const StatusText words = DescribeFailure(solution);
    std::string text = WrappedLine("NOT SOLVED:", fmt::format("{} ({})", words.reason, OutcomeName(solution)));
    for (const PointRecord& candidate : solution.candidates)
    {
        text += WrappedLine("possible:",
                            fmt::format("northing {}  easting {}", FormatFixed(candidate.northing, style.decimals),
                                        FormatFixed(candidate.easting, style.decimals)));
    }
    for (const Suspect& suspect : solution.suspects)
    {
        text += WrappedLine("suspect:", SuspectText(suspect, solution, style.angles));
    }
    for (const std::string& cause : solution.causes)
    {
        text += WrappedLine("cause:", cause);
    }
    return text + WrappedLine("usual cause:", words.usualCause) + WrappedLine("what to do:", words.remedy);
}

std::vector<std::string> SightRow(const PreparedSight& prepared, const SightResidual& residual,
                                  const StationSolution& solution, const ReportStyle& style)
{
    const Sight& sight = *prepared.sight;
    return {sight.target,
            FormatAngle(sight.circle, style.angles),
            sight.zenith ? FormatAngle(*sight.zenith, style.angles) : "",
            prepared.horizontalDistance ? FormatFixed(*prepared.horizontalDistance, 3) : "",
            prepared.isUsed ? "yes" : "no",
            SignedSeconds(residual.direction),
            SignedLength(residual.across, solution.unit),
            SignedLength(residual.distance, solution.unit),
            SignedLength(residual.height, solution.unit),
            prepared.remark};
}

std::string SightTable(const StationSolution& solution, const ReportStyle& style)
{
    const std::string symbol(SmallLengthSymbol(solution.unit));
    const std::vector<TextColumn> columns = {{"target", Alignment::LEFT},
                                             {"hz", Alignment::RIGHT},
                                             {"v", Alignment::RIGHT},
                                             {"hor. dist.", Alignment::RIGHT},
                                             {solution.IsSolved() ? "used" : "usable", Alignment::LEFT},
                                             {"res \"", Alignment::RIGHT},
                                             {"across " + symbol, Alignment::RIGHT},
                                             {"dist " + symbol, Alignment::RIGHT},
                                             {"height " + symbol, Alignment::RIGHT},
                                             {"remark", Alignment::LEFT}};
    std::vector<std::vector<std::string>> rows;
    for (size_t i = 0; i < solution.sights.size(); ++i)
    {
        rows.push_back(SightRow(solution.sights[i], solution.residuals[i], solution, style));
    }
    return FormatTable(columns, rows, "  ");
}

const char* KindName(ObservationKind kind)
{
    return kind == ObservationKind::DIRECTION ? "direction" : "distance";
}

/** One observation and what the others say of it. */
std::vector<std::string> CheckRow(const std::string& target, const char* kind, const ObservationCheck& check,
                                  const std::string& error)
{
    const double share = 100.0 * (1.0 - std::sqrt(1.0 - check.redundancy));
    const bool isChecked = !check.isUnchecked;
    return {target,
            kind,
            FormatFixed(share, 1),
            isChecked ? FormatFixed(std::fabs(check.studentised), 1) : "",
            isChecked ? FormatFixed(std::fabs(check.standardised), 1) : "",
            isChecked ? error : "",
            check.isMarked      ? "*"
            : check.isUnchecked ? "unchecked"
                                : ""};
}

/** How the observations check each other. */
std::string CheckTable(const StationSolution& solution)
{
    if (!solution.IsChecked())
    {
        return "";
    }
    const std::vector<TextColumn> columns = {{"check", Alignment::LEFT}, {"", Alignment::LEFT},
                                             {"f %", Alignment::RIGHT},  {"|v'|", Alignment::RIGHT},
                                             {"|w|", Alignment::RIGHT},  {"est. error", Alignment::RIGHT},
                                             {"remark", Alignment::LEFT}};
    const auto length = [&solution](double metres) {
        return fmt::format("{} {}", SignedSmallLength(FromMetres(metres, solution.unit), solution.unit),
                           SmallLengthSymbol(solution.unit));
    };
    std::vector<std::vector<std::string>> rows;
    for (size_t i = 0; i < solution.fit.checks.size() && solution.fit.redundancy > 0; ++i)
    {
        const PlanObservation& observation = solution.observations[i];
        const ObservationCheck& check = solution.fit.checks[i];
        const bool isDirection = observation.kind == ObservationKind::DIRECTION;
        rows.push_back(
            CheckRow(solution.sights[observation.sight].sight->target, KindName(observation.kind), check,
                     isDirection ? SignedSeconds(check.estimatedError) + " \" " : length(check.estimatedError)));
    }
    for (size_t i = 0; i < solution.heightPoints.size() && solution.targetHeightFit.redundancy > 0; ++i)
    {
        const ObservationCheck& check = solution.targetHeightFit.checks[i];
        rows.push_back(CheckRow(solution.heightPoints[i]->id, "height", check, length(check.estimatedError)));
    }
    return "\n" + FormatTable(columns, rows, "  ");
}

std::vector<std::string> LeftOutRow(const LeftOut& without, const StationSolution& solution, bool isBest)
{
    const LinearUnit unit = solution.unit;
    const std::string& target = solution.sights[without.sight].sight->target;
    const auto figure = [unit](std::optional<double> value) { return value ? SmallLengthFigure(*value, unit) : ""; };
    if (!without.isSolved)
    {
        return {target, KindName(without.kind), "", "", "", "", "", "not solved"};
    }
    return {target,
            KindName(without.kind),
            SignedSmallLength(without.northingShift, unit),
            SignedSmallLength(without.eastingShift, unit),
            figure(without.northingPrecision),
            figure(without.eastingPrecision),
            without.directionSigma ? FormatFixed(*without.directionSigma * SECONDS_PER_RADIAN, 1) : "",
            isBest ? "helps most" : ""};
}

/** How the station changes without each observation. */
std::string LeftOutTable(const StationSolution& solution)
{
    const std::string symbol(SmallLengthSymbol(solution.unit));
    const std::vector<TextColumn> columns = {{"without", Alignment::LEFT},         {"", Alignment::LEFT},
                                             {"n " + symbol, Alignment::RIGHT},    {"e " + symbol, Alignment::RIGHT},
                                             {"± n " + symbol, Alignment::RIGHT},  {"± e " + symbol, Alignment::RIGHT},
                                             {"direction ± \"", Alignment::RIGHT}, {"remark", Alignment::LEFT}};
    std::vector<std::vector<std::string>> rows;
    for (size_t i = 0; i < solution.leftOut.size(); ++i)
    {
        rows.push_back(LeftOutRow(solution.leftOut[i], solution, i == solution.bestLeftOut));
    }
    const std::string verdict =
        solution.bestLeftOut ? ""
        : solution.Redundancy() <= 1
            ? "  Nothing would check the others: no redundancy is left without an observation.\n"
            : "  Nothing is wrong: no observation stands out.\n";
    return FormatTable(columns, rows, "  ") + verdict;
}

/** Without each observation in turn, or why not. */
std::string LeftOutBlock(const StationSolution& solution)
{
    if (!solution.leftOut.empty())
    {
        return "\n" + LeftOutTable(solution);
    }
    if (solution.Redundancy() == 0)
    {
        return "\n  Not repeated without each observation: the set-up has no more than it needs.\n";
    }
    return fmt::format("\n  Not repeated without each observation: there are more than {}.\n", MOST_LEFT_OUT);
}

} // namespace

std::string SetUpName(const SetUp& setUp)
{
    return setUp.siblings > 1 ? fmt::format("{} ({} of {})", setUp.station, setUp.number, setUp.siblings)
                              : setUp.station;
}

std::string TextReport(const StationSolution& solution, const ReportStyle& style)
{
    const std::string result = solution.IsSolved() ? StationBlock(solution, style) : FailureBlock(solution, style);
    std::string text = Heading(solution, style) + "\n" + result + "\n" + SightTable(solution, style);
    text += solution.IsSolved() ? CheckTable(solution) : "";
    if (style.isLeaveOneOut && solution.IsSolved())
    {
        text += LeftOutBlock(solution);
    }
    return text;
}

} // namespace qstd
