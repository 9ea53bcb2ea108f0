#include "core/settings.h"

#include <cstdint>
#include <memory>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/angle.h"
#include "tests/support/fake_instrument.h"
#include "tests/support/record.h"

using support::IntRead;
using support::RealRead;
using support::RecordRead;
using support::SameBits;
using testing::ElementsAre;

namespace {

void ExpectDefaultIntSettings()
{
    for (const uint32_t identifier : {0U, 49411U, 49442U, 49443U, 49445U, 54376U, 0xFFFFFFFFU})
    {
        EXPECT_EQ(0, qstdlib::Instrument().GetIntSetting(identifier)) << identifier;
    }
}

void ExpectDefaultRealSettings()
{
    EXPECT_TRUE(SameBits(1.0, qstdlib::Instrument().GetRealSetting(54376)));
    for (const uint32_t identifier : {0U, 49411U, 49442U, 49443U, 49445U, 54375U, 54377U, 0xFFFFFFFFU})
    {
        EXPECT_TRUE(SameBits(0.0, qstdlib::Instrument().GetRealSetting(identifier))) << identifier;
    }
}

void ExpectDefaultSettingsRecord()
{
    SettingsRecord record;
    support::FillWithPattern(record);
    qstdlib::Instrument().GetSettingsRecord(&record);
    for (const double value : record.values)
    {
        EXPECT_TRUE(SameBits(0.0, value));
    }
}

void ExpectDefaultFaceTwo()
{
    EXPECT_EQ(0, qstdlib::Instrument().QueryFaceTwo());
}

void ExpectDefaultObservation()
{
    ObservationRecord observation;
    support::FillWithPattern(observation);
    EXPECT_EQ(-1, qstdlib::Instrument().CoordToObservation(1.0, 2.0, 3.0, 4.0, &observation));
    EXPECT_EQ(0, observation.horizontalAngle);
    EXPECT_EQ(0, observation.zenithAngle);
    EXPECT_TRUE(SameBits(0.0, observation.distance));
    EXPECT_TRUE(SameBits(0.0, observation.secondDistance));
    EXPECT_TRUE(SameBits(0.0, observation.thirdDistance));
    EXPECT_TRUE(SameBits(0.0, observation.northing));
    EXPECT_TRUE(SameBits(0.0, observation.easting));
    EXPECT_TRUE(SameBits(0.0, observation.height));
}

void ExpectDefaultDiscriminant()
{
    for (const double value : {-1.5, -0.0, 0.0, 1e-300, 7.25})
    {
        auto other = support::Patterned<double>();
        EXPECT_TRUE(SameBits(value, qstdlib::Instrument().AdjustDiscriminant(value, &other)));
        EXPECT_TRUE(support::Untouched(other));
    }
}

void ExpectAllDefaults()
{
    ExpectDefaultIntSettings();
    ExpectDefaultRealSettings();
    ExpectDefaultSettingsRecord();
    ExpectDefaultFaceTwo();
    ExpectDefaultObservation();
    ExpectDefaultDiscriminant();
}

// Answers that differ from the default of every operation.
void SetUnusualAnswers(support::FakeInstrument& instrument)
{
    instrument.azimuthReference = 11;
    instrument.curvatureSwitch = 12;
    instrument.seaLevelSwitch = 13;
    instrument.refractionSelector = 2;
    instrument.scaleFactor = 1.25;
    instrument.meanElevation = 500.5;
    instrument.faceTwo = 1;
    instrument.observationStatus = 0;
    instrument.observation = {1, 2, 3.0, 4.0, 5.0, 6.0, 7.0, 8.0};
    instrument.discriminantOffset = 0.5;
}

void ExpectUnusualIntSettings()
{
    EXPECT_EQ(11, qstdlib::Instrument().GetIntSetting(49411));
    EXPECT_EQ(12, qstdlib::Instrument().GetIntSetting(49442));
    EXPECT_EQ(13, qstdlib::Instrument().GetIntSetting(49443));
    EXPECT_EQ(2, qstdlib::Instrument().GetIntSetting(49445));
}

void ExpectUnusualRealSettings()
{
    EXPECT_TRUE(SameBits(1.25, qstdlib::Instrument().GetRealSetting(54376)));
}

void ExpectUnusualSettingsRecord()
{
    SettingsRecord record = {};
    qstdlib::Instrument().GetSettingsRecord(&record);
    EXPECT_TRUE(SameBits(500.5, record.values[5]));
}

void ExpectUnusualFaceTwo()
{
    EXPECT_EQ(1, qstdlib::Instrument().QueryFaceTwo());
}

void ExpectUnusualObservation(support::FakeInstrument& instrument)
{
    instrument.observedTargets.clear();
    ObservationRecord observation = {};
    EXPECT_EQ(0, qstdlib::Instrument().CoordToObservation(10.0, 20.0, 30.0, 40.0, &observation));
    EXPECT_TRUE(support::SameBytes(instrument.observation, observation));
    ASSERT_EQ(1U, instrument.observedTargets.size());
    EXPECT_TRUE(SameBits(10.0, instrument.observedTargets[0].northing));
    EXPECT_TRUE(SameBits(20.0, instrument.observedTargets[0].easting));
    EXPECT_TRUE(SameBits(30.0, instrument.observedTargets[0].height));
    EXPECT_TRUE(SameBits(40.0, instrument.observedTargets[0].passthrough));
}

void ExpectUnusualDiscriminant()
{
    double other = 0.0;
    EXPECT_TRUE(SameBits(4.5, qstdlib::Instrument().AdjustDiscriminant(4.0, &other)));
}

} // namespace

