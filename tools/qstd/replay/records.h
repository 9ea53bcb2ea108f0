/**
 * @file records.h
 * The records of the library's interface, member by member under the names of its headers, to and from JSON.
 */
#ifndef QSTD_RECORDS_H
#define QSTD_RECORDS_H

#include "replay/arguments.h"
#include "replay/json_line.h"

#include <qstdlib.h>

#include <cstring>
#include <tuple>
#include <vector>

namespace qstd {

template <typename Record, typename Value>
struct Member
{
    const char* name;
    Value Record::*value;
    Presence presence; /**< what the library does not read may be left out, and is zero then */
};

template <typename Record, typename Value>
constexpr Member<Record, Value> Required(const char* name, Value Record::*value)
{
    return {name, value, Presence::REQUIRED};
}

template <typename Record, typename Value>
constexpr Member<Record, Value> Optional(const char* name, Value Record::*value)
{
    return {name, value, Presence::OPTIONAL};
}

/** The members of a record, in the order of the header. */
template <typename Record>
struct MembersOf;

template <>
struct MembersOf<PointRecord>
{
    static constexpr auto LIST =
        std::make_tuple(Required("northing", &PointRecord::northing), Required("easting", &PointRecord::easting),
                        Required("height", &PointRecord::height), Required("flags", &PointRecord::flags));
};

template <>
struct MembersOf<AngDistRecord>
{
    static constexpr auto LIST =
        std::make_tuple(Required("azimuth", &AngDistRecord::azimuth), Optional("zenith", &AngDistRecord::zenith),
                        Optional("slopeDistance", &AngDistRecord::slopeDistance),
                        Required("horizontalDistance", &AngDistRecord::horizontalDistance),
                        Required("heightDifference", &AngDistRecord::heightDifference));
};

template <>
struct MembersOf<SlopeResult>
{
    static constexpr auto LIST =
        std::make_tuple(Required("grade", &SlopeResult::grade), Required("ratio", &SlopeResult::ratio));
};

template <>
struct MembersOf<LineDef>
{
    static constexpr auto LIST =
        std::make_tuple(Required("first", &LineDef::first), Required("second", &LineDef::second),
                        Required("azimuth", &LineDef::azimuth), Required("mode", &LineDef::mode));
};

template <>
struct MembersOf<ObservationRecord>
{
    static constexpr auto LIST = std::make_tuple(
        Required("horizontalAngle", &ObservationRecord::horizontalAngle),
        Required("zenithAngle", &ObservationRecord::zenithAngle), Optional("distance", &ObservationRecord::distance),
        Required("secondDistance", &ObservationRecord::secondDistance),
        Optional("thirdDistance", &ObservationRecord::thirdDistance),
        Optional("northing", &ObservationRecord::northing), Optional("easting", &ObservationRecord::easting),
        Optional("height", &ObservationRecord::height));
};

template <>
struct MembersOf<RemoteDistanceResult>
{
    static constexpr auto LIST =
        std::make_tuple(Required("slopeDistance", &RemoteDistanceResult::slopeDistance),
                        Required("horizontalDistance", &RemoteDistanceResult::horizontalDistance),
                        Required("heightDifference", &RemoteDistanceResult::heightDifference),
                        Required("azimuth", &RemoteDistanceResult::azimuth));
};

template <>
struct MembersOf<SightRecord>
{
    static constexpr auto LIST = std::make_tuple(Required("horizontalAngle", &SightRecord::horizontalAngle),
                                                 Required("zenithAngle", &SightRecord::zenithAngle),
                                                 Required("distance", &SightRecord::distance));
};

template <>
struct MembersOf<SlopeCheckResult>
{
    static constexpr auto LIST = std::make_tuple(Required("offsetBeyondSlope", &SlopeCheckResult::offsetBeyondSlope),
                                                 Required("heightAboveSlope", &SlopeCheckResult::heightAboveSlope),
                                                 Required("distanceFromBase", &SlopeCheckResult::distanceFromBase));
};

template <>
struct MembersOf<ReferenceLineResult>
{
    static constexpr auto LIST = std::make_tuple(Required("foot", &ReferenceLineResult::foot),
                                                 Required("station", &ReferenceLineResult::station),
                                                 Required("offset", &ReferenceLineResult::offset),
                                                 Required("heightDifference", &ReferenceLineResult::heightDifference));
};

template <>
struct MembersOf<ArcParams>
{
    static constexpr auto LIST =
        std::make_tuple(Required("startAzimuth", &ArcParams::startAzimuth),
                        Required("endAzimuth", &ArcParams::endAzimuth), Required("radius", &ArcParams::radius),
                        Required("length", &ArcParams::length), Required("centralAngle", &ArcParams::centralAngle));
};

template <>
struct MembersOf<ArcCalcResult>
{
    static constexpr auto LIST = std::make_tuple(
        Required("point", &ArcCalcResult::point), Required("along", &ArcCalcResult::along),
        Required("offset", &ArcCalcResult::offset), Required("heightDifference", &ArcCalcResult::heightDifference));
};

template <>
struct MembersOf<TwoPointTarget>
{
    static constexpr auto LIST = std::make_tuple(
        Required("known", &TwoPointTarget::known), Required("localNorthing", &TwoPointTarget::localNorthing),
        Required("localEasting", &TwoPointTarget::localEasting), Optional("unused", &TwoPointTarget::unused),
        Required("horizontalAngle", &TwoPointTarget::horizontalAngle),
        Required("zenithAngle", &TwoPointTarget::zenithAngle),
        Required("horizontalDistance", &TwoPointTarget::horizontalDistance),
        Required("verticalDifference", &TwoPointTarget::verticalDifference),
        Required("reflectorHeight", &TwoPointTarget::reflectorHeight));
};

template <>
struct MembersOf<TwoPointStation>
{
    static constexpr auto LIST = std::make_tuple(
        Required("station", &TwoPointStation::station), Required("orientation", &TwoPointStation::orientation),
        Required("baselineCheck", &TwoPointStation::baselineCheck),
        Required("firstDistanceResidual", &TwoPointStation::firstDistanceResidual),
        Required("secondDistanceResidual", &TwoPointStation::secondDistanceResidual),
        Required("heightDifference", &TwoPointStation::heightDifference));
};

template <>
struct MembersOf<ThreePointTarget>
{
    static constexpr auto LIST = std::make_tuple(Required("known", &ThreePointTarget::known),
                                                 Required("horizontalAngle", &ThreePointTarget::horizontalAngle),
                                                 Required("zenithAngle", &ThreePointTarget::zenithAngle),
                                                 Required("reflectorHeight", &ThreePointTarget::reflectorHeight));
};

template <>
struct MembersOf<ResectObservation>
{
    static constexpr auto LIST = std::make_tuple(Required("target", &ResectObservation::target),
                                                 Required("horizontalAngle", &ResectObservation::horizontalAngle),
                                                 Required("zenithAngle", &ResectObservation::zenithAngle),
                                                 Required("slopeDistance", &ResectObservation::slopeDistance),
                                                 Required("horizontalDistance", &ResectObservation::horizontalDistance),
                                                 Required("verticalDifference", &ResectObservation::verticalDifference),
                                                 Required("reflectorHeight", &ResectObservation::reflectorHeight));
};

template <>
struct MembersOf<ResectStation>
{
    static constexpr auto LIST = std::make_tuple(Required("position", &ResectStation::position),
                                                 Required("orientation", &ResectStation::orientation),
                                                 Required("northingPrecision", &ResectStation::northingPrecision),
                                                 Required("eastingPrecision", &ResectStation::eastingPrecision),
                                                 Required("heightSpread", &ResectStation::heightSpread));
};

template <>
struct MembersOf<ResectResidual>
{
    static constexpr auto LIST = std::make_tuple(Required("angleResidual", &ResectResidual::angleResidual),
                                                 Required("distanceResidual", &ResectResidual::distanceResidual),
                                                 Required("heightResidual", &ResectResidual::heightResidual));
};

/** A point; without height it is a plan point, and the flags follow from that where they are not given. */
void ReadValue(const Source& source, PointRecord& point);

/** A line; the mode follows from what is given where it is not given itself. */
void ReadValue(const Source& source, LineDef& line);

template <typename Record>
void ReadValue(const Source& source, Record& record)
{
    ObjectReader reader(source);
    record = Record();
    std::apply([&](const auto&... member) { (reader.Read(member.name, record.*member.value, member.presence), ...); },
               MembersOf<Record>::LIST);
    reader.Finish();
}

/** Every byte of what a call is to write, before the call: where it is found again, the call has not written. */
constexpr unsigned char UNTOUCHED_BYTE = 0xA5;

/** How a result says so. */
constexpr const char* UNTOUCHED = "untouched";

template <typename Value>
void MarkUntouched(Value& value)
{
    static_assert(std::is_trivially_copyable_v<Value>, "only plain data can be filled with bytes");
    std::memset(static_cast<void*>(&value), UNTOUCHED_BYTE, sizeof value);
}

/** What a call has left in a place marked before: a number or "untouched". */
Json Shown(const double& value);
Json Shown(const int32_t& value);
Json Shown(const uint16_t& value);

/** An object or an array, or "untouched" where all that it holds is. */
Json Collapsed(Json container);

template <typename Record>
Json Shown(const Record& record)
{
    Json::object_t members;
    members.reserve(std::tuple_size_v<std::remove_cv_t<decltype(MembersOf<Record>::LIST)>>);
    // The names differ: no need to look for each among the others.
    std::apply(
        [&](const auto&... member) {
            (members.Container::emplace_back(member.name, Shown(record.*member.value)), ...);
        },
        MembersOf<Record>::LIST);
    return Collapsed(std::move(members));
}

template <typename Element, size_t COUNT>
Json Shown(const Element (&elements)[COUNT])
{
    Json array = Json::array();
    for (const Element& element : elements)
    {
        array.push_back(Shown(element));
    }
    return Collapsed(std::move(array));
}

template <typename Element>
Json Shown(const std::vector<Element>& elements)
{
    Json array = Json::array();
    for (const Element& element : elements)
    {
        array.push_back(Shown(element));
    }
    return Collapsed(std::move(array));
}

} // namespace qstd

#endif
