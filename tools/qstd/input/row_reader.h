/**
 * @file row_reader.h
 * The cells of one row as names, lengths and angles, telling what is wrong with them.
 */
#ifndef QSTD_ROW_READER_H
#define QSTD_ROW_READER_H

#include "input/table.h"
#include "text/angle_text.h"
#include "text/message.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace qstd {

/** No coordinate, height or distance on the earth is longer; beyond it differences lose their millimetres. */
constexpr double LONGEST_LENGTH = 1e8;

class RowReader
{
public:
    /** All three must outlive the reader. */
    RowReader(const Table& tableOfRow, const TableRow& rowToRead, Messages& messagesToAdd);

    /** Makes the row unusable; `column`, `text` and `problem` go into the message. */
    void Reject(std::string_view column, std::string_view text, std::string_view problem);

    /** A name, which must be there. */
    std::string Name(std::string_view column, std::optional<size_t> place);

    /** A length of any sign, or nothing for an empty cell. */
    std::optional<double> Length(std::string_view column, std::optional<size_t> place);

    /** A length above 0, or nothing for an empty cell. */
    std::optional<double> Distance(std::string_view column, std::optional<size_t> place);

    /** An angle, or nothing for an empty cell. */
    std::optional<AngleUnit> Angle(std::string_view column, std::optional<size_t> place, std::optional<AngleForm> bare);

    /** The column use: false for 0. */
    bool Use(std::optional<size_t> place);

    /** False once something was rejected. */
    [[nodiscard]] bool IsGood() const;

private:
    const Table& table;
    const TableRow& row;
    Messages& messages;
    bool isGood = true;
};

} // namespace qstd

#endif
