/**
 * @file table.h
 * Plain-text tables with a header line: separators, comments, quotes, line numbers.
 */
#ifndef QSTD_TABLE_H
#define QSTD_TABLE_H

#include "text/message.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qstd {

/** One line of values. Cells beyond the end of a short line count as empty. */
struct TableRow
{
    size_t line = 0;
    std::vector<std::string> cells;
};

struct Table
{
    std::string file; /**< as messages name it */
    size_t headerLine = 0;
    std::vector<std::string> header; /**< in lower case */
    std::vector<TableRow> rows;
};

/** A column that a table may have. */
struct ColumnName
{
    std::string_view name;
    bool isRequired = false;
};

/** Where each of the asked columns stands in the table; nothing for one that it does not have. */
using ColumnPlaces = std::vector<std::optional<size_t>>;

/**
 * Takes a table apart.
 *
 * The separator is the one that the header uses: semicolon, comma, tab, else blanks, several of which count as one.
 * A byte-order mark, every kind of line end, empty lines and comments from # on are skipped. A cell may stand in double
 * quotes. Between blanks a lone - stands for an empty cell.
 *
 * @return nothing when there is no header; problems of single lines are in `messages`
 */
std::optional<Table> ParseTable(std::string_view file, std::string_view content, Messages& messages);

/** Finds columns by name. Missing required and doubled columns are errors, unknown ones are warned of. */
ColumnPlaces FindColumns(const Table& table, const std::vector<ColumnName>& names, Messages& messages);

/** The text of a cell, empty where the table has no such column or the line ends before it. */
std::string_view CellAt(const TableRow& row, std::optional<size_t> column);

} // namespace qstd

#endif
