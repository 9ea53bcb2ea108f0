#include "files.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using qstd::ReadWhole;
using qstd::WriteWhole;
using testing::HasSubstr;

namespace {

namespace fs = std::filesystem;

/** An empty folder for one test. */
class Files : public testing::Test
{
protected:
    Files()
    {
        std::string name = (fs::temp_directory_path() / "qstd-files-XXXXXX").string();
        folder = mkdtemp(name.data());
    }

    ~Files() override
    {
        std::error_code ignored;
        fs::remove_all(folder, ignored);
    }

    [[nodiscard]] std::string Path(const std::string& name) const
    {
        return (folder / name).string();
    }

    void Put(const std::string& name, const std::string& content) const
    {
        std::ofstream(folder / name, std::ios::binary) << content;
    }

    [[nodiscard]] size_t Count() const
    {
        return static_cast<size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
    }

    fs::path folder;
};

} // namespace

TEST_F(Files, AreReadToTheByte)
{
    const std::string content("a\r\n\0b\xFF", 6);
    Put("in", content);
    EXPECT_EQ(ReadWhole(Path("in")).content, content);
    EXPECT_EQ(ReadWhole(Path("in")).problem, "");
}

TEST_F(Files, ThatCannotBeReadSayWhy)
{
    EXPECT_EQ(ReadWhole(Path("none")).problem, "cannot be read: No such file or directory");
    EXPECT_EQ(ReadWhole(folder.string()).problem, "cannot be read: Is a directory");
    EXPECT_EQ(ReadWhole("/dev/zero").problem, "larger than 64 MiB; split it");
}

TEST_F(Files, AreWrittenUnderTheirOwnNamesOnly)
{
    Put("old", "before");
    EXPECT_EQ(WriteWhole({{Path("new"), "one"}, {Path("old"), "two"}}), "");
    EXPECT_EQ(ReadWhole(Path("new")).content, "one");
    EXPECT_EQ(ReadWhole(Path("old")).content, "two");
    EXPECT_EQ(Count(), 2U);
}

TEST_F(Files, AreAllLeftAloneWhenOneCannotBeWritten)
{
    Put("old", "before");
    EXPECT_THAT(WriteWhole({{Path("old"), "after"}, {Path("no/such"), "x"}}),
                HasSubstr("no/such: cannot be written: No such file or directory"));
    EXPECT_THAT(WriteWhole({{Path("old"), "after"}, {folder.string(), "x"}}), HasSubstr("is a directory"));
    EXPECT_THAT(WriteWhole({{Path("old"), "after"}, {"/dev/null", "x"}}), HasSubstr("not a regular file"));
    EXPECT_EQ(ReadWhole(Path("old")).content, "before");
    EXPECT_EQ(Count(), 1U);
}

TEST_F(Files, AreWrittenThroughALink)
{
    Put("real", "before");
    fs::create_symlink(Path("real"), Path("link"));
    EXPECT_EQ(WriteWhole({{Path("link"), "after"}}), "");
    EXPECT_TRUE(fs::is_symlink(Path("link")));
    EXPECT_EQ(ReadWhole(Path("real")).content, "after");
}

TEST_F(Files, HaveTheUsualPermissions)
{
    EXPECT_EQ(WriteWhole({{Path("new"), "x"}}), "");
    Put("usual", "x");
    EXPECT_EQ(fs::status(Path("new")).permissions(), fs::status(Path("usual")).permissions());
}
