/* The interface as a C program sees it: every exported function is called, and its results are checked against figures
   that follow from the chosen geometry. */
#include <math.h>
#include <stdio.h>

#include <qstdlib.h>

#define EXACT 0.0
#define NANOMETRE 1e-9
#define PI 3.141592653589793

enum
{
    DEGREE = ANGLE_FULL_CIRCLE / 360
};

static int failures = 0;

/* The comparison is written so that NaN fails. */
static void CheckReal(const char* what, double got, double expected, double tolerance)
{
    if (!(fabs(got - expected) <= tolerance))
    {
        fprintf(stderr, "%s: %.17g, expected %.17g\n", what, got, expected);
        ++failures;
    }
}

static void CheckInteger(const char* what, int32_t got, int32_t expected)
{
    if (got != expected)
    {
        fprintf(stderr, "%s: %ld, expected %ld\n", what, (long)got, (long)expected);
        ++failures;
    }
}

static void CheckPoint(const char* what, const PointRecord* got, PointRecord expected, double tolerance)
{
    CheckReal(what, got->northing, expected.northing, tolerance);
    CheckReal(what, got->easting, expected.easting, tolerance);
    CheckReal(what, got->height, expected.height, tolerance);
    CheckInteger(what, got->flags, expected.flags);
}

/* 4 to the east and 3 up: slope distance 5. Elevation atan(3 / 4) = 36.86989765 degrees, zenith angle 53.13010235
   degrees, times 57,600 = 3,060,293.9 units. */
static void TestInverse(void)
{
    const PointRecord from = {1000.0, 2000.0, 100.0, 3};
    const PointRecord to = {1000.0, 2004.0, 103.0, 3};
    AngDistRecord result;
    CheckInteger("inverse", QCogoCoordToAngDist(&from, &to, &result), QSTD_OK);
    CheckInteger("inverse, azimuth", result.azimuth, ANGLE_QUARTER_CIRCLE);
    CheckInteger("inverse, zenith", result.zenith, 3060294);
    CheckReal("inverse, slope distance", result.slopeDistance, 5.0, EXACT);
    CheckReal("inverse, horizontal distance", result.horizontalDistance, 4.0, EXACT);
    CheckReal("inverse, height difference", result.heightDifference, 3.0, EXACT);
}

/* 10 to the north and 2.5 up; zenith angle and slope distance are not read. */
static void TestForward(void)
{
    const PointRecord from = {1000.0, 2000.0, 100.0, 3};
    const AngDistRecord observation = {0, 0, 0.0, 10.0, 2.5};
    PointRecord result;
    CheckInteger("forward", QCogoAngDistToCoord(&from, &observation, &result), QSTD_OK);
    CheckPoint("forward", &result, (PointRecord){1010.0, 2000.0, 102.5, 3}, EXACT);
}

/* A line of 128 to the east, rising from 10 to 26. A quarter of the way: 10 + 16 / 4 = 14. Right of it is south. */
static void TestOffset(void)
{
    const PointRecord start = {0.0, 0.0, 10.0, 3};
    const PointRecord end = {0.0, 128.0, 26.0, 3};
    PointRecord result;
    CheckInteger("offset", QCogoOffsetToCoord(&start, &end, 32.0, 5.0, &result), QSTD_OK);
    CheckPoint("offset", &result, (PointRecord){-5.0, 32.0, 14.0, 3}, EXACT);
}

/* 16 up over 64: 25 percent, 1 in 4. */
static void TestSlope(void)
{
    SlopeResult slope;
    QCogoCalcSlopeByDist(64.0, 16.0, &slope);
    CheckReal("slope, grade", slope.grade, 25.0, EXACT);
    CheckReal("slope, ratio", slope.ratio, 4.0, EXACT);
}

/* 4 to the west and 3 up: slope distance 5. */
static void TestRemoteDistance(void)
{
    const PointRecord first = {1000.0, 2000.0, 100.0, 3};
    const PointRecord second = {1000.0, 1996.0, 103.0, 3};
    RemoteDistanceResult result;
    CheckInteger("remote distance", QRDMCalcByCoord(&first, &second, &result), QSTD_OK);
    CheckReal("remote distance, slope", result.slopeDistance, 5.0, EXACT);
    CheckReal("remote distance, horizontal", result.horizontalDistance, 4.0, EXACT);
    CheckReal("remote distance, height", result.heightDifference, 3.0, EXACT);
    CheckInteger("remote distance, azimuth", result.azimuth, 3 * ANGLE_QUARTER_CIRCLE);
}

