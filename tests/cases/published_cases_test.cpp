// Which published cases are tested, and which still wait for the functions that they concern.
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/cases/case_file.h"
#include "tests/support/angle.h"

namespace {

using cases::Json;
using Ids = std::set<std::string>;

// The kinds that tests of this folder walk through; every case of these kinds is a test.
const std::vector<std::string> TESTED_KINDS = {
    "inverse",        "forward",       "polar_point_3d",   "resection_3pt",
    "resection_2pt",  "free_station",  "benchmark_height", "height_by_zenith",
    "reference_line", "area",          "line_line",        "circle_circle",
    "line_circle",    "reference_arc", "arc_parameters",   "remote_elevation"};

const Ids TESTED = {
    "inverse-geoeasy-231-13",
    "inverse-plugin-3d",
    "forward-geoeasy-polar-1_sp",
    "forward-plugin-polar-10",
    "polar3d-geoeasy-1_sp",
    "polar3d-plugin-radial-10001",
    "resection3-geoeasy-5003",
    "resection3-plugin-targets-on-a-line",
    "resection3-plugin-5001-gon",
    "resection2-plugin-5001-two-distances",
    "free-station-plugin-5001",
    "free-station-carosio-B",
    "free-station-ghilani-15-5",
    "free-station-railway-1016",
    "free-station-tunnel-phase_0-1TK-4901",
    "free-station-tunnel-phase_1-2TK-4905",
    "free-station-tunnel-phase_0-1TK-4902-directions-only",
    "benchmark-mahun-101",
    "height-zenith-geoeasy-14",
    "curvature-refraction-1km",
    "reference-line-geoeasy-a",
    "area-geoeasy-16-231-232",
    "line-line-geoeasy-5004",
    "line-line-mahun-LR",
    "line-line-plugin-simple-1",
    "circle-circle-geoeasy-5002",
    "circle-circle-matheass",
    "circle-circle-mahun-AB",
    "line-circle-matheass-secant",
    "line-circle-mahun-AB",
    "arc-geoeasy-right",
    "arc-mahun-55deg",
    "remote-elevation-geoeasy-102",
};

// Calls `visit` with every object that is an angle.
template <typename Visit>
void ForEachAngle(const Json& node, const Visit& visit)
{
    if (node.is_object() && node.contains("au"))
    {
        visit(node);
        return;
    }
    if (node.is_structured())
    {
        for (const Json& child : node)
        {
            ForEachAngle(child, visit);
        }
    }
}

} // namespace

TEST(PublishedCases, AreAllTested)
{
    const std::vector<std::string> ids = cases::AllIds();
    EXPECT_EQ(TESTED, Ids(ids.begin(), ids.end()));
    EXPECT_EQ(TESTED.size(), ids.size()) << "an id stands twice in the file";
    EXPECT_EQ(cases::File().at("count").get<size_t>(), ids.size());
}

TEST(PublishedCases, AreTestedByKind)
{
    Ids ofTestedKinds;
    for (const std::string& kind : TESTED_KINDS)
    {
        const std::vector<std::string> ids = cases::IdsOfKind(kind);
        EXPECT_FALSE(ids.empty()) << kind;
        ofTestedKinds.insert(ids.begin(), ids.end());
    }
    EXPECT_EQ(TESTED, ofTestedKinds);
}

// The unit of the interface, the decimal degrees and the printed figure of each angle are one angle: the unit is the
// nearest one, within the digits that the degrees are given with.
TEST(PublishedCases, GiveAnglesThatAgreeWithThemselves)
{
    int angles = 0;
    ForEachAngle(cases::File().at("cases"), [&angles](const Json& angle) {
        const double exact = cases::ExactUnits(angle);
        EXPECT_LE(std::fabs(support::UNITS_PER_DEGREE * angle.at("deg").get<double>() - exact), 1e-3) << angle;
        // A value that rounds up to the full circle is 0.
        const double distance = std::remainder(exact - angle.at("au").get<double>(), ANGLE_FULL_CIRCLE);
        EXPECT_LE(std::fabs(distance), 0.5 + 1e-3) << angle;
        ++angles;
    });
    EXPECT_GT(angles, 100);
}
