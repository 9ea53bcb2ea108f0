/**
 * @file measure.h
 * Measurement applications: remote elevation, remote distance, two-point target, slope reference, corner, line and
 * circle offsets.
 */
#ifndef QSTDLIB_MEASURE_H
#define QSTDLIB_MEASURE_H

#include "export.h"
#include "instrument.h"
#include "types.h"

/** Distances and azimuth between two measured points. */
typedef struct RemoteDistanceResult
{
    double slopeDistance;      /**< spatial distance; the horizontal distance when either point lacks a height */
    double horizontalDistance; /**< plan distance */
    double heightDifference;   /**< second height minus first; 0.0 when either point lacks a height */
    AngleUnit azimuth;         /**< from first to second; ANGLE_UNDEFINED when the horizontal distance is 0.0 */
} RemoteDistanceResult;

/** A sight: the base of the remote elevation, and what the offset functions return for the telescope to turn to. */
typedef struct SightRecord
{
    AngleUnit horizontalAngle; /**< circle reading */
    AngleUnit zenithAngle;     /**< zenith angle, either face */
    double distance;           /**< slope distance as input; as output the distance that the instrument expects */
} SightRecord;

/** Where a point lies against the stored slope. */
typedef struct SlopeCheckResult
{
    double offsetBeyondSlope; /**< from the slope at the point's height to the point; positive away from the base */
    double heightAboveSlope;  /**< point's height less the slope's height at the point's distance */
    double distanceFromBase;  /**< horizontal distance, never negative */
} SlopeCheckResult;

QSTD_BEGIN_DECLS

/**
 * Remote elevation: stores the base, a prism below or above the points that will be sighted.
 *
 * @param[in] base  sight to the prism with its slope distance; either face
 * @retval QSTD_OK              the base is stored, in place of any other
 * @retval QSTD_VERTICAL_SIGHT  the zenith angle, to 2", is 0 or a half circle; no base is stored any more
 *
 * Method: trigonometric height determination. Reads no setting; keeps the base.
 */
QSTD_API int32_t QREMSetBase(const SightRecord* base) QSTD_NONNULL;

/**
 * Remote elevation: height of a sighted point above the stored base, and its offset to the side.
 *
 * The height is taken at the base's horizontal distance, however far the sight is turned from the base.
 *
 * @param[in]  horizontalAngle  circle reading
 * @param[in]  zenithAngle      zenith angle; either face
 * @param[out] result           northing: sideways offset, positive clockwise of the base; easting: 0.0; height: above
 *                              the base; flags 3. Easting and flags are written whatever the status
 * @retval QSTD_OK                 `result` written
 * @retval QSTD_NOT_DEFINED        no base is stored; northing and height UNDEFINED_REAL
 * @retval QSTD_VERTICAL_SIGHT     the zenith angle, to 2", is 0 or a half circle; height UNDEFINED_REAL, northing
 *                                 untouched
 * @retval QSTD_SIGHT_TURNED_AWAY  turned from the base by a quarter circle or more, to 2"; northing UNDEFINED_REAL,
 *                                 height written
 *
 * Method: trigonometric height determination. Reads no setting.
 */
QSTD_API int32_t QREMCalc(AngleUnit horizontalAngle, AngleUnit zenithAngle, PointRecord* result) QSTD_NONNULL;

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

/**
 * Slope reference: stores a design slope, a straight line in the section through a base point.
 *
 * @param[in] height1    design height of the first defining point
 * @param[in] distance1  its horizontal distance from the base; the sign chooses the side of the base
 * @param[in] height2    as `height1`, second defining point
 * @param[in] distance2  as `distance1`, not on the opposite side
 * @retval QSTD_OK                     the slope is stored, in place of any other
 * @retval QSTD_DISTANCE_UNDETERMINED  stored; the heights are equal, so that no distance follows from a height
 * @retval QSTD_HEIGHT_UNDETERMINED    stored; the distances are equal, so that no height follows from a distance
 * @retval QSTD_REJECTED               one point given twice, or distances on opposite sides; no slope is stored any
 *                                     more
 *
 * Method: straight line in the section. Reads no setting; keeps the slope.
 */
