#include "input/field_book.h"

#include "input/row_reader.h"
#include "text/text.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace qstd {

namespace {

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

/** The digits of a name without leading zeros. */
std::string DigitsOf(std::string_view name)
{
    std::string digits;
    for (const char letter : name)
    {
        if (letter >= '0' && letter <= '9' && (letter != '0' || !digits.empty()))
        {
            digits += letter;
        }
    }
    return digits;
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
    const bool isNew = points.emplace(id, std::move(point)).second;
    if (isNew)
    {
        namesByDigits[DigitsOf(id)].push_back(std::move(id));
    }
    return isNew;
}

std::string PointList::NearestTo(const std::string& id) const
{
    // Among more names than these one would be near by chance.
    constexpr size_t MOST_COMPARED = 100;
    const auto alike = namesByDigits.find(DigitsOf(id));
    if (alike == namesByDigits.end() || alike->second.size() > MOST_COMPARED)
    {
        return "";
    }
    const std::vector<std::string> nearest = NearestNames(id, alike->second, 1);
    return nearest.empty() ? "" : nearest.front();
}

std::vector<std::string> PointList::Names() const
{
    std::vector<std::string> names;
    names.reserve(points.size());
    for (const auto& entry : points)
    {
        names.push_back(entry.first);
    }
    std::sort(names.begin(), names.end());
    return names;
}

const KnownPoint* PointList::Find(const std::string& id) const
{
    const auto found = points.find(id);
    return found == points.end() ? nullptr : &found->second;
}

PointRows::PointRows(const Table& table, Messages& messages)
    : head(table), places(FindColumns(table, {{"id", true}, {"n", true}, {"e", true}, {"h"}, {"code"}}, messages))
{
}

bool PointRows::HasColumns() const
{
    return places[POINT_ID] && places[POINT_N] && places[POINT_E];
}

std::optional<KnownPoint> PointRows::Read(const TableRow& row, Messages& messages) const
{
    RowReader reader(head, row, messages);
    KnownPoint known = ReadPoint(reader, row, places);
    return reader.IsGood() ? std::optional<KnownPoint>(std::move(known)) : std::nullopt;
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
