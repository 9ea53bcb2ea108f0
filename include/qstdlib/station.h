/**
 * @file station.h
 * Station establishment: benchmark height, two-, three- and multi-point resection, known line.
 *
 * Heights of a station are heights of the instrument axis: the caller subtracts the instrument height to get the mark.
 */
#ifndef QSTDLIB_STATION_H
#define QSTDLIB_STATION_H

#include "export.h"
#include "types.h"

/** The line azimuth of QSTNKnownLine that means: take the direction from the coordinates. */
#define AZIMUTH_NOT_GIVEN INT32_C(0x7FFFFFFF)

/** The station height that QSTNKnownLine writes when the start point has none. */
#define NO_STATION_HEIGHT 1e-37

/** A known point as sighted for the two-point resection. */
typedef struct TwoPointTarget
{
    PointRecord known;         /**< known coordinates; plan flag required, height flag optional */
    double localNorthing;      /**< the target in the instrument's own frame, circle zero as north */
    double localEasting;       /**< as localNorthing */
    double unused[2];          /**< not read */
    AngleUnit horizontalAngle; /**< circle reading */
    AngleUnit zenithAngle;     /**< reduced into one circle, a half circle or more means face two */
    double horizontalDistance; /**< 0.0: none measured; a negative one is not rejected and gives no station */
    double verticalDifference; /**< instrument to target, as measured */
    double reflectorHeight;    /**< height of the reflector above the known point */
} TwoPointTarget;

/** A station from two or three known points. The three-point resection writes the first two fields only. */
typedef struct TwoPointStation
{
    PointRecord station;           /**< flags 3 when a height could be derived, else 1 and height 0.0 */
    AngleUnit orientation;         /**< azimuth of the circle's zero, from -half circle to below +half circle for
                                        readings within one circle */
    double baselineCheck;          /**< known baseline less measured baseline; 0.0 without both distances */
    double firstDistanceResidual;  /**< measured less computed distance to the first target; 0.0 without one */
    double secondDistanceResidual; /**< as firstDistanceResidual, for the second target */
    double heightDifference;       /**< station height from the first less that from the second; 0.0 without both */
} TwoPointStation;

/** A known point as sighted for the three-point resection. */
typedef struct ThreePointTarget
{
    PointRecord known;         /**< known coordinates; plan flag required, height flag optional */
    AngleUnit horizontalAngle; /**< circle reading */
    AngleUnit zenithAngle;     /**< selects the face as in TwoPointTarget, and gives the height */
    double reflectorHeight;    /**< height of the reflector above the known point */
} ThreePointTarget;

/** A sight to a known target for the multi-point resection. */
typedef struct ResectObservation
{
    PointRecord target;        /**< known coordinates; the plan flag is not tested, the height flag selects */
    AngleUnit horizontalAngle; /**< circle reading; in face one taken as it stands, without reduction */
    AngleUnit zenithAngle;     /**< below 0 or from a half circle on: face two */
    double slopeDistance;      /**< 0.0: no distance was measured to this target */
    double horizontalDistance; /**< the distance that is adjusted */
    double verticalDifference; /**< instrument to target, as measured */
    double reflectorHeight;    /**< height of the reflector above the target */
} ResectObservation;

/** The adjusted station. */
typedef struct ResectStation
{
    PointRecord position;     /**< flags 3 when a height could be derived, else 1 and height 0.0 */
    AngleUnit orientation;    /**< azimuth of the circle's zero, counted from north whatever the instrument's
                                   reference, brought back by one circle at most: above -half circle up to a full
                                   circle, inclusive, when the readings are in the circle and in face one */
    double northingPrecision; /**< standard deviation of the northing */
    double eastingPrecision;  /**< standard deviation of the easting */
    double heightSpread;      /**< largest less smallest station height over the targets; 0.0 without height */
} ResectStation;

/** What the adjustment leaves over on one sight: adjusted less observed. */
typedef struct ResectResidual
{
    AngleUnit angleResidual; /**< direction residual */
    double distanceResidual; /**< horizontal distance residual; 0.0 unless the target has a height and a distance */
    double heightResidual;   /**< this target's station height less the station height; 0.0 as distanceResidual */
} ResectResidual;

QSTD_BEGIN_DECLS

/**
 * Height of the instrument axis from a benchmark that was sighted with a distance.
 *
 * @param[in] benchmarkHeight     known height of the benchmark
 * @param[in] reflectorHeight     height of the reflector above it
 * @param[in] verticalDifference  instrument to reflector, as measured
 * @return (benchmarkHeight + reflectorHeight) - verticalDifference, unchecked
 *
 * Method: trigonometric levelling. Reads no setting.
 */
QSTD_API double QSTNSeaLevelCalcByBM(double benchmarkHeight, double reflectorHeight, double verticalDifference);

/**
 * Two-point resection: the station from two known points, at least one of them with a measured distance.
 *
 * Two distances: similarity fit of the targets' local coordinates onto their known coordinates, the scale left free.
 * One distance: triangle of station and targets, solved from the measured distance, the known baseline and the angle
 * between the sights; as the distance may not exceed the baseline, the angle at the other target is acute and the
 * solution unique. The height is the mean over the targets with a distance and a known height.
 *
 * @param[in]     first    plan flag set; local coordinates are read only when both distances are measured
 * @param[in]     second   as `first`; differs from it in plan
 * @param[in,out] station  every field on success. When the solution fails, the plan position that the record came with
 *                         enters the residuals: initialise it
 * @retval QSTD_OK                   `station` written
 * @retval QSTD_COINCIDENT_POINTS    the known points coincide in plan: `station` untouched. Or the local coordinates
 *                                   do: northing, easting and orientation untouched, all else written
 * @retval QSTD_MISSING_COORDINATES  a plan flag is clear; `station` untouched
 * @retval QSTD_NO_DISTANCE          neither target has a distance; `station` untouched
 * @retval QSTD_DEGENERATE           the single distance exceeds the baseline: northing, easting and orientation
 *                                   untouched, all else written
 *
 * Method: similarity (Helmert) transformation through two points, or sine rule and projection of the sides. Reads
 * SETTING_AZIMUTH_REFERENCE.
 */
