// Corners, edges and columns are found from what a simulated instrument reads to them, and come back with the sight
// that it would make to them.
#include <cmath>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "qstdlib.h"
#include "tests/support/angle.h"
#include "tests/support/random_geometry.h"
#include "tools/qstd/instrument/simulated_instrument.h"

using qstd::SimulatedInstrument;
using support::AnyAzimuth;
using support::AnyPoint;
using support::Degrees;
using support::IsNear;
using support::Millimetres;
using support::Moved;
using support::Raised;
using support::UNIT;
using support::UnitsToRadians;

namespace {

constexpr double ROUNDING = 1e-7;
constexpr double NOT_READ = 1e300;

SimulatedInstrument AnyInstrument()
{
    SimulatedInstrument instrument;
    instrument.station = AnyPoint(1000);
    instrument.instrumentHeight = Millimetres(0, 2);
    instrument.isFaceTwo = *rc::gen::arbitrary<bool>();
    instrument.azimuthReference = *rc::gen::inRange(0, 3);
    return instrument;
}

// The observation that came with a point is the instrument's to that point.
void RequireSightTo(const SimulatedInstrument& instrument, const PointRecord& point, double targetHeight,
                    const SightRecord& actual)
{
    const SightRecord expected = instrument.Sight(point, targetHeight);
    RC_ASSERT(expected.horizontalAngle == actual.horizontalAngle);
    RC_ASSERT(expected.zenithAngle == actual.zenithAngle);
    RC_ASSERT(expected.distance == actual.distance);
}

// A point on a face, up to 30 from the corner and up to 3 below or above.
PointRecord OnFace(const PointRecord& corner, double direction, double from, double to)
{
    const double along = from + (to - from) * *rc::gen::inRange(0, 1001) / 1000.0;
    return Raised(Moved(corner, direction, along), Millimetres(-3, 3));
}

} // namespace

RC_GTEST_PROP(MeasureProperties, ACornerIsFoundFromThreePoints, ())
{
    SimulatedInstrument instrument = AnyInstrument();
    instrument.orientation = AnyAzimuth();
    const qstd::InstrumentConnection connection(instrument);
    const PointRecord corner = AnyPoint(1000);
    const double face = UnitsToRadians(AnyAzimuth());
    const PointRecord first = OnFace(corner, face, 5.0, 30.0);
    const PointRecord second = OnFace(corner, face, 1.0, 4.0);
    const PointRecord third = OnFace(corner, face + support::Sign() * support::PI / 2.0, 0.1, 30.0);
    const double targetHeight = Millimetres(0, 2);
    SightRecord observation;
    PointRecord found;
    RC_ASSERT(QCalcOfsCorner3Pt(&first, &second, &third, NOT_READ, &observation, &found, targetHeight) == 0);
    PointRecord expected = corner;
    expected.height = third.height;
    RC_ASSERT(IsNear(expected, found, ROUNDING));
    RequireSightTo(instrument, found, targetHeight, observation);
}

RC_GTEST_PROP(MeasureProperties, ACornerIsFoundFromFourPoints, ())
{
    SimulatedInstrument instrument = AnyInstrument();
    instrument.orientation = AnyAzimuth();
    const qstd::InstrumentConnection connection(instrument);
    const PointRecord corner = AnyPoint(1000);
    const double face1 = UnitsToRadians(AnyAzimuth());
    const double face2 = face1 + support::Sign() * Degrees(20, 161);
    const PointRecord points[] = {OnFace(corner, face1, 5.0, 30.0), OnFace(corner, face1, 1.0, 4.0),
                                  OnFace(corner, face2, 5.0, 30.0), OnFace(corner, face2, 1.0, 4.0)};
    const double targetHeight = Millimetres(0, 2);
    SightRecord observation;
    PointRecord found;
    RC_ASSERT(QCalcOfsCorner4Pt(&points[0], &points[1], &points[2], &points[3], NOT_READ, &observation, &found,
                                targetHeight) == 0);
    PointRecord expected = corner;
    expected.height = points[3].height;
    RC_ASSERT(IsNear(expected, found, ROUNDING));
    RequireSightTo(instrument, found, targetHeight, observation);
}

RC_GTEST_PROP(MeasureProperties, APointOfAnEdgeIsFoundUnderASight, ())
{
    const SimulatedInstrument instrument = AnyInstrument();
    const qstd::InstrumentConnection connection(instrument);
    // The sight meets the edge's plane 5 to 200 away at 10 degrees or more.
    const PointRecord axis = Raised(instrument.station, instrument.instrumentHeight);
    const double direction = UnitsToRadians(AnyAzimuth());
    const double distance = Millimetres(5, 200);
    const PointRecord target = Raised(Moved(axis, direction, distance), distance * Millimetres(-1, 1));
    const double incidence = support::Sign() * Degrees(10, 171);
    const double grade = Millimetres(-2, 2);
    const auto onEdge = [&](double along) {
        return Raised(Moved(target, direction + incidence, along), along * grade);
    };
    const double from = Millimetres(-50, 50);
    const PointRecord first = onEdge(from);
    const PointRecord second = onEdge(from + support::Sign() * Millimetres(1, 50));
    const SightRecord sight = instrument.Sight(target, 0.0);
    const double targetHeight = Millimetres(0, 2);
    SightRecord observation;
    PointRecord found;
    RC_ASSERT(QCalcOfsLineHA(&first, &second, sight.horizontalAngle, sight.zenithAngle, &instrument.station,
                             instrument.instrumentHeight, &observation, &found, targetHeight) == 0);
    // Half a unit of azimuth moves the point along, and along the grade.
    const double bound = 2.0 * UNIT * distance / std::fabs(std::sin(incidence)) + ROUNDING;
    RC_ASSERT(IsNear(target, found, bound));
    RequireSightTo(instrument, found, targetHeight, observation);
}

