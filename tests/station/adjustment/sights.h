// Sets of sights for tests of the adjustment.
#ifndef QSTDLIB_TESTS_STATION_ADJUSTMENT_SIGHTS_H
#define QSTDLIB_TESTS_STATION_ADJUSTMENT_SIGHTS_H

#include <random>
#include <vector>

#include "tests/station/adjustment/work_record.h"

constexpr double CIRCLE_HALF = 3.141592653589793;
constexpr double CIRCLE_FULL = 6.283185307179586;
constexpr double DEGREE = CIRCLE_HALF / 180.0;

// 2", 2 mm + 2 ppm.
constexpr qstdlib::AdjustmentPrecision DEFAULT_PRECISION = {2.0, 0.002, 0.000002};

// Uniform in [-1, 1), the same on every platform.
double Uniform(std::mt19937& random);

// Five to eight targets around the station (20, -30, 7), observed with errors of decimetres and of a tenth of a degree,
// so that the iteration has something to do; some without distance, some without height, one without direction.
WorkRecords RoughSights(std::mt19937& random);

// Three to eight targets around the station (1020, -530), observed as a total station does: to a millimetre or two and
// some seconds.
WorkRecords FineSights(std::mt19937& random);

// Whole degrees and metres that do not fit together: northing, easting, direction and, where given, distance.
WorkRecords Contradiction(const std::vector<std::vector<double>>& sights);

// Station (0, 0), circle zero at azimuth 0.25; four targets that fit to a few centimetres.
WorkRecords FourSights();

#endif
