#include "verbs/sight_list.h"

#include "input/row_reader.h"
#include "text/outcome.h"
#include "verbs/typed_sight.h"

namespace qstd {

namespace {

enum SightColumn : size_t
{
    SIGHT_TARGET,
    SIGHT_HZ,
    SIGHT_V,
    SIGHT_SD,
    SIGHT_STATION
};

/** An angle that must be there. */
AngleUnit NeededAngle(RowReader& reader, std::string_view column, std::optional<size_t> place,
                      std::optional<AngleForm> bare)
{
    const std::optional<AngleUnit> angle = reader.Angle(column, place, bare);
    if (!angle)
    {
        reader.Reject(column, "", "empty; a sight needs circle and zenith readings here, such as 99-10-24");
    }
    return angle.value_or(0);
}

/** HZ,V or HZ,V,SD. Throws WrongUse. */
AngleSight ReadTypedSight(const std::string& text, const Inputs& inputs)
{
    const TypedSight typed = ParseSight(text, "sight", SightParts::ANGLES, inputs);
    return {text, typed.circle, *typed.zenith, typed.slopeDistance};
}

} // namespace

SightList::SightList(const std::string& tablePath, const std::vector<std::string>& typedSights,
                     const std::string& stationName, Inputs& inputsOfVerb)
    : typed(typedSights), station(stationName), inputs(inputsOfVerb)
{
    if (tablePath.empty())
    {
        return;
    }
    table = &inputs.Rows(tablePath);
    places = FindColumns(table->Head(), {{"target", true}, {"hz", true}, {"v", true}, {"sd"}, {"station"}},
                         inputs.Problems());
    if (!places[SIGHT_TARGET] || !places[SIGHT_HZ] || !places[SIGHT_V])
    {
        throw Unreadable();
    }
}

bool SightList::Next(AngleSight& sight)
{
    if (NextOfTable(sight))
    {
        return true;
    }
    if (taken == typed.size())
    {
        return false;
    }
    sight = ReadTypedSight(typed[taken], inputs);
    ++taken;
    return true;
}

bool SightList::IsOfOtherStations() const
{
    return hasOthers && !hasOwn;
}

bool SightList::NextOfTable(AngleSight& sight)
{
    while (table != nullptr)
    {
        if (!table->Next(row))
        {
            table = nullptr;
            return false;
        }
        const bool isOwn = !places[SIGHT_STATION] || CellAt(row, places[SIGHT_STATION]) == station;
        hasOwn = hasOwn || isOwn;
        hasOthers = hasOthers || !isOwn;
        if (isOwn && Read(sight))
        {
            return true;
        }
    }
    return false;
}

bool SightList::Read(AngleSight& sight)
{
    RowReader reader(table->Head(), row, inputs.Problems());
    sight.target = reader.Name("target", places[SIGHT_TARGET]);
    sight.circle = NeededAngle(reader, "hz", places[SIGHT_HZ], inputs.BareAngles());
    sight.zenith = NeededAngle(reader, "v", places[SIGHT_V], inputs.BareAngles());
    sight.slopeDistance = reader.Distance("sd", places[SIGHT_SD]);
    return reader.IsGood();
}

} // namespace qstd
