#include "replay/replay_command.h"

#include "input/line_source.h"
#include "output/files.h"
#include "output/output_stream.h"
#include "output/progress.h"
#include "replay/call.h"
#include "replay/comparison.h"
#include "replay/instrument_answers.h"
#include "text/message.h"
#include "text/outcome.h"
#include "text/text.h"

#include <fmt/format.h>

#include <cstddef>
#include <optional>
#include <string_view>

namespace qstd {

namespace {

/** The next line that holds a value. */
std::optional<std::string_view> NextValue(LineSource& source)
{
    std::optional<std::string_view> line = source.Next();
    while (line && IsBlankOrComment(*line))
    {
        line = source.Next();
    }
    return line;
}

/** The differences found: the first are kept in words, the others counted. */
class DifferenceList
{
public:
    void Add(const std::string& text)
    {
        if (count < LIMIT)
        {
            listed += text + "\n";
        }
        ++count;
    }

    [[nodiscard]] std::string Text() const
    {
        if (count <= LIMIT)
        {
            return listed;
        }
        return listed +
               fmt::format("qstd: {} not shown\n", Counted(count - LIMIT, "more difference", "more differences"));
    }

    [[nodiscard]] bool IsEmpty() const
    {
        return count == 0;
    }

private:
    static constexpr size_t LIMIT = 20;

    std::string listed;
    size_t count = 0;
};

/** No instrument before the calls and none after them. */
class NoInstrument
{
public:
    NoInstrument()
    {
        ConnectAnswers(std::nullopt);
    }
    NoInstrument(const NoInstrument&) = delete;
    NoInstrument& operator=(const NoInstrument&) = delete;
    ~NoInstrument()
    {
        ConnectAnswers(std::nullopt);
    }
};

class Replay
{
public:
    explicit Replay(const ReplayOptions& given)
        : options(given), callsName(DisplayName(given.calls)), recordingName(DisplayName(given.expect)),
          compares(!given.expect.empty())
    {
    }

    ReplayResult Run()
    {
        if (compares && options.calls == "-" && options.expect == "-")
        {
            return {EXIT_WRONG_USE, "qstd: replay: standard input can be read only once\n"};
        }
        if (!Open(calls, options.calls, callsName) || (compares && !Open(recording, options.expect, recordingName)))
        {
            return {EXIT_UNREADABLE, messages.Text()};
        }
        CheckCalls();
        if (compares)
        {
            CheckRecording();
        }
        if (messages.HasErrors())
        {
            return {EXIT_UNREADABLE, messages.Text()};
        }
        const std::string problem = output.Open(options.output);
        if (!problem.empty())
        {
            return {EXIT_WRONG_USE, fmt::format("qstd: {}\n", problem)};
        }
        calls.Rewind();
        recording.Rewind();
        return MakeCalls();
    }

private:
    bool Open(LineSource& source, const std::string& path, const std::string& name)
    {
        const std::string problem = source.Open(path);
        if (!problem.empty())
        {
            messages.AddError(name, 0, problem);
        }
        return problem.empty();
    }

    void ShowProgress(uint64_t passed)
    {
        progress.Show(passed + calls.Position() + recording.Position(), 2 * (calls.Size() + recording.Size()));
    }

    void CheckEnd(const LineSource& source, const std::string& name)
    {
        if (!source.Problem().empty())
        {
            messages.AddError(name, source.ProblemLine(), source.Problem());
        }
    }

    void CheckCalls()
    {
        bool hasCalls = false;
        while (const std::optional<std::string_view> line = NextValue(calls))
        {
            hasCalls = true;
            const std::string problem = ParseCall(*line).problem;
            if (!problem.empty())
            {
                messages.AddError(callsName, calls.LineNumber(), problem);
            }
            if (line->find('\0') != std::string_view::npos)
            {
                return; // no text: every further line would say the same
            }
            ShowProgress(0);
        }
        CheckEnd(calls, callsName);
        if (!hasCalls && !messages.HasErrors())
        {
            messages.AddWarning(callsName, 0, "no calls; each line is one, as a JSON object");
        }
    }