QSTD_API int32_t QBRSetSlope(double height1, double distance1, double height2, double distance2);

/**
 * Slope reference: where a measured point lies against the stored slope.
 *
 * @param[in]  base    plan flag set
 * @param[in]  point   flags 3; differs from `base` in plan
 * @param[out] result  every field, UNDEFINED_REAL for what the slope does not determine
 * @retval QSTD_OK                     `result` written
 * @retval QSTD_DISTANCE_UNDETERMINED  level slope: the offset is UNDEFINED_REAL, the rest written
 * @retval QSTD_HEIGHT_UNDETERMINED    vertical slope: the height is UNDEFINED_REAL, the rest written
 * @retval QSTD_NOT_DEFINED            no slope is stored; `result` untouched
 * @retval QSTD_MISSING_COORDINATES    a flag is clear; `result` untouched
 * @retval QSTD_COINCIDENT_POINTS      equal northing and equal easting; `result` untouched
 *
 * Method: linear interpolation in the section. Reads no setting.
 */
QSTD_API int32_t QBRCalc(const PointRecord* base, const PointRecord* point, SlopeCheckResult* result) QSTD_NONNULL;

/**
 * Corner offset by three points: the corner of two faces at a right angle.
 *
 * The corner is the foot of the perpendicular from the third point to the line through the first two, at the height
 * of the third. It reaches the caller through the observation service of the instrument: where that has no
 * observation, angles, distance and corner are what the service leaves (zeros, or their face-two reading), and the
 * status is QSTD_OK all the same.
 *
 * @param[in]  first        on the first face; flags are not tested
 * @param[in]  second       on the first face; flags are not tested
 * @param[in]  third        on the second face; flags 3
 * @param[in]  reserved     not read
 * @param[out] observation  expected sight to the corner, in the face that the telescope is in
 * @param[out] corner       as the service returns it; flags 3
 * @param[in]  passthrough  handed to the service
 * @retval QSTD_OK                   `observation` and `corner` written
 * @retval QSTD_COINCIDENT_POINTS    `first` and `second` coincide in plan, or so nearly that their distance vanishes;
 *                                   outputs untouched
 * @retval QSTD_MISSING_COORDINATES  `third` lacks plan coordinates or height; outputs untouched
 *
 * Method: foot of a perpendicular. Calls CoordToObservation and QueryFaceTwo.
 */
QSTD_API int32_t QCalcOfsCorner3Pt(const PointRecord* first, const PointRecord* second, const PointRecord* third,
                                   double reserved, SightRecord* observation, PointRecord* corner,
                                   double passthrough) QSTD_NONNULL;

/**
 * Corner offset by four points: the corner of two faces at any angle, at the height of the fourth point.
 *
 * The corner reaches the caller as QCalcOfsCorner3Pt describes.
 *
 * @param[in]  first        on the first face; flags are not tested
 * @param[in]  second       as `first`
 * @param[in]  third        on the second face; flags are not tested
 * @param[in]  fourth       on the second face; flags 3
 * @param[in]  reserved     not read
 * @param[out] observation  expected sight to the corner, in the face that the telescope is in; untouched on failure
 * @param[out] corner       as the service returns it; flags 3. Written before the points are checked: on failure it
 *                          holds the intersection in plan, flags 1, or UNDEFINED_REAL. Must not be one of the points
 * @param[in]  passthrough  handed to the service
 * @retval QSTD_OK                   `observation` and `corner` written
 * @retval QSTD_DEGENERATE           the slopes of the faces are exactly equal, or two points of a face coincide
 * @retval QSTD_MISSING_COORDINATES  `fourth` lacks plan coordinates or height
 * @retval QSTD_COINCIDENT_POINTS    the distance of two points of a face vanishes by underflow
 *
 * Method: intersection of lines. Calls CoordToObservation and QueryFaceTwo.
 */
