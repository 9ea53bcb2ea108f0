#include "station/plan_search.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "observed.h"

using qstd::CanDetermine;
using qstd::CountPlaces;
using qstd::FindStations;
using qstd::PlaceCount;
using qstd::PlanAdjustment;
using survey::Observed;

namespace {

constexpr double PI = 3.14159265358979323846;

/** An observer whose coordinates and circle are nothing special. */
Observed Observer()
{
    return {{7310.25, -420.5, 2.3}, {}};
}

/** The one station of exact observations is where the observer stood. */
void ExpectFound(const Observed& observed)
{
    const std::vector<PlanAdjustment> found = FindStations(observed.observations);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_NEAR(found[0].position.northing, observed.place.northing, 1e-5);
    EXPECT_NEAR(found[0].position.easting, observed.place.easting, 1e-5);
    EXPECT_NEAR(found[0].position.orientation, observed.place.orientation, 1e-7);
}

} // namespace

TEST(CountPlaces, CountsPlacesAndNotObservations)
{
    Observed observed = Observer();
    observed.Both(7400.0, -300.0).Both(7400.0, -300.0).Direction(7200.0, -380.0);
    const PlaceCount count = CountPlaces(observed.observations);
    EXPECT_EQ(count.places, 2U);
    EXPECT_EQ(count.measured, 1U);
}

TEST(CanDetermine, NeedsThreePlacesOrTwoAndADistance)
{
    EXPECT_FALSE(CanDetermine({0, 0}));
    EXPECT_FALSE(CanDetermine({1, 1}));
    EXPECT_FALSE(CanDetermine({2, 0}));
    EXPECT_TRUE(CanDetermine({2, 1}));
    EXPECT_TRUE(CanDetermine({3, 0}));
}

TEST(FindStations, FromTwoDistances)
{
    // The circles meet on both sides of the line; the directions tell which.
    Observed observed = Observer();
    ExpectFound(observed.Both(7400.0, -300.0).Both(7150.0, -250.0));
    Observed otherSide = Observer();
    ExpectFound(otherSide.Both(7150.0, -250.0).Both(7400.0, -300.0));
}

TEST(FindStations, FromOneDistanceShorterThanTheLineBetweenTheTargets)
{
    Observed observed = Observer();
    ExpectFound(observed.Both(7400.0, -380.0).Direction(7020.0, -250.0));
    Observed other = Observer();
    ExpectFound(other.Direction(7020.0, -250.0).Both(7400.0, -380.0));
}

TEST(FindStations, FromOneLongDistanceThereAreTwo)
{
    // M lies 300 m beside the ray to O, its foot 400 m from the station: 500 m off. On that ray two places are 340 m
    // from M, 160 m before and behind the foot: the station may be 560 m or 240 m from O.
    Observed observed = {{0.0, 0.0, 0.7}, {}};
    observed.Both(400.0, 300.0).Direction(560.0, 0.0);
    const std::vector<PlanAdjustment> found = FindStations(observed.observations);
    ASSERT_EQ(found.size(), 2U);
    std::vector<double> toOther;
    for (const PlanAdjustment& station : found)
    {
        EXPECT_NEAR(std::hypot(400.0 - station.position.northing, 300.0 - station.position.easting), 500.0, 1e-6);
        EXPECT_NEAR(station.squareSum, 0.0, 1e-16);
        toOther.push_back(std::hypot(560.0 - station.position.northing, 0.0 - station.position.easting));
    }
    std::sort(toOther.begin(), toOther.end());
    EXPECT_NEAR(toOther[0], 240.0, 1e-6);
    EXPECT_NEAR(toOther[1], 560.0, 1e-6);
}

TEST(FindStations, AThirdDirectionTellsWhichOfTheTwo)
{
    Observed observed = {{0.0, 0.0, 0.7}, {}};
    ExpectFound(observed.Both(400.0, 300.0).Direction(560.0, 0.0).Direction(-350.0, 210.0));
}

