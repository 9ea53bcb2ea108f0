/**
 * @file height_solution.h
 * The height of a station whose plan position is known: which sights give it, and whether they agree.
 */
#ifndef QSTD_HEIGHT_SOLUTION_H
#define QSTD_HEIGHT_SOLUTION_H

#include "station/station_solution.h"

namespace qstd {

/**
 * Fills in the height of a solved station, its residuals and its fit.
 *
 * The height is the mean over the targets of known height with distance and zenith reading, points of which only the
 * height is known among them; where there are none, over those with a zenith reading. Where the library has averaged
 * the same sights, its figure stands.
 *
 * @param isLibraryHeight  true where station.position holds what the library made of the used sights
 */
void SolveHeight(StationSolution& solution, const StationRequest& request, bool isLibraryHeight);

/** The point that a sight takes the height from; null where there is none. */
const KnownPoint* HeightPoint(const PreparedSight& sight);

/** The height of the instrument axis from one sight, from a station in plan; nothing where the sight gives none. */
std::optional<double> HeightFrom(const PreparedSight& sight, const PointRecord& station, bool isByDistance,
                                 const StationRequest& request);

/**
 * How much too high the height is at most for want of the correction for curvature and refraction, by the longest of
 * its sights, in the unit of the job; 0 where that correction is on.
 */
double UncorrectedCurvature(const StationSolution& solution, const SimulatedInstrument& instrument);

/** Plan distance from a station to the target of a sight; measured where the target has no plan coordinates. */
double DistanceTo(const PreparedSight& sight, const PointRecord& station);

/** Fills in the height residuals of the sights that the height is the mean of. */
void SetHeightResiduals(StationSolution& solution, const StationRequest& request);

/**
 * How the heights from different targets fit: of each the mean over its sights, whose own errors are averaged, while
 * that of the mark with its reflector is not. @param values  of heightSights; @param mark  standard deviation of a mark
 */
Fit FitOfTargetHeights(const StationSolution& solution, const std::vector<HeightValue>& values, double mark);

/** How far the heights of the used sights lie apart at a plan position, in standard deviations as expected; or 0. */
double HeightMisfitAt(const std::vector<PreparedSight>& sights, const PointRecord& station,
                      const StationRequest& request);

} // namespace qstd

#endif
