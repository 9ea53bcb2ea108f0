// Published cases of station set-up: resections, free stations, heights.
#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "station/height.h"
#include "tests/cases/case_file.h"
#include "tests/cases/plan_adjustment.h"
#include "tests/support/angle.h"
#include "tests/support/fake_instrument.h"
#include "tests/support/record.h"

using cases::CaseById;
using cases::Json;
using cases::Tolerance;

namespace {

// Turned by no more than `units` from the expected orientation, which for a resection may lie outside the circle.
void ExpectOrientation(double expectedUnits, AngleUnit actual, double units)
{
    EXPECT_LE(std::fabs(std::remainder(actual - expectedUnits, ANGLE_FULL_CIRCLE)), units)
        << "orientation " << support::UnitsToDegrees(actual) << " for " << support::UnitsToDegrees(expectedUnits);
}

// The position that our own calculation gave, printed to 5 decimals.
void ExpectComputedPosition(const Json& computed, const PointRecord& actual, double tolerance)
{
    EXPECT_NEAR(computed.at("northing").get<double>(), actual.northing, tolerance);
    EXPECT_NEAR(computed.at("easting").get<double>(), actual.easting, tolerance);
}

// Half a unit in the fifth decimal, and a hair for the binary form.
constexpr double FIVE_DECIMALS = 5.1e-6;

// The station by the second road, from the readings as printed or as the library gets them.
cases::PlanStation AdjustAsPrinted(const Json& each, bool rounded)
{
    std::vector<cases::PlanSight> sights;
    for (const Json& target : each.at("inputs").at("targets"))
    {
        const PointRecord point = cases::Point(target.at("point"));
        const Json& direction = target.at("direction");
        sights.push_back({point.northing, point.easting,
                          rounded ? cases::Angle(direction) : cases::ExactUnits(direction),
                          cases::DistancesOf(target).horizontal});
    }
    const Json& published = each.at("expected").at("station");
    return cases::AdjustPlan(sights, published.at("northing"), published.at("easting"));
}

bool ReadingsAreExact(const Json& each)
{
    return each.at("units").at("angle") == "degrees-minutes-seconds"; // whole seconds are whole units
}

} // namespace

// --- three-point resection ---

class ThreePointResectionCase : public testing::TestWithParam<std::string>
{
protected:
    TwoPointStation Resect() const
    {
        std::vector<ThreePointTarget> targets;
        for (const Json& target : each.at("inputs").at("targets"))
        {
            targets.push_back({cases::Point(target.at("point")), cases::Angle(target.at("direction")),
                               cases::ZenithOf(target), target.value("target_height", 0.0)});
        }
        EXPECT_EQ(3U, targets.size());
        TwoPointStation station = {};
        EXPECT_EQ(0, QSTN3PtResect(targets.data(), &targets[1], &targets[2], &station));
        return station;
    }

    cases::PlanStation SecondRoad(bool rounded) const
    {
        return AdjustAsPrinted(each, rounded);
    }

    const Json& each = CaseById(GetParam());
    const Json& expected = each.at("expected");
};

TEST_P(ThreePointResectionCase, AgreesWithThePublishedStation)
{
    const TwoPointStation result = Resect();
    cases::ExpectPoint(
        {{"northing", expected.at("station").at("northing")}, {"easting", expected.at("station").at("easting")}},
        result.station, each.at("tolerance"));
    // The library gives the height of the axis.
    const bool hasHeight = expected.contains("axis_height");
    EXPECT_EQ(hasHeight ? 3 : 1, result.station.flags);
    if (hasHeight)
    {
        EXPECT_NEAR(expected.at("axis_height").get<double>(), result.station.height, Tolerance(each, "height"));
    }
    else
    {
        EXPECT_EQ(0.0, result.station.height);
    }
}

TEST_P(ThreePointResectionCase, IsPrintedAsTheSecondRoadGivesIt)
{
    const cases::PlanStation exact = SecondRoad(false);
    const Json& computed = expected.at("computed");
    EXPECT_NEAR(computed.at("northing").get<double>(), exact.northing, FIVE_DECIMALS);
    EXPECT_NEAR(computed.at("easting").get<double>(), exact.easting, FIVE_DECIMALS);
    const double orientation = cases::ExactUnits(computed.at("orientation"));
    EXPECT_LE(std::fabs(std::remainder(exact.orientationUnits - orientation, ANGLE_FULL_CIRCLE)), 1e-3);
}

