// Lines in slope-intercept form: easting = slope * northing + intercept.
#ifndef QSTDLIB_COGO_LINE_H
#define QSTDLIB_COGO_LINE_H

#include "qstdlib/cogo.h"

namespace qstdlib {

// The slope of a line of constant northing, and the greatest slope there is. Compared exactly.
constexpr double SLOPE_OF_CONSTANT_NORTHING = UNDEFINED_REAL;

// A line through two plan points.
struct TwoPointLine
{
    double firstNorthing;
    double firstEasting;
    double secondNorthing;
    double secondEasting;
};

// Slope and intercept of a line; both SLOPE_OF_CONSTANT_NORTHING where the northing is constant. Untouched on failure:
// QSTD_COINCIDENT_POINTS, QSTD_MISSING_COORDINATES.
int32_t LineSlopeIntercept(const LineDef* line, double* slope, double* intercept);

// Intersection, UNDEFINED_PLAN_POINT on failure: QSTD_COINCIDENT_POINTS, QSTD_PARALLEL_LINES for exactly equal slopes.
int32_t IntersectLines(const TwoPointLine* lineA, const TwoPointLine* lineB, PointRecord* result);

} // namespace qstdlib

#endif
