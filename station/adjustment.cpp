// Letters, as usual for the adjustment of observation equations v = A dx + l: observations L with weights P, unknowns
// X, design matrix A, misclosures l, corrections dx, residuals v, normal matrix N, cofactors Q. All are indexed from 1.
// Rows follow the records; within a record its direction comes first, then its distance or, in a spatial adjustment,
// its horizontal distance and vertical difference.
#include "station/adjustment.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "core/angle.h"
#include "core/real_bits.h"
#include "core/soft_arithmetic.h"
#include "station/approximation.h"
#include "station/plan_rows.h"
#include "station/plan_step.h"

namespace qstdlib {

namespace {

constexpr double ARC_SECOND = 4.84813681109536e-6;

// The iteration stops when the weighted square sum changes by less than this part of itself.
constexpr double RELATIVE_CHANGE = 0.001;

constexpr int32_t MOST_UNKNOWNS = 4;

// Scratch of one adjustment. What is not allocated yet is null.
struct Scratch
{
    double* observations;
    Matrix weights;
    double* unknowns;
    Matrix design;
    double* misclosures;
    double* corrections;
    double* residuals;
    Matrix cofactors;
    Matrix normal; // in plan only
    int32_t rows;
    int32_t unknownCount;
    bool plan;
    int32_t weightBand; // only the two rows of a spatial distance are correlated
    OrientingSight sight;
};

void Release(const Scratch& s)
{
    FreeMatrix(s.normal, 1, 1);
    FreeMatrix(s.cofactors, 1, 1);
    std::free(s.residuals);
    std::free(s.corrections);
    std::free(s.misclosures);
    FreeMatrix(s.design, 1, 1);
    std::free(s.unknowns);
    FreeMatrix(s.weights, 1, 1);
    std::free(s.observations);
}

double Square(double value)
{
    return value * value;
}

// What distances weigh, relative to the variance of one direction.
class DistanceWeights
{
public:
    explicit DistanceWeights(const AdjustmentPrecision& precision)
        : angleVariance(Square(precision.angleSigma * ARC_SECOND)),
          constantVariance(Square(precision.distanceConstant)), proportional(precision.distanceProportional)
    {
    }

