#include "verbs/edge.h"

#include "proof/judgement.h"
#include "proof/space_proof.h"
#include "text/outcome.h"
#include "text/status_name.h"
#include "verbs/plan_shapes.h"
#include "verbs/sight_list.h"
#include "verbs/standing.h"
#include "verbs/typed_sight.h"

#include <qstdlib.h>

#include <fmt/format.h>

#include <cmath>

namespace qstd {

namespace {

struct Edge
{
    KnownPoint first;
    KnownPoint second;
};

/** What a sight gives: a point of the edge, and where the sight itself meets the vertical plane through it. */
struct Found
{
    int32_t status = QSTD_OK;
    std::string remark;
    SightRecord expected = {};
    PointRecord target = {};
    PointRecord onPlane = {};
};

Section SectionOf(bool isSingle, const Standing& standing)
{
    Section section = {"edge_point",
                       isSingle ? Layout::RECORD : Layout::TABLE,
                       true,
                       {{"target", isSingle ? "" : "target", Quantity::TEXT, ""},
                        {"northing", "northing", Quantity::LENGTH, ""},
                        {"easting", "easting", Quantity::LENGTH, ""},
                        {"height", "height", Quantity::LENGTH, ""}}};
    const std::vector<Column> expected = ExpectedColumns(standing);
    section.columns.insert(section.columns.end(), expected.begin(), expected.end());
    return section;
}

std::string Remark(int32_t status)
{
    switch (status)
    {
    case QSTD_COINCIDENT_POINTS:
        return "the points of the edge have the same northing and easting";
    case QSTD_DEGENERATE:
        return "the instrument stands in the vertical plane through the edge; set it up to the side";
    case QSTD_REJECTED:
        return "there is no sight to the point of the edge";
    default:
        return "";
    }
}

/** The library tells a sight that misses the plane only by the plane's own point. */
void CheckPlane(const AngleSight& sight, const Standing& standing, Found& found)
{
    double along = 0.0;
    double above = 0.0;
    static_cast<void>(QREFCalc2PtPlane(AzimuthOfReading(standing, sight.circle), sight.zenith,
                                       &standing.instrument.station, standing.instrument.instrumentHeight,
                                       &found.onPlane, &along, &above));
    if (found.onPlane.northing == UNDEFINED_REAL)
    {
        found.status = QSTD_DEGENERATE;
        found.remark = "the sight is vertical or runs parallel to the edge, and meets it nowhere";
        return;
    }
    const FaceOneSight faceOne = InFaceOne(sight.circle, sight.zenith);
    if (IsBehind(standing.instrument.station, DirectionOfReading(standing, faceOne.circle), found.target))
    {
        found.remark = "the point lies behind the instrument; check the circle reading and the orientation";
    }
}

Proof Prove(const Edge& edge, const AngleSight& sight, const Standing& standing, const Found& found)
{
    Proof proof =
        ProveEdge(edge.first.point, edge.second.point, ProvenSight(standing, sight.circle, sight.zenith), found.target);
    RequireExpected(standing, found.expected, found.target, 0.0, proof);
    return proof;
}

Found Find(const Edge& edge, const AngleSight& sight, const Standing& standing)
{
    Found found;
    // Of the first point the library takes the height as it stands, known or not.
    for (const KnownPoint& point : {edge.first, edge.second})
    {
        if (!HasPlan(point) || !HasHeight(point))
        {
            found.status = QSTD_MISSING_COORDINATES;
            found.remark = fmt::format("{} needs northing, easting and height", point.id);
            return found;
        }
    }
    found.status = QCalcOfsLineHA(&edge.first.point, &edge.second.point, AzimuthOfReading(standing, sight.circle),
                                  sight.zenith, &standing.instrument.station, standing.instrument.instrumentHeight,
                                  &found.expected, &found.target, 0.0);
    found.remark = Remark(found.status);
    if (HasResult(found.status))
    {
        CheckPlane(sight, standing, found);
    }
    return found;
}

Row RowOf(const Edge& edge, const AngleSight& sight, const Found& found, const Standing& standing, const Sink& sink)
{
    Row row;
    row.status = found.status;
    row.isComputed = HasResult(found.status);
    row.remark = found.remark;
    row.values = {sight.target};
    if (row.isComputed)
    {
        row.values.insert(row.values.end(), {RealValue(found.target.northing), RealValue(found.target.easting),
                                             RealValue(found.target.height)});
        const std::vector<Value> expected = ExpectedValues(standing, found.expected);
        row.values.insert(row.values.end(), expected.begin(), expected.end());
        Judge(Prove(edge, sight, standing, found), sink, row);
        QuestionFar("the point", PlanDistance(edge.first.point, found.target),
                    ExtentOf({edge.first.point, edge.second.point}, standing), sink, row);
    }
    return row;
}

/** Seen at a right angle to the edge. */
void BeginFigure(FigureWriter& figure, const Edge& edge)
{
    const PointRecord& first = edge.first.point;
    const PointRecord& second = edge.second.point;
    FigureView view;
    view.kind = FigureView::Kind::ELEVATION;
    view.title = "Points of an edge";
    view.origin = PlaceOf(first);
    view.azimuth = std::atan2(second.easting - first.easting, second.northing - first.northing);
    figure.Begin(view);
    figure.Add(FigureLine{PlaceOf(first), PlaceOf(second), LineRole::REFERENCE, "edge"});
    figure.Add(FigurePoint{FigureName(edge.first, "A"), PlaceOf(first), PointRole::GIVEN});
    figure.Add(FigurePoint{FigureName(edge.second, "B"), PlaceOf(second), PointRole::GIVEN});
}

void DrawFound(FigureWriter& figure, const std::string& name, const Found& found, const Edge& edge,
               const Standing& standing)
{
    const FigurePlace target = PlaceOf(found.target);
    const PointRecord& first = edge.first.point;
    const PointRecord& second = edge.second.point;
    // The share of the edge at which the target lies; outside 0 to 1 the edge is prolonged.
    const double dN = second.northing - first.northing;
    const double dE = second.easting - first.easting;
    const double share =
        ((target.northing - first.northing) * dN + (target.easting - first.easting) * dE) / (dN * dN + dE * dE);
    if (share < 0.0 || share > 1.0)
    {
        figure.Add(FigureLine{PlaceOf(share < 0.0 ? first : second), target, LineRole::CONSTRUCTION, ""});
    }
    if (standing.hasHeight)
    {
        figure.Add(FigureLine{target, PlaceOf(found.onPlane), LineRole::OFFSET, ""});
        figure.Add(FigurePoint{"", PlaceOf(found.onPlane), PointRole::SIGHTED});
    }
    figure.Add(FigurePoint{name, target, PointRole::COMPUTED});
}

} // namespace

void RunEdge(const EdgeOptions& options, Inputs& inputs, Sink& sink)
{
    if (options.sights.empty() && options.table.empty())
    {
        throw WrongUse("nothing is sighted; give sights HZ,V such as 123-45-10,88-30-00, or --sights FILE");
    }
    const Standing standing = StandingFrom(options.instrument, inputs, sink.Options().unit);
    RequireStation(standing, "a sight to the edge meets it where the instrument looks from there");
    const InstrumentConnection connection(standing.instrument);
    const Edge edge = {MeasuredPoint(options.first, standing, 0.0, inputs),
                       MeasuredPoint(options.second, standing, 0.0, inputs)};
    FigureWriter* const figure = sink.Figure();
    bool hasFigureBegun = false;
    const bool isSingle = options.table.empty() && options.sights.size() == 1;

    sink.Title(fmt::format("{} of the edge {} - {}, seen from {}", isSingle ? "Point" : "Points", edge.first.id,
                           edge.second.id, standing.name));
    sink.Begin(SectionOf(isSingle, standing));
    SightList sights(options.table, options.sights, options.instrument.station, inputs);
    AngleSight sight;
    for (size_t count = 1; sights.Next(sight); ++count)
    {
        const Found found = Find(edge, sight, standing);
        sink.Add(RowOf(edge, sight, found, standing, sink));
        if (figure != nullptr && HasResult(found.status))
        {
            if (!hasFigureBegun)
            {
                BeginFigure(*figure, edge);
                hasFigureBegun = true;
            }
            // A sight that was typed has no name; its number is shorter than its text.
            const bool isTyped = sight.target.find(',') != std::string::npos;
            DrawFound(*figure, isTyped ? std::to_string(count) : sight.target, found, edge, standing);
        }
    }
    RequireOwnSights(sights, options.instrument.station);
    if (hasFigureBegun && standing.hasHeight)
    {
        figure->Note("crosses: where the sights meet the vertical plane through the edge");
    }
    NoteMissingStation(standing, "the point of the edge", sink);
}

} // namespace qstd
