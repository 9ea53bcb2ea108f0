#include "station/station_command.h"

#include "input/field_book.h"
#include "input/table.h"
#include "output/files.h"
#include "plan/plan_names.h"
#include "station/report.h"
#include "station/station_plan.h"
#include "station/station_solution.h"
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
    return {EXIT_WRONG_USE, "", fmt::format("qstd: {}\n", text)};
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
        survey.setUps = ReadSetUps(*sights, options.angle, messages);
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
    return fmt::format("station {}: no set-up in {}{}", Quoted(name), file,
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

/** True for two paths to one file. */
bool IsSameFile(const std::string& one, const std::string& other)
{
    std::error_code error;
    return std::filesystem::equivalent(one, other, error) && !error;
}

/** What the options say that cannot be, or nothing. */
std::string OptionProblem(const StationOptions& options)
{
    if (options.points == "-" && options.sights == "-")
    {
        return "standard input can be read only once; give a file for --points or for --sights";
    }
    if (options.svg == "-")
    {
        return "a plan goes to a file; give --svg a name such as plan.svg";
    }
    return "";
}

/** Draws the plans of the solved stations, writes them, and tells of each in `notes`. */
std::string WritePlans(const std::string& path, const std::vector<StationSolution>& solutions,
                       const StationOptions& options, const ReportStyle& style, std::string& notes)
{
    std::vector<const SetUp*> setUps;
    setUps.reserve(solutions.size());
    for (const StationSolution& solution : solutions)
    {
        setUps.push_back(solution.setUp);
    }
    const std::vector<std::string> names = PlanNames(path, setUps);
    std::vector<OutputFile> files;
    for (size_t i = 0; i < solutions.size(); ++i)
    {
        const std::string station = SetUpName(*solutions[i].setUp);
        if (!solutions[i].IsSolved())
        {
            notes += fmt::format("No plan of station {}: not solved\n", station);
            continue;
        }
        if (IsSameFile(names[i], options.points) || IsSameFile(names[i], options.sights))
        {
            return fmt::format("{}: is an input; give --svg another name", names[i]);
        }
        Plan plan = DrawPlan(solutions[i], style);
        notes += fmt::format("Plan of station {}: {}, scale {}\n", station, names[i], plan.scale);
        files.push_back({names[i], std::move(plan.svg)});
    }
    return WriteWhole(files);
}

std::string Report(const std::vector<StationSolution>& solutions, const StationOptions& options,
                   const ReportStyle& style)
{
    switch (options.format)
    {
    case OutputFormat::CSV:
        return CsvReport(solutions, style);
    case OutputFormat::JSON:
        return JsonReport(solutions);
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

CommandResult Compute(const StationOptions& options, const Survey& survey, const std::vector<const SetUp*>& selected)
{
    std::vector<StationSolution> solutions;
    solutions.reserve(selected.size());
    for (const SetUp* setUp : selected)
    {
        solutions.push_back(SolveStation(*setUp, survey.points));
    }
    const ReportStyle style = {options.angle.value_or(AngleForm::DMS), options.decimals, DisplayName(options.sights)};
    CommandResult result;
    std::string notes;
    if (!options.svg.empty())
    {
        const std::string problem = WritePlans(options.svg, solutions, options, style, notes);
        if (!problem.empty())
        {
            return Refused(problem);
        }
    }
    result.output = Report(solutions, options, style);
    if (options.format == OutputFormat::TEXT)
    {
        result.output += notes.empty() ? "" : "\n" + notes;
    }
    else
    {
        result.messages += notes;
    }
    const bool allSolved = std::all_of(solutions.begin(), solutions.end(),
                                       [](const StationSolution& solution) { return solution.IsSolved(); });
    result.exitCode = allSolved ? EXIT_ALL_DONE : EXIT_NOT_COMPUTED;
    return result;
}

} // namespace

CommandResult RunStation(const StationOptions& options)
{
    std::string problem = OptionProblem(options);
    if (!problem.empty())
    {
        return Refused(problem);
    }
    Messages messages;
    const Survey survey = ReadSurvey(options, messages);
    if (messages.HasErrors())
    {
        return {EXIT_UNREADABLE, "", messages.Text()};
    }
    const std::vector<const SetUp*> selected = SelectSetUps(options, survey, problem);
    CommandResult result = problem.empty() ? Compute(options, survey, selected) : Refused(problem);
    result.messages.insert(0, messages.Text());
    return result;
}

} // namespace qstd
