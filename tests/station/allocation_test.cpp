// What happens when memory runs out: every allocation of a computation fails once, and whatever was taken before has to
// be given back. One thing stays by design: the row table of a matrix whose data block could not be had.
#include <cstdint>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "qstdlib.h"
#include "tests/station/allocation_watch.h"
#include "tests/station/observations.h"
#include "tests/station/work_record.h"

using support::FullPoint;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// Allocations by kind: (v)ector, row (t)able, (d)ata of a matrix. The set-up takes L, P, X, A, l, dx, v, Q, and in
// plan N. An iteration in plan inverts it: the scratch of the solution, pivots and scales; the first takes nothing when
// it is only a step. In space the inversion has P A and N before these, and the corrections two products.
const std::string SPATIAL_SET_UP = "vtdvtdvvvtd";
const std::string SET_UP = SPATIAL_SET_UP + "td";
const std::string PLAN_ITERATION = "tdvv";
const std::string SPATIAL_ITERATION = "tdtd" + PLAN_ITERATION + "tdtd";

// Four distances that do not fit well: a step and an iteration in full.
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

// The kinds of a computation that made so many allocations: the set-up and whole iterations.
std::string KindsOf(const std::string& setUp, const std::string& iteration, size_t allocations)
{
    std::string kinds = setUp;
    while (kinds.size() < allocations)
    {
        kinds += iteration;
    }
    EXPECT_EQ(allocations, kinds.size());
    return kinds;
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
    return qstdlib::AdjustResection(mode, CountOf(work), work.data(), {2.0, 0.002, 2e-6}, v, v + 1, v + 2, v + 3, v + 4,
                                    v + 5, v + 6, v + 7, v + 8);
}

} // namespace

// Eight rows, three unknowns: work records of twelve doubles, L, P (table and data), X, A, l, dx, v, Q, and N
// with the absolute terms.
TEST(Allocation, TakesTheScratchOfTheMultiPointResectionInItsFixedOrder)
{
    constexpr size_t REAL = sizeof(double);
    constexpr size_t POINTER = sizeof(double*);
    const AllocationWatch watch;
    ASSERT_EQ(QSTD_OK, Resect(FourDistances()).status);
    ASSERT_GT(watch.Sizes().size(), 14U);
    const std::vector<size_t> first(watch.Sizes().begin(), watch.Sizes().begin() + 14);
    EXPECT_THAT(first, ElementsAre(48 * REAL, 9 * REAL, 9 * POINTER, 65 * REAL, 4 * REAL, 9 * POINTER, 25 * REAL,
                                   9 * REAL, 4 * REAL, 9 * REAL, 4 * POINTER, 10 * REAL, 5 * POINTER, 17 * REAL));
    EXPECT_THAT(watch.Outstanding(), IsEmpty());
}

TEST(Allocation, FailsTheMultiPointResectionWhereverMemoryRunsOut)
{
    size_t allocations = 0;
    {
        const AllocationWatch watch;
        ASSERT_EQ(QSTD_OK, Resect(FourDistances()).status);
        allocations = watch.Sizes().size();
    }
    const std::string kinds = KindsOf("v" + SET_UP, PLAN_ITERATION, allocations);
    EXPECT_EQ(allocations, 1 + SET_UP.size() + PLAN_ITERATION.size()) << "a step and an iteration in full";
    for (size_t failing = 1; failing <= allocations; ++failing)
    {
        const AllocationWatch watch(failing);
        const Resection r = Resect(FourDistances());
        EXPECT_EQ(failing == 1 ? QSTD_NO_MEMORY : QSTD_REJECTED, r.status) << failing;
        ExpectNothingWritten(r);
        EXPECT_EQ(BlocksLeft(kinds, failing), watch.Outstanding().size()) << failing;
        EXPECT_EQ(failing, watch.Sizes().size()) << "nothing is tried after a failure";
    }
}

TEST(Allocation, FailsTheAdjustmentWhereverMemoryRunsOut)
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
        const bool plan = mode == qstdlib::ADJUST_MODE_PLAN;
        const std::string kinds =
            KindsOf(plan ? SET_UP : SPATIAL_SET_UP, plan ? PLAN_ITERATION : SPATIAL_ITERATION, allocations);
        for (size_t failing = 1; failing <= allocations; ++failing)
        {
            WorkRecords work = FourWorkRecords();
            auto outputs = support::Patterned<Outputs>();
            const AllocationWatch watch(failing);
            EXPECT_EQ(2, Adjust(mode, work, outputs)) << failing;
            EXPECT_TRUE(support::Untouched(outputs));
            const WorkRecords before = FourWorkRecords();
            for (size_t i = 0; i < work.size(); ++i)
            {
                EXPECT_TRUE(support::SameBytes(before[i], work[i]));
            }
            EXPECT_EQ(BlocksLeft(kinds, failing), watch.Outstanding().size()) << failing;
        }
    }
}

TEST(Allocation, FailsTheKnownLineWhereverMemoryRunsOut)
{
    const Observations observations = FourDistances();
    for (size_t failing = 1; failing <= 13; ++failing)
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
