#include "verbs/angle.h"

#include <gtest/gtest.h>

#include <limits>
#include <optional>

using qstd::DirectionOfUnits;
using qstd::ParseUnits;

TEST(ParseUnits, ReadsEvery32BitInteger)
{
    EXPECT_EQ(ParseUnits("0u"), 0);
    EXPECT_EQ(ParseUnits("2592000U"), 2592000);
    EXPECT_EQ(ParseUnits(" -1u "), -1);
    EXPECT_EQ(ParseUnits("2147483647u"), std::numeric_limits<AngleUnit>::max());
    EXPECT_EQ(ParseUnits("-2147483648u"), std::numeric_limits<AngleUnit>::min());
}

TEST(ParseUnits, LeavesOtherTextsToTheOtherForms)
{
    for (const char* const text : {"", "u", "-u", "12", "12d", "1.5u", "1 u", "0x10u", "+5u", "5uu", "2147483648u"})
    {
        EXPECT_EQ(ParseUnits(text), std::nullopt) << text;
    }
}

TEST(DirectionOfUnits, LeavesTheCircleAlone)
{
    for (const AngleUnit units : {0, 1, ANGLE_HALF_CIRCLE, ANGLE_FULL_CIRCLE - 1})
    {
        EXPECT_EQ(DirectionOfUnits(units), units);
    }
}

TEST(DirectionOfUnits, TakesOffOrAddsFullCircles)
{
    EXPECT_EQ(DirectionOfUnits(ANGLE_FULL_CIRCLE), 0);
    EXPECT_EQ(DirectionOfUnits(3 * ANGLE_FULL_CIRCLE + 7), 7);
    EXPECT_EQ(DirectionOfUnits(-1), ANGLE_FULL_CIRCLE - 1);
    EXPECT_EQ(DirectionOfUnits(-ANGLE_FULL_CIRCLE), 0);
}

// Taking 20,736,000 off 0 again and again, 32 bits wrap below -2^31 and leave 2,138,423,296 = 2^32 - 104 * 20,736,000:
// the direction 0. From 2^31 - 20,736,000 = 2,126,747,648 on the library counts integers so.
TEST(DirectionOfUnits, UndoesTheWrapOfNormalisedAngles)
{
    EXPECT_EQ(DirectionOfUnits(2138423296), 0);
    EXPECT_EQ(DirectionOfUnits(2138423301), 5);
    EXPECT_EQ(DirectionOfUnits(2138423295), ANGLE_FULL_CIRCLE - 1);
    // 2,126,747,648 - 2,138,423,296 = -11,675,648.
    EXPECT_EQ(DirectionOfUnits(2126747648), ANGLE_FULL_CIRCLE - 11675648);
    // 2,126,747,647 = 102 * 20,736,000 + 11,675,647.
    EXPECT_EQ(DirectionOfUnits(2126747647), 11675647);
}
