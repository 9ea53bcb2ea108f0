/**
 * @file redirection.h
 * Pipes, and standard streams led elsewhere for the length of a test.
 */
#ifndef QSTDLIB_TESTS_TOOLS_REDIRECTION_H
#define QSTDLIB_TESTS_TOOLS_REDIRECTION_H

#include <array>
#include <string>

#include <sys/resource.h>
#include <unistd.h>

/** Makes one descriptor a second name of another, and what it was again at the end. */
class Redirection
{
public:
    Redirection(int streamDescriptor, int target) : descriptor(streamDescriptor), before(dup(streamDescriptor))
    {
        dup2(target, descriptor);
    }

    ~Redirection()
    {
        dup2(before, descriptor);
        close(before);
    }

    Redirection(const Redirection&) = delete;
    Redirection& operator=(const Redirection&) = delete;
    Redirection(Redirection&&) = delete;
    Redirection& operator=(Redirection&&) = delete;

private:
    int descriptor;
    int before;
};

class Pipe
{
public:
    Pipe()
    {
        if (pipe(ends.data()) != 0)
        {
            ends = {-1, -1};
        }
    }

    /** With content, which must fit into the pipe, and no writer left. */
    explicit Pipe(const std::string& content) : Pipe()
    {
        if (write(ends[1], content.data(), content.size()) == static_cast<ssize_t>(content.size()))
        {
            CloseWriter();
        }
    }

    ~Pipe()
    {
        CloseReader();
        CloseWriter();
    }

    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;
    Pipe(Pipe&&) = delete;
    Pipe& operator=(Pipe&&) = delete;

    [[nodiscard]] int Reader() const
    {
        return ends[0];
    }

    [[nodiscard]] int Writer() const
    {
        return ends[1];
    }

    void CloseReader()
    {
        Close(ends[0]);
    }

    void CloseWriter()
    {
        Close(ends[1]);
    }

private:
    static void Close(int& end)
    {
        if (end >= 0)
        {
            close(end);
            end = -1;
        }
    }

    std::array<int, 2> ends = {-1, -1};
};

/** Files may not become larger while it lives: the nearest thing to a full disk. SIGXFSZ must be ignored. */
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        getrlimit(RLIMIT_FSIZE, &before);
        rlimit limit = before;
        limit.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &limit);
    }

    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &before);
    }

    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;
    FileSizeLimit(FileSizeLimit&&) = delete;
    FileSizeLimit& operator=(FileSizeLimit&&) = delete;

private:
    rlimit before = {};
};

#endif
