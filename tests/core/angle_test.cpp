#include "core/angle.h"

#include <cmath>
#include <cstdint>
#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/angle.h"
#include "tests/support/fake_instrument.h"
#include "tests/support/record.h"

using support::SameBits;

namespace {

constexpr AngleUnit FULL = 20736000;
constexpr AngleUnit HALF = 10368000;
constexpr AngleUnit QUARTER = 5184000;
constexpr int32_t LOWEST = std::numeric_limits<int32_t>::min();
constexpr int32_t HIGHEST = std::numeric_limits<int32_t>::max();
constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
constexpr double INFINITE = std::numeric_limits<double>::infinity();

// The factors that the conversions are defined with: radians a unit, half units a radian.
constexpr double RADIANS_A_UNIT = 3.0300855069346e-7;
constexpr double HALF_UNITS_A_RADIAN = 6600473.799907084;

// Radians that come to `halfUnits` before they are cut off to an integer.
double RadiansOfHalfUnits(double halfUnits)
{
    return halfUnits / HALF_UNITS_A_RADIAN;
}

} // namespace

// --- constants ---

TEST(AngleConstants, AreThoseOfSixteenthsOfAnArcSecond)
{
    EXPECT_EQ(360 * 3600 * 16, ANGLE_FULL_CIRCLE);
    EXPECT_EQ(180 * 3600 * 16, ANGLE_HALF_CIRCLE);
    EXPECT_EQ(90 * 3600 * 16, ANGLE_QUARTER_CIRCLE);
    EXPECT_EQ(1 << 27, ANGLE_UNDEFINED);
    EXPECT_TRUE(SameBits(std::ldexp(1.0, 27), UNDEFINED_REAL));
    EXPECT_TRUE(SameBits(1.0e20, MISSING_VALUE));
}

// --- wrap-around arithmetic ---

TEST(WrapAdd, IsThePlainSumInsideTheRange)
{
    EXPECT_EQ(5, qstdlib::WrapAdd(2, 3));
    EXPECT_EQ(-5, qstdlib::WrapAdd(-2, -3));
    EXPECT_EQ(-1, qstdlib::WrapAdd(HIGHEST, LOWEST));
}

TEST(WrapAdd, WrapsAtBothEnds)
{
    EXPECT_EQ(LOWEST, qstdlib::WrapAdd(HIGHEST, 1));
    EXPECT_EQ(HIGHEST, qstdlib::WrapAdd(LOWEST, -1));
    EXPECT_EQ(-2, qstdlib::WrapAdd(HIGHEST, HIGHEST)); // 2^32 - 2
    EXPECT_EQ(0, qstdlib::WrapAdd(LOWEST, LOWEST));    // -2^32
}

TEST(WrapSubtract, IsThePlainDifferenceInsideTheRange)
{
    EXPECT_EQ(-1, qstdlib::WrapSubtract(2, 3));
    EXPECT_EQ(1, qstdlib::WrapSubtract(-2, -3));
    EXPECT_EQ(0, qstdlib::WrapSubtract(LOWEST, LOWEST));
}

TEST(WrapSubtract, WrapsAtBothEnds)
{
    EXPECT_EQ(HIGHEST, qstdlib::WrapSubtract(LOWEST, 1));
    EXPECT_EQ(LOWEST, qstdlib::WrapSubtract(HIGHEST, -1));
    EXPECT_EQ(LOWEST, qstdlib::WrapSubtract(0, LOWEST)); // 2^31
    EXPECT_EQ(-1, qstdlib::WrapSubtract(HIGHEST, LOWEST));
}

// --- circle reductions ---

TEST(CircleRemainder, TakesTheSignOfTheAngle)
{
    EXPECT_EQ(0, qstdlib::CircleRemainder(0));
    EXPECT_EQ(FULL - 1, qstdlib::CircleRemainder(FULL - 1));
    EXPECT_EQ(0, qstdlib::CircleRemainder(FULL));
    EXPECT_EQ(1, qstdlib::CircleRemainder(FULL + 1));
    EXPECT_EQ(-1, qstdlib::CircleRemainder(-1));
    EXPECT_EQ(0, qstdlib::CircleRemainder(-FULL));
    EXPECT_EQ(-5, qstdlib::CircleRemainder(-3 * FULL - 5));
    // 2^31 = 103 * 20,736,000 + 11,675,648
    EXPECT_EQ(11675647, qstdlib::CircleRemainder(HIGHEST));
    EXPECT_EQ(-11675648, qstdlib::CircleRemainder(LOWEST));
}

