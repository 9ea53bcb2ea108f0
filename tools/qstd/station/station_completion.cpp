#include "station/station_completion.h"

#include "station/height_solution.h"
#include "station/station_residuals.h"

#include <cmath>

namespace qstd {

namespace {

/** A position farther off than this is none: the adjustment has run away. */
constexpr double FARTHEST_POSITION = 1e9;

void ComputeResiduals(StationSolution& solution, const SimulatedInstrument& instrument)
{
    for (size_t i = 0; i < solution.sights.size(); ++i)
    {
        if (solution.sights[i].target != nullptr)
        {
            solution.residuals[i] = ComputeResidual(solution.sights[i], solution, instrument);
        }
    }
}

} // namespace

bool IsPosition(const ResectStation& station)
{
    return std::fabs(station.position.northing) < FARTHEST_POSITION &&
           std::fabs(station.position.easting) < FARTHEST_POSITION && std::isfinite(station.position.height) &&
           std::isfinite(station.northingPrecision) && std::isfinite(station.eastingPrecision) &&
           std::isfinite(station.heightSpread);
}

void CountObservations(StationSolution& solution)
{
    for (const PreparedSight& sight : solution.sights)
    {
        solution.faceTwo += sight.isFaceTwo ? 1U : 0U;
        if (sight.isUsed)
        {
            ++solution.used;
            ++solution.directions;
            const bool isDistanceUsed = sight.horizontalDistance && solution.method != StationMethod::THREE_POINT;
            solution.distances += isDistanceUsed ? 1U : 0U;
        }
    }
}

void Complete(StationSolution& solution, const StationRequest& request, bool isLibraryHeight)
{
    solution.station.orientation = WithinCircle(solution.station.orientation);
    SolveHeight(solution, request, isLibraryHeight);
    ComputeResiduals(solution, request.instrument);
    SetHeightResiduals(solution, request);
    if (solution.plan)
    {
        solution.fit = FitOfPlan(solution.observations, *solution.plan);
    }
}

} // namespace qstd
