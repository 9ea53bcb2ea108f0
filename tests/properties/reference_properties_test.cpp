// A point that is laid out from a reference is found there again: from lines and arcs by along and offset, on planes
// from any station, in either face and azimuth reference.
#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "qstdlib.h"
#include "tests/support/angle.h"
#include "tests/support/random_geometry.h"
#include "tools/qstd/instrument/simulated_instrument.h"

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

constexpr double ROUNDING = 1e-8;

// An oriented instrument, in any face and reference.
qstd::SimulatedInstrument OrientedInstrument(const PointRecord& axis)
{
    qstd::SimulatedInstrument instrument;
    instrument.instrumentHeight = Millimetres(0, 2);
    instrument.station = Raised(axis, -instrument.instrumentHeight);
    instrument.isFaceTwo = *rc::gen::arbitrary<bool>();
    instrument.azimuthReference = *rc::gen::inRange(0, 3);
    return instrument;
}

} // namespace

// --- the line ---

RC_GTEST_PROP(ReferenceProperties, APointFromALineIsFoundAgain, ())
{
    const PointRecord first = AnyPoint(1000);
    const double direction = UnitsToRadians(AnyAzimuth());
    const double length = Millimetres(1, 500);
    const double grade = *rc::gen::inRange(-500, 500) / 1000.0;
    const PointRecord second = Raised(Moved(first, direction, length), grade * length);
    RC_ASSERT(QREFSetBaseLine(&first, &second) == 0);
    const double station = Millimetres(-500, 1000);
    const double offset = Millimetres(-500, 500);
    const double above = Millimetres(-50, 50);
    const PointRecord point = Raised(Moved(first, direction, station, offset), grade * station + above);
    ReferenceLineResult result;
    RC_ASSERT(QREFCalc(&point, &result) == 0);
    RC_ASSERT(IsNear(station, result.station, ROUNDING * 100.0)); // a base of 1 m, stretched a thousandfold
    RC_ASSERT(IsNear(offset, result.offset, ROUNDING * 100.0));
    RC_ASSERT(IsNear(above, result.heightDifference, ROUNDING * 100.0));
}

// --- the arc ---

namespace {

struct Arc
{
    PointRecord start;
    AngleUnit startAzimuth;
    double radius;  // without sign
    AngleUnit turn; // without sign, even, so that half the angle at the vertex is a whole unit
    bool isRight;

    double Sense() const
    {
        return isRight ? 1.0 : -1.0;
    }

    double Length() const
    {
        return radius * UnitsToRadians(turn);
    }

    double DirectionAfter(double turned) const
    {
        return UnitsToRadians(startAzimuth) + Sense() * turned;
    }

    // `right` to the right of the arc, `along` from its start; on the tangents before and beyond.
    PointRecord At(double along, double right) const
    {
        if (along < 0.0)
        {
            return Moved(start, DirectionAfter(0.0), along, right);
        }
        const double turned = std::min(along, Length()) / radius;
        const PointRecord centre = Moved(start, DirectionAfter(0.0), 0.0, Sense() * radius);
        const PointRecord onArc = Moved(centre, DirectionAfter(turned), 0.0, -Sense() * radius);
        return Moved(onArc, DirectionAfter(turned), std::max(0.0, along - Length()), right);
    }

    // By its ends, by its radius and azimuths, or by its radius and length.
    int32_t Define() const
    {
        const AngleUnit endAzimuth = support::OnCircle(startAzimuth + (isRight ? turn : -turn));
        const PointRecord end = At(Length(), 0.0);
        switch (*rc::gen::inRange(0, 3))
        {
        case 0:
            return QREFSetArcByCoord(&start, &end, startAzimuth, endAzimuth);
        case 1:
            return QREFSetArcByRadiusHAngle(&start, startAzimuth, Sense() * radius, endAzimuth);
        default:
            return QREFSetArcByRadiusArcLen(&start, startAzimuth, Sense() * radius, Length());
        }
    }
};

Arc AnyArc(AngleUnit leastTurn, AngleUnit greatestTurn)
{
    const AngleUnit turn = 2 * *rc::gen::inRange(leastTurn / 2, greatestTurn / 2);
    return {AnyPoint(1000), AnyAzimuth(), Millimetres(10, 500), turn, *rc::gen::arbitrary<bool>()};
}

void RequireFoundAgain(const Arc& arc, double along, double offset)
{
    RC_ASSERT(arc.Define() == 0);
    const PointRecord measured = arc.At(along, offset);
    ArcCalcResult result;
    RC_ASSERT(QREFCalcArc(&measured, &result) == 0);
    // A unit for the direction to the point, one for the central angle, at the distance from the centre or the radius.
    const double bound = 2.0 * UNIT * (2.0 * arc.radius + std::fabs(along) + std::fabs(offset)) + 1e-6;
    RC_ASSERT(IsNear(along, result.along, bound));
    RC_ASSERT(IsNear(offset, result.offset, bound));
}

// To the inside up to 0.9 of the radius, to the outside up to a kilometre.
double AnyOffset(const Arc& arc)
{
    const double inwards = 0.9 * arc.radius * *rc::gen::inRange(0, 1000) / 1000.0;
    return arc.Sense() * (*rc::gen::arbitrary<bool>() ? inwards : -Millimetres(0, 1000));
}

} // namespace

