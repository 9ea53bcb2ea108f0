/**
 * @file measure.h
 * Measurement applications: remote distance, two-point target.
 */
#ifndef QSTDLIB_MEASURE_H
#define QSTDLIB_MEASURE_H

#include "export.h"
#include "types.h"

/** Distances and azimuth between two measured points. */
typedef struct RemoteDistanceResult
{
    double slopeDistance;      /**< spatial distance; the horizontal distance when either point lacks a height */
    double horizontalDistance; /**< plan distance */
    double heightDifference;   /**< second height minus first; 0.0 when either point lacks a height */
    AngleUnit azimuth;         /**< from first to second; ANGLE_UNDEFINED when the horizontal distance is 0.0 */
} RemoteDistanceResult;

QSTD_BEGIN_DECLS

/**
 * Remote distance measurement: distances and azimuth between two points, for instance two sighted targets.
 *
 * Heights take part only if both points have one; otherwise the computation is plane.
 *
 * @param[in]  first   plan flag set
 * @param[in]  second  plan flag set; may be `first`
 * @param[out] result  every field
 * @retval QSTD_OK                   `result` written; the azimuth is ANGLE_UNDEFINED where the points are so close that
 *                                   the squares of their differences vanish
 * @retval QSTD_COINCIDENT_POINTS    equal northing and equal easting, whatever the heights; `result` written, azimuth
 *                                   ANGLE_UNDEFINED
 * @retval QSTD_MISSING_COORDINATES  a plan flag is clear; `result` untouched
 *
 * Method: missing line measurement. Reads SETTING_AZIMUTH_REFERENCE.
 */
QSTD_API int32_t QRDMCalcByCoord(const PointRecord* first, const PointRecord* second,
                                 RemoteDistanceResult* result) QSTD_NONNULL;

/**
 * Two-point target: a point that cannot be sighted, on the prolongation of a rod that carries two prisms.
 *
 * The vector between the prisms is divided by the nominal spacing where one is given, so that a measured spacing that
 * differs from it scales the prolongation in proportion.
 *
 * @param[in]  first            measured prism farther from the hidden point; flags 3
 * @param[in]  second           measured prism nearer to it; flags 3; differs from `first` in space
 * @param[in]  spacing          nominal distance between the prisms; 0.0: the measured one is used; not negative
 * @param[in]  extension        distance from the second prism to the hidden point; not negative
 * @param[out] measuredSpacing  spatial distance between the prisms
 * @param[out] target           hidden point, flags 3; may be `first` or `second`
 * @retval QSTD_OK                   both outputs written
 * @retval QSTD_REJECTED             `spacing` or `extension` is negative; outputs untouched
 * @retval QSTD_COINCIDENT_POINTS    the prisms coincide in space; outputs untouched
 * @retval QSTD_MISSING_COORDINATES  a point lacks plan coordinates or height; outputs untouched
 *
 * Method: linear extrapolation. Reads no setting.
 */
QSTD_API int32_t QCalc2PtTarget(const PointRecord* first, const PointRecord* second, double spacing, double extension,
                                double* measuredSpacing, PointRecord* target) QSTD_NONNULL;

QSTD_END_DECLS

#endif
