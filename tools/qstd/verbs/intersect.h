/**
 * @file intersect.h
 * The verb intersect: where two lines, a line and a circle, or two circles meet.
 */
#ifndef QSTD_INTERSECT_H
#define QSTD_INTERSECT_H

#include "input/inputs.h"
#include "instrument/instrument_options.h"
#include "results/sink.h"
#include "verbs/plan_line.h"

#include <string>
#include <utility>
#include <vector>

namespace qstd {

/** As typed: centre and radius. */
using CircleArgument = std::pair<std::string, std::string>;

struct IntersectOptions
{
    std::vector<LineArgument> lines;
    std::vector<CircleArgument> circles;
    InstrumentOptions instrument;
};

void RunIntersect(const IntersectOptions& options, Inputs& inputs, Sink& sink);

} // namespace qstd

#endif
