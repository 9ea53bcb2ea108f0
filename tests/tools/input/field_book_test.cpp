#include "input/field_book.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "survey.h"

using qstd::KnownPoint;
using qstd::Messages;
using qstd::PointList;
using survey::PointMessages;
using survey::SightMessages;
using testing::HasSubstr;

TEST(ReadPoints, ReadsWhatIsKnownOfEachPoint)
{
    Messages messages;
    const PointList points =
        survey::Points("code,h,e,n,id\ncontrol,3,2,1,04-1057/1\n,,5,4,1_sp\nbolt,6,,,BM\n", messages);
    ASSERT_EQ(messages.Text(), "");
    const KnownPoint* const full = points.Find("04-1057/1");
    ASSERT_NE(full, nullptr);
    EXPECT_EQ(full->point.northing, 1.0);
    EXPECT_EQ(full->point.easting, 2.0);
    EXPECT_EQ(full->point.height, 3.0);
    EXPECT_EQ(full->point.flags, POINT_HAS_PLAN | POINT_HAS_HEIGHT);
    EXPECT_EQ(full->code, "control");
    EXPECT_EQ(points.Find("1_sp")->point.flags, POINT_HAS_PLAN);
    EXPECT_EQ(points.Find("BM")->point.flags, POINT_HAS_HEIGHT);
    EXPECT_EQ(points.Find("bm"), nullptr);
}

TEST(ReadPoints, TakesNamesAsText)
{
    Messages messages;
    const PointList points = survey::Points("id,n,e\n7,1,2\n07,3,4\n7.0,5,6\n", messages);
    EXPECT_EQ(messages.Text(), "");
    EXPECT_EQ(points.Find("07")->point.northing, 3.0);
}

TEST(ReadPoints, TellsOfEveryFaultWithItsLine)
{
    EXPECT_EQ(PointMessages("id,n,e\n11,1,2\n11,3,4\n"),
              "points.csv:3: id \"11\": given in line 2 already; keep one\n");
    EXPECT_EQ(PointMessages("id,n,e\n,1,2\n"), "points.csv:2: id \"\": empty; every line needs a name here\n");
    EXPECT_EQ(PointMessages("id,n,e\n11,1,\n"),
              "points.csv:2: e \"\": empty; give both coordinates, or neither for a point of height only\n");
    EXPECT_EQ(PointMessages("id,n,e\n11,x,2\n"), "points.csv:2: n \"x\": not a number; write one such as 123.456\n");
    EXPECT_EQ(PointMessages("id;n;e\n11;1,5;2\n"), "points.csv:2: n \"1,5\": not a number; write a decimal point\n");
    EXPECT_EQ(PointMessages("id,n,e\n11,1e9,2\n"),
              "points.csv:2: n \"1e9\": beyond 100 000 km; no length on the earth is longer\n");
}

TEST(ReadPoints, RefusesNumbersThatAreNone)
{
    for (const char* number : {"nan", "inf", "-inf", "1e999", "0x1p3", "1 2", "1.2.3", "--1", "+-1"})
    {
        EXPECT_THAT(PointMessages(std::string("id,n,e\n11,") + number + ",2\n"), HasSubstr("not a number")) << number;
    }
}

TEST(ReadSetUps, MakesASetUpOfEachRunOfLines)
{
    Messages messages;
    const std::vector<qstd::SetUp> setUps =
        survey::SetUps("station,target,hz\nA,1,0d\nA,2,1d\nB,1,2d\nA,3,3d\n", messages);
    ASSERT_EQ(messages.Text(), "");
    ASSERT_EQ(setUps.size(), 3U);
    EXPECT_EQ(setUps[0].sights.size(), 2U);
    EXPECT_EQ(setUps[0].number, 1U);
    EXPECT_EQ(setUps[0].siblings, 2U);
    EXPECT_EQ(setUps[1].siblings, 1U);
    EXPECT_EQ(setUps[2].station, "A");
    EXPECT_EQ(setUps[2].number, 2U);
    EXPECT_EQ(setUps[2].sights[0].line, 5U);
}

