#include "plan/figure_geojson.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using nlohmann::json;
using qstd::FigureArc;
using qstd::FigureGeoJson;
using qstd::FigureLine;
using qstd::FigurePlace;
using qstd::FigurePoint;
using qstd::FigureTick;
using qstd::LineRole;
using qstd::PointRole;
using testing::HasSubstr;
using testing::Not;

namespace {

constexpr double PI = 3.14159265358979323846;

class FigureGeoJsonTest : public testing::Test
{
protected:
    FigureGeoJsonTest() : writer([this](std::string_view piece) { text += piece; }, qstd::LinearUnit::METRE)
    {
    }

    json Finish()
    {
        writer.Finish();
        return json::parse(text);
    }

    std::string text;
    FigureGeoJson writer;
};

FigurePlace At(double northing, double easting)
{
    return {northing, easting, std::nullopt};
}

/** The farthest that the chords of an arc around the origin get off it, at their middles. */
double LargestSagitta(const json& vertices, double radius)
{
    double largest = 0.0;
    for (size_t i = 1; i < vertices.size(); ++i)
    {
        const double x = (vertices[i - 1][0].get<double>() + vertices[i][0].get<double>()) / 2.0;
        const double y = (vertices[i - 1][1].get<double>() + vertices[i][1].get<double>()) / 2.0;
        largest = std::max(largest, radius - std::hypot(x, y));
    }
    return largest;
}

} // namespace

TEST_F(FigureGeoJsonTest, SaysWhatItsCoordinatesAre)
{
    writer.Begin({qstd::FigureView::Kind::PLAN, "The \"title\"", {}, 0.0});
    writer.Note("a note");
    const json document = Finish();
    EXPECT_EQ(document["type"], "FeatureCollection");
    EXPECT_EQ(document["name"], "The \"title\"");
    EXPECT_THAT(document["note"].get<std::string>(), HasSubstr("site coordinates in m"));
    EXPECT_EQ(document["notes"], json::array({"a note"}));
    EXPECT_FALSE(document.contains("crs"));
    EXPECT_EQ(document["features"], json::array());
}

TEST_F(FigureGeoJsonTest, IsADocumentWithoutAView)
{
    EXPECT_EQ(Finish()["features"], json::array());
}

TEST_F(FigureGeoJsonTest, PutsEastingFirst)
{
    writer.Add(FigurePoint{"A", {4000000.123456789, 500000.1, 12.5}, PointRole::COMPUTED});
    writer.Add(FigurePoint{"B", At(-0.0, 7.0), PointRole::STATION});
    const json features = Finish()["features"];
    ASSERT_EQ(features.size(), 2U);
    EXPECT_EQ(features[0]["type"], "Feature");
    EXPECT_EQ(features[0]["geometry"], json({{"type", "Point"}, {"coordinates", {500000.1, 4000000.123456789, 12.5}}}));
    EXPECT_EQ(features[0]["properties"],
              json({{"name", "A"}, {"role", "computed"}, {"kind", "point"}, {"label", ""}, {"height", 12.5}}));
    EXPECT_EQ(features[1]["geometry"]["coordinates"], json::array({7.0, 0.0}));
    EXPECT_TRUE(features[1]["properties"]["height"].is_null());
    EXPECT_THAT(text, Not(HasSubstr("-0")));
}

TEST_F(FigureGeoJsonTest, WritesAFeatureALine)
{
    writer.Add(FigurePoint{"two\nlines", At(1.0, 2.0), PointRole::GIVEN});
    writer.Add(FigureLine{At(0.0, 0.0), At(1.0, 1.0), LineRole::OFFSET, "x"});
    writer.Finish();
    // The head, the two features, and the end.
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 4);
    const size_t second = text.find('\n') + 1;
    const std::string feature = text.substr(second, text.find(",\n", second) - second);
    EXPECT_EQ(json::parse(feature)["properties"]["name"], "two\nlines");
}

TEST_F(FigureGeoJsonTest, GivesTheVerticesOfALineHeightsWhenBothAreKnown)
{
    writer.Add(FigureLine{{10.0, 20.0, 1.0}, {30.0, 60.0, 2.0}, LineRole::REFERENCE, "44.72"});
    writer.Add(FigureLine{{10.0, 20.0, 1.0}, {30.0, 60.0, 1.0}, LineRole::RESULT, ""});
    writer.Add(FigureLine{{10.0, 20.0, 1.0}, At(30.0, 60.0), LineRole::SIGHT, ""});
    const json features = Finish()["features"];
    EXPECT_EQ(features[0]["geometry"]["type"], "LineString");
    EXPECT_EQ(features[0]["geometry"]["coordinates"], json({{20.0, 10.0, 1.0}, {60.0, 30.0, 2.0}}));
    EXPECT_EQ(features[0]["properties"]["label"], "44.72");
    EXPECT_TRUE(features[0]["properties"]["height"].is_null());
    EXPECT_EQ(features[1]["properties"]["height"], 1.0);
    EXPECT_EQ(features[2]["geometry"]["coordinates"], json({{20.0, 10.0}, {60.0, 30.0}}));
    EXPECT_TRUE(features[2]["properties"]["height"].is_null());
}

