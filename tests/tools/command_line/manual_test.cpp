#include "command_line/manual.h"

#include "command_line/usage.h"

#include <CLI/CLI.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using qstd::CommandLine;
using qstd::RoffLiteral;
using qstd::RoffProse;
using qstd::VerbPage;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::SizeIs;

TEST(Roff, EscapesWhatTroffWouldObey)
{
    EXPECT_EQ("\\&.SH NAME", RoffLiteral(".SH NAME"));
    EXPECT_EQ("a\n\\&.b", RoffLiteral("a\n.b"));
    EXPECT_EQ("\\(aqin", RoffLiteral("'in"));
    EXPECT_EQ("\\(rsn", RoffLiteral("\\n"));
}

TEST(Roff, LeavesDotsWithinLines)
{
    EXPECT_EQ("1.5 ...", RoffLiteral("1.5 ..."));
}

TEST(Roff, KeepsLettersThatPrintersPrettify)
{
    EXPECT_EQ("\\(dq\\(ga\\(ha\\(ti\\-", RoffLiteral("\"`^~-"));
}

TEST(Roff, NamesLettersBeyondAscii)
{
    // U+00B0, U+2033 and U+1F600 in UTF-8.
    EXPECT_EQ("9\\[u00B0] \\[u2033] \\[u1F600]", RoffLiteral("9\xC2\xB0 \xE2\x80\xB3 \xF0\x9F\x98\x80"));
}

TEST(Roff, MakesMinusSignsOfAllHyphensButThoseWithinWords)
{
    EXPECT_EQ("a free-station with \\-\\-south\\-azimuth, 99\\-10\\-24, (\\-\\-a\\-b) or \\-",
              RoffProse("a free-station with --south-azimuth, 99-10-24, (--a-b) or -"));
    EXPECT_EQ("free\\-station", RoffLiteral("free-station"));
}

TEST(VerbPage, HasAnEntryForEachOptionOfEachVerb)
{
    const CommandLine commandLine;
    ASSERT_THAT(commandLine.Verbs(), SizeIs(22));
    for (const auto& verb : commandLine.Verbs())
    {
        const std::string page = VerbPage(commandLine, *verb);
        for (const CLI::Option* option : verb->app->get_options())
        {
            for (const std::string& name : option->get_lnames())
            {
                EXPECT_THAT(page, HasSubstr("\\fB" + RoffLiteral("--" + name) + "\\fR")) << verb->text.name;
            }
        }
    }
}

TEST(VerbPage, KeepsExamplesLineByLine)
{
    CommandLine commandLine;
    const qstd::Verb& verb = commandLine.AddBareVerb(
        {"sample", "Group", "What it does", "First.\n\n  a  b\n\nLast.", {{"Why", "qstd sample", ".1\n\n'2\\\n"}}});
    const std::string page = VerbPage(commandLine, verb);
    EXPECT_THAT(page, HasSubstr(".EX\n$ qstd sample\n\\&.1\n\n\\(aq2\\(rs\n.EE\n"));
    EXPECT_THAT(page, HasSubstr(".PP\nFirst.\n.PP\n.EX\n  a  b\n.EE\n.PP\nLast.\n"));
    EXPECT_THAT(page, Not(HasSubstr("ARGUMENTS")));
}

TEST(ExamplesJson, HoldsAllExamplesOfAllVerbs)
{
    const CommandLine commandLine;
    const nlohmann::json examples = nlohmann::json::parse(qstd::ExamplesJson(commandLine));
    size_t at = 0;
    ASSERT_THAT(commandLine.Verbs(), SizeIs(22));
    for (const auto& verb : commandLine.Verbs())
    {
        for (const qstd::Example& example : verb->text.examples)
        {
            ASSERT_LT(at, examples.size());
            EXPECT_EQ(verb->text.name, examples[at]["verb"]);
            EXPECT_EQ(example.command, examples[at]["command"]);
            EXPECT_EQ(example.output, examples[at]["output"]);
            ++at;
        }
    }
    EXPECT_EQ(at, examples.size());
}