QSTD_API int32_t QCalcOfsCorner4Pt(const PointRecord* first, const PointRecord* second, const PointRecord* third,
                                   const PointRecord* fourth, double reserved, SightRecord* observation,
                                   PointRecord* corner, double passthrough) QSTD_NONNULL;

/**
 * Line offset by horizontal angle: the point of a straight edge in space that lies under a sight.
 *
 * Redefines the stored two-point plane (see QREFSet2PtBasePlane) as the vertical plane through the edge, once the
 * points have been found usable.
 *
 * @param[in]  first             on the edge; plan flag set; the height is used as it stands
 * @param[in]  second            on the edge; flags 3; differs from `first` in plan
 * @param[in]  horizontalAngle   azimuth of the sight in the instrument's reference
 * @param[in]  zenithAngle       zenith angle; either face
 * @param[in]  station           position of the instrument
 * @param[in]  instrumentHeight  height of the axis above it
 * @param[out] observation       expected sight to the target, in the face that the telescope is in
 * @param[out] target            as the observation service returns it; flags 3. A sight that misses the plane gives a
 *                               target computed from UNDEFINED_REAL
 * @param[in]  passthrough       handed to the service
 * @retval QSTD_OK                   the service answered; outputs written
 * @retval QSTD_REJECTED             whatever else the service returns is passed on, -1 by default; outputs written as
 *                                   it left its record
 * @retval QSTD_COINCIDENT_POINTS    `first` and `second` coincide in plan; outputs untouched
 * @retval QSTD_MISSING_COORDINATES  a required flag is clear; outputs untouched
 * @retval QSTD_DEGENERATE           the edge has no horizontal extent, or the station stands on the plane; outputs
 *                                   untouched
 *
 * Method: intersection of a sight with a vertical plane. Reads SETTING_AZIMUTH_REFERENCE; calls CoordToObservation and
 * QueryFaceTwo.
 */
QSTD_API int32_t QCalcOfsLineHA(const PointRecord* first, const PointRecord* second, AngleUnit horizontalAngle,
                                AngleUnit zenithAngle, const PointRecord* station, double instrumentHeight,
                                SightRecord* observation, PointRecord* target, double passthrough) QSTD_NONNULL;

/**
 * Circle offset: centre and radius of a round object from a sight with distance to its near face and sights to its
 * edges.
 *
 * The centre reaches the caller as QCalcOfsCorner3Pt describes.
 *
 * @param[in]     faceSighting  horizontalAngle as azimuth in the instrument's reference, zenithAngle, and in
 *                              secondDistance the horizontal distance to the near face
 * @param[in]     passthrough   handed to the service
 * @param[in]     leftAngle     azimuth of one edge; the edges may come in either order
 * @param[in]     leftZenith    its zenith angle; tells the face only
 * @param[in]     rightAngle    azimuth of the other edge
 * @param[in]     rightZenith   its zenith angle; tells the face only
 * @param[in]     station       position of the instrument
 * @param[in]     reserved      not read
 * @param[out]    observation   expected sight to the centre, in the face that the telescope is in
 * @param[in,out] centre        its height is handed to the service; as the service returns it; flags 3
 * @param[out]    radius        of the object
 * @retval QSTD_OK                   outputs written
 * @retval QSTD_MISSING_COORDINATES  a sight is vertical, or the face is sighted outside the edges; outputs untouched
 * @retval QSTD_DEGENERATE           the edges coincide or oppose each other; outputs untouched
 *
 * Method: circle between two tangents. Reads SETTING_AZIMUTH_REFERENCE; calls CoordToObservation and QueryFaceTwo.
 */
QSTD_API int32_t QCalcOfsCircle(const ObservationRecord* faceSighting, double passthrough, AngleUnit leftAngle,
                                AngleUnit leftZenith, AngleUnit rightAngle, AngleUnit rightZenith,
                                const PointRecord* station, double reserved, SightRecord* observation,
                                PointRecord* centre, double* radius) QSTD_NONNULL;

QSTD_END_DECLS

#endif
