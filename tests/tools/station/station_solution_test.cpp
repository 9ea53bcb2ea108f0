#include "station/station_solution.h"

#include <cmath>
#include <string>

#include <gtest/gtest.h>

#include "survey.h"
#include "text/angle_text.h"

using qstd::Outcome;
using qstd::StationRequest;
using qstd::StationSolution;
using survey::Solved;

namespace {

constexpr double ARC_SECOND = 3.14159265358979323846 / 648000.0;
constexpr double UNIT = ARC_SECOND / 16.0;

// The library cuts residuals off to whole units.
constexpr double LEFT_OUT = 1.01 * UNIT;

// Four targets 100 m around the origin; a station there whose circle has its zero at 30 degrees reads azimuth - 30.
constexpr const char* CROSS = "id,n,e,h\nN,100,0,10\nE,0,100,12\nS,-100,0,\nW,0,-100,\n";

} // namespace

TEST(SolveStation, FindsTheStationOfExactSights)
{
    const Solved solved(CROSS, "station,target,hz\nA,N,330d\nA,E,60d\nA,S,150d\nA,W,240d\n");
    const StationSolution& solution = solved.solution;
    ASSERT_TRUE(solution.IsSolved());
    EXPECT_NEAR(solution.station.position.northing, 0.0, 1e-6);
    EXPECT_NEAR(solution.station.position.easting, 0.0, 1e-6);
    EXPECT_NEAR(solution.station.orientation, 30 * 57600, 1);
    EXPECT_EQ(solution.directions, 4U);
    EXPECT_EQ(solution.distances, 0U);
    EXPECT_EQ(solution.Redundancy(), 1U);
    EXPECT_FALSE(solution.HasHeight());
}

TEST(SolveStation, SharesAnErrorOutAsLeastSquaresMust)
{
    // The rows of the model are orthogonal to (1, -1, 1, -1) / 2: of an error of 4" in the first reading 2" along that
    // vector are left, 1" on each sight, adjusted less observed. One observation is redundant, so that s0 = 2".
    const Solved solved(CROSS, "station,target,hz\nA,N,330-00-04\nA,E,60d\nA,S,150d\nA,W,240d\n");
    const StationSolution& solution = solved.solution;
    ASSERT_TRUE(solution.IsSolved());
    const double signs[] = {-1.0, 1.0, -1.0, 1.0};
    for (size_t i = 0; i < 4; ++i)
    {
        ASSERT_TRUE(solution.residuals[i].direction.has_value());
        EXPECT_NEAR(*solution.residuals[i].direction, signs[i] * ARC_SECOND, LEFT_OUT) << i;
        EXPECT_NEAR(*solution.residuals[i].across, signs[i] * ARC_SECOND * 100.0, LEFT_OUT * 100.0) << i;
        EXPECT_FALSE(solution.residuals[i].distance.has_value());
    }
    // Each coordinate rests on two directions over 100 m: s0 * 100 / sqrt(2); the orientation on four: s0 / 2.
    const double sigma = 2.0 * ARC_SECOND * 100.0 / std::sqrt(2.0);
    EXPECT_NEAR(solution.station.northingPrecision, sigma, 1e-3 * sigma);
    EXPECT_NEAR(solution.station.eastingPrecision, sigma, 1e-3 * sigma);
    ASSERT_TRUE(solution.ellipse.has_value());
    EXPECT_NEAR(solution.ellipse->major, sigma, 1e-3 * sigma);
    EXPECT_NEAR(solution.ellipse->minor, sigma, 1e-3 * sigma);
    EXPECT_NEAR(solution.ellipse->orientationSigma, ARC_SECOND, 1e-3 * ARC_SECOND);
    EXPECT_NEAR(solution.ellipse->unitDirectionSigma, 2.0 * ARC_SECOND, 2e-3 * ARC_SECOND);
}

TEST(SolveStation, ReportsDistanceResidualsThatTheLibraryDoesNot)
{
    // All distances 2 mm long: by symmetry the station stays, and each residual is computed less measured.
    const Solved solved(CROSS, "station,target,hz,hd\nA,N,330d,100.002\nA,E,60d,100.002\nA,S,150d,100.002\n"
                               "A,W,240d,100.002\n");
    ASSERT_TRUE(solved.solution.IsSolved());
    EXPECT_EQ(solved.solution.Redundancy(), 5U);
    for (const qstd::SightResidual& residual : solved.solution.residuals)
    {
        ASSERT_TRUE(residual.distance.has_value());
        EXPECT_NEAR(*residual.distance, -0.002, 1e-6);
        EXPECT_FALSE(residual.height.has_value());
    }
}

