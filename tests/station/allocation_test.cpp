// What happens when memory runs out: every allocation of a computation fails once, and whatever was taken before has to
// be given back. One thing stays by design: the row table of a matrix whose data block could not be had.
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "qstdlib.h"
#include "station/adjustment/approximation.h"
#include "station/adjustment/general.h"
#include "station/adjustment/plan.h"
#include "tests/station/adjustment/work_record.h"
#include "tests/station/allocation_watch.h"
#include "tests/station/observations.h"

using support::FullPoint;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// Allocations by kind: (v)ector, row (t)able, (d)ata of a matrix. By matrices the set-up takes L, P, X, A, l, dx, v and
// Q; an iteration takes P A and the normal matrix, its factors, solution and residual with index and scales, and two
// products for the corrections. Row by row there are the rows, v and X, and nothing more in an iteration.
const std::string SET_UP = "vtdvtdvvvtd";
const std::string ITERATION = "tdtdtdtdtdvvtdtd";
const std::string PLAN = "vvv";

constexpr qstdlib::AdjustmentPrecision PRECISION = {2.0, 0.002, 2e-6};

// Four distances that do not fit well: more than one iteration.
Observations FourDistances()
{
    const double errors[] = {0.05, -0.03, 0.04, 0.02};
    const PointRecord targets[] = {FullPoint(1100.0, 2010.0, 5.0), FullPoint(1020.0, 2090.0, 6.0),
                                   FullPoint(930.0, 1980.0, 7.0), FullPoint(1040.0, 1910.0, 8.0)};
    Observations observations;
    for (size_t i = 0; i < 4; ++i)
    {
        observations.push_back(DistanceTo(targets[i], 1000.0, 2000.0, 4000000));
        observations[i].horizontalDistance += errors[i];
    }
    return observations;
}

WorkRecords FourWorkRecords()
{
    WorkRecords work;
    for (const ResectObservation& o : FourDistances())
    {
        const double direction = support::UnitsToRadians(o.horizontalAngle);
        work.push_back(WithHeight(Measured(o.target.northing, o.target.easting, direction, o.horizontalDistance),
                                  o.target.height));
    }
    return work;
}

// The kinds of an adjustment by matrices that made so many allocations: `first`, the set-up, and whole iterations.
std::string KindsOf(const std::string& first, size_t allocations)
{
    std::string kinds = first + SET_UP;
    while (kinds.size() < allocations)
    {
        kinds += ITERATION;
    }
    EXPECT_EQ(allocations, kinds.size());
    return kinds;
}

void ExpectSameRecords(const WorkRecords& expected, const WorkRecords& actual)
{
    for (size_t i = 0; i < expected.size(); ++i)
    {
        EXPECT_TRUE(support::SameBytes(expected[i], actual[i])) << i;
    }
}

size_t BlocksLeft(const std::string& kinds, size_t failing)
{
    return kinds.at(failing - 1) == 'd' ? 1 : 0;
}

struct Outputs
{
    double values[9];
};

int32_t Adjust(int32_t mode, WorkRecords& work, Outputs& o)
{
    double* const v = o.values;
    return qstdlib::AdjustResection(mode, CountOf(work), work.data(), PRECISION, v, v + 1, v + 2, v + 3, v + 4, v + 5,
                                    v + 6, v + 7, v + 8);
}

} // namespace

// Four work records of twelve reals; eight rows of a flag and four reals, in all five; v of eight and a spare one; X.
TEST(Allocation, TakesTheScratchOfTheMultiPointResectionInItsFixedOrder)
{
    constexpr size_t REAL = sizeof(double);
    const AllocationWatch watch;
    ASSERT_EQ(QSTD_OK, Resect(FourDistances()).status);
    EXPECT_THAT(watch.Sizes(), ElementsAre(48 * REAL, 40 * REAL, 9 * REAL, 4 * REAL));
    EXPECT_THAT(watch.Outstanding(), IsEmpty());
}

TEST(Allocation, FailsTheMultiPointResectionWhereverMemoryRunsOut)
{
    for (size_t failing = 1; failing <= 1 + PLAN.size(); ++failing)
    {
        const AllocationWatch watch(failing);
        const Resection r = Resect(FourDistances());
        EXPECT_EQ(failing == 1 ? QSTD_NO_MEMORY : QSTD_REJECTED, r.status) << failing;
        ExpectNothingWritten(r);
        EXPECT_THAT(watch.Outstanding(), IsEmpty()) << failing;
        EXPECT_EQ(failing, watch.Sizes().size()) << "nothing is tried after a failure";
    }
}

TEST(Allocation, FailsTheAdjustmentRowByRowWhereverMemoryRunsOut)
{
    for (size_t failing = 1; failing <= PLAN.size(); ++failing)
    {
        WorkRecords work = FourWorkRecords();
        auto station = support::Patterned<qstdlib::PlanStation>();
        const AllocationWatch watch(failing);
        EXPECT_EQ(2, qstdlib::AdjustInPlan(CountOf(work), work.data(), PRECISION, &station)) << failing;
        EXPECT_TRUE(support::Untouched(station));
        ExpectSameRecords(FourWorkRecords(), work);
        EXPECT_THAT(watch.Outstanding(), IsEmpty()) << failing;
        EXPECT_EQ(failing, watch.Sizes().size());
    }
}