TEST(ReduceToCircle, BringsOneNegativeCircleIntoTheCircle)
{
    EXPECT_EQ(0, qstdlib::ReduceToCircle(0));
    EXPECT_EQ(FULL - 1, qstdlib::ReduceToCircle(-1));
    EXPECT_EQ(0, qstdlib::ReduceToCircle(-FULL));
    EXPECT_EQ(7, qstdlib::ReduceToCircle(5 * FULL + 7));
}

TEST(ReduceToCircle, StaysNegativeBelowOneNegativeCircle)
{
    EXPECT_EQ(-1, qstdlib::ReduceToCircle(-FULL - 1));
}

TEST(ReduceToCircle, WrapsFrom2126747648On)
{
    // 2,126,747,647 + 20,736,000 = 2^31 - 1 is the last sum inside the range.
    EXPECT_EQ(11675647, qstdlib::ReduceToCircle(2126747647));
    EXPECT_EQ(-11675648, qstdlib::ReduceToCircle(2126747648));
}

// --- double to integer ---

TEST(TruncateToInt32, CutsOffTowardZero)
{
    EXPECT_EQ(0, qstdlib::TruncateToInt32(0.0));
    EXPECT_EQ(0, qstdlib::TruncateToInt32(-0.0));
    EXPECT_EQ(0, qstdlib::TruncateToInt32(0.9999999999999999));
    EXPECT_EQ(0, qstdlib::TruncateToInt32(-0.9999999999999999));
    EXPECT_EQ(2, qstdlib::TruncateToInt32(2.5));
    EXPECT_EQ(-2, qstdlib::TruncateToInt32(-2.5));
    EXPECT_EQ(0, qstdlib::TruncateToInt32(std::numeric_limits<double>::denorm_min()));
}

TEST(TruncateToInt32, ReachesBothEndsOfTheRange)
{
    EXPECT_EQ(HIGHEST, qstdlib::TruncateToInt32(2147483647.0));
    EXPECT_EQ(HIGHEST, qstdlib::TruncateToInt32(2147483647.5));
    EXPECT_EQ(HIGHEST - 1, qstdlib::TruncateToInt32(std::nextafter(2147483647.0, 0.0)));
    EXPECT_EQ(-HIGHEST, qstdlib::TruncateToInt32(-2147483647.0));
    EXPECT_EQ(-HIGHEST, qstdlib::TruncateToInt32(-2147483647.5));
    EXPECT_EQ(-HIGHEST, qstdlib::TruncateToInt32(std::nextafter(-2147483648.0, 0.0)));
}

TEST(TruncateToInt32, SaturatesBeyondTheRange)
{
    EXPECT_EQ(HIGHEST, qstdlib::TruncateToInt32(2147483648.0));
    EXPECT_EQ(LOWEST, qstdlib::TruncateToInt32(-2147483648.0));
    EXPECT_EQ(LOWEST, qstdlib::TruncateToInt32(-2147483649.0));
    EXPECT_EQ(HIGHEST, qstdlib::TruncateToInt32(1e300));
    EXPECT_EQ(LOWEST, qstdlib::TruncateToInt32(-1e300));
    EXPECT_EQ(HIGHEST, qstdlib::TruncateToInt32(INFINITE));
    EXPECT_EQ(LOWEST, qstdlib::TruncateToInt32(-INFINITE));
}

TEST(TruncateToInt32, AnswersZeroToNotANumber)
{
    EXPECT_EQ(0, qstdlib::TruncateToInt32(NOT_A_NUMBER));
    EXPECT_EQ(0, qstdlib::TruncateToInt32(-NOT_A_NUMBER));
}

// --- units to radians ---

