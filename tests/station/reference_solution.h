// The solution of a linear system once more, without a short cut: every pass of the refinement is made, for all
// right-hand sides together, with the operators of the platform.
#ifndef QSTDLIB_TESTS_STATION_REFERENCE_SOLUTION_H
#define QSTDLIB_TESTS_STATION_REFERENCE_SOLUTION_H

#include <cstddef>
#include <vector>

// Elements in row order.
struct ReferenceSolution
{
    std::vector<double> factors;
    std::vector<std::vector<double>> passes; // the solution before the first pass and after each one
};

// Solves n x = b, where n has no row of zeros.
ReferenceSolution SolveByReference(size_t order, const std::vector<double>& n, size_t columns,
                                   const std::vector<double>& b);

#endif
