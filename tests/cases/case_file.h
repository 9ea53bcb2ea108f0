// The file of published cases, and its entries as records of the library.
#ifndef QSTDLIB_TESTS_CASES_CASE_FILE_H
#define QSTDLIB_TESTS_CASES_CASE_FILE_H

#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "qstdlib.h"

namespace cases {

using Json = nlohmann::json;

// The file as it is, read once.
const Json& File();

const Json& CaseById(const std::string& id);

std::vector<std::string> AllIds();
std::vector<std::string> IdsOfKind(const std::string& kind);

// The id as a test's name: letters, digits and underscores.
std::string TestName(const testing::TestParamInfo<std::string>& info);

// What a case does not give is filled in as the file's notes say: no height clears the flag, no zenith is a level
// sight.
bool HasHeight(const Json& point);
PointRecord Point(const Json& point);
AngleUnit Angle(const Json& angle);
AngleUnit ZenithOf(const Json& sight);

// A horizontal distance without a slope distance: the slope distance is the same and the vertical difference 0.0.
// Without a horizontal distance all are 0.0.
struct SightDistances
{
    double slope;
    double horizontal;
    double vertical;
};
SightDistances DistancesOf(const Json& sight);

// The unrounded angle in units: as printed where the file keeps it, else from its decimal degrees.
double ExactUnits(const Json& angle);

// A tolerance of the case.
double Tolerance(const Json& each, const std::string& name);

// Plan position, and height where the expected point has one and the case a tolerance for it.
void ExpectPoint(const Json& expected, const PointRecord& actual, const Json& tolerance);

} // namespace cases

#endif
