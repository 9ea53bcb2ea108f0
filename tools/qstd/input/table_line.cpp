#include "input/table_line.h"

#include "text/text.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

namespace qstd {

namespace {

constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF";

bool IsUtf16(std::string_view text)
{
    return text.substr(0, 2) == "\xFF\xFE" || text.substr(0, 2) == "\xFE\xFF";
}

bool IsBlank(char letter)
{
    return letter == ' ' || letter == '\t';
}

/** True for what most lines are: printable ASCII and tabs only. */
bool IsPlain(std::string_view line)
{
    return std::all_of(line.begin(), line.end(),
                       [](char letter) { return (letter >= ' ' && letter <= '~') || letter == '\t'; });
}

/** What makes a line unreadable as text, or nothing. */
std::string LineProblem(std::string_view line)
{
    if (IsPlain(line))
    {
        return "";
    }
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

/** Splits one line into its cells, which may hold those of a line before: their memory is used again. */
class LineSplitter
{
public:
    LineSplitter(std::string_view text, char separatorOfTable, std::vector<std::string>& cellsOfLine)
        : rest(text), separator(separatorOfTable), cells(cellsOfLine)
    {
    }

    /** Empty when the line could be split; else what is wrong with it. */
    std::string Split()
    {
        SkipBlanks();
        bool isOpen = false; // a separator has been read that a cell must follow
        while (isOpen || !AtEnd())
        {
            if (!TakeCell(NextCell()))
            {
                return "a double quote is not closed";
            }
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
        cells.resize(count);
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

    std::string& NextCell()
    {
        if (count == cells.size())
        {
            cells.emplace_back();
        }
        std::string& cell = cells[count];
        cell.clear();
        ++count;
        return cell;
    }

    bool TakeCell(std::string& cell)
    {
        if (!rest.empty() && rest.front() == '"')
        {
            return TakeQuoted(cell);
        }
        size_t end = 0;
        while (end < rest.size() && !EndsCell(rest[end]))
        {
            ++end;
        }
        cell = Trim(rest.substr(0, end));
        rest.remove_prefix(end);
        if (separator == ' ' && cell == "-")
        {
            cell.clear();
        }
        return true;
    }

    [[nodiscard]] bool EndsCell(char letter) const
    {
        return letter == separator || letter == '#' || (separator == ' ' && letter == '\t');
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
    std::vector<std::string>& cells;
    size_t count = 0;
};

/** True for a header, blanks around it cut off, with blanks between names, so that tabs in it are mere blanks too. */
bool HasBlanksBetweenNames(std::string_view header)
{
    size_t next = 0;
    for (size_t blank = header.find(' '); blank != std::string_view::npos; blank = header.find(' ', next))
    {
        next = header.find_first_not_of(' ', blank);
        if (header[blank - 1] != '\t' && header[next] != '\t')
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

} // namespace

TableLines::TableLines(std::string_view file)
{
    head.file = file;
}

bool TableLines::Take(std::string_view text, TableRow& row, Messages& messages)
{
    ++line;
    if (line == 1 && IsUtf16(text))
    {
        isHopeless = true;
        messages.AddError(head.file, 0, "UTF-16 text; save the file in UTF-8");
        return false;
    }
    if (line == 1 && text.substr(0, BYTE_ORDER_MARK.size()) == BYTE_ORDER_MARK)
    {
        text.remove_prefix(BYTE_ORDER_MARK.size());
    }
    if (!HasHeader())
    {
        separator = SeparatorOf(text);
    }
    std::string problem = LineProblem(text);
    if (problem.empty())
    {
        problem = LineSplitter(text, separator, row.cells).Split();
    }
    if (!problem.empty())
    {
        // Where no line before was a header this is hardly a table, and every further line would say the same.
        isHopeless = !HasHeader();
        messages.AddError(head.file, line, problem);
        return false;
    }
    DropTrailingEmptyCells(row.cells);
    if (row.cells.empty())
    {
        return false;
    }
    if (!HasHeader())
    {
        TakeHeader(row.cells);
        return false;
    }
    row.line = line;
    return IsWithinHeader(row, messages);
}

bool TableLines::IsHopeless() const
{
    return isHopeless;
}

bool TableLines::HasHeader() const
{
    return head.headerLine != 0;
}

void TableLines::TellOfNoHeader(Messages& messages) const
{
    messages.AddError(head.file, 0, "empty; the first line must name the columns");
}

const Table& TableLines::Head() const
{
    return head;
}

void TableLines::TakeHeader(const std::vector<std::string>& cells)
{
    head.headerLine = line;
    std::transform(cells.begin(), cells.end(), std::back_inserter(head.header),
                   [](const std::string& name) { return LowerCase(name); });
}

bool TableLines::IsWithinHeader(const TableRow& row, Messages& messages) const
{
    const size_t columns = head.header.size();
    if (row.cells.size() <= columns)
    {
        return true;
    }
    messages.AddError(head.file, line,
                      fmt::format("{} values for {} columns; the first one too many is {}", row.cells.size(), columns,
                                  Quoted(row.cells[columns])));
    return false;
}

} // namespace qstd