/* A plumb rod with its prisms at 31 and 30, the hidden point 2 below the lower one. */
static void TestTwoPointTarget(void)
{
    const PointRecord first = {10.0, 20.0, 31.0, 3};
    const PointRecord second = {10.0, 20.0, 30.0, 3};
    double measuredSpacing = 0.0;
    PointRecord target;
    CheckInteger("two-point target", QCalc2PtTarget(&first, &second, 0.0, 2.0, &measuredSpacing, &target), QSTD_OK);
    CheckReal("two-point target, spacing", measuredSpacing, 1.0, EXACT);
    CheckPoint("two-point target", &target, (PointRecord){10.0, 20.0, 28.0, 3}, EXACT);
}

/* 100 + 1.5 - 0.25. */
static void TestBenchmarkHeight(void)
{
    CheckReal("benchmark height", QSTNSeaLevelCalcByBM(100.0, 1.5, 0.25), 101.25, EXACT);
}

/* Targets 64 north and 64 east of the station, 1 lower than the axis of the instrument less reflectors of 1.5: the axis
   is at 100 + 1 + 1.5. The circle's zero points north, so that local and known coordinates differ by a shift only. */
static void TestTwoPointResection(void)
{
    const TwoPointTarget north = {.known = {1064.0, 2000.0, 100.0, 3},
                                  .localNorthing = 64.0,
                                  .horizontalAngle = 0,
                                  .zenithAngle = 91 * DEGREE,
                                  .horizontalDistance = 64.0,
                                  .verticalDifference = -1.0,
                                  .reflectorHeight = 1.5};
    const TwoPointTarget east = {.known = {1000.0, 2064.0, 100.0, 3},
                                 .localEasting = 64.0,
                                 .horizontalAngle = ANGLE_QUARTER_CIRCLE,
                                 .zenithAngle = 91 * DEGREE,
                                 .horizontalDistance = 64.0,
                                 .verticalDifference = -1.0,
                                 .reflectorHeight = 1.5};
    TwoPointStation station;
    CheckInteger("two-point resection", QSTN2PtResect(&north, &east, &station), QSTD_OK);
    CheckPoint("two-point resection", &station.station, (PointRecord){1000.0, 2000.0, 102.5, 3}, EXACT);
    CheckInteger("two-point resection, orientation", station.orientation, 0);
    CheckReal("two-point resection, baseline", station.baselineCheck, 0.0, EXACT);
    CheckReal("two-point resection, first distance", station.firstDistanceResidual, 0.0, EXACT);
    CheckReal("two-point resection, second distance", station.secondDistanceResidual, 0.0, EXACT);
    CheckReal("two-point resection, heights", station.heightDifference, 0.0, EXACT);
}

/* Targets 100 north, east and south; the circle reads 10, 100 and 190 degrees, so its zero points to -10 degrees. Level
   sights to reflectors of 1.5 above marks of 100. */
static void TestThreePointResection(void)
{
    const ThreePointTarget north = {{1100.0, 2000.0, 100.0, 3}, 10 * DEGREE, ANGLE_QUARTER_CIRCLE, 1.5};
    const ThreePointTarget east = {{1000.0, 2100.0, 100.0, 3}, 100 * DEGREE, ANGLE_QUARTER_CIRCLE, 1.5};
    const ThreePointTarget south = {{900.0, 2000.0, 100.0, 3}, 190 * DEGREE, ANGLE_QUARTER_CIRCLE, 1.5};
    TwoPointStation station;
    CheckInteger("three-point resection", QSTN3PtResect(&north, &east, &south, &station), QSTD_OK);
    CheckPoint("three-point resection", &station.station, (PointRecord){1000.0, 2000.0, 101.5, 3}, NANOMETRE);
    CheckInteger("three-point resection, orientation", station.orientation, -10 * DEGREE);
}

