/**
 * @file array_calls.h
 * The calls that take an array and its length. The length is that of the array, or less where it is given.
 */
#ifndef QSTD_ARRAY_CALLS_H
#define QSTD_ARRAY_CALLS_H

#include "replay/prepared_call.h"

namespace qstd {

/** QCogoCalcArea. */
Preparation PrepareArea();

/** QSTNMultiResect. */
Preparation PrepareMultiResection();

} // namespace qstd

#endif
