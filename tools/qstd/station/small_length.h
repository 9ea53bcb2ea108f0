/**
 * @file small_length.h
 * Residuals, precisions and shifts as people read them: millimetres, or feet with four decimals.
 */
#ifndef QSTD_SMALL_LENGTH_H
#define QSTD_SMALL_LENGTH_H

#include "text/unit.h"

#include <string>
#include <string_view>

namespace qstd {

/** mm, ft, us-ft. */
std::string_view SmallLengthSymbol(LinearUnit unit);

/** The figure alone. @param length  in the unit of the job */
std::string SmallLengthFigure(double length, LinearUnit unit);

/** As SmallLengthFigure, with a plus sign above zero. */
std::string SignedSmallLength(double length, LinearUnit unit);

/** Figure and symbol, such as 3.2 mm; metres from one metre on. */
std::string SmallLengthText(double length, LinearUnit unit);

/** A longer one with three decimals, such as 12.345 m. */
std::string LengthWithUnit(double length, LinearUnit unit);

} // namespace qstd

#endif
