/**
 * @file prepared_call.h
 * A call whose arguments have been read, and what comes of it.
 */
#ifndef QSTD_PREPARED_CALL_H
#define QSTD_PREPARED_CALL_H

#include "replay/arguments.h"
#include "replay/json_line.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace qstd {

/** What a call has returned and written. */
struct CallOutcome
{
    std::optional<int32_t> status; /**< of a function that returns one */
    std::optional<double> value;   /**< of a function that returns a number */
    Json results = Json::object(); /**< what it wrote, by parameter */
};

class PreparedCall
{
public:
    PreparedCall() = default;
    PreparedCall(const PreparedCall&) = delete;
    PreparedCall& operator=(const PreparedCall&) = delete;
    virtual ~PreparedCall() = default;

    /** Calls the library. */
    virtual CallOutcome Make() = 0;
};

/** Reads the arguments of a function. What is wrong with them is told by the reader; the call is then not made. */
using Preparation = std::function<std::unique_ptr<PreparedCall>(ObjectReader&)>;

} // namespace qstd

#endif
