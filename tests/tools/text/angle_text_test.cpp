#include "text/angle_text.h"

#include <optional>
#include <string>

#include <gtest/gtest.h>

using qstd::AngleForm;
using qstd::FormatAngle;
using qstd::ParseAngle;
using qstd::ParsedAngle;

namespace {

// 99 degrees, 10 minutes, 24.5 seconds in units of 1/16": 99 * 57600 + 10 * 960 + 24.5 * 16.
constexpr AngleUnit EXAMPLE = 5702400 + 9600 + 392;

AngleUnit Units(const std::string& text, std::optional<AngleForm> bare = std::nullopt)
{
    const ParsedAngle angle = ParseAngle(text, bare);
    EXPECT_EQ(angle.problem, "") << text;
    return angle.units;
}

std::string Problem(const std::string& text, std::optional<AngleForm> bare = std::nullopt)
{
    return ParseAngle(text, bare).problem;
}

} // namespace

TEST(ParseAngle, ReadsEverySexagesimalForm)
{
    for (const char* text : {"99-10-24.5", "99:10:24.5", "99d10'24.5\"", "99D10'24.5\"", "99°10'24.5\"", "99°10′24.5″",
                             "99d10'24.5''", "99d 10' 24.5\"", "099-10-24.5", "99-010-24.50"})
    {
        EXPECT_EQ(Units(text), EXAMPLE) << text;
    }
}

TEST(ParseAngle, ReadsDegreesAndMinutesAlone)
{
    // 99 * 57600 + 10.5 * 960
    for (const char* text : {"99-10.5", "99:10.5", "99d10.5'"})
    {
        EXPECT_EQ(Units(text), 5702400 + 10080) << text;
    }
}

TEST(ParseAngle, ReadsDecimalFormsToTheNearestUnit)
{
    // 99.1735 * 57600 = 5712393.6; 110.1926 * 51840 = 5712384.384; 1.5 * 10368000 / pi = 4950355.35
    EXPECT_EQ(Units("99.1735d"), 5712394);
    EXPECT_EQ(Units("99.1735°"), 5712394);
    EXPECT_EQ(Units("110.1926g"), 5712384);
    EXPECT_EQ(Units("110.1926 gon"), 5712384);
    EXPECT_EQ(Units("1.5rad"), 4950355);
}

TEST(ParseAngle, ReadsBareNumbersInTheGivenForm)
{
    EXPECT_EQ(Units("99.10245", AngleForm::DMS), EXAMPLE);
    EXPECT_EQ(Units("99.1", AngleForm::DMS), 5702400 + 9600);
    EXPECT_EQ(Units("99", AngleForm::DMS), 5702400);
    EXPECT_EQ(Units("99.1735", AngleForm::DEGREES), 5712394);
    EXPECT_EQ(Units("110.1926", AngleForm::GON), 5712384);
    EXPECT_EQ(Units("1.5", AngleForm::RADIANS), 4950355);
}

TEST(ParseAngle, LetsTheFormOfTheTextWin)
{
    for (const AngleForm bare : {AngleForm::DMS, AngleForm::DEGREES, AngleForm::GON, AngleForm::RADIANS})
    {
        EXPECT_EQ(Units("99-10-24.5", bare), EXAMPLE);
        EXPECT_EQ(Units("110.1926g", bare), 5712384);
    }
}

TEST(ParseAngle, RoundsHalvesUpwards)
{
    // 1/32" is half a unit.
    EXPECT_EQ(Units("0-00-00.03125"), 1);
    EXPECT_EQ(Units("0-00-00.03124"), 0);
    EXPECT_EQ(Units("0-00-00.0625"), 1);
}

TEST(ParseAngle, TakesAFullCircleForZero)
{
    EXPECT_EQ(Units("360-00-00"), 0);
    EXPECT_EQ(Units("400g"), 0);
    EXPECT_EQ(Units("359-59-59.99"), 0);           // 0.16 units short of it
    EXPECT_EQ(Units("359-59-59.9"), 20736000 - 2); // 1.6 units short
}

TEST(ParseAngle, AsksForTheUnitOfABareNumber)
{
    EXPECT_EQ(Problem("99.1024"), "no unit; write 99-10-24, 99.1733d or 110.19g, or give --angle");
    EXPECT_EQ(Problem("0"), "no unit; write 99-10-24, 99.1733d or 110.19g, or give --angle");
}

TEST(ParseAngle, RefusesWhatIsOffTheCircle)
{
    for (const char* text : {"360-00-00.1", "361d", "400.001g", "7rad", "-1-00-00", "-0.5d", "1e300d"})
    {
        EXPECT_NE(Problem(text).find("not on the circle"), std::string::npos) << text << ": " << Problem(text);
    }
}

TEST(ParseAngle, RefusesMinutesAndSecondsOfSixty)
{
    EXPECT_EQ(Problem("99-60-00"), "minutes and seconds must be below 60");
    EXPECT_EQ(Problem("99-00-60"), "minutes and seconds must be below 60");
    EXPECT_EQ(Problem("99.6000", AngleForm::DMS), "minutes and seconds must be below 60");
}

