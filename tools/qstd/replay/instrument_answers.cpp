#include "replay/instrument_answers.h"

#include "replay/records.h"

#include <cmath>
#include <memory>
#include <utility>

namespace qstd {

namespace {

/** The operations of the library carry no context: this is it. */
InstrumentAnswers connected;

int32_t GetIntSetting(uint32_t identifier)
{
    switch (identifier)
    {
    case SETTING_AZIMUTH_REFERENCE:
        return connected.azimuthReference.value_or(0);
    case SETTING_CURVATURE_REFRACTION:
        return connected.curvatureRefraction.value_or(0);
    case SETTING_SEA_LEVEL:
        return connected.seaLevel.value_or(0);
    case SETTING_REFRACTION_SELECTOR:
        return connected.refractionSelector.value_or(0);
    default:
        return 0;
    }
}

double GetRealSetting(uint32_t identifier)
{
    return identifier == SETTING_SCALE_FACTOR ? connected.scaleFactor.value_or(1.0) : 0.0;
}

void GetSettingsRecord(SettingsRecord* record)
{
    *record = {};
    record->values[5] = connected.meanElevation.value_or(0.0);
}

int32_t QueryFaceTwo()
{
    return connected.faceTwo.value_or(0);
}

int32_t CoordToObservation(double northing, double easting, double height, double passthrough,
                           ObservationRecord* observation)
{
    if (connected.observation)
    {
        *observation = connected.observation->record;
        return connected.observation->status;
    }
    const PointRecord target = {northing, easting, height, POINT_HAS_PLAN | POINT_HAS_HEIGHT};
    return connected.simulatedInstrument->Observe(target, passthrough, observation) ? QSTD_OK : QSTD_REJECTED;
}

double AdjustDiscriminant(double value, double* /*other*/)
{
    return std::fabs(value) < *connected.discriminantTolerance ? 0.0 : value;
}

template <typename Value>
void ReadAnswer(ObjectReader& reader, const char* name, std::optional<Value>& answer)
{
    Value value = {};
    if (reader.Read(name, value, Presence::OPTIONAL))
    {
        answer = value;
    }
}

class Connection final : public PreparedCall
{
public:
    explicit Connection(ObjectReader& reader)
    {
        const Json* settings = reader.Find("settings", Presence::REQUIRED);
        if (settings != nullptr && !settings->is_null())
        {
            reader.ReadFound("settings", *settings, answers.emplace());
        }
    }

    CallOutcome Make() override
    {
        ConnectAnswers(answers);
        return {};
    }

private:
    std::optional<InstrumentAnswers> answers;
};

} // namespace

void ReadValue(const Source& source, FixedObservation& observation)
{
    ObjectReader reader(source);
    reader.Read("status", observation.status);
    reader.Read("record", observation.record);
    reader.Finish();
}

void ReadValue(const Source& source, SimulatedInstrument& instrument)
{
    ObjectReader reader(source);
    reader.Read("station", instrument.station);
    reader.Read("instrumentHeight", instrument.instrumentHeight);
    reader.Read("orientation", instrument.orientation);
    reader.Finish();
}

void ReadValue(const Source& source, InstrumentAnswers& answers)
{
    ObjectReader reader(source);
    ReadAnswer(reader, "azimuthReference", answers.azimuthReference);
    ReadAnswer(reader, "curvatureRefraction", answers.curvatureRefraction);
    ReadAnswer(reader, "seaLevel", answers.seaLevel);
    ReadAnswer(reader, "refractionSelector", answers.refractionSelector);
    ReadAnswer(reader, "scaleFactor", answers.scaleFactor);
    ReadAnswer(reader, "meanElevation", answers.meanElevation);
    ReadAnswer(reader, "faceTwo", answers.faceTwo);
    ReadAnswer(reader, "discriminantTolerance", answers.discriminantTolerance);
    ReadAnswer(reader, "observation", answers.observation);
    ReadAnswer(reader, "simulatedInstrument", answers.simulatedInstrument);
    reader.Finish();
    if (answers.observation && answers.simulatedInstrument)
    {
        source.Refuse("\"observation\" and \"simulatedInstrument\" exclude each other");
    }
    if (answers.simulatedInstrument)
    {
        answers.simulatedInstrument->azimuthReference = answers.azimuthReference.value_or(0);
        answers.simulatedInstrument->isFaceTwo = answers.faceTwo == 1;
    }
}

void ConnectAnswers(const std::optional<InstrumentAnswers>& answers)
{
    connected = answers.value_or(InstrumentAnswers());
    if (!answers)
    {
        ConnectInstrumentSettings(nullptr);
        return;
    }
    // An operation without answers stays null, as an instrument without it would leave it.
    const bool hasIntegers = connected.azimuthReference || connected.curvatureRefraction || connected.seaLevel ||
                             connected.refractionSelector;
    const bool hasService = connected.observation || connected.simulatedInstrument;
    const InstrumentSettings operations = {hasIntegers ? GetIntSetting : nullptr,
                                           connected.scaleFactor ? GetRealSetting : nullptr,
                                           connected.meanElevation ? GetSettingsRecord : nullptr,
                                           connected.faceTwo ? QueryFaceTwo : nullptr,
                                           hasService ? CoordToObservation : nullptr,
                                           connected.discriminantTolerance ? AdjustDiscriminant : nullptr};
    ConnectInstrumentSettings(&operations);
}

Preparation PrepareConnection()
{
    return [](ObjectReader& reader) -> std::unique_ptr<PreparedCall> { return std::make_unique<Connection>(reader); };
}

} // namespace qstd
