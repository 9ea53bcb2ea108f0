#include "table.h"

#include "text.h"

#include <fmt/format.h>

#include <algorithm>

namespace qstd {

namespace {

constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF";

bool IsBlank(char letter)
{
    return letter == ' ' || letter == '\t';
}

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

/** What makes a line unreadable as text, or nothing. */
std::string LineProblem(std::string_view line)
{
    if (!IsUtf8(line))
    {
        return "not UTF-8 text; save the file in UTF-8";
    }
    for (const char letter : line)
    {
        const auto byte = static_cast<unsigned char>(letter);
        if ((byte < 0x20U && letter != '\t') || byte == 0x7FU)
        {
            return fmt::format("control character \\x{:02x}; the tables are plain text", byte);
        }
    }
    return "";
}

/** Splits one line into its cells. */
class LineSplitter
{
public:
    LineSplitter(std::string_view text, char separatorOfTable) : rest(text), separator(separatorOfTable)
    {
    }

    /** Empty when the line could be split; else what is wrong with it. */
    std::string Split(std::vector<std::string>& cells)
    {
        SkipBlanks();
        bool isOpen = false; // a separator has been read that a cell must follow
        while (isOpen || !AtEnd())
        {
            std::string cell;
            if (!TakeCell(cell))
            {
                return "a double quote is not closed";
            }
            cells.push_back(cell);
            SkipBlanks();
            isOpen = false;
            if (AtEnd() || separator == ' ')
            {
                continue;
            }
            if (rest.front() != separator)
            {
                return "text follows a closing double quote";
            }
            rest.remove_prefix(1);
            isOpen = true;
            SkipBlanks();
        }
        return "";
    }

private:
    [[nodiscard]] bool AtEnd() const
    {
        return rest.empty() || rest.front() == '#';
    }

    void SkipBlanks()
    {
        while (!rest.empty() && IsBlank(rest.front()) && rest.front() != KeptBlank())
        {
            rest.remove_prefix(1);
        }
    }

    /** The character that may not be skipped as a blank. */
    [[nodiscard]] char KeptBlank() const
    {
        return separator == '\t' ? '\t' : '\0';
    }

    bool TakeCell(std::string& cell)
    {
        if (!rest.empty() && rest.front() == '"')
        {
            return TakeQuoted(cell);
        }
        const size_t end = rest.find_first_of(separator == ' ' ? std::string(" \t#") : std::string{separator, '#'});
        cell = Trim(rest.substr(0, end));
        rest.remove_prefix(std::min(end, rest.size()));
        if (separator == ' ' && cell == "-")
        {
            cell.clear();
        }
        return true;
    }

    /** A double quote within quotes is written twice. */
    bool TakeQuoted(std::string& cell)
    {
        rest.remove_prefix(1);
        while (!rest.empty())
        {
            const char letter = rest.front();
            rest.remove_prefix(1);
            if (letter != '"')
            {
                cell += letter;
                continue;
            }
            if (rest.empty() || rest.front() != '"')
            {
                return true;
            }
            cell += letter;
            rest.remove_prefix(1);
        }
        return false;
    }

    std::string_view rest;
    char separator;
};

/** True for a header with blanks between names, so that tabs in it are mere blanks too. */
bool HasBlanksBetweenNames(std::string_view header)
{
    for (size_t blank = header.find(' '); blank != std::string_view::npos; blank = header.find(' ', blank + 1))
    {
        const size_t next = header.find_first_not_of(' ', blank);
        if (blank > 0 && header[blank - 1] != '\t' && header[blank - 1] != ' ' && header[next] != '\t')
        {
            return true;
        }
    }
    return false;
}

char SeparatorOf(std::string_view headerLine)
{
    const std::string_view header = Trim(headerLine.substr(0, headerLine.find('#')));
    for (const char separator : {';', ','})
    {
        if (header.find(separator) != std::string_view::npos)
        {
            return separator;
        }
    }
    return header.find('\t') != std::string_view::npos && !HasBlanksBetweenNames(header) ? '\t' : ' ';
}

void DropTrailingEmptyCells(std::vector<std::string>& cells)
{
    while (!cells.empty() && cells.back().empty())
    {
        cells.pop_back();
    }
}

void AddRow(Table& table, size_t line, std::vector<std::string> cells, Messages& messages)
{
    if (cells.size() > table.header.size())
    {
        messages.AddError(table.file, line,
                          fmt::format("{} values for {} columns; the first one too many is {}", cells.size(),
                                      table.header.size(), Quoted(cells[table.header.size()])));
        return;
    }
    table.rows.push_back({line, std::move(cells)});
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
    Table table;
    table.file = file;
    if (content.substr(0, 2) == "\xFF\xFE" || content.substr(0, 2) == "\xFE\xFF")
    {
        messages.AddError(file, 0, "UTF-16 text; save the file in UTF-8");
        return std::nullopt;
    }
    if (content.substr(0, BYTE_ORDER_MARK.size()) == BYTE_ORDER_MARK)
    {
        content.remove_prefix(BYTE_ORDER_MARK.size());
    }
    char separator = ' ';
    for (size_t line = 1; !content.empty(); ++line)
    {
        const std::string_view text = TakeLine(content);
        const bool isHeader = table.headerLine == 0;
        if (isHeader)
        {
            separator = SeparatorOf(text);
        }
        std::vector<std::string> cells;
        std::string problem = LineProblem(text);
        if (problem.empty())
        {
            problem = LineSplitter(text, separator).Split(cells);
        }
        if (!problem.empty())
        {
            messages.AddError(file, line, problem);
            continue;
        }
        DropTrailingEmptyCells(cells);
        if (cells.empty())
        {
            continue;
        }
        if (!isHeader)
        {
            AddRow(table, line, std::move(cells), messages);
            continue;
        }
        table.headerLine = line;
        std::transform(cells.begin(), cells.end(), std::back_inserter(table.header),
                       [](const std::string& name) { return LowerCase(name); });
    }
    if (table.headerLine == 0)
    {
        messages.AddError(file, 0, "empty; the first line must name the columns");
        return std::nullopt;
    }
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
