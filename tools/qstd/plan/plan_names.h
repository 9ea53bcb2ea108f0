/**
 * @file plan_names.h
 * File names of plans.
 */
#ifndef QSTD_PLAN_NAMES_H
#define QSTD_PLAN_NAMES_H

#include "input/field_book.h"

#include <string>
#include <vector>

namespace qstd {

/**
 * One name a set-up: the given name for a single one, else with -STATION (and -NUMBER for a station of several set-ups)
 * before the extension. Characters that a file name cannot hold become _; no two names are the same.
 */
std::vector<std::string> PlanNames(const std::string& path, const std::vector<const SetUp*>& setUps);

} // namespace qstd

#endif