TEST_P(ThreePointResectionCase, MeetsTheSecondRoad)
{
    const TwoPointStation result = Resect();
    const cases::PlanStation second = SecondRoad(true);
    EXPECT_NEAR(second.northing, result.station.northing, 1e-7);
    EXPECT_NEAR(second.easting, result.station.easting, 1e-7);
    ExpectOrientation(second.orientationUnits, result.orientation, 0.51); // a rounded azimuth less a reading
}

TEST_P(ThreePointResectionCase, AgreesWithTheComputedStation)
{
    const TwoPointStation result = Resect();
    const Json& computed = expected.at("computed");
    // From readings in gon, each rounded by up to 1/32": under a millimetre over the 2 km to the targets, and one unit.
    ExpectComputedPosition(computed, result.station, ReadingsAreExact(each) ? FIVE_DECIMALS : 0.001);
    ExpectOrientation(cases::ExactUnits(computed.at("orientation")), result.orientation,
                      ReadingsAreExact(each) ? 0.51 : 1.51);
}

INSTANTIATE_TEST_SUITE_P(Published, ThreePointResectionCase, testing::ValuesIn(cases::IdsOfKind("resection_3pt")),
                         cases::TestName);

// --- two-point resection ---

class TwoPointResectionCase : public testing::TestWithParam<std::string>
{
protected:
    TwoPointStation Resect() const
    {
        std::vector<TwoPointTarget> targets;
        for (const Json& target : each.at("inputs").at("targets"))
        {
            const cases::SightDistances distances = cases::DistancesOf(target);
            TwoPointTarget record = {};
            record.known = cases::Point(target.at("point"));
            record.localNorthing = target.at("local_northing");
            record.localEasting = target.at("local_easting");
            record.horizontalAngle = cases::Angle(target.at("direction"));
            record.zenithAngle = cases::ZenithOf(target);
            record.horizontalDistance = distances.horizontal;
            record.verticalDifference = distances.vertical;
            targets.push_back(record);
        }
        EXPECT_EQ(2U, targets.size());
        TwoPointStation station = {};
        EXPECT_EQ(0, QSTN2PtResect(targets.data(), &targets[1], &station));
        return station;
    }

    const Json& each = CaseById(GetParam());
    const Json& expected = each.at("expected");
};

TEST_P(TwoPointResectionCase, AgreesWithThePublishedStation)
{
    const TwoPointStation result = Resect();
    cases::ExpectPoint(expected.at("station"), result.station, each.at("tolerance"));
    EXPECT_EQ(1, result.station.flags);
    EXPECT_EQ(0.0, result.station.height);
    EXPECT_EQ(0.0, result.heightDifference);
}

TEST_P(TwoPointResectionCase, AgreesWithTheComputedStation)
{
    const TwoPointStation result = Resect();
    const Json& computed = expected.at("computed");
    // Local coordinates are given to 6 decimals, which shows at most in the sixth of the position.
    const double tolerance = std::min(FIVE_DECIMALS + 1e-6, Tolerance(each, "computed_length"));
    ExpectComputedPosition(computed, result.station, tolerance);
    ExpectOrientation(cases::ExactUnits(computed.at("orientation")), result.orientation, 0.51);
    // Checks printed to 6 decimals.
    EXPECT_NEAR(computed.at("baseline_check").get<double>(), result.baselineCheck, 1.5e-6);
    EXPECT_NEAR(computed.at("distance_residuals")[0].get<double>(), result.firstDistanceResidual, 1.5e-6);
    EXPECT_NEAR(computed.at("distance_residuals")[1].get<double>(), result.secondDistanceResidual, 1.5e-6);
}

INSTANTIATE_TEST_SUITE_P(Published, TwoPointResectionCase, testing::ValuesIn(cases::IdsOfKind("resection_2pt")),
                         cases::TestName);

// --- free station ---

