// Right results hold, every planted wrong one is seen: shifted by ten times what rounding is allowed.
#include "proof/plan_proof.h"

#include "verbs/random_call.h"

#include <gtest/gtest.h>

using namespace qstd;
using namespace random_call;

namespace {

constexpr int CASES = 20000;

/** Coordinates are below 1e7 and 1e5 more, lengths below 1e5: ten times RoundingOf of all of them. */
constexpr double PLANTED = 2e-5;

PointRecord Point(const Place& place, uint16_t flags = POINT_HAS_PLAN | POINT_HAS_HEIGHT)
{
    return {place.northing, place.easting, place.height, flags};
}

PointRecord Shifted(PointRecord point, double direction, double distance, double up = 0.0)
{
    point.northing += distance * std::cos(direction);
    point.easting += distance * std::sin(direction);
    point.height += up;
    return point;
}

} // namespace

TEST(PlanProof, SeesAWrongInverse)
{
    Chance chance(41);
    for (int i = 0; i < CASES; ++i)
    {
        const Place from = chance.Anywhere();
        const PointRecord start = Point(from);
        const PointRecord end = Point(Moved(from, chance.Direction(), chance.Length(), chance.Between(-50.0, 50.0)));
        AngDistRecord found{};
        ASSERT_EQ(QCogoCoordToAngDist(&start, &end, &found), QSTD_OK);
        const FoundWay right = {found.azimuth, found.horizontalDistance, found.zenith, found.slopeDistance,
                                found.heightDifference};
        ASSERT_TRUE(ProveInverse(start, end, right, false).Holds());
        FoundWay wrong = right;
        wrong.horizontalDistance += chance.Sign() * PLANTED;
        ASSERT_FALSE(ProveInverse(start, end, wrong, false).Holds());
        wrong = right;
        *wrong.heightDifference += chance.Sign() * PLANTED;
        ASSERT_FALSE(ProveInverse(start, end, wrong, false).Holds());
        wrong = right;
        *wrong.slopeDistance += chance.Sign() * PLANTED;
        ASSERT_FALSE(ProveInverse(start, end, wrong, false).Holds());
        // An angle shows where it leads aside by more than rounding.
        const auto units = static_cast<AngleUnit>(3.0 + PLANTED / (found.horizontalDistance * ANGLE_UNIT));
        wrong = right;
        *wrong.azimuth += units;
        ASSERT_FALSE(ProveInverse(start, end, wrong, false).Holds()) << found.horizontalDistance;
        wrong = right;
        *wrong.zenith += units;
        ASSERT_FALSE(ProveInverse(start, end, wrong, false).Holds());
        ASSERT_FALSE(ProveInverse(start, end, right, true).Holds() && found.horizontalDistance > 1.0);
    }
}

TEST(PlanProof, SeesAWrongForwardAndOffset)
{
    Chance chance(42);
    for (int i = 0; i < CASES; ++i)
    {
        const PointRecord from = Point(chance.Anywhere());
        const AngDistRecord asked = {static_cast<AngleUnit>(chance.Between(0.0, ANGLE_FULL_CIRCLE)), 0, 0.0,
                                     chance.Sign() * chance.Length(), chance.Between(-90.0, 90.0)};
        PointRecord result{};
        ASSERT_EQ(QCogoAngDistToCoord(&from, &asked, &result), QSTD_OK);
        ASSERT_TRUE(ProveForward(from, asked, result, false).Holds());
        ASSERT_FALSE(ProveForward(from, asked, Shifted(result, chance.Direction(), PLANTED), false).Holds());
        ASSERT_FALSE(ProveForward(from, asked, Shifted(result, 0.0, 0.0, PLANTED), false).Holds());

        const double chainage = chance.Sign() * chance.Length();
        const double offset = chance.Sign() * chance.Length();
        PointRecord end = Shifted(from, chance.Direction(), chance.Sized(0.1, 1e5), 0.0);
        end.height += 0.01 * PlanDistance(from, end);
        ASSERT_EQ(QCogoOffsetToCoord(&from, &end, chainage, offset, &result), QSTD_OK);
        ASSERT_TRUE(ProveOffset(from, end, chainage, offset, result).Holds());
        ASSERT_FALSE(ProveOffset(from, end, chainage, offset, Shifted(result, chance.Direction(), PLANTED)).Holds());
        ASSERT_FALSE(ProveOffset(from, end, chainage, offset, Shifted(result, 0.0, 0.0, -PLANTED)).Holds());
    }
}

