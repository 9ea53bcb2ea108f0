// Published cases of areas, intersections, the reference line, arcs and the remote elevation.
#include <cmath>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/cases/case_file.h"
#include "tests/support/angle.h"
#include "tests/support/record.h"

using cases::CaseById;
using cases::Json;
using cases::Tolerance;

namespace {

void ExpectLength(const Json& expected, double actual, double tolerance)
{
    EXPECT_NEAR(expected.get<double>(), actual, tolerance);
}

// A case without a tolerance for angles has exact ones: what is left is the cutting off of a unit.
void ExpectAngle(const Json& each, const Json& expected, AngleUnit actual)
{
    constexpr double ONE_UNIT = 1.0 / support::UNITS_PER_SECOND;
    const double tolerance = each.at("tolerance").value("angle_arcsec", ONE_UNIT);
    const AngleUnit turned = support::TurnFrom(cases::Angle(expected), actual);
    EXPECT_LE(std::fabs(support::UnitsToSeconds(turned)), tolerance)
        << "angle " << support::UnitsToDegrees(actual) << " for " << expected.at("dms");
}

LineDef LineByAzimuth(const Json& line)
{
    return {cases::Point(line.at("point")), {}, cases::Angle(line.at("azimuth")), LINE_BY_AZIMUTH};
}

LineDef LineByPoints(const Json& line)
{
    return {cases::Point(line.at("first")), cases::Point(line.at("second")), 0, LINE_BY_POINTS};
}

bool IsAt(const Json& expected, const PointRecord& point, double tolerance)
{
    return std::fabs(point.northing - expected.at("northing").get<double>()) <= tolerance &&
           std::fabs(point.easting - expected.at("easting").get<double>()) <= tolerance;
}

} // namespace

// --- areas ---

class AreaCase : public testing::TestWithParam<std::string>
{
};

TEST_P(AreaCase, IsReproduced)
{
    const Json& each = CaseById(GetParam());
    std::vector<PointRecord> corners;
    for (const Json& corner : each.at("inputs").at("corners"))
    {
        corners.push_back(cases::Point(corner));
    }
    const double area = QCogoCalcArea(corners.data(), static_cast<int32_t>(corners.size()));
    ExpectLength(each.at("expected").at("area"), area, Tolerance(each, "area"));
}

INSTANTIATE_TEST_SUITE_P(Published, AreaCase, testing::ValuesIn(cases::IdsOfKind("area")), cases::TestName);

// --- line and line ---

class LineLineCase : public testing::TestWithParam<std::string>
{
};

TEST_P(LineLineCase, IsReproduced)
{
    const Json& each = CaseById(GetParam());
    const LineDef line1 = LineByAzimuth(each.at("inputs").at("line1"));
    const LineDef line2 = LineByAzimuth(each.at("inputs").at("line2"));
    PointRecord result = {};
    ASSERT_EQ(0, QCogoCalcCrossLine(&line1, &line2, &result));
    cases::ExpectPoint(each.at("expected").at("point"), result, each.at("tolerance"));
    EXPECT_EQ(1, result.flags);
}

INSTANTIATE_TEST_SUITE_P(Published, LineLineCase, testing::ValuesIn(cases::IdsOfKind("line_line")), cases::TestName);

// --- circle and circle ---

class CircleCircleCase : public testing::TestWithParam<std::string>
{
};

TEST_P(CircleCircleCase, IsReproduced)
{
    const Json& each = CaseById(GetParam());
    const Json& inputs = each.at("inputs");
    const Json& expected = each.at("expected");
    const PointRecord centre1 = cases::Point(inputs.at("centre1"));
    const PointRecord centre2 = cases::Point(inputs.at("centre2"));
    PointRecord pair[2] = {};
    ASSERT_EQ(expected.at("count").get<int32_t>(),
              QCogoCalcCrossCircle(&centre1, inputs.at("radius1"), &centre2, inputs.at("radius2"), pair));
    ASSERT_TRUE(expected.contains("solution1_right") || expected.contains("solution2_left"));
    if (expected.contains("solution1_right"))
    {
        cases::ExpectPoint(expected.at("solution1_right"), pair[0], each.at("tolerance"));
    }
    if (expected.contains("solution2_left"))
    {
        cases::ExpectPoint(expected.at("solution2_left"), pair[1], each.at("tolerance"));
    }
}

INSTANTIATE_TEST_SUITE_P(Published, CircleCircleCase, testing::ValuesIn(cases::IdsOfKind("circle_circle")),
                         cases::TestName);

