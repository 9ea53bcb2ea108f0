#include "plan/plan_names.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using qstd::PlanNames;
using qstd::SetUp;
using testing::ElementsAre;

namespace {

SetUp Named(const std::string& station, size_t number = 1, size_t siblings = 1)
{
    SetUp setUp;
    setUp.station = station;
    setUp.number = number;
    setUp.siblings = siblings;
    return setUp;
}

std::vector<std::string> Names(const std::string& path, const std::vector<SetUp>& setUps)
{
    std::vector<const SetUp*> pointers;
    pointers.reserve(setUps.size());
    for (const SetUp& setUp : setUps)
    {
        pointers.push_back(&setUp);
    }
    return PlanNames(path, pointers);
}

} // namespace

TEST(PlanNames, TakesTheGivenNameForASingleSetUp)
{
    EXPECT_THAT(Names("out/plan.svg", {Named("a/b")}), ElementsAre("out/plan.svg"));
}

TEST(PlanNames, InsertsTheStationBeforeTheExtension)
{
    EXPECT_THAT(Names("o.d/plan.svg", {Named("1"), Named("2", 1, 2), Named("2", 2, 2)}),
                ElementsAre("o.d/plan-1.svg", "o.d/plan-2-1.svg", "o.d/plan-2-2.svg"));
    EXPECT_THAT(Names("o.d/plan", {Named("1"), Named("2")}), ElementsAre("o.d/plan-1", "o.d/plan-2"));
    EXPECT_THAT(Names(".svg", {Named("1"), Named("2")}), ElementsAre(".svg-1", ".svg-2"));
}

TEST(PlanNames, ReplacesWhatAFileNameCannotHold)
{
    EXPECT_THAT(Names("p.svg", {Named("04-1057/1"), Named("../x y"), Named("Kő")}),
                ElementsAre("p-04-1057_1.svg", "p-.._x_y.svg", "p-Kő.svg"));
}

TEST(PlanNames, NeverGivesANameTwice)
{
    EXPECT_THAT(Names("p.svg", {Named("a/b"), Named("a_b"), Named("A?b")}),
                ElementsAre("p-a_b.svg", "p-a_b_2.svg", "p-A_b_3.svg"));
}
