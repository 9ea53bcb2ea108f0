/**
 * @file transfer.h
 * The verb transfer: a line turned about its first point and shifted sideways.
 */
#ifndef QSTD_TRANSFER_H
#define QSTD_TRANSFER_H

#include "input/inputs.h"
#include "instrument/instrument_options.h"
#include "results/sink.h"
#include "verbs/plan_line.h"

#include <qstdlib.h>

#include <string>

namespace qstd {

struct TransferOptions
{
    LineArgument line;
    std::string rotation; /**< an angle, clockwise, a minus sign before it turns the other way; empty: 0 */
    std::string offset;   /**< empty: 0 */
    InstrumentOptions instrument;
};

void RunTransfer(const TransferOptions& options, Inputs& inputs, Sink& sink);

} // namespace qstd

#endif
