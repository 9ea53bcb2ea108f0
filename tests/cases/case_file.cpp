#include "tests/cases/case_file.h"

#include <algorithm>
#include <cctype>
#include <fstream>
#include <stdexcept>

#include "tests/support/angle.h"
#include "tests/support/record.h"

namespace cases {

const Json& File()
{
    static const Json file = Json::parse(std::ifstream(QSTD_CASES_FILE));
    return file;
}

const Json& CaseById(const std::string& id)
{
    for (const Json& each : File().at("cases"))
    {
        if (each.at("id") == id)
        {
            return each;
        }
    }
    throw std::out_of_range("no case " + id);
}

std::vector<std::string> AllIds()
{
    std::vector<std::string> ids;
    for (const Json& each : File().at("cases"))
    {
        ids.push_back(each.at("id"));
    }
    return ids;
}

std::vector<std::string> IdsOfKind(const std::string& kind)
{
    std::vector<std::string> ids;
    for (const Json& each : File().at("cases"))
    {
        if (each.at("kind") == kind)
        {
            ids.push_back(each.at("id"));
        }
    }
    return ids;
}

std::string TestName(const testing::TestParamInfo<std::string>& info)
{
    std::string name = info.param;
    std::replace_if(
        name.begin(), name.end(), [](unsigned char letter) { return std::isalnum(letter) == 0; }, '_');
    return name;
}

bool HasHeight(const Json& point)
{
    return point.contains("height");
}

PointRecord Point(const Json& point)
{
    const double northing = point.at("northing");
    const double easting = point.at("easting");
    return HasHeight(point) ? support::FullPoint(northing, easting, point.at("height"))
                            : support::PlanPoint(northing, easting);
}

AngleUnit Angle(const Json& angle)
{
    return angle.at("au");
}

AngleUnit ZenithOf(const Json& sight)
{
    return sight.contains("zenith") ? Angle(sight.at("zenith")) : ANGLE_QUARTER_CIRCLE;
}

SightDistances DistancesOf(const Json& sight)
{
    const double horizontal = sight.value("horizontal_distance", 0.0);
    return {sight.value("slope_distance", horizontal), horizontal, sight.value("vertical_difference", 0.0)};
}

double ExactUnits(const Json& angle)
{
    constexpr double DEGREES_PER_GON = 0.9;
    if (angle.contains("as_printed")) // "256.34476 gon"
    {
        return std::stod(angle.at("as_printed").get<std::string>()) * DEGREES_PER_GON * support::UNITS_PER_DEGREE;
    }
    return angle.at("deg").get<double>() * support::UNITS_PER_DEGREE;
}

double Tolerance(const Json& each, const std::string& name)
{
    return each.at("tolerance").at(name);
}

void ExpectPoint(const Json& expected, const PointRecord& actual, const Json& tolerance)
{
    EXPECT_NEAR(expected.at("northing").get<double>(), actual.northing, tolerance.at("length").get<double>());
    EXPECT_NEAR(expected.at("easting").get<double>(), actual.easting, tolerance.at("length").get<double>());
    if (HasHeight(expected) && tolerance.contains("height"))
    {
        EXPECT_NEAR(expected.at("height").get<double>(), actual.height, tolerance.at("height").get<double>());
        EXPECT_EQ(3, actual.flags);
    }
}

} // namespace cases
