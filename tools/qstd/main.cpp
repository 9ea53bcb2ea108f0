/**
 * @file main.cpp
 * The command line of qstd.
 */
#include "station_command.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <exception>
#include <map>
#include <new>

namespace {

void AddStationCommand(CLI::App& app, qstd::StationOptions& options)
{
    const std::map<std::string, qstd::AngleForm> angleForms = {{"dms", qstd::AngleForm::DMS},
                                                               {"deg", qstd::AngleForm::DEGREES},
                                                               {"gon", qstd::AngleForm::GON},
                                                               {"rad", qstd::AngleForm::RADIANS}};
    CLI::App* const command = app.add_subcommand("station", "Compute free stations from sights to known points");
    command->add_option("NAME", options.names, "Stations to compute; all that are not known points when none is named");
    command->add_option("--points", options.points, "Table of known points: id n e [h] [code]; - is standard input")
        ->required()
        ->type_name("FILE");
    command
        ->add_option("--sights", options.sights,
                     "Field book: station target hz [v] [sd | hd] [th] [ih] [use]; - is standard input")
        ->required()
        ->type_name("FILE");
    command
        ->add_option("--svg", options.svg,
                     "Draw a plan into FILE; with several set-ups, one file each, named FILE-STATION")
        ->type_name("FILE");
    CLI::Option* const csv = command->add_flag(
        "--csv", [&options](int64_t) { options.format = qstd::OutputFormat::CSV; }, "Print CSV, one line a sight");
    CLI::Option* const json = command->add_flag(
        "--json", [&options](int64_t) { options.format = qstd::OutputFormat::JSON; },
        "Print JSON, one object a line and set-up");
    csv->excludes(json);
    command
        ->add_option_function<std::string>(
            "--angle", [&options, angleForms](const std::string& name) { options.angle = angleForms.at(name); },
            "Form of printed angles, and of angles in the input that do not say theirs: dms, deg, gon, rad")
        ->check(CLI::IsMember({"dms", "deg", "gon", "rad"}))
        ->type_name("FORM");
    command->add_option("--decimals", options.decimals, "Decimals of coordinates and heights, 0 to 9; 4 when not given")
        ->check(CLI::Range(0, 9))
        ->type_name("N");
    command->footer("Exit codes: 0 all done; 1 a station could not be solved, the others are there; 2 wrong use or\n"
                    "output not writable; 3 input unreadable, nothing written.");
}

/** Writes all of a text, or says on standard error that it could not. */
bool Print(const std::string& text)
{
    if (std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0)
    {
        return true;
    }
    std::fputs("qstd: standard output cannot be written\n", stderr);
    return false;
}

int Run(int count, const char* const* arguments)
{
    CLI::App app("Surveying calculations from field books", "qstd");
    app.set_version_flag("--version", "qstd " QSTD_VERSION);
    app.require_subcommand(1);
    qstd::StationOptions options;
    AddStationCommand(app, options);
    try
    {
        app.parse(count, arguments);
    }
    catch (const CLI::ParseError& error)
    {
        return app.exit(error) == 0 ? qstd::EXIT_ALL_DONE : qstd::EXIT_WRONG_USE;
    }
    const qstd::CommandResult result = qstd::RunStation(options);
    std::fputs(result.messages.c_str(), stderr);
    return Print(result.output) ? result.exitCode : qstd::EXIT_WRONG_USE;
}

} // namespace

int main(int count, char** arguments)
{
    try
    {
        return Run(count, arguments);
    }
    catch (const std::bad_alloc&)
    {
        std::fputs("qstd: not enough memory\n", stderr);
    }
    catch (const std::exception& error)
    {
        std::fprintf(stderr, "qstd: %s\n", error.what());
    }
    return qstd::EXIT_UNREADABLE;
}
