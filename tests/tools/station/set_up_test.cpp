#include "station/set_up.h"

#include <cmath>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "survey.h"

using qstd::PreparedSight;

namespace {

constexpr double METRES = 1e-9; // rounding of a product or two of some hundred metres

constexpr const char* POINTS = "id,n,e,h\nT,100,0,10\nP,0,100,\nBM,,,5\nN0,,,\nS,0,0,\nTower-12,7,8,\n";

/** The single sight of a survey, prepared. */
struct Prepared
{
    explicit Prepared(const std::string& line)
        : points(survey::Points(POINTS, messages)),
          setUps(survey::SetUps("station,target,hz,v,sd,hd,th,use\n" + line + "\n", messages)),
          sight(qstd::PrepareSights(setUps.at(0), points).at(0))
    {
        EXPECT_EQ(messages.Text(), "");
    }

    qstd::Messages messages;
    qstd::PointList points;
    std::vector<qstd::SetUp> setUps;
    PreparedSight sight;
};

} // namespace

TEST(PrepareSights, BringsFaceTwoToFaceOne)
{
    // Circle 190 - 180 = 10 degrees, zenith 360 - 272 = 88 degrees.
    const Prepared prepared("S,T,190d,272d");
    EXPECT_TRUE(prepared.sight.isFaceTwo);
    EXPECT_EQ(prepared.sight.circle, 10 * 57600);
    EXPECT_EQ(prepared.sight.zenith, 88 * 57600);
    // Circle 100 + 180 = 280 degrees: brought forward where it lies before the half circle.
    EXPECT_EQ(Prepared("S,T,100d,272d").sight.circle, 280 * 57600);
}

TEST(PrepareSights, LeavesFaceOneAlone)
{
    const Prepared prepared("S,T,190d,88d");
    EXPECT_FALSE(prepared.sight.isFaceTwo);
    EXPECT_EQ(prepared.sight.circle, 190 * 57600);
}

TEST(PrepareSights, ReducesASlopeDistance)
{
    // sin 60 degrees = sqrt(3) / 2, cos 60 degrees = 1 / 2.
    const Prepared prepared("S,T,0d,60d,200");
    EXPECT_NEAR(prepared.sight.horizontalDistance.value(), 100.0 * std::sqrt(3.0), METRES);
    EXPECT_NEAR(prepared.sight.verticalDifference.value(), 100.0, METRES);
    const ResectObservation observation = qstd::ToObservation(prepared.sight);
    EXPECT_EQ(observation.slopeDistance, 200.0);
    EXPECT_EQ(observation.target.flags & POINT_HAS_HEIGHT, POINT_HAS_HEIGHT);
}

TEST(PrepareSights, ReducesASlopeDistanceOfFaceTwoLikeOneOfFaceOne)
{
    const Prepared faceOne("S,T,0d,60d,200");
    const Prepared faceTwo("S,T,180d,300d,200");
    EXPECT_EQ(faceTwo.sight.horizontalDistance, faceOne.sight.horizontalDistance);
    EXPECT_EQ(faceTwo.sight.verticalDifference, faceOne.sight.verticalDifference);
    EXPECT_EQ(faceTwo.sight.circle, faceOne.sight.circle);
}

TEST(PrepareSights, GivesAHorizontalDistanceItsHeightDifferenceFromTheZenith)
{
    // tan 45 degrees = 1: as much up as along, and the slope is the diagonal.
    const Prepared prepared("S,T,0d,45d,,100");
    EXPECT_EQ(prepared.sight.horizontalDistance, 100.0);
    EXPECT_NEAR(prepared.sight.verticalDifference.value(), 100.0, METRES);
    EXPECT_NEAR(qstd::ToObservation(prepared.sight).slopeDistance, 100.0 * std::sqrt(2.0), METRES);
}

TEST(PrepareSights, TakesNoHeightFromAHorizontalDistanceAlone)
{
    const Prepared prepared("S,T,0d,,,100,1.3");
    EXPECT_EQ(prepared.sight.horizontalDistance, 100.0);
    EXPECT_EQ(prepared.sight.verticalDifference, std::nullopt);
    const ResectObservation observation = qstd::ToObservation(prepared.sight);
    EXPECT_EQ(observation.target.flags, POINT_HAS_PLAN);
    EXPECT_EQ(observation.slopeDistance, 100.0);
    EXPECT_EQ(observation.verticalDifference, 0.0);
    EXPECT_EQ(observation.zenithAngle, ANGLE_QUARTER_CIRCLE);
    EXPECT_EQ(observation.reflectorHeight, 1.3);
}

