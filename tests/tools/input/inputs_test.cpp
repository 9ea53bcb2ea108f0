#include "input/inputs.h"

#include "output/test_folder.h"
#include "text/outcome.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using qstd::Inputs;
using qstd::KnownPoint;
using qstd::Messages;
using qstd::Unreadable;
using qstd::WrongUse;
using testing::HasSubstr;

class InputsTest : public TestFolder
{
protected:
    /** The message of the wrong use that asking for a point is. */
    static std::string Problem(Inputs& inputs, const std::string& point)
    {
        try
        {
            inputs.Point(point);
        }
        catch (const WrongUse& problem)
        {
            return problem.what();
        }
        return "no problem";
    }

    Messages messages;
};

TEST_F(InputsTest, TakesCoordinatesAsAPoint)
{
    Inputs inputs("", std::nullopt, messages);
    const KnownPoint plan = inputs.Point("3587.52,-89562.5");
    EXPECT_EQ(plan.id, "3587.52,-89562.5");
    EXPECT_EQ(plan.point.northing, 3587.52);
    EXPECT_EQ(plan.point.easting, -89562.5);
    EXPECT_EQ(plan.point.flags, POINT_HAS_PLAN);
    const KnownPoint spatial = inputs.Point("1, 2, 3.5");
    EXPECT_EQ(spatial.point.height, 3.5);
    EXPECT_EQ(spatial.point.flags, POINT_HAS_PLAN + POINT_HAS_HEIGHT);
}

TEST_F(InputsTest, SaysWhatIsWrongWithCoordinates)
{
    Inputs inputs("", std::nullopt, messages);
    for (const char* text : {"1,", "1,b", "1,2,3,4", "1,1e9,x", ",", "1,nan"})
    {
        EXPECT_THAT(Problem(inputs, text), HasSubstr("write N,E or N,E,H")) << text;
    }
    EXPECT_THAT(Problem(inputs, "P1"), HasSubstr("give --points FILE"));
    EXPECT_THAT(Problem(inputs, "1,1e9"), HasSubstr("beyond 100 000 km"));
}

TEST_F(InputsTest, FindsANameInTheTableFirst)
{
    Inputs inputs(Made("points.csv", "id;n;e;h\nP1;1;2;3\n5,6;7;8;\n"), std::nullopt, messages);
    EXPECT_EQ(inputs.Point("P1").point.height, 3.0);
    EXPECT_EQ(inputs.Point("5,6").point.northing, 7.0);
    EXPECT_EQ(inputs.Point("5,7").point.northing, 5.0);
    EXPECT_THAT(Problem(inputs, "P2"), HasSubstr("did you mean P1?"));
    EXPECT_FALSE(inputs.FindPoint("P2").has_value());
}

TEST_F(InputsTest, ReadsAnAngleInTheFormGiven)
{
    EXPECT_EQ(Inputs("", std::nullopt, messages).Angle("90d", "azimuth"), ANGLE_QUARTER_CIRCLE);
    EXPECT_EQ(Inputs("", qstd::AngleForm::GON, messages).Angle("100", "azimuth"), ANGLE_QUARTER_CIRCLE);
    try
    {
        static_cast<void>(Inputs("", std::nullopt, messages).Angle("100", "azimuth"));
        FAIL() << "an angle without unit was taken";
    }
    catch (const WrongUse& problem)
    {
        EXPECT_THAT(problem.what(), testing::StartsWith("azimuth \"100\": no unit"));
    }
}

TEST_F(InputsTest, ReadsRowsSeveralTimesOver)
{
    const std::string path = Made("rows.csv", "id,n,e\nA,1,2\nB,3,4\n");
    Inputs inputs("", std::nullopt, messages);
    for (int pass = 0; pass < 2; ++pass)
    {
        qstd::InputTable& table = inputs.Rows(path);
        qstd::TableRow row;
        std::string names;
        while (table.Next(row))
        {
            names += row.cells[0];
        }
        EXPECT_EQ(names, "AB");
    }
    EXPECT_FALSE(messages.HasErrors());
}

TEST_F(InputsTest, TellsWhatCannotBeRead)
{
    Inputs inputs(Path("none.csv"), std::nullopt, messages);
    EXPECT_THROW(static_cast<void>(inputs.Points()), Unreadable);
    EXPECT_THROW(static_cast<void>(inputs.Rows(Path("neither.csv"))), Unreadable);
    EXPECT_THAT(messages.Text(), HasSubstr("none.csv: cannot be read"));
    EXPECT_THAT(messages.Text(), HasSubstr("neither.csv: cannot be read"));
}

TEST_F(InputsTest, RefusesPointsThatDoNotReadWell)
{
    Inputs inputs(Made("points.csv", "id,n,e\nA,1,x\n"), std::nullopt, messages);
    EXPECT_THROW(static_cast<void>(inputs.Point("A")), Unreadable);
    EXPECT_THAT(messages.Text(), HasSubstr("points.csv:2: e \"x\": not a number"));
}

TEST_F(InputsTest, GroupsSightsIntoSetUps)
{
    Inputs inputs("", std::nullopt, messages);
    const std::string path = Made("sights.csv", "station,target,hz\nS,A,1d\nS,B,2d\nT,A,3d\n");
    EXPECT_EQ(inputs.SetUps(path).size(), 2U);
    EXPECT_EQ(&inputs.SetUps(path), &inputs.SetUps(path));
}

TEST_F(InputsTest, TakesANameOrCoordinatesThatSaySo)
{
    Inputs inputs(Made("points.csv", "id;n;e;h\n50;1;2;3\nid=7;7;8;9\n"), std::nullopt, messages);
    EXPECT_EQ(inputs.Point("id=50").id, "50");
    EXPECT_EQ(inputs.Point("ID= 50").point.easting, 2.0);
    // A name that reads so is found first.
    EXPECT_EQ(inputs.Point("id=7").point.northing, 7.0);
    EXPECT_THAT(Problem(inputs, "id=51"), HasSubstr("not in"));
    const KnownPoint marked = inputs.Point("N=4, e = 5,H=6");
    EXPECT_EQ(marked.point.northing, 4.0);
    EXPECT_EQ(marked.point.easting, 5.0);
    EXPECT_EQ(marked.point.height, 6.0);
    EXPECT_EQ(inputs.Point("4,E=5").point.flags, POINT_HAS_PLAN);
    for (const char* text : {"E=5,N=4", "N=,E=5", "N=4,E=5,X=6", "N==4,E=5"})
    {
        EXPECT_THAT(Problem(inputs, text), HasSubstr("write N,E or N,E,H")) << text;
    }
}
