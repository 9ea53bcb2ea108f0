#include "text/unit.h"

namespace qstd {

namespace {

constexpr double FOOT_IN_METRES = 0.3048;
constexpr double US_FOOT_NUMERATOR = 1200.0;
constexpr double US_FOOT_DENOMINATOR = 3937.0;

} // namespace

std::string_view UnitSymbol(LinearUnit unit)
{
    switch (unit)
    {
    case LinearUnit::FOOT:
        return "ft";
    case LinearUnit::US_FOOT:
        return "us-ft";
    case LinearUnit::METRE:
        break;
    }
    return "m";
}

std::string_view AreaSymbol(LinearUnit unit)
{
    switch (unit)
    {
    case LinearUnit::FOOT:
        return "sq ft";
    case LinearUnit::US_FOOT:
        return "sq us-ft";
    case LinearUnit::METRE:
        break;
    }
    return "m2";
}

double ToMetres(double length, LinearUnit unit)
{
    switch (unit)
    {
    case LinearUnit::FOOT:
        return length * FOOT_IN_METRES;
    case LinearUnit::US_FOOT:
        return length * US_FOOT_NUMERATOR / US_FOOT_DENOMINATOR;
    case LinearUnit::METRE:
        break;
    }
    return length;
}

double FromMetres(double metres, LinearUnit unit)
{
    switch (unit)
    {
    case LinearUnit::FOOT:
        return metres / FOOT_IN_METRES;
    case LinearUnit::US_FOOT:
        return metres * US_FOOT_DENOMINATOR / US_FOOT_NUMERATOR;
    case LinearUnit::METRE:
        break;
    }
    return metres;
}

} // namespace qstd
