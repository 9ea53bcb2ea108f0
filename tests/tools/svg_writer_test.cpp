#include "svg_writer.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using qstd::SvgWriter;
using testing::HasSubstr;

TEST(SvgWriter, EscapesText)
{
    SvgWriter svg(10.0, 20.0, "<title>");
    svg.Text({1.0, 2.0}, "a & b < c > d", {});
    const std::string document = svg.Finish();
    EXPECT_THAT(document, HasSubstr("<title>&lt;title&gt;</title>"));
    EXPECT_THAT(document, HasSubstr(">a &amp; b &lt; c &gt; d</text>"));
}

TEST(SvgWriter, StatesItsSizeInMillimetres)
{
    EXPECT_THAT(SvgWriter(297.0, 210.0, "").Finish(),
                HasSubstr("width=\"297mm\" height=\"210mm\" viewBox=\"0 0 297 210\""));
}

TEST(FittedText, ShortensInTheMiddleOnly)
{
    EXPECT_EQ(qstd::FittedText("short", 3.0, 50.0), "short");
    const std::string fitted = qstd::FittedText("a very long name of a point, number 7", 3.0, 30.0);
    EXPECT_LE(qstd::TextWidth(fitted, 3.0), 30.0);
    EXPECT_THAT(fitted, HasSubstr("…"));
    EXPECT_EQ(fitted.front(), 'a');
    EXPECT_EQ(fitted.back(), '7');
}
