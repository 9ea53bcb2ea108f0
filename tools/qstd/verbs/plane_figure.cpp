#include "verbs/plane_figure.h"

#include "text/text.h"
#include "verbs/plan_shapes.h"
#include "verbs/standing.h"
#include "verbs/stationing.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace qstd {

namespace {

/** Slope of a plane that still shows more from above than from the side: 20 degrees. */
constexpr double STEEPEST_FLAT = 0.364;

/** What an elevation or a plan resolves. */
constexpr int MOST_LABEL_DECIMALS = 3;

FigurePoint Given(const KnownPoint& point, const std::string& letter)
{
    return {FigureName(point, letter), PlaceOf(point.point), PointRole::GIVEN};
}

/** Strike of a plane, turned to where its baseline runs, radians from north. */
double ViewAzimuth(const ReferencePlane& plane)
{
    const SpaceVector normal = plane.Normal();
    const SpaceVector along = plane.Baseline();
    const double sign = along[1] * normal[0] - along[0] * normal[1] < 0.0 ? -1.0 : 1.0;
    return std::atan2(sign * normal[0], -sign * normal[1]);
}

/** True for a plane that is rather looked at from above. */
bool IsFlatPlane(const ReferencePlane& plane)
{
    const SpaceVector normal = plane.Normal();
    return std::hypot(normal[0], normal[1]) < STEEPEST_FLAT * std::fabs(normal[2]);
}

} // namespace

PlaneFigure::PlaneFigure(const ReferencePlane& planeToDraw, const Sink& sinkOfVerb)
    : plane(planeToDraw), sink(sinkOfVerb), figure(sinkOfVerb.Figure())
{
}

void PlaneFigure::Begin(const std::string& title)
{
    if (figure == nullptr)
    {
        return;
    }
    baseline = plane.Baseline();
    isFlat = IsFlatPlane(plane);
    FigureView view;
    view.title = title;
    if (!isFlat)
    {
        view.kind = FigureView::Kind::ELEVATION;
        view.origin = PlaceOf(plane.first.point);
        view.azimuth = ViewAzimuth(plane);
    }
    figure->Begin(view);
    AddBaseline();
    AddPoints();
    figure->Note(
        fmt::format("distances count from {} towards {}", FigureName(plane.first, "A"), FigureName(plane.second, "B")));
    if (isFlat)
    {
        figure->Add(FigurePoint{FigureName(plane.station, "S"), PlaceOf(plane.station.point), PointRole::STATION});
    }
}

void PlaneFigure::Add(const std::string& target, const PlanePlace& place)
{
    if (figure == nullptr)
    {
        return;
    }
    const FigurePlace sighted = PlaceOf(place.point);
    // The offset is drawn from height to height: nothing where one of them is not known.
    if (HasHeight(plane.first) && sighted.height)
    {
        const FigurePlace foot = OnBaseline(place.along);
        figure->Add(
            FigureLine{foot, sighted, LineRole::OFFSET,
                       FormatFixed(std::fabs(place.across), std::min(sink.Options().decimals, MOST_LABEL_DECIMALS))});
        figure->Add(FigurePoint{"", foot, PointRole::FOOT});
    }
    if (isFlat)
    {
        figure->Add(FigureLine{PlaceOf(plane.station.point), sighted, LineRole::SIGHT, ""});
    }
    figure->Add(FigurePoint{target, sighted, PointRole::SIGHTED});
}

FigurePlace PlaneFigure::OnBaseline(double along) const
{
    const PointRecord& first = plane.first.point;
    const std::optional<double> height =
        HasHeight(plane.first) ? std::optional<double>(first.height + along * baseline[2]) : std::nullopt;
    return {first.northing + along * baseline[0], first.easting + along * baseline[1], height};
}

/** From the first point to the second, level for the two-point plane, with its distances. */
void PlaneFigure::AddBaseline()
{
    const PointRecord& first = plane.first.point;
    const PointRecord& second = plane.second.point;
    const double rise = plane.IsInSpace() ? second.height - first.height : 0.0;
    const double length = std::hypot(second.northing - first.northing, second.easting - first.easting, rise);
    figure->Add(FigureLine{OnBaseline(0.0), OnBaseline(length), LineRole::REFERENCE, ""});
    for (const RoundStation& station : RoundStations(0.0, length))
    {
        figure->Add(FigureTick{OnBaseline(station.chainage), std::atan2(baseline[1], baseline[0]), station.label});
    }
}

void PlaneFigure::AddPoints()
{
    figure->Add(Given(plane.first, "A"));
    figure->Add(Given(plane.second, "B"));
    if (plane.third)
    {
        const FigurePlace third = PlaceOf(plane.third->point);
        figure->Add(Given(*plane.third, "C"));
        figure->Add(FigureLine{PlaceOf(plane.second.point), third, LineRole::CONSTRUCTION, ""});
        figure->Add(FigureLine{third, PlaceOf(plane.first.point), LineRole::CONSTRUCTION, ""});
    }
}

} // namespace qstd
