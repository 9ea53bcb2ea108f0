#include "input/table_points.h"

#include "text/outcome.h"

#include <optional>
#include <utility>

namespace qstd {

TablePoints::TablePoints(const std::string& path, Inputs& inputsOfVerb)
    : inputs(inputsOfVerb), table(inputs.Rows(path)), rows(table.Head(), inputs.Problems())
{
    if (!rows.HasColumns())
    {
        throw Unreadable();
    }
}

bool TablePoints::Next(KnownPoint& point)
{
    while (table.Next(row))
    {
        std::optional<KnownPoint> read = rows.Read(row, inputs.Problems());
        if (read)
        {
            point = std::move(*read);
            return true;
        }
    }
    return false;
}

} // namespace qstd
