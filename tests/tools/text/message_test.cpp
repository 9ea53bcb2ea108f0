#include "text/message.h"

#include <gtest/gtest.h>

using qstd::Messages;

TEST(Messages, HaveTheFormOfCompilers)
{
    Messages messages;
    messages.AddError("a.csv", 17, "wrong");
    messages.AddError("b.csv", 0, "missing");
    messages.AddWarning("a.csv", 1, "odd");
    EXPECT_EQ(messages.Text(), "a.csv:17: wrong\nb.csv: missing\na.csv:1: warning: odd\n");
}

TEST(Messages, AreErrorsOnlyWhereTheySaySo)
{
    Messages messages;
    messages.AddWarning("a.csv", 1, "odd");
    EXPECT_FALSE(messages.HasErrors());
    messages.AddError("a.csv", 2, "wrong");
    EXPECT_TRUE(messages.HasErrors());
}

TEST(Messages, CountErrorsBeyondTheLimit)
{
    Messages messages;
    for (size_t i = 0; i < Messages::LIMIT; ++i)
    {
        EXPECT_FALSE(messages.IsFull());
        messages.AddError("a", 1, "x");
    }
    EXPECT_EQ(messages.Text().find("more"), std::string::npos);
    messages.AddError("a", 1, "last");
    EXPECT_NE(messages.Text().find("qstd: 1 more error not shown\n"), std::string::npos);
    EXPECT_EQ(messages.Text().find("last"), std::string::npos);
}
