#include "verbs/stake_list.h"

#include "text/outcome.h"
#include "verbs/arguments.h"

#include <cmath>

namespace qstd {

StakeList::StakeList(const StakeOptions& stakeOptions, Inputs& inputsOfVerb)
    : options(stakeOptions), inputs(inputsOfVerb)
{
    if (!options.table.empty())
    {
        table = &inputs.Rows(options.table);
        rows.emplace(table->Head(), inputs.Problems());
        if (!rows->HasColumns())
        {
            throw Unreadable();
        }
    }
}

bool StakeList::Next(KnownPoint& point)
{
    if (NextOfTable(point))
    {
        return true;
    }
    if (typed == options.points.size())
    {
        return false;
    }
    point = inputs.Point(options.points[typed]);
    ++typed;
    return true;
}

bool StakeList::NextOfTable(KnownPoint& point)
{
    while (table != nullptr)
    {
        if (!table->Next(row))
        {
            table = nullptr;
            return false;
        }
        std::optional<KnownPoint> read = rows->Read(row, inputs.Problems());
        if (read)
        {
            point = std::move(*read);
            return true;
        }
    }
    return false;
}

double StartChainage(const StakeOptions& options)
{
    return options.chainage.empty() ? 0.0 : LengthArgument(options.chainage, "chainage");
}

std::string SideOfReference(double offset, const std::string& reference, const Sink& sink)
{
    // Formatting is needed only for what may be printed as 0.
    if (std::fabs(offset) < 1.0 && sink.LengthText(std::fabs(offset)) == sink.LengthText(0.0))
    {
        return "on the " + reference;
    }
    return offset > 0.0 ? "to the right" : "to the left";
}

void AddRefusal(const Section& section, const Row& refusal, Sink& sink)
{
    Section record = section;
    record.layout = Layout::RECORD;
    sink.Begin(record);
    sink.Add(refusal);
}

} // namespace qstd