TEST(PlanProof, SeesAWrongGrade)
{
    // 2.5 / 50 = 5 percent, 1 : 20. A hundredth of a percent is 5 mm over 50 m.
    EXPECT_TRUE(ProveGrade(50.0, -2.5, {-5.0, -20.0}).Holds());
    EXPECT_FALSE(ProveGrade(50.0, -2.5, {-5.01, -20.0}).Holds());
    EXPECT_FALSE(ProveGrade(50.0, -2.5, {-5.0, -20.01}).Holds());
    EXPECT_FALSE(ProveGrade(50.0, -2.5, {5.0, -20.0}).Holds());
}

TEST(PlanProof, SeesAPointBesideItsLines)
{
    Chance chance(43);
    for (int i = 0; i < CASES; ++i)
    {
        const PlanVector meeting = PlanOf(Point(chance.Anywhere()));
        const double one = chance.Direction();
        const double other = one + chance.Between(0.2, 2.9);
        const auto course = [&meeting, &chance](double direction) {
            const PlanVector unit = {std::cos(direction), std::sin(direction)};
            return Course{meeting + chance.Sign() * chance.Length() * unit, unit};
        };
        const Course first = course(one);
        const Course second = course(other);
        const PointRecord right = {meeting.north, meeting.east, 0.0, POINT_HAS_PLAN};
        ASSERT_TRUE(ProveCrossing(first, second, right).Holds());
        // Wherever it is moved, it leaves one of the lines by a tenth of that or more.
        ASSERT_FALSE(ProveCrossing(first, second, Shifted(right, chance.Direction(), 10.0 * PLANTED)).Holds());
    }
}

TEST(PlanProof, SeesWhatALineAndACircleDoNotShare)
{
    // 3-4-5: the line along northing 53 and the circle of radius 5 about (50, 20).
    const Course line = {{53.0, 0.0}, {0.0, 1.0}};
    const PlanCircle circle = {{50.0, 20.0}, 5.0};
    const PointRecord west = {53.0, 16.0, 0.0, POINT_HAS_PLAN};
    const PointRecord east = {53.0, 24.0, 0.0, POINT_HAS_PLAN};
    EXPECT_TRUE(ProveCrossing(line, circle, {west, east}).Holds());
    EXPECT_FALSE(ProveCrossing(line, circle, {}).Holds());
    EXPECT_FALSE(ProveCrossing(line, circle, {west, west}).Holds());
    EXPECT_FALSE(ProveCrossing(line, circle, {Shifted(west, 0.0, PLANTED), east}).Holds());
    EXPECT_FALSE(ProveCrossing(line, circle, {west, Shifted(east, 1.5, PLANTED)}).Holds());
    // A line that passes, or touches but for rounding.
    EXPECT_TRUE(ProveCrossing({{56.0, 0.0}, {0.0, 1.0}}, circle, {}).Holds());
    EXPECT_TRUE(ProveCrossing({{55.0, 0.0}, {0.0, 1.0}}, circle, {}).Holds());
}

TEST(PlanProof, SeesWhatTwoCirclesDoNotShare)
{
    const PlanCircle first = {{0.0, 0.0}, 5.0};
    const PlanCircle second = {{0.0, 8.0}, 5.0};
    const PointRecord right = {-3.0, 4.0, 0.0, POINT_HAS_PLAN};
    const PointRecord left = {3.0, 4.0, 0.0, POINT_HAS_PLAN};
    EXPECT_TRUE(ProveCrossing(first, second, {right, left}).Holds());
    EXPECT_FALSE(ProveCrossing(first, second, {}).Holds());
    EXPECT_FALSE(ProveCrossing(first, second, {right, right}).Holds());
    EXPECT_FALSE(ProveCrossing(first, second, {right, Shifted(left, 2.2, PLANTED)}).Holds());
    EXPECT_TRUE(ProveCrossing(first, {{0.0, 11.0}, 5.0}, {}).Holds());
    EXPECT_TRUE(ProveCrossing(first, {{0.0, 1.0}, 2.0}, {}).Holds());
}

