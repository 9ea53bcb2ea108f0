#include "station/fit.h"

#include <cmath>
#include <numeric>
#include <optional>
#include <vector>

#include <gtest/gtest.h>

#include "observed.h"

using qstd::ARC_SECOND;
using qstd::Fit;
using qstd::FitOfHeights;
using qstd::FitOfPlan;
using qstd::ObservationCheck;
using qstd::ObservationKind;
using qstd::PlanAdjustment;
using qstd::PlanObservation;
using survey::Observed;

namespace {

constexpr double PI = 3.14159265358979323846;

Fit FitOf(const Observed& observed)
{
    const std::optional<PlanAdjustment> adjusted = AdjustPlan(observed.observations, observed.place);
    EXPECT_TRUE(adjusted);
    return adjusted ? FitOfPlan(observed.observations, *adjusted) : Fit();
}

double SumOfRedundancies(const Fit& fit)
{
    return std::accumulate(fit.checks.begin(), fit.checks.end(), 0.0,
                           [](double sum, const ObservationCheck& check) { return sum + check.redundancy; });
}

std::vector<size_t> Marked(const Fit& fit)
{
    std::vector<size_t> marked;
    for (size_t i = 0; i < fit.checks.size(); ++i)
    {
        if (fit.checks[i].isMarked)
        {
            marked.push_back(i);
        }
    }
    return marked;
}

/** Five targets all around, directions and distances of errors that may be expected. */
Observed Sound()
{
    Observed observed = {{310.0, -120.0, 0.9}, {}};
    observed.Direction(700.0, -90.0, 1.5 * ARC_SECOND).Distance(700.0, -90.0, 0.0015);
    observed.Direction(250.0, 330.0, -2.0 * ARC_SECOND).Distance(250.0, 330.0, -0.002);
    observed.Direction(-90.0, 40.0, 0.5 * ARC_SECOND).Distance(-90.0, 40.0, 0.001);
    observed.Direction(20.0, -400.0, 2.5 * ARC_SECOND).Distance(20.0, -400.0, -0.0005);
    observed.Direction(480.0, -610.0, -1.0 * ARC_SECOND).Distance(480.0, -610.0, 0.0025);
    return observed;
}

// The network adjustment program GNU Gama on the free station 5001 of the town survey: f, the share that others check,
// in percent, which is 100 (1 - sqrt(1 - r)) of the redundancy number r; v; studentised residual; estimated error.
// Seconds and millimetres. The readings that they belong to.
struct Published
{
    ObservationKind kind;
    double northing;
    double easting;
    double reading; // seconds, or metres
    double sigma;   // seconds, or millimetres
    double f;
    double residual;
    double studentised;
    double estimatedError;
};

constexpr double Sexagesimal(int degrees, int minutes, double seconds)
{
    return degrees * 3600.0 + minutes * 60.0 + seconds;
}

constexpr ObservationKind DIRECTION = ObservationKind::DIRECTION;
constexpr ObservationKind DISTANCE = ObservationKind::DISTANCE;

constexpr Published STATION_5001[] = {
    {DIRECTION, 4415.08, 91164.16, Sexagesimal(175, 34, 56.1), 2.0, 46.0, 0.058, 0.1, 0.1},
    {DISTANCE, 4415.08, 91164.16, 1802.8224, 4.1232, 9.0, 1.716, 1.7, 10.0},
    {DIRECTION, 2815.22, 91515.44, Sexagesimal(224, 29, 0.9), 2.0, 50.4, 0.369, 0.4, 0.5},
    {DISTANCE, 2815.22, 91515.44, 2100.1052, 4.6521, 18.4, -2.642, 1.7, -7.9},
    {DIRECTION, 1475.28, 90661.58, Sexagesimal(265, 25, 2.0), 2.0, 56.5, 0.569, 0.5, 0.7},
    {DIRECTION, 2281.76, 88568.24, Sexagesimal(330, 11, 39.0), 2.0, 54.2, 0.094, 0.1, 0.1},
    {DIRECTION, 3159.88, 88619.86, Sexagesimal(358, 30, 20.0), 2.0, 37.4, -1.902, 2.1, -3.1},
    {DIRECTION, 3865.36, 84862.54, Sexagesimal(26, 17, 24.0), 2.0, 57.7, 0.813, 0.8, 1.0},
};

std::vector<PlanObservation> ObservationsOf5001()
{
    std::vector<PlanObservation> observations;
    for (const Published& published : STATION_5001)
    {
        PlanObservation observation;
        observation.kind = published.kind;
        observation.northing = published.northing;
        observation.easting = published.easting;
        const double unit = published.kind == DIRECTION ? ARC_SECOND : 0.001;
        observation.value = published.kind == DIRECTION ? published.reading * ARC_SECOND : published.reading;
        observation.sigma = published.sigma * unit;
        observation.weight = std::pow(qstd::WEIGHT_DIRECTION / observation.sigma, 2.0);
        observations.push_back(observation);
    }
    return observations;
}

} // namespace

