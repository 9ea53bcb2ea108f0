#include "core/face.h"

#include <cstdint>
#include <limits>

#include <gtest/gtest.h>

#include "qstdlib.h"
#include "tests/support/angle.h"

using qstdlib::ReduceToFaceOne;
using qstdlib::SightAngles;
using qstdlib::TurnToFaceTwo;
using support::DegreesToUnits;

namespace {

constexpr AngleUnit FULL = 20736000;
constexpr AngleUnit HALF = 10368000;
constexpr AngleUnit QUARTER = 5184000;
constexpr AngleUnit LEAST = std::numeric_limits<AngleUnit>::min();
constexpr AngleUnit GREATEST = std::numeric_limits<AngleUnit>::max();

void ExpectAngles(const SightAngles& expected, const SightAngles& actual)
{
    EXPECT_EQ(expected.horizontalAngle, actual.horizontalAngle);
    EXPECT_EQ(expected.zenithAngle, actual.zenithAngle);
}

} // namespace

TEST(ReduceToFaceOne, LeavesFaceOneAsItIs)
{
    for (const AngleUnit zenith : std::initializer_list<AngleUnit>{0, 1, QUARTER, HALF - 1})
    {
        ExpectAngles({1234567, zenith}, ReduceToFaceOne({1234567, zenith}));
    }
}

TEST(ReduceToFaceOne, TurnsAndMirrorsFaceTwo)
{
    ExpectAngles({DegreesToUnits(210.0), DegreesToUnits(80.0)},
                 ReduceToFaceOne({DegreesToUnits(30.0), DegreesToUnits(280.0)}));
    ExpectAngles({DegreesToUnits(20.0), DegreesToUnits(80.0)},
                 ReduceToFaceOne({DegreesToUnits(200.0), DegreesToUnits(280.0)}));
    ExpectAngles({HALF, 1}, ReduceToFaceOne({0, FULL - 1}));
}

TEST(ReduceToFaceOne, TakesAHalfCircleForFaceTwo)
{
    ExpectAngles({HALF + 7, HALF}, ReduceToFaceOne({7, HALF}));
}

TEST(ReduceToFaceOne, ReducesTheZenithAngleOnce)
{
    ExpectAngles({5, 0}, ReduceToFaceOne({5, FULL}));
    ExpectAngles({5, QUARTER}, ReduceToFaceOne({5, FULL + QUARTER}));
    ExpectAngles({5 + HALF, QUARTER}, ReduceToFaceOne({5, -QUARTER}));
    ExpectAngles({5 + HALF, 1}, ReduceToFaceOne({5, -1}));
    ExpectAngles({5, 0}, ReduceToFaceOne({5, -FULL}));
    // Below minus one circle the remainder stays negative, which is face one.
    ExpectAngles({5, -1}, ReduceToFaceOne({5, -FULL - 1}));
    ExpectAngles({5, -3 * QUARTER}, ReduceToFaceOne({5, -FULL - 3 * QUARTER}));
    // 2^31 - 1 + a full circle wraps to -2,126,747,649; 102 circles are 2,115,072,000.
    ExpectAngles({5, -11675649}, ReduceToFaceOne({5, GREATEST}));
}

TEST(ReduceToFaceOne, ReducesTheHorizontalAngleOnlyInFaceTwo)
{
    for (const AngleUnit unreduced : std::initializer_list<AngleUnit>{-7, FULL, FULL + 7, LEAST, GREATEST})
    {
        EXPECT_EQ(unreduced, ReduceToFaceOne({unreduced, QUARTER}).horizontalAngle);
    }
    EXPECT_EQ(7, ReduceToFaceOne({HALF + 7, 3 * QUARTER}).horizontalAngle);
    EXPECT_EQ(HALF + 7, ReduceToFaceOne({FULL + 7, 3 * QUARTER}).horizontalAngle);
    EXPECT_EQ(HALF - 7, ReduceToFaceOne({-7, 3 * QUARTER}).horizontalAngle);
    // The remainder keeps the sign of the sum: nothing is added first.
    EXPECT_EQ(-7, ReduceToFaceOne({-HALF - 7, 3 * QUARTER}).horizontalAngle);
    // 2^31 - 1 + a half circle wraps to -2,137,115,649; 103 circles are 2,135,808,000.
    EXPECT_EQ(-1307649, ReduceToFaceOne({GREATEST, 3 * QUARTER}).horizontalAngle);
}

TEST(TurnToFaceTwo, TurnsTheCircleAndMirrorsTheZenithAngle)
{
    ExpectAngles({DegreesToUnits(210.0), DegreesToUnits(280.0)},
                 TurnToFaceTwo({DegreesToUnits(30.0), DegreesToUnits(80.0)}));
    ExpectAngles({DegreesToUnits(20.0), DegreesToUnits(260.0)},
                 TurnToFaceTwo({DegreesToUnits(200.0), DegreesToUnits(100.0)}));
    ExpectAngles({0, HALF}, TurnToFaceTwo({HALF, HALF}));
}

TEST(TurnToFaceTwo, LeavesTheZenithAngleUnreduced)
{
    ExpectAngles({HALF, FULL}, TurnToFaceTwo({0, 0}));
    ExpectAngles({HALF, -1}, TurnToFaceTwo({0, FULL + 1}));
    ExpectAngles({HALF, FULL + 1}, TurnToFaceTwo({0, -1}));
    // 20,736,000 + 2^31 wraps to 20,736,000 - 2^31.
    ExpectAngles({HALF, -2126747648}, TurnToFaceTwo({0, LEAST}));
}

TEST(TurnToFaceTwo, KeepsTheSignOfTheRemainder)
{
    EXPECT_EQ(-7, TurnToFaceTwo({-HALF - 7, QUARTER}).horizontalAngle);
    EXPECT_EQ(-1307649, TurnToFaceTwo({GREATEST, QUARTER}).horizontalAngle);
}
