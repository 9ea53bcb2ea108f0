#include "command_line/command_line.h"
#include "output/files.h"
#include "output/output_stream.h"
#include "text/outcome.h"

#include <fmt/format.h>

#include <cstdio>

namespace qstd {

namespace {

using Computation = std::function<void(Inputs&, Sink&)>;

int Fail(const std::string& text)
{
    std::fputs(fmt::format("qstd: {}\n", text).c_str(), stderr);
    return EXIT_WRONG_USE;
}

/** The second pass: what the first one measured is written. */
int Write(const Computation& compute, Inputs& inputs, Sink& sink)
{
    OutputStream stream;
    std::string problem = stream.Open(sink.Options().output);
    if (!problem.empty())
    {
        return Fail(problem);
    }
    sink.StartWriting(stream, nullptr);
    compute(inputs, sink);
    problem = stream.Commit();
    if (!problem.empty())
    {
        return Fail(problem);
    }
    std::fputs(sink.Messages().c_str(), stderr);
    return sink.HasFailures() ? EXIT_NOT_COMPUTED : EXIT_ALL_DONE;
}

int Compute(const Computation& compute, Messages& messages, Inputs& inputs, Sink& sink)
{
    compute(inputs, sink);
    std::fputs(messages.Text().c_str(), stderr);
    if (messages.HasErrors())
    {
        return EXIT_UNREADABLE;
    }
    messages.Close();
    return Write(compute, inputs, sink);
}

} // namespace

void SetComputation(Verb& verb, Computation compute)
{
    verb.run = [&verb, compute = std::move(compute)]() {
        const CommonOptions& common = *verb.common;
        Messages messages;
        Inputs inputs(common.points, common.output.angle, messages);
        Sink sink(common.output, verb.text.name);
        try
        {
            return Compute(compute, messages, inputs, sink);
        }
        catch (const Unreadable&)
        {
            std::fputs(messages.Text().c_str(), stderr);
            return int{EXIT_UNREADABLE};
        }
        catch (const WrongUse& problem)
        {
            std::fputs(messages.Text().c_str(), stderr);
            return Fail(fmt::format("{}: {}", verb.text.name, problem.what()));
        }
    };
}

} // namespace qstd
