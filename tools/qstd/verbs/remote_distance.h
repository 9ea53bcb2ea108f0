/**
 * @file remote_distance.h
 * The verb distance: distances and azimuths between measured points.
 */
#ifndef QSTD_REMOTE_DISTANCE_H
#define QSTD_REMOTE_DISTANCE_H

#include "input/inputs.h"
#include "instrument/instrument_options.h"
#include "results/sink.h"

#include <string>
#include <vector>

namespace qstd {

struct RemoteDistanceOptions
{
    std::vector<std::string> points;
    bool isRadial = false; /**< all from the first point, not from one to the next */
    std::string targetHeight = "0";
    InstrumentOptions instrument;
};

void RunRemoteDistance(const RemoteDistanceOptions& options, Inputs& inputs, Sink& sink);

} // namespace qstd

#endif
