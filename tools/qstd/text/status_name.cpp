#include "text/status_name.h"

#include <qstdlib.h>

#include <fmt/format.h>

namespace qstd {

std::string StatusName(int32_t status)
{
    switch (status)
    {
    case QSTD_OK:
        return "QSTD_OK";
    case QSTD_REJECTED:
        return "QSTD_REJECTED";
    case QSTD_NO_MEMORY:
        return "QSTD_NO_MEMORY";
    case QSTD_NOT_DEFINED:
        return "QSTD_NOT_DEFINED";
    case QSTD_COINCIDENT_POINTS:
        return "QSTD_COINCIDENT_POINTS";
    case QSTD_MISSING_COORDINATES:
        return "QSTD_MISSING_COORDINATES";
    case QSTD_VERTICAL_SIGHT:
        return "QSTD_VERTICAL_SIGHT";
    case QSTD_SIGHT_TURNED_AWAY:
        return "QSTD_SIGHT_TURNED_AWAY";
    case QSTD_NO_DISTANCE:
        return "QSTD_NO_DISTANCE";
    case QSTD_DEGENERATE:
        return "QSTD_DEGENERATE";
    case QSTD_PARALLEL_LINES:
        return "QSTD_PARALLEL_LINES";
    case QSTD_EQUAL_DIRECTIONS:
        return "QSTD_EQUAL_DIRECTIONS";
    case QSTD_HEIGHT_UNDETERMINED:
        return "QSTD_HEIGHT_UNDETERMINED";
    case QSTD_DISTANCE_UNDETERMINED:
        return "QSTD_DISTANCE_UNDETERMINED";
    default:
        return fmt::format("status {}", status);
    }
}

std::string StatusMeaning(int32_t status)
{
    switch (status)
    {
    case QSTD_OK:
        return "";
    case QSTD_REJECTED:
        return "the input does not define what is asked for";
    case QSTD_NO_MEMORY:
        return "not enough memory";
    case QSTD_NOT_DEFINED:
        return "the reference has not been defined";
    case QSTD_COINCIDENT_POINTS:
        return "two points that must differ coincide";
    case QSTD_MISSING_COORDINATES:
        return "a point lacks the coordinates that are needed";
    case QSTD_VERTICAL_SIGHT:
        return "the line of sight is vertical";
    case QSTD_SIGHT_TURNED_AWAY:
        return "the sight is a quarter circle or more away from the base";
    case QSTD_NO_DISTANCE:
        return "no distance was measured";
    case QSTD_DEGENERATE:
        return "the geometry gives no unique result";
    case QSTD_PARALLEL_LINES:
        return "the two lines are parallel";
    case QSTD_EQUAL_DIRECTIONS:
        return "two of the directions are equal";
    case QSTD_HEIGHT_UNDETERMINED:
        return "the height cannot be determined";
    case QSTD_DISTANCE_UNDETERMINED:
        return "the distance cannot be determined";
    default:
        return fmt::format("status {}", status);
    }
}

bool HasResult(int32_t status)
{
    return status == QSTD_OK || status == QSTD_HEIGHT_UNDETERMINED || status == QSTD_DISTANCE_UNDETERMINED;
}

} // namespace qstd
