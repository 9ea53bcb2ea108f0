#include "verbs/column.h"

#include "proof/judgement.h"
#include "proof/space_proof.h"
#include "text/status_name.h"
#include "verbs/plan_shapes.h"
#include "verbs/standing.h"
#include "verbs/typed_sight.h"

#include <qstdlib.h>

#include <fmt/format.h>

#include <cmath>

namespace qstd {

namespace {

constexpr double PI = 3.14159265358979323846;

struct ColumnSights
{
    ObservationRecord face = {}; /**< the distances as reduced from the slope distance */
    double faceDirection = 0.0;  /**< from north, radians */
    double leftDirection = 0.0;
    double rightDirection = 0.0;
    AngleUnit leftAzimuth = 0;
    AngleUnit leftZenith = ANGLE_QUARTER_CIRCLE;
    AngleUnit rightAzimuth = 0;
    AngleUnit rightZenith = ANGLE_QUARTER_CIRCLE;
};

struct Found
{
    int32_t status = QSTD_OK;
    SightRecord expected = {};
    PointRecord centre = {};
    double radius = 0.0;
};

Section SectionOf(const Standing& standing)
{
    Section section = {"column",
                       Layout::RECORD,
                       true,
                       {{"northing", "centre northing", Quantity::LENGTH, ""},
                        {"easting", "centre easting", Quantity::LENGTH, ""},
                        {"height", "height", Quantity::LENGTH, "where the face was sighted"},
                        {"radius", "radius", Quantity::LENGTH, ""}}};
    const std::vector<Column> expected = ExpectedColumns(standing);
    section.columns.insert(section.columns.end(), expected.begin(), expected.end());
    return section;
}

ColumnSights SightsFrom(const ColumnOptions& options, const Standing& standing, const Inputs& inputs)
{
    const TypedSight face = ParseSight(options.face, "face", SightParts::ANGLES_AND_DISTANCE, inputs);
    const TypedSight left = ParseSight(options.leftEdge, "left edge", SightParts::CIRCLE, inputs);
    const TypedSight right = ParseSight(options.rightEdge, "right edge", SightParts::CIRCLE, inputs);
    const FaceOneSight faceOne = InFaceOne(face.circle, *face.zenith);
    const double zenith = RadiansOf(faceOne.zenith);
    ColumnSights sights;
    sights.faceDirection = DirectionOfReading(standing, faceOne.circle);
    sights.face.horizontalAngle = AzimuthOfReading(standing, face.circle);
    sights.face.zenithAngle = *face.zenith;
    sights.face.distance = *face.slopeDistance;
    sights.face.secondDistance = *face.slopeDistance * std::sin(zenith);
    sights.face.thirdDistance = *face.slopeDistance * std::cos(zenith);
    sights.leftAzimuth = AzimuthOfReading(standing, left.circle);
    sights.leftZenith = left.zenith.value_or(ANGLE_QUARTER_CIRCLE);
    sights.leftDirection = DirectionOfReading(standing, InFaceOne(left.circle, sights.leftZenith).circle);
    sights.rightAzimuth = AzimuthOfReading(standing, right.circle);
    sights.rightZenith = right.zenith.value_or(ANGLE_QUARTER_CIRCLE);
    sights.rightDirection = DirectionOfReading(standing, InFaceOne(right.circle, sights.rightZenith).circle);
    return sights;
}

Found Find(const ColumnSights& sights, const Standing& standing)
{
    const InstrumentConnection connection(standing.instrument);
    const SimulatedInstrument& instrument = standing.instrument;
    Found found;
    found.centre.height = instrument.station.height + instrument.instrumentHeight + sights.face.thirdDistance;
    found.status =
        QCalcOfsCircle(&sights.face, 0.0, sights.leftAzimuth, sights.leftZenith, sights.rightAzimuth,
                       sights.rightZenith, &instrument.station, 0.0, &found.expected, &found.centre, &found.radius);
    if (found.status == QSTD_OK && !(found.radius > 0.0))
    {
        // The library notices a face outside the edges on one side of the circle only.
        found.status = QSTD_MISSING_COORDINATES;
    }
    return found;
}

std::string Remark(int32_t status)
{
    switch (status)
    {
    case QSTD_MISSING_COORDINATES:
        return "the face was sighted outside the two edges, or a sight is vertical; check the circle readings";
    case QSTD_DEGENERATE:
        return "the two edges have the same direction, or opposite ones";
    default:
        return "";
    }
}

/** From the station the circle touches both edges, and its face is where it was sighted. */
Proof Prove(const ColumnSights& sights, const Found& found, const Standing& standing)
{
    const auto direction = [](double azimuth) { return PlanVector{std::cos(azimuth), std::sin(azimuth)}; };
    Proof proof = ProveColumn(
        PlanOf(standing.instrument.station), {direction(sights.leftDirection), direction(sights.rightDirection)},
        direction(sights.faceDirection), sights.face.secondDistance, PlanOf(found.centre), found.radius);
    RequireExpected(standing, found.expected, found.centre, 0.0, proof);
    return proof;
}

Row RowOf(const ColumnSights& sights, const Found& found, const Standing& standing, const Sink& sink)
{
    Row row;
    row.status = found.status;
    row.isComputed = HasResult(found.status);
    row.remark = Remark(found.status);
    if (row.isComputed)
    {
        row.values = {standing.hasStation ? RealValue(found.centre.northing) : Value(),
                      standing.hasStation ? RealValue(found.centre.easting) : Value(),
                      standing.hasStation && standing.hasHeight ? RealValue(found.centre.height) : Value(),
                      RealValue(found.radius)};
        // Heights count from the axis here, so that the sight is known even above a station without height.
        Standing fromAxis = standing;
        fromAxis.hasHeight = true;
        const std::vector<Value> expected = ExpectedValues(fromAxis, found.expected);
        row.values.insert(row.values.end(), expected.begin(), expected.end());
        Judge(Prove(sights, found, standing), sink, row);
        QuestionFar("the far side of the column", 2.0 * found.radius, sights.face.secondDistance, sink, row);
    }
    return row;
}

FigurePlace Away(const FigurePlace& from, double azimuth, double distance)
{
    return {from.northing + distance * std::cos(azimuth), from.easting + distance * std::sin(azimuth), std::nullopt};
}

/** Where the near face was sighted. */
FigurePlace FaceOf(const ColumnSights& sights, const Standing& standing)
{
    return Away(PlaceOf(standing.instrument.station), sights.faceDirection, sights.face.secondDistance);
}

void Draw(FigureWriter& figure, const Found& found, const FigurePlace& face, const Standing& standing, const Sink& sink)
{
    FigureView view;
    view.title = "Centre of a column";
    figure.Begin(view);
    const FigurePlace station = PlaceOf(standing.instrument.station);
    const FigurePlace centre = PlaceOf(found.centre);
    figure.Add(FigureArc{centre, found.radius, 0.0, 2.0 * PI, LineRole::RESULT, ""});
    figure.Add(FigurePoint{"centre", centre, PointRole::COMPUTED});

    // The tangents from the station touch the circle where the angle at the centre is the complement of half the
    // opening.
    const double dN = station.northing - centre.northing;
    const double dE = station.easting - centre.easting;
    const double toStation = std::atan2(dE, dN);
    const double turn = std::acos(found.radius / std::hypot(dN, dE));
    const FigurePlace left = Away(centre, toStation + turn, found.radius);
    const FigurePlace right = Away(centre, toStation - turn, found.radius);
    for (const FigurePlace& edge : {left, right})
    {
        figure.Add(FigurePoint{"", edge, PointRole::SIGHTED});
    }
    figure.Add(FigurePoint{"", face, PointRole::SIGHTED});
    DrawSights(figure, standing, {left, face, right});
    figure.Note(fmt::format("radius {}", sink.LengthText(found.radius)));
}

} // namespace

void RunColumn(const ColumnOptions& options, Inputs& inputs, Sink& sink)
{
    const Standing standing = StandingFrom(options.instrument, inputs, sink.Options().unit);
    const ColumnSights sights = SightsFrom(options, standing, inputs);
    const Found found = Find(sights, standing);
    const Row row = RowOf(sights, found, standing, sink);

    sink.Title("Column from sights to its face and two edges");
    sink.Begin(SectionOf(standing));
    sink.Add(row);
    if (!row.isComputed)
    {
        return;
    }
    if (!standing.hasStation)
    {
        sink.Note("No --station given: the radius alone is known, the centre and the sight to it are left out.");
    }
    else if (FigureWriter* const figure = sink.Figure())
    {
        Draw(*figure, found, FaceOf(sights, standing), standing, sink);
    }
}

} // namespace qstd
