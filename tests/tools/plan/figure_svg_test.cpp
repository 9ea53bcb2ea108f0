#include "plan/figure_svg.h"

#include "svg_reading.h"

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using qstd::FigureArc;
using qstd::FigureLine;
using qstd::FigurePlace;
using qstd::FigurePoint;
using qstd::FigureSvg;
using qstd::FigureTick;
using qstd::FigureView;
using qstd::LineRole;
using qstd::PointRole;
using qstd::SheetPoint;
using svg::Element;
using svg::Elements;
using testing::HasSubstr;
using testing::Not;

namespace {

constexpr double PI = 3.14159265358979323846;
constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
constexpr const char* GRID = "#ccc";

// A lying sheet, millimetres: 10 of margin and 6 for coordinates at the left; 66 + 4 of panel at the right.
constexpr double FRAME_LEFT = 16.0;
constexpr double FRAME_RIGHT = 217.0;
constexpr double FRAME_TOP = 10.0;
constexpr double FRAME_BOTTOM = 194.0;

FigureView Plan(const std::string& title = "")
{
    return {FigureView::Kind::PLAN, title, {}, 0.0};
}

FigurePlace At(double northing, double easting)
{
    return {northing, easting, std::nullopt};
}

bool IsInFrame(SheetPoint place)
{
    return place.x >= FRAME_LEFT && place.x <= FRAME_RIGHT && place.y >= FRAME_TOP && place.y <= FRAME_BOTTOM;
}

/** The texts within the map. */
std::vector<Element> MapTexts(const std::string& document)
{
    std::vector<Element> texts;
    for (const Element& text : Elements(document, "text"))
    {
        if (IsInFrame({text.Number("x"), text.Number("y")}))
        {
            texts.push_back(text);
        }
    }
    return texts;
}

/** The lines within the map that are not its grid. */
std::vector<std::vector<SheetPoint>> MapLines(const std::string& document)
{
    std::vector<std::vector<SheetPoint>> lines;
    for (const Element& line : Elements(document, "line"))
    {
        const SheetPoint from = {line.Number("x1"), line.Number("y1")};
        if (IsInFrame(from) && line.Attribute("stroke") != GRID)
        {
            lines.push_back({from, {line.Number("x2"), line.Number("y2")}});
        }
    }
    return lines;
}

/** The middles of the filled triangles in the map: a third of the sum of their corners. */
std::vector<SheetPoint> Triangles(const std::string& document)
{
    std::vector<SheetPoint> middles;
    for (const Element& polygon : Elements(document, "polygon"))
    {
        const std::vector<double> c = polygon.Numbers("points");
        const SheetPoint middle = {(c[0] + c[2] + c[4]) / 3.0, (c[1] + c[3] + c[5]) / 3.0};
        if (IsInFrame(middle))
        {
            middles.push_back(middle);
        }
    }
    return middles;
}

/** Points all around the circles in the map, so close that no text fits between: a name inside a large one is fine. */
std::vector<SheetPoint> CirclePoints(const std::string& document)
{
    std::vector<SheetPoint> points;
    for (const Element& circle : Elements(document, "circle"))
    {
        const double radius = circle.Number("r");
        const int count = static_cast<int>(std::ceil(2.0 * PI * radius / 0.3));
        for (int i = 0; i < count; ++i)
        {
            const double turn = 2.0 * PI * i / count;
            points.push_back(
                {circle.Number("cx") + radius * std::cos(turn), circle.Number("cy") + radius * std::sin(turn)});
        }
    }
    return points;
}

void ExpectNothingOverlaps(const std::string& document)
{
    std::vector<std::vector<SheetPoint>> marks = MapLines(document);
    for (const SheetPoint& point : CirclePoints(document))
    {
        marks.push_back({point});
    }
    for (const SheetPoint& triangle : Triangles(document))
    {
        marks.push_back({{triangle.x - 1.2, triangle.y}, {triangle.x + 1.2, triangle.y}});
    }
    std::vector<svg::Corners> boxes;
    for (const Element& text : MapTexts(document))
    {
        const svg::Corners box = svg::Covered(text);
        EXPECT_TRUE(std::all_of(box.begin(), box.end(), IsInFrame)) << text.line;
        for (const svg::Corners& other : boxes)
        {
            EXPECT_FALSE(svg::Overlap(box, other)) << text.line;
        }
        for (const std::vector<SheetPoint>& mark : marks)
        {
            EXPECT_FALSE(svg::Overlap(box, mark)) << text.line << " " << mark[0].x << " " << mark[0].y;
        }
        boxes.push_back(box);
    }
    EXPECT_GT(boxes.size(), 10U);
    EXPECT_GT(marks.size(), 30U);
}

/** Numbers that look random and are the same everywhere. */
class Numbers
{
public:
    double Next()
    {
        state = (state * 16807U) % 2147483647U;
        return static_cast<double>(state) / 2147483647.0;
    }

private:
    unsigned long long state = 11;
};

} // namespace

