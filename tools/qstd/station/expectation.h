/**
 * @file expectation.h
 * What is expected of a measurement before it is made.
 */
#ifndef QSTD_EXPECTATION_H
#define QSTD_EXPECTATION_H

namespace qstd {

constexpr double ARC_SECOND = 4.84813681109536e-6; /**< in radians */

/** Standard deviation of one direction in the library's weights, radians. */
constexpr double WEIGHT_DIRECTION = 2.0 * ARC_SECOND;
/** Standard deviation of one distance in the library's weights: constant in metres, and proportional part. */
constexpr double WEIGHT_DISTANCE = 0.002;
constexpr double WEIGHT_PROPORTION = 0.000002;

/**
 * The standard deviations that sights are judged by. That of a distance is the plain sum of both parts, as makers of
 * instruments state it; the library's weights take the root of the sum of squares.
 */
struct Expectation
{
    double direction = WEIGHT_DIRECTION;           /**< radians */
    double distance = WEIGHT_DISTANCE;             /**< metres */
    double distanceProportion = WEIGHT_PROPORTION; /**< of the distance */
    double zenith = WEIGHT_DIRECTION;              /**< radians */
    double mark = 0.002;                           /**< of a known height and the reflector height over it, metres */
};

} // namespace qstd

#endif
