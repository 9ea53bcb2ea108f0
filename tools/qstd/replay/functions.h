/**
 * @file functions.h
 * Every function of the library by name.
 */
#ifndef QSTD_FUNCTIONS_H
#define QSTD_FUNCTIONS_H

#include "replay/prepared_call.h"

#include <map>
#include <string>

namespace qstd {

struct CallableFunction
{
    Preparation prepare;
    bool countsSolutions = false;
};

const std::map<std::string, CallableFunction>& CallableFunctions();

} // namespace qstd

#endif
