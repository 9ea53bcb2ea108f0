#include "verbs/stationing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using qstd::RoundStation;
using qstd::RoundStations;
using testing::ElementsAre;

namespace {

std::vector<std::string> Labels(double from, double to)
{
    std::vector<std::string> labels;
    for (const RoundStation& station : RoundStations(from, to))
    {
        labels.push_back(station.label);
    }
    return labels;
}

} // namespace

TEST(RoundStations, AreMultiplesOfARoundStep)
{
    EXPECT_THAT(Labels(0.0, 50.0), ElementsAre("0", "5", "10", "15", "20", "25", "30", "35", "40", "45", "50"));
    EXPECT_THAT(Labels(1203.0, 1310.0),
                ElementsAre("1210", "1220", "1230", "1240", "1250", "1260", "1270", "1280", "1290", "1300", "1310"));
    EXPECT_THAT(Labels(-0.7, 0.3),
                ElementsAre("-0.7", "-0.6", "-0.5", "-0.4", "-0.3", "-0.2", "-0.1", "0.0", "0.1", "0.2", "0.3"));
}

TEST(RoundStations, AreFiveToFifteenOnAnyLength)
{
    for (double length = 0.01; length < 1e6; length *= 1.07)
    {
        for (const double from : {0.0, 17.3, -length / 3.0})
        {
            const std::vector<RoundStation> stations = RoundStations(from, from + length);
            ASSERT_GE(stations.size(), 5U) << from << " " << length;
            EXPECT_LE(stations.size(), 15U) << from << " " << length;
            EXPECT_GE(stations.front().chainage, from - length * 1e-9);
            EXPECT_LE(stations.back().chainage, from + length * (1.0 + 1e-9));
        }
    }
}

TEST(RoundStations, HaveLabelsThatAreTheirChainage)
{
    for (double length = 0.01; length < 1e6; length *= 3.0)
    {
        const std::vector<RoundStation> stations = RoundStations(0.3, 0.3 + length);
        ASSERT_FALSE(stations.empty()) << length;
        for (const RoundStation& station : stations)
        {
            EXPECT_EQ(station.chainage, std::stod(station.label));
        }
    }
}

TEST(RoundStations, AreNoneWhereThereIsNoLength)
{
    EXPECT_TRUE(RoundStations(5.0, 5.0).empty());
    EXPECT_TRUE(RoundStations(5.0, 4.0).empty());
    EXPECT_TRUE(RoundStations(0.0, std::numeric_limits<double>::infinity()).empty());
    EXPECT_TRUE(RoundStations(0.0, std::nan("")).empty());
}
