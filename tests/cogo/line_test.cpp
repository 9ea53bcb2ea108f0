#include "cogo/line.h"

#include <cmath>
#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "qstdlib.h"
#include "tests/support/angle.h"
#include "tests/support/fake_instrument.h"
#include "tests/support/geometry.h"
#include "tests/support/record.h"

using qstdlib::TwoPointLine;
using support::DegreesToUnits;
using support::ExpectNear;
using support::ExpectSameFields;
using support::FakeInstrument;
using support::FullPoint;
using support::IntRead;
using support::LineByAzimuth;
using support::LineByPoints;
using support::Patterned;
using support::PlanPoint;
using support::SameBits;
using support::UndefinedPlan;
using support::WithFlags;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr AngleUnit FULL = 20736000;
constexpr AngleUnit HALF = 10368000;
constexpr AngleUnit QUARTER = 5184000;
constexpr double SENTINEL = 134217728.0;

struct Form
{
    double slope;
    double intercept;
};

Form FormOf(const LineDef& line)
{
    auto form = Patterned<Form>();
    EXPECT_EQ(0, qstdlib::LineSlopeIntercept(&line, &form.slope, &form.intercept));
    return form;
}

void ExpectForm(double slope, double intercept, const LineDef& line)
{
    const Form form = FormOf(line);
    EXPECT_TRUE(SameBits(slope, form.slope)) << "slope";
    EXPECT_TRUE(SameBits(intercept, form.intercept)) << "intercept";
}

// No form, and the outputs left.
void ExpectNoForm(int32_t status, const LineDef& line)
{
    auto form = Patterned<Form>();
    EXPECT_EQ(status, qstdlib::LineSlopeIntercept(&line, &form.slope, &form.intercept));
    EXPECT_TRUE(support::Untouched(form));
}

// Volatile, so that it is the tangent of the mathematics library and not the compiler's.
double TangentOf(double units)
{
    const volatile double radians = units * 3.141592653589793 * 9.645061728395061e-8;
    return std::tan(radians);
}

LineDef Line(double n1, double e1, double n2, double e2)
{
    return LineByPoints(PlanPoint(n1, e1), PlanPoint(n2, e2));
}

PointRecord Intersect(const TwoPointLine& a, const TwoPointLine& b, int32_t status = 0)
{
    auto result = Patterned<PointRecord>();
    EXPECT_EQ(status, qstdlib::IntersectLines(&a, &b, &result));
    return result;
}

PointRecord Cross(const LineDef& a, const LineDef& b, int32_t status = 0)
{
    auto result = Patterned<PointRecord>();
    EXPECT_EQ(status, QCogoCalcCrossLine(&a, &b, &result));
    return result;
}

// Slope 2^28, twice the greatest that stays: northing 3 at easting 0, a 2^-28 further at easting 1.
const TwoPointLine NEARLY_CONSTANT_NORTHING = {3.0, 0.0, 3.0 + 0x1p-28, 1.0};

LineDef Definition(const TwoPointLine& line)
{
    return Line(line.firstNorthing, line.firstEasting, line.secondNorthing, line.secondEasting);
}

} // namespace

// --- slope and intercept ---

TEST(LineSlopeIntercept, GivesEastingOverNorthing)
{
    ExpectForm(1.0, 0.0, Line(0.0, 0.0, 10.0, 10.0));
    // From (2, 7) to (4, 11): slope 4 / 2; intercept (7 * 4 - 11 * 2) / 2 = 3.
    ExpectForm(2.0, 3.0, Line(2.0, 7.0, 4.0, 11.0));
    ExpectForm(2.0, 3.0, Line(4.0, 11.0, 2.0, 7.0));
    ExpectForm(-0.5, 4.0, Line(2.0, 3.0, 6.0, 1.0));
}

// To the last bit: the intercept by both points, not by one and the slope.
TEST(LineSlopeIntercept, FormsTheInterceptByBothPoints)
{
    for (const double n : {0.1, 1.7, 33.3, 1234.567})
    {
        const double dN = n - 0.3;
        ExpectForm((1.9 - 0.7) / dN, (0.7 * n - 1.9 * 0.3) / dN, Line(0.3, 0.7, n, 1.9));
    }
}

