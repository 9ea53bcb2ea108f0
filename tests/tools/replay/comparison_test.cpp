#include "replay/comparison.h"

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

using qstd::Compare;
using qstd::Json;
using qstd::UnitsApart;

namespace {

std::vector<std::string> Differences(const std::string& expected, const std::string& got, uint64_t units = 0)
{
    std::vector<std::string> texts;
    for (const qstd::Difference& difference : Compare(Json::parse(expected), Json::parse(got), units))
    {
        texts.push_back(Describe(difference));
    }
    return texts;
}

using Texts = std::vector<std::string>;

} // namespace

TEST(Comparison, CountsUnitsInTheLastPlace)
{
    const double infinite = std::numeric_limits<double>::infinity();
    const double smallest = std::numeric_limits<double>::denorm_min();
    EXPECT_EQ(UnitsApart(1.0, 1.0), 0U);
    EXPECT_EQ(UnitsApart(1.0, std::nextafter(1.0, 2.0)), 1U);
    EXPECT_EQ(UnitsApart(std::nextafter(-1.0, 0.0), -1.0), 1U);
    EXPECT_EQ(UnitsApart(1.0, 2.0), uint64_t{1} << 52U);
    EXPECT_EQ(UnitsApart(0.0, -0.0), 1U);
    EXPECT_EQ(UnitsApart(smallest, 0.0), 1U);
    EXPECT_EQ(UnitsApart(-smallest, smallest), 3U);
    EXPECT_EQ(UnitsApart(std::numeric_limits<double>::max(), infinite), 1U);
    // Infinity is number 0x7FF of 2^52 each on either side of the zeros.
    EXPECT_EQ(UnitsApart(-infinite, infinite), 2U * (uint64_t{0x7FF} << 52U) + 1U);
}

TEST(Comparison, IsExactUnlessAllowedOtherwise)
{
    // 0.1 and the double after it; 0.3 less that of 0.1 + 0.2.
    EXPECT_EQ(Differences(R"({"value":0.1})", R"({"value":0.1})"), Texts());
    EXPECT_EQ(Differences(R"({"value":0.30000000000000004})", R"({"value":0.3})"),
              Texts({"value: expected 0.30000000000000004, got 0.3, 1 unit in the last place apart"}));
    EXPECT_EQ(Differences(R"({"value":0.30000000000000004})", R"({"value":0.3})", 1), Texts());
    EXPECT_EQ(Differences(R"({"value":0.0})", R"({"value":-0.0})"),
              Texts({"value: expected 0.0, got -0.0, 1 unit in the last place apart"}));
    EXPECT_EQ(Differences("[1.0]", "[1.0000000000000007]", 2),
              Texts({"[0]: expected 1.0, got 1.0000000000000007, 3 units in the last place apart"}));
}

TEST(Comparison, TakesARealWrittenAsAnInteger)
{
    EXPECT_EQ(Differences("[5]", "[5.0]"), Texts());
    EXPECT_EQ(Differences("[-0]", "[-0.0]"), Texts());
    EXPECT_EQ(Differences("[5.0]", "[5]"), Texts({"[0]: expected 5.0, got 5"}));
}

TEST(Comparison, HasNoToleranceForAnythingButReals)
{
    EXPECT_EQ(Differences(R"({"status":0})", R"({"status":-1})", 5), Texts({"status: expected 0, got -1"}));
    EXPECT_EQ(Differences(R"(["nan","inf","untouched"])", R"(["nan","inf","untouched"])"), Texts());
    EXPECT_EQ(Differences(R"(["inf"])", R"(["-inf"])", 5), Texts({R"([0]: expected "inf", got "-inf")"}));
    EXPECT_EQ(Differences(R"(["nan"])", "[1.5]"), Texts({R"([0]: expected "nan", got 1.5)"}));
    EXPECT_EQ(Differences("{}", "[]"), Texts({"expected an object, got an array of 0"}));
}

TEST(Comparison, GivesThePathOfWhatDiffers)
{
    EXPECT_EQ(Differences(R"({"pair":[{"northing":1.0},{"northing":2}],"status":2})",
                          R"({"status":2,"pair":[{"northing":1.0},{"northing":"untouched"}]})"),
              Texts({R"(pair[1].northing: expected 2, got "untouched")"}));
}

TEST(Comparison, FindsWhatOnlyOneOfThemHas)
{
    EXPECT_EQ(Differences(R"({"a":1,"r":{"b":2}})", R"({"r":{"c":3}})"),
              Texts({"a: expected 1, got nothing", "r.b: expected 2, got nothing", "r.c: expected nothing, got 3"}));
    EXPECT_EQ(Differences("[1,2]", "[1]"), Texts({"[1]: expected 2, got nothing"}));
    EXPECT_EQ(Differences("[1]", "[1,2]"), Texts({"[1]: expected nothing, got 2"}));
}
