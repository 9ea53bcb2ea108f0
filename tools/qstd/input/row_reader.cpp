#include "input/row_reader.h"

#include "text/text.h"

#include <fmt/format.h>

#include <cmath>

namespace qstd {

RowReader::RowReader(const Table& tableOfRow, const TableRow& rowToRead, Messages& messagesToAdd)
    : table(tableOfRow), row(rowToRead), messages(messagesToAdd)
{
}

void RowReader::Reject(std::string_view column, std::string_view text, std::string_view problem)
{
    messages.AddError(table.file, row.line, fmt::format("{} {}: {}", column, Quoted(text), problem));
    isGood = false;
}

std::string RowReader::Name(std::string_view column, std::optional<size_t> place)
{
    const std::string_view text = CellAt(row, place);
    if (text.empty())
    {
        Reject(column, text, "empty; every line needs a name here");
    }
    return std::string(text);
}

std::optional<double> RowReader::Length(std::string_view column, std::optional<size_t> place)
{
    const std::string_view text = CellAt(row, place);
    if (text.empty())
    {
        return std::nullopt;
    }
    const std::optional<double> value = ParseReal(text);
    if (!value)
    {
        Reject(column, text,
               text.find(',') != std::string_view::npos ? "not a number; write a decimal point"
                                                        : "not a number; write one such as 123.456");
    }
    else if (std::fabs(*value) > LONGEST_LENGTH)
    {
        Reject(column, text, "beyond 100 000 km; no length on the earth is longer");
        return std::nullopt;
    }
    return value;
}

std::optional<double> RowReader::Distance(std::string_view column, std::optional<size_t> place)
{
    const std::optional<double> value = Length(column, place);
    if (value && *value <= 0.0)
    {
        Reject(column, CellAt(row, place), "not above 0; leave it empty where no distance was measured");
    }
    return value;
}

std::optional<AngleUnit> RowReader::Angle(std::string_view column, std::optional<size_t> place,
                                          std::optional<AngleForm> bare)
{
    const std::string_view text = CellAt(row, place);
    if (text.empty())
    {
        return std::nullopt;
    }
    const ParsedAngle angle = ParseAngle(text, bare);
    if (!angle.problem.empty())
    {
        Reject(column, text, angle.problem);
    }
    return angle.units;
}

bool RowReader::Use(std::optional<size_t> place)
{
    const std::string_view text = CellAt(row, place);
    if (!text.empty() && text != "0" && text != "1")
    {
        Reject("use", text, "neither 0 nor 1; write 0 to keep the sight out, 1 or nothing to use it");
    }
    return text != "0";
}

bool RowReader::IsGood() const
{
    return isGood;
}

} // namespace qstd
