#include "station/distance_reduction.h"

#include <cmath>

#include <gtest/gtest.h>

#include "station/station_residuals.h"

using qstd::GroundDistance;
using qstd::LevelDistance;
using qstd::LinearUnit;
using qstd::PlanDistance;
using qstd::Reduction;
using qstd::SimulatedInstrument;

namespace {

constexpr AngleUnit DEGREE = 57600;

SimulatedInstrument Curved(int32_t selector)
{
    SimulatedInstrument instrument;
    instrument.curvatureRefraction = 1;
    instrument.refractionSelector = selector;
    return instrument;
}

} // namespace

TEST(PlanDistance, LeavesADistanceAloneWithoutCorrections)
{
    EXPECT_EQ(PlanDistance(1234.567, {}), 1234.567);
}

TEST(PlanDistance, IsMultipliedByTheScaleFactor)
{
    Reduction reduction;
    reduction.instrument.scaleFactor = 0.9996;
    EXPECT_NEAR(PlanDistance(1300.0, reduction), 1299.48, 1e-9);
    // No factor is none.
    reduction.instrument.scaleFactor = 0.0;
    EXPECT_EQ(PlanDistance(1300.0, reduction), 1300.0);
}

TEST(PlanDistance, IsShorterAtSeaLevel)
{
    // 637 m are a ten-thousandth of the radius.
    Reduction reduction;
    reduction.instrument.seaLevel = 1;
    reduction.instrument.meanElevation = 637.0;
    EXPECT_NEAR(PlanDistance(1300.13, reduction), 1300.0, 1e-9);
    reduction.instrument.seaLevel = 0;
    EXPECT_EQ(PlanDistance(1300.13, reduction), 1300.13);
}

TEST(PlanDistance, TakesBothCorrectionsTogether)
{
    // The example of a map grid: factor 0.9996, 450 m above the sea: 1300 (0.9996 - 450/6370000) but for products.
    Reduction reduction;
    reduction.instrument.scaleFactor = 0.9996;
    reduction.instrument.seaLevel = 1;
    reduction.instrument.meanElevation = 450.0;
    EXPECT_NEAR(PlanDistance(1300.0, reduction), 1300.0 - 0.52 - 0.0918, 1e-4);
}

TEST(LevelDistance, LeavesASightAloneWithoutTheCorrection)
{
    const GroundDistance level = LevelDistance({1000.0, 100.0}, {});
    EXPECT_EQ(level.horizontal, 1000.0);
    EXPECT_EQ(level.vertical, 100.0);
}

TEST(LevelDistance, CorrectsCurvatureAndRefraction)
{
    // 1000 - (1 - 0.066) 1000 * 100 / 6370000; 100 + (1 - 0.132) 1000^2 / 12740000.
    const GroundDistance level = LevelDistance({1000.0, 100.0}, {Curved(0), LinearUnit::METRE});
    EXPECT_NEAR(level.horizontal, 1000.0 - 93400.0 / 6370000.0, 1e-9);
    EXPECT_NEAR(level.vertical, 100.0 + 868000.0 / 12740000.0, 1e-9);
    // Downwards the horizontal distance at the instrument is longer; the coefficient is now 0.20.
    const GroundDistance down = LevelDistance({1000.0, -100.0}, {Curved(2), LinearUnit::METRE});
    EXPECT_NEAR(down.horizontal, 1000.0 + 90000.0 / 6370000.0, 1e-9);
    EXPECT_NEAR(down.vertical, -100.0 + 800000.0 / 12740000.0, 1e-9);
}

TEST(LevelDistance, TakesTheRadiusInTheUnitOfTheJob)
{
    // The same sight in feet.
    constexpr double FOOT = 0.3048;
    const GroundDistance metres = LevelDistance({900.0, 70.0}, {Curved(1), LinearUnit::METRE});
    const GroundDistance feet = LevelDistance({900.0 / FOOT, 70.0 / FOOT}, {Curved(1), LinearUnit::FOOT});
    EXPECT_NEAR(feet.horizontal * FOOT, metres.horizontal, 1e-9);
    EXPECT_NEAR(feet.vertical * FOOT, metres.vertical, 1e-9);
}

TEST(LevelDistance, IsTheConverseOfTheRiseByZenith)
{
    // A slope distance reduced to the plan and its rise; from that plan distance and the same zenith angle the library
    // gives the rise again, but for the second order: correction times 2 V / R.
    SimulatedInstrument instrument = Curved(1);
    instrument.scaleFactor = 0.9996;
    instrument.seaLevel = 1;
    instrument.meanElevation = 450.0;
    const Reduction reduction = {instrument, LinearUnit::METRE};
    for (const int degrees : {80, 87, 90, 93, 101})
    {
        constexpr double SLOPE = 1200.0;
        const double zenith = degrees * 3.14159265358979323846 / 180.0;
        const GroundDistance level = LevelDistance({SLOPE * std::sin(zenith), SLOPE * std::cos(zenith)}, reduction);
        const double plan = PlanDistance(level.horizontal, reduction);
        EXPECT_NEAR(RiseByZenith(plan, degrees * DEGREE, instrument), level.vertical, 5e-6) << degrees;
        EXPECT_LT(plan, SLOPE - 0.4) << degrees;
    }
}
