#include "proof/stake_proof.h"

#include "verbs/random_call.h"

#include <gtest/gtest.h>

using namespace qstd;
using namespace random_call;

namespace {

constexpr int CASES = 20000;
constexpr double PLANTED = 2e-5;

PointRecord Point(const Place& place)
{
    return {place.northing, place.easting, place.height, POINT_HAS_PLAN | POINT_HAS_HEIGHT};
}

} // namespace

TEST(StakeLine, SeesAWrongStationOffsetFootOrHeight)
{
    Chance chance(51);
    for (int i = 0; i < CASES; ++i)
    {
        const Place first = chance.Anywhere();
        const double length = chance.Sized(0.1, 1e5);
        const PointRecord start = Point(first);
        const PointRecord end = Point(Moved(first, chance.Direction(), length, 0.01 * length));
        const PointRecord point = Point(Moved(first, chance.Direction(), chance.Length(), 3.0));
        ASSERT_EQ(QREFSetBaseLine(&start, &end), QSTD_OK);
        ReferenceLineResult right{};
        ASSERT_EQ(QREFCalc(&point, &right), QSTD_OK);
        const StakeLine line(start, end);
        ASSERT_TRUE(line.Prove(point, right).Holds());
        for (double ReferenceLineResult::*const part :
             {&ReferenceLineResult::station, &ReferenceLineResult::offset, &ReferenceLineResult::heightDifference})
        {
            ReferenceLineResult wrong = right;
            wrong.*part += chance.Sign() * PLANTED;
            ASSERT_FALSE(line.Prove(point, wrong).Holds());
        }
        ReferenceLineResult wrong = right;
        wrong.foot.easting += PLANTED;
        ASSERT_FALSE(line.Prove(point, wrong).Holds());
        wrong = right;
        wrong.foot.height += PLANTED;
        ASSERT_FALSE(line.Prove(point, wrong).Holds());
    }
}

TEST(StakeArc, LeadsAlongTheArcAndItsTangents)
{
    // From (0, 0) to the north, to the right with radius 100: after a quarter circle (100, 100), heading east.
    const double quarter = 100.0 * PI / 2.0;
    const StakeArc arc({0.0, 0.0}, 0.0, 100.0, quarter);
    EXPECT_NEAR(arc.At(quarter, 0.0).north, 100.0, 1e-9);
    EXPECT_NEAR(arc.At(quarter, 0.0).east, 100.0, 1e-9);
    EXPECT_NEAR(arc.At(quarter + 20.0, 7.0).north, 93.0, 1e-9);
    EXPECT_NEAR(arc.At(quarter + 20.0, 7.0).east, 120.0, 1e-9);
    EXPECT_NEAR(arc.At(-30.0, -4.0).north, -30.0, 1e-9);
    EXPECT_NEAR(arc.At(-30.0, -4.0).east, -4.0, 1e-9);
    // To the left: the mirror image.
    const StakeArc left({0.0, 0.0}, 0.0, -100.0, quarter);
    EXPECT_NEAR(left.At(quarter + 20.0, -7.0).north, 93.0, 1e-9);
    EXPECT_NEAR(left.At(quarter + 20.0, -7.0).east, -120.0, 1e-9);
}

TEST(StakeArc, SeesAWrongDistanceAlongOrOffset)
{
    Chance chance(52);
    for (int i = 0; i < CASES; ++i)
    {
        const Place from = chance.Anywhere();
        const double radius = chance.Sign() * chance.Sized(1.0, 1e4);
        const double length = std::fabs(radius) * chance.Between(0.1, 5.0);
        const StakeArc arc({from.northing, from.easting}, chance.Direction(), radius, length);
        const double along = length * chance.Between(-1.0, 2.0);
        const double offset = radius * chance.Between(-2.0, 0.9);
        const PlanVector place = arc.At(along, offset);
        const PointRecord point = {place.north, place.east, 0.0, POINT_HAS_PLAN};
        ASSERT_TRUE(ProveOnArc(arc, point, along, offset).Holds());
        // Four units each over at most four radii and a length of arc: 10 * 3e-7 * 9 radii, ten times over.
        const double planted = PLANTED + 3e-4 * std::fabs(radius);
        ASSERT_FALSE(ProveOnArc(arc, point, along + chance.Sign() * planted * 10.0, offset).Holds());
        ASSERT_FALSE(ProveOnArc(arc, point, along, offset + chance.Sign() * planted).Holds());
    }
}

TEST(StakeArc, SeesAnArcThatIsNotTheOneAskedFor)
{
    // Radius 120, tangent 62 degrees, by 50 degrees to the right: 120 * 50 / 180 * pi long.
    constexpr AngleUnit DEGREE = 57600;
    const double length = 120.0 * 50.0 / 180.0 * PI;
    const double start = 62.0 / 180.0 * PI;
    const ArcParams params = {62 * DEGREE, 112 * DEGREE, 120.0, length, 50 * DEGREE};
    ArcWish wish;
    wish.startAzimuth = 62 * DEGREE;
    wish.endAzimuth = 112 * DEGREE;
    wish.radius = 120.0;
    const auto holds = [&wish, &params](const StakeArc& arc) { return ProveArc(arc, params, wish).Holds(); };
    const PlanVector from = {1000.0, 2000.0};
    const StakeArc right(from, start, 120.0, length);
    EXPECT_TRUE(holds(right));
    EXPECT_FALSE(holds({from, start, 120.001, length}));
    EXPECT_FALSE(holds({from, start, 120.0, length + 0.01}));
    EXPECT_FALSE(holds({from, start, -120.0, length}));
    wish.end = right.At(length + 30.0, 0.0);
    EXPECT_TRUE(holds(right));
    wish.end = right.At(length + 30.0, 0.001);
    EXPECT_FALSE(holds(right));
    wish.end.reset();
    wish.length = length;
    EXPECT_TRUE(holds(right));
    wish.length = length + 0.001;
    EXPECT_FALSE(holds(right));
    wish.length.reset();
    wish.startAzimuth = 63 * DEGREE;
    EXPECT_FALSE(holds(right));
}
