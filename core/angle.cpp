#include "core/angle.h"

#include <cmath>
#include <limits>

#include "core/settings.h"

namespace qstdlib {

namespace {

// PI / 10,368,000.
constexpr double RADIANS_PER_UNIT = 3.0300855069346e-7;

// 20,736,000 / PI: twice the units of a radian, so that the integer's last bit is a half unit to round by.
constexpr double HALF_UNITS_PER_RADIAN = 6600473.799907084;

} // namespace

int32_t TruncateToInt32(double value)
{
    constexpr double LIMIT = 2147483648.0;
    if (std::fabs(value) < LIMIT)
    {
        return static_cast<int32_t>(value);
    }
    if (std::isnan(value))
    {
        return 0;
    }
    return value < 0.0 ? std::numeric_limits<int32_t>::min() : std::numeric_limits<int32_t>::max();
}

double AngleToRadians(AngleUnit angle)
{
    return static_cast<double>(ReduceToCircle(angle)) * RADIANS_PER_UNIT;
}

AngleUnit RadiansToAngle(double radians)
{
    const AngleUnit halfUnits = TruncateToInt32(radians * HALF_UNITS_PER_RADIAN);
    const AngleUnit rounded = WrapAdd(halfUnits, halfUnits < 0 ? -1 : 1) / 2;
    return ReduceToCircle(rounded);
}

AngleUnit TruncateRadiansToAngle(double radians)
{
    return TruncateToInt32(radians * ANGLE_HALF_CIRCLE * INVERSE_PI);
}

QSTD_WRAPS int32_t NormalizeAngle(AngleUnit* angle)
{
    // The defined procedure brings a negative angle into the circle and then takes off full circles until the angle,
    // wrapping past the most negative integer, exceeds one. It ends at the congruent value (modulo a full circle, after
    // adding 2^32) in the last circle below 2^31; that value is formed here at once.
    constexpr uint32_t TWO_TO_31 = 0x80000000U;
    constexpr uint32_t CIRCLE = ANGLE_FULL_CIRCLE;
    if (*angle <= ANGLE_FULL_CIRCLE)
    {
        const uint32_t aboveMinimum = static_cast<uint32_t>(*angle) + TWO_TO_31;
        *angle = static_cast<AngleUnit>(TWO_TO_31 - CIRCLE + aboveMinimum % CIRCLE);
    }
    return 0;
}

AngleUnit ApplyAzimuthReference(AngleUnit azimuth)
{
    constexpr int32_t FROM_SOUTH = 1;
    if (Instrument().GetIntSetting(SETTING_AZIMUTH_REFERENCE) != FROM_SOUTH)
    {
        return azimuth;
    }
    return CircleRemainder(WrapAdd(azimuth, ANGLE_HALF_CIRCLE));
}

} // namespace qstdlib
