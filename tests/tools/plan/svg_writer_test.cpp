#include "plan/svg_writer.h"

#include <string>
#include <vector>

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

TEST(SvgWriter, ReplacesWhatNoDocumentHolds)
{
    SvgWriter svg(10.0, 20.0, "");
    // A control, a broken sequence, U+0085, U+FFFE; then letters beyond ASCII, which stay.
    svg.Text({1.0, 2.0}, "\x1F|\xC3|\xC2\x85|\xEF\xBF\xBE|\xC5\x91", {});
    EXPECT_THAT(svg.Finish(), HasSubstr(">\xEF\xBF\xBD|\xEF\xBF\xBD|\xEF\xBF\xBD|\xEF\xBF\xBD|\xC5\x91</text>"));
}

TEST(SvgWriter, TurnsText)
{
    SvgWriter svg(10.0, 20.0, "");
    svg.Text({1.0, 2.0}, "t", {2.5, qstd::TextAnchor::MIDDLE, false, false, -33.5});
    svg.Text({3.0, 4.0}, "u", {2.5, qstd::TextAnchor::MIDDLE, false, true});
    EXPECT_THAT(svg.Finish(), HasSubstr("transform=\"rotate(-33.50 1.00 2.00)\""));
    EXPECT_THAT(svg.Finish(), HasSubstr("transform=\"rotate(-90 3.00 4.00)\""));
}

TEST(SvgWriter, StatesItsSizeInMillimetres)
{
    EXPECT_THAT(SvgWriter(297.0, 210.0, "").Finish(),
                HasSubstr("width=\"297mm\" height=\"210mm\" viewBox=\"0 0 297 210\""));
}

TEST(WrappedText, BreaksAtBlanksAndShortensAWordThatIsTooLong)
{
    // Lower-case letters count as 0.65 of the size, l and i as 0.4: "ab cd" is 4 * 1.3 + 0.8 = 6 at size 2.
    EXPECT_THAT(qstd::WrappedText("  ab cd   ef ", 2.0, 6.0), testing::ElementsAre("ab cd", "ef"));
    EXPECT_THAT(qstd::WrappedText("ab cd", 2.0, 5.9), testing::ElementsAre("ab", "cd"));
    EXPECT_THAT(qstd::WrappedText(" ", 2.0, 6.0), testing::IsEmpty());
    const std::vector<std::string> lines = qstd::WrappedText("a abcdefghijkl z", 2.0, 6.0);
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_LE(qstd::TextWidth(lines[1], 2.0), 6.0);
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