class FreeStationCase : public testing::TestWithParam<std::string>
{
protected:
    FreeStationCase()
    {
        for (const Json& target : targets)
        {
            const cases::SightDistances distances = cases::DistancesOf(target);
            observations.push_back({cases::Point(target.at("point")), cases::Angle(target.at("direction")),
                                    cases::ZenithOf(target), distances.slope, distances.horizontal, distances.vertical,
                                    target.value("target_height", 0.0)});
        }
        residuals.resize(observations.size());
        status =
            QSTNMultiResect(static_cast<int16_t>(observations.size()), observations.data(), &station, residuals.data());
    }

    cases::PlanStation SecondRoad(bool rounded) const
    {
        return AdjustAsPrinted(each, rounded);
    }

    // Station heights, one a target, from the sights with distance or, without any, by zenith angle.
    std::vector<double> TargetHeights() const
    {
        std::vector<double> heights;
        for (const ResectObservation& sight : observations)
        {
            const double distance = std::hypot(sight.target.northing - station.position.northing,
                                               sight.target.easting - station.position.easting);
            const double vertical = sight.slopeDistance != 0.0
                                        ? sight.verticalDifference
                                        : distance / std::tan(support::UnitsToRadians(sight.zenithAngle));
            if ((sight.target.flags & POINT_HAS_HEIGHT) != 0)
            {
                heights.push_back(sight.target.height + sight.reflectorHeight - vertical);
            }
        }
        return heights;
    }

    const Json& each = CaseById(GetParam());
    const Json& targets = each.at("inputs").at("targets");
    const Json& published = each.at("expected").at("station");
    const Json& computed = each.at("expected").at("computed_with_library_weights");
    std::vector<ResectObservation> observations;
    std::vector<ResectResidual> residuals;
    ResectStation station = {};
    int32_t status = 1;
};

TEST_P(FreeStationCase, AgreesWithThePublishedStation)
{
    ASSERT_EQ(0, status);
    cases::ExpectPoint(published, station.position, each.at("tolerance"));
    const Json& expected = each.at("expected");
    if (expected.contains("orientation"))
    {
        ExpectOrientation(cases::ExactUnits(expected.at("orientation")), station.orientation,
                          Tolerance(each, "orientation_arcsec") * support::UNITS_PER_SECOND);
    }
    if (expected.contains("published_sigma") && expected.at("published_sigma").contains("adjusted_distances"))
    {
        const Json& distances = expected.at("published_sigma").at("adjusted_distances");
        ASSERT_EQ(observations.size(), distances.size());
        for (size_t i = 0; i < distances.size(); ++i)
        {
            const PointRecord& target = observations[i].target;
            EXPECT_NEAR(
                distances[i].get<double>(),
                std::hypot(target.northing - station.position.northing, target.easting - station.position.easting),
                Tolerance(each, "length"));
        }
    }
}

TEST_P(FreeStationCase, AgreesWithTheComputedStation)
{
    ASSERT_EQ(0, status);
    ExpectComputedPosition(computed, station.position, Tolerance(each, "computed_length"));
    // Cut off to the unit; from readings in gon, each rounded by up to half a unit besides.
    ExpectOrientation(cases::ExactUnits(computed.at("orientation")), station.orientation,
                      ReadingsAreExact(each) ? 1.01 : 1.51);
}

TEST_P(FreeStationCase, AgreesWithTheComputedPrecisions)
{
    ASSERT_EQ(0, status);
    if (GetParam() == "free-station-carosio-B")
    {
        // Its directions fit to some hundredths of a second, so that their rounding to 1/16" raises the precisions.
        // The second road covers both.
        EXPECT_GT(station.northingPrecision, computed.at("sigma_northing").get<double>());
        EXPECT_GT(station.eastingPrecision, computed.at("sigma_easting").get<double>());
        return;
    }
    // Printed to three digits; from readings in gon, each rounded by up to half a unit besides.
    const double northing = computed.at("sigma_northing");
    const double easting = computed.at("sigma_easting");
    EXPECT_NEAR(northing, station.northingPrecision, 0.02 * northing);
    EXPECT_NEAR(easting, station.eastingPrecision, 0.02 * easting);
}

