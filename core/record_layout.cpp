// The layout of every record that crosses the boundary: the same on the host and on the target, field by field.
// Applications are compiled against it, so a change here is a change of the binary interface.
#include <cstddef>

#include "qstdlib.h"

#define RECORD_SIZE(record, size) static_assert(sizeof(record) == (size), "layout of " #record)
#define FIELD_OFFSET(record, field, offset)                                                                            \
    static_assert(offsetof(record, field) == (offset), "layout of " #record "::" #field)

RECORD_SIZE(PointRecord, 32);
FIELD_OFFSET(PointRecord, northing, 0);
FIELD_OFFSET(PointRecord, easting, 8);
FIELD_OFFSET(PointRecord, height, 16);
FIELD_OFFSET(PointRecord, flags, 24);

RECORD_SIZE(AngDistRecord, 32);
FIELD_OFFSET(AngDistRecord, azimuth, 0);
FIELD_OFFSET(AngDistRecord, zenith, 4);
FIELD_OFFSET(AngDistRecord, slopeDistance, 8);
FIELD_OFFSET(AngDistRecord, horizontalDistance, 16);
FIELD_OFFSET(AngDistRecord, heightDifference, 24);

RECORD_SIZE(SlopeResult, 16);
FIELD_OFFSET(SlopeResult, grade, 0);
FIELD_OFFSET(SlopeResult, ratio, 8);

RECORD_SIZE(RemoteDistanceResult, 32);
FIELD_OFFSET(RemoteDistanceResult, slopeDistance, 0);
FIELD_OFFSET(RemoteDistanceResult, horizontalDistance, 8);
FIELD_OFFSET(RemoteDistanceResult, heightDifference, 16);
FIELD_OFFSET(RemoteDistanceResult, azimuth, 24);

RECORD_SIZE(LineDef, 72);
FIELD_OFFSET(LineDef, first, 0);
FIELD_OFFSET(LineDef, second, 32);
FIELD_OFFSET(LineDef, azimuth, 64);
FIELD_OFFSET(LineDef, mode, 68);

RECORD_SIZE(SightRecord, 16);
FIELD_OFFSET(SightRecord, horizontalAngle, 0);
FIELD_OFFSET(SightRecord, zenithAngle, 4);
FIELD_OFFSET(SightRecord, distance, 8);

RECORD_SIZE(SlopeCheckResult, 24);
FIELD_OFFSET(SlopeCheckResult, offsetBeyondSlope, 0);
FIELD_OFFSET(SlopeCheckResult, heightAboveSlope, 8);
FIELD_OFFSET(SlopeCheckResult, distanceFromBase, 16);

RECORD_SIZE(ReferenceLineResult, 56);
FIELD_OFFSET(ReferenceLineResult, foot, 0);
FIELD_OFFSET(ReferenceLineResult, station, 32);
FIELD_OFFSET(ReferenceLineResult, offset, 40);
FIELD_OFFSET(ReferenceLineResult, heightDifference, 48);

RECORD_SIZE(ArcParams, 32);
FIELD_OFFSET(ArcParams, startAzimuth, 0);
FIELD_OFFSET(ArcParams, endAzimuth, 4);
FIELD_OFFSET(ArcParams, radius, 8);
FIELD_OFFSET(ArcParams, length, 16);
FIELD_OFFSET(ArcParams, centralAngle, 24);

RECORD_SIZE(ArcCalcResult, 56);
FIELD_OFFSET(ArcCalcResult, point, 0);
FIELD_OFFSET(ArcCalcResult, along, 32);
FIELD_OFFSET(ArcCalcResult, offset, 40);
FIELD_OFFSET(ArcCalcResult, heightDifference, 48);

RECORD_SIZE(SettingsRecord, 96);
FIELD_OFFSET(SettingsRecord, values, 0);

RECORD_SIZE(ObservationRecord, 56);
FIELD_OFFSET(ObservationRecord, horizontalAngle, 0);
FIELD_OFFSET(ObservationRecord, zenithAngle, 4);
FIELD_OFFSET(ObservationRecord, distance, 8);
FIELD_OFFSET(ObservationRecord, secondDistance, 16);
FIELD_OFFSET(ObservationRecord, thirdDistance, 24);
FIELD_OFFSET(ObservationRecord, northing, 32);
FIELD_OFFSET(ObservationRecord, easting, 40);
FIELD_OFFSET(ObservationRecord, height, 48);

RECORD_SIZE(TwoPointTarget, 96);
FIELD_OFFSET(TwoPointTarget, known, 0);
FIELD_OFFSET(TwoPointTarget, localNorthing, 32);
FIELD_OFFSET(TwoPointTarget, localEasting, 40);
FIELD_OFFSET(TwoPointTarget, unused, 48);
FIELD_OFFSET(TwoPointTarget, horizontalAngle, 64);
FIELD_OFFSET(TwoPointTarget, zenithAngle, 68);
FIELD_OFFSET(TwoPointTarget, horizontalDistance, 72);
FIELD_OFFSET(TwoPointTarget, verticalDifference, 80);
FIELD_OFFSET(TwoPointTarget, reflectorHeight, 88);

RECORD_SIZE(TwoPointStation, 72);
FIELD_OFFSET(TwoPointStation, station, 0);
FIELD_OFFSET(TwoPointStation, orientation, 32);
FIELD_OFFSET(TwoPointStation, baselineCheck, 40);
FIELD_OFFSET(TwoPointStation, firstDistanceResidual, 48);
FIELD_OFFSET(TwoPointStation, secondDistanceResidual, 56);
FIELD_OFFSET(TwoPointStation, heightDifference, 64);

RECORD_SIZE(ThreePointTarget, 48);
FIELD_OFFSET(ThreePointTarget, known, 0);
FIELD_OFFSET(ThreePointTarget, horizontalAngle, 32);
FIELD_OFFSET(ThreePointTarget, zenithAngle, 36);
FIELD_OFFSET(ThreePointTarget, reflectorHeight, 40);

RECORD_SIZE(ResectObservation, 72);
FIELD_OFFSET(ResectObservation, target, 0);
FIELD_OFFSET(ResectObservation, horizontalAngle, 32);
FIELD_OFFSET(ResectObservation, zenithAngle, 36);
FIELD_OFFSET(ResectObservation, slopeDistance, 40);
FIELD_OFFSET(ResectObservation, horizontalDistance, 48);
FIELD_OFFSET(ResectObservation, verticalDifference, 56);
FIELD_OFFSET(ResectObservation, reflectorHeight, 64);

RECORD_SIZE(ResectStation, 64);
FIELD_OFFSET(ResectStation, position, 0);
FIELD_OFFSET(ResectStation, orientation, 32);
FIELD_OFFSET(ResectStation, northingPrecision, 40);
FIELD_OFFSET(ResectStation, eastingPrecision, 48);
FIELD_OFFSET(ResectStation, heightSpread, 56);

RECORD_SIZE(ResectResidual, 24);
FIELD_OFFSET(ResectResidual, angleResidual, 0);
FIELD_OFFSET(ResectResidual, distanceResidual, 8);
FIELD_OFFSET(ResectResidual, heightResidual, 16);

// A table of function pointers: its layout follows the width of a pointer.
RECORD_SIZE(InstrumentSettings, 6 * sizeof(void*));
FIELD_OFFSET(InstrumentSettings, GetIntSetting, 0 * sizeof(void*));
FIELD_OFFSET(InstrumentSettings, GetRealSetting, 1 * sizeof(void*));
FIELD_OFFSET(InstrumentSettings, GetSettingsRecord, 2 * sizeof(void*));
FIELD_OFFSET(InstrumentSettings, QueryFaceTwo, 3 * sizeof(void*));
FIELD_OFFSET(InstrumentSettings, CoordToObservation, 4 * sizeof(void*));
FIELD_OFFSET(InstrumentSettings, AdjustDiscriminant, 5 * sizeof(void*));
