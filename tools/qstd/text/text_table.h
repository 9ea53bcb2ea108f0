/**
 * @file text_table.h
 * Columns of text that stand below each other.
 */
#ifndef QSTD_TEXT_TABLE_H
#define QSTD_TEXT_TABLE_H

#include <string>
#include <vector>

namespace qstd {

enum class Alignment
{
    LEFT,
    RIGHT
};

struct TextColumn
{
    std::string title;
    Alignment alignment = Alignment::LEFT;
};

/** Title line and rows as lines of text: each column as wide as its widest cell, an empty column left out. */
std::string FormatTable(const std::vector<TextColumn>& columns, const std::vector<std::vector<std::string>>& rows,
                        const std::string& indent);

} // namespace qstd

#endif
