#include "text/text_table.h"

#include "text/text.h"

#include <algorithm>
#include <cstddef>

namespace qstd {

namespace {

constexpr size_t GAP = 2;

/** The width of each column; 0 for one without any content, which is then left out. */
std::vector<size_t> ColumnWidths(const std::vector<TextColumn>& columns,
                                 const std::vector<std::vector<std::string>>& rows)
{
    std::vector<size_t> widths(columns.size());
    for (size_t i = 0; i < columns.size(); ++i)
    {
        for (const std::vector<std::string>& row : rows)
        {
            widths[i] = std::max(widths[i], DisplayWidth(row[i]));
        }
        widths[i] = widths[i] == 0 ? 0 : std::max(widths[i], DisplayWidth(columns[i].title));
    }
    return widths;
}

std::string FormatLine(const std::vector<std::string>& cells, const std::vector<TextColumn>& columns,
                       const std::vector<size_t>& widths)
{
    std::string line;
    for (size_t i = 0; i < cells.size(); ++i)
    {
        if (widths[i] == 0)
        {
            continue;
        }
        const std::string padding(widths[i] - DisplayWidth(cells[i]), ' ');
        const bool isLeft = columns[i].alignment == Alignment::LEFT;
        line += (line.empty() ? "" : std::string(GAP, ' ')) + (isLeft ? cells[i] + padding : padding + cells[i]);
    }
    return line.substr(0, line.find_last_not_of(' ') + 1);
}

} // namespace

std::string FormatTable(const std::vector<TextColumn>& columns, const std::vector<std::vector<std::string>>& rows,
                        const std::string& indent)
{
    const std::vector<size_t> widths = ColumnWidths(columns, rows);
    std::vector<std::string> titles;
    std::transform(columns.begin(), columns.end(), std::back_inserter(titles),
                   [](const TextColumn& column) { return column.title; });
    for (size_t i = 0; i < titles.size(); ++i)
    {
        titles[i] = widths[i] == 0 ? "" : titles[i];
    }
    std::string text = indent + FormatLine(titles, columns, widths) + "\n";
    for (const std::vector<std::string>& row : rows)
    {
        text += indent + FormatLine(row, columns, widths) + "\n";
    }
    return text;
}

} // namespace qstd
