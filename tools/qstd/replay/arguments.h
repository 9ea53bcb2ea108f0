/**
 * @file arguments.h
 * From JSON to the arguments of a call: every value checked, the first problem told with its place.
 */
#ifndef QSTD_ARGUMENTS_H
#define QSTD_ARGUMENTS_H

#include "replay/json_line.h"

#include <fmt/format.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace qstd {

enum class Presence
{
    REQUIRED,
    OPTIONAL
};

/** Where a value stands in its call, such as observations[2].target.northing. Spelled out only for a message. */
class Place
{
public:
    Place() = default;
    Place(const Place& outside, const char* member) : outer(&outside), name(member)
    {
    }
    Place(const Place& outside, size_t element) : outer(&outside), index(element)
    {
    }

    [[nodiscard]] std::string Text() const;

private:
    const Place* outer = nullptr;
    const char* name = nullptr;
    size_t index = 0;
};

/** A value that is to be read, its place, and what has been found wrong so far. */
class Source
{
public:
    Source(const Json& json, const Place& where, std::string& firstProblem)
        : value(json), place(where), problem(firstProblem)
    {
    }

    /** Keeps the first problem of a call: later ones often follow from it. */
    void Refuse(std::string_view text) const;

    const Json& value;
    const Place& place;
    std::string& problem;
};

void ReadValue(const Source& source, double& value);
void ReadValue(const Source& source, int32_t& value);
void ReadValue(const Source& source, uint16_t& value);

/** Members of an object by name. Afterwards tells names that nobody asked for, and those that are missing. */
class ObjectReader
{
public:
    explicit ObjectReader(const Source& object);

    /** Reads a member. @return whether it is there */
    template <typename Value>
    bool Read(const char* name, Value& value, Presence presence = Presence::REQUIRED)
    {
        const Json* member = Find(name, presence);
        if (member == nullptr)
        {
            return false;
        }
        ReadFound(name, *member, value);
        return true;
    }

    /** The member as it stands, or null. */
    const Json* Find(const char* name, Presence presence);

    /** Reads a member that Find has found. */
    template <typename Value>
    void ReadFound(const char* name, const Json& member, Value& value) const
    {
        ReadValue(Source(member, Place(source.place, name), source.problem), value);
    }

    /** Reads a member that is an array. @return whether it is there */
    template <typename Element>
    bool ReadArray(const char* name, size_t most, std::vector<Element>& elements)
    {
        const Json* member = Find(name, Presence::REQUIRED);
        if (member == nullptr)
        {
            return false;
        }
        ReadElements(Source(*member, Place(source.place, name), source.problem), most, elements);
        return true;
    }

    /** Tells that a member is missing that would not be in another case. */
    void Miss(const char* name);

    /** Tells what is wrong with a member that could be read. */
    void Refuse(const char* name, std::string_view text) const;

    /** To be called when all members have been asked for. */
    void Finish();

private:
    const Source& source;
    bool isObject;
    size_t found = 0;
    std::vector<const char*> known;
    std::vector<const char*> missing;
};

/** The elements of an array, at most `most` of them. */
template <typename Element>
void ReadElements(const Source& source, size_t most, std::vector<Element>& elements)
{
    if (!source.value.is_array())
    {
        source.Refuse("expected an array, got " + ShortText(source.value));
        return;
    }
    if (source.value.size() > most)
    {
        source.Refuse(fmt::format("{} elements, at most {} can be handed in", source.value.size(), most));
        return;
    }
    elements.resize(source.value.size());
    for (size_t i = 0; i < elements.size(); ++i)
    {
        ReadValue(Source(source.value[i], Place(source.place, i), source.problem), elements[i]);
    }
}

/** A member of a record that is an array itself: all of its elements. */
template <typename Element, size_t COUNT>
void ReadValue(const Source& source, Element (&values)[COUNT])
{
    if (!source.value.is_array() || source.value.size() != COUNT)
    {
        source.Refuse(fmt::format("expected an array of {}, got {}", COUNT, ShortText(source.value)));
        return;
    }
    for (size_t i = 0; i < COUNT; ++i)
    {
        ReadValue(Source(source.value[i], Place(source.place, i), source.problem), values[i]);
    }
}

} // namespace qstd

#endif
