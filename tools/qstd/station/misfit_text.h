/**
 * @file misfit_text.h
 * What does not fit and which sight it is, in words.
 */
#ifndef QSTD_MISFIT_TEXT_H
#define QSTD_MISFIT_TEXT_H

#include "station/station_solution.h"

#include <string>
#include <vector>

namespace qstd {

/** The size of an error or precision: seconds, or an angle where it is large. */
std::string AngleSizeText(double radians, AngleForm angles);

/** direction, distance, height, point. */
const char* SuspectName(SuspectKind kind);

/** A suspect in words, such as "FP-7: distance 48.0 mm too long". */
std::string SuspectText(const Suspect& suspect, const StationSolution& solution, AngleForm angles);

/** Sights and heights that do not fit, suspects and causes, a sentence each; nothing where all fits. */
std::vector<std::string> MisfitTexts(const StationSolution& solution, AngleForm angles);

/** Up to three observations that hardly anything checks; empty where there is none. */
std::string UncheckedText(const StationSolution& solution);

} // namespace qstd

#endif
