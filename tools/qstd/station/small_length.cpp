#include "station/small_length.h"

#include "text/text.h"

#include <fmt/format.h>

#include <cmath>

namespace qstd {

namespace {

constexpr int FOOT_DECIMALS = 4;

} // namespace

std::string_view SmallLengthSymbol(LinearUnit unit)
{
    return unit == LinearUnit::METRE ? "mm" : UnitSymbol(unit);
}

std::string SmallLengthFigure(double length, LinearUnit unit)
{
    return unit == LinearUnit::METRE ? FormatFixed(length * 1000.0, 1) : FormatFixed(length, FOOT_DECIMALS);
}

std::string SignedSmallLength(double length, LinearUnit unit)
{
    return unit == LinearUnit::METRE ? FormatSigned(length * 1000.0, 1) : FormatSigned(length, FOOT_DECIMALS);
}

std::string SmallLengthText(double length, LinearUnit unit)
{
    const bool isSmall = unit != LinearUnit::METRE || std::fabs(length) < 1.0;
    return isSmall ? fmt::format("{} {}", SmallLengthFigure(length, unit), SmallLengthSymbol(unit))
                   : LengthWithUnit(length, unit);
}

std::string LengthWithUnit(double length, LinearUnit unit)
{
    return fmt::format("{} {}", FormatFixed(length, 3), UnitSymbol(unit));
}

} // namespace qstd
