#include "replay/records.h"

#include <algorithm>

namespace qstd {

namespace {

template <typename Value>
bool IsUntouched(const Value& value)
{
    unsigned char bytes[sizeof value];
    std::memcpy(bytes, &value, sizeof value);
    return std::all_of(std::begin(bytes), std::end(bytes), [](unsigned char byte) { return byte == UNTOUCHED_BYTE; });
}

} // namespace

void ReadValue(const Source& source, PointRecord& point)
{
    ObjectReader reader(source);
    point = PointRecord();
    reader.Read("northing", point.northing);
    reader.Read("easting", point.easting);
    const bool hasHeight = reader.Read("height", point.height, Presence::OPTIONAL);
    if (!reader.Read("flags", point.flags, Presence::OPTIONAL))
    {
        point.flags = hasHeight ? POINT_HAS_PLAN | POINT_HAS_HEIGHT : POINT_HAS_PLAN;
    }
    reader.Finish();
}

void ReadValue(const Source& source, LineDef& line)
{
    ObjectReader reader(source);
    line = LineDef();
    reader.Read("first", line.first);
    const bool hasSecond = reader.Read("second", line.second, Presence::OPTIONAL);
    const bool hasAzimuth = reader.Read("azimuth", line.azimuth, Presence::OPTIONAL);
    if (reader.Read("mode", line.mode, Presence::OPTIONAL))
    {
        const bool byPoints = line.mode == LINE_BY_POINTS;
        if (byPoints ? !hasSecond : !hasAzimuth)
        {
            reader.Miss(byPoints ? "second" : "azimuth");
        }
    }
    else if (hasSecond != hasAzimuth)
    {
        line.mode = hasSecond ? LINE_BY_POINTS : LINE_BY_AZIMUTH;
    }
    else if (hasSecond)
    {
        reader.Miss("mode");
    }
    reader.Finish();
    if (source.value.is_object() && line.mode == 0 && !hasSecond && !hasAzimuth)
    {
        source.Refuse("missing \"second\" or \"azimuth\"");
    }
}

Json Shown(const double& value)
{
    return IsUntouched(value) ? Json(UNTOUCHED) : JsonOfReal(value);
}

Json Shown(const int32_t& value)
{
    return IsUntouched(value) ? Json(UNTOUCHED) : Json(value);
}

Json Shown(const uint16_t& value)
{
    return IsUntouched(value) ? Json(UNTOUCHED) : Json(value);
}

Json Collapsed(Json container)
{
    const bool isUntouched = !container.empty() && std::all_of(container.begin(), container.end(),
                                                               [](const Json& each) { return each == UNTOUCHED; });
    return isUntouched ? Json(UNTOUCHED) : std::move(container);
}

} // namespace qstd
