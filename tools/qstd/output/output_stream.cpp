#include "output/output_stream.h"

#include "output/descriptor.h"

#include <fmt/format.h>

#include <unistd.h>

namespace qstd {

namespace {

constexpr size_t BLOCK_SIZE = size_t{64} << 10U;

} // namespace

OutputStream::~OutputStream() = default;

std::string OutputStream::Open(const std::string& path)
{
    file.reset();
    buffer.clear();
    buffer.reserve(2 * BLOCK_SIZE);
    error = 0;
    displayPath = path;
    if (path == "-")
    {
        // What was printed by other means comes first.
        error = std::fflush(stdout) == 0 ? 0 : errno;
        return error == 0 ? "" : ProblemText();
    }
    const std::string target = LinkTarget(path);
    const std::string problem = TargetProblem(target);
    if (!problem.empty())
    {
        return fmt::format("{}: {}", path, problem);
    }
    file = std::make_unique<TemporaryFile>(target);
    error = file->Create();
    return error == 0 ? "" : ProblemText();
}

void OutputStream::Write(std::string_view text)
{
    if (HasFailed())
    {
        return;
    }
    buffer += text;
    if (buffer.size() >= BLOCK_SIZE)
    {
        Flush();
    }
}

bool OutputStream::HasFailed() const
{
    return error != 0;
}

std::string OutputStream::Complete()
{
    Flush();
    if (file && !HasFailed())
    {
        error = file->Complete();
    }
    return HasFailed() ? ProblemText() : "";
}

std::string OutputStream::Commit()
{
    Complete();
    if (file && !HasFailed())
    {
        error = file->Rename();
    }
    file.reset();
    return HasFailed() ? ProblemText() : "";
}

void OutputStream::Flush()
{
    if (!HasFailed() && !buffer.empty())
    {
        error = file ? file->Write(buffer) : WriteAll(STDOUT_FILENO, buffer);
    }
    buffer.clear();
}

std::string OutputStream::ProblemText() const
{
    if (displayPath == "-")
    {
        return "standard output cannot be written";
    }
    return fmt::format("{}: cannot be written: {}", displayPath, ErrorText(error));
}

} // namespace qstd
