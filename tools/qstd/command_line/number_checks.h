/**
 * @file number_checks.h
 * Checks of the numbers that options take. The parser alone would let nan, inf and 1e300 pass.
 */
#ifndef QSTD_NUMBER_CHECKS_H
#define QSTD_NUMBER_CHECKS_H

#include <CLI/CLI.hpp>

#include <optional>
#include <string>

namespace qstd {

/** A length or height of any sign, at most the longest on the earth. */
CLI::Validator LengthCheck();

/** A scale factor: above 0, neither it nor its reciprocal beyond the longest length. */
CLI::Validator FactorCheck();

/** A standard deviation: above 0, and not beyond any length. */
CLI::Validator SigmaCheck();

/** Millionths of a distance: 0 or more, and finite. */
CLI::Validator PpmCheck();

/** One of the instrument's coefficients of refraction, or off. */
CLI::Validator RefractionCheck();

/** The instrument's setting for a coefficient that RefractionCheck lets pass; nothing for off. */
std::optional<int> RefractionSelector(const std::string& text);

} // namespace qstd

#endif
