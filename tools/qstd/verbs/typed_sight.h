/**
 * @file typed_sight.h
 * A sight as it is typed on the command line, as far as it was measured.
 */
#ifndef QSTD_TYPED_SIGHT_H
#define QSTD_TYPED_SIGHT_H

#include "input/inputs.h"

#include <qstdlib.h>

#include <optional>
#include <string>
#include <vector>

namespace qstd {

/** HZ, HZ,V or HZ,V,SD: nothing reduced. */
struct TypedSight
{
    AngleUnit circle = 0;
    std::optional<AngleUnit> zenith;
    std::optional<double> slopeDistance; /**< above 0 */
};

/** A sight in face one. */
struct FaceOneSight
{
    AngleUnit circle = 0;
    AngleUnit zenith = 0; /**< at most a half circle */
};

/** How much of a sight must be there. */
enum class SightParts
{
    CIRCLE,
    ANGLES,
    ANGLES_AND_DISTANCE
};

/** Throws WrongUse for a text that is no sight, or lacks parts. @param what  for messages, such as base */
TypedSight ParseSight(const std::string& text, const std::string& what, SightParts least, const Inputs& inputs);

/** True for what was measured rather than known: parts with commas between them that are not all plain numbers. */
bool LooksLikeSight(const std::string& text);

/**
 * Throws WrongUse for three plain numbers that are coordinates N,E,H as well as, with --angle, a sight HZ,V,SD; says
 * how to write either.
 */
void RequireOneMeaning(const std::string& text, const Inputs& inputs);

/** A bare number of an angle with the sign of its form behind it, such as 10g. */
std::string WithForm(const std::string& angle, AngleForm form);

/** Parts between commas, without blanks at their ends. */
std::vector<std::string> PartsOf(const std::string& text);

/** A zenith reading of a half circle or more is one of face two. */
FaceOneSight InFaceOne(AngleUnit circle, AngleUnit zenith);

} // namespace qstd

#endif
