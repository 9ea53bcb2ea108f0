#include "replay/replay_command.h"

#include <string>

#include <gtest/gtest.h>

#include "output/test_folder.h"
#include "qstdlib.h"

using qstd::ReplayOptions;
using qstd::ReplayResult;
using qstd::RunReplay;

namespace {

const std::string HEIGHT = R"({"call":"QSTNSeaLevelCalcByBM","benchmarkHeight":1,"reflectorHeight":2,)"
                           R"("verticalDifference":0.5})"
                           "\n";
const std::string HEIGHT_RESULT = "{\"call\":\"QSTNSeaLevelCalcByBM\",\"value\":2.5}\n"; // 1 + 2 - 0.5

class Replay : public TestFolder
{
protected:
    ReplayResult Record(const std::string& calls)
    {
        ReplayOptions options;
        options.calls = Made("calls", calls);
        options.output = Path("out");
        return RunReplay(options);
    }

    ReplayResult CompareWith(const std::string& calls, const std::string& recording, uint64_t units = 0)
    {
        ReplayOptions options;
        options.calls = Made("calls", calls);
        options.expect = Made("recording", recording);
        options.unitsInLastPlace = units;
        options.output = Path("out");
        return RunReplay(options);
    }

    [[nodiscard]] std::string Name(const std::string& file) const
    {
        return Path(file);
    }
};

std::string Times(size_t count, const std::string& text)
{
    std::string all;
    for (size_t i = 0; i < count; ++i)
    {
        all += text;
    }
    return all;
}

} // namespace

TEST_F(Replay, WritesALineForEachCall)
{
    const ReplayResult result = Record("# heights\n\n" + HEIGHT + "  \n" + HEIGHT);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.messages, "");
    EXPECT_EQ(ContentOf("out"), HEIGHT_RESULT + HEIGHT_RESULT);
}

TEST_F(Replay, OfNoCallsIsEmpty)
{
    EXPECT_EQ(Record("").exitCode, 0);
    EXPECT_EQ(ContentOf("out"), "");
}

TEST_F(Replay, MakesNoCallWhenALineIsNone)
{
    const ReplayResult result = Record(HEIGHT + "{\n" + "{\"call\":\"x\"}\n");
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_EQ(result.messages, Name("calls") +
                                   ":2: column 2: not JSON: syntax error while parsing object key - unexpected end of "
                                   "input; expected string literal\n" +
                                   Name("calls") + ":3: no call is named \"x\"\n");
    EXPECT_EQ(Count(), 1U) << "the calls alone";
}

TEST_F(Replay, ListsTwentyProblems)
{
    const ReplayResult result = Record(Times(23, "{}\n"));
    EXPECT_NE(result.messages.find("calls:20: missing"), std::string::npos);
    EXPECT_EQ(result.messages.find("calls:21: "), std::string::npos);
    EXPECT_NE(result.messages.find("qstd: 3 more errors not shown\n"), std::string::npos);
}

TEST_F(Replay, SaysWhatCannotBeRead)
{
    ReplayOptions options;
    options.calls = Path("none");
    const ReplayResult result = RunReplay(options);
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_EQ(result.messages, Name("none") + ": cannot be read: No such file or directory\n");
    options.calls = Made("calls", HEIGHT);
    options.expect = Path("none");
    EXPECT_EQ(RunReplay(options).exitCode, 3);
}

TEST_F(Replay, SaysWhatCannotBeWritten)
{
    ReplayOptions options;
    options.calls = Made("calls", HEIGHT);
    options.output = Path("none/out");
    const ReplayResult result = RunReplay(options);
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.messages.substr(0, 6 + options.output.size()), "qstd: " + options.output);
}

TEST_F(Replay, ReadsStandardInputOnce)
{
    ReplayOptions options;
    options.calls = "-";
    options.expect = "-";
    const ReplayResult result = RunReplay(options);
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.messages, "qstd: replay: standard input can be read only once\n");
}