TEST(LineSlopeIntercept, MarksALineOfConstantNorthing)
{
    ExpectForm(SENTINEL, SENTINEL, Line(5.0, 0.0, 5.0, 10.0));
    ExpectForm(SENTINEL, SENTINEL, Line(5.0, 10.0, 5.0, 0.0));
}

TEST(LineSlopeIntercept, IsExactForALineOfConstantEasting)
{
    ExpectForm(0.0, 3.0, Line(0.0, 3.0, 10.0, 3.0));
    ExpectForm(0.0, 0.1, Line(1e9, 0.1, -1e9, 0.1));
}

TEST(LineSlopeIntercept, ClampsTheSlopeOnThePositiveSideOnly)
{
    // Over a northing of 2^-30 by an easting of 10: slope 10 * 2^30.
    ExpectForm(SENTINEL, 0.0, Line(0.0, 0.0, 0x1p-30, 10.0));
    ExpectForm(-10.0 * 0x1p30, 0.0, Line(0.0, 0.0, -0x1p-30, 10.0));
    // The intercept stays as computed: (0 * (3 + 2^-28) - 1 * 3) / 2^-28.
    ExpectForm(SENTINEL, -3.0 * 0x1p28, Definition(NEARLY_CONSTANT_NORTHING));
    // At the limit and a step below.
    ExpectForm(SENTINEL, 0.0, Line(0.0, 0.0, 0x1p-27, 1.0));
    ExpectForm(SENTINEL - 1.0, 0.0, Line(0.0, 0.0, 1.0, SENTINEL - 1.0));
    ExpectForm(-SENTINEL - 1.0, 0.0, Line(0.0, 0.0, 1.0, -SENTINEL - 1.0));
}

TEST(LineSlopeIntercept, RejectsPointsWithoutPlanCoordinates)
{
    const LineDef line = Line(0.0, 0.0, 10.0, 10.0);
    for (const int flags : support::WITHOUT_PLAN)
    {
        LineDef without = line;
        without.first.flags = static_cast<uint16_t>(flags);
        ExpectNoForm(-1201, without);
        without = line;
        without.second.flags = static_cast<uint16_t>(flags);
        ExpectNoForm(-1201, without);
        ExpectNoForm(-1201, LineByAzimuth(WithFlags(PlanPoint(1.0, 2.0), flags), 0));
    }
    // The flag comes before the coordinates.
    LineDef coincident = Line(1.0, 2.0, 1.0, 2.0);
    coincident.second.flags = 0;
    ExpectNoForm(-1201, coincident);
}

TEST(LineSlopeIntercept, RejectsCoincidentPoints)
{
    ExpectNoForm(-1200, Line(1.0, 2.0, 1.0, 2.0));
    ExpectNoForm(-1200, LineByPoints(FullPoint(1.0, 2.0, 3.0), FullPoint(1.0, 2.0, 4.0)));
    EXPECT_TRUE(SameBits(SENTINEL, FormOf(Line(1.0, 2.0, 1.0, std::nextafter(2.0, 3.0))).slope));
}

TEST(LineSlopeIntercept, TakesAnyOtherModeForAnAzimuth)
{
    for (const int mode : {0, 1, 3, 258, 65535})
    {
        LineDef line = LineByPoints(PlanPoint(3.0, 5.0), WithFlags(PlanPoint(3.0, 5.0), 0));
        line.azimuth = DegreesToUnits(45.0);
        line.mode = static_cast<uint16_t>(mode);
        const Form form = FormOf(line);
        EXPECT_NEAR(1.0, form.slope, 1e-14) << mode;
        EXPECT_NEAR(2.0, form.intercept, 1e-13) << mode;
    }
}

TEST(LineSlopeIntercept, GivesTheTangentOfTheAzimuth)
{
    // By degrees: tan 0, 30, 45, 135, 200; intercept 7 - 3 * slope.
    for (const double degrees : {0.0, 30.0, 45.0, 135.0, 200.0, 345.0, -20.0, 725.0})
    {
        const Form form = FormOf(LineByAzimuth(PlanPoint(3.0, 7.0), DegreesToUnits(degrees)));
        const double slope = std::tan(degrees * support::PI / 180.0);
        EXPECT_NEAR(slope, form.slope, 1e-13 * (1.0 + slope * slope)) << degrees;
        EXPECT_NEAR(7.0 - 3.0 * slope, form.intercept, 4e-13 * (1.0 + slope * slope)) << degrees;
    }
}

