#include "plan/sheet_arc.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include <gtest/gtest.h>

using qstd::BoundingBox;
using qstd::Chords;
using qstd::SheetArc;
using qstd::SheetBox;
using qstd::SheetPoint;
using qstd::VisibleChords;

namespace {

constexpr double PI = 3.14159265358979323846;
constexpr SheetBox FRAME = {0.0, 0.0, 100.0, 50.0};

void ExpectBox(const SheetBox& box, const SheetBox& expected)
{
    EXPECT_NEAR(box.left, expected.left, 1e-9);
    EXPECT_NEAR(box.top, expected.top, 1e-9);
    EXPECT_NEAR(box.right, expected.right, 1e-9);
    EXPECT_NEAR(box.bottom, expected.bottom, 1e-9);
}

} // namespace

TEST(SheetArc, IsBoundedByItsEndsAndTheQuartersItPasses)
{
    const double diagonal = 10.0 * std::sqrt(0.5);
    // From north-east to south-east, past the east; up is towards smaller y.
    ExpectBox(BoundingBox({{0.0, 0.0}, 10.0, PI / 4.0, PI / 2.0}), {diagonal, -diagonal, 10.0, diagonal});
    ExpectBox(BoundingBox({{0.0, 0.0}, 10.0, PI * 0.75, -PI / 2.0}), {diagonal, -diagonal, 10.0, diagonal});
    // From north-west to north-east, past the north.
    ExpectBox(BoundingBox({{5.0, 5.0}, 10.0, -PI / 4.0, PI / 2.0}),
              {5.0 - diagonal, -5.0, 5.0 + diagonal, 5.0 - diagonal});
    ExpectBox(BoundingBox({{5.0, 5.0}, 10.0, 1.0, 2.0 * PI}), {-5.0, -5.0, 15.0, 15.0});
}

TEST(SheetArc, HasChordsThatStayNearIt)
{
    const SheetArc arc = {{3.0, 4.0}, 80.0, 0.3, -2.0};
    const std::vector<SheetPoint> points = Chords(arc, 0.01);
    EXPECT_NEAR(points.front().x, 3.0 + 80.0 * std::sin(0.3), 1e-9);
    EXPECT_NEAR(points.front().y, 4.0 - 80.0 * std::cos(0.3), 1e-9);
    EXPECT_NEAR(points.back().x, 3.0 + 80.0 * std::sin(-1.7), 1e-9);
    for (size_t i = 1; i < points.size(); ++i)
    {
        const double x = (points[i - 1].x + points[i].x) / 2.0 - 3.0;
        const double y = (points[i - 1].y + points[i].y) / 2.0 - 4.0;
        EXPECT_LE(80.0 - std::hypot(x, y), 0.01);
    }
}

TEST(SheetArc, ShowsThroughABoxInParts)
{
    // A circle of 30 about the middle of a box of 100 x 50 leaves it above and below: at x = 50 -+ sqrt(900 - 625).
    const double reach = std::sqrt(275.0);
    const auto runs = VisibleChords({{50.0, 25.0}, 30.0, 0.0, 2.0 * PI}, FRAME, 0.01);
    ASSERT_EQ(runs.size(), 2U);
    // Clockwise from the north: first the right part, from above to below.
    EXPECT_NEAR(runs[0].front().x, 50.0 + reach, 1e-9);
    EXPECT_NEAR(runs[0].front().y, 0.0, 1e-9);
    EXPECT_NEAR(runs[0].back().x, 50.0 + reach, 1e-9);
    EXPECT_NEAR(runs[0].back().y, 50.0, 1e-9);
    EXPECT_NEAR(runs[1].front().x, 50.0 - reach, 1e-9);
    EXPECT_NEAR(runs[1].front().y, 50.0, 1e-9);
    for (const auto& run : runs)
    {
        for (const SheetPoint& point : run)
        {
            EXPECT_NEAR(std::hypot(point.x - 50.0, point.y - 25.0), 30.0, 1e-9);
        }
    }
}

TEST(SheetArc, ShowsNothingOfACircleThatPassesAround)
{
    EXPECT_TRUE(VisibleChords({{50.0, 25.0}, 60.0, 0.0, 2.0 * PI}, FRAME, 0.01).empty());
    EXPECT_TRUE(VisibleChords({{500.0, 25.0}, 60.0, 0.0, 2.0 * PI}, FRAME, 0.01).empty());
    // This one would pass through, but its sweep ends before.
    EXPECT_TRUE(VisibleChords({{50.0, 1050.0}, 1020.0, 0.5, 5.0}, FRAME, 0.01).empty());
    EXPECT_EQ(VisibleChords({{50.0, 1050.0}, 1020.0, 0.5, -5.0}, FRAME, 0.01).size(), 1U);
}

TEST(SheetArc, StaysInItsBoxHoweverLargeItsRadius)
{
    for (int power = 3; power <= 14; ++power)
    {
        const double radius = std::pow(10.0, power);
        const auto runs = VisibleChords({{50.0, 25.0 + radius}, radius, 1.0, 2.0 * PI}, FRAME, 0.01);
        for (const auto& run : runs)
        {
            for (const SheetPoint& point : run)
            {
                EXPECT_GE(point.x, FRAME.left);
                EXPECT_LE(point.x, FRAME.right);
                EXPECT_GE(point.y, FRAME.top);
                EXPECT_LE(point.y, FRAME.bottom);
            }
        }
        if (power <= 9)
        {
            ASSERT_EQ(runs.size(), 1U) << radius;
            EXPECT_NEAR(std::fabs(runs[0].back().x - runs[0].front().x), 100.0, 1e-3) << radius;
        }
    }
}
