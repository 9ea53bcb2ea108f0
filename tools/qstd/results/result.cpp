#include "results/result.h"

#include <cmath>

namespace qstd {

Value RealValue(double value)
{
    return value == UNDEFINED_REAL || !std::isfinite(value) ? Value() : Value(value);
}

Value AngleOf(AngleUnit units)
{
    return units == ANGLE_UNDEFINED ? Value() : Value(AngleValue{units});
}

Value HeightOf(const PointRecord& point)
{
    return (point.flags & POINT_HAS_HEIGHT) != 0 ? RealValue(point.height) : Value();
}

} // namespace qstd
