#include "proof/judgement.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

using namespace qstd;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

Sink AnySink(LinearUnit unit = LinearUnit::METRE)
{
    OutputOptions options;
    options.unit = unit;
    return Sink(options, "verb");
}

Proof Missing(double miss)
{
    Proof proof;
    proof.Require("the point lies off the line by", miss, 1e-6);
    return proof;
}

} // namespace

TEST(MissText, ShowsTwoFiguresOfASmallMiss)
{
    const Sink sink = AnySink();
    EXPECT_EQ(MissText(0.02134, sink), "0.0213 m");
    EXPECT_EQ(MissText(0.0000234, sink), "0.000023 m");
    EXPECT_EQ(MissText(1234.5, sink), "1234.5000 m");
    EXPECT_EQ(MissText(std::numeric_limits<double>::infinity(), sink), "more than any number");
    EXPECT_EQ(MissText(0.25, AnySink(LinearUnit::FOOT)), "0.2500 ft");
}

TEST(Judge, SaysNothingOfAResultThatHolds)
{
    Row row;
    Judge(Proof(), AnySink(), row);
    EXPECT_TRUE(row.isProven);
    EXPECT_THAT(row.warnings, IsEmpty());
}

TEST(Judge, SaysByHowMuchAResultMisses)
{
    Row row;
    Judge(Missing(0.5), AnySink(), row);
    EXPECT_FALSE(row.isProven);
    EXPECT_THAT(row.warnings, ElementsAre("not what was asked for: the point lies off the line by 0.5000 m"));
}

TEST(RemarkOtherForm, LeavesTheResultProven)
{
    Row row;
    row.remark = "touches";
    RemarkOtherForm(Missing(0.5), "in other axes", AnySink(), row);
    EXPECT_TRUE(row.isProven);
    EXPECT_THAT(row.warnings, IsEmpty());
    EXPECT_EQ(row.remark, "touches; computed in other axes; without that the library misses: the point lies off the "
                          "line by 0.5000 m");
}

TEST(QuestionFar, TakesAThousandTimesTheExtent)
{
    Row row;
    QuestionFar("the corner", 12000.0, 12.0, AnySink(), row);
    QuestionFar("the corner", 12000.0, 0.0, AnySink(), row);
    EXPECT_THAT(row.warnings, IsEmpty());
    QuestionFar("the corner", 12001.0, 12.0, AnySink(), row);
    EXPECT_THAT(row.warnings, ElementsAre("the corner lies 12001.0000 m away, 1000 times the extent of what it comes "
                                          "from; check the input"));
    EXPECT_TRUE(row.isProven);
}
