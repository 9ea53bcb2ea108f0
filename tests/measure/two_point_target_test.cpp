#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "qstdlib.h"
#include "tests/support/fake_instrument.h"
#include "tests/support/record.h"

using support::ExpectSameFields;
using support::FullPoint;
using support::Patterned;
using support::SameBits;
using support::Untouched;
using support::WithFlags;

namespace {

constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();

struct Hidden
{
    PointRecord target;
    double measuredSpacing;
};

Hidden Prolong(const PointRecord& first, const PointRecord& second, double spacing, double extension,
               int32_t expectedStatus = 0)
{
    auto hidden = Patterned<Hidden>();
    EXPECT_EQ(expectedStatus,
              QCalc2PtTarget(&first, &second, spacing, extension, &hidden.measuredSpacing, &hidden.target));
    return hidden;
}

// A rod along (2, 3, 6): 7 long, all exact.
const PointRecord FIRST = FullPoint(10.0, 20.0, 30.0);
const PointRecord SECOND = FullPoint(12.0, 23.0, 36.0);

} // namespace

TEST(TwoPointTarget, ProlongsTheRodBeyondTheSecondPrism)
{
    // One 7 m rod further: (12 + 2, 23 + 3, 36 + 6); 1/7 is not exact in binary.
    const Hidden hidden = Prolong(FIRST, SECOND, 0.0, 7.0);
    EXPECT_NEAR(14.0, hidden.target.northing, 1e-14);
    EXPECT_NEAR(26.0, hidden.target.easting, 1e-14);
    EXPECT_NEAR(42.0, hidden.target.height, 1e-14);
    EXPECT_EQ(3, hidden.target.flags);
    EXPECT_TRUE(SameBits(7.0, hidden.measuredSpacing));
}

TEST(TwoPointTarget, PutsTheTargetExactlyTheExtensionBeyondTheSecondPrism)
{
    // A rod of measured length 2 straight along each axis.
    const PointRecord origin = FullPoint(0.0, 0.0, 0.0);
    ExpectSameFields(FullPoint(3.0, 0.0, 0.0), Prolong(origin, FullPoint(2.0, 0.0, 0.0), 0.0, 1.0).target);
    ExpectSameFields(FullPoint(0.0, -3.0, 0.0), Prolong(origin, FullPoint(0.0, -2.0, 0.0), 0.0, 1.0).target);
    ExpectSameFields(FullPoint(0.0, 0.0, -3.0), Prolong(origin, FullPoint(0.0, 0.0, -2.0), 0.0, 1.0).target);
}

TEST(TwoPointTarget, ScalesTheProlongationWithANominalSpacing)
{
    // Prisms measured 1.002 apart, nominally 1.000: 1.000 further comes to 1.002.
    const Hidden hidden = Prolong(FullPoint(0.0, 0.0, 0.0), FullPoint(1.002, 0.0, 0.0), 1.000, 1.000);
    ExpectSameFields(FullPoint(1.002 + 1.002, 0.0, 0.0), hidden.target);
    EXPECT_NEAR(1.002, hidden.measuredSpacing, 1e-15);
}

TEST(TwoPointTarget, DividesEveryComponentByTheNominalSpacing)
{
    // Spacing 8 (exact) for the 7 m rod: a quarter of it, 2, takes a quarter of (2, 3, 6).
    ExpectSameFields(FullPoint(12.5, 23.75, 37.5), Prolong(FIRST, SECOND, 8.0, 2.0).target);
    EXPECT_TRUE(SameBits(7.0, Prolong(FIRST, SECOND, 8.0, 2.0).measuredSpacing));
}

TEST(TwoPointTarget, ReturnsTheSecondPrismForNoExtension)
{
    for (const double extension : {0.0, -0.0})
    {
        for (const double spacing : {0.0, 1.0})
        {
            const Hidden hidden = Prolong(FIRST, SECOND, spacing, extension);
            ExpectSameFields(SECOND, hidden.target);
            EXPECT_TRUE(SameBits(7.0, hidden.measuredSpacing));
        }
    }
}

