/**
 * @file replay.h
 * Calls as texts, made on the library, for the tests of the replay.
 */
#ifndef QSTDLIB_TESTS_TOOLS_REPLAY_H
#define QSTDLIB_TESTS_TOOLS_REPLAY_H

#include "replay/call.h"

#include <cmath>
#include <string>

#include <gtest/gtest.h>

namespace replay {

using qstd::Json;

/** The result of a call that is expected to be one. */
inline Json Made(const std::string& line)
{
    const qstd::ReplayCall call = qstd::ParseCall(line);
    EXPECT_EQ(call.problem, "") << line;
    return call.problem.empty() ? qstd::MakeCall(call) : Json::object();
}

/** A function with its arguments: the members of the object, without the braces. */
inline Json Made(const std::string& function, const std::string& arguments)
{
    return Made(R"({"call":")" + function + "\"" + (arguments.empty() ? "" : ",") + arguments + "}");
}

inline std::string Problem(const std::string& line)
{
    return qstd::ParseCall(line).problem;
}

inline std::string Problem(const std::string& function, const std::string& arguments)
{
    return Problem(R"({"call":")" + function + "\"," + arguments + "}");
}

/** A value by its path, such as /result/foot/northing. */
inline Json At(const Json& line, const std::string& path)
{
    const Json::json_pointer pointer(path);
    EXPECT_TRUE(line.contains(pointer)) << path << " in " << line.dump();
    return line.contains(pointer) ? line.at(pointer) : Json();
}

inline void ExpectReal(double expected, const Json& line, const std::string& path, double tolerance = 1e-9)
{
    const Json value = At(line, path);
    ASSERT_TRUE(value.is_number_float()) << path << " in " << line.dump();
    EXPECT_LE(std::fabs(value.get<double>() - expected), tolerance)
        << path << " is " << value << " in place of " << expected;
}

/** An angle that comes out of a computation, to a unit. */
inline void ExpectAngle(int64_t expected, const Json& line, const std::string& path)
{
    const Json value = At(line, path);
    ASSERT_TRUE(value.is_number_integer()) << path << " in " << line.dump();
    EXPECT_LE(std::abs(value.get<int64_t>() - expected), 1) << path << " is " << value << " in place of " << expected;
}

/** Northing, easting, height and flags of a point. */
inline void ExpectPoint(double northing, double easting, double height, int flags, const Json& line,
                        const std::string& path, double tolerance = 1e-9)
{
    ExpectReal(northing, line, path + "/northing", tolerance);
    ExpectReal(easting, line, path + "/easting", tolerance);
    ExpectReal(height, line, path + "/height", tolerance);
    EXPECT_EQ(At(line, path + "/flags"), flags) << path;
}

} // namespace replay

#endif
