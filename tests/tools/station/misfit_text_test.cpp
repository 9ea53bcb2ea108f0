#include "station/misfit_text.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "field_work.h"

using qstd::AngleForm;
using qstd::ARC_SECOND;
using qstd::LinearUnit;
using qstd::MisfitTexts;
using qstd::StationSolution;
using qstd::SuspectKind;
using qstd::SuspectText;
using survey::FieldWork;
using survey::Radians;
using survey::Reading;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Not;

namespace {

/** FP-7 sighted once, FP-8 twice, in lines 3 and 4. */
class Book
{
public:
    Book()
    {
        for (const char* const name : {"FP-7", "FP-8", "FP-8"})
        {
            qstd::Sight sight;
            sight.target = name;
            sight.line = sights.size() + 2;
            sights.push_back(sight);
        }
        for (const qstd::Sight& sight : sights)
        {
            qstd::PreparedSight prepared;
            prepared.sight = &sight;
            solution.sights.push_back(prepared);
        }
    }

    [[nodiscard]] std::string Text(SuspectKind kind, size_t sight, std::optional<double> error,
                                   std::optional<double> fit = std::nullopt, AngleForm form = AngleForm::DMS) const
    {
        qstd::Suspect suspect;
        suspect.kind = kind;
        suspect.sight = sight;
        suspect.error = error;
        suspect.fit = fit;
        return SuspectText(suspect, solution, form);
    }

    std::vector<qstd::Sight> sights;
    StationSolution solution;
};

/** Five targets all around with distances, each twice: exact but for the rounding of the circle. */
FieldWork Exact()
{
    FieldWork work = {1523.4, -817.9, 212.35, Radians(73.0), {}, {}};
    const double places[][3] = {
        {14.0, 212.0, 11.0}, {71.0, 96.0, -4.0}, {133.0, 341.0, 21.0}, {196.0, 154.0, 3.0}, {248.0, 287.0, -9.0}};
    for (const auto& place : places)
    {
        work.AddPoint("P" + std::to_string(work.points.size() + 1), Radians(place[0]), place[1], place[2]);
        work.Read(work.points.back().id, Reading::SLOPE_DISTANCE, {}, 1.5);
    }
    return work;
}

std::vector<std::string> TextsOf(const FieldWork& work)
{
    return MisfitTexts(work.Solve()->solution, AngleForm::DMS);
}

} // namespace

TEST(SuspectText, TellsSizeAndSign)
{
    const Book book;
    EXPECT_EQ(book.Text(SuspectKind::DISTANCE, 0, 0.048), "FP-7: distance 48.0 mm too long");
    EXPECT_EQ(book.Text(SuspectKind::DISTANCE, 0, -1.2345), "FP-7: distance 1.234 m too short");
    EXPECT_EQ(book.Text(SuspectKind::DIRECTION, 0, 38.0 * ARC_SECOND), "FP-7: direction 38.0\" too large");
    EXPECT_EQ(book.Text(SuspectKind::DIRECTION, 0, -Radians(0.9)), "FP-7: direction 0-54-00.0 too small");
    EXPECT_EQ(book.Text(SuspectKind::HEIGHT, 0, 0.1),
              "FP-7: its height or reflector height 100.0 mm too large; the others agree");
    EXPECT_EQ(book.Text(SuspectKind::HEIGHT, 0, -0.1),
              "FP-7: its height or reflector height 100.0 mm too small; the others agree");
    EXPECT_EQ(book.Text(SuspectKind::POINT, 0, std::nullopt),
              "FP-7: its coordinates or its name do not fit the other sights");
}

TEST(SuspectText, TellsHowTheOthersFit)
{
    const Book book;
    EXPECT_EQ(book.Text(SuspectKind::DISTANCE, 0, 0.048, 2.1 * ARC_SECOND),
              "FP-7: distance 48.0 mm too long; without it the sights fit to 2.1\"");
    EXPECT_EQ(book.Text(SuspectKind::POINT, 1, std::nullopt, 2.1 * ARC_SECOND),
              "FP-8: its coordinates or its name do not fit the other sights; without it the sights fit to 2.1\"");
}

