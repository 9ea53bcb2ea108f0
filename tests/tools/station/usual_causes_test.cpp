#include "station/usual_causes.h"

#include <algorithm>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "field_work.h"

using qstd::StationSolution;
using survey::FieldWork;
using survey::Radians;
using survey::Reading;
using testing::ElementsAre;
using testing::StartsWith;

namespace {

/** Five targets all around with distances; no two places alike in any mirror. */
FieldWork Sound()
{
    FieldWork work = {4210.6, 1385.2, 95.1, Radians(151.0), {}, {}};
    const double places[][2] = {{23.0, 188.0}, {88.0, 260.0}, {141.0, 97.0}, {229.0, 311.0}, {302.0, 143.0}};
    const double errors[][2] = {{1.2, 0.9}, {-1.7, -1.3}, {0.6, 0.4}, {2.0, -0.8}, {-1.1, 1.6}};
    for (const auto& place : places)
    {
        const size_t count = work.points.size();
        work.AddPoint("P" + std::to_string(count + 1), Radians(place[0]), place[1]);
        work.Read(work.points.back().id, Reading::LEVEL_DISTANCE,
                  {errors[count][0] * qstd::ARC_SECOND, 0.0, errors[count][1] * 0.001});
    }
    return work;
}

std::vector<std::string> CausesOf(const FieldWork& work)
{
    const auto solved = work.Solve();
    EXPECT_FALSE(solved->solution.IsSound());
    return solved->solution.causes;
}

void ScaleDistances(FieldWork& work, double factor)
{
    for (qstd::Sight& sight : work.setUp.sights)
    {
        *sight.horizontalDistance *= factor;
    }
}

} // namespace

TEST(UsualCauses, NoneIsNamedWhereNothingIsWrong)
{
    const auto solved = Sound().Solve();
    EXPECT_TRUE(solved->solution.IsSound());
    EXPECT_THAT(solved->solution.causes, ElementsAre());
}

TEST(UsualCauses, NorthAndEastExchanged)
{
    FieldWork work = Sound();
    for (qstd::KnownPoint& point : work.points)
    {
        std::swap(point.point.northing, point.point.easting);
    }
    EXPECT_THAT(CausesOf(work), ElementsAre(StartsWith("with north and east exchanged in the points the sights fit "
                                                       "to "),
                                            StartsWith("or with the circle read anticlockwise the sights fit to ")))
        << "mirrored points and a mirrored circle are the same to the sights";
}

TEST(UsualCauses, NorthAndEastOfOnePointExchanged)
{
    FieldWork work = Sound();
    std::swap(work.points[3].point.northing, work.points[3].point.easting);
    EXPECT_THAT(CausesOf(work), ElementsAre(StartsWith("with north and east of P4 exchanged the sights fit to ")));
}

TEST(UsualCauses, TwoNamesExchanged)
{
    FieldWork work = Sound();
    std::swap(work.points[1].id, work.points[4].id);
    EXPECT_THAT(CausesOf(work), ElementsAre(StartsWith("with P2 and P5 exchanged the sights fit to ")));
}

TEST(UsualCauses, CircleReadAnticlockwise)
{
    FieldWork work = Sound();
    for (qstd::Sight& sight : work.setUp.sights)
    {
        sight.circle = qstd::WithinCircle(-sight.circle);
    }
    EXPECT_THAT(CausesOf(work),
                testing::Contains(StartsWith("or with the circle read anticlockwise the sights fit to ")));
}

TEST(UsualCauses, FeetForMetres)
{
    FieldWork work = Sound();
    ScaleDistances(work, 1.0 / 0.3048);
    EXPECT_THAT(CausesOf(work), ElementsAre(StartsWith("with the distances taken as feet the sights fit to ")));
}

TEST(UsualCauses, PrismConstant)
{
    // 34 mm too long: the constant that was left out is -34 mm, but for the errors of the sights.
    FieldWork work = Sound();
    for (qstd::Sight& sight : work.setUp.sights)
    {
        *sight.horizontalDistance += 0.034;
    }
    const auto solved = work.Solve();
    EXPECT_THAT(solved->solution.causes,
                ElementsAre(testing::MatchesRegex("with a prism constant of -3[345]\\.. mm on all distances the sights "
                                                  "fit to .*")));
}

TEST(UsualCauses, OneDistanceInFeet)
{
    FieldWork work = Sound();
    *work.setUp.sights[2].horizontalDistance /= 0.3048;
    EXPECT_THAT(CausesOf(work), ElementsAre(StartsWith("with the distance to P3 taken as feet the sights fit to ")));
}

TEST(UsualCauses, OneReadingOffByAWholeUnit)
{
    const std::pair<double, const char*> turns[] = {{180.0, "turned by 180 degrees"},
                                                    {-0.9, "1 gon larger"},
                                                    {0.9, "1 gon smaller"},
                                                    {-1.0, "1 degree larger"},
                                                    {1.0, "1 degree smaller"}};
    for (const auto& [degrees, text] : turns)
    {
        FieldWork work = Sound();
        AngleUnit& circle = work.setUp.sights[1].circle;
        circle = qstd::UnitsOf(qstd::RadiansOf(circle) + Radians(degrees));
        EXPECT_THAT(CausesOf(work),
                    ElementsAre(StartsWith(std::string("with the direction to P2 ") + text + " the sights fit to ")));
    }
}

TEST(ForEachCauseOfTheSet, HandsOverObservationsThatAreOtherwiseTheSame)
{
    const auto solved = Sound().Solve();
    const StationSolution& solution = solved->solution;
    std::vector<std::string> texts;
    ForEachCauseOfTheSet(solution, [&](const qstd::UsualCause& cause) {
        texts.push_back(cause.text);
        ASSERT_EQ(cause.observations.size(), solution.observations.size());
        for (size_t i = 0; i < cause.observations.size(); ++i)
        {
            EXPECT_EQ(cause.observations[i].sight, solution.observations[i].sight);
            EXPECT_EQ(cause.observations[i].kind, solution.observations[i].kind);
            EXPECT_EQ(cause.observations[i].weight, solution.observations[i].weight);
        }
    });
    EXPECT_THAT(texts,
                testing::IsSupersetOf({"with north and east exchanged in the points",
                                       "with the circle read anticlockwise", "with the distances taken as feet"}));
}

TEST(ForEachCauseOfTheSet, TakesDistancesInFeetForMetres)
{
    FieldWork work = Sound();
    qstd::StationRequest request;
    request.unit = qstd::LinearUnit::FOOT;
    const auto solved = work.Solve(request);
    std::vector<std::string> texts;
    ForEachCauseOfTheSet(solved->solution, [&](const qstd::UsualCause& cause) { texts.push_back(cause.text); });
    EXPECT_THAT(texts, testing::Contains("with the distances taken as metres"));
}

TEST(ForEachCauseOfTargets, TriesEachPairOnce)
{
    // 5 targets: 10 pairs, 5 points, 5 turns each of 5 directions, 5 distances.
    const auto solved = Sound().Solve();
    size_t count = 0;
    ForEachCauseOfTargets(solved->solution, [&count](const qstd::UsualCause& /*cause*/) { ++count; });
    EXPECT_EQ(count, 10U + 5U + 25U + 5U);
}
