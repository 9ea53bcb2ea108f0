#include "command_line/command_line.h"

#include "command_line/verbs.h"
#include "text/outcome.h"
#include "text/text.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <cstdio>

namespace qstd {

namespace {

constexpr size_t MOST_PROPOSALS = 3;
constexpr int MOST_DECIMALS = 9;

const char* const EXIT_CODES =
    "Exit codes: 0 all done; 1 something could not be computed, the rest is there; 2 wrong use or\n"
    "output not writable; 3 input unreadable, nothing written.";

std::string HelpFooter(const VerbText& text)
{
    std::string footer;
    for (const Example& example : text.examples)
    {
        footer += fmt::format("{}{}:\n  {}\n", footer.empty() ? "" : "\n", example.purpose, example.command);
    }
    return footer.empty() ? EXIT_CODES : fmt::format("{}\n{}", footer, EXIT_CODES);
}

void AddFormatOptions(CLI::App& app, OutputOptions& output)
{
    CLI::Option* const csv = app.add_flag(
        "--csv", [&output](int64_t) { output.format = OutputFormat::CSV; }, "Print CSV");
    CLI::Option* const json = app.add_flag(
        "--json", [&output](int64_t) { output.format = OutputFormat::JSON; }, "Print JSON Lines, an object a line");
    csv->excludes(json);
    app.add_option("--columns", output.columns, "Columns to print, in this order, separated by commas")
        ->delimiter(',')
        ->type_name("NAME,...")
        ->allow_extra_args(false);
    app.add_option("--output", output.output, "Write the results to FILE, which appears complete or not at all")
        ->type_name("FILE");
}

void AddFormOptions(CLI::App& app, OutputOptions& output)
{
    const std::map<std::string, AngleForm> angleForms = {
        {"dms", AngleForm::DMS}, {"deg", AngleForm::DEGREES}, {"gon", AngleForm::GON}, {"rad", AngleForm::RADIANS}};
    app.add_option_function<std::string>(
           "--angle", [&output, angleForms](const std::string& name) { output.angle = angleForms.at(name); },
           "Form of printed angles, and of angles in the input that do not say theirs: dms, deg, gon, rad")
        ->check(CLI::IsMember({"dms", "deg", "gon", "rad"}))
        ->type_name("FORM");
    app.add_option("--decimals", output.decimals, "Decimals of coordinates and lengths, 0 to 9; 4 when not given")
        ->check(CLI::Range(0, MOST_DECIMALS))
        ->type_name("N");
    const std::map<std::string, LinearUnit> units = {
        {"m", LinearUnit::METRE}, {"ft", LinearUnit::FOOT}, {"us-ft", LinearUnit::US_FOOT}};
    app.add_option_function<std::string>(
           "--unit", [&output, units](const std::string& name) { output.unit = units.at(name); },
           "Unit of all lengths, in and out: m, ft (0.3048 m), us-ft (1200/3937 m); m when not given")
        ->check(CLI::IsMember({"m", "ft", "us-ft"}))
        ->type_name("UNIT");
}

/** The first argument, where it stands for a verb and is none. */
std::string VerbProblem(const std::vector<std::unique_ptr<Verb>>& verbs, int count, const char* const* arguments)
{
    if (count < 2 || arguments[1][0] == '-')
    {
        return "";
    }
    const std::string name = arguments[1];
    std::vector<std::string> names;
    for (const std::unique_ptr<Verb>& verb : verbs)
    {
        if (verb->text.name == name)
        {
            return "";
        }
        names.push_back(verb->text.name);
    }
    std::string proposals;
    for (const std::string& near : NearestNames(name, names, MOST_PROPOSALS))
    {
        proposals += (proposals.empty() ? "; did you mean " : ", ") + near;
    }
    return fmt::format("no verb {}{}", Quoted(name), proposals.empty() ? "; qstd --help lists them" : proposals + "?");
}

} // namespace

CommandLine::CommandLine() : app(std::make_unique<CLI::App>("Surveying calculations", "qstd"))
{
    app->set_version_flag("--version", "qstd " QSTD_VERSION);
    app->require_subcommand(1);
    app->footer("qstd VERB --help tells all about a verb.");
    AddCogoVerbs(*this);
    AddMeasureVerbs(*this);
    AddReferenceVerbs(*this);
    AddStationVerbs(*this);
    AddGeneralVerbs(*this);
}

CommandLine::~CommandLine() = default;

CLI::App& CommandLine::App() const
{
    return *app;
}

const std::vector<std::unique_ptr<Verb>>& CommandLine::Verbs() const
{
    return verbs;
}

Verb& CommandLine::AddVerb(VerbText text)
{
    verbs.push_back(std::make_unique<Verb>());
    Verb& verb = *verbs.back();
    verb.text = std::move(text);
    verb.common = std::make_shared<CommonOptions>();
    verb.app = app->add_subcommand(verb.text.name, verb.text.summary);
    verb.app->group(verb.text.group);
    verb.app->footer(HelpFooter(verb.text));
    AddFormatOptions(*verb.app, verb.common->output);
    AddFormOptions(*verb.app, verb.common->output);
    return verb;
}

int CommandLine::Run(int count, const char* const* arguments)
{
    const std::string problem = VerbProblem(verbs, count, arguments);
    if (!problem.empty())
    {
        std::fputs(fmt::format("qstd: {}\n", problem).c_str(), stderr);
        return EXIT_WRONG_USE;
    }
    try
    {
        app->parse(count, arguments);
    }
    catch (const CLI::ParseError& error)
    {
        return app->exit(error) == 0 ? EXIT_ALL_DONE : EXIT_WRONG_USE;
    }
    for (const std::unique_ptr<Verb>& verb : verbs)
    {
        if (verb->app->parsed())
        {
            return verb->run();
        }
    }
    return EXIT_WRONG_USE;
}

} // namespace qstd
