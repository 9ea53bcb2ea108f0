#include "station/plan_adjustment.h"

#include <cmath>
#include <limits>
#include <optional>
#include <vector>

#include <gtest/gtest.h>

#include "observed.h"
#include "survey.h"

using qstd::AdjustPlan;
using qstd::ARC_SECOND;
using qstd::Matrix3;
using qstd::ObservationKind;
using qstd::PlanAdjustment;
using qstd::PlanObservation;
using qstd::PlanPosition;
using qstd::PlanStep;
using qstd::StepFrom;
using survey::Observed;

namespace {

constexpr double PI = 3.14159265358979323846;

// From the origin F is (300, 400), 500 m off in the direction u = (0.6, 0.8), and G (-240, 180), 300 m off at a right
// angle to it, in the direction w = (-0.8, 0.6).
constexpr double F_NORTH = 300.0, F_EAST = 400.0;
constexpr double G_NORTH = -240.0, G_EAST = 180.0;

PlanObservation DistanceTo(double northing, double easting, double value, double weight)
{
    return {0, ObservationKind::DISTANCE, northing, easting, value, weight, 0.002};
}

/** Both distances and the direction to F, read on a circle whose zero points north. */
std::vector<PlanObservation> ThreeObservations(double toF, double toG)
{
    return {DistanceTo(F_NORTH, F_EAST, toF, 0.25),
            DistanceTo(G_NORTH, G_EAST, toG, 0.04),
            {0, ObservationKind::DIRECTION, F_NORTH, F_EAST, std::atan2(4.0, 3.0), 1.0, 1e-5}};
}

} // namespace

TEST(WrapToHalfCircle, BringsAnyAngleBetweenMinusAndPlusAHalf)
{
    EXPECT_NEAR(qstd::WrapToHalfCircle(2.0 * PI + 0.3), 0.3, 1e-12);
    EXPECT_NEAR(qstd::WrapToHalfCircle(-4.0 * PI - 0.3), -0.3, 1e-12);
    EXPECT_NEAR(qstd::WrapToHalfCircle(PI + 0.3), 0.3 - PI, 1e-12);
    EXPECT_NEAR(qstd::WrapToHalfCircle(3.0), 3.0, 1e-12);
}

TEST(DesignRow, IsTheDerivativeOfTheObservation)
{
    // Direction: dE / s^2, -dN / s^2, -1; distance: -dN / s, -dE / s, 0.
    const std::vector<PlanObservation> observations = ThreeObservations(500.0, 300.0);
    const std::array<double, 3> direction = DesignRow(observations[2], {});
    EXPECT_NEAR(direction[0], 400.0 / 250000.0, 1e-15);
    EXPECT_NEAR(direction[1], -300.0 / 250000.0, 1e-15);
    EXPECT_EQ(direction[2], -1.0);
    const std::array<double, 3> distance = DesignRow(observations[1], {});
    EXPECT_NEAR(distance[0], 0.8, 1e-15);
    EXPECT_NEAR(distance[1], -0.6, 1e-15);
    EXPECT_EQ(distance[2], 0.0);
}

TEST(PlanResidual, IsAdjustedLessObserved)
{
    // A distance measured 30 mm too long leaves -30 mm; a direction read 10" too large -10".
    EXPECT_NEAR(PlanResidual(DistanceTo(F_NORTH, F_EAST, 500.03, 1.0), {}), -0.03, 1e-12);
    Observed observed = {{12.0, -7.0, 0.4}, {}};
    observed.Direction(F_NORTH, F_EAST, 10.0 * ARC_SECOND);
    EXPECT_NEAR(PlanResidual(observed.observations[0], observed.place), -10.0 * ARC_SECOND, 1e-14);
}

