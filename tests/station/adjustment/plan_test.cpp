// The adjustment row by row against the adjustment by matrices, bit by bit.
#include "station/adjustment/plan.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <random>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "station/adjustment/general.h"
#include "tests/station/adjustment/sights.h"
#include "tests/station/adjustment/work_record.h"
#include "tests/station/allocation_watch.h"
#include "tests/support/record.h"

using namespace qstdlib;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const double NOT_A_NUMBER = std::nan("");
constexpr double INFINITE = std::numeric_limits<double>::infinity();

// Rows, residuals and unknowns: what an adjustment row by row takes from the heap, and no more.
constexpr size_t PLAN_BLOCKS = 3;

// A zero of either sign is itself, NaN is NaN: the sign that an operation gives it is not defined.
bool AreSame(double a, double b)
{
    return (std::isnan(a) && std::isnan(b)) || support::BitsOf(a) == support::BitsOf(b);
}

bool AreSame(const PlanStation& a, const PlanStation& b)
{
    return AreSame(a.northing, b.northing) && AreSame(a.easting, b.easting) && AreSame(a.orientation, b.orientation) &&
           AreSame(a.northingSigma, b.northingSigma) && AreSame(a.eastingSigma, b.eastingSigma) &&
           AreSame(a.orientationSigma, b.orientationSigma) && AreSame(a.unitWeightSigma, b.unitWeightSigma);
}

bool HaveSameResiduals(const WorkRecords& a, const WorkRecords& b)
{
    bool areSame = true;
    for (size_t i = 0; i < a.size(); ++i)
    {
        areSame = areSame && AreSame(a[i].angleResidual, b[i].angleResidual) &&
                  AreSame(a[i].distanceResidual, b[i].distanceResidual) && AreSame(a[i].heightValue, b[i].heightValue);
    }
    return areSame;
}

struct Adjusted
{
    int32_t result;
    PlanStation station;
    WorkRecords work;
};

// By matrices.
Adjusted AdjustGenerally(const WorkRecords& work, const AdjustmentPrecision& precision = DEFAULT_PRECISION)
{
    Adjusted a = {-1, support::Patterned<PlanStation>(), work};
    PlanStation& s = a.station;
    double height = 0.0;
    double heightSigma = 0.0;
    a.result = AdjustResection(ADJUST_MODE_PLAN, CountOf(work), a.work.data(), precision, &s.northing, &s.easting,
                               &height, &s.orientation, &s.northingSigma, &s.eastingSigma, &heightSigma,
                               &s.orientationSigma, &s.unitWeightSigma);
    return a;
}

// Row by row.
Adjusted AdjustPlan(const WorkRecords& work, const AdjustmentPrecision& precision = DEFAULT_PRECISION)
{
    Adjusted a = {-1, support::Patterned<PlanStation>(), work};
    a.result = AdjustInPlan(CountOf(work), a.work.data(), precision, &a.station);
    return a;
}

// How often sets came to which end.
struct Ends
{
    int32_t results[4];
    int32_t byMatrices; // carried out by matrices in the end
};

// True when both adjustments agree in all that they write, failures being those that write nothing.
bool Agree(const WorkRecords& work, const AdjustmentPrecision& precision, Ends& ends)
{
    const AllocationWatch general;
    const Adjusted expected = AdjustGenerally(work, precision);
    const size_t generalBlocks = general.Sizes().size();
    const Adjusted actual = AdjustPlan(work, precision);
    const size_t planBlocks = general.Sizes().size() - generalBlocks;
    ++ends.results[expected.result];
    ends.byMatrices += planBlocks > PLAN_BLOCKS ? 1 : 0;
    return expected.result == actual.result && AreSame(expected.station, actual.station) &&
           HaveSameResiduals(expected.work, actual.work);
}

template <typename Value, size_t COUNT>
Value Pick(std::mt19937& random, const Value (&values)[COUNT])
{
    return values[random() % COUNT];
}

// Small integers and simple fractions of the circle: targets coincide, lie on lines or under the station; one to six
// sights, with distances or without, that fit or do not.
WorkRecords GridSights(std::mt19937& random)
{
    const double coordinates[] = {-2.0, -1.0, -0.0, 0.0, 1.0, 2.0, 3.0};
    const double directions[] = {-0.0, 0.0, CIRCLE_HALF / 2.0, CIRCLE_HALF, 0.25, -0.25, 3.0, 7.0};
    const double distances[] = {-1.0, 0.0, -0.0, 1.0, 2.0, 2.23606797749979};
    WorkRecords work;
    const size_t count = 1 + random() % 6;
    for (size_t i = 0; i < count; ++i)
    {
        const double northing = Pick(random, coordinates);
        const double easting = Pick(random, coordinates);
        const double direction = random() % 8 == 0 ? MISSING_VALUE : Pick(random, directions);
        work.push_back(random() % 3 == 0 ? Sighted(northing, easting, direction)
                                         : Measured(northing, easting, direction, Pick(random, distances)));
    }
    return work;
}

