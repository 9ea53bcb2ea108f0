#include "input/line_source.h"

#include "output/descriptor.h"
#include "output/interruption.h"

#include <fmt/format.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace qstd {

namespace {

constexpr size_t BLOCK_SIZE = size_t{64} << 10U;

std::string Unreadable(int error)
{
    return fmt::format("cannot be read: {}", ErrorText(error));
}

std::string TemporaryFolder()
{
    const char* const folder = std::getenv("TMPDIR");
    return folder != nullptr && *folder != '\0' ? folder : "/tmp";
}

/** A file that is gone when it is closed. @return its descriptor, or -1 with the reason in errno */
int CreateNameless(const std::string& folder)
{
    std::string name = folder + "/qstd-XXXXXX";
    const SignalsHeld held; // between making the file and removing its name
    const int descriptor = mkstemp(name.data());
    if (descriptor >= 0)
    {
        unlink(name.c_str());
    }
    return descriptor;
}

/**
 * Copies all there is, or so much that a line is too long: more would not be read, and an endless device would fill the
 * disk.
 *
 * @return empty, or why it could not be done; `size` are the bytes copied
 */
std::string Copy(int from, int to, const std::string& folder, uint64_t& size)
{
    std::vector<char> block(BLOCK_SIZE);
    size_t withoutLineEnd = 0;
    while (withoutLineEnd <= LONGEST_LINE)
    {
        const ssize_t count = ReadSome(from, block.data(), block.size());
        if (count <= 0)
        {
            return count < 0 ? Unreadable(errno) : "";
        }
        const std::string_view text(block.data(), static_cast<size_t>(count));
        const int error = WriteAll(to, text);
        if (error != 0)
        {
            return fmt::format("cannot be read: no copy of it in {}: {}", folder, ErrorText(error));
        }
        size += text.size();
        withoutLineEnd = text.find_first_of("\r\n") == std::string_view::npos ? withoutLineEnd + text.size() : 0;
    }
    return "";
}

} // namespace

LineSource::~LineSource()
{
    Close();
}

std::string LineSource::Open(const std::string& path)
{
    Close();
    descriptor = path == "-" ? STDIN_FILENO : open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
    {
        return Unreadable(errno);
    }
    std::string why = OpenDescriptor();
    if (!why.empty())
    {
        Close();
        return why;
    }
    buffer.resize(BLOCK_SIZE);
    Rewind();
    return problem;
}

/** Finds out how the descriptor can be read several times over. */
std::string LineSource::OpenDescriptor()
{
    struct stat status = {};
    if (fstat(descriptor, &status) != 0)
    {
        return Unreadable(errno);
    }
    if (S_ISDIR(status.st_mode))
    {
        return Unreadable(EISDIR);
    }
    if (!S_ISREG(status.st_mode))
    {
        return UseCopy();
    }
    // Somebody may have read the front of standard input; that is not ours.
    start = lseek(descriptor, 0, SEEK_CUR);
    if (start < 0)
    {
        return Unreadable(errno);
    }
    size = static_cast<uint64_t>(std::max<off_t>(status.st_size - start, 0));
    return "";
}

std::string LineSource::UseCopy()
{
    const std::string folder = TemporaryFolder();
    const int copy = CreateNameless(folder);
    if (copy < 0)
    {
        return fmt::format("cannot be read: no copy of it in {}: {}", folder, ErrorText(errno));
    }
    start = 0;
    size = 0;
    std::string why = Copy(descriptor, copy, folder, size);
    Close();
    descriptor = copy;
    return why;
}

std::optional<std::string_view> LineSource::Next()
{
    if (wasCr && (begin < end || Fill()) && buffer[begin] == '\n')
    {
        MoveTo(begin + 1);
    }
    wasCr = false;
    const size_t lineEnd = FindLineEnd();
    if (lineEnd - begin > LONGEST_LINE)
    {
        Fail(line + 1, "a line longer than 1 MiB; is this a text file?");
    }
    if (!problem.empty() || begin == end)
    {
        return std::nullopt;
    }
    const std::string_view text(buffer.data() + begin, lineEnd - begin);
    const bool isWhole = lineEnd < end;
    wasCr = isWhole && buffer[lineEnd] == '\r';
    MoveTo(isWhole ? lineEnd + 1 : end);
    ++line;
    return text;
}

void LineSource::Rewind()
{
    begin = 0;
    end = 0;
    nextLf = 0;
    nextCr = 0;
    wasCr = false;
    position = 0;
    line = 0;
    problem.clear();
    problemLine = 0;
    if (descriptor >= 0 && lseek(descriptor, start, SEEK_SET) < 0)
    {
        Fail(0, Unreadable(errno));
    }
}

const std::string& LineSource::Problem() const
{
    return problem;
}

size_t LineSource::ProblemLine() const
{
    return problemLine;
}

size_t LineSource::LineNumber() const
{
    return line;
}

uint64_t LineSource::Position() const
{
    return position;
}

uint64_t LineSource::Size() const
{
    return size;
}

/** Where the line at the front ends: at an LF or CR, at the end of the input, or anywhere once it is too long. */
size_t LineSource::FindLineEnd()
{
    bool mayBeMore = true;
    while (mayBeMore && std::min(nextLf, nextCr) == end && end - begin <= LONGEST_LINE)
    {
        mayBeMore = Fill();
    }
    return std::min(nextLf, nextCr);
}

/** Takes what lies before a place as done with. */
void LineSource::MoveTo(size_t place)
{
    position += place - begin;
    begin = place;
    nextLf = nextLf < begin ? Find('\n', begin) : nextLf;
    nextCr = nextCr < begin ? Find('\r', begin) : nextCr;
}

/** Reads more, where no end of a line is in the buffer; so all of it stays. False at the end, or if reading failed. */
bool LineSource::Fill()
{
    if (descriptor < 0 || !problem.empty())
    {
        return false;
    }
    const size_t kept = end - begin;
    if (kept == buffer.size())
    {
        buffer.resize(2 * buffer.size());
    }
    std::memmove(buffer.data(), buffer.data() + begin, kept);
    begin = 0;
    end = kept;
    const ssize_t count = ReadSome(descriptor, buffer.data() + kept, buffer.size() - kept);
    if (count < 0)
    {
        Fail(0, Unreadable(errno));
    }
    end += static_cast<size_t>(std::max<ssize_t>(count, 0));
    nextLf = Find('\n', kept);
    nextCr = Find('\r', kept);
    return count > 0;
}

size_t LineSource::Find(char letter, size_t from) const
{
    const size_t found = std::string_view(buffer.data(), end).find(letter, from);
    return found == std::string_view::npos ? end : found;
}

void LineSource::Fail(size_t atLine, std::string why)
{
    problem = std::move(why);
    problemLine = atLine;
}

void LineSource::Close()
{
    if (descriptor >= 0 && descriptor != STDIN_FILENO)
    {
        close(descriptor);
    }
    descriptor = -1;
}

} // namespace qstd