TEST(SolveStation, ListsTheResidualsOfASightKeptOut)
{
    // The sight kept out reads 10" too much and 10 mm too little: adjusted less observed is -10", +10 mm.
    const std::string exact = "station,target,hz,hd,use\nA,N,330d\nA,E,60d\nA,S,150d\nA,W,240d\n";
    const Solved solved(CROSS, exact + "A,N,330-00-10,99.99,0\n");
    const Solved without(CROSS, exact);
    ASSERT_TRUE(solved.solution.IsSolved());
    EXPECT_EQ(solved.solution.used, 4U);
    EXPECT_EQ(solved.solution.station.position.northing, without.solution.station.position.northing);
    const qstd::SightResidual& residual = solved.solution.residuals[4];
    ASSERT_TRUE(residual.direction.has_value() && residual.distance.has_value());
    EXPECT_NEAR(*residual.direction, -10.0 * ARC_SECOND, 2.0 * UNIT);
    EXPECT_NEAR(*residual.distance, 0.01, 1e-6);
}

TEST(SolveStation, TakesTheHeightFromTargetsWithDistance)
{
    // Level sights: 10 + 1.5 = 11.5 and 12 + 0 = 12; mean 11.75, spread 0.5; mark 1.6 below the axis.
    const Solved solved(CROSS, "station,target,hz,v,hd,th,ih\nA,N,330d,90d,100,1.5,1.6\nA,E,60d,90d,100\nA,S,150d\n"
                               "A,W,240d\n");
    const StationSolution& solution = solved.solution;
    ASSERT_TRUE(solution.IsSolved() && solution.HasHeight());
    EXPECT_NEAR(solution.station.position.height, 11.75, 1e-9);
    EXPECT_NEAR(solution.station.heightSpread, 0.5, 1e-9);
    EXPECT_NEAR(solution.markHeight.value(), 10.15, 1e-9);
    EXPECT_EQ(solution.heightTargets, 2U);
    EXPECT_TRUE(solution.isHeightByDistance);
    EXPECT_NEAR(solution.residuals[0].height.value(), -0.25, 1e-9);
    EXPECT_NEAR(solution.residuals[1].height.value(), 0.25, 1e-9);
    EXPECT_FALSE(solution.residuals[2].height.has_value());
}

TEST(SolveStation, TakesTheHeightByZenithOnlyWhereNoTargetHasADistance)
{
    // Up at 45 degrees over 100 m: 10 - 100 = -90; level: 12. With a distance to E its 12 stands alone.
    const std::string rest = "A,S,150d\nA,W,240d\n";
    const Solved both(CROSS, "station,target,hz,v,hd\nA,N,330d,45d\nA,E,60d,90d\n" + rest);
    EXPECT_NEAR(both.solution.station.position.height, -39.0, 1e-5);
    EXPECT_EQ(both.solution.heightTargets, 2U);
    EXPECT_FALSE(both.solution.isHeightByDistance);
    EXPECT_NEAR(both.solution.residuals[0].height.value(), -51.0, 1e-5);
    const Solved one(CROSS, "station,target,hz,v,hd\nA,N,330d,45d\nA,E,60d,90d,100\n" + rest);
    EXPECT_NEAR(one.solution.station.position.height, 12.0, 1e-9);
    EXPECT_EQ(one.solution.heightTargets, 1U);
}

TEST(SolveStation, TakesNoHeightFromASightWithoutZenith)
{
    const Solved solved(CROSS, "station,target,hz,hd\nA,N,330d,100\nA,E,60d,100\nA,S,150d\n");
    ASSERT_TRUE(solved.solution.IsSolved());
    EXPECT_FALSE(solved.solution.HasHeight());
    EXPECT_EQ(solved.solution.markHeight, std::nullopt);
}

TEST(SolveStation, GivesTheSameStationInFaceTwo)
{
    const Solved one(CROSS, "station,target,hz,v\nA,N,330d,88d\nA,E,60d,90d\nA,S,150d\nA,W,240-00-05\n");
    const Solved two(CROSS, "station,target,hz,v\nA,N,150d,272d\nA,E,240d,270d\nA,S,150d\nA,W,240-00-05\n");
    ASSERT_TRUE(one.solution.IsSolved() && two.solution.IsSolved());
    EXPECT_EQ(two.solution.faceTwo, 2U);
    EXPECT_EQ(two.solution.station.position.northing, one.solution.station.position.northing);
    EXPECT_EQ(two.solution.station.position.easting, one.solution.station.position.easting);
    EXPECT_EQ(two.solution.station.position.height, one.solution.station.position.height);
    EXPECT_EQ(two.solution.station.orientation, one.solution.station.orientation);
}

