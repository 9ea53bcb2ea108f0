/**
 * @file instrument_answers.h
 * The instrument of a replay: answers that a call has laid down, until the next one does.
 */
#ifndef QSTD_INSTRUMENT_ANSWERS_H
#define QSTD_INSTRUMENT_ANSWERS_H

#include "instrument/simulated_instrument.h"
#include "replay/arguments.h"
#include "replay/prepared_call.h"

#include <qstdlib.h>

#include <cstdint>
#include <optional>

namespace qstd {

/** The observation that the instrument makes of every target. */
struct FixedObservation
{
    int32_t status = QSTD_OK;
    ObservationRecord record = {};
};

/** What is not given keeps its stand-alone default. */
struct InstrumentAnswers
{
    std::optional<int32_t> azimuthReference;
    std::optional<int32_t> curvatureRefraction;
    std::optional<int32_t> seaLevel;
    std::optional<int32_t> refractionSelector;
    std::optional<double> scaleFactor;
    std::optional<double> meanElevation;
    std::optional<int32_t> faceTwo;
    std::optional<double> discriminantTolerance; /**< smaller discriminants are taken for zero */
    std::optional<FixedObservation> observation; /**< at most one of these two is given */
    std::optional<SimulatedInstrument> simulatedInstrument;
};

void ReadValue(const Source& source, FixedObservation& observation);
void ReadValue(const Source& source, SimulatedInstrument& instrument);
void ReadValue(const Source& source, InstrumentAnswers& answers);

/** Connects an instrument with these answers to the library, or none. */
void ConnectAnswers(const std::optional<InstrumentAnswers>& answers);

/** ConnectInstrumentSettings: its settings are null, for the defaults, or the answers to lay down. */
Preparation PrepareConnection();

} // namespace qstd

#endif
