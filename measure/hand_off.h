// What the offset functions share: the computed point goes to the instrument, its observation to the caller.
#ifndef QSTDLIB_MEASURE_HAND_OFF_H
#define QSTDLIB_MEASURE_HAND_OFF_H

#include "qstdlib/measure.h"

namespace qstdlib {

// Asks the instrument for the observation of the point; writes it, in the face that the telescope is in, and replaces
// the point's coordinates by those of the service. Returns the service's status; the outputs are written whatever it
// is.
int32_t HandOff(PointRecord* point, double passthrough, SightRecord* observation);

} // namespace qstdlib

#endif
