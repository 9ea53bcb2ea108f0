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

TEST(Messages, OfASecondReadingSayThatTheInputHasChanged)
{
    Messages messages;
    messages.AddWarning("points.csv", 1, "column x is not used");
    messages.BeginSecondReading();
    messages.AddWarning("points.csv", 1, "column x is not used");
    EXPECT_EQ(messages.Text(), "");
    EXPECT_FALSE(messages.HasErrors());
    messages.AddError("points.csv", 7, "n \"x\": not a number");
    EXPECT_TRUE(messages.HasErrors());
    EXPECT_EQ(messages.Text(), "points.csv:7: changed while it was read: n \"x\": not a number\n");
}