// To the last bit: a half circle is added, and the sum converted as it stands.
TEST(LineSlopeIntercept, ConvertsTheAzimuthUnreduced)
{
    for (const AngleUnit azimuth :
         std::initializer_list<AngleUnit>{0, 1, 1234567, HALF, FULL, 5 * FULL + 1234567, -3 * FULL - 1})
    {
        const double slope = TangentOf(azimuth + 10368000.0);
        ExpectForm(slope, 2.0 - 1.5 * slope, LineByAzimuth(PlanPoint(1.5, 2.0), azimuth));
    }
}

TEST(LineSlopeIntercept, AddsTheHalfCircleWithWrapAround)
{
    // 2^31 - 1 + 10,368,000 wraps to -2,137,115,649, which is 1,307,649 less than 206 half circles below 0.
    const Form form = FormOf(LineByAzimuth(PlanPoint(0.0, 0.0), std::numeric_limits<AngleUnit>::max()));
    EXPECT_NEAR(std::tan(support::UnitsToRadians(-1307649.0)), form.slope, 1e-12);
}

// The tangent of the double nearest to an odd multiple of a quarter circle is huge; on which side depends on the
// double. The quarter circle is taken in two parts: the first has 33 bits, so that its multiples are exact.
TEST(LineSlopeIntercept, ClampsAnAzimuthOfConstantNorthingWhereItsTangentIsPositive)
{
    constexpr double QUARTER_UPPER = 1.57079632673412561417;
    constexpr double QUARTER_LOWER = 6.07710050650619224932e-11;
    int positive = 0;
    int negative = 0;
    for (int k = -41; k <= 41; k += 2)
    {
        const AngleUnit azimuth = k * QUARTER;
        const double radians = (azimuth + 10368000.0) * 3.141592653589793 * 9.645061728395061e-8;
        const double beyond = (radians - (k + 2) * QUARTER_UPPER) - (k + 2) * QUARTER_LOWER;
        const double slope = FormOf(LineByAzimuth(PlanPoint(0.0, 0.0), azimuth)).slope;
        if (beyond < 0)
        {
            EXPECT_TRUE(SameBits(SENTINEL, slope)) << k;
            ++positive;
        }
        else
        {
            EXPECT_LT(slope, -SENTINEL) << k;
            ++negative;
        }
    }
    EXPECT_GT(positive, 0);
    EXPECT_GT(negative, 0);
}

TEST(LineSlopeIntercept, FollowsTheAzimuthReference)
{
    FakeInstrument instrument;
    for (const int32_t reference : support::AZIMUTH_REFERENCES)
    {
        instrument.azimuthReference = reference;
        instrument.reads.clear();
        // From south, the azimuth plus two half circles goes through the remainder: 30 degrees are left.
        const double units = reference == 1 ? 1728000.0 : 1728000.0 + 10368000.0;
        const double slope = TangentOf(units);
        ExpectForm(slope, 0.0, LineByAzimuth(PlanPoint(0.0, 0.0), 1728000));
        EXPECT_THAT(instrument.reads, ElementsAre(IntRead(49411)));
    }
}

TEST(LineSlopeIntercept, ReadsNoSettingForALineByPoints)
{
    FakeInstrument instrument;
    instrument.azimuthReference = 1;
    ExpectForm(2.0, 3.0, Line(2.0, 7.0, 4.0, 11.0));
    EXPECT_THAT(instrument.reads, IsEmpty());
}

// --- lines by two points each ---

TEST(IntersectLines, SolvesTwoSlopes)
{
    // easting = 2 n + 3 and easting = -n + 9: n = 6 / 3, e = (9 * 2 + 3) / 3.
    const TwoPointLine a = {0.0, 3.0, 1.0, 5.0};
    const TwoPointLine b = {0.0, 9.0, 9.0, 0.0};
    ExpectSameFields(PlanPoint(2.0, 7.0), Intersect(a, b));
    ExpectSameFields(PlanPoint(2.0, 7.0), Intersect(b, a));
}

