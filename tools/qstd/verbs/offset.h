/**
 * @file offset.h
 * The verb offset: the point at a chainage along a line and an offset to its side.
 */
#ifndef QSTD_OFFSET_H
#define QSTD_OFFSET_H

#include "input/inputs.h"
#include "results/sink.h"

#include <string>

namespace qstd {

struct OffsetOptions
{
    std::string start;
    std::string end;
    std::string chainage;
    std::string offset;
};

void RunOffset(const OffsetOptions& options, Inputs& inputs, Sink& sink);

} // namespace qstd

#endif
