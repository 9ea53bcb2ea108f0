#include "replay/replay.h"

#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "replay/bound_call.h"
#include "tests/support/record.h"

using replay::At;
using replay::Json;
using replay::Made;
using replay::Problem;

namespace {

const std::string POINT = R"({"northing":1,"easting":2,"height":3})";
const std::string OTHER = R"({"northing":4,"easting":6,"height":3})";

/** QREFCalc of a line along easting 0, with a point given. */
Json Referred(const std::string& point)
{
    Made("QREFSetBaseLine", R"("first":{"northing":0,"easting":0,"height":10},
        "second":{"northing":100,"easting":0,"height":10})");
    return Made("QREFCalc", "\"point\":" + point);
}

} // namespace

TEST(Calls, AreTheExportedFunctions)
{
    std::ifstream list(QSTD_EXPORTED_SYMBOLS);
    std::vector<std::string> exported{std::istream_iterator<std::string>(list), std::istream_iterator<std::string>()};
    ASSERT_FALSE(exported.empty()) << QSTD_EXPORTED_SYMBOLS;
    EXPECT_EQ(qstd::CallNames(), exported);
}

TEST(Calls, HandTheirIdThrough)
{
    const std::string rest = R"("benchmarkHeight":1,"reflectorHeight":2,"verticalDifference":4})";
    for (const std::string id : {"7", "null", R"("a")", R"([1,{"b":2.5}])"})
    {
        std::string call = R"({"id":)";
        call += id;
        call += R"(,"call":"QSTNSeaLevelCalcByBM",)";
        call += rest;
        std::string result = R"({"call":"QSTNSeaLevelCalcByBM","id":)";
        result += id;
        result += R"(,"value":-1.0})";
        EXPECT_EQ(Made(call).dump(), result);
    }
    EXPECT_EQ(Made(R"({"call":"QSTNSeaLevelCalcByBM",)" + rest).dump(),
              R"({"call":"QSTNSeaLevelCalcByBM","value":-1.0})");
}

TEST(Calls, WriteWhatTheyWereAskedForInTheOrderOfTheHeader)
{
    // 3 north, 4 east: 5.
    const std::string begin = R"({"call":"QRDMCalcByCoord","status":0,"status_name":"QSTD_OK",)"
                              R"("result":{"slopeDistance":5.0,"horizontalDistance":5.0,"heightDifference":0.0,)"
                              R"("azimuth":)";
    const std::string line = Made("QRDMCalcByCoord", "\"second\":" + OTHER + ",\"first\":" + POINT).dump();
    EXPECT_EQ(line.substr(0, begin.size()), begin);
}

TEST(Calls, KeepTheSignOfZero)
{
    // (-0.0 + 0.0) - 0.0 is 0.0, (-0.0 + -0.0) - 0.0 is -0.0.
    const std::string tail = R"(,"verticalDifference":0)";
    EXPECT_EQ(At(Made("QSTNSeaLevelCalcByBM", R"("benchmarkHeight":-0.0,"reflectorHeight":0)" + tail), "/value").dump(),
              "0.0");
    EXPECT_EQ(
        At(Made("QSTNSeaLevelCalcByBM", R"("benchmarkHeight":-0.0,"reflectorHeight":-0)" + tail), "/value").dump(),
        "-0.0");
}

TEST(Calls, TakeAndGiveWhatIsNotFinite)
{
    const std::string tail = R"(,"reflectorHeight":0,"verticalDifference":"inf")";
    EXPECT_EQ(At(Made("QSTNSeaLevelCalcByBM", R"("benchmarkHeight":1)" + tail), "/value"), "-inf");
    EXPECT_EQ(At(Made("QSTNSeaLevelCalcByBM", R"("benchmarkHeight":"inf")" + tail), "/value"), "nan");
    EXPECT_EQ(At(Made("QSTNSeaLevelCalcByBM", R"("benchmarkHeight":"nan")" + tail), "/value"), "nan");
}

