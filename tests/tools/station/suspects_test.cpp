#include "station/suspects.h"

#include <array>
#include <cmath>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "field_work.h"

using qstd::ARC_SECOND;
using qstd::Suspect;
using qstd::SuspectKind;
using survey::FieldWork;
using survey::Radians;
using survey::Reading;

namespace {

// Errors such as sights have, in no order: seconds, seconds, millimetres.
constexpr std::array<survey::SightErrors, 7> ERRORS = {{{1.3, -0.8, 1.2},
                                                        {-2.1, 1.9, -0.7},
                                                        {0.4, -2.3, -1.9},
                                                        {2.6, 0.3, 0.4},
                                                        {-0.9, 1.1, 2.2},
                                                        {-1.6, -1.4, -1.1},
                                                        {0.8, 0.6, 0.9}}};

/** The errors of one sight, in radians and metres. */
survey::SightErrors ErrorsOf(size_t sight)
{
    const survey::SightErrors& errors = ERRORS[sight % ERRORS.size()];
    return {errors.circle * ARC_SECOND, errors.zenith * ARC_SECOND, errors.distance * 0.001};
}

/** Six targets all around, each with direction, zenith angle and slope distance; `rounds` times. */
FieldWork Sound(size_t rounds = 1)
{
    FieldWork work = {1523.4, -817.9, 212.35, Radians(73.0), {}, {}};
    const double places[][3] = {{14.0, 212.0, 11.0}, {71.0, 96.0, -4.0},   {133.0, 341.0, 21.0},
                                {196.0, 154.0, 3.0}, {248.0, 287.0, -9.0}, {317.0, 122.0, 6.0}};
    for (const auto& place : places)
    {
        work.AddPoint("P" + std::to_string(work.points.size() + 1), Radians(place[0]), place[1], place[2]);
    }
    for (size_t round = 0; round < rounds; ++round)
    {
        for (const qstd::KnownPoint& point : work.points)
        {
            work.Read(point.id, Reading::SLOPE_DISTANCE, ErrorsOf(work.setUp.sights.size()), 1.5);
        }
    }
    return work;
}

/** The first suspect of a spoilt set-up; a sight that there is not, where nothing is suspected. */
Suspect FirstSuspect(const FieldWork& work)
{
    const auto solved = work.Solve();
    Suspect none;
    none.sight = work.setUp.sights.size();
    return solved->solution.suspects.empty() ? none : solved->solution.suspects.front();
}

} // namespace

TEST(FindSuspects, SuspectsNothingWhereNothingIsWrong)
{
    for (const size_t rounds : {size_t{1}, size_t{3}})
    {
        const auto solved = Sound(rounds).Solve();
        ASSERT_TRUE(solved->solution.IsSolved());
        EXPECT_TRUE(solved->solution.suspects.empty());
        EXPECT_TRUE(solved->solution.causes.empty());
        EXPECT_TRUE(solved->solution.Fits());
        EXPECT_FALSE(solved->solution.fit.HasMarked());
        EXPECT_FALSE(solved->solution.AreHeightsDoubtful());
        EXPECT_EQ(solved->solution.bestLeftOut, std::nullopt);
    }
}

TEST(FindSuspects, NamesADirectionFirst)
{
    for (const double error : {Radians(0.9), Radians(-0.9), Radians(180.0), 40.0 * ARC_SECOND})
    {
        for (size_t wrong = 0; wrong < 6; ++wrong)
        {
            FieldWork work = Sound();
            AngleUnit& circle = work.setUp.sights[wrong].circle;
            circle = qstd::UnitsOf(qstd::RadiansOf(circle) + error);
            const Suspect first = FirstSuspect(work);
            EXPECT_EQ(first.sight, wrong) << error;
            EXPECT_EQ(first.kind, SuspectKind::DIRECTION) << error;
            ASSERT_TRUE(first.error && first.fit);
            // Observed less what the others ask for, these being right to some seconds.
            EXPECT_NEAR(std::remainder(*first.error - error, 2.0 * survey::PI), 0.0, 15.0 * ARC_SECOND) << error;
            EXPECT_LT(*first.fit, 5.0 * ARC_SECOND);
        }
    }
}

TEST(FindSuspects, NamesADistanceFirst)
{
    for (const double error : {0.1, -0.1, 1.0})
    {
        for (size_t wrong = 0; wrong < 6; ++wrong)
        {
            FieldWork work = Sound();
            *work.setUp.sights[wrong].slopeDistance += error;
            const Suspect first = FirstSuspect(work);
            EXPECT_EQ(first.sight, wrong) << error;
            EXPECT_EQ(first.kind, SuspectKind::DISTANCE) << error;
            ASSERT_TRUE(first.error && first.fit);
            EXPECT_NEAR(*first.error, error, 0.008) << wrong;
            EXPECT_LT(*first.fit, 5.0 * ARC_SECOND);
        }
    }
}

TEST(FindSuspects, NamesTheOneSightOfSeveralToATarget)
{
    FieldWork work = Sound(2);
    *work.setUp.sights[9].slopeDistance += 0.1;
    const Suspect first = FirstSuspect(work);
    EXPECT_EQ(first.sight, 9U);
    EXPECT_EQ(first.kind, SuspectKind::DISTANCE);
}

