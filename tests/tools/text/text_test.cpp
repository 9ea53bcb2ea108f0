#include "text/text.h"

#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;
using testing::IsEmpty;

TEST(ParseReal, ReadsDecimalNumbersOnly)
{
    EXPECT_EQ(qstd::ParseReal("12.5"), 12.5);
    EXPECT_EQ(qstd::ParseReal("-.5"), -0.5);
    EXPECT_EQ(qstd::ParseReal("+3"), 3.0);
    EXPECT_EQ(qstd::ParseReal("1e3"), 1000.0);
    for (const char* text : {"", "+", "-", "+-1", "1,5", "1 ", " 1", "nan", "inf", "0x10", "1e999", "1d", "١"})
    {
        EXPECT_EQ(qstd::ParseReal(text), std::nullopt) << text;
    }
}

TEST(FormatFixed, WritesNoNegativeZero)
{
    EXPECT_EQ(qstd::FormatFixed(-0.0004, 3), "0.000");
    EXPECT_EQ(qstd::FormatFixed(-0.0006, 3), "-0.001");
    EXPECT_EQ(qstd::FormatFixed(-0.0, 0), "0");
    EXPECT_EQ(qstd::FormatFixed(-10.0, 0), "-10");
    EXPECT_EQ(qstd::FormatSigned(0.04, 1), "0.0");
    EXPECT_EQ(qstd::FormatSigned(0.06, 1), "+0.1");
    EXPECT_EQ(qstd::FormatSigned(-0.06, 1), "-0.1");
}

TEST(IsUtf8, KnowsEveryKindOfFault)
{
    EXPECT_TRUE(qstd::IsUtf8("aé測😀"));
    for (const char* text : {"\x80", "\xC3", "\xC0\x80", "\xE0\x80\x80", "\xED\xA0\x80", "\xF0\x80\x80\x80",
                             "\xF4\x90\x80\x80", "\xF8\x88\x80\x80\x80", "\xE6\xB8", "a\xFF"})
    {
        EXPECT_FALSE(qstd::IsUtf8(text));
    }
}

TEST(DisplayWidth, CountsCharactersNotBytes)
{
    EXPECT_EQ(qstd::DisplayWidth("Kőbánya"), 7U);
    EXPECT_EQ(qstd::DisplayWidth("e\xCC\x81"), 1U); // e with a combining acute
}

TEST(ShortenedInside, KeepsBeginningAndEnd)
{
    EXPECT_EQ(qstd::ShortenedInside("abcdefghij", 10), "abcdefghij");
    EXPECT_EQ(qstd::ShortenedInside("abcdefghij", 7), "abcd…ij");
    EXPECT_EQ(qstd::ShortenedInside("ááááááá9", 4), "áá…9");
}

TEST(Quoted, ShowsWhatCannotBePrinted)
{
    EXPECT_EQ(qstd::Quoted("a\x01\xFFz"), "\"a\\x01\\xffz\"");
    EXPECT_EQ(qstd::Quoted(std::string(41, 'x')), "\"" + std::string(40, 'x') + "…\"");
}

TEST(NearestNames, ProposesWhatIsAlike)
{
    const std::vector<std::string> names = {"5001", "5003", "1_sp", "2_sp"};
    EXPECT_THAT(qstd::NearestNames("5002", names, 3), ElementsAre("5001", "5003"));
    EXPECT_THAT(qstd::NearestNames("1_SP", names, 1), ElementsAre("1_sp"));
    EXPECT_THAT(qstd::NearestNames("church", names, 3), IsEmpty());
}

TEST(SplitAtCommas, GivesEveryPartWithoutBlanksAtItsEnds)
{
    using Parts = std::vector<std::string_view>;
    EXPECT_EQ(qstd::SplitAtCommas(" 1, 2 3,"), (Parts{"1", "2 3", ""}));
    EXPECT_EQ(qstd::SplitAtCommas("1"), (Parts{"1"}));
    EXPECT_EQ(qstd::SplitAtCommas(""), (Parts{""}));
}
