#include "cogo/line.h"

#include <cmath>

#include "core/angle.h"
#include "core/point.h"

namespace qstdlib {

namespace {

// Slopes of the exported intersection that are closer than this count as parallel.
constexpr double PARALLEL_SLOPES = 1e-5;

LineDef Definition(const TwoPointLine& line)
{
    return {{line.firstNorthing, line.firstEasting, 0.0, FLAGS_PLAN},
            {line.secondNorthing, line.secondEasting, 0.0, FLAGS_PLAN},
            0,
            LINE_BY_POINTS};
}

bool HasConstantNorthing(const TwoPointLine& line)
{
    return line.firstNorthing == line.secondNorthing;
}

void SetPlan(PointRecord& point, double northing, double easting)
{
    point.northing = northing;
    point.easting = easting;
}

// Where two lines cross of which neither has constant northing.
void SetCrossing(PointRecord& point, double slopeA, double interceptA, double slopeB, double interceptB)
{
    const double d = slopeA - slopeB;
    SetPlan(point, (interceptB - interceptA) / d, (interceptB * slopeA - slopeB * interceptA) / d);
}

int32_t SlopeByPoints(const PointRecord& first, const PointRecord& second, double* slope, double* intercept)
{
    if (!HasPlan(second))
    {
        return QSTD_MISSING_COORDINATES;
    }
    if (CoincideInPlan(first, second))
    {
        return QSTD_COINCIDENT_POINTS;
    }
    if (first.northing == second.northing)
    {
        *slope = SLOPE_OF_CONSTANT_NORTHING;
        *intercept = SLOPE_OF_CONSTANT_NORTHING;
    }
    else if (first.easting == second.easting)
    {
        *slope = 0.0;
        *intercept = first.easting;
    }
    else
    {
        const double dN = second.northing - first.northing;
        *slope = (second.easting - first.easting) / dN;
        *intercept = (first.easting * second.northing - second.easting * first.northing) / dN;
    }
    return QSTD_OK;
}

void SlopeByAzimuth(const PointRecord& first, AngleUnit azimuth, double* slope, double* intercept)
{
    // The half circle changes no slope but the last bits of the tangent: kept, they are in stored results.
    const AngleUnit direction = ApplyAzimuthReference(WrapAdd(azimuth, ANGLE_HALF_CIRCLE));
    *slope = std::tan(UnreducedRadians(direction));
    *intercept = first.easting - first.northing * *slope;
}

} // namespace

int32_t LineSlopeIntercept(const LineDef* line, double* slope, double* intercept)
{
    if (!HasPlan(line->first))
    {
        return QSTD_MISSING_COORDINATES;
    }
    if (line->mode == LINE_BY_POINTS)
    {
        const int32_t status = SlopeByPoints(line->first, line->second, slope, intercept);
        if (status != QSTD_OK)
        {
            return status;
        }
    }
    else
    {
        SlopeByAzimuth(line->first, line->azimuth, slope, intercept);
    }
    // One-sided: a very steep negative slope stays as it is.
    if (*slope > SLOPE_OF_CONSTANT_NORTHING)
    {
        *slope = SLOPE_OF_CONSTANT_NORTHING;
    }
    return QSTD_OK;
}

int32_t IntersectLines(const TwoPointLine* lineA, const TwoPointLine* lineB, PointRecord* result)
{
    *result = UNDEFINED_PLAN_POINT;
    const LineDef definitionA = Definition(*lineA);
    const LineDef definitionB = Definition(*lineB);
    double slopeA = 0.0;
    double interceptA = 0.0;
    double slopeB = 0.0;
    double interceptB = 0.0;
    int32_t status = LineSlopeIntercept(&definitionA, &slopeA, &interceptA);
    if (status == QSTD_OK)
    {
        status = LineSlopeIntercept(&definitionB, &slopeB, &interceptB);
    }
    if (status != QSTD_OK)
    {
        return status;
    }

    if (HasConstantNorthing(*lineA) && !HasConstantNorthing(*lineB))
    {
        SetPlan(*result, lineA->firstNorthing, lineA->firstNorthing * slopeB + interceptB);
    }
    else if (HasConstantNorthing(*lineB) && !HasConstantNorthing(*lineA))
    {
        SetPlan(*result, lineB->firstNorthing, lineB->firstNorthing * slopeA + interceptA);
    }
    else if (slopeA == slopeB)
    {
        return QSTD_PARALLEL_LINES;
    }
    else
    {
        SetCrossing(*result, slopeA, interceptA, slopeB, interceptB);
    }
    return QSTD_OK;
}

} // namespace qstdlib

using namespace qstdlib;

int32_t QCogoCalcCrossLine(const LineDef* line1, const LineDef* line2, PointRecord* result)
{
    *result = UNDEFINED_PLAN_POINT;
    double slope1 = 0.0;
    double intercept1 = 0.0;
    double slope2 = 0.0;
    double intercept2 = 0.0;
    int32_t status = LineSlopeIntercept(line1, &slope1, &intercept1);
    if (status == QSTD_OK)
    {
        status = LineSlopeIntercept(line2, &slope2, &intercept2);
    }
    if (status != QSTD_OK)
    {
        return status;
    }

    if (std::fabs(slope1 - slope2) < PARALLEL_SLOPES)
    {
        return QSTD_PARALLEL_LINES;
    }
    if (slope1 == SLOPE_OF_CONSTANT_NORTHING)
    {
        SetPlan(*result, line1->first.northing, line1->first.northing * slope2 + intercept2);
    }
    else if (slope2 == SLOPE_OF_CONSTANT_NORTHING)
    {
        SetPlan(*result, line2->first.northing, line2->first.northing * slope1 + intercept1);
    }
    else
    {
        SetCrossing(*result, slope1, intercept1, slope2, intercept2);
    }
    return QSTD_OK;
}