TEST(PlanResidual, OfADirectionTakesTheShortWayRoundTheCircle)
{
    // Azimuth 10" west of north, reading 5" east of it.
    PlanObservation observation;
    observation.northing = 1000.0;
    observation.easting = -1000.0 * std::tan(10.0 * ARC_SECOND);
    observation.value = 5.0 * ARC_SECOND;
    EXPECT_NEAR(PlanResidual(observation, {}), -15.0 * ARC_SECOND, 1e-14);
    observation.value += 2.0 * PI;
    EXPECT_NEAR(PlanResidual(observation, {}), -15.0 * ARC_SECOND, 1e-14);
}

TEST(PlanSquareSum, WeighsTheSquares)
{
    // 0.25 * 0.03^2 + 0.04 * 0.05^2.
    EXPECT_NEAR(PlanSquareSum(ThreeObservations(500.03, 299.95), {}), 0.000225 + 0.0001, 1e-12);
}

TEST(PlanCofactors, OfTwoDistancesAndADirection)
{
    // Position: u u' / 0.25 + w w' / 0.04. The orientation follows the position by (0.0016, -0.0012) = -0.002 w.
    const std::optional<Matrix3> q = PlanCofactors(ThreeObservations(500.0, 300.0), {});
    ASSERT_TRUE(q);
    EXPECT_NEAR((*q)[0][0], 0.36 * 4.0 + 0.64 * 25.0, 1e-10);
    EXPECT_NEAR((*q)[1][1], 0.64 * 4.0 + 0.36 * 25.0, 1e-10);
    EXPECT_NEAR((*q)[0][1], 0.48 * 4.0 - 0.48 * 25.0, 1e-10);
    EXPECT_NEAR((*q)[0][2], -0.8 * 25.0 * -0.002, 1e-10);
    EXPECT_NEAR((*q)[1][2], 0.6 * 25.0 * -0.002, 1e-10);
    EXPECT_NEAR((*q)[2][2], 1.0 + 25.0 * 4e-6, 1e-10);
    for (size_t i = 0; i < 3; ++i)
    {
        for (size_t j = 0; j < 3; ++j)
        {
            EXPECT_NEAR((*q)[i][j], (*q)[j][i], 1e-12);
        }
    }
}

TEST(AxesOf, AreThoseOfTheEllipse)
{
    // As above: sqrt(25) along w, sqrt(4) along u.
    const std::optional<Matrix3> q = PlanCofactors(ThreeObservations(500.0, 300.0), {});
    ASSERT_TRUE(q);
    const qstd::EllipseAxes axes = qstd::AxesOf(*q);
    EXPECT_NEAR(axes.major, 5.0, 1e-10);
    EXPECT_NEAR(axes.minor, 2.0, 1e-10);
    EXPECT_NEAR(axes.azimuth, std::atan2(0.6, -0.8), 1e-10);
}

TEST(AxesOf, HaveAnAzimuthBelowAHalfCircle)
{
    // The long axis from north-west to south-east: 3/4 of a half circle, not -1/4.
    const qstd::EllipseAxes axes = qstd::AxesOf({{{5.0, -4.0, 0.0}, {-4.0, 5.0, 0.0}, {0.0, 0.0, 1.0}}});
    EXPECT_NEAR(axes.azimuth, 0.75 * PI, 1e-12);
    EXPECT_NEAR(axes.major, 3.0, 1e-12);
    EXPECT_NEAR(axes.minor, 1.0, 1e-12);
}

TEST(StepFrom, MovesTheStationByTheErrorsOfTheDistances)
{
    // F 30 mm farther off, G 50 mm nearer: -0.03 u + 0.05 w; the orientation follows by (0.0016, -0.0012).
    const std::optional<PlanStep> step = StepFrom(ThreeObservations(500.03, 299.95), {});
    ASSERT_TRUE(step);
    EXPECT_NEAR(step->change.northing, -0.018 - 0.04, 1e-12);
    EXPECT_NEAR(step->change.easting, -0.024 + 0.03, 1e-12);
    EXPECT_NEAR(step->change.orientation, 0.0016 * -0.058 - 0.0012 * 0.006, 1e-12);
    EXPECT_NEAR(step->cofactors[0][0], 17.44, 1e-10);
}