/* The same targets with distances. The orientation is cut off to the unit below, so that one unit less is right too. */
static void TestMultiPointResection(void)
{
    const ResectObservation sights[3] = {
        {{1100.0, 2000.0, 100.0, 3}, 340 * DEGREE, ANGLE_QUARTER_CIRCLE, 100.0, 100.0, 0.0, 1.5},
        {{1000.0, 2100.0, 100.0, 3}, 70 * DEGREE, ANGLE_QUARTER_CIRCLE, 100.0, 100.0, 0.0, 1.5},
        {{900.0, 2000.0, 100.0, 3}, 160 * DEGREE, ANGLE_QUARTER_CIRCLE, 100.0, 100.0, 0.0, 1.5}};
    ResectStation station;
    ResectResidual residuals[3];
    CheckInteger("multi-point resection", QSTNMultiResect(3, sights, &station, residuals), QSTD_OK);
    CheckPoint("multi-point resection", &station.position, (PointRecord){1000.0, 2000.0, 101.5, 3}, NANOMETRE);
    CheckReal("multi-point resection, orientation", station.orientation, 20 * DEGREE - 0.5, 0.5);
    CheckReal("multi-point resection, northing precision", station.northingPrecision, 0.0, NANOMETRE);
    CheckReal("multi-point resection, easting precision", station.eastingPrecision, 0.0, NANOMETRE);
    CheckReal("multi-point resection, height spread", station.heightSpread, 0.0, EXACT);
    for (int i = 0; i < 3; ++i)
    {
        CheckInteger("multi-point resection, angle residual", residuals[i].angleResidual, 0);
        CheckReal("multi-point resection, distance residual", residuals[i].distanceResidual, 0.0, NANOMETRE);
        CheckReal("multi-point resection, height residual", residuals[i].heightResidual, 0.0, EXACT);
    }
}

/* The line runs south-east from a start 64 north of the station to a point 64 east of it. */
static void TestKnownLine(void)
{
    const ResectObservation start = {{1064.0, 2000.0, 100.0, 3}, 0, ANGLE_QUARTER_CIRCLE, 64.0, 64.0, 0.0, 1.5};
    const ResectObservation direction = {
        {0.0, 0.0, 100.0, 3}, ANGLE_QUARTER_CIRCLE, ANGLE_QUARTER_CIRCLE, 64.0, 64.0, 0.0, 1.5};
    ResectStation station;
    ResectResidual residuals[2];
    CheckInteger("known line", QSTNKnownLine(&start, &direction, 135 * DEGREE, &station, residuals), QSTD_OK);
    CheckPoint("known line", &station.position, (PointRecord){1000.0, 2000.0, 101.5, 3}, NANOMETRE);
    CheckReal("known line, first distance residual", residuals[0].distanceResidual, 0.0, NANOMETRE);
    CheckReal("known line, second distance residual", residuals[1].distanceResidual, 0.0, NANOMETRE);
}

static int32_t SouthAzimuths(uint32_t identifier)
{
    return identifier == SETTING_AZIMUTH_REFERENCE ? 1 : 0;
}

/* A C function as an operation; the other entries stay null. Counted from south, east is at three quarters. */
static void TestInstrument(void)
{
    const InstrumentSettings southern = {.GetIntSetting = SouthAzimuths};
    const PointRecord first = {0.0, 0.0, 0.0, 1};
    const PointRecord second = {0.0, 1.0, 0.0, 1};
    RemoteDistanceResult result;
    ConnectInstrumentSettings(&southern);
    CheckInteger("azimuth from south", QRDMCalcByCoord(&first, &second, &result), QSTD_OK);
    CheckInteger("azimuth from south", result.azimuth, 3 * ANGLE_QUARTER_CIRCLE);
    ConnectInstrumentSettings(NULL);
    CheckInteger("azimuth from north", QRDMCalcByCoord(&first, &second, &result), QSTD_OK);
    CheckInteger("azimuth from north", result.azimuth, ANGLE_QUARTER_CIRCLE);
}

/* A square of side 1. */
static void TestArea(void)
{
    const PointRecord corners[4] = {{0.0, 0.0, 0.0, 1}, {0.0, 1.0, 0.0, 1}, {1.0, 1.0, 0.0, 1}, {1.0, 0.0, 0.0, 1}};
    CheckReal("area", QCogoCalcArea(corners, 4), 1.0, EXACT);
}