TEST(IntersectLines, TakesTheNorthingOfALineOfConstantNorthing)
{
    const TwoPointLine constant = {2.0, -1.0, 2.0, 50.0};
    const TwoPointLine sloped = {0.0, 3.0, 1.0, 5.0};
    ExpectSameFields(PlanPoint(2.0, 7.0), Intersect(constant, sloped));
    ExpectSameFields(PlanPoint(2.0, 7.0), Intersect(sloped, constant));
}

TEST(IntersectLines, FailsForEqualSlopesOnly)
{
    ExpectSameFields(UndefinedPlan(), Intersect({0.0, 0.0, 10.0, 10.0}, {0.0, 1.0, 10.0, 11.0}, -1206));
    ExpectSameFields(UndefinedPlan(), Intersect({0.0, 0.0, 10.0, 10.0}, {0.0, 0.0, 10.0, 10.0}, -1206));
    ExpectSameFields(UndefinedPlan(), Intersect({1.0, 0.0, 1.0, 10.0}, {2.0, 0.0, 2.0, 10.0}, -1206));
    // Slopes 1 and 1.000001 that are 1 apart at northing 0 meet a million away.
    const PointRecord far = Intersect({0.0, 0.0, 10.0, 10.0}, {0.0, 1.0, 1e6, 1000002.0});
    EXPECT_NEAR(-1e6, far.northing, 1e-3);
    EXPECT_NEAR(-1e6, far.easting, 1e-3);
}

TEST(IntersectLines, KeepsThePresetForCoincidentPoints)
{
    const TwoPointLine line = {0.0, 0.0, 10.0, 10.0};
    const TwoPointLine point = {4.0, 5.0, 4.0, 5.0};
    ExpectSameFields(UndefinedPlan(), Intersect(point, line, -1200));
    ExpectSameFields(UndefinedPlan(), Intersect(line, point, -1200));
}

TEST(IntersectLines, UsesAClampedSlopeAsItIs)
{
    // The clamped line keeps its intercept -3 * 2^28; with easting = 7: northing (7 + 3 * 2^28) / 2^27, which is twice
    // its true northing and a bit.
    const TwoPointLine level = {0.0, 7.0, 10.0, 7.0};
    ExpectSameFields(PlanPoint(6.0 + 7.0 * 0x1p-27, 7.0), Intersect(NEARLY_CONSTANT_NORTHING, level));
    ExpectSameFields(PlanPoint(6.0 + 7.0 * 0x1p-27, 7.0), Intersect(level, NEARLY_CONSTANT_NORTHING));
    // Against a line of constant northing it is that line's northing: 2 * 2^27 - 3 * 2^28.
    const TwoPointLine constant = {2.0, 0.0, 2.0, 1.0};
    ExpectSameFields(PlanPoint(2.0, -0x1p28 * 2.0), Intersect(NEARLY_CONSTANT_NORTHING, constant));
    ExpectSameFields(PlanPoint(2.0, -0x1p28 * 2.0), Intersect(constant, NEARLY_CONSTANT_NORTHING));
}

// --- line definitions ---

TEST(CrossLine, SolvesTwoSlopes)
{
    const LineDef a = Line(0.0, 3.0, 1.0, 5.0);
    const LineDef b = Line(0.0, 9.0, 9.0, 0.0);
    ExpectSameFields(PlanPoint(2.0, 7.0), Cross(a, b));
    ExpectSameFields(PlanPoint(2.0, 7.0), Cross(b, a));
}

TEST(CrossLine, TakesTheNorthingOfALineOfConstantNorthing)
{
    const LineDef constant = Line(2.0, -1.0, 2.0, 50.0);
    const LineDef sloped = Line(0.0, 3.0, 1.0, 5.0);
    ExpectSameFields(PlanPoint(2.0, 7.0), Cross(constant, sloped));
    ExpectSameFields(PlanPoint(2.0, 7.0), Cross(sloped, constant));
}

TEST(CrossLine, CrossesANorthRunningLineByAzimuth)
{
    const LineDef north = LineByAzimuth(PlanPoint(0.0, 0.0), 0);
    const LineDef constant = Line(5.0, -10.0, 5.0, 10.0);
    for (const PointRecord& result : {Cross(north, constant), Cross(constant, north)})
    {
        EXPECT_EQ(5.0, result.northing);
        EXPECT_NEAR(0.0, result.easting, 1e-14);
    }
}

