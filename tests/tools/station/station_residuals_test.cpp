#include "station/station_residuals.h"

#include <cmath>

#include <gtest/gtest.h>

#include "verbs/benchmark.h"

using qstd::RiseByZenith;
using qstd::SimulatedInstrument;

namespace {

SimulatedInstrument Corrected(double scale, bool seaLevel, bool curvature, int32_t selector)
{
    SimulatedInstrument instrument;
    instrument.scaleFactor = scale;
    instrument.seaLevel = seaLevel ? 1 : 0;
    instrument.meanElevation = 637.0;
    instrument.curvatureRefraction = curvature ? 1 : 0;
    instrument.refractionSelector = selector;
    return instrument;
}

constexpr AngleUnit DEGREE = 57600;

} // namespace

TEST(RiseByZenith, IsTheCotangentWithoutCorrections)
{
    // 100 / tan 45d = 100; a level sight does not rise.
    EXPECT_NEAR(RiseByZenith(100.0, 45 * DEGREE, SimulatedInstrument{}), 100.0, 1e-9);
    EXPECT_NEAR(RiseByZenith(100.0, 90 * DEGREE, SimulatedInstrument{}), 0.0, 1e-9);
}

TEST(RiseByZenith, CorrectsTheDistance)
{
    // 637 m are a ten-thousandth of the radius; the scale factor divides.
    EXPECT_NEAR(RiseByZenith(1000.0, 45 * DEGREE, Corrected(1.0, true, false, 0)), 1000.1, 1e-9);
    EXPECT_NEAR(RiseByZenith(1000.0, 45 * DEGREE, Corrected(0.5, false, false, 0)), 2000.0, 1e-9);
    EXPECT_NEAR(RiseByZenith(1000.0, 45 * DEGREE, Corrected(0.0, false, false, 0)), 1000.0, 1e-9);
    // A level sight of 1 km: 10^6 (1 - 0.132) / 12740000.
    EXPECT_NEAR(RiseByZenith(1000.0, 90 * DEGREE, Corrected(1.0, false, true, 0)), 0.868e6 / 12740000.0, 1e-9);
}

TEST(RiseByZenith, AgreesWithTheLibrary)
{
    const PointRecord station = {500.0, -300.0, 0.0, POINT_HAS_PLAN};
    const PointRecord target = {500.0 + 1600.0, -300.0 - 1200.0, 250.0, POINT_HAS_PLAN | POINT_HAS_HEIGHT};
    for (const SimulatedInstrument& instrument :
         {SimulatedInstrument{}, Corrected(0.9996, false, false, 0), Corrected(1.0, true, false, 0),
          Corrected(1.0, false, true, 1), Corrected(1.0002, true, true, 2)})
    {
        const qstd::InstrumentConnection connection(instrument);
        for (const int degrees : {20, 60, 85, 90, 100, 150})
        {
            const std::optional<double> height = qstd::AxisHeightByZenith(station, target, degrees * DEGREE, 1.5);
            ASSERT_TRUE(height) << degrees;
            // The auxiliary targets hold the station to the micrometre.
            EXPECT_NEAR(*height, 251.5 - RiseByZenith(2000.0, degrees * DEGREE, instrument), 1e-5) << degrees;
        }
    }
}
