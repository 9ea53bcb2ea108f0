#include "output/files.h"

#include "output/redirection.h"
#include "output/test_folder.h"

#include <filesystem>
#include <string>

#include <fcntl.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using qstd::ReadWhole;
using qstd::WriteWhole;
using testing::HasSubstr;

namespace {

namespace fs = std::filesystem;

class Files : public TestFolder
{
};

} // namespace

TEST_F(Files, AreReadToTheByte)
{
    const std::string content("a\r\n\0b\xFF", 6);
    const std::string path = Made("in", content);
    EXPECT_EQ(ReadWhole(path).content, content);
    EXPECT_EQ(ReadWhole(path).problem, "");
}

TEST_F(Files, ThatCannotBeReadSayWhy)
{
    EXPECT_EQ(ReadWhole(Path("none")).problem, "cannot be read: No such file or directory");
    EXPECT_EQ(ReadWhole(folder.string()).problem, "cannot be read: Is a directory");
    EXPECT_EQ(ReadWhole("/dev/zero").problem, "larger than 64 MiB; split it");
}

TEST_F(Files, AreWrittenUnderTheirOwnNamesOnly)
{
    const std::string old = Made("old", "before");
    EXPECT_EQ(WriteWhole({{Path("new"), "one"}, {old, "two"}}), "");
    EXPECT_EQ(ReadWhole(Path("new")).content, "one");
    EXPECT_EQ(ReadWhole(Path("old")).content, "two");
    EXPECT_EQ(Count(), 2U);
}

TEST_F(Files, AreAllLeftAloneWhenOneCannotBeWritten)
{
    const std::string old = Made("old", "before");
    EXPECT_THAT(WriteWhole({{old, "after"}, {Path("no/such"), "x"}}),
                HasSubstr("no/such: cannot be written: No such file or directory"));
    EXPECT_THAT(WriteWhole({{old, "after"}, {folder.string(), "x"}}), HasSubstr("is a directory"));
    EXPECT_THAT(WriteWhole({{old, "after"}, {"/dev/null", "x"}}), HasSubstr("not a regular file"));
    EXPECT_EQ(ReadWhole(Path("old")).content, "before");
    EXPECT_EQ(Count(), 1U);
}

TEST_F(Files, AreAllLeftAloneWhenStandardOutputCannotBeWritten)
{
    const int full = open("/dev/full", O_WRONLY | O_CLOEXEC);
    if (full < 0)
    {
        GTEST_SKIP() << "needs a device that is always full";
    }
    const std::string old = Made("old", "before");
    std::string problem;
    {
        const Redirection redirection(STDOUT_FILENO, full);
        problem = WriteWhole({{old, "after"}, {"-", "x"}});
    }
    close(full);
    EXPECT_EQ(problem, "standard output cannot be written");
    EXPECT_EQ(ReadWhole(old).content, "before");
    EXPECT_EQ(Count(), 1U);
}

TEST_F(Files, AreWrittenThroughALink)
{
    fs::create_symlink(Made("real", "before"), Path("link"));
    EXPECT_EQ(WriteWhole({{Path("link"), "after"}}), "");
    EXPECT_TRUE(fs::is_symlink(Path("link")));
    EXPECT_EQ(ReadWhole(Path("real")).content, "after");
}

TEST_F(Files, HaveTheUsualPermissions)
{
    EXPECT_EQ(WriteWhole({{Path("new"), "x"}}), "");
    EXPECT_EQ(fs::status(Path("new")).permissions(), fs::status(Made("usual", "x")).permissions());
}
