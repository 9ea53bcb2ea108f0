// Deterministic inputs as a surveyor's day has them: a site of some hundred metres, readings to the second,
// millimetres.
#ifndef QSTDLIB_BENCH_TARGET_SURVEY_H
#define QSTDLIB_BENCH_TARGET_SURVEY_H

#include <cstdint>

#include <qstdlib.h>

namespace target {

class Survey
{
public:
    explicit Survey(uint32_t seed) : state(seed)
    {
    }

    // Any value between two limits, evenly.
    double Between(double lowest, double highest);

    // To the millimetre, as coordinates and distances are keyed in.
    double Length(double lowest, double highest);

    // To the second, between two angles in degrees.
    AngleUnit Angle(double lowest, double highest);

    // Somewhere on the site, with a height.
    PointRecord Point();

    // Seen from another point between two plan distances, in a direction between two azimuths in degrees, a few metres
    // higher or lower.
    PointRecord PointFrom(const PointRecord& from, double nearest, double farthest, double lowest = 0.0,
                          double highest = 360.0);

    // A line by two points or, every other time, by a point and an azimuth.
    LineDef Line();

    // A target as a station sees it, all readings with the errors that readings have.
    ResectObservation Sight(const PointRecord& station, AngleUnit orientation, const PointRecord& target);

private:
    uint32_t state;
    bool byAzimuth = false;
};

double Radians(AngleUnit angle);
AngleUnit Units(double radians);

} // namespace target

#endif
