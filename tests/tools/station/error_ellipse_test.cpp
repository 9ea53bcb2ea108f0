#include "station/error_ellipse.h"

#include <cmath>
#include <limits>
#include <string>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "survey.h"

namespace {

constexpr double PI = 3.14159265358979323846;

/** Two targets 100 m before and behind a station at the origin, their line turned by `degrees` from north. */
survey::Solved Line(double degrees)
{
    const double n = 100.0 * std::cos(degrees * PI / 180.0);
    const double e = 100.0 * std::sin(degrees * PI / 180.0);
    return {fmt::format("id,n,e\nF,{},{}\nB,{},{}\n", n, e, -n, -e),
            "station,target,hz,hd\nA,F,0d,100\nA,B,180d,100\n"};
}

/** The adjustment of a solved set-up, as if one direction had turned out to `sigma`. */
qstd::PlanAdjustment AdjustmentWith(double sigma, size_t redundancy, const survey::Solved& solved)
{
    qstd::PlanAdjustment plan = solved.solution.plan.value();
    plan.squareSum = sigma * sigma * static_cast<double>(redundancy);
    return plan;
}

} // namespace

TEST(ErrorEllipse, HasTheAxesOfTheTwoKindsOfObservation)
{
    // Along the line only the two distances count, each of weight w = (2")^2 / (2 mm^2 + 0.2 mm^2): s0 / sqrt(2 w).
    // Across it the two directions: s0 * 100 / sqrt(2). Each orientation of the line gives the same axes.
    const double direction = 2.0 * 4.84813681109536e-6;
    const double weight = direction * direction / (0.002 * 0.002 + 0.0002 * 0.0002);
    const double found = 3.0 * 4.84813681109536e-6;
    for (const double degrees : {0.0, 30.0, 90.0, 135.0, 179.0})
    {
        const survey::Solved solved = Line(degrees);
        ASSERT_TRUE(solved.solution.plan.has_value());
        const auto ellipse = qstd::FormErrorEllipse(AdjustmentWith(found, 1, solved), 1, qstd::LinearUnit::METRE);
        ASSERT_TRUE(ellipse.has_value());
        EXPECT_NEAR(ellipse->major, found / std::sqrt(2.0 * weight), 1e-8);
        EXPECT_NEAR(ellipse->minor, found * 100.0 / std::sqrt(2.0), 1e-8);
        EXPECT_NEAR(std::remainder(ellipse->azimuth - degrees * PI / 180.0, PI), 0.0, 1e-6) << degrees;
        EXPECT_GE(ellipse->azimuth, 0.0);
        EXPECT_LE(ellipse->azimuth, PI);
        EXPECT_NEAR(ellipse->unitDirectionSigma, found, 1e-15);
        // By symmetry the mean of both directions is the orientation: s0 / sqrt(2).
        EXPECT_NEAR(ellipse->orientationSigma, found / std::sqrt(2.0), 1e-12);
    }
}

TEST(ErrorEllipse, SharesTheSquareSumAmongTheRedundantObservations)
{
    const survey::Solved solved = Line(30.0);
    const qstd::PlanAdjustment plan = AdjustmentWith(3e-5, 4, solved);
    const auto ellipse = qstd::FormErrorEllipse(plan, 4, qstd::LinearUnit::METRE);
    ASSERT_TRUE(ellipse.has_value());
    EXPECT_NEAR(ellipse->unitDirectionSigma, 3e-5, 1e-15);
}

TEST(ErrorEllipse, IsInTheUnitOfTheJob)
{
    const survey::Solved solved = Line(30.0);
    const qstd::PlanAdjustment plan = AdjustmentWith(3e-5, 1, solved);
    const auto metres = qstd::FormErrorEllipse(plan, 1, qstd::LinearUnit::METRE);
    const auto feet = qstd::FormErrorEllipse(plan, 1, qstd::LinearUnit::FOOT);
    ASSERT_TRUE(metres.has_value() && feet.has_value());
    EXPECT_NEAR(feet->major * 0.3048, metres->major, 1e-12);
    EXPECT_NEAR(feet->minor * 0.3048, metres->minor, 1e-12);
    EXPECT_EQ(feet->orientationSigma, metres->orientationSigma);
}

TEST(ErrorEllipse, IsNoneWhereAFigureIsNotFinite)
{
    const survey::Solved solved = Line(30.0);
    EXPECT_FALSE(qstd::FormErrorEllipse(*solved.solution.plan, 0, qstd::LinearUnit::METRE).has_value());
    qstd::PlanAdjustment plan = *solved.solution.plan;
    plan.cofactors[0][0] = std::numeric_limits<double>::infinity();
    EXPECT_FALSE(qstd::FormErrorEllipse(plan, 1, qstd::LinearUnit::METRE).has_value());
}
