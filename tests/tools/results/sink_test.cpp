#include "results/sink.h"

#include "output/test_folder.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <functional>
#include <optional>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using qstd::AngleValue;
using qstd::Layout;
using qstd::OutputFormat;
using qstd::OutputOptions;
using qstd::OutputStream;
using qstd::Quantity;
using qstd::Section;
using qstd::Sink;
using qstd::Value;
using testing::HasSubstr;

namespace {

const Section LIST = {"point",
                      Layout::TABLE,
                      true,
                      {{"id", "point", Quantity::TEXT, ""},
                       {"offset", "offset", Quantity::LENGTH, ""},
                       {"azimuth", "azimuth", Quantity::ANGLE, ""},
                       {"height", "height", Quantity::LENGTH, ""}}};

const Section RECORD = {"line",
                        Layout::RECORD,
                        true,
                        {{"from", "", Quantity::TEXT, ""},
                         {"length", "length", Quantity::LENGTH, ""},
                         {"grade", "grade", Quantity::PERCENT, "upwards"},
                         {"azimuth", "azimuth", Quantity::ANGLE, ""}}};

/** 90 degrees. */
const Value EAST = AngleValue{ANGLE_QUARTER_CIRCLE};

void Refuse(Sink& sink)
{
    sink.Add({{std::string("C"), {}, {}, {}}, QSTD_PARALLEL_LINES, false, ""});
}

void FillList(Sink& sink)
{
    sink.Title("List");
    sink.Begin(LIST);
    sink.Add({{std::string("A"), -0.00001, EAST, {}}, QSTD_OK, true, ""});
    sink.Add({{std::string("B,2"), 1234.5, EAST, {}}, QSTD_OK, true, ""});
}

} // namespace

class SinkTest : public TestFolder
{
protected:
    /** What the two passes write; `sink` stays for questions. */
    std::string Written(const std::function<void(Sink&)>& compute)
    {
        sink.emplace(options, "verb");
        compute(*sink);
        OutputStream stream;
        EXPECT_EQ(stream.Open(Path("out")), "");
        sink->StartWriting(stream, nullptr);
        compute(*sink);
        EXPECT_EQ(stream.Commit(), "");
        return ContentOf("out");
    }

    OutputOptions options;
    std::optional<Sink> sink;
};

TEST_F(SinkTest, AlignsATableAndLeavesEmptyColumnsOut)
{
    options.decimals = 2;
    EXPECT_EQ(Written(FillList), "List\n"
                                 "\n"
                                 "  point   offset     azimuth\n"
                                 "  A         0.00  90-00-00.0\n"
                                 "  B,2    1234.50  90-00-00.0\n");
    EXPECT_FALSE(sink->HasFailures());
}

TEST_F(SinkTest, WritesNoTitlesAboveATableWithoutRows)
{
    EXPECT_EQ(Written([](Sink& target) {
                  target.Title("List");
                  target.Begin(LIST);
              }),
              "List\n");
}

TEST_F(SinkTest, ShowsWhyARowWasNotComputed)
{
    const std::string text = Written([](Sink& target) {
        FillList(target);
        Refuse(target);
    });
    EXPECT_THAT(text, HasSubstr("\n  C                             the two lines are parallel\n"));
    EXPECT_TRUE(sink->HasFailures());
}

TEST_F(SinkTest, ShowsARecordLineByLine)
{
    options.unit = qstd::LinearUnit::FOOT;
    EXPECT_EQ(Written([](Sink& target) {
                  target.Title("Line");
                  target.Begin(RECORD);
                  target.Add({{std::string("A"), 100.0, 2.5, EAST}, QSTD_OK, true, ""});
                  target.Note("Mind the step");
              }),
              "Line\n"
              "\n"
              "  length     100.0000  ft\n"
              "  grade        2.5000  %  upwards\n"
              "  azimuth  90-00-00.0\n"
              "\n"
              "Mind the step\n");
}

TEST_F(SinkTest, NamesTheStatusOfARecordThatWasNotComputed)
{
    EXPECT_EQ(Written([](Sink& target) {
                  target.Begin(RECORD);
                  target.Add({{std::string("A")}, QSTD_COINCIDENT_POINTS, false, ""});
              }),
              "  NOT COMPUTED: two points that must differ coincide (QSTD_COINCIDENT_POINTS)\n");
}

TEST_F(SinkTest, WritesCsvWithStatusAndQuotes)
{
    options.format = OutputFormat::CSV;
    options.decimals = 3;
    options.angle = qstd::AngleForm::DEGREES;
    const std::string text = Written([](Sink& target) {
        FillList(target);
        Refuse(target);
        target.Note("Mind the step");
    });
    EXPECT_THAT(text, testing::StartsWith("id,offset,azimuth,height,status,remark\nA,0.000,90.0"));
    EXPECT_THAT(text, HasSubstr("\n\"B,2\",1234.500,"));
    EXPECT_THAT(text, HasSubstr("\nC,,,,QSTD_PARALLEL_LINES,\"the two lines are parallel\"\n"));
    EXPECT_EQ(sink->Messages(), "Mind the step\n");
}

