#include "command_line/verbs.h"
#include "verbs/inverse.h"

#include <CLI/CLI.hpp>

namespace qstd {

namespace {

void AddInverse(CommandLine& commandLine)
{
    Verb& verb = commandLine.AddVerb({"inverse",
                                      "Coordinate geometry",
                                      "Azimuth and distances from one point to another",
                                      "From the coordinates of two points: azimuth and horizontal distance and, where "
                                      "both have a height, zenith angle, slope distance and height difference.",
                                      {{"From one point to another, given by coordinates",
                                        "qstd inverse 100,200,10 130,240,10", "Inverse 100,200,10 - 130,240,10\n"}}});
    const auto options = std::make_shared<InverseOptions>();
    verb.app->add_option("A", options->from, "Point from which")->required()->type_name("POINT");
    verb.app->add_option("B", options->to, "Point to which")->required()->type_name("POINT");
    AddPointsOption(verb);
    AddAzimuthOption(verb);
    SetComputation(verb, [options, common = verb.common](Inputs& inputs, Sink& sink) {
        options->instrument = common->instrument;
        RunInverse(*options, inputs, sink);
    });
}

} // namespace

void AddCogoVerbs(CommandLine& commandLine)
{
    AddInverse(commandLine);
}

} // namespace qstd
