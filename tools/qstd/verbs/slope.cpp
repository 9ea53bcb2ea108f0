#include "verbs/slope.h"

#include "input/table_points.h"
#include "proof/judgement.h"
#include "proof/space_proof.h"
#include "text/outcome.h"
#include "text/status_name.h"
#include "text/text.h"
#include "verbs/arguments.h"
#include "verbs/plan_shapes.h"
#include "verbs/standing.h"
#include "verbs/typed_sight.h"

#include <qstdlib.h>

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <functional>

namespace qstd {

namespace {

/** A point of the slope in the section. */
struct DesignPoint
{
    double distance = 0.0;
    double height = 0.0;
};

struct Design
{
    KnownPoint base;
    DesignPoint first;
    DesignPoint second;
    int32_t status = QSTD_OK;
};

struct Checked
{
    Row row;
    SlopeCheckResult result = {};
};

Section SectionOf(bool isSingle, const std::string& across, const std::string& above)
{
    return {"slope_check",
            isSingle ? Layout::RECORD : Layout::TABLE,
            true,
            {{"id", isSingle ? "" : "point", Quantity::TEXT, ""},
             {"distance", isSingle ? "distance from base" : "distance", Quantity::LENGTH, ""},
             {"beyond_slope", "beyond slope", Quantity::LENGTH, across},
             {"above_slope", "above slope", Quantity::LENGTH, above}}};
}

DesignPoint ParseDesign(const std::string& text)
{
    const std::vector<std::string> parts = PartsOf(text);
    if (parts.size() != 2)
    {
        throw WrongUse(
            fmt::format("--design {}: write a point of the slope as DISTANCE,HEIGHT such as 4.0,8.0", Quoted(text)));
    }
    return {LengthArgument(parts[0], "--design: distance"), LengthArgument(parts[1], "--design: height")};
}

Design DesignFrom(const SlopeOptions& options, const Standing& standing, Inputs& inputs)
{
    if (options.design.size() != 2)
    {
        throw WrongUse("--design: give two points of the slope, each as DISTANCE,HEIGHT: --design 0,10 4,8");
    }
    Design design;
    design.base =
        MeasuredPoint(options.base, standing, LengthArgument(options.targetHeight, "--target-height"), inputs);
    design.first = ParseDesign(options.design[0]);
    design.second = ParseDesign(options.design[1]);
    design.status =
        QBRSetSlope(design.first.height, design.first.distance, design.second.height, design.second.distance);
    return design;
}

std::string Remark(const Design& design, int32_t status, const KnownPoint& point)
{
    if (!HasResult(design.status))
    {
        return "the two points of the slope are one, or lie on opposite sides of the base";
    }
    switch (status)
    {
    case QSTD_HEIGHT_UNDETERMINED:
        return "the slope is vertical: nothing is above it";
    case QSTD_DISTANCE_UNDETERMINED:
        return "the slope is level: nothing is beyond it";
    case QSTD_COINCIDENT_POINTS:
        return "the point lies above the base, so that there is no section";
    case QSTD_MISSING_COORDINATES:
        return HasPlan(design.base) ? fmt::format("{} needs northing, easting and height", point.id)
                                    : "the base has no northing and easting";
    default:
        return "";
    }
}

/** Beyond the section that the design covers the slope is prolonged. */
double ExtentOf(const Design& design)
{
    return std::hypot(design.second.distance - design.first.distance, design.second.height - design.first.height);
}

Checked Check(const Design& design, const KnownPoint& point, const Sink& sink)
{
    Checked checked;
    Row& row = checked.row;
    row.values = {point.id};
    row.status = HasResult(design.status) ? QBRCalc(&design.base.point, &point.point, &checked.result) : design.status;
    row.isComputed = HasResult(row.status);
    row.remark = Remark(design, row.status, point);
    if (row.isComputed)
    {
        row.values.insert(row.values.end(),
                          {RealValue(checked.result.distanceFromBase), RealValue(checked.result.offsetBeyondSlope),
                           RealValue(checked.result.heightAboveSlope)});
        const SectionSlope slope = {design.first.distance, design.first.height, design.second.distance,
                                    design.second.height};
        Judge(ProveSlope(slope, design.base.point, point.point, checked.result), sink, row);
        QuestionFar("the point", checked.result.distanceFromBase,
                    std::max({ExtentOf(design), std::fabs(design.first.distance), std::fabs(design.second.distance)}),
                    sink, row);
    }
    return checked;
}

Section RecordOf(const Sink& sink, const Checked& checked)
{
    if (!checked.row.isComputed)
    {
        return SectionOf(true, "", "");
    }
    return SectionOf(true, SideOf(sink, checked.result.offsetBeyondSlope, "away from the base", "towards the base"),
                     SideOf(sink, checked.result.heightAboveSlope, "cut down to the slope", "fill up to the slope"));
}

/** Those of the table first, then the typed ones, as every verb takes them. */
void ForEachPoint(const SlopeOptions& options, const Standing& standing, Inputs& inputs,
                  const std::function<void(const KnownPoint&)>& visit)
{
    const double targetHeight = LengthArgument(options.targetHeight, "--target-height");
    if (!options.list.empty())
    {
        TablePoints listed(options.list, inputs);
        KnownPoint point;
        while (listed.Next(point))
        {
            visit(point);
        }
    }
    for (const std::string& text : options.points)
    {
        visit(MeasuredPoint(text, standing, targetHeight, inputs));
    }
}

/** The section from the base through the first point; what lies in another section cannot be shown in it. */
class SectionFigure
{
public:
    SectionFigure(FigureWriter& figureWriter, const Design& designOfSection)
        : figure(figureWriter), design(designOfSection)
    {
    }