TEST(FigureSvg, DrawsToTheStatedScaleWithNorthUp)
{
    FigureSvg figure;
    figure.Begin(Plan());
    figure.Add(FigurePoint{"A", At(1000.0, 5000.0), PointRole::GIVEN});
    figure.Add(FigurePoint{"B", At(1030.0, 5040.0), PointRole::GIVEN});
    // The frame of 184 x 201 mm less 10 on each side leaves 164 x 181: 30 m need 1:183, 40 m need 1:221, thus 1:500.
    EXPECT_EQ(figure.Scale(), "1:500");
    const std::vector<SheetPoint> places = Triangles(figure.Finish());
    ASSERT_EQ(places.size(), 2U);
    // 40 m to the east are 80 mm to the right, 30 m to the north 60 mm up.
    EXPECT_NEAR(places[1].x - places[0].x, 80.0, 0.02);
    EXPECT_NEAR(places[1].y - places[0].y, -60.0, 0.02);
    // In the middle of the frame lies the middle of the ground.
    EXPECT_NEAR((places[0].x + places[1].x) / 2.0, (FRAME_LEFT + FRAME_RIGHT) / 2.0, 0.02);
}

TEST(FigureSvg, ScalesFeetAsFeet)
{
    FigureSvg figure(qstd::LinearUnit::FOOT);
    figure.Begin(Plan());
    figure.Add(FigurePoint{"A", At(0.0, 0.0), PointRole::GIVEN});
    figure.Add(FigurePoint{"B", At(0.0, 100.0), PointRole::GIVEN});
    // 100 ft are 30.48 m, which need 1:168; at 1:200 they are 152.4 mm.
    EXPECT_EQ(figure.Scale(), "1:200");
    const std::string document = figure.Finish();
    const std::vector<SheetPoint> places = Triangles(document);
    ASSERT_EQ(places.size(), 2U);
    EXPECT_NEAR(places[1].x - places[0].x, 152.4, 0.02);
    EXPECT_THAT(document, HasSubstr(">grid in feet,<"));
    EXPECT_THAT(document, HasSubstr(" ft<"));
}

TEST(FigureSvg, LooksAtAnElevationFromTheSide)
{
    FigureSvg figure;
    // Distances count from (100, 200) to the east.
    figure.Begin({FigureView::Kind::ELEVATION, "", At(100.0, 200.0), PI / 2.0});
    figure.Add(FigurePoint{"A", {777.0, 210.0, 50.0}, PointRole::GIVEN});
    figure.Add(FigurePoint{"B", {-50.0, 218.0, 53.0}, PointRole::GIVEN});
    figure.Add(FigurePoint{"flat", At(0.0, 0.0), PointRole::GIVEN});
    figure.Add(FigureLine{{0.0, 210.0, 50.0}, At(0.0, 220.0), LineRole::SIGHT, ""});
    figure.Add(FigureArc{{0.0, 214.0, 51.0}, 3.0, 0.0, 2.0 * PI, LineRole::RESULT, ""});
    const std::string document = figure.Finish();
    const std::vector<SheetPoint> places = Triangles(document);
    ASSERT_EQ(places.size(), 2U);
    // 8 m in 181 mm and 3 m in 164 mm fit at 1:50: 160 mm to the right, 60 mm up.
    EXPECT_EQ(figure.Scale(), "1:50");
    EXPECT_NEAR(places[1].x - places[0].x, 160.0, 0.02);
    EXPECT_NEAR(places[1].y - places[0].y, -60.0, 0.02);
    // The circle is level from 211 to 217: 20 mm to 140 mm right of A and 20 mm above it.
    const std::vector<Element> level = svg::With(Elements(document, "line"), "stroke-width=\"0.4\"");
    ASSERT_FALSE(level.empty());
    EXPECT_NEAR(level[0].Number("x1") - places[0].x, 20.0, 0.02);
    EXPECT_NEAR(level[0].Number("x2") - places[0].x, 140.0, 0.02);
    EXPECT_NEAR(level[0].Number("y1") - places[0].y, -20.0, 0.02);
    EXPECT_THAT(document, HasSubstr(">2 parts without height<"));
    EXPECT_THAT(document, HasSubstr(">distance<"));
    EXPECT_THAT(document, HasSubstr(">height<"));
    EXPECT_THAT(document, Not(HasSubstr(">N<")));
}