/* The diagonals of a square of side 10 meet in its middle. */
static void TestCrossLine(void)
{
    const LineDef rising = {{0.0, 0.0, 0.0, 1}, {10.0, 10.0, 0.0, 1}, 0, LINE_BY_POINTS};
    const LineDef falling = {{0.0, 10.0, 0.0, 1}, {10.0, 0.0, 0.0, 1}, 0, LINE_BY_POINTS};
    PointRecord result;
    CheckInteger("cross of lines", QCogoCalcCrossLine(&rising, &falling, &result), QSTD_OK);
    CheckPoint("cross of lines", &result, (PointRecord){5.0, 5.0, 0.0, 1}, NANOMETRE);
}

/* Half of the 8 between the centres is 4; 5 * 5 - 4 * 4 = 3 * 3. Right of the way east is south. */
static void TestCrossCircle(void)
{
    const PointRecord centre1 = {0.0, 0.0, 0.0, 1};
    const PointRecord centre2 = {0.0, 8.0, 0.0, 1};
    PointRecord pair[2];
    CheckInteger("cross of circles", QCogoCalcCrossCircle(&centre1, 5.0, &centre2, 5.0, pair), 2);
    CheckPoint("cross of circles, right", &pair[0], (PointRecord){-3.0, 4.0, 0.0, 1}, NANOMETRE);
    CheckPoint("cross of circles, left", &pair[1], (PointRecord){3.0, 4.0, 0.0, 1}, NANOMETRE);
}

/* The line runs east, 3 north of the centre: 5 * 5 - 3 * 3 = 4 * 4. */
static void TestCrossLineCircle(void)
{
    const LineDef line = {{3.0, 0.0, 0.0, 1}, {3.0, 10.0, 0.0, 1}, 0, LINE_BY_POINTS};
    const PointRecord centre = {0.0, 0.0, 0.0, 1};
    PointRecord pair[2];
    CheckInteger("cross of line and circle", QCogoCalcCrossLineCircle(&line, &centre, 5.0, pair), 2);
    CheckPoint("cross of line and circle, west", &pair[0], (PointRecord){3.0, -4.0, 0.0, 1}, NANOMETRE);
    CheckPoint("cross of line and circle, east", &pair[1], (PointRecord){3.0, 4.0, 0.0, 1}, NANOMETRE);
}

/* From a corner of a square of side 10 to its diagonal: the middle, at the mean of the heights 10 and 20. */
static void TestPointToLine(void)
{
    const LineDef line = {{0.0, 0.0, 10.0, 3}, {10.0, 10.0, 20.0, 3}, 0, LINE_BY_POINTS};
    const PointRecord point = {0.0, 10.0, 0.0, 1};
    PointRecord foot;
    CheckInteger("point to line", QCogoCalcPtLine(&line, &point, &foot), QSTD_OK);
    CheckPoint("point to line", &foot, (PointRecord){5.0, 5.0, 15.0, 3}, NANOMETRE);
}

/* A line of 10 to the north is turned to the east, then shifted by 2 to the right, which is south. */
static void TestLineTransfer(void)
{
    const LineDef line = {{0.0, 0.0, 0.0, 1}, {10.0, 0.0, 0.0, 1}, 0, LINE_BY_POINTS};
    LineDef result;
    CheckInteger("line transfer", QCogoCalcTransLine(&line, ANGLE_QUARTER_CIRCLE, 2.0, &result), QSTD_OK);
    CheckPoint("line transfer, first", &result.first, (PointRecord){-2.0, 0.0, 0.0, 1}, NANOMETRE);
    CheckPoint("line transfer, second", &result.second, (PointRecord){-2.0, 10.0, 0.0, 1}, NANOMETRE);
    CheckInteger("line transfer, mode", result.mode, LINE_BY_POINTS);
}

/* A level base at 10. Half a right angle upwards and as much to the right are 10 up and 10 sideways. */
static void TestRemoteElevation(void)
{
    const SightRecord base = {0, ANGLE_QUARTER_CIRCLE, 10.0};
    PointRecord result;
    CheckInteger("remote elevation, base", QREMSetBase(&base), QSTD_OK);
    CheckInteger("remote elevation", QREMCalc(45 * DEGREE, 45 * DEGREE, &result), QSTD_OK);
    CheckPoint("remote elevation", &result, (PointRecord){10.0, 0.0, 10.0, 3}, NANOMETRE);
}

