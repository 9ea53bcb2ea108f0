#include "station/station_command.h"

#include "input/field_book.h"
#include "input/table.h"
#include "output/files.h"
#include "station/report.h"
#include "station/station_doubts.h"
#include "station/station_files.h"
#include "station/station_solution.h"
#include "station/status_text.h"
#include "text/message.h"
#include "text/text.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <set>

namespace qstd {

namespace {

constexpr size_t MOST_PROPOSALS = 3;

struct Survey
{
    PointList points;
    std::vector<SetUp> setUps;
};

CommandResult Refused(const std::string& text)
{
    return {EXIT_WRONG_USE, fmt::format("qstd: station: {}\n", text)};
}

std::optional<Table> ReadTable(const std::string& path, Messages& messages)
{
    const FileContent file = ReadWhole(path);
    if (!file.problem.empty())
    {
        messages.AddError(DisplayName(path), 0, file.problem);
        return std::nullopt;
    }
    return ParseTable(DisplayName(path), file.content, messages);
}

/** Reads both tables, the second one even if the first is faulty, so that one run shows all that is wrong. */
Survey ReadSurvey(const StationOptions& options, Messages& messages)
{
    Survey survey;
    const std::optional<Table> points = ReadTable(options.points, messages);
    if (points)
    {
        survey.points = ReadPoints(*points, messages);
    }
    const std::optional<Table> sights = ReadTable(options.sights, messages);
    if (sights)
    {
        survey.setUps = ReadSetUps(*sights, options.output.angle, messages);
        if (sights->rows.empty() && !messages.HasErrors())
        {
            messages.AddError(sights->file, 0, "no sights; each line below the column names is one");
        }
    }
    return survey;
}

std::string UnknownStation(const std::string& name, const Survey& survey, const std::string& file)
{
    std::vector<std::string> stations;
    for (const SetUp& setUp : survey.setUps)
    {
        if (setUp.number == 1)
        {
            stations.push_back(setUp.station);
        }
    }
    std::string proposals;
    for (const std::string& near : NearestNames(name, stations, MOST_PROPOSALS))
    {
        proposals += (proposals.empty() ? "; did you mean " : ", ") + near;
    }
    return fmt::format("{}: no set-up in {}{}", Quoted(name), file,
                       proposals.empty() ? "; name a value of its column station" : proposals + "?");
}

/** The set-ups to compute: of the named stations in the order named, else of all that are no known points. */
std::vector<const SetUp*> SelectSetUps(const StationOptions& options, const Survey& survey, std::string& problem)
{
    std::vector<const SetUp*> selected;
    for (const SetUp& setUp : survey.setUps)
    {
        if (options.names.empty() && survey.points.Find(setUp.station) == nullptr)
        {
            selected.push_back(&setUp);
        }
    }
    std::set<std::string> seen;
    for (const std::string& name : options.names)
    {
        const size_t before = selected.size();
        for (const SetUp& setUp : survey.setUps)
        {
            if (setUp.station == name)
            {
                selected.push_back(&setUp);
            }
        }
        if (selected.size() == before)
        {
            problem = UnknownStation(name, survey, DisplayName(options.sights));
            return {};
        }
        if (!seen.insert(name).second)
        {
            selected.resize(before);
        }
    }
    if (selected.empty())
    {
        problem =
            fmt::format("every station in {} is a known point; name those to compute", DisplayName(options.sights));
    }
    return selected;
}

/** A target asked for that no sight goes to, or nothing. */
std::string TargetProblem(const std::vector<std::string>& targets, const std::vector<const SetUp*>& selected,
                          const std::string& file)
{
    std::set<std::string> sighted;
    for (const SetUp* setUp : selected)
    {
        for (const Sight& sight : setUp->sights)
        {
            sighted.insert(sight.target);
        }
    }
    for (const std::string& target : targets)
    {
        if (sighted.count(target) == 0)
        {
            std::string proposals;
            for (const std::string& near : NearestNames(target, {sighted.begin(), sighted.end()}, MOST_PROPOSALS))
            {
                proposals += (proposals.empty() ? "; did you mean " : ", ") + near;
            }
            return fmt::format("--targets: no sight to {} in {}{}", Quoted(target), file,
                               proposals.empty() ? "; name a value of its column target" : proposals + "?");
        }
    }
    return "";
}

/** True for two paths to one file. */
bool IsSameFile(const std::string& one, const std::string& other)
{
    std::error_code error;
    return one == other || (std::filesystem::equivalent(one, other, error) && !error);
}

/** Columns that CSV does not have, or that only CSV has. */
std::string ColumnProblem(const std::vector<std::string>& columns, OutputFormat format, const ReportStyle& style)
{
    if (!columns.empty() && format != OutputFormat::CSV)
    {
        return "--columns picks the columns of CSV; give --csv";
    }
    const std::vector<std::string> names = CsvColumns(style);
    for (const std::string& column : columns)
    {
        if (std::find(names.begin(), names.end(), column) == names.end())
        {
            const std::vector<std::string> near = NearestNames(column, names, MOST_PROPOSALS);
            std::string proposals;
            for (const std::string& name : near.empty() ? names : near)
            {
                proposals += (proposals.empty() ? "" : ", ") + name;
            }
            return fmt::format("--columns: no column {}; {}: {}{}", Quoted(column),
                               near.empty() ? "there are" : "did you mean", proposals, near.empty() ? "" : "?");
        }
    }
    return "";
}

/** What the options say that cannot be, or nothing. */
std::string OptionProblem(const StationOptions& options)
{
    const bool takesLine = options.method == StationMethod::KNOWN_LINE || options.method == StationMethod::AUTO;
    if (options.points == "-" && options.sights == "-")
    {
        return "standard input can be read only once; give a file for --points or for --sights";
    }
    if (!options.lineAzimuth.empty() && !takesLine)
    {
        return "--line-azimuth gives the direction of a known line; give --method known-line or auto";
    }
    if (options.isLeaveOneOut && options.method != StationMethod::MULTI && options.method != StationMethod::AUTO)
    {
        return fmt::format("--leave-one-out repeats an adjustment; a {} takes no more sights than it needs",
                           MethodTitle(options.method));
    }
    return "";
}

/** Seconds, and the unit of the job. */
Expectation ExpectationFrom(const StationOptions& options)
{
    constexpr double MILLION = 1e6;
    Expectation expectation;
    expectation.direction = options.sigmaDirection ? *options.sigmaDirection * ARC_SECOND : expectation.direction;
    expectation.zenith = options.sigmaZenith ? *options.sigmaZenith * ARC_SECOND : expectation.direction;
    if (options.sigmaDistance)
    {
        expectation.distance = ToMetres(*options.sigmaDistance, options.output.unit);
    }
    expectation.distanceProportion = options.sigmaPpm ? *options.sigmaPpm / MILLION : expectation.distanceProportion;
    return expectation;
}

/** The request of the options; throws WrongUse for an azimuth that is none. */
StationRequest RequestFrom(const StationOptions& options)
{
    StationRequest request;
    request.method = options.method;
    request.targets = options.targets;
    request.unit = options.output.unit;
    request.instrument = InstrumentFrom(options.instrument, options.output.unit);
    request.isLeaveOneOut = options.isLeaveOneOut;
    request.expectation = ExpectationFrom(options);
    if (!options.lineAzimuth.empty())
    {
        const ParsedAngle azimuth = ParseAngle(options.lineAzimuth, options.output.angle);
        if (!azimuth.problem.empty())
        {
            throw WrongUse(fmt::format("--line-azimuth {}: {}", Quoted(options.lineAzimuth), azimuth.problem));
        }
        request.lineAzimuth = azimuth.units;
    }
    return request;
}

/** Files that would overwrite an input or each other, or nothing. */
std::string FileProblem(const std::vector<OutputFile>& files, const StationOptions& options)
{
    for (size_t i = 0; i < files.size(); ++i)
    {
        if (files[i].path == "-")
        {
            continue;
        }
        if (IsSameFile(files[i].path, options.points) || IsSameFile(files[i].path, options.sights))
        {
            return fmt::format("{}: is an input; give another name", files[i].path);
        }
        for (size_t j = 0; j < i; ++j)
        {
            if (IsSameFile(files[i].path, files[j].path))
            {
                return fmt::format("{}: two outputs would go there; give each a name of its own", files[i].path);
            }
        }
    }
    return "";
}

std::string Report(const std::vector<StationSolution>& solutions, OutputFormat format, const ReportStyle& style)
{
    switch (format)
    {
    case OutputFormat::CSV:
        return CsvReport(solutions, style);
    case OutputFormat::JSON:
        return JsonReport(solutions, style);
    case OutputFormat::TEXT:
        break;
    }
    std::string text;
    for (const StationSolution& solution : solutions)
    {
        text += (text.empty() ? "" : "\n") + TextReport(solution, style);
    }
    return text;
}

/** The doubts about the stations, as messages. */
std::string WarningMessages(const std::vector<StationSolution>& solutions, const ReportStyle& style)
{
    std::string text;
    for (const StationSolution& solution : solutions)
    {
        if (!solution.IsSolved())
        {
            text += fmt::format("{}:{}: station {}: not solved: {}\n", style.sightsFile,
                                solution.setUp->sights.front().line, SetUpName(*solution.setUp),
                                DescribeFailure(solution).reason);
        }
        else
        {
            for (const std::string& warning : DoubtTexts(solution, style.angles, true))
            {
                text += fmt::format("{}:{}: warning: station {}: {}\n", style.sightsFile,
                                    solution.setUp->sights.front().line, SetUpName(*solution.setUp), warning);
            }
        }
    }
    return text;
}

CommandResult Compute(const StationOptions& options, const StationRequest& request, const ReportStyle& style,
                      const Survey& survey, const std::vector<const SetUp*>& selected)
{
    std::vector<StationSolution> solutions;
    solutions.reserve(selected.size());
    for (const SetUp* setUp : selected)
    {
        solutions.push_back(SolveStation(*setUp, survey.points, request));
    }
    CommandResult result;
    std::string notes;
    std::vector<OutputFile> files;
    DrawFiles(solutions, options.output, style, files, notes);
    std::string report = Report(solutions, options.output.format, style);
    if (options.output.format == OutputFormat::TEXT)
    {
        report += notes.empty() ? "" : "\n" + notes;
    }
    else
    {
        result.messages = WarningMessages(solutions, style) + notes;
    }
    files.push_back({options.output.output, std::move(report)});
    std::string problem = FileProblem(files, options);
    if (!problem.empty())
    {
        return Refused(problem);
    }
    problem = WriteWhole(files);
    if (!problem.empty())
    {
        return {EXIT_WRONG_USE, fmt::format("qstd: {}\n", problem)};
    }
    const bool areSound = std::all_of(solutions.begin(), solutions.end(),
                                      [](const StationSolution& solution) { return solution.IsSound(); });
    result.exitCode = areSound ? EXIT_ALL_DONE : EXIT_NOT_COMPUTED;
    return result;
}

ReportStyle StyleFrom(const StationOptions& options)
{
    ReportStyle style;
    style.angles = options.output.angle.value_or(AngleForm::DMS);
    style.decimals = options.output.decimals;
    style.sightsFile = DisplayName(options.sights);
    style.unit = options.output.unit;
    style.isLeaveOneOut = options.isLeaveOneOut;
    for (const std::string& column : options.output.columns)
    {
        style.columns.push_back(LowerCase(Trim(column)));
    }
    return style;
}

} // namespace

CommandResult RunStation(const StationOptions& options)
{
    const ReportStyle style = StyleFrom(options);
    std::string problem = OptionProblem(options);
    problem = problem.empty() ? ColumnProblem(style.columns, options.output.format, style) : problem;
    if (!problem.empty())
    {
        return Refused(problem);
    }
    StationRequest request;
    try
    {
        request = RequestFrom(options);
    }
    catch (const WrongUse& wrong)
    {
        return Refused(wrong.what());
    }
    Messages messages;
    const Survey survey = ReadSurvey(options, messages);
    if (messages.HasErrors())
    {
        return {EXIT_UNREADABLE, messages.Text()};
    }
    const std::vector<const SetUp*> selected = SelectSetUps(options, survey, problem);
    problem = problem.empty() ? TargetProblem(request.targets, selected, style.sightsFile) : problem;
    CommandResult result = problem.empty() ? Compute(options, request, style, survey, selected) : Refused(problem);
    result.messages.insert(0, messages.Text());
    return result;
}

} // namespace qstd
