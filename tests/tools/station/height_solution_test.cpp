#include "station/height_solution.h"

#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "field_work.h"

using qstd::HeightFrom;
using qstd::PreparedSight;
using qstd::StationSolution;
using survey::FieldWork;
using survey::Radians;
using survey::Reading;

namespace {

constexpr double AXIS = 87.43;

/** Four targets of different heights, nothing read yet. */
FieldWork Empty()
{
    FieldWork work = {640.2, 911.7, AXIS, Radians(201.0), {}, {}};
    work.AddPoint("P1", Radians(31.0), 140.0, 12.0);
    work.AddPoint("P2", Radians(118.0), 230.0, -17.0);
    work.AddPoint("P3", Radians(203.0), 95.0, 4.0);
    work.AddPoint("P4", Radians(295.0), 310.0, 28.0);
    return work;
}

FieldWork ReadAll(Reading reading, double targetHeight)
{
    FieldWork work = Empty();
    for (const char* const name : {"P1", "P2", "P3", "P4"})
    {
        work.Read(name, reading, {}, targetHeight);
    }
    return work;
}

/** A benchmark: a point of which only the height is known. */
void ForgetPlan(FieldWork& work, const std::string& name)
{
    PointRecord& point = work.Point(name).point;
    point.northing = point.easting = 0.0;
    point.flags = POINT_HAS_HEIGHT;
}

void ForgetHeight(FieldWork& work, const std::string& name)
{
    PointRecord& point = work.Point(name).point;
    point.height = 0.0;
    point.flags = POINT_HAS_PLAN;
}

// Circle and zenith readings are rounded to 1/16": 0.1 mm at 330 m. Known heights to the millimetre are exact here.
constexpr double ROUNDING = 1.5e-4;

} // namespace

TEST(SolveHeight, IsTheMeanByDistance)
{
    const auto solved = ReadAll(Reading::SLOPE_DISTANCE, 1.65).Solve();
    const StationSolution& solution = solved->solution;
    ASSERT_TRUE(solution.IsSolved() && solution.HasHeight());
    EXPECT_NEAR(solution.station.position.height, AXIS, ROUNDING);
    EXPECT_TRUE(solution.isHeightByDistance);
    EXPECT_EQ(solution.heightTargets, 4U);
    EXPECT_EQ(solution.heightFit.redundancy, 3U);
    EXPECT_EQ(solution.targetHeightFit.redundancy, 3U);
    EXPECT_FALSE(solution.AreHeightsDoubtful());
}

TEST(SolveHeight, IsTheMeanByZenithWhereThereIsNoDistance)
{
    const auto solved = ReadAll(Reading::ZENITH, 0.3).Solve();
    const StationSolution& solution = solved->solution;
    ASSERT_TRUE(solution.IsSolved() && solution.HasHeight());
    EXPECT_NEAR(solution.station.position.height, AXIS, ROUNDING);
    EXPECT_FALSE(solution.isHeightByDistance);
    EXPECT_EQ(solution.heightTargets, 4U);
}

TEST(SolveHeight, OfOneTargetIsUnchecked)
{
    FieldWork work = ReadAll(Reading::SLOPE_DISTANCE, 0.0);
    for (const char* const name : {"P1", "P2", "P4"})
    {
        ForgetHeight(work, name);
    }
    const auto solved = work.Solve();
    EXPECT_NEAR(solved->solution.station.position.height, AXIS, ROUNDING);
    EXPECT_EQ(solved->solution.heightTargets, 1U);
    EXPECT_EQ(solved->solution.heightFit.redundancy, 0U);
    EXPECT_EQ(solved->solution.doubts.onlyHeightTarget, "P3");
}

TEST(SolveHeight, TakesABenchmarkForTheHeightAndNothingElse)
{
    FieldWork work = Empty();
    ForgetPlan(work, "P4");
    for (const char* const name : {"P1", "P2", "P3"})
    {
        ForgetHeight(work, name);
        work.Read(name, Reading::LEVEL_DISTANCE);
    }
    work.points.push_back(Empty().points[3]);
    work.points.back().id = "true";
    work.Read("true", Reading::SLOPE_DISTANCE, {}, 1.5).target = "P4";
    const auto solved = work.Solve();
    const StationSolution& solution = solved->solution;
    ASSERT_TRUE(solution.IsSolved() && solution.HasHeight());
    EXPECT_EQ(solution.used, 3U);
    EXPECT_NEAR(solution.station.position.height, AXIS, ROUNDING);
    EXPECT_EQ(solution.doubts.onlyHeightTarget, "P4");
    EXPECT_NEAR(solution.station.position.northing, work.northing, 1e-3);
}

