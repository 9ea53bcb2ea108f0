/**
 * @file station_method.h
 * The ways of computing a station, and which of them a set-up calls for.
 */
#ifndef QSTD_STATION_METHOD_H
#define QSTD_STATION_METHOD_H

#include "station/set_up.h"

#include <string>
#include <string_view>
#include <vector>

namespace qstd {

enum class StationMethod
{
    MULTI,       /**< least squares over all sights */
    TWO_POINT,   /**< two targets, at least one distance */
    THREE_POINT, /**< directions to three targets */
    KNOWN_LINE,  /**< two points of a line with a known start and direction */
    AUTO         /**< one of these, by what the set-up holds */
};

/** As the command line names it, such as two-point. */
std::string_view MethodName(StationMethod method);

/** As people name it, such as two-point resection. */
std::string_view MethodTitle(StationMethod method);

struct MethodChoice
{
    StationMethod method = StationMethod::MULTI;
    std::string reason; /**< what of the set-up decided for a closed method; empty for least squares */
};

/**
 * The method that fits the used sights. A closed one only where nothing is redundant: two-point for one sight each to
 * two targets with one distance, three-point for one sight each to three targets without distances. The known line
 * only where no other can do anything and the azimuth of the line is given. Else multi, which makes use of all.
 */
MethodChoice ChooseMethod(const std::vector<PreparedSight>& sights, bool hasLineAzimuth);

} // namespace qstd

#endif
