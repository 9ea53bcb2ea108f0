#include "verbs/benchmark.h"

#include "input/row_reader.h"
#include "proof/judgement.h"
#include "proof/plan_geometry.h"
#include "station/set_up.h"
#include "text/outcome.h"
#include "text/status_name.h"
#include "text/text.h"
#include "verbs/arguments.h"
#include "verbs/standing.h"
#include "verbs/typed_sight.h"

#include <qstdlib.h>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace qstd {

namespace {

/** A sight to a benchmark, in face one and the unit of the job. */
struct BenchmarkSight
{
    std::string station;
    KnownPoint benchmark;
    std::optional<PointRecord> standing; /**< the station's plan position, where it is known */
    std::optional<AngleUnit> zenith;
    std::optional<double> slopeDistance;
    std::optional<double> horizontalDistance;
    double targetHeight = 0.0;
    std::optional<double> instrumentHeight;
};

/** What comes of it. */
struct AxisHeight
{
    bool isComputed = false;
    int32_t status = QSTD_OK;
    std::string remark;
    double height = 0.0;
    std::optional<double> verticalDifference; /**< only from a distance */
};

Section SectionOf(bool isSingle)
{
    const std::string stationTitle = isSingle ? "" : "station";
    return {"benchmark",
            isSingle ? Layout::RECORD : Layout::TABLE,
            true,
            {{"station", stationTitle, Quantity::TEXT, ""},
             {"benchmark", "benchmark", Quantity::TEXT, ""},
             {"benchmark_height", "benchmark height", Quantity::LENGTH, ""},
             {"target_height", "reflector above it", Quantity::LENGTH, ""},
             {"zenith", "zenith angle", Quantity::ANGLE, ""},
             {"height_difference", "height difference", Quantity::LENGTH, "axis to reflector"},
             {"method", "by", Quantity::TEXT, ""},
             {"height", "instrument axis", Quantity::LENGTH, ""},
             {"mark_height", "ground mark", Quantity::LENGTH, ""}}};
}

const Section MEAN_SECTION = {"station_height",
                              Layout::TABLE,
                              false,
                              {{"station", "station", Quantity::TEXT, ""},
                               {"heights", "heights", Quantity::COUNT, ""},
                               {"height", "mean of axis", Quantity::LENGTH, ""},
                               {"mark_height", "ground mark", Quantity::LENGTH, ""},
                               {"height_spread", "spread", Quantity::LENGTH, ""}}};

/**
 * True where a horizontal distance meets an exactly vertical sight, along which it says nothing. The angle tells: its
 * tangent at a half circle is not quite 0.
 */
bool IsAcrossVertical(const BenchmarkSight& sight)
{
    return sight.zenith && !sight.slopeDistance && sight.horizontalDistance &&
           WithinCircle(*sight.zenith) % ANGLE_HALF_CIRCLE == 0;
}

/** Instrument axis to reflector, from a distance; not across a vertical sight. */
std::optional<double> VerticalDifference(const BenchmarkSight& sight)
{
    if (!sight.zenith)
    {
        return std::nullopt;
    }
    const double zenith = RadiansOf(*sight.zenith);
    if (sight.slopeDistance)
    {
        return *sight.slopeDistance * std::cos(zenith);
    }
    return sight.horizontalDistance ? std::optional(*sight.horizontalDistance / std::tan(zenith)) : std::nullopt;
}

AxisHeight Refused(int32_t status, const std::string& remark)
{
    AxisHeight result;
    result.status = status;
    result.remark = remark;
    return result;
}

AxisHeight ByZenith(const BenchmarkSight& sight, LinearUnit unit)
{
    if (!sight.standing)
    {
        return Refused(QSTD_NO_DISTANCE, "no distance, and no coordinates of the station to take it from");
    }
    const auto inMetres = [unit](const PointRecord& point) {
        return PointRecord{ToMetres(point.northing, unit), ToMetres(point.easting, unit), ToMetres(point.height, unit),
                           point.flags};
    };
    const PointRecord& target = sight.benchmark.point;
    if ((target.flags & POINT_HAS_PLAN) == 0)
    {
        return Refused(QSTD_MISSING_COORDINATES, "no distance, and the benchmark has no coordinates to take it from");
    }
    if (target.northing == sight.standing->northing && target.easting == sight.standing->easting)
    {
        return Refused(QSTD_COINCIDENT_POINTS, "no distance, and the station stands on the benchmark");
    }
    if (IsVertical(*sight.zenith))
    {
        return Refused(QSTD_VERTICAL_SIGHT, "the sight is vertical to one minute of arc, and has no distance");
    }
    const std::optional<double> height = AxisHeightByZenith(inMetres(*sight.standing), inMetres(target), *sight.zenith,
                                                            ToMetres(sight.targetHeight, unit));
    if (!height)
    {
        return Refused(QSTD_HEIGHT_UNDETERMINED, "the zenith angle gives no height between these coordinates");
    }
    AxisHeight result;
    result.isComputed = true;
    result.height = FromMetres(*height, unit);
    return result;
}

AxisHeight Solve(const BenchmarkSight& sight, LinearUnit unit)
{
    if (!sight.zenith)
    {
        return Refused(QSTD_HEIGHT_UNDETERMINED, "no zenith reading");
    }
    if (IsAcrossVertical(sight))
    {
        return Refused(QSTD_VERTICAL_SIGHT, "a horizontal distance says nothing along a vertical sight");
    }
    AxisHeight result;
    result.verticalDifference = VerticalDifference(sight);
    if (!result.verticalDifference)
    {
        return ByZenith(sight, unit);
    }
    result.height = QSTNSeaLevelCalcByBM(sight.benchmark.point.height, sight.targetHeight, *result.verticalDifference);
    result.isComputed = std::isfinite(result.height);
    if (!result.isComputed)
    {
        return Refused(QSTD_HEIGHT_UNDETERMINED, "the height is beyond all numbers");
    }
    return result;
}

/** How far the benchmark is; 0 where nobody knows. */
double ReachOf(const BenchmarkSight& sight)
{
    if (sight.slopeDistance || sight.horizontalDistance)
    {
        return sight.slopeDistance.value_or(sight.horizontalDistance.value_or(0.0));
    }
    return sight.standing ? PlanDistance(*sight.standing, sight.benchmark.point) : 0.0;
}

/** How far from the axis to the reflector by zenith angle and coordinates, and how far rounding may lead off. */
void RequireHeightByZenith(const BenchmarkSight& sight, const InstrumentOptions& instrument, LinearUnit unit,
                           double height, Proof& proof)
{
    constexpr double EARTH_RADIUS = 6370000.0;
    const double earth = FromMetres(EARTH_RADIUS, unit);
    const double scale = instrument.scale.value_or(1.0);
    const double level =
        (scale != 0.0 ? ReachOf(sight) / scale : ReachOf(sight)) * (1.0 + instrument.seaLevel.value_or(0.0) / earth);
    const double zenith = RadiansOf(*sight.zenith);
    const double slope = level / std::sin(zenith);
    // Curvature and refraction are not computed again: both corrections together are below this.
    const double bent = instrument.refraction ? 3.0 * slope * slope / (2.0 * earth) : 0.0;
    const double climb = level / std::tan(zenith);
    const PointRecord& target = sight.benchmark.point;
    // The library solves a small network for it, whose station ends within a hundredth of a millimetre.
    constexpr double MOVED = 1e-5;
    proof.Require(
        "the height does not lead back to the benchmark, by", height + climb - (target.height + sight.targetHeight),
        bent + RoundingOf(std::fabs(climb) + std::fabs(target.height)) +
            std::fabs(climb / level) * (MOVED + RoundingOf(SizeOf({PlanOf(*sight.standing), PlanOf(target)}))));
}

/** The axis, moved by the sight, is the reflector above the benchmark. */
Proof Prove(const BenchmarkSight& sight, const InstrumentOptions& instrument, LinearUnit unit, const AxisHeight& result)
{
    Proof proof;
    const double reflector = sight.benchmark.point.height + sight.targetHeight;
    if (!result.verticalDifference)
    {
        RequireHeightByZenith(sight, instrument, unit, result.height, proof);
        return proof;
    }
    const double up = *result.verticalDifference;
    proof.Require("the height does not lead back to the benchmark, by", result.height + up - reflector,
                  RoundingOf(std::fabs(up) + std::fabs(reflector)));
    const double zenith = RadiansOf(*sight.zenith);
    const double level = sight.slopeDistance ? *sight.slopeDistance * std::sin(zenith) : *sight.horizontalDistance;
    proof.Require("the height difference is not in the sight, by", up * std::sin(zenith) - level * std::cos(zenith),
                  RoundingOf(std::fabs(up) + level));
    return proof;
}

Row RowOf(const BenchmarkSight& sight, const InstrumentOptions& instrument, const Sink& sink)
{
    const LinearUnit unit = sink.Options().unit;
    const AxisHeight result = Solve(sight, unit);
    Row row;
    row.status = result.status;
    row.isComputed = result.isComputed;
    row.remark = result.remark;
    row.values = {sight.station, sight.benchmark.id, sight.benchmark.point.height, sight.targetHeight,
                  sight.zenith ? AngleOf(*sight.zenith) : Value()};
    if (result.isComputed)
    {
        const bool isByDistance = result.verticalDifference.has_value();
        row.values.insert(row.values.end(),
                          {isByDistance ? RealValue(*result.verticalDifference) : Value(),
                           std::string(isByDistance ? "distance" : "zenith angle"), RealValue(result.height),
                           sight.instrumentHeight ? RealValue(result.height - *sight.instrumentHeight) : Value()});
        Judge(Prove(sight, instrument, unit, result), sink, row);
        QuestionFar("the axis", std::fabs(result.height - sight.benchmark.point.height), ReachOf(sight), sink, row);
    }
    return row;
}

/** Of 756.31 or H=756.31. */
std::optional<double> HeightFrom(const std::string& text)
{
    const std::string plain = LowerCase(Trim(text));
    const bool isMarked = plain.rfind("h=", 0) == 0;
    return ParseReal(Trim(std::string_view(plain).substr(isMarked ? 2 : 0)));
}

/** A point of known height, or the height itself. */
KnownPoint BenchmarkFrom(const std::string& text, Inputs& inputs)
{
    const std::optional<KnownPoint> known = inputs.FindPoint(text);
    const std::optional<double> height = HeightFrom(text);
    if (known)
    {
        if (height)
        {
            throw WrongUse(fmt::format("benchmark {}: the name of a point and a height; write id={} for the point, or "
                                       "H={} for the height",
                                       Quoted(text), text, text));
        }
        if (!HasHeight(*known))
        {
            throw WrongUse(fmt::format("benchmark {}: has no height; name a point that has one", Quoted(text)));
        }
        return *known;
    }
    if (!height || std::fabs(*height) > LONGEST_LENGTH)
    {
        throw WrongUse(fmt::format("benchmark {}: neither a point of the table --points nor a height; write a height "
                                   "such as 756.31, or N,E,H",
                                   Quoted(text)));
    }
    KnownPoint benchmark;
    benchmark.id = text;
    benchmark.point.height = *height;
    benchmark.point.flags = POINT_HAS_HEIGHT;
    return benchmark;
}

bool HasCorrections(const InstrumentOptions& instrument)
{
    return instrument.scale || instrument.seaLevel || instrument.refraction;
}

void CheckTyped(const BenchmarkOptions& options)
{
    if (options.benchmark.empty() || options.zenith.empty())
    {
        throw WrongUse("which benchmark, and which zenith angle? write BENCHMARK ZENITH DISTANCE, or give --sights");
    }
    if (!options.distance.empty() && HasCorrections(options.instrument))
    {
        throw WrongUse(
            "--scale, --sea-level and --refraction correct a height by zenith angle alone; leave them out, or "
            "leave the distance out and give --station");
    }
    if (options.distance.empty() && options.instrument.station.empty())
    {
        throw WrongUse("no distance: give one, or --station with the coordinates of the instrument");
    }
}

BenchmarkSight TypedSightFrom(const BenchmarkOptions& options, Inputs& inputs)
{
    CheckTyped(options);
    BenchmarkSight sight;
    sight.benchmark = BenchmarkFrom(options.benchmark, inputs);
    sight.zenith = InFaceOne(0, inputs.Angle(options.zenith, "zenith angle")).zenith;
    sight.targetHeight = options.targetHeight;
    sight.instrumentHeight = options.instrumentHeight;
    if (!options.instrument.station.empty())
    {
        const KnownPoint station = inputs.Point(options.instrument.station);
        sight.station = station.id;
        if (HasPlan(station))
        {
            sight.standing = station.point;
        }
    }
    if (!options.distance.empty())
    {
        const double distance = LengthArgument(options.distance, "distance");
        if (!(distance > 0.0))
        {
            throw WrongUse(fmt::format("distance {}: not above 0", Quoted(options.distance)));
        }
        (options.isHorizontal ? sight.horizontalDistance : sight.slopeDistance) = distance;
    }
    return sight;
}

BenchmarkSight BookSight(const SetUp& setUp, const Sight& sight, const KnownPoint& benchmark, const PointList& points)
{
    BenchmarkSight result;
    result.station = setUp.station;
    result.benchmark = benchmark;
    const KnownPoint* const station = points.Find(setUp.station);
    if (station != nullptr && HasPlan(*station))
    {
        result.standing = station->point;
    }
    if (sight.zenith)
    {
        result.zenith = InFaceOne(0, *sight.zenith).zenith;
    }
    result.slopeDistance = sight.slopeDistance;
    result.horizontalDistance = sight.horizontalDistance;
    result.targetHeight = sight.targetHeight;
    result.instrumentHeight = setUp.instrumentHeight;
    return result;
}

/** Calls `visit` with each sight of a set-up to a benchmark. @return how many sights are none */
template <typename Visit>
size_t ForEachBenchmark(const SetUp& setUp, const PointList& points, Visit visit)
{
    size_t others = 0;
    for (const Sight& sight : setUp.sights)
    {
        const KnownPoint* const benchmark = points.Find(sight.target);
        if (sight.isWanted && benchmark != nullptr && HasHeight(*benchmark) && sight.target != setUp.station)
        {
            visit(BookSight(setUp, sight, *benchmark, points));
        }
        else
        {
            ++others;
        }
    }
    return others;
}

/** Heights of one axis differ by those of benchmarks and reflectors, and by zenith angles over the distance. */
void QuestionSpread(double spread, double farthest, const Sink& sink, Row& row)
{
    constexpr double OF_HEIGHTS = 0.010;
    constexpr double OF_ZENITH = 20.0 * 16.0; // 20 seconds
    if (spread > OF_HEIGHTS + UnitsOver(farthest, OF_ZENITH))
    {
        row.warnings.push_back(
            fmt::format("the heights differ by {} {}; check the benchmarks, the reflector heights and "
                        "the zenith angles",
                        sink.LengthText(spread), UnitSymbol(sink.Options().unit)));
    }
}

/** The mean of what a set-up gives; nothing is added for one that gives none. */
void AddMean(const SetUp& setUp, const PointList& points, Sink& sink)
{
    int64_t count = 0;
    double sum = 0.0;
    double smallest = 0.0;
    double largest = 0.0;
    double farthest = 0.0;
    ForEachBenchmark(setUp, points, [&](const BenchmarkSight& sight) {
        const AxisHeight result = Solve(sight, sink.Options().unit);
        if (result.isComputed)
        {
            smallest = count == 0 ? result.height : std::min(smallest, result.height);
            largest = count == 0 ? result.height : std::max(largest, result.height);
            farthest = std::max(farthest, ReachOf(sight));
            sum += result.height;
            ++count;
        }
    });
    if (count > 0)
    {
        const double mean = sum / static_cast<double>(count);
        Row row;
        row.values = {setUp.station, count, mean,
                      setUp.instrumentHeight ? RealValue(mean - *setUp.instrumentHeight) : Value(), largest - smallest};
        QuestionSpread(largest - smallest, farthest, sink, row);
        sink.Add(row);
    }
}

void RunBook(const BenchmarkOptions& options, Inputs& inputs, Sink& sink)
{
    if (!options.benchmark.empty() || !options.instrument.station.empty())
    {
        throw WrongUse("--sights brings benchmarks, readings and stations along; give nothing else");
    }
    const PointList& points = inputs.Points();
    const std::vector<SetUp>& setUps = inputs.SetUps(options.sights);
    sink.Title("Heights of the instrument from benchmarks");
    sink.Begin(SectionOf(false));
    size_t others = 0;
    for (const SetUp& setUp : setUps)
    {
        others += ForEachBenchmark(
            setUp, points, [&](const BenchmarkSight& sight) { sink.Add(RowOf(sight, options.instrument, sink)); });
    }
    sink.Begin(MEAN_SECTION);
    for (const SetUp& setUp : setUps)
    {
        AddMean(setUp, points, sink);
    }
    if (others > 0)
    {
        sink.Note(fmt::format("{} to points without a known height, or with use 0, left out.",
                              Counted(others, "sight", "sights")));
    }
}

/** False for what stands for a height that there is none of. */
bool IsHeight(const PointRecord& position)
{
    return (position.flags & POINT_HAS_HEIGHT) != 0 && std::isfinite(position.height) &&
           position.height != UNDEFINED_REAL && position.height != NO_STATION_HEIGHT &&
           position.height != MISSING_VALUE;
}

} // namespace