// --- line and circle ---

class LineCircleCase : public testing::TestWithParam<std::string>
{
};

TEST_P(LineCircleCase, IsReproducedInOrderOfNorthing)
{
    const Json& each = CaseById(GetParam());
    const Json& inputs = each.at("inputs");
    const Json& solutions = each.at("expected").at("solutions");
    const LineDef line = LineByPoints(inputs.at("line"));
    const PointRecord centre = cases::Point(inputs.at("centre"));
    PointRecord pair[2] = {};
    ASSERT_EQ(each.at("expected").at("count").get<int32_t>(),
              QCogoCalcCrossLineCircle(&line, &centre, inputs.at("radius"), pair));
    ASSERT_EQ(2U, solutions.size());
    // The source lists them in its own order.
    const double tolerance = Tolerance(each, "length");
    const bool inOrder = solutions[0].at("northing") < solutions[1].at("northing");
    EXPECT_TRUE(IsAt(solutions[inOrder ? 0 : 1], pair[0], tolerance));
    EXPECT_TRUE(IsAt(solutions[inOrder ? 1 : 0], pair[1], tolerance));
}

INSTANTIATE_TEST_SUITE_P(Published, LineCircleCase, testing::ValuesIn(cases::IdsOfKind("line_circle")),
                         cases::TestName);

// --- the reference line ---

class StakedLineCase : public testing::TestWithParam<std::string>
{
};

TEST_P(StakedLineCase, IsReproduced)
{
    const Json& each = CaseById(GetParam());
    const PointRecord first = cases::Point(each.at("inputs").at("first"));
    const PointRecord second = cases::Point(each.at("inputs").at("second"));
    ASSERT_EQ(0, QREFSetBaseLine(&first, &second));
    const double tolerance = Tolerance(each, "length");
    const Json& points = each.at("inputs").at("points");
    const Json& expected = each.at("expected").at("points");
    ASSERT_EQ(points.size(), expected.size());
    for (size_t i = 0; i < points.size(); ++i)
    {
        SCOPED_TRACE(points[i].at("id"));
        const PointRecord point = cases::Point(points[i]);
        ReferenceLineResult result = {};
        ASSERT_EQ(0, QREFCalc(&point, &result));
        ExpectLength(expected[i].at("station"), result.station, tolerance);
        ExpectLength(expected[i].at("offset"), result.offset, tolerance);
    }
}

INSTANTIATE_TEST_SUITE_P(Published, StakedLineCase, testing::ValuesIn(cases::IdsOfKind("reference_line")),
                         cases::TestName);

// --- arcs ---

class ArcCase : public testing::TestWithParam<std::string>
{
};

TEST_P(ArcCase, IsReproducedByItsEnds)
{
    const Json& each = CaseById(GetParam());
    const Json& inputs = each.at("inputs");
    const Json& expected = each.at("expected");
    const double tolerance = Tolerance(each, "length");
    const PointRecord start = cases::Point(inputs.at("start"));
    const PointRecord end = cases::Point(inputs.at("end"));
    ASSERT_EQ(0, QREFSetArcByCoord(&start, &end, cases::Angle(inputs.at("start_azimuth")),
                                   cases::Angle(inputs.at("end_azimuth"))));
    ArcParams params = {};
    ASSERT_EQ(0, QREFGetArcParams(&params));
    ExpectLength(expected.at("radius"), params.radius, tolerance);
    ExpectLength(expected.at("length"), params.length, tolerance);
    ExpectAngle(each, expected.at("central_angle"), params.centralAngle);
    const Json& points = inputs.at("points");
    ASSERT_EQ(points.size(), expected.at("points").size());
    for (size_t i = 0; i < points.size(); ++i)
    {
        SCOPED_TRACE(points[i].at("id"));
        const PointRecord point = cases::Point(points[i]);
        ArcCalcResult result = {};
        ASSERT_EQ(0, QREFCalcArc(&point, &result));
        ExpectLength(expected.at("points")[i].at("along"), result.along, tolerance);
        ExpectLength(expected.at("points")[i].at("offset"), result.offset, tolerance);
    }
}

INSTANTIATE_TEST_SUITE_P(Published, ArcCase, testing::ValuesIn(cases::IdsOfKind("reference_arc")), cases::TestName);

