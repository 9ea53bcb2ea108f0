#include "command_line/help.h"

#include <CLI/CLI.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using qstd::CommandLine;
using qstd::VerbHelp;
using qstd::Wrapped;
using qstd::WrappedCommand;
using ::testing::AnyOf;
using ::testing::HasSubstr;
using ::testing::SizeIs;

TEST(Wrapped, FillsLinesUpToTheWidth)
{
    EXPECT_EQ("aaa bbb\nccc\n", Wrapped("aaa bbb ccc", 7)); // 3 + 1 + 3
    EXPECT_EQ("aaa\nbbb\nccc\n", Wrapped("aaa bbb ccc", 6));
}

TEST(Wrapped, LeavesAWordThatIsTooLongWhole)
{
    EXPECT_EQ("a\nbbbbbbbb\nc\n", Wrapped("a bbbbbbbb c", 4));
}

TEST(Wrapped, CountsCharactersNotBytes)
{
    EXPECT_EQ("ä ö\n", Wrapped("ä ö", 3));
}

TEST(Wrapped, KeepsParagraphsAndLinesThatBeginWithABlank)
{
    EXPECT_EQ("one two\n\n  n  e\n  h\nthree\n", Wrapped("one\ntwo\n\n  n  e\n  h\nthree", 20));
}

TEST(Wrapped, NothingStaysNothing)
{
    EXPECT_EQ("", Wrapped("", 10));
}

TEST(WrappedCommand, BreaksBeforeOptions)
{
    EXPECT_EQ("qstd arc 1,2 \\\n  --to 3,4 --csv", WrappedCommand("qstd arc 1,2 --to 3,4 --csv", 18));
}

TEST(WrappedCommand, BreaksBehindAPipe)
{
    EXPECT_EQ("echo 1 | \\\n  qstd line", WrappedCommand("echo 1 | qstd line", 12));
}

TEST(WrappedCommand, LeavesAShortOneAsItIs)
{
    EXPECT_EQ("qstd arc --csv", WrappedCommand("qstd arc --csv", 14)); // exactly as wide
}

TEST(WrappedCommand, DoesNotBreakWithinQuotes)
{
    EXPECT_EQ("echo 'a | b --c' | \\\n  x", WrappedCommand("echo 'a | b --c' | x", 8));
    EXPECT_EQ("echo \"it's --c\" | \\\n  x", WrappedCommand("echo \"it's --c\" | x", 8));
}

TEST(VerbHelp, NamesAllOptionsOfAllVerbs)
{
    const CommandLine commandLine;
    ASSERT_THAT(commandLine.Verbs(), SizeIs(22));
    for (const auto& verb : commandLine.Verbs())
    {
        const std::string help = VerbHelp(*verb);
        for (const CLI::Option* option : verb->app->get_options())
        {
            for (const std::string& name : option->get_lnames())
            {
                const std::string term = (name == "help" ? "\n  -h, --" : "\n  --") + name;
                EXPECT_THAT(help, AnyOf(HasSubstr(term + " "), HasSubstr(term + "\n"))) << verb->text.name;
            }
        }
    }
}

TEST(VerbHelp, SaysWhatTheVerbTakes)
{
    CommandLine commandLine;
    qstd::Verb& verb =
        commandLine.AddBareVerb({"sample", "Group", "What it does", "How.", {{"Why", "qstd sample 1", ""}}});
    std::string kind;
    std::vector<std::string> points;
    verb.app->add_option("--kind", kind, "Kind of it")->check(CLI::IsMember({"old", "new"}))->type_name("KIND");
    verb.app->add_option("POINTS", points, "Some points")->required()->type_name("POINT");
    EXPECT_EQ("Usage: qstd sample [OPTION]... POINTS...\n"
              "\n"
              "What it does\n"
              "\n"
              "How.\n"
              "\n"
              "Arguments:\n"
              "  POINTS  Some points (POINT)\n"
              "\n"
              "Options:\n"
              "  --kind KIND  Kind of it; one of old, new\n"
              "  -h, --help   Show this help\n"
              "\n"
              "Values:\n"
              "  POINT  Name in the table of --points, or coordinates N,E or N,E,H such as\n"
              "         3587.52,89562.49\n"
              "\n"
              "Example:\n"
              "  Why:\n"
              "    qstd sample 1\n"
              "\n"
              "Exit status:\n"
              "  0  All done\n"
              "  1  Something could not be computed; the rest is there\n"
              "  2  Wrong use, or output that cannot be written\n"
              "  3  Input unreadable; nothing was written\n",
              VerbHelp(verb));
}
