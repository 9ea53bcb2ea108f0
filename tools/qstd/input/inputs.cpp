#include "input/inputs.h"

#include "input/row_reader.h"
#include "output/files.h"
#include "text/outcome.h"
#include "text/text.h"

#include <fmt/format.h>

#include <cmath>

namespace qstd {

namespace {

constexpr size_t MOST_PROPOSALS = 3;

std::vector<std::string_view> SplitAtCommas(std::string_view text)
{
    std::vector<std::string_view> parts;
    size_t begin = 0;
    for (size_t comma = text.find(','); comma != std::string_view::npos; comma = text.find(',', begin))
    {
        parts.push_back(text.substr(begin, comma - begin));
        begin = comma + 1;
    }
    parts.push_back(text.substr(begin));
    return parts;
}

/** Coordinates N,E or N,E,H; throws for a text with commas that is none. */
KnownPoint LiteralPoint(const std::string& text)
{
    const std::vector<std::string_view> parts = SplitAtCommas(text);
    std::vector<double> values;
    for (const std::string_view part : parts)
    {
        const std::optional<double> value = ParseReal(Trim(part));
        if (value && std::fabs(*value) <= LONGEST_LENGTH)
        {
            values.push_back(*value);
        }
    }
    if (values.size() != parts.size() || values.size() > 3)
    {
        throw WrongUse(fmt::format("point {}: not two or three numbers; write N,E or N,E,H such as 3587.52,89562.49",
                                   Quoted(text)));
    }
    KnownPoint point;
    point.id = text;
    const bool hasHeight = values.size() == 3;
    const int flags = hasHeight ? POINT_HAS_PLAN + POINT_HAS_HEIGHT : int{POINT_HAS_PLAN};
    point.point = {values[0], values[1], hasHeight ? values[2] : 0.0, static_cast<uint16_t>(flags)};
    return point;
}

} // namespace

InputTable::InputTable(const std::string& path, Messages& messagesOfRun) : messages(messagesOfRun)
{
    const std::string problem = source.Open(path);
    if (!problem.empty())
    {
        messages.AddError(DisplayName(path), 0, problem);
        throw Unreadable();
    }
    stream.emplace(source, DisplayName(path));
    Rewind();
}

const Table& InputTable::Head() const
{
    return stream->Head();
}

void InputTable::ShowProgress(bool isShown)
{
    showsProgress = isShown;
}

void InputTable::Rewind()
{
    progress.reset();
    if (showsProgress)
    {
        progress.emplace();
    }
    if (!stream->Rewind(messages))
    {
        throw Unreadable();
    }
}

bool InputTable::Next(TableRow& row)
{
    if (progress)
    {
        progress->Show(source.Position(), source.Size());
    }
    if (stream->Next(row, messages))
    {
        return true;
    }
    progress.reset();
    return false;
}

Inputs::Inputs(std::string pointsTable, std::optional<AngleForm> bare, Messages& messages)
    : pointsPath(std::move(pointsTable)), bareAngles(bare), problems(messages)
{
}

Messages& Inputs::Problems() const
{
    return problems;
}

std::optional<AngleForm> Inputs::BareAngles() const
{
    return bareAngles;
}

void Inputs::Claim(const std::string& path)
{
    if (path == "-" && isStandardInputTaken)
    {
        throw WrongUse("standard input can be read only once; give a file for one of the two tables");
    }
    isStandardInputTaken = isStandardInputTaken || path == "-";
}

Table Inputs::ReadTable(const std::string& path)
{
    Claim(path);
    const FileContent file = ReadWhole(path);
    if (!file.problem.empty())
    {
        problems.AddError(DisplayName(path), 0, file.problem);
        throw Unreadable();
    }
    std::optional<Table> table = ParseTable(DisplayName(path), file.content, problems);
    if (!table)
    {
        throw Unreadable();
    }
    return std::move(*table);
}

const PointList& Inputs::Points()
{
    if (!pointList)
    {
        pointList = pointsPath.empty() ? PointList() : ReadPoints(ReadTable(pointsPath), problems);
        if (problems.HasErrors())
        {
            throw Unreadable();
        }
    }
    return *pointList;
}

std::optional<KnownPoint> Inputs::FindPoint(const std::string& text)
{
    const KnownPoint* const known = Points().Find(text);
    if (known != nullptr)
    {
        return *known;
    }
    if (text.find(',') != std::string::npos)
    {
        return LiteralPoint(text);
    }
    return std::nullopt;
}

KnownPoint Inputs::Point(const std::string& text)
{
    std::optional<KnownPoint> point = FindPoint(text);
    if (point)
    {
        return std::move(*point);
    }
    if (pointsPath.empty())
    {
        throw WrongUse(
            fmt::format("point {}: no table of points; give --points FILE, or coordinates N,E or N,E,H", Quoted(text)));
    }
    std::string proposals;
    for (const std::string& near : NearestNames(text, Points().Names(), MOST_PROPOSALS))
    {
        proposals += (proposals.empty() ? "; did you mean " : ", ") + near;
    }
    throw WrongUse(
        fmt::format("point {}: not in {}{}", Quoted(text), DisplayName(pointsPath),
                    proposals.empty() ? "; name one that is, or give coordinates N,E or N,E,H" : proposals + "?"));
}

AngleUnit Inputs::Angle(const std::string& text, const std::string& what) const
{
    const ParsedAngle angle = ParseAngle(text, bareAngles);
    if (!angle.problem.empty())
    {
        throw WrongUse(fmt::format("{} {}: {}", what, Quoted(text), angle.problem));
    }
    return angle.units;
}

InputTable& Inputs::Rows(const std::string& path)
{
    const auto found = tables.find(path);
    if (found != tables.end())
    {
        found->second->ShowProgress(showsProgress);
        found->second->Rewind();
        return *found->second;
    }
    Claim(path);
    return *tables.emplace(path, std::make_unique<InputTable>(path, problems)).first->second;
}

void Inputs::ShowProgress(bool isShown)
{
    showsProgress = isShown;
}

const std::vector<SetUp>& Inputs::SetUps(const std::string& path)
{
    const auto found = fieldBooks.find(path);
    if (found != fieldBooks.end())
    {
        return found->second;
    }
    std::vector<SetUp> setUps = ReadSetUps(ReadTable(path), bareAngles, problems);
    if (problems.HasErrors())
    {
        throw Unreadable();
    }
    return fieldBooks.emplace(path, std::move(setUps)).first->second;
}

} // namespace qstd
