#include "verbs/intersect.h"

#include "proof/judgement.h"
#include "proof/plan_proof.h"
#include "text/outcome.h"
#include "text/text.h"
#include "verbs/arguments.h"
#include "verbs/own_axes.h"
#include "verbs/plan_shapes.h"

#include <qstdlib.h>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <set>
#include <utility>

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
    Row verdict; /**< of the proof: remark and warnings for every solution */

    [[nodiscard]] std::vector<PointRecord> Found() const
    {
        return {points.begin(), points.begin() + static_cast<ptrdiff_t>(count)};
    }
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

const char* const PARALLEL = "the lines are parallel, or so nearly that the library takes them for parallel";

Solutions OfLines(const PlanLine& first, const PlanLine& second)
{
    Solutions solutions;
    const int32_t status = QCogoCalcCrossLine(&first.definition, &second.definition, solutions.points.data());
    if (status != QSTD_OK)
    {
        return Refusal(status, status == QSTD_PARALLEL_LINES ? PARALLEL : "");
    }
    solutions.count = 1;
    return solutions;
}

/** Why a line and a circle have no intersection. */
std::string PassesText(const PlanLine& line, const Circle& circle, bool isSouth, const Sink& sink)
{
    const double distance = std::fabs(PlaceOnLine(line.definition, circle.centre.point, isSouth).offset);
    return fmt::format("the line passes {} from the centre, outside the circle of radius {}", sink.LengthText(distance),
                       sink.LengthText(circle.radius));
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
        return Refusal(QSTD_OK, PassesText(line, circle, isSouth, sink));
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

/** So far that the library's intercept of a line is no worse than the places that count. */
double ReachOf(const Curves& curves)
{
    double reach = 1.0;
    const PointRecord& from = curves.lines.front().definition.first;
    for (const PlanLine& line : curves.lines)
    {
        reach = std::max(reach, PlanDistance(from, line.definition.first));
    }
    for (const Circle& circle : curves.circles)
    {
        reach = std::max({reach, PlanDistance(from, circle.centre.point), circle.radius});
    }
    return reach;
}

/** A course by two points in axes of its own. */
LineDef LineIn(const OwnAxes& axes, const Course& course, double reach)
{
    const auto plan = [&axes](const PlanVector& place) {
        const PlanVector own = axes.In(place);
        return PointRecord{own.north, own.east, 0.0, POINT_HAS_PLAN};
    };
    LineDef line = {};
    line.first = plan(course.origin);
    line.second = plan(course.origin + reach * course.direction);
    line.mode = LINE_BY_POINTS;
    return line;
}

/** In axes half-way between the lines, in which neither runs along constant northing. */
Solutions OfLinesInOwnAxes(const Curves& curves, bool isSouth)
{
    const Course first = CourseOf(curves.lines[0].definition, isSouth);
    const Course second = CourseOf(curves.lines[1].definition, isSouth);
    const double sense = Along(first.direction, second.direction) < 0.0 ? -1.0 : 1.0;
    const PlanVector between = first.direction + sense * second.direction;
    const OwnAxes axes(first.origin, 1.0 / Length(between) * between);
    const double reach = ReachOf(curves);
    const LineDef one = LineIn(axes, first, reach);
    const LineDef other = LineIn(axes, second, reach);
    Solutions solutions;
    solutions.count = QCogoCalcCrossLine(&one, &other, solutions.points.data()) == QSTD_OK ? 1 : 0;
    solutions.points[0] = axes.Out(solutions.points[0]);
    return solutions;
}

/** A line that runs east or west, but for rounding: it then has one northing. */
bool IsAlongConstantNorthing(const Course& line)
{
    return std::fabs(line.direction.north) < 4.0 * EPSILON;
}

/** In axes from the centre, along the line. */
Solutions OfLineAndCircleInOwnAxes(const Curves& curves, bool isSouth)
{
    const Course line = CourseOf(curves.lines[0].definition, isSouth);
    const Circle& circle = curves.circles[0];
    const OwnAxes axes(PlanOf(circle.centre.point), line.direction);
    const PointRecord centre = {0.0, 0.0, 0.0, POINT_HAS_PLAN};
    LineDef own = LineIn(axes, line, 1.0);
    own.second = own.first;
    own.second.northing += ReachOf(curves);
    Solutions solutions;
    const int32_t count = QCogoCalcCrossLineCircle(&own, &centre, circle.radius, solutions.points.data());
    solutions.count = count > 0 ? static_cast<size_t>(count) : 0;
    for (PointRecord& point : solutions.points)
    {
        point = axes.Out(point);
        if (IsAlongConstantNorthing(line))
        {
            point.northing = line.origin.north;
        }
    }
    // As the library orders them in the site's axes.
    auto& [first, second] = solutions.points;
    const bool isOrdered =
        first.northing == second.northing ? first.easting <= second.easting : first.northing < second.northing;
    if (!isOrdered)
    {
        std::swap(first, second);
    }
    solutions.positions = PositionsOnLine(first, second);
    return solutions;
}

Proof Prove(const Curves& curves, const Solutions& solutions, bool isSouth)
{
    const auto circle = [&curves](size_t i) {
        return PlanCircle{PlanOf(curves.circles[i].centre.point), curves.circles[i].radius};
    };
    const auto line = [&curves, isSouth](size_t i) { return CourseOf(curves.lines[i].definition, isSouth); };
    if (curves.lines.empty())
    {
        return ProveCrossing(circle(0), circle(1), solutions.Found());
    }
    if (curves.lines.size() == 1)
    {
        return ProveCrossing(line(0), circle(0), solutions.Found());
    }
    return solutions.count == 0 ? Proof() : ProveCrossing(line(0), line(1), solutions.points[0]);
}

/** Where the solutions miss, the same is computed in other axes. */
void ProveOrTakeOtherForm(const Curves& curves, bool isSouth, const Sink& sink, Solutions& solutions)
{
    const int32_t status = solutions.refusal.status;
    if (status != QSTD_OK)
    {
        return;
    }
    const Proof asGiven = Prove(curves, solutions, isSouth);
    if (asGiven.Holds())
    {
        return;
    }
    if (!curves.lines.empty())
    {
        Solutions other =
            curves.circles.empty() ? OfLinesInOwnAxes(curves, isSouth) : OfLineAndCircleInOwnAxes(curves, isSouth);
        if (Prove(curves, other, isSouth).Holds())
        {
            if (other.count == 0)
            {
                other = curves.circles.empty()
                            ? Refusal(QSTD_PARALLEL_LINES, PARALLEL)
                            : Refusal(QSTD_OK, PassesText(curves.lines[0], curves.circles[0], isSouth, sink));
            }
            solutions = other;
            RemarkOtherForm(asGiven, curves.circles.empty() ? "in axes between the lines" : "in axes along the line",
                            sink, solutions.verdict);
            return;
        }
    }
    Judge(asGiven, sink, solutions.verdict);
    solutions.refusal.warnings = solutions.verdict.warnings;
}

/** The farthest that two of the points lie apart that the curves are given by, or the size of a circle. */
double ExtentOf(const Curves& curves)
{
    std::vector<PlanVector> places;
    double extent = 0.0;
    for (const PlanLine& line : curves.lines)
    {
        places.push_back(PlanOf(line.first.point));
        if (line.IsByPoints())
        {
            places.push_back(PlanOf(line.second.point));
        }
    }
    for (const Circle& circle : curves.circles)
    {
        places.push_back(PlanOf(circle.centre.point));
        extent = std::max(extent, std::fabs(circle.radius));
    }
    for (const PlanVector& place : places)
    {
        extent = std::max(extent, Length(place - places.front()));
    }
    return extent;
}

/** How far a solution lies from the first point. */
double AwayFrom(const Curves& curves, const PointRecord& solution)
{
    const KnownPoint& first = curves.lines.empty() ? curves.circles.front().centre : curves.lines.front().first;
    return PlanDistance(first.point, solution);
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
    ProveOrTakeOtherForm(curves, isSouth, sink, solutions);
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

void Report(const Curves& curves, const Solutions& solutions, Sink& sink)
{
    sink.Begin(SectionFor(solutions));
    if (solutions.count == 0)
    {
        sink.Add(solutions.refusal);
    }
    for (size_t i = 0; i < solutions.count; ++i)
    {
        Row row = solutions.verdict;
        const PointRecord& point = solutions.points[i];
        row.values = {static_cast<int64_t>(i + 1), solutions.count == 1 ? "" : solutions.positions[i],
                      RealValue(point.northing), RealValue(point.easting)};
        if (IsTouch(solutions))
        {
            row.remark = row.remark.empty() ? "touches" : "touches; " + row.remark;
        }
        QuestionFar("the intersection", AwayFrom(curves, point), ExtentOf(curves), sink, row);
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
    Report(curves, solutions, sink);
    if (sink.Figure() != nullptr && AreDrawable(solutions))
    {
        Draw(curves, solutions, isSouth, sink);
    }
}

} // namespace qstd