// --- connection ---

TEST(ConnectInstrumentSettings, LeavesAFreshLibraryWithTheDefaults)
{
    ExpectAllDefaults();
}

TEST(ConnectInstrumentSettings, ConnectsEveryOperation)
{
    support::FakeInstrument instrument;
    SetUnusualAnswers(instrument);
    ExpectUnusualIntSettings();
    ExpectUnusualRealSettings();
    ExpectUnusualSettingsRecord();
    ExpectUnusualFaceTwo();
    ExpectUnusualObservation(instrument);
    ExpectUnusualDiscriminant();
}

TEST(ConnectInstrumentSettings, RestoresTheDefaultsForNull)
{
    support::FakeInstrument instrument;
    SetUnusualAnswers(instrument);
    ConnectInstrumentSettings(nullptr);
    ExpectAllDefaults();
    EXPECT_TRUE(instrument.reads.empty());
}

TEST(ConnectInstrumentSettings, RestoresTheDefaultsForARecordOfNulls)
{
    support::FakeInstrument instrument;
    SetUnusualAnswers(instrument);
    const InstrumentSettings empty = {};
    ConnectInstrumentSettings(&empty);
    ExpectAllDefaults();
    EXPECT_TRUE(instrument.reads.empty());
}

TEST(ConnectInstrumentSettings, CopiesTheRecord)
{
    support::FakeInstrument instrument;
    SetUnusualAnswers(instrument);
    auto operations = std::make_unique<InstrumentSettings>(support::FakeInstrument::Operations());
    ConnectInstrumentSettings(operations.get());
    *operations = InstrumentSettings{};
    ExpectUnusualIntSettings();
    operations.reset();
    ExpectUnusualRealSettings();
    ExpectUnusualSettingsRecord();
    ExpectUnusualFaceTwo();
    ExpectUnusualDiscriminant();
}

// Each operation in turn is left out: it alone falls back, and the other five are the instrument's.
class LeavesOut : public testing::TestWithParam<int>
{
};

TEST_P(LeavesOut, OneOperation)
{
    support::FakeInstrument instrument;
    SetUnusualAnswers(instrument);
    InstrumentSettings operations = support::FakeInstrument::Operations();
    const int left = GetParam();
    operations.GetIntSetting = left == 0 ? nullptr : operations.GetIntSetting;
    operations.GetRealSetting = left == 1 ? nullptr : operations.GetRealSetting;
    operations.GetSettingsRecord = left == 2 ? nullptr : operations.GetSettingsRecord;
    operations.QueryFaceTwo = left == 3 ? nullptr : operations.QueryFaceTwo;
    operations.CoordToObservation = left == 4 ? nullptr : operations.CoordToObservation;
    operations.AdjustDiscriminant = left == 5 ? nullptr : operations.AdjustDiscriminant;
    ConnectInstrumentSettings(&operations);

    left == 0 ? ExpectDefaultIntSettings() : ExpectUnusualIntSettings();
    left == 1 ? ExpectDefaultRealSettings() : ExpectUnusualRealSettings();
    left == 2 ? ExpectDefaultSettingsRecord() : ExpectUnusualSettingsRecord();
    left == 3 ? ExpectDefaultFaceTwo() : ExpectUnusualFaceTwo();
    left == 4 ? ExpectDefaultObservation() : ExpectUnusualObservation(instrument);
    left == 5 ? ExpectDefaultDiscriminant() : ExpectUnusualDiscriminant();
}

INSTANTIATE_TEST_SUITE_P(ConnectInstrumentSettings, LeavesOut, testing::Range(0, 6));

TEST(ConnectInstrumentSettings, ForgetsThePreviousInstrument)
{
    // A record with one operation after one with all: the others fall back, they do not stay the previous one's.
    support::FakeInstrument instrument;
    SetUnusualAnswers(instrument);
    InstrumentSettings operations = {};
    operations.QueryFaceTwo = support::FakeInstrument::Operations().QueryFaceTwo;
    ConnectInstrumentSettings(&operations);
    ExpectUnusualFaceTwo();
    ExpectDefaultIntSettings();
    ExpectDefaultRealSettings();
    ExpectDefaultSettingsRecord();
    ExpectDefaultObservation();
    ExpectDefaultDiscriminant();
}

