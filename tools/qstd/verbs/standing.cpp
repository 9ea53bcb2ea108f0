#include "verbs/standing.h"

#include "input/row_reader.h"
#include "text/outcome.h"
#include "text/text.h"
#include "verbs/plan_shapes.h"
#include "verbs/typed_sight.h"

#include <fmt/format.h>

#include <cmath>

namespace qstd {

namespace {

/** The polar point of a sight, by the library's forward computation. */
PointRecord PolarPoint(const TypedSight& sight, const Standing& standing, double targetHeight)
{
    const InstrumentConnection connection(standing.instrument);
    const FaceOneSight faceOne = InFaceOne(sight.circle, *sight.zenith);
    const double zenith = RadiansOf(faceOne.zenith);
    AngDistRecord polar{};
    polar.azimuth = AzimuthOfReading(standing, faceOne.circle);
    polar.horizontalDistance = *sight.slopeDistance * std::sin(zenith);
    polar.heightDifference =
        standing.instrument.instrumentHeight + *sight.slopeDistance * std::cos(zenith) - targetHeight;
    PointRecord point{};
    // The only refusal is a station without coordinates, which StandingFrom does not let pass.
    static_cast<void>(QCogoAngDistToCoord(&standing.instrument.station, &polar, &point));
    return point;
}

} // namespace

Standing StandingFrom(const InstrumentOptions& options, Inputs& inputs, LinearUnit unit)
{
    Standing standing;
    standing.instrument = InstrumentFrom(options, unit);
    if (!(std::fabs(options.instrumentHeight) <= LONGEST_LENGTH))
    {
        throw WrongUse("--instrument-height: write a length such as 1.500");
    }
    if (options.station.empty())
    {
        if (!options.orientation.empty())
        {
            throw WrongUse("--orientation does nothing without --station; give the point where the instrument stands");
        }
        return standing;
    }
    const KnownPoint station = inputs.Point(options.station);
    if (!HasPlan(station))
    {
        throw WrongUse(fmt::format("--station {}: has no northing and easting", Quoted(station.id)));
    }
    standing.name = station.id;
    standing.hasStation = true;
    standing.hasHeight = HasHeight(station);
    standing.instrument.station = station.point;
    standing.instrument.orientation =
        options.orientation.empty() ? 0 : inputs.Angle(options.orientation, "--orientation");
    return standing;
}

void RequireStation(const Standing& standing, const std::string& why)
{
    if (!standing.hasStation)
    {
        throw WrongUse(
            fmt::format("give --station, the point where the instrument stands, and --orientation: {}", why));
    }
}

void RequireOwnSights(const SightList& sights, const std::string& station)
{
    if (sights.IsOfOtherStations())
    {
        throw WrongUse(
            fmt::format("--sights: all of other stations than {}; name that of the table with --station, or leave its "
                        "column station out",
                        station.empty() ? "none" : Quoted(station)));
    }
}

AngleUnit AzimuthOfReading(const Standing& standing, AngleUnit circle)
{
    return WithinCircle(circle + standing.instrument.orientation);
}

double DirectionOfReading(const Standing& standing, AngleUnit circle)
{
    const AngleUnit southTurn = standing.instrument.azimuthReference == 1 ? ANGLE_HALF_CIRCLE : 0;
    return RadiansOf(WithinCircle(AzimuthOfReading(standing, circle) + southTurn));
}

bool IsBehind(const PointRecord& station, double direction, const PointRecord& point)
{
    return (point.northing - station.northing) * std::cos(direction) +
               (point.easting - station.easting) * std::sin(direction) <
           0.0;
}

KnownPoint MeasuredPoint(const std::string& text, const Standing& standing, double targetHeight, Inputs& inputs)
{
    const bool isName = inputs.Points().Find(text) != nullptr;
    if (isName || !LooksLikeSight(text))
    {
        // Without a station there are no sights.
        if (!isName && standing.hasStation)
        {
            RequireOneMeaning(text, inputs);
        }
        return inputs.Point(text);
    }
    const TypedSight sight = ParseSight(text, "measured point", SightParts::ANGLES_AND_DISTANCE, inputs);
    RequireStation(standing, fmt::format("{} is a sight from there", Quoted(text)));
    KnownPoint point;
    point.id = text;
    point.point = PolarPoint(sight, standing, targetHeight);
    return point;
}

bool HasPlan(const KnownPoint& point)
{
    return (point.point.flags & POINT_HAS_PLAN) != 0;
}

bool HasHeight(const KnownPoint& point)
{
    return (point.point.flags & POINT_HAS_HEIGHT) != 0;
}

SpaceSight ProvenSight(const Standing& standing, AngleUnit circle, AngleUnit zenith)
{
    const FaceOneSight faceOne = InFaceOne(circle, zenith);
    SpaceSight sight;
    sight.axis = SpaceOf(standing.instrument.station);
    sight.axis[2] += standing.instrument.instrumentHeight;
    const double direction = DirectionOfReading(standing, faceOne.circle);
    sight.direction = {std::cos(direction), std::sin(direction)};
    sight.zenith = RadiansOf(faceOne.zenith);
    return sight;
}

void RequireExpected(const Standing& standing, const SightRecord& sight, const PointRecord& target, double targetHeight,
                     Proof& proof)
{
    if (!standing.hasStation || sight.distance == 0.0)
    {
        return;
    }
    PointRecord prism = target;
    prism.height += targetHeight;
    RequireExpectedSight(ProvenSight(standing, sight.horizontalAngle, sight.zenithAngle), sight.distance,
                         standing.hasHeight, prism, proof);
}

double ExtentOf(const std::vector<PointRecord>& points, const Standing& standing)
{
    std::vector<PlanVector> places;
    places.reserve(points.size() + 1);
    for (const PointRecord& point : points)
    {
        places.push_back(PlanOf(point));
    }
    if (standing.hasStation)
    {
        places.push_back(PlanOf(standing.instrument.station));
    }
    double extent = 0.0;
    for (const PlanVector& one : places)
    {
        for (const PlanVector& other : places)
        {
            extent = std::fmax(extent, Length(other - one));
        }
    }
    return extent;
}

std::vector<Column> ExpectedColumns(const Standing& standing)
{
    const std::string note = standing.instrument.isFaceTwo ? "expected, face two" : "expected, face one";
    return {{"circle_reading", "circle reading", Quantity::ANGLE, note},
            {"zenith", "zenith angle", Quantity::ANGLE, note},
            {"slope_distance", "slope distance", Quantity::LENGTH, "expected"}};
}

std::vector<Value> ExpectedValues(const Standing& standing, const SightRecord& sight)
{
    if (!standing.hasStation || sight.distance == 0.0)
    {
        return {Value(), Value(), Value()};
    }
    if (!standing.hasHeight)
    {
        return {AngleOf(sight.horizontalAngle), Value(), Value()};
    }
    return {AngleOf(sight.horizontalAngle), AngleOf(sight.zenithAngle), RealValue(sight.distance)};
}

void NoteMissingStation(const Standing& standing, const std::string& what, Sink& sink)
{
    if (!standing.hasStation)
    {
        sink.Note(fmt::format("No --station given: where the telescope has to point for {} is left out.", what));
    }
    else if (!standing.hasHeight)
    {
        sink.Note(fmt::format("Station {} has no height: of the sight to {} only the circle reading is known.",
                              standing.name, what));
    }
}

std::string SideOf(const Sink& sink, double value, const std::string& above, const std::string& below)
{
    if (sink.LengthText(value) == sink.LengthText(0.0))
    {
        return "";
    }
    return value > 0.0 ? above : below;
}

std::string FigureName(const KnownPoint& point, const std::string& letter)
{
    return point.id.find(',') == std::string::npos ? point.id : letter;
}

void DrawSights(FigureWriter& figure, const Standing& standing, const std::vector<FigurePlace>& targets)
{
    if (!standing.hasStation)
    {
        return;
    }
    const FigurePlace station = PlaceOf(standing.instrument.station);
    for (const FigurePlace& target : targets)
    {
        figure.Add(FigureLine{station, target, LineRole::SIGHT, ""});
    }
    const std::string name = standing.name.find(',') == std::string::npos ? standing.name : "station";
    figure.Add(FigurePoint{name, station, PointRole::STATION});
}

} // namespace qstd