TEST(FindSuspects, NamesAPointWhoseSightsAllDisagree)
{
    // A metre in a coordinate spoils direction and distance, and both rounds of them.
    for (size_t wrong = 0; wrong < 6; ++wrong)
    {
        FieldWork work = Sound(2);
        work.points[wrong].point.northing += 0.8;
        work.points[wrong].point.easting -= 0.6;
        const Suspect first = FirstSuspect(work);
        ASSERT_LT(first.sight, work.setUp.sights.size());
        EXPECT_EQ(first.kind, SuspectKind::POINT) << wrong;
        EXPECT_EQ(first.sight, wrong);
        ASSERT_TRUE(first.fit);
        EXPECT_LT(*first.fit, 5.0 * ARC_SECOND);
    }
}

TEST(FindSuspects, NamesTheReflectorOfOneSight)
{
    FieldWork work = Sound(2);
    work.setUp.sights[7].targetHeight += 0.1;
    const auto solved = work.Solve();
    EXPECT_TRUE(solved->solution.AreHeightsDoubtful());
    ASSERT_EQ(solved->solution.suspects.size(), 1U);
    const Suspect& first = solved->solution.suspects.front();
    EXPECT_EQ(first.kind, SuspectKind::HEIGHT);
    EXPECT_EQ(first.sight, 7U);
    ASSERT_TRUE(first.error);
    EXPECT_NEAR(*first.error, 0.1, 0.008);
}

TEST(FindSuspects, NamesTheReflectorOverATargetInAllItsSights)
{
    FieldWork work = Sound(3);
    for (const size_t sight : {size_t{3}, size_t{9}, size_t{15}})
    {
        work.setUp.sights[sight].targetHeight -= 0.1;
    }
    const auto solved = work.Solve();
    EXPECT_TRUE(solved->solution.AreHeightsDoubtful());
    ASSERT_FALSE(solved->solution.suspects.empty());
    const Suspect& first = solved->solution.suspects.front();
    EXPECT_EQ(first.kind, SuspectKind::HEIGHT);
    EXPECT_EQ(first.sight, 3U);
    ASSERT_TRUE(first.error);
    EXPECT_NEAR(*first.error, -0.1, 0.008);
}

TEST(FindSuspects, NamesAHeightAndADistanceTogether)
{
    FieldWork work = Sound(2);
    *work.setUp.sights[2].slopeDistance += 0.3;
    work.setUp.sights[4].targetHeight += 0.2;
    const auto solved = work.Solve();
    ASSERT_GE(solved->solution.suspects.size(), 2U);
    EXPECT_EQ(solved->solution.suspects.front().sight, 2U);
    EXPECT_EQ(solved->solution.suspects.front().kind, SuspectKind::DISTANCE);
    EXPECT_EQ(solved->solution.suspects.back().sight, 4U);
    EXPECT_EQ(solved->solution.suspects.back().kind, SuspectKind::HEIGHT);
}

TEST(FindSuspects, BlamesNoneWhereEachMayBeToBlame)
{
    // Two targets with distances: one redundant observation. Without any one of three nothing is left to disagree.
    FieldWork work = {1523.4, -817.9, 212.35, Radians(73.0), {}, {}};
    work.AddPoint("P1", Radians(14.0), 212.0);
    work.AddPoint("P2", Radians(133.0), 341.0);
    work.Read("P1", Reading::LEVEL_DISTANCE);
    work.Read("P2", Reading::LEVEL_DISTANCE, {0.0, 0.0, 0.5});
    const auto solved = work.Solve();
    EXPECT_FALSE(solved->solution.Fits());
    EXPECT_TRUE(solved->solution.suspects.empty());
}

TEST(FindSuspects, LooksForHeightsThatTheEarthsCurvatureParts)
{
    // Level sights of 2 km: 10^6 * 4 * 0.868 / 12740000 = 273 mm too low; those of 200 m 3 mm.
    FieldWork work = {1523.4, -817.9, 212.35, Radians(73.0), {}, {}};
    work.AddPoint("P1", Radians(14.0), 2000.0, 0.0);
    work.AddPoint("P2", Radians(133.0), 200.0, 0.0);
    work.AddPoint("P3", Radians(251.0), 1400.0, 0.0);
    work.AddPoint("P4", Radians(311.0), 300.0, 0.0);
    for (qstd::KnownPoint& point : work.points)
    {
        const std::string name = point.id;
        work.Read(name, Reading::SLOPE_DISTANCE);
        const double distance = *work.setUp.sights.back().slopeDistance;
        point.point.height += 0.868 * distance * distance / 12740000.0;
    }
    const auto solved = work.Solve();
    ASSERT_TRUE(solved->solution.IsSolved());
    EXPECT_TRUE(solved->solution.AreHeightsDoubtful());
    EXPECT_EQ(solved->solution.causes, std::vector<std::string>{"with --refraction 0.132 the heights fit"});
    qstd::StationRequest request;
    request.instrument.curvatureRefraction = 1;
    const auto corrected = work.Solve(request);
    EXPECT_FALSE(corrected->solution.AreHeightsDoubtful());
    EXPECT_TRUE(corrected->solution.causes.empty());
}
