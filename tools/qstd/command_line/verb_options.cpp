#include "command_line/command_line.h"
#include "command_line/number_checks.h"
#include "command_line/usage.h"

#include <CLI/CLI.hpp>

#include <string>

namespace qstd {

void AddPointsOption(Verb& verb)
{
    const InGroup group(*verb.app, INPUT_GROUP);
    verb.app
        ->add_option("--points", verb.common->points,
                     "Table of points that names stand for: id n e [h] [code]; - is standard input")
        ->type_name("FILE");
}

void AddOutputOption(Verb& verb)
{
    const InGroup group(*verb.app, OUTPUT_GROUP);
    verb.app
        ->add_option("--output", verb.common->output.output,
                     "Write the results to FILE, which appears complete or not at all")
        ->type_name("FILE");
}

void AddFigureOptions(Verb& verb)
{
    const InGroup group(*verb.app, FIGURE_GROUP);
    OutputOptions& output = verb.common->output;
    verb.app->add_option("--svg", output.svg, "Draw a plan to scale on A4 into FILE")->type_name("FILE");
    verb.app->add_option("--dxf", output.dxf, "Write points and figures in site coordinates as DXF")->type_name("FILE");
    verb.app->add_option("--geojson", output.geoJson, "Write points and figures in site coordinates as GeoJSON")
        ->type_name("FILE");
}

void AddAzimuthOption(Verb& verb)
{
    const InGroup group(*verb.app, INSTRUMENT_GROUP);
    verb.app->add_flag("--south-azimuth", verb.common->instrument.isSouthAzimuth,
                       "Azimuths count from south, in and out");
}

void AddCorrectionOptions(Verb& verb)
{
    const InGroup group(*verb.app, INSTRUMENT_GROUP);
    InstrumentOptions& instrument = verb.common->instrument;
    verb.app->add_option("--scale", instrument.scale, "Scale factor of plan distances; 1 when not given")
        ->check(FactorCheck())
        ->type_name("FACTOR");
    verb.app->add_option("--sea-level", instrument.seaLevel, "Correct for sea level; mean elevation of the area")
        ->check(LengthCheck())
        ->type_name("ELEVATION");
    verb.app
        ->add_option_function<std::string>(
            "--refraction",
            [&instrument](const std::string& text) { instrument.refraction = RefractionSelector(text); },
            "Correct for curvature and refraction with the coefficient 0.132, 0.133 or 0.20; off when not given")
        ->check(RefractionCheck())
        ->type_name("COEFFICIENT");
}

void AddStandingOptions(Verb& verb)
{
    const InGroup group(*verb.app, INSTRUMENT_GROUP);
    InstrumentOptions& instrument = verb.common->instrument;
    verb.app->add_option("--station", instrument.station, "Point on which the instrument stands")->type_name("POINT");
    verb.app->add_option("--orientation", instrument.orientation, "Azimuth of the circle's zero; 0 when not given")
        ->type_name("ANGLE");
    verb.app->add_option("--instrument-height", instrument.instrumentHeight, "Axis above the station; 0 when not given")
        ->check(LengthCheck())
        ->type_name("HEIGHT");
}

void AddFaceOption(Verb& verb)
{
    const InGroup group(*verb.app, INSTRUMENT_GROUP);
    verb.app->add_flag("--face-two", verb.common->instrument.isFaceTwo, "The telescope is in face two");
}

} // namespace qstd
