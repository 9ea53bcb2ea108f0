/**
 * @file manual_main.cpp
 * Writes what is made from the command line's own description: manual pages, completion, examples.
 */
#include "command_line/command_line.h"
#include "command_line/completion.h"
#include "command_line/manual.h"
#include "output/files.h"

#include <cstdio>
#include <exception>
#include <string>
#include <vector>

namespace {

const char* const USAGE = "Usage: qstd_manual --man FOLDER | --completion FILE | --examples\n";

/** All pages, or none. @return empty, or what went wrong */
std::string WritePages(const qstd::CommandLine& commandLine, const std::string& folder)
{
    std::vector<qstd::OutputFile> files = {{folder + "/qstd.1", qstd::ProgramPage(commandLine)}};
    for (const auto& verb : commandLine.Verbs())
    {
        files.push_back({folder + "/qstd-" + verb->text.name + ".1", qstd::VerbPage(commandLine, *verb)});
    }
    return qstd::WriteWhole(files);
}

int Run(const std::vector<std::string>& arguments)
{
    const qstd::CommandLine commandLine;
    std::string problem;
    if (arguments.size() == 2 && arguments[0] == "--man")
    {
        problem = WritePages(commandLine, arguments[1]);
    }
    else if (arguments.size() == 2 && arguments[0] == "--completion")
    {
        problem = qstd::WriteWhole({{arguments[1], qstd::CompletionScript(commandLine)}});
    }
    else if (arguments.size() == 1 && arguments[0] == "--examples")
    {
        std::fputs(qstd::ExamplesJson(commandLine).c_str(), stdout);
    }
    else
    {
        std::fputs(USAGE, stderr);
        return 2;
    }
    std::fputs(problem.empty() ? "" : ("qstd_manual: " + problem + "\n").c_str(), stderr);
    return problem.empty() ? 0 : 1;
}

} // namespace

int main(int count, char** arguments)
{
    try
    {
        return Run({arguments + 1, arguments + count});
    }
    catch (const std::exception& error)
    {
        std::fprintf(stderr, "qstd_manual: %s\n", error.what());
    }
    return 1;
}
