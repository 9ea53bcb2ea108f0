#include "station/circle.h"

#include <cstdint>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "qstdlib.h"
#include "tests/support/fake_instrument.h"
#include "tests/support/record.h"

using qstdlib::CircleOrientation;
using qstdlib::FaceNormalizedReading;
using qstdlib::FaceReducedReading;
using qstdlib::IsFaceTwo;
using support::FakeInstrument;
using support::PlanPoint;

namespace {

constexpr AngleUnit FACE_ONE = 5000000;
constexpr AngleUnit FACE_TWO = 15000000;

const PointRecord STATION = PlanPoint(100.0, 200.0);
const PointRecord NORTH = PlanPoint(110.0, 200.0);
const PointRecord EAST = PlanPoint(100.0, 210.0);

} // namespace

TEST(FaceReducedReading, LeavesAFaceOneReadingAsItIsEvenOutsideTheCircle)
{
    for (const AngleUnit reading :
         std::initializer_list<AngleUnit>{0, 1, 20735999, 20736000, 30000000, -5, INT32_MIN, INT32_MAX})
    {
        EXPECT_EQ(reading, FaceReducedReading(reading, FACE_ONE));
    }
}

// (reading + 10,368,000) remainder 20,736,000.
TEST(FaceReducedReading, TurnsAFaceTwoReadingByAHalfCircle)
{
    EXPECT_EQ(10368000, FaceReducedReading(0, FACE_TWO));
    EXPECT_EQ(20735999, FaceReducedReading(10367999, FACE_TWO));
    EXPECT_EQ(0, FaceReducedReading(10368000, FACE_TWO));
    EXPECT_EQ(4632000, FaceReducedReading(15000000, FACE_TWO));
    EXPECT_EQ(1, FaceReducedReading(31104001, FACE_TWO));
}

// The division truncates and nothing is added before it: -20,000,000 + 10,368,000 stays negative.
TEST(FaceReducedReading, KeepsTheSignOfANegativeFaceTwoReading)
{
    EXPECT_EQ(0, FaceReducedReading(-10368000, FACE_TWO));
    EXPECT_EQ(-1, FaceReducedReading(-10368001, FACE_TWO));
    EXPECT_EQ(-9632000, FaceReducedReading(-20000000, FACE_TWO));
    EXPECT_EQ(-1, FaceReducedReading(-31104001, FACE_TWO));
}

// 2,147,483,647 + 10,368,000 wraps to -2,137,115,649 = -103 x 20,736,000 - 1,307,649.
TEST(FaceReducedReading, WrapsAFaceTwoReadingAtTheEndOfTheInteger)
{
    EXPECT_EQ(-1307649, FaceReducedReading(INT32_MAX, FACE_TWO));
}

TEST(FaceReducedReading, TellsTheFaceByTheZenithReducedIntoOneCircle)
{
    const auto isFaceTwo = [](AngleUnit zenith) { return FaceReducedReading(0, zenith) != 0; };
    EXPECT_FALSE(isFaceTwo(0));
    EXPECT_FALSE(isFaceTwo(10367999));
    EXPECT_TRUE(isFaceTwo(10368000));
    EXPECT_TRUE(isFaceTwo(20735999));
    EXPECT_FALSE(isFaceTwo(20736000));
    EXPECT_FALSE(isFaceTwo(31103999));
    EXPECT_TRUE(isFaceTwo(31104000));
    EXPECT_TRUE(isFaceTwo(-1));
    EXPECT_TRUE(isFaceTwo(-10368000));
    EXPECT_FALSE(isFaceTwo(-10368001));
    EXPECT_FALSE(isFaceTwo(-20736000));
}

// -20,736,001 + 20,736,000 = -1: the truncating remainder stays -1, which is below a half circle, although the same
// direction within the circle is not. 2,147,483,647 + 20,736,000 wraps to -2,126,747,649, remainder -11,675,649.
TEST(FaceReducedReading, TakesANegativeRemainderForFaceOne)
{
    EXPECT_EQ(7, FaceReducedReading(7, -20736001));
    EXPECT_EQ(7, FaceReducedReading(7, -31104000));
    EXPECT_EQ(7, FaceReducedReading(7, INT32_MAX));
}

TEST(IsFaceTwo, TakesTheZenithAsItStands)
{
    for (const AngleUnit zenith : {0, 1, 10367999})
    {
        EXPECT_FALSE(IsFaceTwo(zenith)) << zenith;
    }
    for (const AngleUnit zenith :
         std::initializer_list<AngleUnit>{10368000, 20735999, 20736000, INT32_MAX, -1, INT32_MIN})
    {
        EXPECT_TRUE(IsFaceTwo(zenith)) << zenith;
    }
}

