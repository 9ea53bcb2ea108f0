// How long each exported function takes, on input as it occurs in the field.
#include <cmath>
#include <vector>

#include <benchmark/benchmark.h>
#include <qstdlib.h>

namespace {

constexpr double PI = 3.141592653589793;
constexpr PointRecord STATION = {1000.0, 2000.0, 101.5, 3};
constexpr double REFLECTOR_HEIGHT = 1.5;

AngleUnit Units(double radians)
{
    const auto units = static_cast<AngleUnit>(std::lround(radians * ANGLE_HALF_CIRCLE / PI));
    return (units + ANGLE_FULL_CIRCLE) % ANGLE_FULL_CIRCLE;
}

// A point seen from the station in an azimuth, at a plan distance.
PointRecord PointAt(double azimuth, double distance, double rise)
{
    return {STATION.northing + distance * std::cos(azimuth), STATION.easting + distance * std::sin(azimuth),
            STATION.height + rise - REFLECTOR_HEIGHT, 3};
}

// Sights spread around the horizon at 50 to 300 m, with readings that are some seconds and millimetres off, so that the
// adjustment iterates as it does in the field.
std::vector<ResectObservation> SightsAround(int count)
{
    std::vector<ResectObservation> sights;
    for (int i = 0; i < count; ++i)
    {
        const double azimuth = 2.0 * PI * i / count;
        const double distance = 50.0 + 250.0 * ((i * 7) % count) / count;
        const double rise = 0.05 * distance * ((i % 3) - 1);
        const AngleUnit readingError = 16 * ((i * 5) % 7 - 3);
        const double distanceError = 0.001 * ((i * 3) % 5 - 2);
        sights.push_back({PointAt(azimuth, distance, rise),
                          (Units(azimuth) + readingError + ANGLE_FULL_CIRCLE) % ANGLE_FULL_CIRCLE,
                          Units(std::atan2(distance, rise)), std::hypot(distance, rise) + distanceError,
                          distance + distanceError, rise, REFLECTOR_HEIGHT});
    }
    return sights;
}

// Measures calls that return a status. A run whose calls fail measures nothing: it is reported as an error.
template <typename Call>
void Measure(benchmark::State& state, Call call)
{
    int32_t status = QSTD_OK;
    for ([[maybe_unused]] auto _ : state)
    {
        status = call();
        benchmark::ClobberMemory();
    }
    if (status != QSTD_OK)
    {
        state.SkipWithError("the function rejects the input");
    }
}

void QSTNMultiResectOf(benchmark::State& state)
{
    const auto count = static_cast<int16_t>(state.range(0));
    const std::vector<ResectObservation> sights = SightsAround(count);
    std::vector<ResectResidual> residuals(sights.size());
    ResectStation station{};
    Measure(state, [&] { return QSTNMultiResect(count, sights.data(), &station, residuals.data()); });
}
BENCHMARK(QSTNMultiResectOf)
    ->Name("QSTNMultiResect/targets")
    ->Arg(3)
    ->Arg(10)
    ->Arg(100)
    ->Arg(1000)
    ->Unit(benchmark::kMicrosecond);

void QSTNKnownLineOf(benchmark::State& state)
{
    const std::vector<ResectObservation> sights = SightsAround(3);
    const ResectObservation& start = sights[0];
    const ResectObservation& direction = sights[1];
    ResectResidual residuals[2] = {};
    ResectStation station{};
    Measure(state, [&] { return QSTNKnownLine(&start, &direction, AZIMUTH_NOT_GIVEN, &station, residuals); });
}
BENCHMARK(QSTNKnownLineOf)->Name("QSTNKnownLine");

ThreePointTarget DirectionOnly(const ResectObservation& sight)
{
    return {sight.target, sight.horizontalAngle, sight.zenithAngle, sight.reflectorHeight};
}

void QSTN3PtResectOf(benchmark::State& state)
{
    const std::vector<ResectObservation> sights = SightsAround(3);
    const ThreePointTarget first = DirectionOnly(sights[0]);
    const ThreePointTarget second = DirectionOnly(sights[1]);
    const ThreePointTarget third = DirectionOnly(sights[2]);
    TwoPointStation station{};
    Measure(state, [&] { return QSTN3PtResect(&first, &second, &third, &station); });
}
BENCHMARK(QSTN3PtResectOf)->Name("QSTN3PtResect");

TwoPointTarget WithLocalCoordinates(const ResectObservation& sight)
{
    const double reading = sight.horizontalAngle * PI / ANGLE_HALF_CIRCLE;
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

// Both distances are measured, or the first alone: two different solutions.
void QSTN2PtResectOf(benchmark::State& state)
{
    const std::vector<ResectObservation> sights = SightsAround(3);
    const TwoPointTarget first = WithLocalCoordinates(sights[0]);
    TwoPointTarget second = WithLocalCoordinates(sights[1]);
    if (state.range(0) == 1)
    {
        second.horizontalDistance = 0.0;
    }
    TwoPointStation station{};
    Measure(state, [&] { return QSTN2PtResect(&first, &second, &station); });
}
BENCHMARK(QSTN2PtResectOf)->Name("QSTN2PtResect/distances")->Arg(1)->Arg(2);

void QSTNSeaLevelCalcByBMOf(benchmark::State& state)
{
    double benchmarkHeight = 100.0;
    for ([[maybe_unused]] auto _ : state)
    {
        benchmark::DoNotOptimize(benchmarkHeight);
        benchmark::DoNotOptimize(QSTNSeaLevelCalcByBM(benchmarkHeight, REFLECTOR_HEIGHT, 0.25));
    }
}
BENCHMARK(QSTNSeaLevelCalcByBMOf)->Name("QSTNSeaLevelCalcByBM");

void QCogoCoordToAngDistOf(benchmark::State& state)
{
    const PointRecord to = PointAt(0.7, 120.0, 5.0);
    AngDistRecord result{};
    Measure(state, [&] { return QCogoCoordToAngDist(&STATION, &to, &result); });
}
BENCHMARK(QCogoCoordToAngDistOf)->Name("QCogoCoordToAngDist");

void QCogoAngDistToCoordOf(benchmark::State& state)
{
    const AngDistRecord observation = {Units(0.7), Units(1.5), 120.1, 120.0, 5.0};
    PointRecord result{};
    Measure(state, [&] { return QCogoAngDistToCoord(&STATION, &observation, &result); });
}
BENCHMARK(QCogoAngDistToCoordOf)->Name("QCogoAngDistToCoord");

void QCogoOffsetToCoordOf(benchmark::State& state)
{
    const PointRecord end = PointAt(0.7, 120.0, 5.0);
    PointRecord result{};
    Measure(state, [&] { return QCogoOffsetToCoord(&STATION, &end, 45.0, -3.0, &result); });
}
BENCHMARK(QCogoOffsetToCoordOf)->Name("QCogoOffsetToCoord");

void QCogoCalcSlopeByDistOf(benchmark::State& state)
{
    double horizontal = 64.0;
    SlopeResult slope{};
    for ([[maybe_unused]] auto _ : state)
    {
        benchmark::DoNotOptimize(horizontal);
        QCogoCalcSlopeByDist(horizontal, 1.5, &slope);
        benchmark::DoNotOptimize(slope);
    }
}
BENCHMARK(QCogoCalcSlopeByDistOf)->Name("QCogoCalcSlopeByDist");

void QRDMCalcByCoordOf(benchmark::State& state)
{
    const PointRecord second = PointAt(0.7, 120.0, 5.0);
    RemoteDistanceResult result{};
    Measure(state, [&] { return QRDMCalcByCoord(&STATION, &second, &result); });
}
BENCHMARK(QRDMCalcByCoordOf)->Name("QRDMCalcByCoord");

void QCalc2PtTargetOf(benchmark::State& state)
{
    const PointRecord first = PointAt(0.7, 120.0, 1.6);
    const PointRecord second = PointAt(0.7, 120.2, 0.6);
    double measuredSpacing = 0.0;
    PointRecord target{};
    Measure(state, [&] { return QCalc2PtTarget(&first, &second, 1.02, 0.8, &measuredSpacing, &target); });
}
BENCHMARK(QCalc2PtTargetOf)->Name("QCalc2PtTarget");

void QCogoCalcAreaOf(benchmark::State& state)
{
    std::vector<PointRecord> corners;
    const auto count = static_cast<int32_t>(state.range(0));
    corners.reserve(static_cast<size_t>(count));
    for (int32_t i = 0; i < count; ++i)
    {
        corners.push_back(PointAt(2.0 * PI * i / count, 100.0, 0.0));
    }
    for ([[maybe_unused]] auto _ : state)
    {
        benchmark::ClobberMemory();
        benchmark::DoNotOptimize(QCogoCalcArea(corners.data(), count));
    }
}
BENCHMARK(QCogoCalcAreaOf)->Name("QCogoCalcArea/corners")->Arg(4)->Arg(100);

void QCogoCalcCrossLineOf(benchmark::State& state)
{
    const LineDef line = {STATION, PointAt(0.7, 120.0, 5.0), 0, LINE_BY_POINTS};
    const LineDef other = {PointAt(1.5, 40.0, 0.0), PointRecord{}, Units(2.5), LINE_BY_AZIMUTH};
    PointRecord result{};
    Measure(state, [&] { return QCogoCalcCrossLine(&line, &other, &result); });
}
BENCHMARK(QCogoCalcCrossLineOf)->Name("QCogoCalcCrossLine");

void QCogoCalcCrossCircleOf(benchmark::State& state)
{
    const PointRecord centre = PointAt(0.7, 120.0, 5.0);
    PointRecord pair[2] = {};
    Measure(state,
            [&] { return QCogoCalcCrossCircle(&STATION, 80.0, &centre, 90.0, pair) == 2 ? QSTD_OK : QSTD_REJECTED; });
}
BENCHMARK(QCogoCalcCrossCircleOf)->Name("QCogoCalcCrossCircle");

void QCogoCalcCrossLineCircleOf(benchmark::State& state)
{
    const LineDef line = {STATION, PointAt(0.7, 120.0, 5.0), 0, LINE_BY_POINTS};
    const PointRecord centre = PointAt(0.9, 60.0, 0.0);
    PointRecord pair[2] = {};
    Measure(state, [&] { return QCogoCalcCrossLineCircle(&line, &centre, 50.0, pair) == 2 ? QSTD_OK : QSTD_REJECTED; });
}
BENCHMARK(QCogoCalcCrossLineCircleOf)->Name("QCogoCalcCrossLineCircle");

void QCogoCalcPtLineOf(benchmark::State& state)
{
    const LineDef line = {STATION, PointAt(0.7, 120.0, 5.0), 0, LINE_BY_POINTS};
    const PointRecord point = PointAt(0.9, 60.0, 0.0);
    PointRecord result{};
    Measure(state, [&] { return QCogoCalcPtLine(&line, &point, &result); });
}
BENCHMARK(QCogoCalcPtLineOf)->Name("QCogoCalcPtLine");

void QCogoCalcTransLineOf(benchmark::State& state)
{
    const LineDef line = {STATION, PointAt(0.7, 120.0, 5.0), 0, LINE_BY_POINTS};
    LineDef result{};
    Measure(state, [&] { return QCogoCalcTransLine(&line, Units(0.3), 2.0, &result); });
}
BENCHMARK(QCogoCalcTransLineOf)->Name("QCogoCalcTransLine");

void QREMSetBaseOf(benchmark::State& state)
{
    const SightRecord base = {Units(0.7), Units(1.5), 120.0};
    Measure(state, [&] { return QREMSetBase(&base); });
}
BENCHMARK(QREMSetBaseOf)->Name("QREMSetBase");

void QREMCalcOf(benchmark::State& state)
{
    const SightRecord base = {Units(0.7), Units(1.5), 120.0};
    QREMSetBase(&base);
    PointRecord result{};
    Measure(state, [&] { return QREMCalc(Units(0.71), Units(1.4), &result); });
}
BENCHMARK(QREMCalcOf)->Name("QREMCalc");

void QBRSetSlopeOf(benchmark::State& state)
{
    Measure(state, [&] { return QBRSetSlope(10.0, 0.0, 8.0, 4.0); });
}
BENCHMARK(QBRSetSlopeOf)->Name("QBRSetSlope");

void QBRCalcOf(benchmark::State& state)
{
    QBRSetSlope(110.0, 0.0, 100.0, 40.0);
    const PointRecord point = PointAt(0.7, 12.0, 5.0);
    SlopeCheckResult result{};
    Measure(state, [&] { return QBRCalc(&STATION, &point, &result); });
}
BENCHMARK(QBRCalcOf)->Name("QBRCalc");

void QCalcOfsCorner3PtOf(benchmark::State& state)
{
    const PointRecord first = PointAt(0.6, 50.0, 0.5);
    const PointRecord second = PointAt(0.9, 55.0, 0.6);
    const PointRecord third = PointAt(1.0, 70.0, 0.5);
    SightRecord sight{};
    PointRecord result{};
    Measure(state, [&] { return QCalcOfsCorner3Pt(&first, &second, &third, 0.0, &sight, &result, 0.0); });
}
BENCHMARK(QCalcOfsCorner3PtOf)->Name("QCalcOfsCorner3Pt");

void QCalcOfsCorner4PtOf(benchmark::State& state)
{
    const PointRecord first = PointAt(0.6, 50.0, 0.5);
    const PointRecord second = PointAt(0.9, 55.0, 0.6);
    const PointRecord third = PointAt(1.0, 70.0, 0.5);
    const PointRecord fourth = PointAt(1.0, 80.0, 0.5);
    SightRecord sight{};
    PointRecord result{};
    Measure(state, [&] { return QCalcOfsCorner4Pt(&first, &second, &third, &fourth, 0.0, &sight, &result, 0.0); });
}
BENCHMARK(QCalcOfsCorner4PtOf)->Name("QCalcOfsCorner4Pt");

// Returns the target as it came: the share of the instrument in the time is next to nothing.
int32_t ObserveTarget(double northing, double easting, double height, double /*passthrough*/,
                      ObservationRecord* observation)
{
    *observation = {0, ANGLE_QUARTER_CIRCLE, 100.0, 100.0, 0.0, northing, easting, height};
    return 0;
}

void QCalcOfsLineHAOf(benchmark::State& state)
{
    InstrumentSettings service{};
    service.CoordToObservation = ObserveTarget;
    ConnectInstrumentSettings(&service);
    const PointRecord first = PointAt(0.6, 50.0, 0.5);
    const PointRecord second = PointAt(0.9, 55.0, 0.6);
    SightRecord sight{};
    PointRecord result{};
    Measure(state, [&] {
        return QCalcOfsLineHA(&first, &second, Units(0.7), Units(1.5), &STATION, 1.5, &sight, &result, 0.0);
    });
    ConnectInstrumentSettings(nullptr);
}
BENCHMARK(QCalcOfsLineHAOf)->Name("QCalcOfsLineHA");

void QCalcOfsCircleOf(benchmark::State& state)
{
    const ObservationRecord face = {Units(0.7), Units(1.5), 0.0, 20.0, 0.0, 0.0, 0.0, 0.0};
    SightRecord sight{};
    PointRecord result{};
    double radius = 0.0;
    Measure(state, [&] {
        return QCalcOfsCircle(&face, 0.0, Units(0.6), Units(1.5), Units(0.8), Units(1.5), &STATION, 0.0, &sight,
                              &result, &radius);
    });
}
BENCHMARK(QCalcOfsCircleOf)->Name("QCalcOfsCircle");

void QREFSetBaseLineOf(benchmark::State& state)
{
    const PointRecord first = PointAt(0.6, 50.0, 0.5);
    const PointRecord second = PointAt(0.9, 55.0, 0.6);
    Measure(state, [&] { return QREFSetBaseLine(&first, &second); });
}
BENCHMARK(QREFSetBaseLineOf)->Name("QREFSetBaseLine");

void QREFCalcOf(benchmark::State& state)
{
    const PointRecord first = PointAt(0.6, 50.0, 0.5);
    const PointRecord second = PointAt(0.9, 55.0, 0.6);
    QREFSetBaseLine(&first, &second);
    ReferenceLineResult result{};
    Measure(state, [&] { return QREFCalc(&STATION, &result); });
}
BENCHMARK(QREFCalcOf)->Name("QREFCalc");

void QREFSetArcByCoordOf(benchmark::State& state)
{
    const PointRecord end = PointAt(0.7, 120.0, 5.0);
    Measure(state, [&] { return QREFSetArcByCoord(&STATION, &end, Units(0.4), Units(1.0)); });
}
BENCHMARK(QREFSetArcByCoordOf)->Name("QREFSetArcByCoord");

void QREFSetArcByRadiusHAngleOf(benchmark::State& state)
{
    Measure(state, [&] { return QREFSetArcByRadiusHAngle(&STATION, Units(0.4), 200.0, Units(1.0)); });
}
BENCHMARK(QREFSetArcByRadiusHAngleOf)->Name("QREFSetArcByRadiusHAngle");

void QREFSetArcByRadiusArcLenOf(benchmark::State& state)
{
    Measure(state, [&] { return QREFSetArcByRadiusArcLen(&STATION, Units(0.4), 200.0, 120.0); });
}
BENCHMARK(QREFSetArcByRadiusArcLenOf)->Name("QREFSetArcByRadiusArcLen");

void QREFGetArcParamsOf(benchmark::State& state)
{
    QREFSetArcByRadiusArcLen(&STATION, Units(0.4), 200.0, 120.0);
    ArcParams params{};
    Measure(state, [&] { return QREFGetArcParams(&params); });
}
BENCHMARK(QREFGetArcParamsOf)->Name("QREFGetArcParams");

void QREFCalcArcOf(benchmark::State& state)
{
    QREFSetArcByRadiusArcLen(&STATION, Units(0.4), 200.0, 120.0);
    const PointRecord point = PointAt(0.6, 60.0, 0.0);
    ArcCalcResult result{};
    Measure(state, [&] { return QREFCalcArc(&point, &result); });
}
BENCHMARK(QREFCalcArcOf)->Name("QREFCalcArc");

void QREFSet2PtBasePlaneOf(benchmark::State& state)
{
    const PointRecord first = PointAt(0.6, 50.0, 0.5);
    const PointRecord second = PointAt(0.9, 55.0, 0.6);
    Measure(state, [&] { return QREFSet2PtBasePlane(&first, &second); });
}
BENCHMARK(QREFSet2PtBasePlaneOf)->Name("QREFSet2PtBasePlane");

void QREFCalc2PtPlaneOf(benchmark::State& state)
{
    const PointRecord first = PointAt(0.6, 50.0, 0.5);
    const PointRecord second = PointAt(0.9, 55.0, 0.6);
    QREFSet2PtBasePlane(&first, &second);
    PointRecord result{};
    double along = 0.0;
    double across = 0.0;
    Measure(state, [&] { return QREFCalc2PtPlane(Units(0.7), Units(1.5), &STATION, 1.5, &result, &along, &across); });
}
BENCHMARK(QREFCalc2PtPlaneOf)->Name("QREFCalc2PtPlane");

void QREFSet3PtBasePlaneOf(benchmark::State& state)
{
    const PointRecord first = PointAt(0.6, 50.0, 0.5);
    const PointRecord second = PointAt(0.9, 55.0, 0.6);
    const PointRecord third = PointAt(0.75, 53.0, 8.0);
    Measure(state, [&] { return QREFSet3PtBasePlane(&first, &second, &third); });
}
BENCHMARK(QREFSet3PtBasePlaneOf)->Name("QREFSet3PtBasePlane");

void QREFCalc3PtPlaneOf(benchmark::State& state)
{
    const PointRecord first = PointAt(0.6, 50.0, 0.5);
    const PointRecord second = PointAt(0.9, 55.0, 0.6);
    const PointRecord third = PointAt(0.75, 53.0, 8.0);
    QREFSet3PtBasePlane(&first, &second, &third);
    PointRecord result{};
    double along = 0.0;
    double across = 0.0;
    Measure(state, [&] { return QREFCalc3PtPlane(Units(0.7), Units(1.5), &STATION, 1.5, &result, &along, &across); });
}
BENCHMARK(QREFCalc3PtPlaneOf)->Name("QREFCalc3PtPlane");

void ConnectInstrumentSettingsOf(benchmark::State& state)
{
    const InstrumentSettings standAlone{};
    for ([[maybe_unused]] auto _ : state)
    {
        ConnectInstrumentSettings(&standAlone);
        benchmark::ClobberMemory();
    }
    ConnectInstrumentSettings(nullptr);
}
BENCHMARK(ConnectInstrumentSettingsOf)->Name("ConnectInstrumentSettings");

} // namespace

BENCHMARK_MAIN();
