#include "instrument/simulated_instrument.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "qstdlib.h"
#include "tests/support/angle.h"
#include "tests/support/record.h"

using qstd::InstrumentConnection;
using qstd::SimulatedInstrument;
using support::DegreesToUnits;
using support::FullPoint;
using support::Patterned;

namespace {

constexpr double INFINITE = std::numeric_limits<double>::infinity();

// At (10, 20), axis at 101.5.
SimulatedInstrument OnTheMark()
{
    SimulatedInstrument instrument;
    instrument.station = FullPoint(10.0, 20.0, 100.0);
    instrument.instrumentHeight = 1.5;
    return instrument;
}

ObservationRecord Observed(const SimulatedInstrument& instrument, const PointRecord& target, double targetHeight)
{
    auto observation = Patterned<ObservationRecord>();
    EXPECT_TRUE(instrument.Observe(target, targetHeight, &observation));
    return observation;
}

void ExpectZeros(const ObservationRecord& observation)
{
    EXPECT_EQ(0, observation.horizontalAngle);
    EXPECT_EQ(0, observation.zenithAngle);
    EXPECT_EQ(0.0, observation.distance);
    EXPECT_EQ(0.0, observation.secondDistance);
    EXPECT_EQ(0.0, observation.thirdDistance);
    EXPECT_EQ(0.0, observation.northing);
    EXPECT_EQ(0.0, observation.easting);
    EXPECT_EQ(0.0, observation.height);
}

// What the connected library is told of a target, through a function that hands its computed point over: the corner
// of the north axis and the eastward line through (north, 5).
struct HandedOver
{
    int32_t status;
    SightRecord observation;
    PointRecord corner;
};

HandedOver HandOver(double north, double height, double passthrough)
{
    const PointRecord first = FullPoint(0.0, 0.0, 0.0);
    const PointRecord second = FullPoint(8.0, 0.0, 0.0);
    const PointRecord third = FullPoint(north, 5.0, height);
    auto result = Patterned<HandedOver>();
    result.status = QCalcOfsCorner3Pt(&first, &second, &third, 0.0, &result.observation, &result.corner, passthrough);
    return result;
}

} // namespace

TEST(SimulatedInstrument, ReadsDirectionZenithAndDistances)
{
    // 30 north, 40 east, 50 in plan; prism 48.5 + 3 - 101.5 = -50 below the axis: zenith 135 degrees, slope 50 sqrt(2).
    // Azimuth atan(40 / 30) = 53.13010235 degrees = 3,060,293.9 units.
    const ObservationRecord o = Observed(OnTheMark(), FullPoint(40.0, 60.0, 48.5), 3.0);
    EXPECT_EQ(3060294, o.horizontalAngle);
    EXPECT_EQ(DegreesToUnits(135.0), o.zenithAngle);
    EXPECT_NEAR(50.0 * std::sqrt(2.0), o.distance, 1e-12);
    EXPECT_EQ(50.0, o.secondDistance);
    EXPECT_EQ(-50.0, o.thirdDistance);
    EXPECT_EQ(40.0, o.northing);
    EXPECT_EQ(60.0, o.easting);
    EXPECT_EQ(48.5, o.height);
}

TEST(SimulatedInstrument, CountsTheCircleFromItsOrientation)
{
    SimulatedInstrument instrument = OnTheMark();
    const PointRecord east = FullPoint(10.0, 30.0, 101.5);
    instrument.orientation = DegreesToUnits(30.0);
    EXPECT_EQ(DegreesToUnits(60.0), Observed(instrument, east, 0.0).horizontalAngle);
    instrument.orientation = DegreesToUnits(100.0);
    EXPECT_EQ(DegreesToUnits(350.0), Observed(instrument, east, 0.0).horizontalAngle);
    instrument.orientation = -DegreesToUnits(300.0);
    EXPECT_EQ(DegreesToUnits(30.0), Observed(instrument, east, 0.0).horizontalAngle);
}

TEST(SimulatedInstrument, CountsAzimuthsFromSouthWhereItsReferenceSaysSo)
{
    SimulatedInstrument instrument = OnTheMark();
    const PointRecord east = FullPoint(10.0, 30.0, 101.5);
    instrument.azimuthReference = 1;
    EXPECT_EQ(DegreesToUnits(270.0), Observed(instrument, east, 0.0).horizontalAngle);
    instrument.azimuthReference = 2;
    EXPECT_EQ(DegreesToUnits(90.0), Observed(instrument, east, 0.0).horizontalAngle);
}

TEST(SimulatedInstrument, LooksStraightUpAndDown)
{
    const ObservationRecord up = Observed(OnTheMark(), FullPoint(10.0, 20.0, 104.5), 0.0);
    EXPECT_EQ(0, up.horizontalAngle);
    EXPECT_EQ(0, up.zenithAngle);
    EXPECT_EQ(3.0, up.distance);
    const ObservationRecord down = Observed(OnTheMark(), FullPoint(10.0, 20.0, 98.5), 0.0);
    EXPECT_EQ(0, down.horizontalAngle);
    EXPECT_EQ(ANGLE_HALF_CIRCLE, down.zenithAngle);
    EXPECT_EQ(3.0, down.distance);
}

