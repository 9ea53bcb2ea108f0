/**
 * @file error_ellipse.h
 * How well the sights fix the station: the standard error ellipse.
 */
#ifndef QSTD_ERROR_ELLIPSE_H
#define QSTD_ERROR_ELLIPSE_H

#include "station/plan_adjustment.h"

#include <cstddef>
#include <optional>

namespace qstd {

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
 * The ellipse of an adjusted station, from the tool's own adjustment of the same observations.
 *
 * @param redundancy  of the adjustment, not 0
 * @param unit        of the set-up
 * @return nothing where a figure is not finite
 */
std::optional<ErrorEllipse> FormErrorEllipse(const PlanAdjustment& plan, size_t redundancy, LinearUnit unit);

} // namespace qstd

#endif
