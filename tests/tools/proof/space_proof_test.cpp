// Figures small enough to be worked by hand, right, and with each part of the result moved.
#include "proof/space_proof.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace qstd;

namespace {

constexpr double PI = 3.14159265358979323846;
constexpr double PLANTED = 1e-5;
constexpr AngleUnit DEGREE = 57600;

PointRecord Point(double northing, double easting, double height)
{
    return {northing, easting, height, POINT_HAS_PLAN | POINT_HAS_HEIGHT};
}

/** Holds for the point, and for none moved along an axis. */
template <typename Prove>
void ExpectOnlyAt(const PointRecord& point, Prove prove)
{
    EXPECT_TRUE(prove(point).Holds());
    for (double PointRecord::*const part : {&PointRecord::northing, &PointRecord::easting, &PointRecord::height})
    {
        for (const double by : {-PLANTED, PLANTED, 7.0, -3000.0})
        {
            PointRecord moved = point;
            moved.*part += by;
            EXPECT_FALSE(prove(moved).Holds()) << by;
        }
    }
}

} // namespace

TEST(SpaceProof, SeesAHiddenPointOffItsRod)
{
    // The rod goes 2, 3, 6 over 7 m; half its length further is 1, 1.5, 3 more.
    const PointRecord far = Point(100, 200, 30);
    const PointRecord near = Point(102, 203, 36);
    ExpectOnlyAt(Point(103, 204.5, 39),
                 [&](const PointRecord& hidden) { return ProveRod(far, near, 0.0, 3.5, hidden, 7.0); });
    EXPECT_FALSE(ProveRod(far, near, 0.0, 3.5, Point(103, 204.5, 39), 7.001).Holds());
    // In units of a nominal spacing of 3.5 the same is reached by 1.75.
    EXPECT_TRUE(ProveRod(far, near, 3.5, 1.75, Point(103, 204.5, 39), 7.0).Holds());
    EXPECT_FALSE(ProveRod(far, near, 3.4, 1.75, Point(103, 204.5, 39), 7.0).Holds());
}

TEST(SpaceProof, SeesAWrongPlaceAtASlope)
{
    // From height 10 at 0 to 8 at 4; 13 from the base (5, 12) at height 6: the slope is at 10 - 6.5 = 3.5, 2.5 below,
    // and has the height 6 at distance 8, 5 nearer.
    const SectionSlope slope = {0.0, 10.0, 4.0, 8.0};
    const PointRecord base = Point(100, 200, 0);
    const PointRecord point = Point(105, 212, 6);
    EXPECT_TRUE(ProveSlope(slope, base, point, {5.0, 2.5, 13.0}).Holds());
    EXPECT_TRUE(ProveSlope({0.0, 10.0, -4.0, 8.0}, base, point, {5.0, 2.5, 13.0}).Holds());
    EXPECT_FALSE(ProveSlope(slope, base, point, {5.0 + PLANTED, 2.5, 13.0}).Holds());
    EXPECT_FALSE(ProveSlope(slope, base, point, {5.0, 2.5 - PLANTED, 13.0}).Holds());
    EXPECT_FALSE(ProveSlope(slope, base, point, {5.0, 2.5, 13.0 + PLANTED}).Holds());
    EXPECT_FALSE(ProveSlope(slope, base, point, {-5.0, 2.5, 13.0}).Holds());
    EXPECT_TRUE(ProveSlope({1.0, 5.0, 3.0, 5.0}, base, point, {UNDEFINED_REAL, 1.0, 13.0}).Holds());
    EXPECT_TRUE(ProveSlope({3.0, 5.0, 3.0, 9.0}, base, point, {10.0, UNDEFINED_REAL, 13.0}).Holds());
}

