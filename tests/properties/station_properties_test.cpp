// Whatever the set-up: exact observations, rounded to a unit of angle only, give the true station back within what that
// rounding can do; a moved and turned world moves and turns the station; the order of the sights does not matter.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <vector>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "qstdlib.h"
#include "tests/properties/survey.h"
#include "tests/support/angle.h"

using survey::HALF_A_UNIT;
using survey::Place;
using survey::PlanPointAt;
using survey::Propagation;
using survey::RADIANS_PER_UNIT;
using survey::SetUp;

namespace {

// The same cases in every run; RC_PARAMS in the environment overrides.
const int REPRODUCIBLE = setenv("RC_PARAMS", "seed=20261121 max_success=1000", 0);

// On top of the propagated rounding: what the second order of it and the arithmetic on coordinates of kilometres can
// do.
constexpr double ARITHMETIC = 1e-6;

double Millimetres(int32_t from, int32_t to)
{
    return *rc::gen::inRange(from * 1000, to * 1000) / 1000.0;
}

double AnyAzimuth()
{
    return *rc::gen::inRange(0, ANGLE_FULL_CIRCLE) * RADIANS_PER_UNIT;
}

SetUp StationSomewhere()
{
    return {{Millimetres(-9000, 9000), Millimetres(-9000, 9000)}, AnyAzimuth(), {}};
}

// Targets in equal sectors around the station, each within a fifth of its sector: no gap reaches a half circle, so that
// the station lies within their polygon and far from the circle through any three of them that are spread; distances
// differ by a factor of five at most. Three steps through the sectors come first, for the closed solution from three.
SetUp SurroundedStation(size_t targets)
{
    SetUp s = StationSomewhere();
    const double sector = 2.0 * support::PI / static_cast<double>(targets);
    const double first = AnyAzimuth();
    const size_t step = targets / 3;
    std::vector<size_t> order = {0, step, 2 * step};
    for (size_t i = 0; i < targets; ++i)
    {
        if (std::find(order.begin(), order.end(), i) == order.end())
        {
            order.push_back(i);
        }
    }
    for (const size_t i : order)
    {
        const double within = *rc::gen::inRange(-200, 201) / 1000.0;
        const double azimuth = first + sector * (static_cast<double>(i) + within);
        s.targets.push_back(survey::Polar(s.station, azimuth, Millimetres(80, 400)));
    }
    return s;
}

ResectObservation Observed(const SetUp& s, size_t i, bool withDistance)
{
    ResectObservation o = {};
    o.target = PlanPointAt(s.targets[i]);
    o.horizontalAngle = s.Reading(i);
    o.zenithAngle = ANGLE_QUARTER_CIRCLE;
    o.slopeDistance = withDistance ? s.DistanceTo(i) : 0.0;
    o.horizontalDistance = o.slopeDistance;
    return o;
}

struct Resection
{
    int32_t status;
    ResectStation station;
    std::vector<ResectResidual> residuals;
};

Resection Resect(const std::vector<ResectObservation>& observations)
{
    Resection r = {0, {}, std::vector<ResectResidual>(observations.size())};
    r.status =
        QSTNMultiResect(static_cast<int16_t>(observations.size()), observations.data(), &r.station, r.residuals.data());
    return r;
}

// Distance of `actual` from `expected`, along each axis within its bound. Written so that NaN fails.
void RequirePlace(const Place& expected, const PointRecord& actual, double northingBound, double eastingBound)
{
    RC_ASSERT(std::fabs(actual.northing - expected.northing) <= northingBound + ARITHMETIC);
    RC_ASSERT(std::fabs(actual.easting - expected.easting) <= eastingBound + ARITHMETIC);
}

// The orientation within its bound in radians and, for how it is cut off or rounded, a unit.
void RequireOrientation(double expected, AngleUnit actual, double bound)
{
    const double off = std::remainder(expected - actual * RADIANS_PER_UNIT, 2.0 * support::PI);
    RC_ASSERT(std::fabs(off) <= bound + RADIANS_PER_UNIT + 1e-9);
}

// Moves and turns a place around the origin.
struct Motion
{
    Place shift;
    double turn;

