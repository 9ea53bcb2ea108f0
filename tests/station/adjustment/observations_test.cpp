#include "station/adjustment/observations.h"

#include <cmath>
#include <cstdint>

#include <gtest/gtest.h>

#include "tests/station/adjustment/work_record.h"
#include "tests/support/record.h"

using namespace qstdlib;

namespace {

const double NOT_A_NUMBER = std::nan("");

struct Counts
{
    int32_t mode;
    int32_t directions;
    int32_t heights;
    int32_t distances;
    int32_t withHeight;
};

void ExpectCounts(const Counts& expected, int32_t mode, const WorkRecords& work)
{
    Counts c = {mode, 0, 0, 0, 0};
    CountObservations(&c.mode, CountOf(work), work.data(), &c.directions, &c.heights, &c.distances, &c.withHeight);
    EXPECT_EQ(expected.mode, c.mode);
    EXPECT_EQ(expected.directions, c.directions);
    EXPECT_EQ(expected.heights, c.heights);
    EXPECT_EQ(expected.distances, c.distances);
    EXPECT_EQ(expected.withHeight, c.withHeight);
}

} // namespace

TEST(CountObservations, CountsDirectionsAndDistancesInPlan)
{
    const WorkRecords work = {Sighted(1, 1, 0.1), Measured(2, 2, 0.2, 10), Measured(3, 3, MISSING_VALUE, 10),
                              Known(4, 4), WithHeight(Measured(5, 5, 0.5, 10), 7)};
    ExpectCounts({ADJUST_MODE_PLAN, 3, 0, 3, 1}, ADJUST_MODE_PLAN, work);
}

TEST(CountObservations, CountsHeightsAndDistancesInSpace)
{
    const WorkRecords work = {Sighted(1, 1, 0.1), Measured(2, 2, 0.2, 10), WithHeight(Measured(5, 5, 0.5, 10), 7),
                              WithHeight(Measured(6, 6, MISSING_VALUE, 10), 7), WithHeight(Sighted(7, 7, 0.1), 8)};
    ExpectCounts({ADJUST_MODE_SPATIAL, 4, 2, 2, 3}, ADJUST_MODE_SPATIAL, work);
}

TEST(CountObservations, LowersTheModeWithoutAnyHeight)
{
    ExpectCounts({ADJUST_MODE_PLAN, 2, 0, 1, 0}, ADJUST_MODE_SPATIAL, {Sighted(1, 1, 0.1), Measured(2, 2, 0.2, 10)});
}

TEST(CountObservations, LowersTheModeWithoutAnyDistance)
{
    double ResectWorkRecord::*const components[] = {&ResectWorkRecord::zenith, &ResectWorkRecord::slopeDistance,
                                                    &ResectWorkRecord::horizontalDistance,
                                                    &ResectWorkRecord::verticalDifference};
    for (const auto component : components)
    {
        WorkRecords work = {WithHeight(Measured(2, 2, 0.2, 10), 7)};
        work[0].*component = MISSING_VALUE;
        ExpectCounts({ADJUST_MODE_PLAN, 1, 0, 0, 1}, ADJUST_MODE_SPATIAL, work);
    }
}

// Heights here and distances there: each is present somewhere, so the mode stays, and nothing is left to count.
TEST(CountObservations, KeepsTheModeWhenHeightsAndDistancesNeverMeet)
{
    ExpectCounts({ADJUST_MODE_SPATIAL, 2, 0, 0, 1}, ADJUST_MODE_SPATIAL,
                 {WithHeight(Sighted(1, 1, 0.1), 7), Measured(2, 2, 0.2, 10)});
}

TEST(CountObservations, CountsAnEmptySet)
{
    ExpectCounts({ADJUST_MODE_PLAN, 0, 0, 0, 0}, ADJUST_MODE_SPATIAL, {});
}

TEST(StoreResiduals, ChangesTheSignAndClearsWhatHasNone)
{
    WorkRecords work = {Sighted(1, 1, 0.1), Measured(2, 2, 0.2, 10), Known(3, 3), Measured(4, 4, MISSING_VALUE, 10)};
    const double v[] = {NOT_A_NUMBER, 1.0, 2.0, 3.0, 4.0};
    StoreResiduals(ADJUST_MODE_PLAN, CountOf(work), work.data(), v);
    const double expected[][3] = {{-1.0, 0.0, 0.0}, {-2.0, -3.0, 0.0}, {0.0, 0.0, 0.0}, {0.0, -4.0, 0.0}};
    for (size_t i = 0; i < work.size(); ++i)
    {
        EXPECT_EQ(expected[i][0], work[i].angleResidual) << i;
        EXPECT_EQ(expected[i][1], work[i].distanceResidual) << i;
        EXPECT_EQ(expected[i][2], work[i].heightValue) << i;
    }
}

TEST(StoreResiduals, StoresThePairOfASpatialDistance)
{
    WorkRecords work = {WithHeight(Measured(1, 1, 0.1, 10), 5), Measured(2, 2, 0.2, 10),
                        WithHeight(Measured(3, 3, MISSING_VALUE, 10), 5)};
    const double v[] = {NOT_A_NUMBER, 1.0, 2.0, 3.0, 4.0, 5.0, 6.0};
    StoreResiduals(ADJUST_MODE_SPATIAL, CountOf(work), work.data(), v);
    const double expected[][3] = {{-1.0, -2.0, -3.0}, {-4.0, 0.0, 0.0}, {0.0, -5.0, -6.0}};
    for (size_t i = 0; i < work.size(); ++i)
    {
        EXPECT_EQ(expected[i][0], work[i].angleResidual) << i;
        EXPECT_EQ(expected[i][1], work[i].distanceResidual) << i;
        EXPECT_EQ(expected[i][2], work[i].heightValue) << i;
    }
}

// (6")^2 over (0.3 m)^2 + (0.002 of 300 m)^2 = 0.09 + 0.36.
TEST(DistanceWeight, IsTheVarianceOfADirectionByThatOfTheDistance)
{
    const double sigma = 6.0 / 3600.0 * 3.141592653589793 / 180.0;
    const double expected = sigma * sigma / 0.45;
    EXPECT_NEAR(expected, DistanceWeight({6.0, 0.3, 0.002}, 300.0), 1e-14 * expected);
    EXPECT_EQ(0.0, DistanceWeight({6.0, 0.3, 0.002}, 1e200)) << "its variance is infinite";
}

// From (10, 20) to (13, 24): 3 and 4, the square of 5.
TEST(ObservationEquations, AreFormedFromTheOffsetOfTheTarget)
{
    const TargetOffset target = OffsetFrom(10.0, 20.0, Known(13.0, 24.0));
    EXPECT_EQ(3.0, target.northing);
    EXPECT_EQ(4.0, target.easting);
    EXPECT_EQ(25.0, target.squaredDistance);
    const ObservationEquation direction = DirectionEquation(target, 0.5, 0.7);
    EXPECT_EQ(-4.0 / 25.0, direction.byNorthing);
    EXPECT_EQ(3.0 / 25.0, direction.byEasting);
    EXPECT_DOUBLE_EQ(1.2 - std::atan2(4.0, 3.0), direction.misclosure);
    const ObservationEquation distance = DistanceEquation(target, 5.25);
    EXPECT_EQ(3.0 / 5.0, distance.byNorthing);
    EXPECT_EQ(4.0 / 5.0, distance.byEasting);
    EXPECT_EQ(0.25, distance.misclosure);
}
