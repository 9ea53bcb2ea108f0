// Tables of any bytes: what is read at once and what is read as a stream agree, and what was read survives being
// written and read again.
#include "input/line_source.h"
#include "input/table.h"
#include "input/table_stream.h"
#include "require.h"
#include "text/text.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <sys/mman.h>
#include <unistd.h>

using qstd::LineSource;
using qstd::Messages;
using qstd::ParseTable;
using qstd::Table;
using qstd::TableRow;
using qstd::TableStream;

namespace {

/** A file in memory with a path, made once and filled anew for every input. */
class MemoryFile
{
public:
    MemoryFile() : descriptor(memfd_create("table", MFD_CLOEXEC))
    {
    }

    void Fill(std::string_view content) const
    {
        const bool isFilled = ftruncate(descriptor, 0) == 0 && pwrite(descriptor, content.data(), content.size(), 0) ==
                                                                   static_cast<ssize_t>(content.size());
        Require(isFilled, "the fuzz target itself works");
    }

    [[nodiscard]] std::string Path() const
    {
        return fmt::format("/proc/self/fd/{}", descriptor);
    }

private:
    int descriptor;
};

void CheckRow(const TableRow& row, const Table& table)
{
    Require(!row.cells.empty() && !row.cells.back().empty(), "a row ends with a value");
    Require(row.cells.size() <= table.header.size(), "a row has no more values than the table columns");
    for (const std::string& cell : row.cells)
    {
        Require(qstd::IsUtf8(cell), "a cell is UTF-8");
        const auto isControl = [](char letter) {
            return letter == '\x7F' || (static_cast<unsigned char>(letter) < 0x20U && letter != '\t');
        };
        Require(std::none_of(cell.begin(), cell.end(), isControl), "a cell holds no control character");
    }
}

/** One pass of the stream gives the rows and messages of the table. */
void CheckStream(TableStream& stream, const std::optional<Table>& table, const std::string& messagesOfTable)
{
    Messages messages;
    TableRow row;
    Require(stream.Rewind(messages) == table.has_value(), "the stream has a header where the table has one");
    size_t count = 0;
    while (stream.Next(row, messages))
    {
        Require(count < table->rows.size(), "the stream has no more rows than the table");
        const TableRow& expected = table->rows[count];
        Require(row.line == expected.line && row.cells == expected.cells, "the rows are the same");
        ++count;
    }
    Require(count == (table ? table->rows.size() : 0U), "the stream has no fewer rows than the table");
    Require(!table || (stream.Head().header == table->header && stream.Head().headerLine == table->headerLine),
            "the headers are the same");
    Require(messages.Text() == messagesOfTable, "the messages are the same");
}

std::string InQuotes(const std::string& cell)
{
    std::string quoted = "\"";
    for (const char letter : cell)
    {
        quoted += letter == '"' ? "\"\"" : std::string(1, letter);
    }
    return quoted + "\"";
}

/** The rows once more, every cell in quotes, below names that no rule can take for anything else. */
std::string Written(const Table& table, char separator)
{
    std::string text = "c0";
    for (size_t i = 1; i < table.header.size(); ++i)
    {
        text += fmt::format("{}c{}", separator, i);
    }
    text += "\n";
    for (const TableRow& row : table.rows)
    {
        for (size_t i = 0; i < row.cells.size(); ++i)
        {
            text += (i == 0 ? "" : std::string(1, separator)) + InQuotes(row.cells[i]);
        }
        text += "\n";
    }
    return text;
}

void CheckWritten(const Table& table)
{
    for (const char separator : {',', ';', '\t', ' '})
    {
        Messages messages;
        const std::optional<Table> again = ParseTable("again", Written(table, separator), messages);
        Require(again && messages.Text().empty(), "a written table can be read");
        Require(again->rows.size() == table.rows.size(), "a written table has as many rows");
        for (size_t i = 0; i < table.rows.size(); ++i)
        {
            Require(again->rows[i].cells == table.rows[i].cells, "a written table has the same cells");
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const MemoryFile file;
    const std::string_view content = TextOf(data, size);
    Messages messages;
    const std::optional<Table> table = ParseTable("table", content, messages);
    Require(table || messages.HasErrors(), "where there is no table, a message says why");
    if (table)
    {
        for (const TableRow& row : table->rows)
        {
            CheckRow(row, *table);
        }
        CheckWritten(*table);
    }
    file.Fill(content);
    LineSource source;
    Require(source.Open(file.Path()).empty(), "the fuzz target itself works");
    TableStream stream(source, "table");
    CheckStream(stream, table, messages.Text());
    CheckStream(stream, table, messages.Text());
    return 0;
}