TEST(SolveStation, StartsFromDifferentTargetsWhereFacesFollowEachOther)
{
    // Both faces of the first targets come first, 4" apart: their means are exact, so the station is too.
    const Solved solved(CROSS, "station,target,hz,v\nA,N,330-00-02,88d\nA,N,149-59-58,272d\nA,E,60-00-02,88d\n"
                               "A,E,239-59-58,272d\nA,S,150d\nA,W,240d\n");
    ASSERT_TRUE(solved.solution.IsSolved());
    EXPECT_EQ(solved.solution.Redundancy(), 3U);
    EXPECT_NEAR(solved.solution.station.position.northing, 0.0, 1e-5);
    EXPECT_NEAR(solved.solution.station.position.easting, 0.0, 1e-5);
    const double signs[] = {-1.0, 1.0, -1.0, 1.0, 0.0, 0.0};
    for (size_t i = 0; i < 6; ++i)
    {
        EXPECT_NEAR(solved.solution.residuals[i].direction.value(), signs[i] * 2.0 * ARC_SECOND, LEFT_OUT) << i;
    }
}

TEST(SolveStation, StartsFromOtherSightsWhereTheFirstOnesAreDegenerate)
{
    // The first three targets and the station lie on one circle, of 100 m about the origin; the fourth does not.
    // Station (0, -100); azimuths to (100, 0), (0, 100), (-100, 0), (50, -100): 45, 90, 135, 0 degrees.
    const Solved solved("id,n,e\nP,100,0\nQ,0,100\nR,-100,0\nT,50,-100\n",
                        "station,target,hz\nA,P,45d\nA,Q,90d\nA,R,135d\nA,T,0d\n");
    ASSERT_TRUE(solved.solution.IsSolved());
    EXPECT_NEAR(solved.solution.station.position.northing, 0.0, 1e-6);
    EXPECT_NEAR(solved.solution.station.position.easting, -100.0, 1e-6);
}

TEST(SolveStation, HasNoEllipseWithoutRedundancy)
{
    const Solved solved(CROSS, "station,target,hz\nA,N,330d\nA,E,60d\nA,S,150d\n");
    ASSERT_TRUE(solved.solution.IsSolved());
    EXPECT_EQ(solved.solution.Redundancy(), 0U);
    EXPECT_FALSE(solved.solution.ellipse.has_value());
}

TEST(SolveStation, SaysWhereSightsCannotDetermineAStation)
{
    for (const char* const sights : {"A,X,0d\n", "A,N,330d\nA,E,60d\n", "A,N,330d\nA,E,60d\nA,N,330d\nA,E,60d\n"})
    {
        const Solved solved(CROSS, std::string("station,target,hz\n") + sights);
        EXPECT_EQ(solved.solution.outcome, Outcome::TOO_FEW) << sights;
        EXPECT_EQ(solved.solution.status, QSTD_REJECTED) << sights;
    }
    const Solved oneTarget(CROSS, "station,target,hz,hd\nA,N,330d,100\nA,N,330d,100\nA,N,330d,100\n");
    EXPECT_EQ(oneTarget.solution.outcome, Outcome::TOO_FEW);
}

TEST(SolveStation, HandsOnTheStatusOfAClosedMethod)
{
    StationRequest request;
    request.method = qstd::StationMethod::TWO_POINT;
    const Solved two(CROSS, "station,target,hz\nA,N,330d\nA,E,60d\n");
    const StationSolution closed = SolveStation(two.setUps.at(0), two.points, request);
    EXPECT_EQ(closed.outcome, Outcome::REFUSED);
    EXPECT_EQ(closed.status, QSTD_NO_DISTANCE);
}