TEST(ReadSetUps, ReadsEveryColumn)
{
    Messages messages;
    const std::vector<qstd::SetUp> setUps = survey::SetUps(
        "use;ih;th;sd;v;hz;target;station\n0;1.5;1.3;100.5;90-00-00;10-00-00;T;S\n1;;;;;20d;U;S\n", messages);
    ASSERT_EQ(messages.Text(), "");
    ASSERT_EQ(setUps.size(), 1U);
    EXPECT_EQ(setUps[0].instrumentHeight, 1.5);
    const qstd::Sight& sight = setUps[0].sights[0];
    EXPECT_EQ(sight.target, "T");
    EXPECT_EQ(sight.circle, 576000);
    EXPECT_EQ(sight.zenith, 5184000);
    EXPECT_EQ(sight.slopeDistance, 100.5);
    EXPECT_EQ(sight.horizontalDistance, std::nullopt);
    EXPECT_EQ(sight.targetHeight, 1.3);
    EXPECT_FALSE(sight.isWanted);
    EXPECT_TRUE(setUps[0].sights[1].isWanted);
    EXPECT_EQ(setUps[0].sights[1].zenith, std::nullopt);
    EXPECT_EQ(setUps[0].sights[1].targetHeight, 0.0);
}

TEST(ReadSetUps, TellsOfEveryFaultWithItsLine)
{
    const std::string header = "station,target,hz,v,sd,hd,th,ih,use\n";
    EXPECT_EQ(SightMessages(header + "S,T,99.1024\n"),
              "sights.csv:2: hz \"99.1024\": no unit; write 99-10-24, 99.1733d or 110.19g, or give --angle\n");
    EXPECT_EQ(SightMessages(header + "S,T\n"),
              "sights.csv:2: hz \"\": empty; a sight needs a circle reading, such as 99-10-24\n");
    EXPECT_EQ(SightMessages(header + ",T,1d\n"), "sights.csv:2: station \"\": empty; every line needs a name here\n");
    EXPECT_EQ(SightMessages(header + "S,,1d\n"), "sights.csv:2: target \"\": empty; every line needs a name here\n");
    EXPECT_EQ(SightMessages(header + "S,T,1d,,100,100\n"),
              "sights.csv:2: hd \"100\": sd is given too; keep the one that was measured\n");
    EXPECT_EQ(SightMessages(header + "S,T,1d,,0.000\n"),
              "sights.csv:2: sd \"0.000\": not above 0; leave it empty where no distance was measured\n");
    EXPECT_EQ(SightMessages(header + "S,T,1d,,,,,,yes\n"),
              "sights.csv:2: use \"yes\": neither 0 nor 1; write 0 to keep the sight out, 1 or nothing to use it\n");
    EXPECT_EQ(SightMessages(header + "S,T,1d,,,,,1.5\nS,U,2d\nS,V,3d,,,,,1.6\n"),
              "sights.csv:4: ih \"1.6\": this set-up began with 1.5; write the same, or another station between\n");
}

TEST(ReadSetUps, CountsFaultsBeyondTheTwentieth)
{
    std::string text = "station,target,hz\n";
    for (int i = 0; i < 25; ++i)
    {
        text += "S,T,x\n";
    }
    const std::string messages = SightMessages(text);
    EXPECT_THAT(messages, HasSubstr("sights.csv:21: "));
    EXPECT_THAT(messages, testing::Not(HasSubstr("sights.csv:22: ")));
    EXPECT_THAT(messages, HasSubstr("qstd: 5 more errors not shown\n"));
}

TEST(PointListNearestTo, FindsANameThatIsWrittenDifferently)
{
    Messages messages;
    const PointList points = survey::Points("id,n,e\n1_sp,1,2\n21_sp,3,4\nTower-12,5,6\nTower-13,7,8\n", messages);
    EXPECT_EQ(points.NearestTo("1_sq"), "1_sp");
    EXPECT_EQ(points.NearestTo("tower 12"), "Tower-12");
    EXPECT_EQ(points.NearestTo("Tovver-13"), "Tower-13");
}

TEST(PointListNearestTo, TakesOtherDigitsForAnotherPoint)
{
    Messages messages;
    const PointList points = survey::Points("id,n,e\nFP-11,1,2\nFP-12,3,4\n101,5,6\n", messages);
    EXPECT_EQ(points.NearestTo("FP-13"), "");
    EXPECT_EQ(points.NearestTo("102"), "");
    EXPECT_EQ(points.NearestTo("spire"), "");
    EXPECT_EQ(PointList().NearestTo("FP-11"), "");
}

TEST(PointListNearestTo, ComparesWithNoCrowd)
{
    // Among very many names one would be near by chance.
    std::string text = "id,n,e\n";
    for (int i = 0; i < 200; ++i)
    {
        text += std::string(1, static_cast<char>('a' + i % 26)) + std::string(static_cast<size_t>(i / 26 + 1), 'x') +
                "7," + std::to_string(i) + ",0\n";
    }
    Messages messages;
    const PointList points = survey::Points(text, messages);
    ASSERT_EQ(messages.Text(), "");
    EXPECT_EQ(points.NearestTo("axx_7"), "");
}
