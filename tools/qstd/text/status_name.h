/**
 * @file status_name.h
 * The library's statuses as names and in words.
 */
#ifndef QSTD_STATUS_NAME_H
#define QSTD_STATUS_NAME_H

#include <cstdint>
#include <string>

namespace qstd {

/** The name of a status in the library's interface, such as QSTD_DEGENERATE. */
std::string StatusName(int32_t status);

/** What a status means, such as: the two lines are parallel. Empty for success. */
std::string StatusMeaning(int32_t status);

/** True for success and for the two warnings, which come with a result. */
bool HasResult(int32_t status);

} // namespace qstd

#endif
