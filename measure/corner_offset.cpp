#include <cmath>

#include "cogo/line.h"
#include "core/point.h"
#include "measure/hand_off.h"

namespace qstdlib {

namespace {

struct PlanVector
{
    double northing;
    double easting;
};

PlanVector Difference(const PointRecord& from, const PointRecord& to)
{
    return {to.northing - from.northing, to.easting - from.easting};
}

double Length(const PlanVector& v)
{
    return std::sqrt(std::pow(v.easting, 2.0) + std::pow(v.northing, 2.0));
}

// The point at t along the unit vector u from `origin`, at the given height.
PointRecord PointAlong(const PointRecord& origin, const PlanVector& u, double t, double height)
{
    return {t * u.northing + origin.northing, t * u.easting + origin.easting, height, FLAGS_PLAN_AND_HEIGHT};
}

TwoPointLine LineThrough(const PointRecord& first, const PointRecord& second)
{
    return {first.northing, first.easting, second.northing, second.easting};
}

} // namespace

} // namespace qstdlib

using namespace qstdlib;

int32_t QCalcOfsCorner3Pt(const PointRecord* first, const PointRecord* second, const PointRecord* third,
                          double /*reserved*/, SightRecord* observation, PointRecord* corner, double passthrough)
{
    if (!HasPlanAndHeight(*third))
    {
        return QSTD_MISSING_COORDINATES;
    }
    const PlanVector face = Difference(*first, *second);
    const double length = Length(face);
    if (length == 0.0)
    {
        return QSTD_COINCIDENT_POINTS;
    }
    const double inverse = 1.0 / length;
    const PlanVector u = {face.northing * inverse, face.easting * inverse};
    const double t = (third->easting - first->easting) * u.easting + (third->northing - first->northing) * u.northing;
    *corner = PointAlong(*first, u, t, third->height);
    HandOff(corner, passthrough, observation);
    return QSTD_OK;
}

int32_t QCalcOfsCorner4Pt(const PointRecord* first, const PointRecord* second, const PointRecord* third,
                          const PointRecord* fourth, double /*reserved*/, SightRecord* observation, PointRecord* corner,
                          double passthrough)
{
    // Decides whether there is a corner, and shows in `corner` when a later check fails; the corner itself is
    // computed along the unit vectors below.
    const TwoPointLine firstFace = LineThrough(*first, *second);
    const TwoPointLine secondFace = LineThrough(*third, *fourth);
    if (IntersectLines(&firstFace, &secondFace, corner) != QSTD_OK)
    {
        return QSTD_DEGENERATE;
    }
    if (!HasPlanAndHeight(*fourth))
    {
        return QSTD_MISSING_COORDINATES;
    }
    const PlanVector firstVector = Difference(*first, *second);
    const PlanVector secondVector = Difference(*third, *fourth);
    const double firstLength = Length(firstVector);
    const double secondLength = Length(secondVector);
    if (firstLength == 0.0 || secondLength == 0.0)
    {
        return QSTD_COINCIDENT_POINTS;
    }
    const PlanVector u = {firstVector.northing / firstLength, firstVector.easting / firstLength};
    const PlanVector w = {secondVector.northing / secondLength, secondVector.easting / secondLength};
    const double t =
        ((third->northing - first->northing) * w.easting - (third->easting - first->easting) * w.northing) /
        (u.northing * w.easting - w.northing * u.easting);
    *corner = PointAlong(*first, u, t, fourth->height);
    HandOff(corner, passthrough, observation);
    return QSTD_OK;
}
