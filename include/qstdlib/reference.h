/**
 * @file reference.h
 * Stake-out references: line, arc and planes, each defined once by a Set function and used by a Calc function after
 * that.
 *
 * There is one definition of each kind for the whole library. What a rejected definition leaves differs:
 * - Line and planes: the Set function forgets the former one first. After a rejected one nothing is defined, and the
 *   Calc function returns QSTD_NOT_DEFINED, as before the first one.
 * - Arc: the former arc stays in use, to the last field. Before the first one an arc of radius 0.0 about the origin is
 *   in use. No function of the arc returns QSTD_NOT_DEFINED.
 */
#ifndef QSTDLIB_REFERENCE_H
#define QSTDLIB_REFERENCE_H

#include "export.h"
#include "types.h"

/** A point referred to the reference line. */
typedef struct ReferenceLineResult
{
    PointRecord foot;        /**< foot of the perpendicular at grade height; flags 3 with heights, else 1 */
    double station;          /**< along the line from its first point; negative before it */
    double offset;           /**< positive to the right, looking from the first point to the second */
    double heightDifference; /**< point's height less grade height; 0.0 without heights */
} ReferenceLineResult;

/** Parameters of the reference arc. */
typedef struct ArcParams
{
    AngleUnit startAzimuth; /**< of the start tangent */
    AngleUnit endAzimuth;   /**< of the end tangent; can lie outside the circle when the arc was given by its length */
    double radius;          /**< positive: the arc turns right; negative: left */
    double length;          /**< never negative */
    AngleUnit centralAngle; /**< with the sign of the radius */
} ArcParams;

/** A point referred to the reference arc. */
typedef struct ArcCalcResult
{
    PointRecord point;       /**< zeros */
    double along;            /**< along the arc or the tangents that continue it, from its start; negative before it */
    double offset;           /**< positive to the right of the direction of travel */
    double heightDifference; /**< measured less design height; 0.0 when the start point has none */
} ArcCalcResult;

QSTD_BEGIN_DECLS

/**
 * Defines the reference line. Where one point alone has a height, the grade is level at it.
 *
 * @param[in] first   plan flag set
 * @param[in] second  plan flag set; differs from `first` in plan
 * @retval QSTD_OK                   the line is defined
 * @retval QSTD_COINCIDENT_POINTS    equal northing and equal easting; no line is defined any more
 * @retval QSTD_MISSING_COORDINATES  a plan flag is clear; no line is defined any more
 *
 * Reads no setting; keeps the line.
 */
QSTD_API int32_t QREFSetBaseLine(const PointRecord* first, const PointRecord* second) QSTD_NONNULL;

/**
 * Refers a measured point to the reference line: foot, station, offset and height difference.
 *
 * Station and grade extend beyond both ends of the line.
 *
 * @param[in]  point   plan flag set; its height takes part if it has one
 * @param[out] result  every field
 * @retval QSTD_OK                   `result` written
 * @retval QSTD_NOT_DEFINED          no line is defined; `result` untouched
 * @retval QSTD_MISSING_COORDINATES  the plan flag is clear; `result` untouched
 *
 * Method: orthogonal projection. Reads no setting.
 */
QSTD_API int32_t QREFCalc(const PointRecord* point, ReferenceLineResult* result) QSTD_NONNULL;

/**
 * Defines the reference arc by its ends and the azimuths of its tangents there.
 *
 * Opposite tangents make a half circle. An end point that lies on the start tangent of a half circle, or tangents
 * that meet in the start point, are not caught: the parameters are then useless, zero, near zero or not finite.
 * Tangents along constant northing meet where the clamped slope of such a line puts them, which can be far off where
 * northings are small.
 *
 * @param[in] start         plan flag set; with a height the arc has a design height, that runs to the height of `end`
 *                          if the computed arc ends within 0.05 of it
 * @param[in] end           plan flag set; the height is used as it stands; differs from `start` in plan
 * @param[in] startAzimuth  azimuth of the start tangent in the instrument's reference
 * @param[in] endAzimuth    azimuth of the end tangent; differs from the other
 * @retval QSTD_OK                   the arc is defined
 * @retval QSTD_COINCIDENT_POINTS    the ends coincide in plan; the former arc stays in use
 * @retval QSTD_MISSING_COORDINATES  a plan flag is clear; the former arc stays in use
 * @retval QSTD_DEGENERATE           the azimuths are equal; the former arc stays in use
 *
 * Method: circular curve by its tangents. Reads SETTING_AZIMUTH_REFERENCE; keeps the arc.
 */