TEST(FindStations, FromThreeDirections)
{
    Observed within = Observer();
    ExpectFound(within.Direction(7600.0, -390.0).Direction(7190.0, -120.0).Direction(7240.0, -800.0));
    Observed outside = Observer();
    ExpectFound(outside.Direction(7600.0, -390.0).Direction(7790.0, -120.0).Direction(7840.0, -600.0));
    // A right angle and a half circle between directions have no cotangent and no tangent.
    Observed cross = Observer();
    ExpectFound(cross.Direction(7410.25, -420.5)
                    .Direction(7310.25, -220.5)
                    .Direction(7240.25, -420.5)
                    .Direction(7310.25, -511.5));
}

TEST(FindStations, FromPlacesThatNearlyCoincide)
{
    // Two prisms 5 mm apart, handed in first.
    Observed distances = Observer();
    ExpectFound(distances.Both(7400.0, -300.0).Both(7400.003, -299.996).Both(7150.0, -250.0));
    Observed directions = Observer();
    ExpectFound(directions.Direction(7600.0, -390.0)
                    .Direction(7600.004, -390.003)
                    .Direction(7190.0, -120.0)
                    .Direction(7240.0, -800.0));
}

TEST(FindStations, FromRepeatedSights)
{
    Observed observed = Observer();
    ExpectFound(observed.Both(7400.0, -380.0)
                    .Direction(7400.0, -380.0)
                    .Direction(7020.0, -250.0)
                    .Direction(7400.0, -380.0)
                    .Direction(7020.0, -250.0));
}

TEST(FindStations, FromADistanceReadInTheSecondSightOnly)
{
    Observed observed = Observer();
    ExpectFound(observed.Direction(7400.0, -380.0).Direction(7020.0, -250.0).Both(7400.0, -380.0));
}

TEST(FindStations, FromMorePlacesThanAreTried)
{
    Observed observed = Observer();
    for (int i = 0; i < 30; ++i)
    {
        const double azimuth = 0.2 * i;
        const double distance = 150.0 + 37.0 * (i % 7);
        observed.Direction(7310.25 + distance * std::cos(azimuth), -420.5 + distance * std::sin(azimuth));
    }
    ExpectFound(observed);
}

TEST(FindStations, FromManyDirectionsOfWhichOneIsWrong)
{
    // Turned by 1 gon: the others hold the station to some centimetres.
    Observed observed = Observer();
    for (int i = 0; i < 12; ++i)
    {
        const double azimuth = 0.5 * i;
        observed.Direction(7310.25 + 180.0 * std::cos(azimuth), -420.5 + 180.0 * std::sin(azimuth));
    }
    observed.observations[0].value += PI / 200.0;
    const std::vector<PlanAdjustment> found = FindStations(observed.observations);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_NEAR(found[0].position.northing, 7310.25, 1.0);
    EXPECT_NEAR(found[0].position.easting, -420.5, 1.0);
}

TEST(FindStations, FindsNoneWhereNothingDeterminesOne)
{
    EXPECT_TRUE(FindStations({}).empty());
    Observed one = Observer();
    one.Both(7400.0, -300.0).Both(7400.0, -300.0);
    EXPECT_TRUE(FindStations(one.observations).empty());
    Observed two = Observer();
    two.Direction(7400.0, -300.0).Direction(7150.0, -250.0).Direction(7400.0, -300.0);
    EXPECT_TRUE(FindStations(two.observations).empty());
    // Station and targets on the circle of 65 m about the origin.
    Observed circle = {{-25.0, -60.0, 0.0}, {}};
    circle.Direction(16.0, 63.0).Direction(33.0, 56.0).Direction(63.0, 16.0);
    EXPECT_TRUE(FindStations(circle.observations).empty());
}

TEST(FindStations, KeepsASecondOneOnlyWhereItFitsAsWell)
{
    // The two places of one long distance, 240 m and 560 m from O; a second distance, to O, rules one out even where it
    // is 20 mm wrong, and leaves both where it is as far from one as from the other.
    Observed observed = {{0.0, 0.0, 0.7}, {}};
    observed.Both(400.0, 300.0).Direction(560.0, 0.0).Distance(560.0, 0.0, 0.02);
    const std::vector<PlanAdjustment> found = FindStations(observed.observations);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_NEAR(std::hypot(found[0].position.northing, found[0].position.easting), 0.0, 0.05);
}