TEST_F(FigureGeoJsonTest, BreaksAnArcIntoChordsWithinAMillimetre)
{
    // From north clockwise to east.
    writer.Add(FigureArc{At(0.0, 0.0), 100.0, 0.0, PI / 2.0, LineRole::REFERENCE, "arc"});
    writer.Add(FigureArc{{0.0, 0.0, 5.0}, 100.0, 1.0, -2.0 * PI, LineRole::RESULT, ""});
    writer.Add(FigureArc{At(0.0, 0.0), 0.0001, 0.0, 2.0 * PI, LineRole::RESULT, ""});
    const json features = Finish()["features"];
    const json& quarter = features[0]["geometry"]["coordinates"];
    EXPECT_NEAR(quarter.front()[0].get<double>(), 0.0, 1e-9);
    EXPECT_NEAR(quarter.front()[1].get<double>(), 100.0, 1e-9);
    EXPECT_NEAR(quarter.back()[0].get<double>(), 100.0, 1e-9);
    EXPECT_NEAR(quarter.back()[1].get<double>(), 0.0, 1e-9);
    EXPECT_LE(LargestSagitta(quarter, 100.0), 0.001 + 1e-12);
    const json& properties = features[0]["properties"];
    EXPECT_EQ(properties["kind"], "arc");
    EXPECT_EQ(properties["centre"], json::array({0.0, 0.0}));
    EXPECT_EQ(properties["radius"], 100.0);
    EXPECT_EQ(properties["start"], 0.0);
    EXPECT_EQ(properties["sweep"], PI / 2.0);
    const json& circle = features[1]["geometry"]["coordinates"];
    EXPECT_EQ(circle.front(), circle.back());
    EXPECT_LE(LargestSagitta(circle, 100.0), 0.001 + 1e-12);
    EXPECT_EQ(circle[0][2], 5.0);
    EXPECT_EQ(features[1]["properties"]["kind"], "circle");
    EXPECT_EQ(features[1]["properties"]["height"], 5.0);
    EXPECT_GT(features[2]["geometry"]["coordinates"].size(), 30U);
}

TEST_F(FigureGeoJsonTest, NeverTakesMoreThan720Vertices)
{
    writer.Add(FigureArc{At(0.0, 0.0), 1e9, 0.0, 2.0 * PI, LineRole::RESULT, ""});
    EXPECT_EQ(Finish()["features"][0]["geometry"]["coordinates"].size(), 720U);
}

TEST_F(FigureGeoJsonTest, WritesTicksAsPoints)
{
    writer.Add(FigureTick{{100.0, 50.0, 3.0}, 0.5, "0+100"});
    const json feature = Finish()["features"][0];
    EXPECT_EQ(feature["geometry"]["coordinates"], json::array({50.0, 100.0, 3.0}));
    EXPECT_EQ(feature["properties"]["kind"], "tick");
    EXPECT_EQ(feature["properties"]["role"], "stationing");
    EXPECT_EQ(feature["properties"]["label"], "0+100");
    EXPECT_EQ(feature["properties"]["azimuth"], 0.5);
}

TEST_F(FigureGeoJsonTest, SkipsWhatIsNoNumberAndReplacesWhatIsNoText)
{
    const double notANumber = std::numeric_limits<double>::quiet_NaN();
    const double infinite = std::numeric_limits<double>::infinity();
    writer.Begin({qstd::FigureView::Kind::PLAN, "\xFF", {}, 0.0});
    writer.Add(FigurePoint{"A", At(notANumber, 0.0), PointRole::GIVEN});
    writer.Add(FigurePoint{"A", {0.0, 0.0, infinite}, PointRole::GIVEN});
    writer.Add(FigureLine{At(0.0, 0.0), At(0.0, infinite), LineRole::RESULT, ""});
    writer.Add(FigureArc{At(0.0, 0.0), infinite, 0.0, 1.0, LineRole::RESULT, ""});
    writer.Add(FigureTick{At(0.0, 0.0), notANumber, ""});
    writer.Add(FigurePoint{"<&>\"\x01\xFF", At(1e300, -1e-300), PointRole::GIVEN});
    writer.Note("\xC3");
    const json features = Finish()["features"];
    ASSERT_EQ(features.size(), 1U);
    EXPECT_EQ(features[0]["properties"]["name"], "<&>\"\x01\xEF\xBF\xBD");
    EXPECT_EQ(features[0]["geometry"]["coordinates"], json::array({-1e-300, 1e300}));
}
