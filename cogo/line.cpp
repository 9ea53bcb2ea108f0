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

// A line as easting = slope * northing + intercept.
struct SlopeIntercept
{
    double slope;
    double intercept;
};

// Where a line has this northing.
void SetAtNorthing(PointRecord& point, double northing, const SlopeIntercept& line)
{
    SetPlan(point, northing, northing * line.slope + line.intercept);
}

// Where two lines cross of which neither has constant northing.
void SetCrossing(PointRecord& point, const SlopeIntercept& a, const SlopeIntercept& b)
{
    const double d = a.slope - b.slope;
    SetPlan(point, (b.intercept - a.intercept) / d, (b.intercept * a.slope - b.slope * a.intercept) / d);
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

// QSTD_OK, or the status of the first line that is not determined.
int32_t SlopesAndIntercepts(const LineDef* lineA, const LineDef* lineB, SlopeIntercept* a, SlopeIntercept* b)
{
    const int32_t status = LineSlopeIntercept(lineA, &a->slope, &a->intercept);
    return status != QSTD_OK ? status : LineSlopeIntercept(lineB, &b->slope, &b->intercept);
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
    SlopeIntercept a = {};
    SlopeIntercept b = {};
    const int32_t status = SlopesAndIntercepts(&definitionA, &definitionB, &a, &b);
    if (status != QSTD_OK)
    {
        return status;
    }

    if (HasConstantNorthing(*lineA) && !HasConstantNorthing(*lineB))
    {
        SetAtNorthing(*result, lineA->firstNorthing, b);
    }
    else if (HasConstantNorthing(*lineB) && !HasConstantNorthing(*lineA))
    {
        SetAtNorthing(*result, lineB->firstNorthing, a);
    }
    else if (a.slope == b.slope)
    {
        return QSTD_PARALLEL_LINES;
    }
    else
    {
        SetCrossing(*result, a, b);
    }
    return QSTD_OK;
}

} // namespace qstdlib

using namespace qstdlib;

int32_t QCogoCalcCrossLine(const LineDef* line1, const LineDef* line2, PointRecord* result)
{
    *result = UNDEFINED_PLAN_POINT;
    SlopeIntercept a = {};
    SlopeIntercept b = {};
    const int32_t status = SlopesAndIntercepts(line1, line2, &a, &b);
    if (status != QSTD_OK)
    {
        return status;
    }

    if (std::fabs(a.slope - b.slope) < PARALLEL_SLOPES)
    {
        return QSTD_PARALLEL_LINES;
    }
    if (a.slope == SLOPE_OF_CONSTANT_NORTHING)
    {
        SetAtNorthing(*result, line1->first.northing, b);
    }
    else if (b.slope == SLOPE_OF_CONSTANT_NORTHING)
    {
        SetAtNorthing(*result, line2->first.northing, a);
    }
    else
    {
        SetCrossing(*result, a, b);
    }
    return QSTD_OK;
}
