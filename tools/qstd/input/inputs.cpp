#include "input/inputs.h"

#include "input/row_reader.h"
#include "output/files.h"
#include "text/outcome.h"
#include "text/text.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace qstd {

namespace {

constexpr size_t MOST_PROPOSALS = 3;

/** Before a name that could be taken for a number. */
constexpr std::string_view NAME_SIGN = "id=";

bool IsNameGiven(const std::string& text)
{
    return LowerCase(std::string_view(text).substr(0, NAME_SIGN.size())) == NAME_SIGN;
}

/** The number of N=12.5 where `letter` is n, or of a bare one. */
std::optional<double> Coordinate(std::string_view part, char letter)
{
    const std::string plain = LowerCase(part);
    const size_t sign = plain.find('=');
    if (sign == std::string::npos)
    {
        return ParseReal(part);
    }
    return Trim(std::string_view(plain).substr(0, sign)) == std::string_view(&letter, 1)
               ? ParseReal(Trim(part.substr(sign + 1)))
               : std::nullopt;
}

/** Coordinates N,E or N,E,H; throws for a text with commas that is none. */
KnownPoint LiteralPoint(const std::string& text)
{
    constexpr std::string_view LETTERS = "neh";
    const std::vector<std::string_view> parts = SplitAtCommas(text);
    std::vector<double> values;
    for (size_t i = 0; i < std::min(parts.size(), LETTERS.size()); ++i)
    {
        const std::optional<double> value = Coordinate(parts[i], LETTERS[i]);
        if (value)
        {
            values.push_back(*value);
        }
    }
    if (values.size() != parts.size() || values.size() > 3)
    {
        throw WrongUse(fmt::format("point {}: not two or three numbers; write N,E or N,E,H such as 3587.52,89562.49",
                                   Quoted(text)));
    }
    if (std::any_of(values.begin(), values.end(), [](double value) { return std::fabs(value) > LONGEST_LENGTH; }))
    {
        throw WrongUse(fmt::format("point {}: beyond 100 000 km; no coordinate on the earth is larger", Quoted(text)));
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
    hasRows = false;
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
        hasRows = true;
        return true;
    }
    if (!hasRows && !messages.HasErrors())
    {
        messages.AddWarning(Head().file, 0, "no rows; each line below the column names is one");
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
    if (IsNameGiven(text))
    {
        const KnownPoint* const named =
            Points().Find(std::string(Trim(std::string_view(text).substr(NAME_SIGN.size()))));
        return named == nullptr ? std::nullopt : std::optional(*named);
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
    const Table table = ReadTable(path);
    std::vector<SetUp> setUps = ReadSetUps(table, bareAngles, problems);
    if (table.rows.empty() && !problems.HasErrors())
    {
        problems.AddError(table.file, 0, "no sights; each line below the column names is one");
    }
    if (problems.HasErrors())
    {
        throw Unreadable();
    }
    return fieldBooks.emplace(path, std::move(setUps)).first->second;
}

} // namespace qstd
