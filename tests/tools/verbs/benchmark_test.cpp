// A height by zenith angle alone: nothing comes of what the library refuses or cannot compute.
#include "verbs/benchmark.h"

#include "instrument/simulated_instrument.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using namespace qstd;

constexpr AngleUnit DEGREE = 57600;
const PointRecord STATION = {0.0, 0.0, 0.0, POINT_HAS_PLAN};
const PointRecord TARGET = {0.0, 1000.0, 100.0, POINT_HAS_PLAN | POINT_HAS_HEIGHT};

} // namespace

TEST(AxisHeightByZenith, IsTheTargetLessTheRise)
{
    const std::optional<double> height = AxisHeightByZenith(STATION, TARGET, 45 * DEGREE, 1.5);
    ASSERT_TRUE(height);
    EXPECT_NEAR(*height, 101.5 - 1000.0, 1e-6);
}

TEST(AxisHeightByZenith, IsNothingWhereNoNumberComesOut)
{
    SimulatedInstrument instrument;
    instrument.scaleFactor = 1e-308; // 1000 divided by it is beyond all numbers
    const InstrumentConnection connection(instrument);
    EXPECT_FALSE(AxisHeightByZenith(STATION, TARGET, 45 * DEGREE, 0.0));
}

TEST(AxisHeightByZenith, IsNothingForAHeightThatIsNone)
{
    for (const double height : {UNDEFINED_REAL, MISSING_VALUE, std::numeric_limits<double>::quiet_NaN()})
    {
        // Level: the height of the target is that of the axis.
        const PointRecord target = {0.0, 1000.0, height, POINT_HAS_PLAN | POINT_HAS_HEIGHT};
        EXPECT_FALSE(AxisHeightByZenith(STATION, target, ANGLE_QUARTER_CIRCLE, 0.0)) << height;
    }
}

TEST(AxisHeightByZenith, IsNothingForAReadingOfFaceTwo)
{
    // A half circle is read in face two: its direction no longer fits, and it has no height.
    EXPECT_FALSE(AxisHeightByZenith(STATION, TARGET, ANGLE_HALF_CIRCLE, 0.0));
}
