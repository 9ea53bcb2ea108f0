/**
 * @file arc_definition.h
 * A reference arc as the command line gives it, by one of the three definitions of the library.
 */
#ifndef QSTD_ARC_DEFINITION_H
#define QSTD_ARC_DEFINITION_H

#include "input/inputs.h"
#include "results/result.h"
#include "verbs/arc.h"

#include <qstdlib.h>

#include <optional>
#include <string>

namespace qstd {

struct ArcDefinition
{
    enum class Kind
    {
        COORDINATES,
        RADIUS_AND_TANGENT,
        RADIUS_AND_LENGTH
    };

    Kind kind = Kind::COORDINATES;
    KnownPoint from;
    KnownPoint to;                 /**< COORDINATES */
    std::optional<KnownPoint> via; /**< where the tangents meet, when the azimuths come from there */
    AngleUnit startAzimuth = 0;    /**< in the instrument's reference, as the end azimuth */
    AngleUnit endAzimuth = 0;
    double radius = 0.0;
    double length = 0.0;
};

/** Which options belong together is looked at first. Throws WrongUse. */
ArcDefinition ReadArc(const ArcOptions& options, Inputs& inputs);

/**
 * Hands the arc to the library, which keeps it.
 *
 * @param row  status and, where the arc is refused or useless, why
 * @return the parameters, or nothing where no arc is to be worked with: the library would go on with a former one
 */
std::optional<ArcParams> DefineArc(const ArcDefinition& arc, Row& row);

/** Hands the arc to the library again, as DefineArc did with success. */
void DefineArcAgain(const ArcDefinition& arc);

} // namespace qstd

#endif