TEST(AngleToRadians, MultipliesTheAngleInTheCircle)
{
    EXPECT_TRUE(SameBits(0.0, qstdlib::AngleToRadians(0)));
    EXPECT_TRUE(SameBits(RADIANS_A_UNIT, qstdlib::AngleToRadians(1)));
    EXPECT_TRUE(SameBits(HALF * RADIANS_A_UNIT, qstdlib::AngleToRadians(HALF)));
    EXPECT_TRUE(SameBits(20735999.0 * RADIANS_A_UNIT, qstdlib::AngleToRadians(FULL - 1)));
}

TEST(AngleToRadians, GivesPiForAHalfCircle)
{
    EXPECT_NEAR(support::PI, qstdlib::AngleToRadians(HALF), 1e-15);
    EXPECT_NEAR(support::PI / 2, qstdlib::AngleToRadians(QUARTER), 1e-15);
}

TEST(AngleToRadians, ReducesIntoTheCircle)
{
    EXPECT_TRUE(SameBits(20735999.0 * RADIANS_A_UNIT, qstdlib::AngleToRadians(-1)));
    EXPECT_TRUE(SameBits(0.0, qstdlib::AngleToRadians(FULL)));
    EXPECT_TRUE(SameBits(0.0, qstdlib::AngleToRadians(-FULL)));
    EXPECT_TRUE(SameBits(5.0 * RADIANS_A_UNIT, qstdlib::AngleToRadians(7 * FULL + 5)));
}

TEST(AngleToRadians, IsNegativeBelowOneNegativeCircle)
{
    EXPECT_TRUE(SameBits(-RADIANS_A_UNIT, qstdlib::AngleToRadians(-FULL - 1)));
    EXPECT_TRUE(SameBits(-20735999.0 * RADIANS_A_UNIT, qstdlib::AngleToRadians(-2 * FULL + 1)));
    // -2^31 + 20,736,000 = -2,126,747,648 = -102 * 20,736,000 - 11,675,648
    EXPECT_TRUE(SameBits(-11675648.0 * RADIANS_A_UNIT, qstdlib::AngleToRadians(LOWEST)));
}

TEST(AngleToRadians, WrapsFrom2126747648On)
{
    // The last sum inside the range is 2^31 - 1 = 103 * 20,736,000 + 11,675,647; the next one wraps to -2^31.
    EXPECT_TRUE(SameBits(11675647.0 * RADIANS_A_UNIT, qstdlib::AngleToRadians(2126747647)));
    EXPECT_TRUE(SameBits(-11675648.0 * RADIANS_A_UNIT, qstdlib::AngleToRadians(2126747648)));
    // 2^31 - 1 + 20,736,000 - 2^32 = -2,126,747,649 = -102 * 20,736,000 - 11,675,649
    EXPECT_TRUE(SameBits(-11675649.0 * RADIANS_A_UNIT, qstdlib::AngleToRadians(HIGHEST)));
}

TEST(AngleToRadians, TurnsNormalizedAnglesBackIntoDirections)
{
    for (const AngleUnit direction : std::initializer_list<AngleUnit>{0, 5, QUARTER, HALF, FULL - 1, -1, -HALF})
    {
        AngleUnit normalized = direction;
        qstdlib::NormalizeAngle(&normalized);
        const double radians = qstdlib::AngleToRadians(normalized);
        // In [-1 circle, 0], a whole number of circles away from the direction.
        EXPECT_LE(radians, 0.0);
        EXPECT_GT(radians, -2.0 * support::PI);
        EXPECT_EQ(0, support::TurnFrom(direction, std::lround(radians / RADIANS_A_UNIT))) << direction;
    }
}

TEST(UnreducedRadians, TakesTheAngleAsItStands)
{
    constexpr double INVERSE = 9.645061728395061e-8;
    for (const AngleUnit angle :
         std::initializer_list<AngleUnit>{0, 1, -1, QUARTER, FULL, -FULL, 3 * FULL + 1, 2138423296, HIGHEST, LOWEST})
    {
        EXPECT_TRUE(SameBits(angle * 3.141592653589793 * INVERSE, qstdlib::UnreducedRadians(angle))) << angle;
    }
}