// A distance of 1e200 weighs nothing, and one to a target at the approximate station has no direction: its row is NaN.
// The adjustment goes over to matrices, which leave that row out.
TEST(Allocation, FailsTheAdjustmentThatGoesOverToMatrices)
{
    WorkRecords sights = FourWorkRecords();
    double* approximate = nullptr;
    int32_t unknownCount = 0;
    int32_t limit = 0;
    ASSERT_EQ(0, qstdlib::ApproximateStation(qstdlib::ADJUST_MODE_PLAN, CountOf(sights), sights.data(), 4, &approximate,
                                             &unknownCount, 8, &limit));
    sights.push_back(Measured(approximate[1], approximate[2], MISSING_VALUE, 1e200));
    std::free(approximate);
    size_t allocations = 0;
    {
        const AllocationWatch watch;
        WorkRecords work = sights;
        qstdlib::PlanStation station = {};
        ASSERT_EQ(0, qstdlib::AdjustInPlan(CountOf(work), work.data(), PRECISION, &station));
        allocations = watch.Sizes().size();
    }
    const std::string kinds = KindsOf(PLAN, allocations);
    for (size_t failing = 1; failing <= allocations; ++failing)
    {
        WorkRecords work = sights;
        auto station = support::Patterned<qstdlib::PlanStation>();
        const AllocationWatch watch(failing);
        EXPECT_EQ(2, qstdlib::AdjustInPlan(CountOf(work), work.data(), PRECISION, &station)) << failing;
        EXPECT_TRUE(support::Untouched(station));
        ExpectSameRecords(sights, work);
        EXPECT_EQ(BlocksLeft(kinds, failing), watch.Outstanding().size()) << failing;
    }
}

TEST(Allocation, FailsTheAdjustmentByMatricesWhereverMemoryRunsOut)
{
    for (const int32_t mode : {qstdlib::ADJUST_MODE_PLAN, qstdlib::ADJUST_MODE_SPATIAL})
    {
        size_t allocations = 0;
        {
            const AllocationWatch watch;
            WorkRecords work = FourWorkRecords();
            Outputs outputs = {};
            ASSERT_EQ(0, Adjust(mode, work, outputs));
            allocations = watch.Sizes().size();
            EXPECT_THAT(watch.Outstanding(), IsEmpty());
        }
        EXPECT_GE(allocations, SET_UP.size() + 2 * ITERATION.size()) << "two iterations at least";
        const std::string kinds = KindsOf("", allocations);
        for (size_t failing = 1; failing <= allocations; ++failing)
        {
            WorkRecords work = FourWorkRecords();
            auto outputs = support::Patterned<Outputs>();
            const AllocationWatch watch(failing);
            EXPECT_EQ(2, Adjust(mode, work, outputs)) << failing;
            EXPECT_TRUE(support::Untouched(outputs));
            ExpectSameRecords(FourWorkRecords(), work);
            EXPECT_EQ(BlocksLeft(kinds, failing), watch.Outstanding().size()) << failing;
        }
    }
}

TEST(Allocation, FailsTheKnownLineWhereverMemoryRunsOut)
{
    const Observations observations = FourDistances();
    for (size_t failing = 1; failing <= 1 + PLAN.size(); ++failing)
    {
        const AllocationWatch watch(failing);
        auto station = support::Patterned<ResectStation>();
        ResectResidual residuals[2] = {support::Patterned<ResectResidual>(), support::Patterned<ResectResidual>()};
        EXPECT_EQ(failing == 1 ? QSTD_NO_MEMORY : QSTD_REJECTED,
                  QSTNKnownLine(observations.data(), &observations[2], AZIMUTH_NOT_GIVEN, &station, residuals));
        EXPECT_TRUE(support::Untouched(station));
        EXPECT_TRUE(support::Untouched(residuals[0]));
        EXPECT_TRUE(support::Untouched(residuals[1]));
    }
}

// Below 256 bytes a sight and 2,048 more. The most sights that a count can give, two rows each, and some fewer.
TEST(Allocation, GrowsWithTheSightsAndNotWithTheirSquare)
{
    for (const int16_t count : {int16_t(3), int16_t(10), int16_t(1000), std::numeric_limits<int16_t>::max()})
    {
        const Observations observations = DistancesAllAround(count);
        const AllocationWatch watch;
        ASSERT_EQ(QSTD_OK, Resect(observations).status);
        EXPECT_LT(watch.MostBytes(), 256U * static_cast<size_t>(count) + 2048U) << count;
        EXPECT_THAT(watch.Outstanding(), IsEmpty());
    }
}

TEST(Allocation, IsNotNeededByTheClosedSolutions)
{
    TwoPointTarget two[2] = {};
    two[0].known = FullPoint(100.0, 0.0, 5.0);
    two[0].horizontalDistance = 40.0;
    two[1].known = FullPoint(0.0, 100.0, 5.0);
    two[1].horizontalAngle = 6000000;
    const ThreePointTarget three[3] = {{FullPoint(100.0, 0.0, 5.0), 0, 5000000, 1.0},
                                       {FullPoint(50.0, 50.0, 5.0), 2592000, 5000000, 1.0},
                                       {FullPoint(0.0, 200.0, 5.0), 5184000, 5000000, 1.0}};
    TwoPointStation station = {};
    const AllocationWatch watch;
    EXPECT_EQ(QSTD_OK, QSTN2PtResect(&two[0], &two[1], &station));
    EXPECT_EQ(QSTD_OK, QSTN3PtResect(&three[0], &three[1], &three[2], &station));
    EXPECT_THAT(watch.Sizes(), IsEmpty());
}