QSTD_API int32_t QREFSetArcByCoord(const PointRecord* start, const PointRecord* end, AngleUnit startAzimuth,
                                   AngleUnit endAzimuth) QSTD_NONNULL;

/**
 * Defines the reference arc by its start, radius and the azimuths of its tangents.
 *
 * @param[in] start         plan flag set; its height is the design height of the whole arc
 * @param[in] startAzimuth  azimuth of the start tangent in the instrument's reference
 * @param[in] radius        positive to turn right, negative to turn left; not 0.0
 * @param[in] endAzimuth    azimuth of the end tangent; differs from the other
 * @retval QSTD_OK                   the arc is defined
 * @retval QSTD_REJECTED             `radius` is 0.0; the former arc stays in use
 * @retval QSTD_MISSING_COORDINATES  the plan flag is clear; the former arc stays in use
 * @retval QSTD_DEGENERATE           the azimuths are equal; the former arc stays in use
 *
 * Reads SETTING_AZIMUTH_REFERENCE; keeps the arc.
 */
QSTD_API int32_t QREFSetArcByRadiusHAngle(const PointRecord* start, AngleUnit startAzimuth, double radius,
                                          AngleUnit endAzimuth) QSTD_NONNULL;

/**
 * Defines the reference arc by its start, radius and length.
 *
 * @param[in] start         plan flag set; its height is the design height of the whole arc
 * @param[in] startAzimuth  azimuth of the start tangent in the instrument's reference
 * @param[in] radius        positive to turn right, negative to turn left; not 0.0
 * @param[in] length        above 0.0; cut to the full circumference
 * @retval QSTD_OK                   the arc is defined
 * @retval QSTD_REJECTED             `radius` is 0.0 or `length` not above 0.0; the former arc stays in use
 * @retval QSTD_MISSING_COORDINATES  the plan flag is clear; the former arc stays in use
 *
 * Reads SETTING_AZIMUTH_REFERENCE; keeps the arc.
 */
QSTD_API int32_t QREFSetArcByRadiusArcLen(const PointRecord* start, AngleUnit startAzimuth, double radius,
                                          double length) QSTD_NONNULL;

/**
 * Reads the parameters of the reference arc back.
 *
 * The azimuth reference is applied to the stored azimuths, which passed it when they were stored. After a rejected
 * definition the parameters are those of the former arc.
 *
 * @param[out] params  every field; zeros (azimuths as the reference turns them) before the first definition
 * @retval QSTD_OK  always
 *
 * Reads SETTING_AZIMUTH_REFERENCE for each azimuth.
 */
QSTD_API int32_t QREFGetArcParams(ArcParams* params) QSTD_NONNULL;

/**
 * Refers a measured point to the reference arc: along, offset and height difference.
 *
 * Before the start and beyond the end the point is referred to the tangents there; for an arc that turns left not so
 * where the point lies beyond the end and more than a quarter circle before the start radial: along and offset are
 * then not those of the tangent. Whether an arc is defined is not tested: after a rejected definition the point is
 * referred to the former arc, before the first one to the arc of radius 0.0 about the origin.
 *
 * @param[in]  measured  plan flag set; the height is used as it stands when the arc has one. Not the result's own
 *                       point, which becomes zeros first.
 * @param[out] result    every field
 * @retval QSTD_OK                   `result` written
 * @retval QSTD_COINCIDENT_POINTS    the point is the arc's centre in plan; `result` untouched
 * @retval QSTD_MISSING_COORDINATES  the plan flag is clear; `result` untouched
 *
 * Reads no setting.
 */
QSTD_API int32_t QREFCalcArc(const PointRecord* measured, ArcCalcResult* result) QSTD_NONNULL;

