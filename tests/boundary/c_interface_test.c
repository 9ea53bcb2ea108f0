/* The interface as a C program sees it: every exported function is called, and its results are checked against figures
   that follow from the chosen geometry. */
#include <math.h>
#include <stdio.h>

#include <qstdlib.h>

#define EXACT 0.0
#define NANOMETRE 1e-9

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
    return failures == 0 ? 0 : 1;
}
