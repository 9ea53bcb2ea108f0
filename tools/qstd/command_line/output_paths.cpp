#include "command_line/command_line.h"
#include "command_line/usage.h"
#include "text/text.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <filesystem>

namespace qstd {

namespace {

struct NamedPath
{
    std::string option;
    std::string path;
};

bool IsOutput(const std::string& option)
{
    return option == "--output" || option == "--svg" || option == "--dxf" || option == "--geojson";
}

/** What the command line names as a file, to be read or to be written. */
std::vector<NamedPath> FilesOf(const CLI::App& app, bool isWritten)
{
    std::vector<NamedPath> files;
    for (const CLI::Option* option : app.get_options())
    {
        const Parameter parameter = ParameterOf(*option);
        const std::string& name = parameter.names.back();
        if (parameter.type != "FILE" || IsOutput(name) != isWritten)
        {
            continue;
        }
        for (const std::string& path : option->results())
        {
            files.push_back({name, path});
        }
    }
    return files;
}

/** A path without links and dots, as far as it exists; empty where that cannot be found out. */
std::filesystem::path Canonical(const std::string& path)
{
    std::error_code error;
    const std::filesystem::path absolute = std::filesystem::absolute(path, error);
    const std::filesystem::path canonical = std::filesystem::weakly_canonical(absolute, error);
    return error ? std::filesystem::path() : canonical;
}

/** True for two paths to one file, which need not exist yet. */
bool IsSameFile(const std::string& one, const std::string& other)
{
    std::error_code error;
    if (std::filesystem::equivalent(one, other, error))
    {
        return true;
    }
    const std::filesystem::path canonical = Canonical(one);
    return !canonical.empty() && canonical == Canonical(other);
}

} // namespace

std::string PathProblem(const Verb& verb)
{
    std::vector<NamedPath> taken = FilesOf(*verb.app, false);
    const std::vector<NamedPath> outputs = FilesOf(*verb.app, true);
    for (const std::vector<NamedPath>& files : {taken, outputs})
    {
        for (const NamedPath& file : files)
        {
            if (file.path.empty())
            {
                return fmt::format("{}: the name of the file is empty", file.option);
            }
        }
    }
    for (const NamedPath& output : outputs)
    {
        if (output.path == "-")
        {
            if (output.option != "--output")
            {
                return fmt::format("a figure goes to a file; give {} a name", output.option);
            }
            continue;
        }
        for (const NamedPath& other : taken)
        {
            if (other.path != "-" && IsSameFile(output.path, other.path))
            {
                return fmt::format("{} {} is the file of {}, too; give it another name", output.option,
                                   Quoted(output.path), other.option);
            }
        }
        taken.push_back(output);
    }
    return "";
}

} // namespace qstd
