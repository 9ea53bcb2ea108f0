/**
 * @file unit.h
 * The linear unit of a job.
 */
#ifndef QSTD_UNIT_H
#define QSTD_UNIT_H

#include <string_view>

namespace qstd {

enum class LinearUnit
{
    METRE,
    FOOT,   /**< international, 0.3048 m */
    US_FOOT /**< of the US survey, 1200/3937 m */
};

/** m, ft, us-ft. */
std::string_view UnitSymbol(LinearUnit unit);

/** m2, sq ft, sq us-ft. */
std::string_view AreaSymbol(LinearUnit unit);

/** A length in metres, for formulas that assume them. */
double ToMetres(double length, LinearUnit unit);

/** A length in metres brought back to the unit of the job. */
double FromMetres(double metres, LinearUnit unit);

} // namespace qstd

#endif
