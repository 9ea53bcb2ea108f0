#include "input/table_stream.h"

#include "output/test_folder.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

// For its seed, so that every run tries the same cases.
#include "tests/support/random_geometry.h"

using qstd::LineSource;
using qstd::Messages;
using qstd::ParseTable;
using qstd::Table;
using qstd::TableRow;
using qstd::TableStream;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

/** A table in the words of its rows and of what was told of it. */
struct Reading
{
    bool hasHeader = false;
    size_t headerLine = 0;
    std::vector<std::string> header;
    std::vector<size_t> lines;
    std::vector<std::vector<std::string>> rows;
    std::string messages;

    void Add(const TableRow& row)
    {
        lines.push_back(row.line);
        rows.push_back(row.cells);
    }

    bool operator==(const Reading& other) const
    {
        return hasHeader == other.hasHeader && headerLine == other.headerLine && header == other.header &&
               lines == other.lines && rows == other.rows && messages == other.messages;
    }
};

Reading ReadAtOnce(const std::string& content)
{
    Reading reading;
    Messages messages;
    const std::optional<Table> table = ParseTable("t.csv", content, messages);
    reading.messages = messages.Text();
    reading.hasHeader = table.has_value();
    if (table)
    {
        reading.headerLine = table->headerLine;
        reading.header = table->header;
        std::for_each(table->rows.begin(), table->rows.end(), [&reading](const TableRow& row) { reading.Add(row); });
    }
    return reading;
}

/** One pass. */
Reading ReadStream(TableStream& stream)
{
    Reading reading;
    Messages messages;
    reading.hasHeader = stream.Rewind(messages);
    if (reading.hasHeader)
    {
        reading.headerLine = stream.Head().headerLine;
        reading.header = stream.Head().header;
    }
    for (std::optional<TableRow> row = stream.Next(messages); row; row = stream.Next(messages))
    {
        reading.Add(*row);
    }
    reading.messages = messages.Text();
    return reading;
}

class Streams : public TestFolder
{
protected:
    [[nodiscard]] Reading Read(const std::string& content) const
    {
        LineSource source;
        EXPECT_EQ(source.Open(Made("t.csv", content)), "");
        TableStream stream(source, "t.csv");
        return ReadStream(stream);
    }
};

/** A stream of which any number of contents are tried. */
class StreamsOfAnyContent : public Streams
{
};

/** Bytes that mean something in a table, in any order, more often than bytes at random would give. */
std::string AnyContent()
{
    static const std::vector<std::string> headers = {"id,n,e\n", "id;n;e\r\n", "id\tn\te\r",
                                                     "id n e\n", "ID \tN\n",   ""};
    static const std::vector<std::string> pieces = {"a",        "1.5",      "-",
                                                    "-",        ",",        ",",
                                                    ";",        "\t",       " ",
                                                    "  ",       "\"",       "\"",
                                                    "\"\"",     "#",        "\n",
                                                    "\n",       "\n",       "\r",
                                                    "\r\n",     "\xC3\xA9", "\xEF\xBB\xBF",
                                                    "\xFF\xFE", "\xC3",     std::string(1, '\0'),
                                                    "\x7F",     "é,\"x\"\n"};
    std::string content = *rc::gen::elementOf(headers);
    for (const std::string& piece : *rc::gen::container<std::vector<std::string>>(rc::gen::elementOf(pieces)))
    {
        content += piece;
    }
    return content;
}

} // namespace

RC_GTEST_FIXTURE_PROP(StreamsOfAnyContent, AgreeWithTheTableReadAtOnce, ())
{
    const std::string content = AnyContent();
    const Reading atOnce = ReadAtOnce(content);
    RC_CLASSIFY(!atOnce.rows.empty(), "rows");
    RC_CLASSIFY(!atOnce.messages.empty(), "messages");
    RC_ASSERT(Read(content) == atOnce);
}

