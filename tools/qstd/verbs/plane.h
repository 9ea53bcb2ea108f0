/**
 * @file plane.h
 * The verb plane: points of a reference plane that lie under sights.
 */
#ifndef QSTD_PLANE_H
#define QSTD_PLANE_H

#include "input/inputs.h"
#include "instrument/instrument_options.h"
#include "results/sink.h"

#include <string>
#include <vector>

namespace qstd {

/** As typed; empty where not given. */
struct PlaneOptions
{
    std::string first;
    std::string second;
    std::string third;
    bool isInclined = false; /**< two points: places along and across the line between them as it slopes */
    std::string sightsTable;
    std::vector<std::string> sights;
    InstrumentOptions instrument;
};

void RunPlane(const PlaneOptions& options, Inputs& inputs, Sink& sink);

} // namespace qstd

#endif
