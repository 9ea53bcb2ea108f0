#include "text/text_table.h"

#include <gtest/gtest.h>

using qstd::Alignment;
using qstd::FormatTable;

TEST(FormatTable, AlignsByCharacters)
{
    EXPECT_EQ(FormatTable({{"name"}, {"mm", Alignment::RIGHT}}, {{"Kő", "1.5"}, {"Berg", "-10.0"}}, "  "),
              "  name     mm\n"
              "  Kő      1.5\n"
              "  Berg  -10.0\n");
}

TEST(FormatTable, LeavesOutColumnsWithoutContent)
{
    EXPECT_EQ(FormatTable({{"a"}, {"b"}, {"c"}}, {{"1", "", "3"}, {"1", "", ""}}, ""), "a  c\n1  3\n1\n");
}
