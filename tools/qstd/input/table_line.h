/**
 * @file table_line.h
 * The lines of a table, taken apart one after the other.
 */
#ifndef QSTD_TABLE_LINE_H
#define QSTD_TABLE_LINE_H

#include "input/table.h"

#include <string>
#include <string_view>
#include <vector>

namespace qstd {

/** Reads a table by the rules that ParseTable states, from lines without their ends. */
class TableLines
{
public:
    /** @param file  as messages name it */
    explicit TableLines(std::string_view file);

    /** Takes the next line. True when it is a row, which `row` then holds; problems go to `messages`. */
    bool Take(std::string_view text, TableRow& row, Messages& messages);

    /** True when there is no use in further lines: this is no text. */
    [[nodiscard]] bool IsHopeless() const;

    [[nodiscard]] bool HasHeader() const;

    /** Tells that there was no header. */
    void TellOfNoHeader(Messages& messages) const;

    /** Name and columns; no rows. */
    [[nodiscard]] const Table& Head() const;

private:
    void TakeHeader(const std::vector<std::string>& cells);
    [[nodiscard]] bool IsWithinHeader(const TableRow& row, Messages& messages) const;

    Table head;
    size_t line = 0;
    char separator = ' ';
    bool isHopeless = false;
};

} // namespace qstd

#endif
