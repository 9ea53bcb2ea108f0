#include "trials.h"

#include <cmath>
#include <utility>
#include <vector>

namespace target {

namespace {

constexpr double INSTRUMENT_HEIGHT = 1.55;

void CoordToAngDist(const Functions& library, Survey& survey, Meter& meter)
{
    const PointRecord from = survey.Point();
    const PointRecord to = survey.PointFrom(from, 10.0, 300.0);
    AngDistRecord result{};
    meter.Require(meter.Count([&] { return library.QCogoCoordToAngDist(&from, &to, &result); }) == QSTD_OK);
}

void AngDistToCoord(const Functions& library, Survey& survey, Meter& meter)
{
    const PointRecord from = survey.Point();
    AngDistRecord observation{};
    observation.azimuth = survey.Angle(0.0, 360.0);
    observation.horizontalDistance = survey.Length(10.0, 300.0);
    observation.heightDifference = survey.Length(-10.0, 10.0);
    PointRecord result{};
    meter.Require(meter.Count([&] { return library.QCogoAngDistToCoord(&from, &observation, &result); }) == QSTD_OK);
}

void OffsetToCoord(const Functions& library, Survey& survey, Meter& meter)
{
    const PointRecord start = survey.Point();
    const PointRecord end = survey.PointFrom(start, 20.0, 300.0);
    const double chainage = survey.Length(0.0, 250.0);
    const double offset = survey.Length(-20.0, 20.0);
    PointRecord result{};
    meter.Require(meter.Count([&] { return library.QCogoOffsetToCoord(&start, &end, chainage, offset, &result); }) ==
                  QSTD_OK);
}

void CalcSlopeByDist(const Functions& library, Survey& survey, Meter& meter)
{
    const double horizontal = survey.Length(1.0, 300.0);
    const double vertical = survey.Length(0.1, 20.0);
    SlopeResult slope{};
    meter.Count([&] {
        library.QCogoCalcSlopeByDist(horizontal, vertical, &slope);
        return 0;
    });
    meter.Require(slope.ratio > 0.0);
}

void CalcArea(const Functions& library, Survey& survey, Meter& meter)
{
    const PointRecord centre = survey.Point();
    const int32_t count = 4 + static_cast<int32_t>(survey.Between(0.0, 9.0));
    std::vector<PointRecord> corners;
    for (int32_t i = 0; i < count; ++i)
    {
        corners.push_back(survey.PointFrom(centre, 20.0, 60.0, 360.0 * i / count, 360.0 * (i + 1) / count));
    }
    meter.Require(meter.Count([&] { return library.QCogoCalcArea(corners.data(), count); }) > 0.0);
}

void CalcCrossLine(const Functions& library, Survey& survey, Meter& meter)
{
    const LineDef line1 = survey.Line();
    const LineDef line2 = survey.Line();
    PointRecord result{};
    meter.Require(meter.Count([&] { return library.QCogoCalcCrossLine(&line1, &line2, &result); }) == QSTD_OK);
}

void CalcCrossCircle(const Functions& library, Survey& survey, Meter& meter)
{
    const PointRecord centre1 = survey.Point();
    const PointRecord centre2 = survey.PointFrom(centre1, 40.0, 100.0);
    const double radius1 = survey.Length(60.0, 90.0);
    const double radius2 = survey.Length(60.0, 80.0);
    PointRecord pair[2] = {};
    meter.Require(
        meter.Count([&] { return library.QCogoCalcCrossCircle(&centre1, radius1, &centre2, radius2, pair); }) == 2);
}

void CalcCrossLineCircle(const Functions& library, Survey& survey, Meter& meter)
{
    const LineDef line = survey.Line();
    const PointRecord centre = survey.PointFrom(line.first, 5.0, 40.0);
    const double radius = survey.Length(50.0, 120.0);
    PointRecord pair[2] = {};
    meter.Require(meter.Count([&] { return library.QCogoCalcCrossLineCircle(&line, &centre, radius, pair); }) == 2);
}

void CalcPtLine(const Functions& library, Survey& survey, Meter& meter)
{
    const LineDef line = survey.Line();
    const PointRecord point = survey.PointFrom(line.first, 5.0, 150.0);
    PointRecord foot{};
    meter.Require(meter.Count([&] { return library.QCogoCalcPtLine(&line, &point, &foot); }) == QSTD_OK);
}

void CalcTransLine(const Functions& library, Survey& survey, Meter& meter)
{
    const LineDef line = survey.Line();
    const AngleUnit rotation = survey.Angle(-90.0, 90.0);
    const double offset = survey.Length(-20.0, 20.0);
    LineDef result{};
    meter.Require(meter.Count([&] { return library.QCogoCalcTransLine(&line, rotation, offset, &result); }) == QSTD_OK);
}

SightRecord RemoteBase(Survey& survey)
{
    return {survey.Angle(0.0, 360.0), survey.Angle(80.0, 100.0), survey.Length(10.0, 200.0)};
}

void REMSetBase(const Functions& library, Survey& survey, Meter& meter)
{
    const SightRecord base = RemoteBase(survey);
    meter.Require(meter.Count([&] { return library.QREMSetBase(&base); }) == QSTD_OK);
}

void REMCalc(const Functions& library, Survey& survey, Meter& meter)
{
    const SightRecord base = RemoteBase(survey);
    library.QREMSetBase(&base);
    const AngleUnit horizontal = base.horizontalAngle + survey.Angle(0.0, 2.0);
    const AngleUnit zenith = survey.Angle(45.0, 85.0);
    PointRecord result{};
    meter.Require(meter.Count([&] { return library.QREMCalc(horizontal, zenith, &result); }) == QSTD_OK);
}

void RDMCalcByCoord(const Functions& library, Survey& survey, Meter& meter)
{
    const PointRecord first = survey.Point();
    const PointRecord second = survey.PointFrom(first, 10.0, 300.0);
    RemoteDistanceResult result{};
    meter.Require(meter.Count([&] { return library.QRDMCalcByCoord(&first, &second, &result); }) == QSTD_OK);
}

void Calc2PtTarget(const Functions& library, Survey& survey, Meter& meter)
{
    const PointRecord first = survey.Point();
    PointRecord second = survey.PointFrom(first, 0.05, 0.3);
    second.height = first.height - survey.Length(0.3, 1.0);
    const double spacing = std::hypot(std::hypot(second.northing - first.northing, second.easting - first.easting),
                                      second.height - first.height) +
                           survey.Between(-0.002, 0.002);
    const double extension = survey.Length(0.2, 1.5);
    double measured = 0.0;
    PointRecord result{};
    meter.Require(meter.Count([&] {
        return library.QCalc2PtTarget(&first, &second, spacing, extension, &measured, &result);
    }) == QSTD_OK);
}

struct Slope
{
    double height1;
    double distance1;
    double height2;
    double distance2;
};

Slope DesignSlope(Survey& survey)
{
    return {survey.Length(100.0, 110.0), survey.Length(0.0, 5.0), survey.Length(112.0, 120.0),
            survey.Length(20.0, 60.0)};
}

void BRSetSlope(const Functions& library, Survey& survey, Meter& meter)
{
    const Slope slope = DesignSlope(survey);
    meter.Require(meter.Count([&] {
        return library.QBRSetSlope(slope.height1, slope.distance1, slope.height2, slope.distance2);
    }) == QSTD_OK);
}

void BRCalc(const Functions& library, Survey& survey, Meter& meter)
{
    const Slope slope = DesignSlope(survey);
    library.QBRSetSlope(slope.height1, slope.distance1, slope.height2, slope.distance2);
    const PointRecord base = survey.Point();
    const PointRecord point = survey.PointFrom(base, 5.0, 50.0);
    SlopeCheckResult result{};
    meter.Require(meter.Count([&] { return library.QBRCalc(&base, &point, &result); }) == QSTD_OK);
}

// Two points of each of two walls that meet in a corner, about 30 m from the instrument.
struct Walls
{
    PointRecord first;
    PointRecord second;
    PointRecord third;
    PointRecord fourth;
};

Walls MeasuredWalls(Survey& survey)
{
    const PointRecord corner = survey.PointFrom(survey.Point(), 10.0, 60.0);
    const double direction = survey.Between(0.0, 270.0);
    return {survey.PointFrom(corner, 8.0, 12.0, direction, direction + 1.0),
            survey.PointFrom(corner, 2.0, 4.0, direction, direction + 1.0),
            survey.PointFrom(corner, 2.0, 4.0, direction + 88.0, direction + 90.0),
            survey.PointFrom(corner, 8.0, 12.0, direction + 88.0, direction + 90.0)};
}

void CalcOfsCorner3Pt(const Functions& library, Survey& survey, Meter& meter)
{
    const Walls walls = MeasuredWalls(survey);
    SightRecord observation{};
    PointRecord corner{};
    meter.Require(meter.Count([&] {
        return library.QCalcOfsCorner3Pt(&walls.first, &walls.second, &walls.third, 0.0, &observation, &corner, 0.0);
    }) == QSTD_OK);
}

void CalcOfsCorner4Pt(const Functions& library, Survey& survey, Meter& meter)
{
    const Walls walls = MeasuredWalls(survey);
    SightRecord observation{};
    PointRecord corner{};
    meter.Require(meter.Count([&] {
        return library.QCalcOfsCorner4Pt(&walls.first, &walls.second, &walls.third, &walls.fourth, 0.0, &observation,
                                         &corner, 0.0);
    }) == QSTD_OK);
}

// A station, two points some 30 m before it, and a sight between them.
struct Front
{
    PointRecord station;
    PointRecord first;
    PointRecord second;
    AngleUnit horizontalAngle;
    AngleUnit zenithAngle;
};

Front SightedFront(Survey& survey)
{
    const PointRecord station = survey.Point();
    const double direction = survey.Between(0.0, 300.0);
    return {station, survey.PointFrom(station, 20.0, 40.0, direction, direction + 5.0),
            survey.PointFrom(station, 20.0, 40.0, direction + 35.0, direction + 40.0),
            survey.Angle(direction + 8.0, direction + 30.0), survey.Angle(80.0, 100.0)};
}

void CalcOfsLineHA(const Functions& library, Survey& survey, Meter& meter)
{
    const Front front = SightedFront(survey);
    SightRecord observation{};
    PointRecord point{};
    meter.Require(meter.Count([&] {
        return library.QCalcOfsLineHA(&front.first, &front.second, front.horizontalAngle, front.zenithAngle,
                                      &front.station, INSTRUMENT_HEIGHT, &observation, &point, 0.0);
    }) == QSTD_OK);
}

void CalcOfsCircle(const Functions& library, Survey& survey, Meter& meter)
{
    const PointRecord station = survey.Point();
    const double direction = survey.Between(10.0, 350.0);
    const double half = survey.Between(0.5, 5.0);
    ObservationRecord face{};
    face.horizontalAngle = survey.Angle(direction, direction + 0.1);
    face.zenithAngle = survey.Angle(85.0, 95.0);
    face.secondDistance = survey.Length(10.0, 60.0);
    const AngleUnit left = survey.Angle(direction - half, direction - half + 0.1);
    const AngleUnit right = survey.Angle(direction + half, direction + half + 0.1);
    SightRecord observation{};
    PointRecord centre{};
    double radius = 0.0;
    meter.Require(meter.Count([&] {
        return library.QCalcOfsCircle(&face, 0.0, left, face.zenithAngle, right, face.zenithAngle, &station, 0.0,
                                      &observation, &centre, &radius);
    }) == QSTD_OK);
}

void REFSetBaseLine(const Functions& library, Survey& survey, Meter& meter)
{
    const PointRecord first = survey.Point();
    const PointRecord second = survey.PointFrom(first, 20.0, 300.0);
    meter.Require(meter.Count([&] { return library.QREFSetBaseLine(&first, &second); }) == QSTD_OK);
}

void REFCalc(const Functions& library, Survey& survey, Meter& meter)
{
    const PointRecord first = survey.Point();
    const PointRecord second = survey.PointFrom(first, 20.0, 300.0);
    library.QREFSetBaseLine(&first, &second);
    const PointRecord point = survey.PointFrom(first, 5.0, 200.0);
    ReferenceLineResult result{};
    meter.Require(meter.Count([&] { return library.QREFCalc(&point, &result); }) == QSTD_OK);
}

struct Arc
{
    PointRecord start;
    AngleUnit startAzimuth;
    AngleUnit endAzimuth;
    double radius;
    double length;
};

Arc DesignArc(Survey& survey)
{
    const double direction = survey.Between(0.0, 270.0);
    return {survey.Point(), survey.Angle(direction, direction + 10.0), survey.Angle(direction + 40.0, direction + 80.0),
            survey.Length(30.0, 300.0), survey.Length(20.0, 80.0)};
}

void REFSetArcByCoord(const Functions& library, Survey& survey, Meter& meter)
{
    const Arc arc = DesignArc(survey);
    const double direction = Radians(arc.startAzimuth) * 57.29577951308232;
    const PointRecord end = survey.PointFrom(arc.start, 20.0, 100.0, direction + 10.0, direction + 25.0);
    meter.Require(meter.Count([&] {
        return library.QREFSetArcByCoord(&arc.start, &end, arc.startAzimuth, arc.endAzimuth);
    }) == QSTD_OK);
}

void REFSetArcByRadiusHAngle(const Functions& library, Survey& survey, Meter& meter)
{
    const Arc arc = DesignArc(survey);
    meter.Require(meter.Count([&] {
        return library.QREFSetArcByRadiusHAngle(&arc.start, arc.startAzimuth, arc.radius, arc.endAzimuth);
    }) == QSTD_OK);
}

void REFSetArcByRadiusArcLen(const Functions& library, Survey& survey, Meter& meter)
{
    const Arc arc = DesignArc(survey);
    meter.Require(meter.Count([&] {
        return library.QREFSetArcByRadiusArcLen(&arc.start, arc.startAzimuth, arc.radius, arc.length);
    }) == QSTD_OK);
}

void REFGetArcParams(const Functions& library, Survey& survey, Meter& meter)
{
    const Arc arc = DesignArc(survey);
    library.QREFSetArcByRadiusArcLen(&arc.start, arc.startAzimuth, arc.radius, arc.length);
    ArcParams params{};
    meter.Require(meter.Count([&] { return library.QREFGetArcParams(&params); }) == QSTD_OK);
}

void REFCalcArc(const Functions& library, Survey& survey, Meter& meter)
{
    const Arc arc = DesignArc(survey);
    library.QREFSetArcByRadiusArcLen(&arc.start, arc.startAzimuth, arc.radius, arc.length);
    const PointRecord point = survey.PointFrom(arc.start, 5.0, 60.0);
    ArcCalcResult result{};
    meter.Require(meter.Count([&] { return library.QREFCalcArc(&point, &result); }) == QSTD_OK);
}

void REFSet2PtBasePlane(const Functions& library, Survey& survey, Meter& meter)
{
    const Front front = SightedFront(survey);
    meter.Require(meter.Count([&] { return library.QREFSet2PtBasePlane(&front.first, &front.second); }) == QSTD_OK);
}

void REFCalc2PtPlane(const Functions& library, Survey& survey, Meter& meter)
{
    const Front front = SightedFront(survey);
    library.QREFSet2PtBasePlane(&front.first, &front.second);
    PointRecord point{};
    double along = 0.0;
    double height = 0.0;
    meter.Require(meter.Count([&] {
        return library.QREFCalc2PtPlane(front.horizontalAngle, front.zenithAngle, &front.station, INSTRUMENT_HEIGHT,
                                        &point, &along, &height);
    }) == QSTD_OK);
}

PointRecord AboveFront(const Front& front, Survey& survey)
{
    PointRecord third = survey.PointFrom(front.first, 1.0, 3.0);
    third.height += survey.Length(4.0, 8.0);
    return third;
}

void REFSet3PtBasePlane(const Functions& library, Survey& survey, Meter& meter)
{
    const Front front = SightedFront(survey);
    const PointRecord third = AboveFront(front, survey);
    meter.Require(meter.Count([&] { return library.QREFSet3PtBasePlane(&front.first, &front.second, &third); }) ==
                  QSTD_OK);
}

void REFCalc3PtPlane(const Functions& library, Survey& survey, Meter& meter)
{
    const Front front = SightedFront(survey);
    const PointRecord third = AboveFront(front, survey);
    library.QREFSet3PtBasePlane(&front.first, &front.second, &third);
    PointRecord point{};
    double along = 0.0;
    double across = 0.0;
    meter.Require(meter.Count([&] {
        return library.QREFCalc3PtPlane(front.horizontalAngle, front.zenithAngle, &front.station, INSTRUMENT_HEIGHT,
                                        &point, &along, &across);
    }) == QSTD_OK);
}

void SeaLevelCalcByBM(const Functions& library, Survey& survey, Meter& meter)
{
    const double benchmark = survey.Length(100.0, 120.0);
    const double reflector = survey.Length(1.2, 2.0);
    const double vertical = survey.Length(-10.0, 10.0);
    meter.Require(meter.Count([&] { return library.QSTNSeaLevelCalcByBM(benchmark, reflector, vertical); }) > 0.0);
}

} // namespace

std::vector<ResectObservation> Sights(Survey& survey, int16_t count)
{
    const PointRecord station = survey.Point();
    const AngleUnit orientation = survey.Angle(0.0, 360.0);
    std::vector<ResectObservation> sights;
    for (int16_t i = 0; i < count; ++i)
    {
        const double lowest = 360.0 * i / count;
        const PointRecord target = survey.PointFrom(station, 50.0, 300.0, lowest, lowest + 240.0 / count);
        sights.push_back(survey.Sight(station, orientation, target));
    }
    return sights;
}

namespace {

TwoPointTarget WithLocalCoordinates(const ResectObservation& sight)
{
    const double reading = Radians(sight.horizontalAngle);
    return {sight.target,
            sight.horizontalDistance * std::cos(reading),
            sight.horizontalDistance * std::sin(reading),
            {0.0, 0.0},
            sight.horizontalAngle,
            sight.zenithAngle,
            sight.horizontalDistance,
            sight.verticalDifference,
            sight.reflectorHeight};
}

void STN2PtResect(const Functions& library, Survey& survey, Meter& meter)
{
    const std::vector<ResectObservation> sights = Sights(survey, 3);
    const TwoPointTarget first = WithLocalCoordinates(sights[0]);
    const TwoPointTarget second = WithLocalCoordinates(sights[1]);
    TwoPointStation station{};
    meter.Require(meter.Count([&] { return library.QSTN2PtResect(&first, &second, &station); }) == QSTD_OK);
}

// Seen under 60 degrees or more; the distance to the nearer target does not exceed the baseline then.
void STN2PtResectOneDistance(const Functions& library, Survey& survey, Meter& meter)
{
    std::vector<ResectObservation> sights = Sights(survey, 2);
    if (sights[0].horizontalDistance > sights[1].horizontalDistance)
    {
        std::swap(sights[0], sights[1]);
    }
    const TwoPointTarget first = WithLocalCoordinates(sights[0]);
    TwoPointTarget second = WithLocalCoordinates(sights[1]);
    second.horizontalDistance = 0.0;
    TwoPointStation station{};
    meter.Require(meter.Count([&] { return library.QSTN2PtResect(&first, &second, &station); }) == QSTD_OK);
}

void STN3PtResect(const Functions& library, Survey& survey, Meter& meter)
{
    const std::vector<ResectObservation> sights = Sights(survey, 3);
    ThreePointTarget targets[3] = {};
    for (size_t i = 0; i < 3; ++i)
    {
        targets[i] = {sights[i].target, sights[i].horizontalAngle, sights[i].zenithAngle, sights[i].reflectorHeight};
    }
    TwoPointStation station{};
    meter.Require(meter.Count([&] { return library.QSTN3PtResect(&targets[0], &targets[1], &targets[2], &station); }) ==
                  QSTD_OK);
}

template <int16_t COUNT>
void STNMultiResect(const Functions& library, Survey& survey, Meter& meter)
{
    const std::vector<ResectObservation> sights = Sights(survey, COUNT);
    ResectStation station{};
    std::vector<ResectResidual> residuals(COUNT);
    meter.Require(meter.Count([&] {
        return library.QSTNMultiResect(COUNT, sights.data(), &station, residuals.data());
    }) == QSTD_OK);
}

void STNKnownLine(const Functions& library, Survey& survey, Meter& meter)
{
    const std::vector<ResectObservation> sights = Sights(survey, 3);
    ResectStation station{};
    ResectResidual residuals[2] = {};
    meter.Require(meter.Count([&] {
        return library.QSTNKnownLine(&sights[0], &sights[1], AZIMUTH_NOT_GIVEN, &station, residuals);
    }) == QSTD_OK);
}

} // namespace

const Trial TRIALS[] = {
    {"QCogoCoordToAngDist", CoordToAngDist},
    {"QCogoAngDistToCoord", AngDistToCoord},
    {"QCogoOffsetToCoord", OffsetToCoord},
    {"QCogoCalcSlopeByDist", CalcSlopeByDist},
    {"QCogoCalcArea", CalcArea},
    {"QCogoCalcCrossLine", CalcCrossLine},
    {"QCogoCalcCrossCircle", CalcCrossCircle},
    {"QCogoCalcCrossLineCircle", CalcCrossLineCircle},
    {"QCogoCalcPtLine", CalcPtLine},
    {"QCogoCalcTransLine", CalcTransLine},
    {"QREMSetBase", REMSetBase},
    {"QREMCalc", REMCalc},
    {"QRDMCalcByCoord", RDMCalcByCoord},
    {"QCalc2PtTarget", Calc2PtTarget},
    {"QBRSetSlope", BRSetSlope},
    {"QBRCalc", BRCalc},
    {"QCalcOfsCorner3Pt", CalcOfsCorner3Pt},
    {"QCalcOfsCorner4Pt", CalcOfsCorner4Pt},
    {"QCalcOfsLineHA", CalcOfsLineHA},
    {"QCalcOfsCircle", CalcOfsCircle},
    {"QREFSetBaseLine", REFSetBaseLine},
    {"QREFCalc", REFCalc},
    {"QREFSetArcByCoord", REFSetArcByCoord},
    {"QREFSetArcByRadiusHAngle", REFSetArcByRadiusHAngle},
    {"QREFSetArcByRadiusArcLen", REFSetArcByRadiusArcLen},
    {"QREFGetArcParams", REFGetArcParams},
    {"QREFCalcArc", REFCalcArc},
    {"QREFSet2PtBasePlane", REFSet2PtBasePlane},
    {"QREFCalc2PtPlane", REFCalc2PtPlane},
    {"QREFSet3PtBasePlane", REFSet3PtBasePlane},
    {"QREFCalc3PtPlane", REFCalc3PtPlane},
    {"QSTNSeaLevelCalcByBM", SeaLevelCalcByBM},
    {"QSTN2PtResect", STN2PtResect},
    {"QSTN2PtResect/one", STN2PtResectOneDistance},
    {"QSTN3PtResect", STN3PtResect},
    {"QSTNKnownLine", STNKnownLine},
    {"QSTNMultiResect/3", STNMultiResect<3>},
    {"QSTNMultiResect/10", STNMultiResect<10>},
    {"QSTNMultiResect/30", STNMultiResect<30>},
    {"QSTNMultiResect/100", STNMultiResect<100>},
};

const size_t TRIAL_COUNT = sizeof TRIALS / sizeof TRIALS[0];

} // namespace target