TEST(UnreducedRadians, MultipliesByPiFirst)
{
    // From left to right 1,234,567 units give another last bit than pi / 10,368,000 taken first.
    constexpr double ANGLE = 1234567.0;
    const double factor = 3.141592653589793 * 9.645061728395061e-8;
    const double expected = ANGLE * 3.141592653589793 * 9.645061728395061e-8;
    ASSERT_FALSE(SameBits(expected, ANGLE * factor));
    EXPECT_TRUE(SameBits(expected, qstdlib::UnreducedRadians(1234567)));
}

// --- radians to units ---

TEST(RadiansToAngle, ConvertsTheValuesOfAnArcTangent)
{
    EXPECT_EQ(0, qstdlib::RadiansToAngle(0.0));
    EXPECT_EQ(0, qstdlib::RadiansToAngle(-0.0));
    EXPECT_EQ(QUARTER, qstdlib::RadiansToAngle(support::PI / 2));
    EXPECT_EQ(HALF, qstdlib::RadiansToAngle(support::PI));
    EXPECT_EQ(HALF, qstdlib::RadiansToAngle(-support::PI));
    EXPECT_EQ(FULL - QUARTER, qstdlib::RadiansToAngle(-support::PI / 2));
    EXPECT_EQ(0, qstdlib::RadiansToAngle(2 * support::PI));
    EXPECT_EQ(0, qstdlib::RadiansToAngle(-1e-9));
    EXPECT_EQ(FULL - 1, qstdlib::RadiansToAngle(-1 * RADIANS_A_UNIT));
}

TEST(RadiansToAngle, RoundsHalvesAwayFromZero)
{
    // Radians a hair beyond a half unit, so that the product cannot fall short of it by its rounding.
    constexpr double HAIR = 1e-6;
    for (const int32_t units : std::initializer_list<int32_t>{0, 1, 2, 3, 1000, QUARTER, HALF})
    {
        const double half = 2.0 * units + 1.0; // units + 1/2, in half units
        EXPECT_EQ(units, qstdlib::RadiansToAngle(RadiansOfHalfUnits(half - HAIR))) << units;
        EXPECT_EQ(units + 1, qstdlib::RadiansToAngle(RadiansOfHalfUnits(half + HAIR))) << units;
        EXPECT_EQ((FULL - units) % FULL, qstdlib::RadiansToAngle(RadiansOfHalfUnits(-half + HAIR))) << units;
        EXPECT_EQ(FULL - units - 1, qstdlib::RadiansToAngle(RadiansOfHalfUnits(-half - HAIR))) << units;
    }
}

TEST(RadiansToAngle, RoundsAnExactHalfAwayFromZero)
{
    // Radians whose product with the factor is exactly 5 half units: the double 5 / factor, or a neighbour of it.
    double radians = RadiansOfHalfUnits(5.0);
    while (radians * HALF_UNITS_A_RADIAN < 5.0)
    {
        radians = std::nextafter(radians, 1.0);
    }
    ASSERT_EQ(5.0, radians * HALF_UNITS_A_RADIAN);
    EXPECT_EQ(3, qstdlib::RadiansToAngle(radians));
    EXPECT_EQ(FULL - 3, qstdlib::RadiansToAngle(-radians));
}

TEST(RadiansToAngle, RoundsFifthsDown)
{
    EXPECT_EQ(0, qstdlib::RadiansToAngle(0.2 * RADIANS_A_UNIT));
    EXPECT_EQ(0, qstdlib::RadiansToAngle(-0.2 * RADIANS_A_UNIT));
}

TEST(RadiansToAngle, IsInverseToAngleToRadiansOnTheWholeCircle)
{
    for (AngleUnit angle = 0; angle < FULL; angle += 997)
    {
        ASSERT_EQ(angle, qstdlib::RadiansToAngle(qstdlib::AngleToRadians(angle)));
    }
    EXPECT_EQ(FULL - 1, qstdlib::RadiansToAngle(qstdlib::AngleToRadians(FULL - 1)));
}

TEST(RadiansToAngle, ReducesSeveralCircles)
{
    EXPECT_EQ(QUARTER, qstdlib::RadiansToAngle(10 * support::PI + support::PI / 2));
    // Down to one negative circle it comes into the circle; further down the remainder keeps its sign.
    EXPECT_EQ(QUARTER, qstdlib::RadiansToAngle(-1.5 * support::PI));
    EXPECT_EQ(-QUARTER, qstdlib::RadiansToAngle(-2.5 * support::PI));
}

