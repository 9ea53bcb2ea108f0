#include "plan/figure_dxf.h"

#include <cmath>
#include <limits>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using qstd::DxfText;
using qstd::FigureArc;
using qstd::FigureDxf;
using qstd::FigureLine;
using qstd::FigurePlace;
using qstd::FigurePoint;
using qstd::FigureTick;
using qstd::LineRole;
using qstd::PointRole;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

constexpr double PI = 3.14159265358979323846;
constexpr double TEXT_HEIGHT = 2.0;

struct Group
{
    int code = 0;
    std::string value;
};

/** Everything from one group 0 to the next. */
struct Entity
{
    std::string type;
    std::map<int, std::string> groups;

    [[nodiscard]] double Number(int code) const
    {
        return std::stod(groups.at(code));
    }

    [[nodiscard]] bool Has(int code) const
    {
        return groups.count(code) == 1;
    }

    [[nodiscard]] std::string Layer() const
    {
        return groups.at(8);
    }
};

/** A drawing read back; a line that breaks the pairs of code and value fails the test. */
struct Drawing
{
    explicit Drawing(const std::string& text)
    {
        std::istringstream lines(text);
        for (std::string code, value; std::getline(lines, code);)
        {
            EXPECT_TRUE(std::getline(lines, value)) << "a code without value: " << code;
            EXPECT_EQ(code.find_first_not_of(" 0123456789"), std::string::npos) << code;
            groups.push_back({std::stoi(code), value});
        }
        std::string section;
        std::string table;
        for (size_t i = 0; i < groups.size(); ++i)
        {
            Read(i, section, table);
        }
        EXPECT_EQ(section, "");
        EXPECT_EQ(table, "");
        EXPECT_EQ(groups.back().code, 0);
        EXPECT_EQ(groups.back().value, "EOF");
    }

    [[nodiscard]] std::vector<Entity> Of(const std::string& type) const
    {
        std::vector<Entity> found;
        for (const Entity& entity : entities)
        {
            if (entity.type == type)
            {
                found.push_back(entity);
            }
        }
        return found;
    }

    std::vector<Group> groups;
    std::vector<Entity> entities;
    std::set<std::string> layers;
    std::vector<std::string> sections;
    std::vector<std::string> comments;

private:
    void Read(size_t i, std::string& section, std::string& table)
    {
        const Group& group = groups[i];
        if (group.code == 999)
        {
            comments.push_back(group.value);
        }
        else if (group.code == 0 && group.value == "SECTION")
        {
            EXPECT_EQ(section, "");
            section = groups[i + 1].value;
            sections.push_back(section);
        }
        else if (group.code == 0 && group.value == "ENDSEC")
        {
            EXPECT_NE(section, "");
            section.clear();
        }
        else if (group.code == 0 && group.value == "TABLE")
        {
            EXPECT_EQ(table, "");
            table = groups[i + 1].value;
        }
        else if (group.code == 0 && group.value == "ENDTAB")
        {
            table.clear();
        }
        else if (group.code == 0 && group.value == "LAYER")
        {
            layers.insert(groups[i + 1].value);
        }
        else if (section == "ENTITIES" && group.code == 0)
        {
            entities.push_back({group.value, {}});
        }
        else if (section == "ENTITIES" && !entities.empty())
        {
            EXPECT_TRUE(entities.back().groups.emplace(group.code, group.value).second) << group.code << " twice";
        }
    }
};

class FigureDxfTest : public testing::Test
{
protected:
    FigureDxfTest() : writer([this](std::string_view piece) { text += piece; }, qstd::LinearUnit::METRE, TEXT_HEIGHT)
    {
    }

    Drawing Finish()
    {
        writer.Finish();
        return Drawing(text);
    }

    std::string text;
    FigureDxf writer;
};

FigurePlace At(double northing, double easting)
{
    return {northing, easting, std::nullopt};
}

} // namespace

TEST_F(FigureDxfTest, WritesAnEmptyDrawingThatSaysWhatItsCoordinatesAre)
{
    const Drawing drawing = Finish();
    EXPECT_THAT(drawing.sections, ElementsAre("HEADER", "TABLES", "ENTITIES"));
    EXPECT_THAT(drawing.entities, IsEmpty());
    EXPECT_THAT(drawing.comments, ElementsAre(HasSubstr("site coordinates in m")));
    EXPECT_THAT(text, HasSubstr("$ACADVER\n  1\nAC1009\n"));
    std::string feet;
    FigureDxf inFeet([&feet](std::string_view piece) { feet += piece; }, qstd::LinearUnit::US_FOOT, 1.0);
    EXPECT_THAT(feet, HasSubstr("site coordinates in us-ft"));
}