TEST(StepFrom, IsNoneForSingularEquations)
{
    Observed oneTarget;
    oneTarget.Both(F_NORTH, F_EAST).Both(F_NORTH, F_EAST).Direction(F_NORTH, F_EAST);
    EXPECT_FALSE(StepFrom(oneTarget.observations, {}));
    Observed twoDirections;
    twoDirections.Direction(F_NORTH, F_EAST).Direction(G_NORTH, G_EAST);
    EXPECT_FALSE(StepFrom(twoDirections.observations, {}));
    EXPECT_FALSE(StepFrom({}, {}));
    // All on the circle of 65 m about the origin: any place on it fulfils the directions.
    Observed circle = {{-25.0, -60.0, 0.0}, {}};
    circle.Direction(16.0, 63.0).Direction(33.0, 56.0).Direction(63.0, 16.0).Direction(-39.0, 52.0);
    EXPECT_FALSE(StepFrom(circle.observations, circle.place));
}

TEST(StepFrom, IsNoneAtATarget)
{
    Observed observed = {{F_NORTH, F_EAST, 0.0}, {}};
    observed.Both(F_NORTH, F_EAST).Both(G_NORTH, G_EAST);
    EXPECT_FALSE(StepFrom(observed.observations, observed.place));
}

TEST(AdjustPlan, TakesTheWeightedMeanOfRepeatedDistances)
{
    // To F 499.98 of weight 1 and 500.04 of weight 3: mean 500.025, residuals 0.045 and -0.015. The square of 0.025
    // over twice 300 m turns up in the distance to G: a thousandth of a millimetre.
    std::vector<PlanObservation> observations = ThreeObservations(499.98, 300.0);
    observations[0].weight = 1.0;
    observations.push_back(DistanceTo(F_NORTH, F_EAST, 500.04, 3.0));
    const std::optional<PlanAdjustment> adjusted = AdjustPlan(observations, {});
    ASSERT_TRUE(adjusted);
    EXPECT_NEAR(adjusted->position.northing, -0.025 * 0.6, 2e-6);
    EXPECT_NEAR(adjusted->position.easting, -0.025 * 0.8, 2e-6);
    EXPECT_NEAR(adjusted->squareSum, 0.002025 + 3.0 * 0.000225, 1e-9);
    EXPECT_NEAR(PlanResidual(observations[0], adjusted->position), 0.045, 1e-9);
    EXPECT_NEAR(PlanResidual(observations[3], adjusted->position), -0.015, 1e-9);
}

TEST(AdjustPlan, ConvergesFromFarAway)
{
    Observed observed = {{5200.0, -310.0, 1.2}, {}};
    observed.Both(5500.0, 90.0).Both(4960.0, -130.0).Both(5230.0, -900.0).Direction(4700.0, -460.0);
    for (const PlanPosition& start :
         {PlanPosition{5260.0, -280.0, 1.5}, PlanPosition{4100.0, 900.0, 2.2}, PlanPosition{6400.0, -1300.0, 0.3}})
    {
        const std::optional<PlanAdjustment> adjusted = AdjustPlan(observed.observations, start);
        ASSERT_TRUE(adjusted) << start.northing;
        EXPECT_NEAR(adjusted->position.northing, 5200.0, 1e-6);
        EXPECT_NEAR(adjusted->position.easting, -310.0, 1e-6);
        EXPECT_NEAR(adjusted->position.orientation, 1.2, 1e-9);
        EXPECT_NEAR(adjusted->squareSum, 0.0, 1e-16);
    }
}

TEST(AdjustPlan, BringsTheOrientationWithinAHalfCircle)
{
    Observed observed = {{0.0, 0.0, 0.5}, {}};
    observed.Both(F_NORTH, F_EAST).Both(G_NORTH, G_EAST);
    const std::optional<PlanAdjustment> adjusted = AdjustPlan(observed.observations, {1.0, 1.0, 0.5 + 6.0 * PI});
    ASSERT_TRUE(adjusted);
    EXPECT_NEAR(adjusted->position.orientation, 0.5, 1e-9);
}

