#include "verbs/remote_distance.h"

#include "proof/judgement.h"
#include "proof/plan_proof.h"
#include "text/outcome.h"
#include "text/status_name.h"
#include "verbs/arguments.h"
#include "verbs/plan_shapes.h"
#include "verbs/standing.h"
#include "verbs/typed_sight.h"

#include <qstdlib.h>

#include <fmt/format.h>

namespace qstd {

namespace {

Section SectionOf(bool isSingle)
{
    return {"distance",
            isSingle ? Layout::RECORD : Layout::TABLE,
            true,
            {{"from", "from", Quantity::TEXT, ""},
             {"to", "to", Quantity::TEXT, ""},
             {"azimuth", "azimuth", Quantity::ANGLE, ""},
             {"horizontal_distance", isSingle ? "horizontal distance" : "horizontal", Quantity::LENGTH, ""},
             {"slope_distance", isSingle ? "slope distance" : "slope", Quantity::LENGTH, ""},
             {"height_difference", isSingle ? "height difference" : "height diff.", Quantity::LENGTH, ""}}};
}

/** A leg from one point to another. */
struct Leg
{
    KnownPoint from;
    KnownPoint to;
    int32_t status = QSTD_OK;
    RemoteDistanceResult result = {};

    /** Points above each other have distances, though no azimuth. */
    [[nodiscard]] bool IsComputed() const
    {
        return HasResult(status) || status == QSTD_COINCIDENT_POINTS;
    }
};

Leg Measure(const KnownPoint& from, const KnownPoint& to)
{
    Leg leg;
    leg.from = from;
    leg.to = to;
    leg.status = QRDMCalcByCoord(&from.point, &to.point, &leg.result);
    return leg;
}

/** Held against the points that it comes from. */
Proof Prove(const Leg& leg, bool isSouth)
{
    FoundWay way;
    if (leg.status == QSTD_OK)
    {
        way.azimuth = leg.result.azimuth;
    }
    way.horizontalDistance = leg.result.horizontalDistance;
    if (HasHeight(leg.from) && HasHeight(leg.to))
    {
        way.slopeDistance = leg.result.slopeDistance;
        way.heightDifference = leg.result.heightDifference;
    }
    return ProveInverse(leg.from.point, leg.to.point, way, isSouth);
}

Row RowOf(const Leg& leg, bool isSouth, const Sink& sink)
{
    Row row;
    row.status = leg.status;
    row.isComputed = leg.IsComputed();
    row.values = {leg.from.id, leg.to.id};
    if (leg.status == QSTD_COINCIDENT_POINTS)
    {
        row.remark = "equal northing and easting: no azimuth";
    }
    if (row.isComputed)
    {
        // Without both heights the library computes in the plane; there is no slope to show then.
        const bool isSpatial = HasHeight(leg.from) && HasHeight(leg.to);
        row.values.insert(row.values.end(), {AngleOf(leg.result.azimuth), RealValue(leg.result.horizontalDistance),
                                             isSpatial ? RealValue(leg.result.slopeDistance) : Value(),
                                             isSpatial ? RealValue(leg.result.heightDifference) : Value()});
        Judge(Prove(leg, isSouth), sink, row);
    }
    return row;
}

std::string Letter(size_t place)
{
    return std::to_string(place + 1);
}

/** Of the points that have one in the plan: without it a line of sight would end at the origin. */
std::vector<FigurePlace> PlacesOf(const std::vector<KnownPoint>& points)
{
    std::vector<FigurePlace> places;
    for (const KnownPoint& point : points)
    {
        if (HasPlan(point))
        {
            places.push_back(PlaceOf(point.point));
        }
    }
    return places;
}

void Draw(FigureWriter& figure, const std::vector<KnownPoint>& points, const std::vector<Leg>& legs, const Sink& sink)
{
    FigureView view;
    view.title = legs.size() == 1 ? "Remote distance" : "Remote distances";
    figure.Begin(view);
    for (const Leg& leg : legs)
    {
        if (leg.IsComputed())
        {
            figure.Add(FigureLine{PlaceOf(leg.from.point), PlaceOf(leg.to.point), LineRole::RESULT,
                                  sink.LengthText(leg.result.horizontalDistance)});
        }
    }
    for (size_t i = 0; i < points.size(); ++i)
    {
        if (HasPlan(points[i]))
        {
            figure.Add(FigurePoint{FigureName(points[i], Letter(i)), PlaceOf(points[i].point), PointRole::SIGHTED});
        }
    }
    figure.Note("lengths along the lines are horizontal distances");
}

} // namespace

void RunRemoteDistance(const RemoteDistanceOptions& options, Inputs& inputs, Sink& sink)
{
    if (options.points.size() < 2)
    {
        throw WrongUse("a distance needs two points; give A B, or A B C... for several");
    }
    const Standing standing = StandingFrom(options.instrument, inputs, sink.Options().unit);
    const InstrumentConnection connection(standing.instrument);
    const double targetHeight = LengthArgument(options.targetHeight, "--target-height");

    std::vector<KnownPoint> points;
    for (const std::string& text : options.points)
    {
        points.push_back(MeasuredPoint(text, standing, targetHeight, inputs));
    }
    std::vector<Leg> legs;
    for (size_t i = 1; i < points.size(); ++i)
    {
        legs.push_back(Measure(points[options.isRadial ? 0 : i - 1], points[i]));
    }

    sink.Title(legs.size() == 1   ? fmt::format("Distance {} - {}", points[0].id, points[1].id)
               : options.isRadial ? fmt::format("Distances from {}", points[0].id)
                                  : "Distances from each point to the next");
    sink.Begin(SectionOf(legs.size() == 1));
    for (const Leg& leg : legs)
    {
        sink.Add(RowOf(leg, options.instrument.isSouthAzimuth, sink));
    }
    if (FigureWriter* const figure = sink.Figure())
    {
        Draw(*figure, points, legs, sink);
        DrawSights(*figure, standing, PlacesOf(points));
    }
}

} // namespace qstd
