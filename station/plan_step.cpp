// How far the corrections of a step and of a full iteration can be apart.
//
// N is the normal matrix of n rows, p are its pivots, Q is its inverse; g = A^T P l, L = l^T P l; u = 2^-53 is the
// rounding unit. J = N11 N22 N33 / det N is 1 for unknowns without correlation and grows with it. N being positive
// definite,
//
//     Qii <= J / Nii <= J / pi     |Qij| <= sqrt(Qii Qjj)     |Nij| <= sqrt(Nii Njj)
//     |gi| <= sqrt(Nii L)          |dxi| <= sqrt(Qii L)       T = sum of sqrt(Nii Qii) <= 3 sqrt(J)
//
// Hence the rounding errors of dxi, as multiples of u sqrt(Qii L); the reserve below covers those of higher order:
//
//     full iteration: sums of the corrections                             n + 3 + 3 T
//                     residuals in the last pass of refinement            3 T^3
//                     subtraction in that pass, and what it solves with   T + 2.5 T
//     step:           elimination and back substitution                   10 T^2
//                     absolute terms                                      (n + 6) T
//     both:           N12 and N21, which are rounded apart                (2 n + 4) J
//
// Together at most 81 J^2 + (135 + 6 n) J. The tolerance, 8 J (12 J + n + 20) u sqrt(J L / pi), is larger by a sixth at
// least.
//
// N33 is the number of directions. As the other diagonal elements are within 2^36 of it, and L above the machine's
// epsilon, nothing underflows.
//
// What a pass solves with: the errors of the factors are, with implicit scaling, below 63 u r sqrt(Nii Njj), r^2 being
// the greatest Nii by the least. The first pass leaves the square of 63 u r T^2, which J r <= 2^18 keeps below 2.5 u.
//
// Rounding is monotonic: where an unknown becomes the same by the step's correction less the tolerance and by that plus
// the tolerance, a full iteration makes the same of it. The square sums of the residuals are, by the same bounds, apart
// by less than 9 J L times what the tolerance has before its root.
#include "station/plan_step.h"

#include <algorithm>

#include "core/real_bits.h"
#include "core/soft_arithmetic.h"
#include "station/adjust_result.h"
#include "station/plan_rows.h"

namespace qstdlib {

namespace {

constexpr int32_t ORDER = NORMAL_COLUMNS;
constexpr int32_t UNKNOWNS = ORDER - 1;

// Twice the least square sum that an iteration goes on with.
constexpr double LEAST_SQUARE_SUM = 2.0 * MACHINE_EPSILON;

// Gauss's scheme: the upper triangle of the normal equations, indexed from 1.
struct Scheme
{
    double m[ORDER + 1][ORDER + 1];
    double reciprocals[ORDER]; // of the pivots
};

// Eliminates one unknown after the other. The rows then hold the factors, the last element the square sum of the
// residuals. False for a pivot that is not positive; NaN shows in all that follows.
bool Reduce(Scheme& s)
{
    for (int32_t k = 1; k <= UNKNOWNS; ++k)
    {
        double* const row = s.m[k];
        if (IsNegative(row[k]) || IsZero(row[k]))
        {
            return false;
        }
        s.reciprocals[k] = Divisor(row[k]).Into(1.0);
        for (int32_t i = k + 1; i <= ORDER; ++i)
        {
            const double factor = row[i] * s.reciprocals[k];
            for (int32_t j = i; j <= ORDER; ++j)
            {
                s.m[i][j] -= factor * row[j];
            }
            row[i] = factor;
        }
    }
    return true;
}

// The corrected unknowns; false when a correction within its tolerance would make another of one. A tolerance is
// `tolerance` times the root of `scale` by the pivot.
bool CorrectWithin(const Scheme& s, double tolerance, double scale, const double* unknowns, double* corrected)
{
    double corrections[ORDER];
    for (int32_t k = UNKNOWNS; k >= 1; --k)
    {
        double correction = -s.m[k][ORDER];
        for (int32_t j = k + 1; j <= UNKNOWNS; ++j)
        {
            correction -= s.m[k][j] * corrections[j];
        }
        corrections[k] = correction;
        const double margin = tolerance * SquareRoot(scale * s.reciprocals[k]);
        corrected[k] = unknowns[k] + (correction - margin);
        if (BitsOf(corrected[k]) != BitsOf(unknowns[k] + (correction + margin)))
        {
            return false;
        }
    }
    return true;
}

} // namespace

bool StepInPlan(Matrix normal, int32_t rows, double* unknowns, double* squareSum)
{
    // The residuals leave no more: where this is too little, there is no need to look.
    const double misclosures = normal[ORDER][ORDER];
    if (BitsOf(misclosures) < BitsOf(LEAST_SQUARE_SUM) || !IsFinite(misclosures))
    {
        return false;
    }
    Scheme s;
    for (int32_t i = 1; i <= ORDER; ++i)
    {
        std::copy_n(normal[i] + i, ORDER + 1 - i, s.m[i] + i);
    }
    if (!Reduce(s))
    {
        return false;
    }
    const double* const reciprocals = s.reciprocals;
    const double inflation = (normal[2][2] * reciprocals[2]) * (normal[3][3] * reciprocals[3]); // J
    // Not less than the greatest diagonal element by the least.
    const double range =
        ((normal[1][1] + normal[2][2]) + normal[3][3]) * ((reciprocals[1] + reciprocals[2]) + reciprocals[3]);
    const double tolerance = 4.0 * MACHINE_EPSILON * inflation * (12.0 * inflation + (rows + 20));
    const double scale = inflation * misclosures;
    const double residuals = s.m[ORDER][ORDER];
    if (!(inflation * inflation * range <= 0x1p36) || !(tolerance * scale <= STEP_ACCURACY / 16.0 * residuals) ||
        BitsOf(residuals) < BitsOf(LEAST_SQUARE_SUM))
    {
        return false;
    }
    double corrected[ORDER];
    if (!CorrectWithin(s, tolerance, scale, unknowns, corrected))
    {
        return false;
    }
    std::copy_n(corrected + 1, UNKNOWNS, unknowns + 1);
    *squareSum = residuals;
    return true;
}

} // namespace qstdlib
