#include "cogo/line.h"
#include "core/point.h"

namespace qstdlib {

namespace {

void SetPlanFoot(PointRecord& foot, const PointRecord& onLine, double slope, double intercept, const PointRecord& point)
{
    if (slope == SLOPE_OF_CONSTANT_NORTHING)
    {
        foot.northing = onLine.northing;
        foot.easting = point.easting;
    }
    else if (slope == 0.0)
    {
        foot.northing = point.northing;
        foot.easting = onLine.easting;
    }
    else
    {
        const double perpendicular = -1.0 / slope;
        const double perpendicularIntercept = point.easting - point.northing * perpendicular;
        foot.northing = (perpendicularIntercept - intercept) / (slope - perpendicular);
        foot.easting = (perpendicularIntercept * slope - perpendicular * intercept) / (slope - perpendicular);
    }
}

void SetHeight(PointRecord& foot, double height)
{
    foot.height = height;
    foot.flags = FLAGS_PLAN_AND_HEIGHT;
}

} // namespace

} // namespace qstdlib

using namespace qstdlib;

int32_t QCogoCalcPtLine(const LineDef* line, const PointRecord* point, PointRecord* foot)
{
    *foot = UNDEFINED_PLAN_POINT;
    double slope = 0.0;
    double intercept = 0.0;
    const int32_t status = LineSlopeIntercept(line, &slope, &intercept);
    if (status != QSTD_OK)
    {
        return status;
    }
    const PointRecord& first = line->first;
    const PointRecord& second = line->second;
    SetPlanFoot(*foot, first, slope, intercept, *point);

    const bool secondHasHeight = line->mode == LINE_BY_POINTS && HasHeight(second);
    if (HasHeight(first) && secondHasHeight)
    {
        // Along the northing alone, and 0 / 0 where that is constant: kept, stored heights depend on it.
        SetHeight(*foot, (foot->northing - first.northing) * (second.height - first.height) /
                                 (second.northing - first.northing) +
                             first.height);
    }
    else if (HasHeight(first))
    {
        SetHeight(*foot, first.height);
    }
    else if (secondHasHeight)
    {
        SetHeight(*foot, second.height);
    }
    return QSTD_OK;
}
