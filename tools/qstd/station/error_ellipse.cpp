#include "station/error_ellipse.h"

#include <cmath>

namespace qstd {

std::optional<ErrorEllipse> FormErrorEllipse(const PlanAdjustment& plan, size_t redundancy, LinearUnit unit)
{
    const double unitSigma = std::sqrt(plan.squareSum / static_cast<double>(redundancy));
    const EllipseAxes axes = AxesOf(plan.cofactors);
    ErrorEllipse ellipse;
    ellipse.major = FromMetres(unitSigma * axes.major, unit);
    ellipse.minor = FromMetres(unitSigma * axes.minor, unit);
    ellipse.azimuth = axes.azimuth;
    ellipse.orientationSigma = unitSigma * std::sqrt(plan.cofactors[2][2]);
    ellipse.unitDirectionSigma = unitSigma;
    if (!std::isfinite(ellipse.major) || !std::isfinite(ellipse.minor) || !std::isfinite(ellipse.orientationSigma))
    {
        return std::nullopt;
    }
    return ellipse;
}

} // namespace qstd
