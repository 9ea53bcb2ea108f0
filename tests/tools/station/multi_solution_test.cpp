#include "station/multi_solution.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "field_work.h"
#include "station/plan_search.h"

using qstd::Adjustment;
using qstd::AdjustSights;
using qstd::IsProven;
using qstd::LinearUnit;
using qstd::PlanObservation;
using qstd::PlanPosition;
using qstd::PositionOf;
using qstd::PreparedSight;
using survey::FieldWork;

namespace {

/** A reading in units of the circle, some with a horizontal distance. */
struct Read
{
    const char* target;
    AngleUnit circle;
    std::optional<double> distance;
};

/** Prepared sights with what they point into. */
class Work
{
public:
    Work(const FieldWork& fieldWork, const std::vector<Read>& reads) : setUp(fieldWork.setUp)
    {
        for (const qstd::KnownPoint& point : fieldWork.points)
        {
            points.Add(point);
        }
        for (const Read& read : reads)
        {
            qstd::Sight sight;
            sight.target = read.target;
            sight.circle = read.circle;
            sight.horizontalDistance = read.distance;
            setUp.sights.push_back(sight);
        }
        sights = PrepareSights(setUp, points);
        observations = PlanObservations(sights, LinearUnit::METRE);
    }

    /** What the library makes of the sights in the order of the field book. */
    [[nodiscard]] ResectStation FromLibrary(int32_t& status) const
    {
        std::vector<ResectObservation> handed;
        handed.reserve(sights.size());
        for (const PreparedSight& sight : sights)
        {
            handed.push_back(ToObservation(sight));
        }
        ResectStation station = {};
        std::vector<ResectResidual> residuals(handed.size());
        status = QSTNMultiResect(static_cast<int16_t>(handed.size()), handed.data(), &station, residuals.data());
        return station;
    }

    qstd::SetUp setUp;
    qstd::PointList points;
    std::vector<PreparedSight> sights;
    std::vector<PlanObservation> observations;
};

// Two targets in three rounds before a third one, and one distance: from N 81, E -104, readings to some seconds.
Work RepeatedFirst()
{
    FieldWork work;
    work.AddPoint("P1", std::atan2(1080.0, 130.0), std::hypot(130.0, 1080.0));
    work.AddPoint("P2", std::atan2(480.0, 1140.0), std::hypot(1140.0, 480.0));
    work.AddPoint("P3", std::atan2(-110.0, 930.0), std::hypot(930.0, -110.0));
    return {work,
            {{"P1", 17604329, {}},
             {"P2", 14219848, 1209.34496},
             {"P1", 17603977, {}},
             {"P2", 14219752, {}},
             {"P1", 17604425, {}},
             {"P2", 14219752, {}},
             {"P3", 12533445, {}}}};
}

// Two targets alone in three rounds, a distance in the last: from N 244, E -205.
Work TwoTargets()
{
    FieldWork work;
    work.AddPoint("P1", std::atan2(300.0, 1500.0), std::hypot(1500.0, 300.0));
    work.AddPoint("P2", std::atan2(230.0, 30.0), std::hypot(30.0, 230.0));
    return {work,
            {{"P1", 18138427, {}},
             {"P2", 2833636, {}},
             {"P1", 18138413, {}},
             {"P2", 2833674, {}},
             {"P1", 18138427, {}},
             {"P2", 2833684, 484.792645}}};
}

double DistanceTo(const PlanPosition& position, double northing, double easting)
{
    return std::hypot(position.northing - northing, position.easting - easting);
}

} // namespace

TEST(IsProven, HoldsAtTheBottomOfTheSquareSumOnly)
{
    const Work work = RepeatedFirst();
    const std::optional<qstd::PlanAdjustment> adjusted = AdjustPlan(work.observations, {81.0, -104.0, 2.5});
    ASSERT_TRUE(adjusted);
    ASSERT_LT(DistanceTo(adjusted->position, 81.0, -104.0), 0.1);
    EXPECT_TRUE(IsProven(work.observations, adjusted->position));
    PlanPosition beside = adjusted->position;
    beside.northing += 0.001;
    beside.easting -= 0.001;
    EXPECT_FALSE(IsProven(work.observations, beside));
}

