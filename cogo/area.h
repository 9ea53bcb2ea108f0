// The running sum of the area computation.
#ifndef QSTDLIB_COGO_AREA_H
#define QSTDLIB_COGO_AREA_H

#include "qstdlib/types.h"

namespace qstdlib {

// Feeds one corner to the accumulator of QCogoCalcArea.
void AddAreaVertex(const PointRecord* point);

} // namespace qstdlib

#endif