TEST(SuspectText, NamesTheLineOfOneSightOfSeveral)
{
    const Book book;
    EXPECT_EQ(book.Text(SuspectKind::DISTANCE, 2, 0.048), "FP-8 in line 4: distance 48.0 mm too long");
}

TEST(SuspectText, IsInTheUnitOfTheJobAndTheFormOfTheAngles)
{
    Book book;
    book.solution.unit = LinearUnit::FOOT;
    EXPECT_EQ(book.Text(SuspectKind::DISTANCE, 0, 0.25), "FP-7: distance 0.2500 ft too long");
    EXPECT_EQ(book.Text(SuspectKind::DIRECTION, 0, Radians(0.9), std::nullopt, AngleForm::GON),
              "FP-7: direction 1.0000g too large");
}

TEST(SuspectName, IsOneWord)
{
    EXPECT_STREQ(qstd::SuspectName(SuspectKind::DIRECTION), "direction");
    EXPECT_STREQ(qstd::SuspectName(SuspectKind::DISTANCE), "distance");
    EXPECT_STREQ(qstd::SuspectName(SuspectKind::HEIGHT), "height");
    EXPECT_STREQ(qstd::SuspectName(SuspectKind::POINT), "point");
}

TEST(MisfitTexts, SayNothingWhereAllFits)
{
    EXPECT_THAT(TextsOf(Exact()), IsEmpty());
}

TEST(MisfitTexts, SayHowMuchTheSightsDoNotFitAndWhichOne)
{
    FieldWork work = Exact();
    *work.setUp.sights[2].slopeDistance += 0.9;
    const std::vector<std::string> texts = TextsOf(work);
    ASSERT_FALSE(texts.empty());
    EXPECT_THAT(texts[0], MatchesRegex("the sights do not fit: one direction ± [0-9-]+\\.[0-9]\"?; directions and "
                                       "distances miss by [0-9]+ times what is expected of them"));
    // The slope rises 22.5 m over 341 m: 0.9 m along it are 0.898 m in plan, and 59 mm in the height.
    EXPECT_THAT(texts, Contains(MatchesRegex("P3: distance 89[78]\\.. mm too long; without it the sights fit to "
                                             "0\\..\"")));
    // The distance explains its height, too.
    EXPECT_THAT(texts, Not(Contains(HasSubstr("height"))));
}

TEST(MisfitTexts, TellAMildMisfitFromAStrongOne)
{
    FieldWork work = Exact();
    *work.setUp.sights[2].slopeDistance += 0.08;
    EXPECT_THAT(TextsOf(work), Contains(HasSubstr("the sights fit badly: one direction ± ")));
}

TEST(MisfitTexts, TellOfHeights)
{
    FieldWork work = Exact();
    work.setUp.sights[3].targetHeight += 0.1;
    EXPECT_THAT(
        TextsOf(work),
        ElementsAre(MatchesRegex("the heights agree badly: they lie (99|100)\\.. mm apart, [0-9.]+ times what is "
                                 "expected"),
                    MatchesRegex("P4: its height or reflector height (99|100)\\.. mm too large; the others "
                                 "agree")));
}

TEST(MisfitTexts, NameWhatNothingChecks)
{
    FieldWork work = {1523.4, -817.9, 212.35, Radians(73.0), {}, {}};
    work.AddPoint("P1", Radians(14.0), 212.0);
    work.AddPoint("P2", Radians(133.0), 341.0);
    work.Read("P1", Reading::LEVEL_DISTANCE);
    work.Read("P2", Reading::DIRECTION);
    work.Read("P1", Reading::LEVEL_DISTANCE);
    EXPECT_EQ(qstd::UncheckedText(work.Solve()->solution),
              "hardly anything checks the direction to P2: an error there would not show");
}

TEST(MisfitTexts, AreNoneForAStationThatWasNotSolved)
{
    StationSolution solution;
    solution.causes.emplace_back("with A and B exchanged the sights fit to 2.0\"");
    EXPECT_THAT(MisfitTexts(solution, AngleForm::DMS), IsEmpty());
}