std::optional<double> AxisHeightByZenith(const PointRecord& station, const PointRecord& target, AngleUnit zenith,
                                         double targetHeight)
{
    // The library computes this height within a resection. Two auxiliary targets without height, each a metre away with
    // its distance, hold the station in place; coordinates count from there.
    constexpr double NEAR = 1.0;
    std::array<ResectObservation, 3> observations = {};
    observations[0].target = {NEAR, 0.0, 0.0, POINT_HAS_PLAN};
    observations[1].target = {0.0, NEAR, 0.0, POINT_HAS_PLAN};
    observations[1].horizontalAngle = ANGLE_QUARTER_CIRCLE;
    for (size_t i = 0; i < 2; ++i)
    {
        observations.at(i).zenithAngle = ANGLE_QUARTER_CIRCLE;
        observations.at(i).slopeDistance = NEAR;
        observations.at(i).horizontalDistance = NEAR;
    }
    ResectObservation& sight = observations[2];
    sight.target = {target.northing - station.northing, target.easting - station.easting, target.height,
                    POINT_HAS_PLAN | POINT_HAS_HEIGHT};
    const double azimuth = std::atan2(sight.target.easting, sight.target.northing);
    sight.horizontalAngle =
        WithinCircle(static_cast<AngleUnit>(std::lround(azimuth / RadiansOf(ANGLE_HALF_CIRCLE) * ANGLE_HALF_CIRCLE)));
    sight.zenithAngle = zenith;
    sight.reflectorHeight = targetHeight;
    ResectStation result = {};
    std::array<ResectResidual, 3> residuals = {};
    const int32_t status =
        QSTNMultiResect(static_cast<int16_t>(observations.size()), observations.data(), &result, residuals.data());
    return status == QSTD_OK && IsHeight(result.position) ? std::optional(result.position.height) : std::nullopt;
}

void RunBenchmark(const BenchmarkOptions& options, Inputs& inputs, Sink& sink)
{
    const SimulatedInstrument instrument = InstrumentFrom(options.instrument, sink.Options().unit);
    const InstrumentConnection connection(instrument);
    if (!options.sights.empty())
    {
        RunBook(options, inputs, sink);
        return;
    }
    const BenchmarkSight sight = TypedSightFrom(options, inputs);
    sink.Title(fmt::format("Height of the instrument from benchmark {}", sight.benchmark.id));
    sink.Begin(SectionOf(true));
    sink.Add(RowOf(sight, options.instrument, sink));
}

} // namespace qstd
