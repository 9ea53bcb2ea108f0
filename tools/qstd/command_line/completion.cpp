#include "command_line/completion.h"

#include "command_line/usage.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <algorithm>

namespace qstd {

namespace {

const char* const BEGINNING = R"(# Completion of qstd for bash.
# shellcheck shell=bash

_qstd_words()
{
    mapfile -t COMPREPLY < <(compgen -W "$1" -- "$2")
}

_qstd_files()
{
    mapfile -t COMPREPLY < <(compgen -f -- "$1")
    compopt -o filenames 2>/dev/null
}

_qstd()
{
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]} verb=${COMP_WORDS[1]}
    # --option=value comes as three words.
    if [[ $current == = ]]; then
        current=''
    elif [[ $previous == = ]]; then
        previous=${COMP_WORDS[COMP_CWORD-2]}
    fi
    COMPREPLY=()
    local options='' takes_files='' verbs='{verbs}'
    if ((COMP_CWORD == 1)); then
        _qstd_words "$verbs help {options}" "$current"
        return
    fi
    case $verb in
    help)
        _qstd_words "$verbs" "$current"
        return
        ;;
)";

const char* const END = R"(    esac
    if [[ $current == -* ]]; then
        _qstd_words "$options" "$current"
    elif [[ $takes_files ]]; then
        _qstd_files "$current"
    fi
}

complete -F _qstd qstd
)";

std::string Words(const std::vector<std::string>& words)
{
    std::string text;
    for (const std::string& word : words)
    {
        text += (text.empty() ? "" : " ") + word;
    }
    return text;
}

std::vector<std::string> Names(const std::vector<Parameter>& options)
{
    std::vector<std::string> names;
    for (const Parameter& option : options)
    {
        names.insert(names.end(), option.names.begin(), option.names.end());
    }
    return names;
}

std::string Alternatives(const std::vector<std::string>& names)
{
    std::string text;
    for (const std::string& name : names)
    {
        text += (text.empty() ? "" : " | ") + name;
    }
    return text;
}

/** What is completed behind the options of a verb. */
std::string Values(const std::vector<Parameter>& options)
{
    std::vector<std::string> files;
    std::vector<std::string> others;
    std::string text;
    for (const Parameter& option : options)
    {
        if (!option.choices.empty())
        {
            text += fmt::format("        {}) _qstd_words '{}' \"$current\"; return ;;\n", Alternatives(option.names),
                                Words(option.choices));
        }
        else if (!option.value.empty())
        {
            std::vector<std::string>& names = option.type == "FILE" ? files : others;
            names.insert(names.end(), option.names.begin(), option.names.end());
        }
    }
    text += files.empty() ? "" : fmt::format("        {}) _qstd_files \"$current\"; return ;;\n", Alternatives(files));
    text += others.empty() ? "" : fmt::format("        {}) return ;;\n", Alternatives(others));
    return text.empty() ? "" : fmt::format("        case $previous in\n{}        esac\n", text);
}

std::string VerbCase(const Verb& verb)
{
    const Usage usage = UsageOf(*verb.app);
    const std::vector<Parameter> options = AllOptions(usage);
    const bool takesFiles = std::any_of(usage.arguments.begin(), usage.arguments.end(),
                                        [](const Parameter& argument) { return argument.type == "FILE"; });
    return fmt::format("    {})\n        options='{}'\n{}{}        ;;\n", verb.text.name, Words(Names(options)),
                       takesFiles ? "        takes_files=yes\n" : "", Values(options));
}

std::string Replaced(std::string text, const std::string& mark, const std::string& words)
{
    return text.replace(text.find(mark), mark.size(), words);
}

} // namespace

std::string CompletionScript(const CommandLine& commandLine)
{
    std::vector<std::string> verbs;
    std::string cases;
    for (const std::unique_ptr<Verb>& verb : commandLine.Verbs())
    {
        verbs.push_back(verb->text.name);
        cases += VerbCase(*verb);
    }
    const std::string options = Words(Names(AllOptions(UsageOf(commandLine.App()))));
    return Replaced(Replaced(BEGINNING, "{verbs}", Words(verbs)), "{options}", options) + cases + END;
}

} // namespace qstd
