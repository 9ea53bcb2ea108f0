// Sights as typed on the command line: what is one, what its parts are, which face it was read in.
#include "verbs/typed_sight.h"

#include "text/outcome.h"

#include <gtest/gtest.h>

namespace {

using namespace qstd;

class TypedSights : public ::testing::Test
{
protected:
    Messages messages;
    Inputs inputs = Inputs("", std::nullopt, messages);
};

constexpr AngleUnit DEGREE = 3600 * 16;

} // namespace

TEST_F(TypedSights, HaveAnglesInAnyFormAndADistance)
{
    const TypedSight sight = ParseSight("90-30-00, 100g ,12.5", "sight", SightParts::ANGLES_AND_DISTANCE, inputs);
    // 90.5 degrees; 100 gon are a quarter circle.
    EXPECT_EQ(sight.circle, 90 * DEGREE + DEGREE / 2);
    EXPECT_EQ(sight.zenith, 90 * DEGREE);
    EXPECT_EQ(sight.slopeDistance, 12.5);
}

TEST_F(TypedSights, MayLackWhatIsNotAskedFor)
{
    const TypedSight sight = ParseSight("90-00-00", "sight", SightParts::CIRCLE, inputs);
    EXPECT_FALSE(sight.zenith);
    EXPECT_FALSE(sight.slopeDistance);
}

TEST_F(TypedSights, AreRefusedWhereAPartIsMissingOrWrong)
{
    EXPECT_THROW(ParseSight("90-00-00", "sight", SightParts::ANGLES, inputs), WrongUse);
    EXPECT_THROW(ParseSight("90-00-00,90-00-00", "sight", SightParts::ANGLES_AND_DISTANCE, inputs), WrongUse);
    EXPECT_THROW(ParseSight("90-00-00,90-00-00,1,2", "sight", SightParts::CIRCLE, inputs), WrongUse);
    EXPECT_THROW(ParseSight("90,90-00-00", "sight", SightParts::ANGLES, inputs), WrongUse);
    EXPECT_THROW(ParseSight("90-00-00,90-00-00,", "sight", SightParts::ANGLES, inputs), WrongUse);
    EXPECT_THROW(ParseSight("90-00-00,90-00-00,0", "sight", SightParts::ANGLES, inputs), WrongUse);
    EXPECT_THROW(ParseSight("90-00-00,90-00-00,1e9", "sight", SightParts::ANGLES, inputs), WrongUse);
    EXPECT_THROW(ParseSight("", "sight", SightParts::CIRCLE, inputs), WrongUse);
}

TEST(LooksLikeSight, IsFalseForNamesAndCoordinates)
{
    EXPECT_TRUE(LooksLikeSight("90-00-00,90-00-00,12.5"));
    EXPECT_TRUE(LooksLikeSight("100g,100g,12.5"));
    EXPECT_TRUE(LooksLikeSight("0,90-00-00"));
    EXPECT_FALSE(LooksLikeSight("100,100,12.5"));
    EXPECT_FALSE(LooksLikeSight("-1.5,2e3"));
    EXPECT_FALSE(LooksLikeSight("90-00-00"));
    EXPECT_FALSE(LooksLikeSight("A"));
}

TEST(InFaceOne, TurnsTheCircleAndMirrorsTheZenithAngleOfFaceTwo)
{
    const FaceOneSight kept = InFaceOne(200 * DEGREE, 80 * DEGREE);
    EXPECT_EQ(kept.circle, 200 * DEGREE);
    EXPECT_EQ(kept.zenith, 80 * DEGREE);

    // 200 + 180 - 360 = 20; 360 - 280 = 80.
    const FaceOneSight turned = InFaceOne(200 * DEGREE, 280 * DEGREE);
    EXPECT_EQ(turned.circle, 20 * DEGREE);
    EXPECT_EQ(turned.zenith, 80 * DEGREE);

    // Straight down is where face two begins.
    const FaceOneSight down = InFaceOne(0, 180 * DEGREE);
    EXPECT_EQ(down.circle, 180 * DEGREE);
    EXPECT_EQ(down.zenith, 180 * DEGREE);
}
