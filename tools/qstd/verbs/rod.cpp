#include "verbs/rod.h"

#include "proof/judgement.h"
#include "proof/space_proof.h"
#include "text/status_name.h"
#include "verbs/arguments.h"
#include "verbs/plan_shapes.h"
#include "verbs/standing.h"
#include "verbs/typed_sight.h"

#include <qstdlib.h>

#include <fmt/format.h>

#include <cmath>

namespace qstd {

namespace {

const Section SECTION = {"hidden_point",
                         Layout::RECORD,
                         true,
                         {{"northing", "northing", Quantity::LENGTH, ""},
                          {"easting", "easting", Quantity::LENGTH, ""},
                          {"height", "height", Quantity::LENGTH, ""},
                          {"measured_spacing", "measured spacing", Quantity::LENGTH, "of the prisms"},
                          {"spacing_difference", "less nominal", Quantity::MILLI, ""}}};

std::string Remark(int32_t status)
{
    switch (status)
    {
    case QSTD_OK:
        return "the hidden point would lie beyond 100 000 km; check the spacing and the extension";
    case QSTD_REJECTED:
        return "the spacing and the distance to the hidden point must not be negative";
    case QSTD_COINCIDENT_POINTS:
        return "both prisms are at the same place, so that the rod has no direction";
    case QSTD_MISSING_COORDINATES:
        return "both prisms need northing, easting and height";
    default:
        return "";
    }
}

/** A rod is made to millimetres. Feet are close enough for that. */
void QuestionSpacing(double measured, double nominal, const Sink& sink, Row& row)
{
    constexpr double MOST = 0.010;
    const double difference = measured - nominal;
    if (nominal != 0.0 && std::fabs(difference) > MOST)
    {
        row.warnings.push_back(fmt::format("the prisms were measured {} {} {} than they are made; check both sights",
                                           sink.LengthText(std::fabs(difference)), UnitSymbol(sink.Options().unit),
                                           difference > 0.0 ? "farther apart" : "closer together"));
    }
}

/** Seen from the side, along the plan direction of the rod. */
void Draw(FigureWriter& figure, const KnownPoint& far, const KnownPoint& near, const PointRecord& hidden,
          double measuredSpacing, double prolongation, const Sink& sink)
{
    FigureView view;
    view.kind = FigureView::Kind::ELEVATION;
    view.title = "Hidden point below a rod";
    view.origin = PlaceOf(far.point);
    view.azimuth = std::atan2(near.point.easting - far.point.easting, near.point.northing - far.point.northing);
    figure.Begin(view);
    figure.Add(
        FigureLine{PlaceOf(far.point), PlaceOf(near.point), LineRole::REFERENCE, sink.LengthText(measuredSpacing)});
    figure.Add(FigureLine{PlaceOf(near.point), PlaceOf(hidden), LineRole::RESULT, sink.LengthText(prolongation)});
    figure.Add(FigurePoint{FigureName(far, "far prism"), PlaceOf(far.point), PointRole::SIGHTED});
    figure.Add(FigurePoint{FigureName(near, "near prism"), PlaceOf(near.point), PointRole::SIGHTED});
    figure.Add(FigurePoint{"hidden", PlaceOf(hidden), PointRole::COMPUTED});
    figure.Note("seen at a right angle to the rod; lengths are along it");
}

} // namespace

void RunRod(const RodOptions& options, Inputs& inputs, Sink& sink)
{
    const Standing standing = StandingFrom(options.instrument, inputs, sink.Options().unit);
    const InstrumentConnection connection(standing.instrument);
    const KnownPoint far = MeasuredPoint(options.far, standing, 0.0, inputs);
    const KnownPoint near = MeasuredPoint(options.near, standing, 0.0, inputs);
    const double extension = LengthArgument(options.extension, "--extension");
    const double spacing = LengthArgument(options.spacing, "--spacing");

    double measuredSpacing = 0.0;
    PointRecord hidden{};
    Row row;
    row.status = QCalc2PtTarget(&far.point, &near.point, spacing, extension, &measuredSpacing, &hidden);
    row.isComputed = HasResult(row.status) && IsOnEarth(hidden);
    row.remark = row.isComputed ? "" : Remark(row.status);
    if (row.isComputed)
    {
        row.values = {RealValue(hidden.northing), RealValue(hidden.easting), RealValue(hidden.height),
                      RealValue(measuredSpacing), spacing == 0.0 ? Value() : RealValue(measuredSpacing - spacing)};
    }
    if (row.isComputed)
    {
        Judge(ProveRod(far.point, near.point, spacing, extension, hidden, measuredSpacing), sink, row);
        QuestionSpacing(measuredSpacing, spacing, sink, row);
        QuestionFar("the hidden point", PlanDistance(near.point, hidden), measuredSpacing, sink, row);
    }
    sink.Title(fmt::format("Hidden point {} beyond {} from {}", sink.LengthText(extension), near.id, far.id));
    sink.Begin(SECTION);
    sink.Add(row);
    if (FigureWriter* const figure = row.isComputed ? sink.Figure() : nullptr)
    {
        // A nominal spacing stretches the prolongation by measured over nominal.
        const double prolongation = spacing == 0.0 ? extension : extension * measuredSpacing / spacing;
        Draw(*figure, far, near, hidden, measuredSpacing, prolongation, sink);
    }
}

} // namespace qstd
