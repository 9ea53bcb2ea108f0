/**
 * @file qstdlib.h
 * The whole interface of QSTDLIB, the surveying calculations of a total station.
 *
 * C and C++ callers include this one header. Angles are integers (AngleUnit, 1/16 of an arc-second), coordinates and
 * distances are doubles in one linear unit (metres wherever a formula holds a constant of the earth). Results go into
 * records that the caller owns; almost every function returns a status (QstdStatus).
 *
 * Input that is not finite is not detected: a status of 0 does not exclude that results are not finite either, and an
 * angle formed from not-a-number is 0.
 *
 * The library is used by one thread at a time: it takes no locks, and the connected instrument is one for all callers.
 */
#ifndef QSTDLIB_H
#define QSTDLIB_H

#include "qstdlib/cogo.h"
#include "qstdlib/export.h"
#include "qstdlib/instrument.h"
#include "qstdlib/measure.h"
#include "qstdlib/reference.h"
#include "qstdlib/station.h"
#include "qstdlib/types.h"

#endif