TEST_F(SinkTest, WritesJsonInFullPrecision)
{
    options.format = OutputFormat::JSON;
    const std::string text = Written([](Sink& target) {
        target.Begin(LIST);
        target.Add({{std::string("A"), -0.0, EAST, 0.1}, QSTD_HEIGHT_UNDETERMINED, true, ""});
    });
    const nlohmann::json object = nlohmann::json::parse(text);
    EXPECT_EQ(object["format"], "qstd/1");
    EXPECT_EQ(object["verb"], "verb");
    EXPECT_EQ(object["kind"], "point");
    EXPECT_EQ(object["computed"], true);
    EXPECT_EQ(object["status"], -1208);
    EXPECT_EQ(object["status_name"], "QSTD_HEIGHT_UNDETERMINED");
    EXPECT_EQ(object["azimuth_degrees"], 90.0);
    EXPECT_EQ(object["azimuth_units"], 5'184'000);
    EXPECT_EQ(object["height"].get<double>(), 0.1);
    EXPECT_THAT(text, HasSubstr("\"offset\":0.0,"));
    EXPECT_EQ(object["remark"], "the height cannot be determined");
}

TEST_F(SinkTest, PrintsTheColumnsAskedForInTheirOrder)
{
    options.columns = {"azimuth", " ID"};
    EXPECT_EQ(Written(FillList), "List\n"
                                 "\n"
                                 "     azimuth  point\n"
                                 "  90-00-00.0  A\n"
                                 "  90-00-00.0  B,2\n");
    options.format = OutputFormat::CSV;
    EXPECT_EQ(Written(FillList), "azimuth,id\n90-00-00.0,A\n90-00-00.0,\"B,2\"\n");
}

TEST_F(SinkTest, ProposesTheColumnThatWasMeant)
{
    options.columns = {"azimut"};
    try
    {
        Written(FillList);
        FAIL() << "an unknown column was taken";
    }
    catch (const qstd::WrongUse& problem)
    {
        EXPECT_THAT(problem.what(), HasSubstr("did you mean azimuth?"));
    }
}

TEST_F(SinkTest, PrintsAsCsvTheMainSectionAlone)
{
    options.format = OutputFormat::CSV;
    Section parameters = RECORD;
    parameters.isMain = false;
    EXPECT_EQ(Written([&parameters](Sink& target) {
                  target.Begin(parameters);
                  target.Add({{std::string("A"), 100.0, 2.5, EAST}, QSTD_OK, true, ""});
                  target.Begin(LIST);
                  target.Add({{std::string("P"), 1.0, EAST, {}}, QSTD_OK, true, ""});
              }),
              "id,offset,azimuth,height,status,remark\nP,1.0000,90-00-00.0,,QSTD_OK,\n");
}

TEST_F(SinkTest, PrintsThousandthsWithTheirSign)
{
    const Section spacing = {"spacing",
                             Layout::TABLE,
                             true,
                             {{"difference", "less nominal", Quantity::MILLI, ""},
                              {"ratio", "ratio", Quantity::NUMBER, ""},
                              {"count", "n", Quantity::COUNT, ""}}};
    // 1.5e-3 m are 1.5 mm, -2.06e-3 m are -2.06 mm.
    EXPECT_EQ(Written([&spacing](Sink& target) {
                  target.Begin(spacing);
                  target.Add({{0.0015, 0.25, int64_t{7}}, QSTD_OK, true, ""});
                  target.Add({{-0.00206, 0.5, int64_t{8}}, QSTD_OK, true, ""});
              }),
              "  less nominal     ratio  n\n"
              "          +1.5  0.250000  7\n"
              "          -2.1  0.500000  8\n");
}

TEST_F(SinkTest, TellsWarningsInEveryForm)
{
    const auto fill = [](Sink& target) {
        target.Begin(RECORD);
        qstd::Row row = {{std::string("A"), 100.0}, QSTD_OK, true, "a remark"};
        row.warnings = {"it lies far away", "check it"};
        target.Add(row);
    };
    EXPECT_EQ(Written(fill), "  length  100.0000  m\n"
                             "  Note: a remark\n"
                             "  Warning: it lies far away\n"
                             "  Warning: check it\n");
    EXPECT_FALSE(sink->HasFailures());
    EXPECT_EQ(sink->Messages(), "");
    options.format = OutputFormat::JSON;
    const nlohmann::json object = nlohmann::json::parse(Written(fill));
    EXPECT_EQ(object["remark"], "a remark");
    EXPECT_EQ(object["warnings"], (nlohmann::json{"it lies far away", "check it"}));
    EXPECT_EQ(sink->Messages(), "qstd: verb: warning: A: it lies far away\nqstd: verb: warning: A: check it\n");
    options.format = OutputFormat::CSV;
    EXPECT_THAT(Written(fill), HasSubstr(",QSTD_OK,\"a remark; Warning: it lies far away; Warning: check it\"\n"));
}

TEST_F(SinkTest, KeepsTheWarningsOfALongListShort)
{
    options.format = OutputFormat::JSON;
    Written([](Sink& target) {
        target.Begin(LIST);
        qstd::Row row = {{std::string("P")}, QSTD_OK, true, ""};
        row.warnings = {"it lies far away"};
        for (int i = 0; i < 25; ++i)
        {
            target.Add(row);
        }
    });
    const std::string messages = sink->Messages();
    EXPECT_EQ(std::count(messages.begin(), messages.end(), '\n'), 21);
    EXPECT_THAT(messages, testing::EndsWith("qstd: verb: 5 more warnings not shown\n"));
}

TEST_F(SinkTest, EndsWithFailuresWhereAResultIsNotProven)
{
    qstd::Row row = {{std::string("P")}, QSTD_OK, true, ""};
    row.isProven = false;
    Written([&row](Sink& target) {
        target.Begin(LIST);
        target.Add(row);
    });
    EXPECT_TRUE(sink->HasFailures());
}
