#include <cmath>

#include "core/angle.h"
#include "core/face.h"
#include "core/point.h"
#include "qstdlib/reference.h"

namespace qstdlib {

namespace {

// Below this a normal has no direction, and a distance from the plane none either.
constexpr double NEAR_ZERO = 5e-7;

// North, east, height, in the cross product too: N x E gives +H, and the sign of offsets follows from that.
struct Vector
{
    double n;
    double e;
    double h;
};

// Points X with normal * X + constant = 0.
struct Plane
{
    Vector normal;
    double constant;
};

struct ThreePointPlane
{
    int16_t isSet;
    PointRecord first;
    Vector baseline; // from the first point to the second
    Plane surface;   // its normal is turned towards the instrument by every calculation
    Plane across;    // through the baseline, perpendicular to the surface
    Plane along;     // through the first point, perpendicular to the baseline
};

ThreePointPlane stored;

Vector Position(const PointRecord& point)
{
    return {point.northing, point.easting, point.height};
}

Vector Difference(const PointRecord& from, const PointRecord& to)
{
    return {to.northing - from.northing, to.easting - from.easting, to.height - from.height};
}

Vector Negative(const Vector& v)
{
    return {-v.n, -v.e, -v.h};
}

double DotProduct(const Vector& a, const Vector& b)
{
    return a.h * b.h + a.e * b.e + a.n * b.n;
}

// The cross product of length 1; false, and the cross product as it is, when it is too short to have a direction.
bool UnitNormal(const Vector& a, const Vector& b, Vector* normal)
{
    const Vector c = {a.e * b.h - a.h * b.e, a.h * b.n - a.n * b.h, a.n * b.e - a.e * b.n};
    const double length = std::sqrt(std::pow(c.h, 2.0) + std::pow(c.e, 2.0) + std::pow(c.n, 2.0));
    if (length < NEAR_ZERO)
    {
        *normal = c;
        return false;
    }
    *normal = {c.n / length, c.e / length, c.h / length};
    return true;
}

void PassThrough(Plane& plane, const PointRecord& point)
{
    plane.constant = -DotProduct(plane.normal, Position(point));
}

double SignedDistance(const Plane& plane, const PointRecord& point)
{
    return DotProduct(plane.normal, Position(point)) + plane.constant;
}

bool CoincideInSpace(const PointRecord& a, const PointRecord& b)
{
    return CoincideInPlan(a, b) && a.height == b.height;
}

// Forms the three planes; false when the points lie on one line.
bool Fit(const PointRecord& first, const PointRecord& second, const PointRecord& third)
{
    ThreePointPlane& p = stored;
    p.baseline = Difference(first, second);
    if (!UnitNormal(p.baseline, Difference(second, third), &p.surface.normal))
    {
        return false;
    }
    UnitNormal(p.surface.normal, p.baseline, &p.across.normal);
    UnitNormal(p.across.normal, p.surface.normal, &p.along.normal);
    PassThrough(p.surface, first);
    PassThrough(p.across, first);
    PassThrough(p.along, first);
    if (SignedDistance(p.along, first) < 0.0)
    {
        p.along.normal = Negative(p.along.normal);
        PassThrough(p.along, first);
    }
    return true;
}

// Turns the surface towards the instrument, and the across plane with it; false when the instrument lies on it.
bool FaceInstrument(const PointRecord& axis)
{
    ThreePointPlane& p = stored;
    const double distance = SignedDistance(p.surface, axis);
    if (std::fabs(distance) < NEAR_ZERO)
    {
        return false;
    }
    if (distance < 0.0)
    {
        p.surface.normal = Negative(p.surface.normal);
        PassThrough(p.surface, p.first);
        UnitNormal(p.surface.normal, p.baseline, &p.across.normal);
        PassThrough(p.across, p.first);
    }
    return true;
}

// Where the sight meets the surface; false when it does not run towards it.
bool IntersectSight(double azimuth, double zenith, const PointRecord& axis, PointRecord* point)
{
    const double sinZ = std::sin(zenith);
    const Vector sight = {sinZ * std::cos(azimuth), sinZ * std::sin(azimuth), std::cos(zenith)};
    const double k = DotProduct(stored.surface.normal, sight);
    if (k > -NEAR_ZERO)
    {
        return false;
    }
    const double r = SignedDistance(stored.surface, axis) / (-k);
    point->northing = axis.northing + r * sight.n;
    point->easting = axis.easting + r * sight.e;
    point->height = axis.height + r * sight.h;
    return true;
}

} // namespace

} // namespace qstdlib

using namespace qstdlib;

int32_t QREFSet3PtBasePlane(const PointRecord* first, const PointRecord* second, const PointRecord* third)
{
    stored.isSet = 0;
    if (!HasPlanAndHeight(*first) || !HasPlanAndHeight(*second))
    {
        return QSTD_MISSING_COORDINATES;
    }
    PointRecord last = third != nullptr ? *third : *second;
    if (third == nullptr)
    {
        last.height += 1.0; // the vertical plane
    }
    if (!HasPlanAndHeight(last))
    {
        return QSTD_MISSING_COORDINATES;
    }
    if (CoincideInSpace(*first, *second) || CoincideInSpace(*second, last) || CoincideInSpace(last, *first))
    {
        return QSTD_COINCIDENT_POINTS;
    }
    if (!Fit(*first, *second, last))
    {
        return QSTD_DEGENERATE;
    }
    stored.first = *first;
    stored.isSet = 1;
    return QSTD_OK;
}

int32_t QREFCalc3PtPlane(AngleUnit horizontalAngle, AngleUnit zenithAngle, const PointRecord* station,
                         double instrumentHeight, PointRecord* point, double* alongBaseline, double* acrossBaseline)
{
    *point = UNDEFINED_SPATIAL_POINT;
    *alongBaseline = UNDEFINED_REAL;
    *acrossBaseline = UNDEFINED_REAL;
    if (stored.isSet == 0)
    {
        return QSTD_NOT_DEFINED;
    }
    PointRecord axis = *station;
    axis.height = station->height + instrumentHeight;
    if (!FaceInstrument(axis))
    {
        return QSTD_DEGENERATE;
    }
    const SightAngles sight = ReduceToFaceOne({ApplyAzimuthReference(horizontalAngle), zenithAngle});
    // A sight that misses the plane leaves the outputs undefined; the status does not tell.
    if (IntersectSight(AngleToRadians(sight.horizontalAngle), AngleToRadians(sight.zenithAngle), axis, point))
    {
        *alongBaseline = SignedDistance(stored.along, *point);
        *acrossBaseline = SignedDistance(stored.across, *point);
    }
    return QSTD_OK;
}
