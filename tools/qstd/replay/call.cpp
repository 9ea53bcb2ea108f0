#include "replay/call.h"

#include "replay/functions.h"
#include "text/status_name.h"
#include "text/text.h"

#include <fmt/format.h>

#include <utility>

namespace qstd {

namespace {

std::string UnknownCall(const std::string& name)
{
    const std::vector<std::string> nearest = NearestNames(name, CallNames(), 1);
    return fmt::format("no call is named {}{}", Quoted(name),
                       nearest.empty() ? "" : fmt::format("; did you mean \"{}\"?", nearest.front()));
}

/** The function that a line names, or null with the problem told. */
const CallableFunction* FindFunction(const Json& line, ReplayCall& call)
{
    if (!line.is_object())
    {
        call.problem = "expected an object, got " + ShortText(line);
        return nullptr;
    }
    const auto name = line.find("call");
    if (name == line.end() || !name->is_string())
    {
        call.problem = name == line.end() ? "missing \"call\", the name of a function"
                                          : "call: expected the name of a function, got " + ShortText(*name);
        return nullptr;
    }
    call.name = name->get<std::string>();
    const auto found = CallableFunctions().find(call.name);
    if (found == CallableFunctions().end())
    {
        call.problem = UnknownCall(call.name);
        return nullptr;
    }
    return &found->second;
}

} // namespace

ReplayCall ParseCall(std::string_view line)
{
    ReplayCall call;
    ParsedLine parsed = ParseJsonLine(line);
    call.problem = std::move(parsed.problem);
    const CallableFunction* function = call.problem.empty() ? FindFunction(parsed.value, call) : nullptr;
    if (function == nullptr)
    {
        return call;
    }
    call.countsSolutions = function->countsSolutions;
    const Place place;
    const Source source(parsed.value, place, call.problem);
    ObjectReader reader(source);
    call.prepared = function->prepare(reader);
    reader.Find("call", Presence::REQUIRED);
    const Json* id = reader.Find("id", Presence::OPTIONAL);
    if (id != nullptr)
    {
        call.id = *id;
    }
    reader.Finish();
    if (!call.problem.empty())
    {
        call.problem = fmt::format("{}: {}", call.name, call.problem);
    }
    return call;
}

Json MakeCall(const ReplayCall& call)
{
    const CallOutcome outcome = call.prepared->Make();
    Json line = Json::object();
    line["call"] = call.name;
    if (call.id)
    {
        line["id"] = *call.id;
    }
    if (outcome.status)
    {
        line["status"] = *outcome.status;
        if (!call.countsSolutions || *outcome.status < 0)
        {
            line["status_name"] = StatusName(*outcome.status);
        }
    }
    if (outcome.value)
    {
        line["value"] = JsonOfReal(*outcome.value);
    }
    line.update(outcome.results);
    return line;
}

std::vector<std::string> CallNames()
{
    std::vector<std::string> names;
    for (const auto& [name, function] : CallableFunctions())
    {
        names.push_back(name);
    }
    return names;
}

} // namespace qstd
