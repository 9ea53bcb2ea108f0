#include "verbs/remote_elevation.h"

#include "proof/judgement.h"
#include "proof/space_proof.h"
#include "text/outcome.h"
#include "text/status_name.h"
#include "text/text.h"
#include "verbs/arguments.h"
#include "verbs/sight_list.h"
#include "verbs/standing.h"
#include "verbs/typed_sight.h"

#include <qstdlib.h>

#include <fmt/format.h>

#include <cmath>
#include <optional>

namespace qstd {

namespace {

struct Base
{
    SightRecord sight = {};
    double reflector = 0.0;       /**< above the base */
    std::optional<double> height; /**< of the base, where it is known */
    int32_t status = QSTD_OK;
};

Section SectionOf(bool isSingle, const std::string& side)
{
    return {"elevation",
            isSingle ? Layout::RECORD : Layout::TABLE,
            true,
            {{"target", isSingle ? "" : "target", Quantity::TEXT, ""},
             {"circle_reading", "circle reading", Quantity::ANGLE, ""},
             {"zenith", "zenith angle", Quantity::ANGLE, ""},
             {"height_above_base", "above base", Quantity::LENGTH, ""},
             {"offset", isSingle ? "offset" : "right of base", Quantity::LENGTH, side},
             {"height", "height", Quantity::LENGTH, ""}}};
}

Base BaseBySight(const RemoteElevationOptions& options, const Standing& standing, Inputs& inputs)
{
    const TypedSight typed = ParseSight(options.base, "base", SightParts::ANGLES_AND_DISTANCE, inputs);
    Base base;
    base.sight = {typed.circle, *typed.zenith, *typed.slopeDistance};
    base.reflector = LengthArgument(options.targetHeight, "--target-height");
    if (standing.hasStation && standing.hasHeight)
    {
        // The cosine is the same in both faces.
        base.height = standing.instrument.station.height + standing.instrument.instrumentHeight +
                      base.sight.distance * std::cos(RadiansOf(base.sight.zenithAngle)) - base.reflector;
    }
    return base;
}

Base BaseByPoint(const RemoteElevationOptions& options, const Standing& standing, Inputs& inputs)
{
    const KnownPoint point = inputs.Point(options.base);
    RequireStation(standing, fmt::format("the sight to base {} comes from there", Quoted(point.id)));
    if (!HasPlan(point) || !HasHeight(point) || !standing.hasHeight)
    {
        throw WrongUse(fmt::format("base {}: it and the station need coordinates and height, N,E,H", Quoted(point.id)));
    }
    Base base;
    base.reflector = LengthArgument(options.targetHeight, "--target-height");
    ObservationRecord observed{};
    if (!standing.instrument.Observe(point.point, base.reflector, &observed))
    {
        throw WrongUse(fmt::format("base {}: the instrument stands there", Quoted(point.id)));
    }
    base.sight = {observed.horizontalAngle, observed.zenithAngle, observed.distance};
    base.height = point.point.height;
    return base;
}

Base BaseFrom(const RemoteElevationOptions& options, const Standing& standing, Inputs& inputs)
{
    const bool isKnown = inputs.Points().Find(options.base) != nullptr;
    // Plain numbers are coordinates where there is a station to see them from, else angles in the form of --angle.
    const bool isSight = !isKnown && PartsOf(options.base).size() > 1 &&
                         (LooksLikeSight(options.base) || (!standing.hasStation && inputs.BareAngles()));
    if (!isKnown && !isSight)
    {
        RequireOneMeaning(options.base, inputs);
    }
    return isSight ? BaseBySight(options, standing, inputs) : BaseByPoint(options, standing, inputs);
}

/**
 * The height and the offset each lie in the sight. Both together do not where the sight is turned to the side: the
 * height is that at the distance of the base.
 */
void JudgeElevation(const Base& base, const AngleSight& sight, const PointRecord& result, const Sink& sink, Row& row)
{
    // Less is not worth a sentence.
    constexpr double HEIGHT_MISSED = 5e-4;
    const FaceOneSight baseSight = InFaceOne(base.sight.horizontalAngle, base.sight.zenithAngle);
    const FaceOneSight faceOne = InFaceOne(sight.circle, sight.zenith);
    const RemoteBase from = {baseSight.circle, RadiansOf(baseSight.zenith), base.sight.distance};
    const double zenith = RadiansOf(faceOne.zenith);
    Judge(ProveRemoteElevation(from, faceOne.circle, zenith, result.height, result.northing), sink, row);
    const double missed = HeightMissedAside(from, faceOne.circle, zenith);
    if (std::fabs(missed) > HEIGHT_MISSED)
    {
        row.warnings.push_back(fmt::format("the height is that at the distance of the base; at the offset, in the "
                                           "upright plane across the sight to the base, the sight is {} {} {}",
                                           sink.LengthText(std::fabs(missed)), UnitSymbol(sink.Options().unit),
                                           missed > 0.0 ? "higher" : "lower"));
    }
    QuestionFar("the point", std::hypot(result.northing, result.height), base.sight.distance, sink, row);
}

Row RowOf(const AngleSight& sight, const Base& base, const Sink& sink)
{
    Row row;
    row.values = {sight.target, AngleOf(sight.circle), AngleOf(sight.zenith)};
    if (base.status != QSTD_OK)
    {
        row.status = base.status;
        row.isComputed = false;
        row.remark = "the sight to the base is vertical; measure the base from farther away";
        return row;
    }
    PointRecord result{};
    row.status = QREMCalc(sight.circle, sight.zenith, &result);
    row.isComputed = HasResult(row.status);
    if (row.isComputed)
    {
        const double above = result.height + base.reflector;
        row.values.insert(row.values.end(), {RealValue(above), RealValue(result.northing),
                                             base.height ? RealValue(*base.height + above) : Value()});
        JudgeElevation(base, sight, result, sink, row);
    }
    return row;
}

std::string OffsetSide(const Sink& sink, const Row& row)
{
    constexpr size_t OFFSET = 4;
    const double* const offset = row.values.size() > OFFSET ? std::get_if<double>(&row.values[OFFSET]) : nullptr;
    return offset == nullptr ? "" : SideOf(sink, *offset, "to the right of the base", "to the left of the base");
}

} // namespace

void RunRemoteElevation(const RemoteElevationOptions& options, Inputs& inputs, Sink& sink)
{
    if (options.sights.empty() && options.table.empty())
    {
        throw WrongUse("nothing is sighted; give sights HZ,V such as 123-45-10,62-30-00, or --sights FILE");
    }
    const Standing standing = StandingFrom(options.instrument, inputs, sink.Options().unit);
    const InstrumentConnection connection(standing.instrument);
    Base base = BaseFrom(options, standing, inputs);
    base.status = QREMSetBase(&base.sight);

    sink.Title(fmt::format("Remote elevation above {}", options.base));
    const bool isSingle = options.table.empty() && options.sights.size() == 1;
    if (!isSingle)
    {
        sink.Begin(SectionOf(false, ""));
    }
    SightList sights(options.table, options.sights, options.instrument.station, inputs);
    AngleSight sight;
    while (sights.Next(sight))
    {
        const Row row = RowOf(sight, base, sink);
        if (isSingle)
        {
            sink.Begin(SectionOf(true, OffsetSide(sink, row)));
        }
        sink.Add(row);
    }
    RequireOwnSights(sights, options.instrument.station);
}

} // namespace qstd