    void Add(const KnownPoint& point, const SlopeCheckResult& result)
    {
        const double dN = point.point.northing - design.base.point.northing;
        const double dE = point.point.easting - design.base.point.easting;
        if (!hasBegun)
        {
            Begin(std::atan2(dE, dN));
        }
        // Within the section where its length along it is its distance, to a ten-thousandth.
        if (dN * std::cos(azimuth) + dE * std::sin(azimuth) < result.distanceFromBase * (1.0 - 1e-4))
        {
            ++others;
            return;
        }
        figure.Add(FigurePoint{FigureName(point, ""), PlaceOf(point.point), PointRole::SIGHTED});
        if (result.heightAboveSlope != UNDEFINED_REAL)
        {
            FigurePlace onSlope = PlaceOf(point.point);
            onSlope.height = point.point.height - result.heightAboveSlope;
            figure.Add(FigureLine{PlaceOf(point.point), onSlope, LineRole::OFFSET, ""});
        }
    }

    void End()
    {
        if (others > 0)
        {
            figure.Note(fmt::format("{} in other sections not shown", Counted(others, "point", "points")));
        }
    }

private:
    [[nodiscard]] FigurePlace InSection(const DesignPoint& point) const
    {
        // The sign only chooses the side of the base; the section drawn is that of the measured point.
        const double distance = std::fabs(point.distance);
        return {design.base.point.northing + distance * std::cos(azimuth),
                design.base.point.easting + distance * std::sin(azimuth), point.height};
    }

    void Begin(double azimuthOfSection)
    {
        hasBegun = true;
        azimuth = azimuthOfSection;
        FigureView view;
        view.kind = FigureView::Kind::ELEVATION;
        view.title = "Section with design slope";
        view.origin = PlaceOf(design.base.point);
        view.azimuth = azimuth;
        figure.Begin(view);
        figure.Add(FigureLine{InSection(design.first), InSection(design.second), LineRole::REFERENCE, "design slope"});
        if ((design.base.point.flags & POINT_HAS_HEIGHT) != 0)
        {
            figure.Add(FigurePoint{FigureName(design.base, "base"), PlaceOf(design.base.point), PointRole::GIVEN});
        }
        figure.Note("distances count from the base");
    }

    FigureWriter& figure;
    const Design& design;
    double azimuth = 0.0;
    bool hasBegun = false;
    size_t others = 0;
};

} // namespace

void RunSlope(const SlopeOptions& options, Inputs& inputs, Sink& sink)
{
    if (options.points.empty() && options.list.empty())
    {
        throw WrongUse("no point to check; give points, or --list FILE");
    }
    const Standing standing = StandingFrom(options.instrument, inputs, sink.Options().unit);
    const InstrumentConnection connection(standing.instrument);
    const Design design = DesignFrom(options, standing, inputs);
    const bool isSingle = options.list.empty() && options.points.size() == 1;
    FigureWriter* const writer = sink.Figure();
    std::optional<SectionFigure> figure;
    if (writer != nullptr)
    {
        figure.emplace(*writer, design);
    }

    sink.Title(fmt::format("Slope from base {}", design.base.id));
    if (!isSingle)
    {
        sink.Begin(SectionOf(false, "", ""));
    }
    ForEachPoint(options, standing, inputs, [&](const KnownPoint& point) {
        const Checked checked = Check(design, point, sink);
        if (isSingle)
        {
            sink.Begin(RecordOf(sink, checked));
        }
        sink.Add(checked.row);
        if (figure && checked.row.isComputed)
        {
            figure->Add(point, checked.result);
        }
    });
    if (figure)
    {
        figure->End();
    }
}

} // namespace qstd
