/**
 * @file instrument_options.h
 * The instrument as the command line describes it.
 */
#ifndef QSTD_INSTRUMENT_OPTIONS_H
#define QSTD_INSTRUMENT_OPTIONS_H

#include "instrument/simulated_instrument.h"
#include "text/unit.h"

#include <optional>
#include <string>

namespace qstd {

struct InstrumentOptions
{
    bool isSouthAzimuth = false;
    bool isFaceTwo = false;
    std::optional<double> scale;
    std::optional<double> seaLevel; /**< mean elevation, in the unit of the job; switches the correction on */
    std::optional<int>
        refraction;          /**< which coefficient: 0, 1, 2; switches the correction of curvature and refraction on */
    std::string station;     /**< a point, as typed; empty: none */
    std::string orientation; /**< an angle, as typed; empty: 0 */
    double instrumentHeight = 0.0;
};

/**
 * Settings and face of an instrument. Station and orientation are left to the verb that needs them.
 *
 * @param unit  of the elevation; the library wants metres
 */
SimulatedInstrument InstrumentFrom(const InstrumentOptions& options, LinearUnit unit);

} // namespace qstd

#endif
