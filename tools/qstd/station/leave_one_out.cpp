#include "station/leave_one_out.h"

#include "station/multi_solution.h"

#include <algorithm>
#include <cmath>

namespace qstd {

namespace {

constexpr double FARTHEST_SHIFT = 1e8;

/** Below a hundredth of a second the sights fit exactly, and figures differ by rounding alone. */
constexpr double SMALLEST_GAIN = 0.01 * 4.84813681109536e-6;

LeftOut SolveWithout(const std::vector<PreparedSight>& others, const StationSolution& whole)
{
    LeftOut without;
    const Adjustment adjustment = AdjustSights(others, whole.unit);
    if (adjustment.status != QSTD_OK)
    {
        return without;
    }
    const ResectStation& station = adjustment.station;
    without.northingShift = station.position.northing - whole.station.position.northing;
    without.eastingShift = station.position.easting - whole.station.position.easting;
    without.isSolved = std::fabs(without.northingShift) < FARTHEST_SHIFT &&
                       std::fabs(without.eastingShift) < FARTHEST_SHIFT && std::isfinite(station.northingPrecision) &&
                       std::isfinite(station.eastingPrecision);
    size_t observations = 0;
    for (const PreparedSight& sight : others)
    {
        observations += sight.horizontalDistance ? 2U : 1U;
    }
    if (!without.isSolved || observations <= 3)
    {
        return without;
    }
    without.northingPrecision = station.northingPrecision;
    without.eastingPrecision = station.eastingPrecision;
    const std::optional<ErrorEllipse> ellipse = FormErrorEllipse(others, station, whole.unit);
    if (ellipse)
    {
        without.directionSigma = ellipse->unitDirectionSigma;
    }
    return without;
}

} // namespace

void LeaveOneOut(StationSolution& solution)
{
    if (solution.used > MOST_LEFT_OUT)
    {
        return;
    }
    solution.leftOut.resize(solution.sights.size());
    std::optional<double> best;
    if (solution.ellipse)
    {
        best = solution.ellipse->unitDirectionSigma - SMALLEST_GAIN;
    }
    for (size_t i = 0; i < solution.sights.size(); ++i)
    {
        if (!solution.sights[i].isUsed)
        {
            continue;
        }
        std::vector<PreparedSight> others;
        for (size_t j = 0; j < solution.sights.size(); ++j)
        {
            if (j != i && solution.sights[j].isUsed)
            {
                others.push_back(solution.sights[j]);
            }
        }
        const LeftOut without = SolveWithout(others, solution);
        if (best && without.directionSigma && *without.directionSigma < *best)
        {
            best = without.directionSigma;
            solution.bestLeftOut = i;
        }
        solution.leftOut[i] = without;
    }
}

} // namespace qstd
