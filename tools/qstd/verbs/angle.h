/**
 * @file angle.h
 * The verb angle: an angle in every form, and as the integer of the library.
 */
#ifndef QSTD_ANGLE_H
#define QSTD_ANGLE_H

#include "input/inputs.h"
#include "results/sink.h"

#include <qstdlib.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qstd {

struct AngleOptions
{
    std::vector<std::string> angles;
};

/** An integer of the library, written as 123456u; nothing for any other text. Any 32-bit value is one. */
std::optional<AngleUnit> ParseUnits(std::string_view text);

/**
 * The direction that an integer of the library stands for, within the circle.
 *
 * The library adds a full circle in 32 bits before it takes the remainder, so that the integers at the upper end, which
 * its normalisation leaves, count as 2^32 less.
 */
AngleUnit DirectionOfUnits(AngleUnit units);

void RunAngle(const AngleOptions& options, Inputs& inputs, Sink& sink);

} // namespace qstd

#endif
