#include "text/status_name.h"

#include <qstdlib.h>

#include <set>
#include <string>

#include <gtest/gtest.h>

using qstd::HasResult;
using qstd::StatusMeaning;
using qstd::StatusName;

TEST(StatusName, IsThatOfTheInterface)
{
    EXPECT_EQ(StatusName(0), "QSTD_OK");
    EXPECT_EQ(StatusName(-1), "QSTD_REJECTED");
    EXPECT_EQ(StatusName(-3), "QSTD_NO_MEMORY");
    EXPECT_EQ(StatusName(-1205), "QSTD_DEGENERATE");
    EXPECT_EQ(StatusName(-7), "status -7");
    std::set<std::string> names;
    for (int32_t status = -1209; status <= -1200; ++status)
    {
        names.insert(StatusName(status));
    }
    EXPECT_EQ(names.size(), 10U);
}

TEST(StatusMeaning, TellsAllStatusesApart)
{
    EXPECT_EQ(StatusMeaning(QSTD_OK), "");
    std::set<std::string> meanings = {StatusMeaning(QSTD_REJECTED), StatusMeaning(QSTD_NO_MEMORY),
                                      StatusMeaning(QSTD_NOT_DEFINED)};
    for (int32_t status = -1209; status <= -1200; ++status)
    {
        meanings.insert(StatusMeaning(status));
    }
    EXPECT_EQ(meanings.size(), 13U);
    EXPECT_EQ(StatusMeaning(-1206), "the two lines are parallel");
    EXPECT_EQ(StatusMeaning(-2), "status -2");
}

TEST(StatusMeaning, WarningsComeWithAResult)
{
    EXPECT_TRUE(HasResult(0));
    EXPECT_TRUE(HasResult(-1208));
    EXPECT_TRUE(HasResult(-1209));
    EXPECT_FALSE(HasResult(-1));
    EXPECT_FALSE(HasResult(-1207));
    EXPECT_FALSE(HasResult(1));
}
