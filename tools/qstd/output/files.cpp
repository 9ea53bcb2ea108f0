#include "output/files.h"

#include "output/descriptor.h"
#include "output/interruption.h"
#include "output/temporary_file.h"

#include <fmt/format.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <memory>

namespace qstd {

namespace {

/** Writes a file under its temporary name. @return 0, or the error number */
int WriteComplete(TemporaryFile& file, const std::string& content)
{
    int error = file.Create();
    if (error == 0)
    {
        error = file.Write(content);
    }
    return error == 0 ? file.Complete() : error;
}

} // namespace

FileContent ReadWhole(const std::string& path)
{
    FileContent file;
    const bool isStandardInput = path == "-";
    std::FILE* const stream = isStandardInput ? stdin : std::fopen(path.c_str(), "rb");
    if (stream == nullptr)
    {
        file.problem = fmt::format("cannot be read: {}", ErrorText(errno));
        return file;
    }
    std::array<char, 65536> block;
    size_t count = 0;
    while (file.content.size() <= LARGEST_INPUT && (count = std::fread(block.data(), 1, block.size(), stream)) > 0)
    {
        file.content.append(block.data(), count);
    }
    if (std::ferror(stream) != 0)
    {
        file.problem = fmt::format("cannot be read: {}", ErrorText(errno));
    }
    else if (file.content.size() > LARGEST_INPUT)
    {
        file.problem = "larger than 64 MiB; split it";
    }
    if (!isStandardInput)
    {
        std::fclose(stream);
    }
    return file;
}

std::string DisplayName(const std::string& path)
{
    return path == "-" ? "<standard input>" : path;
}

std::string WriteWhole(const std::vector<OutputFile>& files)
{
    std::vector<std::unique_ptr<TemporaryFile>> temporaries;
    for (const OutputFile& file : files)
    {
        const std::string target = LinkTarget(file.path);
        const std::string problem = TargetProblem(target);
        if (!problem.empty())
        {
            return fmt::format("{}: {}", file.path, problem);
        }
        temporaries.push_back(std::make_unique<TemporaryFile>(target));
        const int error = WriteComplete(*temporaries.back(), file.content);
        if (error != 0)
        {
            return fmt::format("{}: cannot be written: {}", file.path, ErrorText(error));
        }
    }
    const SignalsHeld held; // not some of the files only
    for (size_t i = 0; i < files.size(); ++i)
    {
        const int error = temporaries[i]->Rename();
        if (error != 0)
        {
            return fmt::format("{}: cannot be written: {}", files[i].path, ErrorText(error));
        }
    }
    return "";
}

} // namespace qstd
