/**
 * @file benchmark.h
 * The verb benchmark: the height of the instrument from points of known height.
 */
#ifndef QSTD_BENCHMARK_H
#define QSTD_BENCHMARK_H

#include "input/inputs.h"
#include "instrument/instrument_options.h"
#include "results/sink.h"

#include <optional>
#include <string>

namespace qstd {

struct BenchmarkOptions
{
    std::string benchmark; /**< a point, or a height */
    std::string zenith;
    std::string distance;      /**< empty: by zenith angle alone */
    bool isHorizontal = false; /**< the distance */
    double targetHeight = 0.0;
    std::optional<double> instrumentHeight;
    std::string sights;           /**< a field book in place of the above; empty: none */
    InstrumentOptions instrument; /**< corrections, and the station for a height by zenith angle */
};

void RunBenchmark(const BenchmarkOptions& options, Inputs& inputs, Sink& sink);

/**
 * The height of the axis above a station from a target of known height, by zenith angle alone: the library's reduction,
 * with the corrections of the connected instrument. All lengths in metres.
 *
 * @param zenith  in face one, not vertical: the library would give a height without meaning there
 * @return nothing where the library refuses, or gives no height
 */
std::optional<double> AxisHeightByZenith(const PointRecord& station, const PointRecord& target, AngleUnit zenith,
                                         double targetHeight);

} // namespace qstd

#endif
