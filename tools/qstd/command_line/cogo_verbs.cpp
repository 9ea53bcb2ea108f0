#include "command_line/verbs.h"
#include "verbs/area.h"
#include "verbs/foot.h"
#include "verbs/forward.h"
#include "verbs/grade.h"
#include "verbs/intersect.h"
#include "verbs/inverse.h"
#include "verbs/offset.h"
#include "verbs/transfer.h"

#include <CLI/CLI.hpp>

namespace qstd {

namespace {

const char* const GROUP = "Coordinate geometry";

/** A line of the plan: two points, or a point and an azimuth. */
const char* const LINE_HELP = "Line through the points A and B, or through A with an azimuth";

void AddInverse(CommandLine& commandLine)
{
    Verb& verb =
        commandLine.AddVerb({"inverse",
                             GROUP,
                             "Azimuth and distances from one point to another",
                             "From the coordinates of two points: azimuth and horizontal distance and, where "
                             "both have a height, zenith angle, slope distance and height difference.",
                             {{"From one point to another, given by coordinates", "qstd inverse 100,200,10 130,240,60",
                               "Inverse 100,200,10 - 130,240,60\n"
                               "\n"
                               "  azimuth                       53-07-48.4\n"
                               "  zenith angle                  45-00-00.0\n"
                               "  horizontal distance              50.0000  m\n"
                               "  slope distance                   70.7107  m\n"
                               "  height difference                50.0000  m\n"}}});
    const auto options = std::make_shared<InverseOptions>();
    verb.app->add_option("A", options->from, "Point from which")->required()->type_name("POINT");
    verb.app->add_option("B", options->to, "Point to which")->required()->type_name("POINT");
    AddPointsOption(verb);
    AddAzimuthOption(verb);
    AddFigureOptions(verb);
    SetComputation(verb, options, RunInverse);
}

void AddForward(CommandLine& commandLine)
{
    Verb& verb = commandLine.AddVerb(
        {"forward",
         GROUP,
         "A new point by azimuth and distance",
         "From a known point, an azimuth, a horizontal distance and, where it is given, a height difference: the new "
         "point. A negative distance goes the opposite way. Without a height difference the new point has no height.",
         {{"A point 500 m away, 10 m higher", "qstd forward 1000,2000,50 36.8698976d 500 10",
           "Forward from 1000,2000,50, azimuth 36-52-11.6, distance 500.0000, height difference 10.0000\n"
           "\n"
           "  northing  1400.0000  m\n"
           "  easting   2300.0000  m\n"
           "  height      60.0000  m\n"}}});
    const auto options = std::make_shared<ForwardOptions>();
    verb.app->add_option("A", options->from, "Known point")->required()->type_name("POINT");
    verb.app->add_option("AZIMUTH", options->azimuth, "Azimuth to the new point")->required()->type_name("ANGLE");
    verb.app->add_option("DISTANCE", options->distance, "Horizontal distance")->required()->type_name("LENGTH");
    verb.app->add_option("DH", options->heightDifference, "New height less known height")->type_name("LENGTH");
    AddPointsOption(verb);
    AddAzimuthOption(verb);
    AddFigureOptions(verb);
    SetComputation(verb, options, RunForward);
}

void AddOffset(CommandLine& commandLine)
{
    Verb& verb = commandLine.AddVerb(
        {"offset",
         GROUP,
         "The point at a chainage along a line and an offset to its side",
         "The line runs from A towards B. A positive offset lies to the right of it, a negative one to the left; a "
         "negative chainage lies before A. The height is interpolated along the line, beyond its ends too; where only "
         "A or B has a height, that one holds everywhere.",
         {{"50 m along and 5 m to the right", "qstd offset 0,0,10 0,100,20 50 5",
           "Point along 0,0,10 - 0,100,20: chainage 50.0000, offset 5.0000 to the right\n"
           "\n"
           "  northing   -5.0000  m\n"
           "  easting    50.0000  m\n"
           "  height     15.0000  m\n"}}});
    const auto options = std::make_shared<OffsetOptions>();
    verb.app->add_option("A", options->start, "Start of the line")->required()->type_name("POINT");
    verb.app->add_option("B", options->end, "End of the line")->required()->type_name("POINT");
    verb.app->add_option("CHAINAGE", options->chainage, "Distance along the line from A")
        ->required()
        ->type_name("LENGTH");
    verb.app->add_option("OFFSET", options->offset, "Distance to the right of the line")
        ->required()
        ->type_name("LENGTH");
    AddPointsOption(verb);
    AddFigureOptions(verb);
    SetComputation(verb, [options](Inputs& inputs, Sink& sink) { RunOffset(*options, inputs, sink); });
}

void AddGrade(CommandLine& commandLine)
{
    Verb& verb =
        commandLine.AddVerb({"grade",
                             GROUP,
                             "Grade and ratio of a slope",
                             "A horizontal distance and a height difference as a grade in percent and as the n "
                             "of a slope of 1 : n. Signs carry into both.",
                             {{"A fall of 2.5 m over 50 m", "qstd grade 50 -2.5",
                               "Slope of -2.5000 over 50.0000\n"
                               "\n"
                               "  grade         -5.0000  %\n"
                               "  ratio 1 :  -20.000000\n"}}});
    const auto options = std::make_shared<GradeOptions>();
    verb.app->add_option("H", options->horizontal, "Horizontal distance")->required()->type_name("LENGTH");
    verb.app->add_option("V", options->vertical, "Height difference")->required()->type_name("LENGTH");
    SetComputation(verb, [options](Inputs& inputs, Sink& sink) { RunGrade(*options, inputs, sink); });
}

void AddArea(CommandLine& commandLine)
{
    Verb& verb = commandLine.AddVerb(
        {"area",
         GROUP,
         "Plan area of a polygon",
         "Area and perimeter of the polygon with the named corners, in their order, either way round; the first one is "
         "not repeated at the end. When none is named, all points of the table are the corners, in its order. There "
         "may be 32767 of them. Points of a table without northing and easting are left out; a named one is refused. "
         "A boundary that crosses itself has no area: the sides that cross are named. Sides may touch.",
         {{"A field with four corners", "qstd area 0,0 0,50 30,60 30,10",
           "Area 0,0 - 0,50 - 30,60 - 30,10\n"
           "\n"
           "  corners            4\n"
           "  area       1500.0000  m2\n"
           "  perimeter   163.2456  m\n"},
          {"All points of a table", "printf 'id,n,e\\n1,0,0\\n2,0,40\\n3,30,0\\n' | qstd area --points -",
           "Area 1 - 2 - 3\n"
           "\n"
           "  corners            3\n"
           "  area        600.0000  m2\n"
           "  perimeter   120.0000  m\n"}}});
    const auto options = std::make_shared<AreaOptions>();
    verb.app->add_option("CORNERS", options->corners, "Corners in order; all points of the table when none is named")
        ->type_name("POINT");
    AddPointsOption(verb);
    AddFigureOptions(verb);
    SetComputation(verb, [options, common = verb.common](Inputs& inputs, Sink& sink) {
        options->table = common->points;
        RunArea(*options, inputs, sink);
    });
}

VerbText IntersectText()
{
    return {
        "intersect",
        GROUP,
        "Where two lines, a line and a circle, or two circles meet",
        "Takes two of --line and --circle, in any combination. A line goes on beyond its points.\n\n"
        "Of a line and a circle, solution 1 has the smaller northing (the smaller easting where the line runs east "
        "or west), solution 2 the larger. Of two circles, seen from the first centre towards the second, solution 1 "
        "lies to the right, solution 2 to the left.\n\n"
        "Each solution is held against both figures. Where the library's slope and intercept lose too much, it is "
        "computed in axes along the lines, and the remark says so.",
        {{"Two distances measured from two known points", "qstd intersect --circle 0,0 5 --circle 0,8 5",
          "Intersection of circle around 0,0, radius 5.0000 and circle around 0,8, radius 5.0000\n"
          "\n"
          "  solution  position            northing  easting\n"
          "         1  right of 0,0 - 0,8   -3.0000   4.0000\n"
          "         2  left of 0,0 - 0,8     3.0000   4.0000\n"},
         {"Two azimuths from two known points", "qstd intersect --line 200,100 25d --line 250,150 310d",
          "Intersection of line 200,100 at 25-00-00.0 and line 250,150 at 310-00-00.0\n"
          "\n"
          "  solution  northing   easting\n"
          "         1  266.0939  130.8201\n"},
         {"A line by two points and a circle", "qstd intersect --line 3,0 3,10 --circle 0,0 5",
          "Intersection of line 3,0 - 3,10 and circle around 0,0, radius 5.0000\n"
          "\n"
          "  solution  position         northing  easting\n"
          "         1  smaller easting    3.0000  -4.0000\n"
          "         2  larger easting     3.0000   4.0000\n"}}};
}

void AddIntersect(CommandLine& commandLine)
{
    Verb& verb = commandLine.AddVerb(IntersectText());
    const auto options = std::make_shared<IntersectOptions>();
    verb.app->add_option("--line", options->lines, LINE_HELP)->type_name("A B|AZIMUTH")->allow_extra_args(false);
    verb.app->add_option("--circle", options->circles, "Circle around a point")
        ->type_name("CENTRE RADIUS")
        ->allow_extra_args(false);
    AddPointsOption(verb);
    AddAzimuthOption(verb);
    AddFigureOptions(verb);
    SetComputation(verb, options, RunIntersect);
}

void AddFoot(CommandLine& commandLine)
{
    Verb& verb = commandLine.AddVerb(
        {"foot",
         GROUP,
         "The foot of the perpendicular from a point to a line",
         "The foot with its height, taken from the line; the chainage of the point along the line from A and its "
         "offset, to the right where positive; distance and azimuth from the point to the foot. A point on the line "
         "has no such azimuth.\n\n"
         "The height is that of A, or of B where B alone has one, or interpolated where both have. The library "
         "interpolates along the northing; where that gives none or a wrong one, on a line that runs nearly east or "
         "west, "
         "the foot is computed in axes along the line, and the remark says so.",
         {{"A point beside a line", "qstd foot 30,45 --line 0,0,10 40,30,20",
           "Foot of 30,45 on 0,0,10 - 40,30,20\n"
           "\n"
           "  northing                 40.8000  m\n"
           "  easting                  30.6000  m\n"
           "  height                   20.2000  m\n"
           "  chainage                 51.0000  m\n"
           "  offset                   18.0000  m  to the right\n"
           "  point to foot            18.0000  m\n"
           "  azimuth to foot      306-52-11.6\n"}}});
    const auto options = std::make_shared<FootOptions>();
    verb.app->add_option("POINT", options->point, "The point")->required()->type_name("POINT");
    verb.app->add_option("--line", options->line, LINE_HELP)->required()->type_name("A B|AZIMUTH");
    AddPointsOption(verb);
    AddAzimuthOption(verb);
    AddFigureOptions(verb);
    SetComputation(verb, options, RunFoot);
}

VerbText TransferText()
{
    return {
        "transfer",
        GROUP,
        "A line turned about its first point and shifted sideways",
        "The line is first turned about A by the rotation, then shifted to the right of its new direction by the "
        "offset; a negative offset shifts it to the left.\n\n"
        "A line by azimuth is shifted by the library along an azimuth that is mostly 45.4 degrees off the right angle; "
        "the line is then handed over by a second point, and the remark says so. "
        "CSV and JSON hold in library_azimuth the library's integer as it stands, which is not brought within the "
        "circle; azimuth is the direction of the new line.",
        {{"Turned by a quarter circle, then 2 m to the right", "qstd transfer --line 0,0 10,0 --rotate 90d --offset 2",
          "Transfer of 0,0 - 10,0, turned 90-00-00.0 clockwise, shifted 2.0000 to the right\n"
          "\n"
          "  azimuth               90-00-00.0\n"
          "  first northing           -2.0000  m\n"
          "  first easting             0.0000  m\n"
          "  second northing          -2.0000  m\n"
          "  second easting           10.0000  m\n"}}};
}

void AddTransfer(CommandLine& commandLine)
{
    Verb& verb = commandLine.AddVerb(TransferText());
    const auto options = std::make_shared<TransferOptions>();
    verb.app->add_option("--line", options->line, LINE_HELP)->required()->type_name("A B|AZIMUTH");
    verb.app->add_option("--rotate", options->rotation, "Turn clockwise about A; with a minus sign, the other way")
        ->type_name("ANGLE");
    verb.app->add_option("--offset", options->offset, "Shift to the right; negative to the left")->type_name("LENGTH");
    AddPointsOption(verb);
    AddAzimuthOption(verb);
    AddFigureOptions(verb);
    SetComputation(verb, options, RunTransfer);
}

} // namespace

void AddCogoVerbs(CommandLine& commandLine)
{
    AddInverse(commandLine);
    AddForward(commandLine);
    AddOffset(commandLine);
    AddGrade(commandLine);
    AddArea(commandLine);
    AddIntersect(commandLine);
    AddFoot(commandLine);
    AddTransfer(commandLine);
}

} // namespace qstd
