#include "command_line/verbs.h"
#include "verbs/arc.h"
#include "verbs/line.h"
#include "verbs/plane.h"

#include <CLI/CLI.hpp>

namespace qstd {

namespace {

const char* const GROUP = "Reference line, arc and plane";

void AddStakeOptions(Verb& verb, StakeOptions& stakes)
{
    verb.app->add_option("TABLE", stakes.table, "Points to stake out: id n e [h]; - is standard input")
        ->type_name("FILE");
    verb.app->add_option("--point", stakes.points, "A point to stake out; may be given several times")
        ->type_name("POINT")
        ->allow_extra_args(false);
    verb.app->add_option("--chainage", stakes.chainage, "Station of the start, which all stations count on from")
        ->type_name("LENGTH");
}

VerbText LineText()
{
    return {"line",
            GROUP,
            "Stake-out list along a line: station, offset, height difference, foot",
            "The line runs from A towards B. For each point of a table: how far along the line it lies, how far to its "
            "side (positive to the right), how far above the grade from A to B, and the foot of its perpendicular. "
            "Stations and grade go on beyond both ends; where only A or B has a height, the grade is level there.\n\n"
            "The table is read row by row, however long it is.",
            {{"Two points along a line that rises by 2 m",
              "printf 'id,n,e,h\\n1,10,13,50.5\\n2,28,36,\\n' | qstd line 0,0,50 30,40,52 -",
              "Stake-out along the line 0,0,50 - 30,40,52\n"
              "\n"
              "  length  50.0000  m\n"
              "  grade    4.0000  %\n"
              "\n"
              "  point  chainage   offset  side         above grade  foot northing  foot easting  grade height\n"
              "  1       16.4000  -0.2000  to the left      -0.1560         9.8400       13.1200       50.6560\n"
              "  2       45.6000  -0.8000  to the left                     27.3600       36.4800\n"},
             {"One point, stations counting from 1200", "qstd line 0,0 30,40 --point 10,13 --chainage 1200",
              "Stake-out along the line 0,0 - 30,40\n"
              "\n"
              "  length                 50.0000  m\n"
              "  start chainage       1200.0000  m\n"
              "  end chainage         1250.0000  m\n"
              "\n"
              "  point   chainage   offset  side         foot northing  foot easting\n"
              "  10,13  1216.4000  -0.2000  to the left         9.8400       13.1200\n"}}};
}

void AddLine(CommandLine& commandLine)
{
    Verb& verb = commandLine.AddVerb(LineText());
    const auto options = std::make_shared<LineOptions>();
    verb.app->add_option("A", options->first, "Start of the line")->required()->type_name("POINT");
    verb.app->add_option("B", options->second, "A further point of the line")->required()->type_name("POINT");
    AddStakeOptions(verb, options->stakes);
    AddPointsOption(verb);
    AddFigureOptions(verb);
    SetComputation(verb, [options](Inputs& inputs, Sink& sink) { RunLine(*options, inputs, sink); });
}

void AddArcDefinition(CLI::App& app, ArcOptions& options)
{
    app.add_option("--from", options.from, "Start of the arc")->required()->type_name("POINT");
    app.add_option("--to", options.to, "End of the arc")->type_name("POINT");
    app.add_option("--via", options.via, "Where the two tangents meet; with --to")->type_name("POINT");
    app.add_option("--tangent", options.tangent, "Azimuth in which the arc starts")->type_name("ANGLE");
    app.add_option("--end-tangent", options.endTangent, "Azimuth in which the arc ends")->type_name("ANGLE");
    app.add_option("--radius", options.radius, "Radius, positive to turn right, negative to turn left")
        ->type_name("LENGTH");
    app.add_option("--deflection", options.deflection, "Angle between the tangents; with --radius")->type_name("ANGLE");
    app.add_option("--length", options.length, "Length of the arc; with --radius")->type_name("LENGTH");
}

VerbText ArcText()
{
    return {
        "arc",
        GROUP,
        "Parameters of a circular arc, and the stake-out list along it",
        "The arc is given in one of three ways: by both ends, --from and --to, with the point where the tangents meet "
        "(--via) or the azimuths of the tangents (--tangent, --end-tangent); by --from, --tangent, --radius and the "
        "angle that it turns (--deflection, or --end-tangent); or by --from, --tangent, --radius and --length.\n\n"
        "Without points its parameters and main points are shown. With a table of points, or --point: for each one "
        "how far along the arc it lies, how far to its side (positive to the right) and how far above the design "
        "height. Before the start and beyond the end that is measured on the tangents.\n\n"
        "The design height is that of the start all along; with --to it runs to the height of the end, where the arc "
        "ends within 0.05 of it.",
        {{"An arc of radius 100 to the right that turns by 60 degrees",
          "qstd arc --from 1000,2000 --tangent 30d --radius 100 --deflection 60d",
          "Arc from 1000,2000\n"
          "\n"
          "  radius                                  100.0000  m  turns right\n"
          "  arc length                              104.7198  m\n"
          "  central angle                         60-00-00.0\n"
          "  start tangent                         30-00-00.0\n"
          "  end tangent                           90-00-00.0\n"
          "  tangent length                           57.7350  m\n"
          "  chord                                   100.0000  m  from start to end\n"
          "  centre northing                         950.0000  m\n"
          "  centre easting                         2086.6025  m\n"
          "  tangents meet, northing                1050.0000  m\n"
          "  tangents meet, easting                 2028.8675  m\n"
          "  end northing                           1050.0000  m\n"
          "  end easting                            2086.6025  m\n"},
         {"Stake out points along an arc between two points whose tangents meet in a third",
          "printf 'id n e h\\n1 103.5 215.0 50.2\\n2 120 170 50\\n' | qstd arc --from 100,200,50 --via 100,250 "
          "--to 150,250,51 -",
          "Arc from 100,200,50 to 150,250,51\n"
          "\n"
          "  radius                                  -50.0000  m  turns left\n"
          "  arc length                               78.5398  m\n"
          "  central angle                         90-00-00.0\n"
          "  start tangent                         90-00-00.0\n"
          "  end tangent                            0-00-00.0\n"
          "  tangent length                           50.0000  m\n"
          "  chord                                    70.7107  m  from start to end\n"
          "  centre northing                         150.0000  m\n"
          "  centre easting                          200.0000  m\n"
          "  tangents meet, northing                 100.0000  m\n"
          "  tangents meet, easting                  250.0000  m\n"
          "  end northing                            150.0000  m\n"
          "  end easting                             250.0000  m\n"
          "  misclosure                                0.0000  m  from the end of the arc to 150,250,51\n"
          "  design height            from 50.0000 to 51.0000\n"
          "\n"
          "  point     along    offset  side         above design\n"
          "  1       15.6021   -1.1405  to the left        0.0013\n"
          "  2      -30.0000  -20.0000  to the left        0.3820\n"},
         {"An arc to the left, 40 long",
          "qstd arc --from 0,0 --tangent 0-00-00 --radius -50 --length 40 --point 30,-12",
          "Arc from 0,0\n"
          "\n"
          "  radius                                  -50.0000  m  turns left\n"
          "  arc length                               40.0000  m\n"
          "  central angle                         45-50-11.8\n"
          "  start tangent                          0-00-00.0\n"
          "  end tangent                          314-09-48.2\n"
          "  tangent length                           21.1397  m\n"
          "  chord                                    38.9418  m  from start to end\n"
          "  centre northing                           0.0000  m\n"
          "  centre easting                          -50.0000  m\n"
          "  tangents meet, northing                  21.1397  m\n"
          "  tangents meet, easting                    0.0000  m\n"
          "  end northing                             35.8678  m\n"
          "  end easting                             -15.1647  m\n"
          "\n"
          "  point     along   offset  side\n"
          "  30,-12  33.4145  -1.5851  to the left\n"}}};
}

void AddArc(CommandLine& commandLine)
{
    Verb& verb = commandLine.AddVerb(ArcText());
    const auto options = std::make_shared<ArcOptions>();
    AddStakeOptions(verb, options->stakes);
    AddArcDefinition(*verb.app, *options);
    AddPointsOption(verb);
    AddAzimuthOption(verb);
    AddFigureOptions(verb);
    SetComputation(verb, options, RunArc);
}

VerbText PlaneText()
{
    return {
        "plane",
        GROUP,
        "Points of a plane sighted by angles alone",
        "Two points define the vertical plane through them, such as a wall: each sight gives the point of the plane "
        "that it meets, its distance along the wall from A and its height above A. Three points, or two with "
        "--inclined, define a plane in space, such as a roof: the distance counts along the line from A to B, and "
        "the offset across it within the plane. The instrument stands on --station; readings are horizontal circle "
        "and zenith angle, in either face.\n\n"
        "Where a slope distance was measured, too, the list says how far behind the plane the sighted point lies.",
        {{"A point on a wall",
          "qstd plane 10,0,100 10,20,100 --station 0,5,100 --instrument-height 1.5 "
          "--sight 0d,80d",
          "Sights from 0,5,100 onto the vertical plane through 10,0,100 and 10,20,100\n"
          "\n"
          "  target  northing  easting    height  along from 10,0,100  above 10,0,100  slope distance\n"
          "  0d,80d   10.0000   5.0000  103.2633               5.0000          3.2633         10.1543\n"},
         {"Sights onto a roof",
          "printf 'target hz v\\nchimney 10d 75d\\nridge 350d 70d\\n' | qstd plane 20,0,5 20,10,5 25,5,9 "
          "--station 0,5,1.6 --sights -",
          "Sights from 0,5,1.6 onto the plane through 20,0,5, 20,10,5 and 25,5,9\n"
          "\n"
          "  target   northing  easting   height  along from 20,0,5    across  side   slope distance\n"
          "  chimney   23.8674   9.2085   8.0939             9.2085   -4.9527  above         25.0905\n"
          "  ridge     29.2741  -0.1618  12.4193            -0.1618  -11.8766  above         31.6334\n"}}};
}

void AddPlane(CommandLine& commandLine)
{
    Verb& verb = commandLine.AddVerb(PlaneText());
    const auto options = std::make_shared<PlaneOptions>();
    verb.app->add_option("A", options->first, "First point of the plane")->required()->type_name("POINT");
    verb.app->add_option("B", options->second, "Second point of the plane")->required()->type_name("POINT");
    verb.app->add_option("C", options->third, "Third point of the plane")->type_name("POINT");
    verb.app->add_flag("--inclined", options->isInclined,
                       "Two points: count along and across the line between them as it slopes");
    verb.app
        ->add_option("--sights", options->sightsTable,
                     "Table of sights: target hz v [sd], of one station or with its name in a column station; - is "
                     "standard input")
        ->type_name("FILE");
    verb.app
        ->add_option("--sight", options->sights,
                     "Circle and zenith reading, and slope distance where measured; "
                     "may be given several times")
        ->type_name("HZ,V[,SD]")
        ->allow_extra_args(false);
    AddPointsOption(verb);
    AddAzimuthOption(verb);
    AddStandingOptions(verb);
    AddFigureOptions(verb);
    SetComputation(verb, options, RunPlane);
}

} // namespace

void AddReferenceVerbs(CommandLine& commandLine)
{
    AddLine(commandLine);
    AddArc(commandLine);
    AddPlane(commandLine);
}

} // namespace qstd