TEST(RadiansToAngle, SaturatesAndThenWraps)
{
    // Doubled units beyond 2^31 become 2^31 - 1; one more wraps to -2^31, half of which is -2^30; and
    // -2^30 + 20,736,000 = -1,053,005,824 = -50 * 20,736,000 - 16,205,824.
    EXPECT_EQ(-16205824, qstdlib::RadiansToAngle(326.0));
    EXPECT_EQ(-16205824, qstdlib::RadiansToAngle(1e300));
    EXPECT_EQ(-16205824, qstdlib::RadiansToAngle(INFINITE));
    // Below -2^31: -2^31, one less wraps to 2^31 - 1, half of it is 2^30 - 1; and
    // 2^30 - 1 + 20,736,000 = 1,094,477,823 = 52 * 20,736,000 + 16,205,823.
    EXPECT_EQ(16205823, qstdlib::RadiansToAngle(-326.0));
    EXPECT_EQ(16205823, qstdlib::RadiansToAngle(-1e300));
    EXPECT_EQ(16205823, qstdlib::RadiansToAngle(-INFINITE));
}

TEST(RadiansToAngle, DoesNotWrapJustInsideTheRange)
{
    // 2^31 - 2 doubled units: one more is 2^31 - 1, half of it is 2^30 - 1, as worked above.
    EXPECT_EQ(16205823, qstdlib::RadiansToAngle(RadiansOfHalfUnits(2147483646.5)));
    // -(2^31 - 1): one less is -2^31, half of it is -2^30.
    EXPECT_EQ(-16205824, qstdlib::RadiansToAngle(RadiansOfHalfUnits(-2147483647.5)));
}

TEST(RadiansToAngle, AnswersZeroToNotANumber)
{
    EXPECT_EQ(0, qstdlib::RadiansToAngle(NOT_A_NUMBER));
}

TEST(TruncateRadiansToAngle, CutsOffWithoutReduction)
{
    // 1,000.9 and -1,000.9 units, and one and a half circles.
    EXPECT_EQ(1000, qstdlib::TruncateRadiansToAngle(support::UnitsToRadians(1000.9)));
    EXPECT_EQ(-1000, qstdlib::TruncateRadiansToAngle(support::UnitsToRadians(-1000.9)));
    EXPECT_EQ(FULL + HALF, qstdlib::TruncateRadiansToAngle(3 * support::PI + 1e-8));
}

TEST(TruncateRadiansToAngle, GivesAFullCircleForTwoPi)
{
    // 6.283185307179586 * 10,368,000 * 0.3183098861837907 rounds to 20,736,000.
    EXPECT_EQ(FULL, qstdlib::TruncateRadiansToAngle(6.283185307179586));
}

TEST(TruncateRadiansToAngle, SaturatesAndAnswersZeroToNotANumber)
{
    EXPECT_EQ(HIGHEST, qstdlib::TruncateRadiansToAngle(1000.0));
    EXPECT_EQ(LOWEST, qstdlib::TruncateRadiansToAngle(-1000.0));
    EXPECT_EQ(HIGHEST, qstdlib::TruncateRadiansToAngle(INFINITE));
    EXPECT_EQ(0, qstdlib::TruncateRadiansToAngle(NOT_A_NUMBER));
}

TEST(TruncateRadiansToAngle, MultipliesByTheHalfCircleFirst)
{
    // Radians near whole units, where the order of the two products decides which side they are cut off on.
    int decided = 0;
    for (int32_t units = 1; units <= 2000; ++units)
    {
        const double radians = support::UnitsToRadians(units);
        const auto expected = static_cast<int32_t>(radians * 10368000.0 * 0.3183098861837907);
        decided += expected != static_cast<int32_t>(radians * (10368000.0 * 0.3183098861837907)) ? 1 : 0;
        ASSERT_EQ(expected, qstdlib::TruncateRadiansToAngle(radians)) << units;
    }
    EXPECT_GT(decided, 0);
}

// --- normalisation ---

