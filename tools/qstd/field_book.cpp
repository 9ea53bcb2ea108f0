#include "field_book.h"

#include "text.h"

#include <fmt/format.h>

#include <cmath>
#include <utility>

namespace qstd {

namespace {

/** No coordinate, height or distance on the earth is longer; beyond it differences lose their millimetres. */
constexpr double LONGEST_LENGTH = 1e8;

/** Reads the cells of one line, telling the messages what is wrong with them. */
class RowReader
{
public:
    RowReader(const Table& tableOfRow, const TableRow& rowToRead, Messages& messagesToAdd)
        : table(tableOfRow), row(rowToRead), messages(messagesToAdd)
    {
    }

    void Reject(std::string_view column, std::string_view text, std::string_view problem)
    {
        messages.AddError(table.file, row.line, fmt::format("{} {}: {}", column, Quoted(text), problem));
        isGood = false;
    }

    std::string Name(std::string_view column, std::optional<size_t> place)
    {
        const std::string_view text = CellAt(row, place);
        if (text.empty())
        {
            Reject(column, text, "empty; every line needs a name here");
        }
        return std::string(text);
    }

    std::optional<double> Length(std::string_view column, std::optional<size_t> place)
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
                                                            : "not a number; write metres, such as 123.456");
        }
        else if (std::fabs(*value) > LONGEST_LENGTH)
        {
            Reject(column, text, "beyond 100 000 km; write metres");
            return std::nullopt;
        }
        return value;
    }

    std::optional<double> Distance(std::string_view column, std::optional<size_t> place)
    {
        const std::optional<double> value = Length(column, place);
        if (value && *value <= 0.0)
        {
            Reject(column, CellAt(row, place), "not above 0; leave it empty where no distance was measured");
        }
        return value;
    }

    std::optional<AngleUnit> Angle(std::string_view column, std::optional<size_t> place, std::optional<AngleForm> bare)
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

    bool Use(std::optional<size_t> place)
    {
        const std::string_view text = CellAt(row, place);
        if (!text.empty() && text != "0" && text != "1")
        {
            Reject("use", text, "neither 0 nor 1; write 0 to keep the sight out, 1 or nothing to use it");
        }
        return text != "0";
    }

    [[nodiscard]] bool IsGood() const
    {
        return isGood;
    }

private:
    const Table& table;
    const TableRow& row;
    Messages& messages;
    bool isGood = true;
};

enum PointColumn : size_t
{
    POINT_ID,
    POINT_N,
    POINT_E,
    POINT_H,
    POINT_CODE
};

enum SightColumn : size_t
{
    SIGHT_STATION,
    SIGHT_TARGET,
    SIGHT_HZ,
    SIGHT_V,
    SIGHT_SD,
    SIGHT_HD,
    SIGHT_TH,
    SIGHT_IH,
    SIGHT_USE
};

KnownPoint ReadPoint(RowReader& reader, const TableRow& row, const ColumnPlaces& places)
{
    KnownPoint known;
    known.line = row.line;
    known.id = reader.Name("id", places[POINT_ID]);
    const std::optional<double> northing = reader.Length("n", places[POINT_N]);
    const std::optional<double> easting = reader.Length("e", places[POINT_E]);
    const std::optional<double> height = reader.Length("h", places[POINT_H]);
    if (northing.has_value() != easting.has_value() && reader.IsGood())
    {
        reader.Reject(northing ? "e" : "n", "", "empty; give both coordinates, or neither for a point of height only");
    }
    known.point.northing = northing.value_or(0.0);
    known.point.easting = easting.value_or(0.0);
    known.point.height = height.value_or(0.0);
    const int plan = northing && easting ? int{POINT_HAS_PLAN} : 0;
    known.point.flags = static_cast<uint16_t>(plan + (height ? int{POINT_HAS_HEIGHT} : 0));
    known.code = CellAt(row, places[POINT_CODE]);
    return known;
}

