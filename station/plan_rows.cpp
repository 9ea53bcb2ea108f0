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

// Zero where a factor is zero, whatever the other is.
double ProductOfNonZero(double a, double b)
{
    return IsZero(a) || IsZero(b) ? 0.0 : a * b;
}

} // namespace

void SumNormalEquations(Matrix design, Matrix weights, const double* misclosures, int32_t rows, int32_t columns,
                        Matrix normal)
{
    for (int32_t i = 1; i <= columns; ++i)
    {
        ClearRow(normal[i], columns);
    }
    for (int32_t k = 1; k <= rows; ++k)
    {
        const double row[NORMAL_COLUMNS + 1] = {0.0, design[k][1], design[k][2], design[k][3], misclosures[k]};
        const bool isDirection = IsDirection(row);
        double weighted[NORMAL_COLUMNS + 1];
        for (int32_t j = 1; j <= columns; ++j)
        {
            weighted[j] = isDirection ? row[j] : ProductOfNonZero(weights[k][k], row[j]);
        }
        for (int32_t i = 1; i <= columns; ++i)
        {
            // n12 and n21 are rounded apart; n31 and n32, to which only directions add, are not.
            AddMultiple(normal[i], row[i], weighted, i < 3 ? 1 : i, columns);
        }
    }
    normal[3][1] = normal[1][3];
    normal[3][2] = normal[2][3];
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

} // namespace qstdlib