namespace {

// The procedure as it is defined, step by step: a negative angle comes into the circle, then full circles are taken
// off, wrapping, until the angle exceeds one.
AngleUnit NormalizedStepByStep(AngleUnit angle)
{
    constexpr uint32_t CIRCLE = 20736000U;
    auto value = static_cast<uint32_t>(angle);
    if (angle < 0)
    {
        const auto magnitudeLessOne = static_cast<uint32_t>(-(static_cast<int64_t>(angle)) - 1);
        const uint32_t circles = magnitudeLessOne / CIRCLE;
        value = static_cast<uint32_t>((value + static_cast<uint64_t>(circles + 1U) * CIRCLE) & 0xFFFFFFFFU);
    }
    while (static_cast<int32_t>(value) <= FULL)
    {
        value = static_cast<uint32_t>((static_cast<uint64_t>(value) + 0x100000000U - CIRCLE) & 0xFFFFFFFFU);
    }
    return static_cast<AngleUnit>(value);
}

AngleUnit Normalized(AngleUnit angle)
{
    EXPECT_EQ(0, qstdlib::NormalizeAngle(&angle));
    return angle;
}

} // namespace

TEST(NormalizeAngle, LeavesAnglesAboveAFullCircle)
{
    for (const AngleUnit angle :
         std::initializer_list<AngleUnit>{20736001, 30000000, 41472000, 134217728, 2126747648, HIGHEST})
    {
        EXPECT_EQ(angle, Normalized(angle));
    }
}

TEST(NormalizeAngle, TakesAnglesOfTheCircleToTheTopOfTheRange)
{
    // 2^32 - 104 * 20,736,000 = 2,138,423,296 for 0.
    EXPECT_EQ(2138423296, Normalized(0));
    EXPECT_EQ(2138423301, Normalized(5));
    EXPECT_EQ(2138423296, Normalized(FULL));
    // The highest angle to need 104 circles comes to 2^31 - 1; the next needs 105 and comes to 2^31 - 20,736,000.
    EXPECT_EQ(2147483647, Normalized(9060351));
    EXPECT_EQ(2126747648, Normalized(9060352));
}

TEST(NormalizeAngle, BringsNegativeAnglesIntoTheCircleFirst)
{
    EXPECT_EQ(2138423295, Normalized(-1));
    EXPECT_EQ(2138423296, Normalized(-FULL));
    EXPECT_EQ(2138423295, Normalized(-FULL - 1));
    // -2^31 + 104 * 20,736,000 = 9,060,352, as above.
    EXPECT_EQ(2126747648, Normalized(LOWEST));
    EXPECT_EQ(2126747649, Normalized(LOWEST + 1));
}

TEST(NormalizeAngle, FollowsTheStepsOverTheWholeRange)
{
    constexpr int64_t STRIDE = 9973; // a prime: meets every residue of a small modulus
    for (int64_t angle = LOWEST; angle <= HIGHEST; angle += STRIDE)
    {
        const auto unit = static_cast<AngleUnit>(angle);
        AngleUnit actual = unit;
        qstdlib::NormalizeAngle(&actual);
        ASSERT_EQ(NormalizedStepByStep(unit), actual) << unit;
    }
}

TEST(NormalizeAngle, FollowsTheStepsAroundEveryBoundary)
{
    // Multiples of the circle, and the angles that wrap to the ends of the range by whole circles, each +-3.
    constexpr int64_t WRAPS = int64_t(1) << 31;
    for (int64_t circles = -105; circles <= 105; ++circles)
    {
        for (const int64_t centre : {circles * FULL, circles * FULL + WRAPS, circles * FULL - WRAPS})
        {
            for (int64_t angle = centre - 3; angle <= centre + 3; ++angle)
            {
                if (angle < LOWEST || angle > HIGHEST)
                {
                    continue;
                }
                const auto unit = static_cast<AngleUnit>(angle);
                ASSERT_EQ(NormalizedStepByStep(unit), Normalized(unit)) << unit;
            }
        }
    }
}

TEST(NormalizeAngle, GivesADirection2615296UnitsOffWithoutReduction)
{
    // 2^32 = 207 * 20,736,000 + 2,615,296
    for (const AngleUnit angle : std::initializer_list<AngleUnit>{0, 5, QUARTER, HALF, FULL - 1, FULL, -1, -HALF})
    {
        EXPECT_EQ(2615296, support::TurnFrom(angle, Normalized(angle))) << angle;
    }
}