TEST_P(FreeStationCase, IsPrintedAsTheSecondRoadGivesIt)
{
    const cases::PlanStation exact = SecondRoad(false);
    EXPECT_NEAR(computed.at("northing").get<double>(), exact.northing, FIVE_DECIMALS);
    EXPECT_NEAR(computed.at("easting").get<double>(), exact.easting, FIVE_DECIMALS);
    const double orientation = cases::ExactUnits(computed.at("orientation"));
    EXPECT_LE(std::fabs(std::remainder(exact.orientationUnits - orientation, ANGLE_FULL_CIRCLE)), 1e-3);
    EXPECT_NEAR(computed.at("sigma_northing").get<double>(), exact.northingSigma, 0.005 * exact.northingSigma);
    EXPECT_NEAR(computed.at("sigma_easting").get<double>(), exact.eastingSigma, 0.005 * exact.eastingSigma);
    EXPECT_EQ(computed.at("redundancy").get<int>(), exact.redundancy);
}

TEST_P(FreeStationCase, MeetsTheSecondRoad)
{
    ASSERT_EQ(0, status);
    const cases::PlanStation second = SecondRoad(true);
    // The library stops when an iteration changes the square sum by less than 0.1 %.
    EXPECT_NEAR(second.northing, station.position.northing, 1e-5);
    EXPECT_NEAR(second.easting, station.position.easting, 1e-5);
    EXPECT_NEAR(second.northingSigma, station.northingPrecision, 0.001 * second.northingSigma);
    EXPECT_NEAR(second.eastingSigma, station.eastingPrecision, 0.001 * second.eastingSigma);
    ExpectOrientation(second.orientationUnits, station.orientation, 1.01); // cut off
    for (size_t i = 0; i < residuals.size(); ++i)
    {
        SCOPED_TRACE(targets[i].at("point").at("id"));
        EXPECT_NEAR(second.directionResidualUnits[i], residuals[i].angleResidual, 1.01); // cut off
        const bool reported = cases::HasHeight(targets[i].at("point"));
        EXPECT_NEAR(reported ? second.distanceResiduals[i] : 0.0, residuals[i].distanceResidual, 1e-5);
    }
}

TEST_P(FreeStationCase, AveragesTheHeights)
{
    ASSERT_EQ(0, status);
    const std::vector<double> heights = TargetHeights();
    if (heights.empty())
    {
        EXPECT_EQ(1, station.position.flags);
        EXPECT_EQ(0.0, station.position.height);
        EXPECT_EQ(0.0, station.heightSpread);
        return;
    }
    double sum = 0.0;
    for (const double height : heights)
    {
        sum += height;
    }
    const auto [lowest, highest] = std::minmax_element(heights.begin(), heights.end());
    EXPECT_EQ(3, station.position.flags);
    EXPECT_NEAR(sum / static_cast<double>(heights.size()), station.position.height, 1e-9);
    EXPECT_NEAR(*highest - *lowest, station.heightSpread, 1e-9);
    // The published height of a station without distances has no tolerance of its own: readings to 0.3" over 50 m.
    EXPECT_NEAR(published.at("height").get<double>(), station.position.height, 0.001);
    for (size_t i = 0; i < heights.size(); ++i)
    {
        const bool measured = observations[i].slopeDistance != 0.0;
        EXPECT_NEAR(measured ? heights[i] - station.position.height : 0.0, residuals[i].heightResidual, 1e-9);
    }
    if (computed.contains("height"))
    {
        EXPECT_NEAR(computed.at("height").get<double>(), station.position.height, FIVE_DECIMALS);
        EXPECT_NEAR(computed.at("height_spread").get<double>(), station.heightSpread, FIVE_DECIMALS);
    }
}

INSTANTIATE_TEST_SUITE_P(Published, FreeStationCase, testing::ValuesIn(cases::IdsOfKind("free_station")),
                         cases::TestName);

// --- height from a benchmark ---

class BenchmarkCase : public testing::TestWithParam<std::string>
{
};

TEST_P(BenchmarkCase, IsReproduced)
{
    const Json& each = CaseById(GetParam());
    const Json& inputs = each.at("inputs");
    const double axis = QSTNSeaLevelCalcByBM(inputs.at("benchmark_height"), inputs.at("reflector_height"),
                                             inputs.at("vertical_difference"));
    EXPECT_NEAR(each.at("expected").at("axis_height").get<double>(), axis, Tolerance(each, "height"));
    EXPECT_NEAR(each.at("expected").at("station_height").get<double>(),
                axis - inputs.at("instrument_height").get<double>(), Tolerance(each, "height"));
}

