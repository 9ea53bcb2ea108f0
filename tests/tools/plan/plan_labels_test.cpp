#include "plan/plan_labels.h"

#include <cmath>
#include <optional>
#include <vector>

#include <gtest/gtest.h>

using qstd::LabelPlace;
using qstd::LabelPlacer;
using qstd::SheetBox;
using qstd::SheetLine;
using qstd::SheetPoint;
using qstd::TurnedBox;

namespace {

constexpr SheetBox FRAME = {0.0, 0.0, 100.0, 100.0};
constexpr SheetPoint MIDDLE = {50.0, 50.0};
constexpr SheetPoint RIGHT = {1.0, 0.0};

bool Overlap(const SheetBox& one, const SheetBox& other)
{
    return one.left < other.right && other.left < one.right && one.top < other.bottom && other.top < one.bottom;
}

} // namespace

TEST(LabelPlacer, PlacesALabelOutwardFirst)
{
    LabelPlacer labels(FRAME);
    const std::optional<LabelPlace> place = labels.Place(MIDDLE, 10.0, 4.0, 2.0, RIGHT);
    ASSERT_TRUE(place.has_value());
    // 2 to the right of the point, centred in height.
    EXPECT_NEAR(place->box.left, 52.0, 1e-9);
    EXPECT_NEAR(place->box.right, 62.0, 1e-9);
    EXPECT_NEAR(place->box.top, 48.0, 1e-9);
    EXPECT_FALSE(place->leader.has_value());
}

TEST(LabelPlacer, KeepsLabelsOfOnePointApart)
{
    LabelPlacer labels(FRAME);
    std::vector<SheetBox> boxes;
    for (int i = 0; i < 8; ++i)
    {
        const std::optional<LabelPlace> place = labels.Place(MIDDLE, 10.0, 4.0, 2.0, RIGHT);
        ASSERT_TRUE(place.has_value()) << i;
        for (const SheetBox& other : boxes)
        {
            EXPECT_FALSE(Overlap(place->box, other)) << i;
        }
        boxes.push_back(place->box);
    }
}

TEST(LabelPlacer, AvoidsObstaclesAndTheEdge)
{
    LabelPlacer labels(FRAME);
    labels.AddObstacle(SheetLine{{0.0, 50.0}, {100.0, 50.0}});
    const std::optional<LabelPlace> place = labels.Place({98.0, 50.0}, 10.0, 4.0, 2.0, RIGHT);
    ASSERT_TRUE(place.has_value());
    EXPECT_LE(place->box.right, 100.0);
    EXPECT_TRUE(place->box.bottom < 50.0 || place->box.top > 50.0);
}

TEST(LabelPlacer, TiesADistantLabelToItsPoint)
{
    LabelPlacer labels(FRAME);
    labels.AddObstacle(SheetBox{40.0, 40.0, 60.0, 60.0});
    const std::optional<LabelPlace> place = labels.Place(MIDDLE, 10.0, 4.0, 2.0, RIGHT);
    ASSERT_TRUE(place.has_value());
    EXPECT_FALSE(Overlap(place->box, {40.0, 40.0, 60.0, 60.0}));
    ASSERT_TRUE(place->leader.has_value());
    EXPECT_NEAR(place->leader->to.x, place->box.left, 1e-9);
}

TEST(LabelPlacer, GivesUpWhereThereIsNoRoom)
{
    LabelPlacer labels(FRAME);
    EXPECT_FALSE(labels.Place(MIDDLE, 101.0, 4.0, 2.0, RIGHT).has_value());
    labels.AddObstacle(FRAME);
    EXPECT_FALSE(labels.Place(MIDDLE, 10.0, 4.0, 2.0, RIGHT).has_value());
}

TEST(TurnedBox, HasCornersAroundItsMiddle)
{
    // A quarter turn clockwise: the upper left corner, 5 left and 1 above, comes to lie 1 right and 5 above.
    const std::array<SheetPoint, 4> corners = TurnedBox{MIDDLE, 10.0, 2.0, std::acos(-1.0) / 2.0}.Corners();
    EXPECT_NEAR(corners[0].x, 51.0, 1e-9);
    EXPECT_NEAR(corners[0].y, 45.0, 1e-9);
    EXPECT_NEAR(corners[2].x, 49.0, 1e-9);
    EXPECT_NEAR(corners[2].y, 55.0, 1e-9);
}

TEST(LabelPlacer, TakesTheFirstFreeOfTurnedPlaces)
{
    const double turn = std::acos(-1.0) / 4.0;
    const TurnedBox upon = {{50.0, 50.0}, 20.0, 2.0, turn};
    // Beside the diagonal by 4 / sqrt(2) = 2.8, which is more than half the height and the margin of 0.5.
    const TurnedBox beside = {{54.0, 50.0}, 20.0, 2.0, turn};
    const TurnedBox outside = {{2.0, 50.0}, 20.0, 2.0, turn};
    LabelPlacer labels(FRAME);
    labels.AddObstacle(SheetLine{{0.0, 0.0}, {100.0, 100.0}});
    const std::optional<TurnedBox> first = labels.PlaceFirst({outside, upon, beside});
    ASSERT_TRUE(first.has_value());
    EXPECT_EQ(first->middle.x, 54.0);
    EXPECT_FALSE(labels.PlaceFirst({outside, upon, beside}).has_value());
    EXPECT_FALSE(labels.PlaceFirst({}).has_value());
}

TEST(LabelPlacer, LetsABoxStandBesideATurnedOne)
{
    // The band from (40, 40) to (60, 60), 2 wide. Its bounding box covers the corner (58, 44), the band does not.
    LabelPlacer labels(FRAME);
    labels.AddObstacle(TurnedBox{MIDDLE, 20.0 * std::sqrt(2.0), 2.0, std::acos(-1.0) / 4.0});
    EXPECT_TRUE(labels.PlaceFirst({{{58.0, 44.0}, 4.0, 4.0, 0.0}}).has_value());
    EXPECT_FALSE(labels.PlaceFirst({{{54.0, 52.0}, 4.0, 4.0, 0.0}}).has_value());
    // A name goes around the band as it goes around a line, and a leader does not cross it.
    const std::optional<LabelPlace> name = labels.Place({45.0, 45.0}, 10.0, 4.0, 2.0, RIGHT);
    ASSERT_TRUE(name.has_value());
    EXPECT_FALSE(Overlap(name->box, {44.0, 44.0, 46.0, 46.0}));
}
