#include "output/output_stream.h"

#include "output/redirection.h"
#include "output/test_folder.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using qstd::OutputStream;
using testing::ExitedWithCode;
using testing::KilledBySignal;

namespace {

class OutputFiles : public TestFolder
{
};

/** Opens a path, writes, and ends by a signal before the output is complete. */
void WriteAndRaise(const std::string& path, int signal)
{
    OutputStream output;
    output.Open(path);
    output.Write(std::string(100000, 'x'));
    std::raise(signal);
}

/** What Commit says of standard output after `text` was written to a descriptor that takes its place. */
std::string CommitTo(int descriptor, const std::string& text)
{
    const Redirection redirection(STDOUT_FILENO, descriptor);
    OutputStream output;
    std::string problem = output.Open("-");
    output.Write(text);
    return problem + output.Commit();
}

} // namespace

TEST_F(OutputFiles, AppearWhenTheyAreCommitted)
{
    OutputStream output;
    ASSERT_EQ(output.Open(Made("out", "before")), "");
    std::string expected;
    for (int i = 0; i < 100000; ++i)
    {
        const std::string line = std::to_string(i) + "\n";
        expected += line;
        output.Write(line);
    }
    EXPECT_EQ(ContentOf("out"), "before");
    EXPECT_EQ(output.Commit(), "");
    EXPECT_EQ(ContentOf("out"), expected);
    EXPECT_EQ(Count(), 1U);
}

TEST_F(OutputFiles, HaveNoNameWhileTheyAreOnlyComplete)
{
    {
        OutputStream output;
        ASSERT_EQ(output.Open(Made("out", "before")), "");
        output.Write("after");
        EXPECT_EQ(output.Complete(), "");
        EXPECT_EQ(ContentOf("out"), "before");
        EXPECT_EQ(Count(), 2U);
    }
    EXPECT_EQ(Count(), 1U);
    OutputStream output;
    ASSERT_EQ(output.Open(Path("out")), "");
    output.Write("after");
    EXPECT_EQ(output.Complete() + output.Commit(), "");
    EXPECT_EQ(ContentOf("out"), "after");
}

TEST_F(OutputFiles, AreEmptyWhenNothingWasWritten)
{
    OutputStream output;
    ASSERT_EQ(output.Open(Made("out", "before")), "");
    EXPECT_EQ(output.Commit(), "");
    EXPECT_EQ(ContentOf("out"), "");
    EXPECT_TRUE(std::filesystem::exists(Path("out")));
}

TEST_F(OutputFiles, StayAsTheyWereWithoutCommit)
{
    {
        OutputStream output;
        ASSERT_EQ(output.Open(Made("out", "before")), "");
        output.Write(std::string(100000, 'x'));
        EXPECT_EQ(Count(), 2U);
    }
    EXPECT_EQ(ContentOf("out"), "before");
    EXPECT_EQ(Count(), 1U);
}

TEST_F(OutputFiles, AreWrittenThroughALinkWithTheUsualPermissions)
{
    std::filesystem::create_symlink(Made("real", "before"), Path("link"));
    OutputStream output;
    ASSERT_EQ(output.Open(Path("link")), "");
    output.Write("after");
    EXPECT_EQ(output.Commit(), "");
    EXPECT_TRUE(std::filesystem::is_symlink(Path("link")));
    EXPECT_EQ(ContentOf("real"), "after");
    EXPECT_EQ(std::filesystem::status(Path("real")).permissions(),
              std::filesystem::status(Made("usual", "")).permissions());
}

TEST_F(OutputFiles, ThatCannotBeOpenedSayWhy)
{
    OutputStream output;
    EXPECT_EQ(output.Open("no/such"), "no/such: cannot be written: No such file or directory");
    EXPECT_EQ(output.Open(folder.string()), folder.string() + ": is a directory; name a file");
    EXPECT_EQ(output.Open("/dev/null"), "/dev/null: not a regular file; name one");
}