QSTD_API int32_t QSTN2PtResect(const TwoPointTarget* first, const TwoPointTarget* second,
                               TwoPointStation* station) QSTD_NONNULL;

/**
 * Three-point resection: the station from circle readings to three known points, without distances.
 *
 * The station is the second known point mirrored in the line through the centres of two circles, one through the
 * first and second point, one through the second and third. The height is the mean over the targets of known height,
 * by zenith angle. A station near the circle through the three points (the danger circle) is not detected: the
 * position is then as uncertain as the geometry makes it.
 *
 * @param[in]  first    plan flag set
 * @param[in]  second   as `first`
 * @param[in]  third    as `first`
 * @param[out] station  the fields station and orientation; the orientation rests on the first target
 * @retval QSTD_OK                   `station` written
 * @retval QSTD_MISSING_COORDINATES  a plan flag is clear; `station` untouched
 * @retval QSTD_DEGENERATE           the two centres coincide exactly: danger circle; `station` untouched
 * @retval QSTD_EQUAL_DIRECTIONS     two of the readings, reduced to face one, are equal; `station` untouched
 *
 * Method: Snellius-Pothenot resection by two circles. Reads SETTING_AZIMUTH_REFERENCE and, for each target with a
 * height, the settings of the height reduction (scale, sea level, curvature and refraction).
 */
QSTD_API int32_t QSTN3PtResect(const ThreePointTarget* first, const ThreePointTarget* second,
                               const ThreePointTarget* third, TwoPointStation* station) QSTD_NONNULL;

/**
 * Multi-point resection (free station): the station from any number of sighted known targets, by least squares.
 *
 * Adjusts northing, easting and orientation from all circle readings and measured horizontal distances, weighted for
 * 2" per direction and 2 mm + 2 ppm per distance, starting from two distances or, where there are fewer, from three
 * directions. The height is the mean over the targets with a distance and a known height or, where there is none, over
 * the targets of known height by zenith angle.
 *
 * A face-two reading is reduced in a way that leaves its direction 2,615,296 units (45.4 degrees) off; kept, stored
 * set-ups depend on it. Callers who want face-two readings to count bring them to face one themselves.
 *
 * The precisions are a posteriori: scaled by the residuals over the redundancy or, with no redundancy, by the square
 * sum itself, which is then near zero and says nothing. QSTD_OK does not vouch for the geometry: nearly singular sights
 * can give an absurd position with precisions that are not numbers.
 *
 * @param[in]  count         number of observations
 * @param[in]  observations  `count` records; plan flags are not tested
 * @param[out] station       every field
 * @param[out] residuals     `count` records, in the order of the observations
 * @retval QSTD_OK          `station` and `residuals` written
 * @retval QSTD_REJECTED    `count` below 1, no memory for the adjustment, geometry without a first approximation, or
 *                          normal equations with a row of zeros; outputs untouched
 * @retval QSTD_NO_MEMORY   no memory for the work records; outputs untouched
 * @retval QSTD_DEGENERATE  no convergence in ten iterations; outputs untouched
 *
 * Method: Gauss-Newton adjustment of directions and distances. Reads, for a height by zenith angle, the settings of the
 * height reduction.
 */
QSTD_API int32_t QSTNMultiResect(int16_t count, const ResectObservation* observations, ResectStation* station,
                                 ResectResidual* residuals) QSTD_NONNULL;

/**
 * Known line: the station from two observed points of a line whose start point and direction are known.
 *
 * The direction comes from `lineAzimuth` or from the coordinates of both targets; the second target is then placed on
 * the line at the measured distance from the first, and the two are adjusted by QSTNMultiResect. A reading in face two
 * is reduced for the second observation only, in the way described there.
 *
 * @param[in]  startObservation      sight to the start point, with distances; target known
 * @param[in]  directionObservation  sight to the second point, with distances; its target's plan coordinates and plan
 *                                   flag are read only when no azimuth is given
 * @param[in]  lineAzimuth           azimuth of the line in the instrument's reference, or AZIMUTH_NOT_GIVEN
 * @param[out] station               as QSTNMultiResect, with the height from the start point, or NO_STATION_HEIGHT
 *                                   when it has none (the flags stay those of the adjustment); without azimuth the
 *                                   height spread is measured less known height difference of the line
 * @param[out] residuals             two records, as QSTNMultiResect; without azimuth the first distance residual is
 *                                   measured less known length of the line
 * @retval QSTD_OK                   `station` and `residuals` written
 * @retval QSTD_COINCIDENT_POINTS    the observed or the known points coincide in plan; outputs untouched
 * @retval QSTD_MISSING_COORDINATES  no azimuth is given and a target's plan flag is clear; outputs untouched
 * @retval QSTD_REJECTED, QSTD_NO_MEMORY, QSTD_DEGENERATE  as QSTNMultiResect; outputs untouched
 *
 * Method: free station over two synthetic targets. Reads SETTING_AZIMUTH_REFERENCE and what QSTNMultiResect reads.
 */
QSTD_API int32_t QSTNKnownLine(const ResectObservation* startObservation, const ResectObservation* directionObservation,
                               AngleUnit lineAzimuth, ResectStation* station, ResectResidual* residuals) QSTD_NONNULL;

QSTD_END_DECLS

#endif
