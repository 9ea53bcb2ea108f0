#include "station/multi_solution.h"

#include <algorithm>
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

/** Which targets the library takes the station height from: those with a distance, else those with a zenith reading. */
void CountHeightTargets(Adjustment& adjustment, const std::vector<ResectObservation>& observations)
{
    adjustment.withHeight = 0;
    adjustment.withHeightAndDistance = 0;
    for (const ResectObservation& observation : observations)
    {
        const bool hasHeight = (observation.target.flags & POINT_HAS_HEIGHT) != 0;
        adjustment.withHeight += hasHeight ? 1U : 0U;
        adjustment.withHeightAndDistance += hasHeight && observation.slopeDistance != 0.0 ? 1U : 0U;
    }
}

int32_t AdjustInOrder(Adjustment& adjustment, const std::vector<PreparedSight>& sights, LinearUnit unit)
{
    std::vector<ResectObservation> observations;
    for (const size_t sight : adjustment.order)
    {
        observations.push_back(ToObservation(sights[sight], unit));
    }
    CountHeightTargets(adjustment, observations);
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

Adjustment AdjustSights(const std::vector<PreparedSight>& sights, LinearUnit unit)
{
    constexpr size_t MOST_ATTEMPTS = 10;
    Adjustment adjustment;
    adjustment.order = SpreadOrder(sights);
    adjustment.status = AdjustInOrder(adjustment, sights, unit);
    const size_t attempts = std::min(adjustment.order.size(), MOST_ATTEMPTS);
    const bool isWorthwhile = adjustment.status == QSTD_REJECTED || adjustment.status == QSTD_DEGENERATE;
    for (size_t attempt = 1; isWorthwhile && attempt < attempts; ++attempt)
    {
        std::rotate(adjustment.order.begin(), adjustment.order.begin() + 1, adjustment.order.end());
        if (AdjustInOrder(adjustment, sights, unit) == QSTD_OK)
        {
            adjustment.status = QSTD_OK;
            break;
        }
    }
    ToUnit(adjustment, unit);
    return adjustment;
}

} // namespace qstd