INSTANTIATE_TEST_SUITE_P(Published, BenchmarkCase, testing::ValuesIn(cases::IdsOfKind("benchmark_height")),
                         cases::TestName);

// --- height by zenith angle ---

class HeightByZenithCase : public testing::TestWithParam<std::string>
{
protected:
    HeightByZenithCase()
    {
        const Json& settings = inputs.at("settings");
        instrument.curvatureSwitch = settings.at("curvature_refraction") == "on" ? 1 : 0;
        instrument.refractionSelector = settings.value("refraction_selector", 0);
        instrument.scaleFactor = settings.at("scale");
        instrument.seaLevelSwitch = settings.at("sea_level") == "on" ? 1 : 0;
    }

    void ExpectAxisHeight(double actual) const
    {
        const Json& expected = each.at("expected");
        EXPECT_NEAR(expected.at("axis_height").get<double>(), actual, Tolerance(each, "height"));
        EXPECT_NEAR(expected.at("station_height").get<double>(), actual - inputs.at("instrument_height").get<double>(),
                    Tolerance(each, "height"));
    }

    // The target of the case and two plan points as far from the station, a quarter and a half circle to the right.
    std::vector<PointRecord> Targets() const
    {
        const double dN = target.northing - station.northing;
        const double dE = target.easting - station.easting;
        return {target, support::PlanPoint(station.northing - dE, station.easting + dN),
                support::PlanPoint(station.northing - dN, station.easting - dE)};
    }

    support::FakeInstrument instrument;
    const Json& each = CaseById(GetParam());
    const Json& inputs = each.at("inputs");
    const PointRecord station = cases::Point(inputs.at("station"));
    const PointRecord target = cases::Point(inputs.at("target"));
    const AngleUnit zenith = cases::Angle(inputs.at("zenith"));
    const double reflectorHeight = inputs.at("target_height");
};

TEST_P(HeightByZenithCase, IsReproduced)
{
    ExpectAxisHeight(
        qstdlib::StationHeightByZenith(station.northing, station.easting, &target, zenith, reflectorHeight));
}

TEST_P(HeightByZenithCase, IsReproducedByTheThreePointResection)
{
    std::vector<ThreePointTarget> sights;
    for (const PointRecord& point : Targets())
    {
        const auto quarters = static_cast<AngleUnit>(sights.size());
        sights.push_back({point, quarters * ANGLE_QUARTER_CIRCLE, zenith, reflectorHeight});
    }
    TwoPointStation result = {};
    ASSERT_EQ(0, QSTN3PtResect(sights.data(), &sights[1], &sights[2], &result));
    EXPECT_NEAR(station.northing, result.station.northing, 1e-6);
    EXPECT_NEAR(station.easting, result.station.easting, 1e-6);
    EXPECT_EQ(3, result.station.flags);
    ExpectAxisHeight(result.station.height);
}

TEST_P(HeightByZenithCase, IsReproducedByTheMultiPointResection)
{
    std::vector<ResectObservation> sights;
    for (const PointRecord& point : Targets())
    {
        const auto quarters = static_cast<AngleUnit>(sights.size());
        sights.push_back({point, quarters * ANGLE_QUARTER_CIRCLE, zenith, 0.0, 0.0, 0.0, reflectorHeight});
    }
    ResectStation result = {};
    std::vector<ResectResidual> residuals(sights.size());
    ASSERT_EQ(0, QSTNMultiResect(3, sights.data(), &result, residuals.data()));
    EXPECT_NEAR(station.northing, result.position.northing, 1e-6);
    EXPECT_NEAR(station.easting, result.position.easting, 1e-6);
    EXPECT_EQ(3, result.position.flags);
    ExpectAxisHeight(result.position.height);
}

INSTANTIATE_TEST_SUITE_P(Published, HeightByZenithCase, testing::ValuesIn(cases::IdsOfKind("height_by_zenith")),
                         cases::TestName);
