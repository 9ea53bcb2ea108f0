/**
 * @file number_checks.h
 * Checks of the numbers that options take. The parser alone would let nan, inf and 1e300 pass.
 */
#ifndef QSTD_NUMBER_CHECKS_H
#define QSTD_NUMBER_CHECKS_H

#include <CLI/CLI.hpp>

namespace qstd {

/** A length or height of any sign, at most the longest on the earth. */
CLI::Validator LengthCheck();

/** A scale factor: above 0, neither it nor its reciprocal beyond the longest length. */
CLI::Validator FactorCheck();

} // namespace qstd

#endif
