#include "input/table.h"

#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using qstd::ColumnPlaces;
using qstd::FindColumns;
using qstd::Messages;
using qstd::ParseTable;
using qstd::Table;
using testing::ElementsAre;

namespace {

using Cells = std::vector<std::string>;

Table Parsed(const std::string& text)
{
    Messages messages;
    const std::optional<Table> table = ParseTable("t.csv", text, messages);
    EXPECT_EQ(messages.Text(), "");
    return table.value_or(Table());
}

std::string MessagesOf(const std::string& text)
{
    Messages messages;
    ParseTable("t.csv", text, messages);
    return messages.Text();
}

} // namespace

TEST(ParseTable, RecognisesEverySeparatorFromTheHeader)
{
    for (const char* text : {"id,n,e\n11,1.5,2\n", "id;n;e\n11;1.5;2\n", "id\tn\te\n11\t1.5\t2\n", "id n e\n11 1.5 2\n",
                             "id , n , e\n 11 , 1.5 , 2 \n", "  id   n\te\n  11 \t 1.5   2  \n"})
    {
        const Table table = Parsed(text);
        EXPECT_THAT(table.header, ElementsAre("id", "n", "e")) << text;
        ASSERT_EQ(table.rows.size(), 1U) << text;
        EXPECT_THAT(table.rows[0].cells, ElementsAre("11", "1.5", "2")) << text;
    }
}

TEST(ParseTable, AcceptsByteOrderMarkAndEveryLineEnd)
{
    for (const char* text : {"\xEF\xBB\xBFid,n\r\n11,1\r\n12,2\r\n", "id,n\r11,1\r12,2", "id,n\n11,1\n12,2"})
    {
        const Table table = Parsed(text);
        EXPECT_THAT(table.header, ElementsAre("id", "n"));
        ASSERT_EQ(table.rows.size(), 2U);
        EXPECT_THAT(table.rows[1].cells, ElementsAre("12", "2"));
        EXPECT_EQ(table.rows[1].line, 3U);
    }
}

TEST(ParseTable, SkipsCommentsAndEmptyLinesButCountsThem)
{
    const Table table = Parsed("# a comment, with \"quotes\n\n   \nid,n # names\n\n11,1# remark, more\n,,\n12,2\n");
    EXPECT_EQ(table.headerLine, 4U);
    ASSERT_EQ(table.rows.size(), 2U);
    EXPECT_EQ(table.rows[0].line, 6U);
    EXPECT_THAT(table.rows[0].cells, ElementsAre("11", "1"));
    EXPECT_EQ(table.rows[1].line, 8U);
}

TEST(ParseTable, ReadsQuotedCells)
{
    const Table table = Parsed("\"id\",n\n\"a,b # \"\"c\"\"\",1\n");
    ASSERT_EQ(table.rows.size(), 1U);
    EXPECT_THAT(table.rows[0].cells, ElementsAre("a,b # \"c\"", "1"));
}

TEST(ParseTable, LeavesADoubleQuoteWithinACellAlone)
{
    EXPECT_THAT(Parsed("a,b\n99d10'24.5\",1\n").rows[0].cells, ElementsAre("99d10'24.5\"", "1"));
}

TEST(ParseTable, KeepsEmptyCellsAndDropsTrailingOnes)
{
    EXPECT_THAT(Parsed("a,b,c\n1,,3\n").rows[0].cells, ElementsAre("1", "", "3"));
    EXPECT_THAT(Parsed("a,b,c\n1,,\n").rows[0].cells, ElementsAre("1"));
    EXPECT_THAT(Parsed("a\tb\tc\n1\t\t3\n").rows[0].cells, ElementsAre("1", "", "3"));
    EXPECT_THAT(Parsed("a b c\n1 - 3\n").rows[0].cells, ElementsAre("1", "", "3"));
    EXPECT_THAT(Parsed("a,b\n1,2,,,\n").rows[0].cells, ElementsAre("1", "2"));
}

TEST(ParseTable, TellsOfLinesThatItCannotRead)
{
    EXPECT_EQ(MessagesOf("a,b\n1,2,3\n"), "t.csv:2: 3 values for 2 columns; the first one too many is \"3\"\n");
    EXPECT_EQ(MessagesOf("a,b\n\"1,2\n"), "t.csv:2: a double quote is not closed\n");
    EXPECT_EQ(MessagesOf("a,b\n\"1\"x,2\n"), "t.csv:2: text follows a closing double quote\n");
    EXPECT_EQ(MessagesOf("a,b\n\xFF,2\n"), "t.csv:2: not UTF-8 text; save the file in UTF-8\n");
    EXPECT_EQ(MessagesOf(std::string("a,b\n1\0,2\n", 9)),
              "t.csv:2: control character \\x00; the tables are plain text\n");
    EXPECT_EQ(MessagesOf("\xFF\xFEi"), "t.csv: UTF-16 text; save the file in UTF-8\n");
}

TEST(ParseTable, TellsOfATableWithoutHeader)
{
    for (const char* text : {"", "\n\n", "# nothing\n", "\xEF\xBB\xBF"})
    {
        EXPECT_EQ(MessagesOf(text), "t.csv: empty; the first line must name the columns\n");
    }
}

TEST(FindColumns, FindsNamesInAnyOrderAndCase)
{
    Messages messages;
    const ColumnPlaces places =
        FindColumns(Parsed("E,id,N\n"), {{"id", true}, {"n", true}, {"e", true}, {"h"}}, messages);
    EXPECT_THAT(places, ElementsAre(1U, 2U, 0U, std::nullopt));
    EXPECT_EQ(messages.Text(), "");
}

TEST(FindColumns, RefusesMissingAndDoubledColumns)
{
    Messages messages;
    FindColumns(Parsed("id,id\n"), {{"id", true}, {"n", true}, {"h"}}, messages);
    EXPECT_TRUE(messages.HasErrors());
    EXPECT_EQ(messages.Text(), "t.csv:1: column \"id\": named twice; rename or remove one\n"
                               "t.csv:1: no column \"n\"; the first line must name the columns: id n [h]\n");
}

TEST(FindColumns, WarnsOfUnknownColumns)
{
    Messages messages;
    FindColumns(Parsed("id,hight\n"), {{"id", true}, {"h"}}, messages);
    EXPECT_FALSE(messages.HasErrors());
    EXPECT_EQ(messages.Text(), "t.csv:1: warning: column \"hight\": not known, ignored; the columns are id [h]\n");
}

TEST(CellAt, IsEmptyBeyondTheEndOfALine)
{
    const Table table = Parsed("a,b\n1\n");
    EXPECT_EQ(qstd::CellAt(table.rows[0], 0), "1");
    EXPECT_EQ(qstd::CellAt(table.rows[0], 1), "");
    EXPECT_EQ(qstd::CellAt(table.rows[0], std::nullopt), "");
}
