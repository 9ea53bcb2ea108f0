#include "command_line/command_line.h"
#include "command_line/figure_output.h"
#include "output/interruption.h"
#include "output/output_stream.h"
#include "text/outcome.h"

#include <fmt/format.h>

#include <cstdio>

#include <unistd.h>

namespace qstd {

namespace {

using Computation = std::function<void(Inputs&, Sink&)>;

int Fail(const std::string& text)
{
    std::fputs(fmt::format("qstd: {}\n", text).c_str(), stderr);
    return EXIT_WRONG_USE;
}

/** Input that was without errors has some when it is read again only where it has changed: nothing of it is kept. */
void RequireReadable(const Inputs& inputs)
{
    if (inputs.Problems().HasErrors())
    {
        throw Unreadable();
    }
}

/** What the first pass measured is looked at as a figure. @return empty, or what went wrong */
std::string Preview(const Computation& compute, Inputs& inputs, const OutputOptions& options, const std::string& verb,
                    FigureOutput& figures)
{
    // The results of this pass go into a file that never gets its name. As text that was not measured they are empty
    // lines, so that there is little of it.
    OutputStream nowhere;
    std::string problem = nowhere.Open(figures.AnyPath());
    if (!problem.empty())
    {
        return problem;
    }
    OutputOptions quiet = options;
    quiet.format = OutputFormat::TEXT;
    Sink sink(quiet, verb);
    sink.StartWriting(nowhere, &figures);
    compute(inputs, sink);
    RequireReadable(inputs);
    return figures.StartWriting();
}

/** All files are complete before the first gets its name. @return empty, or what went wrong */
std::string CommitAll(OutputStream& stream, FigureOutput& figures)
{
    std::string problem = figures.Complete();
    problem = problem.empty() ? stream.Complete() : problem;
    if (!problem.empty())
    {
        return problem;
    }
    const SignalsHeld held; // not some of the files only
    problem = figures.Commit();
    return problem.empty() ? stream.Commit() : problem;
}

/** The last pass: what the first one measured is written. */
int Write(const Computation& compute, Inputs& inputs, Sink& sink, FigureOutput& figures)
{
    OutputStream stream;
    std::string problem = stream.Open(sink.Options().output);
    if (!problem.empty())
    {
        return Fail(problem);
    }
    inputs.ShowProgress(sink.Options().output != "-" || isatty(STDOUT_FILENO) == 0);
    sink.StartWriting(stream, figures.IsWanted() ? &figures : nullptr);
    compute(inputs, sink);
    RequireReadable(inputs);
    if (figures.IsWanted())
    {
        figures.Tell(sink);
    }
    problem = CommitAll(stream, figures);
    if (!problem.empty())
    {
        return Fail(problem);
    }
    std::fputs(sink.Messages().c_str(), stderr);
    return sink.HasFailures() ? EXIT_NOT_COMPUTED : EXIT_ALL_DONE;
}

int Compute(const Computation& compute, Messages& messages, Inputs& inputs, Sink& sink, const std::string& verb)
{
    compute(inputs, sink);
    std::fputs(messages.Text().c_str(), stderr);
    if (messages.HasErrors())
    {
        return EXIT_UNREADABLE;
    }
    messages.BeginSecondReading();
    FigureOutput figures(sink.Options());
    if (figures.IsWanted())
    {
        const std::string problem = Preview(compute, inputs, sink.Options(), verb, figures);
        if (!problem.empty())
        {
            return Fail(problem);
        }
    }
    return Write(compute, inputs, sink, figures);
}

} // namespace

void SetComputation(Verb& verb, Computation compute)
{
    verb.run = [&verb, compute = std::move(compute)]() {
        const CommonOptions& common = *verb.common;
        const std::string pathProblem = PathProblem(verb);
        if (!pathProblem.empty())
        {
            return Fail(fmt::format("{}: {}", verb.text.name, pathProblem));
        }
        Messages messages;
        Inputs inputs(common.points, common.output.angle, messages);
        Sink sink(common.output, verb.text.name);
        try
        {
            return Compute(compute, messages, inputs, sink, verb.text.name);
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