class ArcParametersCase : public testing::TestWithParam<std::string>
{
protected:
    // Length, central angle and the long chord from the start to where the arc ends: the computed point at the end of
    // the arc by its centre is found at along = length, offset = 0.
    void ExpectParameters() const
    {
        ArcParams params = {};
        ASSERT_EQ(0, QREFGetArcParams(&params));
        const double tolerance = Tolerance(each, "length");
        ExpectLength(expected.at("length"), params.length, tolerance);
        ExpectAngle(each, expected.at("central_angle"), params.centralAngle);
        ExpectAngle(each, inputs.at("end_azimuth"), params.endAzimuth);
        // The chord leaves the start tangent by half the central angle.
        const double half = support::UnitsToRadians(cases::Angle(expected.at("central_angle"))) / 2.0;
        const double azimuth = support::UnitsToRadians(cases::Angle(inputs.at("start_azimuth"))) + half;
        const double chord = expected.at("long_chord");
        const PointRecord end =
            support::PlanPoint(start.northing + chord * std::cos(azimuth), start.easting + chord * std::sin(azimuth));
        ArcCalcResult result = {};
        ASSERT_EQ(0, QREFCalcArc(&end, &result));
        ExpectLength(expected.at("length"), result.along, 2.0 * tolerance);
        EXPECT_NEAR(0.0, result.offset, 2.0 * tolerance);
    }

    const Json& each = CaseById(GetParam());
    const Json& inputs = each.at("inputs");
    const Json& expected = each.at("expected");
    const PointRecord start = cases::Point(inputs.at("start"));
};

TEST_P(ArcParametersCase, AreReproducedByRadiusAndAzimuths)
{
    ASSERT_EQ(0, QREFSetArcByRadiusHAngle(&start, cases::Angle(inputs.at("start_azimuth")), inputs.at("radius"),
                                          cases::Angle(inputs.at("end_azimuth"))));
    ExpectParameters();
}

TEST_P(ArcParametersCase, AreReproducedByRadiusAndLength)
{
    const double radius = inputs.at("radius");
    const double length = radius * support::UnitsToRadians(cases::Angle(expected.at("central_angle")));
    ASSERT_EQ(0, QREFSetArcByRadiusArcLen(&start, cases::Angle(inputs.at("start_azimuth")), radius, length));
    ExpectParameters();
}

TEST_P(ArcParametersCase, AreReproducedByTheEndOfTheTangents)
{
    // The printed tangent length leads to the vertex and from there to the end.
    const double tangent = expected.at("tangent_length");
    const double startAzimuth = support::UnitsToRadians(cases::Angle(inputs.at("start_azimuth")));
    const double endAzimuth = support::UnitsToRadians(cases::Angle(inputs.at("end_azimuth")));
    const PointRecord end =
        support::PlanPoint(start.northing + tangent * (std::cos(startAzimuth) + std::cos(endAzimuth)),
                           start.easting + tangent * (std::sin(startAzimuth) + std::sin(endAzimuth)));
    ASSERT_EQ(0, QREFSetArcByCoord(&start, &end, cases::Angle(inputs.at("start_azimuth")),
                                   cases::Angle(inputs.at("end_azimuth"))));
    ArcParams params = {};
    ASSERT_EQ(0, QREFGetArcParams(&params));
    // The radius is the tangent length by tan(27.5 degrees): its tolerance, doubled.
    ExpectLength(inputs.at("radius"), params.radius, 2.0 * Tolerance(each, "length"));
}

INSTANTIATE_TEST_SUITE_P(Published, ArcParametersCase, testing::ValuesIn(cases::IdsOfKind("arc_parameters")),
                         cases::TestName);

// --- the remote elevation ---

class RemoteElevationCase : public testing::TestWithParam<std::string>
{
};

TEST_P(RemoteElevationCase, IsReproduced)
{
    const Json& each = CaseById(GetParam());
    const Json& base = each.at("inputs").at("base");
    const Json& sight = each.at("inputs").at("sight");
    const SightRecord record = {cases::Angle(base.at("horizontal_angle")), cases::ZenithOf(base),
                                base.at("slope_distance")};
    ASSERT_EQ(0, QREMSetBase(&record));
    PointRecord result = {};
    ASSERT_EQ(0, QREMCalc(cases::Angle(sight.at("horizontal_angle")), cases::ZenithOf(sight), &result));
    ExpectLength(each.at("expected").at("remote_elevation"), result.height, Tolerance(each, "length"));
    ExpectLength(each.at("expected").at("offset"), result.northing, Tolerance(each, "length"));
}

INSTANTIATE_TEST_SUITE_P(Published, RemoteElevationCase, testing::ValuesIn(cases::IdsOfKind("remote_elevation")),
                         cases::TestName);
