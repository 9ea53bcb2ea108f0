/**
 * @file forward.h
 * The verb forward: a new point from a known point, an azimuth and a distance.
 */
#ifndef QSTD_FORWARD_H
#define QSTD_FORWARD_H

#include "input/inputs.h"
#include "instrument/instrument_options.h"
#include "results/sink.h"

#include <string>

namespace qstd {

struct ForwardOptions
{
    std::string from;
    std::string azimuth;
    std::string distance;
    std::string heightDifference; /**< empty: not given, the new point has no height */
    InstrumentOptions instrument;
};

void RunForward(const ForwardOptions& options, Inputs& inputs, Sink& sink);

} // namespace qstd

#endif