RC_GTEST_PROP(ReferenceProperties, APointBesideAnArcIsFoundAgain, ())
{
    const Arc arc = AnyArc(100000, ANGLE_HALF_CIRCLE);
    RequireFoundAgain(arc, arc.Length() * *rc::gen::inRange(1, 1000) / 1000.0, AnyOffset(arc));
}

RC_GTEST_PROP(ReferenceProperties, APointBeforeAnArcIsFoundAgain, ())
{
    const Arc arc = AnyArc(100000, ANGLE_HALF_CIRCLE);
    // At least 2 units from the start radial, at most 5 radii ahead.
    RequireFoundAgain(arc, -arc.radius * *rc::gen::inRange(1, 5000) / 1000.0, AnyOffset(arc));
}

RC_GTEST_PROP(ReferenceProperties, APointBeyondAnArcIsFoundAgain, ())
{
    Arc arc = AnyArc(100000, ANGLE_HALF_CIRCLE);
    if (!arc.isRight)
    {
        // A left arc loses points more than a half circle from its start.
        arc.turn /= 4;
        arc.turn *= 2;
    }
    RequireFoundAgain(arc, arc.Length() + arc.radius * *rc::gen::inRange(1, 5000) / 1000.0, AnyOffset(arc));
}

RC_GTEST_PROP(ReferenceProperties, AHalfCircleIsFoundAgain, ())
{
    Arc arc = AnyArc(100000, ANGLE_HALF_CIRCLE);
    arc.turn = ANGLE_HALF_CIRCLE;
    // Of a left one, a point exactly opposite to the start counts as behind it.
    RequireFoundAgain(arc, arc.Length() * *rc::gen::inRange(-500, 1000) / 1000.0, AnyOffset(arc));
}

RC_GTEST_PROP(ReferenceProperties, HeightsRunAlongAnArcByItsEnds, ())
{
    Arc arc = AnyArc(100000, ANGLE_HALF_CIRCLE - 100000);
    const double rise = Millimetres(-20, 20);
    const PointRecord end = Raised(arc.At(arc.Length(), 0.0), rise);
    const AngleUnit endAzimuth = support::OnCircle(arc.startAzimuth + (arc.isRight ? arc.turn : -arc.turn));
    RC_ASSERT(QREFSetArcByCoord(&arc.start, &end, arc.startAzimuth, endAzimuth) == 0);
    const double part = *rc::gen::inRange(1, 1000) / 1000.0;
    const double above = Millimetres(-5, 5);
    const PointRecord measured = Raised(arc.At(part * arc.Length(), 0.0), part * rise + above);
    ArcCalcResult result;
    RC_ASSERT(QREFCalcArc(&measured, &result) == 0);
    // Two units of the turn, in parts of it, of the rise.
    RC_ASSERT(IsNear(above, result.heightDifference, 2.0 / arc.turn * std::fabs(rise) + 1e-6));
}

// --- the planes ---

RC_GTEST_PROP(ReferenceProperties, APointOnATwoPointPlaneIsFoundAgain, ())
{
    const PointRecord first = AnyPoint(1000);
    const double trace = UnitsToRadians(AnyAzimuth());
    const PointRecord second = Moved(first, trace, Millimetres(1, 100));
    RC_ASSERT(QREFSet2PtBasePlane(&first, &second) == 0);
    const double along = Millimetres(-100, 100);
    const double above = Millimetres(-50, 50);
    const PointRecord target = Raised(Moved(first, trace, along), above);
    // The sight comes at 10 degrees or more to the plane, from either side, at a zenith angle of 30 to 150 degrees.
    const double incidence = support::Sign() * Degrees(10, 171);
    const double distance = Millimetres(5, 200);
    const double zenith = Degrees(30, 151);
    const PointRecord axis = Raised(Moved(target, trace + incidence, -distance), -distance / std::tan(zenith));
    const qstd::SimulatedInstrument instrument = OrientedInstrument(axis);
    const qstd::InstrumentConnection connection(instrument);
    const SightRecord sight = instrument.Sight(target, 0.0);
    PointRecord point;
    double foundAlong = 0.0;
    double foundAbove = 0.0;
    RC_ASSERT(QREFCalc2PtPlane(sight.horizontalAngle, sight.zenithAngle, &instrument.station,
                               instrument.instrumentHeight, &point, &foundAlong, &foundAbove) == 0);
    // Half a unit each: the azimuth moves the point along by 1 / sin(incidence) of it, and so the height by sqrt(3) of
    // that; the zenith angle moves the height by 4.
    const double bound = 4.0 * UNIT * distance / std::fabs(std::sin(incidence)) + 1e-7;
    RC_ASSERT(IsNear(target, point, bound));
    RC_ASSERT(IsNear(along, foundAlong, bound));
    RC_ASSERT(IsNear(above, foundAbove, bound));
}

