#include "plan/plan_sheet.h"

#include <cmath>

#include <gtest/gtest.h>

using qstd::ChooseSheet;
using qstd::PlanSheet;

TEST(ChooseSheet, LiesTheWayThatGivesTheLargerScale)
{
    EXPECT_TRUE(ChooseSheet({0.0, 100.0, 0.0, 1000.0}).isLandscape);
    EXPECT_FALSE(ChooseSheet({0.0, 860.0, 0.0, 700.0}).isLandscape);
}

TEST(ChooseSheet, HoldsAllOfTheGroundWithinItsFrame)
{
    for (int power = -5; power <= 39; ++power)
    {
        const double length = std::pow(1.7, power); // 7 cm to a million kilometres
        const PlanSheet sheet = ChooseSheet({-length, length, 7.0, 7.0 + 3.0 * length});
        for (const double north : {-length, length})
        {
            for (const double east : {7.0, 7.0 + 3.0 * length})
            {
                const qstd::SheetPoint place = sheet.Place(north, east);
                EXPECT_GT(place.x, sheet.frame.left + 10.0) << length;
                EXPECT_LT(place.x, sheet.frame.right - 10.0) << length;
                EXPECT_GT(place.y, sheet.frame.top + 10.0) << length;
                EXPECT_LT(place.y, sheet.frame.bottom - 10.0) << length;
            }
        }
    }
}

TEST(ChooseSheet, PutsNorthUpAndEastRight)
{
    const PlanSheet sheet = ChooseSheet({0.0, 100.0, 0.0, 100.0});
    EXPECT_LT(sheet.Place(100.0, 50.0).y, sheet.Place(0.0, 50.0).y);
    EXPECT_GT(sheet.Place(50.0, 100.0).x, sheet.Place(50.0, 0.0).x);
    // 100 m at the stated scale.
    EXPECT_NEAR(sheet.Place(50.0, 100.0).x - sheet.Place(50.0, 0.0).x, 100000.0 / sheet.scale, 1e-9);
}

TEST(ChooseSheet, ManagesASinglePoint)
{
    EXPECT_EQ(ChooseSheet({5.0, 5.0, 5.0, 5.0}).scale, 10.0);
}

TEST(ChooseSheet, TakesOnlyTheScalesThatAreWanted)
{
    // 40 m in 201 mm less 14 on each side need 1:231.
    EXPECT_EQ(ChooseSheet({0.0, 0.0, 0.0, 40.0}).scale, 250.0);
    qstd::SheetNeeds needs;
    needs.hasQuarterScales = false;
    EXPECT_EQ(ChooseSheet({0.0, 0.0, 0.0, 40.0}, needs).scale, 500.0);
    // 40 ft are 12.2 m: 1:70.5.
    needs.metresPerUnit = 0.3048;
    const PlanSheet inFeet = ChooseSheet({0.0, 0.0, 0.0, 40.0}, needs);
    EXPECT_EQ(inFeet.scale, 100.0);
    EXPECT_NEAR(inFeet.OnSheet(40.0), 121.92, 1e-9);
    EXPECT_NEAR(inFeet.OnGround(121.92), 40.0, 1e-9);
}

TEST(ChooseSheet, EnlargesWhenAllowed)
{
    // 3 mm in 173 mm: 57:1.
    EXPECT_EQ(ChooseSheet({0.0, 0.0, 0.0, 0.003}).scale, 10.0);
    qstd::SheetNeeds needs;
    needs.smallestDenominator = 0.01;
    needs.hasQuarterScales = false;
    EXPECT_EQ(qstd::ScaleText(ChooseSheet({0.0, 0.0, 0.0, 0.003}, needs).scale), "50:1");
}

TEST(NiceBelow, GivesOneTwoOrFive)
{
    EXPECT_EQ(qstd::NiceBelow(1.0), 1.0);
    EXPECT_EQ(qstd::NiceBelow(1.9), 1.0);
    EXPECT_EQ(qstd::NiceBelow(4999.0), 2000.0);
    EXPECT_EQ(qstd::NiceBelow(5000.0), 5000.0);
    EXPECT_NEAR(qstd::NiceBelow(0.07), 0.05, 1e-15);
}

TEST(GroupedText, GroupsDigitsByThree)
{
    EXPECT_EQ(qstd::GroupedText(500.0), "500");
    EXPECT_EQ(qstd::GroupedText(2500.0), "2500");
    EXPECT_EQ(qstd::GroupedText(25000.0), "25 000");
    EXPECT_EQ(qstd::GroupedText(1000000.0), "1 000 000");
    EXPECT_EQ(qstd::GroupedText(0.05), "0.05");
    EXPECT_EQ(qstd::ScaleText(50000.0), "1:50 000");
    EXPECT_EQ(qstd::ScaleText(1.0), "1:1");
    EXPECT_EQ(qstd::ScaleText(0.05), "20:1");
}
