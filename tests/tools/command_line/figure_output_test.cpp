#include "command_line/figure_output.h"

#include "output/test_folder.h"
#include "text/outcome.h"

#include <string>

#include <gtest/gtest.h>

using qstd::FigureExtent;
using qstd::FigureOutput;
using qstd::FigurePoint;
using qstd::OutputOptions;

namespace {

double TextHeight(double northing, double easting)
{
    FigureExtent extent;
    extent.Add({1000.0, 2000.0, std::nullopt});
    extent.Add({1000.0 + northing, 2000.0 + easting, std::nullopt});
    return extent.TextHeight();
}

class FigureFiles : public TestFolder
{
};

void AddPoints(FigureOutput& output, size_t count)
{
    output.Begin({});
    for (size_t i = 0; i < count; ++i)
    {
        FigurePoint point;
        point.place.northing = static_cast<double>(i);
        output.Add(point);
    }
}

} // namespace

TEST(FigureExtent, NamesAreAHundredthOfTheLongerSide)
{
    EXPECT_DOUBLE_EQ(1.0, TextHeight(100.0, 50.0));
    EXPECT_DOUBLE_EQ(1.0, TextHeight(-50.0, -100.0));
}

TEST(FigureExtent, NamesHaveARoundHeight)
{
    EXPECT_DOUBLE_EQ(1.0, TextHeight(199.0, 0.0));
    EXPECT_DOUBLE_EQ(2.0, TextHeight(201.0, 0.0));
    EXPECT_DOUBLE_EQ(5.0, TextHeight(999.0, 0.0));
    EXPECT_DOUBLE_EQ(0.05, TextHeight(7.0, 0.0));
}

TEST(FigureExtent, AFigureWithoutSizeHasNamesAllTheSame)
{
    EXPECT_DOUBLE_EQ(1.0, TextHeight(0.0, 0.0));
    EXPECT_DOUBLE_EQ(1.0, FigureExtent().TextHeight());
}

TEST(FigureExtent, WhatIsNotANumberIsNotLookedAt)
{
    EXPECT_DOUBLE_EQ(1.0, TextHeight(std::numeric_limits<double>::quiet_NaN(), 3.0));
}

TEST(FigureOutput, IsWantedWhereAFileIsNamed)
{
    OutputOptions options;
    EXPECT_FALSE(FigureOutput(options).IsWanted());
    options.geoJson = "a.json";
    EXPECT_TRUE(FigureOutput(options).IsWanted());
}

TEST(FigureOutput, RefusesWhatAPlanDoesNotHold)
{
    OutputOptions options;
    options.svg = "plan.svg";
    FigureOutput output(options);
    output.Begin({});
    for (size_t i = 0; i < qstd::MOST_FIGURE_PARTS; ++i)
    {
        output.Add(FigurePoint());
    }
    EXPECT_THROW(output.Add(FigurePoint()), qstd::WrongUse);
}

TEST_F(FigureFiles, ADrawingHoldsMoreThanAPlan)
{
    const size_t count = qstd::MOST_FIGURE_PARTS + 1;
    OutputOptions options;
    options.dxf = Path("plan.dxf");
    FigureOutput output(options);
    AddPoints(output, count);
    ASSERT_EQ(output.StartWriting(), "");
    AddPoints(output, count);
    EXPECT_EQ(output.Complete() + output.Commit(), "");
    const std::string drawn = ContentOf("plan.dxf");
    size_t points = 0;
    for (size_t at = drawn.find("\nPOINT\n"); at != std::string::npos; at = drawn.find("\nPOINT\n", at + 1))
    {
        ++points;
    }
    EXPECT_EQ(points, count);
}

TEST_F(FigureFiles, HaveNoNamesWhileTheyAreOnlyComplete)
{
    OutputOptions options;
    options.svg = Made("plan.svg", "before");
    options.dxf = Path("plan.dxf");
    options.geoJson = Path("plan.json");
    {
        FigureOutput output(options);
        AddPoints(output, 3);
        ASSERT_EQ(output.StartWriting(), "");
        AddPoints(output, 3);
        EXPECT_EQ(output.Complete(), "");
        EXPECT_EQ(ContentOf("plan.svg"), "before");
        EXPECT_EQ(ContentOf("plan.dxf") + ContentOf("plan.json"), "");
    }
    EXPECT_EQ(Count(), 1U);
}
