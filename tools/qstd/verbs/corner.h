/**
 * @file corner.h
 * The verb corner: the hidden corner of two walls, from points measured on them.
 */
#ifndef QSTD_CORNER_H
#define QSTD_CORNER_H

#include "input/inputs.h"
#include "instrument/instrument_options.h"
#include "results/sink.h"

#include <string>
#include <vector>

namespace qstd {

struct CornerOptions
{
    std::vector<std::string> points; /**< two on the first wall; one on the second, at a right angle, or two */
    std::string targetHeight = "0";
    InstrumentOptions instrument;
};

void RunCorner(const CornerOptions& options, Inputs& inputs, Sink& sink);

} // namespace qstd

#endif
