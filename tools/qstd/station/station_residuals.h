/**
 * @file station_residuals.h
 * What a computed station leaves over on its sights.
 */
#ifndef QSTD_STATION_RESIDUALS_H
#define QSTD_STATION_RESIDUALS_H

#include "station/station_solution.h"

namespace qstd {

/**
 * The residual of any sight with a target, whether it took part or not, in the library's sense: adjusted less observed.
 *
 * The height rests on the distance where one was measured and the station height does too, else on the zenith angle,
 * with the corrections of the instrument.
 */
SightResidual ComputeResidual(const PreparedSight& sight, const StationSolution& solution,
                              const SimulatedInstrument& instrument);

/**
 * The rise from the instrument axis to a reflector over a plan distance, as the library reduces a zenith angle: with
 * scale factor, sea level, and curvature and refraction where these are on. All lengths in metres.
 */
double RiseByZenith(double planDistance, AngleUnit zenith, const SimulatedInstrument& instrument);

} // namespace qstd

#endif
