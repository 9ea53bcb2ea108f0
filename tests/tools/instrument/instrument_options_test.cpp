#include "instrument/instrument_options.h"

#include <gtest/gtest.h>

using qstd::InstrumentFrom;
using qstd::InstrumentOptions;
using qstd::LinearUnit;
using qstd::SimulatedInstrument;

TEST(InstrumentOptions, NoneIsTheStandAloneInstrument)
{
    const SimulatedInstrument instrument = InstrumentFrom({}, LinearUnit::METRE);
    EXPECT_EQ(instrument.azimuthReference, 0);
    EXPECT_EQ(instrument.curvatureRefraction, 0);
    EXPECT_EQ(instrument.seaLevel, 0);
    EXPECT_EQ(instrument.scaleFactor, 1.0);
    EXPECT_FALSE(instrument.isFaceTwo);
}

TEST(InstrumentOptions, AGivenValueSwitchesItsCorrectionOn)
{
    InstrumentOptions options;
    options.isSouthAzimuth = true;
    options.isFaceTwo = true;
    options.scale = 0.9996;
    options.seaLevel = 1000.0;
    options.refraction = 2;
    options.instrumentHeight = 1.5;
    const SimulatedInstrument instrument = InstrumentFrom(options, LinearUnit::FOOT);
    EXPECT_EQ(instrument.azimuthReference, 1);
    EXPECT_TRUE(instrument.isFaceTwo);
    EXPECT_EQ(instrument.scaleFactor, 0.9996);
    EXPECT_EQ(instrument.seaLevel, 1);
    // The library wants metres: 1000 ft are 304.8 m.
    EXPECT_DOUBLE_EQ(instrument.meanElevation, 304.8);
    EXPECT_EQ(instrument.curvatureRefraction, 1);
    EXPECT_EQ(instrument.refractionSelector, 2);
    EXPECT_EQ(instrument.instrumentHeight, 1.5);
}

TEST(InstrumentOptions, AnElevationOfZeroSwitchesTheCorrectionOnToo)
{
    InstrumentOptions options;
    options.seaLevel = 0.0;
    EXPECT_EQ(InstrumentFrom(options, LinearUnit::METRE).seaLevel, 1);
}
