#include "station/station_doubts.h"

#include <cmath>
#include <string>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "station/leave_one_out.h"
#include "station/status_text.h"
#include "survey.h"

using qstd::StationMethod;
using qstd::StationRequest;
using qstd::StationSolution;

namespace {

constexpr double PI = 3.14159265358979323846;

/** A survey from a place to targets on the circle of 100 m about the origin, solved. */
struct OnCircle
{
    OnCircle(double north, double east, StationMethod method)
    {
        std::string pointText = "id,n,e\n";
        std::string sightText = "station,target,hz\n";
        for (const double azimuth : {0.2, 2.1, 4.4})
        {
            const double targetNorth = 100.0 * std::cos(azimuth);
            const double targetEast = 100.0 * std::sin(azimuth);
            const double circle = std::atan2(targetEast - east, targetNorth - north);
            pointText += fmt::format("P{},{:.9f},{:.9f}\n", azimuth, targetNorth, targetEast);
            sightText +=
                fmt::format("A,P{},{:.8f}d\n", azimuth, (circle < 0.0 ? circle + 2.0 * PI : circle) * 180.0 / PI);
        }
        points = survey::Points(pointText, messages);
        setUps = survey::SetUps(sightText, messages);
        StationRequest request;
        request.method = method;
        solution = SolveStation(setUps.at(0), points, request);
    }

    qstd::Messages messages;
    qstd::PointList points;
    std::vector<qstd::SetUp> setUps;
    StationSolution solution;
};

} // namespace

TEST(FindDoubts, MeasuresTheDistanceToTheDangerCircle)
{
    for (const double radius : {0.0, 30.0, 95.0, 99.5, 100.5, 130.0, 900.0})
    {
        const OnCircle survey(radius * 0.6, radius * 0.8, StationMethod::THREE_POINT);
        ASSERT_TRUE(survey.solution.IsSolved()) << radius;
        ASSERT_TRUE(survey.solution.doubts.circleDistance.has_value()) << radius;
        const PointRecord& place = survey.solution.station.position;
        EXPECT_NEAR(*survey.solution.doubts.circleDistance,
                    std::fabs(std::hypot(place.northing, place.easting) - 100.0), 1e-6)
            << radius;
    }
}

TEST(FindDoubts, CallsDirectionsWeakNearTheCircleOnly)
{
    for (const StationMethod method : {StationMethod::THREE_POINT, StationMethod::MULTI})
    {
        EXPECT_TRUE(OnCircle(99.0 * 0.6, 99.0 * 0.8, method).solution.doubts.isWeak);
        EXPECT_FALSE(OnCircle(30.0 * 0.6, 30.0 * 0.8, method).solution.doubts.isWeak);
    }
}

TEST(FindDoubts, CallsAStationOnTheCircleUndeterminedOrNone)
{
    // At most a tenth of a millimetre off: either nothing is solved, or the strongest warning goes with it.
    for (const StationMethod method : {StationMethod::THREE_POINT, StationMethod::MULTI, StationMethod::AUTO})
    {
        for (const double radius : {100.0, 100.0001, 99.9999, 100.00001})
        {
            const OnCircle survey(radius * 0.6, radius * 0.8, method);
            EXPECT_TRUE(!survey.solution.IsSolved() || survey.solution.doubts.isUndetermined) << radius;
            EXPECT_FALSE(survey.solution.IsSound()) << radius;
        }
    }
}

TEST(FindDoubts, TellsOfTwoTargets)
{
    const survey::Solved two("id,n,e\nP,310,20\nQ,-40,270\n",
                             "station,target,hz,hd\nA,P,3.691386d,310.6445\nA,Q,98.426969d,272.9469\n");
    ASSERT_TRUE(two.solution.IsSolved());
    EXPECT_TRUE(two.solution.doubts.hasTwoTargets);
    EXPECT_TRUE(two.solution.doubts.inLine.empty());
    const survey::Solved three("id,n,e\nP,310,20\nQ,-40,270\nR,-210,-90\n",
                               "station,target,hz,hd\nA,P,3.691386d,310.6445\nA,Q,98.426969d,272.9469\n"
                               "A,R,203.198591d,\n");
    ASSERT_TRUE(three.solution.IsSolved());
    EXPECT_FALSE(three.solution.doubts.hasTwoTargets);
}

