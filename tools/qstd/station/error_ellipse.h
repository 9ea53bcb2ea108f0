/**
 * @file error_ellipse.h
 * How well the sights fix the station: normal equations at the adjusted station, and the ellipse that they give.
 */
#ifndef QSTD_ERROR_ELLIPSE_H
#define QSTD_ERROR_ELLIPSE_H

#include "station/set_up.h"

#include <qstdlib.h>

#include <optional>
#include <vector>

namespace qstd {

/** How the errors of the sights reach the station: lengths in the unit of the job for one radian in a direction. */
struct PositionCofactors
{
    double major = 0.0; /**< semi-axes of the ellipse for a standard deviation of one radian in each direction */
    double minor = 0.0;
    double azimuth = 0.0; /**< of the major axis, radians, 0 to below a half circle */
    double northing = 0.0;
    double easting = 0.0;
    double orientation = 0.0; /**< a pure number */
};

/** Standard error ellipse of the station, and what the same equations say of the orientation. */
struct ErrorEllipse
{
    double major = 0.0;              /**< in the unit of the job */
    double minor = 0.0;              /**< in the unit of the job */
    double azimuth = 0.0;            /**< of the major axis, radians, 0 to below a half circle */
    double orientationSigma = 0.0;   /**< radians */
    double unitDirectionSigma = 0.0; /**< standard deviation of one direction after the adjustment, radians */
};

/**
 * The normal equations of the library's model at a position, inverted.
 *
 * @param unit  of the set-up; the weights of distances are metric
 * @return nothing when the equations are singular
 */
std::optional<PositionCofactors> FormCofactors(const std::vector<PreparedSight>& sights, const PointRecord& position,
                                               LinearUnit unit = LinearUnit::METRE);

/**
 * The ellipse of an adjusted station. The library returns two precisions only; the tool forms the normal equations of
 * the same model itself and scales their inverse so that it agrees with these two.
 *
 * @return nothing when the equations are singular or the precisions say nothing
 */
std::optional<ErrorEllipse> FormErrorEllipse(const std::vector<PreparedSight>& sights, const ResectStation& station,
                                             LinearUnit unit = LinearUnit::METRE);

} // namespace qstd

#endif