TEST_F(Streams, AgreeWithTheTableReadAtOnceBeyondABlockOfReading)
{
    std::string content = "\xEF\xBB\xBFId;N;E\r\n";
    for (int i = 0; i < 20000; ++i)
    {
        content += std::to_string(i) + (i % 7 == 0 ? ";\"a;b\"\r\n" : i % 11 == 0 ? ";1;2;3\r" : ";1 # remark\n");
    }
    const Reading stream = Read(content);
    EXPECT_TRUE(stream == ReadAtOnce(content));
    // Multiples of 11 that are none of 7 have a value too many: of 0 to 19999 there are 1819 of 11 and 260 of 77.
    EXPECT_EQ(stream.rows.size(), 20000U - (1819U - 260U));
    EXPECT_EQ(stream.lines.back(), 20001U);
    EXPECT_THAT(stream.messages, HasSubstr("qstd: 1539 more errors not shown"));
}

TEST_F(Streams, SkipAByteOrderMarkAtTheFrontOnly)
{
    const Reading reading = Read("\xEF\xBB\xBFid,n\n\xEF\xBB\xBF 1,2\n");
    EXPECT_THAT(reading.header, ElementsAre("id", "n"));
    EXPECT_THAT(reading.rows, ElementsAre(ElementsAre("\xEF\xBB\xBF 1", "2")));
}

TEST_F(Streams, CanBeReadSeveralTimesOver)
{
    LineSource source;
    ASSERT_EQ(source.Open(Made("t.csv", "a,b\n1,2\nx,y,z\n3,4\n")), "");
    TableStream stream(source, "t.csv");
    const Reading first = ReadStream(stream);
    EXPECT_THAT(first.rows, ElementsAre(ElementsAre("1", "2"), ElementsAre("3", "4")));
    EXPECT_EQ(first.messages, "t.csv:3: 3 values for 2 columns; the first one too many is \"z\"\n");
    EXPECT_TRUE(ReadStream(stream) == first);
    EXPECT_EQ(stream.Head().file, "t.csv");
    EXPECT_TRUE(stream.Head().rows.empty());
}

TEST_F(Streams, FillARowAgain)
{
    LineSource source;
    ASSERT_EQ(source.Open(Made("t.csv", "a,b,c\n1,2,3\n\"\"\"4\"\n5,,6\n")), "");
    TableStream stream(source, "t.csv");
    Messages messages;
    TableRow row;
    ASSERT_TRUE(stream.Rewind(messages));
    ASSERT_TRUE(stream.Next(row, messages));
    EXPECT_THAT(row.cells, ElementsAre("1", "2", "3"));
    ASSERT_TRUE(stream.Next(row, messages));
    EXPECT_THAT(row.cells, ElementsAre("\"4"));
    EXPECT_EQ(row.line, 3U);
    ASSERT_TRUE(stream.Next(row, messages));
    EXPECT_THAT(row.cells, ElementsAre("5", "", "6"));
    EXPECT_FALSE(stream.Next(row, messages));
    EXPECT_FALSE(stream.Next(row, messages));
    EXPECT_EQ(messages.Text(), "");
}

TEST_F(Streams, HaveNoRowsBeforeRewind)
{
    LineSource source;
    ASSERT_EQ(source.Open(Made("t.csv", "a\n1\n")), "");
    TableStream stream(source, "t.csv");
    Messages messages;
    EXPECT_FALSE(stream.Next(messages).has_value());
}

TEST_F(Streams, TellOfALineTooLongInItsPlace)
{
    const std::string tooLong(qstd::LONGEST_LINE + 1, 'x');
    const Reading reading = Read("a,b\n1,2\n" + tooLong + "\n3,4\n");
    EXPECT_THAT(reading.rows, ElementsAre(ElementsAre("1", "2")));
    EXPECT_EQ(reading.messages, "t.csv:3: a line longer than 1 MiB; is this a text file?\n");
    EXPECT_EQ(Read(tooLong).messages, "t.csv:1: a line longer than 1 MiB; is this a text file?\n");
}

TEST_F(Streams, TellOfADeviceThatFails)
{
    LineSource source;
    ASSERT_EQ(source.Open("/proc/self/mem"), ""); // nothing can be read at address 0
    TableStream stream(source, "t.csv");
    EXPECT_EQ(ReadStream(stream).messages, "t.csv: cannot be read: Input/output error\n");
}

// Each blank of such a header was once compared with all that follow: hours for one line.
TEST_F(Streams, ReadAHeaderOfManyBlanksInAMoment)
{
    const std::string blanks(qstd::LONGEST_LINE - 10, ' ');
    EXPECT_THAT(Read("a" + blanks + "\tb\n1\t2\n").header, ElementsAre("a", "b"));
}