TEST(SolveHeight, AveragesABenchmarkWithTheOthers)
{
    // The benchmark's height is 8 mm too large: a fourth of it goes into the mean.
    FieldWork work = Empty();
    for (const char* const name : {"P1", "P2", "P3", "P4"})
    {
        work.Read(name, Reading::SLOPE_DISTANCE, {}, 1.5);
    }
    ForgetPlan(work, "P4");
    work.Point("P4").point.height += 0.008;
    const auto solved = work.Solve();
    const StationSolution& solution = solved->solution;
    ASSERT_TRUE(solution.IsSolved());
    EXPECT_EQ(solution.used, 3U);
    EXPECT_EQ(solution.heightTargets, 4U);
    EXPECT_NEAR(solution.station.position.height, AXIS + 0.002, ROUNDING);
    EXPECT_NEAR(solution.station.heightSpread, 0.008, 2.0 * ROUNDING);
    ASSERT_TRUE(solution.residuals[3].height);
    EXPECT_NEAR(*solution.residuals[3].height, 0.006, 2.0 * ROUNDING);
    EXPECT_NEAR(*solution.residuals[0].height, -0.002, 2.0 * ROUNDING);
}

TEST(SolveHeight, KeepsTheMeanOfTheLibrary)
{
    FieldWork work = ReadAll(Reading::SLOPE_DISTANCE, 1.65);
    work.Point("P2").point.height += 0.004;
    const auto solved = work.Solve();
    ASSERT_TRUE(solved->solution.IsSolved());
    ASSERT_FALSE(solved->solution.isByTool);
    std::vector<ResectObservation> observations;
    for (const PreparedSight& sight : solved->solution.sights)
    {
        observations.push_back(ToObservation(sight));
    }
    ResectStation station = {};
    std::vector<ResectResidual> residuals(observations.size());
    ASSERT_EQ(
        QSTNMultiResect(static_cast<int16_t>(observations.size()), observations.data(), &station, residuals.data()),
        QSTD_OK);
    EXPECT_EQ(solved->solution.station.position.height, station.position.height);
    EXPECT_EQ(solved->solution.station.heightSpread, station.heightSpread);
}

TEST(SolveHeight, HoldsTargetsAgainstEachOther)
{
    // Both sights to P2 with a reflector height 0.1 m too large. Of its error shows what the mean leaves of it, and the
    // estimated one is all of it, with the other sign.
    FieldWork work = Empty();
    for (int round = 0; round < 2; ++round)
    {
        for (const char* const name : {"P1", "P2", "P3", "P4"})
        {
            work.Read(name, Reading::SLOPE_DISTANCE, {}, 1.65);
        }
    }
    work.setUp.sights[1].targetHeight += 0.1;
    work.setUp.sights[5].targetHeight += 0.1;
    const auto solved = work.Solve();
    const StationSolution& solution = solved->solution;
    ASSERT_EQ(solution.heightPoints.size(), 4U);
    EXPECT_EQ(solution.heightPoints[1]->id, "P2");
    EXPECT_EQ(solution.heightFit.redundancy, 7U);
    EXPECT_EQ(solution.targetHeightFit.redundancy, 3U);
    EXPECT_NEAR(solution.targetHeightFit.checks[1].estimatedError, -0.1, 2.0 * ROUNDING);
    for (size_t i = 0; i < 4; ++i)
    {
        EXPECT_EQ(solution.targetHeightFit.checks[i].isMarked, i == 1) << i;
    }
    EXPECT_TRUE(solution.AreHeightsDoubtful());
    const qstd::ObservationCheck* const check = TargetHeightCheckOf(solution, 5);
    EXPECT_EQ(check, &solution.targetHeightFit.checks[1]);
    EXPECT_EQ(HeightCheckOf(solution, 5), &solution.heightFit.checks[5]);
}

TEST(SolveHeight, ExpectsWhatZenithAngleAndDistanceGive)
{
    // Level over 230 m to be expected: 2" of 230 m and 2 mm for mark and reflector. By zenith the same.
    FieldWork work = Empty();
    work.Point("P2").point.height = AXIS;
    work.Read("P1", Reading::SLOPE_DISTANCE);
    work.Read("P2", Reading::SLOPE_DISTANCE);
    const auto solved = work.Solve();
    ASSERT_EQ(solved->solution.heightSigmas.size(), 2U);
    EXPECT_NEAR(solved->solution.heightSigmas[1], std::hypot(230.0 * 2.0 * qstd::ARC_SECOND, 0.002), 1e-6);
    // To P1 12 m up over 140 m: the distance of 140.513 m, expected to 2.281 mm, adds its share.
    const double slope = std::hypot(140.0, 12.0);
    const double distance = (0.002 + 0.000002 * slope) * 12.0 / slope;
    EXPECT_NEAR(solved->solution.heightSigmas[0],
                std::sqrt(std::pow(140.0 * 2.0 * qstd::ARC_SECOND, 2.0) + distance * distance + 0.002 * 0.002), 1e-6);
}

