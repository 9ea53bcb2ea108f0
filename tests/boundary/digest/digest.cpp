// digest [--full] [--divide N]
//
// Calls every exported function with many deterministic inputs and prints a line each: the number of calls, how many of
// them returned 0, and a hash of every bit of every result. Two builds of the library agree when they print the same.
// --full prints each call's results too; --divide makes a slow machine do one Nth of the calls.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <qstdlib.h>

#include "inputs.h"
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
    results.Add(result.azimuth);
    results.Add(result.zenith);
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
    results.Add(result.azimuth);
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
    results.Add(station.orientation);
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
    results.Add(adjusted.station.orientation);
    results.Add(adjusted.station.northingPrecision);
    results.Add(adjusted.station.eastingPrecision);
    results.Add(adjusted.station.heightSpread);
    for (int32_t i = 0; i <= sights; ++i)
    {
        results.Add(adjusted.residuals[i].angleResidual);
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
        results.EndCall();
    }
    results.PrintTotal(calls);
}

} // namespace

int main(int argc, char** argv)
{
    bool full = false;
    int32_t divisor = 1;
    for (int i = 1; i < argc; ++i)
    {
        if (std::strcmp(argv[i], "--full") == 0)
        {
            full = true;
        }
        else if (std::strcmp(argv[i], "--divide") == 0 && i + 1 < argc)
        {
            ++i;
            divisor = static_cast<int32_t>(std::strtol(argv[i], nullptr, 10));
        }
        else
        {
            divisor = 0;
        }
    }
    if (divisor < 1)
    {
        std::fprintf(stderr, "usage: %s [--full] [--divide N]\n", argc > 0 ? argv[0] : "digest");
        return 2;
    }
    for (const Function& function : FUNCTIONS)
    {
        Run(function, divisor, full);
    }
    return 0;
}
