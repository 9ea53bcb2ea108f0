#include "station/height.h"

#include <cmath>
#include <cstdint>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "qstdlib.h"
#include "tests/support/angle.h"
#include "tests/support/fake_instrument.h"
#include "tests/support/record.h"

using qstdlib::StationHeightByZenith;
using support::DegreesToUnits;
using support::FakeInstrument;
using support::FullPoint;
using support::IntRead;
using support::RealRead;
using support::RecordRead;
using support::SameBits;
using testing::ElementsAre;

namespace {

constexpr double TWO_TO_53 = 9007199254740992.0;
constexpr double EARTH_RADIUS = 6370000.0;
constexpr AngleUnit ARC_MINUTE = 960;

// The target of most tests: 5 m below the reflector's point, 500 m away (3-4-5 triangle) from the origin.
const PointRecord TARGET = FullPoint(300.0, -400.0, 80.0);
constexpr double DISTANCE = 500.0;

double HeightUnder(AngleUnit zenith)
{
    return StationHeightByZenith(0.0, 0.0, &TARGET, zenith, 5.0);
}

// The reduction in long double, from its definition: scale, sea level, then both halves of curvature and refraction.
double ReducedHeight(double distance, double zenithDegrees, double scale, double elevation, const double* coefficients)
{
    const long double z = static_cast<long double>(zenithDegrees) * 3.14159265358979323846L / 180.0L;
    long double d = static_cast<long double>(distance) / static_cast<long double>(scale);
    d *= 1.0L + static_cast<long double>(elevation) / static_cast<long double>(EARTH_RADIUS);
    long double v = 0.0L;
    const auto diameter = static_cast<long double>(2.0 * EARTH_RADIUS);
    if (coefficients != nullptr)
    {
        const long double slope = d / std::sin(z);
        d += (1.0L - static_cast<long double>(coefficients[0]) / 2.0L) * slope * slope * std::sin(2.0L * z) / diameter;
        v = d * d * (1.0L - static_cast<long double>(coefficients[1])) / diameter;
    }
    v += d / std::tan(z);
    return static_cast<double>(85.0L - v);
}

} // namespace

// By hand: 100 + 1.5 - 2.25 = 99.25, exact in binary.
TEST(SeaLevelCalcByBM, SubtractsTheVerticalDifferenceFromTheReflectorsHeight)
{
    EXPECT_EQ(99.25, QSTNSeaLevelCalcByBM(100.0, 1.5, 2.25));
    EXPECT_EQ(103.75, QSTNSeaLevelCalcByBM(100.0, 1.5, -2.25));
}

// 1 + 2^53 rounds to the even 2^53, so that the sum first gives 0; any other order of the three gives 1.
TEST(SeaLevelCalcByBM, FormsTheSumBeforeTheDifference)
{
    EXPECT_EQ(0.0, QSTNSeaLevelCalcByBM(1.0, TWO_TO_53, TWO_TO_53));
}

TEST(SeaLevelCalcByBM, ChecksNothingAndReadsNoSetting)
{
    const FakeInstrument instrument;
    EXPECT_TRUE(std::isnan(QSTNSeaLevelCalcByBM(std::nan(""), 0.0, 0.0)));
    EXPECT_THAT(instrument.reads, ElementsAre());
}

TEST(StationHeightByZenith, AnswersZeroForATargetWithoutHeightAndReadsNoSetting)
{
    const FakeInstrument instrument;
    PointRecord target = TARGET;
    target.flags = 0xFFFD; // every bit but that of the height
    EXPECT_TRUE(SameBits(0.0, StationHeightByZenith(0.0, 0.0, &target, DegreesToUnits(45), 5.0)));
    EXPECT_THAT(instrument.reads, ElementsAre());
}

TEST(StationHeightByZenith, AsksForTheHeightBitOnly)
{
    PointRecord target = TARGET;
    target.flags = POINT_HAS_HEIGHT;
    EXPECT_TRUE(
        SameBits(HeightUnder(DegreesToUnits(60)), StationHeightByZenith(0.0, 0.0, &target, DegreesToUnits(60), 5.0)));
}

