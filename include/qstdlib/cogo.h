/**
 * @file cogo.h
 * Coordinate geometry: inverse and forward computations, area, intersections, point to line, line transfer.
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

/** Values of LineDef::mode. Any value but LINE_BY_POINTS counts as LINE_BY_AZIMUTH. */
enum LineMode
{
    LINE_BY_AZIMUTH = 1, /**< through the first point, with the azimuth */
    LINE_BY_POINTS = 2   /**< through both points */
};

/** A line in the plan. */
typedef struct LineDef
{
    PointRecord first;  /**< a point of the line; plan flag required */
    PointRecord second; /**< another point of it; read, and plan flag required, only in mode LINE_BY_POINTS */
    AngleUnit azimuth;  /**< direction in the instrument's reference; read only in mode LINE_BY_AZIMUTH */
    uint16_t mode;      /**< a LineMode */
} LineDef;

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

/**
 * Plan area of a polygon.
 *
 * @param[in] points  corners in order, either way round; the first one is not repeated at the end. Corners without plan
 *                    flag are left out
 * @param[in] n       number of corners, at most 32,767
 * @return the area, never negative; 0.0 with fewer than three valid corners or more than 32,767 records
 *
 * Method: shoelace formula with a compensated sum. The running sum is kept in one place for all callers: one thread at
 * a time. Reads no setting.
 */
QSTD_API double QCogoCalcArea(const PointRecord* points, int32_t n) QSTD_NONNULL;

/**
 * Intersection of two lines.
 *
 * Lines whose slopes (easting over northing) differ by less than 1e-5 count as parallel.
 *
 * @param[in]  line1   see LineDef
 * @param[in]  line2   see LineDef
 * @param[out] result  flags 1, height 0.0; northing and easting UNDEFINED_REAL unless the status is QSTD_OK. Written
 *                     before the lines are read: must not be part of them
 * @retval QSTD_OK                   `result` holds the intersection
 * @retval QSTD_COINCIDENT_POINTS    the two points of a line coincide in plan
 * @retval QSTD_MISSING_COORDINATES  a point that a line needs has its plan flag clear
 * @retval QSTD_PARALLEL_LINES       the lines are parallel
 *
 * Method: slope-intercept form, easting over northing. Reads SETTING_AZIMUTH_REFERENCE for each line by azimuth.
 */
QSTD_API int32_t QCogoCalcCrossLine(const LineDef* line1, const LineDef* line2, PointRecord* result) QSTD_NONNULL;

/**
 * Intersections of two circles.
 *
 * @param[in]  centre1  northing and easting; flags are not tested
 * @param[in]  radius1  above 0.0
 * @param[in]  centre2  as `centre1`
 * @param[in]  radius2  above 0.0
 * @param[out] pair     two records, flags 1 and height 0.0: first the point to the right of the direction from centre 1
 *                      to centre 2, then the one to the left; northing and easting UNDEFINED_REAL without solution.
 *                      Must not hold a centre
 * @retval 2              two points; not numbers for equal radii and centres so close that the square of their distance
 *                      vanishes
 * @retval 1              the circles touch: both records hold the point. Only an exact touch counts as one
 * @retval 0              no intersection; `pair` untouched for concentric circles
 * @retval QSTD_REJECTED  a radius is not above 0.0, or the circles are identical; `pair` untouched
 *
 * Method: arc section (bilateration). Reads no setting.
 */
QSTD_API int32_t QCogoCalcCrossCircle(const PointRecord* centre1, double radius1, const PointRecord* centre2,
                                      double radius2, PointRecord* pair) QSTD_NONNULL;

/**
 * Intersections of a line and a circle.
 *
 * @param[in]  line    see LineDef
 * @param[in]  centre  northing and easting; flags are not tested
 * @param[in]  radius  not negative
 * @param[out] pair    two records, flags 1 and height 0.0: first the point of smaller northing (of smaller easting on a
 *                     line of constant northing), then the other; northing and easting UNDEFINED_REAL without solution.
 *                     Must hold neither the centre nor a point of the line
 * @retval 2                         two points
 * @retval 1                         the line touches the circle: both records hold the point
 * @retval 0                         the line misses the circle
 * @retval QSTD_REJECTED             `radius` is negative; `pair` untouched
 * @retval QSTD_COINCIDENT_POINTS    the two points of the line coincide in plan
 * @retval QSTD_MISSING_COORDINATES  a point that the line needs has its plan flag clear
 *
 * Method: quadratic equation in the northing. Reads SETTING_AZIMUTH_REFERENCE for a line by azimuth; the discriminant
 * passes AdjustDiscriminant of the instrument.
 */
QSTD_API int32_t QCogoCalcCrossLineCircle(const LineDef* line, const PointRecord* centre, double radius,
                                          PointRecord* pair) QSTD_NONNULL;

/**
 * Foot of the perpendicular from a point to a line.
 *
 * The height comes from the line: from its first point; by interpolation along the northing when both of its points
 * have one (on a line of constant northing that is 0 / 0); from its second point when that alone has one.
 *
 * @param[in]  line   see LineDef
 * @param[in]  point  northing and easting; flags are not tested
 * @param[out] foot   flags 3 with a height, else flags 1 and height 0.0; northing and easting UNDEFINED_REAL unless the
 *                    status is QSTD_OK. Written before the inputs are read: must not be `point` or part of the line
 * @retval QSTD_OK                   `foot` holds the foot
 * @retval QSTD_COINCIDENT_POINTS    the two points of the line coincide in plan
 * @retval QSTD_MISSING_COORDINATES  a point that the line needs has its plan flag clear
 *
 * Method: slope-intercept form. Reads SETTING_AZIMUTH_REFERENCE for a line by azimuth.
 */
QSTD_API int32_t QCogoCalcPtLine(const LineDef* line, const PointRecord* point, PointRecord* foot) QSTD_NONNULL;

/**
 * Transfer of a line: turned about its first point, then shifted sideways.
 *
 * The azimuth of the result is normalised, not reduced: it can lie outside the circle, congruent to the direction
 * modulo a full circle after taking off 2^32. A line by azimuth is shifted along that value plus a quarter circle as
 * it stands, which is 2,615,296 units (45.4 degrees) off unless the sum wraps. With azimuths counted from south, the
 * azimuth comes back in that reference for a line by azimuth, and counted from north for a line by points. All kept:
 * stored lines depend on it.
 *
 * @param[in]  line      see LineDef; an azimuth of ANGLE_UNDEFINED is passed through, and the first point shifted all
 *                       the same
 * @param[in]  rotation  clockwise
 * @param[in]  offset    to the right of the transferred direction
 * @param[out] result    every field; heights as QCogoOffsetToCoord gives them when a line by points is shifted,
 *                       otherwise those of the input; may be `line`
 * @retval QSTD_OK                   `result` written
 * @retval QSTD_COINCIDENT_POINTS    the two points of the line coincide in plan; `result` untouched
 * @retval QSTD_MISSING_COORDINATES  a point that the line needs has its plan flag clear; `result` untouched
 *
 * Method: rotation and parallel shift. Reads SETTING_AZIMUTH_REFERENCE on the way in and on the way out.
 */
QSTD_API int32_t QCogoCalcTransLine(const LineDef* line, AngleUnit rotation, double offset,
                                    LineDef* result) QSTD_NONNULL;

QSTD_END_DECLS

#endif