TEST(FindDoubts, TellsOfTwoTargetsInLineWithTheStation)
{
    // 2 degrees apart, and opposite but for 2 degrees: below the 4.5 degrees of 5 gon.
    const survey::Solved same("id,n,e\nP,300,0\nQ,199.8781654,6.9798993\n",
                              "station,target,hz,hd\nA,P,0d,300\nA,Q,2d,200\n");
    ASSERT_TRUE(same.solution.IsSolved());
    EXPECT_EQ(same.solution.doubts.inLine, (std::vector<std::string>{"P", "Q"}));
    EXPECT_NEAR(same.solution.doubts.inLineAngle, 2 * 57600, 1);
    EXPECT_FALSE(same.solution.doubts.isInLineOpposite);
    const survey::Solved opposite("id,n,e\nP,300,0\nQ,-199.8781654,6.9798993\n",
                                  "station,target,hz,hd\nA,P,0d,300\nA,Q,178d,200\n");
    ASSERT_TRUE(opposite.solution.IsSolved());
    EXPECT_NEAR(opposite.solution.doubts.inLineAngle, 2 * 57600, 1);
    EXPECT_TRUE(opposite.solution.doubts.isInLineOpposite);
}

TEST(FindDoubts, TellsOfNoRedundancy)
{
    const OnCircle survey(3.0, 4.0, StationMethod::MULTI);
    EXPECT_TRUE(survey.solution.doubts.hasNoRedundancy);
    EXPECT_EQ(DoubtTexts(survey.solution, qstd::AngleForm::DMS, true).size(), 1U);
    EXPECT_TRUE(DoubtTexts(survey.solution, qstd::AngleForm::DMS, false).empty());
}

TEST(FindDoubts, TellsWhereOnlyRepeatedSightsCheckEachOther)
{
    // Three directions to three places determine the station and check nothing, however often they are read: with the
    // circle read anticlockwise, or points exchanged, they fit as well.
    const std::string round = "A,P,3.691386d\nA,Q,98.426969d\nA,R,203.198591d\n";
    const survey::Solved solved("id,n,e\nP,310,20\nQ,-40,270\nR,-210,-90\n",
                                "station,target,hz\n" + round + round + round);
    ASSERT_TRUE(solved.solution.IsSolved());
    EXPECT_EQ(solved.solution.Redundancy(), 6U);
    EXPECT_FALSE(DoubtTexts(solved.solution, qstd::AngleForm::DMS, false).empty());
}

TEST(LeaveOneOut, RepeatsNoSetUpThatIsTooLarge)
{
    std::string sights = "station,target,hz\nA,N,0d\nA,E,90d\nA,S,180d\n";
    for (size_t i = 3; i <= qstd::MOST_LEFT_OUT; ++i)
    {
        sights += "A,W,270d\n";
    }
    survey::Solved solved("id,n,e\nN,100,0\nE,0,100\nS,-100,0\nW,0,-100\n", sights);
    LeaveOneOut(solved.solution);
    EXPECT_TRUE(solved.solution.leftOut.empty());
}

TEST(DescribeFailure, HasWordsForEveryEndOfAClosedSolution)
{
    for (const StationMethod method : {StationMethod::TWO_POINT, StationMethod::THREE_POINT, StationMethod::KNOWN_LINE})
    {
        StationSolution solution;
        solution.method = method;
        solution.directions = 3;
        solution.distances = 2;
        for (const int32_t status : {QSTD_REJECTED, QSTD_COINCIDENT_POINTS, QSTD_MISSING_COORDINATES, QSTD_NO_DISTANCE,
                                     QSTD_DEGENERATE, QSTD_EQUAL_DIRECTIONS})
        {
            solution.status = status;
            const qstd::StatusText words = DescribeFailure(solution);
            EXPECT_FALSE(words.reason.empty() || words.usualCause.empty() || words.remedy.empty()) << status;
        }
        solution.outcome = qstd::Outcome::TOO_FEW;
        EXPECT_EQ(OutcomeName(solution), "TOO_FEW_SIGHTS");
        EXPECT_NE(DescribeFailure(solution).reason.find("needs"), std::string::npos);
    }
}