/* From 10 at the base the slope falls by 1 in 2: it is at 9.5 after 1, and at 9 after 2, where the point is. */
static void TestSlopeReference(void)
{
    const PointRecord base = {0.0, 0.0, 0.0, 1};
    const PointRecord point = {2.0, 0.0, 9.5, 3};
    SlopeCheckResult result;
    CheckInteger("slope reference, definition", QBRSetSlope(10.0, 0.0, 8.0, 4.0), QSTD_OK);
    CheckInteger("slope reference", QBRCalc(&base, &point, &result), QSTD_OK);
    CheckReal("slope reference, offset", result.offsetBeyondSlope, 1.0, NANOMETRE);
    CheckReal("slope reference, height", result.heightAboveSlope, 0.5, NANOMETRE);
    CheckReal("slope reference, distance", result.distanceFromBase, 2.0, NANOMETRE);
}

/* An observation service that hands the target back, and what the caller passed through as its distance. */
static int32_t ObserveTarget(double northing, double easting, double height, double passthrough,
                             ObservationRecord* observation)
{
    *observation = (ObservationRecord){.horizontalAngle = 30 * DEGREE,
                                       .zenithAngle = 80 * DEGREE,
                                       .distance = passthrough,
                                       .northing = northing,
                                       .easting = easting,
                                       .height = height};
    return 0;
}

static int32_t AnswerFaceTwo(void)
{
    return 1;
}

static void ConnectObservationService(void)
{
    const InstrumentSettings service = {.QueryFaceTwo = AnswerFaceTwo, .CoordToObservation = ObserveTarget};
    ConnectInstrumentSettings(&service);
}

/* What the service answers, in face two: 30 + 180 degrees and 360 - 80 degrees. */
static void CheckSightInFaceTwo(const char* what, const SightRecord* sight, double passthrough)
{
    CheckInteger(what, sight->horizontalAngle, 210 * DEGREE);
    CheckInteger(what, sight->zenithAngle, 280 * DEGREE);
    CheckReal(what, sight->distance, passthrough, EXACT);
}

/* The first face runs north along easting 0: the foot of a point 7 east of it. */
static void TestCornerByThreePoints(void)
{
    const PointRecord first = {0.0, 0.0, 0.0, 3};
    const PointRecord second = {10.0, 0.0, 0.0, 3};
    const PointRecord third = {4.0, 7.0, 2.0, 3};
    SightRecord sight;
    PointRecord corner;
    ConnectObservationService();
    CheckInteger("corner by three points", QCalcOfsCorner3Pt(&first, &second, &third, 0.0, &sight, &corner, 1.25),
                 QSTD_OK);
    CheckPoint("corner by three points", &corner, (PointRecord){4.0, 0.0, 2.0, 3}, NANOMETRE);
    CheckSightInFaceTwo("corner by three points, sight", &sight, 1.25);
    ConnectInstrumentSettings(NULL);
}

/* One face along easting 0, the other along northing 5; the corner has the height of the fourth point. */
static void TestCornerByFourPoints(void)
{
    const PointRecord first = {0.0, 0.0, 0.0, 3};
    const PointRecord second = {10.0, 0.0, 0.0, 3};
    const PointRecord third = {5.0, 5.0, 1.0, 3};
    const PointRecord fourth = {5.0, 8.0, 2.0, 3};
    SightRecord sight;
    PointRecord corner;
    ConnectObservationService();
    CheckInteger("corner by four points",
                 QCalcOfsCorner4Pt(&first, &second, &third, &fourth, 0.0, &sight, &corner, 1.25), QSTD_OK);
    CheckPoint("corner by four points", &corner, (PointRecord){5.0, 0.0, 2.0, 3}, NANOMETRE);
    CheckSightInFaceTwo("corner by four points, sight", &sight, 1.25);
    ConnectInstrumentSettings(NULL);
}

/* The edge rises by 5 over 10 to the north; the sight runs west and meets it in its middle. */
static void TestLineOffset(void)
{
    const PointRecord first = {0.0, 0.0, 0.0, 3};
    const PointRecord second = {10.0, 0.0, 5.0, 3};
    const PointRecord station = {5.0, 10.0, 0.0, 3};
    SightRecord sight;
    PointRecord target;
    ConnectObservationService();
    CheckInteger(
        "line offset",
        QCalcOfsLineHA(&first, &second, 270 * DEGREE, ANGLE_QUARTER_CIRCLE, &station, 0.0, &sight, &target, 1.25),
        QSTD_OK);
    CheckPoint("line offset", &target, (PointRecord){5.0, 0.0, 2.5, 3}, NANOMETRE);
    CheckSightInFaceTwo("line offset, sight", &sight, 1.25);
    ConnectInstrumentSettings(NULL);
}

