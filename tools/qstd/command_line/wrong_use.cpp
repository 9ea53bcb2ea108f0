#include "command_line/wrong_use.h"

#include "command_line/usage.h"
#include "text/text.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <algorithm>

namespace qstd {

namespace {

constexpr size_t MOST_PROPOSALS = 3;

/** Names that the word is the beginning of, or else those nearest to it. */
std::string Proposal(const std::string& word, const std::vector<std::string>& names)
{
    std::vector<std::string> near;
    for (const std::string& name : names)
    {
        if (name.rfind(word, 0) == 0 && !word.empty() && near.size() < MOST_PROPOSALS)
        {
            near.push_back(name);
        }
    }
    std::string text;
    for (const std::string& name : near.empty() ? NearestNames(word, names, MOST_PROPOSALS) : near)
    {
        text += (text.empty() ? "; did you mean " : ", ") + name;
    }
    return text.empty() ? "" : text + "?";
}

std::vector<std::string> OptionNames(const CLI::App& app)
{
    std::vector<std::string> names;
    for (const Parameter& option : AllOptions(UsageOf(app)))
    {
        names.insert(names.end(), option.names.begin(), option.names.end());
    }
    return names;
}

bool Has(const std::vector<std::string>& names, const std::string& name)
{
    return std::find(names.begin(), names.end(), name) != names.end();
}

/** An option in front of the verb that belongs behind it. */
std::string MisplacedOption(const CommandLine& commandLine, const std::string& name)
{
    const auto& verbs = commandLine.Verbs();
    const bool isOfVerb = std::any_of(verbs.begin(), verbs.end(), [&name](const std::unique_ptr<Verb>& verb) {
        return Has(OptionNames(*verb->app), name);
    });
    return isOfVerb ? fmt::format("{} stands before the verb; write qstd VERB {}", name, name) : "";
}

std::string UnknownOption(const CommandLine& commandLine, const CLI::App& app, const std::string& word)
{
    const std::string name = word.substr(0, word.find('='));
    const std::string misplaced = &app == &commandLine.App() ? MisplacedOption(commandLine, name) : "";
    return misplaced.empty() ? fmt::format("no option {}{}", Quoted(name), Proposal(name, OptionNames(app)))
                             : misplaced;
}

/** True for what is written as an option, not as a number or as standard input. */
bool LooksLikeOption(const std::string& word)
{
    const bool hasLetter = word.size() > 1 && (word[1] < '0' || word[1] > '9') && word[1] != '.';
    return hasLetter && word[0] == '-' && word != "--";
}

/** Words that belong to nothing: first what looks like an option, as that explains the others. */
std::string ExtraWords(const CommandLine& commandLine, const CLI::App& app)
{
    const std::vector<std::string> words = app.remaining();
    const auto option = std::find_if(words.begin(), words.end(), LooksLikeOption);
    if (option != words.end())
    {
        return UnknownOption(commandLine, app, *option);
    }
    const auto word = std::find_if(words.begin(), words.end(), [](const std::string& one) { return one != "--"; });
    return word == words.end() ? "" : fmt::format("{} is one argument too many", Quoted(*word));
}

/** What must be given and is not, all of it. */
std::string MissingParameters(const CLI::App& app)
{
    std::vector<std::string> missing;
    for (const CLI::Option* option : app.get_options())
    {
        if (option->get_required() && option->count() == 0)
        {
            const Parameter parameter = ParameterOf(*option);
            missing.push_back(option->get_positional() ? parameter.names.front() : Signature(parameter));
        }
    }
    std::string text;
    for (size_t i = 0; i < missing.size(); ++i)
    {
        text += fmt::format("{}{}", i == 0 ? "" : i + 1 == missing.size() ? " and " : ", ", missing[i]);
    }
    return text.empty() ? "" : fmt::format("{} {} missing", text, missing.size() == 1 ? "is" : "are");
}

/** A value that is not among those allowed. */
std::string WrongChoice(const CLI::App& app)
{
    for (const CLI::Option* option : app.get_options())
    {
        const Parameter parameter = ParameterOf(*option);
        for (const std::string& value : option->results())
        {
            if (!parameter.choices.empty() && !Has(parameter.choices, value))
            {
                std::string allowed;
                for (const std::string& choice : parameter.choices)
                {
                    allowed += (allowed.empty() ? "" : ", ") + choice;
                }
                return fmt::format("{} {}: not one of {}", parameter.names.back(), Quoted(value), allowed);
            }
        }
    }
    return "";
}

/** The option that an error names at its beginning, with what was given for it. */
std::string NamedOption(const CLI::App& app, const std::string& text)
{
    for (const CLI::Option* option : app.get_options())
    {
        const std::string name = option->get_name();
        const size_t at = text.find(name);
        const size_t end = at + name.size();
        if (!option->results().empty() && at != std::string::npos &&
            (end == text.size() || text[end] == ':' || text[end] == ' '))
        {
            return fmt::format("{} {}", ParameterOf(*option).names.back(), Quoted(option->results().front()));
        }
    }
    return "";
}

/** "Value -1 not in range 0 to 9" and the like, behind the name. */
std::string Reason(const std::string& text)
{
    const size_t colon = text.find(": ");
    const std::string reason = colon == std::string::npos ? text : text.substr(colon + 2);
    // The largest number there is stands for no bound.
    if (reason.find(" not in range ") != std::string::npos && reason.find("to 17976931348623157") != std::string::npos)
    {
        return "not a number of the size wanted; it must not be negative";
    }
    const size_t range = reason.find("not in range ");
    return range == std::string::npos ? reason : reason.substr(range);
}

/** Too few values of an option, or too many. */
std::string WrongCount(const CLI::App& app, const std::string& text)
{
    const size_t override = text.find(" was given a disallowed flag override");
    if (override != std::string::npos)
    {
        const std::string name = text.substr(0, override);
        return fmt::format("{}{} takes no value", name[0] == '-' ? "" : "--", name);
    }
    for (const Parameter& option : AllOptions(UsageOf(app)))
    {
        if (text.rfind(option.names.back() + ":", 0) == 0)
        {
            const bool isTwice = text.find(" At Most ") != std::string::npos;
            return isTwice ? option.names.back() + " is given more than once"
                           : fmt::format("{}: a value is missing; write {}", option.names.back(), Signature(option));
        }
    }
    return text;
}

/** In words of this program where the error is of a kind that users meet, else in those of the parser. */
std::string Explanation(const CLI::App& app, const CLI::ParseError& error)
{
    const std::string text = error.what();
    const std::string kind = error.get_name();
    std::string words;
    if (kind == "RequiredError")
    {
        words = MissingParameters(app);
    }
    else if (kind == "ArgumentMismatch")
    {
        words = WrongCount(app, text);
    }
    else if (kind == "ExcludesError")
    {
        const size_t at = text.find(" excludes ");
        words = at == std::string::npos ? text : text.substr(0, at) + " cannot be given with " + text.substr(at + 10);
    }
    else if (kind == "RequiresError")
    {
        const size_t at = text.find(" requires ");
        words = at == std::string::npos ? text : text.substr(0, at) + " needs " + text.substr(at + 10);
    }
    else if (kind == "ValidationError" || kind == "ConversionError")
    {
        words = WrongChoice(app);
        const std::string named = NamedOption(app, text);
        if (words.empty() && !named.empty())
        {
            words =
                fmt::format("{}: {}", named, kind == "ConversionError" ? "not a number that fits here" : Reason(text));
        }
    }
    return words.empty() ? text : words;
}

} // namespace

std::string VerbProblem(const CommandLine& commandLine, const std::string& word)
{
    std::vector<std::string> names = {"help"};
    for (const std::unique_ptr<Verb>& verb : commandLine.Verbs())
    {
        names.push_back(verb->text.name);
    }
    return Has(names, word) ? "" : fmt::format("no verb {}{}", Quoted(word), Proposal(word, names));
}

std::string ParseProblem(const CommandLine& commandLine, const CLI::ParseError& error)
{
    const std::vector<CLI::App*> parsed = commandLine.App().get_subcommands();
    const CLI::App& app = parsed.empty() ? commandLine.App() : *parsed.front();
    const std::string command = parsed.empty() ? "qstd" : "qstd " + app.get_name();
    const std::string misplaced = parsed.empty() ? "" : ExtraWords(commandLine, commandLine.App());
    if (!misplaced.empty())
    {
        return fmt::format("qstd: {}\nTry qstd --help\n", misplaced);
    }
    std::string problem = ExtraWords(commandLine, app);
    if (problem.empty())
    {
        problem = parsed.empty() && std::string(error.get_name()) == "RequiredError" ? "a verb is missing"
                                                                                     : Explanation(app, error);
    }
    std::replace(problem.begin(), problem.end(), '\n', ' ');
    return fmt::format("qstd: {}{}\nTry {} --help\n", parsed.empty() ? "" : app.get_name() + ": ", problem, command);
}

} // namespace qstd
