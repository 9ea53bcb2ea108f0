/**
 * @file area.h
 * The verb area: plan area and perimeter of a polygon.
 */
#ifndef QSTD_AREA_H
#define QSTD_AREA_H

#include "input/inputs.h"
#include "results/sink.h"

#include <string>
#include <vector>

namespace qstd {

struct AreaOptions
{
    std::vector<std::string> corners; /**< in order; none: all points of the table */
    std::string table;                /**< of points; empty: none */
};

void RunArea(const AreaOptions& options, Inputs& inputs, Sink& sink);

} // namespace qstd

#endif