TEST(Calls, TakeTheFlagsOfAPointFromWhatIsGiven)
{
    // With a height the point is 2 below the line, without one nothing is.
    EXPECT_EQ(At(Referred(R"({"northing":5,"easting":0,"height":8})"), "/result/heightDifference"), -2.0);
    EXPECT_EQ(At(Referred(R"({"northing":5,"easting":0})"), "/result/heightDifference"), 0.0);
    EXPECT_EQ(At(Referred(R"({"northing":5,"easting":0,"height":8,"flags":1})"), "/result/heightDifference"), 0.0);
    EXPECT_EQ(At(Referred(R"({"northing":5,"easting":0,"flags":3})"), "/result/heightDifference"), -10.0);
    EXPECT_EQ(At(Referred(R"({"northing":5,"easting":0,"flags":65534})"), "/status_name"), "QSTD_MISSING_COORDINATES");
}

TEST(Calls, SayWhichRecordsStayUntouched)
{
    const Json line = Referred(R"({"northing":5,"easting":0,"flags":0})");
    EXPECT_EQ(line.dump(), R"({"call":"QREFCalc","status":-1201,"status_name":"QSTD_MISSING_COORDINATES",)"
                           R"("result":"untouched"})");
}

TEST(Calls, TakeOnlyUntouchedBytesForUntouched)
{
    // The mark, and the same with one bit changed, in each type.
    double real = 0.0;
    int32_t integer = 0;
    uint16_t flags = 0;
    qstd::MarkUntouched(real);
    qstd::MarkUntouched(integer);
    qstd::MarkUntouched(flags);
    EXPECT_EQ(support::BitsOf(real), 0xA5A5A5A5A5A5A5A5U);
    EXPECT_EQ(qstd::Shown(real), "untouched");
    EXPECT_EQ(qstd::Shown(integer), "untouched");
    EXPECT_EQ(qstd::Shown(flags), "untouched");
    EXPECT_EQ(qstd::Shown(std::nextafter(real, 0.0)), std::nextafter(real, 0.0));
    EXPECT_EQ(qstd::Shown(integer - 1), integer - 1);
    EXPECT_EQ(qstd::Shown(static_cast<uint16_t>(flags - 1)), flags - 1);
}

TEST(Calls, AreNotMadeByReadingThem)
{
    Referred(POINT);
    EXPECT_EQ(Problem("QREFSetBaseLine", R"("first":{"northing":1,"easting":1},"second":{"northing":1,"easting":1})"),
              "");
    EXPECT_EQ(At(Made("QREFCalc", "\"point\":" + POINT), "/status"), 0) << "the line is still defined";
}

TEST(CallProblems, NameTheNearestFunction)
{
    EXPECT_EQ(Problem(R"({"call":"QREFSetBaseline"})"),
              "no call is named \"QREFSetBaseline\"; did you mean \"QREFSetBaseLine\"?");
    EXPECT_EQ(Problem(R"({"call":"x"})"), "no call is named \"x\"");
    EXPECT_EQ(Problem(R"({"call":"Q\u0000\n"})"), R"(no call is named "Q\x00\x0a")");
}

TEST(CallProblems, AreLinesWithoutAFunction)
{
    EXPECT_EQ(Problem("{}"), "missing \"call\", the name of a function");
    EXPECT_EQ(Problem(R"({"call":3})"), "call: expected the name of a function, got 3");
    EXPECT_EQ(Problem("[]"), "expected an object, got an array of 0");
    EXPECT_EQ(Problem("x").substr(0, 20), "column 1: not JSON: ");
}

TEST(CallProblems, AreArgumentsThatAreUnknownOrMissing)
{
    EXPECT_EQ(Problem("QREFSetBaseLine", "\"first\":" + POINT + ",\"secnd\":" + POINT),
              "QREFSetBaseLine: no member is called \"secnd\"; did you mean \"second\"?");
    EXPECT_EQ(Problem("QREFCalc", "\"point\":" + POINT + ",\"velocity\":1"),
              R"(QREFCalc: no member is called "velocity"; it has "point", "call", "id")");
    EXPECT_EQ(Problem("QREFSetBaseLine", R"("id":1)"), R"(QREFSetBaseLine: missing "first", "second")");
    EXPECT_EQ(Problem("QREFCalc", R"("point":{"northing":1,"Easting":2})"),
              R"(QREFCalc: point: no member is called "Easting"; did you mean "easting"?)");
    EXPECT_EQ(Problem("QREFCalc", R"("point":{"height":1})"), R"(QREFCalc: point: missing "northing", "easting")");
    EXPECT_EQ(Problem("QREFCalc", R"("point":)" + POINT + R"(,"result":{})").substr(0, 38),
              "QREFCalc: no member is called \"result\"")
        << "outputs are not handed in";
}

