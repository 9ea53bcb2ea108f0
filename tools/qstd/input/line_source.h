/**
 * @file line_source.h
 * Lines of a file, of standard input or of a pipe, in constant memory and readable several times over.
 */
#ifndef QSTD_LINE_SOURCE_H
#define QSTD_LINE_SOURCE_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

namespace qstd {

/** A longer line is refused: no table or call has one, and memory stays bounded. */
constexpr size_t LONGEST_LINE = size_t{1} << 20U;

class LineSource
{
public:
    LineSource() = default;
    LineSource(const LineSource&) = delete;
    LineSource& operator=(const LineSource&) = delete;
    ~LineSource();

    /**
     * Opens a file, or standard input for "-".
     *
     * What cannot be read twice (a pipe, standard input) is first copied to a temporary file without a name.
     *
     * @return empty, or why it cannot be read
     */
    std::string Open(const std::string& path);

    /** The next line without its end (LF, CR LF or CR), valid until the next call; nothing at the end. */
    std::optional<std::string_view> Next();

    /** Back to the first line. */
    void Rewind();

    /** Why reading ended early (an error of the device, a line too long), or empty. */
    [[nodiscard]] const std::string& Problem() const;

    /** The line that the problem is about, 0 when it is the file as a whole. */
    [[nodiscard]] size_t ProblemLine() const;

    /** Number of the line last handed out, from 1. */
    [[nodiscard]] size_t LineNumber() const;

    /** Bytes read since the start, and in all; for telling progress. */
    [[nodiscard]] uint64_t Position() const;
    [[nodiscard]] uint64_t Size() const;

private:
    std::string OpenDescriptor();
    std::string UseCopy();
    [[nodiscard]] size_t FindLineEnd();
    void MoveTo(size_t place);
    bool Fill();
    [[nodiscard]] size_t Find(char letter, size_t from) const;
    void Fail(size_t atLine, std::string why);
    void Close();

    int descriptor = -1;
    off_t start = 0;
    uint64_t size = 0;

    // What lies in buffer[begin, end) is read but not handed out; nextLf and nextCr are the first such letters, or end.
    std::vector<char> buffer;
    size_t begin = 0;
    size_t end = 0;
    size_t nextLf = 0;
    size_t nextCr = 0;
    bool wasCr = false; /**< an LF that comes next belongs to the line before */
    uint64_t position = 0;
    size_t line = 0;
    std::string problem;
    size_t problemLine = 0;
};

} // namespace qstd

#endif
