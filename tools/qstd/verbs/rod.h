/**
 * @file rod.h
 * The verb rod: a hidden point on the prolongation of a rod that carries two prisms.
 */
#ifndef QSTD_ROD_H
#define QSTD_ROD_H

#include "input/inputs.h"
#include "instrument/instrument_options.h"
#include "results/sink.h"

#include <string>

namespace qstd {

struct RodOptions
{
    std::string far;           /**< prism farther from the hidden point */
    std::string near;          /**< prism nearer to it */
    std::string extension;     /**< from the near prism to the hidden point */
    std::string spacing = "0"; /**< nominal, between the prisms; 0: as measured */
    InstrumentOptions instrument;
};

void RunRod(const RodOptions& options, Inputs& inputs, Sink& sink);

} // namespace qstd

#endif
