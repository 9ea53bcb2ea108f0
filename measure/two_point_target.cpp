#include <cmath>

#include "core/point.h"
#include "qstdlib/measure.h"

using namespace qstdlib;

int32_t QCalc2PtTarget(const PointRecord* first, const PointRecord* second, double spacing, double extension,
                       double* measuredSpacing, PointRecord* target)
{
    if (!HasPlanAndHeight(*first) || !HasPlanAndHeight(*second))
    {
        return QSTD_MISSING_COORDINATES;
    }
    if (spacing < 0.0 || extension < 0.0)
    {
        return QSTD_REJECTED;
    }
    const double dN = second->northing - first->northing;
    const double dE = second->easting - first->easting;
    const double dH = second->height - first->height;
    const double measured = std::sqrt(std::pow(dH, 2.0) + std::pow(dE, 2.0) + std::pow(dN, 2.0));
    if (measured == 0.0)
    {
        return QSTD_COINCIDENT_POINTS;
    }

    PointRecord hidden = *second;
    if (extension != 0.0)
    {
        const double inverseLength = 1.0 / (spacing == 0.0 ? measured : spacing);
        hidden.northing = inverseLength * dN * extension + second->northing;
        hidden.easting = dE * inverseLength * extension + second->easting;
        hidden.height = dH * (inverseLength * extension) + second->height;
    }
    hidden.flags = FLAGS_PLAN_AND_HEIGHT;
    *target = hidden;
    *measuredSpacing = measured;
    return QSTD_OK;
}
