/**
 * @file status_text.h
 * A station that could not be solved, in words.
 */
#ifndef QSTD_STATUS_TEXT_H
#define QSTD_STATUS_TEXT_H

#include "station/station_solution.h"

#include <cstdint>
#include <string>

namespace qstd {

/** Why there is no station, what usually causes it, and what to do. */
struct StatusText
{
    std::string reason;
    std::string usualCause;
    std::string remedy;
};

/** Words for a set-up that was not solved. */
StatusText DescribeFailure(const StationSolution& solution);

/** The status name of a solution: of the library, or of the tool where it refused itself. */
std::string OutcomeName(const StationSolution& solution);

} // namespace qstd

#endif
