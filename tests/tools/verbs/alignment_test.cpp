#include "verbs/alignment.h"

#include <gtest/gtest.h>

#include <cmath>

using qstd::Alignment;
using qstd::FigurePlace;

namespace {

constexpr double PI = 3.14159265358979323846;
constexpr double TOLERANCE = 1e-9;

const PointRecord START = {100.0, 200.0, 0.0, POINT_HAS_PLAN};

void ExpectAt(double northing, double easting, const FigurePlace& place)
{
    EXPECT_NEAR(northing, place.northing, TOLERANCE);
    EXPECT_NEAR(easting, place.easting, TOLERANCE);
}

} // namespace

TEST(Alignment, RunsStraightWithoutRadius)
{
    // To the east; the right of it is south.
    const Alignment line(START, PI / 2.0, 50.0);
    ExpectAt(100.0, 230.0, line.At(30.0));
    ExpectAt(96.0, 230.0, line.At(30.0, 4.0));
    ExpectAt(104.0, 190.0, line.At(-10.0, -4.0));
    EXPECT_EQ(0.0, line.Sweep());
    EXPECT_EQ(PI / 2.0, line.AzimuthAt(1000.0));
}

TEST(Alignment, TurnsRightAroundACentreOnTheRight)
{
    // From (100, 200) north, a quarter circle of radius 10 around (100, 210) to (110, 210), then east.
    const Alignment arc(START, 0.0, 5.0 * PI, 10.0);
    ExpectAt(100.0, 210.0, arc.Centre());
    ExpectAt(110.0, 210.0, arc.At(arc.Length()));
    ExpectAt(108.0, 210.0, arc.At(arc.Length(), 2.0));
    // Half-way, 45 degrees on: 10 * sin 45 degrees north of the centre and as much west of it.
    ExpectAt(100.0 + std::sqrt(50.0), 210.0 - std::sqrt(50.0), arc.At(2.5 * PI));
    EXPECT_NEAR(PI / 4.0, arc.AzimuthAt(2.5 * PI), TOLERANCE);
    EXPECT_NEAR(PI / 2.0, arc.Sweep(), TOLERANCE);
}

TEST(Alignment, TurnsLeftAroundACentreOnTheLeft)
{
    const Alignment arc(START, 0.0, 5.0 * PI, -10.0);
    ExpectAt(100.0, 190.0, arc.Centre());
    ExpectAt(110.0, 190.0, arc.At(arc.Length()));
    // The right of an arc to the left is its outside.
    ExpectAt(112.0, 190.0, arc.At(arc.Length(), 2.0));
    EXPECT_NEAR(-PI / 2.0, arc.Sweep(), TOLERANCE);
}

TEST(Alignment, GoesOnAlongItsTangents)
{
    const Alignment arc(START, 0.0, 5.0 * PI, 10.0);
    ExpectAt(93.0, 202.0, arc.At(-7.0, 2.0));
    ExpectAt(107.0, 230.0, arc.At(arc.Length() + 20.0, 3.0));
}
