/**
 * @file call.h
 * A line of a replay: a call of the library as JSON, checked, made, and its result as JSON.
 */
#ifndef QSTD_CALL_H
#define QSTD_CALL_H

#include "replay/json_line.h"
#include "replay/prepared_call.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qstd {

/** More observations are refused: the weight matrix of the adjustment has a row and a column for each. */
constexpr size_t MOST_OBSERVATIONS = 2500;

/** A call read from a line. Nothing but MakeCall reaches the library. */
struct ReplayCall
{
    std::string name;
    bool countsSolutions = false; /**< its status, where not negative, is a number of points */
    std::optional<Json> id;       /**< handed through to the result */
    std::unique_ptr<PreparedCall> prepared;
    std::string problem; /**< empty, or why the line is no call; it can then not be made */
};

/** Reads a line such as {"call":"QREFSetBaseLine","first":{...},"second":{...}}. */
ReplayCall ParseCall(std::string_view line);

/**
 * Makes the call, once, and gives its line of the recording: the name, the id where there is one, status or value, and
 * what the call wrote under the names of its parameters, in the order of the header.
 */
Json MakeCall(const ReplayCall& call);

/** The functions that can be called, in alphabetical order. */
std::vector<std::string> CallNames();

} // namespace qstd

#endif
