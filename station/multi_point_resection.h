// What the multi-point resection hands to its adjustment.
#ifndef QSTDLIB_STATION_MULTI_POINT_RESECTION_H
#define QSTDLIB_STATION_MULTI_POINT_RESECTION_H

#include "qstdlib/station.h"
#include "station/adjustment/resect_work.h"

namespace qstdlib {

// Fills what an adjustment reads of a record. Angles are brought to face one and converted as they stand.
void FillWorkRecord(const ResectObservation& observation, ResectWorkRecord& record);

} // namespace qstdlib

#endif
