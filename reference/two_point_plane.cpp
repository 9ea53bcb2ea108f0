#include <cmath>

#include "core/angle.h"
#include "core/face.h"
#include "core/point.h"
#include "qstdlib/reference.h"

namespace qstdlib {

namespace {

// Below this the station stands on the plane, or the sight runs along it.
constexpr double NEAR_PLANE = 5e-7;

struct TwoPointPlane
{
    int16_t isSet;
    PointRecord first;
    double length;
    double deltaNorth;
    double deltaEast;
    double directionNorth; // unit vector along the trace
    double directionEast;
};

TwoPointPlane stored;

// Height of the sighted point from the station alone, where the first point has none.
double HeightFromStation(const PointRecord& station, double axisHeight, const PointRecord& point, double sine,
                         double cosine, double tangent)
{
    const double dN = point.northing - station.northing;
    const double dE = point.easting - station.easting;
    const double distance = std::hypot(dN, dE);
    const bool behind = dN * cosine + dE * sine < 0.0;
    return behind ? axisHeight - distance / tangent : axisHeight + distance / tangent;
}

} // namespace

} // namespace qstdlib

using namespace qstdlib;

int32_t QREFSet2PtBasePlane(const PointRecord* first, const PointRecord* second)
{
    stored.isSet = 0;
    if (!HasPlan(*first) || !HasPlan(*second))
    {
        return QSTD_MISSING_COORDINATES;
    }
    if (CoincideInPlan(*first, *second))
    {
        return QSTD_COINCIDENT_POINTS;
    }
    const double dN = second->northing - first->northing;
    const double dE = second->easting - first->easting;
    const double length = std::hypot(dN, dE);
    const double inverse = 1.0 / length;
    stored = {1, *first, length, dN, dE, dN * inverse, dE * inverse};
    return HasHeight(*first) ? QSTD_OK : QSTD_HEIGHT_UNDETERMINED;
}

int32_t QREFCalc2PtPlane(AngleUnit horizontalAngle, AngleUnit zenithAngle, const PointRecord* station,
                         double instrumentHeight, PointRecord* point, double* alongPlane, double* heightAboveFirst)
{
    *point = UNDEFINED_SPATIAL_POINT;
    *alongPlane = UNDEFINED_REAL;
    *heightAboveFirst = UNDEFINED_REAL;
    const PointRecord& first = stored.first;
    const bool heightsFromPlane = HasHeight(first);
    const int32_t status = heightsFromPlane ? QSTD_OK : QSTD_HEIGHT_UNDETERMINED;
    if (stored.isSet == 0)
    {
        return QSTD_NOT_DEFINED;
    }
    const double axisHeight = station->height + instrumentHeight;
    const double wN = station->northing - first.northing;
    const double wE = station->easting - first.easting;
    if (std::fabs(stored.deltaEast * wN - stored.deltaNorth * wE) < NEAR_PLANE)
    {
        return QSTD_DEGENERATE;
    }

    const AngleUnit azimuth = ApplyAzimuthReference(horizontalAngle);
    if (IsVertical(zenithAngle))
    {
        return status;
    }
    const SightAngles sight = ReduceToFaceOne({azimuth, zenithAngle});
    const double alpha = AngleToRadians(sight.horizontalAngle);
    const double sine = std::sin(alpha);
    const double cosine = std::cos(alpha);
    const double north = stored.directionNorth;
    const double east = stored.directionEast;
    const double q = north * sine - east * cosine; // sine of the angle between sight and plane
    if (std::fabs(q) < NEAR_PLANE)
    {
        return status;
    }
    const bool level = sight.zenithAngle == ANGLE_QUARTER_CIRCLE;
    const double tangent = level ? 0.0 : std::tan(AngleToRadians(sight.zenithAngle));

    const double along = (sine * wN - cosine * wE) / q;
    double above = 0.0;
    if (heightsFromPlane)
    {
        above = axisHeight - first.height;
        if (!level)
        {
            above += (east * wN - north * wE) / q / tangent;
        }
    }
    *alongPlane = along;
    *heightAboveFirst = above;
    point->northing = (along / stored.length) * stored.deltaNorth + first.northing;
    point->easting = (along / stored.length) * stored.deltaEast + first.easting;
    if (heightsFromPlane)
    {
        point->height = above + first.height;
    }
    else
    {
        point->height = level ? axisHeight : HeightFromStation(*station, axisHeight, *point, sine, cosine, tangent);
    }
    return status;
}