// 80 + 5 - 500 / tan z: tan 45 = 1, tan 135 = -1, level sight 0, tan 60 = sqrt 3.
TEST(StationHeightByZenith, TakesTheVerticalComponentOffTheReflectorsHeight)
{
    EXPECT_NEAR(85.0 - DISTANCE, HeightUnder(DegreesToUnits(45)), 1e-9);
    EXPECT_NEAR(85.0 + DISTANCE, HeightUnder(DegreesToUnits(135)), 1e-9);
    EXPECT_NEAR(85.0, HeightUnder(DegreesToUnits(90)), 1e-9);
    EXPECT_NEAR(85.0 - DISTANCE / std::sqrt(3.0), HeightUnder(DegreesToUnits(60)), 1e-9);
}

// The station enters by its distance to the target: from (300, -395) it is 5 m, along the easting axis.
TEST(StationHeightByZenith, MeasuresTheDistanceInPlanFromTheStation)
{
    EXPECT_NEAR(80.0, StationHeightByZenith(300.0, -395.0, &TARGET, DegreesToUnits(45), 5.0), 1e-9);
    EXPECT_NEAR(78.0, StationHeightByZenith(307.0, -400.0, &TARGET, DegreesToUnits(45), 5.0), 1e-9);
}

// (target height + reflector height) first: 1 + 2^53 = 2^53, less 2^53 (D = 2^53 under 45 degrees would not be exact,
// so the vertical component is taken away by a level sight of distance 0: V = 0 / tan z = 0).
TEST(StationHeightByZenith, AddsTheHeightsBeforeItSubtracts)
{
    const PointRecord target = FullPoint(0.0, 0.0, 1.0);
    EXPECT_EQ(TWO_TO_53, StationHeightByZenith(0.0, 0.0, &target, DegreesToUnits(45), TWO_TO_53));
    // V is 2^53 (1 + 1e-16) at most one ulp off: a sum of reflector height and -V first would leave about 1 + 0.
    const PointRecord far = FullPoint(TWO_TO_53, 0.0, 1.0);
    const double v = TWO_TO_53 / std::tan(DegreesToUnits(45) * support::PI * 9.645061728395061e-8);
    EXPECT_EQ(TWO_TO_53 - v, StationHeightByZenith(0.0, 0.0, &far, DegreesToUnits(45), TWO_TO_53));
}

// 1 / tan(1') = 3437.746673785 (1/x - x/3 with x = pi/10800).
TEST(StationHeightByZenith, ClampsASteepSightToOneArcMinuteOffTheVertical)
{
    constexpr double COTANGENT = 3437.7466737850;
    EXPECT_NEAR(85.0 - DISTANCE * COTANGENT, HeightUnder(0), 1e-4);
    EXPECT_NEAR(85.0 + DISTANCE * COTANGENT, HeightUnder(ANGLE_HALF_CIRCLE), 1e-4);
    EXPECT_TRUE(SameBits(HeightUnder(0), HeightUnder(ARC_MINUTE - 1)));
    EXPECT_TRUE(SameBits(HeightUnder(ANGLE_HALF_CIRCLE), HeightUnder(ANGLE_HALF_CIRCLE - ARC_MINUTE + 1)));
}

// One unit outside the arc-minute the true tangent counts: cot(961/960 * 1') = 3434.1694 / cot = 3437.7467 * 960 / 961.
TEST(StationHeightByZenith, LeavesASightJustOutsideTheArcMinuteAsItIs)
{
    constexpr double COTANGENT = 3437.7466737850 * 960.0 / 961.0;
    EXPECT_NEAR(85.0 - DISTANCE * COTANGENT, HeightUnder(ARC_MINUTE + 1), 1e-2);
    EXPECT_NEAR(85.0 + DISTANCE * COTANGENT, HeightUnder(ANGLE_HALF_CIRCLE - ARC_MINUTE - 1), 1e-2);
}

TEST(StationHeightByZenith, TakesAFaceTwoZenithForItsFaceOneCounterpart)
{
    for (const double degrees : {0.0, 0.1, 30.0, 89.9999, 90.0, 100.0, 179.9, 179.9999})
    {
        const AngleUnit z = DegreesToUnits(degrees);
        EXPECT_TRUE(SameBits(HeightUnder(z), HeightUnder(ANGLE_FULL_CIRCLE - z))) << degrees;
    }
}