TEST(FigureSvg, DrawsCirclesAndArcs)
{
    FigureSvg figure;
    figure.Begin(Plan());
    figure.Add(FigureArc{At(0.0, 0.0), 7.0, 1.0, -2.0 * PI, LineRole::REFERENCE, ""});
    // A quarter from north to east, drawn clockwise, and back.
    figure.Add(FigureArc{At(0.0, 0.0), 5.0, 0.0, PI / 2.0, LineRole::RESULT, ""});
    figure.Add(FigureArc{At(0.0, 0.0), 5.0, PI / 2.0, -PI / 2.0, LineRole::OFFSET, ""});
    const std::string document = figure.Finish();
    // The bounding box of 14 m in 164 mm needs 1:85, thus 1:100: 10 mm a metre; the centre is the middle of the frame.
    EXPECT_EQ(figure.Scale(), "1:100");
    const double x = (FRAME_LEFT + FRAME_RIGHT) / 2.0;
    const double y = (FRAME_TOP + FRAME_BOTTOM) / 2.0;
    const std::vector<Element> circles = Elements(document, "circle");
    ASSERT_EQ(circles.size(), 1U);
    EXPECT_NEAR(circles[0].Number("r"), 70.0, 0.01);
    EXPECT_NEAR(circles[0].Number("cx"), x, 0.01);
    const std::vector<Element> paths = Elements(document, "path");
    ASSERT_EQ(paths.size(), 2U);
    // M x,y and four times A r r 0 0 sweep x,y.
    const std::vector<double> there = paths[0].Numbers("d");
    ASSERT_EQ(there.size(), 2U + 4U * 7U);
    EXPECT_NEAR(there[0], x, 0.01);
    EXPECT_NEAR(there[1], y - 50.0, 0.01);
    EXPECT_NEAR(there[2], 50.0, 0.01);
    EXPECT_EQ(there[6], 1.0);
    EXPECT_NEAR(there[there.size() - 2], x + 50.0, 0.01);
    EXPECT_NEAR(there[there.size() - 1], y, 0.01);
    const std::vector<double> back = paths[1].Numbers("d");
    EXPECT_NEAR(back[0], x + 50.0, 0.01);
    EXPECT_EQ(back[6], 0.0);
    EXPECT_NEAR(back[back.size() - 1], y - 50.0, 0.01);
}

TEST(FigureSvg, ShowsOfAHugeArcWhatPassesThrough)
{
    FigureSvg figure;
    figure.Begin(Plan());
    figure.Add(FigurePoint{"A", At(0.0, 0.0), PointRole::GIVEN});
    figure.Add(FigurePoint{"B", At(0.0, 40.0), PointRole::GIVEN});
    figure.Add(FigureArc{At(-1e6, 20.0), 1e6, 0.0, 2.0 * PI, LineRole::REFERENCE, ""});
    figure.Add(FigureArc{At(5e5, 20.0), 1000.0, 0.0, 2.0 * PI, LineRole::RESULT, ""});
    // 40 m in 181 mm: the radius of a thousand kilometres does not count.
    EXPECT_EQ(figure.Scale(), "1:500");
    const std::string document = figure.Finish();
    const std::vector<Element> paths = Elements(document, "path");
    ASSERT_FALSE(paths.empty());
    double leftmost = HUGE_VAL;
    double rightmost = -HUGE_VAL;
    for (const Element& path : paths)
    {
        const std::vector<double> d = path.Numbers("d");
        for (size_t i = 0; i + 1 < d.size(); i += 2)
        {
            EXPECT_TRUE(IsInFrame({d[i], d[i + 1]})) << path.line;
            // It touches the line from A to B in its middle, and bends by 0.2 mm at most over 50 m to each side.
            EXPECT_NEAR(d[i + 1], (FRAME_TOP + FRAME_BOTTOM) / 2.0, 0.02);
            leftmost = std::min(leftmost, d[i]);
            rightmost = std::max(rightmost, d[i]);
        }
    }
    EXPECT_NEAR(leftmost, FRAME_LEFT, 0.01);
    EXPECT_NEAR(rightmost, FRAME_RIGHT, 0.01);
    EXPECT_THAT(document, HasSubstr(">1 part beyond the sheet<"));
    EXPECT_THAT(document, Not(HasSubstr(">result<")));
}

