/**
 * @file angle_text.h
 * Angles as people write them, to and from the integer of the library.
 */
#ifndef QSTD_ANGLE_TEXT_H
#define QSTD_ANGLE_TEXT_H

#include <qstdlib.h>

#include <optional>
#include <string>
#include <string_view>

namespace qstd {

/** How angles are written where they do not say so themselves, and how they are printed. */
enum class AngleForm
{
    DMS,     /**< 99-10-24.5; a bare number is packed, 99.10245 */
    DEGREES, /**< 99.1735d */
    GON,     /**< 110.1926g */
    RADIANS  /**< 1.730905rad */
};

/** A parsed angle; the units hold only where there is no problem. */
struct ParsedAngle
{
    AngleUnit units = 0;
    std::string problem; /**< empty, or what is wrong and what to write instead */
};

/**
 * Reads an angle of 0 to a full circle, to the nearest unit of 1/16"; a full circle gives 0.
 *
 * Forms: 99-10-24.5, 99:10:24.5, 99d10'24.5" (also with the signs of degree, prime and double prime), each without
 * seconds too; 99.1735d; 110.1926g or gon; 1.7309rad. A bare number is read as `bare`, where that is given.
 */
ParsedAngle ParseAngle(std::string_view text, std::optional<AngleForm> bare);

/** An angle within the circle; any value is brought there first. Seconds to 0.1, other forms to about as much. */
std::string FormatAngle(AngleUnit units, AngleForm form);

/** An angle in degrees, exactly. */
double DegreesOf(AngleUnit units);

double RadiansOf(AngleUnit units);

/** The nearest unit to an angle in radians, within the circle. */
AngleUnit UnitsOf(double radians);

/** Brought into 0 to a full circle (exclusive). */
AngleUnit WithinCircle(AngleUnit units);

} // namespace qstd

#endif
