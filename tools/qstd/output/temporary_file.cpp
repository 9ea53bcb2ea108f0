#include "output/temporary_file.h"

#include "output/descriptor.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <utility>

namespace qstd {

namespace {

/** The permissions that a file made in the ordinary way would have. */
mode_t OrdinaryPermissions()
{
    const mode_t mask = umask(0);
    umask(mask);
    return 0666U & ~mask;
}

} // namespace

std::string LinkTarget(const std::string& path)
{
    std::error_code error;
    const std::filesystem::path target = std::filesystem::canonical(path, error);
    return error ? path : target.string();
}

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

TemporaryFile::TemporaryFile(std::string targetPath) : target(std::move(targetPath)), name(target + ".XXXXXX")
{
}

TemporaryFile::~TemporaryFile()
{
    if (descriptor >= 0)
    {
        close(descriptor);
    }
    if (exists)
    {
        std::remove(name.c_str());
    }
}

int TemporaryFile::Create()
{
    const SignalsHeld held;
    descriptor = mkstemp(name.data());
    if (descriptor < 0)
    {
        return errno;
    }
    exists = true;
    interruption.Watch(name.c_str());
    return 0;
}

int TemporaryFile::Write(std::string_view text) const
{
    return WriteAll(descriptor, text);
}

int TemporaryFile::Complete()
{
    if (descriptor < 0)
    {
        return 0;
    }
    const bool isComplete = fchmod(descriptor, OrdinaryPermissions()) == 0 && fsync(descriptor) == 0;
    const int error = isComplete ? 0 : errno;
    const int closing = close(std::exchange(descriptor, -1)) == 0 ? 0 : errno;
    return error != 0 ? error : closing;
}

int TemporaryFile::Rename()
{
    const SignalsHeld held;
    if (std::rename(name.c_str(), target.c_str()) != 0)
    {
        return errno;
    }
    exists = false;
    interruption.Release();
    return 0;
}

} // namespace qstd
