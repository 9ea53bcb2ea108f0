#include "command_line/usage.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <exception>
#include <sstream>

namespace qstd {

const char* const INPUT_GROUP = "Input";
const char* const INSTRUMENT_GROUP = "Instrument";
const char* const OUTPUT_GROUP = "Output";
const char* const FIGURE_GROUP = "Figures";

namespace {

const char* const OWN_GROUP = "Options";

/** A type and the beginnings of the words that stand for its values. */
struct TypeEntry
{
    TypeText text;
    std::vector<std::string> words;
};

const std::vector<TypeEntry>& TypeEntries()
{
    static const std::vector<TypeEntry> entries = {
        {{"POINT", "Name in the table of --points, or coordinates N,E or N,E,H such as 3587.52,89562.49"},
         {"POINT", "CENTRE", "A B"}},
        {{"HZ,V,SD", "Horizontal circle reading, zenith reading and slope distance, without blanks"}, {"HZ"}},
        {{"ANGLE", "99-10-24.5, 99d10'24.5\", 99.1735d, 110.1926g or 1.730904rad, also for azimuths and readings; a "
                   "bare number needs --angle"},
         {"ANGLE", "AZIMUTH", "HZ"}},
    };
    return entries;
}

/** What the library calls the types of values whose names the verb has not given. */
std::string TypeName(const std::string& name)
{
    if (name == "FLOAT")
    {
        return "NUMBER";
    }
    return name == "INT" || name == "UINT" ? "N" : name;
}

std::vector<std::string> SplitAt(const std::string& text, char separator)
{
    std::vector<std::string> parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, separator);)
    {
        parts.push_back(part);
    }
    return parts;
}

/** The values that a check of membership names, as in {dms,deg} or {dms->0,deg->1}. */
std::vector<std::string> ChoicesOf(const std::string& checks)
{
    const size_t begin = checks.find('{');
    const size_t end = checks.find('}', begin);
    if (begin == std::string::npos || end == std::string::npos)
    {
        return {};
    }
    std::vector<std::string> choices = SplitAt(checks.substr(begin + 1, end - begin - 1), ',');
    for (std::string& choice : choices)
    {
        choice = choice.substr(0, choice.find("->"));
    }
    return choices;
}

/** The words behind an option's name. */
std::string ValueText(const CLI::Option& option, const std::string& type)
{
    if (option.get_items_expected_max() == 0)
    {
        return "";
    }
    std::string text = type;
    if (type.find(' ') == std::string::npos)
    {
        for (int i = 1; i < option.get_items_expected_min(); ++i)
        {
            text += " " + type;
        }
    }
    const bool isList = option.get_items_expected_max() > option.get_items_expected_min();
    return text + (isList && option.get_allow_extra_args() ? "..." : "");
}

/** True for a word that stands alone in a text. */
bool HasWord(const std::string& text, const std::string& word)
{
    const auto isInside = [](char letter) {
        return (letter >= 'a' && letter <= 'z') || (letter >= '0' && letter <= '9') || letter == '-';
    };
    for (size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + 1))
    {
        const size_t end = at + word.size();
        if ((at == 0 || !isInside(text[at - 1])) && (end == text.size() || !isInside(text[end])))
        {
            return true;
        }
    }
    return false;
}

std::string Joined(const std::vector<std::string>& words)
{
    std::string text;
    for (const std::string& word : words)
    {
        text += (text.empty() ? "" : ", ") + word;
    }
    return text;
}

void AddToGroup(std::vector<ParameterGroup>& groups, const Parameter& parameter)
{
    auto group = std::find_if(groups.begin(), groups.end(),
                              [&parameter](const ParameterGroup& one) { return one.title == parameter.group; });
    if (group == groups.end())
    {
        groups.push_back({parameter.group, {}});
        group = groups.end() - 1;
    }
    group->parameters.push_back(parameter);
}

/** The verb's own options first, what all verbs have last. */
size_t Rank(const std::string& group)
{
    const std::array<std::string, 4> last = {INPUT_GROUP, INSTRUMENT_GROUP, OUTPUT_GROUP, FIGURE_GROUP};
    if (group == OWN_GROUP)
    {
        return 0;
    }
    const auto* const found = std::find(last.begin(), last.end(), group);
    return found == last.end() ? 1 : static_cast<size_t>(found - last.begin()) + 2;
}

/** True where a word of the type begins with `word`, as HZ,V with HZ. */
bool HasTypeWord(const std::string& type, const std::string& word)
{
    for (size_t at = type.find(word); at != std::string::npos; at = type.find(word, at + 1))
    {
        const char before = at == 0 ? ' ' : type[at - 1];
        const char after = at + word.size() == type.size() ? ' ' : type[at + word.size()];
        if ((before == ' ' || before == '|') && (after < 'A' || after == '|' || after == '['))
        {
            return true;
        }
    }
    return false;
}

