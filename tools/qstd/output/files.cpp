#include "output/files.h"

#include "output/descriptor.h"
#include "output/interruption.h"
#include "output/output_stream.h"

#include <fmt/format.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <memory>

namespace qstd {

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
    std::vector<std::unique_ptr<OutputStream>> streams;
    for (const OutputFile& file : files)
    {
        OutputStream& stream = *streams.emplace_back(std::make_unique<OutputStream>());
        std::string problem = stream.Open(file.path);
        if (problem.empty())
        {
            stream.Write(file.content);
            problem = stream.Complete();
        }
        if (!problem.empty())
        {
            return problem;
        }
    }
    const SignalsHeld held; // not some of the files only
    for (const std::unique_ptr<OutputStream>& stream : streams)
    {
        std::string problem = stream->Commit();
        if (!problem.empty())
        {
            return problem;
        }
    }
    return "";
}

} // namespace qstd