TEST(SpaceProof, SeesACornerOffItsWalls)
{
    // The wall runs along (0.8, 0.6); the third point lies 5 beside its corner, which is 20 along.
    const PointRecord first = Point(100, 200, 1);
    const PointRecord second = Point(108, 206, 1);
    const PointRecord third = Point(116 - 3, 212 + 4, 1);
    EXPECT_TRUE(ProveCorner(first, second, third, Point(116, 212, 1)).Holds());
    EXPECT_FALSE(ProveCorner(first, second, third, Point(116 + PLANTED, 212, 1)).Holds());
    EXPECT_FALSE(ProveCorner(first, second, third, Point(116.8, 212.6, 1)).Holds());
    const PointRecord fourth = Point(116 - 6, 212 + 1, 1);
    EXPECT_FALSE(ProveCorner({first, second, third, fourth}, Point(116, 212, 1)).Holds());
    const PointRecord inLine = Point(116 - 6, 212 + 8, 1);
    EXPECT_TRUE(ProveCorner({first, second, third, inLine}, Point(116, 212, 1)).Holds());
    EXPECT_FALSE(ProveCorner({first, second, third, inLine}, Point(116, 212 + PLANTED, 1)).Holds());
}

TEST(SpaceProof, SeesASightPastItsPoint)
{
    // 3-4 in plan, 12 up: slope distance 13.
    const SpaceSight sight = {{100, 200, 50}, {0.6, 0.8}, std::atan2(5.0, 12.0)};
    const auto holds = [&sight](double distance, bool hasHeight, const PointRecord& target) {
        Proof proof;
        RequireExpectedSight(sight, distance, hasHeight, target, proof);
        return proof.Holds();
    };
    EXPECT_TRUE(holds(13.0, true, Point(103, 204, 62)));
    EXPECT_FALSE(holds(13.0001, true, Point(103, 204, 62)));
    EXPECT_FALSE(holds(13.0, true, Point(103, 204, 62.0001)));
    EXPECT_TRUE(holds(0.0, false, Point(103, 204, 0)));
    EXPECT_FALSE(holds(0.0, false, Point(103, 204.0001, 0)));
}

TEST(SpaceProof, SeesACircleOffItsSights)
{
    // Radius 3 about a centre 5 to the north of the station; the edges touch it under asin(3 / 5), the face is 2 off.
    const PlanVector station = {100, 200};
    const std::array<PlanVector, 2> edges = {{{0.8, -0.6}, {0.8, 0.6}}};
    const PlanVector face = {1, 0};
    EXPECT_TRUE(ProveColumn(station, edges, face, 2.0, {105, 200}, 3.0).Holds());
    EXPECT_FALSE(ProveColumn(station, edges, face, 2.0, {105 + PLANTED, 200}, 3.0).Holds());
    EXPECT_FALSE(ProveColumn(station, edges, face, 2.0, {105, 200}, 3.0 + PLANTED).Holds());
    EXPECT_FALSE(ProveColumn(station, edges, face, 2.0 + PLANTED, {105, 200}, 3.0).Holds());
    // The far side, and the circle behind.
    EXPECT_FALSE(ProveColumn(station, edges, face, 8.0, {105, 200}, 3.0).Holds());
    EXPECT_FALSE(ProveColumn(station, edges, face, 2.0, {95, 200}, 3.0).Holds());
}

TEST(SpaceProof, SeesAPointOffItsEdge)
{
    // The edge rises 6 over 8 to the north and 6 to the east; the sight goes north along easting 203 and meets it
    // half-way.
    const PointRecord first = Point(100, 200, 10);
    const PointRecord second = Point(108, 206, 16);
    const SpaceSight sight = {{90, 203, 0}, {1, 0}, 1.0};
    ExpectOnlyAt(Point(104, 203, 13),
                 [&](const PointRecord& target) { return ProveEdge(first, second, sight, target); });
    // The same distance beyond the second point in place of before it.
    EXPECT_FALSE(ProveEdge(first, second, sight, Point(112, 209, 19)).Holds());
}