TEST(SolveHeight, ExpectsLessOfAZenithAngleFromAnUncertainPlace)
{
    // Up at 60 degrees from the zenith, what the place is uncertain goes into the height by the cotangent. The three
    // targets stand close together, far off.
    FieldWork work = {640.2, 911.7, AXIS, Radians(201.0), {}, {}};
    work.AddPoint("P1", Radians(31.0), 300.0, 300.0 / std::tan(Radians(60.0)));
    work.AddPoint("P2", Radians(40.0), 280.0, 280.0 / std::tan(Radians(60.0)));
    work.AddPoint("P3", Radians(52.0), 330.0, 330.0 / std::tan(Radians(60.0)));
    for (const char* const name : {"P1", "P2", "P3"})
    {
        work.Read(name, Reading::ZENITH);
    }
    for (const qstd::StationMethod method : {qstd::StationMethod::THREE_POINT, qstd::StationMethod::MULTI})
    {
        qstd::StationRequest request;
        request.method = method;
        const auto solved = work.Solve(request);
        ASSERT_TRUE(solved->solution.IsSolved());
        const auto cofactors = PlanCofactors(solved->solution.observations, {640.2, 911.7, Radians(201.0)});
        ASSERT_TRUE(cofactors);
        const double place = qstd::WEIGHT_DIRECTION * qstd::AxesOf(*cofactors).major;
        const double zenith = 2.0 * qstd::ARC_SECOND * 300.0 / std::pow(std::sin(Radians(60.0)), 2.0);
        ASSERT_GT(place, 0.005);
        ASSERT_EQ(solved->solution.heightSigmas.size(), 3U);
        EXPECT_NEAR(solved->solution.heightSigmas[0],
                    std::sqrt(zenith * zenith + std::pow(place / std::tan(Radians(60.0)), 2.0) + 0.002 * 0.002), 1e-5)
            << MethodName(method);
    }
}

TEST(HeightFrom, IsTheTargetLessTheRise)
{
    // 99.43 + 1.65 - rise: the axis again, by either way.
    const auto solved = ReadAll(Reading::SLOPE_DISTANCE, 1.65).Solve();
    const PreparedSight& sight = solved->solution.sights[0];
    const PointRecord place = {640.2, 911.7, 0.0, POINT_HAS_PLAN};
    EXPECT_NEAR(HeightFrom(sight, place, true, {}).value(), AXIS, ROUNDING);
    EXPECT_NEAR(HeightFrom(sight, place, false, {}).value(), AXIS, ROUNDING);
    // By zenith a place 10 m nearer to the target is a tangent of the slope higher: (12 + 1.65) 10 / 140.
    const PointRecord nearer = {640.2 + 10.0 * std::cos(Radians(31.0)), 911.7 + 10.0 * std::sin(Radians(31.0)), 0.0,
                                POINT_HAS_PLAN};
    EXPECT_NEAR(HeightFrom(sight, nearer, false, {}).value(), AXIS + 136.5 / 140.0, 2.0 * ROUNDING);
    EXPECT_NEAR(HeightFrom(sight, nearer, true, {}).value(), AXIS, ROUNDING);
}

TEST(HeightFrom, IsNoneWithoutZenithOrKnownHeight)
{
    FieldWork work = ReadAll(Reading::LEVEL_DISTANCE, 0.0);
    work.Read("P1", Reading::ZENITH);
    work.Read("P2", Reading::SLOPE_DISTANCE);
    ForgetHeight(work, "P2");
    const auto solved = work.Solve();
    const PointRecord place = {640.2, 911.7, 0.0, POINT_HAS_PLAN};
    const std::vector<PreparedSight>& sights = solved->solution.sights;
    EXPECT_EQ(HeightFrom(sights[0], place, true, {}), std::nullopt);
    EXPECT_EQ(HeightFrom(sights[0], place, false, {}), std::nullopt);
    EXPECT_EQ(HeightFrom(sights[4], place, true, {}), std::nullopt);
    EXPECT_NE(HeightFrom(sights[4], place, false, {}), std::nullopt);
    EXPECT_EQ(HeightFrom(sights[5], place, true, {}), std::nullopt);
}

TEST(HeightMisfitAt, GrowsWhereThePlaceIsWrong)
{
    const auto solved = ReadAll(Reading::ZENITH, 1.65).Solve();
    const std::vector<PreparedSight>& sights = solved->solution.sights;
    EXPECT_LT(HeightMisfitAt(sights, {640.2, 911.7, 0.0, POINT_HAS_PLAN}, {}), 0.5);
    EXPECT_GT(HeightMisfitAt(sights, {740.2, 911.7, 0.0, POINT_HAS_PLAN}, {}), 100.0);
    EXPECT_EQ(qstd::HeightMisfitAt({sights[0]}, {740.2, 911.7, 0.0, POINT_HAS_PLAN}, {}), 0.0);
}
