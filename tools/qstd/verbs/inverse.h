/**
 * @file inverse.h
 * The verb inverse: azimuth, zenith angle and distances from one point to another.
 */
#ifndef QSTD_INVERSE_H
#define QSTD_INVERSE_H

#include "input/inputs.h"
#include "instrument/instrument_options.h"
#include "results/sink.h"

#include <string>

namespace qstd {

struct InverseOptions
{
    std::string from;
    std::string to;
    InstrumentOptions instrument;
};

void RunInverse(const InverseOptions& options, Inputs& inputs, Sink& sink);

} // namespace qstd

#endif