TEST(FaceNormalizedReading, LeavesAFaceOneReadingAsItIsEvenOutsideTheCircle)
{
    for (const AngleUnit reading : std::initializer_list<AngleUnit>{0, 20736000, 30000000, -5, INT32_MIN, INT32_MAX})
    {
        EXPECT_EQ(reading, FaceNormalizedReading(reading, FACE_ONE));
    }
}

// Less a half circle, then lowered by whole circles past the most negative integer: 0 ends at 2^32 - 104 circles =
// 2,138,423,296, and 10,368,000 one circle below their sum, at 2,128,055,296.
TEST(FaceNormalizedReading, NormalisesAFaceTwoReading)
{
    EXPECT_EQ(2138423296, FaceNormalizedReading(10368000, FACE_TWO));
    EXPECT_EQ(2138423301, FaceNormalizedReading(10368005, FACE_TWO));
    EXPECT_EQ(2138423295, FaceNormalizedReading(10367999, FACE_TWO));
    EXPECT_EQ(2128055296, FaceNormalizedReading(0, -1));
    EXPECT_EQ(2138423296, FaceNormalizedReading(31104000, FACE_TWO));
}

// What exceeds a circle after the half circle is left as it is; -2^31 less a half circle wraps to such a value.
TEST(FaceNormalizedReading, LeavesAFaceTwoReadingBeyondTheCircle)
{
    EXPECT_EQ(20736001, FaceNormalizedReading(31104001, FACE_TWO));
    EXPECT_EQ(2137115648, FaceNormalizedReading(INT32_MIN, FACE_TWO));
}

TEST(CircleOrientation, IsTheAzimuthLessTheReading)
{
    EXPECT_EQ(5184000, CircleOrientation(&STATION, &EAST, 0));
    EXPECT_EQ(4184000, CircleOrientation(&STATION, &EAST, 1000000));
    EXPECT_EQ(0, CircleOrientation(&STATION, &EAST, 5184000));
    EXPECT_EQ(-1, CircleOrientation(&STATION, &NORTH, 1));
}

// East less 15,552,000 is exactly minus a half circle; one unit to either side of it.
TEST(CircleOrientation, LiesFromMinusAHalfCircleToBelowAHalfCircle)
{
    EXPECT_EQ(-10368000, CircleOrientation(&STATION, &EAST, 15552000));
    EXPECT_EQ(-10367999, CircleOrientation(&STATION, &EAST, 15551999));
    EXPECT_EQ(10367999, CircleOrientation(&STATION, &EAST, 15552001));
}

// The sum with one full circle is reduced with its sign: 0 - 41,472,001 + 20,736,000 = -20,736,001, remainder -1;
// 0 - 35,000,000 + 20,736,000 = -14,264,000 stays.
TEST(CircleOrientation, KeepsTheSignForAReadingBeyondTheCircle)
{
    EXPECT_EQ(-1, CircleOrientation(&STATION, &NORTH, 41472001));
    EXPECT_EQ(-14264000, CircleOrientation(&STATION, &NORTH, 35000000));
}

// A negative reading: 0 + 1 + 20,736,000, remainder 1.
TEST(CircleOrientation, ReducesAfterANegativeReading)
{
    EXPECT_EQ(1, CircleOrientation(&STATION, &NORTH, -1));
    EXPECT_EQ(1, CircleOrientation(&STATION, &NORTH, -20736001));
}

// 0 - (-2^31) wraps to -2^31; + 20,736,000 = -2,126,747,648 = -102 x 20,736,000 - 11,675,648.
TEST(CircleOrientation, WrapsAtTheEndOfTheInteger)
{
    EXPECT_EQ(-11675648, CircleOrientation(&STATION, &NORTH, INT32_MIN));
}

TEST(CircleOrientation, CountsFromSouthWhenTheInstrumentDoes)
{
    FakeInstrument instrument;
    instrument.azimuthReference = 1;
    EXPECT_EQ(15552000 - 20736000, CircleOrientation(&STATION, &EAST, 0));
    EXPECT_THAT(instrument.reads, testing::ElementsAre(support::IntRead(SETTING_AZIMUTH_REFERENCE)));
}

// The undefined azimuth goes through the same sum: 134,217,728 + 20,736,000 = 7 x 20,736,000 + 9,801,728.
TEST(CircleOrientation, DoesNotTellAnUndefinedAzimuthApart)
{
    EXPECT_EQ(9801728, CircleOrientation(&STATION, &STATION, 0));
    PointRecord noPlan = EAST;
    noPlan.flags = POINT_HAS_HEIGHT;
    EXPECT_EQ(9801728, CircleOrientation(&STATION, &noPlan, 0));
}