/**
 * Defines the two-point plane, the vertical plane through two points. QCalcOfsLineHA redefines it, too.
 *
 * @param[in] first   plan flag set; its height, if it has one, is the reference of heights on the plane
 * @param[in] second  plan flag set; differs from `first` in plan
 * @retval QSTD_OK                   the plane is defined
 * @retval QSTD_HEIGHT_UNDETERMINED  defined; `first` has no height, so that heights follow from the station alone
 * @retval QSTD_COINCIDENT_POINTS    equal northing and equal easting; no plane is defined any more
 * @retval QSTD_MISSING_COORDINATES  a plan flag is clear; no plane is defined any more
 *
 * Reads no setting; keeps the plane.
 */
QSTD_API int32_t QREFSet2PtBasePlane(const PointRecord* first, const PointRecord* second) QSTD_NONNULL;

/**
 * Point of the two-point plane that lies under a sight. A point behind the instrument is not rejected.
 *
 * @param[in]  horizontalAngle   azimuth of the sight in the instrument's reference
 * @param[in]  zenithAngle       zenith angle; either face
 * @param[in]  station           position of the instrument; flags are not tested
 * @param[in]  instrumentHeight  height of the axis above it
 * @param[out] point             sighted point, flags 3 in every case; written first, must not be `station`
 * @param[out] alongPlane        from the first point along the plane's trace
 * @param[out] heightAboveFirst  above the first point; 0.0 when that has no height
 * @retval QSTD_OK                   outputs written; all UNDEFINED_REAL for a vertical sight or one parallel to the
 *                                   plane
 * @retval QSTD_HEIGHT_UNDETERMINED  the same, and the first point has no height
 * @retval QSTD_NOT_DEFINED          no plane is defined; outputs UNDEFINED_REAL
 * @retval QSTD_DEGENERATE           the station stands on the plane; outputs UNDEFINED_REAL
 *
 * Method: intersection of a line and a vertical plane. Reads SETTING_AZIMUTH_REFERENCE.
 */
QSTD_API int32_t QREFCalc2PtPlane(AngleUnit horizontalAngle, AngleUnit zenithAngle, const PointRecord* station,
                                  double instrumentHeight, PointRecord* point, double* alongPlane,
                                  double* heightAboveFirst) QSTD_NONNULL;

/**
 * Defines the three-point plane, or the vertical plane through two points.
 *
 * @param[in] first   flags 3
 * @param[in] second  flags 3
 * @param[in] third   flags 3; null for the vertical plane through the other two
 * @retval QSTD_OK                   the plane is defined
 * @retval QSTD_COINCIDENT_POINTS    two of the points are equal; no plane is defined any more
 * @retval QSTD_MISSING_COORDINATES  a point lacks plan coordinates or height; no plane is defined any more
 * @retval QSTD_DEGENERATE           the points lie on one line; no plane is defined any more
 *
 * Reads no setting; keeps the plane.
 */
QSTD_API int32_t QREFSet3PtBasePlane(const PointRecord* first, const PointRecord* second, const PointRecord* third)
    QSTD_NONNULL_ARGS(1, 2);

/**
 * Point of the three-point plane that lies under a sight, and its place within the plane.
 *
 * The stored plane is turned to face the instrument; the sign of the offset across the baseline follows from that.
 *
 * @param[in]  horizontalAngle   azimuth of the sight in the instrument's reference
 * @param[in]  zenithAngle       zenith angle; either face
 * @param[in]  station           position of the instrument; flags are not tested
 * @param[in]  instrumentHeight  height of the axis above it
 * @param[out] point             sighted point, flags 3 in every case; written first, must not be `station`
 * @param[out] alongBaseline     from the first point towards the second
 * @param[out] acrossBaseline    within the plane, across the baseline; negative above an east-running baseline of a
 *                               vertical plane seen from the south, positive seen from the north
 * @retval QSTD_OK           outputs written; all UNDEFINED_REAL for a sight that does not run towards the plane
 * @retval QSTD_NOT_DEFINED  no plane is defined; outputs UNDEFINED_REAL
 * @retval QSTD_DEGENERATE   the instrument lies on the plane; outputs UNDEFINED_REAL
 *
 * Method: intersection of a line and a plane. Reads SETTING_AZIMUTH_REFERENCE.
 */
QSTD_API int32_t QREFCalc3PtPlane(AngleUnit horizontalAngle, AngleUnit zenithAngle, const PointRecord* station,
                                  double instrumentHeight, PointRecord* point, double* alongBaseline,
                                  double* acrossBaseline) QSTD_NONNULL;

QSTD_END_DECLS

#endif
