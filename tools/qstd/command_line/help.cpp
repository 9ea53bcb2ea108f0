#include "command_line/help.h"

#include "command_line/program_text.h"
#include "command_line/usage.h"
#include "text/text.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <sstream>

namespace qstd {

namespace {

/** Terminals are at least this wide. */
constexpr size_t WIDTH = 80;

/** A line for each verb matters more than that of a narrow terminal. */
constexpr size_t LIST_WIDTH = 100;

constexpr size_t WIDEST_TERM = 22;

const std::string INDENT = "  ";

/** A term and its explanation, in two columns. */
struct Entry
{
    std::string term;
    std::string text;
};

std::string Indented(const std::string& text, const std::string& indent)
{
    std::string result;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
    {
        result += (line.empty() ? "" : indent + line) + "\n";
    }
    return result;
}

size_t TermWidth(const std::vector<Entry>& entries)
{
    size_t width = 0;
    for (const Entry& entry : entries)
    {
        const size_t own = DisplayWidth(entry.term);
        width = std::max(width, own <= WIDEST_TERM ? own : 0);
    }
    return width;
}

/** A term that is too wide has a line of its own. */
std::string Entries(const std::vector<Entry>& entries, size_t termWidth, size_t width = WIDTH)
{
    const size_t column = 2 * INDENT.size() + termWidth;
    std::string result;
    for (const Entry& entry : entries)
    {
        std::string text = Indented(Wrapped(entry.text, width - column), std::string(column, ' '));
        const size_t own = DisplayWidth(entry.term);
        if (text.empty())
        {
            result += INDENT + entry.term + "\n";
        }
        else if (own > termWidth)
        {
            result += fmt::format("{}{}\n{}", INDENT, entry.term, text);
        }
        else
        {
            text.replace(0, INDENT.size() + own, INDENT + entry.term);
            result += text;
        }
    }
    return result;
}

Entry EntryOf(const Parameter& parameter)
{
    return {Signature(parameter), FullDescription(parameter)};
}

std::vector<Entry> EntriesOf(const std::vector<Parameter>& parameters)
{
    std::vector<Entry> entries;
    std::transform(parameters.begin(), parameters.end(), std::back_inserter(entries), EntryOf);
    return entries;
}

std::string Arguments(const Usage& usage)
{
    std::vector<Entry> entries;
    for (const Parameter& argument : usage.arguments)
    {
        entries.push_back({argument.names.front(), FullDescription(argument)});
    }
    return entries.empty() ? "" : "\nArguments:\n" + Entries(entries, TermWidth(entries));
}

std::string Options(const Usage& usage)
{
    const size_t termWidth = TermWidth(EntriesOf(AllOptions(usage)));
    std::string text;
    for (const ParameterGroup& group : usage.options)
    {
        text += fmt::format("\n{}:\n{}", group.title, Entries(EntriesOf(group.parameters), termWidth));
    }
    return text;
}

std::string Types(const Usage& usage)
{
    std::vector<Entry> entries;
    for (const TypeText& type : usage.types)
    {
        entries.push_back({type.type, type.text});
    }
    return entries.empty() ? "" : "\nValues:\n" + Entries(entries, TermWidth(entries));
}

std::string Examples(const std::vector<Example>& examples)
{
    std::string text;
    for (const Example& example : examples)
    {
        const std::string indent = INDENT + INDENT;
        text += "\n" + Indented(Wrapped(example.purpose + ":", WIDTH - INDENT.size()), INDENT) +
                Indented(WrappedCommand(example.command, WIDTH - indent.size()), indent);
    }
    return text.empty() ? "" : fmt::format("\n{}:{}", examples.size() == 1 ? "Example" : "Examples", text);
}

std::string ExitCodes()
{
    std::vector<Entry> entries;
    for (const ExitCodeText& text : ExitCodeTexts())
    {
        entries.push_back({std::to_string(text.code), text.meaning});
    }
    return "\nExit status:\n" + Entries(entries, TermWidth(entries));
}

/** The verbs of each group in the order in which they were added, groups as they first come. */
std::string VerbList(const CommandLine& commandLine)
{
    std::vector<std::string> groups;
    std::vector<Entry> all;
    for (const std::unique_ptr<Verb>& verb : commandLine.Verbs())
    {
        all.push_back({verb->text.name, verb->text.summary});
        if (std::find(groups.begin(), groups.end(), verb->text.group) == groups.end())
        {
            groups.push_back(verb->text.group);
        }
    }
    std::string text;
    for (const std::string& group : groups)
    {
        std::vector<Entry> entries;
        for (const std::unique_ptr<Verb>& verb : commandLine.Verbs())
        {
            if (verb->text.group == group)
            {
                entries.push_back({verb->text.name, verb->text.summary});
            }
        }
        text += fmt::format("\n{}:\n{}", group, Entries(entries, TermWidth(all), LIST_WIDTH));
    }
    return text;
}

std::string WrappedParagraph(const std::string& paragraph, size_t width)
{
    std::string result;
    size_t used = 0;
    std::istringstream words(paragraph);
    for (std::string word; words >> word;)
    {
        const size_t own = DisplayWidth(word);
        if (used == 0 || used + 1 + own > width)
        {
            result += used == 0 ? word : "\n" + word;
            used = own;
            continue;
        }
        result += " " + word;
        used += 1 + own;
    }
    return result + "\n";
}

/** Where a command may be continued on another line: before options, behind | and &&; outside of quotes. */
std::vector<size_t> BreaksOf(const std::string& command)
{
    std::vector<size_t> breaks;
    char quote = '\0';
    for (size_t i = 0; i + 1 < command.size(); ++i)
    {
        const char letter = command[i];
        if (quote == '\0' && (letter == '\'' || letter == '"'))
        {
            quote = letter;
        }
        else if (letter == quote)
        {
            quote = '\0';
        }
        else if (quote == '\0' && letter == ' ' && i > 0 &&
                 (command.compare(i + 1, 2, "--") == 0 || command[i - 1] == '|' || command[i - 1] == '&'))
        {
            breaks.push_back(i);
        }
    }
    return breaks;
}

} // namespace

std::string Wrapped(const std::string& text, size_t width)
{
    std::string result;
    std::string paragraph;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
    {
        const bool isPlain = !line.empty() && line[0] != ' ';
        if (!isPlain && !paragraph.empty())
        {
            result += WrappedParagraph(paragraph, width);
            paragraph.clear();
        }
        if (isPlain)
        {
            paragraph += line + " ";
        }
        else
        {
            result += line + "\n";
        }
    }
    return result + (paragraph.empty() ? "" : WrappedParagraph(paragraph, width));
}

std::string WrappedCommand(const std::string& command, size_t width)
{
    std::vector<size_t> breaks = command.find('\n') == std::string::npos ? BreaksOf(command) : std::vector<size_t>();
    breaks.push_back(command.size());
    const std::string continuation = " \\";
    std::string result;
    size_t begin = 0; // of the piece that is looked at
    size_t used = 0;
    for (const size_t end : breaks)
    {
        const std::string piece = command.substr(begin, end - begin);
        const size_t room = width - (end == command.size() ? 0 : continuation.size());
        if (used > 0 && used + DisplayWidth(piece) > room)
        {
            result += continuation;
            result += "\n ";
            result += piece;
            used = 1 + DisplayWidth(piece);
        }
        else
        {
            result += piece;
            used += DisplayWidth(piece);
        }
        begin = end;
    }
    return result;
}

std::string ProgramHelp(const CommandLine& commandLine)
{
    return fmt::format("Usage: qstd VERB [OPTION]... [ARGUMENT]...\n\n{}{}{}{}\n{}",
                       Wrapped(PROGRAM_DESCRIPTION, WIDTH), VerbList(commandLine), Options(UsageOf(commandLine.App())),
                       ExitCodes(),
                       "qstd VERB --help tells all about a verb, the manual pages qstd and qstd-VERB\n"
                       "show examples with what they print.\n");
}

std::string VerbHelp(const Verb& verb)
{
    const Usage usage = UsageOf(*verb.app);
    const std::string description = verb.text.description.empty() ? "" : "\n" + Wrapped(verb.text.description, WIDTH);
    return fmt::format("Usage: {}\n\n{}{}{}{}{}{}{}", Synopsis(verb), Wrapped(verb.text.summary, WIDTH), description,
                       Arguments(usage), Options(usage), Types(usage), Examples(verb.text.examples), ExitCodes());
}

} // namespace qstd