TEST(CallProblems, AreArgumentsOfTheWrongType)
{
    EXPECT_EQ(Problem("QREFCalc", R"("point":[1,2])"), "QREFCalc: point: expected an object, got an array of 2");
    EXPECT_EQ(Problem("QREFCalc", R"("point":{"northing":"12","easting":2})"),
              R"(QREFCalc: point.northing: expected a number, "nan", "inf" or "-inf", got "12")");
    EXPECT_EQ(Problem("QREFCalc", R"("point":{"northing":null,"easting":2})"),
              R"(QREFCalc: point.northing: expected a number, "nan", "inf" or "-inf", got null)");
    EXPECT_EQ(Problem("QCogoCalcArea", R"("points":3)"), "QCogoCalcArea: points: expected an array, got 3");
    EXPECT_EQ(Problem("QCogoCalcArea", R"("points":[{"northing":1,"easting":2},{"northing":1}])"),
              R"(QCogoCalcArea: points[1]: missing "easting")");
    EXPECT_EQ(Problem("ConnectInstrumentSettings", R"("settings":0)"),
              "ConnectInstrumentSettings: settings: expected an object, got 0");
    EXPECT_EQ(Problem("QSTN2PtResect", R"("first":{"unused":[1]})"),
              "QSTN2PtResect: first.unused: expected an array of 2, got an array of 1");
}

TEST(CallProblems, AreIntegersOutOfRange)
{
    const std::string expected =
        "QREMSetBase: base.zenithAngle: expected an integer from -2147483648 to 2147483647, got ";
    const std::string base = R"("base":{"horizontalAngle":0,"distance":1,"zenithAngle":)";
    for (const std::string given : {"2147483648", "-2147483649", "5184000.0", "18446744073709551615",
                                    "-9223372036854775808", "true", R"("5184000")"})
    {
        EXPECT_EQ(Problem("QREMSetBase", base + given + "}"), expected + given);
    }
    for (const std::string given : {"2147483647", "-2147483648", "0"})
    {
        EXPECT_EQ(Problem("QREMSetBase", base + given + "}"), "");
    }
    const std::string flags = "QREFCalc: point.flags: expected an integer from 0 to 65535, got ";
    EXPECT_EQ(Problem("QREFCalc", R"("point":{"northing":1,"easting":2,"flags":65536})"), flags + "65536");
    EXPECT_EQ(Problem("QREFCalc", R"("point":{"northing":1,"easting":2,"flags":-1})"), flags + "-1");
}

TEST(CallProblems, AreCountsThatTheArrayDoesNotHold)
{
    const std::string points = "\"points\":[" + POINT + "," + POINT + "],\"n\":";
    EXPECT_EQ(Problem("QCogoCalcArea", points + "2"), "");
    EXPECT_EQ(Problem("QCogoCalcArea", points + "3"),
              R"(QCogoCalcArea: n: expected at least -32768 and at most the length of "points", 2, got 3)");
    EXPECT_EQ(Problem("QCogoCalcArea", points + "-32769"),
              R"(QCogoCalcArea: n: expected at least -32768 and at most the length of "points", 2, got -32769)");
}

TEST(CallProblems, AreLinesThatDoNotSayHowTheyAreGiven)
{
    const std::string tail = R"(},"point":)" + POINT;
    const std::string line = R"("line":{"first":)" + POINT;
    EXPECT_EQ(Problem("QCogoCalcPtLine", line + tail), R"(QCogoCalcPtLine: line: missing "second" or "azimuth")");
    EXPECT_EQ(Problem("QCogoCalcPtLine", line + R"(,"azimuth":0,"second":)" + OTHER + tail),
              R"(QCogoCalcPtLine: line: missing "mode")");
    EXPECT_EQ(Problem("QCogoCalcPtLine", line + R"(,"mode":2,"azimuth":0)" + tail),
              R"(QCogoCalcPtLine: line: missing "second")");
    EXPECT_EQ(Problem("QCogoCalcPtLine", line + R"(,"mode":3,"second":)" + OTHER + tail),
              R"(QCogoCalcPtLine: line: missing "azimuth")");
    EXPECT_EQ(Problem("QCogoCalcPtLine", line + R"(,"secnd":)" + OTHER + tail),
              R"(QCogoCalcPtLine: line: no member is called "secnd"; did you mean "second"?)");
}