TEST(FigureSvg, ShowsACircleWhoseCentreIsTheOnlyPoint)
{
    FigureSvg figure;
    figure.Begin(Plan());
    figure.Add(FigurePoint{"M", At(0.0, 0.0), PointRole::GIVEN});
    figure.Add(FigureArc{At(0.0, 0.0), 800.0, 0.0, 2.0 * PI, LineRole::REFERENCE, ""});
    // 1600 m in 164 mm need 1:9756.
    EXPECT_EQ(figure.Scale(), "1:10 000");
    EXPECT_EQ(Elements(figure.Finish(), "circle").size(), 1U);
}

TEST(FigureSvg, KeepsMillimetresOfLargeCoordinates)
{
    FigureSvg figure;
    figure.Begin(Plan());
    figure.Add(FigurePoint{"A", At(5500000.000, 3400000.000), PointRole::GIVEN});
    figure.Add(FigurePoint{"B", At(5500000.003, 3400000.008), PointRole::GIVEN});
    // 8 mm are to fill 181 mm at most: 22.6:1, thus 20:1. Doubles of this size resolve a millionth of a millimetre.
    EXPECT_EQ(figure.Scale(), "20:1");
    const std::vector<SheetPoint> places = Triangles(figure.Finish());
    ASSERT_EQ(places.size(), 2U);
    EXPECT_NEAR(places[1].x - places[0].x, 160.0, 0.03);
    EXPECT_NEAR(places[1].y - places[0].y, -60.0, 0.03);
}

TEST(FigureSvg, GivesASensibleSheetForOnePointAndForNone)
{
    FigureSvg none;
    none.Begin(Plan("Nothing"));
    EXPECT_THAT(none.Finish(), HasSubstr(">nothing to show<"));
    EXPECT_EQ(none.Scale(), "1:100");
    FigureSvg one;
    one.Begin(Plan());
    one.Add(FigurePoint{"A", At(5e6, 3e6), PointRole::GIVEN});
    one.Add(FigurePoint{"B", At(5e6, 3e6), PointRole::GIVEN});
    EXPECT_EQ(one.Scale(), "1:100");
    EXPECT_EQ(MapTexts(one.Finish()).size(), 2U);
}

TEST(FigureSvg, LeavesOutWhatIsNoNumberOrBeyondAllMaps)
{
    const double infinite = std::numeric_limits<double>::infinity();
    FigureSvg figure;
    figure.Begin({FigureView::Kind::PLAN, "", At(NOT_A_NUMBER, 0.0), NOT_A_NUMBER});
    figure.Add(FigurePoint{"A", At(0.0, 0.0), PointRole::GIVEN});
    figure.Add(FigurePoint{"B", At(10.0, 10.0), PointRole::GIVEN});
    const std::string before = figure.Finish();
    figure.Add(FigurePoint{"x", At(NOT_A_NUMBER, 0.0), PointRole::COMPUTED});
    figure.Add(FigurePoint{"x", At(0.0, infinite), PointRole::COMPUTED});
    figure.Add(FigurePoint{"x", {0.0, 0.0, NOT_A_NUMBER}, PointRole::COMPUTED});
    figure.Add(FigurePoint{"x", At(1e300, -1e300), PointRole::COMPUTED});
    figure.Add(FigureLine{At(0.0, 0.0), At(infinite, 0.0), LineRole::RESULT, "x"});
    figure.Add(FigureArc{At(0.0, 0.0), NOT_A_NUMBER, 0.0, 1.0, LineRole::RESULT, "x"});
    figure.Add(FigureArc{At(0.0, 0.0), 5.0, infinite, 1.0, LineRole::RESULT, "x"});
    figure.Add(FigureArc{At(0.0, 0.0), -5.0, 0.0, 1.0, LineRole::RESULT, "x"});
    figure.Add(FigureTick{At(0.0, 0.0), infinite, "x"});
    std::string after = figure.Finish();
    EXPECT_THAT(after, Not(HasSubstr("nan")));
    EXPECT_THAT(after, Not(HasSubstr("inf")));
    const size_t line = after.find("<text", after.rfind('\n', after.find(">9 parts beyond the sheet<")));
    ASSERT_NE(line, std::string::npos);
    after.erase(line, after.find('\n', line) + 1 - line);
    EXPECT_EQ(after, before);
}