TEST_F(FigureDxfTest, PutsEastingFirst)
{
    writer.Add(FigurePoint{"A", {4000000.123456789, 500000.1, 12.5}, PointRole::GIVEN});
    writer.Add(FigurePoint{"", At(-0.0, 7.0), PointRole::FOOT});
    const Drawing drawing = Finish();
    const std::vector<Entity> points = drawing.Of("POINT");
    ASSERT_EQ(points.size(), 2U);
    EXPECT_EQ(points[0].Layer(), "POINTS_GIVEN");
    EXPECT_EQ(points[0].Number(10), 500000.1);
    EXPECT_EQ(points[0].Number(20), 4000000.123456789);
    EXPECT_EQ(points[0].Number(30), 12.5);
    EXPECT_EQ(points[1].Layer(), "POINTS_FOOT");
    EXPECT_EQ(points[1].groups.at(20), "0.0");
    EXPECT_FALSE(points[1].Has(30));
    const std::vector<Entity> names = drawing.Of("TEXT");
    ASSERT_EQ(names.size(), 1U);
    EXPECT_EQ(names[0].Layer(), "NAMES");
    EXPECT_EQ(names[0].groups.at(1), "A");
    EXPECT_EQ(names[0].Number(40), TEXT_HEIGHT);
}

TEST_F(FigureDxfTest, WritesLinesWithTheirLabelsHalfway)
{
    writer.Add(FigureLine{{10.0, 20.0, 1.0}, {30.0, 60.0, 2.0}, LineRole::REFERENCE, "44.72"});
    writer.Add(FigureLine{{10.0, 20.0, 1.0}, At(30.0, 60.0), LineRole::SIGHT, ""});
    const Drawing drawing = Finish();
    const std::vector<Entity> lines = drawing.Of("LINE");
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0].Layer(), "REFERENCE");
    EXPECT_EQ(lines[0].Number(10), 20.0);
    EXPECT_EQ(lines[0].Number(20), 10.0);
    EXPECT_EQ(lines[0].Number(30), 1.0);
    EXPECT_EQ(lines[0].Number(11), 60.0);
    EXPECT_EQ(lines[0].Number(21), 30.0);
    EXPECT_EQ(lines[0].Number(31), 2.0);
    EXPECT_EQ(lines[1].Layer(), "SIGHT");
    EXPECT_FALSE(lines[1].Has(30) || lines[1].Has(31));
    const std::vector<Entity> labels = drawing.Of("TEXT");
    ASSERT_EQ(labels.size(), 1U);
    EXPECT_EQ(labels[0].Layer(), "LABELS");
    EXPECT_EQ(labels[0].Number(10), 40.0);
    EXPECT_EQ(labels[0].Number(20), 20.0);
    EXPECT_EQ(labels[0].Number(30), 1.5);
}

TEST_F(FigureDxfTest, CountsArcsCounterClockwiseFromTheEast)
{
    // Clockwise from north to azimuth 135 degrees: counter-clockwise from 90 - 135 = -45, that is 315, to 90.
    writer.Add(FigureArc{At(0.0, 0.0), 5.0, 0.0, PI * 0.75, LineRole::RESULT, ""});
    // The same, run the other way.
    writer.Add(FigureArc{At(0.0, 0.0), 5.0, PI * 0.75, -PI * 0.75, LineRole::RESULT, ""});
    const std::vector<Entity> arcs = Finish().Of("ARC");
    ASSERT_EQ(arcs.size(), 2U);
    for (const Entity& arc : arcs)
    {
        EXPECT_NEAR(arc.Number(50), 315.0, 1e-9);
        EXPECT_NEAR(arc.Number(51), 90.0, 1e-9);
        EXPECT_EQ(arc.Number(40), 5.0);
    }
}

TEST_F(FigureDxfTest, WritesAFullTurnAsCircleAndNoArcThatReadsAsOne)
{
    writer.Add(FigureArc{{1.0, 2.0, 3.0}, 5.0, 1.0, -2.0 * PI, LineRole::CONSTRUCTION, ""});
    writer.Add(FigureArc{{1.0, 2.0, 3.0}, 5.0, 1.0, 1e-300, LineRole::CONSTRUCTION, ""});
    const Drawing drawing = Finish();
    ASSERT_EQ(drawing.entities.size(), 1U);
    const Entity& circle = drawing.entities[0];
    EXPECT_EQ(circle.type, "CIRCLE");
    EXPECT_EQ(circle.Layer(), "CONSTRUCTION");
    EXPECT_EQ(circle.Number(10), 2.0);
    EXPECT_EQ(circle.Number(20), 1.0);
    EXPECT_EQ(circle.Number(30), 3.0);
    EXPECT_FALSE(circle.Has(50));
}

TEST_F(FigureDxfTest, DrawsATickAcrossItsReference)
{
    // The reference runs north: the tick from 1 west to 1 east, as long as letters are high.
    writer.Add(FigureTick{At(100.0, 50.0), 0.0, "0+100"});
    const Drawing drawing = Finish();
    const std::vector<Entity> lines = drawing.Of("LINE");
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].Layer(), "STATIONING");
    EXPECT_NEAR(lines[0].Number(10), 49.0, 1e-12);
    EXPECT_NEAR(lines[0].Number(11), 51.0, 1e-12);
    EXPECT_NEAR(lines[0].Number(20), 100.0, 1e-12);
    EXPECT_NEAR(lines[0].Number(21), 100.0, 1e-12);
    EXPECT_EQ(drawing.Of("TEXT").at(0).groups.at(1), "0+100");
}

