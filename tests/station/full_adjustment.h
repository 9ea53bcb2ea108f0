// The plan adjustment with every iteration in full, by the products of the matrix toolkit: what the library's
// adjustment agrees with to the last bit, by whatever shorter way it gets there.
#ifndef QSTDLIB_TESTS_STATION_FULL_ADJUSTMENT_H
#define QSTDLIB_TESTS_STATION_FULL_ADJUSTMENT_H

#include <cstdint>
#include <vector>

#include "station/matrix.h"
#include "tests/station/work_record.h"

struct FullAdjustment
{
    int32_t result;
    int32_t iterations;          // made
    std::vector<double> changes; // of the square sum, relative, from the second iteration on
    std::vector<double> unknowns;
    std::vector<double> sigmas; // of the unknowns
    double unitWeightSigma;
    WorkRecords residuals; // fields angleResidual and distanceResidual: adjusted less observed
};

FullAdjustment AdjustInFull(const WorkRecords& work, const qstdlib::AdjustmentPrecision& precision);

// The corrections of one iteration for a design, weights and misclosures (indexed from 1), and its square sum.
struct FullIteration
{
    int32_t result;
    std::vector<double> corrections;
    std::vector<double> cofactors; // diagonal
    std::vector<double> residuals;
    double squareSum;
};

FullIteration IterateInFull(qstdlib::Matrix design, qstdlib::Matrix weights, const double* misclosures,
                            int32_t equations);

#endif