TEST(SimulatedInstrument, HasNoSightToItsOwnAxisOrNowhere)
{
    for (const PointRecord& target :
         {FullPoint(10.0, 20.0, 101.0), FullPoint(INFINITE, 0.0, 0.0), FullPoint(0.0, 0.0, std::nan(""))})
    {
        SimulatedInstrument instrument = OnTheMark();
        instrument.isFaceTwo = true;
        auto observation = Patterned<ObservationRecord>();
        EXPECT_FALSE(instrument.Observe(target, 0.5, &observation));
        ExpectZeros(observation);
        const SightRecord sight = instrument.Sight(target, 0.5);
        EXPECT_EQ(0, sight.horizontalAngle);
        EXPECT_EQ(0, sight.zenithAngle);
        EXPECT_EQ(0.0, sight.distance);
    }
}

TEST(SimulatedInstrument, ShowsASightInItsFace)
{
    SimulatedInstrument instrument = OnTheMark();
    const PointRecord target = FullPoint(10.0, -20.0, 141.5);
    const SightRecord faceOne = instrument.Sight(target, 0.0);
    EXPECT_EQ(DegreesToUnits(270.0), faceOne.horizontalAngle);
    EXPECT_EQ(DegreesToUnits(45.0), faceOne.zenithAngle);
    EXPECT_NEAR(40.0 * std::sqrt(2.0), faceOne.distance, 1e-12);
    instrument.isFaceTwo = true;
    const SightRecord faceTwo = instrument.Sight(target, 0.0);
    EXPECT_EQ(DegreesToUnits(90.0), faceTwo.horizontalAngle);
    EXPECT_EQ(DegreesToUnits(315.0), faceTwo.zenithAngle);
    EXPECT_EQ(faceOne.distance, faceTwo.distance);
}

TEST(InstrumentConnection, AnswersTheLibraryWithThePassedThroughTargetHeight)
{
    // The corner (6, 0): from the station (10, 20) 4 south, 20 west. Axis 101.5, prism 100 + 1.5: level.
    const SimulatedInstrument instrument = OnTheMark();
    const InstrumentConnection connection(instrument);
    const HandedOver result = HandOver(6.0, 100.0, 1.5);
    EXPECT_EQ(0, result.status);
    support::ExpectSameFields(FullPoint(6.0, 0.0, 100.0), result.corner);
    EXPECT_EQ(ANGLE_QUARTER_CIRCLE, result.observation.zenithAngle);
    // 180 + atan(20 / 4) = 258.6900675 degrees.
    EXPECT_EQ(DegreesToUnits(258.69006752597977), result.observation.horizontalAngle);
    EXPECT_NEAR(std::sqrt(416.0), result.observation.distance, 1e-12);
}

TEST(InstrumentConnection, FollowsTheInstrumentAsItChanges)
{
    SimulatedInstrument instrument;
    instrument.station = FullPoint(0.0, 0.0, 0.0);
    const InstrumentConnection connection(instrument);
    EXPECT_EQ(0, HandOver(5.0, 5.0, 0.0).observation.horizontalAngle);
    instrument.isFaceTwo = true;
    const SightRecord faceTwo = HandOver(5.0, 5.0, 0.0).observation;
    EXPECT_EQ(ANGLE_HALF_CIRCLE, faceTwo.horizontalAngle);
    EXPECT_EQ(DegreesToUnits(315.0), faceTwo.zenithAngle);
    const PointRecord origin = FullPoint(0.0, 0.0, 0.0);
    const PointRecord north = FullPoint(1.0, 0.0, 0.0);
    AngDistRecord inverse;
    EXPECT_EQ(0, QCogoCoordToAngDist(&origin, &north, &inverse));
    EXPECT_EQ(0, inverse.azimuth);
    instrument.azimuthReference = 1;
    EXPECT_EQ(0, QCogoCoordToAngDist(&origin, &north, &inverse));
    EXPECT_EQ(ANGLE_HALF_CIRCLE, inverse.azimuth);
}

TEST(InstrumentConnection, AnswersWithNothingWhereThereIsNoSight)
{
    const SimulatedInstrument instrument; // at the origin, where the corner is
    const InstrumentConnection connection(instrument);
    const HandedOver result = HandOver(0.0, 0.0, 0.0);
    EXPECT_EQ(0, result.status);
    EXPECT_EQ(0, result.observation.zenithAngle);
    EXPECT_EQ(0.0, result.observation.distance);
}

TEST(InstrumentConnection, IsInnermostOneAndRestoresTheDefaults)
{
    SimulatedInstrument outer;
    outer.station = FullPoint(0.0, 0.0, 0.0);
    SimulatedInstrument inner;
    inner.station = FullPoint(9.0, 0.0, 0.0);
    {
        const InstrumentConnection outerConnection(outer);
        {
            const InstrumentConnection innerConnection(inner);
            EXPECT_EQ(4.0, HandOver(5.0, 0.0, 0.0).observation.distance);
        }
        EXPECT_EQ(5.0, HandOver(5.0, 0.0, 0.0).observation.distance);
    }
    // Without an observation service the corner comes back as zeros.
    support::ExpectSameFields(FullPoint(0.0, 0.0, 0.0), HandOver(5.0, 3.0, 0.0).corner);
}
