#include "verbs/stake_list.h"

#include "verbs/arguments.h"

namespace qstd {

StakeList::StakeList(const StakeOptions& stakeOptions, Inputs& inputsOfVerb)
    : options(stakeOptions), inputs(inputsOfVerb)
{
    if (!options.table.empty())
    {
        table.emplace(options.table, inputs);
    }
}

bool StakeList::Next(KnownPoint& point)
{
    if (table && table->Next(point))
    {
        return true;
    }
    table.reset();
    if (typed == options.points.size())
    {
        return false;
    }
    point = inputs.Point(options.points[typed]);
    ++typed;
    return true;
}

double StartChainage(const StakeOptions& options)
{
    return options.chainage.empty() ? 0.0 : LengthArgument(options.chainage, "chainage");
}

void AddRefusal(const Section& section, const Row& refusal, Sink& sink)
{
    Section record = section;
    record.layout = Layout::RECORD;
    sink.Begin(record);
    sink.Add(refusal);
}

} // namespace qstd
