#include "input/table_stream.h"

#include <string_view>
#include <utility>

namespace qstd {

TableStream::TableStream(LineSource& lineSource, std::string fileName)
    : source(lineSource), file(std::move(fileName)), lines(file)
{
}

bool TableStream::Rewind(Messages& messages)
{
    source.Rewind();
    lines = TableLines(file);
    isAtEnd = false;
    TableRow none;
    while (!isAtEnd && !lines.HasHeader())
    {
        TakeLine(none, messages);
    }
    if (isAtEnd && !lines.IsHopeless() && source.Problem().empty())
    {
        lines.TellOfNoHeader(messages);
    }
    return !isAtEnd;
}

const Table& TableStream::Head() const
{
    return lines.Head();
}

std::optional<TableRow> TableStream::Next(Messages& messages)
{
    TableRow row;
    return Next(row, messages) ? std::optional<TableRow>(std::move(row)) : std::nullopt;
}

bool TableStream::Next(TableRow& row, Messages& messages)
{
    while (!isAtEnd)
    {
        if (TakeLine(row, messages))
        {
            return true;
        }
    }
    return false;
}

/** Takes the next line. True when it is a row. */
bool TableStream::TakeLine(TableRow& row, Messages& messages)
{
    const std::optional<std::string_view> text = source.Next();
    if (!text)
    {
        isAtEnd = true;
        if (!source.Problem().empty())
        {
            messages.AddError(file, source.ProblemLine(), source.Problem());
        }
        return false;
    }
    const bool isRow = lines.Take(*text, row, messages);
    isAtEnd = lines.IsHopeless();
    return isRow;
}

} // namespace qstd
