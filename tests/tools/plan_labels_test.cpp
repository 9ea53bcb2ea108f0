#include "plan_labels.h"

#include <optional>
#include <vector>

#include <gtest/gtest.h>

using qstd::LabelPlace;
using qstd::LabelPlacer;
using qstd::SheetBox;
using qstd::SheetLine;
using qstd::SheetPoint;

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
