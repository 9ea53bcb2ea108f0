#include "verbs/corner.h"

#include "proof/judgement.h"
#include "proof/space_proof.h"
#include "text/outcome.h"
#include "text/status_name.h"
#include "verbs/arguments.h"
#include "verbs/plan_shapes.h"
#include "verbs/standing.h"
#include "verbs/typed_sight.h"

#include <qstdlib.h>

#include <fmt/format.h>

#include <algorithm>

namespace qstd {

namespace {

constexpr size_t RIGHT_ANGLE_POINTS = 3;
constexpr size_t TWO_WALLS_POINTS = 4;

/** Share of a wall's length that is not drawn. */
constexpr double SAME_PLACE = 1e-6;

struct Corner
{
    int32_t status = QSTD_OK;
    SightRecord sight = {};
    PointRecord point = {};
    std::string remark;
};

Section SectionOf(const Standing& standing)
{
    Section section = {"corner",
                       Layout::RECORD,
                       true,
                       {{"northing", "northing", Quantity::LENGTH, ""},
                        {"easting", "easting", Quantity::LENGTH, ""},
                        {"height", "height", Quantity::LENGTH, "of the last point"}}};
    const std::vector<Column> expected = ExpectedColumns(standing);
    section.columns.insert(section.columns.end(), expected.begin(), expected.end());
    return section;
}

Corner Compute(const std::vector<KnownPoint>& points, double targetHeight, const SimulatedInstrument& instrument)
{
    const InstrumentConnection connection(instrument);
    Corner corner;
    if (points.size() == RIGHT_ANGLE_POINTS)
    {
        corner.status = QCalcOfsCorner3Pt(&points[0].point, &points[1].point, &points[2].point, 0.0, &corner.sight,
                                          &corner.point, targetHeight);
    }
    else
    {
        corner.status = QCalcOfsCorner4Pt(&points[0].point, &points[1].point, &points[2].point, &points[3].point, 0.0,
                                          &corner.sight, &corner.point, targetHeight);
    }
    return corner;
}

/** Without a station, or where the instrument stands in the corner, the corner is handed over from a metre above. */
Corner ComputeFromAbove(const std::vector<KnownPoint>& points, const SimulatedInstrument& instrument)
{
    SimulatedInstrument above = instrument;
    above.station = {0.0, 0.0, points.back().point.height + 1.0, POINT_HAS_PLAN | POINT_HAS_HEIGHT};
    above.instrumentHeight = 0.0;
    Corner corner = Compute(points, 0.0, above);
    if (corner.status == QSTD_OK && corner.sight.distance == 0.0)
    {
        corner.status = QSTD_DEGENERATE;
        corner.remark = "the walls are so nearly parallel that the corner is beyond all numbers";
    }
    corner.sight = {};
    return corner;
}

std::string Remark(const std::vector<KnownPoint>& points, int32_t status)
{
    switch (status)
    {
    case QSTD_COINCIDENT_POINTS:
        return "two points of a wall are at the same place";
    case QSTD_DEGENERATE:
        return "the walls are parallel, or two points of a wall are at the same place";
    case QSTD_MISSING_COORDINATES:
        return fmt::format("{}, the last point, gives the corner its height and has none; give N,E,H",
                           points.back().id);
    default:
        return "";
    }
}

Corner CornerOf(const std::vector<KnownPoint>& points, double targetHeight, const Standing& standing)
{
    // The library does not look at the flags of the other points.
    const auto bare =
        std::find_if(points.begin(), points.end(), [](const KnownPoint& point) { return !HasPlan(point); });
    if (bare != points.end())
    {
        Corner corner;
        corner.status = QSTD_MISSING_COORDINATES;
        corner.remark = fmt::format("{} has no northing and easting", bare->id);
        return corner;
    }
    Corner corner = standing.hasStation ? Compute(points, targetHeight, standing.instrument) : Corner();
    if (corner.status == QSTD_OK && corner.sight.distance == 0.0)
    {
        corner = ComputeFromAbove(points, standing.instrument);
    }
    if (corner.remark.empty())
    {
        corner.remark = Remark(points, corner.status);
    }
    return corner;
}

/** On the walls, and seen under the sight that is told. */
void JudgeCorner(const std::vector<KnownPoint>& points, const Corner& corner, double targetHeight,
                 const Standing& standing, const Sink& sink, Row& row)
{
    std::vector<PointRecord> records;
    records.reserve(points.size());
    for (const KnownPoint& point : points)
    {
        records.push_back(point.point);
    }
    Proof proof = points.size() == RIGHT_ANGLE_POINTS
                      ? ProveCorner(records[0], records[1], records[2], corner.point)
                      : ProveCorner({records[0], records[1], records[2], records[3]}, corner.point);
    proof.Require("the height is not that of the last point, by", corner.point.height - records.back().height,
                  RoundingOf(std::fabs(corner.point.height)));
    RequireExpected(standing, corner.sight, corner.point, targetHeight, proof);
    Judge(proof, sink, row);
    QuestionFar("the corner", PlanDistance(records.front(), corner.point), ExtentOf(records, standing), sink, row);
}

void DrawWall(FigureWriter& figure, const KnownPoint& from, const KnownPoint* to, const FigurePlace& corner)
{
    const FigurePlace first = PlaceOf(from.point);
    if (to == nullptr)
    {
        figure.Add(FigureLine{first, corner, LineRole::REFERENCE, ""});
        return;
    }
    const FigurePlace second = PlaceOf(to->point);
    figure.Add(FigureLine{first, second, LineRole::REFERENCE, ""});
    // The wall is prolonged from its nearer point, unless the corner lies on it.
    const double dN = second.northing - first.northing;
    const double dE = second.easting - first.easting;
    const double share =
        ((corner.northing - first.northing) * dN + (corner.easting - first.easting) * dE) / (dN * dN + dE * dE);
    if (share < -SAME_PLACE || share > 1.0 + SAME_PLACE)
    {
        figure.Add(FigureLine{share < 0.0 ? first : second, corner, LineRole::CONSTRUCTION, ""});
    }
}

void Draw(FigureWriter& figure, const std::vector<KnownPoint>& points, const Corner& corner, const Standing& standing)
{
    FigureView view;
    view.title = points.size() == RIGHT_ANGLE_POINTS ? "Corner of two walls at a right angle" : "Corner of two walls";
    figure.Begin(view);
    const FigurePlace place = PlaceOf(corner.point);
    DrawWall(figure, points[0], &points[1], place);
    DrawWall(figure, points[2], points.size() == TWO_WALLS_POINTS ? &points[3] : nullptr, place);
    std::vector<FigurePlace> sighted;
    for (size_t i = 0; i < points.size(); ++i)
    {
        sighted.push_back(PlaceOf(points[i].point));
        figure.Add(FigurePoint{FigureName(points[i], std::to_string(i + 1)), sighted.back(), PointRole::SIGHTED});
    }
    figure.Add(FigurePoint{"corner", place, PointRole::COMPUTED});
    DrawSights(figure, standing, sighted);
}

} // namespace

void RunCorner(const CornerOptions& options, Inputs& inputs, Sink& sink)
{
    if (options.points.size() != RIGHT_ANGLE_POINTS && options.points.size() != TWO_WALLS_POINTS)
    {
        throw WrongUse(
            "give two points of the first wall, then one of the second (walls at a right angle) or two (any angle)");
    }
    const Standing standing = StandingFrom(options.instrument, inputs, sink.Options().unit);
    const double targetHeight = LengthArgument(options.targetHeight, "--target-height");
    std::vector<KnownPoint> points;
    for (const std::string& text : options.points)
    {
        points.push_back(MeasuredPoint(text, standing, targetHeight, inputs));
    }
    const Corner corner = CornerOf(points, targetHeight, standing);

    Row row;
    row.status = corner.status;
    row.isComputed = HasResult(corner.status);
    row.remark = corner.remark;
    if (row.isComputed)
    {
        row.values = {RealValue(corner.point.northing), RealValue(corner.point.easting),
                      RealValue(corner.point.height)};
        const std::vector<Value> expected = ExpectedValues(standing, corner.sight);
        row.values.insert(row.values.end(), expected.begin(), expected.end());
        JudgeCorner(points, corner, targetHeight, standing, sink, row);
    }
    sink.Title(points.size() == RIGHT_ANGLE_POINTS ? "Corner of two walls at a right angle, from three points"
                                                   : "Corner of two walls, from four points");
    sink.Begin(SectionOf(standing));
    sink.Add(row);
    if (row.isComputed)
    {
        NoteMissingStation(standing, "the corner", sink);
        if (FigureWriter* const figure = sink.Figure())
        {
            Draw(*figure, points, corner, standing);
        }
    }
}

} // namespace qstd