TEST(CrossLine, TakesAClampedSlopeForConstantNorthing)
{
    const LineDef level = Line(0.0, 7.0, 10.0, 7.0);
    ExpectSameFields(PlanPoint(3.0, 7.0), Cross(Definition(NEARLY_CONSTANT_NORTHING), level));
    ExpectSameFields(PlanPoint(3.0, 7.0), Cross(level, Definition(NEARLY_CONSTANT_NORTHING)));
}

TEST(CrossLine, LeavesASteepNegativeSlopeToTheFormula)
{
    // Slope -2^30 through (3, 0): intercept 3 * 2^30. With easting = 7: northing (7 - 3 * 2^30) / -2^30.
    const LineDef steep = Line(3.0, 0.0, 3.0 - 0x1p-30, 1.0);
    const LineDef level = Line(0.0, 7.0, 10.0, 7.0);
    ExpectSameFields(PlanPoint(3.0 - 7.0 * 0x1p-30, 7.0), Cross(steep, level));
    ExpectSameFields(PlanPoint(3.0 - 7.0 * 0x1p-30, 7.0), Cross(level, steep));
}

TEST(CrossLine, TakesSlopesCloserThanTheToleranceForParallel)
{
    const LineDef level = Line(0.0, 0.0, 10.0, 0.0);
    const LineDef atTolerance = Line(0.0, 0.0, 1.0, 1e-5);
    const LineDef within = Line(0.0, 0.0, 1.0, std::nextafter(1e-5, 0.0));
    ExpectSameFields(PlanPoint(0.0, 0.0), Cross(atTolerance, level));
    EXPECT_EQ(0.0, Cross(level, atTolerance).northing);
    ExpectSameFields(UndefinedPlan(), Cross(within, level, -1206));
    ExpectSameFields(UndefinedPlan(), Cross(level, within, -1206));
    // Slopes 1 and 1.000001, which IntersectLines would solve.
    ExpectSameFields(UndefinedPlan(), Cross(Line(0.0, 0.0, 10.0, 10.0), Line(0.0, 1.0, 1e6, 1000002.0), -1206));
    ExpectSameFields(UndefinedPlan(), Cross(Line(1.0, 0.0, 1.0, 10.0), Line(2.0, 0.0, 2.0, 10.0), -1206));
}

TEST(CrossLine, KeepsThePresetForAnUnusableLine)
{
    const LineDef line = Line(0.0, 0.0, 10.0, 10.0);
    const LineDef point = Line(4.0, 5.0, 4.0, 5.0);
    const LineDef withoutPlan = LineByAzimuth(WithFlags(PlanPoint(0.0, 0.0), 0), 0);
    ExpectSameFields(UndefinedPlan(), Cross(point, line, -1200));
    ExpectSameFields(UndefinedPlan(), Cross(line, point, -1200));
    ExpectSameFields(UndefinedPlan(), Cross(withoutPlan, line, -1201));
    ExpectSameFields(UndefinedPlan(), Cross(line, withoutPlan, -1201));
    // The first line comes first.
    ExpectSameFields(UndefinedPlan(), Cross(point, withoutPlan, -1200));
    ExpectSameFields(UndefinedPlan(), Cross(withoutPlan, point, -1201));
}

TEST(CrossLine, ReadsTheReferenceOnceForEachLineByAzimuth)
{
    FakeInstrument instrument;
    // 45 and 135 degrees from (0, 0) and (0, 10): in (5, 5), from north and from south.
    const LineDef first = LineByAzimuth(PlanPoint(0.0, 0.0), DegreesToUnits(45.0));
    const LineDef second = LineByAzimuth(PlanPoint(0.0, 10.0), DegreesToUnits(135.0));
    for (const int32_t reference : support::AZIMUTH_REFERENCES)
    {
        instrument.azimuthReference = reference;
        instrument.reads.clear();
        ExpectNear(PlanPoint(5.0, 5.0), Cross(first, second), 1e-13);
        EXPECT_THAT(instrument.reads, ElementsAre(IntRead(49411), IntRead(49411)));
    }
}
