#include "command_line/verbs.h"
#include "verbs/angle.h"

#include <CLI/CLI.hpp>

namespace qstd {

namespace {

VerbText AngleVerbText()
{
    return {
        "angle",
        "General",
        "An angle in every form, and as the library's integer",
        "Each angle in degrees, minutes and seconds, in decimal degrees, gon and radians, and as the integer of the "
        "library's interface, which counts 1/16 of a second. The degrees, minutes and seconds are exact; each other "
        "form has as many decimals as it takes to read the same integer again.\n\n"
        "An integer of the library is written with a u behind it, such as 2592000u. It may have any 32-bit value; "
        "one beyond the circle is brought there as the library does.",
        {{"One angle in three forms", "qstd angle 99-10-24.5 50g 2592000u",
          "Angles\n"
          "\n"
          "  angle       dms            deg         gon          rad              units\n"
          "  99-10-24.5  99-10-24.5000  99.173472d  110.192747g  1.73090362rad  5712392\n"
          "  50g         45-00-00.0000  45.000000d  50.000000g   0.78539816rad  2592000\n"
          "  2592000u    45-00-00.0000  45.000000d  50.000000g   0.78539816rad  2592000\n"}}};
}

void AddAngle(CommandLine& commandLine)
{
    Verb& verb = commandLine.AddVerb(AngleVerbText());
    const auto options = std::make_shared<AngleOptions>();
    verb.app->add_option("ANGLE", options->angles, "Angles in any form, or integers of the library such as 2592000u")
        ->required();
    SetComputation(verb, [options](Inputs& inputs, Sink& sink) { RunAngle(*options, inputs, sink); });
}

} // namespace

void AddGeneralVerbs(CommandLine& commandLine)
{
    AddAngle(commandLine);
}

} // namespace qstd