TEST_F(Replay, BeginsAndEndsWithoutInstrument)
{
    InstrumentSettings operations{};
    operations.GetIntSetting = [](uint32_t /*identifier*/) -> int32_t { return 1; };
    ConnectInstrumentSettings(&operations);
    const std::string inverse = R"({"call":"QRDMCalcByCoord","first":{"northing":0,"easting":0},)"
                                R"("second":{"northing":1,"easting":0}})"
                                "\n";
    Record(inverse + R"({"call":"ConnectInstrumentSettings","settings":{"azimuthReference":1}})" + "\n" + inverse);
    const std::string results = ContentOf("out");
    const size_t first = results.find("\"azimuth\":0}");
    const size_t second = results.find("\"azimuth\":10368000}");
    EXPECT_NE(first, std::string::npos) << results;
    EXPECT_NE(second, std::string::npos) << results;
    EXPECT_LT(first, second);
    const PointRecord origin = {0.0, 0.0, 0.0, 1};
    const PointRecord north = {1.0, 0.0, 0.0, 1};
    RemoteDistanceResult distance;
    EXPECT_EQ(QRDMCalcByCoord(&origin, &north, &distance), 0);
    EXPECT_EQ(distance.azimuth, 0);
}

TEST_F(Replay, FindsItsOwnRecordingEqual)
{
    const std::string calls = HEIGHT + R"({"call":"QCogoCalcSlopeByDist","horizontal":0,"vertical":"nan"})" + "\n";
    Record(calls);
    const ReplayResult result = CompareWith(calls, "# recorded\n\n" + ContentOf("out"));
    EXPECT_EQ(result.messages, "");
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(ContentOf("out"), "2 results compared with " + Name("recording") + ": all equal\n");
}

TEST_F(Replay, TellsWhatDiffersFromTheRecording)
{
    const std::string recording = HEIGHT_RESULT + "{\"call\":\"QSTNSeaLevelCalcByBM\",\"value\":2.5000000000000004}\n";
    const ReplayResult result = CompareWith(HEIGHT + "\n" + HEIGHT, recording);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.messages, Name("recording") +
                                   ":2: value: expected 2.5000000000000004, got 2.5, 1 unit in the last place apart (" +
                                   Name("calls") + ":3: QSTNSeaLevelCalcByBM)\n");
    EXPECT_EQ(ContentOf("out"), "2 results compared with " + Name("recording") + ": 1 differs\n");
    EXPECT_EQ(CompareWith(HEIGHT + HEIGHT, recording, 1).exitCode, 0);
}

TEST_F(Replay, TellsWhatIsBeyondTheEndOfTheOther)
{
    const ReplayResult longer = CompareWith(HEIGHT, Times(3, HEIGHT_RESULT));
    EXPECT_EQ(longer.exitCode, 1);
    EXPECT_EQ(longer.messages, Name("recording") + ": 2 results beyond the end of " + Name("calls") + "\n");
    const ReplayResult shorter = CompareWith(HEIGHT + HEIGHT, HEIGHT_RESULT);
    EXPECT_EQ(shorter.exitCode, 1);
    EXPECT_EQ(shorter.messages, Name("calls") + ": 1 call beyond the end of " + Name("recording") + "\n");
    EXPECT_EQ(ContentOf("out"), "1 result compared with " + Name("recording") + ": equal as far as both go\n");
}

TEST_F(Replay, ListsTwentyDifferences)
{
    const ReplayResult result = CompareWith(Times(22, HEIGHT), Times(22, "{\"call\":\"QSTNSeaLevelCalcByBM\"}\n"));
    EXPECT_NE(result.messages.find("recording:20: "), std::string::npos);
    EXPECT_EQ(result.messages.find("recording:21: "), std::string::npos);
    EXPECT_NE(result.messages.find("qstd: 2 more differences not shown\n"), std::string::npos);
    EXPECT_EQ(ContentOf("out"), "22 results compared with " + Name("recording") + ": 22 differ\n");
}

TEST_F(Replay, RefusesARecordingThatIsNone)
{
    const ReplayResult result = CompareWith(HEIGHT, "{\"call\":1,\"call\":2}\n");
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_EQ(result.messages, Name("recording") + ":1: \"call\" is given twice\n");
}
