/**
 * @file line.h
 * The verb line: points referred to a reference line, as a stake-out list.
 */
#ifndef QSTD_LINE_H
#define QSTD_LINE_H

#include "input/inputs.h"
#include "results/sink.h"
#include "verbs/stake_list.h"

#include <string>

namespace qstd {

struct LineOptions
{
    std::string first;
    std::string second;
    StakeOptions stakes;
};

void RunLine(const LineOptions& options, Inputs& inputs, Sink& sink);

} // namespace qstd

#endif
