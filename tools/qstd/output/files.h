/**
 * @file files.h
 * Files read whole, and written whole or not at all.
 */
#ifndef QSTD_FILES_H
#define QSTD_FILES_H

#include <cstddef>
#include <string>
#include <vector>

namespace qstd {

constexpr size_t LARGEST_INPUT = size_t{64} << 20U;

/** The content of a file, or why it could not be read. */
struct FileContent
{
    std::string content;
    std::string problem; /**< empty when all was read */
};

/** Reads a file, or standard input for "-", up to LARGEST_INPUT bytes. */
FileContent ReadWhole(const std::string& path);

/** How messages name a file given on the command line. */
std::string DisplayName(const std::string& path);

struct OutputFile
{
    std::string path;
    std::string content;
};

/**
 * Writes files under temporary names beside them and renames these when all are complete; "-" is standard output, which
 * comes last.
 *
 * @return empty, or a message naming the file that could not be written; temporary files are then removed, and no file
 *         has changed unless a rename itself failed after another succeeded
 */
std::string WriteWhole(const std::vector<OutputFile>& files);

} // namespace qstd

#endif
