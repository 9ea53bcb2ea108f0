/**
 * @file arc.h
 * The verb arc: parameters of a reference arc, and points referred to it as a stake-out list.
 */
#ifndef QSTD_ARC_H
#define QSTD_ARC_H

#include "input/inputs.h"
#include "instrument/instrument_options.h"
#include "results/sink.h"
#include "verbs/stake_list.h"

#include <string>

namespace qstd {

/** As typed; empty where not given. */
struct ArcOptions
{
    std::string from;
    std::string to;
    std::string via;
    std::string tangent;
    std::string endTangent;
    std::string deflection;
    std::string radius;
    std::string length;
    StakeOptions stakes;
    InstrumentOptions instrument;
};

void RunArc(const ArcOptions& options, Inputs& inputs, Sink& sink);

} // namespace qstd

#endif
