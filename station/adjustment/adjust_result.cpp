#include "station/adjustment/adjust_result.h"

#include <cmath>

#include "core/angle.h"

namespace qstdlib {

bool IsLastIteration(int32_t iteration, double squareSum, double previousSquareSum)
{
    constexpr double RELATIVE_CHANGE = 0.001;
    if (squareSum < MACHINE_EPSILON)
    {
        return true;
    }
    return iteration > 1 && std::fabs((squareSum - previousSquareSum) / previousSquareSum) < RELATIVE_CHANGE;
}

double VarianceFactor(double squareSum, int32_t redundancy)
{
    return redundancy > 0 ? squareSum / redundancy : squareSum;
}

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

} // namespace qstdlib
