#include "command_line/number_checks.h"

#include <string>

#include <gtest/gtest.h>

using qstd::RefractionCheck;
using qstd::RefractionSelector;
using qstd::SigmaCheck;

namespace {

/** What a check has against a text; empty where it lets it pass. */
std::string Against(const CLI::Validator& check, std::string text)
{
    return check(text);
}

} // namespace

TEST(RefractionCheck, TakesTheCoefficientsOfTheInstrumentAndOff)
{
    for (const char* const text : {"0.132", "0.133", "0.20", "0.2", ".132", "off"})
    {
        EXPECT_EQ(Against(RefractionCheck(), text), "") << text;
    }
}

TEST(RefractionCheck, SaysWhatToWriteForASettingOfTheInstrument)
{
    const std::string takes = "takes a coefficient, 0.132, 0.133 or 0.20, or off";
    EXPECT_EQ(Against(RefractionCheck(), "0"), takes + "; for coefficient 0 write 0.132");
    EXPECT_EQ(Against(RefractionCheck(), "1"), takes + "; for coefficient 1 write 0.133");
    EXPECT_EQ(Against(RefractionCheck(), "2"), takes + "; for coefficient 2 write 0.2");
}

TEST(RefractionCheck, RefusesEverythingElse)
{
    const std::string takes = "takes a coefficient, 0.132, 0.133 or 0.20, or off";
    for (const char* const text : {"3", "-1", "0.13", "0.14", "1.5", "nan", "inf", "on", "Off", "", "0.132x", "1e300"})
    {
        EXPECT_EQ(Against(RefractionCheck(), text), takes) << text;
    }
}

TEST(RefractionSelector, IsTheSettingOfACoefficient)
{
    EXPECT_EQ(RefractionSelector("0.132"), 0);
    EXPECT_EQ(RefractionSelector("0.133"), 1);
    EXPECT_EQ(RefractionSelector("0.20"), 2);
    EXPECT_EQ(RefractionSelector("off"), std::nullopt);
    EXPECT_EQ(RefractionSelector("2"), std::nullopt);
}

TEST(SigmaCheck, TakesNumbersAboveZero)
{
    for (const char* const text : {"0.5", "2", "1e-3", "30"})
    {
        EXPECT_EQ(Against(SigmaCheck(), text), "") << text;
    }
    for (const char* const text : {"0", "-2", "nan", "inf", "1e300", "1e-300", "two", "", "2mm"})
    {
        EXPECT_EQ(Against(SigmaCheck(), text), "not a standard deviation; write a number above 0") << text;
    }
}
