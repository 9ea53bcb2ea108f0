#include "station/station_method.h"

#include <string>

#include <gtest/gtest.h>

#include "station/closed_solution.h"
#include "survey.h"

using qstd::StationMethod;
using qstd::StationRequest;

namespace {

constexpr const char* POINTS = "id,n,e\nN,100,0\nn,100,0\nE,0,100\nS,-100,0\nW,0,-100\n";

/** The sights of one set-up at A, with what they point into. */
struct Prepared
{
    explicit Prepared(const std::string& lines)
        : points(survey::Points(POINTS, messages)),
          setUps(survey::SetUps("station,target,hz,hd,use\n" + lines, messages)),
          sights(qstd::PrepareSights(setUps.at(0), points))
    {
    }

    [[nodiscard]] std::vector<size_t> Choose(StationMethod method, const StationRequest& request = {}) const
    {
        return qstd::ChooseSights(sights, setUps.front(), method, request);
    }

    qstd::Messages messages;
    qstd::PointList points;
    std::vector<qstd::SetUp> setUps;
    std::vector<qstd::PreparedSight> sights;
};

StationMethod MethodFor(const std::string& lines, bool hasLineAzimuth = false)
{
    return ChooseMethod(Prepared(lines).sights, hasLineAzimuth).method;
}

using Places = std::vector<size_t>;

} // namespace

TEST(ChooseMethod, TakesTwoPointForTwoTargetsWithExactlyOneDistance)
{
    EXPECT_EQ(MethodFor("A,N,0d,100\nA,E,90d,\n"), StationMethod::TWO_POINT);
    EXPECT_EQ(MethodFor("A,N,0d,\nA,E,90d,100\n"), StationMethod::TWO_POINT);
    // A second distance or a second round checks the first one: least squares makes use of both.
    EXPECT_EQ(MethodFor("A,N,0d,100\nA,E,90d,100\n"), StationMethod::MULTI);
    EXPECT_EQ(MethodFor("A,N,0d,100\nA,E,90d,\nA,N,0d,\n"), StationMethod::MULTI);
    EXPECT_EQ(MethodFor("A,N,0d,\nA,E,90d,\n"), StationMethod::MULTI);
    EXPECT_EQ(MethodFor("A,N,0d,100\nA,N,0d,100\n"), StationMethod::MULTI);
}

TEST(ChooseMethod, TakesThreePointForThreeDirectionsAlone)
{
    EXPECT_EQ(MethodFor("A,N,0d,\nA,E,90d,\nA,S,180d,\n"), StationMethod::THREE_POINT);
    EXPECT_EQ(MethodFor("A,N,0d,9\nA,E,90d,\nA,S,180d,\n"), StationMethod::MULTI);
    EXPECT_EQ(MethodFor("A,N,0d,\nA,E,90d,\nA,E,90d,\n"), StationMethod::MULTI);
    EXPECT_EQ(MethodFor("A,N,0d,\nA,E,90d,\nA,S,180d,\nA,W,270d,\n"), StationMethod::MULTI);
    EXPECT_EQ(MethodFor("A,N,0d,\nA,E,90d,\nA,S,180d,\nA,W,270d,,0\n"), StationMethod::THREE_POINT);
}

TEST(ChooseMethod, CountsPlacesAndNotNames)
{
    // n stands where N stands.
    EXPECT_EQ(MethodFor("A,N,0d,\nA,n,0d,\nA,E,90d,\n"), StationMethod::MULTI);
    EXPECT_EQ(MethodFor("A,N,0d,\nA,E,90d,\nA,S,180d,\nA,n,0d,\n"), StationMethod::MULTI);
}

TEST(ChooseMethod, TakesTheKnownLineOnlyWhereNothingElseFits)
{
    EXPECT_EQ(MethodFor("A,N,0d,100\nA,x,90d,50\n", true), StationMethod::KNOWN_LINE);
    EXPECT_EQ(MethodFor("A,N,0d,100\nA,x,90d,50\n", false), StationMethod::MULTI);
    EXPECT_EQ(MethodFor("A,N,0d,100\nA,E,90d,\n", true), StationMethod::TWO_POINT);
    EXPECT_EQ(MethodFor("A,N,0d,100\nA,E,90d,50\n", true), StationMethod::MULTI);
}

TEST(ChooseMethod, SaysWhatTheSetUpHolds)
{
    EXPECT_EQ(ChooseMethod(Prepared("A,N,0d,100\nA,E,90d,\n").sights, false).reason,
              "2 directions and 1 distance to 2 targets");
}

TEST(ChooseSights, TakesTwoDistancesBeforeADirection)
{
    EXPECT_EQ(Prepared("A,N,0d,\nA,E,90d,9\nA,S,180d,9\n").Choose(StationMethod::TWO_POINT), (Places{1, 2}));
    EXPECT_EQ(Prepared("A,N,0d,\nA,E,90d,\nA,S,180d,9\n").Choose(StationMethod::TWO_POINT), (Places{0, 2}));
    EXPECT_EQ(Prepared("A,N,0d,9\nA,E,90d,\nA,S,180d,\n").Choose(StationMethod::TWO_POINT), (Places{0, 1}));
    EXPECT_EQ(Prepared("A,N,0d,\nA,E,90d,\n").Choose(StationMethod::TWO_POINT), (Places{0, 1}));
    EXPECT_EQ(Prepared("A,N,0d,9\n").Choose(StationMethod::TWO_POINT), (Places{0}));
}

TEST(ChooseSights, TakesOneSightToEachTarget)
{
    EXPECT_EQ(Prepared("A,N,0d,\nA,N,0d,\nA,E,90d,\nA,S,180d,\nA,W,270d,\n").Choose(StationMethod::THREE_POINT),
              (Places{0, 2, 3}));
}

TEST(ChooseSights, KeepsToTheOrderOfTheRequest)
{
    StationRequest request;
    request.targets = {"W", "N", "S"};
    const Prepared prepared("A,N,0d,\nA,S,180d,\nA,W,270d,\n");
    EXPECT_EQ(prepared.Choose(StationMethod::THREE_POINT, request), (Places{2, 0, 1}));
}

TEST(ChooseSights, BeginsALineAtAKnownPoint)
{
    StationRequest request;
    request.lineAzimuth = 0;
    const Prepared prepared("A,x,0d,9\nA,E,90d,\nA,S,180d,9\n");
    EXPECT_EQ(prepared.Choose(StationMethod::KNOWN_LINE, request), (Places{2, 0}));
    // Without an azimuth the second point must be known, too.
    EXPECT_EQ(prepared.Choose(StationMethod::KNOWN_LINE), (Places{2}));
}