/* Tangents 30 degrees to both sides: sin 30 = 1 / 2, so the centre is two radii away and the near face is one. */
static void TestCircleOffset(void)
{
    const ObservationRecord face = {.horizontalAngle = 0, .zenithAngle = ANGLE_QUARTER_CIRCLE, .secondDistance = 10.0};
    const PointRecord station = {100.0, 200.0, 0.0, 3};
    SightRecord sight;
    PointRecord centre = {0.0, 0.0, 3.0, 0};
    double radius = 0.0;
    ConnectObservationService();
    CheckInteger("circle offset",
                 QCalcOfsCircle(&face, 1.25, 330 * DEGREE, ANGLE_QUARTER_CIRCLE, 30 * DEGREE, ANGLE_QUARTER_CIRCLE,
                                &station, 0.0, &sight, &centre, &radius),
                 QSTD_OK);
    CheckPoint("circle offset", &centre, (PointRecord){120.0, 200.0, 3.0, 3}, NANOMETRE);
    CheckReal("circle offset, radius", radius, 10.0, NANOMETRE);
    CheckSightInFaceTwo("circle offset, sight", &sight, 1.25);
    ConnectInstrumentSettings(NULL);
}

/* The line rises from 100 to 101 over 10 to the north: 100.5 half way. Right of it is east. */
static void TestReferenceLine(void)
{
    const PointRecord first = {0.0, 0.0, 100.0, 3};
    const PointRecord second = {10.0, 0.0, 101.0, 3};
    const PointRecord point = {5.0, 3.0, 101.0, 3};
    ReferenceLineResult result;
    CheckInteger("reference line, definition", QREFSetBaseLine(&first, &second), QSTD_OK);
    CheckInteger("reference line", QREFCalc(&point, &result), QSTD_OK);
    CheckPoint("reference line, foot", &result.foot, (PointRecord){5.0, 0.0, 100.5, 3}, NANOMETRE);
    CheckReal("reference line, station", result.station, 5.0, NANOMETRE);
    CheckReal("reference line, offset", result.offset, 3.0, NANOMETRE);
    CheckReal("reference line, height", result.heightDifference, 0.5, NANOMETRE);
}

/* A quarter circle of radius 10 is 5 pi long. The end of an arc given by its length is a rounded angle. */
static void CheckQuarterArc(const char* what, double radius, AngleUnit endAzimuth, double tolerance)
{
    ArcParams arc;
    CheckInteger(what, QREFGetArcParams(&arc), QSTD_OK);
    CheckInteger(what, arc.startAzimuth, 0);
    CheckReal(what, arc.endAzimuth, endAzimuth, tolerance);
    CheckReal(what, arc.radius, radius, NANOMETRE);
    CheckReal(what, arc.length, 5.0 * PI, NANOMETRE);
    CheckReal(what, arc.centralAngle, radius < 0.0 ? -ANGLE_QUARTER_CIRCLE : ANGLE_QUARTER_CIRCLE, tolerance);
}

/* From north to east about a centre 10 east of the start; from north to west; and the first one by its length. */
static void TestReferenceArc(void)
{
    const PointRecord start = {0.0, 0.0, 0.0, 1};
    const PointRecord end = {10.0, 10.0, 0.0, 1};
    CheckInteger("arc by ends", QREFSetArcByCoord(&start, &end, 0, ANGLE_QUARTER_CIRCLE), QSTD_OK);
    CheckQuarterArc("arc by ends", 10.0, ANGLE_QUARTER_CIRCLE, EXACT);
    CheckInteger("arc by azimuths", QREFSetArcByRadiusHAngle(&start, 0, -10.0, 3 * ANGLE_QUARTER_CIRCLE), QSTD_OK);
    CheckQuarterArc("arc by azimuths", -10.0, 3 * ANGLE_QUARTER_CIRCLE, EXACT);
    CheckInteger("arc by length", QREFSetArcByRadiusArcLen(&start, 0, 10.0, 5.0 * PI), QSTD_OK);
    CheckQuarterArc("arc by length", 10.0, ANGLE_QUARTER_CIRCLE, 1.0);
}

