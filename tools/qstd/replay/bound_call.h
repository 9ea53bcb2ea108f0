/**
 * @file bound_call.h
 * A function of the library with its parameters named: what reads their values, makes the call, shows what it wrote.
 */
#ifndef QSTD_BOUND_CALL_H
#define QSTD_BOUND_CALL_H

#include "replay/prepared_call.h"
#include "replay/records.h"

#include <memory>
#include <tuple>
#include <type_traits>
#include <utility>

namespace qstd {

/** A number handed in. */
template <typename Value>
class GivenValue
{
public:
    explicit GivenValue(const char* parameter, Presence mayBeMissing = Presence::REQUIRED)
        : name(parameter), presence(mayBeMissing)
    {
    }

    void Read(ObjectReader& reader)
    {
        reader.Read(name, value, presence);
    }

    Value Argument()
    {
        return value;
    }

    void Show(Json& /*results*/) const
    {
    }

private:
    const char* name;
    Presence presence;
    Value value = {};
};

/** A number that the function does not read: 0.0 where it is left out. */
using Unread = GivenValue<double>;

inline Unread NotRead(const char* parameter)
{
    return Unread(parameter, Presence::OPTIONAL);
}

/** A record handed in. */
template <typename Record>
class GivenRecord
{
public:
    explicit GivenRecord(const char* parameter) : name(parameter)
    {
    }

    void Read(ObjectReader& reader)
    {
        reader.Read(name, record);
    }

    const Record* Argument()
    {
        return &record;
    }

    void Show(Json& /*results*/) const
    {
    }

private:
    const char* name;
    Record record = {};
};

/** A record handed in that may be null. */
template <typename Record>
class RecordOrNull
{
public:
    explicit RecordOrNull(const char* parameter) : name(parameter)
    {
    }

    void Read(ObjectReader& reader)
    {
        const Json* given = reader.Find(name, Presence::REQUIRED);
        isNull = given == nullptr || given->is_null();
        if (!isNull)
        {
            reader.ReadFound(name, *given, record);
        }
    }

    const Record* Argument()
    {
        return isNull ? nullptr : &record;
    }

    void Show(Json& /*results*/) const
    {
    }

private:
    const char* name;
    bool isNull = true;
    Record record = {};
};

/** A number, a record or an array of fixed length that the function writes. */
template <typename Value>
class Written
{
public:
    explicit Written(const char* parameter) : name(parameter)
    {
        MarkUntouched(value);
    }

    void Read(ObjectReader& /*reader*/)
    {
    }

    /** Where an array is written, its first element. */
    std::remove_extent_t<Value>* Argument()
    {
        if constexpr (std::is_array_v<Value>)
        {
            return value;
        }
        else
        {
            return &value;
        }
    }

    void Show(Json& results) const
    {
        results[name] = Shown(value);
    }

private:
    const char* name;
    Value value;
};

/** A record that the function reads and writes. Where it may be missing, it is marked as a written one is. */
template <typename Record>
class Changed
{
public:
    Changed(const char* parameter, Presence mayBeMissing) : name(parameter), presence(mayBeMissing)
    {
        MarkUntouched(record);
    }

    void Read(ObjectReader& reader)
    {
        reader.Read(name, record, presence);
    }

    Record* Argument()
    {
        return &record;
    }

    void Show(Json& results) const
    {
        results[name] = Shown(record);
    }

private:
    const char* name;
    Presence presence;
    Record record;
};

/** What a parameter of a type is where only its name is given: constness tells inputs from outputs. */
template <typename Parameter>
struct UsualSlot
{
    using Type = GivenValue<Parameter>;
};

template <typename Record>
struct UsualSlot<const Record*>
{
    using Type = GivenRecord<Record>;
};

template <typename Value>
struct UsualSlot<Value*>
{
    using Type = Written<Value>;
};

/** From a name, or from a slot that is not the usual one of its parameter. */
template <typename Parameter, typename Naming>
auto SlotOf(Naming naming)
{
    if constexpr (std::is_same_v<Naming, const char*>)
    {
        return typename UsualSlot<Parameter>::Type(naming);
    }
    else
    {
        return naming;
    }
}

template <typename Function, typename Slots>
class BoundCall final : public PreparedCall
{
public:
    BoundCall(Function called, const Slots& named) : function(called), slots(named)
    {
    }

    void Read(ObjectReader& reader)
    {
        std::apply([&](auto&... slot) { (slot.Read(reader), ...); }, slots);
    }

    CallOutcome Make() override
    {
        CallOutcome outcome;
        std::apply(
            [&](auto&... slot) {
                Call(outcome, slot.Argument()...);
                (slot.Show(outcome.results), ...);
            },
            slots);
        return outcome;
    }

private:
    template <typename... Arguments>
    void Call(CallOutcome& outcome, Arguments... arguments)
    {
        using Result = std::invoke_result_t<Function, Arguments...>;
        if constexpr (std::is_void_v<Result>)
        {
            function(arguments...);
        }
        else if constexpr (std::is_same_v<Result, double>)
        {
            outcome.value = function(arguments...);
        }
        else
        {
            outcome.status = function(arguments...);
        }
    }

    Function function;
    Slots slots;
};

/** Names the parameters of a function, in order. */
template <typename Result, typename... Parameters, typename... Namings>
Preparation Bind(Result (*function)(Parameters...), Namings... namings)
{
    static_assert(sizeof...(Parameters) == sizeof...(Namings), "a name for each parameter");
    using Slots = std::tuple<decltype(SlotOf<Parameters>(namings))...>;
    const Slots slots(SlotOf<Parameters>(namings)...);
    return [function, slots](ObjectReader& reader) -> std::unique_ptr<PreparedCall> {
        auto call = std::make_unique<BoundCall<Result (*)(Parameters...), Slots>>(function, slots);
        call->Read(reader);
        return call;
    };
}

} // namespace qstd

#endif
