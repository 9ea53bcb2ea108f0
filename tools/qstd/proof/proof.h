/**
 * @file proof.h
 * Whether a result, put back into its definition, gives what was asked for, and by how much it does not.
 *
 * What is computed here is computed from the input and the result alone, in doubles, without the library.
 */
#ifndef QSTD_PROOF_H
#define QSTD_PROOF_H

#include <qstdlib.h>

#include <cmath>

namespace qstd {

/** From one double to the next, as a part of its size. */
constexpr double EPSILON = 2.220446049250313e-16;

/** Finer than anything that is measured or set out: what differs by less is the same. */
constexpr double FINEST = 1e-6;

/**
 * The roundings, each of half an EPSILON, that lie between the input and what a proof compares, where all of them add
 * up. The longest formula of the library, two lines by slope and intercept, has 14 operations, the proof of it about as
 * many; no sound result comes near to their sum.
 */
constexpr double ROUNDINGS = 32.0;

/** Radians of the library's angle unit, 1/16 of a second. */
constexpr double ANGLE_UNIT = 3.14159265358979323846 / ANGLE_HALF_CIRCLE;

/** What rounding may do to a length that comes of numbers of this size. */
inline double RoundingOf(double size)
{
    return FINEST + ROUNDINGS * EPSILON * std::fabs(size);
}

/** How far an angle that is kept to so many units leads aside over a distance. */
inline double UnitsOver(double distance, double units = 1.0)
{
    return std::fabs(distance) * units * ANGLE_UNIT;
}

/** Takes what a result must hold to, one claim after the other, and keeps the one that it misses most. */
class Proof
{
public:
    /**
     * A length that ought to be 0, and what rounding allows it to be. What is no number misses.
     *
     * @param whatMisses  such as: the point lies off the line by; a literal, as lists have no time for more
     */
    void Require(const char* whatMisses, double miss, double allowed)
    {
        if (!(std::fabs(miss) <= allowed))
        {
            Keep(whatMisses, miss);
        }
    }

    [[nodiscard]] bool Holds() const
    {
        return worst == nullptr;
    }

    /** Of the worst claim; 0 where all hold, infinite where a number is none. */
    [[nodiscard]] double Miss() const
    {
        return worstMiss;
    }

    /** Null where all claims hold. */
    [[nodiscard]] const char* WhatMisses() const
    {
        return worst;
    }

private:
    void Keep(const char* whatMisses, double by);

    const char* worst = nullptr;
    double worstMiss = 0.0;
};

} // namespace qstd

#endif
