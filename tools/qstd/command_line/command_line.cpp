#include "command_line/command_line.h"

#include "command_line/help.h"
#include "command_line/program_text.h"
#include "command_line/usage.h"
#include "command_line/verbs.h"
#include "command_line/wrong_use.h"
#include "text/outcome.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <cstdio>

namespace qstd {

namespace {

constexpr int MOST_DECIMALS = 9;

void AddFormatOptions(CLI::App& app, OutputOptions& output)
{
    const InGroup group(app, OUTPUT_GROUP);
    CLI::Option* const csv = app.add_flag(
        "--csv", [&output](int64_t) { output.format = OutputFormat::CSV; }, "Print CSV");
    CLI::Option* const json = app.add_flag(
        "--json", [&output](int64_t) { output.format = OutputFormat::JSON; }, "Print JSON Lines, an object a line");
    csv->excludes(json)->disable_flag_override();
    json->disable_flag_override();
    app.add_option("--columns", output.columns, "Columns to print, in this order, separated by commas")
        ->delimiter(',')
        ->type_name("NAME,...")
        ->allow_extra_args(false);
}

void AddFormOptions(CLI::App& app, OutputOptions& output)
{
    const InGroup group(app, OUTPUT_GROUP);
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

/** Writes all of a text. @return the exit code of the program */
int Print(const std::string& text)
{
    if (std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0)
    {
        return EXIT_ALL_DONE;
    }
    std::fputs("qstd: standard output cannot be written\n", stderr);
    return EXIT_WRONG_USE;
}

int Refuse(const std::string& problem)
{
    std::fputs(fmt::format("qstd: {}\nTry qstd --help\n", problem).c_str(), stderr);
    return EXIT_WRONG_USE;
}

} // namespace

CommandLine::CommandLine() : app(std::make_unique<CLI::App>(PROGRAM_SUMMARY, "qstd"))
{
    app->set_help_flag("-h,--help", "Show this help");
    app->set_version_flag("--version", "qstd " QSTD_VERSION, "Show the version");
    app->require_subcommand(1);
    AddCogoVerbs(*this);
    AddMeasureVerbs(*this);
    AddReferenceVerbs(*this);
    AddStationVerbs(*this);
    AddGeneralVerbs(*this);
    AddReplayVerb(*this);
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

Verb* CommandLine::FindVerb(const std::string& name) const
{
    for (const std::unique_ptr<Verb>& verb : verbs)
    {
        if (verb->text.name == name)
        {
            return verb.get();
        }
    }
    return nullptr;
}

Verb& CommandLine::AddVerb(VerbText text)
{
    Verb& verb = AddBareVerb(std::move(text));
    AddFormatOptions(*verb.app, verb.common->output);
    AddOutputOption(verb);
    AddFormOptions(*verb.app, verb.common->output);
    return verb;
}

Verb& CommandLine::AddBareVerb(VerbText text)
{
    verbs.push_back(std::make_unique<Verb>());
    Verb& verb = *verbs.back();
    verb.text = std::move(text);
    verb.common = std::make_shared<CommonOptions>();
    verb.app = app->add_subcommand(verb.text.name, verb.text.summary);
    verb.app->group(verb.text.group);
    return verb;
}

int CommandLine::Run(int count, const char* const* arguments)
{
    const std::string word = count < 2 ? "" : arguments[1];
    if (count > 1 && arguments[1][0] != '-')
    {
        const std::string problem = VerbProblem(*this, word);
        if (!problem.empty())
        {
            return Refuse(problem);
        }
    }
    return word == "help" ? Help(count, arguments) : RunVerb(count, arguments);
}

/** qstd help [VERB] */
int CommandLine::Help(int count, const char* const* arguments) const
{
    const std::string word = count < 3 ? "" : arguments[2];
    if (word.empty() || word == "help" || word[0] == '-')
    {
        return Print(ProgramHelp(*this));
    }
    const Verb* const verb = FindVerb(word);
    return verb == nullptr ? Refuse(VerbProblem(*this, word)) : Print(VerbHelp(*verb));
}

int CommandLine::RunVerb(int count, const char* const* arguments)
{
    try
    {
        app->parse(count, arguments);
    }
    catch (const CLI::CallForHelp&)
    {
        const std::vector<CLI::App*> parsed = app->get_subcommands();
        return Print(parsed.empty() ? ProgramHelp(*this) : VerbHelp(*FindVerb(parsed.front()->get_name())));
    }
    catch (const CLI::CallForVersion& version)
    {
        return Print(std::string(version.what()) + "\n");
    }
    catch (const CLI::ParseError& error)
    {
        std::fputs(ParseProblem(*this, error).c_str(), stderr);
        return EXIT_WRONG_USE;
    }
    return FindVerb(app->get_subcommands().front()->get_name())->run();
}

} // namespace qstd