/* The centre is 10 east of the start. Half way along the quarter circle, 8 from the centre: 2.5 pi along, 2 inside. */
static void TestArcCalculation(void)
{
    const PointRecord start = {0.0, 0.0, 0.0, 1};
    const double eightAtHalfARightAngle = sqrt(32.0);
    const PointRecord measured = {eightAtHalfARightAngle, 10.0 - eightAtHalfARightAngle, 0.0, 1};
    ArcCalcResult result;
    CheckInteger("arc, definition", QREFSetArcByRadiusHAngle(&start, 0, 10.0, ANGLE_QUARTER_CIRCLE), QSTD_OK);
    CheckInteger("arc", QREFCalcArc(&measured, &result), QSTD_OK);
    CheckPoint("arc, point", &result.point, (PointRecord){0.0, 0.0, 0.0, 0}, EXACT);
    CheckReal("arc, along", result.along, 2.5 * PI, NANOMETRE);
    CheckReal("arc, offset", result.offset, 2.0, NANOMETRE);
    CheckReal("arc, height", result.heightDifference, 0.0, EXACT);
}

/* The plane stands 10 north; a level sight to the north-east meets it 10 east. */
static void TestTwoPointPlane(void)
{
    const PointRecord first = {10.0, 0.0, 0.0, 3};
    const PointRecord second = {10.0, 10.0, 0.0, 3};
    const PointRecord station = {0.0, 0.0, 0.0, 3};
    PointRecord point;
    double along = 0.0;
    double height = 0.0;
    CheckInteger("two-point plane, definition", QREFSet2PtBasePlane(&first, &second), QSTD_OK);
    CheckInteger("two-point plane",
                 QREFCalc2PtPlane(45 * DEGREE, ANGLE_QUARTER_CIRCLE, &station, 1.5, &point, &along, &height), QSTD_OK);
    CheckPoint("two-point plane", &point, (PointRecord){10.0, 10.0, 1.5, 3}, NANOMETRE);
    CheckReal("two-point plane, along", along, 10.0, NANOMETRE);
    CheckReal("two-point plane, height", height, 1.5, NANOMETRE);
}

/* A ground plane at height 0 around a baseline to the east, seen from 10 above a point 20 south of the baseline and 5
   along it: half a right angle downwards and northwards meets it 10 south of the baseline. With the normal towards the
   instrument, up, the positive side of the baseline is the cross product of up and east in the order of the axes north,
   east, height: (0, 0, 1) x (0, 1, 0) = (-1, 0, 0), south. */
static void TestThreePointPlane(void)
{
    const PointRecord first = {0.0, 0.0, 0.0, 3};
    const PointRecord second = {0.0, 10.0, 0.0, 3};
    const PointRecord third = {10.0, 10.0, 0.0, 3};
    const PointRecord station = {-20.0, 5.0, 8.5, 3};
    PointRecord point;
    double along = 0.0;
    double across = 0.0;
    CheckInteger("three-point plane, definition", QREFSet3PtBasePlane(&first, &second, &third), QSTD_OK);
    CheckInteger("three-point plane", QREFCalc3PtPlane(0, 135 * DEGREE, &station, 1.5, &point, &along, &across),
                 QSTD_OK);
    CheckPoint("three-point plane", &point, (PointRecord){-10.0, 5.0, 0.0, 3}, NANOMETRE);
    CheckReal("three-point plane, along", along, 5.0, NANOMETRE);
    CheckReal("three-point plane, across", across, 10.0, NANOMETRE);
}

int main(void)
{
    TestInverse();
    TestForward();
    TestOffset();
    TestSlope();
    TestRemoteDistance();
    TestTwoPointTarget();
    TestBenchmarkHeight();
    TestTwoPointResection();
    TestThreePointResection();
    TestMultiPointResection();
    TestKnownLine();
    TestInstrument();
    TestArea();
    TestCrossLine();
    TestCrossCircle();
    TestCrossLineCircle();
    TestPointToLine();
    TestLineTransfer();
    TestRemoteElevation();
    TestSlopeReference();
    TestCornerByThreePoints();
    TestCornerByFourPoints();
    TestLineOffset();
    TestCircleOffset();
    TestReferenceLine();
    TestReferenceArc();
    TestArcCalculation();
    TestTwoPointPlane();
    TestThreePointPlane();
    if (failures == 0)
    {
        puts("the C interface answers as expected");
    }
    return failures == 0 ? 0 : 1;
}