TEST_F(FigureDxfTest, DeclaresEveryLayerThatItUses)
{
    for (int role = 0; role < 6; ++role)
    {
        writer.Add(FigurePoint{"A", At(0.0, 0.0), static_cast<PointRole>(role)});
    }
    for (int role = 0; role < 5; ++role)
    {
        writer.Add(FigureLine{At(0.0, 0.0), At(1.0, 1.0), static_cast<LineRole>(role), "l"});
    }
    writer.Add(FigureTick{At(0.0, 0.0), 0.0, ""});
    const Drawing drawing = Finish();
    std::set<std::string> used;
    for (const Entity& entity : drawing.entities)
    {
        used.insert(entity.Layer());
        EXPECT_THAT(drawing.layers, Contains(entity.Layer()));
    }
    EXPECT_EQ(used.size(), 14U); // 6 of points, 5 of lines, ticks, names, labels
}

TEST_F(FigureDxfTest, KeepsForeignTextWithinItsLine)
{
    writer.Begin({qstd::FigureView::Kind::PLAN, "title\n  0\nEOF", {}, 0.0});
    writer.Note("note\r\n");
    writer.Add(FigurePoint{"a\n  0\nEOF\n", At(0.0, 0.0), PointRole::GIVEN});
    writer.Add(FigureLine{At(0.0, 0.0), At(1.0, 1.0), LineRole::RESULT, std::string("x\0y", 3)});
    const Drawing drawing = Finish();
    EXPECT_EQ(drawing.entities.size(), 4U);
    EXPECT_THAT(drawing.comments, Contains("title\\U+000A  0\\U+000AEOF"));
    EXPECT_THAT(drawing.comments, Contains("note\\U+000D\\U+000A"));
    EXPECT_EQ(drawing.Of("TEXT").at(1).groups.at(1), "x\\U+0000y");
}

TEST_F(FigureDxfTest, SkipsWhatIsNoNumber)
{
    const double notANumber = std::numeric_limits<double>::quiet_NaN();
    const double infinite = std::numeric_limits<double>::infinity();
    const double largest = std::numeric_limits<double>::max();
    writer.Add(FigurePoint{"A", At(notANumber, 0.0), PointRole::GIVEN});
    writer.Add(FigurePoint{"A", {0.0, 0.0, infinite}, PointRole::GIVEN});
    writer.Add(FigureLine{At(0.0, 0.0), At(0.0, infinite), LineRole::RESULT, "l"});
    writer.Add(FigureArc{At(0.0, 0.0), notANumber, 0.0, 1.0, LineRole::RESULT, "l"});
    writer.Add(FigureArc{At(largest, 0.0), largest, 0.0, 1.0, LineRole::RESULT, "l"});
    writer.Add(FigureArc{At(0.0, 0.0), 0.0, 0.0, 1.0, LineRole::RESULT, "l"});
    writer.Add(FigureTick{At(0.0, 0.0), notANumber, "l"});
    writer.Add(FigureLine{At(-largest, largest), At(largest, largest), LineRole::RESULT, "l"});
    const Drawing drawing = Finish();
    ASSERT_EQ(drawing.entities.size(), 2U);
    EXPECT_EQ(drawing.entities[0].Number(10), largest);
    EXPECT_EQ(drawing.entities[1].Number(20), 0.0);
}

TEST(DxfText, CodesWhatIsBeyondAscii)
{
    EXPECT_EQ(DxfText("plain 12-A_b/c"), "plain 12-A_b/c");
    // U+0151, U+20AC; U+1D11E is D834 DD1E in UTF-16.
    EXPECT_EQ(DxfText("K\xC5\x91 \xE2\x82\xAC \xF0\x9D\x84\x9E"), "K\\U+0151 \\U+20AC \\U+D834\\U+DD1E");
    EXPECT_EQ(DxfText("\xFF\x7F"), "\\U+FFFD\\U+007F");
}

TEST(DxfText, CodesWhatAReaderTakesForACode)
{
    EXPECT_EQ(DxfText("\\U+0041"), "\\U+005CU+0041");
    EXPECT_EQ(DxfText("50%%d 5% a^b c:\\d"), "50\\U+0025%d 5% a\\U+005Eb c:\\d");
}

TEST(DxfText, IsNeverLongerThanReadersTake)
{
    EXPECT_EQ(DxfText(std::string(1000, 'a')).size(), 255U);
    std::string many;
    for (int i = 0; i < 100; ++i)
    {
        many += "\xC5\x91";
    }
    // Codes of 7 letters: 36 of them are 252, and none is cut.
    EXPECT_EQ(DxfText(many).size(), 252U);
}