TEST(PrepareSights, CannotUseASlopeDistanceWithoutZenith)
{
    const Prepared prepared("S,T,0d,,100");
    EXPECT_TRUE(prepared.sight.isUsed);
    EXPECT_EQ(prepared.sight.horizontalDistance, std::nullopt);
    EXPECT_EQ(prepared.sight.remark, "sd without v: distance not used");
    EXPECT_EQ(qstd::ToObservation(prepared.sight).slopeDistance, 0.0);
}

TEST(PrepareSights, SaysWhyASightTakesNoPart)
{
    EXPECT_EQ(Prepared("S,X,0d").sight.remark, "not a known point");
    EXPECT_EQ(Prepared("S,BM,0d").sight.remark, "height only, but no distance and zenith");
    EXPECT_EQ(Prepared("S,N0,0d").sight.remark, "known point without n and e");
    EXPECT_EQ(Prepared("S,S,0d").sight.remark, "the station itself");
    EXPECT_EQ(Prepared("S,T,0d,0-00-30").sight.remark, "vertical sight: no direction");
    EXPECT_EQ(Prepared("S,T,0d,180d").sight.remark, "vertical sight: no direction");
    EXPECT_EQ(Prepared("S,T,0d,,,,,0").sight.remark, "kept out (use 0)");
    for (const char* line : {"S,X,0d", "S,BM,0d", "S,S,0d", "S,T,0d,0-00-30", "S,T,0d,,,,,0"})
    {
        EXPECT_FALSE(Prepared(line).sight.isUsed) << line;
    }
}

TEST(PrepareSights, NamesTheNearestPointOfAnUnknownName)
{
    EXPECT_EQ(Prepared("S,tower_12,0d").sight.remark, "not a known point; Tower-12?");
    EXPECT_EQ(Prepared("S,Tower-13,0d").sight.remark, "not a known point");
}

TEST(PrepareSights, TakesAPointOfKnownHeightForTheHeightAndNothingElse)
{
    // Up at 60 degrees from the zenith over 200 m of slope: 100 m of rise.
    const Prepared prepared("S,BM,0d,60d,200");
    EXPECT_FALSE(prepared.sight.isUsed);
    EXPECT_EQ(prepared.sight.target, nullptr);
    ASSERT_NE(prepared.sight.benchmark, nullptr);
    EXPECT_EQ(prepared.sight.benchmark->id, "BM");
    EXPECT_EQ(prepared.sight.remark, "for the height only");
    EXPECT_NEAR(prepared.sight.verticalDifference.value(), 100.0, METRES);
    // Kept out, or without a distance, it serves nothing.
    EXPECT_EQ(Prepared("S,BM,0d,60d,200,,,0").sight.benchmark, nullptr);
    EXPECT_EQ(Prepared("S,BM,0d,60d").sight.benchmark, nullptr);
    EXPECT_EQ(Prepared("S,N0,0d,60d,200").sight.benchmark, nullptr);
}

TEST(PrepareSights, ReducesDistancesByTheSettings)
{
    // Scale 0.9996: 200 sin 60 and 100 m, slope and horizontal alike; the rise stays.
    qstd::Reduction reduction;
    reduction.instrument.scaleFactor = 0.9996;
    for (const char* const line : {"S,T,0d,60d,200", "S,T,0d,60d,,173.205080757"})
    {
        const Prepared prepared(line);
        const PreparedSight reduced = qstd::PrepareSights(prepared.setUps.at(0), prepared.points, reduction).at(0);
        EXPECT_NEAR(reduced.horizontalDistance.value(), 0.9996 * 173.205080757, 1e-8) << line;
        EXPECT_NEAR(reduced.verticalDifference.value(), 100.0, 1e-8) << line;
    }
    const Prepared level("S,T,0d,,,100");
    EXPECT_NEAR(qstd::PrepareSights(level.setUps.at(0), level.points, reduction).at(0).horizontalDistance.value(),
                99.96, METRES);
}

TEST(PrepareSights, KeepsTheTargetOfASightThatIsKeptOut)
{
    // Its residuals are listed.
    EXPECT_NE(Prepared("S,T,0d,,,,,0").sight.target, nullptr);
    EXPECT_EQ(Prepared("S,X,0d").sight.target, nullptr);
}
