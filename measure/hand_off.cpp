#include "measure/hand_off.h"

#include "core/face.h"
#include "core/settings.h"

namespace qstdlib {

int32_t HandOff(PointRecord* point, double passthrough, SightRecord* observation)
{
    constexpr int32_t FACE_TWO = 1;
    const InstrumentSettings& instrument = Instrument();
    ObservationRecord expected = {};
    const int32_t status =
        instrument.CoordToObservation(point->northing, point->easting, point->height, passthrough, &expected);

    SightAngles angles = {expected.horizontalAngle, expected.zenithAngle};
    if (instrument.QueryFaceTwo() == FACE_TWO)
    {
        angles = TurnToFaceTwo(angles);
    }
    *observation = {angles.horizontalAngle, angles.zenithAngle, expected.distance};
    point->northing = expected.northing;
    point->easting = expected.easting;
    point->height = expected.height;
    return status;
}

} // namespace qstdlib