    Place operator()(const Place& p) const
    {
        return {shift.northing + p.northing * std::cos(turn) - p.easting * std::sin(turn),
                shift.easting + p.northing * std::sin(turn) + p.easting * std::cos(turn)};
    }
};

Motion AnyMotion()
{
    return {{Millimetres(-90000, 90000), Millimetres(-90000, 90000)}, AnyAzimuth()};
}

TwoPointTarget TwoPointSight(const SetUp& s, size_t i, bool withDistance)
{
    TwoPointTarget t = {};
    t.known = PlanPointAt(s.targets[i]);
    t.horizontalAngle = s.Reading(i);
    t.zenithAngle = ANGLE_QUARTER_CIRCLE;
    t.horizontalDistance = withDistance ? s.DistanceTo(i) : 0.0;
    const Place local = survey::Polar({0.0, 0.0}, t.horizontalAngle * RADIANS_PER_UNIT, s.DistanceTo(i));
    t.localNorthing = local.northing;
    t.localEasting = local.easting;
    return t;
}

ThreePointTarget ThreePointSight(const SetUp& s, size_t i)
{
    return {PlanPointAt(s.targets[i]), s.Reading(i), ANGLE_QUARTER_CIRCLE, 0.0};
}

// Two targets seen under 30 to 150 degrees, in either order, at 50 to 300 m: neither one behind the other nor on the
// line between them.
SetUp StationBeforeALine()
{
    SetUp s = StationSomewhere();
    const double first = AnyAzimuth();
    const double between = *rc::gen::inRange(30000, 150000) / 1000.0 * support::PI / 180.0;
    const double side = *rc::gen::element(1.0, -1.0);
    s.targets.push_back(survey::Polar(s.station, first, Millimetres(50, 300)));
    s.targets.push_back(survey::Polar(s.station, first + side * between, Millimetres(50, 300)));
    return s;
}

} // namespace

RC_GTEST_PROP(MultiPointResection, GivesTheStationBackFromDirections, ())
{
    const SetUp s = SurroundedStation(*rc::gen::inRange<size_t>(3, 9));
    std::vector<ResectObservation> observations;
    std::vector<survey::Equation> equations;
    for (size_t i = 0; i < s.targets.size(); ++i)
    {
        observations.push_back(Observed(s, i, false));
        equations.push_back(DirectionEquation(s, i, survey::DIRECTION_SIGMA));
    }
    const Propagation propagation(equations);
    const std::vector<double> errors(equations.size(), HALF_A_UNIT);
    const Resection r = Resect(observations);
    RC_ASSERT(r.status == QSTD_OK);
    RequirePlace(s.station, r.station.position, propagation.Bound(0, errors), propagation.Bound(1, errors));
    RequireOrientation(s.orientation, r.station.orientation, propagation.Bound(2, errors));
}

RC_GTEST_PROP(MultiPointResection, GivesTheStationBackFromDirectionsAndSomeDistances, ())
{
    const SetUp s = SurroundedStation(*rc::gen::inRange<size_t>(3, 9));
    std::vector<ResectObservation> observations;
    std::vector<survey::Equation> equations;
    std::vector<double> errors;
    for (size_t i = 0; i < s.targets.size(); ++i)
    {
        const bool withDistance = i < 2 || *rc::gen::arbitrary<bool>();
        observations.push_back(Observed(s, i, withDistance));
        equations.push_back(DirectionEquation(s, i, survey::DIRECTION_SIGMA));
        errors.push_back(HALF_A_UNIT);
        if (withDistance)
        {
            equations.push_back(DistanceEquation(s, i, survey::DistanceSigma(s.DistanceTo(i))));
            errors.push_back(0.0);
        }
    }
    const Propagation propagation(equations);
    const Resection r = Resect(observations);
    RC_ASSERT(r.status == QSTD_OK);
    RequirePlace(s.station, r.station.position, propagation.Bound(0, errors), propagation.Bound(1, errors));
    RequireOrientation(s.orientation, r.station.orientation, propagation.Bound(2, errors));
}

