#include <cmath>

#include "cogo/line.h"
#include "core/point.h"
#include "core/settings.h"
#include "qstdlib/cogo.h"

namespace qstdlib {

namespace {

void SetPair(PointRecord* pair, double northing1, double easting1, double northing2, double easting2)
{
    pair[0].northing = northing1;
    pair[0].easting = easting1;
    pair[1].northing = northing2;
    pair[1].easting = easting2;
}

double AdjustedDiscriminant(double discriminant)
{
    double scratch = 0.0;
    return Instrument().AdjustDiscriminant(discriminant, &scratch);
}

int32_t CountByRoot(double root)
{
    return root == 0.0 ? 1 : 2;
}

// The line of constant northing n against the circle: a quadratic equation in the easting.
int32_t CrossConstantNorthing(double n, const PointRecord& centre, double squaredRadius, PointRecord* pair)
{
    const double b = centre.easting * 2.0;
    const double dN = n - centre.northing;
    const double discriminant =
        AdjustedDiscriminant(b * b - ((dN * dN + centre.easting * centre.easting) - squaredRadius) * 4.0);
    if (discriminant < 0.0)
    {
        return 0;
    }
    const double root = std::sqrt(discriminant);
    SetPair(pair, n, (b - root) * 0.5, n, (root + b) * 0.5);
    return CountByRoot(root);
}

// The line easting = m * northing + b against the circle: a quadratic equation in the northing.
int32_t CrossSlope(double m, double b, const PointRecord& centre, double squaredRadius, PointRecord* pair)
{
    const double cN = centre.northing;
    const double cE = centre.easting;
    const double quadratic = m * m + 1.0;
    const double linear = ((cE * m + cN) - m * b) * 2.0;
    const double constant = (((cN * cN + b * b) - cE * b * 2.0) + cE * cE) - squaredRadius;
    const double discriminant = AdjustedDiscriminant(linear * linear - constant * quadratic * 4.0);
    if (discriminant < 0.0)
    {
        return 0;
    }
    const double root = std::sqrt(discriminant);
    const double inverse = 1.0 / quadratic;
    const double northing1 = (linear - root) * inverse * 0.5;
    const double northing2 = (root + linear) * inverse * 0.5;
    SetPair(pair, northing1, northing1 * m + b, northing2, northing2 * m + b);
    return CountByRoot(root);
}

} // namespace

} // namespace qstdlib

using namespace qstdlib;

int32_t QCogoCalcCrossCircle(const PointRecord* centre1, double radius1, const PointRecord* centre2, double radius2,
                             PointRecord* pair)
{
    if (radius1 <= 0.0 || radius2 <= 0.0)
    {
        return QSTD_REJECTED;
    }
    if (CoincideInPlan(*centre1, *centre2))
    {
        return radius1 == radius2 ? QSTD_REJECTED : 0;
    }
    pair[0] = UNDEFINED_PLAN_POINT;
    pair[1] = UNDEFINED_PLAN_POINT;

    const double dN = centre2->northing - centre1->northing;
    const double dE = centre2->easting - centre1->easting;
    const double squaredDistance = dE * dE + dN * dN;
    const double inverse = 1.0 / std::sqrt(squaredDistance);
    const double uN = inverse * dN;
    const double uE = inverse * dE;

    // Along the line of centres to the foot of the common chord, and half the chord.
    const double a = ((radius1 * radius1 + squaredDistance) - radius2 * radius2) * inverse * 0.5;
    const double squaredHalfChord = radius1 * radius1 - a * a;
    if (squaredHalfChord < 0.0)
    {
        return 0;
    }
    const double h = std::sqrt(squaredHalfChord);
    SetPair(pair, (a * uN + centre1->northing) - h * uE, (centre1->easting + h * uN) + a * uE,
            (centre1->northing + h * uE) + a * uN, (centre1->easting + a * uE) - h * uN);
    return CoincideInPlan(pair[0], pair[1]) ? 1 : 2;
}

int32_t QCogoCalcCrossLineCircle(const LineDef* line, const PointRecord* centre, double radius, PointRecord* pair)
{
    if (radius < 0.0)
    {
        return QSTD_REJECTED;
    }
    pair[0] = UNDEFINED_PLAN_POINT;
    pair[1] = UNDEFINED_PLAN_POINT;
    double slope = 0.0;
    double intercept = 0.0;
    const int32_t status = LineSlopeIntercept(line, &slope, &intercept);
    if (status != QSTD_OK)
    {
        return status;
    }
    if (slope == SLOPE_OF_CONSTANT_NORTHING)
    {
        return CrossConstantNorthing(line->first.northing, *centre, radius * radius, pair);
    }
    return CrossSlope(slope, intercept, *centre, radius * radius, pair);
}
