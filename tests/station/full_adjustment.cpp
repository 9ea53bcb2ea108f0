#include "tests/station/full_adjustment.h"

#include <cmath>
#include <cstdlib>

#include "tests/station/test_matrix.h"

using namespace qstdlib;

namespace {

constexpr int32_t UNKNOWNS = 3;
constexpr double EPSILON = 2.220446049250313e-16;

// The observations and weights of the records, and the closed-form unknowns; all indexed from 1.
struct Start
{
    int32_t result;
    std::vector<double> observations;
    std::vector<double> weights; // in row order
    std::vector<double> unknowns;
    int32_t limit;
};

std::vector<double> TakeVector(double* block, int32_t length)
{
    std::vector<double> vector(1, 0.0);
    vector.insert(vector.end(), block + 1, block + 1 + length);
    std::free(block);
    return vector;
}

Start Begin(const WorkRecords& work, const AdjustmentPrecision& precision)
{
    Start start = {};
    int32_t mode = ADJUST_MODE_PLAN;
    double* observations = nullptr;
    Matrix weights = nullptr;
    int32_t rows = 0;
    int32_t distances = 0;
    start.result = BuildObservationVector(&mode, CountOf(work), work.data(), precision, &observations, &weights, &rows,
                                          &distances);
    if (start.result != 0)
    {
        return start;
    }
    start.observations = TakeVector(observations, rows);
    for (int32_t k = 1; k <= rows; ++k)
    {
        start.weights.insert(start.weights.end(), weights[k] + 1, weights[k] + 1 + rows);
    }
    FreeMatrix(weights, 1, 1);
    double* unknowns = nullptr;
    int32_t count = 0;
    start.result =
        ApproximateStation(mode, CountOf(work), work.data(), distances, &unknowns, &count, rows, &start.limit);
    if (start.result == 0)
    {
        start.unknowns = TakeVector(unknowns, count);
    }
    return start;
}

double InCircle(double orientation)
{
    constexpr double CIRCLE = 6.283185307179586;
    const double positive = orientation < 0.0 ? orientation + CIRCLE : orientation;
    return positive > CIRCLE ? positive - CIRCLE : positive;
}

void StoreOutputs(const FullIteration& last, const Start& start, FullAdjustment& full)
{
    const auto redundancy = static_cast<int32_t>(start.observations.size()) - 1 - UNKNOWNS;
    const double variance = redundancy > 0 ? last.squareSum / redundancy : last.squareSum;
    full.unitWeightSigma = std::sqrt(variance);
    for (size_t i = 1; i <= UNKNOWNS; ++i)
    {
        full.unknowns.push_back(i < UNKNOWNS ? start.unknowns[i] : InCircle(start.unknowns[i]));
        full.sigmas.push_back(std::sqrt(last.cofactors[i] * variance));
    }
    StoreResiduals(ADJUST_MODE_PLAN, CountOf(full.residuals), full.residuals.data(), last.residuals.data());
}

} // namespace

FullIteration IterateInFull(Matrix design, Matrix weights, const double* misclosures, int32_t equations)
{
    FullIteration full = {};
    TestMatrix cofactors(UNKNOWNS, UNKNOWNS, 0.0);
    full.result = InvertNormalMatrix(design, weights, cofactors, equations, UNKNOWNS);
    if (full.result != 0)
    {
        return full;
    }
    // dx = -(Q A^T) P l
    TestMatrix byDesign(UNKNOWNS, equations, 0.0);
    TestMatrix byWeights(UNKNOWNS, equations, 0.0);
    full.corrections.assign(UNKNOWNS + 1, 0.0);
    full.cofactors.assign(UNKNOWNS + 1, 0.0);
    MultiplyByTranspose(cofactors, design, byDesign, UNKNOWNS, UNKNOWNS, equations);
    MultiplyMatrices(byDesign, weights, byWeights, UNKNOWNS, equations, equations);
    MatrixTimesVector(byWeights, misclosures, full.corrections.data(), UNKNOWNS, equations);
    for (int32_t i = 1; i <= UNKNOWNS; ++i)
    {
        const auto place = static_cast<size_t>(i);
        full.corrections[place] = -full.corrections[place];
        full.cofactors[place] = static_cast<Matrix>(cofactors)[i][i];
    }
    // v = A dx + l, v^T P v
    const auto length = static_cast<size_t>(equations) + 1;
    full.residuals.assign(length, 0.0);
    MatrixTimesVector(design, full.corrections.data(), full.residuals.data(), equations, UNKNOWNS);
    for (size_t k = 1; k < length; ++k)
    {
        full.residuals[k] += misclosures[k];
    }
    std::vector<double> weighted(length, 0.0);
    MatrixTimesVector(weights, full.residuals.data(), weighted.data(), equations, equations);
    for (size_t k = 1; k < length; ++k)
    {
        full.squareSum += weighted[k] * full.residuals[k];
    }
    return full;
}

FullAdjustment AdjustInFull(const WorkRecords& work, const AdjustmentPrecision& precision)
{
    FullAdjustment full = {};
    full.residuals = work;
    Start start = Begin(work, precision);
    full.result = start.result;
    if (full.result != 0)
    {
        return full;
    }
    const auto rows = static_cast<int32_t>(start.observations.size()) - 1;
    TestMatrix weights(rows, rows, start.weights);
    TestMatrix design(rows, UNKNOWNS, 0.0);
    std::vector<double> misclosures(start.observations.size(), 0.0);
    double previous = 0.0;
    for (full.iterations = 1; full.iterations <= start.limit; ++full.iterations)
    {
        BuildObservationEquations(ADJUST_MODE_PLAN, CountOf(work), work.data(), start.unknowns.data(),
                                  start.observations.data(), design, misclosures.data());
        const FullIteration iteration = IterateInFull(design, weights, misclosures.data(), rows);
        full.result = iteration.result;
        if (full.result != 0)
        {
            return full;
        }
        for (size_t i = 1; i <= UNKNOWNS; ++i)
        {
            start.unknowns[i] += iteration.corrections[i];
        }
        bool converged = iteration.squareSum < EPSILON;
        if (full.iterations > 1)
        {
            full.changes.push_back(std::fabs((iteration.squareSum - previous) / previous));
            converged = converged || full.changes.back() < 0.001;
        }
        if (converged || full.iterations == start.limit)
        {
            full.result = converged ? 0 : 1;
            StoreOutputs(iteration, start, full);
            break;
        }
        previous = iteration.squareSum;
    }
    return full;
}
