#include "instrument/earth.h"

#include <gtest/gtest.h>

using qstd::RefractionCoefficient;
using qstd::SimulatedInstrument;

TEST(RefractionCoefficient, IsThatOfTheSetting)
{
    const double expected[] = {0.132, 0.133, 0.20};
    for (int32_t setting = 0; setting < 3; ++setting)
    {
        SimulatedInstrument instrument;
        instrument.refractionSelector = setting;
        EXPECT_EQ(RefractionCoefficient(instrument), expected[setting]);
    }
}

TEST(RefractionCoefficient, TakesTheNearestSettingForOneThatThereIsNot)
{
    SimulatedInstrument instrument;
    instrument.refractionSelector = -1;
    EXPECT_EQ(RefractionCoefficient(instrument), 0.132);
    instrument.refractionSelector = 7;
    EXPECT_EQ(RefractionCoefficient(instrument), 0.20);
}