RC_GTEST_PROP(MultiPointResection, DoesNotDependOnTheOrderOfTheSights, ())
{
    const SetUp s = SurroundedStation(*rc::gen::inRange<size_t>(4, 9));
    std::vector<ResectObservation> observations;
    for (size_t i = 0; i < s.targets.size(); ++i)
    {
        observations.push_back(Observed(s, i, true));
        observations.back().horizontalAngle += *rc::gen::inRange(-64, 65); // up to 4"
        observations.back().horizontalDistance += *rc::gen::inRange(-4000, 4001) / 1e6;
        observations.back().target.flags = 3;
    }
    std::vector<size_t> order(observations.size());
    for (size_t i = 0; i < order.size(); ++i)
    {
        order[i] = i;
    }
    for (size_t i = order.size(); i-- > 1;)
    {
        std::swap(order[i], order[*rc::gen::inRange<size_t>(0, i + 1)]);
    }
    std::vector<ResectObservation> shuffled;
    shuffled.reserve(order.size());
    for (const size_t i : order)
    {
        shuffled.push_back(observations[i]);
    }
    const Resection expected = Resect(observations);
    const Resection r = Resect(shuffled);
    RC_ASSERT(expected.status == QSTD_OK);
    RC_ASSERT(r.status == QSTD_OK);
    RequirePlace(survey::PlaceOf(expected.station.position), r.station.position, 0.0, 0.0);
    RC_ASSERT(std::fabs(r.station.northingPrecision / expected.station.northingPrecision - 1.0) <= 1e-4);
    RC_ASSERT(std::fabs(r.station.eastingPrecision / expected.station.eastingPrecision - 1.0) <= 1e-4);
    RC_ASSERT(std::abs(support::TurnFrom(expected.station.orientation, r.station.orientation)) <= 1);
    for (size_t i = 0; i < order.size(); ++i)
    {
        RC_ASSERT(std::abs(r.residuals[i].angleResidual - expected.residuals[order[i]].angleResidual) <= 1);
        RC_ASSERT(std::fabs(r.residuals[i].distanceResidual - expected.residuals[order[i]].distanceResidual) <= 1e-6);
    }
}

RC_GTEST_PROP(MultiPointResection, MovesAndTurnsWithItsTargets, ())
{
    const SetUp s = SurroundedStation(*rc::gen::inRange<size_t>(3, 9));
    const Motion motion = AnyMotion();
    std::vector<ResectObservation> observations;
    std::vector<ResectObservation> moved;
    for (size_t i = 0; i < s.targets.size(); ++i)
    {
        observations.push_back(Observed(s, i, i < 2));
        observations.back().horizontalAngle += *rc::gen::inRange(-64, 65);
        moved.push_back(observations.back());
        moved.back().target = PlanPointAt(motion(s.targets[i]));
    }
    const Resection before = Resect(observations);
    const Resection after = Resect(moved);
    RC_ASSERT(before.status == QSTD_OK);
    RC_ASSERT(after.status == QSTD_OK);
    RequirePlace(motion(survey::PlaceOf(before.station.position)), after.station.position, 0.0, 0.0);
    RequireOrientation(before.station.orientation * RADIANS_PER_UNIT + motion.turn, after.station.orientation, 0.0);
}

RC_GTEST_PROP(ThreePointResection, GivesTheStationBack, ())
{
    const SetUp s = SurroundedStation(3);
    std::vector<survey::Equation> equations;
    for (size_t i = 0; i < 3; ++i)
    {
        equations.push_back(DirectionEquation(s, i, survey::DIRECTION_SIGMA));
    }
    const Propagation propagation(equations);
    const std::vector<double> errors(3, HALF_A_UNIT);
    const ThreePointTarget targets[] = {ThreePointSight(s, 0), ThreePointSight(s, 1), ThreePointSight(s, 2)};
    TwoPointStation station = {};
    RC_ASSERT(QSTN3PtResect(&targets[0], &targets[1], &targets[2], &station) == QSTD_OK);
    RequirePlace(s.station, station.station, propagation.Bound(0, errors), propagation.Bound(1, errors));
    RequireOrientation(s.orientation, station.orientation, propagation.Bound(2, errors));
    RC_ASSERT(station.orientation >= -ANGLE_HALF_CIRCLE);
    RC_ASSERT(station.orientation < ANGLE_HALF_CIRCLE);
}

