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

namespace {

/** What is said of bare numbers, or nothing. */
std::string Refusal(const std::string& text, std::optional<AngleForm> form)
{
    Messages messages;
    const Inputs inputs("", form, messages);
    try
    {
        RequireOneMeaning(text, inputs);
    }
    catch (const WrongUse& problem)
    {
        return problem.what();
    }
    return "";
}

} // namespace

TEST(BareNumbers, OfASightOrOfCoordinatesAreRefusedWithBothWaysToWriteThem)
{
    EXPECT_EQ(
        Refusal("10,99,30", AngleForm::GON),
        "\"10,99,30\": with --angle, a sight HZ,V,SD as well as coordinates N,E,H; write 10g,99g,30 for the sight, "
        "or N=10,E=99,H=30 for the coordinates");
    EXPECT_NE(Refusal("10,99,30", AngleForm::DEGREES).find("write 10d,99d,30 "), std::string::npos);
    EXPECT_NE(Refusal("1,1.5,30", AngleForm::RADIANS).find("write 1rad,1.5rad,30 "), std::string::npos);
    EXPECT_NE(Refusal("10.3015,99,30", AngleForm::DMS).find("write 10-30-15.0,99-00-00.0,30 "), std::string::npos);
}

TEST(BareNumbers, OfOneMeaningPass)
{
    EXPECT_EQ(Refusal("10,99,30", std::nullopt), "");
    for (const char* text : {"10,99", "500,99,30", "10,-99,30", "10,99,0", "10,99,-30", "10g,99g,30", "N=10,E=99,H=30"})
    {
        EXPECT_EQ(Refusal(text, AngleForm::GON), "") << text;
    }
}

TEST(BareNumbers, WithLettersAreNoSight)
{
    EXPECT_FALSE(LooksLikeSight("N=10,E=99,H=30"));
    EXPECT_TRUE(LooksLikeSight("10g,99g,30"));
    EXPECT_FALSE(LooksLikeSight("10,99,30"));
}
