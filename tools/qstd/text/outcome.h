/**
 * @file outcome.h
 * How a run of the program ends.
 */
#ifndef QSTD_OUTCOME_H
#define QSTD_OUTCOME_H

#include <stdexcept>

namespace qstd {

/** Exit codes of the program. */
enum ExitCode
{
    EXIT_ALL_DONE = 0,
    EXIT_NOT_COMPUTED = 1, /**< something could not be computed; the rest is there */
    EXIT_WRONG_USE = 2,    /**< also output that cannot be written */
    EXIT_UNREADABLE = 3    /**< nothing was written */
};

/** A command line that cannot be carried out; the text says what is wrong and what to write instead. */
class WrongUse : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/** Input that cannot be used. The problems are in the Messages of the run. */
class Unreadable : public std::runtime_error
{
public:
    Unreadable() : std::runtime_error("input unreadable")
    {
    }
};

} // namespace qstd

#endif
