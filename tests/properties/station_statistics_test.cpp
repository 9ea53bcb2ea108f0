// What noise of the assumed size does to the multi-point resection, over many simulated set-ups: the errors of the
// station and the residuals scatter as the theory of least squares says. The bounds are five standard deviations wide,
// so that these fixed samples lie within, and narrow enough that a weight wrong by a factor of two, or a sign, does
// not.
#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "qstdlib.h"
#include "tests/properties/survey.h"

using survey::DIRECTION_SIGMA;
using survey::DistanceSigma;
using survey::Propagation;
using survey::RADIANS_PER_UNIT;
using survey::SetUp;

namespace {

constexpr int32_t SET_UPS = 8000;
constexpr size_t TARGETS = 5;
constexpr int32_t REDUNDANCY = 2 * TARGETS - 3;

// Uniform in (0, 1) and normal by Box and Muller: the same on every platform.
class Noise
{
public:
    double Uniform()
    {
        return (static_cast<double>(random()) + 0.5) / 4294967296.0;
    }

    double Normal()
    {
        const double radius = std::sqrt(-2.0 * std::log(Uniform()));
        return radius * std::cos(2.0 * support::PI * Uniform());
    }

private:
    std::mt19937 random{20261121};
};

// Sums over all set-ups; each quantity is divided by its theoretical size first.
struct Sums
{
    double northing, squaredNorthing, easting, squaredEasting; // errors over their standard deviations
    double variance;                                           // the library's variances over the theoretical ones
    double direction, squaredDirection, directionByNoise;      // residuals
    double squaredDistance, distanceByNoise;
    double directionRedundancy, distanceRedundancy;
};

// Targets around the station, at 300 to 1500 m, so that the proportional part of the distances counts as well. A target
// of known height, so that the distance residuals are reported.
SetUp RandomSetUp(Noise& noise)
{
    SetUp s = {{1000.0, 2000.0}, 2.0 * support::PI * noise.Uniform(), {}};
    for (size_t i = 0; i < TARGETS; ++i)
    {
        const double azimuth = 2.0 * support::PI * (static_cast<double>(i) + 0.6 * noise.Uniform()) / TARGETS;
        s.targets.push_back(survey::Polar(s.station, azimuth, 300.0 + 1200.0 * noise.Uniform()));
    }
    return s;
}

void Simulate(Noise& noise, Sums& sums)
{
    const SetUp s = RandomSetUp(noise);
    std::vector<ResectObservation> observations(TARGETS);
    std::vector<survey::Equation> equations;
    double directionNoise[TARGETS] = {};
    double distanceNoise[TARGETS] = {};
    for (size_t i = 0; i < TARGETS; ++i)
    {
        const double sigma = DistanceSigma(s.DistanceTo(i));
        const double azimuth = survey::Azimuth(s.station, s.targets[i]);
        ResectObservation& o = observations[i];
        o.target = survey::PlanPointAt(s.targets[i]);
        o.target.flags = 3;
        o.zenithAngle = ANGLE_QUARTER_CIRCLE;
        directionNoise[i] = noise.Normal();
        distanceNoise[i] = noise.Normal();
        o.horizontalAngle = survey::ReadingOf(azimuth - s.orientation + DIRECTION_SIGMA * directionNoise[i]);
        o.horizontalDistance = s.DistanceTo(i) + sigma * distanceNoise[i];
        o.slopeDistance = o.horizontalDistance;
        equations.push_back(DirectionEquation(s, i, DIRECTION_SIGMA));
        equations.push_back(DistanceEquation(s, i, sigma));
    }
    ResectStation station = {};
    ResectResidual residuals[TARGETS] = {};
    ASSERT_EQ(QSTD_OK, QSTNMultiResect(TARGETS, observations.data(), &station, residuals));

    const Propagation theory(equations);
    const double northing = (station.position.northing - s.station.northing) / theory.Sigma(0);
    const double easting = (station.position.easting - s.station.easting) / theory.Sigma(1);
    sums.northing += northing;
    sums.squaredNorthing += northing * northing;
    sums.easting += easting;
    sums.squaredEasting += easting * easting;
    sums.variance += std::pow(station.northingPrecision / theory.Sigma(0), 2.0) / 2.0;
    sums.variance += std::pow(station.eastingPrecision / theory.Sigma(1), 2.0) / 2.0;
    for (size_t i = 0; i < TARGETS; ++i)
    {
        const double direction = residuals[i].angleResidual * RADIANS_PER_UNIT / DIRECTION_SIGMA;
        const double distance = residuals[i].distanceResidual / DistanceSigma(s.DistanceTo(i));
        sums.direction += direction;
        sums.squaredDirection += direction * direction;
        sums.directionByNoise += direction * directionNoise[i];
        sums.squaredDistance += distance * distance;
        sums.distanceByNoise += distance * distanceNoise[i];
        sums.directionRedundancy += theory.Redundancy(2 * i);
        sums.distanceRedundancy += theory.Redundancy(2 * i + 1);
    }
}

const Sums& Simulation()
{
    static const Sums simulated = [] {
        Noise noise;
        Sums sums = {};
        for (int32_t i = 0; i < SET_UPS; ++i)
        {
            Simulate(noise, sums);
        }
        return sums;
    }();
    return simulated;
}

// Five standard deviations of a chi-square sum, relative to its expectation, the number of degrees of freedom.
double ChiSquareWidth(double degrees)
{
    return 5.0 * std::sqrt(2.0 / degrees);
}

} // namespace