namespace {

struct Vector
{
    double n;
    double e;
    double h;
};

Vector operator*(double factor, const Vector& v)
{
    return {factor * v.n, factor * v.e, factor * v.h};
}

PointRecord operator+(const PointRecord& point, const Vector& v)
{
    return {point.northing + v.n, point.easting + v.e, point.height + v.h, point.flags};
}

// North, east and height as the first, second and third axis.
Vector Product(const Vector& a, const Vector& b)
{
    return {a.e * b.h - a.h * b.e, a.h * b.n - a.n * b.h, a.n * b.e - a.e * b.n};
}

// Two unit vectors at a right angle: a line of slope, and one across it turned around it.
struct Frame
{
    Vector baseline;
    Vector across;
};

Frame AnyFrame()
{
    const double azimuth = UnitsToRadians(AnyAzimuth());
    const double slope = Degrees(-85, 86);
    const double roll = Degrees(0, 360);
    const Vector baseline = {std::cos(slope) * std::cos(azimuth), std::cos(slope) * std::sin(azimuth), std::sin(slope)};
    const Vector level = {-std::sin(azimuth), std::cos(azimuth), 0.0};
    const Vector third = Product(baseline, level);
    return {baseline,
            {std::cos(roll) * level.n + std::sin(roll) * third.n, std::cos(roll) * level.e + std::sin(roll) * third.e,
             std::cos(roll) * level.h + std::sin(roll) * third.h}};
}

} // namespace

RC_GTEST_PROP(ReferenceProperties, APointOnAThreePointPlaneIsFoundAgain, ())
{
    const PointRecord first = AnyPoint(1000);
    const Frame frame = AnyFrame();
    const PointRecord second = first + Millimetres(5, 100) * frame.baseline;
    const PointRecord third =
        first + Millimetres(-50, 50) * frame.baseline + support::Sign() * Millimetres(5, 100) * frame.across;
    RC_ASSERT(QREFSet3PtBasePlane(&first, &second, &third) == 0);
    const double along = Millimetres(-100, 100);
    const double across = Millimetres(-100, 100);
    const PointRecord target = first + along * frame.baseline + across * frame.across;
    // From the side to which baseline times across points, or from the other: 5 to 200 off the plane, within 60 degrees
    // of the normal.
    const double side = support::Sign();
    const double off = Millimetres(5, 200);
    const double aside = 1.2 * off;
    const Vector normal = Product(frame.baseline, frame.across);
    const PointRecord axis = target + side * off * normal +
                             aside * *rc::gen::inRange(-1000, 1001) / 1000.0 * frame.baseline +
                             aside * *rc::gen::inRange(-1000, 1001) / 1000.0 * frame.across;
    const qstd::SimulatedInstrument instrument = OrientedInstrument(axis);
    const qstd::InstrumentConnection connection(instrument);
    const SightRecord sight = instrument.Sight(target, 0.0);
    PointRecord point;
    double foundAlong = 0.0;
    double foundAcross = 0.0;
    RC_ASSERT(QREFCalc3PtPlane(sight.horizontalAngle, sight.zenithAngle, &instrument.station,
                               instrument.instrumentHeight, &point, &foundAlong, &foundAcross) == 0);
    // Half a unit in both angles, over the slope distance, lengthened by its angle to the normal.
    const double bound = UNIT * sight.distance * sight.distance / off + 1e-6;
    RC_ASSERT(IsNear(target, point, bound));
    RC_ASSERT(IsNear(along, foundAlong, bound));
    // The normal that faces the instrument times the baseline is across from the one side, and its opposite from the
    // other.
    RC_ASSERT(IsNear(side * across, foundAcross, bound));
}
