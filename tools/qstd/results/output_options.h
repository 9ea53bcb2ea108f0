/**
 * @file output_options.h
 * How the results of a verb are wanted.
 */
#ifndef QSTD_OUTPUT_OPTIONS_H
#define QSTD_OUTPUT_OPTIONS_H

#include "text/angle_text.h"
#include "text/outcome.h"
#include "text/unit.h"

#include <optional>
#include <string>
#include <vector>

namespace qstd {

enum class OutputFormat
{
    TEXT,
    CSV,
    JSON
};

struct OutputOptions
{
    OutputFormat format = OutputFormat::TEXT;
    std::optional<AngleForm> angle; /**< of printed angles, and of input angles that do not say theirs */
    int decimals = 4;               /**< of coordinates, heights, distances */
    LinearUnit unit = LinearUnit::METRE;
    std::vector<std::string> columns; /**< none: all */
    std::string output = "-";         /**< where results go */
    std::string svg;                  /**< empty: no plan */
    std::string dxf;
    std::string geoJson;
};

} // namespace qstd

#endif
