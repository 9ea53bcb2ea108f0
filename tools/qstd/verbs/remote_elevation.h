/**
 * @file remote_elevation.h
 * The verb rem: heights of points that no reflector reaches, above a base that one was held on.
 */
#ifndef QSTD_REMOTE_ELEVATION_H
#define QSTD_REMOTE_ELEVATION_H

#include "input/inputs.h"
#include "instrument/instrument_options.h"
#include "results/sink.h"

#include <string>
#include <vector>

namespace qstd {

struct RemoteElevationOptions
{
    std::string base;                /**< sight HZ,V,SD, or a point where there is a station */
    std::vector<std::string> sights; /**< HZ,V each */
    std::string table;               /**< of further sights, empty for none */
    std::string targetHeight = "0";  /**< of the reflector above the base */
    InstrumentOptions instrument;
};

void RunRemoteElevation(const RemoteElevationOptions& options, Inputs& inputs, Sink& sink);

} // namespace qstd

#endif
