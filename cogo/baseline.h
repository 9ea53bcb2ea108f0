// A line through two points as a frame of reference: chainage along it, offset to its right.
#ifndef QSTDLIB_COGO_BASELINE_H
#define QSTDLIB_COGO_BASELINE_H

#include "qstdlib/types.h"

namespace qstdlib {

struct Baseline
{
    double northing; // of the start
    double easting;
    double unitNorthing; // direction
    double unitEasting;
    double length;
    double startHeight;
    double heightByChainage;
    bool hasHeight;
};

// Through two points that differ in plan. Where one of them alone has a height, it holds at both.
Baseline BaselineThrough(const PointRecord& start, const PointRecord& end);

PointRecord PointBeside(const Baseline& line, double chainage, double offset);

} // namespace qstdlib

#endif
