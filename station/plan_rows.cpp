#include "station/plan_rows.h"

#include "core/real_bits.h"

namespace qstdlib {

namespace {

bool IsDirection(const double* row)
{
    return !IsZero(row[3]);
}

bool AreFinite(const double* values, int32_t count)
{
    for (int32_t i = 1; i <= count; ++i)
    {
        if (!IsFinite(values[i]))
        {
            return false;
        }
    }
    return true;
}

} // namespace

bool SumNormalMatrix(Matrix design, Matrix weights, int32_t rows, Matrix normal)
{
    double n11 = 0.0;
    double n12 = 0.0;
    double n13 = 0.0;
    double n21 = 0.0;
    double n22 = 0.0;
    double n23 = 0.0;
    int32_t directions = 0;
    for (int32_t k = 1; k <= rows; ++k)
    {
        const double a = design[k][1];
        const double b = design[k][2];
        if (IsDirection(design[k]))
        {
            const double ab = a * b;
            n11 += a * a;
            n12 += ab;
            n21 += ab;
            n22 += b * b;
            n13 += a;
            n23 += b;
            ++directions;
        }
        else
        {
            const double weightedA = weights[k][k] * a;
            const double weightedB = weights[k][k] * b;
            n11 += a * weightedA;
            n12 += a * weightedB;
            n21 += b * weightedA; // rounded otherwise than n12
            n22 += b * weightedB;
        }
    }
    normal[1][1] = n11;
    normal[1][2] = n12;
    normal[1][3] = n13;
    normal[2][1] = n21;
    normal[2][2] = n22;
    normal[2][3] = n23;
    normal[3][1] = n13;
    normal[3][2] = n23;
    normal[3][3] = directions;
    return AreFinite(normal[1], 3) && AreFinite(normal[2], 3);
}

bool SumCorrections(Matrix cofactors, Matrix design, Matrix weights, const double* misclosures, int32_t rows,
                    double* corrections)
{
    for (int32_t i = 1; i <= 3; ++i)
    {
        const double* const q = cofactors[i];
        double sum = 0.0;
        for (int32_t k = 1; k <= rows; ++k)
        {
            double term = q[1] * design[k][1] + q[2] * design[k][2];
            if (IsDirection(design[k]))
            {
                term += q[3];
            }
            else
            {
                term *= weights[k][k];
            }
            sum += term * misclosures[k]; // a term of -0.0 adds nothing to what began at 0.0
        }
        corrections[i] = -sum;
    }
    return AreFinite(corrections, 3);
}

bool SumResiduals(Matrix design, Matrix weights, const double* misclosures, const double* corrections, int32_t rows,
                  double* residuals, double* omega)
{
    double squares = 0.0;
    for (int32_t k = 1; k <= rows; ++k)
    {
        double change = design[k][1] * corrections[1] + design[k][2] * corrections[2];
        const bool isDirection = IsDirection(design[k]);
        if (isDirection)
        {
            change += corrections[3];
        }
        // Not -0.0: the toolkit's sums begin at 0.0.
        const double residual = (IsZero(change) ? 0.0 : change) + misclosures[k];
        residuals[k] = residual;
        const double weighted = isDirection ? residual : weights[k][k] * residual;
        squares += weighted * residual;
    }
    *omega = squares;
    return IsFinite(squares);
}

} // namespace qstdlib
