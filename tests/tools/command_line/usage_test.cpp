#include "command_line/usage.h"

#include <CLI/CLI.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using qstd::FullDescription;
using qstd::Parameter;
using qstd::ParameterOf;
using qstd::Signature;
using qstd::Usage;
using qstd::UsageOf;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

class ParameterOfOption : public ::testing::Test
{
protected:
    CLI::App app;
    std::string text;
    int number = 0;
    std::vector<std::string> list;
};

std::vector<std::string> Types(const Usage& usage)
{
    std::vector<std::string> types;
    for (const qstd::TypeText& type : usage.types)
    {
        types.push_back(type.type);
    }
    return types;
}

} // namespace

TEST_F(ParameterOfOption, AFlagHasNoValue)
{
    EXPECT_EQ("-a, --all", Signature(ParameterOf(*app.add_flag("-a,--all"))));
}

TEST_F(ParameterOfOption, AnOptionShowsItsTypeWithoutItsChecks)
{
    const Parameter parameter = ParameterOf(*app.add_option("--n", number)->check(CLI::Range(0, 9))->type_name("N"));
    EXPECT_EQ("--n N", Signature(parameter));
    EXPECT_THAT(parameter.choices, IsEmpty());
}

TEST_F(ParameterOfOption, ATypeWithoutANameGetsOne)
{
    EXPECT_EQ("--n N", Signature(ParameterOf(*app.add_option("--n", number))));
}

TEST_F(ParameterOfOption, ChoicesAreThoseOfTheCheck)
{
    const Parameter parameter =
        ParameterOf(*app.add_option("--unit", text, "Unit")->check(CLI::IsMember({"m", "us-ft"}))->type_name("UNIT"));
    EXPECT_THAT(parameter.choices, ElementsAre("m", "us-ft"));
    EXPECT_EQ("Unit; one of m, us-ft", FullDescription(parameter));
}

TEST_F(ParameterOfOption, ChoicesOfATranslationAreTheirNames)
{
    const std::map<std::string, int> names = {{"one", 1}, {"two", 2}};
    CLI::Option* const option = app.add_option("--count", number)->transform(CLI::CheckedTransformer(names));
    EXPECT_THAT(ParameterOf(*option).choices, ElementsAre("one", "two"));
}

TEST_F(ParameterOfOption, ChoicesThatTheDescriptionNamesAreNotRepeated)
{
    CLI::Option* const option = app.add_option("--unit", text, "Unit: m or ft")->check(CLI::IsMember({"m", "ft"}));
    EXPECT_EQ("Unit: m or ft", FullDescription(ParameterOf(*option)));
}

TEST_F(ParameterOfOption, AChoiceWithinAnotherWordIsNotNamed)
{
    CLI::Option* const option = app.add_option("--unit", text, "Sum in us-ft")->check(CLI::IsMember({"m", "ft"}));
    EXPECT_EQ("Sum in us-ft; one of m, ft", FullDescription(ParameterOf(*option)));
}

TEST_F(ParameterOfOption, SeveralValuesAreShownOneByOne)
{
    EXPECT_EQ("--line A B", Signature(ParameterOf(*app.add_option("--line", list)->expected(2)->type_name("A B"))));
    EXPECT_EQ("--two P P", Signature(ParameterOf(*app.add_option("--two", list)->expected(2)->type_name("P"))));
    EXPECT_EQ("--any P...", Signature(ParameterOf(*app.add_option("--any", list)->type_name("P"))));
}

TEST_F(ParameterOfOption, AnArgumentSaysItsType)
{
    const Parameter parameter = ParameterOf(*app.add_option("A", text, "Start")->type_name("POINT"));
    EXPECT_THAT(parameter.names, ElementsAre("A"));
    EXPECT_EQ("Start (POINT)", FullDescription(parameter));
}

TEST_F(ParameterOfOption, TypesAreExplainedWhereTheyOccur)
{
    app.add_option("--at", text)->type_name("HZ[,V]");
    EXPECT_THAT(Types(UsageOf(app)), ElementsAre("HZ,V,SD", "ANGLE"));
    app.add_option("A", text)->type_name("POINT|HEIGHT");
    EXPECT_THAT(Types(UsageOf(app)), ElementsAre("POINT", "HZ,V,SD", "ANGLE"));
}

TEST_F(ParameterOfOption, ALineIsExplainedAsPointAndAngle)
{
    app.add_option("--line", list)->type_name("A B|AZIMUTH");
    EXPECT_THAT(Types(UsageOf(app)), ElementsAre("POINT", "ANGLE"));
}

TEST_F(ParameterOfOption, AnotherTypeOfSimilarNameIsNotExplained)
{
    app.add_option("--at", text)->type_name("POINTS");
    EXPECT_THAT(Types(UsageOf(app)), IsEmpty());
}

TEST_F(ParameterOfOption, GroupsStandInTheirOrderAndHelpIsTheLastOfTheFirst)
{
    {
        const qstd::InGroup group(app, qstd::OUTPUT_GROUP);
        app.add_flag("--csv");
    }
    {
        const qstd::InGroup group(app, qstd::INPUT_GROUP);
        app.add_flag("--points");
    }
    app.add_flag("--own");
    std::vector<std::string> seen;
    for (const qstd::ParameterGroup& group : UsageOf(app).options)
    {
        seen.push_back(group.title);
        for (const Parameter& parameter : group.parameters)
        {
            seen.push_back(parameter.names.back());
        }
    }
    EXPECT_THAT(seen, ElementsAre("Options", "--own", "--help", "Input", "--points", "Output", "--csv"));
}