TEST(AdjustPlan, IsNoneWhereNothingDeterminesTheStation)
{
    Observed observed;
    observed.Direction(F_NORTH, F_EAST).Direction(G_NORTH, G_EAST);
    EXPECT_FALSE(AdjustPlan(observed.observations, {1.0, 2.0, 0.0}));
    Observed circle = {{-25.0, -60.0, 0.0}, {}};
    circle.Direction(16.0, 63.0).Direction(33.0, 56.0).Direction(63.0, 16.0);
    EXPECT_FALSE(AdjustPlan(circle.observations, circle.place));
}

TEST(PlanObservations, AreThoseOfTheUsedSightsWithTheLibrarysWeights)
{
    // 1000 m: the square of 2" over 2^2 + 2^2 mm^2; judged by the plain sum, 4 mm.
    const survey::Solved solved("id,n,e\nP,1000,0\nQ,0,700\n",
                                "station,target,hz,hd,use\nA,X,5d,,\nA,P,0d,1000,\nA,P,0d,1000,0\nA,Q,90d,,\n");
    const auto observations = PlanObservations(solved.solution.sights, qstd::LinearUnit::METRE);
    ASSERT_EQ(observations.size(), 3U);
    EXPECT_EQ(observations[0].sight, 1U);
    EXPECT_EQ(observations[0].kind, ObservationKind::DIRECTION);
    EXPECT_EQ(observations[0].weight, 1.0);
    EXPECT_EQ(observations[0].sigma, 2.0 * ARC_SECOND);
    EXPECT_EQ(observations[1].kind, ObservationKind::DISTANCE);
    EXPECT_EQ(observations[1].value, 1000.0);
    EXPECT_NEAR(observations[1].weight, 4.0 * ARC_SECOND * ARC_SECOND / 8e-6, 1e-12);
    EXPECT_NEAR(observations[1].sigma, 0.004, 1e-15);
    EXPECT_EQ(observations[2].sight, 3U);
    EXPECT_NEAR(observations[2].value, 0.5 * PI, 1e-12);
    EXPECT_EQ(observations[2].easting, 700.0);
}

TEST(PlanObservations, AreInMetresWhateverTheUnitOfTheJob)
{
    const survey::Solved solved("id,n,e\nP,1000,0\nQ,0,700\n", "station,target,hz,hd\nA,P,0d,1000\nA,Q,90d,\n");
    const auto observations = PlanObservations(solved.solution.sights, qstd::LinearUnit::FOOT);
    ASSERT_EQ(observations.size(), 3U);
    EXPECT_NEAR(observations[0].northing, 304.8, 1e-9);
    EXPECT_NEAR(observations[1].value, 304.8, 1e-9);
    EXPECT_NEAR(observations[1].sigma, 0.002 + 0.0006096, 1e-12);
}

TEST(PlanObservations, AreJudgedByWhatIsExpectedAndKeepTheirWeights)
{
    const survey::Solved solved("id,n,e\nP,1000,0\nQ,0,700\n", "station,target,hz,hd\nA,P,0d,1000\nA,Q,90d,\n");
    qstd::Expectation expected;
    expected.direction = 5.0 * ARC_SECOND;
    expected.distance = 0.003;
    expected.distanceProportion = 0.000004;
    const auto usual = PlanObservations(solved.solution.sights, qstd::LinearUnit::METRE);
    const auto changed = PlanObservations(solved.solution.sights, qstd::LinearUnit::METRE, expected);
    EXPECT_NEAR(changed[0].sigma, 5.0 * ARC_SECOND, 1e-15);
    EXPECT_NEAR(changed[1].sigma, 0.007, 1e-15);
    EXPECT_EQ(changed[0].weight, usual[0].weight);
    EXPECT_EQ(changed[1].weight, usual[1].weight);
}