TEST(IsProven, AllowsWhatIsLittleBesideTheStandardDeviation)
{
    // Directions to two targets 0.1 gon apart and to a third one nearly opposite, all a kilometre off.
    FieldWork work;
    work.AddPoint("P1", 0.0, 1000.0);
    work.AddPoint("P2", 0.00157, 1000.0);
    work.AddPoint("P3", 3.0, 1000.0);
    for (const char* const name : {"P1", "P2", "P3"})
    {
        work.Read(name, survey::Reading::DIRECTION);
    }
    const Work weak(work, {});
    const std::optional<qstd::PlanAdjustment> adjusted = AdjustPlan(weak.observations, {});
    ASSERT_TRUE(adjusted);
    const qstd::EllipseAxes axes = qstd::AxesOf(adjusted->cofactors);
    const double sigma = qstd::WEIGHT_DIRECTION * axes.major;
    ASSERT_GT(sigma, 1.0);
    const auto movedBy = [&](double share) {
        PlanPosition moved = adjusted->position;
        moved.northing += share * sigma * std::cos(axes.azimuth);
        moved.easting += share * sigma * std::sin(axes.azimuth);
        // The orientation that goes with it.
        moved.orientation = adjusted->position.orientation + share * sigma *
                                                                 (adjusted->cofactors[0][2] * std::cos(axes.azimuth) +
                                                                  adjusted->cofactors[1][2] * std::sin(axes.azimuth)) /
                                                                 (axes.major * axes.major);
        return moved;
    };
    EXPECT_TRUE(IsProven(weak.observations, movedBy(0.001)));
    EXPECT_FALSE(IsProven(weak.observations, movedBy(0.01)));
}

TEST(IsProven, FailsWhereTheEquationsAreSingular)
{
    // On the circle of 65 m through the targets, about the origin.
    FieldWork work;
    work.northing = -25.0;
    work.easting = -60.0;
    const double places[][2] = {{16.0, 63.0}, {33.0, 56.0}, {63.0, 16.0}};
    for (const auto& place : places)
    {
        const double dN = place[0] + 25.0, dE = place[1] + 60.0;
        work.AddPoint("P" + std::to_string(work.points.size()), std::atan2(dE, dN), std::hypot(dN, dE));
    }
    const Work circle(work, {{"P0", 0, {}}, {"P1", 576000, {}}, {"P2", 1152000, {}}});
    EXPECT_FALSE(IsProven(circle.observations, {-25.0, -60.0, 0.0}));
}

TEST(IsProven, FailsForAWrongResultThatTheLibraryGivesForRight)
{
    for (const bool isTwo : {false, true})
    {
        const Work work = isTwo ? TwoTargets() : RepeatedFirst();
        int32_t status = QSTD_REJECTED;
        const PlanPosition found = PositionOf(work.FromLibrary(status), LinearUnit::METRE);
        ASSERT_EQ(status, QSTD_OK);
        ASSERT_GT(isTwo ? DistanceTo(found, 244.0, -205.0) : DistanceTo(found, 81.0, -104.0), 300.0);
        EXPECT_FALSE(IsProven(work.observations, found));
    }
}

TEST(AdjustSights, TakesAnotherOrderWhereTheFirstOneIsNotProven)
{
    const Work work = RepeatedFirst();
    const Adjustment adjustment = AdjustSights(work.sights, work.observations, LinearUnit::METRE);
    ASSERT_TRUE(adjustment.isProven);
    EXPECT_LT(DistanceTo(PositionOf(adjustment.station, LinearUnit::METRE), 81.0, -104.0), 0.1);
    // Each sight once, and the first sights to all three targets before any second one.
    std::vector<size_t> sorted = adjustment.order;
    std::sort(sorted.begin(), sorted.end());
    EXPECT_EQ(sorted, (std::vector<size_t>{0, 1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(adjustment.residuals.size(), sorted.size() + 1);
}

TEST(AdjustSights, IsNotProvenWhereNoOrderHelps)
{
    const Work work = TwoTargets();
    EXPECT_FALSE(AdjustSights(work.sights, work.observations, LinearUnit::METRE).isProven);
    // The station is determined all the same.
    const std::vector<qstd::PlanAdjustment> found = FindStations(work.observations);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_LT(DistanceTo(found.front().position, 244.0, -205.0), 0.1);
}

TEST(AdjustSights, GivesTheStationInTheUnitOfTheJob)
{
    FieldWork fieldWork = {1000.0, 2000.0, 0.0, 0.4, {}, {}};
    fieldWork.AddPoint("P1", 0.7, 300.0);
    fieldWork.AddPoint("P2", 2.9, 410.0);
    fieldWork.AddPoint("P3", 4.8, 250.0);
    for (const char* const name : {"P1", "P2", "P3"})
    {
        fieldWork.Read(name, survey::Reading::LEVEL_DISTANCE);
    }
    const Work work(fieldWork, {});
    const auto observations = PlanObservations(work.sights, LinearUnit::FOOT);
    const Adjustment feet = AdjustSights(work.sights, observations, LinearUnit::FOOT);
    ASSERT_TRUE(feet.isProven);
    EXPECT_EQ(feet.status, QSTD_OK);
    EXPECT_NEAR(feet.station.position.northing, 1000.0, 1e-3);
    EXPECT_NEAR(feet.station.position.easting, 2000.0, 1e-3);
    EXPECT_NEAR(PositionOf(feet.station, LinearUnit::FOOT).easting, 609.6, 1e-3);
}

TEST(AdjustSights, OfNoSightsIsNotProven)
{
    const Adjustment adjustment = AdjustSights({}, {}, LinearUnit::METRE);
    EXPECT_FALSE(adjustment.isProven);
    EXPECT_EQ(adjustment.status, QSTD_REJECTED);
}