TEST(PlanProof, SeesAWrongFoot)
{
    Chance chance(44);
    for (int i = 0; i < CASES; ++i)
    {
        const Place first = chance.Anywhere();
        const double direction = chance.Direction();
        const double length = chance.Sized(0.1, 1e5);
        const double along = length * chance.Between(-2.0, 2.0);
        LineDef line = {Point(first), Point(Moved(first, direction, length, 0.1 * length)), 0, LINE_BY_POINTS};
        const Place foot = Moved(first, direction, along, 0.1 * along);
        const PointRecord point = Point(Moved(foot, direction + PI / 2.0, chance.Sign() * chance.Length()));
        // Coordinates that round the direction of the line move the foot far along it.
        if (length < 100.0 * std::fabs(along) && PlanDistance(point, Point(foot)) < 100.0 * length && length > 100.0)
        {
            ASSERT_TRUE(ProveFoot(line, point, Point(foot), false).Holds());
        }
        ASSERT_FALSE(ProveFoot(line, point, Shifted(Point(foot), chance.Direction(), 0.1), false).Holds());
        ASSERT_FALSE(ProveFoot(line, point, Shifted(Point(foot), 0.0, 0.0, 0.1), false).Holds());
        line.mode = LINE_BY_AZIMUTH;
        line.azimuth = static_cast<AngleUnit>(chance.Between(0.0, ANGLE_FULL_CIRCLE));
        ASSERT_FALSE(ProveFoot(line, point, Shifted(line.first, chance.Direction(), 0.0, 0.1), false).Holds());
    }
}

TEST(PlanProof, SeesAWrongWayToTheFoot)
{
    // 3-4-5 to the foot: azimuth 53-07-48.4, 3060294 units.
    const PointRecord point = {100.0, 200.0, 0.0, POINT_HAS_PLAN};
    const PointRecord foot = {103.0, 204.0, 0.0, POINT_HAS_PLAN};
    const auto holds = [&point, &foot](double distance, AngleUnit azimuth) {
        Proof proof;
        RequireWayToFoot(point, foot, distance, azimuth, false, proof);
        return proof.Holds();
    };
    EXPECT_TRUE(holds(5.0, 3060294));
    EXPECT_FALSE(holds(5.0 + PLANTED, 3060294));
    EXPECT_FALSE(holds(5.0, 3060304));
}

TEST(PlanProof, SeesAWrongTransfer)
{
    Chance chance(45);
    for (int i = 0; i < CASES; ++i)
    {
        const Place first = chance.Anywhere();
        const double direction = chance.Direction();
        const double length = chance.Sized(100.0, 1e5);
        const LineDef line = {Point(first), Point(Moved(first, direction, length)), 0, LINE_BY_POINTS};
        const auto rotation = static_cast<AngleUnit>(chance.Between(-ANGLE_FULL_CIRCLE, ANGLE_FULL_CIRCLE));
        const double offset = chance.Sign() * chance.Length();
        LineDef result{};
        ASSERT_EQ(QCogoCalcTransLine(&line, rotation, offset, &result), QSTD_OK);
        AngDistRecord way{};
        ASSERT_EQ(QCogoCoordToAngDist(&result.first, &result.second, &way), QSTD_OK);
        const auto holds = [&](const LineDef& other, AngleUnit azimuth) {
            return ProveTransfer(line, rotation, offset, other, azimuth, false).Holds();
        };
        ASSERT_TRUE(holds(result, way.azimuth));
        LineDef wrong = result;
        wrong.first = Shifted(result.first, chance.Direction(), PLANTED);
        ASSERT_FALSE(holds(wrong, way.azimuth));
        wrong = result;
        wrong.second = Shifted(result.second, chance.Direction(), PLANTED);
        ASSERT_FALSE(holds(wrong, way.azimuth));
        ASSERT_FALSE(holds(result, way.azimuth + 4));
    }
}

TEST(PlanProof, CountsAnAreaFromItsFirstCorner)
{
    // A right triangle of 30 and 40, far away: 600; from the first corner nothing is lost.
    const std::vector<PlanVector> corners = {{8000000.1, 9000000.3}, {8000000.1, 9000040.3}, {8000030.1, 9000000.3}};
    const CountedArea area = AreaOf(corners);
    EXPECT_NEAR(area.area, 600.0, 1e-6);
    EXPECT_LT(area.allowed, 1e-4);
    EXPECT_GE(area.allowed, 1e-5);
    EXPECT_NEAR(AreaOf({corners[2], corners[1], corners[0]}).area, 600.0, 1e-6);
}
