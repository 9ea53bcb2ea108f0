// Published cases of coordinate geometry.
#include <cmath>
#include <string>

#include <gtest/gtest.h>

#include "tests/cases/case_file.h"
#include "tests/support/angle.h"
#include "tests/support/record.h"

using cases::CaseById;
using cases::Json;
using cases::Tolerance;

namespace {

void ExpectAngle(const Json& expected, AngleUnit actual, double toleranceSeconds)
{
    const AngleUnit turned = support::TurnFrom(cases::Angle(expected), actual);
    EXPECT_LE(std::fabs(support::UnitsToSeconds(turned)), toleranceSeconds)
        << "angle " << support::UnitsToDegrees(actual) << " for " << expected.at("dms");
}

void ExpectLength(const Json& expected, double actual, double tolerance)
{
    EXPECT_NEAR(expected.get<double>(), actual, tolerance);
}

} // namespace

// --- inverse ---

class InverseCase : public testing::TestWithParam<std::string>
{
protected:
    // Inputs, expected figures and record of one pair of points.
    struct Pair
    {
        PointRecord from;
        PointRecord to;
        Json expected;
    };

    std::vector<Pair> Pairs() const
    {
        std::vector<Pair> pairs;
        const Json& inputs = each.at("inputs").at("pairs");
        const Json& expected = each.at("expected").at("pairs");
        EXPECT_EQ(inputs.size(), expected.size());
        for (size_t i = 0; i < inputs.size(); ++i)
        {
            pairs.push_back({cases::Point(inputs[i].at("from")), cases::Point(inputs[i].at("to")), expected[i]});
        }
        return pairs;
    }

    // Without heights no slope distance is printed: it is then the horizontal distance.
    void ExpectDistances(const Pair& pair, double horizontal, double slope) const
    {
        const double tolerance = Tolerance(each, "length");
        ExpectLength(pair.expected.at("horizontal_distance"), horizontal, tolerance);
        const bool spatial = pair.expected.contains("slope_distance");
        ExpectLength(pair.expected.at(spatial ? "slope_distance" : "horizontal_distance"), slope, tolerance);
    }

    const Json& each = CaseById(GetParam());
};

TEST_P(InverseCase, IsReproducedByTheInverse)
{
    for (const Pair& pair : Pairs())
    {
        AngDistRecord result = {};
        ASSERT_EQ(0, QCogoCoordToAngDist(&pair.from, &pair.to, &result));
        ExpectAngle(pair.expected.at("azimuth"), result.azimuth, Tolerance(each, "angle_arcsec"));
        ExpectDistances(pair, result.horizontalDistance, result.slopeDistance);
    }
}

TEST_P(InverseCase, IsReproducedByTheRemoteDistance)
{
    for (const Pair& pair : Pairs())
    {
        RemoteDistanceResult result = {};
        ASSERT_EQ(0, QRDMCalcByCoord(&pair.from, &pair.to, &result));
        ExpectAngle(pair.expected.at("azimuth"), result.azimuth, Tolerance(each, "angle_arcsec"));
        ExpectDistances(pair, result.horizontalDistance, result.slopeDistance);
    }
}

INSTANTIATE_TEST_SUITE_P(Published, InverseCase, testing::ValuesIn(cases::IdsOfKind("inverse")), cases::TestName);

// --- forward ---

class ForwardCase : public testing::TestWithParam<std::string>
{
};

TEST_P(ForwardCase, IsReproduced)
{
    const Json& each = CaseById(GetParam());
    const PointRecord from = cases::Point(each.at("inputs").at("from"));
    AngDistRecord observation = {};
    observation.azimuth = cases::Angle(each.at("inputs").at("azimuth"));
    observation.horizontalDistance = each.at("inputs").at("horizontal_distance");
    PointRecord result = {};
    ASSERT_EQ(0, QCogoAngDistToCoord(&from, &observation, &result));
    cases::ExpectPoint(each.at("expected").at("point"), result, each.at("tolerance"));
    EXPECT_EQ(1, result.flags);
}

INSTANTIATE_TEST_SUITE_P(Published, ForwardCase, testing::ValuesIn(cases::IdsOfKind("forward")), cases::TestName);

// --- polar points with heights ---

class PolarPointCase : public testing::TestWithParam<std::string>
{
};

TEST_P(PolarPointCase, IsReproduced)
{
    const Json& each = CaseById(GetParam());
    const Json& inputs = each.at("inputs");
    const PointRecord station = cases::Point(inputs.at("station"));
    const Json& expected = each.at("expected").at("sights");
    ASSERT_EQ(inputs.at("sights").size(), expected.size());
    for (size_t i = 0; i < expected.size(); ++i)
    {
        const Json& sight = inputs.at("sights")[i];
        SCOPED_TRACE(sight.at("id"));
        const double zenith = support::UnitsToRadians(cases::ZenithOf(sight));
        const double slope = sight.at("slope_distance");
        const double instrumentHeight = inputs.at("instrument_height");
        const double targetHeight = sight.at("target_height");
        AngDistRecord observation = {};
        observation.azimuth = cases::Angle(inputs.at("orientation")) + cases::Angle(sight.at("direction"));
        observation.horizontalDistance = slope * std::sin(zenith);
        observation.heightDifference = slope * std::cos(zenith) + instrumentHeight - targetHeight;
        ExpectAngle(expected[i].at("azimuth"), observation.azimuth, Tolerance(each, "angle_arcsec"));
        ExpectLength(expected[i].at("horizontal_distance"), observation.horizontalDistance, Tolerance(each, "length"));
        PointRecord result = {};
        ASSERT_EQ(0, QCogoAngDistToCoord(&station, &observation, &result));
        ASSERT_TRUE(cases::HasHeight(expected[i].at("point")));
        cases::ExpectPoint(expected[i].at("point"), result, each.at("tolerance"));
    }
}

INSTANTIATE_TEST_SUITE_P(Published, PolarPointCase, testing::ValuesIn(cases::IdsOfKind("polar_point_3d")),
                         cases::TestName);

// --- points on a line ---

class ReferenceLineCase : public testing::TestWithParam<std::string>
{
};

// The other way round: the printed chainage and offset must lead to the point that was set out. Rounded in each by up
// to the tolerance, they lead astray by up to the hypotenuse of both.
TEST_P(ReferenceLineCase, LeadsBackToThePoints)
{
    const Json& each = CaseById(GetParam());
    const PointRecord first = cases::Point(each.at("inputs").at("first"));
    const PointRecord second = cases::Point(each.at("inputs").at("second"));
    const double tolerance = Tolerance(each, "length");
    const Json& points = each.at("inputs").at("points");
    const Json& expected = each.at("expected").at("points");
    ASSERT_EQ(points.size(), expected.size());
    for (size_t i = 0; i < points.size(); ++i)
    {
        SCOPED_TRACE(points[i].at("id"));
        PointRecord result = {};
        ASSERT_EQ(0, QCogoOffsetToCoord(&first, &second, expected[i].at("station"), expected[i].at("offset"), &result));
        const PointRecord point = cases::Point(points[i]);
        EXPECT_LE(std::hypot(result.northing - point.northing, result.easting - point.easting),
                  std::hypot(tolerance, tolerance));
        // The first point alone has a height: it holds along the whole line.
        EXPECT_EQ(first.height, result.height);
        EXPECT_EQ(3, result.flags);
    }
}

INSTANTIATE_TEST_SUITE_P(Published, ReferenceLineCase, testing::ValuesIn(cases::IdsOfKind("reference_line")),
                         cases::TestName);
