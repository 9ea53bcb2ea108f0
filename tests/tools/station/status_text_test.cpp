#include "station/status_text.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using qstd::DescribeFailure;
using qstd::KnownPoint;
using qstd::Outcome;
using qstd::StationSolution;
using testing::HasSubstr;

namespace {

/** A set-up that was not solved, with used sights to as many places as asked for. */
class Failed
{
public:
    Failed(Outcome outcome, size_t places, size_t directions, size_t distances)
    {
        for (size_t i = 0; i < places; ++i)
        {
            targets.push_back(
                {"P" + std::to_string(i), 0, {10.0 * static_cast<double>(i), 3.0, 0.0, POINT_HAS_PLAN}, ""});
        }
        sights.resize(directions);
        solution.setUp = &setUp;
        solution.outcome = outcome;
        solution.status = QSTD_REJECTED;
        solution.used = directions;
        solution.directions = directions;
        solution.distances = distances;
        for (size_t i = 0; i < directions; ++i)
        {
            qstd::PreparedSight sight;
            sights[i].target = targets[i % places].id;
            sight.sight = &sights[i];
            sight.target = &targets[i % places];
            sight.isUsed = true;
            solution.sights.push_back(sight);
        }
    }

    Failed(const Failed&) = delete;
    Failed& operator=(const Failed&) = delete;
    Failed(Failed&&) = delete;
    Failed& operator=(Failed&&) = delete;
    ~Failed() = default;

    qstd::SetUp setUp;
    std::vector<KnownPoint> targets;
    std::vector<qstd::Sight> sights;
    StationSolution solution;
};

constexpr Outcome FAILURES[] = {Outcome::REFUSED,     Outcome::TOO_FEW,      Outcome::NOT_A_POSITION,
                                Outcome::NO_SOLUTION, Outcome::UNDETERMINED, Outcome::AMBIGUOUS};

} // namespace

TEST(DescribeFailure, TellsTheCausesApart)
{
    EXPECT_EQ(DescribeFailure(Failed(Outcome::TOO_FEW, 0, 0, 0).solution).reason, "no sight to a known point");
    EXPECT_EQ(DescribeFailure(Failed(Outcome::TOO_FEW, 1, 4, 2).solution).reason,
              "all sights go to one target, P0; a station needs two and a distance, or three");
    EXPECT_EQ(DescribeFailure(Failed(Outcome::TOO_FEW, 2, 6, 0).solution).reason,
              "6 directions and 0 distances to 2 places: two targets fix a station only with a distance");
    EXPECT_THAT(DescribeFailure(Failed(Outcome::AMBIGUOUS, 2, 2, 1).solution).reason, HasSubstr("two positions"));
    EXPECT_THAT(DescribeFailure(Failed(Outcome::AMBIGUOUS, 2, 2, 1).solution).remedy, HasSubstr("other target"));
    EXPECT_THAT(DescribeFailure(Failed(Outcome::UNDETERMINED, 3, 3, 0).solution).usualCause,
                HasSubstr("danger circle"));
    EXPECT_THAT(DescribeFailure(Failed(Outcome::NO_SOLUTION, 3, 3, 1).solution).reason,
                HasSubstr("no position fulfils these sights"));
    EXPECT_THAT(DescribeFailure(Failed(Outcome::REFUSED, 3, 5, 0).solution).reason, HasSubstr("give no position"));
}

TEST(DescribeFailure, TellsOfMemory)
{
    Failed failed(Outcome::REFUSED, 3, 5, 0);
    failed.solution.status = QSTD_NO_MEMORY;
    EXPECT_THAT(DescribeFailure(failed.solution).reason, HasSubstr("memory"));
}

TEST(DescribeFailure, NamesTargetsThatAreNotKnown)
{
    Failed failed(Outcome::TOO_FEW, 1, 1, 1);
    std::vector<qstd::Sight> unknown(7);
    for (size_t i = 0; i < unknown.size(); ++i)
    {
        // The sixth one is kept out, the seventh a name that was there before.
        unknown[i].target = i == 6 ? "X0" : "X" + std::to_string(i);
        unknown[i].isWanted = i != 5;
        qstd::PreparedSight sight;
        sight.sight = &unknown[i];
        failed.solution.sights.push_back(sight);
    }
    EXPECT_EQ(DescribeFailure(failed.solution).usualCause,
              "targets without coordinates in the points table: X0, X1, X2, X3, X4");
}

TEST(DescribeFailure, CountsTargetsOfEqualCoordinatesAsOnePlace)
{
    // Three sights, the first and the last to one place.
    Failed failed(Outcome::TOO_FEW, 3, 3, 0);
    failed.targets[2].point = failed.targets[0].point;
    failed.solution.method = qstd::StationMethod::THREE_POINT;
    EXPECT_THAT(DescribeFailure(failed.solution).reason,
                HasSubstr("here are 3 directions and 0 distances to 2 places"));
    EXPECT_THAT(DescribeFailure(failed.solution).usualCause, HasSubstr("equal coordinates"));
}

TEST(DescribeFailure, AlwaysSaysWhatToDo)
{
    for (const Outcome outcome : FAILURES)
    {
        for (const int32_t status : {QSTD_REJECTED, QSTD_NO_MEMORY, QSTD_DEGENERATE, QSTD_OK})
        {
            Failed failed(outcome, 2, 9, 0);
            failed.solution.status = status;
            const qstd::StatusText text = DescribeFailure(failed.solution);
            EXPECT_NE(text.reason, "");
            EXPECT_NE(text.usualCause, "");
            EXPECT_NE(text.remedy, "");
        }
    }
}

TEST(OutcomeName, TellsTheToolsOwnRefusalsFromTheLibrarys)
{
    EXPECT_EQ(OutcomeName(Failed(Outcome::TOO_FEW, 1, 1, 0).solution), "TOO_FEW_SIGHTS");
    EXPECT_EQ(OutcomeName(Failed(Outcome::NOT_A_POSITION, 3, 3, 0).solution), "NOT_A_POSITION");
    EXPECT_EQ(OutcomeName(Failed(Outcome::NO_SOLUTION, 3, 3, 0).solution), "NO_SOLUTION");
    EXPECT_EQ(OutcomeName(Failed(Outcome::UNDETERMINED, 3, 3, 0).solution), "UNDETERMINED");
    EXPECT_EQ(OutcomeName(Failed(Outcome::AMBIGUOUS, 2, 2, 1).solution), "AMBIGUOUS");
    EXPECT_EQ(OutcomeName(Failed(Outcome::REFUSED, 3, 3, 0).solution), "QSTD_REJECTED");
}