    void CheckRecording()
    {
        while (const std::optional<std::string_view> line = NextValue(recording))
        {
            const ParsedLine parsed = ParseJsonLine(*line);
            if (!parsed.problem.empty())
            {
                messages.AddError(recordingName, recording.LineNumber(), parsed.problem);
            }
            ShowProgress(0);
        }
        CheckEnd(recording, recordingName);
    }

    ReplayResult MakeCalls()
    {
        const NoInstrument noInstrument;
        while (const std::optional<std::string_view> line = NextValue(calls))
        {
            const ReplayCall call = ParseCall(*line);
            if (!call.problem.empty())
            {
                messages.AddError(callsName, calls.LineNumber(), "changed while it was read: " + call.problem);
                return {EXIT_UNREADABLE, messages.Text()};
            }
            TakeResult(MakeCall(call));
            if (output.HasFailed())
            {
                break;
            }
            ShowProgress(calls.Size() + recording.Size());
        }
        CheckEnd(calls, callsName);
        return Finish();
    }

    void TakeResult(const Json& result)
    {
        ++results;
        if (!compares)
        {
            output.Write(result.dump() + "\n");
            return;
        }
        const std::optional<std::string_view> line = NextValue(recording);
        if (!line)
        {
            ++unrecorded;
            return;
        }
        const std::string call = result.at("call").get<std::string>();
        const auto differences = Compare(ParseJsonLine(*line).value, result, options.unitsInLastPlace);
        for (const Difference& difference : differences)
        {
            list.Add(fmt::format("{}:{}: {} ({}:{}: {})", recordingName, recording.LineNumber(), Describe(difference),
                                 callsName, calls.LineNumber(), call));
        }
        different += differences.empty() ? 0U : 1U;
    }

    /** What one of the two has beyond the end of the other. */
    void CompareLengths()
    {
        size_t unmatched = 0;
        while (NextValue(recording))
        {
            ++unmatched;
        }
        if (unmatched > 0)
        {
            list.Add(fmt::format("{}: {} beyond the end of {}", recordingName, Counted(unmatched, "result", "results"),
                                 callsName));
        }
        if (unrecorded > 0)
        {
            list.Add(fmt::format("{}: {} beyond the end of {}", callsName, Counted(unrecorded, "call", "calls"),
                                 recordingName));
        }
    }

    ReplayResult Finish()
    {
        if (compares)
        {
            CompareLengths();
            CheckEnd(recording, recordingName);
            output.Write(fmt::format("{} compared with {}: {}\n", Counted(results - unrecorded, "result", "results"),
                                     recordingName, Verdict()));
        }
        if (messages.HasErrors())
        {
            return {EXIT_UNREADABLE, messages.Text()};
        }
        const std::string problem = output.Commit();
        if (!problem.empty())
        {
            return {EXIT_WRONG_USE, fmt::format("qstd: {}\n", problem)};
        }
        return {list.IsEmpty() ? EXIT_ALL_DONE : EXIT_NOT_COMPUTED, messages.Text() + list.Text()};
    }

    [[nodiscard]] std::string Verdict() const
    {
        if (list.IsEmpty())
        {
            return "all equal";
        }
        return different == 0 ? "equal as far as both go" : Counted(different, "differs", "differ");
    }

    const ReplayOptions& options;
    std::string callsName;
    std::string recordingName;
    bool compares;
    LineSource calls;
    LineSource recording;
    Progress progress;
    Messages messages;
    OutputStream output;
    DifferenceList list;
    size_t results = 0;
    size_t different = 0;  /**< results that are not as recorded */
    size_t unrecorded = 0; /**< results beyond the end of the recording */
};

} // namespace

ReplayResult RunReplay(const ReplayOptions& options)
{
    Replay replay(options);
    return replay.Run();
}

} // namespace qstd
