#include "replay/json_line.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/record.h"

using qstd::IsBlankOrComment;
using qstd::Json;
using qstd::JsonOfReal;
using qstd::ParseJsonLine;
using qstd::RealOf;
using support::BitsOf;

namespace {

constexpr double INFINITE = std::numeric_limits<double>::infinity();

/** Through a line of text and back. */
double ThereAndBack(double value)
{
    const qstd::ParsedLine parsed = ParseJsonLine(JsonOfReal(value).dump());
    EXPECT_EQ(parsed.problem, "");
    const std::optional<double> real = RealOf(parsed.value);
    EXPECT_TRUE(real.has_value()) << parsed.value;
    return real.value_or(0.0);
}

double DoubleOf(uint64_t bits)
{
    double value = 0.0;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

} // namespace

TEST(JsonLine, BringsDoublesBackBitForBit)
{
    for (const double value : {0.0, -0.0, 1.0, 0.1, 1.0 / 3.0, 5e-324, 2.2250738585072011e-308,
                               std::numeric_limits<double>::max(), std::numeric_limits<double>::min(),
                               9007199254740993.0, 1e22, 1e23, 134217728.0, 1e20, 1e-37, INFINITE, -INFINITE})
    {
        EXPECT_EQ(BitsOf(value), BitsOf(ThereAndBack(value))) << value;
    }
    EXPECT_TRUE(std::isnan(ThereAndBack(std::nan(""))));
    std::mt19937_64 random(20110);
    for (int i = 0; i < 100000; ++i)
    {
        const uint64_t bits = random();
        const double value = DoubleOf(bits);
        if (std::isfinite(value))
        {
            ASSERT_EQ(bits, BitsOf(ThereAndBack(value))) << std::hexfloat << value;
        }
    }
}

TEST(JsonLine, WritesWhatJsonHasNoNumberForAsText)
{
    EXPECT_EQ(JsonOfReal(std::nan("")).dump(), R"("nan")");
    EXPECT_EQ(JsonOfReal(-std::nan("")).dump(), R"("nan")");
    EXPECT_EQ(JsonOfReal(INFINITE).dump(), R"("inf")");
    EXPECT_EQ(JsonOfReal(-INFINITE).dump(), R"("-inf")");
    EXPECT_EQ(JsonOfReal(-0.0).dump(), "-0.0");
}

TEST(JsonLine, ReadsRealsFromAnyNumber)
{
    EXPECT_EQ(RealOf(ParseJsonLine("5").value), 5.0);
    EXPECT_EQ(RealOf(ParseJsonLine("-5").value), -5.0);
    EXPECT_EQ(BitsOf(-0.0), BitsOf(*RealOf(ParseJsonLine("-0").value)));
    EXPECT_EQ(BitsOf(0.0), BitsOf(*RealOf(ParseJsonLine("0").value)));
    // 2^53 + 1 lies between two doubles; the even one is 2^53. The last one has no integer type.
    EXPECT_EQ(RealOf(ParseJsonLine("9007199254740993").value), 9007199254740992.0);
    EXPECT_EQ(RealOf(ParseJsonLine("18446744073709551615").value), 18446744073709551616.0);
    EXPECT_EQ(RealOf(ParseJsonLine("100000000000000000000").value), 1e20);
    for (const char* none : {"null", "true", "[]", "{}", R"("")", R"("NaN")", R"("1")", R"("infinity")"})
    {
        EXPECT_FALSE(RealOf(ParseJsonLine(none).value).has_value()) << none;
    }
}

TEST(JsonLine, TellsTheColumnOfWhatIsNotJson)
{
    EXPECT_EQ(ParseJsonLine("").problem,
              "column 1: not JSON: syntax error while parsing value - unexpected end of input; expected '[', '{', or a "
              "literal");
    EXPECT_EQ(ParseJsonLine(R"({"a":1,})").problem,
              "column 8: not JSON: syntax error while parsing object key - unexpected '}'; expected string literal");
    EXPECT_EQ(ParseJsonLine("{} x").problem, "column 4: not JSON: syntax error while parsing value - invalid literal");
    EXPECT_EQ(ParseJsonLine("[nan]").problem, "column 3: not JSON: syntax error while parsing value - invalid literal");
    EXPECT_EQ(ParseJsonLine("[\"a\xFF\"]").problem,
              "column 4: not JSON: syntax error while parsing value - invalid string: ill-formed UTF-8 byte");
    EXPECT_EQ(ParseJsonLine("[1e400]").problem, R"(column 6: the number "1e400" is too large)");
}

TEST(JsonLine, DoesNotTakeAZeroByteForItsEnd)
{
    EXPECT_EQ(ParseJsonLine(std::string("{}\0{}", 5)).problem, "column 3: not JSON: a zero byte");
    EXPECT_EQ(ParseJsonLine(std::string("\0", 1)).problem, "column 1: not JSON: a zero byte");
}

TEST(JsonLine, RefusesAKeyTwice)
{
    EXPECT_EQ(ParseJsonLine(R"({"a":1,"b":{"a":2}})").problem, "");
    EXPECT_EQ(ParseJsonLine(R"({"a":1,"b":2,"a":1})").problem, R"("a" is given twice)");
}

TEST(JsonLine, RefusesWhatIsNestedTooDeep)
{
    const std::string deepest = std::string(16, '[') + std::string(16, ']');
    EXPECT_EQ(ParseJsonLine(deepest).problem, "");
    EXPECT_EQ(ParseJsonLine("[" + deepest + "]").problem, "nested more than 16 deep");
    EXPECT_EQ(ParseJsonLine(std::string(1000000, '[')).problem, "nested more than 16 deep");
}

TEST(JsonLine, RefusesObjectsOfTooManyMembers)
{
    std::string members = R"("0":0)";
    for (int i = 1; i < 64; ++i)
    {
        members += ",\"" + std::to_string(i) + "\":0";
    }
    EXPECT_EQ(ParseJsonLine("{" + members + "}").problem, "");
    EXPECT_EQ(ParseJsonLine("{" + members + R"(,"x":0})").problem, "an object of more than 64 members");
}

TEST(JsonLine, KeepsTheOrderOfMembers)
{
    const std::string text = R"({"b":[1,-2,2.5,null,true,"ä"],"a":{"d":{},"c":[]}})";
    EXPECT_EQ(ParseJsonLine(text).value.dump(), text);
}

TEST(JsonLine, MayBeBlankOrAComment)
{
    for (const char* line : {"", " \t", "# x", "  #", "\xEF\xBB\xBF", "\xEF\xBB\xBF# x"})
    {
        EXPECT_TRUE(IsBlankOrComment(line)) << line;
    }
    for (const char* line : {"{}", "x # y", "\xEF\xBB", "\xEF\xBB\xBF{}"})
    {
        EXPECT_FALSE(IsBlankOrComment(line)) << line;
    }
    EXPECT_EQ(ParseJsonLine("\xEF\xBB\xBF{}").problem, "") << "a byte-order mark is no part of the text";
}

TEST(JsonLine, ShowsValuesShortly)
{
    EXPECT_EQ(qstd::ShortText(ParseJsonLine(R"({"a":[1,2]})").value), "an object");
    EXPECT_EQ(qstd::ShortText(ParseJsonLine("[1,2]").value), "an array of 2");
    EXPECT_EQ(qstd::ShortText(ParseJsonLine(R"("a\u0007")").value), R"("a\x07")");
    EXPECT_EQ(qstd::ShortText(ParseJsonLine("-0.5").value), "-0.5");
    EXPECT_EQ(qstd::ShortText(nullptr), "null");
}