// Below 0 is no face two here: -30 degrees is clamped like any steep sight, and so is 390 degrees, which reduces to
// 360 - 390 = -30.
TEST(StationHeightByZenith, ClampsAZenithBelowZero)
{
    EXPECT_TRUE(SameBits(HeightUnder(0), HeightUnder(-1)));
    EXPECT_TRUE(SameBits(HeightUnder(0), HeightUnder(-DegreesToUnits(30))));
    EXPECT_TRUE(SameBits(HeightUnder(0), HeightUnder(DegreesToUnits(390))));
    EXPECT_TRUE(SameBits(HeightUnder(0), HeightUnder(INT32_MIN)));
    EXPECT_TRUE(SameBits(HeightUnder(0), HeightUnder(INT32_MAX)));
}

// D / 0.5 = 1000 and V = 1000; D / 4 = 125.
TEST(StationHeightByZenith, DividesTheDistanceByTheScaleFactor)
{
    FakeInstrument instrument;
    instrument.scaleFactor = 0.5;
    EXPECT_NEAR(85.0 - 1000.0, HeightUnder(DegreesToUnits(45)), 1e-9);
    instrument.scaleFactor = 4.0;
    EXPECT_NEAR(85.0 - 125.0, HeightUnder(DegreesToUnits(45)), 1e-9);
}

TEST(StationHeightByZenith, IgnoresAScaleFactorOfZero)
{
    const double unscaled = HeightUnder(DegreesToUnits(60));
    FakeInstrument instrument;
    instrument.scaleFactor = 0.0;
    EXPECT_TRUE(SameBits(unscaled, HeightUnder(DegreesToUnits(60))));
    EXPECT_EQ(RealRead(SETTING_SCALE_FACTOR), instrument.reads.at(1)) << "read, then found to be zero";
}

// 6370 m are a thousandth of the earth's radius: D = 500.5.
TEST(StationHeightByZenith, EnlargesTheDistanceByTheMeanElevation)
{
    FakeInstrument instrument;
    instrument.seaLevelSwitch = 1;
    instrument.meanElevation = 6370.0;
    EXPECT_NEAR(85.0 - 500.5, HeightUnder(DegreesToUnits(45)), 1e-9);
}

// With S = D / sin z: D' = D + (1 - k/2) S^2 sin 2z / 2R, V = D' / tan z + (1 - k) D'^2 / 2R.
TEST(StationHeightByZenith, AddsCurvatureAndRefractionToDistanceAndHeight)
{
    FakeInstrument instrument;
    instrument.curvatureSwitch = 1;
    const double table[] = {0.132, 0.133, 0.20};
    const PointRecord target = FullPoint(3000.0, 4000.0, 80.0);
    for (int32_t selector = 0; selector < 3; ++selector)
    {
        instrument.refractionSelector = selector;
        const double coefficients[] = {table[selector], table[selector]};
        for (const double zenith : {60.0, 88.0, 91.0, 120.0})
        {
            EXPECT_NEAR(ReducedHeight(5000.0, zenith, 1.0, 0.0, coefficients),
                        StationHeightByZenith(0.0, 0.0, &target, DegreesToUnits(zenith), 5.0), 1e-8)
                << zenith << " selector " << selector;
        }
    }
}

// The first half alone moves the height by 1.9 m at 5 km and 60 degrees; order and place of all three show in 1e-8 m.
TEST(StationHeightByZenith, AppliesScaleThenSeaLevelThenCurvature)
{
    FakeInstrument instrument;
    instrument.scaleFactor = 0.75;
    instrument.seaLevelSwitch = 1;
    instrument.meanElevation = 1500.0;
    instrument.curvatureSwitch = 1;
    instrument.refractionSelector = 2;
    const double coefficients[] = {0.2, 0.2};
    const PointRecord target = FullPoint(3000.0, 4000.0, 80.0);
    EXPECT_NEAR(ReducedHeight(5000.0, 60.0, 0.75, 1500.0, coefficients),
                StationHeightByZenith(0.0, 0.0, &target, DegreesToUnits(60), 5.0), 1e-8);
}