TEST(MultiPointResectionStatistics, HaveStationErrorsWithoutBias)
{
    const double width = 5.0 * std::sqrt(SET_UPS);
    EXPECT_NEAR(0.0, Simulation().northing, width);
    EXPECT_NEAR(0.0, Simulation().easting, width);
}

TEST(MultiPointResectionStatistics, HaveStationErrorsOfTheTheoreticalSize)
{
    EXPECT_NEAR(1.0, Simulation().squaredNorthing / SET_UPS, ChiSquareWidth(SET_UPS));
    EXPECT_NEAR(1.0, Simulation().squaredEasting / SET_UPS, ChiSquareWidth(SET_UPS));
}

// The library's variances are the theoretical ones times the unit-weight variance, chi-square over the redundancy.
TEST(MultiPointResectionStatistics, HavePrecisionsOfTheTheoreticalSize)
{
    EXPECT_NEAR(1.0, Simulation().variance / SET_UPS, ChiSquareWidth(SET_UPS * REDUNDANCY));
}

// The weighted square sum is chi-square distributed with the redundancy of all set-ups; the cutting off of the angle
// residuals to 1/16" takes less than a hundredth of it.
TEST(MultiPointResectionStatistics, HaveASquareSumOfTheRedundancy)
{
    const double degrees = SET_UPS * REDUNDANCY;
    const double sum = Simulation().squaredDirection + Simulation().squaredDistance;
    EXPECT_NEAR(1.0, sum / degrees, ChiSquareWidth(degrees) + 0.01);
    EXPECT_NEAR(degrees, Simulation().directionRedundancy + Simulation().distanceRedundancy, 1e-6 * degrees);
}

// Directions and distances share the redundancy as their weights say.
TEST(MultiPointResectionStatistics, ShareTheSquareSumBetweenDirectionsAndDistances)
{
    const Sums& s = Simulation();
    EXPECT_NEAR(1.0, s.squaredDirection / s.directionRedundancy, ChiSquareWidth(s.directionRedundancy) + 0.02);
    EXPECT_NEAR(1.0, s.squaredDistance / s.distanceRedundancy, ChiSquareWidth(s.distanceRedundancy));
}

TEST(MultiPointResectionStatistics, HaveDirectionResidualsWithoutBias)
{
    EXPECT_NEAR(0.0, Simulation().direction, 5.0 * std::sqrt(Simulation().directionRedundancy));
}

// A residual, adjusted less observed, takes the noise of its observation back: minus the redundant part of it.
TEST(MultiPointResectionStatistics, HaveResidualsAgainstTheNoise)
{
    const Sums& s = Simulation();
    EXPECT_NEAR(-1.0, s.directionByNoise / s.directionRedundancy, ChiSquareWidth(s.directionRedundancy) + 0.02);
    EXPECT_NEAR(-1.0, s.distanceByNoise / s.distanceRedundancy, ChiSquareWidth(s.distanceRedundancy));
}
