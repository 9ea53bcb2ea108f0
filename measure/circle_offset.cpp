#include <cmath>
#include <utility>

#include "core/angle.h"
#include "core/face.h"
#include "core/point.h"
#include "measure/hand_off.h"

namespace qstdlib {

namespace {

// Azimuth of a sight in either face, north-based.
AngleUnit SightAzimuth(AngleUnit horizontalAngle, AngleUnit zenithAngle)
{
    return ReduceToFaceOne({ApplyAzimuthReference(horizontalAngle), zenithAngle}).horizontalAngle;
}

// Into the circle, from wherever.
AngleUnit IntoCircle(AngleUnit azimuth)
{
    const AngleUnit remainder = CircleRemainder(azimuth);
    return remainder < 0 ? remainder + ANGLE_FULL_CIRCLE : remainder;
}

// The edges coincide or oppose each other.
bool HaveNoOpening(AngleUnit edge1, AngleUnit edge2)
{
    const AngleUnit opening = edge1 - edge2;
    return opening == 0 || opening == ANGLE_HALF_CIRCLE || opening == -ANGLE_HALF_CIRCLE;
}

} // namespace

} // namespace qstdlib

using namespace qstdlib;

int32_t QCalcOfsCircle(const ObservationRecord* faceSighting, double passthrough, AngleUnit leftAngle,
                       AngleUnit leftZenith, AngleUnit rightAngle, AngleUnit rightZenith, const PointRecord* station,
                       double /*reserved*/, SightRecord* observation, PointRecord* centre, double* radius)
{
    const AngleUnit faceAzimuth = SightAzimuth(faceSighting->horizontalAngle, faceSighting->zenithAngle);
    const AngleUnit edge1 = IntoCircle(SightAzimuth(leftAngle, leftZenith));
    const AngleUnit edge2 = IntoCircle(SightAzimuth(rightAngle, rightZenith));
    if (IsVertical(faceSighting->zenithAngle) || IsVertical(leftZenith) || IsVertical(rightZenith))
    {
        return QSTD_MISSING_COORDINATES;
    }
    if (HaveNoOpening(edge1, edge2))
    {
        return QSTD_DEGENERATE;
    }
    const double alpha = UnreducedRadians(faceAzimuth);
    double left = UnreducedRadians(edge1);
    double right = UnreducedRadians(edge2);
    double theta = right - left;
    double sinTheta = std::sin(theta);
    if (sinTheta < 0.0)
    {
        std::swap(left, right);
        theta = right - left;
        sinTheta = std::sin(theta);
    }

    // The tangent point and the near face on the circle give a quadratic equation in the tangent length.
    const double a = std::sin(alpha - left);
    const double b = std::sin(right - alpha);
    const double q = std::pow(b + a, 2.0) - std::pow(sinTheta, 2.0);
    if (q < 0.0)
    {
        return QSTD_MISSING_COORDINATES;
    }
    const double inverse = 1.0 / sinTheta;
    const double tangent = (std::sqrt(q) + b + a) * inverse * faceSighting->secondDistance;
    const double r = (1.0 - std::cos(theta)) * inverse * tangent;
    const double cosLeft = std::cos(left);
    const double sinLeft = std::sin(left);

    *radius = r;
    *centre = {cosLeft * tangent + station->northing - sinLeft * r, cosLeft * r + sinLeft * tangent + station->easting,
               centre->height, FLAGS_PLAN_AND_HEIGHT};
    HandOff(centre, passthrough, observation);
    return QSTD_OK;
}