TEST(TwoPointTarget, CopiesTheSecondPrismToTheBit)
{
    // An addition of the vector's 0.0 part would turn the negative zeros.
    const PointRecord first = FullPoint(-1.0, -2.0, -3.0);
    const PointRecord second = FullPoint(-0.0, -0.0, -0.0);
    ExpectSameFields(second, Prolong(first, second, 0.0, 0.0).target);
}

TEST(TwoPointTarget, WritesOnlyTheTwoFlagBits)
{
    EXPECT_EQ(3, Prolong(WithFlags(FIRST, 0xFFFF), WithFlags(SECOND, 0xFFFF), 0.0, 0.0).target.flags);
    EXPECT_EQ(3, Prolong(WithFlags(FIRST, 0xFFFF), WithFlags(SECOND, 0xFFFF), 0.0, 1.0).target.flags);
}

TEST(TwoPointTarget, LeavesTheOutputsWithoutFullPoints)
{
    for (const int flags : {0, 1, 2, 0xFFFC, 0xFFFD, 0xFFFE})
    {
        EXPECT_TRUE(Untouched(Prolong(WithFlags(FIRST, flags), SECOND, 0.0, 1.0, -1201))) << flags;
        EXPECT_TRUE(Untouched(Prolong(FIRST, WithFlags(SECOND, flags), 0.0, 1.0, -1201))) << flags;
        EXPECT_TRUE(Untouched(Prolong(WithFlags(FIRST, flags), WithFlags(SECOND, flags), 0.0, 1.0, -1201))) << flags;
    }
}

TEST(TwoPointTarget, LeavesTheOutputsForNegativeLengths)
{
    constexpr double SMALLEST = std::numeric_limits<double>::denorm_min();
    EXPECT_TRUE(Untouched(Prolong(FIRST, SECOND, -SMALLEST, 1.0, -1)));
    EXPECT_TRUE(Untouched(Prolong(FIRST, SECOND, 1.0, -SMALLEST, -1)));
    EXPECT_TRUE(Untouched(Prolong(FIRST, SECOND, -1.0, -1.0, -1)));
}

TEST(TwoPointTarget, TakesANegativeZeroForZero)
{
    ExpectSameFields(Prolong(FIRST, SECOND, 0.0, 7.0).target, Prolong(FIRST, SECOND, -0.0, 7.0).target);
}

TEST(TwoPointTarget, LeavesTheOutputsForCoincidentPrisms)
{
    EXPECT_TRUE(Untouched(Prolong(FIRST, FIRST, 0.0, 1.0, -1200)));
    EXPECT_TRUE(Untouched(Prolong(FIRST, FIRST, 1.0, 0.0, -1200)));
}

TEST(TwoPointTarget, TakesPrismsAboveEachOther)
{
    // They need not differ in plan: a plumb rod.
    ExpectSameFields(FullPoint(10.0, 20.0, 26.0), Prolong(FIRST, FullPoint(10.0, 20.0, 28.0), 0.0, 2.0).target);
}

TEST(TwoPointTarget, TakesPrismsForCoincidentWhenTheDistanceVanishes)
{
    // The squares of 1e-200 are 0.0.
    EXPECT_TRUE(Untouched(Prolong(FullPoint(0.0, 0.0, 0.0), FullPoint(1e-200, 1e-200, 1e-200), 1.0, 1.0, -1200)));
}

TEST(TwoPointTarget, TestsFlagsThenLengthsThenCoincidence)
{
    EXPECT_TRUE(Untouched(Prolong(WithFlags(FIRST, 1), FIRST, -1.0, -1.0, -1201)));
    EXPECT_TRUE(Untouched(Prolong(FIRST, FIRST, -1.0, 1.0, -1)));
    EXPECT_TRUE(Untouched(Prolong(FIRST, FIRST, 1.0, -1.0, -1)));
}

