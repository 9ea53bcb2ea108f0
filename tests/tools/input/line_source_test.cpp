#include "input/line_source.h"

#include "output/redirection.h"
#include "output/test_folder.h"

#include <csignal>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using qstd::LineSource;
using qstd::LONGEST_LINE;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

/** An environment variable that has another value for the length of a test. */
class Environment
{
public:
    Environment(const char* variable, const std::string& value) : name(variable)
    {
        const char* const present = std::getenv(name);
        before = present != nullptr ? std::optional<std::string>(present) : std::nullopt;
        setenv(name, value.c_str(), 1);
    }

    ~Environment()
    {
        before ? setenv(name, before->c_str(), 1) : unsetenv(name);
    }

    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;
    Environment(Environment&&) = delete;
    Environment& operator=(Environment&&) = delete;

private:
    const char* name;
    std::optional<std::string> before;
};

class Lines : public TestFolder
{
protected:
    /** The lines of a file with a content. */
    [[nodiscard]] std::vector<std::string> Of(const std::string& content) const
    {
        LineSource source;
        EXPECT_EQ(source.Open(Made("in", content)), "");
        return Rest(source);
    }

    static std::vector<std::string> Rest(LineSource& source)
    {
        std::vector<std::string> lines;
        for (std::optional<std::string_view> line = source.Next(); line; line = source.Next())
        {
            lines.emplace_back(*line);
        }
        return lines;
    }

    static std::string ProblemOf(const std::string& path)
    {
        LineSource source;
        std::string problem = source.Open(path);
        return problem.empty() && Rest(source).empty() ? source.Problem() : problem;
    }
};

std::string PathOf(int descriptor)
{
    return "/dev/fd/" + std::to_string(descriptor);
}

} // namespace

TEST_F(Lines, EndWithLfCrLfOrCr)
{
    EXPECT_THAT(Of("a\nb\r\nc\rd"), ElementsAre("a", "b", "c", "d"));
    EXPECT_THAT(Of("a\n"), ElementsAre("a"));
    EXPECT_THAT(Of("a\r"), ElementsAre("a"));
    EXPECT_THAT(Of("a\r\n"), ElementsAre("a"));
    EXPECT_THAT(Of("\n\r\r\n\n\r"), ElementsAre("", "", "", "", ""));
    EXPECT_THAT(Of(""), IsEmpty());
}

TEST_F(Lines, MayHoldAnyOtherByte)
{
    const std::string line("\0a\0\x01\xFF\xEF\xBB\xBF\v\f", 10);
    EXPECT_THAT(Of(line + "\n" + line), ElementsAre(line, line));
}

TEST_F(Lines, AreTheSameWhereverABlockOfReadingEnds)
{
    for (const size_t block : {size_t{65536}, size_t{131072}})
    {
        for (size_t before = block - 4; before <= block + 4; ++before)
        {
            const std::string first(before, 'x');
            EXPECT_THAT(Of(first + "\r\nb\r\r\nc\nd"), ElementsAre(first, "b", "", "c", "d")) << before;
            EXPECT_THAT(Of("1\r2\r\n3\n" + first + "\r\n"), ElementsAre("1", "2", "3", first)) << before;
        }
    }
}

TEST_F(Lines, AreCountedAndMeasured)
{
    LineSource source;
    ASSERT_EQ(source.Open(Made("in", "ab\r\n\ncde")), "");
    EXPECT_EQ(source.Size(), 8U);
    EXPECT_EQ(source.LineNumber(), 0U);
    EXPECT_EQ(source.Position(), 0U);
    for (size_t number = 1; number <= 3; ++number)
    {
        source.Next();
        EXPECT_EQ(source.LineNumber(), number);
    }
    EXPECT_EQ(source.Position(), 8U);
    EXPECT_FALSE(source.Next());
    EXPECT_EQ(source.LineNumber(), 3U);
}

TEST_F(Lines, CanBeReadAgainFromAnyPlace)
{
    std::vector<std::string> expected;
    std::string content;
    for (int i = 0; i < 50000; ++i)
    {
        expected.push_back(std::to_string(i));
        content += expected.back() + "\r\n";
    }
    LineSource source;
    ASSERT_EQ(source.Open(Made("in", content)), "");
    for (const int read : {0, 1, 30000, 60000})
    {
        for (int i = 0; i < read; ++i)
        {
            source.Next();
        }
        source.Rewind();
        EXPECT_EQ(source.LineNumber(), 0U);
        EXPECT_EQ(source.Position(), 0U);
        EXPECT_THAT(Rest(source), ElementsAreArray(expected));
        EXPECT_EQ(source.Position(), content.size());
    }
}

TEST_F(Lines, OfAPipeCanBeReadAgainAndLeaveNoFile)
{
    const Environment environment("TMPDIR", folder.string());
    const Pipe pipe("a\r\nb");
    LineSource source;
    ASSERT_EQ(source.Open(PathOf(pipe.Reader())), "");
    EXPECT_EQ(Count(), 0U);
    EXPECT_EQ(source.Size(), 4U);
    EXPECT_THAT(Rest(source), ElementsAre("a", "b"));
    source.Rewind();
    EXPECT_THAT(Rest(source), ElementsAre("a", "b"));
}

