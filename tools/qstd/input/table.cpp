#include "input/table.h"

#include "input/table_line.h"
#include "text/text.h"

#include <fmt/format.h>

#include <algorithm>

namespace qstd {

namespace {

/** Takes one line, without its end (LF, CR LF or CR), off the front of the content. */
std::string_view TakeLine(std::string_view& content)
{
    const size_t end = content.find_first_of("\r\n");
    const std::string_view line = content.substr(0, end);
    if (end == std::string_view::npos)
    {
        content = {};
        return line;
    }
    const bool isPair = content.substr(end, 2) == "\r\n";
    content.remove_prefix(end + (isPair ? 2U : 1U));
    return line;
}

std::string NameList(const std::vector<ColumnName>& names)
{
    std::string list;
    for (const ColumnName& column : names)
    {
        list += fmt::format(column.isRequired ? "{}{}" : "{}[{}]", list.empty() ? "" : " ", column.name);
    }
    return list;
}

} // namespace

std::optional<Table> ParseTable(std::string_view file, std::string_view content, Messages& messages)
{
    TableLines lines(file);
    std::vector<TableRow> rows;
    TableRow row;
    while (!content.empty())
    {
        if (lines.Take(TakeLine(content), row, messages))
        {
            rows.push_back(row);
        }
        if (lines.IsHopeless())
        {
            return std::nullopt;
        }
    }
    if (!lines.HasHeader())
    {
        lines.TellOfNoHeader(messages);
        return std::nullopt;
    }
    Table table = lines.Head();
    table.rows = std::move(rows);
    return table;
}

ColumnPlaces FindColumns(const Table& table, const std::vector<ColumnName>& names, Messages& messages)
{
    ColumnPlaces places(names.size());
    for (size_t place = 0; place < table.header.size(); ++place)
    {
        const std::string& title = table.header[place];
        const auto found = std::find_if(names.begin(), names.end(),
                                        [&title](const ColumnName& column) { return column.name == title; });
        if (found == names.end())
        {
            messages.AddWarning(
                table.file, table.headerLine,
                fmt::format("column {}: not known, ignored; the columns are {}", Quoted(title), NameList(names)));
            continue;
        }
        std::optional<size_t>& known = places[static_cast<size_t>(found - names.begin())];
        if (known)
        {
            messages.AddError(table.file, table.headerLine,
                              fmt::format("column {}: named twice; rename or remove one", Quoted(title)));
        }
        known = place;
    }
    for (size_t i = 0; i < names.size(); ++i)
    {
        if (names[i].isRequired && !places[i])
        {
            messages.AddError(table.file, table.headerLine,
                              fmt::format("no column {}; the first line must name the columns: {}",
                                          Quoted(names[i].name), NameList(names)));
        }
    }
    return places;
}

std::string_view CellAt(const TableRow& row, std::optional<size_t> column)
{
    return column && *column < row.cells.size() ? std::string_view(row.cells[*column]) : std::string_view();
}

} // namespace qstd
