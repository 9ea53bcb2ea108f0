// The connected instrument, and getters for the settings that computations read. Nothing is cached.
#ifndef QSTDLIB_CORE_SETTINGS_H
#define QSTDLIB_CORE_SETTINGS_H

#include <cstdint>

#include "qstdlib/instrument.h"

namespace qstdlib {

// Switches answer as the instrument does: on only when exactly 1.
constexpr int32_t SETTING_ON = 1;

// The operations in force: the connected instrument's, or their stand-alone defaults.
const InstrumentSettings& Instrument();

int32_t IsCurvRefrCorrectionOn();
double GetRefractionCoefficient();
int16_t IsScaleFactorApplied();
double GetScaleFactor();
int32_t IsSeaLevelCorrectionOn();
double GetMeanElevation();

} // namespace qstdlib

#endif