RC_GTEST_PROP(ThreePointResection, MovesAndTurnsWithItsTargets, ())
{
    const SetUp s = SurroundedStation(3);
    const Motion motion = AnyMotion();
    ThreePointTarget targets[] = {ThreePointSight(s, 0), ThreePointSight(s, 1), ThreePointSight(s, 2)};
    TwoPointStation before = {};
    RC_ASSERT(QSTN3PtResect(&targets[0], &targets[1], &targets[2], &before) == QSTD_OK);
    for (size_t i = 0; i < 3; ++i)
    {
        targets[i].known = PlanPointAt(motion(s.targets[i]));
    }
    TwoPointStation after = {};
    RC_ASSERT(QSTN3PtResect(&targets[0], &targets[1], &targets[2], &after) == QSTD_OK);
    RequirePlace(motion(survey::PlaceOf(before.station)), after.station, 0.0, 0.0);
    RequireOrientation(before.orientation * RADIANS_PER_UNIT + motion.turn, after.orientation, 0.0);
}

// The order of the three changes the two circles and not the station.
RC_GTEST_PROP(ThreePointResection, DoesNotDependOnTheOrderOfTheSights, ())
{
    const SetUp s = SurroundedStation(3);
    const ThreePointTarget targets[] = {ThreePointSight(s, 0), ThreePointSight(s, 1), ThreePointSight(s, 2)};
    TwoPointStation expected = {};
    RC_ASSERT(QSTN3PtResect(&targets[0], &targets[1], &targets[2], &expected) == QSTD_OK);
    const int orders[][3] = {{0, 2, 1}, {1, 0, 2}, {1, 2, 0}, {2, 0, 1}, {2, 1, 0}};
    for (const auto& order : orders)
    {
        TwoPointStation station = {};
        RC_ASSERT(QSTN3PtResect(&targets[order[0]], &targets[order[1]], &targets[order[2]], &station) == QSTD_OK);
        RequirePlace(survey::PlaceOf(expected.station), station.station, 0.0, 0.0);
        RC_ASSERT(std::abs(support::TurnFrom(expected.orientation, station.orientation)) <= 1);
    }
}

// A local point is off by D times half a unit; turn and scale of the fit by the two of them over the baseline B, which
// moves the station, D1 away from the first target, by D1 / B times as much again.
RC_GTEST_PROP(TwoPointResection, GivesTheStationBackFromTwoDistances, ())
{
    const SetUp s = StationBeforeALine();
    const TwoPointTarget first = TwoPointSight(s, 0, true);
    const TwoPointTarget second = TwoPointSight(s, 1, true);
    TwoPointStation station = {};
    RC_ASSERT(QSTN2PtResect(&first, &second, &station) == QSTD_OK);
    const double d1 = s.DistanceTo(0);
    const double d2 = s.DistanceTo(1);
    const double baseline = survey::Distance(s.targets[0], s.targets[1]);
    const double bound = HALF_A_UNIT * (d1 + d1 / baseline * (d1 + d2));
    RequirePlace(s.station, station.station, bound, bound);
    RequireOrientation(s.orientation, station.orientation, bound / d1 + HALF_A_UNIT);
    RC_ASSERT(std::fabs(station.baselineCheck) <= HALF_A_UNIT * (d1 + d2) + ARITHMETIC);
    RC_ASSERT(std::fabs(station.firstDistanceResidual) <= 2.0 * bound + ARITHMETIC);
    RC_ASSERT(std::fabs(station.secondDistanceResidual) <= 2.0 * bound + ARITHMETIC);
}

