#include "command_line/verbs.h"
#include "verbs/column.h"
#include "verbs/corner.h"
#include "verbs/edge.h"
#include "verbs/remote_distance.h"
#include "verbs/remote_elevation.h"
#include "verbs/rod.h"
#include "verbs/slope.h"

#include <CLI/CLI.hpp>

namespace qstd {

namespace {

const char* const GROUP = "Measurement";

/** A point that is known or measured. */
const char* const MEASURED = "POINT|HZ,V,SD";

const char* const MEASURED_POINTS =
    "A point is a name of --points, coordinates N,E or N,E,H or, with --station and --orientation, a sight HZ,V,SD: "
    "circle reading, zenith reading and slope distance, the angles in a form that says itself, such as "
    "123-45-10,88-30-00,25.480. With --station and --angle three plain numbers could be either and are refused; "
    "N=10,E=99,H=30 are coordinates.";

void AddTargetHeight(Verb& verb, std::string& targetHeight, const std::string& help)
{
    verb.app->add_option("--target-height", targetHeight, help)->type_name("HEIGHT");
}

void AddRem(CommandLine& commandLine)
{
    Verb& verb = commandLine.AddVerb(
        {"rem",
         GROUP,
         "Heights of overhead points above a base",
         "Remote elevation: a reflector is held on a base straight below a cable or a roof edge and measured; then the "
         "telescope is turned up, and circle and zenith readings alone give the height above the base and the offset "
         "to the side.\n\n"
         "The base is a sight HZ,V,SD or, with --station and --orientation, a point with a height, that the instrument "
         "would sight from there. Heights count from the base; with --target-height from the ground below its "
         "reflector. Every height is that at the horizontal distance of the base, also where the sight is turned to "
         "the side; a warning then says by how much the height at the offset differs. Where the station or the base "
         "has a height, the heights of the points are given too. There is no "
         "figure of them.",
         {{"A cable above a reflector 1.6 m above the ground, 40 m away",
           "qstd rem 10-00-00,90-00-00,40 10-00-00,80-00-00 --target-height 1.6",
           "Remote elevation above 10-00-00,90-00-00,40\n"
           "\n"
           "  circle reading      10-00-00.0\n"
           "  zenith angle        80-00-00.0\n"
           "  above base              8.6531  m\n"
           "  offset                  0.0000  m\n"}}});
    const auto options = std::make_shared<RemoteElevationOptions>();
    verb.app->add_option("BASE", options->base, "Sight to the base; with --station, a point")
        ->required()
        ->type_name("HZ,V,SD|POINT");
    verb.app->add_option("SIGHTS", options->sights, "Sights to the points above it")->type_name("HZ,V");
    verb.app->add_option("--sights", options->table, "Table of sights: target hz v [station]; - is standard input")
        ->type_name("FILE");
    AddTargetHeight(verb, options->targetHeight, "Reflector above the base; 0 when not given");
    AddPointsOption(verb);
    AddAzimuthOption(verb);
    AddStandingOptions(verb);
    SetComputation(verb, options, RunRemoteElevation);
}

void AddDistance(CommandLine& commandLine)
{
    Verb& verb = commandLine.AddVerb(
        {"distance",
         GROUP,
         "Distances and azimuths between measured points",
         std::string("Remote distance: from each point to the next, or with --radial from the first to all others: "
                     "azimuth, horizontal distance and, where both have a height, slope distance and height "
                     "difference.\n\n") +
             MEASURED_POINTS,
         {{"Between two targets sighted from one station",
           "qstd distance 0-00-00,90-00-00,30 90-00-00,90-00-00,40 --station 100,200,10",
           "Distance 0-00-00,90-00-00,30 - 90-00-00,90-00-00,40\n"
           "\n"
           "  from                 0-00-00,90-00-00,30\n"
           "  to                   90-00-00,90-00-00,40\n"
           "  azimuth                      126-52-11.6\n"
           "  horizontal distance              50.0000  m\n"
           "  slope distance                   50.0000  m\n"
           "  height difference                 0.0000  m\n"},
          {"Along three points", "qstd distance 0,0,5 30,40,5 30,100,7.5",
           "Distances from each point to the next\n"
           "\n"
           "  from     to             azimuth  horizontal    slope  height diff.\n"
           "  0,0,5    30,40,5     53-07-48.4     50.0000  50.0000        0.0000\n"
           "  30,40,5  30,100,7.5  90-00-00.0     60.0000  60.0521        2.5000\n"}}});
    const auto options = std::make_shared<RemoteDistanceOptions>();
    verb.app->add_option("POINTS", options->points, "Points in order")->required()->type_name(MEASURED);
    verb.app->add_flag("--radial", options->isRadial, "From the first point to all others");
    AddTargetHeight(verb, options->targetHeight, "Reflector above each sighted point; 0 when not given");
    AddPointsOption(verb);
    AddAzimuthOption(verb);
    AddStandingOptions(verb);
    AddFigureOptions(verb);
    SetComputation(verb, options, RunRemoteDistance);
}

void AddRod(CommandLine& commandLine)
{
    Verb& verb = commandLine.AddVerb(
        {"rod",
         GROUP,
         "A hidden point at the end of a rod with two prisms",
         std::string("Two-point target: the tip of a rod stands on a point that cannot be sighted, say in a manhole; "
                     "both prisms of the rod are measured. FAR is the prism farther from the tip, NEAR the other, "
                     "--extension the length from NEAR to the tip. The rod may stand at any slant.\n\n"
                     "With --spacing, the nominal distance between the prisms, the prolongation is taken in units of "
                     "it: a measured spacing that differs stretches the prolongation in proportion. The difference is "
                     "part of the result; millimetres are usual, more tells of a wrong sight.\n\n") +
             MEASURED_POINTS,
         {{"A tip 0.5 m beyond the nearer of two prisms", "qstd rod 100,200,11.5 100.3,200.4,11 --extension 0.5",
           "Hidden point 0.5000 beyond 100.3,200.4,11 from 100,200,11.5\n"
           "\n"
           "  northing                  100.5121  m\n"
           "  easting                   200.6828  m\n"
           "  height                     10.6464  m\n"
           "  measured spacing            0.7071  m  of the prisms\n"}}});
    const auto options = std::make_shared<RodOptions>();
    verb.app->add_option("FAR", options->far, "Prism farther from the tip")->required()->type_name(MEASURED);
    verb.app->add_option("NEAR", options->near, "Prism nearer to it")->required()->type_name(MEASURED);
    verb.app->add_option("--extension", options->extension, "From the near prism to the tip")
        ->required()
        ->type_name("LENGTH");
    verb.app
        ->add_option("--spacing", options->spacing, "Nominal distance of the prisms; as measured when not given, or 0")
        ->type_name("LENGTH");
    AddPointsOption(verb);
    AddAzimuthOption(verb);
    AddStandingOptions(verb);
    AddFigureOptions(verb);
    SetComputation(verb, options, RunRod);
}

void AddSlope(CommandLine& commandLine)
{
    Verb& verb = commandLine.AddVerb(
        {"slope",
         GROUP,
         "Measured points against a design slope",
         std::string("Slope reference: how far measured points lie beyond and above a design slope, such as the batter "
                     "beside a centre-line point. The slope is straight in the section through BASE and the measured "
                     "point; --design gives two of its points, each as horizontal distance from the base and height. "
                     "Distances with a minus sign name the other side of the base; of a measured point only the "
                     "distance from the base counts.\n\n"
                     "beyond_slope is horizontal, positive away from the base; above_slope is vertical.\n\n") +
             MEASURED_POINTS,
         {{"A slope that falls from height 10 by 1 in 2, and a point 2 m from the base",
           "qstd slope 100,200 100,202,9.5 --design 0,10 4,8",
           "Slope from base 100,200\n"
           "\n"
           "  distance from base              2.0000  m\n"
           "  beyond slope                    1.0000  m  away from the base\n"
           "  above slope                     0.5000  m  cut down to the slope\n"}}});
    const auto options = std::make_shared<SlopeOptions>();
    verb.app->add_option("BASE", options->base, "Point from which distances count")->required()->type_name(MEASURED);
    verb.app->add_option("POINTS", options->points, "Measured points")->type_name(MEASURED);
    verb.app->add_option("--design", options->design, "Two points of the slope")
        ->required()
        ->expected(2)
        ->type_name("DISTANCE,HEIGHT");
    verb.app->add_option("--list", options->list, "Table of measured points: id n e h; - is standard input")
        ->type_name("FILE");
    AddTargetHeight(verb, options->targetHeight, "Reflector above each sighted point; 0 when not given");
    AddPointsOption(verb);
    AddAzimuthOption(verb);
    AddStandingOptions(verb);
    AddFigureOptions(verb);
    SetComputation(verb, options, RunSlope);
}

void AddCorner(CommandLine& commandLine)
{
    Verb& verb = commandLine.AddVerb(
        {"corner",
         GROUP,
         "The hidden corner of a building, from points on its walls",
         std::string(
             "Finds a corner that no reflector can be held on. Measure two points on one wall; then, where the walls "
             "meet at a right angle, one point on the other wall (three points in all), or, where they meet at "
             "any other angle, two points on the other wall (four points). The corner has the height of the "
             "last point.\n\n") +
             MEASURED_POINTS +
             "\n\nWith --station the sight is given, too, that the instrument will read to the corner (to a reflector "
             "--target-height above it), in the face that it is in.",
         {{"From sights: two points on the first wall, one on the second",
           "qstd corner 288-26-05.8,90-00-00,31.6228 292-37-11.5,90-00-00,26 315-00-00,90-00-00,28.2843 --station "
           "100,240,10",
           "Corner of two walls at a right angle, from three points\n"
           "\n"
           "  northing              110.0000  m\n"
           "  easting               220.0000  m\n"
           "  height                 10.0000  m  of the last point\n"
           "  circle reading     296-33-54.0  expected, face one\n"
           "  zenith angle        90-00-00.0  expected, face one\n"
           "  slope distance         22.3607  m  expected\n"},
          {"Walls at any angle, from coordinates", "qstd corner 0,0,5 0,8,5 20,30,5.2 10,20,5.2",
           "Corner of two walls, from four points\n"
           "\n"
           "  northing    0.0000  m\n"
           "  easting    10.0000  m\n"
           "  height      5.2000  m  of the last point\n"
           "\n"
           "No --station given: where the telescope has to point for the corner is left out.\n"}}});
    const auto options = std::make_shared<CornerOptions>();
    verb.app->add_option("POINTS", options->points, "Two points on the first wall, then one or two on the second")
        ->required()
        ->type_name(MEASURED);
    AddTargetHeight(verb, options->targetHeight,
                    "Reflector above each sighted point, and above the corner; 0 when not given");
    AddPointsOption(verb);
    AddAzimuthOption(verb);
    AddStandingOptions(verb);
    AddFaceOption(verb);
    AddFigureOptions(verb);
    SetComputation(verb, options, RunCorner);
}

void AddEdge(CommandLine& commandLine)
{
    Verb& verb = commandLine.AddVerb(
        {"edge",
         GROUP,
         "Points of a straight edge, each from a sight without distance",
         std::string("Line offset by angle: A and B lie on a straight edge, a pipe or a cable. The telescope is turned "
                     "to a place on it; its circle reading says where along the edge, and the edge itself gives the "
                     "height. The zenith reading tells only the face and that the sight is not vertical. A point "
                     "beyond A or B lies on the prolongation.\n\n"
                     "The sight given with each point is the one that the instrument will read to it: where its zenith "
                     "angle differs from the one measured, the telescope did not point at the edge.\n\n") +
             MEASURED_POINTS,
         {{"A point of a roof edge that rises from 15 to 20 over 10 m",
           "qstd edge 0,0,15 10,0,20 270-00-00,60-00-00 --station 5,10,10",
           "Point of the edge 0,0,15 - 10,0,20, seen from 5,10,10\n"
           "\n"
           "  northing                5.0000  m\n"
           "  easting                 0.0000  m\n"
           "  height                 17.5000  m\n"
           "  circle reading     270-00-00.0  expected, face one\n"
           "  zenith angle        53-07-48.4  expected, face one\n"
           "  slope distance         12.5000  m  expected\n"}}});
    const auto options = std::make_shared<EdgeOptions>();
    verb.app->add_option("A", options->first, "Point of the edge")->required()->type_name(MEASURED);
    verb.app->add_option("B", options->second, "Another one")->required()->type_name(MEASURED);
    verb.app->add_option("SIGHTS", options->sights, "Sights to places on the edge")->type_name("HZ,V");
    verb.app->add_option("--sights", options->table, "Table of sights: target hz v [station]; - is standard input")
        ->type_name("FILE");
    AddPointsOption(verb);
    AddAzimuthOption(verb);
    AddStandingOptions(verb);
    AddFaceOption(verb);
    AddFigureOptions(verb);
    SetComputation(verb, options, RunEdge);
}

void AddColumn(CommandLine& commandLine)
{
    Verb& verb = commandLine.AddVerb(
        {"column",
         GROUP,
         "Centre and radius of a column, from sights to its face and edges",
         "Circle offset: of a column, a tree or a tank measure the distance to the near face, FACE, then sight its "
         "left and its right edge without distance. The edges may come in either order, and without zenith reading "
         "when in face one.\n\n"
         "With --station and --orientation the result is the centre, and the sight that the instrument will read to "
         "it; without, the radius alone. The height is that of the place where the face was sighted.",
         {{"A column of radius 1 m, its near face 10 m away",
           "qstd column 0-00-00,90-00-00,10 354-47-00,90-00-00 5-13-00,90-00-00 --station 100,200,5",
           "Column from sights to its face and two edges\n"
           "\n"
           "  centre northing         111.0002  m\n"
           "  centre easting          200.0000  m\n"
           "  height                    5.0000  m  where the face was sighted\n"
           "  radius                    1.0002  m\n"
           "  circle reading         0-00-00.0  expected, face one\n"
           "  zenith angle          90-00-00.0  expected, face one\n"
           "  slope distance           11.0002  m  expected\n"}}});
    const auto options = std::make_shared<ColumnOptions>();
    verb.app->add_option("FACE", options->face, "Sight to the near face")->required()->type_name("HZ,V,SD");
    verb.app->add_option("LEFT", options->leftEdge, "Sight to one edge")->required()->type_name("HZ[,V]");
    verb.app->add_option("RIGHT", options->rightEdge, "Sight to the other edge")->required()->type_name("HZ[,V]");
    AddPointsOption(verb);
    AddAzimuthOption(verb);
    AddStandingOptions(verb);
    AddFaceOption(verb);
    AddFigureOptions(verb);
    SetComputation(verb, options, RunColumn);
}

} // namespace

void AddMeasureVerbs(CommandLine& commandLine)
{
    AddRem(commandLine);
    AddDistance(commandLine);
    AddRod(commandLine);
    AddSlope(commandLine);
    AddCorner(commandLine);
    AddEdge(commandLine);
    AddColumn(commandLine);
}

} // namespace qstd