TEST(SolveStation, TakesAClosedMethodOnlyWhereNothingIsRedundant)
{
    using qstd::StationMethod;
    const Solved three(CROSS, "station,target,hz\nA,N,330d\nA,E,60d\nA,S,150d\n");
    EXPECT_EQ(three.solution.method, StationMethod::THREE_POINT);
    EXPECT_EQ(three.solution.choice, "3 directions and 0 distances to 3 targets");
    const Solved one(CROSS, "station,target,hz,hd\nA,N,330d,100\nA,E,60d,\n");
    EXPECT_EQ(one.solution.method, StationMethod::TWO_POINT);
    const Solved both(CROSS, "station,target,hz,hd\nA,N,330d,100\nA,E,60d,100\n");
    EXPECT_EQ(both.solution.method, StationMethod::MULTI);
    EXPECT_EQ(both.solution.choice, "");
    for (const Solved* const solved : {&three, &one, &both})
    {
        ASSERT_TRUE(solved->solution.IsSolved());
        EXPECT_NEAR(solved->solution.station.position.northing, 0.0, 1e-5);
        EXPECT_NEAR(solved->solution.station.position.easting, 0.0, 1e-5);
    }
}

TEST(SolveStation, SolvesByItselfWhatTheLibraryCannotBegin)
{
    // Two targets in two rounds with one distance; a prism in two faces with spires; a backsight at both ends.
    for (const char* const sights :
         {"A,N,330d,,\nA,E,60d,,\nA,N,330d,,100\nA,E,60d,,\n",
          "A,N,330d,90d,100\nA,N,150d,270d,100\nA,E,60d,,\nA,S,150d,,\n", "A,N,330d,,100\nA,E,60d,,\nA,N,330d,,100\n"})
    {
        const Solved solved(CROSS, std::string("station,target,hz,v,hd\n") + sights);
        ASSERT_TRUE(solved.solution.IsSolved()) << sights;
        EXPECT_NEAR(solved.solution.station.position.northing, 0.0, 1e-5) << sights;
        EXPECT_NEAR(solved.solution.station.position.easting, 0.0, 1e-5) << sights;
        EXPECT_NEAR(solved.solution.station.orientation, 30 * 57600, 1) << sights;
    }
}

TEST(SolveStation, SaysWhereTwoStationsFitEquallyWell)
{
    // The place 500 m from M may be 240 m or 560 m from O: M is 300 m beside the ray to O, and 340 m from O.
    const Solved solved("id,n,e\nM,400,300\nO,560,0\n", "station,target,hz,hd\nA,M,36.86989765d,500\nA,O,0d,\n");
    EXPECT_EQ(solved.solution.outcome, Outcome::AMBIGUOUS);
    ASSERT_EQ(solved.solution.candidates.size(), 2U);
    for (const PointRecord& candidate : solved.solution.candidates)
    {
        EXPECT_NEAR(std::hypot(candidate.northing - 400.0, candidate.easting - 300.0), 500.0, 1e-3);
    }
}

TEST(SolveStation, TakesTargetsSideBySideForOnePlaceWhereTwoStationsFit)
{
    // As above, with a second mark 5 mm beside O: it tells the two stations apart no more than O alone does.
    const Solved solved("id,n,e\nM,400,300\nO,560,0\nQ,560.004,0.003\n",
                        "station,target,hz,hd\nA,M,36.86989765d,500\nA,O,0d,\nA,Q,0.00030694d,\n");
    EXPECT_EQ(solved.solution.outcome, Outcome::AMBIGUOUS);
    EXPECT_EQ(solved.solution.candidates.size(), 2U);
}

TEST(SolveStation, AdjustsMoreSightsThanTheLibraryIsHanded)
{
    std::string sights = "station,target,hz,hd\n";
    for (size_t i = 0; i <= qstd::MOST_SIGHTS; ++i)
    {
        sights += i % 2 == 0 ? "A,N,330d,100\n" : "A,E,60d,100\n";
    }
    const Solved solved(CROSS, sights);
    ASSERT_TRUE(solved.solution.IsSolved());
    EXPECT_TRUE(solved.solution.isByTool);
    EXPECT_EQ(solved.solution.used, qstd::MOST_SIGHTS + 1);
    EXPECT_NEAR(solved.solution.station.position.northing, 0.0, 1e-5);
    EXPECT_NEAR(solved.solution.station.position.easting, 0.0, 1e-5);
}

TEST(SolveStation, KnowsAStationThatIsAKnownPoint)
{
    const Solved solved("id,n,e\nA,0,0\nN,100,0\nE,0,100\nS,-100,0\n",
                        "station,target,hz\nA,N,330d\nA,E,60d\nA,S,150d\n");
    ASSERT_NE(solved.solution.known, nullptr);
    EXPECT_EQ(solved.solution.known->id, "A");
}
