#include "instrument/instrument_options.h"

namespace qstd {

SimulatedInstrument InstrumentFrom(const InstrumentOptions& options, LinearUnit unit)
{
    SimulatedInstrument instrument;
    instrument.azimuthReference = options.isSouthAzimuth ? 1 : 0;
    instrument.isFaceTwo = options.isFaceTwo;
    instrument.scaleFactor = options.scale.value_or(1.0);
    instrument.seaLevel = options.seaLevel ? 1 : 0;
    instrument.meanElevation = ToMetres(options.seaLevel.value_or(0.0), unit);
    instrument.curvatureRefraction = options.refraction ? 1 : 0;
    instrument.refractionSelector = options.refraction.value_or(0);
    instrument.instrumentHeight = options.instrumentHeight;
    return instrument;
}

} // namespace qstd
