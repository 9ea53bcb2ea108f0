#include "station/multi_solution.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

namespace qstd {

namespace {

/**
 * The used sights, the first one to each place before all second ones, and so on: the library takes its first
 * approximation from the first sights that seem to fit, which two faces to one target do not.
 */
std::vector<size_t> SpreadOrder(const std::vector<PreparedSight>& sights)
{
    std::map<std::pair<double, double>, size_t> visits;
    std::vector<std::pair<size_t, size_t>> visitAndSight;
    for (size_t i = 0; i < sights.size(); ++i)
    {
        if (sights[i].isUsed)
        {
            const PointRecord& target = sights[i].target->point;
            visitAndSight.emplace_back(visits[{target.northing, target.easting}]++, i);
        }
    }
    std::sort(visitAndSight.begin(), visitAndSight.end());
    std::vector<size_t> order;
    order.reserve(visitAndSight.size());
    for (const auto& [visit, sight] : visitAndSight)
    {
        order.push_back(sight);
    }
    return order;
}

/** Sights with a distance first, those that are farthest from the first one of them before others. */
std::vector<size_t> WideOrder(const std::vector<PreparedSight>& sights, std::vector<size_t> order)
{
    const auto rank = [&sights](const PointRecord& from, size_t sight) {
        const PointRecord& target = sights[sight].target->point;
        const double length = std::hypot(target.northing - from.northing, target.easting - from.easting);
        return std::pair(!sights[sight].horizontalDistance, -length);
    };
    const auto first = std::find_if(order.begin(), order.end(),
                                    [&sights](size_t sight) { return sights[sight].horizontalDistance.has_value(); });
    if (first != order.end())
    {
        std::rotate(order.begin(), first, first + 1);
    }
    const PointRecord& from = sights[order.front()].target->point;
    std::stable_sort(order.begin() + 1, order.end(),
                     [&](size_t one, size_t other) { return rank(from, one) < rank(from, other); });
    return order;
}

int32_t AdjustInOrder(Adjustment& adjustment, const std::vector<PreparedSight>& sights, LinearUnit unit)
{
    std::vector<ResectObservation> observations;
    for (const size_t sight : adjustment.order)
    {
        observations.push_back(ToObservation(sights[sight], unit));
    }
    const auto count = static_cast<int16_t>(observations.size());
    // One record more than counted: the library takes no null pointer, not even for no sights.
    observations.emplace_back();
    adjustment.residuals.resize(observations.size());
    return QSTNMultiResect(count, observations.data(), &adjustment.station, adjustment.residuals.data());
}

void ToUnit(Adjustment& adjustment, LinearUnit unit)
{
    ResectStation& station = adjustment.station;
    for (double* const length : {&station.position.northing, &station.position.easting, &station.position.height,
                                 &station.northingPrecision, &station.eastingPrecision, &station.heightSpread})
    {
        *length = FromMetres(*length, unit);
    }
    for (ResectResidual& residual : adjustment.residuals)
    {
        residual.distanceResidual = FromMetres(residual.distanceResidual, unit);
        residual.heightResidual = FromMetres(residual.heightResidual, unit);
    }
}

} // namespace

bool IsProven(const std::vector<PlanObservation>& observations, const PlanPosition& position)
{
    constexpr double LARGEST_SHIFT = 5e-5;
    constexpr double SHARE_OF_SIGMA = 0.002;
    const std::optional<PlanStep> step = StepFrom(observations, position);
    if (!step)
    {
        return false;
    }
    const double shift = std::hypot(step->change.northing, step->change.easting);
    const double sigma = WEIGHT_DIRECTION * AxesOf(step->cofactors).major;
    return shift <= std::max(LARGEST_SHIFT, SHARE_OF_SIGMA * sigma);
}

PlanPosition PositionOf(const ResectStation& station, LinearUnit unit)
{
    return {ToMetres(station.position.northing, unit), ToMetres(station.position.easting, unit),
            RadiansOf(station.orientation)};
}

Adjustment AdjustSights(const std::vector<PreparedSight>& sights, const std::vector<PlanObservation>& observations,
                        LinearUnit unit)
{
    constexpr size_t MOST_ATTEMPTS = 10;
    Adjustment adjustment;
    adjustment.order = SpreadOrder(sights);
    const std::vector<size_t> wide = adjustment.order.empty() ? adjustment.order : WideOrder(sights, adjustment.order);
    const size_t attempts = std::min(adjustment.order.size(), MOST_ATTEMPTS);
    for (size_t attempt = 0; attempt <= attempts && !adjustment.isProven; ++attempt)
    {
        if (attempt == attempts)
        {
            adjustment.order = wide;
        }
        else if (attempt > 0)
        {
            std::rotate(adjustment.order.begin(), adjustment.order.begin() + 1, adjustment.order.end());
        }
        const int32_t status = AdjustInOrder(adjustment, sights, unit);
        adjustment.status = attempt == 0 ? status : adjustment.status;
        adjustment.isProven =
            status == QSTD_OK && IsProven(observations, PositionOf(adjustment.station, LinearUnit::METRE));
    }
    ToUnit(adjustment, unit);
    return adjustment;
}

} // namespace qstd