TEST(FigureSvg, EscapesNamesLabelsNotesAndTitle)
{
    FigureSvg figure;
    figure.Begin(Plan("T < & >"));
    figure.Add(FigurePoint{"n<&>", At(0.0, 0.0), PointRole::GIVEN});
    figure.Add(FigurePoint{"c\x01\n\xFF", At(10.0, 0.0), PointRole::GIVEN});
    figure.Add(FigureLine{At(0.0, 0.0), At(10.0, 10.0), LineRole::RESULT, "l<&>"});
    figure.Note("note <&>");
    const std::string document = figure.Finish();
    EXPECT_THAT(document, HasSubstr("<title>T &lt; &amp; &gt;</title>"));
    EXPECT_THAT(document, HasSubstr(">n&lt;&amp;&gt;</text>"));
    EXPECT_THAT(document, HasSubstr(">l&lt;&amp;&gt;</text>"));
    EXPECT_THAT(document, HasSubstr(">note &lt;&amp;&gt;</text>"));
    // Three replacement characters, U+FFFD.
    EXPECT_THAT(document, HasSubstr(">c\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD</text>"));
}

TEST(FigureSvg, ExplainsWhatOccursAndNothingElse)
{
    FigureSvg figure;
    figure.Begin(Plan("The title"));
    figure.Add(FigurePoint{"A", At(0.0, 0.0), PointRole::GIVEN});
    figure.Add(FigurePoint{"P", At(10.0, 10.0), PointRole::COMPUTED});
    figure.Add(FigureLine{At(0.0, 0.0), At(10.0, 10.0), LineRole::SIGHT, ""});
    figure.Note("first note");
    const std::string document = figure.Finish();
    for (const char* text : {"The title", "first note", "given point", "computed point", "line of sight", "1:100"})
    {
        EXPECT_THAT(document, HasSubstr(">" + std::string(text) + "</text>"));
    }
    for (const char* text : {"other solution", "station", "sighted point", "foot on the reference", "reference",
                             "result", "offset", "construction", "stationing", "nothing to show"})
    {
        EXPECT_THAT(document, Not(HasSubstr(">" + std::string(text) + "</text>")));
    }
}

TEST(FigureSvg, NamesNoFoot)
{
    FigureSvg figure;
    figure.Begin(Plan());
    figure.Add(FigurePoint{"unseen", At(0.0, 0.0), PointRole::FOOT});
    figure.Add(FigurePoint{"", At(10.0, 10.0), PointRole::GIVEN});
    EXPECT_TRUE(MapTexts(figure.Finish()).empty());
}

TEST(FigureSvg, KeepsEverythingApartInACrowd)
{
    FigureSvg figure;
    figure.Begin(Plan());
    Numbers numbers;
    figure.Add(FigureArc{At(50.0, 50.0), 30.0, 0.0, 2.0 * PI, LineRole::REFERENCE, "radius 30"});
    for (int i = 0; i < 60; ++i)
    {
        const FigurePlace place = At(numbers.Next() * 100.0, numbers.Next() * 100.0);
        // Crosses are two lines each; circles and triangles are the other symbols.
        figure.Add(FigurePoint{"point " + std::to_string(i), place, static_cast<PointRole>(i % 5)});
        if (i % 4 == 0)
        {
            figure.Add(FigureLine{At(50.0, 50.0), place, LineRole::SIGHT, "length " + std::to_string(i)});
        }
    }
    ExpectNothingOverlaps(figure.Finish());
}

TEST(FigureSvg, KeepsEverythingApartAlongAStakedLine)
{
    FigureSvg figure;
    figure.Begin(Plan());
    const double azimuth = 0.8;
    const auto at = [azimuth](double station, double offset) {
        return At(station * std::cos(azimuth) - offset * std::sin(azimuth),
                  station * std::sin(azimuth) + offset * std::cos(azimuth));
    };
    figure.Add(FigureLine{at(0.0, 0.0), at(100.0, 0.0), LineRole::REFERENCE, "100.000"});
    for (int station = 0; station <= 100; station += 10)
    {
        figure.Add(FigureTick{at(station, 0.0), azimuth, std::to_string(station)});
    }
    for (int i = 0; i < 12; ++i)
    {
        const double station = 3.0 + 8.0 * i;
        const double offset = (i % 2 == 0 ? 1.0 : -1.0) * (2.0 + i % 5 * 3.0);
        figure.Add(FigureLine{at(station, 0.0), at(station, offset), LineRole::OFFSET, std::to_string(offset)});
        figure.Add(FigurePoint{"", at(station, 0.0), PointRole::FOOT});
        figure.Add(FigurePoint{std::to_string(100 + i), at(station, offset), PointRole::SIGHTED});
    }
    const std::string document = figure.Finish();
    ExpectNothingOverlaps(document);
    for (const Element& text : MapTexts(document))
    {
        const std::vector<double> transform = text.Numbers("transform");
        const double turn = transform.empty() ? 0.0 : transform[0];
        EXPECT_TRUE(turn >= -90.0 && turn < 90.0) << text.line;
    }
}

