#include "proof/crossing_sides.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

using namespace qstd;

namespace {

using Corners = std::vector<PlanVector>;

constexpr size_t MOST = 100;

size_t CountIn(const Corners& corners)
{
    return FindCrossings(corners, MOST).size();
}

/** The same figure turned, moved far away, and from every corner on either way round. */
void ExpectFromAnywhere(const Corners& corners, size_t count)
{
    for (const double turn : {0.0, 0.3, 1.1, 2.7})
    {
        Corners moved;
        for (const PlanVector& corner : corners)
        {
            moved.push_back({6600000.0 + corner.north * std::cos(turn) - corner.east * std::sin(turn),
                             300000.0 + corner.north * std::sin(turn) + corner.east * std::cos(turn)});
        }
        for (size_t start = 0; start < moved.size(); ++start)
        {
            std::rotate(moved.begin(), moved.begin() + 1, moved.end());
            EXPECT_EQ(CountIn(moved), count) << turn << ' ' << start;
            Corners back(moved.rbegin(), moved.rend());
            EXPECT_EQ(CountIn(back), count) << turn << ' ' << start;
        }
    }
}

} // namespace

TEST(FindCrossings, NamesTheSidesAndThePlace)
{
    // From (0, 0) to (12, 20) and from (0, 20) to (12, 0): half-way.
    const std::vector<Crossing> found = FindCrossings({{0, 0}, {12, 20}, {0, 20}, {12, 0}}, MOST);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].first, 0U);
    EXPECT_EQ(found[0].second, 2U);
    EXPECT_NEAR(found[0].place.north, 6.0, 1e-12);
    EXPECT_NEAR(found[0].place.east, 10.0, 1e-12);
}

TEST(FindCrossings, FindsNoneInASimpleFigure)
{
    ExpectFromAnywhere({{0, 0}, {0, 30}, {20, 40}, {35, 10}}, 0);
    // A re-entrant corner.
    ExpectFromAnywhere({{0, 0}, {0, 30}, {10, 12}, {35, 10}}, 0);
    EXPECT_EQ(CountIn({{0, 0}, {0, 30}, {10, 12}}), 0U);
    EXPECT_EQ(CountIn({}), 0U);
}

TEST(FindCrossings, IgnoresRepeatedCorners)
{
    ExpectFromAnywhere({{0, 0}, {0, 30}, {0, 30}, {20, 40}, {35, 10}, {0, 0}}, 0);
    // The second crossing side is that from the corner at place 3.
    const std::vector<Crossing> found = FindCrossings({{0, 0}, {12, 20}, {12, 20}, {0, 20}, {12, 0}, {0, 0}}, MOST);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].second, 3U);
}

TEST(FindCrossings, FindsACrossingOfEverySort)
{
    ExpectFromAnywhere({{0, 0}, {12, 20}, {0, 20}, {12, 0}}, 1);
    // Through a corner of its own: (5, 5) is passed twice, from one side to the other.
    ExpectFromAnywhere({{0, 0}, {5, 5}, {10, 11}, {10, 0}, {5, 5}, {0, 10}}, 1);
    // A corner on another side, from where the boundary goes on to the far side of it.
    ExpectFromAnywhere({{0, 0}, {0, 30}, {20, 30}, {0, 12}, {-9, 5}, {25, 3}}, 2);
    // Along another side for a while, and off to the other hand.
    ExpectFromAnywhere({{0, 0}, {0, 40}, {20, 40}, {0, 30}, {0, 20}, {-15, 10}, {30, 1}}, 2);
}

TEST(FindCrossings, LetsSidesTouch)
{
    // A corner on the opposite side, which comes from inside and goes back there.
    ExpectFromAnywhere({{0, 0}, {0, 30}, {20, 30}, {0, 12}, {20, 3}}, 0);
    // Two triangles with a common corner, both clockwise; with the second one the other way round it is crossed.
    ExpectFromAnywhere({{10, 11}, {20, 5}, {20, 15}, {10, 11}, {0, 15}, {0, 5}}, 0);
    ExpectFromAnywhere({{10, 11}, {20, 5}, {20, 15}, {10, 11}, {0, 5}, {0, 15}}, 1);
    // A hole, with a bridge that is gone there and back.
    ExpectFromAnywhere({{0, 0}, {0, 40}, {40, 40}, {40, 0}, {0, 0}, {10, 12}, {30, 12}, {30, 32}, {10, 32}, {10, 12}},
                       0);
    // A spike.
    ExpectFromAnywhere({{0, 0}, {0, 30}, {20, 30}, {20, 12}, {50, 12}, {20, 12}, {20, 3}}, 0);
}

TEST(FindCrossings, TakesRoundedCoordinatesForTouching)
{
    // The corner on the side is 0.4 mm beyond it.
    EXPECT_EQ(CountIn({{0, 0}, {0, 30}, {20, 30}, {-0.0004, 12}, {20, 3}}), 0U);
    EXPECT_EQ(CountIn({{0, 0}, {0, 30}, {20, 30}, {-0.0100, 12}, {20, 3}}), 2U);
}

TEST(FindCrossings, StopsWhereThereAreEnough)
{
    std::mt19937_64 generator(7);
    Corners scribble;
    for (int i = 0; i < 5000; ++i)
    {
        scribble.push_back({static_cast<double>(generator() % 10000), static_cast<double>(generator() % 10000)});
    }
    EXPECT_EQ(CountIn(scribble), MOST);
}

TEST(FindCrossings, FindsTheSameAsAnEveryPairSearch)
{
    // Corners of random polygons lie far enough from other sides that signs tell: no touching here.
    std::mt19937_64 generator(8);
    const auto right = [](const PlanVector& a, const PlanVector& b, const PlanVector& c) {
        return (b.north - a.north) * (c.east - a.east) - (b.east - a.east) * (c.north - a.north);
    };
    for (int trial = 0; trial < 2000; ++trial)
    {
        Corners corners;
        const size_t count = 4 + generator() % 6;
        for (size_t i = 0; i < count; ++i)
        {
            corners.push_back(
                {static_cast<double>(generator() % 100003) * 0.01, static_cast<double>(generator() % 100003) * 0.01});
        }
        size_t expected = 0;
        for (size_t i = 0; i < count; ++i)
        {
            for (size_t j = i + 2; j < count; ++j)
            {
                const auto& [a, b] = std::pair(corners[i], corners[i + 1]);
                const auto& [c, d] = std::pair(corners[j], corners[(j + 1) % count]);
                const bool isApart = (j + 1) % count != i;
                const bool isCrossing =
                    isApart && right(a, b, c) * right(a, b, d) < 0.0 && right(c, d, a) * right(c, d, b) < 0.0;
                expected += isCrossing ? 1U : 0U;
            }
        }
        EXPECT_EQ(CountIn(corners), expected) << trial;
    }
}

TEST(FindCrossings, WorksThroughSpikesInAllDirections)
{
    // Spikes in all directions, the figure that takes longest; the time for all corners stands in the header.
    Corners comb;
    for (int i = 0; i < 1600; ++i)
    {
        const double turn = 6.28 * i / 1600;
        comb.push_back({1000.0 * std::cos(turn), 1000.0 * std::sin(turn)});
        comb.push_back({10.0 * std::cos(turn + 0.002), 10.0 * std::sin(turn + 0.002)});
    }
    EXPECT_EQ(CountIn(comb), 0U);
}
