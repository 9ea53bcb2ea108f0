#include "text/message.h"

#include <fmt/format.h>

namespace qstd {

namespace {

std::string Compose(std::string_view file, size_t line, std::string_view kind, std::string_view text)
{
    if (line == 0)
    {
        return fmt::format("{}: {}{}\n", file, kind, text);
    }
    return fmt::format("{}:{}: {}{}\n", file, line, kind, text);
}

} // namespace

void Messages::AddError(std::string_view file, size_t line, std::string_view text)
{
    if (!IsFull())
    {
        lines.push_back(Compose(file, line, isFirstReading ? "" : "changed while it was read: ", text));
    }
    ++errors;
}

void Messages::AddWarning(std::string_view file, size_t line, std::string_view text)
{
    if (isFirstReading && warnings < LIMIT)
    {
        lines.push_back(Compose(file, line, "warning: ", text));
    }
    ++warnings;
}

void Messages::BeginSecondReading()
{
    isFirstReading = false;
    lines.clear();
}

bool Messages::HasErrors() const
{
    return errors > 0;
}

bool Messages::IsFull() const
{
    return errors >= LIMIT;
}

std::string Messages::Text() const
{
    std::string text;
    for (const std::string& line : lines)
    {
        text += line;
    }
    if (errors > LIMIT)
    {
        text += fmt::format("qstd: {} more error{} not shown\n", errors - LIMIT, errors - LIMIT == 1 ? "" : "s");
    }
    return text;
}

} // namespace qstd
