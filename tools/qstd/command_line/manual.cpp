#include "command_line/manual.h"

#include "command_line/help.h"
#include "command_line/program_text.h"
#include "command_line/usage.h"
#include "text/text.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cstdint>
#include <sstream>

namespace qstd {

namespace {

/** What a page leaves for an example on a terminal of 80 columns. */
constexpr size_t WIDTH = 66;

/** The code point of a valid sequence of UTF-8. */
uint32_t CodePoint(std::string_view sequence)
{
    const auto lead = static_cast<unsigned char>(sequence[0]);
    const std::array<uint32_t, 5> masks = {0, 0x7F, 0x1F, 0x0F, 0x07};
    uint32_t code = lead & masks.at(sequence.size());
    for (const char next : sequence.substr(1))
    {
        code = code << 6U | (static_cast<unsigned char>(next) & 0x3FU);
    }
    return code;
}

/** What stands for a character that troff would read as something else, or print as another one. */
std::string_view RoffName(char letter)
{
    switch (letter)
    {
    case '\\':
        return "\\(rs";
    case '\'':
        return "\\(aq";
    case '`':
        return "\\(ga";
    case '^':
        return "\\(ha";
    case '~':
        return "\\(ti";
    case '"':
        return "\\(dq";
    case '-':
        return "\\-";
    default:
        return "";
    }
}

bool IsLetter(char letter)
{
    return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z');
}

/** A hyphen as in free-station, not one of an option such as --south-azimuth. */
bool IsHyphenOfWord(std::string_view text, size_t at)
{
    if (text[at] != '-' || at == 0 || at + 1 == text.size() || !IsLetter(text[at - 1]) || !IsLetter(text[at + 1]))
    {
        return false;
    }
    const size_t blank = text.find_last_of(" \n(", at);
    return text[blank == std::string_view::npos ? 0 : blank + 1] != '-';
}

std::string Roff(std::string_view text, bool isProse)
{
    std::string result;
    for (size_t i = 0; i < text.size();)
    {
        const size_t length = std::max<size_t>(Utf8Length(text.substr(i)), 1);
        const bool isLineStart = i == 0 || text[i - 1] == '\n';
        if (length > 1)
        {
            result += fmt::format("\\[u{:04X}]", CodePoint(text.substr(i, length)));
        }
        else if (const std::string_view name = RoffName(text[i]);
                 !name.empty() && !(isProse && IsHyphenOfWord(text, i)))
        {
            result += name;
        }
        else
        {
            result += isLineStart && text[i] == '.' ? "\\&." : std::string(1, text[i]);
        }
        i += length;
    }
    return result;
}

std::string Bold(std::string_view text)
{
    return "\\fB" + RoffLiteral(text) + "\\fR";
}

std::string Italic(std::string_view text)
{
    return "\\fI" + RoffLiteral(text) + "\\fR";
}

/**
 * The beginning of a page. It has no date: the same sources give the same page. Names are not divided at the ends of
 * lines, nor are blanks stretched.
 */
std::string Header(const std::string& name)
{
    std::string capitals = name;
    std::transform(capitals.begin(), capitals.end(), capitals.begin(), [](char letter) {
        return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 32) : letter;
    });
    return fmt::format(".TH \"{}\" 1 \"\" \"qstd {}\" \"Surveying calculations\"\n.nh\n.ad l\n", RoffLiteral(capitals),
                       RoffLiteral(QSTD_VERSION));
}

std::string Heading(const std::string& title)
{
    return fmt::format(".SH \"{}\"\n", RoffLiteral(title));
}

/** Lines as they are. */
std::string Literal(const std::string& text)
{
    std::string lines = RoffLiteral(text);
    if (!lines.empty() && lines.back() != '\n')
    {
        lines += '\n';
    }
    return ".EX\n" + lines + ".EE\n";
}

/** Paragraphs, an empty line between two; lines that begin with a blank stay as they are. */
std::string Paragraphs(const std::string& text)
{
    std::string result;
    std::string verbatim;
    bool isNew = true;
    std::istringstream lines(text + "\n\n");
    for (std::string line; std::getline(lines, line);)
    {
        const bool isVerbatim = !line.empty() && line[0] == ' ';
        if (!verbatim.empty() && !isVerbatim)
        {
            result += ".PP\n" + Literal(verbatim);
            verbatim.clear();
            isNew = true;
        }
        if (isVerbatim)
        {
            verbatim += line + "\n";
        }
        else if (line.empty())
        {
            isNew = true;
        }
        else
        {
            result += (isNew ? ".PP\n" : "") + RoffProse(line) + "\n";
            isNew = false;
        }
    }
    return result;
}

std::string Entry(const std::string& term, const std::string& text)
{
    return ".TP\n" + term + "\n" + (text.empty() ? "\\&" : RoffProse(text)) + "\n";
}

std::string Sentence(const std::string& text)
{
    return text.empty() || text.back() == '.' ? text : text + ".";
}

std::string OptionTerm(const Parameter& option)
{
    std::string term;
    for (const std::string& name : option.names)
    {
        term += (term.empty() ? "" : ", ") + Bold(name);
    }
    return option.value.empty() ? term : term + " " + Italic(option.value);
}

std::string Arguments(const Usage& usage)
{
    std::string text;
    for (const Parameter& argument : usage.arguments)
    {
        text += Entry(Italic(argument.names.front()), Sentence(FullDescription(argument)));
    }
    return text.empty() ? "" : Heading("ARGUMENTS") + text;
}

std::string Options(const Usage& usage)
{
    std::string text = Heading("OPTIONS");
    for (const ParameterGroup& group : usage.options)
    {
        text += usage.options.size() == 1 ? "" : fmt::format(".SS \"{}\"\n", RoffLiteral(group.title));
        for (const Parameter& option : group.parameters)
        {
            text += Entry(OptionTerm(option), Sentence(FullDescription(option)));
        }
    }
    return text;
}

std::string Types(const Usage& usage)
{
    std::string text;
    for (const TypeText& type : usage.types)
    {
        text += Entry(Italic(type.type), Sentence(type.text));
    }
    return text.empty() ? "" : Heading("VALUES") + text;
}

std::string Examples(const std::vector<Example>& examples)
{
    std::string text;
    for (const Example& example : examples)
    {
        text += fmt::format(".PP\n{}:\n.PP\n.RS 4\n{}.RE\n", RoffProse(example.purpose),
                            Literal(WrappedCommand("$ " + example.command, WIDTH) + "\n" + example.output));
    }
    return text.empty() ? "" : Heading("EXAMPLES") + text;
}

std::string ExitStatus()
{
    std::string text = Heading("EXIT STATUS");
    for (const ExitCodeText& code : ExitCodeTexts())
    {
        text += Entry(Bold(std::to_string(code.code)), Sentence(code.meaning));
    }
    return text;
}

std::string Reference(const std::string& page)
{
    return Bold(page) + "(1)";
}

std::string SeeAlso(const std::vector<std::string>& pages)
{
    std::string text;
    for (const std::string& page : pages)
    {
        text += (text.empty() ? "" : ",\n") + Reference(page);
    }
    return Heading("SEE ALSO") + text + "\n";
}

std::vector<std::string> Groups(const CommandLine& commandLine)
{
    std::vector<std::string> groups;
    for (const std::unique_ptr<Verb>& verb : commandLine.Verbs())
    {
        if (std::find(groups.begin(), groups.end(), verb->text.group) == groups.end())
        {
            groups.push_back(verb->text.group);
        }
    }
    return groups;
}

std::string VerbList(const CommandLine& commandLine)
{
    std::string text = Heading("VERBS");
    for (const std::string& group : Groups(commandLine))
    {
        text += fmt::format(".SS \"{}\"\n", RoffLiteral(group));
        for (const std::unique_ptr<Verb>& verb : commandLine.Verbs())
        {
            text += verb->text.group == group
                        ? Entry(Reference("qstd-" + verb->text.name), Sentence(verb->text.summary))
                        : "";
        }
    }
    return text;
}

/** Of each group the first verb with an example. */
std::vector<Example> FirstExamples(const CommandLine& commandLine)
{
    std::vector<Example> examples;
    for (const std::string& group : Groups(commandLine))
    {
        const auto& verbs = commandLine.Verbs();
        const auto found = std::find_if(verbs.begin(), verbs.end(), [&group](const std::unique_ptr<Verb>& verb) {
            return verb->text.group == group && !verb->text.examples.empty();
        });
        if (found != verbs.end())
        {
            examples.push_back((*found)->text.examples.front());
        }
    }
    return examples;
}

} // namespace