RC_GTEST_PROP(MeasureProperties, AColumnIsFoundFromFaceAndEdges, ())
{
    const SimulatedInstrument instrument = AnyInstrument();
    const qstd::InstrumentConnection connection(instrument);
    const double radius = Millimetres(1, 20) / 10.0;
    const double distance = radius * *rc::gen::inRange(1200, 50000) / 1000.0;
    const double direction = UnitsToRadians(AnyAzimuth());
    const PointRecord axis = Raised(instrument.station, instrument.instrumentHeight);
    const PointRecord centre = Raised(Moved(axis, direction, distance), Millimetres(-1, 1));

    // The tangents, and a sight to the near face up to 0.7 of the half opening aside.
    const double halfOpening = std::asin(radius / distance);
    const double tangent = distance * std::cos(halfOpening);
    const double aside = 0.7 * halfOpening * *rc::gen::inRange(-1000, 1001) / 1000.0;
    const double toFace =
        distance * std::cos(aside) - std::sqrt(std::pow(radius, 2.0) - std::pow(distance * std::sin(aside), 2.0));
    const SightRecord left = instrument.Sight(Moved(axis, direction - halfOpening, tangent), 0.1);
    const SightRecord right = instrument.Sight(Moved(axis, direction + halfOpening, tangent), -0.1);
    const PointRecord face = Raised(Moved(axis, direction + aside, toFace), 0.2);
    ObservationRecord faceSighting;
    RC_ASSERT(instrument.Observe(face, 0.0, &faceSighting));
    const SightRecord faceAngles = instrument.Sight(face, 0.0);
    faceSighting.horizontalAngle = faceAngles.horizontalAngle;
    faceSighting.zenithAngle = faceAngles.zenithAngle;

    const bool swapped = *rc::gen::arbitrary<bool>();
    const SightRecord& edge1 = swapped ? right : left;
    const SightRecord& edge2 = swapped ? left : right;
    const double targetHeight = Millimetres(0, 2);
    SightRecord observation;
    PointRecord found = {0.0, 0.0, centre.height, 0};
    double foundRadius = 0.0;
    RC_ASSERT(QCalcOfsCircle(&faceSighting, targetHeight, edge1.horizontalAngle, edge1.zenithAngle,
                             edge2.horizontalAngle, edge2.zenithAngle, &instrument.station, NOT_READ, &observation,
                             &found, &foundRadius) == 0);
    // Half a unit in each of three directions. The distance of the centre is that of the face over cos(aside) - root,
    // which is 1 - 1 / 1.2 at least, with a root of 0.7 sin(half opening) at least: some ten times the distance each.
    const double bound = 30.0 * distance * UNIT + ROUNDING;
    RC_ASSERT(IsNear(centre, found, bound));
    RC_ASSERT(IsNear(radius, foundRadius, bound));
    RequireSightTo(instrument, found, targetHeight, observation);
}

RC_GTEST_PROP(MeasureProperties, AHeightAboveABaseIsFound, ())
{
    SimulatedInstrument instrument = AnyInstrument();
    instrument.orientation = AnyAzimuth();
    const PointRecord axis = Raised(instrument.station, instrument.instrumentHeight);
    const double distance = Millimetres(5, 200);
    const double direction = UnitsToRadians(AnyAzimuth());
    const PointRecord prism = Raised(Moved(axis, direction, distance), distance * Millimetres(-1, 1));
    const SightRecord base = instrument.Sight(prism, 0.0);
    RC_ASSERT(QREMSetBase(&base) == 0);
    // In the plane through the prism that faces the instrument, which is where heights and offsets are counted: the
    // height at the base's distance.
    instrument.isFaceTwo = *rc::gen::arbitrary<bool>();
    const double turned = Degrees(-80, 80);
    const double above = distance * Millimetres(-2, 2);
    const PointRecord cable = Raised(Moved(prism, direction, 0.0), above);
    const SightRecord straight = instrument.Sight(cable, 0.0);
    const PointRecord aside = Moved(axis, direction + turned, distance);
    const SightRecord side = instrument.Sight(aside, 0.0);
    PointRecord result;
    RC_ASSERT(QREMCalc(side.horizontalAngle, straight.zenithAngle, &result) == 0);
    // Half a unit of two zenith angles, at a slope of 3 at most; half a unit of two directions at up to 80 degrees.
    RC_ASSERT(IsNear(above, result.height, 2.0 * UNIT * distance * 10.0 + ROUNDING));
    RC_ASSERT(IsNear(distance * std::tan(turned), result.northing, UNIT * distance * 50.0 + ROUNDING));
}
