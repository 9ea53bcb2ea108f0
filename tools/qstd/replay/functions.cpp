#include "replay/functions.h"

#include "replay/array_calls.h"
#include "replay/bound_call.h"
#include "replay/instrument_answers.h"

#include <qstdlib.h>

namespace qstd {

namespace {

using FunctionMap = std::map<std::string, CallableFunction>;

void AddCogo(FunctionMap& map)
{
    map["QCogoCoordToAngDist"] = {Bind(QCogoCoordToAngDist, "from", "to", "result")};
    map["QCogoAngDistToCoord"] = {Bind(QCogoAngDistToCoord, "from", "observation", "result")};
    map["QCogoOffsetToCoord"] = {Bind(QCogoOffsetToCoord, "start", "end", "chainage", "offset", "result")};
    map["QCogoCalcSlopeByDist"] = {Bind(QCogoCalcSlopeByDist, "horizontal", "vertical", "slope")};
    map["QCogoCalcArea"] = {PrepareArea()};
    map["QCogoCalcCrossLine"] = {Bind(QCogoCalcCrossLine, "line1", "line2", "result")};
    map["QCogoCalcCrossCircle"] = {
        Bind(QCogoCalcCrossCircle, "centre1", "radius1", "centre2", "radius2", Written<PointRecord[2]>("pair")), true};
    map["QCogoCalcCrossLineCircle"] = {
        Bind(QCogoCalcCrossLineCircle, "line", "centre", "radius", Written<PointRecord[2]>("pair")), true};
    map["QCogoCalcPtLine"] = {Bind(QCogoCalcPtLine, "line", "point", "foot")};
    map["QCogoCalcTransLine"] = {Bind(QCogoCalcTransLine, "line", "rotation", "offset", "result")};
}

void AddMeasure(FunctionMap& map)
{
    map["QREMSetBase"] = {Bind(QREMSetBase, "base")};
    map["QREMCalc"] = {Bind(QREMCalc, "horizontalAngle", "zenithAngle", "result")};
    map["QRDMCalcByCoord"] = {Bind(QRDMCalcByCoord, "first", "second", "result")};
    map["QCalc2PtTarget"] = {
        Bind(QCalc2PtTarget, "first", "second", "spacing", "extension", "measuredSpacing", "target")};
    map["QBRSetSlope"] = {Bind(QBRSetSlope, "height1", "distance1", "height2", "distance2")};
    map["QBRCalc"] = {Bind(QBRCalc, "base", "point", "result")};
    map["QCalcOfsCorner3Pt"] = {Bind(QCalcOfsCorner3Pt, "first", "second", "third", NotRead("reserved"), "observation",
                                     "corner", "passthrough")};
    map["QCalcOfsCorner4Pt"] = {Bind(QCalcOfsCorner4Pt, "first", "second", "third", "fourth", NotRead("reserved"),
                                     "observation", "corner", "passthrough")};
    map["QCalcOfsLineHA"] = {Bind(QCalcOfsLineHA, "first", "second", "horizontalAngle", "zenithAngle", "station",
                                  "instrumentHeight", "observation", "target", "passthrough")};
    map["QCalcOfsCircle"] = {Bind(QCalcOfsCircle, "faceSighting", "passthrough", "leftAngle", "leftZenith",
                                  "rightAngle", "rightZenith", "station", NotRead("reserved"), "observation",
                                  Changed<PointRecord>("centre", Presence::REQUIRED), "radius")};
}

void AddReference(FunctionMap& map)
{
    map["QREFSetBaseLine"] = {Bind(QREFSetBaseLine, "first", "second")};
    map["QREFCalc"] = {Bind(QREFCalc, "point", "result")};
    map["QREFSetArcByCoord"] = {Bind(QREFSetArcByCoord, "start", "end", "startAzimuth", "endAzimuth")};
    map["QREFSetArcByRadiusHAngle"] = {Bind(QREFSetArcByRadiusHAngle, "start", "startAzimuth", "radius", "endAzimuth")};
    map["QREFSetArcByRadiusArcLen"] = {Bind(QREFSetArcByRadiusArcLen, "start", "startAzimuth", "radius", "length")};
    map["QREFGetArcParams"] = {Bind(QREFGetArcParams, "params")};
    map["QREFCalcArc"] = {Bind(QREFCalcArc, "measured", "result")};
    map["QREFSet2PtBasePlane"] = {Bind(QREFSet2PtBasePlane, "first", "second")};
    map["QREFCalc2PtPlane"] = {Bind(QREFCalc2PtPlane, "horizontalAngle", "zenithAngle", "station", "instrumentHeight",
                                    "point", "alongPlane", "heightAboveFirst")};
    map["QREFSet3PtBasePlane"] = {Bind(QREFSet3PtBasePlane, "first", "second", RecordOrNull<PointRecord>("third"))};
    map["QREFCalc3PtPlane"] = {Bind(QREFCalc3PtPlane, "horizontalAngle", "zenithAngle", "station", "instrumentHeight",
                                    "point", "alongBaseline", "acrossBaseline")};
}

void AddStation(FunctionMap& map)
{
    map["QSTNSeaLevelCalcByBM"] = {
        Bind(QSTNSeaLevelCalcByBM, "benchmarkHeight", "reflectorHeight", "verticalDifference")};
    map["QSTN2PtResect"] = {
        Bind(QSTN2PtResect, "first", "second", Changed<TwoPointStation>("station", Presence::OPTIONAL))};
    map["QSTN3PtResect"] = {Bind(QSTN3PtResect, "first", "second", "third", "station")};
    map["QSTNMultiResect"] = {PrepareMultiResection()};
    map["QSTNKnownLine"] = {Bind(QSTNKnownLine, "startObservation", "directionObservation", "lineAzimuth", "station",
                                 Written<ResectResidual[2]>("residuals"))};
}

FunctionMap AllFunctions()
{
    FunctionMap map;
    map["ConnectInstrumentSettings"] = {PrepareConnection()};
    AddCogo(map);
    AddMeasure(map);
    AddReference(map);
    AddStation(map);
    return map;
}

} // namespace

const std::map<std::string, CallableFunction>& CallableFunctions()
{
    static const FunctionMap functions = AllFunctions();
    return functions;
}

} // namespace qstd