// The station lies on the circle around the measured target A; its direction from there is off by the angle between the
// sights, a unit at most, times 1 + (d / L) |cos gamma| / cos B. The baseline L is at least 1.15 d, so that the angle
// at B keeps away from a right angle.
RC_GTEST_PROP(TwoPointResection, GivesTheStationBackFromOneDistance, ())
{
    SetUp s = StationSomewhere();
    const double distance = Millimetres(50, 300);
    const double baseline = distance * (*rc::gen::inRange(1150, 5000) / 1000.0);
    s.targets.push_back(survey::Polar(s.station, AnyAzimuth(), distance));
    s.targets.push_back(survey::Polar(s.targets[0], AnyAzimuth(), baseline));
    const double gamma = survey::Azimuth(s.station, s.targets[1]) - survey::Azimuth(s.station, s.targets[0]);
    const double cosB = std::sqrt(1.0 - std::pow(distance / baseline * std::sin(gamma), 2.0));
    const double bound = distance * 2.0 * HALF_A_UNIT * (1.0 + distance / baseline * std::fabs(std::cos(gamma)) / cosB);

    const bool measuredIsSecond = *rc::gen::arbitrary<bool>();
    const TwoPointTarget measured = TwoPointSight(s, 0, true);
    const TwoPointTarget other = TwoPointSight(s, 1, false);
    TwoPointStation station = {};
    RC_ASSERT((measuredIsSecond ? QSTN2PtResect(&other, &measured, &station)
                                : QSTN2PtResect(&measured, &other, &station)) == QSTD_OK);
    RequirePlace(s.station, station.station, bound, bound);
    RequireOrientation(s.orientation, station.orientation,
                       bound / s.DistanceTo(measuredIsSecond ? 1 : 0) + HALF_A_UNIT);
    RC_ASSERT(std::fabs(station.firstDistanceResidual) <= ARITHMETIC);
    RC_ASSERT(std::fabs(station.secondDistanceResidual) <= ARITHMETIC);
}

RC_GTEST_PROP(TwoPointResection, MovesAndTurnsWithItsTargets, ())
{
    const SetUp s = StationBeforeALine();
    const Motion motion = AnyMotion();
    const bool bothMeasured = *rc::gen::arbitrary<bool>();
    // The longer baseline of the two may still be shorter than a distance: then measure the nearer target.
    TwoPointTarget first = TwoPointSight(s, 0, bothMeasured || s.DistanceTo(0) <= s.DistanceTo(1));
    TwoPointTarget second = TwoPointSight(s, 1, bothMeasured || s.DistanceTo(0) > s.DistanceTo(1));
    TwoPointStation before = {};
    const int32_t status = QSTN2PtResect(&first, &second, &before);
    first.known = PlanPointAt(motion(s.targets[0]));
    second.known = PlanPointAt(motion(s.targets[1]));
    TwoPointStation after = {};
    RC_PRE(status == QSTD_OK);
    RC_ASSERT(QSTN2PtResect(&first, &second, &after) == QSTD_OK);
    RequirePlace(motion(survey::PlaceOf(before.station)), after.station, 0.0, 0.0);
    RequireOrientation(before.orientation * RADIANS_PER_UNIT + motion.turn, after.orientation, 0.0);
}

// The second target is put on the line: along it off by the measured length, half a unit times both distances, across
// it by the rounding of the azimuth over the length. Its direction and distance are off by as much as the place.
RC_GTEST_PROP(KnownLine, GivesTheStationBack, ())
{
    const SetUp s = StationBeforeALine();
    const double d1 = s.DistanceTo(0);
    const double d2 = s.DistanceTo(1);
    const double length = survey::Distance(s.targets[0], s.targets[1]);
    const double displacement = HALF_A_UNIT * std::hypot(d1 + d2, length);
    const Propagation propagation(
        {DirectionEquation(s, 0, survey::DIRECTION_SIGMA), DistanceEquation(s, 0, survey::DistanceSigma(d1)),
         DirectionEquation(s, 1, survey::DIRECTION_SIGMA), DistanceEquation(s, 1, survey::DistanceSigma(d2))});
    const std::vector<double> errors = {HALF_A_UNIT, 0.0, HALF_A_UNIT + displacement / d2, displacement};

    const ResectObservation start = Observed(s, 0, true);
    const ResectObservation second = Observed(s, 1, true);
    const bool azimuthGiven = *rc::gen::arbitrary<bool>();
    const AngleUnit azimuth =
        azimuthGiven ? survey::ReadingOf(survey::Azimuth(s.targets[0], s.targets[1])) : AZIMUTH_NOT_GIVEN;
    ResectStation station = {};
    ResectResidual residuals[2] = {};
    RC_ASSERT(QSTNKnownLine(&start, &second, azimuth, &station, residuals) == QSTD_OK);
    RequirePlace(s.station, station.position, propagation.Bound(0, errors), propagation.Bound(1, errors));
    RequireOrientation(s.orientation, station.orientation, propagation.Bound(2, errors));
    RC_ASSERT(azimuthGiven || std::fabs(residuals[0].distanceResidual) <= HALF_A_UNIT * (d1 + d2) + ARITHMETIC);
}