// --- azimuth reference ---

TEST(ApplyAzimuthReference, LeavesAzimuthsStandAlone)
{
    for (const AngleUnit azimuth :
         std::initializer_list<AngleUnit>{0, 1, QUARTER, FULL, -FULL - 1, 30000000, ANGLE_UNDEFINED, HIGHEST, LOWEST})
    {
        EXPECT_EQ(azimuth, qstdlib::ApplyAzimuthReference(azimuth));
    }
}

TEST(ApplyAzimuthReference, TurnsByAHalfCircleForExactlyOne)
{
    support::FakeInstrument instrument;
    instrument.azimuthReference = 1;
    EXPECT_EQ(HALF, qstdlib::ApplyAzimuthReference(0));
    EXPECT_EQ(HALF + QUARTER, qstdlib::ApplyAzimuthReference(QUARTER));
    EXPECT_EQ(FULL - 1, qstdlib::ApplyAzimuthReference(HALF - 1));
    EXPECT_EQ(0, qstdlib::ApplyAzimuthReference(HALF));
    EXPECT_EQ(HALF - 1, qstdlib::ApplyAzimuthReference(FULL - 1));
    EXPECT_EQ(HALF, qstdlib::ApplyAzimuthReference(5 * FULL));
}

TEST(ApplyAzimuthReference, KeepsTheSignOfTheRemainder)
{
    support::FakeInstrument instrument;
    instrument.azimuthReference = 1;
    EXPECT_EQ(0, qstdlib::ApplyAzimuthReference(-HALF));
    EXPECT_EQ(-1, qstdlib::ApplyAzimuthReference(-HALF - 1));
    EXPECT_EQ(-HALF, qstdlib::ApplyAzimuthReference(-FULL));
    // -2^31 + 10,368,000 = -2,137,115,648 = -103 * 20,736,000 - 1,307,648
    EXPECT_EQ(-1307648, qstdlib::ApplyAzimuthReference(LOWEST));
}

TEST(ApplyAzimuthReference, WrapsTheSum)
{
    support::FakeInstrument instrument;
    instrument.azimuthReference = 1;
    // 2^31 - 1 + 10,368,000 - 2^32 = -2,137,115,649 = -103 * 20,736,000 - 1,307,649
    EXPECT_EQ(-1307649, qstdlib::ApplyAzimuthReference(HIGHEST));
}

TEST(ApplyAzimuthReference, DoesNotSpareTheUndefinedAngle)
{
    support::FakeInstrument instrument;
    instrument.azimuthReference = 1;
    // 134,217,728 + 10,368,000 = 144,585,728 = 6 * 20,736,000 + 20,169,728
    EXPECT_EQ(20169728, qstdlib::ApplyAzimuthReference(ANGLE_UNDEFINED));
}

TEST(ApplyAzimuthReference, LeavesAzimuthsForAnyOtherAnswer)
{
    support::FakeInstrument instrument;
    for (const int32_t answer : std::initializer_list<int32_t>{0, 2, -1, 3, 257, 65537, LOWEST})
    {
        instrument.azimuthReference = answer;
        EXPECT_EQ(QUARTER, qstdlib::ApplyAzimuthReference(QUARTER)) << answer;
        EXPECT_EQ(-FULL - 5, qstdlib::ApplyAzimuthReference(-FULL - 5)) << answer;
    }
}

TEST(ApplyAzimuthReference, AsksTheSettingAfreshOnEveryCall)
{
    support::FakeInstrument instrument;
    EXPECT_EQ(QUARTER, qstdlib::ApplyAzimuthReference(QUARTER));
    instrument.azimuthReference = 1;
    EXPECT_EQ(HALF + QUARTER, qstdlib::ApplyAzimuthReference(QUARTER));
    instrument.azimuthReference = 0;
    EXPECT_EQ(QUARTER, qstdlib::ApplyAzimuthReference(QUARTER));
    EXPECT_THAT(instrument.reads, testing::Each(support::IntRead(49411)));
    EXPECT_EQ(3U, instrument.reads.size());
}
