/**
 * @file cogo.h
 * Coordinate geometry: inverse and forward computations.
 */
#ifndef QSTDLIB_COGO_H
#define QSTDLIB_COGO_H

#include "export.h"
#include "types.h"

/** Direction and distances from one point to another: the inverse's result, the forward computation's input. */
typedef struct AngDistRecord
{
    AngleUnit azimuth;         /**< in the reference set on the instrument; ANGLE_UNDEFINED when there is none */
    AngleUnit zenith;          /**< ANGLE_UNDEFINED when the points coincide in space */
    double slopeDistance;      /**< spatial distance */
    double horizontalDistance; /**< plan distance */
    double heightDifference;   /**< second height minus first height */
} AngDistRecord;

/** A slope, expressed in both usual ways. */
typedef struct SlopeResult
{
    double grade; /**< vertical / horizontal in percent; UNDEFINED_REAL for a horizontal distance of 0.0 */
    double ratio; /**< horizontal / vertical, the n of 1 : n; UNDEFINED_REAL for a vertical distance of 0.0 */
} SlopeResult;

QSTD_BEGIN_DECLS

/**
 * Inverse computation: azimuth, zenith angle and distances from one point to another.
 *
 * Without a valid height of `from` the slope distance is the horizontal distance and the height difference 0.0; with
 * one, the height field of `to` is used whatever its flags say. The zenith angle always comes from the two height
 * fields as they stand. These differing rules are kept: stored results depend on them.
 *
 * @param[in]  from    plan flag set
 * @param[in]  to      plan flag set; may be `from`
 * @param[out] result  every field; the azimuth follows the azimuth reference of the instrument
 * @retval QSTD_OK                   `result` written
 * @retval QSTD_COINCIDENT_POINTS    azimuth or zenith is ANGLE_UNDEFINED (equal northing and easting); `result` written
 * @retval QSTD_MISSING_COORDINATES  a plan flag is clear; `result` untouched
 *
 * Method: second geodetic problem in the plane. Reads SETTING_AZIMUTH_REFERENCE.
 */
QSTD_API int32_t QCogoCoordToAngDist(const PointRecord* from, const PointRecord* to,
                                     AngDistRecord* result) QSTD_NONNULL;

/**
 * Forward computation: a new point from a known point, an azimuth, a horizontal distance and a height difference.
 *
 * @param[in]  from         plan flag set
 * @param[in]  observation  azimuth in the instrument's reference, need not be reduced; horizontal distance, negative
 *                          for the opposite direction; height difference. Zenith and slope distance are not read
 * @param[out] result       flags 3 if `from` has a height, else flags 1 and height 0.0; may be `from`
 * @retval QSTD_OK                   `result` written
 * @retval QSTD_MISSING_COORDINATES  the plan flag of `from` is clear; `result` untouched
 *
 * Method: first geodetic problem in the plane (polar point). Reads SETTING_AZIMUTH_REFERENCE.
 */
QSTD_API int32_t QCogoAngDistToCoord(const PointRecord* from, const AngDistRecord* observation,
                                     PointRecord* result) QSTD_NONNULL;

/**
 * Point at a chainage along a line and an offset to its side.
 *
 * The height is interpolated along the chainage, beyond the ends too; where one end alone has a height, that height
 * holds everywhere. The offset does not change it.
 *
 * @param[in]  start     plan flag set
 * @param[in]  end       plan flag set; differs from `start` in plan
 * @param[in]  chainage  distance from `start` towards `end`; negative before the start
 * @param[in]  offset    to the right of the direction of travel; negative to the left
 * @param[out] result    flags 3 if either end has a height, else flags 1 and height 0.0; may be `start` or `end`
 * @retval QSTD_OK                   `result` written
 * @retval QSTD_COINCIDENT_POINTS    equal northing and equal easting; `result` untouched
 * @retval QSTD_MISSING_COORDINATES  a plan flag is clear; `result` untouched
 *
 * Method: orthogonal setting-out from a base line. Reads no setting.
 */
QSTD_API int32_t QCogoOffsetToCoord(const PointRecord* start, const PointRecord* end, double chainage, double offset,
                                    PointRecord* result) QSTD_NONNULL;

/**
 * Grade and ratio of a slope.
 *
 * @param[in]  horizontal  horizontal distance, any sign
 * @param[in]  vertical    vertical distance in the same unit, any sign
 * @param[out] slope       both fields, always; UNDEFINED_REAL where the division is by exactly 0.0
 */
QSTD_API void QCogoCalcSlopeByDist(double horizontal, double vertical, SlopeResult* slope) QSTD_NONNULL;

QSTD_END_DECLS

#endif