TEST(SpaceProof, SeesAPointOffAVerticalPlane)
{
    // The trace goes north-east; from 10 south of its first point a sight to the east, rising 1 in 2, meets it... at
    // the point 10 south-west along it, 10 to the west: behind. To the west it is ahead, 5 higher.
    const PointRecord first = Point(100, 200, 10);
    const PointRecord second = Point(110, 210, 12);
    const SpaceSight sight = {{90, 200, 11}, {0, -1}, std::atan2(2.0, 1.0)};
    const double along = -10.0 * std::sqrt(2.0);
    ExpectOnlyAt(Point(90, 190, 16),
                 [&](const PointRecord& point) { return ProveVerticalPlane(first, second, sight, point, along, 6.0); });
    EXPECT_FALSE(ProveVerticalPlane(first, second, sight, Point(90, 190, 16), -along, 6.0).Holds());
    EXPECT_FALSE(ProveVerticalPlane(first, second, sight, Point(90, 190, 16), along, 5.99).Holds());
}

TEST(SpaceProof, SeesAPointOffAPlaneInSpace)
{
    // The plane rises 3 over 4 to the north, level to the east. From 10 above its first point a sight straight to the
    // north, level, meets it at 40 / 3 to the north: 50 / 3 across the baseline, 0 along.
    const SpacePlane plane = {{100, 200, 5}, {100, 210, 5}, {104, 203, 8}};
    const SpaceSight sight = {{100, 200, 15}, {1, 0}, PI / 2.0};
    const double across = 50.0 / 3.0;
    ExpectOnlyAt(Point(100 + 40.0 / 3.0, 200, 15),
                 [&](const PointRecord& point) { return ProveSpacePlane(plane, sight, point, 0.0, across); });
    // Either sense of across is right, of along only one.
    const SpaceSight aside = {{100, 206, 15}, {1, 0}, PI / 2.0};
    const PointRecord met = Point(100 + 40.0 / 3.0, 206, 15);
    EXPECT_TRUE(ProveSpacePlane(plane, aside, met, 6.0, across).Holds());
    EXPECT_TRUE(ProveSpacePlane(plane, aside, met, 6.0, -across).Holds());
    EXPECT_FALSE(ProveSpacePlane(plane, aside, met, -6.0, across).Holds());
    EXPECT_FALSE(ProveSpacePlane(plane, aside, met, 6.0, across + PLANTED).Holds());
}

TEST(SpaceProof, SeesAWrongRemoteElevation)
{
    // The base 50 away under 3-4-5: 40 off, 30 up. Under 4-3 the height at 40 off is 160 / 3 over the axis.
    const RemoteBase base = {10 * DEGREE, std::atan2(4.0, 3.0), 50.0};
    const double zenith = std::atan2(3.0, 4.0);
    const double height = 160.0 / 3.0 - 30.0;
    EXPECT_TRUE(ProveRemoteElevation(base, 10 * DEGREE, zenith, height, 0.0).Holds());
    EXPECT_FALSE(ProveRemoteElevation(base, 10 * DEGREE, zenith, height + PLANTED * 10.0, 0.0).Holds());
    EXPECT_FALSE(ProveRemoteElevation(base, 10 * DEGREE, zenith, height, PLANTED).Holds());
    const double offset = 40.0 * std::tan(7.0 / 180.0 * PI);
    EXPECT_TRUE(ProveRemoteElevation(base, 17 * DEGREE, zenith, height, offset).Holds());
    EXPECT_FALSE(ProveRemoteElevation(base, 17 * DEGREE, zenith, height, -offset).Holds());
    // There the plane is 40 / cos 7 away: 160 / 3 / cos 7 - 160 / 3 = 0.4005 more.
    EXPECT_NEAR(HeightMissedAside(base, 17 * DEGREE, zenith), 0.4005, 1e-4);
    EXPECT_NEAR(HeightMissedAside(base, 3 * DEGREE, zenith), 0.4005, 1e-4);
    EXPECT_EQ(HeightMissedAside(base, 10 * DEGREE, zenith), 0.0);
}
