// Letters, as usual for the adjustment of observation equations v = A dx + l: observations L with weights P, unknowns
// X, design matrix A, misclosures l, corrections dx, residuals v, cofactors Q. All are indexed from 1. Rows follow the
// records; within a record its direction comes first, then its distance or, in a spatial adjustment, its horizontal
// distance and vertical difference.
#include "station/adjustment/general.h"

#include <cmath>
#include <cstdlib>

#include "station/adjustment/approximation.h"
#include "station/adjustment/observations.h"

namespace qstdlib {

namespace {

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
    int32_t rows;
    int32_t unknownCount;
};

void Release(const Scratch& s)
{
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

// Weights of horizontal distance and vertical difference: the inverse covariance propagated from slope distance and
// zenith angle. False when the slope distance vanishes.
bool SetSpatialWeights(const ResectWorkRecord& record, const AdjustmentPrecision& precision, Matrix weights, int32_t k)
{
    const double w = DistanceWeight(precision, record.slopeDistance);
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
    int32_t k = 1;
    for (int16_t i = 0; i < count; ++i)
    {
        const ResectWorkRecord& record = work[i];
        if (IsPresent(record.direction))
        {
            observations[k] = record.direction;
            weights[k][k] = DIRECTION_WEIGHT;
            ++k;
        }
        if (!HasUsableDistance(mode, record))
        {
            continue;
        }
        observations[k] = record.horizontalDistance;
        if (mode == ADJUST_MODE_PLAN)
        {
            weights[k][k] = DistanceWeight(precision, record.horizontalDistance);
            ++k;
            continue;
        }
        observations[k + 1] = record.verticalDifference;
        if (!SetSpatialWeights(record, precision, weights, k))
        {
            return false;
        }
        k += 2;
    }
    return true;
}

void SetRow(const ObservationEquation& equation, int32_t unknownCount, double* design, double* misclosure)
{
    ClearRow(design, unknownCount);
    design[1] = equation.byNorthing;
    design[2] = equation.byEasting;
    *misclosure = equation.misclosure;
}

bool AllocateEquations(Scratch& s)
{
    s.design = AllocMatrix(1, s.rows, 1, s.unknownCount);
    s.misclosures = s.design != nullptr ? AllocVector(s.rows) : nullptr;
    s.corrections = s.misclosures != nullptr ? AllocVector(s.unknownCount) : nullptr;
    s.residuals = s.corrections != nullptr ? AllocVector(s.rows) : nullptr;
    s.cofactors = s.residuals != nullptr ? AllocMatrix(1, s.unknownCount, 1, s.unknownCount) : nullptr;
    return s.cofactors != nullptr;
}

// dx = -((Q A^T) P) l
int32_t FormCorrections(const Scratch& s)
{
    const Matrix cofactorsByDesign = AllocMatrix(1, s.unknownCount, 1, s.rows);
    const Matrix weighted = cofactorsByDesign != nullptr ? AllocMatrix(1, s.unknownCount, 1, s.rows) : nullptr;
    int32_t result = ADJUST_NO_MEMORY;
    if (weighted != nullptr)
    {
        MultiplyByTranspose(s.cofactors, s.design, cofactorsByDesign, s.unknownCount, s.unknownCount, s.rows);
        MultiplyMatrices(cofactorsByDesign, s.weights, weighted, s.unknownCount, s.rows, s.rows);
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

// v = A dx + l
void FormResiduals(const Scratch& s)
{
    MatrixTimesVector(s.design, s.corrections, s.residuals, s.rows, s.unknownCount);
    for (int32_t k = 1; k <= s.rows; ++k)
    {
        s.residuals[k] += s.misclosures[k];
    }
}

// v^T P v, row by row: the weights are symmetric.
double WeightedSquareSum(const Scratch& s)
{
    double squareSum = 0.0;
    for (int32_t j = 1; j <= s.rows; ++j)
    {
        double weighted = 0.0;
        for (int32_t i = 1; i <= s.rows; ++i)
        {
            weighted += s.weights[j][i] * s.residuals[i];
        }
        squareSum += weighted * s.residuals[j];
    }
    return squareSum;
}

// One iteration: Q = (A^T P A)^-1, dx, X + dx, v.
int32_t Adjust(int32_t mode, int16_t count, const ResectWorkRecord* work, const Scratch& s)
{
    BuildObservationEquations(mode, count, work, s.unknowns, s.observations, s.design, s.misclosures);
    int32_t result = InvertNormalMatrix(s.design, s.weights, s.cofactors, s.rows, s.unknownCount);
    if (result == 0)
    {
        result = FormCorrections(s);
    }
    if (result != 0)
    {
        return result;
    }
    for (int32_t i = 1; i <= s.unknownCount; ++i)
    {
        s.unknowns[i] += s.corrections[i];
    }
    FormResiduals(s);
    return 0;
}

// Gauss-Newton iteration. The square sum is that of the linearised model, so that the equations need not be built once
// more after the last correction.
int32_t Iterate(int32_t mode, int16_t count, const ResectWorkRecord* work, const Scratch& s, int32_t limit,
                double* squareSum)
{
    double previous = 0.0;
    int32_t iteration = 1;
    while (iteration <= limit)
    {
        const int32_t result = Adjust(mode, count, work, s);
        if (result != 0)
        {
            return result;
        }
        *squareSum = WeightedSquareSum(s);
        if (IsLastIteration(iteration, *squareSum, previous))
        {
            break;
        }
        previous = *squareSum;
        ++iteration;
    }
    return limit > 1 && iteration > limit ? ADJUST_NOT_CONVERGED : ADJUST_CONVERGED;
}

// Everything that the adjustment needs before it can iterate.
int32_t Prepare(int32_t* mode, int16_t count, const ResectWorkRecord* work, const AdjustmentPrecision& precision,
                Scratch& s, int32_t* limit)
{
    int32_t distances = 0;
    int32_t result =
        BuildObservationVector(mode, count, work, precision, &s.observations, &s.weights, &s.rows, &distances);
    if (result == 0)
    {
        result = ApproximateStation(*mode, count, work, distances, &s.unknowns, &s.unknownCount, s.rows, limit);
    }
    if (result == 0 && !AllocateEquations(s))
    {
        result = ADJUST_NO_MEMORY;
    }
    return result;
}

} // namespace

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
    ClearMatrix(matrix, *rows, *rows);
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
                               const double* observations, Matrix design, double* misclosures)
{
    const bool spatial = mode == ADJUST_MODE_SPATIAL;
    const int32_t unknownCount = spatial ? 4 : 3;
    const double orientation = unknowns[unknownCount];
    int32_t k = 1;
    for (int16_t i = 0; i < count; ++i)
    {
        const ResectWorkRecord& record = work[i];
        const TargetOffset target = OffsetFrom(unknowns[1], unknowns[2], record);
        if (IsPresent(record.direction))
        {
            SetRow(DirectionEquation(target, orientation, observations[k]), unknownCount, design[k], &misclosures[k]);
            design[k][unknownCount] = 1.0;
            ++k;
        }
        if (!HasUsableDistance(mode, record))
        {
            continue;
        }
        SetRow(DistanceEquation(target, observations[k]), unknownCount, design[k], &misclosures[k]);
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

int32_t AdjustResection(int32_t mode, int16_t count, ResectWorkRecord* work, AdjustmentPrecision precision,
                        double* northing, double* easting, double* height, double* orientation, double* northingSigma,
                        double* eastingSigma, double* heightSigma, double* orientationSigma, double* unitWeightSigma)
{
    Scratch s = {};
    int32_t limit = 0;
    int32_t result = Prepare(&mode, count, work, precision, s, &limit);
    double squareSum = 0.0;
    if (result == 0)
    {
        result = Iterate(mode, count, work, s, limit, &squareSum);
    }
    if (result == ADJUST_CONVERGED || result == ADJUST_NOT_CONVERGED)
    {
        const bool spatial = mode == ADJUST_MODE_SPATIAL;
        const int32_t last = s.unknownCount;
        const double varianceFactor = VarianceFactor(squareSum, s.rows - s.unknownCount);
        *northing = s.unknowns[1];
        *easting = s.unknowns[2];
        *height = spatial ? s.unknowns[3] : MISSING_VALUE;
        *orientation = ReduceOnce(s.unknowns[last]);
        *northingSigma = std::sqrt(s.cofactors[1][1] * varianceFactor);
        *eastingSigma = std::sqrt(s.cofactors[2][2] * varianceFactor);
        *heightSigma = spatial ? std::sqrt(s.cofactors[3][3] * varianceFactor) : MISSING_VALUE;
        *orientationSigma = std::sqrt(s.cofactors[last][last] * varianceFactor);
        *unitWeightSigma = std::sqrt(varianceFactor);
        StoreResiduals(mode, count, work, s.residuals);
    }
    Release(s);
    return result;
}

} // namespace qstdlib
