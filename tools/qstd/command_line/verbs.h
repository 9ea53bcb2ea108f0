/**
 * @file verbs.h
 * The verbs of qstd, by family.
 */
#ifndef QSTD_VERBS_H
#define QSTD_VERBS_H

#include "command_line/command_line.h"

namespace qstd {

void AddCogoVerbs(CommandLine& commandLine);
void AddMeasureVerbs(CommandLine& commandLine);
void AddReferenceVerbs(CommandLine& commandLine);
void AddStationVerbs(CommandLine& commandLine);
void AddGeneralVerbs(CommandLine& commandLine);
void AddReplayVerb(CommandLine& commandLine);

} // namespace qstd

#endif