TEST(FigureSvg, NamesPointsBesideTheStrokesOfTicks)
{
    FigureSvg figure;
    figure.Begin(Plan());
    figure.Add(FigurePoint{"A", At(0.0, 0.0), PointRole::GIVEN});
    figure.Add(FigurePoint{"B", At(10.0, 10.0), PointRole::GIVEN});
    // At 1:100 the stroke lies 1.5 mm above and 3.5 mm to the right of A, where its name would be.
    figure.Add(FigureTick{At(0.15, 0.35), 0.0, ""});
    EXPECT_EQ(figure.Scale(), "1:100");
    const std::string document = figure.Finish();
    const std::vector<std::vector<SheetPoint>> strokes = MapLines(document);
    ASSERT_EQ(strokes.size(), 1U);
    const std::vector<Element> names = MapTexts(document);
    ASSERT_EQ(names.size(), 2U);
    for (const Element& name : names)
    {
        EXPECT_FALSE(svg::Overlap(svg::Covered(name), strokes[0])) << name.line;
    }
}

TEST(FigureSvg, CountsNamesWithoutRoom)
{
    FigureSvg figure;
    figure.Begin(Plan());
    for (int i = 0; i < 500; ++i)
    {
        const int row = i / 25;
        figure.Add(FigurePoint{"a very long name of point " + std::to_string(i), At(i % 25, row), PointRole::GIVEN});
    }
    const std::string document = figure.Finish();
    const size_t named = MapTexts(document).size();
    EXPECT_GT(named, 0U);
    EXPECT_THAT(document, HasSubstr(">" + std::to_string(500 - named) + " names without room<"));
}

TEST(FigureSvg, IsFullWhenMoreComesThanItKeeps)
{
    FigureSvg figure;
    figure.Begin(Plan());
    for (size_t i = 0; i < qstd::MOST_FIGURE_PARTS; ++i)
    {
        EXPECT_FALSE(figure.IsFull());
        if (i % 2 == 0)
        {
            figure.Add(FigurePoint{"", At(static_cast<double>(i), 0.0), PointRole::GIVEN});
        }
        else
        {
            figure.Add(FigureTick{At(static_cast<double>(i), 0.0), 0.0, ""});
        }
    }
    EXPECT_FALSE(figure.IsFull());
    const std::string before = figure.Finish();
    figure.Add(FigurePoint{"", At(1e6, 0.0), PointRole::GIVEN});
    EXPECT_TRUE(figure.IsFull());
    EXPECT_EQ(figure.Finish(), before);
}

TEST(FigureSvg, KeepsNotesClearOfLegendAndScale)
{
    FigureSvg figure;
    figure.Begin(Plan("A title of so many words that it cannot stand on one line of the panel, nor on two or three"));
    for (int i = 0; i < 6; ++i)
    {
        figure.Add(FigurePoint{"", At(i, 0.0), static_cast<PointRole>(i)});
        figure.Add(FigureLine{At(i, 0.0), At(i, 1.0), static_cast<LineRole>(i % 5), ""});
    }
    figure.Add(FigureTick{At(0.0, 0.0), 0.0, ""});
    for (int i = 0; i < 60; ++i)
    {
        figure.Note("note " + std::to_string(i));
    }
    const std::string document = figure.Finish();
    const std::vector<Element> texts = Elements(document, "text");
    for (size_t i = 0; i < texts.size(); ++i)
    {
        for (size_t j = 0; j < i; ++j)
        {
            EXPECT_FALSE(svg::Overlap(svg::Covered(texts[i]), svg::Covered(texts[j])))
                << texts[i].line << texts[j].line;
        }
    }
    EXPECT_THAT(document, HasSubstr(">note 0<"));
    EXPECT_THAT(document, HasSubstr(" more lines<"));
}
