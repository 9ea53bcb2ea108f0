/**
 * @file test_folder.h
 * An empty folder for one test, removed after it.
 */
#ifndef QSTDLIB_TESTS_TOOLS_TEST_FOLDER_H
#define QSTDLIB_TESTS_TOOLS_TEST_FOLDER_H

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <gtest/gtest.h>

class TestFolder : public testing::Test
{
protected:
    TestFolder()
    {
        std::string name = (std::filesystem::temp_directory_path() / "qstd-test-XXXXXX").string();
        folder = mkdtemp(name.data());
    }

    ~TestFolder() override
    {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }

    [[nodiscard]] std::string Path(const std::string& name) const
    {
        return (folder / name).string();
    }

    /** Writes a file and gives its path. */
    [[nodiscard]] std::string Made(const std::string& name, const std::string& content) const
    {
        std::ofstream(folder / name, std::ios::binary) << content;
        return Path(name);
    }

    [[nodiscard]] std::string ContentOf(const std::string& name) const
    {
        std::ifstream file(folder / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }

    [[nodiscard]] size_t Count() const
    {
        return static_cast<size_t>(
            std::distance(std::filesystem::directory_iterator(folder), std::filesystem::directory_iterator()));
    }

    std::filesystem::path folder;
};

#endif
