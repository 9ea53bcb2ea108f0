/**
 * @file table_stream.h
 * A table of any length, a line at a time.
 */
#ifndef QSTD_TABLE_STREAM_H
#define QSTD_TABLE_STREAM_H

#include "input/line_source.h"
#include "input/table.h"
#include "input/table_line.h"

#include <optional>
#include <string>

namespace qstd {

/** Reads what ParseTable reads, by the same rules, and keeps one line at a time. May be read several times over. */
class TableStream
{
public:
    /** @param source  must outlive the stream */
    TableStream(LineSource& source, std::string file);

    /** Goes to the first row, reading the header. False when there is none; problems go to `messages`. */
    bool Rewind(Messages& messages);

    /** Name and columns; its rows stay empty. Valid after Rewind. */
    [[nodiscard]] const Table& Head() const;

    /** The next row, or nothing at the end of the table. Lines that are no rows are told in `messages`. */
    std::optional<TableRow> Next(Messages& messages);

    /** The same into a row whose memory is used again. False at the end of the table. */
    bool Next(TableRow& row, Messages& messages);

private:
    bool TakeLine(TableRow& row, Messages& messages);

    LineSource& source;
    std::string file;
    TableLines lines;
    bool isAtEnd = true;
};

} // namespace qstd

#endif