Sight ReadSight(RowReader& reader, const TableRow& row, const ColumnPlaces& places, std::optional<AngleForm> bareAngles)
{
    Sight sight;
    sight.line = row.line;
    sight.target = reader.Name("target", places[SIGHT_TARGET]);
    const std::optional<AngleUnit> circle = reader.Angle("hz", places[SIGHT_HZ], bareAngles);
    if (!circle)
    {
        reader.Reject("hz", "", "empty; a sight needs a circle reading, such as 99-10-24");
    }
    sight.circle = circle.value_or(0);
    sight.zenith = reader.Angle("v", places[SIGHT_V], bareAngles);
    sight.slopeDistance = reader.Distance("sd", places[SIGHT_SD]);
    sight.horizontalDistance = reader.Distance("hd", places[SIGHT_HD]);
    if (sight.slopeDistance && sight.horizontalDistance)
    {
        reader.Reject("hd", CellAt(row, places[SIGHT_HD]), "sd is given too; keep the one that was measured");
    }
    sight.targetHeight = reader.Length("th", places[SIGHT_TH]).value_or(0.0);
    sight.isWanted = reader.Use(places[SIGHT_USE]);
    return sight;
}

/** One instrument height holds for a whole set-up; lines may leave it out. */
void JoinInstrumentHeight(RowReader& reader, std::string_view text, std::optional<double> height, SetUp& setUp)
{
    if (height && setUp.instrumentHeight && *height != *setUp.instrumentHeight)
    {
        reader.Reject("ih", text,
                      fmt::format("this set-up began with {}; write the same, or another station between",
                                  *setUp.instrumentHeight));
        return;
    }
    if (height)
    {
        setUp.instrumentHeight = height;
    }
}

void NumberSetUps(std::vector<SetUp>& setUps)
{
    std::unordered_map<std::string, size_t> counts;
    for (SetUp& setUp : setUps)
    {
        setUp.number = ++counts[setUp.station];
    }
    for (SetUp& setUp : setUps)
    {
        setUp.siblings = counts[setUp.station];
    }
}

} // namespace

bool PointList::Add(KnownPoint point)
{
    std::string id = point.id;
    return points.emplace(std::move(id), std::move(point)).second;
}

const KnownPoint* PointList::Find(const std::string& id) const
{
    const auto found = points.find(id);
    return found == points.end() ? nullptr : &found->second;
}

PointList ReadPoints(const Table& table, Messages& messages)
{
    PointList points;
    const ColumnPlaces places = FindColumns(table, {{"id", true}, {"n", true}, {"e", true}, {"h"}, {"code"}}, messages);
    if (!places[POINT_ID] || !places[POINT_N] || !places[POINT_E])
    {
        return points;
    }
    for (const TableRow& row : table.rows)
    {
        RowReader reader(table, row, messages);
        KnownPoint known = ReadPoint(reader, row, places);
        const KnownPoint* const earlier = points.Find(known.id);
        if (earlier != nullptr)
        {
            reader.Reject("id", known.id, fmt::format("given in line {} already; keep one", earlier->line));
        }
        if (reader.IsGood())
        {
            points.Add(std::move(known));
        }
    }
    return points;
}

std::vector<SetUp> ReadSetUps(const Table& table, std::optional<AngleForm> bareAngles, Messages& messages)
{
    std::vector<SetUp> setUps;
    const ColumnPlaces places = FindColumns(
        table, {{"station", true}, {"target", true}, {"hz", true}, {"v"}, {"sd"}, {"hd"}, {"th"}, {"ih"}, {"use"}},
        messages);
    if (!places[SIGHT_STATION] || !places[SIGHT_TARGET] || !places[SIGHT_HZ])
    {
        return setUps;
    }
    for (const TableRow& row : table.rows)
    {
        RowReader reader(table, row, messages);
        std::string station = reader.Name("station", places[SIGHT_STATION]);
        Sight sight = ReadSight(reader, row, places, bareAngles);
        if (setUps.empty() || setUps.back().station != station)
        {
            setUps.emplace_back();
            setUps.back().station = std::move(station);
        }
        JoinInstrumentHeight(reader, CellAt(row, places[SIGHT_IH]), reader.Length("ih", places[SIGHT_IH]),
                             setUps.back());
        setUps.back().sights.push_back(std::move(sight));
    }
    NumberSetUps(setUps);
    return setUps;
}

} // namespace qstd
