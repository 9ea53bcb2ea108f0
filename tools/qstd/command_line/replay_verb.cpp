#include "command_line/verbs.h"
#include "replay/replay_command.h"

#include <CLI/CLI.hpp>

#include <cstdio>

namespace qstd {

namespace {

/** Numbers further apart than that are not the same figures computed on another machine. */
constexpr int MOST_UNITS = 1000000;

VerbText ReplayText()
{
    return {
        "replay",
        "General",
        "Make calls of the library from a file, and record or compare their results",
        "CALLS holds one call a line, as a JSON object: the name of an exported function in \"call\" and its "
        "arguments by their names. Settings and the instrument are driven by calls, too. Empty lines and lines that "
        "begin with # are skipped. All lines are read before the first call is made; when one is no call, none is "
        "made.\n\n"
        "The calls are made in order. The result of each, with its status and all outputs, is written as a JSON "
        "object on a line. Such a recording can be compared with a later run: --expect tells each difference as "
        "file, line, name of the value, what was expected and what came, and exit code 1 follows.",
        {{"One call, from standard input",
          "echo '{\"call\":\"QCogoCalcSlopeByDist\",\"horizontal\":40,\"vertical\":3}' | qstd replay -",
          "{\"call\":\"QCogoCalcSlopeByDist\",\"slope\":{\"grade\":7.5,\"ratio\":13.333333333333334}}\n"}}};
}

} // namespace

void AddReplayVerb(CommandLine& commandLine)
{
    Verb& verb = commandLine.AddBareVerb(ReplayText());
    const auto options = std::make_shared<ReplayOptions>();
    verb.app->add_option("CALLS", options->calls, "Calls, one JSON object a line; - is standard input")
        ->required()
        ->type_name("FILE");
    verb.app->add_option("--expect", options->expect, "Compare with the recording in FILE in place of writing one")
        ->type_name("FILE");
    verb.app
        ->add_option("--ulp", options->unitsInLastPlace,
                     "Units in the last place by which numbers may differ from the recording; 0 when not given")
        ->check(CLI::Range(0, MOST_UNITS))
        ->type_name("N");
    AddOutputOption(verb);
    verb.run = [&verb, options]() {
        options->output = verb.common->output.output;
        const std::string problem = PathProblem(verb);
        const ReplayResult result =
            problem.empty() ? RunReplay(*options) : ReplayResult{EXIT_WRONG_USE, "qstd: replay: " + problem + "\n"};
        std::fputs(result.messages.c_str(), stderr);
        return result.exitCode;
    };
}

} // namespace qstd
