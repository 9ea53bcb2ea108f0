#include "verbs/intersect.h"

#include "text/outcome.h"
#include "text/text.h"
#include "verbs/arguments.h"
#include "verbs/plan_shapes.h"

#include <qstdlib.h>

#include <fmt/format.h>

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <set>

namespace qstd {

namespace {

/** Solutions nearer to each other are one place for every instrument. */
constexpr double ONE_PLACE = 1e-4;

struct Circle
{
    KnownPoint centre;
    double radius = 0.0;
};

/** The two that are to meet, in the order in which they were given. */
struct Curves
{
    std::vector<PlanLine> lines;
    std::vector<Circle> circles;
};

struct Solutions
{
    std::array<PointRecord, 2> points = {};
    std::array<std::string, 2> positions; /**< which of the two each is, in words */
    size_t count = 0;
    Row refusal; /**< without a solution: why */
};

/** The refusal has its place in the table of results, and in text a line of its own. */
Section SectionFor(const Solutions& solutions)
{
    return {"solution",
            solutions.count == 0 ? Layout::RECORD : Layout::TABLE,
            true,
            {{"solution", "solution", Quantity::COUNT, ""},
             {"position", "position", Quantity::TEXT, ""},
             {"northing", "northing", Quantity::LENGTH, ""},
             {"easting", "easting", Quantity::LENGTH, ""}}};
}

Curves Read(const IntersectOptions& options, Inputs& inputs)
{
    const size_t count = options.lines.size() + options.circles.size();
    if (count != 2)
    {
        throw WrongUse(fmt::format("{} given; it takes two of --line A B, --line A AZIMUTH and --circle CENTRE RADIUS",
                                   Counted(count, "line or circle", "lines or circles")));
    }
    Curves curves;
    for (const LineArgument& line : options.lines)
    {
        curves.lines.push_back(ReadLine(line, inputs));
    }
    for (const CircleArgument& circle : options.circles)
    {
        curves.circles.push_back({inputs.Point(circle.first), LengthArgument(circle.second, "radius")});
    }
    return curves;
}

Solutions Refusal(int32_t status, const std::string& remark)
{
    Solutions solutions;
    solutions.refusal.status = status;
    solutions.refusal.isComputed = false;
    solutions.refusal.remark = remark;
    return solutions;
}

/** Refuses what no formula can take; true where the solutions hold the reason. */
bool IsRefused(const Curves& curves, Solutions& solutions)
{
    for (const PlanLine& line : curves.lines)
    {
        if (IsRefusedLine(line, solutions.refusal))
        {
            return true;
        }
    }
    for (const Circle& circle : curves.circles)
    {
        if (IsRefusedForPlan({circle.centre}, solutions.refusal))
        {
            return true;
        }
    }
    return false;
}

Solutions OfLines(const PlanLine& first, const PlanLine& second)
{
    Solutions solutions;
    const int32_t status = QCogoCalcCrossLine(&first.definition, &second.definition, solutions.points.data());
    if (status != QSTD_OK)
    {
        return Refusal(status, status == QSTD_PARALLEL_LINES
                                   ? "the lines are parallel, or so nearly that the library takes them for parallel"
                                   : "");
    }
    solutions.count = 1;
    return solutions;
}

/** In which order the library gives the two points. */
std::array<std::string, 2> PositionsOnLine(const PointRecord& first, const PointRecord& second)
{
    const std::string coordinate = first.northing == second.northing ? "easting" : "northing";
    return {"smaller " + coordinate, "larger " + coordinate};
}

Solutions OfLineAndCircle(const PlanLine& line, const Circle& circle, bool isSouth, const Sink& sink)
{
    Solutions solutions;
    const int32_t count =
        QCogoCalcCrossLineCircle(&line.definition, &circle.centre.point, circle.radius, solutions.points.data());
    if (count == 0)
    {
        const double distance = std::fabs(PlaceOnLine(line.definition, circle.centre.point, isSouth).offset);
        return Refusal(QSTD_OK, fmt::format("the line passes {} from the centre, outside the circle of radius {}",
                                            sink.LengthText(distance), sink.LengthText(circle.radius)));
    }
    if (count < 0)
    {
        return Refusal(count, count == QSTD_REJECTED ? "a radius must not be negative" : "");
    }
    solutions.count = static_cast<size_t>(count);
    solutions.positions = PositionsOnLine(solutions.points[0], solutions.points[1]);
    return solutions;
}

/** Why two circles have no intersection. */
std::string CirclesRemark(const Circle& first, const Circle& second, const Sink& sink)
{
    if (first.radius <= 0.0 || second.radius <= 0.0)
    {
        return "a radius must be above 0";
    }
    const double distance = std::hypot(second.centre.point.northing - first.centre.point.northing,
                                       second.centre.point.easting - first.centre.point.easting);
    if (distance == 0.0)
    {
        return first.radius == second.radius ? "the two circles are the same"
                                             : "the circles have the same centre and never meet";
    }
    return fmt::format("the circles do not meet: radii {} and {}, centres {} apart", sink.LengthText(first.radius),
                       sink.LengthText(second.radius), sink.LengthText(distance));
}

Solutions OfCircles(const Circle& first, const Circle& second, const Sink& sink)
{
    Solutions solutions;
    const int32_t count = QCogoCalcCrossCircle(&first.centre.point, first.radius, &second.centre.point, second.radius,
                                               solutions.points.data());
    if (count <= 0)
    {
        return Refusal(count, CirclesRemark(first, second, sink));
    }
    solutions.count = static_cast<size_t>(count);
    const std::string direction = fmt::format("{} - {}", first.centre.id, second.centre.id);
    solutions.positions = {"right of " + direction, "left of " + direction};
    return solutions;
}

/** Centres a hair apart, for one, give numbers that are none. */
void RefuseUnusable(Solutions& solutions)
{
    for (size_t i = 0; i < solutions.count; ++i)
    {
        if (!IsOnEarth(solutions.points[i]))
        {
            solutions = Refusal(QSTD_OK, "no intersection within 100 000 km: it is farther away, or the two are too "
                                         "close to parallel or concentric to be computed");
            return;
        }
    }
}

Solutions Intersect(const Curves& curves, bool isSouth, const Sink& sink)
{
    Solutions solutions;
    if (IsRefused(curves, solutions))
    {
        return solutions;
    }
    if (curves.lines.size() == 2)
    {
        solutions = OfLines(curves.lines[0], curves.lines[1]);
    }
    else if (curves.circles.size() == 2)
    {
        solutions = OfCircles(curves.circles[0], curves.circles[1], sink);
    }
    else
    {
        solutions = OfLineAndCircle(curves.lines[0], curves.circles[0], isSouth, sink);
    }
    RefuseUnusable(solutions);
    return solutions;
}

std::string Title(const Curves& curves, const Sink& sink)
{
    std::vector<std::string> names;
    for (const PlanLine& line : curves.lines)
    {
        names.push_back("line " + LineName(line, sink));
    }
    for (const Circle& circle : curves.circles)
    {
        names.push_back(fmt::format("circle around {}, radius {}", circle.centre.id, sink.LengthText(circle.radius)));
    }
    return fmt::format("Intersection of {} and {}", names[0], names[1]);
}

/** Of the figure, whose labels tell the rest. */
std::string ShortTitle(const Curves& curves)
{
    if (curves.circles.empty())
    {
        return "Intersection of two lines";
    }
    return curves.lines.empty() ? "Intersection of two circles" : "Intersection of a line and a circle";
}

/** True where the curves only touch; rounding may make two solutions of that. */
bool IsTouch(const Solutions& solutions)
{
    const auto& [first, second] = solutions.points;
    return solutions.count == 1
               ? !solutions.positions[0].empty()
               : std::hypot(second.northing - first.northing, second.easting - first.easting) < ONE_PLACE;
}

void Report(const Solutions& solutions, Sink& sink)
{
    sink.Begin(SectionFor(solutions));
    if (solutions.count == 0)
    {
        sink.Add(solutions.refusal);
    }
    for (size_t i = 0; i < solutions.count; ++i)
    {
        Row row;
        const PointRecord& point = solutions.points[i];
        row.values = {static_cast<int64_t>(i + 1), solutions.count == 1 ? "" : solutions.positions[i],
                      RealValue(point.northing), RealValue(point.easting)};
        row.remark = IsTouch(solutions) ? "touches" : "";
        sink.Add(row);
    }
}

/** The points that the curves are given by, each name once. */
void DrawGiven(const Curves& curves, FigureWriter& figure)
{
    std::set<std::string> drawn;
    const auto draw = [&drawn, &figure](const KnownPoint& point) {
        if (drawn.insert(point.id).second)
        {
            figure.Add(GivenPoint(point));
        }
    };
    for (const PlanLine& line : curves.lines)
    {
        draw(line.first);
        if (line.IsByPoints())
        {
            draw(line.second);
        }
    }
    for (const Circle& circle : curves.circles)
    {
        draw(circle.centre);
    }
}

/** False where one of the two is none: a picture of the other alone would mislead. */
bool AreDrawable(const Solutions& solutions)
{
    const int32_t status = solutions.refusal.status;
    return status != QSTD_MISSING_COORDINATES && status != QSTD_COINCIDENT_POINTS && status != QSTD_REJECTED;
}

/** What a line is to be seen all along where it meets nothing: the circle, or as much around the other line's point. */
std::vector<Circle> Surroundings(const Curves& curves)
{
    std::vector<Circle> around = curves.circles;
    if (curves.lines.size() == 2)
    {
        const KnownPoint& first = curves.lines[0].first;
        const KnownPoint& second = curves.lines[1].first;
        const double apart =
            std::hypot(second.point.northing - first.point.northing, second.point.easting - first.point.easting);
        around.insert(around.end(), {{first, apart}, {second, apart}});
    }
    return around;
}

/** The places on either side of the circles, in the direction of the line. */
void CarryPast(const PlanLine& line, const std::vector<Circle>& circles, bool isSouth,
               std::vector<PointRecord>& carried)
{
    const double direction = DirectionOf(line.definition, isSouth);
    for (const Circle& circle : circles)
    {
        for (const double along : {-circle.radius, circle.radius})
        {
            PointRecord place = circle.centre.point;
            place.northing += along * std::cos(direction);
            place.easting += along * std::sin(direction);
            carried.push_back(place);
        }
    }
}

/** Drawn without a solution too: the picture shows why there is none. */
void Draw(const Curves& curves, const Solutions& solutions, bool isSouth, const Sink& sink)
{
    FigureWriter& figure = *sink.Figure();
    figure.Begin({FigureView::Kind::PLAN, ShortTitle(curves), {}, 0.0});
    std::vector<PointRecord> carried(solutions.points.begin(),
                                     solutions.points.begin() + static_cast<ptrdiff_t>(solutions.count));
    for (const Circle& circle : curves.circles)
    {
        figure.Add(CircleAround(circle.centre.point, circle.radius, sink.LengthText(circle.radius)));
        carried.push_back(circle.centre.point);
    }
    for (const PlanLine& line : curves.lines)
    {
        if (solutions.count == 0)
        {
            CarryPast(line, Surroundings(curves), isSouth, carried);
        }
        figure.Add(DrawnLine(line.definition, carried, isSouth));
    }
    DrawGiven(curves, figure);
    if (solutions.count == 0)
    {
        figure.Note("no intersection: " + solutions.refusal.remark);
    }
    for (size_t i = 0; i < solutions.count; ++i)
    {
        figure.Add(ComputedPoint(std::to_string(i + 1), solutions.points[i]));
    }
}

} // namespace

void RunIntersect(const IntersectOptions& options, Inputs& inputs, Sink& sink)
{
    const Curves curves = Read(options, inputs);
    const SimulatedInstrument instrument = InstrumentFrom(options.instrument, sink.Options().unit);
    const InstrumentConnection connection(instrument);

    const bool isSouth = options.instrument.isSouthAzimuth;
    const Solutions solutions = Intersect(curves, isSouth, sink);
    sink.Title(Title(curves, sink));
    Report(solutions, sink);
    if (sink.Figure() != nullptr && AreDrawable(solutions))
    {
        Draw(curves, solutions, isSouth, sink);
    }
}

} // namespace qstd