TEST(FitOfPlan, HasTheFiguresOfAnIndependentAdjustment)
{
    const std::vector<PlanObservation> observations = ObservationsOf5001();
    const std::optional<PlanAdjustment> adjusted = AdjustPlan(observations, {3500.0, 89500.0, -2.0});
    ASSERT_TRUE(adjusted);
    EXPECT_NEAR(adjusted->position.northing, 3587.52094, 6e-6);
    EXPECT_NEAR(adjusted->position.easting, 89562.49811, 6e-6);
    EXPECT_NEAR((adjusted->position.orientation + 2.0 * PI) / ARC_SECOND, Sexagesimal(247, 5, 34.40), 0.006);
    const Fit fit = FitOfPlan(observations, *adjusted);
    EXPECT_EQ(fit.redundancy, 5U);
    EXPECT_NEAR(fit.ratio, 0.58, 0.006);
    ASSERT_EQ(fit.checks.size(), std::size(STATION_5001));
    for (size_t i = 0; i < fit.checks.size(); ++i)
    {
        const Published& published = STATION_5001[i];
        const ObservationCheck& check = fit.checks[i];
        const double unit = published.kind == DIRECTION ? ARC_SECOND : 0.001;
        EXPECT_NEAR(100.0 * (1.0 - std::sqrt(1.0 - check.redundancy)), published.f, 0.051) << i;
        EXPECT_NEAR(check.residual / unit, published.residual, 0.00051) << i;
        EXPECT_NEAR(std::fabs(check.studentised), published.studentised, 0.051) << i;
        EXPECT_NEAR(check.estimatedError / unit, published.estimatedError, 0.051) << i;
        EXPECT_EQ(check.estimatedError < 0.0, published.residual < 0.0) << i;
        EXPECT_FALSE(check.isMarked) << i;
    }
}

TEST(FitOfPlan, HasRedundancyNumbersThatAddUp)
{
    // The trace of the matrix that makes residuals of observations is their redundancy: 10 - 3.
    const Fit fit = FitOf(Sound());
    EXPECT_EQ(fit.redundancy, 7U);
    EXPECT_NEAR(SumOfRedundancies(fit), 7.0, 1e-9);
    for (const ObservationCheck& check : fit.checks)
    {
        EXPECT_GT(check.redundancy, 0.0);
        EXPECT_LT(check.redundancy, 1.0);
    }
}

TEST(FitOfPlan, MarksNothingInWhatMayBeExpected)
{
    const Fit fit = FitOf(Sound());
    EXPECT_FALSE(fit.HasMarked());
    EXPECT_FALSE(fit.IsMild());
    EXPECT_FALSE(fit.IsStrong());
    EXPECT_LT(fit.ratio, 1.5);
}

TEST(FitOfPlan, MarksAnErrorAndTellsItsSize)
{
    for (size_t wrong = 0; wrong < Sound().observations.size(); ++wrong)
    {
        Observed observed = Sound();
        PlanObservation& observation = observed.observations[wrong];
        const bool isDirection = observation.kind == DIRECTION;
        const double error = isDirection ? 60.0 * ARC_SECOND : 0.050;
        observation.value += error;
        const Fit fit = FitOf(observed);
        EXPECT_EQ(Marked(fit), std::vector<size_t>{wrong});
        // To be added to the observation: the error with the other sign, but for the expected ones.
        const double rest = (isDirection ? 2.0 : 1.0) * 2.0 * observation.sigma;
        EXPECT_NEAR(fit.checks[wrong].estimatedError, -error, rest) << wrong;
        EXPECT_NEAR(fit.checks[wrong].standardised,
                    fit.checks[wrong].residual / (observation.sigma * std::sqrt(fit.checks[wrong].redundancy)), 1e-9);
        EXPECT_LT(fit.checks[wrong].residual, 0.0);
    }
}

TEST(FitOfPlan, MarksNoSightOfASetThatIsPoorAllOver)
{
    // All errors eight times those of a sound set: air that shimmers, not a blunder.
    Observed observed = Sound();
    for (size_t i = 0; i < observed.observations.size(); ++i)
    {
        const double error = -PlanResidual(observed.observations[i], observed.place);
        observed.observations[i].value += 7.0 * error;
    }
    const Fit fit = FitOf(observed);
    EXPECT_GT(fit.ratio, 4.0);
    EXPECT_TRUE(Marked(fit).empty());
}

TEST(FitOfPlan, CallsUncheckedWhatNothingChecks)
{
    // Three distances to one target check each other; nothing checks either direction.
    Observed observed = {{310.0, -120.0, 0.9}, {}};
    observed.Direction(700.0, -90.0).Direction(250.0, 330.0);
    observed.Distance(700.0, -90.0, 0.001).Distance(700.0, -90.0, -0.001).Distance(700.0, -90.0);
    const Fit fit = FitOf(observed);
    EXPECT_EQ(fit.redundancy, 2U);
    for (size_t i = 0; i < 5; ++i)
    {
        const bool isDirection = i < 2;
        EXPECT_EQ(fit.checks[i].isUnchecked, isDirection) << i;
        EXPECT_NEAR(fit.checks[i].redundancy, isDirection ? 0.0 : 2.0 / 3.0, 1e-9) << i;
    }
    // 1 mm off the mean of three: over 2 mm sqrt(2/3).
    EXPECT_NEAR(fit.checks[2].standardised, -0.5 / std::sqrt(2.0 / 3.0), 1e-4);
}