std::string RoffLiteral(std::string_view text)
{
    return Roff(text, false);
}

std::string RoffProse(std::string_view text)
{
    return Roff(text, true);
}

std::string ProgramPage(const CommandLine& commandLine)
{
    std::string page = Header("qstd") + Heading("NAME") + fmt::format("qstd \\- {}\n", RoffProse(PROGRAM_SUMMARY));
    page += Heading("SYNOPSIS") + fmt::format("{} {} [{}]... [{}]...\n.br\n{} {}\n", Bold("qstd"), Italic("VERB"),
                                              Italic("OPTION"), Italic("ARGUMENT"), Bold("qstd help"), Italic("VERB"));
    page += Heading("DESCRIPTION") + Paragraphs(PROGRAM_DESCRIPTION) + VerbList(commandLine);
    page += Options(UsageOf(commandLine.App()));
    for (const Chapter& chapter : Chapters())
    {
        page += Heading(chapter.title) + Paragraphs(chapter.text);
    }
    std::vector<std::string> pages;
    for (const std::unique_ptr<Verb>& verb : commandLine.Verbs())
    {
        pages.push_back("qstd-" + verb->text.name);
    }
    return page + Examples(FirstExamples(commandLine)) + ExitStatus() + SeeAlso(pages);
}

std::string VerbPage(const CommandLine& commandLine, const Verb& verb)
{
    const Usage usage = UsageOf(*verb.app);
    const std::string name = "qstd-" + verb.text.name;
    std::string page = Header(name) + Heading("NAME");
    page += fmt::format("{} \\- {}\n", RoffLiteral(name), RoffProse(verb.text.summary));
    page += Heading("SYNOPSIS") + Bold("qstd " + verb.text.name) +
            RoffLiteral(Synopsis(verb).substr(("qstd " + verb.text.name).size())) + "\n";
    page += Heading("DESCRIPTION") +
            Paragraphs(verb.text.description.empty() ? Sentence(verb.text.summary) : verb.text.description);
    page += Arguments(usage) + Options(usage) + Types(usage) + Examples(verb.text.examples) + ExitStatus();
    std::vector<std::string> pages = {"qstd"};
    for (const std::unique_ptr<Verb>& other : commandLine.Verbs())
    {
        if (other->text.group == verb.text.group && other.get() != &verb)
        {
            pages.push_back("qstd-" + other->text.name);
        }
    }
    return page + SeeAlso(pages);
}

std::string ExamplesJson(const CommandLine& commandLine)
{
    nlohmann::ordered_json examples = nlohmann::ordered_json::array();
    for (const std::unique_ptr<Verb>& verb : commandLine.Verbs())
    {
        for (const Example& example : verb->text.examples)
        {
            examples.push_back({{"verb", verb->text.name},
                                {"purpose", example.purpose},
                                {"command", example.command},
                                {"output", example.output}});
        }
    }
    return examples.dump(2) + "\n";
}

} // namespace qstd
