// Working records of the adjustment as tests write them: what is not given is absent.
#ifndef QSTDLIB_TESTS_STATION_ADJUSTMENT_WORK_RECORD_H
#define QSTDLIB_TESTS_STATION_ADJUSTMENT_WORK_RECORD_H

#include <cmath>
#include <cstdint>
#include <vector>

#include "qstdlib/types.h"
#include "station/adjustment/resect_work.h"

using qstdlib::ResectWorkRecord;
using WorkRecords = std::vector<ResectWorkRecord>;

inline int16_t CountOf(const WorkRecords& work)
{
    return static_cast<int16_t>(work.size());
}

// A known point, neither sighted nor measured, with no height. The output fields hold a value that none of them gets.
inline ResectWorkRecord Known(double northing, double easting)
{
    constexpr double UNWRITTEN = -77.0;
    return {northing,      easting,       MISSING_VALUE, MISSING_VALUE, MISSING_VALUE, MISSING_VALUE,
            MISSING_VALUE, MISSING_VALUE, MISSING_VALUE, UNWRITTEN,     UNWRITTEN,     UNWRITTEN};
}

inline ResectWorkRecord WithHeight(ResectWorkRecord record, double height)
{
    record.height = height;
    return record;
}

inline ResectWorkRecord WithReflector(ResectWorkRecord record, double reflectorHeight)
{
    record.reflectorHeight = reflectorHeight;
    return record;
}

// A sight by direction only, in radians.
inline ResectWorkRecord Sighted(double northing, double easting, double direction)
{
    ResectWorkRecord record = Known(northing, easting);
    record.direction = direction;
    return record;
}

// A level sight with a distance.
inline ResectWorkRecord Measured(double northing, double easting, double direction, double distance)
{
    ResectWorkRecord record = Sighted(northing, easting, direction);
    record.zenith = 1.5707963267948966;
    record.slopeDistance = distance;
    record.horizontalDistance = distance;
    record.verticalDifference = 0.0;
    return record;
}

// A sight with a distance and a vertical difference; zenith and slope distance follow.
inline ResectWorkRecord MeasuredInSpace(double northing, double easting, double direction, double distance,
                                        double verticalDifference)
{
    ResectWorkRecord record = Measured(northing, easting, direction, distance);
    record.verticalDifference = verticalDifference;
    record.slopeDistance = std::hypot(distance, verticalDifference);
    record.zenith = std::atan2(distance, verticalDifference);
    return record;
}

#endif
