#include "station/station_method.h"

#include "text/text.h"

#include <fmt/format.h>

#include <map>
#include <utility>

namespace qstd {

std::string_view MethodName(StationMethod method)
{
    switch (method)
    {
    case StationMethod::TWO_POINT:
        return "two-point";
    case StationMethod::THREE_POINT:
        return "three-point";
    case StationMethod::KNOWN_LINE:
        return "known-line";
    case StationMethod::AUTO:
        return "auto";
    case StationMethod::MULTI:
        break;
    }
    return "multi";
}

std::string_view MethodTitle(StationMethod method)
{
    switch (method)
    {
    case StationMethod::TWO_POINT:
        return "two-point resection";
    case StationMethod::THREE_POINT:
        return "three-point resection";
    case StationMethod::KNOWN_LINE:
        return "known line";
    case StationMethod::AUTO:
    case StationMethod::MULTI:
        break;
    }
    return "multi-point resection";
}

MethodChoice ChooseMethod(const std::vector<PreparedSight>& sights, bool hasLineAzimuth)
{
    std::map<std::pair<double, double>, bool> places; // measured or not
    size_t directions = 0;
    size_t distances = 0;
    for (const PreparedSight& sight : sights)
    {
        if (sight.isUsed)
        {
            bool& isMeasured = places[{sight.target->point.northing, sight.target->point.easting}];
            isMeasured = isMeasured || sight.horizontalDistance;
            ++directions;
            distances += sight.horizontalDistance ? 1U : 0U;
        }
    }
    const std::string holds =
        fmt::format("{} and {} to {}", Counted(directions, "direction", "directions"),
                    Counted(distances, "distance", "distances"), Counted(places.size(), "target", "targets"));
    if (places.size() == 2 && directions == 2 && distances == 1)
    {
        return {StationMethod::TWO_POINT, holds};
    }
    if (places.size() == 3 && directions == 3 && distances == 0)
    {
        return {StationMethod::THREE_POINT, holds};
    }
    const bool canDetermine = places.size() >= 3 || (places.size() == 2 && distances > 0);
    if (!canDetermine && hasLineAzimuth)
    {
        return {StationMethod::KNOWN_LINE, holds + " of known coordinates, and the azimuth of a line"};
    }
    return {StationMethod::MULTI, ""};
}

} // namespace qstd
