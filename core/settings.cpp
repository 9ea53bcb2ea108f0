#include "core/settings.h"

namespace qstdlib {

namespace {

// The instrument that the library computes for when it stands alone: north azimuths, no corrections, face one, no
// observation service.

int32_t DefaultIntSetting(uint32_t /*identifier*/)
{
    return 0;
}

double DefaultRealSetting(uint32_t identifier)
{
    return identifier == SETTING_SCALE_FACTOR ? 1.0 : 0.0;
}

void DefaultSettingsRecord(SettingsRecord* record)
{
    *record = SettingsRecord{};
}

int32_t DefaultFaceTwo()
{
    return 0;
}

int32_t DefaultObservation(double /*northing*/, double /*easting*/, double /*height*/, double /*passthrough*/,
                           ObservationRecord* observation)
{
    *observation = ObservationRecord{};
    return QSTD_REJECTED;
}

double DefaultDiscriminant(double value, double* /*other*/)
{
    return value;
}

constexpr InstrumentSettings DEFAULTS = {DefaultIntSetting, DefaultRealSetting, DefaultSettingsRecord,
                                         DefaultFaceTwo,    DefaultObservation, DefaultDiscriminant};

InstrumentSettings connected = DEFAULTS;

template <typename Operation>
Operation ValueOr(Operation operation, Operation fallback)
{
    return operation != nullptr ? operation : fallback;
}

} // namespace

const InstrumentSettings& Instrument()
{
    return connected;
}

int32_t IsCurvRefrCorrectionOn()
{
    return Instrument().GetIntSetting(SETTING_CURVATURE_REFRACTION);
}

double GetRefractionCoefficient()
{
    // The instrument answers 0, 1 or 2, and nothing else.
    static constexpr double COEFFICIENTS[] = {0.132, 0.133, 0.20};
    return COEFFICIENTS[Instrument().GetIntSetting(SETTING_REFRACTION_SELECTOR)];
}

int16_t IsScaleFactorApplied()
{
    return Instrument().GetRealSetting(SETTING_SCALE_FACTOR) != 1.0 ? 1 : 0;
}

double GetScaleFactor()
{
    return Instrument().GetRealSetting(SETTING_SCALE_FACTOR);
}

int32_t IsSeaLevelCorrectionOn()
{
    return Instrument().GetIntSetting(SETTING_SEA_LEVEL);
}

double GetMeanElevation()
{
    constexpr int MEAN_ELEVATION = 5;
    SettingsRecord record = {};
    Instrument().GetSettingsRecord(&record);
    return record.values[MEAN_ELEVATION];
}

} // namespace qstdlib

using namespace qstdlib;

void ConnectInstrumentSettings(const InstrumentSettings* settings)
{
    const InstrumentSettings& given = settings != nullptr ? *settings : DEFAULTS;
    connected = {ValueOr(given.GetIntSetting, DEFAULTS.GetIntSetting),
                 ValueOr(given.GetRealSetting, DEFAULTS.GetRealSetting),
                 ValueOr(given.GetSettingsRecord, DEFAULTS.GetSettingsRecord),
                 ValueOr(given.QueryFaceTwo, DEFAULTS.QueryFaceTwo),
                 ValueOr(given.CoordToObservation, DEFAULTS.CoordToObservation),
                 ValueOr(given.AdjustDiscriminant, DEFAULTS.AdjustDiscriminant)};
}
