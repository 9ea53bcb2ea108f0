// The reference arc that definition and calculation share.
#ifndef QSTDLIB_REFERENCE_ARC_STATE_H
#define QSTDLIB_REFERENCE_ARC_STATE_H

#include "qstdlib/types.h"

namespace qstdlib {

struct ArcState
{
    int16_t isDefined;            // consulted by no function: the former arc stays in use after a rejected definition
    PointRecord start;            // as given
    PointRecord end;              // as given; without flags when the arc was defined by its radius
    AngleUnit startAzimuth;       // of the tangents, north-based
    AngleUnit endAzimuth;         // not reduced when the arc was defined by its length
    double radius;                // negative when the arc turns left
    double length;                // never negative
    PointRecord centre;           // plan only
    AngleUnit centralAngle;       // with the sign of the radius
    AngleUnit startRadialAzimuth; // from the centre to the start
    int16_t endCheck;             // 1 when the computed arc ends at the given end point, and the start has a height
};

// 1 / 20,736,000.
constexpr double INVERSE_FULL_CIRCLE = 4.8225308641975306e-8;

// The arc in force; all zero before the first definition.
const ArcState& ReferenceArc();

} // namespace qstdlib

#endif