TEST(ParseAngle, RefusesWhatIsNoAngle)
{
    for (const char* text :
         {"",       "north",      "d",          "g",         "rad",          "--",    "99-",     "99-10-",
          "99--10", "99-10-24-1", "99.5-10-24", "99-1e1-24", "nan",          "inf",   "nand",    "infg",
          "99,17d", "0x10d",      "99d10",      "99d10'24x", "99-10-24.5.1", "1-2:3", "99 10 24"})
    {
        EXPECT_NE(Problem(text), "") << text;
    }
}

TEST(FormatAngle, WritesEachForm)
{
    EXPECT_EQ(FormatAngle(EXAMPLE, AngleForm::DMS), "99-10-24.5");
    // 5712392 / 57600 = 99.173472, / 51840 = 110.192747, * pi / 10368000 = 1.7309036
    EXPECT_EQ(FormatAngle(EXAMPLE, AngleForm::DEGREES), "99.1735d");
    EXPECT_EQ(FormatAngle(EXAMPLE, AngleForm::GON), "110.1927g");
    EXPECT_EQ(FormatAngle(EXAMPLE, AngleForm::RADIANS), "1.730904rad");
}

TEST(FormatAngle, NeverWritesAFullCircleOrSixtySeconds)
{
    EXPECT_EQ(FormatAngle(20736000 - 1, AngleForm::DMS), "359-59-59.9");
    EXPECT_EQ(FormatAngle(20736000 - 1, AngleForm::DEGREES), "0.0000d");
    EXPECT_EQ(FormatAngle(20736000 - 1, AngleForm::GON), "0.0000g");
    EXPECT_EQ(FormatAngle(20736000 - 1, AngleForm::RADIANS), "6.283185rad");
    EXPECT_EQ(FormatAngle(20736000, AngleForm::DMS), "0-00-00.0");
    EXPECT_EQ(FormatAngle(-16, AngleForm::DMS), "359-59-59.0");
}

TEST(FormatAngle, IsReadBackAsTheSameTenthOfASecond)
{
    // 1.6 units are a tenth of a second; rounding to it moves an angle by at most 0.8 units, rounding back by 0.5.
    for (AngleUnit units = 0; units < 20736000; units += 99991)
    {
        EXPECT_LE(std::abs(Units(FormatAngle(units, AngleForm::DMS)) - units), 1) << units;
    }
}

TEST(WithinCircle, BringsAnyUnitsIntoTheCircle)
{
    EXPECT_EQ(qstd::WithinCircle(-1), 20735999);
    EXPECT_EQ(qstd::WithinCircle(20736000), 0);
    EXPECT_EQ(qstd::WithinCircle(-20736000), 0);
    EXPECT_EQ(qstd::WithinCircle(41472005), 5);
}

TEST(UnitsOf, IsTheNearestUnitWithinTheCircle)
{
    // 10368000 / pi units a radian: 1.5 is 4950355.35, 1 less a full circle -17435763.1 + 20736000.
    EXPECT_EQ(qstd::UnitsOf(1.5), 4950355);
    EXPECT_EQ(qstd::UnitsOf(1.0), 3300237);
    EXPECT_EQ(qstd::UnitsOf(1.0 - 2.0 * 3.14159265358979323846), 3300237);
    EXPECT_EQ(qstd::UnitsOf(1.0 + 20.0 * 3.14159265358979323846), 3300237);
    EXPECT_EQ(qstd::UnitsOf(0.0), 0);
}

TEST(UnitsOf, NeverGivesAFullCircle)
{
    // A third of a unit below zero, and what rounding leaves of it.
    EXPECT_EQ(qstd::UnitsOf(-1e-7), 0);
    EXPECT_EQ(qstd::UnitsOf(-1e-300), 0);
    EXPECT_EQ(qstd::UnitsOf(2.0 * 3.14159265358979323846), 0);
    EXPECT_EQ(qstd::UnitsOf(-1e-6), 20736000 - 3);
}

TEST(UnitsOf, IsTheConverseOfRadiansOf)
{
    for (AngleUnit units = 0; units < 20736000; units += 99991)
    {
        EXPECT_EQ(qstd::UnitsOf(qstd::RadiansOf(units)), units);
    }
}

TEST(ParseAngle, RefusesWhatIsTooLongToBeOneAtOnce)
{
    std::string signs;
    for (int i = 0; i < 500'000; ++i)
    {
        signs += "\u00B0";
    }
    EXPECT_FALSE(ParseAngle(signs, std::nullopt).problem.empty());
    EXPECT_FALSE(ParseAngle("1." + std::string(254, '0') + "d", std::nullopt).problem.empty()) << "257 characters";
}

TEST(ParseAngle, TakesBlanksForNoPartOfAnAngle)
{
    // Neither many of them nor a few around the longest angle there may be.
    EXPECT_EQ(Units(std::string(300, ' ') + "90d"), ANGLE_QUARTER_CIRCLE);
    const std::string longest = "90." + std::string(252, '0') + "d";
    EXPECT_EQ(Units(longest), ANGLE_QUARTER_CIRCLE);
    EXPECT_EQ(Units("  " + longest + " "), ANGLE_QUARTER_CIRCLE);
}
