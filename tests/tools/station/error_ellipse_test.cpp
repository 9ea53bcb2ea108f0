#include "station/error_ellipse.h"

#include <cmath>
#include <string>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "survey.h"

namespace {

constexpr double PI = 3.14159265358979323846;

/** Two targets 100 m before and behind a station at the origin, their line turned by `degrees` from north. */
survey::Solved Line(double degrees)
{
    const double n = 100.0 * std::cos(degrees * PI / 180.0);
    const double e = 100.0 * std::sin(degrees * PI / 180.0);
    return {fmt::format("id,n,e\nF,{},{}\nB,{},{}\n", n, e, -n, -e),
            "station,target,hz,hd\nA,F,0d,100\nA,B,180d,100\n"};
}

ResectStation StationWithPrecisions(double northing, double easting)
{
    ResectStation station = {};
    station.northingPrecision = northing;
    station.eastingPrecision = easting;
    return station;
}

} // namespace

TEST(ErrorEllipse, HasTheAxesOfTheTwoKindsOfObservation)
{
    // Along the line only the two distances count, each of weight w = (2")^2 / (2 mm^2 + 0.2 mm^2): s0 / sqrt(2 w).
    // Across it the two directions: s0 * 100 / sqrt(2). Each orientation of the line gives the same axes.
    const double direction = 2.0 * 4.84813681109536e-6;
    const double weight = direction * direction / (0.002 * 0.002 + 0.0002 * 0.0002);
    const double ratio = (1.0 / std::sqrt(2.0 * weight)) / (100.0 / std::sqrt(2.0));
    for (const double degrees : {0.0, 30.0, 90.0, 135.0, 179.0})
    {
        const survey::Solved solved = Line(degrees);
        const auto ellipse = qstd::FormErrorEllipse(solved.solution.sights, StationWithPrecisions(0.003, 0.004));
        ASSERT_TRUE(ellipse.has_value());
        EXPECT_NEAR(ellipse->major / ellipse->minor, ratio, 1e-6);
        EXPECT_NEAR(std::remainder(ellipse->azimuth - degrees * PI / 180.0, PI), 0.0, 1e-6) << degrees;
        EXPECT_GE(ellipse->azimuth, 0.0);
        EXPECT_LE(ellipse->azimuth, PI);
        // The mean square of the two axes is that of the two precisions: 3^2 + 4^2 = 5^2.
        EXPECT_NEAR(std::hypot(ellipse->major, ellipse->minor), 0.005, 1e-12);
    }
}

TEST(ErrorEllipse, IsNoneForSingularEquations)
{
    const survey::Solved solved("id,n,e\nF,100,0\n", "station,target,hz\nA,F,0d\nA,F,0d\nA,F,0d\n");
    EXPECT_FALSE(qstd::FormErrorEllipse(solved.solution.sights, StationWithPrecisions(1.0, 1.0)).has_value());
}

TEST(ErrorEllipse, IsNoneAtATarget)
{
    const survey::Solved solved("id,n,e\nF,0,0\nG,9,9\nH,9,0\n", "station,target,hz\nA,F,0d\nA,G,1d\nA,H,2d\n");
    EXPECT_FALSE(qstd::FormErrorEllipse(solved.solution.sights, StationWithPrecisions(1.0, 1.0)).has_value());
}