TEST(FitOfPlan, HasNoRatioWithoutRedundancy)
{
    Observed observed = {{310.0, -120.0, 0.9}, {}};
    observed.Direction(700.0, -90.0).Direction(250.0, 330.0).Direction(-90.0, 40.0);
    const Fit fit = FitOf(observed);
    EXPECT_EQ(fit.redundancy, 0U);
    EXPECT_EQ(fit.ratio, 0.0);
    EXPECT_FALSE(fit.HasMarked());
    EXPECT_FALSE(fit.IsStrong());
    for (const ObservationCheck& check : fit.checks)
    {
        EXPECT_TRUE(check.isUnchecked);
        EXPECT_EQ(check.standardised, 0.0);
    }
}

TEST(FitOfPlan, CallsAMisfitMildAndThenStrong)
{
    // One of four directions to targets 100 m off, at right angles, too large by e: e / 2 along the one redundant
    // combination, over 2". 7.5 times from e = 30", 30 times from e = 120" on.
    const auto fitWith = [](double seconds) {
        Observed observed;
        observed.Direction(100.0, 0.0, seconds * ARC_SECOND)
            .Direction(0.0, 100.0)
            .Direction(-100.0, 0.0)
            .Direction(0.0, -100.0);
        return FitOf(observed);
    };
    EXPECT_NEAR(fitWith(28.0).ratio, 7.0, 1e-3);
    EXPECT_FALSE(fitWith(29.0).IsMild());
    EXPECT_TRUE(fitWith(31.0).IsMild());
    EXPECT_FALSE(fitWith(119.0).IsStrong());
    EXPECT_TRUE(fitWith(121.0).IsStrong());
}

TEST(FitOfHeights, IsThatOfTheWeightedMean)
{
    // Weights 1, 1 and 4 by sigmas of 2, 2 and 1 mm: mean 100.003. Residuals 3, -3 and 0 mm: (1.5^2 + 1.5^2) / 2 =
    // 1.5^2. Redundancy numbers 1 - 1/6, 1 - 1/6, 1 - 4/6.
    const Fit fit = FitOfHeights({{100.000, 0.002}, {100.006, 0.002}, {100.003, 0.001}});
    EXPECT_EQ(fit.redundancy, 2U);
    EXPECT_NEAR(fit.ratio, 1.5, 1e-9);
    ASSERT_EQ(fit.checks.size(), 3U);
    EXPECT_NEAR(fit.checks[0].residual, 0.003, 1e-12);
    EXPECT_NEAR(fit.checks[1].residual, -0.003, 1e-12);
    EXPECT_NEAR(fit.checks[0].redundancy, 5.0 / 6.0, 1e-12);
    EXPECT_NEAR(fit.checks[2].redundancy, 2.0 / 6.0, 1e-12);
    EXPECT_NEAR(fit.checks[0].estimatedError, 0.0036, 1e-12);
    EXPECT_NEAR(fit.checks[0].standardised, 1.5 / std::sqrt(5.0 / 6.0), 1e-9);
    // The same over 1.5 times the standard deviation.
    EXPECT_NEAR(fit.checks[0].studentised, 1.0 / std::sqrt(5.0 / 6.0), 1e-9);
    EXPECT_FALSE(fit.HasMarked());
}

TEST(FitOfHeights, MarksTheOneThatIsWrong)
{
    const Fit fit = FitOfHeights({{212.301, 0.003}, {212.298, 0.003}, {212.402, 0.003}, {212.300, 0.003}});
    EXPECT_EQ(Marked(fit), std::vector<size_t>{2});
    // The mean of the other three is 212.29967.
    EXPECT_NEAR(fit.checks[2].estimatedError, 212.29967 - 212.402, 1e-5);
}

TEST(FitOfHeights, OfOneHeightAndOfNoneSaysNothing)
{
    const Fit one = FitOfHeights({{212.3, 0.003}});
    EXPECT_EQ(one.redundancy, 0U);
    EXPECT_EQ(one.ratio, 0.0);
    ASSERT_EQ(one.checks.size(), 1U);
    EXPECT_TRUE(one.checks[0].isUnchecked);
    EXPECT_FALSE(one.HasMarked());
    const Fit none = FitOfHeights({});
    EXPECT_EQ(none.redundancy, 0U);
    EXPECT_TRUE(none.checks.empty());
}

TEST(FitOfHeights, KeepsItsDigitsFarAboveTheDatum)
{
    // A thousandth of a millimetre at 8 km.
    const Fit fit = FitOfHeights({{8000.000001, 0.002}, {8000.000003, 0.002}});
    EXPECT_NEAR(fit.checks[0].residual, 0.000001, 2e-12);
    EXPECT_EQ(fit.checks[0].standardised, 0.0) << "rounding is no error";
}