// Whole degrees and metres without any connection: many an iteration, and not always an end.
WorkRecords UnrelatedSights(std::mt19937& random)
{
    WorkRecords work;
    const size_t count = 2 + random() % 5;
    for (size_t i = 0; i < count; ++i)
    {
        const double northing = std::floor(100.0 * Uniform(random));
        const double easting = std::floor(100.0 * Uniform(random));
        const double direction = std::floor(180.0 * Uniform(random)) * DEGREE;
        work.push_back(random() % 4 == 0
                           ? Sighted(northing, easting, direction)
                           : Measured(northing, easting, direction, std::floor(100.0 + 80.0 * Uniform(random))));
    }
    return work;
}

// Puts something into a field that no survey brings.
void Spoil(ResectWorkRecord& record, std::mt19937& random)
{
    const double values[] = {0.0,           -0.0,  1.0,    INFINITE, -INFINITE, NOT_A_NUMBER, 1e308,
                             -1e308,        1e200, -1e154, 1e154,    1e-154,    1e-200,       5e-324,
                             MISSING_VALUE, 1e17,  -1e100, 1e9,      -1e-9,     1e-16};
    double ResectWorkRecord::*const fields[] = {&ResectWorkRecord::northing, &ResectWorkRecord::easting,
                                                &ResectWorkRecord::direction, &ResectWorkRecord::horizontalDistance,
                                                &ResectWorkRecord::slopeDistance};
    record.*Pick(random, fields) = Pick(random, values);
}

WorkRecords AnySights(std::mt19937& random)
{
    WorkRecords (*const kinds[])(std::mt19937&) = {FineSights, RoughSights, GridSights, UnrelatedSights};
    WorkRecords work = Pick(random, kinds)(random);
    for (uint32_t spoiled = random() % 4; spoiled > 1; --spoiled)
    {
        Spoil(work[random() % work.size()], random);
    }
    if (random() % 16 == 0)
    {
        work.push_back(work[random() % work.size()]); // a target twice
    }
    return work;
}

AdjustmentPrecision AnyPrecision(std::mt19937& random)
{
    const AdjustmentPrecision precisions[] = {DEFAULT_PRECISION,     DEFAULT_PRECISION, DEFAULT_PRECISION,
                                              {30.0, 0.05, 0.0003},  {0.0, 0.01, 0.0},  {2.0, 0.0, 0.0},
                                              {INFINITE, 0.01, 0.0}, {1e-150, 1e5, 1.0}};
    return Pick(random, precisions);
}

// QSTDLIB_ADJUSTMENT_SETS in the environment asks for another number of sets than the daily one.
uint32_t NumberOfSets()
{
#if defined(__arm__)
    constexpr uint32_t DAILY = 4000; // an emulated processor
#else
    constexpr uint32_t DAILY = 200000;
#endif
    const char* const wanted = std::getenv("QSTDLIB_ADJUSTMENT_SETS");
    return wanted != nullptr ? static_cast<uint32_t>(std::strtoul(wanted, nullptr, 10)) : DAILY;
}

} // namespace

TEST(AdjustInPlan, GivesTheBitsOfTheAdjustmentByMatrices)
{
    Ends ends = {};
    const uint32_t sets = NumberOfSets();
    for (uint32_t seed = 0; seed < sets; ++seed)
    {
        std::mt19937 random(seed);
        const WorkRecords work = AnySights(random);
        ASSERT_TRUE(Agree(work, AnyPrecision(random), ends)) << "seed " << seed;
    }
    // Every end was seen: adjusted, not converged, degenerate, and carried out by matrices.
    EXPECT_GT(ends.results[ADJUST_CONVERGED], static_cast<int32_t>(sets / 4));
    EXPECT_GT(ends.results[ADJUST_NOT_CONVERGED], static_cast<int32_t>(sets / 100));
    EXPECT_GT(ends.results[ADJUST_DEGENERATE], static_cast<int32_t>(sets / 20));
    EXPECT_GT(ends.byMatrices, static_cast<int32_t>(sets / 50));
    EXPECT_EQ(0, ends.results[ADJUST_NO_MEMORY]);
}

// Perfect data: the square sum is below the machine's epsilon at once.
TEST(AdjustInPlan, StopsAtOnceOnPerfectData)
{
    const WorkRecords work = {Measured(128.0, 0.0, 0.5, 128.0), Measured(0.0, 96.0, 0.5 + CIRCLE_HALF / 2.0, 96.0)};
    const Adjusted a = AdjustPlan(work);
    EXPECT_EQ(0, a.result);
    EXPECT_NEAR(0.0, a.station.northing, 1e-12);
    EXPECT_NEAR(0.0, a.station.easting, 1e-12);
    EXPECT_NEAR(CIRCLE_FULL - 0.5, a.station.orientation, 1e-12);
    EXPECT_NEAR(0.0, a.work[1].distanceResidual, 1e-12);
}

