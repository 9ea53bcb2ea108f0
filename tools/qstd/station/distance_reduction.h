/**
 * @file distance_reduction.h
 * A measured distance brought to the plan of the coordinates: curvature and refraction, sea level, scale.
 */
#ifndef QSTD_DISTANCE_REDUCTION_H
#define QSTD_DISTANCE_REDUCTION_H

#include "station/set_up.h"

namespace qstd {

/** Horizontal distance and rise from the instrument axis to the reflector, in the unit of the job. */
struct GroundDistance
{
    double horizontal = 0.0;
    double vertical = 0.0;
};

/**
 * Horizontal distance and rise without curvature and refraction, where that correction is on.
 *
 * With D = s sin z, V = s cos z, the coefficient k and the earth's radius R: the horizontal distance at the height of
 * the instrument is D - (1 - k/2) D V / R, the rise V + (1 - k) D^2 / 2R. The converse of what the library does for
 * heights by zenith angle.
 */
GroundDistance LevelDistance(const GroundDistance& measured, const Reduction& reduction);

/** Distance in the plan of a horizontal one at the mean elevation h: D / (1 + h / R) times the scale factor. */
double PlanDistance(double horizontal, const Reduction& reduction);

} // namespace qstd

#endif
