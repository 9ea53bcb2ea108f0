// One trial a function: a realistic input from the survey, what must be defined before, and the call that is counted.
#ifndef QSTDLIB_BENCH_TARGET_TRIALS_H
#define QSTDLIB_BENCH_TARGET_TRIALS_H

#include <cstddef>
#include <vector>

#include "functions.h"
#include "meter.h"
#include "survey.h"

namespace target {

struct Trial
{
    const char* name;
    void (*run)(const Functions& library, Survey& survey, Meter& meter);
};

// Sights around a free station, their directions spread over the horizon.
std::vector<ResectObservation> Sights(Survey& survey, int16_t count);

extern const Trial TRIALS[];
extern const size_t TRIAL_COUNT;

} // namespace target

#endif
