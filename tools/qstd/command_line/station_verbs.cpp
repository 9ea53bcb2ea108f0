#include "command_line/verbs.h"
#include "station/station_command.h"

#include <CLI/CLI.hpp>

#include <cstdio>

namespace qstd {

namespace {

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

void AddStation(CommandLine& commandLine)
{
    Verb& verb = commandLine.AddVerb(
        {"station", "Station establishment", "Compute free stations from sights to known points", "", {}});
    const auto options = std::make_shared<StationOptions>();
    verb.app->add_option("NAME", options->names,
                         "Stations to compute; all that are not known points when none is named");
    verb.app->add_option("--points", options->points, "Table of known points: id n e [h] [code]; - is standard input")
        ->required()
        ->type_name("FILE");
    verb.app
        ->add_option("--sights", options->sights,
                     "Field book: station target hz [v] [sd | hd] [th] [ih] [use]; - is standard input")
        ->required()
        ->type_name("FILE");
    verb.app
        ->add_option("--svg", options->svg,
                     "Draw a plan into FILE; with several set-ups, one file each, named FILE-STATION")
        ->type_name("FILE");
    verb.run = [options, common = verb.common]() {
        options->format = common->output.format;
        options->angle = common->output.angle;
        options->decimals = common->output.decimals;
        const CommandResult result = RunStation(*options);
        std::fputs(result.messages.c_str(), stderr);
        return Print(result.output) ? result.exitCode : int{EXIT_WRONG_USE};
    };
}

} // namespace

void AddStationVerbs(CommandLine& commandLine)
{
    AddStation(commandLine);
}

} // namespace qstd
