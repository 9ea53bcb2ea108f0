#include "text/unit.h"

#include <gtest/gtest.h>

using qstd::FromMetres;
using qstd::LinearUnit;
using qstd::ToMetres;
using qstd::UnitSymbol;

TEST(LinearUnit, TenFeetAreThreeMetresAndAnEighth)
{
    EXPECT_DOUBLE_EQ(ToMetres(10.0, LinearUnit::FOOT), 3.048);
    EXPECT_DOUBLE_EQ(FromMetres(3.048, LinearUnit::FOOT), 10.0);
}

TEST(LinearUnit, TheFootOfTheUsSurveyIsTwoMillionthsLonger)
{
    // 1200/3937 m: 3937 of these feet are 1200 m.
    EXPECT_DOUBLE_EQ(ToMetres(3937.0, LinearUnit::US_FOOT), 1200.0);
    EXPECT_DOUBLE_EQ(FromMetres(1200.0, LinearUnit::US_FOOT), 3937.0);
    EXPECT_NEAR(ToMetres(1.0, LinearUnit::US_FOOT) / 0.3048 - 1.0, 2e-6, 1e-8);
}

TEST(LinearUnit, MetresStayAsTheyAre)
{
    EXPECT_EQ(ToMetres(0.1, LinearUnit::METRE), 0.1);
    EXPECT_EQ(FromMetres(0.1, LinearUnit::METRE), 0.1);
}

TEST(LinearUnit, HasASymbol)
{
    EXPECT_EQ(UnitSymbol(LinearUnit::METRE), "m");
    EXPECT_EQ(UnitSymbol(LinearUnit::FOOT), "ft");
    EXPECT_EQ(UnitSymbol(LinearUnit::US_FOOT), "us-ft");
    EXPECT_EQ(AreaSymbol(LinearUnit::METRE), "m2");
    EXPECT_EQ(AreaSymbol(LinearUnit::FOOT), "sq ft");
    EXPECT_EQ(AreaSymbol(LinearUnit::US_FOOT), "sq us-ft");
}
