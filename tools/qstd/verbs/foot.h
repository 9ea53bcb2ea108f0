/**
 * @file foot.h
 * The verb foot: the foot of the perpendicular from a point to a line.
 */
#ifndef QSTD_FOOT_H
#define QSTD_FOOT_H

#include "input/inputs.h"
#include "instrument/instrument_options.h"
#include "results/sink.h"
#include "verbs/plan_line.h"

#include <string>

namespace qstd {

struct FootOptions
{
    std::string point;
    LineArgument line;
    InstrumentOptions instrument;
};

void RunFoot(const FootOptions& options, Inputs& inputs, Sink& sink);

} // namespace qstd

#endif
