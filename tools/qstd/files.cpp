#include "files.h"

#include <fmt/format.h>

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <system_error>

namespace qstd {

namespace {

std::string ErrorText(int error)
{
    return std::generic_category().message(error);
}

/** Where a path leads: a symbolic link is written through, not replaced. */
std::string LinkTarget(const std::string& path)
{
    std::error_code error;
    const std::filesystem::path target = std::filesystem::canonical(path, error);
    return error ? path : target.string();
}

/** Files that are no regular files (pipes, devices) cannot be renamed to; directories cannot be written at all. */
std::string TargetProblem(const std::string& path)
{
    std::error_code error;
    const auto type = std::filesystem::status(path, error).type();
    if (type == std::filesystem::file_type::directory)
    {
        return "is a directory; name a file";
    }
    if (type != std::filesystem::file_type::not_found && type != std::filesystem::file_type::regular)
    {
        return error ? error.message() : "not a regular file; name one";
    }
    return "";
}

bool WriteAll(int descriptor, const std::string& content)
{
    size_t written = 0;
    while (written < content.size())
    {
        const ssize_t step = write(descriptor, content.data() + written, content.size() - written);
        if (step < 0 && errno == EINTR)
        {
            continue;
        }
        if (step <= 0)
        {
            return false;
        }
        written += static_cast<size_t>(step);
    }
    return true;
}

/** The permissions that a file made in the ordinary way would have. */
mode_t OrdinaryPermissions()
{
    const mode_t mask = umask(0);
    umask(mask);
    return 0666U & ~mask;
}

/** A file under a name of its own until it is renamed; removed when that never happens. */
class TemporaryFile
{
public:
    explicit TemporaryFile(std::string targetPath) : target(std::move(targetPath)), name(target + ".XXXXXX")
    {
    }

    ~TemporaryFile()
    {
        if (exists)
        {
            std::remove(name.c_str());
        }
    }

    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    TemporaryFile(TemporaryFile&&) = delete;
    TemporaryFile& operator=(TemporaryFile&&) = delete;

    /** 0, or the error number. */
    int Write(const std::string& content)
    {
        const int descriptor = mkstemp(name.data());
        if (descriptor < 0)
        {
            return errno;
        }
        exists = true;
        bool isGood =
            WriteAll(descriptor, content) && fchmod(descriptor, OrdinaryPermissions()) == 0 && fsync(descriptor) == 0;
        const int error = errno;
        isGood = close(descriptor) == 0 && isGood;
        return isGood ? 0 : (error != 0 ? error : EIO);
    }

    int Rename()
    {
        if (std::rename(name.c_str(), target.c_str()) != 0)
        {
            return errno;
        }
        exists = false;
        return 0;
    }

private:
    std::string target;
    std::string name;
    bool exists = false;
};

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
        const int error = temporaries.back()->Write(file.content);
        if (error != 0)
        {
            return fmt::format("{}: cannot be written: {}", file.path, ErrorText(error));
        }
    }
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
