/**
 * @file edge.h
 * The verb edge: points of a straight edge in space, each from a sight without distance.
 */
#ifndef QSTD_EDGE_H
#define QSTD_EDGE_H

#include "input/inputs.h"
#include "instrument/instrument_options.h"
#include "results/sink.h"

#include <string>
#include <vector>

namespace qstd {

struct EdgeOptions
{
    std::string first; /**< on the edge */
    std::string second;
    std::vector<std::string> sights; /**< HZ,V each */
    std::string table;               /**< of further sights, empty for none */
    InstrumentOptions instrument;
};

void RunEdge(const EdgeOptions& options, Inputs& inputs, Sink& sink);

} // namespace qstd

#endif
