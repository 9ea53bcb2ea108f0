/**
 * @file column.h
 * The verb column: centre and radius of a round object from sights to its face and its edges.
 */
#ifndef QSTD_COLUMN_H
#define QSTD_COLUMN_H

#include "input/inputs.h"
#include "instrument/instrument_options.h"
#include "results/sink.h"

#include <string>

namespace qstd {

struct ColumnOptions
{
    std::string face;     /**< sight HZ,V,SD to the near face */
    std::string leftEdge; /**< sight HZ or HZ,V; the edges may come in either order */
    std::string rightEdge;
    InstrumentOptions instrument;
};

void RunColumn(const ColumnOptions& options, Inputs& inputs, Sink& sink);

} // namespace qstd

#endif
