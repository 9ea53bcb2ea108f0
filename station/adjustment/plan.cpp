// The adjustment of general.cpp in plan, with its letters and its steps. In plan no two rows are correlated, so that
// each has one weight; a direction's row of A is (a, b, 1), a distance's (a, b, 0). So every sum over the rows needs no
// more than a row at a time, and what is left are 3 x 3 numbers.
//
// The bits are those of general.cpp: the same terms in the same order. The toolkit leaves out terms with a factor of
// zero, whatever the other factor is; here they are added, which is the same as long as all numbers are finite. Where
// one is not, this shows in N or in the end in the square sum, and AdjustResection takes over.
#include "station/adjustment/plan.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "station/adjustment/approximation.h"
#include "station/adjustment/general.h"
#include "station/adjustment/observations.h"

namespace qstdlib {

namespace {

constexpr size_t UNKNOWNS = 3; // northing, easting, orientation

// A result beside those of the adjustment: a number is not finite.
constexpr int32_t NOT_FINITE = -1;

using Vector = std::array<double, UNKNOWNS>;
using Square = std::array<Vector, UNKNOWNS>;

struct Row
{
    bool isDirection;
    double weight;
    ObservationEquation equation;
};

// Scratch of one adjustment. What is not allocated yet is null.
struct Scratch
{
    Row* rows;
    double* residuals; // indexed from 1
    int32_t rowCount;
    Vector unknowns;
    Square cofactors;
    double squareSum;
};

void WeighRows(int16_t count, const ResectWorkRecord* work, const AdjustmentPrecision& precision, Row* row)
{
    for (int16_t i = 0; i < count; ++i)
    {
        const ResectWorkRecord& record = work[i];
        if (IsPresent(record.direction))
        {
            *row++ = {true, DIRECTION_WEIGHT, {}};
        }
        if (HasDistances(record))
        {
            *row++ = {false, DistanceWeight(precision, record.horizontalDistance), {}};
        }
    }
}

void BuildEquations(int16_t count, const ResectWorkRecord* work, const Vector& unknowns, Row* row)
{
    for (int16_t i = 0; i < count; ++i)
    {
        const ResectWorkRecord& record = work[i];
        const TargetOffset target = OffsetFrom(unknowns[0], unknowns[1], record);
        if (IsPresent(record.direction))
        {
            (row++)->equation = DirectionEquation(target, unknowns[2], record.direction);
        }
        if (HasDistances(record))
        {
            (row++)->equation = DistanceEquation(target, record.horizontalDistance);
        }
    }
}

// N = A^T P A. The products of a distance are rounded apart above and below the diagonal; the orientation's, to which
// only directions add, are not.
Square NormalMatrix(const Row* rows, int32_t rowCount)
{
    Square n = {};
    for (const Row* row = rows; row != rows + rowCount; ++row)
    {
        const double a = row->equation.byNorthing;
        const double b = row->equation.byEasting;
        const double weightedA = row->isDirection ? a : row->weight * a;
        const double weightedB = row->isDirection ? b : row->weight * b;
        n[0][0] += a * weightedA;
        n[0][1] += a * weightedB;
        n[1][0] += b * weightedA;
        n[1][1] += b * weightedB;
        if (row->isDirection)
        {
            n[0][2] += a;
            n[1][2] += b;
            n[2][2] += 1.0;
        }
    }
    n[2][0] = n[0][2];
    n[2][1] = n[1][2];
    return n;
}

bool AreFinite(const Square& m)
{
    double sum = 0.0; // infinite or NaN with any of its parts, and where it is too large itself
    for (const Vector& row : m)
    {
        sum += row[0] + row[1] + row[2];
    }
    return std::isfinite(sum);
}

// Factors of a matrix, and the rows that were exchanged for them.
struct Factors
{
    Square lu;
    std::array<size_t, UNKNOWNS> index;
};

// Reciprocal of each row's largest magnitude; false when a row has none above zero.
bool ScaleRows(const Square& a, Vector& scale)
{
    for (size_t i = 0; i < UNKNOWNS; ++i)
    {
        const double largest = std::max({std::fabs(a[i][0]), std::fabs(a[i][1]), std::fabs(a[i][2])});
        if (largest == 0.0)
        {
            return false;
        }
        scale[i] = 1.0 / largest;
    }
    return true;
}

// As LUDecompose: Crout's decomposition with implicit scaling and partial pivoting; the later row wins a tie. False for
// a row of zeros.
bool Decompose(const Square& a, Factors& factors)
{
    Vector scale;
    if (!ScaleRows(a, scale))
    {
        return false;
    }
    factors.lu = a;
    Square& lu = factors.lu;
    for (size_t j = 0; j < UNKNOWNS; ++j)
    {
        double greatest = 0.0;
        size_t pivotRow = j;
        for (size_t i = 0; i < UNKNOWNS; ++i)
        {
            for (size_t k = 0; k < std::min(i, j); ++k)
            {
                lu[i][j] -= lu[i][k] * lu[k][j];
            }
            const double magnitude = scale[i] * std::fabs(lu[i][j]);
            if (i >= j && magnitude >= greatest)
            {
                greatest = magnitude;
                pivotRow = i;
            }
        }
        std::swap(lu[pivotRow], lu[j]);
        scale[pivotRow] = scale[j];
        factors.index[j] = pivotRow;
        if (lu[j][j] == 0.0)
        {
            lu[j][j] = TINY_PIVOT;
        }
        for (size_t i = j + 1; i < UNKNOWNS; ++i)
        {
            lu[i][j] /= lu[j][j];
        }
    }
    return true;
}

// As LUBackSubstitute, for one column.
void Substitute(const Factors& factors, Vector& x)
{
    const Square& lu = factors.lu;
    for (size_t i = 0; i < UNKNOWNS; ++i)
    {
        std::swap(x[i], x[factors.index[i]]);
        for (size_t j = 0; j < i; ++j)
        {
            x[i] -= lu[i][j] * x[j];
        }
    }
    for (size_t i = UNKNOWNS; i > 0;)
    {
        --i;
        for (size_t j = i + 1; j < UNKNOWNS; ++j)
        {
            x[i] -= lu[i][j] * x[j];
        }
        x[i] /= lu[i][i];
    }
}

// A column of the inverse.
struct Column
{
    Vector x;
    bool isNegligible; // the last correction
    bool isSettled;    // the last correction changed nothing, and neither would the next: it is the same
};

// A pass of refinement for column j: x less the solution for N x - e.
void Refine(const Square& n, const Factors& factors, size_t j, Column& column)
{
    Vector correction = {};
    for (size_t i = 0; i < UNKNOWNS; ++i)
    {
        for (size_t k = 0; k < UNKNOWNS; ++k)
        {
            correction[i] += n[i][k] * column.x[k];
        }
    }
    correction[j] -= 1.0;
    Substitute(factors, correction);
    column.isNegligible = true;
    column.isSettled = true;
    for (size_t i = 0; i < UNKNOWNS; ++i)
    {
        const double former = column.x[i];
        column.x[i] -= correction[i];
        column.isNegligible = column.isNegligible && std::fabs(correction[i]) <= MACHINE_EPSILON;
        column.isSettled = column.isSettled && column.x[i] == former;
    }
}

// As SolveLinearSystem with a unit matrix on the right. False for a row of zeros.
bool Invert(const Square& n, Square& inverse)
{
    Factors factors;
    if (!Decompose(n, factors))
    {
        return false;
    }
    std::array<Column, UNKNOWNS> columns = {};
    for (size_t j = 0; j < UNKNOWNS; ++j)
    {
        columns[j].x[j] = 1.0;
        Substitute(factors, columns[j].x);
    }
    bool isRefined = false;
    for (int32_t pass = 1; pass <= REFINEMENT_PASSES && !isRefined; ++pass)
    {
        isRefined = true;
        for (size_t j = 0; j < UNKNOWNS; ++j)
        {
            if (!columns[j].isSettled)
            {
                Refine(n, factors, j, columns[j]);
            }
            isRefined = isRefined && columns[j].isNegligible;
        }
    }
    for (size_t i = 0; i < UNKNOWNS; ++i)
    {
        inverse[i] = {columns[0].x[i], columns[1].x[i], columns[2].x[i]};
    }
    return true;
}

// dx = -((Q A^T) P) l
Vector Corrections(const Square& cofactors, const Row* rows, int32_t rowCount)
{
    Vector corrections;
    for (size_t i = 0; i < UNKNOWNS; ++i)
    {
        const Vector& q = cofactors[i];
        double sum = 0.0;
        for (const Row* row = rows; row != rows + rowCount; ++row)
        {
            const double byDesign = q[0] * row->equation.byNorthing + q[1] * row->equation.byEasting;
            const double weighted = row->isDirection ? byDesign + q[2] : byDesign * row->weight;
            sum += weighted * row->equation.misclosure;
        }
        corrections[i] = -sum;
    }
    return corrections;
}

// v = A dx + l
double Residual(const Row& row, const Vector& corrections)
{
    // From 0.0 on, as the toolkit adds: a sum of zeros is then never -0.0.
    double v = 0.0 + row.equation.byNorthing * corrections[0] + row.equation.byEasting * corrections[1];
    if (row.isDirection)
    {
        v += corrections[2];
    }
    return v + row.equation.misclosure;
}

// One iteration: Q = N^-1, dx, X + dx, v, and v^T P v.
int32_t Adjust(int16_t count, const ResectWorkRecord* work, Scratch& s)
{
    BuildEquations(count, work, s.unknowns, s.rows);
    const Square normal = NormalMatrix(s.rows, s.rowCount);
    if (!AreFinite(normal))
    {
        return NOT_FINITE;
    }
    if (!Invert(normal, s.cofactors))
    {
        return ADJUST_DEGENERATE;
    }
    const Vector corrections = Corrections(s.cofactors, s.rows, s.rowCount);
    for (size_t i = 0; i < UNKNOWNS; ++i)
    {
        s.unknowns[i] += corrections[i];
    }
    s.squareSum = 0.0;
    for (int32_t k = 1; k <= s.rowCount; ++k)
    {
        const Row& row = s.rows[k - 1];
        const double v = Residual(row, corrections);
        s.residuals[k] = v;
        s.squareSum += row.weight * v * v;
    }
    return std::isfinite(s.squareSum) ? 0 : NOT_FINITE;
}

int32_t Iterate(int16_t count, const ResectWorkRecord* work, int32_t limit, Scratch& s)
{
    double previous = 0.0;
    for (int32_t iteration = 1; iteration <= limit; ++iteration)
    {
        const int32_t result = Adjust(count, work, s);
        if (result != 0)
        {
            return result;
        }
        if (IsLastIteration(iteration, s.squareSum, previous))
        {
            return ADJUST_CONVERGED;
        }
        previous = s.squareSum;
    }
    return ADJUST_NOT_CONVERGED;
}

// Everything that the adjustment needs before it can iterate.
int32_t Prepare(int16_t count, const ResectWorkRecord* work, const AdjustmentPrecision& precision, Scratch& s,
                int32_t* limit)
{
    int32_t mode = ADJUST_MODE_PLAN;
    int32_t directions = 0;
    int32_t heights = 0;
    int32_t distances = 0;
    int32_t withHeight = 0;
    CountObservations(&mode, count, work, &directions, &heights, &distances, &withHeight);
    s.rowCount = directions + distances;
    if (s.rowCount == 0)
    {
        return ADJUST_DEGENERATE;
    }
    s.rows = static_cast<Row*>(std::malloc(static_cast<size_t>(s.rowCount) * sizeof(Row)));
    s.residuals = s.rows != nullptr ? AllocVector(s.rowCount) : nullptr;
    if (s.residuals == nullptr)
    {
        return ADJUST_NO_MEMORY;
    }
    double* unknowns = nullptr;
    int32_t unknownCount = 0;
    const int32_t result =
        ApproximateStation(mode, count, work, distances, &unknowns, &unknownCount, s.rowCount, limit);
    if (result != 0)
    {
        return result;
    }
    std::copy_n(unknowns + 1, UNKNOWNS, s.unknowns.begin());
    std::free(unknowns);
    WeighRows(count, work, precision, s.rows);
    return 0;
}

void StoreStation(const Scratch& s, PlanStation* station)
{
    const double varianceFactor = VarianceFactor(s.squareSum, s.rowCount - static_cast<int32_t>(UNKNOWNS));
    station->northing = s.unknowns[0];
    station->easting = s.unknowns[1];
    station->orientation = ReduceOnce(s.unknowns[2]);
    station->northingSigma = std::sqrt(s.cofactors[0][0] * varianceFactor);
    station->eastingSigma = std::sqrt(s.cofactors[1][1] * varianceFactor);
    station->orientationSigma = std::sqrt(s.cofactors[2][2] * varianceFactor);
    station->unitWeightSigma = std::sqrt(varianceFactor);
}

int32_t AdjustByMatrices(int16_t count, ResectWorkRecord* work, const AdjustmentPrecision& precision,
                         PlanStation* station)
{
    double height = 0.0;
    double heightSigma = 0.0;
    return AdjustResection(ADJUST_MODE_PLAN, count, work, precision, &station->northing, &station->easting, &height,
                           &station->orientation, &station->northingSigma, &station->eastingSigma, &heightSigma,
                           &station->orientationSigma, &station->unitWeightSigma);
}

} // namespace

int32_t AdjustInPlan(int16_t count, ResectWorkRecord* work, AdjustmentPrecision precision, PlanStation* station)
{
    Scratch s = {};
    int32_t limit = 0;
    int32_t result = Prepare(count, work, precision, s, &limit);
    if (result == 0)
    {
        result = Iterate(count, work, limit, s);
    }
    if (result == ADJUST_CONVERGED || result == ADJUST_NOT_CONVERGED)
    {
        StoreStation(s, station);
        StoreResiduals(ADJUST_MODE_PLAN, count, work, s.residuals);
    }
    std::free(s.residuals);
    std::free(s.rows);
    return result == NOT_FINITE ? AdjustByMatrices(count, work, precision, station) : result;
}

} // namespace qstdlib
