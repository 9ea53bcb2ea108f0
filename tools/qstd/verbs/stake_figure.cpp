#include "verbs/stake_figure.h"

#include "text/text.h"
#include "verbs/plan_shapes.h"
#include "verbs/stationing.h"

#include <algorithm>
#include <cmath>

namespace qstd {

namespace {

/** A station and offset that lead farther away than this from their point are not those of a foot. */
constexpr double FOOT_TOLERANCE = 0.01;

/** What a plan resolves. */
constexpr int MOST_LABEL_DECIMALS = 3;

} // namespace

StakeFigure::StakeFigure(const Sink& sinkOfVerb, const Alignment& alignment, double chainage)
    : sink(sinkOfVerb), reference(alignment), startChainage(chainage), figure(sinkOfVerb.Figure()),
      last(alignment.Length())
{
}

FigureWriter* StakeFigure::Begin(const std::string& title)
{
    if (figure != nullptr)
    {
        FigureView view;
        view.title = title;
        figure->Begin(view);
        AddTicks();
    }
    return figure;
}

void StakeFigure::AddTicks()
{
    for (const RoundStation& station : RoundStations(startChainage, startChainage + reference.Length()))
    {
        const double along = station.chainage - startChainage;
        figure->Add(FigureTick{reference.At(along), reference.AzimuthAt(along), station.label});
    }
}

void StakeFigure::Add(const KnownPoint& point, double along, double offset, std::optional<double> footHeight)
{
    if (figure == nullptr)
    {
        return;
    }
    const FigurePlace place = PlaceOf(point.point);
    const FigurePlace reached = reference.At(along, offset);
    if (std::hypot(reached.northing - place.northing, reached.easting - place.easting) < FOOT_TOLERANCE)
    {
        FigurePlace foot = reference.At(along);
        foot.height = footHeight;
        figure->Add(FigureLine{foot, place, LineRole::OFFSET,
                               FormatFixed(std::fabs(offset), std::min(sink.Options().decimals, MOST_LABEL_DECIMALS))});
        figure->Add(FigurePoint{"", foot, PointRole::FOOT});
        first = std::min(first, along);
        last = std::max(last, along);
    }
    figure->Add(FigurePoint{point.id, place, PointRole::SIGHTED});
}

void StakeFigure::Finish()
{
    if (figure != nullptr)
    {
        AddExtension(first, 0.0);
        AddExtension(reference.Length(), last);
    }
}

void StakeFigure::AddExtension(double from, double to)
{
    if (from < to)
    {
        figure->Add(FigureLine{reference.At(from), reference.At(to), LineRole::CONSTRUCTION, ""});
    }
}

} // namespace qstd