TEST(ConnectInstrumentSettings, ShowsAChangeToTheNextCall)
{
    support::FakeInstrument instrument;
    EXPECT_TRUE(SameBits(1.0, qstdlib::GetScaleFactor()));
    instrument.scaleFactor = 0.9996;
    EXPECT_TRUE(SameBits(0.9996, qstdlib::GetScaleFactor()));
    EXPECT_EQ(0, qstdlib::IsSeaLevelCorrectionOn());
    instrument.seaLevelSwitch = 1;
    EXPECT_EQ(1, qstdlib::IsSeaLevelCorrectionOn());
}

// --- getters ---

TEST(Getters, AnswerTheDefaultsStandAlone)
{
    EXPECT_EQ(0, qstdlib::IsCurvRefrCorrectionOn());
    EXPECT_TRUE(SameBits(0.132, qstdlib::GetRefractionCoefficient()));
    EXPECT_EQ(0, qstdlib::IsScaleFactorApplied());
    EXPECT_TRUE(SameBits(1.0, qstdlib::GetScaleFactor()));
    EXPECT_EQ(0, qstdlib::IsSeaLevelCorrectionOn());
    EXPECT_TRUE(SameBits(0.0, qstdlib::GetMeanElevation()));
}

TEST(Getters, PassTheSwitchesOnAsTheyStand)
{
    support::FakeInstrument instrument;
    for (const int32_t answer : {0, 1, 2, -1, 65537})
    {
        instrument.curvatureSwitch = answer;
        instrument.seaLevelSwitch = answer + 7;
        EXPECT_EQ(answer, qstdlib::IsCurvRefrCorrectionOn());
        EXPECT_EQ(answer + 7, qstdlib::IsSeaLevelCorrectionOn());
    }
}

TEST(Getters, TakeTheRefractionCoefficientFromTheTable)
{
    support::FakeInstrument instrument;
    instrument.refractionSelector = 0;
    EXPECT_TRUE(SameBits(0.132, qstdlib::GetRefractionCoefficient()));
    instrument.refractionSelector = 1;
    EXPECT_TRUE(SameBits(0.133, qstdlib::GetRefractionCoefficient()));
    instrument.refractionSelector = 2;
    EXPECT_TRUE(SameBits(0.20, qstdlib::GetRefractionCoefficient()));
}

TEST(Getters, TakeAScaleForAppliedUnlessExactlyOne)
{
    support::FakeInstrument instrument;
    for (const double scale : {0.0, -1.0, 0.9996, 2.0, 1.0 + 2.220446049250313e-16, 1.0 - 1.1102230246251565e-16})
    {
        instrument.scaleFactor = scale;
        EXPECT_EQ(1, qstdlib::IsScaleFactorApplied()) << scale;
        EXPECT_TRUE(SameBits(scale, qstdlib::GetScaleFactor()));
    }
    instrument.scaleFactor = 1.0;
    EXPECT_EQ(0, qstdlib::IsScaleFactorApplied());
}

TEST(Getters, TakeTheMeanElevationFromTheSixthEntry)
{
    support::FakeInstrument instrument; // the other eleven hold -1e9
    instrument.meanElevation = 1234.5;
    EXPECT_TRUE(SameBits(1234.5, qstdlib::GetMeanElevation()));
}

TEST(Getters, ReadEachTheirOwnSettingOnEveryCall)
{
    support::FakeInstrument instrument;
    for (int call = 0; call < 2; ++call)
    {
        instrument.reads.clear();
        qstdlib::IsScaleFactorApplied();
        qstdlib::GetScaleFactor();
        qstdlib::IsSeaLevelCorrectionOn();
        qstdlib::GetMeanElevation();
        qstdlib::IsCurvRefrCorrectionOn();
        qstdlib::GetRefractionCoefficient();
        EXPECT_THAT(instrument.reads, ElementsAre(RealRead(54376), RealRead(54376), IntRead(49443), RecordRead(),
                                                  IntRead(49442), IntRead(49445)));
    }
}

TEST(SettingIdentifiers, AreTheInstrumentsOwn)
{
    EXPECT_EQ(0xC103, SETTING_AZIMUTH_REFERENCE);
    EXPECT_EQ(0xC122, SETTING_CURVATURE_REFRACTION);
    EXPECT_EQ(0xC123, SETTING_SEA_LEVEL);
    EXPECT_EQ(0xC125, SETTING_REFRACTION_SELECTOR);
    EXPECT_EQ(0xD468, SETTING_SCALE_FACTOR);
}
