// digest [--full] [--divide N] [--plain-math] [--shake SEED]
//
// Calls every exported function with many deterministic inputs and prints a line each: the number of calls, how many of
// them succeeded, and a hash of every bit of every result. Two builds of the library agree when they print the same.
// --full prints each call's results too; --divide makes a slow machine do one Nth of the calls. --plain-math gives the
// library mathematics functions that are the same everywhere; --shake moves the results of these functions by one unit
// in the last place, up or down, so that two listings show what their last bit decides. 0 shakes nothing.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <qstdlib.h>

#include "inputs.h"
#include "math_watch.h"
#include "results.h"

namespace {

using digest::Inputs;
using digest::RandomBits;
using digest::Results;
using digest::SetUp;
using digest::Sight;

// Outputs start from a value that the library must overwrite or leave alone.
constexpr double UNTOUCHED = 123456.789;
constexpr AngleUnit UNTOUCHED_ANGLE = -987654321;
constexpr PointRecord UNTOUCHED_POINT = {UNTOUCHED, -UNTOUCHED, UNTOUCHED, 0x5A5A};

void InverseCall(Inputs& inputs, Results& results)
{
    const PointRecord from = inputs.Point();
    const PointRecord to = inputs.Random().OneIn(16) ? from : inputs.Point();
    AngDistRecord result = {UNTOUCHED_ANGLE, UNTOUCHED_ANGLE, UNTOUCHED, UNTOUCHED, UNTOUCHED};
    results.AddStatus(QCogoCoordToAngDist(&from, &to, &result));
    results.AddAngle(result.azimuth);
    results.AddAngle(result.zenith);
    results.Add(result.slopeDistance);
    results.Add(result.horizontalDistance);
    results.Add(result.heightDifference);
}

void ForwardCall(Inputs& inputs, Results& results)
{
    PointRecord from = inputs.Point();
    AngDistRecord observation{};
    observation.azimuth = inputs.Angle();
    observation.zenith = inputs.Angle();
    observation.slopeDistance = inputs.Distance();
    observation.horizontalDistance = inputs.Distance();
    observation.heightDifference = inputs.Distance();
    PointRecord separate = UNTOUCHED_POINT;
    PointRecord* const result = inputs.Random().OneIn(4) ? &from : &separate;
    results.AddStatus(QCogoAngDistToCoord(&from, &observation, result));
    results.Add(*result);
}

void OffsetCall(Inputs& inputs, Results& results)
{
    PointRecord start = inputs.Point();
    PointRecord end = inputs.Random().OneIn(16) ? start : inputs.Point();
    const double chainage = inputs.Distance();
    const double offset = inputs.Distance();
    PointRecord separate = UNTOUCHED_POINT;
    PointRecord* const choices[] = {&start, &end, &separate, &separate};
    PointRecord* const result = choices[inputs.Random().Below(4)];
    results.AddStatus(QCogoOffsetToCoord(&start, &end, chainage, offset, result));
    results.Add(*result);
}

void SlopeCall(Inputs& inputs, Results& results)
{
    const double horizontal = inputs.Distance();
    const double vertical = inputs.Distance();
    SlopeResult slope = {UNTOUCHED, UNTOUCHED};
    QCogoCalcSlopeByDist(horizontal, vertical, &slope);
    results.AddStatus(QSTD_OK);
    results.Add(slope.grade);
    results.Add(slope.ratio);
}

void RemoteDistanceCall(Inputs& inputs, Results& results)
{
    const PointRecord first = inputs.Point();
    const PointRecord second = inputs.Random().OneIn(16) ? first : inputs.Point();
    RemoteDistanceResult result = {UNTOUCHED, UNTOUCHED, UNTOUCHED, UNTOUCHED_ANGLE};
    results.AddStatus(QRDMCalcByCoord(&first, &second, &result));
    results.Add(result.slopeDistance);
    results.Add(result.horizontalDistance);
    results.Add(result.heightDifference);
    results.AddAngle(result.azimuth);
}

void TwoPointTargetCall(Inputs& inputs, Results& results)
{
    PointRecord first = inputs.Point();
    PointRecord second = inputs.Random().OneIn(16) ? first : inputs.Point();
    const double spacing = inputs.Random().OneIn(3) ? 0.0 : inputs.Distance();
    const double extension = inputs.Random().OneIn(8) ? 0.0 : inputs.Distance();
    double measuredSpacing = UNTOUCHED;
    PointRecord separate = UNTOUCHED_POINT;
    PointRecord* const choices[] = {&first, &second, &separate, &separate};
    PointRecord* const target = choices[inputs.Random().Below(4)];
    results.AddStatus(QCalc2PtTarget(&first, &second, spacing, extension, &measuredSpacing, target));
    results.Add(measuredSpacing);
    results.Add(*target);
}

void BenchmarkHeightCall(Inputs& inputs, Results& results)
{
    const double benchmarkHeight = inputs.Coordinate();
    const double reflectorHeight = inputs.Distance();
    const double verticalDifference = inputs.Distance();
    results.AddStatus(QSTD_OK);
    results.Add(QSTNSeaLevelCalcByBM(benchmarkHeight, reflectorHeight, verticalDifference));
}

TwoPointTarget NewTwoPointTarget(Inputs& inputs, const SetUp& setUp)
{
    const Sight sight = inputs.NewSight(setUp);
    return {sight.target,          sight.localNorthing, sight.localEasting,       {UNTOUCHED, UNTOUCHED},
            sight.horizontalAngle, sight.zenithAngle,   sight.horizontalDistance, sight.verticalDifference,
            sight.reflectorHeight};
}

// A failed solution leaves a position in the record, and the residuals are formed from it: it starts at a point.
TwoPointStation NewTwoPointStation(Inputs& inputs)
{
    return {inputs.Point(), UNTOUCHED_ANGLE, UNTOUCHED, UNTOUCHED, UNTOUCHED, UNTOUCHED};
}

void AddTwoPointStation(const TwoPointStation& station, Results& results)
{
    results.Add(station.station);
    results.AddAngle(station.orientation);
    results.Add(station.baselineCheck);
    results.Add(station.firstDistanceResidual);
    results.Add(station.secondDistanceResidual);
    results.Add(station.heightDifference);
}

void TwoPointResectionCall(Inputs& inputs, Results& results)
{
    const SetUp setUp = inputs.NewSetUp();
    const TwoPointTarget first = NewTwoPointTarget(inputs, setUp);
    const TwoPointTarget second = inputs.Random().OneIn(32) ? first : NewTwoPointTarget(inputs, setUp);
    TwoPointStation station = NewTwoPointStation(inputs);
    results.AddStatus(QSTN2PtResect(&first, &second, &station));
    AddTwoPointStation(station, results);
}

ThreePointTarget NewThreePointTarget(Inputs& inputs, const SetUp& setUp)
{
    const Sight sight = inputs.NewSight(setUp);
    return {sight.target, sight.horizontalAngle, sight.zenithAngle, sight.reflectorHeight};
}

void ThreePointResectionCall(Inputs& inputs, Results& results)
{
    const SetUp setUp = inputs.NewSetUp();
    const ThreePointTarget first = NewThreePointTarget(inputs, setUp);
    const ThreePointTarget second = NewThreePointTarget(inputs, setUp);
    const ThreePointTarget third = inputs.Random().OneIn(32) ? first : NewThreePointTarget(inputs, setUp);
    TwoPointStation station = NewTwoPointStation(inputs);
    results.AddStatus(QSTN3PtResect(&first, &second, &third, &station));
    AddTwoPointStation(station, results);
}

ResectObservation NewResectObservation(Inputs& inputs, const SetUp& setUp)
{
    const Sight sight = inputs.NewSight(setUp);
    return {sight.target,         sight.horizontalAngle,    sight.zenithAngle,
            sight.slopeDistance,  sight.horizontalDistance, sight.verticalDifference,
            sight.reflectorHeight};
}

constexpr int32_t MOST_SIGHTS = 24;

// The outputs of an adjustment, with a record more than the sights have: it must stay as it is.
struct AdjustedStation
{
    ResectStation station;
    ResectResidual residuals[MOST_SIGHTS + 1];
};

AdjustedStation UntouchedStation()
{
    AdjustedStation adjusted = {{UNTOUCHED_POINT, UNTOUCHED_ANGLE, UNTOUCHED, UNTOUCHED, UNTOUCHED}, {}};
    for (ResectResidual& residual : adjusted.residuals)
    {
        residual = {UNTOUCHED_ANGLE, UNTOUCHED, UNTOUCHED};
    }
    return adjusted;
}

void AddAdjustedStation(const AdjustedStation& adjusted, int32_t sights, Results& results)
{
    results.Add(adjusted.station.position);
    results.AddAngle(adjusted.station.orientation);
    results.Add(adjusted.station.northingPrecision);
    results.Add(adjusted.station.eastingPrecision);
    results.Add(adjusted.station.heightSpread);
    for (int32_t i = 0; i <= sights; ++i)
    {
        results.AddAngle(adjusted.residuals[i].angleResidual);
        results.Add(adjusted.residuals[i].distanceResidual);
        results.Add(adjusted.residuals[i].heightResidual);
    }
}

// Mostly what a field party observes, now and then too few or very many.
int32_t NumberOfSights(RandomBits& random)
{
    if (random.OneIn(16))
    {
        return random.Below(MOST_SIGHTS + 1);
    }
    return random.OneIn(4) ? random.Below(3) : random.Between(3, 7);
}

void MultiPointResectionCall(Inputs& inputs, Results& results)
{
    const SetUp setUp = inputs.NewSetUp();
    const int32_t sights = NumberOfSights(inputs.Random());
    ResectObservation observations[MOST_SIGHTS + 1] = {};
    for (int32_t i = 0; i < sights; ++i)
    {
        observations[i] =
            i > 0 && inputs.Random().OneIn(32) ? observations[i - 1] : NewResectObservation(inputs, setUp);
    }
    const bool negative = sights == 0 && inputs.Random().OneIn(2);
    const auto count = static_cast<int16_t>(negative ? -inputs.Random().Below(32769) : sights);
    AdjustedStation adjusted = UntouchedStation();
    results.AddStatus(QSTNMultiResect(count, observations, &adjusted.station, adjusted.residuals));
    AddAdjustedStation(adjusted, sights, results);
}

void KnownLineCall(Inputs& inputs, Results& results)
{
    const SetUp setUp = inputs.NewSetUp();
    const ResectObservation start = NewResectObservation(inputs, setUp);
    const ResectObservation direction = inputs.Random().OneIn(32) ? start : NewResectObservation(inputs, setUp);
    const AngleUnit lineAzimuth = inputs.Random().OneIn(2) ? AZIMUTH_NOT_GIVEN : inputs.Angle();
    AdjustedStation adjusted = UntouchedStation();
    results.AddStatus(QSTNKnownLine(&start, &direction, lineAzimuth, &adjusted.station, adjusted.residuals));
    AddAdjustedStation(adjusted, 2, results);
}

void AreaCall(Inputs& inputs, Results& results)
{
    constexpr int32_t MOST_CORNERS = 12;
    PointRecord corners[MOST_CORNERS] = {};
    for (PointRecord& corner : corners)
    {
        corner = inputs.Point();
    }
    const int32_t count = inputs.Random().OneIn(16) ? 32768 : inputs.Random().Between(-1, MOST_CORNERS);
    results.AddStatus(QSTD_OK);
    results.Add(QCogoCalcArea(corners, count));
}

void CrossLineCall(Inputs& inputs, Results& results)
{
    const LineDef line1 = inputs.Line();
    const LineDef line2 = inputs.Random().OneIn(16) ? line1 : inputs.Line();
    PointRecord result = UNTOUCHED_POINT;
    results.AddStatus(QCogoCalcCrossLine(&line1, &line2, &result));
    results.Add(result);
}

void CrossCircleCall(Inputs& inputs, Results& results)
{
    const PointRecord centre1 = inputs.Point();
    const PointRecord centre2 = inputs.Random().OneIn(16) ? centre1 : inputs.PointNear(centre1);
    const double radius1 = inputs.Distance();
    const double radius2 = inputs.Random().OneIn(8) ? radius1 : inputs.Distance();
    PointRecord pair[2] = {UNTOUCHED_POINT, UNTOUCHED_POINT};
    results.AddSolutions(QCogoCalcCrossCircle(&centre1, radius1, &centre2, radius2, pair));
    results.Add(pair[0]);
    results.Add(pair[1]);
}

void CrossLineCircleCall(Inputs& inputs, Results& results)
{
    inputs.ConnectObservationService();
    const LineDef line = inputs.Line();
    const PointRecord centre = inputs.PointNear(line.first);
    const double radius = inputs.Distance();
    PointRecord pair[2] = {UNTOUCHED_POINT, UNTOUCHED_POINT};
    results.AddSolutions(QCogoCalcCrossLineCircle(&line, &centre, radius, pair));
    results.Add(pair[0]);
    results.Add(pair[1]);
}

void PointToLineCall(Inputs& inputs, Results& results)
{
    const LineDef line = inputs.Line();
    const PointRecord point = inputs.Random().OneIn(16) ? line.first : inputs.Point();
    PointRecord foot = UNTOUCHED_POINT;
    results.AddStatus(QCogoCalcPtLine(&line, &point, &foot));
    results.Add(foot);
}

void LineTransferCall(Inputs& inputs, Results& results)
{
    LineDef line = inputs.Line();
    const AngleUnit rotation = inputs.Random().OneIn(4) ? 0 : inputs.Angle();
    const double offset = inputs.Random().OneIn(4) ? 0.0 : inputs.Distance();
    LineDef separate = {UNTOUCHED_POINT, UNTOUCHED_POINT, UNTOUCHED_ANGLE, 0x5A5A};
    LineDef* const result = inputs.Random().OneIn(4) ? &line : &separate;
    results.AddStatus(QCogoCalcTransLine(&line, rotation, offset, result));
    results.Add(result->first);
    results.Add(result->second);
    results.AddAngle(result->azimuth);
    results.Add(static_cast<int32_t>(result->mode));
}

// A base and a sight to a point above it, in the same direction more often than not.
struct RemoteSights
{
    SightRecord base;
    AngleUnit horizontalAngle;
    AngleUnit zenithAngle;
};

RemoteSights NewRemoteSights(Inputs& inputs)
{
    const SetUp setUp = inputs.NewSetUp();
    const Sight prism = inputs.NewSight(setUp);
    const Sight point = inputs.NewSight(setUp);
    const bool isNear = !inputs.Random().OneIn(3);
    return {{prism.horizontalAngle, prism.zenithAngle, prism.slopeDistance},
            isNear ? prism.horizontalAngle : point.horizontalAngle,
            isNear ? prism.zenithAngle : point.zenithAngle};
}

// Definition and use, always in sequence: what an earlier call defined never counts. The status is that of the one
// whose line it is.
void RemoteElevation(Inputs& inputs, Results& results, bool isDefinition)
{
    const RemoteSights sights = NewRemoteSights(inputs);
    PointRecord result = UNTOUCHED_POINT;
    const int32_t definition = QREMSetBase(&sights.base);
    const int32_t use = QREMCalc(sights.horizontalAngle, sights.zenithAngle, &result);
    results.AddStatus(isDefinition ? definition : use);
    results.Add(isDefinition ? use : definition);
    results.Add(result);
}

void RemoteBaseCall(Inputs& inputs, Results& results)
{
    RemoteElevation(inputs, results, true);
}

void RemoteElevationCall(Inputs& inputs, Results& results)
{
    RemoteElevation(inputs, results, false);
}

void SlopeReference(Inputs& inputs, Results& results, bool isDefinition)
{
    const double height1 = inputs.Distance();
    const double distance1 = inputs.Distance();
    const double height2 = inputs.Distance();
    const double distance2 = inputs.Distance();
    const PointRecord base = inputs.Point();
    const PointRecord point = inputs.Random().OneIn(16) ? base : inputs.FullPoint();
    SlopeCheckResult result = {UNTOUCHED, UNTOUCHED, UNTOUCHED};
    const int32_t definition = QBRSetSlope(height1, distance1, height2, distance2);
    const int32_t use = QBRCalc(&base, &point, &result);
    results.AddStatus(isDefinition ? definition : use);
    results.Add(isDefinition ? use : definition);
    results.Add(result.offsetBeyondSlope);
    results.Add(result.heightAboveSlope);
    results.Add(result.distanceFromBase);
}

void SlopeDefinitionCall(Inputs& inputs, Results& results)
{
    SlopeReference(inputs, results, true);
}

void SlopeReferenceCall(Inputs& inputs, Results& results)
{
    SlopeReference(inputs, results, false);
}

void AddSight(const SightRecord& sight, Results& results)
{
    results.AddAngle(sight.horizontalAngle);
    results.AddAngle(sight.zenithAngle);
    results.Add(sight.distance);
}

constexpr SightRecord UNTOUCHED_SIGHT = {UNTOUCHED_ANGLE, UNTOUCHED_ANGLE, UNTOUCHED};

void ThreePointCornerCall(Inputs& inputs, Results& results)
{
    inputs.ConnectObservationService();
    const PointRecord first = inputs.Point();
    const PointRecord second = inputs.Random().OneIn(16) ? first : inputs.Point();
    const PointRecord third = inputs.FullPoint();
    SightRecord sight = UNTOUCHED_SIGHT;
    PointRecord corner = UNTOUCHED_POINT;
    results.AddStatus(QCalcOfsCorner3Pt(&first, &second, &third, UNTOUCHED, &sight, &corner, inputs.Distance()));
    AddSight(sight, results);
    results.Add(corner);
}

void FourPointCornerCall(Inputs& inputs, Results& results)
{
    inputs.ConnectObservationService();
    const PointRecord first = inputs.Point();
    const PointRecord second = inputs.Random().OneIn(16) ? first : inputs.Point();
    const PointRecord third = inputs.Random().OneIn(16) ? second : inputs.Point();
    const PointRecord fourth = inputs.FullPoint();
    SightRecord sight = UNTOUCHED_SIGHT;
    PointRecord corner = UNTOUCHED_POINT;
    results.AddStatus(
        QCalcOfsCorner4Pt(&first, &second, &third, &fourth, UNTOUCHED, &sight, &corner, inputs.Distance()));
    AddSight(sight, results);
    results.Add(corner);
}

void LineOffsetCall(Inputs& inputs, Results& results)
{
    inputs.ConnectObservationService();
    const PointRecord first = inputs.Point();
    const PointRecord second = inputs.Random().OneIn(16) ? first : inputs.FullPoint();
    const Sight direction = inputs.NewSight(inputs.NewSetUp());
    const PointRecord station = inputs.Point();
    const double instrumentHeight = inputs.Distance();
    SightRecord sight = UNTOUCHED_SIGHT;
    PointRecord target = UNTOUCHED_POINT;
    results.AddStatus(QCalcOfsLineHA(&first, &second, direction.horizontalAngle, direction.zenithAngle, &station,
                                     instrumentHeight, &sight, &target, inputs.Distance()));
    AddSight(sight, results);
    results.Add(target);
}

// Mostly edges some degrees to both sides of the near face.
void CircleOffsetCall(Inputs& inputs, Results& results)
{
    constexpr int32_t WIDEST = ANGLE_FULL_CIRCLE / 16;
    inputs.ConnectObservationService();
    const Sight near = inputs.NewSight(inputs.NewSetUp());
    const AngleUnit width = inputs.Random().Below(WIDEST);
    AngleUnit left = near.horizontalAngle % ANGLE_FULL_CIRCLE - width;
    AngleUnit right = left + 2 * width + inputs.Random().Between(-400, 400);
    if (inputs.Random().OneIn(8))
    {
        left = inputs.Angle();
        right = inputs.Angle();
    }
    const PointRecord station = inputs.Point();
    ObservationRecord face{};
    face.horizontalAngle = near.horizontalAngle;
    face.zenithAngle = near.zenithAngle;
    face.secondDistance = inputs.Distance();
    SightRecord sight = UNTOUCHED_SIGHT;
    PointRecord centre = inputs.Point();
    double radius = UNTOUCHED;
    results.AddStatus(QCalcOfsCircle(&face, inputs.Distance(), left, near.zenithAngle, right, near.zenithAngle,
                                     &station, UNTOUCHED, &sight, &centre, &radius));
    AddSight(sight, results);
    results.Add(centre);
    results.Add(radius);
}

void ReferenceLine(Inputs& inputs, Results& results, bool isDefinition)
{
    const PointRecord first = inputs.Point();
    const PointRecord second = inputs.Random().OneIn(16) ? first : inputs.Point();
    const PointRecord point = inputs.Point();
    ReferenceLineResult result = {UNTOUCHED_POINT, UNTOUCHED, UNTOUCHED, UNTOUCHED};
    const int32_t definition = QREFSetBaseLine(&first, &second);
    const int32_t use = QREFCalc(&point, &result);
    results.AddStatus(isDefinition ? definition : use);
    results.Add(isDefinition ? use : definition);
    results.Add(result.foot);
    results.Add(result.station);
    results.Add(result.offset);
    results.Add(result.heightDifference);
}

void ReferenceLineDefinitionCall(Inputs& inputs, Results& results)
{
    ReferenceLine(inputs, results, true);
}

void ReferenceLineCall(Inputs& inputs, Results& results)
{
    ReferenceLine(inputs, results, false);
}

// A rejected definition leaves the former arc in use: here always this one.
void DefineFormerArc()
{
    constexpr PointRecord START = {100.0, 200.0, 10.0, 3};
    QREFSetArcByRadiusArcLen(&START, ANGLE_QUARTER_CIRCLE, -250.0, 400.0);
}

void AddArcParams(Results& results)
{
    ArcParams arc = {UNTOUCHED_ANGLE, UNTOUCHED_ANGLE, UNTOUCHED, UNTOUCHED, UNTOUCHED_ANGLE};
    results.Add(QREFGetArcParams(&arc));
    results.AddAngle(arc.startAzimuth);
    results.AddAngle(arc.endAzimuth);
    results.Add(arc.radius);
    results.Add(arc.length);
    results.AddAngle(arc.centralAngle);
}

void AddArcResult(const ArcCalcResult& result, Results& results)
{
    results.Add(result.point);
    results.Add(result.along);
    results.Add(result.offset);
    results.Add(result.heightDifference);
}

constexpr ArcCalcResult UNTOUCHED_ARC_RESULT = {UNTOUCHED_POINT, UNTOUCHED, UNTOUCHED, UNTOUCHED};

// What is defined now: its parameters and a point referred to it.
void AddArc(Inputs& inputs, const PointRecord& start, Results& results)
{
    AddArcParams(results);
    const PointRecord measured = inputs.PointNear(start);
    ArcCalcResult result = UNTOUCHED_ARC_RESULT;
    results.Add(QREFCalcArc(&measured, &result));
    AddArcResult(result, results);
}

void ArcByCoordCall(Inputs& inputs, Results& results)
{
    DefineFormerArc();
    const PointRecord start = inputs.Point();
    const PointRecord end = inputs.Random().OneIn(16) ? start : inputs.PointNear(start);
    const AngleUnit startAzimuth = inputs.Angle();
    const AngleUnit endAzimuth = inputs.Random().OneIn(16) ? startAzimuth : inputs.Angle();
    results.AddStatus(QREFSetArcByCoord(&start, &end, startAzimuth, endAzimuth));
    AddArc(inputs, start, results);
}

void ArcByAzimuthsCall(Inputs& inputs, Results& results)
{
    DefineFormerArc();
    const PointRecord start = inputs.Point();
    const AngleUnit startAzimuth = inputs.Angle();
    const AngleUnit endAzimuth = inputs.Random().OneIn(16) ? startAzimuth : inputs.Angle();
    const double radius = inputs.Random().OneIn(2) ? inputs.Distance() : -inputs.Distance();
    results.AddStatus(QREFSetArcByRadiusHAngle(&start, startAzimuth, radius, endAzimuth));
    AddArc(inputs, start, results);
}

int32_t DefineArcByLength(Inputs& inputs, const PointRecord& start)
{
    const AngleUnit startAzimuth = inputs.Angle();
    const double radius = inputs.Random().OneIn(2) ? inputs.Distance() : -inputs.Distance();
    return QREFSetArcByRadiusArcLen(&start, startAzimuth, radius, inputs.Distance());
}

void ArcByLengthCall(Inputs& inputs, Results& results)
{
    DefineFormerArc();
    const PointRecord start = inputs.Point();
    results.AddStatus(DefineArcByLength(inputs, start));
    AddArc(inputs, start, results);
}

void ArcParamsCall(Inputs& inputs, Results& results)
{
    DefineFormerArc();
    const PointRecord start = inputs.Point();
    const int32_t definition = DefineArcByLength(inputs, start);
    ConnectInstrumentSettings(nullptr);
    results.AddStatus(QSTD_OK);
    results.Add(definition);
    AddArcParams(results);
}

void ArcCall(Inputs& inputs, Results& results)
{
    DefineFormerArc();
    const PointRecord start = inputs.Point();
    const int32_t definition = DefineArcByLength(inputs, start);
    const PointRecord measured = inputs.Random().OneIn(16) ? start : inputs.PointNear(start);
    ArcCalcResult result = UNTOUCHED_ARC_RESULT;
    results.AddStatus(QREFCalcArc(&measured, &result));
    results.Add(definition);
    AddArcResult(result, results);
}

// A sight at a plane and what it hits.
struct PlaneSight
{
    Sight direction;
    PointRecord station;
    double instrumentHeight;
    PointRecord point;
    double along;
    double second;
};

PlaneSight NewPlaneSight(Inputs& inputs)
{
    const Sight direction = inputs.NewSight(inputs.NewSetUp());
    const PointRecord station = inputs.Point();
    return {direction, station, inputs.Distance(), UNTOUCHED_POINT, UNTOUCHED, UNTOUCHED};
}

void AddPlaneSight(const PlaneSight& sight, Results& results)
{
    results.Add(sight.point);
    results.Add(sight.along);
    results.Add(sight.second);
}

void TwoPointPlane(Inputs& inputs, Results& results, bool isDefinition)
{
    const PointRecord first = inputs.FullPoint();
    const PointRecord second = inputs.Random().OneIn(16) ? first : inputs.Point();
    PlaneSight s = NewPlaneSight(inputs);
    const int32_t definition = QREFSet2PtBasePlane(&first, &second);
    const int32_t use = QREFCalc2PtPlane(s.direction.horizontalAngle, s.direction.zenithAngle, &s.station,
                                         s.instrumentHeight, &s.point, &s.along, &s.second);
    results.AddStatus(isDefinition ? definition : use);
    results.Add(isDefinition ? use : definition);
    AddPlaneSight(s, results);
}

void TwoPointPlaneDefinitionCall(Inputs& inputs, Results& results)
{
    TwoPointPlane(inputs, results, true);
}

void TwoPointPlaneCall(Inputs& inputs, Results& results)
{
    TwoPointPlane(inputs, results, false);
}

void ThreePointPlane(Inputs& inputs, Results& results, bool isDefinition)
{
    const PointRecord first = inputs.FullPoint();
    const PointRecord second = inputs.Random().OneIn(16) ? first : inputs.FullPoint();
    const PointRecord third = inputs.FullPoint();
    const PointRecord* const last = inputs.Random().OneIn(4) ? nullptr : &third;
    PlaneSight s = NewPlaneSight(inputs);
    const int32_t definition = QREFSet3PtBasePlane(&first, &second, last);
    const int32_t use = QREFCalc3PtPlane(s.direction.horizontalAngle, s.direction.zenithAngle, &s.station,
                                         s.instrumentHeight, &s.point, &s.along, &s.second);
    results.AddStatus(isDefinition ? definition : use);
    results.Add(isDefinition ? use : definition);
    AddPlaneSight(s, results);
}

void ThreePointPlaneDefinitionCall(Inputs& inputs, Results& results)
{
    ThreePointPlane(inputs, results, true);
}

void ThreePointPlaneCall(Inputs& inputs, Results& results)
{
    ThreePointPlane(inputs, results, false);
}

struct Function
{
    const char* name;
    int32_t calls;
    void (*call)(Inputs& inputs, Results& results);
};

// Each function's inputs come from its own seed: a function more changes nothing for the others.
constexpr Function FUNCTIONS[] = {
    {"QCogoCoordToAngDist", 200000, InverseCall},
    {"QCogoAngDistToCoord", 200000, ForwardCall},
    {"QCogoOffsetToCoord", 200000, OffsetCall},
    {"QCogoCalcSlopeByDist", 100000, SlopeCall},
    {"QRDMCalcByCoord", 200000, RemoteDistanceCall},
    {"QCalc2PtTarget", 200000, TwoPointTargetCall},
    {"QSTNSeaLevelCalcByBM", 100000, BenchmarkHeightCall},
    {"QSTN2PtResect", 200000, TwoPointResectionCall},
    {"QSTN3PtResect", 200000, ThreePointResectionCall},
    {"QSTNMultiResect", 60000, MultiPointResectionCall},
    {"QSTNKnownLine", 60000, KnownLineCall},
    {"QCogoCalcArea", 100000, AreaCall},
    {"QCogoCalcCrossLine", 100000, CrossLineCall},
    {"QCogoCalcCrossCircle", 100000, CrossCircleCall},
    {"QCogoCalcCrossLineCircle", 100000, CrossLineCircleCall},
    {"QCogoCalcPtLine", 100000, PointToLineCall},
    {"QCogoCalcTransLine", 100000, LineTransferCall},
    {"QREMSetBase", 100000, RemoteBaseCall},
    {"QREMCalc", 100000, RemoteElevationCall},
    {"QBRSetSlope", 100000, SlopeDefinitionCall},
    {"QBRCalc", 100000, SlopeReferenceCall},
    {"QCalcOfsCorner3Pt", 100000, ThreePointCornerCall},
    {"QCalcOfsCorner4Pt", 100000, FourPointCornerCall},
    {"QCalcOfsLineHA", 100000, LineOffsetCall},
    {"QCalcOfsCircle", 100000, CircleOffsetCall},
    {"QREFSetBaseLine", 100000, ReferenceLineDefinitionCall},
    {"QREFCalc", 100000, ReferenceLineCall},
    {"QREFSetArcByCoord", 100000, ArcByCoordCall},
    {"QREFSetArcByRadiusHAngle", 100000, ArcByAzimuthsCall},
    {"QREFSetArcByRadiusArcLen", 100000, ArcByLengthCall},
    {"QREFGetArcParams", 100000, ArcParamsCall},
    {"QREFCalcArc", 100000, ArcCall},
    {"QREFSet2PtBasePlane", 100000, TwoPointPlaneDefinitionCall},
    {"QREFCalc2PtPlane", 100000, TwoPointPlaneCall},
    {"QREFSet3PtBasePlane", 100000, ThreePointPlaneDefinitionCall},
    {"QREFCalc3PtPlane", 100000, ThreePointPlaneCall},
};

uint64_t SeedOf(const char* name)
{
    uint64_t seed = 0;
    for (; *name != '\0'; ++name)
    {
        seed = seed * 131 + static_cast<unsigned char>(*name);
    }
    return seed;
}

void Run(const Function& function, int32_t divisor, bool full)
{
    Inputs inputs(SeedOf(function.name));
    Results results(function.name, full);
    const int32_t calls = function.calls / divisor;
    for (int32_t i = 0; i < calls; ++i)
    {
        inputs.BeginCall();
        results.BeginCall(i);
        function.call(inputs, results);
        results.EndCall(inputs.LargestLength());
    }
    results.PrintTotal(calls);
}

struct Options
{
    bool full = false;
    int32_t divisor = 1; // 0 where the options were not understood
    digest::Math math = digest::Math::PLATFORM;
    uint32_t seed = 0;
};

int32_t NumberFrom(const char* text)
{
    return static_cast<int32_t>(std::strtol(text, nullptr, 10));
}

Options Understand(int argc, char** argv)
{
    Options options;
    for (int i = 1; i < argc; ++i)
    {
        const bool hasValue = i + 1 < argc;
        if (std::strcmp(argv[i], "--full") == 0)
        {
            options.full = true;
        }
        else if (std::strcmp(argv[i], "--plain-math") == 0)
        {
            options.math = digest::Math::PLAIN;
        }
        else if (std::strcmp(argv[i], "--divide") == 0 && hasValue)
        {
            options.divisor = NumberFrom(argv[++i]);
        }
        else if (std::strcmp(argv[i], "--shake") == 0 && hasValue)
        {
            options.seed = static_cast<uint32_t>(NumberFrom(argv[++i]));
        }
        else
        {
            options.divisor = 0;
            break;
        }
    }
    return options;
}

} // namespace

int main(int argc, char** argv)
{
    const Options options = Understand(argc, argv);
    if (options.divisor < 1)
    {
        std::fprintf(stderr, "usage: %s [--full] [--divide N] [--plain-math] [--shake SEED]\n",
                     argc > 0 ? argv[0] : "digest");
        return 2;
    }
    digest::ChooseMath(options.math, options.seed);
    for (const Function& function : FUNCTIONS)
    {
        Run(function, options.divisor, options.full);
    }
    return 0;
}
