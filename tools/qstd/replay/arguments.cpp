#include "replay/arguments.h"

#include "text/text.h"

#include <algorithm>
#include <limits>
#include <optional>

namespace qstd {

namespace {

/** An integer that is written as one and lies in the range of its type; nothing else, never wrapped. */
template <typename Integer>
void ReadInteger(const Source& source, Integer& value)
{
    constexpr int64_t LOWEST = std::numeric_limits<Integer>::min();
    constexpr int64_t HIGHEST = std::numeric_limits<Integer>::max();
    const Json& json = source.value;
    std::optional<int64_t> integer;
    if (json.is_number_unsigned())
    {
        const auto positive = json.get<uint64_t>();
        integer = positive <= static_cast<uint64_t>(HIGHEST) ? std::optional(static_cast<int64_t>(positive)) : integer;
    }
    else if (json.is_number_integer())
    {
        integer = json.get<int64_t>();
    }
    if (!integer || *integer < LOWEST || *integer > HIGHEST)
    {
        source.Refuse(fmt::format("expected an integer from {} to {}, got {}", LOWEST, HIGHEST, ShortText(json)));
        return;
    }
    value = static_cast<Integer>(*integer);
}

std::string QuotedList(const std::vector<const char*>& names)
{
    std::string list;
    for (const char* name : names)
    {
        list += fmt::format("{}\"{}\"", list.empty() ? "" : ", ", name);
    }
    return list;
}

} // namespace

std::string Place::Text() const
{
    if (outer == nullptr)
    {
        return "";
    }
    const std::string before = outer->Text();
    if (name == nullptr)
    {
        return fmt::format("{}[{}]", before, index);
    }
    return before.empty() ? name : fmt::format("{}.{}", before, name);
}

void Source::Refuse(std::string_view text) const
{
    if (problem.empty())
    {
        const std::string where = place.Text();
        problem = where.empty() ? std::string(text) : fmt::format("{}: {}", where, text);
    }
}

void ReadValue(const Source& source, double& value)
{
    const std::optional<double> real = RealOf(source.value);
    if (!real)
    {
        source.Refuse("expected a number, \"nan\", \"inf\" or \"-inf\", got " + ShortText(source.value));
        return;
    }
    value = *real;
}

void ReadValue(const Source& source, int32_t& value)
{
    ReadInteger(source, value);
}

void ReadValue(const Source& source, uint16_t& value)
{
    ReadInteger(source, value);
}

ObjectReader::ObjectReader(const Source& object) : source(object), isObject(object.value.is_object())
{
    if (!isObject)
    {
        source.Refuse("expected an object, got " + ShortText(source.value));
    }
}

const Json* ObjectReader::Find(const char* name, Presence presence)
{
    known.push_back(name);
    if (!isObject)
    {
        return nullptr;
    }
    const auto member = source.value.find(name);
    if (member == source.value.end())
    {
        if (presence == Presence::REQUIRED)
        {
            missing.push_back(name);
        }
        return nullptr;
    }
    ++found;
    return &*member;
}

void ObjectReader::Miss(const char* name)
{
    missing.push_back(name);
}

void ObjectReader::Refuse(const char* name, std::string_view text) const
{
    const Place place(source.place, name);
    Source(source.value, place, source.problem).Refuse(text);
}

void ObjectReader::Finish()
{
    if (!isObject)
    {
        return;
    }
    // A name misspelled is missing, too: the unknown one comes first, as it says more.
    if (found != source.value.size())
    {
        const std::vector<std::string> names(known.begin(), known.end());
        for (const auto& [key, value] : source.value.items())
        {
            if (std::find(names.begin(), names.end(), key) != names.end())
            {
                continue;
            }
            const std::vector<std::string> nearest = NearestNames(key, names, 1);
            const std::string hint =
                nearest.empty() ? "it has " + QuotedList(known) : fmt::format("did you mean \"{}\"?", nearest.front());
            source.Refuse(fmt::format("no member is called {}; {}", Quoted(key), hint));
            return;
        }
    }
    if (!missing.empty())
    {
        source.Refuse("missing " + QuotedList(missing));
    }
}

} // namespace qstd