bool IsUsed(const TypeEntry& entry, const Usage& usage)
{
    std::vector<Parameter> all = AllOptions(usage);
    all.insert(all.end(), usage.arguments.begin(), usage.arguments.end());
    return std::any_of(all.begin(), all.end(), [&entry](const Parameter& parameter) {
        return std::any_of(entry.words.begin(), entry.words.end(),
                           [&parameter](const std::string& word) { return HasTypeWord(parameter.type, word); });
    });
}

} // namespace

InGroup::InGroup(CLI::App& appOfOptions, const char* group) : app(appOfOptions)
{
    app.option_defaults()->group(group);
}

InGroup::~InGroup()
{
    try
    {
        app.option_defaults()->group(OWN_GROUP);
    }
    catch (const std::exception&)
    {
        std::terminate(); // not with the name of a group that is valid
    }
}

std::string Signature(const Parameter& parameter)
{
    const std::string names = Joined(parameter.names);
    return parameter.value.empty() ? names : names + " " + parameter.value;
}

std::string FullDescription(const Parameter& parameter)
{
    std::string text = parameter.description;
    const bool saysAll = std::all_of(parameter.choices.begin(), parameter.choices.end(),
                                     [&text](const std::string& choice) { return HasWord(text, choice); });
    if (!saysAll)
    {
        text += fmt::format("{}one of {}", text.empty() ? "" : "; ", Joined(parameter.choices));
    }
    const bool isArgument = parameter.names.front()[0] != '-';
    const bool hasOwnType = isArgument && parameter.type != parameter.names.front() && parameter.type != "TEXT";
    return hasOwnType && !parameter.type.empty() ? fmt::format("{} ({})", text, parameter.type) : text;
}

Parameter ParameterOf(const CLI::Option& option)
{
    Parameter parameter;
    const std::string typeAndChecks = option.get_type_name();
    const size_t colon = typeAndChecks.find(':');
    parameter.type = TypeName(typeAndChecks.substr(0, colon));
    parameter.choices = ChoicesOf(colon == std::string::npos ? "" : typeAndChecks.substr(colon));
    parameter.value = ValueText(option, parameter.type);
    parameter.isRepeated = option.get_items_expected_max() > std::max(option.get_items_expected_min(), 1);
    parameter.isRequired = option.get_required();
    parameter.description = option.get_description();
    parameter.group = option.get_group();
    if (option.get_positional())
    {
        parameter.names = {option.get_name(true, false)};
        return parameter;
    }
    for (const std::string& name : option.get_snames())
    {
        parameter.names.push_back("-" + name);
    }
    for (const std::string& name : option.get_lnames())
    {
        parameter.names.push_back("--" + name);
    }
    return parameter;
}

Usage UsageOf(const CLI::App& app)
{
    Usage usage;
    std::vector<ParameterGroup> groups;
    for (const CLI::Option* option : app.get_options())
    {
        const Parameter parameter = ParameterOf(*option);
        if (option->get_positional())
        {
            usage.arguments.push_back(parameter);
        }
        else if (option != app.get_help_ptr())
        {
            AddToGroup(groups, parameter);
        }
    }
    if (app.get_help_ptr() != nullptr)
    {
        AddToGroup(groups, ParameterOf(*app.get_help_ptr()));
    }
    std::stable_sort(groups.begin(), groups.end(), [](const ParameterGroup& one, const ParameterGroup& other) {
        return Rank(one.title) < Rank(other.title);
    });
    usage.options = groups;
    for (const TypeEntry& entry : TypeEntries())
    {
        if (IsUsed(entry, usage))
        {
            usage.types.push_back(entry.text);
        }
    }
    return usage;
}

std::string Synopsis(const Verb& verb)
{
    const Usage usage = UsageOf(*verb.app);
    std::string text = "qstd " + verb.text.name;
    for (const Parameter& option : AllOptions(usage))
    {
        text += option.isRequired ? " " + Signature(option) : "";
    }
    text += " [OPTION]...";
    for (const Parameter& argument : usage.arguments)
    {
        const std::string& name = argument.names.front();
        text += fmt::format(argument.isRequired ? " {}{}" : " [{}]{}", name, argument.isRepeated ? "..." : "");
    }
    return text;
}

std::vector<Parameter> AllOptions(const Usage& usage)
{
    std::vector<Parameter> all;
    for (const ParameterGroup& group : usage.options)
    {
        all.insert(all.end(), group.parameters.begin(), group.parameters.end());
    }
    return all;
}

} // namespace qstd
