/**
 * @file slope.h
 * The verb slope: measured points against a design slope in the section through a base point.
 */
#ifndef QSTD_SLOPE_H
#define QSTD_SLOPE_H

#include "input/inputs.h"
#include "instrument/instrument_options.h"
#include "results/sink.h"

#include <string>
#include <vector>

namespace qstd {

struct SlopeOptions
{
    std::string base;
    std::vector<std::string> design; /**< two points of the slope, each DISTANCE,HEIGHT */
    std::vector<std::string> points;
    std::string list; /**< table of further points, empty for none */
    std::string targetHeight = "0";
    InstrumentOptions instrument;
};

void RunSlope(const SlopeOptions& options, Inputs& inputs, Sink& sink);

} // namespace qstd

#endif
