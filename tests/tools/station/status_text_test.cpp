#include "station/status_text.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using qstd::DescribeFailure;
using qstd::KnownPoint;
using qstd::Outcome;
using qstd::StationSolution;
using testing::HasSubstr;

namespace {

StationSolution Failed(int32_t status, size_t directions, size_t distances)
{
    StationSolution solution;
    solution.status = status;
    solution.used = directions;
    solution.directions = directions;
    solution.distances = distances;
    return solution;
}

} // namespace

TEST(DescribeFailure, TellsTheCausesApart)
{
    EXPECT_EQ(DescribeFailure(Failed(QSTD_REJECTED, 0, 0)).reason, "no sight to a known point");
    EXPECT_EQ(DescribeFailure(Failed(QSTD_REJECTED, 2, 1)).reason, "2 directions with 1 distance cannot fix a station");
    EXPECT_THAT(DescribeFailure(Failed(QSTD_REJECTED, 3, 0)).usualCause, HasSubstr("danger circle"));
    EXPECT_THAT(DescribeFailure(Failed(QSTD_REJECTED, 2, 2)).usualCause, HasSubstr("danger circle"));
    EXPECT_THAT(DescribeFailure(Failed(QSTD_DEGENERATE, 5, 0)).reason, HasSubstr("did not converge"));
    EXPECT_THAT(DescribeFailure(Failed(QSTD_NO_MEMORY, 5, 0)).reason, HasSubstr("memory"));
    StationSolution tooMany = Failed(0, 3000, 0);
    tooMany.outcome = Outcome::TOO_MANY;
    EXPECT_EQ(DescribeFailure(tooMany).reason, "3000 sights; one adjustment takes at most 2500");
    EXPECT_EQ(OutcomeName(tooMany), "TOO_MANY_SIGHTS");
}

TEST(DescribeFailure, TellsTargetsOfEqualCoordinates)
{
    // Three sights, the first and the last to one place.
    const KnownPoint near = {"near", 0, {0.0, 10.0, 0.0, POINT_HAS_PLAN}, ""};
    const KnownPoint far = {"far", 0, {10.0, 0.0, 0.0, POINT_HAS_PLAN}, ""};
    const KnownPoint same = {"same", 0, {0.0, 10.0, 5.0, POINT_HAS_PLAN | POINT_HAS_HEIGHT}, ""};
    StationSolution solution = Failed(0, 3, 0);
    solution.method = qstd::StationMethod::THREE_POINT;
    solution.outcome = Outcome::TOO_FEW;
    for (const KnownPoint* const target : {&near, &far, &same})
    {
        qstd::PreparedSight sight;
        sight.target = target;
        sight.isUsed = true;
        solution.sights.push_back(sight);
    }
    EXPECT_THAT(DescribeFailure(solution).reason, HasSubstr("here are 3 directions and 0 distances to 2 places"));
    EXPECT_THAT(DescribeFailure(solution).usualCause, HasSubstr("equal coordinates"));
}

TEST(DescribeFailure, AlwaysSaysWhatToDo)
{
    for (const int32_t status : {QSTD_REJECTED, QSTD_NO_MEMORY, QSTD_DEGENERATE})
    {
        for (const size_t directions : {size_t{0}, size_t{2}, size_t{9}})
        {
            const qstd::StatusText text = DescribeFailure(Failed(status, directions, 0));
            EXPECT_NE(text.reason, "");
            EXPECT_NE(text.usualCause, "");
            EXPECT_NE(text.remedy, "");
        }
    }
}
