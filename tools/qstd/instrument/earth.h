/**
 * @file earth.h
 * The earth as the library's corrections take it.
 */
#ifndef QSTD_EARTH_H
#define QSTD_EARTH_H

#include "instrument/simulated_instrument.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace qstd {

constexpr double EARTH_RADIUS = 6370000.0; /**< metres */

/** The coefficients of refraction that the instrument offers, in the order of its setting. */
constexpr std::array<double, 3> REFRACTION_COEFFICIENTS = {0.132, 0.133, 0.20};

inline double RefractionCoefficient(const SimulatedInstrument& instrument)
{
    return REFRACTION_COEFFICIENTS.at(static_cast<size_t>(std::clamp(instrument.refractionSelector, 0, 2)));
}

} // namespace qstd

#endif