    double Of(double distance) const
    {
        return Divisor(constantVariance + Square(proportional * distance)).Into(angleVariance);
    }

private:
    double angleVariance;
    double constantVariance;
    double proportional;
};

// Weights of horizontal distance and vertical difference: the inverse covariance propagated from slope distance and
// zenith angle. False when the slope distance vanishes.
bool SetSpatialWeights(const ResectWorkRecord& record, const DistanceWeights& distances, Matrix weights, int32_t k)
{
    const double w = distances.Of(record.slopeDistance);
    const double cosZ = std::cos(record.zenith);
    const double sinZ = std::sin(record.zenith);
    const double squaredSlope = Square(record.slopeDistance);
    if (squaredSlope < MACHINE_EPSILON)
    {
        return false;
    }
    weights[k][k] = Square(sinZ) * w + Square(cosZ) / squaredSlope;
    weights[k][k + 1] = (w - 1.0 / squaredSlope) * sinZ * cosZ;
    weights[k + 1][k] = weights[k][k + 1];
    weights[k + 1][k + 1] = Square(cosZ) * w + Square(sinZ) / squaredSlope;
    return true;
}

// Fills the rows of all records; false when a spatial slope distance vanishes.
bool FillObservations(int32_t mode, int16_t count, const ResectWorkRecord* work, const AdjustmentPrecision& precision,
                      double* observations, Matrix weights)
{
    const DistanceWeights distanceWeights(precision);
    int32_t k = 1;
    for (int16_t i = 0; i < count; ++i)
    {
        const ResectWorkRecord& record = work[i];
        if (IsPresent(record.direction))
        {
            observations[k] = record.direction;
            weights[k][k] = 1.0;
            ++k;
        }
        if (!HasUsableDistance(mode, record))
        {
            continue;
        }
        observations[k] = record.horizontalDistance;
        if (mode == ADJUST_MODE_PLAN)
        {
            weights[k][k] = distanceWeights.Of(record.horizontalDistance);
            ++k;
            continue;
        }
        observations[k + 1] = record.verticalDifference;
        if (!SetSpatialWeights(record, distanceWeights, weights, k))
        {
            return false;
        }
        k += 2;
    }
    return true;
}

// The elements of a matrix follow one another. Eight a turn: there are as many as the rows squared.
void FillZero(Matrix m, int32_t rows, int32_t columns)
{
    double* element = m[1] + 1;
    const size_t count = static_cast<size_t>(rows) * static_cast<size_t>(columns);
    for (size_t octets = count / 8; octets > 0; --octets, element += 8)
    {
        element[0] = 0.0;
        element[1] = 0.0;
        element[2] = 0.0;
        element[3] = 0.0;
        element[4] = 0.0;
        element[5] = 0.0;
        element[6] = 0.0;
        element[7] = 0.0;
    }
    std::fill_n(element, count % 8, 0.0);
}

double WrapOnce(double radians)
{
    if (MagnitudeBits(radians) <= BitsOf(PI))
    {
        return radians;
    }
    if (radians > PI)
    {
        radians -= TWO_PI;
    }
    if (radians < -PI)
    {
        radians += TWO_PI;
    }
    return radians;
}

bool AllocateEquations(Scratch& s)
{
    s.design = AllocMatrix(1, s.rows, 1, s.unknownCount);
    s.misclosures = s.design != nullptr ? AllocVector(s.rows) : nullptr;
    s.corrections = s.misclosures != nullptr ? AllocVector(s.unknownCount) : nullptr;
    s.residuals = s.corrections != nullptr ? AllocVector(s.rows) : nullptr;
    s.cofactors = s.residuals != nullptr ? AllocMatrix(1, s.unknownCount, 1, s.unknownCount) : nullptr;
    if (s.cofactors == nullptr || !s.plan)
    {
        return s.cofactors != nullptr;
    }
    s.normal = AllocMatrix(1, NORMAL_COLUMNS, 1, NORMAL_COLUMNS);
    return s.normal != nullptr;
}

// dx = -((Q A^T) P) l by the matrix toolkit.
int32_t MultiplyCorrections(const Scratch& s)
{
    const Matrix cofactorsByDesign = AllocMatrix(1, s.unknownCount, 1, s.rows);
    const Matrix weighted = cofactorsByDesign != nullptr ? AllocMatrix(1, s.unknownCount, 1, s.rows) : nullptr;
    int32_t result = ADJUST_NO_MEMORY;
    if (weighted != nullptr)
    {
        MultiplyByTranspose(s.cofactors, s.design, cofactorsByDesign, s.unknownCount, s.unknownCount, s.rows);
        MultiplyMatrices(cofactorsByDesign, s.weights, weighted, s.unknownCount, s.rows, s.rows, FULL_BAND,
                         s.weightBand);
        MatrixTimesVector(weighted, s.misclosures, s.corrections, s.unknownCount, s.rows);
        for (int32_t i = 1; i <= s.unknownCount; ++i)
        {
            s.corrections[i] = -s.corrections[i];
        }
        result = 0;
    }
    FreeMatrix(weighted, 1, 1);
    FreeMatrix(cofactorsByDesign, 1, 1);
    return result;
}

// v = A dx + l by the matrix toolkit.
void MultiplyResiduals(const Scratch& s)
{
    MatrixTimesVector(s.design, s.corrections, s.residuals, s.rows, s.unknownCount);
    for (int32_t k = 1; k <= s.rows; ++k)
    {
        s.residuals[k] += s.misclosures[k];
    }
}

// Corrections, residuals and their weighted square sum.
int32_t Correct(const Scratch& s, double* omega)
{
    int32_t result = 0;
    if (!s.plan || !SumCorrections(s.cofactors, s.design, s.weights, s.misclosures, s.rows, s.corrections))
    {
        result = MultiplyCorrections(s);
    }
    if (result == 0)
    {
        MultiplyResiduals(s);
        *omega = QuadraticForm(s.weights, s.residuals, s.rows, s.weightBand);
    }
    return result;
}

// The equations at the current unknowns; in plan the normal equations, too, with so many columns.
void FormEquations(int32_t mode, int16_t count, const ResectWorkRecord* work, const Scratch& s,
                   const OrientingSight* sight, int32_t columns)
{
    BuildObservationEquations(mode, count, work, s.unknowns, s.observations, s.design, s.misclosures, sight);
    if (s.plan)
    {
        SumNormalEquations(s.design, s.weights, s.misclosures, s.rows, columns, s.normal);
    }
}

// An iteration in full: cofactors, corrections, residuals and their weighted square sum; corrects the unknowns.
int32_t Adjust(const Scratch& s, double* omega)
{
    int32_t result = s.plan
                         ? Invert(s.normal, s.cofactors, s.unknownCount)
                         : InvertNormalMatrix(s.design, s.weights, s.cofactors, s.rows, s.unknownCount, s.weightBand);
    if (result == 0)
    {
        result = Correct(s, omega);
    }
    if (result != 0)
    {
        return result;
    }
    for (int32_t i = 1; i <= s.unknownCount; ++i)
    {
        s.unknowns[i] += s.corrections[i];
    }
    return 0;
}

// Whether no row is without weight.
bool AllWeigh(Matrix weights, int32_t rows)
{
    int32_t k = 1;
    while (k <= rows && !IsZero(weights[k][k]))
    {
        ++k;
    }
    return k > rows;
}

// Gauss-Newton iteration. The square sum is that of the linearised model, so that the equations need not be built once
// more after the last correction.
//
// In plan the first iteration is only a step, where one will do. Its square sum is a little off: where that could
// decide whether the second iteration is the last, all begins anew, in full.
int32_t Iterate(int32_t mode, int16_t count, const ResectWorkRecord* work, const Scratch& s, int32_t limit,
                double* omega)
{
    double approximate[MOST_UNKNOWNS];
    std::copy_n(s.unknowns + 1, s.unknownCount, approximate);
    bool byStep = s.plan && limit > 1 && AllWeigh(s.weights, s.rows);
    double previous = 0.0;
    int32_t iteration = 1;
    while (iteration <= limit)
    {
        const bool isFirst = iteration == 1;
        const bool tryStep = isFirst && byStep;
        FormEquations(mode, count, work, s, isFirst ? &s.sight : nullptr, tryStep ? NORMAL_COLUMNS : s.unknownCount);
        if (tryStep)
        {
            byStep = StepInPlan(s.normal, s.rows, s.unknowns, omega);
        }
        const int32_t result = tryStep && byStep ? 0 : Adjust(s, omega);
        if (result != 0)
        {
            return result;
        }
        if (*omega < MACHINE_EPSILON)
        {
            break;
        }
        if (!isFirst)
        {
            const double change = std::fabs(Divisor(previous).Into(*omega - previous));
            if (iteration == 2 && byStep && IsWithin(change - RELATIVE_CHANGE, 2.0 * STEP_ACCURACY))
            {
                std::copy_n(approximate, s.unknownCount, s.unknowns + 1);
                byStep = false;
                iteration = 1;
                continue;
            }
            if (IsWithin(change, RELATIVE_CHANGE))
            {
                break;
            }
        }
        previous = *omega;
        ++iteration;
    }
    return limit > 1 && iteration > limit ? ADJUST_NOT_CONVERGED : ADJUST_CONVERGED;
}

// Brought back by one circle at most; exactly a full circle stays.
double ReduceOnce(double orientation)
{
    if (orientation < 0.0)
    {
        orientation += TWO_PI;
    }
    if (orientation > TWO_PI)
    {
        orientation -= TWO_PI;
    }
    return orientation;
}

// Everything that the adjustment needs before it can iterate.
int32_t Prepare(int32_t* mode, int16_t count, const ResectWorkRecord* work, const AdjustmentPrecision& precision,
                Scratch& s, int32_t* limit)
{
    int32_t distances = 0;
    int32_t result =
        BuildObservationVector(mode, count, work, precision, &s.observations, &s.weights, &s.rows, &distances);
    s.plan = *mode == ADJUST_MODE_PLAN;
    s.weightBand = s.plan ? 0 : 1;
    if (result == 0)
    {
        result =
            ApproximateStation(*mode, count, work, distances, &s.unknowns, &s.unknownCount, s.rows, limit, &s.sight);
    }
    if (result == 0 && !AllocateEquations(s))
    {
        result = ADJUST_NO_MEMORY;
    }
    return result;
}

} // namespace

void CountObservations(int32_t* mode, int16_t count, const ResectWorkRecord* work, int32_t* directions,
                       int32_t* heights, int32_t* distances, int32_t* withHeight)
{
    *directions = 0;
    *heights = 0;
    *distances = 0;
    *withHeight = 0;
    int32_t withDistances = 0;
    for (int16_t i = 0; i < count; ++i)
    {
        *withHeight += IsPresent(work[i].height) ? 1 : 0;
        withDistances += HasDistances(work[i]) ? 1 : 0;
    }
    if (*withHeight == 0 || withDistances == 0)
    {
        *mode = ADJUST_MODE_PLAN;
    }
    for (int16_t i = 0; i < count; ++i)
    {
        *directions += IsPresent(work[i].direction) ? 1 : 0;
        if (HasUsableDistance(*mode, work[i]))
        {
            ++*distances;
            *heights += *mode == ADJUST_MODE_SPATIAL ? 1 : 0;
        }
    }
}

int32_t BuildObservationVector(int32_t* mode, int16_t count, const ResectWorkRecord* work,
                               AdjustmentPrecision precision, double** observations, Matrix* weights, int32_t* rows,
                               int32_t* distances)
{
    int32_t directions = 0;
    int32_t heights = 0;
    int32_t withHeight = 0;
    CountObservations(mode, count, work, &directions, &heights, distances, &withHeight);
    *rows = *distances + directions + heights;
    if (*rows == 0)
    {
        return ADJUST_DEGENERATE; // an empty set: a matrix needs at least one row
    }
    double* const vector = AllocVector(*rows);
    if (vector == nullptr)
    {
        return ADJUST_NO_MEMORY;
    }
    const Matrix matrix = AllocMatrix(1, *rows, 1, *rows);
    if (matrix == nullptr)
    {
        std::free(vector);
        return ADJUST_NO_MEMORY;
    }
    FillZero(matrix, *rows, *rows);
    if (!FillObservations(*mode, count, work, precision, vector, matrix))
    {
        FreeMatrix(matrix, 1, 1);
        std::free(vector);
        return ADJUST_DEGENERATE;
    }
    *observations = vector;
    *weights = matrix;
    return 0;
}

void BuildObservationEquations(int32_t mode, int16_t count, const ResectWorkRecord* work, const double* unknowns,
                               const double* observations, Matrix design, double* misclosures,
                               const OrientingSight* sight)
{
    const bool spatial = mode == ADJUST_MODE_SPATIAL;
    const int32_t unknownCount = spatial ? 4 : 3;
    const double orientation = unknowns[unknownCount];
    int32_t k = 1;
    for (int16_t i = 0; i < count; ++i)
    {
        const ResectWorkRecord& record = work[i];
        const double dN = record.northing - unknowns[1];
        const double dE = record.easting - unknowns[2];
        const double squaredDistance = dN * dN + dE * dE;
        if (IsPresent(record.direction))
        {
            const Divisor divisor(squaredDistance);
            ClearRow(design[k], unknownCount);
            design[k][1] = divisor.Into(-dE);
            design[k][2] = divisor.Into(dN);
            design[k][unknownCount] = 1.0;
            const bool isKnown = sight != nullptr && sight->target == &record;
            const double azimuth = isKnown ? sight->azimuth : std::atan2(dE, dN);
            misclosures[k] = WrapOnce((orientation + observations[k]) - azimuth);
            ++k;
        }
        if (!HasUsableDistance(mode, record))
        {
            continue;
        }
        const double distance = SquareRoot(squaredDistance);
        const Divisor divisor(distance);
        ClearRow(design[k], unknownCount);
        design[k][1] = divisor.Into(dN);
        design[k][2] = divisor.Into(dE);
        misclosures[k] = observations[k] - distance;
        ++k;
        if (spatial)
        {
            const double sightedHeight =
                IsPresent(record.reflectorHeight) ? record.height + record.reflectorHeight : record.height;
            ClearRow(design[k], unknownCount);
            design[k][3] = 1.0;
            misclosures[k] = observations[k] - (sightedHeight - unknowns[3]);
            ++k;
        }
    }
}

void StoreResiduals(int32_t mode, int16_t count, ResectWorkRecord* work, const double* residuals)
{
    int32_t k = 1;
    for (int16_t i = 0; i < count; ++i)
    {
        ResectWorkRecord& record = work[i];
        record.angleResidual = 0.0;
        record.distanceResidual = 0.0;
        record.heightValue = 0.0;
        if (IsPresent(record.direction))
        {
            record.angleResidual = -residuals[k++];
        }
        if (HasUsableDistance(mode, record))
        {
            record.distanceResidual = -residuals[k++];
            if (mode == ADJUST_MODE_SPATIAL)
            {
                record.heightValue = -residuals[k++];
            }
        }
    }
}

int32_t AdjustResection(int32_t mode, int16_t count, ResectWorkRecord* work, AdjustmentPrecision precision,
                        double* northing, double* easting, double* height, double* orientation, double* northingSigma,
                        double* eastingSigma, double* heightSigma, double* orientationSigma, double* unitWeightSigma)
{
    Scratch s = {};
    int32_t limit = 0;
    int32_t result = Prepare(&mode, count, work, precision, s, &limit);
    double omega = 0.0;
    if (result == 0)
    {
        result = Iterate(mode, count, work, s, limit, &omega);
    }
    if (result == ADJUST_CONVERGED || result == ADJUST_NOT_CONVERGED)
    {
        const bool spatial = mode == ADJUST_MODE_SPATIAL;
        const int32_t last = s.unknownCount;
        const int32_t redundancy = s.rows - s.unknownCount;
        const double varianceFactor = redundancy > 0 ? Divisor(redundancy).Into(omega) : omega;
        *northing = s.unknowns[1];
        *easting = s.unknowns[2];
        *height = spatial ? s.unknowns[3] : MISSING_VALUE;
        *orientation = ReduceOnce(s.unknowns[last]);
        *northingSigma = SquareRoot(s.cofactors[1][1] * varianceFactor);
        *eastingSigma = SquareRoot(s.cofactors[2][2] * varianceFactor);
        *heightSigma = spatial ? SquareRoot(s.cofactors[3][3] * varianceFactor) : MISSING_VALUE;
        *orientationSigma = SquareRoot(s.cofactors[last][last] * varianceFactor);
        *unitWeightSigma = SquareRoot(varianceFactor);
        StoreResiduals(mode, count, work, s.residuals);
    }
    Release(s);
    return result;
}

} // namespace qstdlib