TEST_F(OutputFiles, ThatDoNotFitAreToldByCommitAndLeaveNothing)
{
    std::signal(SIGXFSZ, SIG_IGN);
    OutputStream output;
    ASSERT_EQ(output.Open(Path("out")), "");
    {
        const FileSizeLimit limit(1000);
        output.Write(std::string(100000, 'x'));
    }
    EXPECT_TRUE(output.HasFailed());
    output.Write(std::string(100000, 'x')); // would succeed now, but a piece is missing
    EXPECT_EQ(output.Commit(), Path("out") + ": cannot be written: File too large");
    EXPECT_EQ(Count(), 0U);
    std::signal(SIGXFSZ, SIG_DFL);
}

TEST_F(OutputFiles, LeaveNothingBehindWhenASignalEndsTheProgram)
{
    const std::string path = Made("out", "before");
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGPIPE})
    {
        EXPECT_EXIT(WriteAndRaise(path, signal), KilledBySignal(signal), "");
        EXPECT_EQ(ContentOf("out"), "before");
        EXPECT_EQ(Count(), 1U);
    }
}

TEST_F(OutputFiles, AreAllRemovedByASignalButThoseThatAreComplete)
{
    const auto writeSeveral = [this]() {
        OutputStream complete;
        complete.Open(Path("complete"));
        OutputStream first;
        first.Open(Path("first"));
        {
            OutputStream givenUp;
            givenUp.Open(Path("given-up"));
            OutputStream second;
            second.Open(Path("second"));
            complete.Commit();
        }
        OutputStream last;
        last.Open(Path("last"));
        std::raise(SIGINT);
    };
    EXPECT_EXIT(writeSeveral(), KilledBySignal(SIGINT), "");
    EXPECT_EQ(Count(), 1U);
    EXPECT_TRUE(std::filesystem::exists(Path("complete")));
}

TEST_F(OutputFiles, AreWrittenToTheEndWhenTheSignalIsIgnored)
{
    const auto writeOn = [this]() {
        std::signal(SIGHUP, SIG_IGN); // as nohup does
        OutputStream output;
        output.Open(Path("out"));
        std::raise(SIGHUP);
        output.Write("all");
        _exit(output.Commit().empty() ? 7 : 1);
    };
    EXPECT_EXIT(writeOn(), ExitedWithCode(7), "");
    EXPECT_EQ(ContentOf("out"), "all");
}

TEST(StandardOutput, GetsAllThatIsWritten)
{
    const std::string text(60000, 'y'); // a pipe takes 64 KiB without a reader
    Pipe pipe;
    EXPECT_EQ(CommitTo(pipe.Writer(), text), "");
    pipe.CloseWriter();
    std::string received(text.size() + 1, '\0');
    EXPECT_EQ(read(pipe.Reader(), received.data(), received.size()), static_cast<ssize_t>(text.size()));
    received.resize(text.size());
    EXPECT_EQ(received, text);
}

TEST(StandardOutput, ThatCannotBeWrittenIsToldByCommit)
{
    const int full = open("/dev/full", O_WRONLY | O_CLOEXEC);
    EXPECT_EQ(CommitTo(full, "x"), "standard output cannot be written");
    EXPECT_EQ(CommitTo(full, ""), "");
    close(full);
}

TEST(StandardOutput, WithoutAReaderIsToldWhereThatSignalIsIgnored)
{
    std::signal(SIGPIPE, SIG_IGN);
    Pipe pipe;
    pipe.CloseReader();
    EXPECT_EQ(CommitTo(pipe.Writer(), "x"), "standard output cannot be written");
    std::signal(SIGPIPE, SIG_DFL);
}

TEST(StandardOutput, WithoutAReaderEndsTheProgramQuietlyElsewhere)
{
    Pipe pipe;
    pipe.CloseReader();
    EXPECT_EXIT(CommitTo(pipe.Writer(), "x"), KilledBySignal(SIGPIPE), "^$");
}
