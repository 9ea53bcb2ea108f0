#include "results/sink.h"

#include "text/status_name.h"
#include "text/text.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <numeric>

namespace qstd {

namespace {

constexpr int NUMBER_DECIMALS = 6;
constexpr int PERCENT_DECIMALS = 4;
constexpr size_t MOST_PROPOSALS = 3;

/** Of a long list, as many as a reader looks at. */
constexpr size_t MOST_WARNINGS = 20;

const std::string INDENT = "  ";

/** In quotes where it holds what a reader would take for structure; leading blanks would be lost elsewhere too. */
std::string CsvText(const std::string& text)
{
    if (text.find_first_of(",;\t \"#\r\n") == std::string::npos)
    {
        return text;
    }
    std::string quoted = "\"";
    for (const char letter : text)
    {
        quoted += letter;
        if (letter == '"')
        {
            quoted += letter;
        }
    }
    return quoted + "\"";
}

std::string JoinNames(const std::vector<std::string>& names)
{
    std::string text;
    for (const std::string& name : names)
    {
        text += (text.empty() ? "" : ", ") + name;
    }
    return text;
}

/** The remark of a line that holds all there is to say. */
std::string RemarkWithWarnings(std::string remark, const std::vector<std::string>& warnings)
{
    for (const std::string& warning : warnings)
    {
        remark += (remark.empty() ? "Warning: " : "; Warning: ") + warning;
    }
    return remark;
}

void AddJson(nlohmann::ordered_json& object, const Column& column, const Value& value)
{
    if (column.quantity == Quantity::ANGLE)
    {
        const auto* angle = std::get_if<AngleValue>(&value);
        object[column.name + "_degrees"] =
            angle == nullptr ? nlohmann::json() : nlohmann::json(DegreesOf(angle->units));
        object[column.name + "_units"] = angle == nullptr ? nlohmann::json() : nlohmann::json(angle->units);
    }
    else if (const auto* text = std::get_if<std::string>(&value))
    {
        object[column.name] = text->empty() ? nlohmann::json() : nlohmann::json(*text);
    }
    else if (const auto* count = std::get_if<int64_t>(&value))
    {
        object[column.name] = *count;
    }
    else if (const auto* number = std::get_if<double>(&value))
    {
        // Adding 0.0 makes a negative zero positive.
        object[column.name] = *number + 0.0;
    }
    else
    {
        object[column.name] = nullptr;
    }
}

bool IsLeftAligned(const Column& column)
{
    return column.quantity == Quantity::TEXT;
}

std::string Padded(const std::string& text, size_t width, bool isLeft)
{
    const size_t own = DisplayWidth(text);
    const std::string blanks(width > own ? width - own : 0, ' ');
    return isLeft ? text + blanks : blanks + text;
}

std::string WithoutTrailingBlanks(std::string line)
{
    line.erase(line.find_last_not_of(' ') + 1);
    return line;
}

} // namespace

Sink::Sink(OutputOptions outputOptions, std::string verbName)
    : options(std::move(outputOptions)), verb(std::move(verbName))
{
}

void Sink::StartWriting(OutputStream& outputStream, FigureWriter* figureWriter)
{
    stream = &outputStream;
    figure = figureWriter;
    begun = 0;
    hasFailures = false;
    warnings = 0;
}

std::string Sink::Cell(const Column& column, const Value& value) const
{
    if (const auto* angle = std::get_if<AngleValue>(&value))
    {
        return FormatAngle(angle->units, options.angle.value_or(AngleForm::DMS));
    }
    if (const auto* text = std::get_if<std::string>(&value))
    {
        return *text;
    }
    if (const auto* count = std::get_if<int64_t>(&value))
    {
        return std::to_string(*count);
    }
    if (const auto* number = std::get_if<double>(&value))
    {
        switch (column.quantity)
        {
        case Quantity::NUMBER:
            return FormatFixed(*number, NUMBER_DECIMALS);
        case Quantity::PERCENT:
            return FormatFixed(*number, PERCENT_DECIMALS);
        case Quantity::MILLI:
            return FormatSigned(*number * 1000.0, 1);
        default:
            return FormatFixed(*number, options.decimals);
        }
    }
    return "";
}

std::string_view Sink::Unit(const Column& column) const
{
    switch (column.quantity)
    {
    case Quantity::LENGTH:
        return UnitSymbol(options.unit);
    case Quantity::AREA:
        return AreaSymbol(options.unit);
    case Quantity::PERCENT:
        return "%";
    case Quantity::MILLI:
        return options.unit == LinearUnit::METRE ? "mm" : "thousandths";
    default:
        return "";
    }
}

std::string Sink::LengthText(double length) const
{
    return FormatFixed(length, options.decimals);
}

std::string Sink::AngleText(AngleUnit units) const
{
    return FormatAngle(units, options.angle.value_or(AngleForm::DMS));
}

FigureWriter* Sink::Figure() const
{
    return figure;
}

bool Sink::HasFailures() const
{
    return hasFailures;
}

std::string Sink::Messages() const
{
    const size_t more = warnings > MOST_WARNINGS ? warnings - MOST_WARNINGS : 0;
    return more == 0 ? messages
                     : fmt::format("{}qstd: {}: {} not shown\n", messages, verb,
                                   Counted(more, "more warning", "more warnings"));
}

const OutputOptions& Sink::Options() const
{
    return options;
}

void Sink::Title(const std::string& text)
{
    if (stream != nullptr && options.format == OutputFormat::TEXT)
    {
        stream->Write(text + "\n");
        hasWritten = true;
    }
}

void Sink::Note(const std::string& text)
{
    if (stream == nullptr)
    {
        return;
    }
    if (options.format != OutputFormat::TEXT)
    {
        messages += text + "\n";
        return;
    }
    if (!hasNotes)
    {
        Separate();
        hasNotes = true;
    }
    stream->Write(text + "\n");
}

void Sink::Separate()
{
    if (hasWritten)
    {
        stream->Write("\n");
    }
    hasWritten = true;
}

void Sink::Pick(const Section& section, Shown& picked) const
{
    picked.columns = section.columns;
    picked.columns.push_back({"status", "status", Quantity::TEXT, ""});
    picked.columns.push_back({"remark", "remark", Quantity::TEXT, ""});
    if (options.columns.empty() || !section.isMain)
    {
        picked.places.resize(picked.columns.size());
        std::iota(picked.places.begin(), picked.places.end(), size_t{0});
        if (options.format == OutputFormat::TEXT)
        {
            picked.places.erase(picked.places.end() - 2);
        }
        return;
    }
    std::vector<std::string> names;
    for (const Column& column : picked.columns)
    {
        names.push_back(column.name);
    }
    for (const std::string& wanted : options.columns)
    {
        const auto found = std::find(names.begin(), names.end(), LowerCase(Trim(wanted)));
        if (found == names.end())
        {
            const std::vector<std::string> near = NearestNames(wanted, names, MOST_PROPOSALS);
            throw WrongUse(
                fmt::format("--columns: no column {}; {}", Quoted(wanted),
                            near.empty() ? "there are " + JoinNames(names) : "did you mean " + JoinNames(near) + "?"));
        }
        picked.places.push_back(static_cast<size_t>(found - names.begin()));
    }
}

void Sink::Begin(const Section& section)
{
    current = section;
    ++begun;
    if (begun > shown.size())
    {
        shown.emplace_back();
        Pick(section, shown.back());
        shown.back().widths.assign(shown.back().places.size(), 0);
    }
    if (stream == nullptr)
    {
        return;
    }
    if (options.format == OutputFormat::CSV && section.isMain)
    {
        WriteTitles();
    }
    const std::vector<size_t>& widths = shown[begun - 1].widths;
    const bool hasRows = std::any_of(widths.begin(), widths.end(), [](size_t width) { return width > 0; });
    if (options.format == OutputFormat::TEXT && section.layout == Layout::TABLE && hasRows)
    {
        Separate();
        WriteTitles();
    }
}

void Sink::Add(const Row& row)
{
    hasFailures = hasFailures || !row.isComputed || !row.isProven;
    if (stream != nullptr && stream->HasFailed())
    {
        return;
    }
    // Only text has widths.
    if (stream == nullptr && options.format != OutputFormat::TEXT)
    {
        return;
    }
    const std::vector<Value> values = Complete(row);
    if (stream == nullptr)
    {
        Measure(values);
        return;
    }
    TellWarnings(row);
    switch (options.format)
    {
    case OutputFormat::TEXT:
        WriteText(row, values);
        break;
    case OutputFormat::CSV:
        WriteCsv(values);
        break;
    case OutputFormat::JSON:
        WriteJson(row, values);
        break;
    }
}

std::vector<Value> Sink::Complete(const Row& row) const
{
    std::vector<Value> values = row.values;
    values.resize(current.columns.size());
    // The library answers some questions without a result by success: a count of 0, an empty record.
    values.emplace_back(!row.isComputed && row.status == QSTD_OK ? "NOT_COMPUTED" : StatusName(row.status));
    const bool isWrong = !row.isComputed || row.status < 0;
    std::string remark = row.remark.empty() && isWrong ? StatusMeaning(row.status) : row.remark;
    const bool isLine = options.format == OutputFormat::CSV ||
                        (options.format == OutputFormat::TEXT && current.layout == Layout::TABLE);
    values.emplace_back(isLine ? RemarkWithWarnings(std::move(remark), row.warnings) : std::move(remark));
    return values;
}

void Sink::Measure(const std::vector<Value>& values)
{
    Shown& section = shown[begun - 1];
    for (size_t i = 0; i < section.places.size(); ++i)
    {
        const Column& column = section.columns[section.places[i]];
        const std::string cell = Cell(column, values[section.places[i]]);
        if (!cell.empty() && !column.title.empty())
        {
            section.widths[i] = std::max({section.widths[i], DisplayWidth(cell), DisplayWidth(column.title)});
        }
    }
}

void Sink::WriteTitles()
{
    const Shown& section = shown[begun - 1];
    const bool isText = options.format == OutputFormat::TEXT;
    std::string line;
    for (size_t i = 0; i < section.places.size(); ++i)
    {
        const Column& column = section.columns[section.places[i]];
        if (!isText)
        {
            line += (line.empty() ? "" : ",") + column.name;
        }
        else if (section.widths[i] > 0)
        {
            line += INDENT + Padded(column.title, section.widths[i], IsLeftAligned(column));
        }
    }
    stream->Write(WithoutTrailingBlanks(line) + "\n");
}

void Sink::WriteText(const Row& row, const std::vector<Value>& values)
{
    if (current.layout == Layout::TABLE)
    {
        WriteTableRow(values);
        return;
    }
    Separate();
    WriteRecord(row, values);
}

void Sink::WriteTableRow(const std::vector<Value>& values)
{
    const Shown& section = shown[begun - 1];
    std::string line;
    for (size_t i = 0; i < section.places.size(); ++i)
    {
        if (section.widths[i] > 0)
        {
            const Column& column = section.columns[section.places[i]];
            line += INDENT + Padded(Cell(column, values[section.places[i]]), section.widths[i], IsLeftAligned(column));
        }
    }
    stream->Write(WithoutTrailingBlanks(line) + "\n");
}

void Sink::WriteRecord(const Row& row, const std::vector<Value>& values)
{
    const Shown& section = shown[begun - 1];
    size_t titleWidth = 0;
    size_t valueWidth = 0;
    for (size_t i = 0; i < section.places.size(); ++i)
    {
        const Column& column = section.columns[section.places[i]];
        const bool isShown = section.widths[i] > 0 && !IsRemark(section.places[i]);
        titleWidth = std::max(titleWidth, isShown ? DisplayWidth(column.title) : 0);
        valueWidth = std::max(valueWidth, isShown && !IsLeftAligned(column) ? section.widths[i] : 0);
    }
    for (size_t i = 0; i < section.places.size(); ++i)
    {
        const Column& column = section.columns[section.places[i]];
        const std::string cell = Cell(column, values[section.places[i]]);
        if (section.widths[i] == 0 || cell.empty())
        {
            continue;
        }
        if (IsRemark(section.places[i]))
        {
            WriteRemark(row, cell);
            continue;
        }
        std::string line = INDENT;
        line += Padded(column.title, titleWidth, true);
        line += INDENT;
        line += Padded(cell, valueWidth, IsLeftAligned(column));
        for (const std::string& part : {std::string(Unit(column)), column.note})
        {
            if (!part.empty())
            {
                line += INDENT;
                line += part;
            }
        }
        stream->Write(WithoutTrailingBlanks(line) + "\n");
    }
    for (const std::string& warning : row.warnings)
    {
        stream->Write(fmt::format("{}Warning: {}\n", INDENT, warning));
    }
}

void Sink::TellWarnings(const Row& row)
{
    if (options.format == OutputFormat::TEXT)
    {
        return;
    }
    for (const std::string& warning : row.warnings)
    {
        if (++warnings <= MOST_WARNINGS)
        {
            const auto* name = row.values.empty() ? nullptr : std::get_if<std::string>(&row.values.front());
            messages += fmt::format("qstd: {}: warning: {}{}\n", verb,
                                    name == nullptr || name->empty() ? "" : *name + ": ", warning);
        }
    }
}

bool Sink::IsRemark(size_t place) const
{
    return place == current.columns.size() + 1;
}

void Sink::WriteRemark(const Row& row, const std::string& remark)
{
    const std::string name = row.status == QSTD_OK ? "" : fmt::format(" ({})", StatusName(row.status));
    stream->Write(fmt::format("{}{}: {}{}\n", INDENT, row.isComputed ? "Note" : "NOT COMPUTED", remark, name));
}

void Sink::WriteCsv(const std::vector<Value>& values)
{
    if (!current.isMain)
    {
        return;
    }
    const Shown& section = shown[begun - 1];
    std::string line;
    for (size_t i = 0; i < section.places.size(); ++i)
    {
        const size_t place = section.places[i];
        line += (i == 0 ? "" : ",") + CsvText(Cell(section.columns[place], values[place]));
    }
    // A line of nothing would count as no row.
    stream->Write((line.empty() ? "\"\"" : line) + "\n");
}

void Sink::WriteJson(const Row& row, const std::vector<Value>& values)
{
    const Shown& section = shown[begun - 1];
    nlohmann::ordered_json object;
    object["format"] = "qstd/1";
    object["verb"] = verb;
    object["kind"] = current.kind;
    object["computed"] = row.isComputed;
    object["status"] = row.status;
    object["status_name"] = StatusName(row.status);
    for (const size_t place : section.places)
    {
        if (section.columns[place].name != "status")
        {
            AddJson(object, section.columns[place], values[place]);
        }
    }
    object["warnings"] = row.warnings;
    stream->Write(object.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) + "\n");
}

} // namespace qstd