TEST_F(Lines, OfStandardInputCanBeReadAgain)
{
    const Pipe pipe("a\nb\n");
    const Redirection redirection(STDIN_FILENO, pipe.Reader());
    LineSource source;
    ASSERT_EQ(source.Open("-"), "");
    EXPECT_THAT(Rest(source), ElementsAre("a", "b"));
    source.Rewind();
    EXPECT_THAT(Rest(source), ElementsAre("a", "b"));
}

TEST_F(Lines, OfStandardInputStartWhereItStands)
{
    const int file = open(Made("in", "a\nb\nc\n").c_str(), O_RDONLY | O_CLOEXEC);
    lseek(file, 2, SEEK_SET); // somebody has read the first line
    {
        const Redirection redirection(STDIN_FILENO, file);
        LineSource source;
        ASSERT_EQ(source.Open("-"), "");
        EXPECT_EQ(source.Size(), 4U);
        EXPECT_THAT(Rest(source), ElementsAre("b", "c"));
        source.Rewind();
        EXPECT_THAT(Rest(source), ElementsAre("b", "c"));
    }
    close(file);
}

TEST_F(Lines, ThatCannotBeReadSayWhy)
{
    EXPECT_EQ(ProblemOf(Path("none")), "cannot be read: No such file or directory");
    EXPECT_EQ(ProblemOf(folder.string()), "cannot be read: Is a directory");
    EXPECT_EQ(ProblemOf("/proc/self/mem"), "cannot be read: Input/output error"); // nothing lies at address 0
    if (geteuid() != 0)
    {
        const std::string locked = Made("locked", "a\n");
        std::filesystem::permissions(locked, std::filesystem::perms::none);
        EXPECT_EQ(ProblemOf(locked), "cannot be read: Permission denied");
    }
}

TEST_F(Lines, OfADirectoryAsStandardInputSayWhy)
{
    const int directory = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    {
        const Redirection redirection(STDIN_FILENO, directory);
        EXPECT_EQ(ProblemOf("-"), "cannot be read: Is a directory");
    }
    close(directory);
}

TEST_F(Lines, OfAPipeThatCannotBeCopiedSayWhy)
{
    const Pipe pipe(std::string(10000, 'x'));
    {
        const Environment environment("TMPDIR", Path("none"));
        EXPECT_EQ(ProblemOf(PathOf(pipe.Reader())),
                  "cannot be read: no copy of it in " + Path("none") + ": No such file or directory");
    }
    std::signal(SIGXFSZ, SIG_IGN);
    {
        const Environment environment("TMPDIR", folder.string());
        const FileSizeLimit limit(1000);
        EXPECT_EQ(ProblemOf(PathOf(pipe.Reader())),
                  "cannot be read: no copy of it in " + folder.string() + ": File too large");
    }
    std::signal(SIGXFSZ, SIG_DFL);
    EXPECT_EQ(Count(), 0U);
}

TEST_F(Lines, MayBeAsLongAsTheLimit)
{
    const std::string longest(LONGEST_LINE, 'x');
    EXPECT_THAT(Of("a\n" + longest + "\r\nb"), ElementsAre("a", longest, "b"));
    EXPECT_THAT(Of("a\n" + longest), ElementsAre("a", longest));
}

TEST_F(Lines, LongerThanTheLimitEndTheReading)
{
    for (const char* end : {"", "\n", "\nb\n"})
    {
        LineSource source;
        ASSERT_EQ(source.Open(Made("in", "a\n" + std::string(LONGEST_LINE + 1, 'x') + end)), "");
        EXPECT_THAT(Rest(source), ElementsAre("a"));
        EXPECT_EQ(source.Problem(), "a line longer than 1 MiB; is this a text file?");
        EXPECT_EQ(source.ProblemLine(), 2U);
        EXPECT_FALSE(source.Next());
        source.Rewind();
        EXPECT_EQ(source.Problem(), "");
        EXPECT_THAT(Rest(source), ElementsAre("a"));
        EXPECT_EQ(source.ProblemLine(), 2U);
    }
}

TEST_F(Lines, OfAnEndlessDeviceAreNotCopiedForEver)
{
    EXPECT_THAT(ProblemOf("/dev/zero"), HasSubstr("a line longer than 1 MiB"));
}

TEST_F(Lines, OfASecondFileTakeTheFirstOnesPlace)
{
    LineSource source;
    ASSERT_EQ(source.Open(Made("one", "a\nb\n")), "");
    source.Next();
    ASSERT_EQ(source.Open(Made("two", "c\n")), "");
    EXPECT_EQ(source.Size(), 2U);
    EXPECT_THAT(Rest(source), ElementsAre("c"));
    EXPECT_EQ(source.LineNumber(), 1U);
}

TEST_F(Lines, AreNoneBeforeOpen)
{
    LineSource source;
    EXPECT_FALSE(source.Next());
    source.Rewind();
    EXPECT_FALSE(source.Next());
    EXPECT_EQ(source.Problem(), "");
}
