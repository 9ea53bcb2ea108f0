// The adjustment once more, by another road: every observation is divided by its standard deviation, the spatial pair
// being turned back into slope distance and zenith angle first, and the corrections come from an orthogonal
// decomposition instead of normal equations.
#ifndef QSTDLIB_TESTS_STATION_ADJUSTMENT_REFERENCE_ADJUSTMENT_H
#define QSTDLIB_TESTS_STATION_ADJUSTMENT_REFERENCE_ADJUSTMENT_H

#include <cstdint>
#include <vector>

#include "tests/station/adjustment/work_record.h"

struct ReferenceAdjustment
{
    bool converged;
    int32_t iterations;           // made
    double nearestStop;           // least ratio of a change to the stopping limit or of the limit to a change; above 1
    std::vector<double> unknowns; // northing, easting, (height,) orientation
    std::vector<double> lastCorrections;
    std::vector<double> cofactors;      // diagonal, formed before the last correction
    std::vector<double> finalCofactors; // diagonal, formed after it
    double squareSum;
    int32_t redundancy;
    WorkRecords residuals; // fields angleResidual, distanceResidual, heightValue: adjusted less observed
};

// `start` holds the unknowns to begin with.
ReferenceAdjustment AdjustByReference(bool spatial, const WorkRecords& work,
                                      const qstdlib::AdjustmentPrecision& precision, std::vector<double> start);

#endif