TEST(StationHeightByZenith, TakesASwitchForOnOnlyWhenItIsExactlyOne)
{
    const double plain = HeightUnder(DegreesToUnits(60));
    FakeInstrument instrument;
    instrument.meanElevation = 1000.0;
    for (const int32_t answer : {2, -1, 256, 0})
    {
        instrument.seaLevelSwitch = answer;
        instrument.curvatureSwitch = answer;
        EXPECT_TRUE(SameBits(plain, HeightUnder(DegreesToUnits(60)))) << answer;
    }
}

TEST(StationHeightByZenith, ReadsTheSettingsInTheirFixedOrder)
{
    FakeInstrument instrument;
    instrument.scaleFactor = 0.9996;
    instrument.seaLevelSwitch = 1;
    instrument.curvatureSwitch = 1;
    HeightUnder(DegreesToUnits(60));
    EXPECT_THAT(instrument.reads,
                ElementsAre(RealRead(SETTING_SCALE_FACTOR), RealRead(SETTING_SCALE_FACTOR), IntRead(SETTING_SEA_LEVEL),
                            RecordRead(), IntRead(SETTING_CURVATURE_REFRACTION), IntRead(SETTING_REFRACTION_SELECTOR),
                            IntRead(SETTING_CURVATURE_REFRACTION), IntRead(SETTING_REFRACTION_SELECTOR)));
}

TEST(StationHeightByZenith, ReadsOnlyTheSwitchesWhenTheyAreOff)
{
    const FakeInstrument instrument;
    HeightUnder(DegreesToUnits(60));
    EXPECT_THAT(instrument.reads,
                ElementsAre(RealRead(SETTING_SCALE_FACTOR), IntRead(SETTING_SEA_LEVEL),
                            IntRead(SETTING_CURVATURE_REFRACTION), IntRead(SETTING_CURVATURE_REFRACTION)));
}

namespace {

// An instrument whose curvature switch and coefficient answer differently from one read to the next.
std::vector<int32_t> switchAnswers;
std::vector<int32_t> selectorAnswers;

int32_t NextAnswer(std::vector<int32_t>& answers)
{
    const int32_t answer = answers.front();
    answers.erase(answers.begin());
    return answer;
}

int32_t ChangingIntSetting(uint32_t identifier)
{
    if (identifier == SETTING_CURVATURE_REFRACTION)
    {
        return NextAnswer(switchAnswers);
    }
    return identifier == SETTING_REFRACTION_SELECTOR ? NextAnswer(selectorAnswers) : 0;
}

double HeightWithAnswers(std::vector<int32_t> switches, std::vector<int32_t> selectors)
{
    switchAnswers = std::move(switches);
    selectorAnswers = std::move(selectors);
    InstrumentSettings settings = {};
    settings.GetIntSetting = ChangingIntSetting;
    ConnectInstrumentSettings(&settings);
    const PointRecord target = FullPoint(3000.0, 4000.0, 80.0);
    const double height = StationHeightByZenith(0.0, 0.0, &target, DegreesToUnits(60), 5.0);
    ConnectInstrumentSettings(nullptr);
    return height;
}

} // namespace

// D = 5000 m under 60 degrees. First half alone: D' / tan z; second half alone: D / tan z + (1 - k) D^2 / 2R.
TEST(StationHeightByZenith, AsksForSwitchAndCoefficientOnceForEachHalfOfTheCorrection)
{
    const double distance = 5000.0 + (1.0 - 0.066) * (25e6 / 0.75) * std::sqrt(0.75) / (2.0 * EARTH_RADIUS);
    EXPECT_NEAR(85.0 - distance / std::sqrt(3.0), HeightWithAnswers({1, 0}, {0}), 1e-8);
    EXPECT_NEAR(85.0 - 5000.0 / std::sqrt(3.0) - 25e6 * (1.0 - 0.133) / (2.0 * EARTH_RADIUS),
                HeightWithAnswers({0, 1}, {1}), 1e-8);
    const double coefficients[] = {0.132, 0.2};
    EXPECT_NEAR(ReducedHeight(5000.0, 60.0, 1.0, 0.0, coefficients), HeightWithAnswers({1, 1}, {0, 2}), 1e-8);
}
