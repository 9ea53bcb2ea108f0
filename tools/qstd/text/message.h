/**
 * @file message.h
 * What is wrong with the input, in the form that compilers use and editors jump to: file:line: text.
 */
#ifndef QSTD_MESSAGE_H
#define QSTD_MESSAGE_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace qstd {

/** Collects the messages of one run. Beyond a limit errors are counted, not kept. */
class Messages
{
public:
    static constexpr size_t LIMIT = 20;

    /** Something that makes the input unusable. Line 0 stands for the file as a whole. */
    void AddError(std::string_view file, size_t line, std::string_view text);

    /** Something that the reader should know although the computation goes on. */
    void AddWarning(std::string_view file, size_t line, std::string_view text);

    /**
     * The same input, in which there were no errors, is read again: its warnings are not repeated, and an error means
     * that it has changed.
     */
    void BeginSecondReading();

    [[nodiscard]] bool HasErrors() const;

    /** True when further errors would only be counted. */
    [[nodiscard]] bool IsFull() const;

    /** One message a line; the last line says so when there were more. */
    [[nodiscard]] std::string Text() const;

private:
    std::vector<std::string> lines;
    size_t errors = 0;
    size_t warnings = 0;
    bool isFirstReading = true;
};

} // namespace qstd

#endif