TEST(TwoPointTarget, CarriesNotANumberOn)
{
    // Neither test for a negative nor for zero holds.
    const Hidden spacing = Prolong(FIRST, SECOND, NOT_A_NUMBER, 1.0);
    EXPECT_TRUE(std::isnan(spacing.target.northing));
    EXPECT_TRUE(SameBits(7.0, spacing.measuredSpacing));
    EXPECT_TRUE(std::isnan(Prolong(FIRST, SECOND, 1.0, NOT_A_NUMBER).target.height));
}

TEST(TwoPointTarget, WritesOverEitherPrism)
{
    const PointRecord expected = Prolong(FIRST, SECOND, 8.0, 2.0).target;
    for (const double extension : {2.0, 0.0})
    {
        const PointRecord wanted = extension == 0.0 ? SECOND : expected;
        double spacing = 0.0;
        PointRecord overFirst = FIRST;
        EXPECT_EQ(0, QCalc2PtTarget(&overFirst, &SECOND, 8.0, extension, &spacing, &overFirst));
        ExpectSameFields(wanted, overFirst);
        EXPECT_TRUE(SameBits(7.0, spacing));
        PointRecord overSecond = SECOND;
        EXPECT_EQ(0, QCalc2PtTarget(&FIRST, &overSecond, 8.0, extension, &spacing, &overSecond));
        ExpectSameFields(wanted, overSecond);
        EXPECT_TRUE(SameBits(7.0, spacing));
    }
}

TEST(TwoPointTarget, AddsTheSquaresOfHeightAndEastingFirst)
{
    // The squares of these differences are exact; added in another order they give another last bit.
    constexpr double N = 14756.8125;
    constexpr double E = 744.1812133789062;
    constexpr double H = 2033.2171630859375;
    const double expected = std::sqrt((H * H + E * E) + N * N);
    ASSERT_FALSE(SameBits(expected, std::sqrt(H * H + (E * E + N * N))));
    ASSERT_FALSE(SameBits(expected, std::sqrt((H * H + N * N) + E * E)));
    const Hidden hidden = Prolong(FullPoint(0.0, 0.0, 0.0), FullPoint(N, E, H), 0.0, 1.0);
    EXPECT_TRUE(SameBits(expected, hidden.measuredSpacing));
}

TEST(TwoPointTarget, FormsTheProductsInTheOrderOfTheDefinition)
{
    // Northing and easting: reciprocal of the spacing by difference, by extension; height: difference by the product of
    // reciprocal and extension. Other orders, or a quotient, give another last bit here.
    constexpr double D_N = 799.25;
    constexpr double D_E = 975.75;
    constexpr double D_H = 88.75;
    constexpr double SPACING = 164.0;
    constexpr double EXTENSION = 603.75;
    const PointRecord second = FullPoint(763.0, 199.5, 73.25);
    const PointRecord first = FullPoint(763.0 - D_N, 199.5 - D_E, 73.25 - D_H);
    const double k = 1.0 / SPACING;
    const double northing = (k * D_N) * EXTENSION + 763.0;
    const double easting = (D_E * k) * EXTENSION + 199.5;
    const double height = D_H * (k * EXTENSION) + 73.25;
    ASSERT_FALSE(SameBits(northing, (k * EXTENSION) * D_N + 763.0));
    ASSERT_FALSE(SameBits(northing, D_N / SPACING * EXTENSION + 763.0));
    ASSERT_FALSE(SameBits(easting, (k * EXTENSION) * D_E + 199.5));
    ASSERT_FALSE(SameBits(easting, D_E / SPACING * EXTENSION + 199.5));
    ASSERT_FALSE(SameBits(height, (D_H * k) * EXTENSION + 73.25));
    ExpectSameFields(FullPoint(northing, easting, height), Prolong(first, second, SPACING, EXTENSION).target);
}

TEST(TwoPointTarget, ReadsNoSetting)
{
    support::FakeInstrument instrument;
    instrument.azimuthReference = 1;
    ExpectSameFields(FullPoint(12.5, 23.75, 37.5), Prolong(FIRST, SECOND, 8.0, 2.0).target);
    EXPECT_TRUE(instrument.reads.empty());
}