// The toolkit's sums begin with 0.0, so that none of them is -0.0. Here all parts of a sum are: the third target lies
// due north, in the direction -0.0 by an orientation of -0.0, and the distances move the station along that line.
TEST(AdjustInPlan, AddsZerosAsTheToolkitDoes)
{
    for (const double contradiction : {-0.25, 0.25, -0.03125, 0.03125, 4.0, -4.0})
    {
        Ends ends = {};
        const WorkRecords work = {Measured(128.0, -0.0, 0.0, 128.0), Measured(256.0, 0.0, 0.0, 256.0 + contradiction),
                                  Sighted(512.0, 0.0, -0.0)};
        EXPECT_TRUE(Agree(work, DEFAULT_PRECISION, ends)) << contradiction;
        EXPECT_EQ(1, ends.results[ADJUST_CONVERGED]);
        EXPECT_EQ(0, ends.byMatrices);
    }
}

// What is finite never needs a matrix: three blocks, all given back.
TEST(AdjustInPlan, TakesThreeBlocks)
{
    std::mt19937 random(20260104);
    for (int32_t run = 0; run < 100; ++run)
    {
        const WorkRecords work = RoughSights(random);
        const AllocationWatch watch;
        ASSERT_EQ(0, AdjustPlan(work).result);
        EXPECT_EQ(PLAN_BLOCKS, watch.Sizes().size());
        EXPECT_THAT(watch.Outstanding(), IsEmpty());
    }
}

// Distances without weight beside two directions on one line through the station, (0, 0): rows (-1/2, 1/2, 1) and
// (-1/4, 1/4, 1). Eliminating the first unknown leaves 5/16 - 5/16 = 0 for the second. The tiny pivot in its place
// keeps all numbers finite, and there is nothing to correct.
TEST(AdjustInPlan, GoesOnAfterAPivotOfZero)
{
    Ends ends = {};
    const WorkRecords work = {Measured(1.0, 1.0, 0.0, 1.0), Measured(2.0, 2.0, 0.0, 2.0)};
    EXPECT_TRUE(Agree(work, {0.0, 0.01, 0.0}, ends));
    EXPECT_EQ(1, ends.results[ADJUST_CONVERGED]);
    EXPECT_EQ(0, ends.byMatrices);
}

// Two distances without any direction leave the orientation undetermined: its row of the normal matrix is zero. No
// matrix is needed to see that, and nothing stays allocated.
TEST(AdjustInPlan, ReportsASingularNormalMatrix)
{
    const WorkRecords work = {Measured(100.0, 0.0, MISSING_VALUE, 90.0), Measured(0.0, 100.0, MISSING_VALUE, 80.0)};
    const AllocationWatch watch;
    const Adjusted a = AdjustPlan(work);
    EXPECT_EQ(3, a.result);
    EXPECT_TRUE(support::Untouched(a.station));
    EXPECT_TRUE(support::SameBytes(work[0], a.work[0]));
    EXPECT_EQ(PLAN_BLOCKS, watch.Sizes().size());
    EXPECT_THAT(watch.Outstanding(), IsEmpty());
}

// An infinite distance weighs nothing, and makes every correction NaN. The matrices find the same, and leave the scales
// of their decomposition.
TEST(AdjustInPlan, LeavesAnInfiniteDistanceToTheMatrices)
{
    WorkRecords work = FourSights();
    work[2].horizontalDistance = INFINITE;
    const AllocationWatch watch;
    const Adjusted a = AdjustPlan(work);
    EXPECT_EQ(3, a.result);
    EXPECT_TRUE(support::Untouched(a.station));
    EXPECT_GT(watch.Sizes().size(), PLAN_BLOCKS);
    EXPECT_THAT(watch.Outstanding(), ElementsAre(4 * sizeof(double)));
}

// The square of 2e-6 times 1e200 is infinite: a weight of zero, and a misclosure that is finite. The rest is what it is
// without the distance; no matrix is needed.
TEST(AdjustInPlan, LeavesADistanceWithoutWeightOut)
{
    const Adjusted expected = AdjustPlan(FourSights());
    WorkRecords work = FourSights();
    work[3] = Measured(work[3].northing, work[3].easting, work[3].direction, 1e200);
    const AllocationWatch watch;
    const Adjusted a = AdjustPlan(work);
    EXPECT_EQ(0, a.result);
    EXPECT_EQ(PLAN_BLOCKS, watch.Sizes().size());
    EXPECT_TRUE(support::SameBits(expected.station.northing, a.station.northing));
    EXPECT_TRUE(support::SameBits(expected.station.easting, a.station.easting));
    EXPECT_EQ(-1e200, a.work[3].distanceResidual);
}

TEST(AdjustInPlan, ReportsDataWithoutAFirstApproximation)
{
    for (const WorkRecords& work :
         {WorkRecords{}, WorkRecords{Sighted(1, 1, 0.1), Sighted(2, 3, 0.2)},
          WorkRecords{Measured(1, 1, 0.1, 5.0), Measured(1, 1, 0.2, 6.0)}, WorkRecords{Known(1, 1)}})
    {
        const AllocationWatch watch;
        const Adjusted a = AdjustPlan(work);
        EXPECT_EQ(3, a.result);
        EXPECT_TRUE(support::Untouched(a.station));
        EXPECT_THAT(watch.Outstanding(), IsEmpty());
    }
}
