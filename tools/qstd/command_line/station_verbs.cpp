#include "command_line/number_checks.h"
#include "command_line/usage.h"
#include "command_line/verbs.h"
#include "station/station_command.h"
#include "verbs/benchmark.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <map>

namespace qstd {

namespace {

VerbText StationText()
{
    return {"station",
            "Station establishment",
            "Compute free stations from sights to known points",
            "The instrument's position, height and orientation from a field book and a table of known points: by least "
            "squares over all sights, or by a closed solution from as few as there must be.\n\n"
            "Without --method the targets decide: a two-point resection for one sight each to two targets with one "
            "distance, a three-point resection for one sight each to three targets without distances, least squares "
            "for all else, and a known line only where nothing else is possible and its azimuth is given.\n\n"
            "Each result is held against the sights that it came from before it is printed. Where they do not fit, the "
            "report names the observation without which they do, and the usual mistake that explains it; from 30 "
            "times the expected standard deviation on the exit code is 1. --sigma-direction and its like set what is "
            "expected; the weights stay.\n\n"
            "With --south-azimuth the orientation of a closed two- or three-point resection counts from south, as the "
            "azimuth of --line-azimuth; that of an adjustment, which a known line is, too, counts from north in any "
            "case. The report says so.\n\n"
            "--columns picks columns of CSV; text and JSON have none here.\n\n"
            "Warnings tell of sights and heights that do not fit, of a station near the circle through its targets "
            "(danger circle), of two targets nearly in line, and of what nothing checks.",
            {{"Directions to three known points",
              "printf 'station,target,hz\\nA,14,99-10-24\\nA,12,187-53-01\\nA,13,335-34-21\\n' > sights.csv && "
              "printf 'id,n,e\\n14,4415.08,91164.16\\n12,1475.28,90661.58\\n13,3865.36,84862.54\\n' | "
              "qstd station --points - --sights sights.csv",
              "Station A  sights.csv:2-4\n"
              "  3 sights, 3 used: 3 directions, 0 distances; redundancy 0\n"
              "  three-point resection from 14, 12, 13; chosen for 3 directions and 0 distances to 3 targets\n"
              "\n"
              "  northing          2775.2101  m\n"
              "  easting          89398.5496  m\n"
              "  height                 none  no target of known height with a zenith reading\n"
              "  orientation     307-56-28.4\n"
              "  danger circle      1765.528  m  away; 1\" in a direction moves the station by up to 9.8 mm\n"
              "  No redundancy: the sights fit exactly, and the precision is unknown.\n"
              "\n"
              "  target           hz  used  res \"  across mm\n"
              "  14       99-10-24.0  yes     0.0       +0.2\n"
              "  12      187-53-01.0  yes     0.0       +0.1\n"
              "  13      335-34-21.0  yes     0.0       +0.4\n"}}};
}

void AddStationTables(Verb& verb, StationOptions& options)
{
    verb.app->add_option("NAME", options.names,
                         "Stations to compute; all that are not known points when none is named");
    const InGroup group(*verb.app, INPUT_GROUP);
    verb.app->add_option("--points", options.points, "Table of known points: id n e [h] [code]; - is standard input")
        ->required()
        ->type_name("FILE");
    verb.app
        ->add_option("--sights", options.sights,
                     "Field book: station target hz [v] [sd | hd] [th] [ih] [use]; - is standard input")
        ->required()
        ->type_name("FILE");
}

void AddStationMethod(Verb& verb, StationOptions& options)
{
    const std::map<std::string, StationMethod> methods = {{"multi", StationMethod::MULTI},
                                                          {"two-point", StationMethod::TWO_POINT},
                                                          {"three-point", StationMethod::THREE_POINT},
                                                          {"known-line", StationMethod::KNOWN_LINE},
                                                          {"auto", StationMethod::AUTO}};
    verb.app
        ->add_option_function<std::string>(
            "--method", [&options, methods](const std::string& name) { options.method = methods.at(name); },
            "multi (least squares), two-point, three-point, known-line, or auto, which chooses by what the set-up "
            "holds; auto when not given")
        ->check(CLI::IsMember({"multi", "two-point", "three-point", "known-line", "auto"}))
        ->type_name("METHOD");
    verb.app
        ->add_option("--targets", options.targets,
                     "Targets that may take part, separated by commas; a closed solution takes them in this order")
        ->delimiter(',')
        ->allow_extra_args(false)
        ->type_name("NAME,...");
    verb.app
        ->add_option("--line-azimuth", options.lineAzimuth,
                     "Azimuth of a known line; its second point need not be known then")
        ->type_name("ANGLE");
    verb.app->add_flag("--leave-one-out", options.isLeaveOneOut,
                       "Repeat the adjustment without each observation, and show which one helps most");
}

void AddExpectation(Verb& verb, StationOptions& options)
{
    verb.app
        ->add_option("--sigma-direction", options.sigmaDirection,
                     "Standard deviation that directions are judged by, in seconds; 2 when not given")
        ->check(SigmaCheck())
        ->type_name("SECONDS");
    verb.app
        ->add_option("--sigma-zenith", options.sigmaZenith,
                     "The same of zenith angles; that of directions when not given")
        ->check(SigmaCheck())
        ->type_name("SECONDS");
    verb.app
        ->add_option("--sigma-distance", options.sigmaDistance,
                     "Constant part of the standard deviation that distances are judged by; 2 mm when not given")
        ->check(SigmaCheck())
        ->type_name("LENGTH");
    verb.app
        ->add_option("--sigma-ppm", options.sigmaPpm,
                     "Its part that grows with the distance, in millionths; 2 when not given")
        ->check(PpmCheck())
        ->type_name("PPM");
}

void AddStationFiles(Verb& verb, OutputOptions& output)
{
    const InGroup group(*verb.app, FIGURE_GROUP);
    verb.app
        ->add_option("--svg", output.svg,
                     "Draw a plan into FILE; with several set-ups, one file each, named FILE-STATION")
        ->type_name("FILE");
    verb.app->add_option("--dxf", output.dxf, "Write station, targets and sights as DXF, files named as with --svg")
        ->type_name("FILE");
    verb.app->add_option("--geojson", output.geoJson, "Write them as GeoJSON in site coordinates")->type_name("FILE");
}

void AddStation(CommandLine& commandLine)
{
    Verb& verb = commandLine.AddVerb(StationText());
    const auto options = std::make_shared<StationOptions>();
    AddStationTables(verb, *options);
    AddStationMethod(verb, *options);
    AddExpectation(verb, *options);
    AddStationFiles(verb, verb.common->output);
    AddAzimuthOption(verb);
    AddCorrectionOptions(verb);
    verb.run = [&verb, options]() {
        options->output = verb.common->output;
        options->instrument = verb.common->instrument;
        const std::string problem = PathProblem(verb);
        const CommandResult result =
            problem.empty() ? RunStation(*options) : CommandResult{EXIT_WRONG_USE, "qstd: station: " + problem + "\n"};
        std::fputs(result.messages.c_str(), stderr);
        return result.exitCode;
    };
}

VerbText BenchmarkText()
{
    return {"benchmark",
            "Station establishment",
            "Height of the instrument from a point of known height",
            "From a benchmark that was sighted with a distance: benchmark height plus reflector height less the height "
            "difference to the reflector.\n\n"
            "Without a distance, from the zenith angle alone: the plan distance comes from the coordinates of station "
            "and benchmark and is reduced by --scale, --sea-level and --refraction, which apply here only.\n\n"
            "With --sights, from each sight of a field book to a point of known height, with the mean of each set-up.",
            {{"A level sight of 1 km, corrected for curvature and refraction",
              "qstd benchmark 0,1000,100 90d --station 0,0 --refraction 0.132",
              "Height of the instrument from benchmark 0,1000,100\n"
              "\n"
              "  benchmark           0,1000,100\n"
              "  benchmark height              100.0000  m\n"
              "  reflector above it              0.0000  m\n"
              "  zenith angle                90-00-00.0\n"
              "  by                  zenith angle\n"
              "  instrument axis                99.9319  m\n"},
             {"From the slope distance to a benchmark, in feet",
              "qstd benchmark 756.31 85-35-50 145.25 --target-height 5.64 --instrument-height 5.41 --unit ft",
              "Height of the instrument from benchmark 756.31\n"
              "\n"
              "  benchmark           756.31\n"
              "  benchmark height              756.3100  ft\n"
              "  reflector above it              5.6400  ft\n"
              "  zenith angle                85-35-50.0\n"
              "  height difference              11.1505  ft  axis to reflector\n"
              "  by                  distance\n"
              "  instrument axis               750.7995  ft\n"
              "  ground mark                   745.3895  ft\n"}}};
}

void AddBenchmark(CommandLine& commandLine)
{
    Verb& verb = commandLine.AddVerb(BenchmarkText());
    const auto options = std::make_shared<BenchmarkOptions>();
    verb.app->add_option("BENCHMARK", options->benchmark, "The benchmark, or its height")->type_name("POINT|HEIGHT");
    verb.app->add_option("ZENITH", options->zenith, "Zenith angle to it, of either face")->type_name("ANGLE");
    verb.app->add_option("DISTANCE", options->distance, "Slope distance to it; none: by zenith angle alone")
        ->type_name("LENGTH");
    verb.app->add_flag("--horizontal", options->isHorizontal, "DISTANCE is a horizontal distance");
    verb.app->add_option("--target-height", options->targetHeight, "Reflector above the benchmark; 0 when not given")
        ->check(LengthCheck())
        ->type_name("HEIGHT");
    verb.app
        ->add_option("--instrument-height", options->instrumentHeight,
                     "Axis above the ground mark; for the mark's height")
        ->check(LengthCheck())
        ->type_name("HEIGHT");
    AddPointsOption(verb);
    verb.app
        ->add_option("--sights", options->sights,
                     "Field book in place of a single sight: station target hz [v] [sd | hd] [th] [ih] [use]")
        ->type_name("FILE");
    verb.app
        ->add_option("--station", verb.common->instrument.station,
                     "Where the instrument stands, for a height by zenith angle alone")
        ->type_name("POINT");
    AddCorrectionOptions(verb);
    SetComputation(verb, options, RunBenchmark);
}

} // namespace

void AddStationVerbs(CommandLine& commandLine)
{
    AddStation(commandLine);
    AddBenchmark(commandLine);
}

} // namespace qstd
