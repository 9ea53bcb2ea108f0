/**
 * @file stake_list.h
 * The points of a stake-out list: of a table of any length and typed on the command line.
 */
#ifndef QSTD_STAKE_LIST_H
#define QSTD_STAKE_LIST_H

#include "input/inputs.h"
#include "input/table_points.h"
#include "results/result.h"
#include "results/sink.h"

#include <optional>
#include <string>
#include <vector>

namespace qstd {

/** What is to be staked out, and how its stations count. */
struct StakeOptions
{
    std::string table;               /**< empty: none; - is standard input */
    std::vector<std::string> points; /**< names or coordinates */
    std::string chainage;            /**< of the start of the reference; empty: 0 */
};

/** One point after the other: those of the table, then those typed. None is kept. */
class StakeList
{
public:
    /** Begins at the first point. Throws as TablePoints does. */
    StakeList(const StakeOptions& options, Inputs& inputs);

    /** False at the end. Rows that cannot be used are told in the messages of the run. */
    bool Next(KnownPoint& point);

private:
    const StakeOptions& options;
    Inputs& inputs;
    std::optional<TablePoints> table; /**< until its end */
    size_t typed = 0;
};

/** The chainage of the start. Throws WrongUse. */
double StartChainage(const StakeOptions& options);

/** Hands over the one row of a list whose reference could not be defined. @param section  of the list */
void AddRefusal(const Section& section, const Row& refusal, Sink& sink);

} // namespace qstd

#endif
